// Fences of planks, rails, wattle and stone, in lengths of 2 m and 4 m; 1.2 m high.

#include "Tools/ContentBuilder/Models/AssetModels.h"

#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>

namespace content
{

namespace
{

constexpr float s_fHigh = 4.8f;

void addPost(ModelMesh& mesh, float fX, float fZ, float fHigh, float fSide, uint32_t uSeed)
{
    mesh.add("Wood",
             barSolid({fX, -0.6f, fZ}, {fX + 0.1f * (hash(1, 1, uSeed) - 0.5f), fHigh, fZ},
                      {.fWide = fSide, .fHigh = fSide, .fBevel = 0.14f, .fCrooked = 0.1f, .uSeed = uSeed}));
}

void makePost(ModelMesh& mesh)
{
    addPost(mesh, 0.0f, 0.0f, s_fHigh, 0.7f, 107);
    mesh.add("Trim", boxSolid({1.0f, 0.28f, 1.0f}, 0.1f).move(0.0f, s_fHigh - 0.06f, 0.0f));
}

/// Upright boards on two rails. Missing boards are those whose bit is set.
void makePlankFence(ModelMesh& mesh, float fLength, uint32_t uSeed, bool bPointed, uint32_t uMissing = 0)
{
    const float fHalf = 0.5f * fLength;
    addPost(mesh, -fHalf, 0.0f, s_fHigh + 0.3f, 0.62f, uSeed);
    addPost(mesh, fHalf, 0.0f, s_fHigh + 0.2f, 0.62f, uSeed + 1);
    for (const float fY : {1.2f, 3.5f})
        mesh.add("Wood", barSolid({-fHalf, fY, 0.0f}, {fHalf, fY + 0.1f, 0.0f},
                                  {.fWide = 0.5f,
                                   .fHigh = 0.26f,
                                   .fBevel = 0.05f,
                                   .uSeed = uSeed + 7,
                                   .up = {0.0f, 0.0f, 1.0f}}));
    const int iBoards = static_cast<int>(fLength / 1.05f);
    for (int i = 0; i < iBoards; ++i)
    {
        if (uMissing >> i & 1u)
            continue;
        Dice dice(uSeed * 17u + static_cast<uint32_t>(i));
        const float fX = -fHalf + fLength * (static_cast<float>(i) + 0.5f) / static_cast<float>(iBoards);
        const float fTop = s_fHigh + dice.roll(-0.35f, 0.15f);
        const float fWide = fLength / static_cast<float>(iBoards) * 0.84f;
        const float fSkew = dice.roll(-0.08f, 0.08f);
        if (bPointed)
        {
            const std::array<glm::vec2, 5> arrOutline{glm::vec2(-0.5f * fWide, 0.25f),
                                                      {0.5f * fWide, 0.25f},
                                                      {0.5f * fWide, fTop - 0.6f},
                                                      {0.0f, fTop},
                                                      {-0.5f * fWide, fTop - 0.6f}};
            Solid board = extrudedSolid(arrOutline, 0.2f);
            board.mapBox(6.0f, {dice.roll(), dice.roll()});
            mesh.add("Trim", board.move(fX, 0.0f, 0.26f));
        }
        else
            mesh.add("Trim", barSolid({fX, 0.2f, 0.28f}, {fX + fSkew, fTop, 0.28f},
                                      {.fWide = fWide,
                                       .fHigh = 0.22f,
                                       .fCrooked = 0.12f,
                                       .uSeed = uSeed * 31u + static_cast<uint32_t>(i),
                                       .up = {0.0f, 0.0f, 1.0f}}));
    }
}

void makeRailFence(ModelMesh& mesh)
{
    for (int i = 0; i < 3; ++i)
        addPost(mesh, -8.0f + 8.0f * static_cast<float>(i), 0.0f, s_fHigh, 0.7f,
                201u + static_cast<uint32_t>(i));
    for (int i = 0; i < 2; ++i)
        for (int iRail = 0; iRail < 2; ++iRail)
        {
            const float fX = -8.0f + 8.0f * static_cast<float>(i);
            const float fY = 1.9f + 1.9f * static_cast<float>(iRail);
            Dice dice(210u + static_cast<uint32_t>(i * 2 + iRail));
            addLog(mesh, {fX - 0.3f, fY + dice.roll(-0.15f, 0.15f), 0.42f * (i == 0 ? 1.0f : -1.0f) * 0.4f},
                   {fX + 8.3f, fY + dice.roll(-0.15f, 0.15f), 0.12f}, 0.27f,
                   220u + static_cast<uint32_t>(i * 2 + iRail), 6);
        }
}

/// Rods woven around stakes.
void makeWattle(ModelMesh& mesh)
{
    constexpr int s_iStakes = 6;
    for (int i = 0; i < s_iStakes; ++i)
    {
        const float fX = -4.0f + 8.0f * static_cast<float>(i) / (s_iStakes - 1);
        const std::array arrPath{glm::vec3(fX, -0.5f, 0.0f),
                                 glm::vec3(fX, 4.2f + 0.7f * hash(i, 1, 231), 0.0f)};
        const std::array arrRadii{0.2f, 0.16f};
        mesh.add("Wood", tubeSolid(arrPath, arrRadii, 6), {.fSmooth = 70.0f});
    }
    for (int iRow = 0; iRow < 9; ++iRow)
    {
        std::vector<glm::vec3> vecPath;
        std::vector<float> vecRadii;
        const float fY = 0.35f + 0.44f * static_cast<float>(iRow);
        for (int i = 0; i < s_iStakes; ++i)
        {
            const float fSide = (i + iRow) % 2 == 0 ? 0.3f : -0.3f;
            const float fX = -4.0f + 8.0f * static_cast<float>(i) / (s_iStakes - 1);
            vecPath.emplace_back(i == 0               ? fX - 0.35f
                                 : i + 1 == s_iStakes ? fX + 0.35f
                                                      : fX,
                                 fY + 0.12f * (hash(i, iRow, 232) - 0.5f), fSide);
            vecRadii.push_back(0.22f);
        }
        mesh.add("Bark", tubeSolid(vecPath, vecRadii, 5, 4.0f), {.fSmooth = 75.0f});
    }
}

void makeGate(ModelMesh& mesh)
{
    addPost(mesh, -4.0f, 0.0f, 6.0f, 0.9f, 241);
    addPost(mesh, 4.0f, 0.0f, 6.0f, 0.9f, 242);
    const auto bar = [&](const glm::vec3& from, const glm::vec3& to, float fWide, uint32_t uSeed)
    {
        mesh.add("Trim", barSolid(from, to,
                                  {.fWide = fWide,
                                   .fHigh = 0.24f,
                                   .fBevel = 0.04f,
                                   .fCrooked = 0.05f,
                                   .uSeed = uSeed,
                                   .up = {0.0f, 0.0f, 1.0f}}));
    };
    for (int i = 0; i < 4; ++i)
    {
        const float fY = 0.9f + 1.15f * static_cast<float>(i);
        bar({-3.5f, fY, 0.0f}, {3.5f, fY, 0.0f}, 0.5f, 243u + static_cast<uint32_t>(i));
    }
    bar({-3.25f, 0.5f, 0.2f}, {-3.25f, 4.8f, 0.2f}, 0.55f, 248);
    bar({3.25f, 0.5f, 0.2f}, {3.25f, 4.8f, 0.2f}, 0.55f, 249);
    bar({-3.1f, 0.9f, 0.21f}, {3.1f, 4.3f, 0.21f}, 0.5f, 250);
    for (const float fY : {1.4f, 4.0f}) // hinges
        mesh.add("Metal", boxSolid({1.5f, 0.3f, 0.12f}, 0.03f).move(-3.2f, fY, 0.36f));
}

/// A wall of fieldstones laid dry.
void makeStoneFence(ModelMesh& mesh, float fLength, uint32_t uSeed)
{
    Dice dice(uSeed);
    for (int iCourse = 0; iCourse < 3; ++iCourse)
    {
        const float fHigh = iCourse == 2 ? 1.15f : 1.55f;
        const float fY = iCourse == 0 ? -0.15f : iCourse == 1 ? 1.3f : 2.75f;
        const float fDeep = 2.5f - 0.35f * static_cast<float>(iCourse);
        float fX = -0.5f * fLength;
        while (fX < 0.5f * fLength - 0.2f)
        {
            float fWide = dice.roll(1.7f, 3.0f);
            if (fX + fWide > 0.5f * fLength - 0.9f)
                fWide = 0.5f * fLength - fX;
            Solid stone = ballSolid(1);
            stone.change([](const glm::vec3& p) { return p * 1.35f; });
            cutFlat(stone, 14, 0.78f, 1.0f,
                    uSeed * 11u + static_cast<uint32_t>(fX * 7.0f) + 3u * static_cast<uint32_t>(iCourse));
            stone.change([](const glm::vec3& p)
                         { return glm::clamp(p, glm::vec3(-0.86f), glm::vec3(0.86f)); });
            stone.fit({fX - 0.06f, fY, -0.5f * fDeep},
                      {fX + fWide + 0.06f, fY + fHigh + dice.roll(0.0f, 0.12f), 0.5f * fDeep});
            mesh.add("Stone", stone,
                     {.fSmooth = 28.0f, .fSoft = 0.3f, .fTile = 9.0f, .offset = {dice.roll(), dice.roll()}});
            fX += fWide;
        }
    }
    // Flat stones lie on top.
    float fX = -0.5f * fLength;
    while (fX < 0.5f * fLength - 0.2f)
    {
        float fWide = dice.roll(2.0f, 3.2f);
        if (fX + fWide > 0.5f * fLength - 1.0f)
            fWide = 0.5f * fLength - fX;
        Solid cap = boxSolid({fWide - 0.08f, 0.75f, 2.2f}, 0.16f);
        cap.jitter(0.08f, uSeed + static_cast<uint32_t>(fX * 5.0f + 100.0f))
            .move(fX + 0.5f * fWide, 3.95f, dice.roll(-0.1f, 0.1f));
        mesh.add("Stone", cap, {.fSmooth = 30.0f, .fSoft = 0.3f, .offset = {dice.roll(), dice.roll()}});
        fX += fWide;
    }
}

} // namespace

std::vector<AssetModel> fenceModels()
{
    return {
        {"env_fence_plank_2m_01", [](ModelMesh& mesh) { makePlankFence(mesh, 8.0f, 101, false); }, {}},
        {"env_fence_plank_4m_01", [](ModelMesh& mesh) { makePlankFence(mesh, 16.0f, 102, false); }, {}},
        {"env_fence_plank_broken_01",
         [](ModelMesh& mesh) { makePlankFence(mesh, 8.0f, 103, false, 0b0101100); },
         {{"Wood", "9A8C7A"}, {"Trim", "8C8071"}}},
        {"env_fence_picket_2m_01",
         [](ModelMesh& mesh) { makePlankFence(mesh, 8.0f, 104, true); },
         {{"Trim", "DAD6CA"}, {"Wood", "C9C4B6"}}},
        {"env_fence_rail_4m_01", &makeRailFence, {}},
        {"env_fence_wattle_2m_01", &makeWattle, {{"Bark", "A38A6A"}}},
        {"env_fence_gate_2m_01", &makeGate, {}},
        {"env_fence_stone_4m_01", [](ModelMesh& mesh) { makeStoneFence(mesh, 16.0f, 105); }, {}},
        {"env_fence_stone_2m_01", [](ModelMesh& mesh) { makeStoneFence(mesh, 8.0f, 106); }, {}},
        {"env_fence_post_01", &makePost, {}},
    };
}

} // namespace content
