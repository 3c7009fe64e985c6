// A ruined keep on a hill, with rocks around it and pines below.

#include "Tools/TileForge/Scene.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace forge
{

namespace
{

/// The most hill-like place: high over what lies 30 m around, gentle on top, without snow.
glm::vec2 findHill(const Scene& scene)
{
    glm::vec2 best(scene.size() * 0.5f);
    float fBest = -1.0e9f;
    for (float fY = 40.0f; fY < scene.size() - 40.0f; fY += 4.0f)
        for (float fX = 40.0f; fX < scene.size() - 40.0f; fX += 4.0f)
        {
            const glm::vec2 at(fX, fY);
            float fAround = 0.0f;
            float fNear = 0.0f;
            float fBare = 0.0f;
            for (int i = 0; i < 12; ++i)
            {
                const glm::vec2 way(std::cos(0.5236f * static_cast<float>(i)),
                                    std::sin(0.5236f * static_cast<float>(i)));
                fAround += scene.heightAt(at + way * 32.0f) / 12.0f;
                fBare += scene.shareOf(Rock, at + way * 14.0f) / 12.0f;
                fNear += std::abs(scene.heightAt(at + way * 10.0f) - scene.heightAt(at)) / 12.0f;
            }
            const float fScore =
                scene.heightAt(at) - fAround - 1.8f * fNear - 12.0f * scene.shareOf(Snow, at) - 9.0f * fBare;
            if (fScore > fBest)
            {
                fBest = fScore;
                best = at;
            }
        }
    return best;
}

void buildKeep(Scene& scene, const Frame& frame)
{
    const auto add = [&](const char* pName, float fX, float fY, float fDegrees, float fUp = 0.0f)
    { scene.placeIn(frame, pName, fX, fY, fUp, fDegrees); };
    // Four sides of 16 m around the frame's middle, the gate at the front.
    const std::array<std::array<const char*, 3>, 4> arrSides = {{
        {"env_ruin_wall_window_01", "env_ruin_wall_door_01", "env_ruin_wall_broken_01"},
        {"env_ruin_wall_4m_01", "env_ruin_wall_window_01", "env_ruin_wall_broken_02"},
        {"env_ruin_wall_broken_02", "env_ruin_wall_4m_01", "env_ruin_wall_window_01"},
        {"env_ruin_wall_window_01", "env_ruin_wall_broken_01", "env_ruin_wall_4m_01"},
    }};
    for (size_t uSide = 0; uSide < arrSides.size(); ++uSide)
    {
        const Frame side{frame.at, frame.fDegrees + 90.0f * static_cast<float>(uSide), frame.fHeight};
        for (size_t u = 0; u < 3; ++u)
            scene.placeIn(side, arrSides[uSide][u], -4.0f + 4.0f * static_cast<float>(u), 8.0f, 0.0f, 0.0f);
        scene.placeIn(side, "env_ruin_corner_01", -8.0f, 8.0f, 0.0f, 90.0f);
    }
    for (int iY = 0; iY < 3; ++iY)
        for (int iX = 0; iX < 3; ++iX)
            if (iX != 2 || iY != 0)
                add("env_ruin_floor_4m_01", -4.0f + 4.0f * static_cast<float>(iX),
                    -4.0f + 4.0f * static_cast<float>(iY), 90.0f * static_cast<float>((iX + iY) % 4), 0.05f);
    for (const float fX : {-3.2f, 3.2f})
        for (int i = 0; i < 3; ++i)
            add(i == 1 && fX > 0.0f ? "env_ruin_pillar_broken_01" : "env_ruin_pillar_01", fX,
                -4.0f + 4.0f * static_cast<float>(i), 0.0f, 0.1f);
    add("env_ruin_stairs_01", 5.6f, -5.4f, 180.0f);
    add("env_ruin_rubble_01", -5.6f, 5.0f, 30.0f);
    add("env_ruin_rubble_01", 5.0f, 5.6f, 140.0f);
    add("env_lamp_stone_01", -1.9f, 11.4f, 0.0f);
    add("env_lamp_stone_01", 1.9f, 11.4f, 0.0f);
    for (int i = 0; i < 2; ++i)
        add("env_floor_flagstone_2m_01", 0.3f * static_cast<float>(i % 2),
            9.4f + 2.05f * static_cast<float>(i), 5.0f * static_cast<float>(i % 3));
    for (int i = 0; i < 10; ++i) // what fell outwards
    {
        const float fAngle = 0.6283f * static_cast<float>(i) + 0.2f;
        const float fAway = scene.roll(12.0f, 15.5f);
        const glm::vec2 at = frame.world(std::cos(fAngle) * fAway, std::sin(fAngle) * fAway);
        if (std::abs(std::cos(fAngle)) < 0.3f && std::sin(fAngle) > 0.0f)
            continue;
        scene.place(i % 3 == 0 ? "env_ruin_pillar_broken_01" : "env_ruin_rubble_01", at,
                    scene.roll(0.0f, 360.0f), {.fUp = -0.15f - scene.sinkAt(at, 0.8f), .mapColours = {}});
        scene.reserve(at, 1.6f);
    }
}

} // namespace

void furnishRuin(Scene& scene)
{
    const glm::vec2 hill = findHill(scene);
    // The gate looks down the gentlest way.
    const Frame frame = scene.level(hill, {12.0f, 12.0f}, 25.0f, 12.0f);
    scene.cover(hill, 17.0f, Gravel, 0.55f);
    scene.cover(hill, 14.0f, Dirt, 0.4f);
    scene.reserve(hill, 11.8f);
    buildKeep(scene, frame);

    const auto around = [&](const glm::vec2& at, float fFrom, float fTo)
    {
        const float fAway = glm::distance(at, hill);
        return fAway > fFrom && fAway < fTo ? 1.0f - 0.7f * (fAway - fFrom) / (fTo - fFrom) : 0.0f;
    };
    // The remains of an outer wall.
    for (int i = 0; i < 14; ++i)
    {
        const float fAngle = 0.4488f * static_cast<float>(i);
        if (i % 4 == 3)
            continue;
        const glm::vec2 at = hill + 21.0f * glm::vec2(std::cos(fAngle), std::sin(fAngle));
        scene.place(i % 3 == 0   ? "env_ruin_wall_broken_02"
                    : i % 3 == 1 ? "env_fence_stone_4m_01"
                                 : "env_fence_stone_2m_01",
                    at, 57.29578f * fAngle + 90.0f + scene.roll(-8.0f, 8.0f),
                    {.fUp = -0.35f - scene.sinkAt(at, 2.0f), .mapColours = {}});
        scene.reserve(at, 2.4f);
    }
    const std::vector<std::map<std::string, std::string>> vecStone{
        {}, {{"Rock", "B0A898"}}, {{"Rock", "A09C96"}}};
    scene.scatter(
        {.vecNames = {"env_rock_granite_large_01", "env_rock_granite_large_02", "env_rock_spire_01"},
         .iCount = 12,
         .fRadius = 4.0f,
         .fSmallest = 0.55f,
         .fLargest = 1.0f,
         .fSink = 0.5f,
         .fFoot = 2.6f,
         .vecColours = vecStone},
        [&](const glm::vec2& at)
        { return around(at, 19.0f, 70.0f) * std::clamp(2.5f * scene.steepAt(at), 0.1f, 1.0f); });
    scene.scatter({.vecNames = {"env_rock_granite_medium_01", "env_rock_granite_medium_02",
                                "env_rock_slab_01", "env_rock_cluster_01"},
                   .iCount = 45,
                   .fRadius = 1.6f,
                   .fSmallest = 0.6f,
                   .fLargest = 1.3f,
                   .fSink = 0.25f,
                   .fFoot = 1.7f,
                   .vecColours = vecStone},
                  [&](const glm::vec2& at)
                  { return around(at, 14.0f, 80.0f) * std::clamp(2.0f * scene.steepAt(at), 0.25f, 1.0f); });
    scene.scatter(
        {.vecNames = {"env_rock_granite_small_01", "env_rock_granite_small_02", "env_rock_pebbles_01"},
         .iCount = 50,
         .fRadius = 0.7f,
         .fSmallest = 0.6f,
         .fLargest = 1.2f,
         .fSink = 0.1f,
         .vecColours = vecStone},
        [&](const glm::vec2& at) { return around(at, 12.5f, 60.0f); });
    const auto wooded = [&](const glm::vec2& at)
    {
        return around(at, 24.0f, 105.0f) * (scene.steepAt(at) < 0.6f ? 1.0f : 0.0f) *
               (1.0f - scene.shareOf(Snow, at)) * (1.0f - 0.8f * scene.shareOf(Rock, at));
    };
    scene.scatter(
        {.vecNames = {"env_tree_pine_01", "env_tree_pine_02", "env_tree_pine_01", "env_tree_pine_small_01"},
         .iCount = 110,
         .fRadius = 2.4f,
         .fSmallest = 0.75f,
         .fLargest = 1.15f,
         .fSink = 0.2f,
         .vecColours = {{}, {{"Leaves", "7A9463"}}, {{"Leaves", "889E62"}}}},
        wooded);
    scene.scatter({.vecNames = {"env_tree_dead_01", "env_trunk_stump_01", "env_trunk_fallen_01"},
                   .iCount = 14,
                   .fRadius = 2.0f,
                   .fSink = 0.15f},
                  wooded);
    scene.scatter({.vecNames = {"env_bush_low_01", "env_bush_round_01"},
                   .iCount = 30,
                   .fRadius = 1.3f,
                   .fSmallest = 0.6f,
                   .fSink = 0.05f,
                   .vecColours = {{{"Leaves", "8F9A56"}}, {{"Leaves", "A09E5C"}}}},
                  [&](const glm::vec2& at) { return 0.8f * wooded(at); });
}

} // namespace forge
