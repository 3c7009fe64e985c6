// Clutter: the stroke, the records of cells, the rebuild of a group and what a frame gathers.

#include "Benchmarks/BenchTile.h"
#include "Benchmarks/Harness.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/renderer/ClutterDraw.h"
#include "Tests/Renderer/TestScene.h"
#include "TileEditorCommon/Clutter/Terrain3ClutterManager.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>

#include <glm/gtc/matrix_transform.hpp>

namespace
{

using namespace bench;
using namespace tilebuilder;
using rend::ClutterInstance;
using rend::StaticCullingGroup;

/// The same on every run.
std::vector<uint8_t> halfSet(uint32_t uSeed)
{
    std::mt19937 random(uSeed);
    std::vector<uint8_t> vecSamples(tile::SamplesPerPatch, tile::EmptyClutter);
    for (uint8_t& uSample : vecSamples)
        if (random() % 2)
            uSample = static_cast<uint8_t>(random() % 3);
    return vecSamples;
}

int records(BenchTile& world)
{
    if (!isWanted("clutter records"))
        return 0;
    tile::ClutterDatabase database;
    database.loadText(R"({"clutterList":[{"uuid":"00000000-0000-4000-8000-000000000001","height":1},
        {"uuid":"00000000-0000-4000-8000-000000000002","height":1},
        {"uuid":"00000000-0000-4000-8000-000000000003","height":1}]})",
                      "three");
    const rend::ClutterTypes types(database, [](std::string_view) { return std::filesystem::path(); });
    for (int iCell = 0; iCell < 64; ++iCell)
        world.clutter.setSamples(iCell % 8, iCell / 8, halfSet(static_cast<uint32_t>(iCell)));
    std::vector<ClutterCellPos> vecCells;
    for (int iCell = 0; iCell < 64; ++iCell)
        vecCells.push_back({iCell % 8, iCell / 8});

    rend::CullingGroups groups;
    Terrain3ClutterManager manager(
        groups, types,
        [&](int iCellX, int iCellY, const glm::vec2& place, float& height, uint32_t& color, glm::vec3& normal)
        { return world.clutter.sampleAt(iCellX, iCellY, place, height, color, normal); },
        [&](int iCellX, int iCellY) { return world.clutter.samples(iCellX, iCellY); });
    std::vector<std::vector<ClutterRecord>> vecFloor(256);
    const auto floorWork = [&]
    {
        for (size_t uCell = 0; uCell < 64; ++uCell)
        {
            const int iX = static_cast<int>(uCell) % 8;
            const int iY = static_cast<int>(uCell) / 8;
            const std::span<const uint8_t> spanSamples = world.clutter.samples(iX, iY);
            for (size_t uLevel = 0; uLevel < 4; ++uLevel)
            {
                std::vector<ClutterRecord>& vecOut = vecFloor[uCell * 4 + uLevel];
                vecOut.clear();
                for (const glm::vec2& place : manager.positions()[uLevel])
                {
                    const uint8_t uType = spanSamples[static_cast<size_t>(
                        128 * static_cast<int>(2.0f * place.y) + static_cast<int>(2.0f * place.x))];
                    if (uType == tile::EmptyClutter)
                        continue;
                    const float fX = static_cast<float>(64 * iX) + place.x;
                    const float fY = static_cast<float>(64 * iY) + place.y;
                    vecOut.push_back({uType,
                                      &types.mesh(uType),
                                      {fX, fY, world.surface.getHeight(fX, fY)},
                                      world.surface.getNormal(fX, fY),
                                      __builtin_bswap32(world.surface.getColor(fX, fY)),
                                      types.size(uType),
                                      {static_cast<int16_t>(std::floor(fX / 32.0f)),
                                       static_cast<int16_t>(std::floor(fY / 32.0f))},
                                      ClutterRecord::s_uNoSlot});
                }
            }
        }
    };
    int iMissed = 0;
    iMissed += !run({.sName = "clutter records of 64 cells",
                     .fLimit = 1.3,
                     .fnFloor = floorWork,
                     .fnProduct = [&] { manager.generateOnly(vecCells); },
                     .fnEqual =
                         [&]
                     {
                         for (size_t u = 0; u < vecFloor.size(); ++u)
                         {
                             const auto span =
                                 manager.records({static_cast<int>(u / 4) % 8, static_cast<int>(u / 4) / 8,
                                                  static_cast<int>(u % 4)});
                             if (!std::equal(span.begin(), span.end(), vecFloor[u].begin(), vecFloor[u].end(),
                                             [](const ClutterRecord& a, const ClutterRecord& b)
                                             {
                                                 return a.index == b.index && a.position == b.position &&
                                                        a.normal == b.normal && a.color == b.color &&
                                                        a.groupKey == b.groupKey;
                                             }))
                                 return false;
                         }
                         return true;
                     }});
    iMissed += !run({.sName = "clutter records of 64 cells, with their slots",
                     .fnFloor = floorWork,
                     .fnProduct = [&] { manager.regenerate(vecCells); }});
    return iMissed;
}

