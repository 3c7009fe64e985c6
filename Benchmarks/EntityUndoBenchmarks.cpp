// Undo of a move of one asset among 50,000, and the image that remembers it.

#include "Benchmarks/AssetScene.h"
#include "Benchmarks/BenchTile.h"
#include "Benchmarks/Harness.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/Records/SortedRecords.h"
#include "KestrelCommon/Tile/TileImage.h"

#include <algorithm>
#include <lz4.h>

namespace
{

using namespace bench;
using namespace tilebuilder;

/// Moves the same asset to and fro.
void moveOne(AssetScene& scene, const glm::vec3& by)
{
    const Entity entity = scene.entities.all()[SceneAssets / 2];
    Transform pivot = scene.entities.pivot(entity);
    pivot.position += by;
    scene.entities.setPivot(entity, pivot);
}

/// The floor: every record once written and twice read. What is read must be what stands there.
class AllRecords
{
public:
    explicit AllRecords(AssetScene& scene) : m_scene(scene) {}

    void run()
    {
        m_stream.setPosition(0);
        const AssetEntityType& type = m_scene.entities.typed<AssetEntityType>();
        m_uCount = 0;
        for (const Entity& entity : m_scene.entities.all())
        {
            const EditorAssetInstance& instance = *type.instance(entity.uId);
            tile::writeRecord(
                m_stream,
                tile::AssetView(instance.transform, instance.uuid, instance.m_colorMap, instance.setTags),
                tile::CellPlace{});
            ++m_uCount;
        }
        for (int i = 0; i < 2; ++i)
        {
            m_vecRead = {};
            ByteCursor cursor(m_stream.bytes());
            m_bRead = tile::readRecords(
                cursor, {.uCount = m_uCount, .uVersion = tile::VersionCurrent, .origin = {}}, m_vecRead);
        }
    }
    [[nodiscard]] bool isComplete() const { return m_bRead && m_vecRead.size() == m_scene.entities.count(); }

private:
    AssetScene& m_scene;
    ByteStream m_stream;
    uint32_t m_uCount = 0;
    std::vector<tile::AssetRecord> m_vecRead;
    bool m_bRead = false;
};

int undoing(TileWorld& world, const char* pName, double fLimit)
{
    if (!isWanted(pName))
        return 0;
    AssetScene scene(world);
    scene.fill();
    Tile& tile = world.tile;
    tile.pushState(true);
    const glm::vec3 before = scene.entities.pivot(scene.entities.all()[SceneAssets / 2]).position;
    moveOne(scene, {3.0f, 0.0f, 0.0f});
    tile.pushState(false);
    AllRecords all(scene);
    const auto step = [&] { tile.stateIndex() > 0 ? tile.undo() : tile.redo(); };
    const auto equal = [&]
    {
        if (tile.stateIndex() > 0)
            tile.undo();
        // What was made anew is all that was made anew, and stands where it stood.
        const std::span<const Entity> spanRestored = scene.entities.restored();
        return all.isComplete() && scene.entities.count() == SceneAssets && spanRestored.size() == 1 &&
               scene.entities.pivot(spanRestored[0]).position == before &&
               tile.write(tile::WriteUndo).hash == tile.states()[0].hash;
    };
    return !run({.sName = pName,
                 .fLimit = fLimit,
                 .fnFloor = [&] { all.run(); },
                 .fnProduct = step,
                 .fnEqual = equal});
}

/// An image whose sections lie apart, so that some can be made anew.
class SectionImage
{
public:
    SectionImage(AssetScene& scene, const TileState& state) : m_scene(scene)
    {
        const auto image = tile::TileImage::open(state.bytes(), "bench");
        m_vecCells.resize(image->cellCount());
        std::memcpy(&m_header, state.data.get() + tile::HeaderOffset, sizeof(m_header));
        for (size_t uCell = 0; uCell < m_vecCells.size(); ++uCell)
        {
            m_vecCells[uCell].header = image->cellHeader(uCell);
            for (const tile::SectionGroupInfo& group : tile::sectionGroups())
                for (uint32_t i = 0; i < group.uElements; ++i)
                {
                    const tile::Section section = tile::section(m_vecCells[uCell].header, group, i);
                    std::vector<std::byte> vecBytes;
                    if (section.uCount > 0 && section.uSize > 0)
                        vecBytes.assign(image->sectionBytes(section)->begin(),
                                        image->sectionBytes(section)->end());
                    m_vecCells[uCell].vecSections.push_back(std::move(vecBytes));
                }
        }
    }

