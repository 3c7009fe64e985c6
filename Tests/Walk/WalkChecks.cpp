#include "Tests/Walk/WalkChecks.h"

#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Tile/TileImage.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Entities/EntityRecordsI.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tilebuilder
{

namespace
{

/// Bit for bit, but that the two zeros are one.
void append(std::string& sText, const glm::vec3& value)
{
    for (int i = 0; i < 3; ++i)
    {
        const float f = value[i] + 0.0f;
        sText.append(reinterpret_cast<const char*>(&f), sizeof(f));
    }
}

std::string textOf(const Transform& transform, const EntityCreateArgs::Asset& asset)
{
    std::string sText(reinterpret_cast<const char*>(asset.uuid.bytes.data()), asset.uuid.bytes.size());
    append(sText, transform.position);
    append(sText, {transform.rotation.x, transform.rotation.y, transform.rotation.z});
    append(sText, {transform.rotation.w, 0.0f, 0.0f});
    append(sText, transform.scale);
    for (const auto& [sSlot, uColor] : asset.mapColors)
        sText += sSlot + "=" + std::to_string(uColor) + ";";
    for (const std::string& sTag : asset.setTags)
        sText += sTag + ",";
    return sText;
}

uint32_t levelOf(const glm::vec3& modelSize, const glm::vec3& scale)
{
    const double fLength = glm::length(glm::dvec3(modelSize * scale));
    return (fLength >= 8.0) + (fLength >= 24.0) + (fLength >= 72.0);
}

} // namespace

WalkChecks::WalkChecks(WalkWorld& walk)
    : m_walk(walk),
      m_sections(walk.entities()),
      m_outliner(walk.editor()),
      m_searched(walk.editor()),
      m_uErrors(walk.world.log.errors())
{
    m_searched.setSearch("o");
}

void WalkChecks::check(const std::string& sAction)
{
    checkList();
    checkSelection();
    checkPlaces();
    checkRays();
    checkOutliner();
    checkHistory(sAction);
    checkImage();
    if (sAction == "save")
        checkFiles();
    EXPECT_EQ(m_walk.world.log.errors(), m_uErrors) << m_walk.world.log.dump();
    m_uErrors = m_walk.world.log.errors();
    m_walk.world.log.clear();
}

void WalkChecks::checkList()
{
    const Entities& entities = m_walk.entities();
    std::set<uint32_t> setIds;
    std::array<size_t, EntityTypeId_COUNT> arrCounts{};
    for (const Entity& entity : entities.all())
    {
        EXPECT_TRUE(setIds.insert(entity.uId).second);
        EXPECT_EQ(entities.find(entity.uId), entity);
        EXPECT_TRUE(entities.exists(entity));
        ++arrCounts[entity.pType->getTypeId()];
        const Transform origin = entity.pType->getOriginTransform(entity.uId);
        EXPECT_TRUE(std::isfinite(glm::dot(origin.position + origin.scale, glm::vec3(1.0f))) &&
                    std::isfinite(glm::length(origin.rotation)));
    }
    for (uint8_t u = 0; u < EntityTypeId_COUNT; ++u)
        EXPECT_EQ(entities.countOf(static_cast<EntityTypeId>(u)), arrCounts[u]);
    EXPECT_EQ(m_walk.assets().instanceCount(), arrCounts[EntityTypeId_Asset]);
}

void WalkChecks::checkSelection()
{
    const Entities& entities = m_walk.entities();
    m_walk.showProperties();
    EXPECT_TRUE(m_walk.editor().toolState().colorTargetKind != ColorTargetEntity ||
                std::ranges::any_of(entities.selected(),
                                    [&](const Entity& entity) { return !entities.colors(entity).empty(); }))
        << "colours of nothing are edited";
    std::set<uint32_t> setSelected;
    for (const Entity& entity : entities.selected())
    {
        EXPECT_TRUE(entities.exists(entity));
        EXPECT_TRUE(setSelected.insert(entity.uId).second);
    }
    for (const Entity& entity : entities.all())
    {
        EXPECT_EQ(entities.isSelected(entity.uId), setSelected.contains(entity.uId));
        if (const EditorAssetInstance* pInstance = m_walk.assets().instance(entity.uId))
        {
            EXPECT_EQ(pInstance->bSelected, setSelected.contains(entity.uId));
            EXPECT_EQ(pInstance->uInstanceSlot == rend::InstanceWorld::s_uNone,
                      entities.isHidden(entity.uId));
        }
    }
}

/// Cells and levels.
void WalkChecks::checkPlaces()
{
    const Entities& entities = m_walk.entities();
    using Key = std::pair<size_t, uint32_t>;
    for (const StoredForm eForm : {StoredForm::Plain, StoredForm::Export})
    {
        std::map<Key, std::set<uint32_t>> mapExpected;
        for (const Entity& entity : entities.all())
            if (const EditorAssetInstance* pInstance = m_walk.assets().instance(entity.uId))
            {
                const glm::vec3 size = m_walk.assets().localBox(pInstance->uuid).size();
                mapExpected[{cellOf(entity, eForm), levelOf(size, pInstance->transform.scale)}].insert(
                    entity.uId);
            }
        for (uint32_t uCell = 0; uCell <= entities.index().cells(); ++uCell)
            for (uint32_t uLevel = 0; uLevel < CellIndex::s_uLevels; ++uLevel)
            {
                const auto spanIds = entities.index().ids(eForm, {tile::SectionGroup::Assets, uCell, uLevel});
                const std::set<uint32_t>& setExpected = mapExpected[Key(uCell, uLevel)];
                EXPECT_EQ(spanIds.size(), setExpected.size());
                EXPECT_EQ(std::set<uint32_t>(spanIds.begin(), spanIds.end()), setExpected);
            }
    }
}

void WalkChecks::checkRays()
{
    const Entities& entities = m_walk.entities();
    const uint32_t uViewMask = m_walk.editor().toolState().viewMask;
    PickList list;
    for (const Entity& entity : entities.all())
        list.add(entities.pivot(entity).position,
                 entities.isHidden(entity.uId) ? 0x80000000 : entity.pType->getFilterFlag());
    for (int i = 0; i < 4; ++i)
    {
        const Entity aim = m_walk.someEntity();
        const glm::vec3 target = aim && i < 3 ? entities.pivot(aim).position : m_walk.somePlace();
        PickRay ray;
        ray.start = {m_walk.between(-50.0f, 100.0f), m_walk.between(-50.0f, 100.0f), 90.0f};
        ray.direction = glm::normalize(target - ray.start);
        const auto uPicked = list.pick(ray, uViewMask);
        EXPECT_EQ(entities.pick(ray), uPicked ? entities.all()[*uPicked] : NullEntity);

        const glm::vec3 end = ray.start + ray.direction * ray.length;
        std::optional<float> nearest;
        for (const Entity& entity : entities.all())
            if (const auto hit = m_walk.assets().castRay(entity.uId, ray.start, end);
                hit && !entities.isHidden(entity.uId) && isShown(entity.pType->getFilterFlag(), uViewMask))
                nearest = std::min(nearest.value_or(1.0f), hit->fraction);
        const auto hit = entities.castShapes(ray.start, end, {});
        EXPECT_EQ(hit ? std::optional(hit->fraction) : std::nullopt, nearest);
    }
}

void WalkChecks::checkOutliner()
{
    uint32_t uMask = 0;
    if (m_walk.editor().takeInterfaceDirty(uMask))
    {
        m_outliner.update(uMask);
        m_searched.update(uMask);
    }
    const Entities& entities = m_walk.entities();
    for (const OutlinerModel* pModel : {&m_outliner, &m_searched})
    {
        size_t uRow = 0;
        for (uint8_t uKind = 0; uKind < EntityTypeId_COUNT; ++uKind)
        {
            const auto eKind = static_cast<EntityTypeId>(uKind);
            const size_t uTitle = uRow;
            for (const Entity& entity : entities.all())
            {
                const std::string sName = entity.pType->getDisplayName(entity.uId);
                if (entity.pType->getTypeId() != eKind ||
                    (pModel == &m_searched && sName.find_first_of("oO") == std::string::npos))
                    continue;
                ASSERT_LT(++uRow, pModel->rowCount());
                EXPECT_EQ(pModel->row(uRow).entity, entity);
                EXPECT_EQ(pModel->label(uRow), sName);
                EXPECT_EQ(pModel->isMarked(uRow), entities.isSelected(entity.uId));
                EXPECT_TRUE(pModel->isListed(entity.uId));
            }
            if (uRow == uTitle)
                continue;
            EXPECT_TRUE(pModel->row(uTitle).isTitle() && pModel->row(uTitle).eKind == eKind);
            ++uRow;
        }
        EXPECT_EQ(pModel->rowCount(), uRow);
    }
}

// Content

/// Assets belong to the cell of their origin, but in exports to that of their middle. The number of
/// cells for what stands in none.
size_t WalkChecks::cellOf(const Entity& entity, StoredForm eForm) const
{
    const Tile& tile = m_walk.tile();
    const glm::vec3 point = (eForm == StoredForm::Plain ? entity.pType->getOriginTransform(entity.uId)
                                                        : entity.pType->getCenterTransform(entity.uId))
                                .position;
    if (tile.type() != tile::TypeGround)
        return 0;
    for (int32_t iY = 0; iY < tile.height(); ++iY)
        for (int32_t iX = 0; iX < tile.width(); ++iX)
        {
            const glm::vec2 low(iX * 64, iY * 64);
            if (point.x >= low.x && point.x < low.x + 64.0f && point.y >= low.y && point.y < low.y + 64.0f &&
                point.z >= -8192.0f && point.z < 8192.0f)
                return static_cast<size_t>(iY * tile.width() + iX);
        }
    return static_cast<size_t>(tile.width() * tile.height());
}

WalkContent WalkChecks::living(StoredForm eForm) const
{
    WalkContent content;
    for (const Entity& entity : m_walk.entities().all())
    {
        EntityCreateArgs args;
        const size_t uCell = cellOf(entity, eForm);
        if (!m_walk.assets().getCloneArgs(entity.uId, args) || uCell == m_walk.entities().index().cells())
            continue;
        // Files count from the cell's corner.
        const glm::vec3 corner(64 * (uCell % static_cast<size_t>(m_walk.tile().width())),
                               64 * (uCell / static_cast<size_t>(m_walk.tile().width())), 0.0f);
        args.transform.position = (args.transform.position - corner) + corner;
        content.insert(textOf(args.transform, *args.payload<EntityCreateArgs::Asset>()));
    }
    return content;
}

WalkContent WalkChecks::stored(std::span<const std::byte> spanImage) const
{
    WalkContent content;
    const auto image = tile::TileImage::open(spanImage, "walk");
    const tile::SectionGroupInfo& group = tile::sectionGroup(tile::SectionGroup::Assets);
    const EntityRecordsI& records = *m_walk.entities().records(group.eGroup);
    for (size_t uCell = 0; image && uCell < image->cellCount(); ++uCell)
        for (uint32_t uLevel = 0; uLevel < group.uElements; ++uLevel)
        {
            const tile::Section section = tile::section(image->cellHeader(uCell), group, uLevel);
            const auto spanPacked = image->sectionBytes(section);
            std::vector<std::byte> vecRaw(section.uSize);
            std::vector<EntityCreateArgs> vecArgs;
            if (section.uCount == 0 || !spanPacked || !lz4Decompress(*spanPacked, vecRaw))
                continue;
            EXPECT_TRUE(records.read(vecRaw, section.uCount,
                                     m_walk.entities().index().origin(static_cast<uint32_t>(uCell)),
                                     tile::VersionCurrent, vecArgs));
            for (const EntityCreateArgs& args : vecArgs)
                content.insert(textOf(args.transform, *args.payload<EntityCreateArgs::Asset>()));
        }
    return content;
}

/// A state means the same whenever the document is in it; one step back or forth makes anew what
/// differs, selects that, and lets all else live on.
void WalkChecks::checkHistory(const std::string& sAction)
{
    const Entities& entities = m_walk.entities();
    const Tile& tile = m_walk.tile();
    ASSERT_LT(tile.stateIndex(), tile.states().size());
    const uint64_t uState = tile.states()[tile.stateIndex()].hash;
    const WalkContent content = living(StoredForm::Plain);
    EXPECT_TRUE(m_mapStates.try_emplace(uState, content).first->second == content)
        << "the present state is another";

    std::map<uint32_t, std::string> mapNow;
    for (const Entity& entity : entities.all())
        if (EntityCreateArgs args; m_walk.assets().getCloneArgs(entity.uId, args))
            mapNow[entity.uId] = textOf(args.transform, *args.payload<EntityCreateArgs::Asset>());
    if ((sAction == "undo" || sAction == "redo") && uState != m_uState)
    {
        WalkContent before;
        WalkContent common;
        for (const auto& [uId, sText] : m_mapBefore)
            before.insert(sText);
        std::set_intersection(before.begin(), before.end(), content.begin(), content.end(),
                              std::inserter(common, common.end()));
        size_t uKept = 0;
        for (const auto& [uId, sText] : mapNow)
        {
            const auto itBefore = m_mapBefore.find(uId);
            uKept += itBefore != m_mapBefore.end() && itBefore->second == sText;
            EXPECT_EQ(entities.isSelected(uId), itBefore == m_mapBefore.end());
        }
        EXPECT_EQ(uKept, common.size()) << "what is the same was made anew";
    }
    m_mapBefore = std::move(mapNow);
    m_uState = uState;
}

TileState WalkChecks::writeAfresh(uint32_t uFlags)
{
    const Tile& open = m_walk.tile();
    Tile fresh({m_walk.editor(), m_walk.editor().surface(), m_walk.editor().clutter()});
    for (const auto& pProvider : m_sections.providers())
        fresh.addProvider(*pProvider);
    fresh.create(open.uuid(), open.creatorId(), open.width(), open.height(), open.type());
    fresh.setTerrainCategory(open.terrainCategory(), open.terrainCategoryIndex());
    return fresh.write(uFlags);
}

void WalkChecks::checkImage()
{
    const TileState cached = m_walk.tile().write(tile::WriteUndo);
    const TileState fresh = writeAfresh(tile::WriteUndo);
    EXPECT_TRUE(std::ranges::equal(cached.bytes(), fresh.bytes())) << "the cached image is stale";
    EXPECT_EQ(cached.hash, m_walk.tile().states()[m_walk.tile().stateIndex()].hash)
        << "something slipped past the history";
    EXPECT_EQ(stored(cached.bytes()), living(StoredForm::Plain));
}

void WalkChecks::checkFiles()
{
    const std::string sPath = m_walk.tile().directory() + "/" + m_walk.tile().name();
    for (const bool bExport : {false, true})
    {
        if (bExport && m_walk.tile().type() != tile::TypeGround)
            continue; // has none
        const auto vecFile =
            readFile(m_walk.world.directories.resolvePath(sPath + (bExport ? ".export" : "")));
        ASSERT_TRUE(vecFile);
        const TileState fresh =
            writeAfresh(tile::WriteFinal | (bExport ? tile::WriteExport : tile::WritePlain));
        EXPECT_TRUE(std::ranges::equal(*vecFile, fresh.bytes())) << "the file is another";
        EXPECT_EQ(stored(*vecFile), living(bExport ? StoredForm::Export : StoredForm::Plain));
    }
}

} // namespace tilebuilder