int strokes(BenchTile& world)
{
    if (!isWanted("clutter stroke"))
        return 0;
    const std::array<uint8_t, 3> arrTypes = {0, 1, 2};
    const BrushDab dab{512.0f, 512.0f, 500.0f, 0.3f, brush(1)};
    std::vector<uint8_t> vecPlain(size_t{256} * tile::SamplesPerPatch, tile::EmptyClutter);
    constexpr int s_iSide = 2048;
    const auto floorWork = [&]
    {
        for (int gy = 2 * static_cast<int>(dab.y - dab.radius - 1);
             gy <= std::min(s_iSide - 1, 2 * static_cast<int>(dab.y + dab.radius + 1)); ++gy)
            for (int gx = 2 * static_cast<int>(dab.x - dab.radius - 1);
                 gx <= std::min(s_iSide - 1, 2 * static_cast<int>(dab.x + dab.radius + 1)); ++gx)
            {
                const float fDx = 0.5f * static_cast<float>(gx) + 0.25f - dab.x;
                const float fDy = 0.5f * static_cast<float>(gy) + 0.25f - dab.y;
                const float d = std::sqrt(fDx * fDx + fDy * fDy);
                if (d > dab.radius)
                    continue;
                const float w = dab.pBrush->falloff(std::max(1.0f - d / dab.radius, 0.0f)) * dab.strength;
                if (w <= 0.001f)
                    continue;
                const int k = std::rand() % static_cast<int>(3.0f / w);
                if (k < 3)
                    vecPlain[static_cast<size_t>((gy >> 7) * 16 + (gx >> 7)) * tile::SamplesPerPatch +
                             static_cast<size_t>((gy & 127) * 128 + (gx & 127))] =
                        arrTypes[static_cast<size_t>(k)];
            }
    };
    const auto clear = [&]
    {
        const std::vector<uint8_t> vecEmpty(tile::SamplesPerPatch, tile::EmptyClutter);
        for (int iCell = 0; iCell < 256; ++iCell)
            world.clutter.setSamples(iCell % 16, iCell / 16, vecEmpty);
    };
    const auto clearPlain = [&] { std::ranges::fill(vecPlain, uint8_t{tile::EmptyClutter}); };
    // Both draw at random: the counts must agree to a hundredth.
    const auto equal = [&]
    {
        clear();
        clearPlain();
        floorWork();
        world.clutter.paint(arrTypes, dab, false);
        double fPlain = 0.0;
        double fOurs = 0.0;
        for (const uint8_t u : vecPlain)
            fPlain += u != tile::EmptyClutter;
        for (int iCell = 0; iCell < 256; ++iCell)
            for (const uint8_t u : world.clutter.samples(iCell % 16, iCell / 16))
                fOurs += u != tile::EmptyClutter;
        return std::abs(fPlain / fOurs - 1.0) < 0.01;
    };
    return !run({.sName = "clutter stroke, 500 m radius",
                 .fLimit = 0.3,
                 .fnFloor = floorWork,
                 .fnProduct = [&] { world.clutter.paint(arrTypes, dab, false); },
                 .fnEqual = equal,
                 .fnBeforeFloor = clearPlain,
                 .fnBeforeProduct = clear});
}

