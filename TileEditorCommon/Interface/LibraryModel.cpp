#include "TileEditorCommon/Interface/LibraryModel.h"

#include "KestrelCommon/Core/Text.h"
#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Interface/TileSearch.h"

#include <algorithm>

namespace tilebuilder
{

LibraryModel::LibraryModel(EditorActionsI& actions) : m_actions(actions)
{
    rebuildFilters();
    refresh();
}

bool LibraryModel::refresh()
{
    std::vector<uint64_t> vecRevisions;
    std::vector<uint64_t> vecIconRevisions;
    for (const LibrarySourceI* pSource : m_actions.librarySources())
    {
        vecRevisions.push_back(pSource->revision());
        vecIconRevisions.push_back(pSource->iconRevision());
    }
    const bool bItems = vecRevisions != m_vecRevisions;
    const bool bIcons = vecIconRevisions != m_vecIconRevisions;
    m_vecRevisions = std::move(vecRevisions);
    m_vecIconRevisions = std::move(vecIconRevisions);
    if (bItems)
    {
        gather();
        applyFilters();
    }
    return bItems || bIcons;
}

void LibraryModel::rebuildFilters()
{
    // What was left out stays out; what is new comes in.
    std::set<std::string> setChosen;
    for (const LibraryContent& content : m_actions.libraryContents())
    {
        const bool bKnown = std::any_of(m_vecContents.begin(), m_vecContents.end(),
                                        [&](const LibraryContent& old) { return old.sKey == content.sKey; });
        if (!bKnown || m_setChosenContents.contains(content.sKey))
            setChosen.insert(content.sKey);
    }
    m_vecContents = m_actions.libraryContents();
    m_setChosenContents = std::move(setChosen);
    applyFilters();
}

void LibraryModel::gather()
{
    m_vecItems.clear();
    m_sNames.clear();
    std::vector<LibraryItem> vecItems;
    for (LibrarySourceI* pSource : m_actions.librarySources())
    {
        vecItems.clear();
        pSource->listItems(vecItems);
        for (LibraryItem& item : vecItems)
        {
            const auto uName = static_cast<uint32_t>(m_sNames.size());
            const auto uLength = static_cast<uint32_t>(item.sName.size());
            m_sNames += lowered(item.sName);
            m_sNames += '\0'; // no word spans two names
            m_vecItems.push_back({std::move(item), pSource, uName, uLength});
        }
    }
    gatherCategories();
}

void LibraryModel::gatherCategories()
{
    std::set<std::string> setCategories;
    for (const LibrarySourceI* pSource : m_actions.librarySources())
        pSource->listCategories(setCategories);
    if (m_setChosenCategories == m_setCategories)
        m_setChosenCategories = setCategories;
    else
        std::erase_if(m_setChosenCategories,
                      [&](const std::string& sName) { return !setCategories.contains(sName); });
    m_setCategories = std::move(setCategories);
}

bool LibraryModel::passes(const LibraryItem& item) const
{
    if (!item.sContent.empty() && !m_setChosenContents.contains(item.sContent))
        return false;
    return !item.bFiltersCategory || m_setChosenCategories.size() == m_setCategories.size() ||
           std::any_of(item.vecCategories.begin(), item.vecCategories.end(),
                       [this](const std::string& sName) { return m_setChosenCategories.contains(sName); });
}

void LibraryModel::applyFilters()
{
    m_vecPasses.clear();
    for (const Entry& entry : m_vecItems)
        m_vecPasses.push_back(passes(entry.item));
    buildFilterRows();
    applySearch();
}

void LibraryModel::setSearch(std::string_view sText)
{
    m_vecWords = searchWords(sText);
    applySearch();
}

void LibraryModel::applySearch()
{
    m_vecShown.clear();
    const std::optional<Uuid> uuid = m_vecWords.size() == 1 ? Uuid::parse(m_vecWords.front()) : std::nullopt;
    if (uuid)
    {
        for (uint32_t i = 0; i < m_vecItems.size(); ++i)
            if (m_vecItems[i].item.uuid == *uuid)
                m_vecShown.push_back(i);
        return;
    }
    if (!m_vecWords.empty())
    {
        findWords();
        return;
    }
    for (uint32_t i = 0; i < m_vecItems.size(); ++i)
        if (m_vecPasses[i])
            m_vecShown.push_back(i);
}

/// One run over all names for the rarest word, the longest; the others only where it was found.
void LibraryModel::findWords()
{
    const auto itLongest = std::max_element(m_vecWords.begin(), m_vecWords.end(),
                                            [](const std::string& sLeft, const std::string& sRight)
                                            { return sLeft.size() < sRight.size(); });
    uint32_t uItem = 0;
    for (size_t uAt = m_sNames.find(*itLongest); uAt != std::string::npos;
         uAt = m_sNames.find(*itLongest, uAt))
    {
        const auto itNext =
            std::upper_bound(m_vecItems.begin() + uItem, m_vecItems.end(), uAt,
                             [](size_t uPlace, const Entry& entry) { return uPlace < entry.uName; });
        uItem = static_cast<uint32_t>(itNext - m_vecItems.begin());
        const Entry& entry = *std::prev(itNext);
        const std::string_view sName = std::string_view(m_sNames).substr(entry.uName, entry.uNameLength);
        const bool bAll = std::all_of(m_vecWords.begin(), m_vecWords.end(),
                                      [&](const std::string& sWord)
                                      { return sName.find(sWord) != std::string_view::npos; });
        if (bAll && m_vecPasses[uItem - 1])
            m_vecShown.push_back(uItem - 1);
        uAt = size_t{entry.uName} + entry.uNameLength;
    }
}

void LibraryModel::buildFilterRows()
{
    using Kind = LibraryFilterRow::Kind;
    m_vecFilterRows = {{Kind::Group, 0, "Options", {}, false}, {Kind::Group, 1, "Categories", {}, false}};
    m_vecFilterRows.push_back(
        {Kind::AllCategories, 2, "All", {}, m_setChosenCategories.size() == m_setCategories.size()});
    for (const std::string& sName : m_setCategories)
        m_vecFilterRows.push_back({Kind::Category, 2, sName, sName, m_setChosenCategories.contains(sName)});
    m_vecFilterRows.push_back({Kind::Group, 1, "Data", {}, false});
    const auto addContents = [this](bool bWorkshop, int iDepth)
    {
        for (const LibraryContent& content : m_vecContents)
            if (content.bWorkshop == bWorkshop)
                m_vecFilterRows.push_back({Kind::Content, iDepth, content.sName, content.sKey,
                                           m_setChosenContents.contains(content.sKey)});
    };
    addContents(false, 2);
    if (std::any_of(m_vecContents.begin(), m_vecContents.end(),
                    [](const LibraryContent& content) { return content.bWorkshop; }))
        m_vecFilterRows.push_back({Kind::Group, 2, "Steam Workshop", {}, false});
    addContents(true, 3);
}

void LibraryModel::toggleFilter(const LibraryFilterRow& row)
{
    std::set<std::string>& setChosen =
        row.eKind == LibraryFilterRow::Kind::Content ? m_setChosenContents : m_setChosenCategories;
    if (row.eKind == LibraryFilterRow::Kind::AllCategories)
        setChosen = setChosen == m_setCategories ? std::set<std::string>() : m_setCategories;
    else if (row.eKind != LibraryFilterRow::Kind::Group && setChosen.erase(row.sId) == 0)
        setChosen.insert(row.sId);
    applyFilters();
}

bool LibraryModel::isFiltered() const
{
    return m_setChosenCategories.size() != m_setCategories.size() ||
           m_setChosenContents.size() != m_vecContents.size();
}

std::string LibraryModel::countText() const
{
    const std::string sAll = UTILS::concat(total(), total() == 1 ? " item" : " items");
    return count() == total() ? sAll : UTILS::concat(count(), " of ", sAll);
}

std::string LibraryModel::emptyText() const
{
    if (count() > 0)
        return {};
    if (total() == 0)
        return "There is nothing to place.";
    if (std::find(m_vecPasses.begin(), m_vecPasses.end(), true) == m_vecPasses.end())
        return "The check boxes leave nothing. Tick one under Options.";
    return isFiltered() ? "No chosen item matches the search." : "No item matches the search.";
}

const std::string& LibraryModel::iconPath(size_t uShown)
{
    const Entry& shown = entry(uShown);
    const uint64_t uRevision = shown.pSource->iconRevision();
    const auto [it, bFirst] =
        m_mapIcons.try_emplace({shown.pSource, shown.item.uuid, shown.item.uKey}, Icon{});
    Icon& icon = it->second;
    if (bFirst || (icon.sPath.empty() && icon.uRevision != uRevision))
        icon = {shown.pSource->iconPath(shown.item), uRevision};
    return icon.sPath;
}

std::string LibraryModel::typeIcon(LibraryItemKind eKind)
{
    static constexpr std::array<const char*, static_cast<size_t>(LibraryItemKind::Count)> s_arrNames{
        "asset", "harvestable", "kinematic", "decal", "shape", "node", "blueprint", "prefab", "asset_prefab"};
    return std::string("$GAME_DATA/Gui/Editor/ed_icon_") + s_arrNames[static_cast<size_t>(eKind)] + ".png";
}

std::string LibraryModel::tip(size_t uShown) const
{
    const Entry& shown = entry(uShown);
    std::string sTip;
    const auto add = [&sTip](std::string_view sTag, std::string_view sValue)
    {
        if (!sTip.empty() && sTip.back() != '\n')
            sTip += '\n';
        sTip += sTag;
        sTip += escapeCaption(sValue);
    };
    for (const LibraryTipLine& line : shown.pSource->tip(shown.item))
        add(line.sTag, line.sValue);
    for (const LibraryContent& content : m_vecContents)
        if (content.sKey == shown.item.sContent)
            add("#BBBBBB Content: #9999EE", content.sName);
    return sTip;
}

std::vector<LibraryMenuEntry> LibraryModel::menu(size_t uShown) const
{
    return entry(uShown).pSource->menu(item(uShown));
}

void LibraryModel::runCommand(const LibraryMenuEntry& entry)
{
    switch (entry.eCommand)
    {
    case LibraryCommand::OpenFile:
        m_actions.openOutside(entry.sPath);
        break;
    case LibraryCommand::OpenFolder:
        m_actions.openOutside(entry.sPath.substr(0, entry.sPath.rfind('/')));
        break;
    case LibraryCommand::CopyText:
        m_actions.copyText(entry.sPath);
        break;
    case LibraryCommand::OpenDocument:
        m_actions.openDocument(entry.sPath);
        break;
    }
}

bool LibraryModel::beginDrag(size_t uShown)
{
    const LibraryPlacement placement = entry(uShown).pSource->placement(item(uShown));
    if (placement.eType == EntityTypeId_COUNT)
        return false;
    m_actions.beginPlacement(placement);
    return true;
}

} // namespace tilebuilder
