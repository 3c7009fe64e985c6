// The colours of an asset in the properties window, and the tool that edits one of them.

#include "KestrelCommon/Core/Assert.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"

namespace tilebuilder
{

namespace
{

ColorRgba toFloats(uint32_t uColor)
{
    ColorRgba color{};
    for (size_t u = 0; u < 4; ++u)
        color[u] = static_cast<float>(uColor >> (8 * u) & 255) / 255.0f;
    return color;
}

uint32_t toPacked(const ColorRgba& color)
{
    uint32_t uColor = 0;
    for (size_t u = 0; u < 4; ++u)
        uColor |= static_cast<uint32_t>(std::clamp(color[u], 0.0f, 1.0f) * 255.0f) << (8 * u);
    return uColor;
}

void releaseColorTool(EditorToolState& tools)
{
    if (tools.pColorTarget != &tools.entityColor)
        return;
    tools.pColorTarget = nullptr;
    tools.colorTargetKind = ColorTargetNone;
    tools.colorSlotName.clear();
    tools.onColorChanged = {};
    tools.onColorPicked = {};
}

} // namespace

tile::ColorMap AssetEntityType::colors(uint32_t uId) const
{
    const EditorAssetInstance* pInstance = instance(uId);
    return pInstance ? pInstance->m_colorMap : tile::ColorMap{};
}

void AssetEntityType::setColors(uint32_t uId, const tile::ColorMap& mapColors)
{
    for (const auto& [sSlot, uColor] : mapColors)
        setColor(uId, sSlot, uColor);
}

AssetEntityType::~AssetEntityType()
{
    releaseColorTool(m_host.tools());
}

void AssetEntityType::onDeselect(uint32_t uId)
{
    s_iColorEditIndex = -1;
    releaseColorTool(m_host.tools());
    if (AssetInstance* pInstance = findInstance(uId))
        setHighlighted(*pInstance, false);
}

/// The colour tool works on the slot from now on.
void AssetEntityType::chooseSlot(const EditorAssetInstance& instance, int iIndex)
{
    s_iColorEditIndex = iIndex;
    const auto& [sSlot, uColor] = *std::next(instance.m_colorMap.begin(), iIndex);
    EditorToolState& tools = m_host.tools();
    tools.entityColor = toFloats(uColor);
    tools.pColorTarget = &tools.entityColor;
    tools.colorTargetKind = ColorTargetEntity;
    tools.colorSlotName = sSlot;
    const auto fnChanged = [this, uId = instance.uEntityId, sName = sSlot](const ColorRgba& color)
    { setColor(uId, sName, toPacked(color)); };
    tools.onColorChanged = fnChanged;
    tools.onColorPicked = fnChanged;
}

void AssetEntityType::displayProperties(uint32_t uId, PropertyPanelI& panel)
{
    const EditorAssetInstance* pInstance = instance(uId);
    if (!pInstance || pInstance->m_colorMap.empty())
        return;
    const tile::ColorMap& mapColors = pInstance->m_colorMap;
    QM_ASSERT_TEXT(mapColors.size() <= s_uMaxColors,
                   "100 colours in one asset?! gotta make the array bigger then :) ");
    if (s_iColorEditIndex < 0)
        chooseSlot(*pInstance, 0);
    const PanelGroup group(panel, "colors", "Colors");
    int iIndex = 0;
    for (const auto& [sSlot, uColor] : mapColors)
    {
        if (iIndex == static_cast<int>(s_uMaxColors))
            break;
        panel.swatch(sSlot, toFloats(uColor), true,
                     [this, uId, iIndex, sName = sSlot](const ColorRgba& color, EditPhase)
                     {
                         const EditorAssetInstance* pEdited = instance(uId);
                         if (!pEdited || !pEdited->m_colorMap.contains(sName))
                             return;
                         if (s_iColorEditIndex != iIndex)
                             chooseSlot(*pEdited, iIndex);
                         m_host.tools().entityColor = color;
                         setColor(uId, sName, toPacked(color));
                     });
        ++iIndex;
    }
}

void AssetEntityType::refreshInstanceColors(uint32_t uId)
{
    if (AssetInstance* pInstance = findInstance(uId))
        updateInstanceColors(*pInstance);
}

void AssetEntityType::setColor(uint32_t uId, const std::string& sSlot, uint32_t uColor)
{
    const EditorAssetInstance* pInstance = instance(uId);
    if (!pInstance)
        return;
    const auto it = pInstance->m_colorMap.find(sSlot);
    if (it == pInstance->m_colorMap.end() || it->second == uColor)
        return;
    const auto pEdit = edit(uId, ChangeEntityValues);
    pEdit->m_colorMap[sSlot] = uColor;
    updateInstanceColors(*pEdit);
}

bool AssetEntityType::pickColor(uint32_t uId, uint32_t uPickedId)
{
    const EditorAssetInstance* pInstance = instance(uId);
    const EditorAssetInstance* pPicked = instance(uPickedId);
    if (!pInstance || !pPicked || s_iColorEditIndex < 0 ||
        s_iColorEditIndex >= static_cast<int>(pInstance->m_colorMap.size()))
        return false;
    const std::string sSlot = std::next(pInstance->m_colorMap.begin(), s_iColorEditIndex)->first;
    const auto it = pPicked->m_colorMap.find(sSlot);
    if (it == pPicked->m_colorMap.end())
        return false;
    const uint32_t uColor = it->second;
    setColor(uId, sSlot, uColor);
    m_host.tools().entityColor = toFloats(uColor);
    return true;
}

} // namespace tilebuilder