int groupRebuild()
{
    if (!isWanted("rebuild of a clutter group"))
        return 0;
    std::array<uint8_t, 256> arrImpostorOf{};
    arrImpostorOf.fill(rend::ClutterTypes::s_uNoImpostor);
    for (uint8_t u = 0; u < 8; ++u)
        arrImpostorOf[u] = u;
    StaticCullingGroup group;
    const rend::ClutterMesh mesh = rend::defaultClutterMesh();
    std::mt19937 random(5);
    std::uniform_real_distribution<float> place(0.0f, 32.0f);
    for (int i = 0; i < 3050; ++i)
        group.addClutter(mesh, static_cast<uint8_t>(random() % 14), {place(random), place(random), 0},
                         {0, 0, 1}, 0x11223300, 1.0f);
    // Some slots stand empty.
    for (uint32_t u = 0; u < 3050; u += 10)
        group.removeClutter(u);

    struct Pair
    {
        uint32_t uType;
        ClutterInstance instance;
    };
    std::vector<Pair> vecPairs;
    std::vector<ClutterInstance> vecSorted;
    std::vector<ClutterInstance> vecImpostors;
    const auto floorWork = [&]
    {
        const StaticCullingGroup::Clutter& clutter = group.clutter();
        vecPairs.clear();
        for (size_t u = 0; u < clutter.vecInstances.size(); ++u)
            if (clutter.vecLive[u / 64] >> (u % 64) & 1)
                vecPairs.push_back({clutter.vecTypes[u], clutter.vecInstances[u]});
        std::sort(vecPairs.begin(), vecPairs.end(),
                  [](const Pair& a, const Pair& b) { return a.uType < b.uType; });
        vecSorted.clear();
        vecImpostors.clear();
        for (const Pair& pair : vecPairs)
        {
            vecSorted.push_back(pair.instance);
            if (arrImpostorOf[pair.uType] != 255)
                vecImpostors.push_back(pair.instance);
        }
    };
    return !run({.sName = "rebuild of a clutter group",
                 .fLimit = 1.5,
                 .fnFloor =
                     [&]
                 {
                     for (int i = 0; i < 50; ++i)
                         floorWork();
                 },
                 .fnProduct =
                     [&]
                 {
                     for (int i = 0; i < 50; ++i)
                     {
                         // Only a change makes it dirty: one plant out and in again.
                         group.removeClutter(1);
                         group.addClutter(mesh, 3, {1, 1, 0}, {0, 0, 1}, 0x11223300, 1.0f);
                         group.rebuildClutter(arrImpostorOf);
                     }
                 },
                 .fnEqual =
                     [&]
                 {
                     floorWork();
                     return vecSorted.size() == group.clutter().vecSorted.size() &&
                            vecImpostors.size() == group.clutter().vecImpostors.size();
                 }});
}

