#include "TileEditorCommon/Entities/Asset/AssetRecords.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/Records/SortedRecords.h"
#include "TileEditorCommon/Entities/Asset/AssetArgs.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"

#include <glm/geometric.hpp>
#include <tbb/parallel_for_each.h>
#include <unordered_set>

namespace tilebuilder
{

namespace
{

constexpr std::array<float, 3> s_arrLevelBounds{8.0f, 24.0f, 72.0f}; ///< metres

/// Reads the models that creating will ask for, side by side.
void loadModels(const AssetEntityType& type, const std::vector<tile::AssetRecord>& vecRecords)
{
    std::unordered_set<const resource::Renderable*> setRenderables;
    const Uuid* pLast = nullptr;
    for (const tile::AssetRecord& record : vecRecords)
    {
        if (pLast && *pLast == record.uuid) // often in a row
            continue;
        pLast = &record.uuid;
        if (const terrain::AssetRendering::Asset* pAsset = type.findAssetOrNull(record.uuid))
            setRenderables.insert(pAsset->pRenderable.get());
    }
    const std::vector<const resource::Renderable*> vecRenderables(setRenderables.begin(),
                                                                  setRenderables.end());
    tbb::parallel_for_each(vecRenderables.begin(), vecRenderables.end(),
                           [](const resource::Renderable* pRenderable) { (void)pRenderable->model(); });
}

} // namespace

uint32_t AssetRecords::level(uint32_t uId) const
{
    Aabb box;
    if (!m_type.getBounds(uId, box))
    {
        const EditorAssetInstance* pInstance = m_type.instance(uId);
        QM_LOG_ERROR("Failed to find bounding box for asset {", (pInstance ? pInstance->uuid : Uuid()).text(),
                     "}");
        return 0;
    }
    const glm::vec3 diagonal = box.size() * m_type.instance(uId)->transform.scale;
    const float fSquare = glm::dot(diagonal, diagonal);
    uint32_t uLevel = 0;
    while (uLevel < s_arrLevelBounds.size() && fSquare >= s_arrLevelBounds[uLevel] * s_arrLevelBounds[uLevel])
        ++uLevel;
    return uLevel;
}

void AssetRecords::write(ByteStream& stream, std::span<uint32_t> spanIds, const glm::vec3& origin) const
{
    tile::SortedRecords records(stream);
    for (const uint32_t uId : spanIds)
    {
        const EditorAssetInstance* pAssetInstance = m_type.instance(uId);
        if (!QM_ASSERT(pAssetInstance))
            continue;
        tile::writeRecord(stream,
                          tile::AssetView(pAssetInstance->transform, pAssetInstance->uuid,
                                          pAssetInstance->m_colorMap, pAssetInstance->setTags),
                          tile::CellPlace{origin, &m_host.inheritedTags(uId)});
        records.end();
    }
    records.finish(spanIds);
}

bool AssetRecords::split(std::span<const std::byte> spanRecords, uint32_t uCount, uint32_t uVersion,
                         std::vector<uint32_t>& vecEnds) const
{
    ByteCursor cursor(spanRecords);
    tile::RecordEnds ends;
    if (!tile::checkRecords<tile::AssetRecord>(cursor, {.uCount = uCount, .uVersion = uVersion}, &ends))
        return false;
    if (cursor.remaining() != 0)
    {
        QM_LOG_ERROR("Asset records leave ", cursor.remaining(), " bytes of their section");
        return false;
    }
    vecEnds = std::move(ends);
    return true;
}

bool AssetRecords::read(std::span<const std::byte> spanRecords, uint32_t uCount, const glm::vec3& origin,
                        uint32_t uVersion, std::vector<EntityCreateArgs>& vecArgs) const
{
    ByteCursor cursor(spanRecords);
    std::vector<tile::AssetRecord> vecRecords;
    if (!tile::readRecords(cursor, {.uCount = uCount, .uVersion = uVersion, .origin = origin}, vecRecords))
        return false;
    loadModels(m_type, vecRecords);
    vecArgs.reserve(vecArgs.size() + vecRecords.size());
    for (tile::AssetRecord& record : vecRecords)
    {
        auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
        pPayload->uuid = record.sOldName.empty() ? record.uuid : m_type.findByName(record.sOldName);
        pPayload->mapColors = std::move(record.mapColors);
        pPayload->setTags = std::move(record.setTags);
        m_type.normalizeColors(pPayload->uuid, pPayload->mapColors);
        EntityCreateArgs& args = vecArgs.emplace_back();
        args.eTypeId = EntityTypeId_Asset;
        args.transform = record.transform;
        args.pPayload = std::move(pPayload);
        args.bStored = true;
    }
    return true;
}

} // namespace tilebuilder
