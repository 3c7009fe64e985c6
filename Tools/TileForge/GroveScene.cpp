// A grove on the plateau over the coast, and the cliffs that carry it.

#include "Tools/TileForge/Noise.h"
#include "Tools/TileForge/Scene.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>

namespace forge
{

namespace
{

/// Where the slope of the coast is steepest on a line across it; metres from the west.
float cliffAt(const Scene& scene, float fY)
{
    float fBest = 0.0f;
    float fFound = 0.0f;
    for (float fX = 60.0f; fX < 200.0f; fX += 1.0f)
    {
        const float fRise = scene.heightAt({fX + 5.0f, fY}) - scene.heightAt({fX - 5.0f, fY});
        if (fRise > fBest)
        {
            fBest = fRise;
            fFound = fX;
        }
    }
    return fFound;
}

} // namespace

void furnishGrove(Scene& scene)
{
    // Cliffs stand along the edge with their backs in the slope.
    const std::vector<std::string> vecCliffs{"env_cliff_wall_01", "env_cliff_wall_02", "env_cliff_corner_01",
                                             "env_cliff_wall_01"};
    int iCliff = 0;
    for (float fY = 70.0f; fY < 190.0f; fY += 10.5f)
    {
        const float fX = cliffAt(scene, fY);
        const glm::vec2 slope = glm::vec2(cliffAt(scene, fY + 6.0f) - cliffAt(scene, fY - 6.0f), 12.0f);
        const glm::vec2 out = glm::normalize(glm::vec2(-slope.y, slope.x));
        const glm::vec2 at = glm::vec2(fX, fY) + out * 3.0f;
        // The front looks along -Y at 0 degrees.
        const float fDegrees = glm::degrees(std::atan2(out.y, out.x)) + 90.0f;
        scene.place(vecCliffs[static_cast<size_t>(iCliff++) % vecCliffs.size()], at,
                    fDegrees + scene.roll(-8.0f, 8.0f),
                    {.fUp = -2.2f, .fScale = scene.roll(0.85f, 1.05f), .mapColours = {{"Rock", "A8A091"}}});
        scene.reserve(at, 5.0f);
        const glm::vec2 below = at + out * scene.roll(8.0f, 11.0f) + glm::vec2(0.0f, scene.roll(-4.0f, 4.0f));
        scene.place(iCliff % 2 == 0 ? "env_rock_granite_large_01" : "env_cliff_ledge_01", below,
                    scene.roll(0.0f, 360.0f),
                    {.fUp = -0.8f - scene.sinkAt(below, 2.0f),
                     .fScale = scene.roll(0.7f, 1.0f),
                     .mapColours = {{"Rock", "A8A091"}}});
        scene.reserve(below, 4.0f);
    }
    const glm::vec2 heart(cliffAt(scene, 128.0f) + 34.0f, 128.0f);

    // A clearing with a spring stone in the middle of the grove.
    scene.cover(heart, 6.0f, ForestFloor, 0.7f);
    for (int i = 0; i < 9; ++i)
    {
        const float fAngle = 0.698f * static_cast<float>(i);
        const glm::vec2 at = heart + 4.6f * glm::vec2(std::cos(fAngle), std::sin(fAngle));
        scene.place(i % 3 == 0 ? "env_rock_spire_01" : "env_rock_granite_medium_02", at,
                    scene.roll(0.0f, 360.0f),
                    {.fUp = -0.3f, .fScale = i % 3 == 0 ? 0.42f : scene.roll(0.7f, 1.0f), .mapColours = {}});
    }
    scene.place("env_rock_slab_01", heart, 20.0f, {.fUp = -0.1f, .fScale = 0.8f, .mapColours = {}});
    scene.place("env_lamp_stone_01", heart + glm::vec2(1.9f, 1.2f), 30.0f);
    scene.reserve(heart, 6.5f);

    const auto plateau = [&](const glm::vec2& at)
    {
        const float fIn = at.x - cliffAt(scene, at.y);
        const float fAway = glm::distance(at, heart);
        if (fIn < 7.0f || scene.steepAt(at) > 0.55f || fAway > 75.0f || scene.shareOf(Sand, at) > 0.25f)
            return 0.0f;
        const float fPatch = fractal(at.x / 26.0f, at.y / 26.0f, 781, {3, 2.0f, 0.5f});
        return std::clamp(1.1f - fAway / 75.0f + 0.8f * fPatch, 0.0f, 1.0f);
    };
    scene.scatter(
        {.vecNames = {"env_tree_oak_01", "env_tree_oak_02", "env_tree_birch_01", "env_tree_birch_02",
                      "env_tree_oak_01"},
         .iCount = 125,
         .fRadius = 2.7f,
         .fSmallest = 0.8f,
         .fLargest = 1.2f,
         .fSink = 0.15f,
         .vecColours = {{}, {{"Leaves", "9BB05C"}}, {{"Leaves", "ACBC68"}}, {{"Leaves", "8EA458"}}}},
        plateau);
    scene.scatter({.vecNames = {"env_tree_young_01", "env_bush_round_01", "env_bush_low_01"},
                   .iCount = 70,
                   .fRadius = 1.4f,
                   .fSmallest = 0.6f,
                   .fLargest = 1.1f,
                   .fSink = 0.05f},
                  plateau);
    scene.scatter({.vecNames = {"env_trunk_fallen_01", "env_trunk_stump_01", "env_tree_dead_01"},
                   .iCount = 18,
                   .fRadius = 2.2f,
                   .fSink = 0.1f},
                  plateau);
    scene.scatter({.vecNames = {"env_rock_granite_medium_01", "env_rock_granite_small_01",
                                "env_rock_cluster_01", "env_rock_slab_01"},
                   .iCount = 40,
                   .fRadius = 1.5f,
                   .fSmallest = 0.6f,
                   .fLargest = 1.2f,
                   .fSink = 0.2f,
                   .fFoot = 1.2f},
                  [&](const glm::vec2& at) { return 0.7f * plateau(at); });
    // Boulders and driftwood on the beach.
    const auto beach = [&](const glm::vec2& at)
    {
        const float fOut = cliffAt(scene, at.y) - at.x;
        return fOut > 12.0f && fOut < 60.0f && at.y > 60.0f && at.y < 200.0f && scene.steepAt(at) < 0.5f
                   ? 1.0f - fOut / 70.0f
                   : 0.0f;
    };
    scene.scatter(
        {.vecNames = {"env_rock_granite_medium_01", "env_rock_granite_medium_02", "env_rock_granite_small_01",
                      "env_rock_granite_small_02", "env_rock_pebbles_01"},
         .iCount = 60,
         .fRadius = 1.4f,
         .fSmallest = 0.6f,
         .fLargest = 1.6f,
         .fSink = 0.2f,
         .fFoot = 1.2f,
         .vecColours = {{{"Rock", "A8A091"}, {"Moss", "90905A"}}}},
        beach);
    scene.scatter({.vecNames = {"env_trunk_fallen_01"},
                   .iCount = 7,
                   .fRadius = 3.0f,
                   .fSink = 0.2f,
                   .vecColours = {{{"Bark", "B5AA9C"}, {"Wood", "C4B8A4"}}}},
                  beach);
}

} // namespace forge
