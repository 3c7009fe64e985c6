// Bridges in parts. Decks are 2.5 m wide and lie half a metre above the parts' feet; X runs across the water.

#include "Tools/ContentBuilder/Models/AssetModels.h"
#include "Tools/ContentBuilder/Models/Masonry.h"
#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>

namespace content
{

namespace
{

constexpr float s_fHalfWide = 5.0f;
constexpr float s_fDeck = 2.0f;

/// Posts with two rails on both sides; fRise tells how the way climbs along X.
void addRailing(ModelMesh& mesh, float fLeft, float fRight, int iPosts, float fFrom, float fTo,
                uint32_t uSeed)
{
    const auto deck = [&](float fX) { return blend(fFrom, fTo, (fX - fLeft) / (fRight - fLeft)); };
    for (const float fZ : {-s_fHalfWide + 0.35f, s_fHalfWide - 0.35f})
    {
        for (int i = 0; i < iPosts; ++i)
        {
            const float fX =
                blend(fLeft + 0.4f, fRight - 0.4f, static_cast<float>(i) / static_cast<float>(iPosts - 1));
            addTimber(mesh, {fX, deck(fX) - 0.9f, fZ}, {fX, deck(fX) + 4.2f, fZ}, 0.55f, 0.55f, uSeed++,
                      "Trim", {0, 0, 1}, 0.08f);
        }
        for (const float fUp : {2.0f, 3.8f})
            addTimber(mesh, {fLeft, fFrom + fUp, fZ + (fZ > 0 ? 0.36f : -0.36f)},
                      {fRight, fTo + fUp, fZ + (fZ > 0 ? 0.36f : -0.36f)}, 0.24f, 0.5f, uSeed++, "Wood",
                      {0, 1, 0}, 0.04f);
    }
}

/// The deck of a part of 4 m, level or climbing.
void makeWoodSpan(ModelMesh& mesh, float fFrom, float fTo, uint32_t uSeed)
{
    constexpr int s_iBoards = 12;
    for (int i = 0; i < s_iBoards; ++i)
    {
        const float t = (static_cast<float>(i) + 0.5f) / s_iBoards;
        const float fX = blend(-8.0f, 8.0f, t);
        const float fY = blend(fFrom, fTo, t) - 0.2f;
        Dice dice(uSeed * 3u + static_cast<uint32_t>(i));
        const float fLong = s_fHalfWide + dice.roll(-0.15f, 0.2f);
        mesh.add("Wood", barSolid({fX, fY, -fLong}, {fX, fY, fLong + dice.roll(-0.1f, 0.1f)},
                                  {.fWide = 1.26f,
                                   .fHigh = 0.36f,
                                   .fCrooked = 0.07f,
                                   .uSeed = uSeed * 5u + static_cast<uint32_t>(i)}));
    }
    for (const float fZ : {-3.6f, 0.0f, 3.6f})
        addTimber(mesh, {-8.0f, fFrom - 1.1f, fZ}, {8.0f, fTo - 1.1f, fZ}, 0.8f, 1.45f, uSeed + 40, "Trim",
                  {0, 1, 0}, 0.0f);
    addRailing(mesh, -8.0f, 8.0f, 4, fFrom, fTo, uSeed + 50);
}

/// Stands under the joint of two spans; its top meets their beams when it is set 3 m lower.
void makePier(ModelMesh& mesh)
{
    for (const float fZ : {-3.6f, 3.6f})
        addLog(mesh, {0.0f, -1.5f, fZ * 1.12f}, {0.0f, 12.3f, fZ}, 0.75f, fZ > 0 ? 801u : 802u, 8);
    addTimber(mesh, {0, 12.4f, -5.2f}, {0, 12.4f, 5.2f}, 1.2f, 1.0f, 803, "Trim", {0, 1, 0}, 0.1f);
    addTimber(mesh, {0.72f, 3.0f, -4.0f}, {0.72f, 10.6f, 3.6f}, 0.6f, 0.36f, 804, "Trim", {1, 0, 0}, 0.05f);
    addTimber(mesh, {-0.72f, 3.0f, 4.0f}, {-0.72f, 10.6f, -3.6f}, 0.6f, 0.36f, 805, "Trim", {1, 0, 0}, 0.05f);
}

/// A flat arch of 8 m with parapets; the way over it climbs a little to its middle.
void makeStoneSpan(ModelMesh& mesh)
{
    constexpr int s_iParts = 10;
    constexpr float s_fHalf = 16.0f;
    const auto top = [](float fX) { return s_fDeck + 2.6f * (1.0f - fX * fX / (s_fHalf * s_fHalf)); };
    const auto under = [](float fX)
    {
        const float t = fX / 12.5f;
        return t * t >= 1.0f ? -7.0f : -7.0f + 7.8f * std::sqrt(1.0f - t * t);
    };
    for (int i = 0; i < s_iParts; ++i)
    {
        const float a = blend(-s_fHalf, s_fHalf, static_cast<float>(i) / s_iParts);
        const float b = blend(-s_fHalf, s_fHalf, static_cast<float>(i + 1) / s_iParts);
        const std::array arrBody{glm::vec2(a, under(a)), glm::vec2(b, under(b)), glm::vec2(b, top(b)),
                                 glm::vec2(a, top(a))};
        mesh.add("Masonry", extrudedSolid(arrBody, 2.0f * s_fHalfWide), {.fTile = 8.0f});
        for (const float fZ : {-s_fHalfWide + 0.4f, s_fHalfWide - 0.4f})
        {
            const std::array arrWall{glm::vec2(a, top(a) - 0.2f), glm::vec2(b, top(b) - 0.2f),
                                     glm::vec2(b, top(b) + 2.6f), glm::vec2(a, top(a) + 2.6f)};
            mesh.add("Masonry", extrudedSolid(arrWall, 1.1f).move(0.0f, 0.0f, fZ), {.fTile = 8.0f});
            const std::array arrCap{glm::vec2(a + 0.05f, top(a) + 2.6f), glm::vec2(b - 0.05f, top(b) + 2.6f),
                                    glm::vec2(b - 0.05f, top(b) + 3.15f),
                                    glm::vec2(a + 0.05f, top(a) + 3.15f)};
            mesh.add("Stone", extrudedSolid(arrCap, 1.6f).move(0.0f, 0.0f, fZ),
                     {.fTile = 9.0f, .offset = {0.23f * static_cast<float>(i), 0.1f}});
        }
    }
    // The ring of the arch shows on both sides.
    constexpr int s_iStones = 13;
    for (int i = 0; i < s_iStones; ++i)
    {
        const auto edge = [](int iEdge, float fOut)
        {
            const float fAngle = 3.1415927f * static_cast<float>(iEdge) / s_iStones;
            return glm::vec2(-std::cos(fAngle) * (12.5f + fOut), -7.0f + std::sin(fAngle) * (7.8f + fOut));
        };
        const float fOut = i % 2 == 0 ? 1.5f : 1.25f;
        const std::array arrStone{edge(i, -0.12f), edge(i + 1, -0.12f), edge(i + 1, fOut), edge(i, fOut)};
        mesh.add("Stone", extrudedSolid(arrStone, 2.0f * s_fHalfWide + (i % 2 == 0 ? 0.5f : 0.36f)),
                 {.fTile = 9.0f, .offset = {0.17f * static_cast<float>(i), 0.3f}});
    }
}

/// Leads from the ground up to a stone span, between walls that end in posts.
void makeStoneEnd(ModelMesh& mesh)
{
    const std::array<glm::vec2, 4> arrBody{
        glm::vec2(-8.0f, -7.0f), {8.0f, -7.0f}, {8.0f, s_fDeck}, {-8.0f, 0.15f}};
    mesh.add("Masonry", extrudedSolid(arrBody, 2.0f * s_fHalfWide), {.fTile = 8.0f});
    for (const float fZ : {-s_fHalfWide + 0.4f, s_fHalfWide - 0.4f})
    {
        const std::array<glm::vec2, 4> arrWall{
            glm::vec2(-7.0f, 0.0f), {8.0f, s_fDeck - 0.2f}, {8.0f, s_fDeck + 2.6f}, {-7.0f, 2.7f}};
        mesh.add("Masonry", extrudedSolid(arrWall, 1.1f).move(0.0f, 0.0f, fZ), {.fTile = 8.0f});
        const std::array<glm::vec2, 4> arrCap{
            glm::vec2(-7.0f, 2.7f), {8.0f, s_fDeck + 2.6f}, {8.0f, s_fDeck + 3.15f}, {-7.0f, 3.25f}};
        mesh.add("Stone", extrudedSolid(arrCap, 1.6f).move(0.0f, 0.0f, fZ), {.fTile = 9.0f});
        addBlock(mesh, {-8.2f, -1.0f, fZ - 1.0f}, {-6.2f, 4.2f, fZ + 1.0f}, fZ > 0 ? 821u : 822u, 0.2f);
        addBlock(mesh, {-8.45f, 4.1f, fZ - 1.25f}, {-5.95f, 4.8f, fZ + 1.25f}, fZ > 0 ? 823u : 824u, 0.16f);
    }
}

/// Boards that hang from two ropes, with a rope to hold on to on each side.
void makeRopeSpan(ModelMesh& mesh)
{
    const auto sag = [](float fX) { return s_fDeck - 1.5f * (1.0f - fX * fX / 64.0f); };
    const auto rope = [&](float fZ, float fUp, float fThick)
    {
        std::vector<glm::vec3> vecPath;
        std::vector<float> vecRadii;
        for (int i = 0; i <= 6; ++i)
        {
            const float fX = -8.0f + 16.0f * static_cast<float>(i) / 6.0f;
            vecPath.emplace_back(fX, sag(fX) + fUp, fZ);
            vecRadii.push_back(fThick);
        }
        mesh.add("Cloth", tubeSolid(vecPath, vecRadii, 5, 2.0f), {.fSmooth = 80.0f});
    };
    for (const float fSide : {-1.0f, 1.0f})
    {
        rope(fSide * 2.3f, -0.35f, 0.16f);
        rope(fSide * 3.0f, 3.8f, 0.14f);
        for (int i = 0; i < 5; ++i)
        {
            const float fX = -6.4f + 3.2f * static_cast<float>(i);
            const std::array arrPath{glm::vec3(fX, sag(fX) - 0.3f, fSide * 2.3f),
                                     glm::vec3(fX, sag(fX) + 3.8f, fSide * 3.0f)};
            const std::array arrRadii{0.09f, 0.09f};
            mesh.add("Cloth", tubeSolid(arrPath, arrRadii, 4, 2.0f), {.fSmooth = 80.0f});
        }
    }
    for (int i = 0; i < 11; ++i)
    {
        Dice dice(831u + static_cast<uint32_t>(i));
        const float fX = -7.3f + 1.46f * static_cast<float>(i);
        const float fTilt = dice.roll(-0.12f, 0.12f);
        mesh.add(
            "Wood",
            barSolid(
                {fX, sag(fX) - fTilt, -2.9f + dice.roll(-0.2f, 0.2f)},
                {fX + dice.roll(-0.1f, 0.1f), sag(fX) + fTilt, 2.9f + dice.roll(-0.2f, 0.2f)},
                {.fWide = 1.1f, .fHigh = 0.3f, .fCrooked = 0.12f, .uSeed = 850u + static_cast<uint32_t>(i)}));
    }
}

void makeRopeEnd(ModelMesh& mesh)
{
    for (const float fZ : {-3.0f, 3.0f})
    {
        addLog(mesh, {0.0f, -1.5f, fZ}, {-0.3f, 7.2f, fZ}, 0.6f, fZ > 0 ? 841u : 842u, 8);
        const std::array<glm::vec2, 4> arrCoil{
            glm::vec2(0.58f, 5.4f), {0.74f, 5.5f}, {0.74f, 6.3f}, {0.58f, 6.4f}};
        mesh.add("Cloth", latheSolid(arrCoil, 8, 2.0f).move(-0.2f, 0.0f, fZ), {.fSmooth = 60.0f});
        const std::array arrStay{glm::vec3(-0.3f, 5.9f, fZ), glm::vec3(-5.0f, -0.3f, fZ * 1.3f)};
        const std::array arrRadii{0.13f, 0.13f};
        mesh.add("Cloth", tubeSolid(arrStay, arrRadii, 5, 2.0f), {.fSmooth = 80.0f});
    }
    addTimber(mesh, {0.0f, 1.3f, -3.8f}, {0.0f, 1.3f, 3.8f}, 0.9f, 0.8f, 843, "Wood", {0, 1, 0}, 0.1f);
    addBoards(mesh, {.fLeft = -4.0f,
                     .fRight = 0.6f,
                     .fBack = -2.9f,
                     .fFront = 2.9f,
                     .fTop = s_fDeck,
                     .iCount = 3,
                     .uSeed = 844});
    addTimber(mesh, {-3.4f, 0.8f, -3.0f}, {-3.4f, 0.8f, 3.0f}, 0.9f, 1.7f, 845, "Wood", {0, 1, 0}, 0.1f);
}

} // namespace

std::vector<AssetModel> bridgeModels()
{
    return {
        {"env_bridge_wood_4m_01", [](ModelMesh& mesh) { makeWoodSpan(mesh, s_fDeck, s_fDeck, 811); }, {}},
        {"env_bridge_wood_ramp_01", [](ModelMesh& mesh) { makeWoodSpan(mesh, 0.3f, s_fDeck, 812); }, {}},
        {"env_bridge_wood_pier_01", &makePier, {}},
        {"env_bridge_stone_8m_01", &makeStoneSpan, {}},
        {"env_bridge_stone_end_01", &makeStoneEnd, {}},
        {"env_bridge_rope_4m_01", &makeRopeSpan, {{"Cloth", "B8A27A"}}},
        {"env_bridge_rope_end_01", &makeRopeEnd, {{"Cloth", "B8A27A"}}},
    };
}

} // namespace content
