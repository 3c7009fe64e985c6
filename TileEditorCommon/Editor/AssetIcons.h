#pragma once // Gets the pictures that the asset library asks for made.

#include "TileEditorCommon/Pictures/ObjectIcons.h"

namespace tilebuilder
{

class AssetLibrarySource;
class Entities;

/// Main thread only. Entities and generator must outlive it.
class AssetIcons
{
public:
    AssetIcons(Entities& entities, IconGenerator& generator);
    ~AssetIcons();
    AssetIcons(const AssetIcons&) = delete;
    AssetIcons& operator=(const AssetIcons&) = delete;

    /// Once a frame.
    void update() { m_icons.update(); }

private:
    void request(const Uuid& uuid, const std::vector<std::string>& vecPaths);

    Entities& m_entities;
    AssetLibrarySource* m_pSource = nullptr; ///< null: no assets
    ObjectIcons m_icons;
};

} // namespace tilebuilder
