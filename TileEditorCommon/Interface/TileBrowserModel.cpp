#include "TileEditorCommon/Interface/TileBrowserModel.h"

#include "KestrelCommon/Core/Text.h"
#include "TileEditorCommon/Interface/TileSearch.h"

#include <algorithm>

namespace tilebuilder
{

namespace
{

constexpr const char* s_pMissingPreview = "ed_error_tile.png";
constexpr const char* s_pPictureFolder = "$GAME_DATA/Gui/Editor/";

} // namespace

TileBrowserModel::TileBrowserModel(EditorActionsI& actions)
    : m_actions(actions),
      m_vecAvailable(actions.tileCategories())
{
    m_setSelected.insert(m_vecAvailable.begin(), m_vecAvailable.end());
}

void TileBrowserModel::refreshItems()
{
    m_vecItems = m_actions.tileFiles();
    applyFilter();
}

void TileBrowserModel::setSearch(std::string_view sText)
{
    m_vecWords = searchWords(sText);
    applyFilter();
}

void TileBrowserModel::applyFilter()
{
    m_vecFiltered = filterTiles(m_vecItems, m_vecWords);
    std::erase_if(m_vecFiltered, [this](size_t i) { return !isSelected(m_vecItems[i].sCategory); });
}

void TileBrowserModel::clickCategory(const std::string& sCategory, bool bControl)
{
    if (std::find(m_vecAvailable.begin(), m_vecAvailable.end(), sCategory) == m_vecAvailable.end())
        return;
    const bool bWasSelected = isSelected(sCategory);
    const bool bWasAlone = bWasSelected && m_setSelected.size() == 1;
    if (!bControl)
        m_setSelected.clear();
    if (bControl ? bWasSelected : bWasAlone)
        m_setSelected.erase(sCategory);
    else
        m_setSelected.insert(sCategory);
    applyFilter();
}

bool TileBrowserModel::isSelected(const std::string& sCategory) const
{
    return m_setSelected.contains(sCategory);
}

MenuEntry TileBrowserModel::categoryMenu(const std::function<void(const std::string&)>& fnClick) const
{
    MenuEntry menu{.eKind = MenuEntry::Kind::Menu, .sLabel = "Options", .sId = "Options"};
    for (const std::string& sCategory : m_vecAvailable)
    {
        menu.vecChildren.push_back({.eKind = MenuEntry::Kind::Check,
                                    .sLabel = escapeCaption(sCategory),
                                    .sId = sCategory,
                                    .bChecked = isSelected(sCategory),
                                    .fnAction = [fnClick, sCategory] { fnClick(sCategory); }});
        if (sCategory == "User" && sCategory != m_vecAvailable.back())
            menu.vecChildren.push_back({.eKind = MenuEntry::Kind::Separator});
    }
    return menu;
}

std::string TileBrowserModel::countText() const
{
    const std::string sAll = UTILS::concat(total(), total() == 1 ? " tile" : " tiles");
    return count() == total() ? sAll : UTILS::concat(count(), " of ", sAll);
}

std::string TileBrowserModel::emptyText() const
{
    if (count() > 0)
        return {};
    if (total() == 0)
        return "There are no tiles yet. Make one with File > New.";
    if (m_setSelected.empty())
        return "No category is chosen. Choose one under Options.";
    return "No tile matches the search.";
}

std::string previewPicture(const TileFile& file)
{
    const std::string sPath = file.sPreviewPath.empty() ? s_pMissingPreview : file.sPreviewPath;
    return sPath.find('/') == std::string::npos ? s_pPictureFolder + sPath : sPath;
}

} // namespace tilebuilder
