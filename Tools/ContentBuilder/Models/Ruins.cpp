// Ruins in parts: walls half a metre thick in steps of 4 m, whole and broken.

#include "Tools/ContentBuilder/Models/AssetModels.h"
#include "Tools/ContentBuilder/Models/Masonry.h"
#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>

namespace content
{

namespace
{

constexpr float s_fHalfDepth = 1.0f;

/// A wall along X whose parts end at the given heights, with loose stones on the broken ones.
struct BrokenWall
{
    float fLeft = -8.0f;
    float fRight = 8.0f;
    std::vector<float> vecHeights;
    uint32_t uSeed = 1;
    float fLow = -0.5f;
};

void addBrokenWall(ModelMesh& mesh, const BrokenWall& wall)
{
    Dice dice(wall.uSeed);
    const float fEach = (wall.fRight - wall.fLeft) / static_cast<float>(wall.vecHeights.size());
    for (size_t u = 0; u < wall.vecHeights.size(); ++u)
    {
        const float fX = wall.fLeft + fEach * static_cast<float>(u);
        const float fHigh = wall.vecHeights[u];
        if (fHigh <= wall.fLow)
            continue;
        addMasonry(mesh, {fX, wall.fLow, -s_fHalfDepth}, {fX + fEach, fHigh, s_fHalfDepth});
        // What is left of the next course.
        float fAt = fX + dice.roll(-0.1f, 0.2f);
        while (fAt < fX + fEach - 1.0f)
        {
            const float fWide = std::min(dice.roll(1.4f, 2.6f), fX + fEach - fAt + 0.1f);
            if (dice.roll() < 0.75f)
                addBlock(
                    mesh, {fAt, fHigh - 0.3f, -s_fHalfDepth - dice.roll(-0.25f, 0.15f)},
                    {fAt + fWide, fHigh + dice.roll(0.4f, 1.5f), s_fHalfDepth + dice.roll(-0.25f, 0.15f)},
                    wall.uSeed * 29u + static_cast<uint32_t>(fAt * 9.0f + 200.0f), 0.24f);
            fAt += fWide;
        }
    }
}

void addFallen(ModelMesh& mesh, float fLeft, float fRight, float fZ, int iCount, uint32_t uSeed)
{
    Dice dice(uSeed);
    for (int i = 0; i < iCount; ++i)
    {
        const glm::vec3 size(dice.roll(1.2f, 2.4f), dice.roll(0.9f, 1.5f), dice.roll(1.0f, 1.7f));
        Solid block = boxSolid(size, 0.24f);
        block.jitter(0.1f, uSeed + static_cast<uint32_t>(i))
            .turnX(dice.roll(-25.0f, 25.0f))
            .turnZ(dice.roll(-25.0f, 25.0f))
            .turnY(dice.roll(0.0f, 360.0f));
        block.move(dice.roll(fLeft, fRight), -0.25f, fZ * dice.roll(0.7f, 1.6f));
        mesh.add("Stone", block,
                 {.fSmooth = 30.0f, .fSoft = 0.25f, .fTile = 9.0f, .offset = {dice.roll(), dice.roll()}});
    }
}

void addMoss(ModelMesh& mesh, const glm::vec3& centre, const glm::vec3& half, uint32_t uSeed)
{
    Solid moss = ballSolid(1);
    moss.change([&](const glm::vec3& p) { return p * (1.0f + 0.25f * spaceNoise(p * 2.0f, uSeed)); });
    moss.scale(half).move(centre);
    mesh.add("Moss", moss, {.fSmooth = 180.0f, .fTile = 6.0f});
}

void makeWhole(ModelMesh& mesh)
{
    addMasonry(mesh, {-8.0f, -0.5f, -s_fHalfDepth}, {8.0f, 11.2f, s_fHalfDepth});
    addProudBlocks(mesh, {.fLow = 0.0f, .fHigh = 11.0f, .iCount = 8, .uSeed = 601});
    addCoping(mesh, -8.0f, 8.0f, 11.1f, 0.9f, 2.3f, 602);
}

void makeBroken(ModelMesh& mesh, std::vector<float> vecHeights, uint32_t uSeed)
{
    addBrokenWall(mesh, {.vecHeights = std::move(vecHeights), .uSeed = uSeed});
    addProudBlocks(mesh, {.fLow = 0.0f, .fHigh = 4.2f, .iCount = 4, .uSeed = uSeed + 1});
    addFallen(mesh, -6.0f, 6.0f, 2.6f, 5, uSeed + 2);
}

void makeCorner(ModelMesh& mesh)
{
    // Two arms from the corner at the origin along +X and +Z.
    ModelMesh arm;
    addBrokenWall(arm, {.fLeft = 0.0f, .fRight = 8.0f, .vecHeights = {10.0f, 8.0f, 4.0f}, .uSeed = 621});
    mesh.add(arm, glm::vec3(0.0f), 0.0f);
    ModelMesh other;
    addBrokenWall(other, {.fLeft = 0.0f, .fRight = 8.0f, .vecHeights = {10.0f, 6.0f, 6.0f}, .uSeed = 622});
    mesh.add(other, glm::vec3(0.0f), -90.0f);
    for (int i = 0; i < 5; ++i) // the stones of the corner itself
    {
        const float fY = -0.5f + 2.1f * static_cast<float>(i);
        const bool bLong = i % 2 == 0;
        addBlock(mesh, {-1.25f, fY, -1.25f}, {bLong ? 2.4f : 1.2f, fY + 2.05f, bLong ? 1.2f : 2.4f},
                 623u + static_cast<uint32_t>(i), 0.2f);
    }
}

void makeDoorway(ModelMesh& mesh)
{
    const ArchOpening arch{.fRadius = 3.0f, .fSpring = 5.6f, .fTop = 11.0f};
    addBrokenWall(mesh, {.fLeft = -8.0f, .fRight = -3.0f, .vecHeights = {8.0f, 11.0f}, .uSeed = 631});
    addBrokenWall(mesh, {.fLeft = 3.0f, .fRight = 8.0f, .vecHeights = {11.0f, 9.0f}, .uSeed = 632});
    addArch(mesh, arch);
    addBrokenWall(mesh,
                  {.fLeft = -3.0f, .fRight = 3.0f, .vecHeights = {11.05f}, .uSeed = 633, .fLow = 10.6f});
}

void makeWindow(ModelMesh& mesh)
{
    addBrokenWall(mesh, {.fLeft = -8.0f, .fRight = -2.2f, .vecHeights = {10.0f, 11.0f}, .uSeed = 641});
    addBrokenWall(mesh, {.fLeft = 2.2f, .fRight = 8.0f, .vecHeights = {11.0f, 8.0f}, .uSeed = 642});
    addMasonry(mesh, {-2.2f, -0.5f, -s_fHalfDepth}, {2.2f, 3.9f, s_fHalfDepth});
    addBlock(mesh, {-2.8f, 3.8f, -1.35f}, {2.8f, 4.5f, 1.35f}, 643, 0.14f);
    addArch(mesh, {.fRadius = 2.2f, .fSpring = 6.8f, .fTop = 11.0f, .fStones = 1.1f});
}

void makePillar(ModelMesh& mesh, float fHigh, bool bBroken)
{
    addBlock(mesh, {-1.9f, -0.5f, -1.9f}, {1.9f, 0.8f, 1.9f}, 651, 0.16f);
    addBlock(mesh, {-1.6f, 0.75f, -1.6f}, {1.6f, 1.5f, 1.6f}, 652, 0.2f);
    constexpr int s_iSides = 10;
    std::vector<glm::vec2> vecProfile{
        {1.35f, 1.4f}, {1.18f, 1.9f}, {1.14f, 0.4f * fHigh}, {1.16f, 0.42f * fHigh}, {1.05f, fHigh}};
    if (bBroken)
        vecProfile.emplace_back(0.0f, fHigh - 0.3f);
    Solid shaft = latheSolid(vecProfile, s_iSides, 8.0f);
    if (bBroken)
        for (size_t u = 4 * s_iSides; u < shaft.vecPoints.size(); ++u)
            shaft.vecPoints[u].y += 1.5f * spaceNoise(shaft.vecPoints[u] * 0.9f, 653);
    mesh.add("Stone", shaft, {.fSmooth = 45.0f});
    if (bBroken)
    {
        const std::array<glm::vec2, 5> arrDrum{
            glm::vec2(0.0f, 0.0f), {1.0f, 0.1f}, {1.06f, 0.3f}, {1.02f, 4.0f}, {0.0f, 4.2f}};
        mesh.add("Stone",
                 latheSolid(arrDrum, s_iSides, 8.0f).turnX(90.0f).turnY(35.0f).move(2.6f, 0.7f, 1.2f),
                 {.fSmooth = 45.0f});
        addFallen(mesh, -2.8f, 2.8f, 2.4f, 3, 654);
        return;
    }
    const std::array<glm::vec2, 4> arrNeck{
        glm::vec2(1.05f, fHigh - 0.1f), {1.2f, fHigh + 0.1f}, {1.55f, fHigh + 0.9f}, {1.6f, fHigh + 1.0f}};
    mesh.add("Stone", latheSolid(arrNeck, s_iSides, 8.0f), {.fSmooth = 35.0f});
    addBlock(mesh, {-1.75f, fHigh + 0.9f, -1.75f}, {1.75f, fHigh + 1.9f, 1.75f}, 655, 0.14f);
}

void makeFloor(ModelMesh& mesh)
{
    Dice dice(661);
    for (int i = 0; i < 16; ++i)
    {
        if (i == 3 || i == 10)
            continue;
        const float fX = -8.0f + 4.0f * static_cast<float>(i % 4);
        const float fZ = -8.0f + 4.0f * static_cast<float>(i / 4);
        Solid slab = boxSolid({3.86f, 0.9f, 3.86f}, 0.14f);
        slab.jitter(0.05f, 662u + static_cast<uint32_t>(i))
            .turnX(dice.roll(-1.6f, 1.6f))
            .turnZ(dice.roll(-1.6f, 1.6f));
        slab.move(fX + 2.0f, -0.5f + dice.roll(-0.12f, 0.06f), fZ + 2.0f);
        mesh.add("Stone", slab,
                 {.fSmooth = 30.0f, .fSoft = 0.25f, .fTile = 9.0f, .offset = {dice.roll(), dice.roll()}});
    }
    addMoss(mesh, {6.0f, 0.0f, -6.0f}, {2.1f, 0.3f, 2.0f}, 663);
    addMoss(mesh, {2.2f, 0.0f, 2.0f}, {2.0f, 0.32f, 1.9f}, 664);
}

void makeStairs(ModelMesh& mesh)
{
    constexpr int s_iSteps = 10;
    for (int i = 0; i < s_iSteps; ++i)
    {
        const float fZ = 8.0f - 1.6f * static_cast<float>(i + 1);
        addBlock(mesh,
                 {-3.4f + 0.02f * static_cast<float>(i % 3),
                  i < 3 ? -0.5f : 1.2f * static_cast<float>(i) - 1.0f, fZ},
                 {3.4f - 0.02f * static_cast<float>(i % 2), 1.2f * static_cast<float>(i + 1), fZ + 1.75f},
                 671u + static_cast<uint32_t>(i), 0.14f);
    }
    // The walls that carry it rise with it.
    for (const float fSide : {-1.0f, 1.0f})
        for (int i = 0; i < 4; ++i)
        {
            const float fBack = -8.0f + 4.0f * static_cast<float>(i);
            addMasonry(mesh, {fSide > 0 ? 3.3f : -4.5f, -0.5f, fBack},
                       {fSide > 0 ? 4.5f : -3.3f, 12.2f - 3.0f * static_cast<float>(i), fBack + 4.0f});
        }
}

void makeRubble(ModelMesh& mesh)
{
    Dice dice(681);
    for (int i = 0; i < 15; ++i)
    {
        const float fAngle = 2.4f * static_cast<float>(i);
        const float fAway = 1.15f * std::sqrt(static_cast<float>(i));
        const glm::vec3 size(dice.roll(1.3f, 2.8f), dice.roll(0.9f, 1.6f), dice.roll(1.1f, 2.0f));
        Solid block = boxSolid(size, 0.26f);
        block.jitter(0.12f, 682u + static_cast<uint32_t>(i))
            .turnX(dice.roll(-40.0f, 40.0f))
            .turnZ(dice.roll(-40.0f, 40.0f))
            .turnY(dice.roll(0.0f, 360.0f));
        block.move(std::cos(fAngle) * fAway, std::max(1.7f - 0.5f * fAway, -0.3f), std::sin(fAngle) * fAway);
        mesh.add("Stone", block,
                 {.fSmooth = 30.0f, .fSoft = 0.25f, .fTile = 9.0f, .offset = {dice.roll(), dice.roll()}});
    }
    addMoss(mesh, {0.2f, 0.5f, 0.2f}, {2.9f, 1.1f, 2.6f}, 683);
}

} // namespace

std::vector<AssetModel> ruinModels()
{
    return {
        {"env_ruin_wall_4m_01", &makeWhole, {}},
        {"env_ruin_wall_broken_01",
         [](ModelMesh& mesh) {
             makeBroken(mesh, {10.0f, 8.0f, 4.0f, 2.0f, 6.0f}, 611);
         },
         {}},
        {"env_ruin_wall_broken_02",
         [](ModelMesh& mesh) {
             makeBroken(mesh, {4.0f, 2.0f, 0.0f, 2.0f, 8.0f}, 615);
         },
         {}},
        {"env_ruin_corner_01", &makeCorner, {}},
        {"env_ruin_wall_door_01", &makeDoorway, {}},
        {"env_ruin_wall_window_01", &makeWindow, {}},
        {"env_ruin_pillar_01", [](ModelMesh& mesh) { makePillar(mesh, 13.0f, false); }, {}},
        {"env_ruin_pillar_broken_01", [](ModelMesh& mesh) { makePillar(mesh, 7.0f, true); }, {}},
        {"env_ruin_floor_4m_01", &makeFloor, {}},
        {"env_ruin_stairs_01", &makeStairs, {}},
        {"env_ruin_rubble_01", &makeRubble, {}},
    };
}

} // namespace content
