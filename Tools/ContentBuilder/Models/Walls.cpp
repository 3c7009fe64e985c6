// Walls and floor tiles in steps of 2 m and 4 m; walls are 3 m high and half a metre thick.

#include "Tools/ContentBuilder/Models/AssetModels.h"
#include "Tools/ContentBuilder/Models/Masonry.h"
#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>

namespace content
{

namespace
{

constexpr float s_fHigh = 12.0f;
constexpr float s_fDepth = 2.0f;

/// Masonry between a foot that reaches out and a row of coping stones.
void makeStoneWall(ModelMesh& mesh, float fLength, uint32_t uSeed)
{
    const float fHalf = 0.5f * fLength;
    addMasonry(mesh, {-fHalf, -0.5f, -0.5f * s_fDepth}, {fHalf, s_fHigh - 0.7f, 0.5f * s_fDepth});
    addMasonry(mesh, {-fHalf, -0.6f, -0.5f * s_fDepth - 0.35f}, {fHalf, 1.4f, 0.5f * s_fDepth + 0.35f});
    addProudBlocks(mesh, {.fLeft = -fHalf,
                          .fRight = fHalf,
                          .fLow = 2.0f,
                          .fHigh = 10.5f,
                          .iCount = static_cast<int>(fLength / 2.6f),
                          .uSeed = uSeed});
    addCoping(mesh, -fHalf, fHalf, s_fHigh - 0.7f, 0.9f, s_fDepth + 0.7f, uSeed + 1);
}

void makeWallPillar(ModelMesh& mesh)
{
    addMasonry(mesh, {-1.5f, -0.5f, -1.5f}, {1.5f, s_fHigh + 0.4f, 1.5f});
    addBlock(mesh, {-1.9f, -0.6f, -1.9f}, {1.9f, 1.6f, 1.9f}, 311, 0.2f);
    addBlock(mesh, {-1.95f, s_fHigh + 0.4f, -1.95f}, {1.95f, s_fHigh + 1.3f, 1.95f}, 312, 0.2f);
    Solid top = ballSolid(1);
    top.change([](const glm::vec3& p) { return glm::vec3(p.x, std::max(p.y, -0.6f), p.z); });
    top.scale(glm::vec3(1.25f)).move(0.0f, s_fHigh + 2.0f, 0.0f);
    mesh.add("Stone", top, {.fSmooth = 60.0f, .fTile = 9.0f});
    Dice dice(313);
    for (int i = 0; i < 5; ++i)
    {
        const float fY = 1.6f + 2.0f * static_cast<float>(i);
        const float fOut = 1.62f + dice.roll(0.0f, 0.12f);
        addBlock(mesh, {i % 2 == 0 ? -fOut : 0.2f, fY, -fOut}, {i % 2 == 0 ? 0.1f : fOut, fY + 1.9f, fOut},
                 314u + static_cast<uint32_t>(i), 0.18f);
    }
}

void makeGateWall(ModelMesh& mesh)
{
    const ArchOpening arch{.fRadius = 4.2f, .fSpring = 6.4f, .fTop = s_fHigh - 0.1f};
    addMasonry(mesh, {-8.0f, -0.5f, -1.0f}, {-arch.fRadius, s_fHigh - 0.1f, 1.0f});
    addMasonry(mesh, {arch.fRadius, -0.5f, -1.0f}, {8.0f, s_fHigh - 0.1f, 1.0f});
    addArch(mesh, arch);
    for (const float fSide : {-1.0f, 1.0f}) // the stones of its sides
        for (int i = 0; i < 4; ++i)
        {
            const float fY = -0.4f + 1.7f * static_cast<float>(i);
            const float fReach = i % 2 == 0 ? 1.7f : 1.1f;
            const float fNear = arch.fRadius - 0.08f;
            addBlock(mesh, {fSide > 0.0f ? fNear : -fNear - fReach, fY, -1.26f},
                     {fSide > 0.0f ? fNear + fReach : -fNear, fY + 1.62f, 1.26f},
                     331u + static_cast<uint32_t>(i) + (fSide > 0.0f ? 10u : 0u), 0.14f);
        }
    addCoping(mesh, -8.0f, 8.0f, s_fHigh - 0.1f, 0.9f, s_fDepth + 0.7f, 345);
}

/// Pointed logs side by side, bound by two rails on the inner side.
void makePalisade(ModelMesh& mesh)
{
    constexpr int s_iLogs = 11;
    Dice dice(351);
    for (int i = 0; i < s_iLogs; ++i)
    {
        const float fX = -8.0f + 16.0f * (static_cast<float>(i) + 0.5f) / s_iLogs;
        const float fTop = s_fHigh + dice.roll(-0.9f, 0.7f);
        const float fRadius = 0.76f * dice.roll(0.92f, 1.06f);
        const std::array arrPath{glm::vec3(fX, -0.8f, 0.0f),
                                 glm::vec3(fX + dice.roll(-0.1f, 0.1f), fTop - 1.7f, 0.0f)};
        const std::array arrRadii{fRadius * 1.05f, fRadius * 0.97f};
        mesh.add("Bark", tubeSolid(arrPath, arrRadii, 7, 6.0f), {.fSmooth = 75.0f});
        const std::array<glm::vec2, 2> arrTip{glm::vec2(fRadius * 0.97f, 0.0f), {0.0f, 1.7f}};
        mesh.add("Wood", latheSolid(arrTip, 7, 4.0f).move(arrPath[1]), {.fSmooth = 60.0f});
    }
    for (const float fY : {3.0f, 8.4f})
        addTimber(mesh, {-8.0f, fY, -0.95f}, {8.0f, fY + 0.1f, -0.95f}, 0.8f, 0.5f, 352);
}

/// Slabs of unequal sizes with joints between; whole tiles fit together.
void makeFlagstones(ModelMesh& mesh)
{
    const std::array<std::array<float, 4>, 9> arrSlabs = {{{-4.0f, -4.0f, -0.9f, -1.6f},
                                                           {-0.9f, -4.0f, 1.9f, -2.1f},
                                                           {1.9f, -4.0f, 4.0f, -1.2f},
                                                           {-4.0f, -1.6f, -1.7f, 1.3f},
                                                           {-1.7f, -1.6f, -0.9f + 0.0f, 1.3f},
                                                           {-0.9f, -2.1f, 1.9f, 1.3f},
                                                           {1.9f, -1.2f, 4.0f, 1.9f},
                                                           {-4.0f, 1.3f, 0.4f, 4.0f},
                                                           {0.4f, 1.9f, 4.0f, 4.0f}}};
    Dice dice(361);
    for (size_t u = 0; u < arrSlabs.size(); ++u)
    {
        const auto& slab = arrSlabs[u];
        const float fTop = 0.42f + dice.roll(-0.07f, 0.07f);
        addBlock(mesh, {slab[0] + 0.07f, -0.6f, slab[1] + 0.07f}, {slab[2] - 0.07f, fTop, slab[3] - 0.07f},
                 362u + static_cast<uint32_t>(u), 0.12f);
    }
    addBlock(mesh, {0.47f, -0.6f, 1.37f}, {1.83f, 0.36f, 1.83f}, 380, 0.1f);
}

void makeCobbles(ModelMesh& mesh)
{
    Dice dice(381);
    for (int iRow = 0; iRow < 5; ++iRow)
        for (int i = 0; i < 5; ++i)
        {
            const float fX = -3.2f + 1.6f * static_cast<float>(i) + (iRow % 2 == 0 ? 0.2f : -0.2f);
            const float fZ = -3.2f + 1.6f * static_cast<float>(iRow);
            Solid stone = ballSolid(1);
            stone.change([](const glm::vec3& p)
                         { return glm::clamp(p * 1.25f, glm::vec3(-0.9f), glm::vec3(0.9f)); });
            const float fTop = dice.roll(0.3f, 0.46f);
            stone.fit({fX - dice.roll(0.72f, 0.8f), -0.5f, fZ - dice.roll(0.7f, 0.8f)},
                      {fX + dice.roll(0.72f, 0.8f), fTop, fZ + dice.roll(0.7f, 0.8f)});
            std::erase_if(stone.vecFaces,
                          [&](const Solid::Face& face) { return stone.faceNormal(face).y < 0.0f; });
            mesh.add("Stone", stone, {.fSmooth = 60.0f, .fTile = 7.0f, .offset = {dice.roll(), dice.roll()}});
        }
}

void makePlankFloor(ModelMesh& mesh, float fSide, uint32_t uSeed)
{
    const float fHalf = 0.5f * fSide;
    addBoards(mesh, {.fLeft = -fHalf,
                     .fRight = fHalf,
                     .fBack = -fHalf,
                     .fFront = fHalf,
                     .fTop = 1.0f,
                     .iCount = static_cast<int>(fSide / 1.6f),
                     .uSeed = uSeed});
    for (const float t : {-0.8f, 0.0f, 0.8f})
        addTimber(mesh, {-fHalf + 0.1f, 0.33f, t * fHalf}, {fHalf - 0.1f, 0.33f, t * fHalf}, 0.6f, 0.62f,
                  uSeed + 5, "Trim", {0.0f, 1.0f, 0.0f}, 0.0f);
}

} // namespace

std::vector<AssetModel> wallModels()
{
    return {
        {"env_wall_stone_4m_01", [](ModelMesh& mesh) { makeStoneWall(mesh, 16.0f, 301); }, {}},
        {"env_wall_stone_2m_01", [](ModelMesh& mesh) { makeStoneWall(mesh, 8.0f, 302); }, {}},
        {"env_wall_stone_pillar_01", &makeWallPillar, {}},
        {"env_wall_stone_gate_4m_01", &makeGateWall, {}},
        {"env_wall_palisade_4m_01", &makePalisade, {}},
        {"env_floor_flagstone_2m_01", &makeFlagstones, {}},
        {"env_floor_cobble_2m_01", &makeCobbles, {{"Stone", "ABA79C"}}},
        {"env_floor_plank_2m_01", [](ModelMesh& mesh) { makePlankFloor(mesh, 8.0f, 391); }, {}},
        {"env_floor_plank_4m_01", [](ModelMesh& mesh) { makePlankFloor(mesh, 16.0f, 392); }, {}},
    };
}

} // namespace content
