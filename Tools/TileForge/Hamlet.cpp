// A hamlet on the meadow: huts along the path, gardens, a bridge over the brook.

#include "Tools/TileForge/Scene.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>

namespace forge
{

namespace
{

void buildBridge(Scene& scene)
{
    const float fX = 46.0f;
    const glm::vec2 middle(fX, meadowPathAt(fX));
    const glm::vec2 along =
        glm::normalize(glm::vec2(2.0f, meadowPathAt(fX + 1.0f) - meadowPathAt(fX - 1.0f)));
    const float fDegrees = glm::degrees(std::atan2(along.y, along.x));
    const float fBank =
        0.5f * (scene.heightAt(middle - along * 8.0f) + scene.heightAt(middle + along * 8.0f));
    const Frame frame{middle, fDegrees, fBank - 0.2f};
    scene.placeIn(frame, "env_bridge_wood_4m_01", -2.0f, 0.0f, 0.0f, 0.0f);
    scene.placeIn(frame, "env_bridge_wood_4m_01", 2.0f, 0.0f, 0.0f, 0.0f);
    scene.placeIn(frame, "env_bridge_wood_ramp_01", -6.0f, 0.0f, 0.0f, 0.0f);
    scene.placeIn(frame, "env_bridge_wood_ramp_01", 6.0f, 0.0f, 0.0f, 180.0f);
    scene.placeIn(frame, "env_bridge_wood_pier_01", 0.0f, 0.0f, -3.1f, 0.0f);
    for (int i = -4; i <= 4; ++i)
        scene.reserve(middle + along * (2.0f * static_cast<float>(i)), 2.4f);
}

/// What stands around a hut.
void furnishYard(Scene& scene, const Frame& frame, float fHalf)
{
    const auto at = [&](float fX, float fY) { return frame.world(fX, fY); };
    scene.place("env_barrel_01", at(-fHalf + 0.7f, 2.75f), 20.0f);
    scene.place("env_crate_small_01", at(fHalf - 0.6f, 2.9f), scene.roll(0.0f, 60.0f));
    scene.place("env_sack_pile_01", at(fHalf - 1.7f, 2.8f), scene.roll(0.0f, 360.0f));
    scene.place("env_log_pile_01", at(fHalf * 0.3f, -3.4f), frame.fDegrees + 90.0f);
    scene.reserve(at(fHalf * 0.3f, -3.4f), 1.6f);
    scene.place("env_bush_round_01", at(-fHalf + 0.4f, -3.2f), scene.roll(0.0f, 360.0f),
                {.fScale = 0.8f, .mapColours = {}});
    scene.reserve(at(-fHalf + 0.4f, -3.2f), 1.2f);
}

} // namespace

void furnishHamlet(Scene& scene)
{
    // The huts first: they change the ground on which all else stands.
    struct Site
    {
        Hut hut;
        glm::vec2 at;
        float fDegrees;
    };
    const std::array<Site, 5> arrSites = {{
        {{.iModules = 2, .bPorch = true}, {14.0f, 50.0f}, 4.0f},
        {{.iModules = 1, .pRoof = "8E8479", .pPlaster = "E7DCC8"}, {31.0f, 51.5f}, -6.0f},
        {{.iModules = 2, .pRoof = "B08A66", .pPlaster = "EBDDBD"}, {19.5f, 25.0f}, 176.0f},
        {{.iModules = 1, .bPorch = true, .pRoof = "94816F"}, {35.5f, 23.0f}, 190.0f},
        {{.iModules = 2, .bChimney = true, .pRoof = "A87D66", .pPlaster = "E9E0CE"}, {56.5f, 12.5f}, 148.0f},
    }};
    std::vector<Frame> vecFrames;
    for (const Site& site : arrSites)
        vecFrames.push_back(buildHut(scene, site.hut, site.at, site.fDegrees));
    buildBridge(scene);
    for (size_t u = 0; u < arrSites.size(); ++u)
        furnishYard(scene, vecFrames[u], 2.0f * static_cast<float>(arrSites[u].hut.iModules));

    // A wall with a gate where the path comes in; lamps along it.
    const float fGate = meadowPathAt(3.0f);
    scene.place("env_wall_stone_gate_4m_01", {3.0f, fGate}, 90.0f);
    scene.reserve({3.0f, fGate}, 2.6f);
    for (const float fSide : {-1.0f, 1.0f})
    {
        buildRow(scene, {"env_wall_stone_4m_01"}, 4.0f, {3.0f, fGate + 2.0f * fSide},
                 {3.0f, fGate + 10.0f * fSide}, 0.15f);
        scene.place("env_wall_stone_pillar_01", {3.0f, fGate + 10.3f * fSide}, 0.0f,
                    {.fUp = -0.1f, .mapColours = {}});
        buildRow(scene, {"env_fence_stone_4m_01"}, 4.0f, {3.0f, fGate + 10.8f * fSide},
                 {3.0f, fSide > 0.0f ? 62.0f : 2.0f}, 0.15f);
    }
    for (const float fX : {9.0f, 19.0f, 29.0f, 38.0f, 55.0f, 61.5f})
    {
        const float fSide = static_cast<int>(fX) % 2 == 0 ? 1.0f : -1.0f;
        scene.place("env_lamp_post_01", {fX, meadowPathAt(fX) + 2.2f * fSide}, fSide > 0.0f ? -90.0f : 90.0f);
        scene.reserve({fX, meadowPathAt(fX) + 2.2f * fSide}, 0.8f);
    }

    // Gardens.
    buildRow(scene, {"env_fence_picket_2m_01"}, 2.0f, {5.5f, 44.6f}, {12.0f, 45.0f});
    buildRow(scene, {"env_fence_picket_2m_01"}, 2.0f, {16.8f, 45.0f}, {22.5f, 45.2f});
    buildRow(scene, {"env_fence_wattle_2m_01"}, 2.0f, {22.8f, 45.6f}, {23.2f, 58.0f});
    buildRow(scene, {"env_fence_wattle_2m_01"}, 2.0f, {23.2f, 58.4f}, {37.0f, 58.0f});
    buildRow(scene, {"env_fence_wattle_2m_01"}, 2.0f, {37.4f, 57.6f}, {37.6f, 46.0f});
    buildRow(scene, {"env_fence_plank_2m_01", "env_fence_plank_2m_01", "env_fence_plank_broken_01"}, 2.0f,
             {27.0f, 29.2f}, {27.6f, 15.0f});
    buildRow(scene, {"env_fence_rail_4m_01"}, 4.0f, {8.0f, 16.0f}, {27.0f, 14.4f});
    buildRow(scene, {"env_fence_rail_4m_01"}, 4.0f, {28.4f, 14.4f}, {43.0f, 13.0f});
    buildRow(scene, {"env_fence_rail_4m_01"}, 4.0f, {50.8f, 40.0f}, {61.5f, 34.5f});
    scene.place("env_fence_gate_2m_01", {14.5f, 45.0f}, 2.0f);

    // Stores by the bridge, and a place to rest under the oak.
    scene.place("env_crate_large_01", {39.6f, 33.2f}, 24.0f);
    scene.place("env_crate_small_01", {40.9f, 34.5f}, 50.0f);
    scene.place("env_crate_open_01", {38.0f, 34.2f}, -10.0f);
    scene.place("env_barrel_01", {39.0f, 35.4f}, 0.0f);
    scene.place("env_barrel_open_01", {40.2f, 36.0f}, 0.0f);
    scene.place("env_barrel_keg_01", {37.0f, 36.2f}, 30.0f);
    scene.reserve({39.4f, 34.6f}, 3.0f);
    scene.place("env_tree_oak_02", {55.0f, 46.0f}, 40.0f);
    scene.place("env_log_pile_01", {51.6f, 46.8f}, 10.0f);
    scene.place("env_lamp_brazier_01", {57.6f, 43.2f}, 0.0f);
    scene.place("env_trunk_stump_01", {56.2f, 42.0f}, 70.0f);
    scene.place("env_trunk_stump_01", {59.0f, 44.4f}, 200.0f, {.fScale = 0.8f, .mapColours = {}});
    scene.cover({57.4f, 43.4f}, 4.0f, Dirt, 0.8f);
    scene.reserve({56.0f, 45.0f}, 5.0f);

    const auto away = [&](const glm::vec2& at) {
        return std::min(std::abs(at.y - meadowPathAt(at.x)) - 2.2f,
                        std::abs(at.x - meadowBrookAt(at.y)) - 2.6f);
    };
    const auto edge = [&](const glm::vec2& at)
    { return std::min(std::min(at.x, 64.0f - at.x), std::min(at.y, 64.0f - at.y)); };
    scene.scatter(
        {.vecNames = {"env_tree_oak_01", "env_tree_birch_01", "env_tree_birch_02", "env_tree_oak_01"},
         .iCount = 26,
         .fRadius = 2.6f,
         .fSmallest = 0.8f,
         .fLargest = 1.1f,
         .fSink = 0.1f,
         .vecColours = {{}, {{"Leaves", "9CB05E"}}, {{"Leaves", "B0BE6C"}}}},
        [&](const glm::vec2& at) { return away(at) > 2.0f ? (edge(at) < 9.0f ? 0.9f : 0.06f) : 0.0f; });
    scene.scatter({.vecNames = {"env_bush_round_01", "env_bush_low_01", "env_tree_young_01"},
                   .iCount = 40,
                   .fRadius = 1.3f,
                   .fSmallest = 0.6f,
                   .fLargest = 1.1f,
                   .fSink = 0.05f},
                  [&](const glm::vec2& at)
                  { return away(at) > 0.8f ? (edge(at) < 14.0f ? 0.8f : 0.25f) : 0.0f; });
    // The brook's bed.
    scene.scatter({.vecNames = {"env_rock_granite_small_01", "env_rock_granite_small_02",
                                "env_rock_pebbles_01", "env_rock_granite_medium_01"},
                   .iCount = 34,
                   .fRadius = 0.6f,
                   .fSmallest = 0.4f,
                   .fLargest = 1.0f,
                   .fSink = 0.1f,
                   .fFoot = 1.0f},
                  [&](const glm::vec2& at)
                  { return std::abs(at.x - meadowBrookAt(at.y)) < 3.2f ? 1.0f : 0.0f; });
    scene.scatter({.vecNames = {"env_rock_granite_small_01", "env_rock_slab_01", "env_rock_cluster_01",
                                "env_rock_pebbles_01"},
                   .iCount = 14,
                   .fRadius = 1.4f,
                   .fSmallest = 0.4f,
                   .fLargest = 0.8f,
                   .fSink = 0.1f,
                   .fFoot = 1.0f},
                  [&](const glm::vec2& at) { return away(at) > 0.3f ? 0.3f : 0.0f; });
}

} // namespace forge
