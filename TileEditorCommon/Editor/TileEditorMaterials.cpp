// Ground materials, and the colour that the colour editor and the eyedropper work on.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Editor/GroundView.h"
#include "TileEditorCommon/Editor/ProgressScope.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"
#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

#include <json/json.h>

namespace tilebuilder
{

namespace
{

constexpr size_t s_uPaintedMaterials = 8; ///< the ninth has no weight
constexpr std::array<const char*, 2> s_arrSetLists{
    "$GAME_DATA/Terrain/Materials/gnd_materialset_list.json",
    "$SURVIVAL_DATA/Terrain/Materials/gnd_materialset_list.json"};

/// What was painted there, through bytes and without the noise that the ground is shown with.
ColorRgba paintedColor(const EditorTerrainSurface& surface, float x, float y)
{
    const auto fLastX = static_cast<float>(surface.quadsX());
    const auto fLastY = static_cast<float>(surface.quadsY());
    const float u = std::clamp(x * 0.5f, 0.0f, fLastX);
    const float v = std::clamp(y * 0.5f, 0.0f, fLastY);
    const auto i = static_cast<uint32_t>(std::min(u, fLastX - 1.0f));
    const auto j = static_cast<uint32_t>(std::min(v, fLastY - 1.0f));
    const auto at = [&](uint32_t uColumn, uint32_t uRow)
    {
        const tile::ColorValue& value = surface.colors()[size_t{uRow} * surface.verticesX() + uColumn];
        return glm::vec4(value.r, value.g, value.b, value.a);
    };
    const glm::vec4 low = glm::mix(at(i, j), at(i + 1, j), u - static_cast<float>(i));
    const glm::vec4 high = glm::mix(at(i, j + 1), at(i + 1, j + 1), u - static_cast<float>(i));
    const glm::vec4 mean = glm::clamp(glm::mix(low, high, v - static_cast<float>(j)), 0.0f, 1.0f);
    const tile::ColorValue bytes = tile::unpackColor(tile::packColor({mean.r, mean.g, mean.b, mean.a}));
    return {bytes.r, bytes.g, bytes.b, bytes.a};
}

} // namespace

// Colours

void TileEditor::setColorTarget(ColorRgba* pTarget, uint8_t uKind, ColorCallback onChanged,
                                ColorCallback onPicked)
{
    m_toolState.pColorTarget = pTarget;
    m_toolState.colorTargetKind = uKind;
    m_toolState.onColorChanged = std::move(onChanged);
    m_toolState.onColorPicked = std::move(onPicked);
    markInterfaceDirty(0);
}

void TileEditor::changeColor(const ColorRgba& color)
{
    if (!m_toolState.pColorTarget)
        return;
    *m_toolState.pColorTarget = color;
    if (m_toolState.onColorChanged)
        m_toolState.onColorChanged(color);
}

/// The colour of the brush is a setting, not a part of the document: no change is marked.
void TileEditor::armGroundColor()
{
    setColorTarget(&m_toolState.groundColor, ColorTargetGround, {},
                   [this](const ColorRgba&) { markInterfaceDirty(0); });
}

void TileEditor::pickGroundColor()
{
    m_toolState.pickState = PickConsumed;
    const auto hit = groundUnderCursor();
    if (hit && m_pSurface->isInside(hit->x, hit->y))
    {
        m_toolState.groundColor = paintedColor(*m_pSurface, hit->x, hit->y);
        armGroundColor();
        m_toolState.onColorPicked(m_toolState.groundColor);
    }
    markInterfaceDirty(0);
}

// Ground materials

std::vector<MaterialSetChoice> TileEditor::materialSets() const
{
    std::vector<MaterialSetChoice> vecSets;
    for (const char* pPath : s_arrSetLists)
    {
        if (!DirectoryManager::ms_pInstance->exists(pPath))
        {
            QM_LOG_WARNING("There is no list of ground material sets '", pPath, "'");
            continue;
        }
        const auto root = readJsonFile(pPath);
        if (!root)
            continue;
        const Json::Value& list = jsonMember(*root, "materialSetList");
        for (Json::ArrayIndex i = 0; list.isArray() && i < list.size(); ++i)
            vecSets.push_back({jsonText(list[i], "name"), jsonText(list[i], "materialSet")});
    }
    return vecSets;
}

BoundMaterials TileEditor::boundMaterials() const
{
    BoundMaterials bound{m_pMaterialSet->hash(), m_pMaterialSet->path(), {}};
    for (size_t i = 0; bound.uHash != 0 && i < s_uPaintedMaterials; ++i)
        bound.vecMaterials.push_back({m_pMaterialSet->names()[i], m_pMaterialSet->diffusePaths()[i]});
    return bound;
}

uint64_t TileEditor::boundMaterialHash() const
{
    return m_pMaterialSet->hash();
}

bool TileEditor::bindMaterialSet(const std::string& sPath)
{
    const BusyScope busy(m_pInterface); // pictures are compressed when they are new
    if (!m_pMaterialSet->load(sPath))
        return false;
    if (m_pGroundView && m_bGroundOpen)
        m_pGroundView->bindMaterials();
    markInterfaceDirty(0);
    return true;
}

} // namespace tilebuilder
