#include "Tools/TileForge/SceneObjects.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Io/ByteCursor.h"
#include "KestrelCommon/Resources/Renderable.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Tile/Records/SortedRecords.h"

#include <fstream>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <iterator>
#include <json/value.h>

namespace forge
{

namespace
{

constexpr float s_fUnit = 0.25f; ///< metres in a unit of a model

} // namespace

bool AssetCatalogue::load()
{
    const auto jList = readJsonFile("$GAME_DATA/Terrain/Database/assetsets.json");
    if (!jList)
        return false;
    for (const terrain::AssetSetRef& ref : terrain::readAssetSetList(*jList).vecSets)
    {
        const auto jSet = readJsonFile(ref.sSet);
        if (!jSet)
            return false;
        for (terrain::AssetEntry& entry : terrain::readAssetSet(*jSet))
        {
            std::ifstream file(DirectoryManager::ms_pInstance->resolvePath(entry.sRenderable),
                               std::ios::binary);
            const std::string sText{std::istreambuf_iterator<char>(file), {}};
            const auto desc = resource::parseRenderable(sText, entry.sRenderable);
            if (!desc)
                return false;
            const resource::ModelFile model(desc->sMesh, [](std::string_view sPath)
                                            { return DirectoryManager::ms_pInstance->resolvePath(sPath); });
            const glm::vec3 size = model.model().box.size();
            const std::string sName = entry.sName;
            m_mapAssets.emplace(sName, Known{std::move(entry), size});
        }
    }
    return true;
}

const AssetCatalogue::Known* AssetCatalogue::find(const std::string& sName) const
{
    const auto it = m_mapAssets.find(sName);
    return it == m_mapAssets.end() ? nullptr : &it->second;
}

bool SceneObjects::take(const Scene& scene, const AssetCatalogue& catalogue)
{
    constexpr std::array<float, 3> s_arrLevels{8.0f, 24.0f, 72.0f}; // metres across
    for (const PlacedAsset& placed : scene.assets())
    {
        const AssetCatalogue::Known* pKnown = catalogue.find(placed.sName);
        if (!pKnown)
        {
            QM_LOG_ERROR("No asset '", placed.sName, "'");
            return false;
        }
        Object object;
        object.record.uuid = pKnown->entry.uuid;
        object.record.mapColors = pKnown->entry.mapDefaultColors;
        for (const auto& [sSlot, sColour] : placed.mapColours)
            if (const auto it = object.record.mapColors.find(sSlot); it != object.record.mapColors.end())
                it->second = terrain::parseColor(sColour).value_or(it->second);
        const glm::quat upright(0.70710677f, 0.70710677f, 0.0f, 0.0f);
        object.record.transform = {
            placed.position,
            glm::angleAxis(glm::radians(placed.fDegrees), glm::vec3(0.0f, 0.0f, 1.0f)) * upright,
            glm::vec3(s_fUnit * placed.fScale)};
        const glm::vec3 diagonal = pKnown->size * object.record.transform.scale;
        while (object.uLevel < s_arrLevels.size() &&
               glm::dot(diagonal, diagonal) >= s_arrLevels[object.uLevel] * s_arrLevels[object.uLevel])
            ++object.uLevel;
        m_vecObjects.push_back(std::move(object));
    }
    return true;
}

uint32_t SceneObjects::appendRecords(ByteStream& stream, const tilebuilder::ObjectCell& cell, uint32_t uLevel,
                                     uint32_t)
{
    tile::SortedRecords records(stream);
    for (const Object& object : m_vecObjects)
    {
        const glm::vec3 in = object.record.transform.position - cell.origin;
        if (object.uLevel != uLevel || in.x < 0.0f || in.y < 0.0f || in.x >= 64.0f || in.y >= 64.0f)
            continue;
        tile::writeRecord(stream, object.record, {cell.origin});
        records.end();
    }
    return records.finish();
}

size_t SceneObjects::checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount,
                                  uint32_t uVersion) const
{
    ByteCursor cursor(spanRecords);
    return tile::checkRecords<tile::AssetRecord>(cursor, {uCount, uVersion})
               ? spanRecords.size() - cursor.remaining()
               : 0;
}

void SceneObjects::beginRead(const tilebuilder::ObjectReadMode&)
{
    QM_ASSERT_TEXT(false, "a scene is only written");
}

void SceneObjects::readRecords(const tilebuilder::ObjectSection&) {}

void SceneObjects::endRead() {}

} // namespace forge
