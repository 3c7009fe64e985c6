#include "Tools/ContentBuilder/Models/Masonry.h"

#include "Tools/ContentBuilder/Noise.h"

#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace content
{

void addBlock(ModelMesh& mesh, const glm::vec3& lowest, const glm::vec3& highest, uint32_t uSeed, float fWear)
{
    const glm::vec3 size = highest - lowest;
    Solid block = boxSolid(size, fWear);
    block.jitter(0.35f * fWear, uSeed);
    block.move(0.5f * (lowest.x + highest.x), lowest.y, 0.5f * (lowest.z + highest.z));
    mesh.add(
        "Stone", block,
        {.fSmooth = 30.0f, .fSoft = 0.25f, .fTile = 9.0f, .offset = {hash(1, 1, uSeed), hash(2, 1, uSeed)}});
}

void addMasonry(ModelMesh& mesh, const glm::vec3& lowest, const glm::vec3& highest)
{
    Solid part = boxSolid(highest - lowest);
    part.move(0.5f * (lowest.x + highest.x), lowest.y, 0.5f * (lowest.z + highest.z));
    mesh.add("Masonry", part, {.fTile = 8.0f});
}

void addProudBlocks(ModelMesh& mesh, const ProudBlocks& blocks)
{
    Dice dice(blocks.uSeed);
    for (int i = 0; i < blocks.iCount; ++i)
    {
        const float fWide = dice.roll(2.0f, 3.6f);
        const float fHigh = 1.9f;
        const float t = (static_cast<float>(i) + dice.roll(0.1f, 0.9f)) / static_cast<float>(blocks.iCount);
        const float fX = blend(blocks.fLeft, blocks.fRight - fWide, t);
        const float fCourse = std::floor(dice.roll(blocks.fLow, blocks.fHigh - fHigh) * 0.5f) * 2.0f + 0.05f;
        const float fOut = dice.roll(0.12f, 0.3f);
        addBlock(mesh, {fX, fCourse, -0.5f * blocks.fDepth - fOut},
                 {fX + fWide, fCourse + fHigh, 0.5f * blocks.fDepth + dice.roll(0.12f, 0.3f)},
                 blocks.uSeed * 19u + static_cast<uint32_t>(i), 0.2f);
    }
}

void addCoping(ModelMesh& mesh, float fLeft, float fRight, float fY, float fHigh, float fDepth,
               uint32_t uSeed)
{
    Dice dice(uSeed);
    const int iCount = std::max(1, static_cast<int>(std::lround((fRight - fLeft) / 3.3f)));
    float fX = fLeft;
    for (int i = 0; i < iCount; ++i)
    {
        const float fNext = i + 1 == iCount
                                ? fRight
                                : fLeft + (fRight - fLeft) *
                                              (static_cast<float>(i + 1) + dice.roll(-0.15f, 0.15f)) /
                                              static_cast<float>(iCount);
        addBlock(mesh, {fX, fY, -0.5f * fDepth},
                 {fNext - 0.04f, fY + fHigh + dice.roll(-0.06f, 0.06f), 0.5f * fDepth},
                 uSeed * 7u + static_cast<uint32_t>(i), 0.16f);
        fX = fNext;
    }
}

void addArch(ModelMesh& mesh, const ArchOpening& arch)
{
    constexpr int s_iParts = 9;
    const auto edge = [&](int i)
    {
        const float fAngle = 3.1415927f * static_cast<float>(i) / s_iParts;
        return glm::vec2(-std::cos(fAngle), std::sin(fAngle) * arch.fRise);
    };
    for (int i = 0; i < s_iParts; ++i)
    {
        const glm::vec2 at(arch.fCentre, arch.fSpring);
        const glm::vec2 a = at + edge(i) * arch.fRadius;
        const glm::vec2 b = at + edge(i + 1) * arch.fRadius;
        const std::array arrFill{a, b, glm::vec2(b.x, arch.fTop), glm::vec2(a.x, arch.fTop)};
        mesh.add("Masonry", extrudedSolid(arrFill, arch.fDepth), {.fTile = 8.0f});
        const float fReach = arch.fRadius + arch.fStones * (i % 2 == 0 ? 1.0f : 0.86f);
        const glm::vec2 c = at + edge(i) * fReach;
        const glm::vec2 d = at + edge(i + 1) * fReach;
        const float fIn = 0.985f;
        const std::array arrStone{at + (a - at) * fIn, at + (b - at) * fIn, d, c};
        mesh.add("Stone", extrudedSolid(arrStone, arch.fDepth + (i % 2 == 0 ? 0.5f : 0.36f)),
                 {.fTile = 9.0f, .offset = {hash(i, 1, 77), hash(i, 2, 77)}});
    }
}

void addTimber(ModelMesh& mesh, const glm::vec3& from, const glm::vec3& to, float fWide, float fHigh,
               uint32_t uSeed, const char* pMaterial, const glm::vec3& up, float fBevel)
{
    mesh.add(pMaterial, barSolid(from, to,
                                 {.fWide = fWide,
                                  .fHigh = fHigh,
                                  .fBevel = fBevel,
                                  .fCrooked = fBevel * 0.5f,
                                  .uSeed = uSeed,
                                  .up = up}));
}

void addBoards(ModelMesh& mesh, const Boards& boards)
{
    Dice dice(boards.uSeed);
    const float fFrom = boards.bAlongX ? boards.fBack : boards.fLeft;
    const float fTo = boards.bAlongX ? boards.fFront : boards.fRight;
    const float fWide = (fTo - fFrom) / static_cast<float>(boards.iCount);
    for (int i = 0; i < boards.iCount; ++i)
    {
        const float fMiddle = fFrom + fWide * (static_cast<float>(i) + 0.5f);
        const float fY = boards.fTop - 0.5f * boards.fThick + dice.roll(-0.08f, 0.0f);
        const float fShort = dice.roll(0.0f, 0.12f);
        const glm::vec3 from = boards.bAlongX ? glm::vec3(boards.fLeft + fShort, fY, fMiddle)
                                              : glm::vec3(fMiddle, fY, boards.fBack + fShort);
        const glm::vec3 to = boards.bAlongX ? glm::vec3(boards.fRight - fShort, fY, fMiddle)
                                            : glm::vec3(fMiddle, fY, boards.fFront - fShort);
        mesh.add(boards.pMaterial, barSolid(from, to,
                                            {.fWide = fWide * 0.94f,
                                             .fHigh = boards.fThick,
                                             .fCrooked = 0.05f,
                                             .uSeed = boards.uSeed * 23u + static_cast<uint32_t>(i)}));
    }
}

} // namespace content
