#pragma once // The assets of the database as items of the asset library.

#include "TileEditorCommon/Contracts/LibrarySourceI.h"

namespace tilebuilder
{

class AssetEntityType;

/// Hidden assets aren't listed. A picture lies in the icon directory of the asset's list, else among
/// those that were made here, each under the uuid's text and ".png".
class AssetLibrarySource : public LibrarySourceI
{
public:
    static constexpr const char* s_pMadeIcons = "$CACHE_DATA/Icons";

    /// Borrowed.
    explicit AssetLibrarySource(const AssetEntityType& type) : m_type(type) {}

    /// New pictures are there.
    void iconsChanged() { ++m_uIconRevision; }

    [[nodiscard]] uint64_t revision() const override;
    void listItems(std::vector<LibraryItem>& vecItems) const override;
    void listCategories(std::set<std::string>& setCategories) const override;
    [[nodiscard]] std::string iconPath(const LibraryItem& item) override;
    [[nodiscard]] uint64_t iconRevision() const override { return m_uIconRevision; }
    [[nodiscard]] std::vector<LibraryTipLine> tip(const LibraryItem& item) const override;
    [[nodiscard]] std::vector<LibraryMenuEntry> menu(const LibraryItem& item) const override;
    [[nodiscard]] LibraryPlacement placement(const LibraryItem& item) const override;

private:
    const AssetEntityType& m_type;
    uint64_t m_uIconRevision = 1;
};

} // namespace tilebuilder
