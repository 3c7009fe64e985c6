#pragma once // The assets in the library.

#include "TileEditorCommon/Contracts/LibrarySourceI.h"

#include <functional>
#include <unordered_map>

namespace tilebuilder
{

class AssetEntityType;
struct EditorAsset;

/// All assets that aren't hidden. The type must outlive it.
class AssetLibrarySource : public LibrarySourceI
{
public:
    /// Asks for an asset's picture to be made and written to the first of these keyed paths that can be
    /// written.
    using IconMaker = std::function<void(const Uuid& uuid, const std::vector<std::string>& vecPaths)>;

    explicit AssetLibrarySource(const AssetEntityType& type) : m_type(type) {}

    /// Without one, pictures that aren't there stay away.
    void setIconMaker(IconMaker fnMake) { m_fnMakeIcon = std::move(fnMake); }
    /// A picture that was asked for is there, at that path.
    void onIconMade(const Uuid& uuid, const std::string& sPath);

    // LibrarySourceI

    [[nodiscard]] uint64_t revision() const override;
    void listItems(std::vector<LibraryItem>& vecItems) const override;
    void listCategories(std::set<std::string>& setCategories) const override;
    /// Looked for in the icon directory of the asset's list, then in "$CACHE_DATA/Icons", where one that is
    /// older than its model doesn't count.
    [[nodiscard]] std::string iconPath(const LibraryItem& item) override;
    [[nodiscard]] uint64_t iconRevision() const override { return m_uIconRevision; }
    [[nodiscard]] std::vector<LibraryTipLine> tip(const LibraryItem& item) const override;
    [[nodiscard]] std::vector<LibraryMenuEntry> menu(const LibraryItem& item) const override;
    [[nodiscard]] LibraryPlacement placement(const LibraryItem& item) const override;

private:
    [[nodiscard]] const EditorAsset* find(const LibraryItem& item) const;

    const AssetEntityType& m_type;
    IconMaker m_fnMakeIcon;
    std::unordered_map<Uuid, std::string> m_mapIcons; ///< empty: there is none yet
    uint64_t m_uIconRevision = 0;
};

} // namespace tilebuilder