int gathering()
{
    if (!isWanted("gathering 3 million plants"))
        return 0;
    rend::CullingGroups groups;
    const rend::ClutterMesh mesh = rend::defaultClutterMesh();
    for (int iY = 0; iY < 32; ++iY)
        for (int iX = 0; iX < 32; ++iX)
        {
            StaticCullingGroup* pGroup =
                groups.findOrCreate({static_cast<int16_t>(iX), static_cast<int16_t>(iY)});
            for (int i = 0; i < 2930; ++i)
                pGroup->addClutter(
                    mesh, static_cast<uint8_t>(i % 6),
                    {static_cast<float>(32 * iX + 1 + i % 31), static_cast<float>(32 * iY + 1 + i / 98), 0},
                    {0, 0, 1}, 0, 1.0f);
        }
    std::array<uint8_t, 256> arrImpostorOf{};
    arrImpostorOf.fill(rend::ClutterTypes::s_uNoImpostor);
    for (uint8_t u = 0; u < 6; ++u)
        arrImpostorOf[u] = u;
    groups.rebuildClutter(arrImpostorOf);
    // Half of the world in view: clip x is 0 to 512 m.
    const rend::Frustum frustum(glm::translate(glm::mat4(1.0f), glm::vec3(-1, -1, 0)) *
                                glm::scale(glm::mat4(1.0f), glm::vec3(2.0f / 511.0f, 2.0f / 1100.0f, 0.0f)));
    rend::ClutterGather gather;
    gather.gather(groups, frustum, {256, 512}, {});
    const std::vector<ClutterInstance> vecNear(gather.nearInstances().begin(), gather.nearInstances().end());
    const std::vector<ClutterInstance> vecFar(gather.farInstances().begin(), gather.farInstances().end());
    std::vector<ClutterInstance> vecTo(vecNear.size() + vecFar.size());
    std::printf("%zu plants near, %zu far\n", vecNear.size(), vecFar.size());
    return !run({.sName = "gathering 3 million plants, half of the groups in view",
                 .fLimit = 2.0,
                 .fnFloor =
                     [&]
                 {
                     std::memcpy(vecTo.data(), vecNear.data(), vecNear.size() * sizeof(ClutterInstance));
                     std::memcpy(vecTo.data() + vecNear.size(), vecFar.data(),
                                 vecFar.size() * sizeof(ClutterInstance));
                     keep(vecTo);
                 },
                 .fnProduct =
                     [&] {
                         gather.gather(groups, frustum, {256, 512}, {});
                     },
                 .fnEqual = [&] { return vecTo.size() > 1400000 && vecTo.size() < 1600000; }});
}

/// Frames of a 2 x 2 tile that is grassy all over, seen by an eye that moves, once the density has
/// settled on what the machine can do: 20 a second at least.
int grassyFrame()
{
    constexpr const char* s_pName = "frame of a grassy 2 x 2 tile in motion";
    if (!isWanted(s_pName) || !TestScene::isAvailable())
        return 0;
    TestScene scene(1280, 720);
    std::ifstream file(QM_GAME_DIR "/Data/Terrain/Database/clutter.json");
    tile::ClutterDatabase database;
    if (!scene.m_bReady ||
        !database.loadText(std::string((std::istreambuf_iterator<char>(file)), {}), "clutter.json") ||
        !scene.m_pRenderer->loadClutter(database))
        return 1;
    const auto height = [](float x, float y) { return hillsAt(x, y, 128.0f).fHeight * 0.3f; };
    scene.setGround(2,
                    [&](float x, float y)
                    {
                        TestGroundSample sample = hillsAt(x, y, 128.0f);
                        sample.fHeight = height(x, y);
                        return sample;
                    });
    const rend::ClutterTypes& types = scene.m_pRenderer->clutterTypes();
    for (float y = 0.3f; y < 128.0f; y += 0.58f)
        for (float x = 0.3f; x < 128.0f; x += 0.58f)
            scene.m_pRenderer->cullingGroups()
                .findOrCreate({static_cast<int16_t>(x / 32.0f), static_cast<int16_t>(y / 32.0f)})
                ->addClutter(types.mesh(0), 0, {x, y, height(x, y)}, {0, 0, 1}, 0xBFBFBF00u, types.size(0));
    float fTurn = 0.0f;
    const auto frame = [&]
    {
        FrameClock::countTick();
        scene.m_camera.position = {50.0f, 30.0f, height(50.0f, 30.0f) + 2.5f};
        scene.m_camera.lookAlong({std::sin(fTurn), std::cos(fTurn), -0.2f});
        fTurn += 0.002f;
        scene.draw();
    };
    for (int i = 0; i < 80; ++i)
        frame();
    const int iMissed = !run({.sName = s_pName, .fnProduct = frame, .fMaxMs = 50.0});
    std::printf("%zu plants drawn\n", scene.m_pRenderer->clutterDraw().drawnCount());
    return iMissed;
}

int clutterGroup()
{
    int iMissed = groupRebuild() + gathering() + grassyFrame();
    if (isWanted("clutter records") || isWanted("clutter stroke"))
    {
        BenchTile world;
        iMissed += records(world) + strokes(world);
    }
    return iMissed;
}

const Registration s_clutter(&clutterGroup);

} // namespace
