#include "TileEditorCommon/Interface/OutlinerModel.h"

#include "KestrelCommon/Core/Text.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/EntityListI.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Interface/TileSearch.h"

#include <algorithm>
#include <unordered_map>

namespace tilebuilder
{

namespace
{

/// Changes after which any name may be another one.
constexpr uint32_t s_uNamesChanged = ChangeVoxelMesh | ChangeNodeList | 0x400;

} // namespace

OutlinerModel::OutlinerModel(EditorActionsI& actions) : m_pList(actions.entities())
{
    update(~0u);
}

OutlinerChange OutlinerModel::update(uint32_t uMask)
{
    OutlinerChange change;
    if (!m_pList)
        return change;
    change.bRows = followList();
    if (uMask & s_uNamesChanged)
        change.bRows |= renameAll();
    else if (uMask & ChangeEntityValues)
        change.bRows |= renameSelected();
    if (change.bRows)
        layOut();
    change.bSelection = followSelection();
    return change;
}

bool OutlinerModel::setSearch(std::string_view sText)
{
    std::string sLower = lowered(sText);
    if (sLower == m_sSearch)
        return false;
    m_sSearch = std::move(sLower);
    m_vecWords = searchWords(m_sSearch);
    for (Item& item : m_vecItems)
        item.bPasses = passes(item);
    layOut();
    return true;
}

/// True when the list isn't the one that was seen last.
bool OutlinerModel::followList()
{
    const std::span<const Entity> spanAll = m_pList->all();
    const auto isSame = [](const Item& item, const Entity& entity) { return item.uId == entity.uId; };
    if (m_uGeneration != m_pList->generation())
    {
        m_uGeneration = m_pList->generation();
        m_vecItems.clear();
    }
    else if (std::equal(m_vecItems.begin(), m_vecItems.end(), spanAll.begin(), spanAll.end(), isSame))
        return false;

    // What doesn't stand where it stood: moved into a hole, or gone.
    std::unordered_map<uint32_t, Item> mapMoved;
    for (size_t i = 0; i < m_vecItems.size(); ++i)
        if (i >= spanAll.size() || !isSame(m_vecItems[i], spanAll[i]))
            mapMoved.emplace(m_vecItems[i].uId, std::move(m_vecItems[i]));
    m_vecItems.resize(spanAll.size());
    for (size_t i = 0; i < spanAll.size(); ++i)
    {
        Item& item = m_vecItems[i];
        if (isSame(item, spanAll[i])) // a place that was emptied above holds another id
            continue;
        const auto it = mapMoved.find(spanAll[i].uId);
        item = it == mapMoved.end() ? makeItem(spanAll[i]) : std::move(it->second);
    }
    return true;
}

OutlinerModel::Item OutlinerModel::makeItem(const Entity& entity) const
{
    Item item{.uId = entity.uId,
              .eKind = m_pList->kind(entity),
              .bOutlined = m_pList->isOutlined(entity),
              .sName = lowered(m_pList->name(entity))};
    item.bPasses = passes(item);
    return item;
}

bool OutlinerModel::passes(const Item& item) const
{
    if (!item.bOutlined)
        return m_sSearch.empty();
    return std::all_of(m_vecWords.begin(), m_vecWords.end(),
                       [&](const std::string& sWord) { return item.sName.find(sWord) != std::string::npos; });
}

bool OutlinerModel::rename(Item& item, const Entity& entity) const
{
    std::string sName = lowered(m_pList->name(entity));
    if (sName == item.sName)
        return false;
    item.sName = std::move(sName);
    item.bPasses = passes(item);
    return true;
}

bool OutlinerModel::renameAll()
{
    bool bAny = false;
    const std::span<const Entity> spanAll = m_pList->all();
    for (size_t i = 0; i < spanAll.size(); ++i)
        bAny |= rename(m_vecItems[i], spanAll[i]);
    return bAny;
}

/// An entity's own values are changed by hand, on what is selected; undo makes new ones.
bool OutlinerModel::renameSelected()
{
    std::unordered_set<uint32_t> setSelected;
    for (const Entity& entity : m_pList->selected())
        setSelected.insert(entity.uId);
    if (setSelected.empty())
        return false;
    bool bAny = false;
    const std::span<const Entity> spanAll = m_pList->all();
    for (size_t i = 0; i < spanAll.size(); ++i)
        if (setSelected.contains(spanAll[i].uId))
            bAny |= rename(m_vecItems[i], spanAll[i]);
    return bAny;
}

void OutlinerModel::layOut()
{
    uint32_t uHighest = 0;
    m_uShown = 0;
    for (Kind& kind : m_arrKinds)
        kind.vecItems.clear();
    for (uint32_t i = 0; i < m_vecItems.size(); ++i)
    {
        const Item& item = m_vecItems[i];
        uHighest = std::max(uHighest, item.uId);
        if (!item.bPasses || !item.bOutlined || item.eKind >= EntityTypeId_COUNT)
            continue;
        m_arrKinds[item.eKind].vecItems.push_back(i);
        ++m_uShown;
    }
    m_vecListed.assign(size_t{uHighest} + 1, false);
    for (const Item& item : m_vecItems)
        m_vecListed[item.uId] = item.bPasses;

    const std::span<const Entity> spanAll = m_pList->all();
    m_vecRows.clear();
    for (uint8_t uKind = 0; uKind < EntityTypeId_COUNT; ++uKind)
    {
        const Kind& kind = m_arrKinds[uKind];
        if (kind.vecItems.empty())
            continue;
        m_vecRows.push_back({static_cast<EntityTypeId>(uKind), NullEntity});
        if (kind.bOpen)
            for (const uint32_t uItem : kind.vecItems)
                m_vecRows.push_back({static_cast<EntityTypeId>(uKind), spanAll[uItem]});
    }
}

bool OutlinerModel::followSelection()
{
    const std::span<const Entity> spanSelected = m_pList->selected();
    if (std::equal(m_vecSelected.begin(), m_vecSelected.end(), spanSelected.begin(), spanSelected.end(),
                   [](uint32_t uId, const Entity& entity) { return uId == entity.uId; }))
        return false;
    m_vecSelected.clear();
    for (const Entity& entity : spanSelected)
        m_vecSelected.push_back(entity.uId);
    m_setSelected = {m_vecSelected.begin(), m_vecSelected.end()};
    return true;
}

std::string OutlinerModel::label(size_t uRow) const
{
    const OutlinerRow& row = m_vecRows[uRow];
    return row.isTitle() ? std::string(entityTraits(row.eKind).sArrayName) : m_pList->name(row.entity);
}

std::string OutlinerModel::icon(size_t uRow) const
{
    const OutlinerRow& row = m_vecRows[uRow];
    return row.isTitle() ? std::string() : m_pList->icon(row.entity);
}

bool OutlinerModel::isMarked(size_t uRow) const
{
    return !m_vecRows[uRow].isTitle() && m_setSelected.contains(m_vecRows[uRow].entity.uId);
}

bool OutlinerModel::isDim(size_t uRow) const
{
    return !m_vecRows[uRow].isTitle() && m_pList->isHidden(m_vecRows[uRow].entity);
}

std::string OutlinerModel::countText() const
{
    const size_t uAll = static_cast<size_t>(
        std::count_if(m_vecItems.begin(), m_vecItems.end(), [](const Item& item) { return item.bOutlined; }));
    const std::string sAll = UTILS::concat(uAll, uAll == 1 ? " thing" : " things");
    return m_uShown == uAll ? sAll : UTILS::concat(m_uShown, " of ", sAll);
}

std::string OutlinerModel::emptyText() const
{
    if (m_uShown > 0)
        return {};
    return m_sSearch.empty() ? "Nothing stands on the tile yet." : "No name matches the search.";
}

bool OutlinerModel::isListed(uint32_t uId) const
{
    return uId < m_vecListed.size() && m_vecListed[uId];
}

void OutlinerModel::setOpen(EntityTypeId eKind, bool bOpen)
{
    if (eKind >= EntityTypeId_COUNT || m_arrKinds[eKind].bOpen == bOpen)
        return;
    m_arrKinds[eKind].bOpen = bOpen;
    layOut();
}

void OutlinerModel::click(size_t uRow, bool bControl, bool bShift)
{
    if (uRow >= m_vecRows.size())
        return;
    const OutlinerRow row = m_vecRows[uRow];
    if (row.isTitle())
    {
        setOpen(row.eKind, !isOpen(row.eKind));
        return;
    }
    const std::optional<size_t> anchor = bShift ? rowOf(m_uAnchor) : std::nullopt;
    if (anchor)
    {
        selectRange(*anchor, uRow);
        return;
    }
    m_uAnchor = row.entity.uId;
    std::vector<Entity> vecEntities;
    if (bControl)
        vecEntities.assign(m_pList->selected().begin(), m_pList->selected().end());
    if (std::erase(vecEntities, row.entity) == 0)
        vecEntities.push_back(row.entity);
    m_pList->select(vecEntities);
}

void OutlinerModel::selectRange(size_t uFrom, size_t uTo)
{
    std::vector<Entity> vecEntities;
    for (size_t i = std::min(uFrom, uTo); i <= std::max(uFrom, uTo); ++i)
        if (!m_vecRows[i].isTitle())
            vecEntities.push_back(m_vecRows[i].entity);
    if (uTo < uFrom) // the one that was clicked is the active one
        std::reverse(vecEntities.begin(), vecEntities.end());
    m_pList->select(vecEntities);
}

void OutlinerModel::step(int iLines, bool bExtend)
{
    const std::optional<size_t> active = activeRow();
    const auto iCount = static_cast<ptrdiff_t>(m_vecRows.size());
    const ptrdiff_t iStep = iLines < 0 ? -1 : 1;
    ptrdiff_t iRow = active ? static_cast<ptrdiff_t>(*active) + iLines : (iLines < 0 ? iCount - 1 : 0);
    iRow = std::clamp<ptrdiff_t>(iRow, 0, iCount - 1);
    while (iRow >= 0 && iRow < iCount && m_vecRows[static_cast<size_t>(iRow)].isTitle())
        iRow += iStep;
    if (iRow >= 0 && iRow < iCount)
        click(static_cast<size_t>(iRow), false, bExtend);
}

std::optional<size_t> OutlinerModel::rowOf(uint32_t uId) const
{
    for (size_t i = 0; i < m_vecRows.size() && uId != 0; ++i)
        if (m_vecRows[i].entity.uId == uId)
            return i;
    return std::nullopt;
}

std::optional<size_t> OutlinerModel::activeRow() const
{
    return m_vecSelected.empty() ? std::nullopt : rowOf(m_vecSelected.back());
}

} // namespace tilebuilder
