#include "TileEditorCommon/Interface/TileSettingsModel.h"

#include "TileEditorCommon/Interface/TerrainCategories.h"

namespace tilebuilder
{

TileSettingsModel::TileSettingsModel(EditorActionsI& actions) : m_actions(actions)
{
    update();
}

bool TileSettingsModel::update()
{
    const TerrainCategory category = m_actions.terrainCategory();
    const bool bOpen = m_actions.isDocumentOpen();
    if (category == m_shown && bOpen == m_bOpen)
        return false;
    m_shown = category;
    m_bOpen = bOpen;
    m_vecEntries = terrainCategoryLabels(category.uCategory);
    return true;
}

size_t TileSettingsModel::category() const
{
    return m_bOpen && m_shown.uCategory < TerrainCategoryNames.size() ? m_shown.uCategory : s_uNone;
}

size_t TileSettingsModel::entry() const
{
    return m_shown.uIndex < m_vecEntries.size() ? m_shown.uIndex : s_uNone;
}

void TileSettingsModel::chooseCategory(size_t uCategory)
{
    if (!m_bOpen || uCategory >= TerrainCategoryNames.size() || uCategory == m_shown.uCategory)
        return;
    m_actions.setTerrainCategory({static_cast<uint32_t>(uCategory), 0});
}

void TileSettingsModel::chooseEntry(size_t uEntry)
{
    if (!m_bOpen || uEntry >= m_vecEntries.size() || uEntry == m_shown.uIndex)
        return;
    m_actions.setTerrainCategory({m_shown.uCategory, static_cast<uint32_t>(uEntry)});
}

} // namespace tilebuilder