    /// The sections of a cell's assets.
    void refresh(uint32_t uCell, uint32_t uLevel)
    {
        const tile::SectionGroupInfo& group = tile::sectionGroup(tile::SectionGroup::Assets);
        const CellIndex& index = m_scene.entities.index();
        const AssetEntityType& type = m_scene.entities.typed<AssetEntityType>();
        m_stream.setPosition(0);
        tile::SortedRecords records(m_stream);
        for (const uint32_t uId : index.ids(StoredForm::Plain, {group.eGroup, uCell, uLevel}))
        {
            const EditorAssetInstance& instance = *type.instance(uId);
            tile::writeRecord(
                m_stream,
                tile::AssetView(instance.transform, instance.uuid, instance.m_colorMap, instance.setTags),
                tile::CellPlace{index.origin(uCell), nullptr});
            records.end();
        }
        tile::Section section;
        section.uCount = records.finish();
        section.uSize = static_cast<uint32_t>(m_stream.size());
        const int iRaw = static_cast<int>(m_stream.size());
        m_vecPacked.resize(static_cast<size_t>(LZ4_compressBound(iRaw)));
        section.uCompressedSize = static_cast<uint32_t>(
            LZ4_compress_default(reinterpret_cast<const char*>(m_stream.data()), m_vecPacked.data(), iRaw,
                                 static_cast<int>(m_vecPacked.size())));
        const auto* pPacked = reinterpret_cast<const std::byte*>(m_vecPacked.data());
        Cell& cell = m_vecCells[uCell];
        cell.vecSections[CellCache::slot(group, uLevel)].assign(pPacked, pPacked + section.uCompressedSize);
        tile::setSection(cell.header, group, uLevel, section);
    }

    void assemble()
    {
        m_vecImage.resize(tile::CellHeadersOffset + m_vecCells.size() * sizeof(tile::CellHeader));
        for (size_t uCell = 0; uCell < m_vecCells.size(); ++uCell)
        {
            tile::CellHeader header = m_vecCells[uCell].header;
            for (const tile::SectionGroupInfo& group : tile::sectionGroups())
                for (uint32_t i = 0; i < group.uElements; ++i)
                {
                    const auto& vecBytes = m_vecCells[uCell].vecSections[CellCache::slot(group, i)];
                    if (vecBytes.empty())
                        continue;
                    tile::Section section = tile::section(header, group, i);
                    section.uIndex = static_cast<uint32_t>(m_vecImage.size());
                    tile::setSection(header, group, i, section);
                    m_vecImage.insert(m_vecImage.end(), vecBytes.begin(), vecBytes.end());
                }
            std::memcpy(m_vecImage.data() + tile::CellHeadersOffset + uCell * sizeof(header), &header,
                        sizeof(header));
        }
        m_header.uTotalDataSize = static_cast<uint32_t>(m_vecImage.size()) - m_header.uDataOffset;
        std::memcpy(m_vecImage.data(), &tile::Magic, sizeof(tile::Magic));
        std::memcpy(m_vecImage.data() + tile::HeaderOffset, &m_header, sizeof(m_header));
        m_vecCopy = std::vector<std::byte>(m_vecImage.begin(), m_vecImage.end());
        m_uHash = xxh3(m_vecCopy);
    }

    [[nodiscard]] bool equals(const TileState& state) const
    {
        return m_uHash == state.hash && std::ranges::equal(m_vecCopy, state.bytes());
    }

private:
    struct Cell
    {
        tile::CellHeader header;
        std::vector<std::vector<std::byte>> vecSections; ///< by slot of the cache
    };

    AssetScene& m_scene;
    tile::Header m_header{};
    std::vector<Cell> m_vecCells;
    ByteStream m_stream;
    std::vector<char> m_vecPacked;
    std::vector<std::byte> m_vecImage; ///< being assembled
    std::vector<std::byte> m_vecCopy;  ///< of exactly its size
    uint64_t m_uHash = 0;
};

int remembering(TileWorld& world)
{
    constexpr const char* s_pName = "undo image, one of 50,000 assets moved, 16 x 16";
    if (!isWanted(s_pName))
        return 0;
    AssetScene scene(world);
    scene.fill();
    TileState state = world.tile.write(tile::WriteUndo);
    SectionImage plain(scene, state);
    // The asset goes from one cell to the next and back.
    const Entity entity = scene.entities.all()[SceneAssets / 2];
    const auto cellOfIt = [&]
    { return scene.entities.index().cellAt(entity.pType->getOriginTransform(entity.uId).position); };
    const uint32_t uLevel = scene.entities.records(tile::SectionGroup::Assets)->level(entity.uId);
    const uint32_t uFirst = cellOfIt();
    float fWay = uFirst % TileCells + 1 < TileCells ? 64.0f : -64.0f;
    const auto change = [&]
    {
        moveOne(scene, {fWay, 0.0f, 0.0f});
        fWay = -fWay;
    };
    const uint32_t uSecond = fWay > 0.0f ? uFirst + 1 : uFirst - 1;
    const auto floor = [&]
    {
        plain.refresh(uFirst, uLevel);
        plain.refresh(uSecond, uLevel);
        plain.assemble();
    };
    return !run({.sName = s_pName,
                 .fLimit = 2.0,
                 .fnFloor = floor,
                 .fnProduct = [&] { state = world.tile.write(tile::WriteUndo); },
                 .fnEqual =
                     [&]
                 {
                     floor();
                     return plain.equals(state);
                 },
                 .fnBeforeProduct = change});
}

int entityUndo()
{
    int iMissed = 0;
    {
        TileWorld world(1, 1);
        iMissed += undoing(world, "undo of a move among 50,000 assets, 1 x 1", 1.5);
    }
    BenchTile world;
    iMissed += undoing(world, "undo of a move among 50,000 assets, 16 x 16", 0.1);
    return iMissed + remembering(world);
}

const Registration s_undo(&entityUndo);

} // namespace
