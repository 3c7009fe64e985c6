// Crates, barrels and what else is stored.

#include "Tools/ContentBuilder/Models/AssetModels.h"

#include "Tools/ContentBuilder/Noise.h"

#include <glm/geometric.hpp>

namespace content
{

namespace
{

/// Boards all around, held by a frame of battens; a cross on the sides of a large one.
void makeCrate(ModelMesh& mesh, const glm::vec3& size, bool bCross, bool bOpen, uint32_t uSeed)
{
    const glm::vec3 half = size * 0.5f;
    const float fBatten = 0.16f * std::min(size.x, size.y) + 0.12f;
    const float fThick = 0.22f;
    const auto bar = [&](const glm::vec3& from, const glm::vec3& to, const glm::vec3& up, uint32_t u)
    {
        mesh.add(
            "Trim",
            barSolid(
                from, to,
                {.fWide = fBatten, .fHigh = fThick, .fBevel = 0.05f, .uSeed = uSeed * 13u + u, .up = up}));
    };
    // The boards: slightly uneven slabs on each side.
    const int iBoards = size.y > 4.5f ? 4 : 3;
    for (int iSide = 0; iSide < 4; ++iSide)
    {
        const bool bAlongX = iSide % 2 == 0;
        const float fSign = iSide < 2 ? 1.0f : -1.0f;
        const float fHalfLength = (bAlongX ? half.x : half.z) - 0.05f;
        for (int i = 0; i < iBoards; ++i)
        {
            const float fHigh = size.y / static_cast<float>(iBoards);
            const float fY = fHigh * (static_cast<float>(i) + 0.5f);
            const float fOut = (bAlongX ? half.z : half.x) - 0.28f;
            const glm::vec3 out = bAlongX ? glm::vec3(0, 0, fSign) : glm::vec3(fSign, 0, 0);
            const glm::vec3 along = bAlongX ? glm::vec3(1, 0, 0) : glm::vec3(0, 0, 1);
            mesh.add("Wood", barSolid(out * fOut - along * fHalfLength + glm::vec3(0, fY, 0),
                                      out * fOut + along * fHalfLength + glm::vec3(0, fY, 0),
                                      {.fWide = fHigh * 0.95f,
                                       .fHigh = 0.2f,
                                       .fCrooked = 0.06f,
                                       .uSeed = uSeed * 7u + static_cast<uint32_t>(iSide * 8 + i),
                                       .up = out}));
        }
    }
    const int iTop = size.x > 5.0f ? 4 : 3;
    for (int i = 0; i < iTop && !bOpen; ++i)
    {
        const float fWide = (size.x - 0.3f) / static_cast<float>(iTop);
        const float fX = -half.x + 0.15f + fWide * (static_cast<float>(i) + 0.5f);
        mesh.add("Wood", barSolid({fX, size.y - 0.24f, -half.z + 0.1f}, {fX, size.y - 0.24f, half.z - 0.1f},
                                  {.fWide = fWide * 0.95f,
                                   .fHigh = 0.2f,
                                   .fCrooked = 0.05f,
                                   .uSeed = uSeed * 5u + static_cast<uint32_t>(i)}));
    }
    if (!bOpen) // what shows between the boards
        mesh.add("Trim", boxSolid(size - glm::vec3(0.76f, 0.5f, 0.76f)).move(0.0f, 0.06f, 0.0f));
    if (bOpen)
        mesh.add("Wood", boxSolid({size.x - 0.6f, 0.2f, size.z - 0.6f}).move(0.0f, 0.12f, 0.0f));
    // The frame: uprights and two rings on the outside.
    uint32_t u = 0;
    for (const float fX : {-1.0f, 1.0f})
        for (const float fZ : {-1.0f, 1.0f})
            mesh.add("Trim",
                     barSolid({fX * (half.x - 0.22f), 0.0f, fZ * (half.z - 0.22f)},
                              {fX * (half.x - 0.22f), size.y, fZ * (half.z - 0.22f)},
                              {.fWide = 0.46f, .fHigh = 0.46f, .fBevel = 0.06f, .uSeed = uSeed * 3u + u++}));
    for (const float fSign : {-1.0f, 1.0f})
    {
        for (const float fY : {0.5f * fBatten, size.y - 0.5f * fBatten})
        {
            bar({-half.x + 0.44f, fY, fSign * (half.z - 0.1f)}, {half.x - 0.44f, fY, fSign * (half.z - 0.1f)},
                {0, 0, fSign}, u++);
            bar({fSign * (half.x - 0.1f), fY, -half.z + 0.44f}, {fSign * (half.x - 0.1f), fY, half.z - 0.44f},
                {fSign, 0, 0}, u++);
        }
        if (bCross)
        {
            const float fIn = 0.5f;
            bar({-half.x + fIn, fBatten * 1.1f, fSign * (half.z - 0.13f)},
                {half.x - fIn, size.y - fBatten * 1.1f, fSign * (half.z - 0.13f)}, {0, 0, fSign}, u++);
            bar({fSign * (half.x - 0.13f), fBatten * 1.1f, half.z - fIn},
                {fSign * (half.x - 0.13f), size.y - fBatten * 1.1f, -half.z + fIn}, {fSign, 0, 0}, u++);
        }
    }
}

/// Staves and hoops; the mouth shows the lid, or the inside when it is open.
Solid barrelSide(float fHigh, float fWide, int iSides)
{
    std::vector<glm::vec2> vecProfile;
    for (int i = 0; i <= 6; ++i)
    {
        const float t = static_cast<float>(i) / 6.0f;
        vecProfile.emplace_back(fWide * (0.82f + 0.18f * std::sin(3.1415927f * t)), fHigh * t);
    }
    return latheSolid(vecProfile, iSides, 5.0f);
}

void makeBarrel(ModelMesh& mesh, float fHigh, float fWide, bool bOpen)
{
    constexpr int s_iSides = 14;
    mesh.add("Wood", barrelSide(fHigh, fWide, s_iSides), {.fSmooth = 15.0f, .fSoft = 0.35f});
    const float fRim = 0.82f * fWide;
    const float fDepth = bOpen ? fHigh * 0.8f : 0.3f;
    const std::array<glm::vec2, 4> arrTop{glm::vec2(fRim, fHigh),
                                          {fRim - 0.22f, fHigh},
                                          {fRim - 0.24f, fHigh - fDepth},
                                          {0.0f, fHigh - fDepth}};
    mesh.add("Wood", latheSolid(arrTop, s_iSides, 5.0f), {.fSmooth = 20.0f});
    for (const float t : {0.1f, 0.3f, 0.7f, 0.9f})
    {
        const auto radius = [&](float s) { return fWide * (0.82f + 0.18f * std::sin(3.1415927f * s)); };
        const float fBand = 0.26f / fHigh;
        const std::array<glm::vec2, 4> arrHoop{glm::vec2(radius(t - fBand) - 0.02f, fHigh * t - 0.26f),
                                               {radius(t - fBand) + 0.1f, fHigh * t - 0.24f},
                                               {radius(t + fBand) + 0.1f, fHigh * t + 0.24f},
                                               {radius(t + fBand) - 0.02f, fHigh * t + 0.26f}};
        mesh.add("Metal", latheSolid(arrHoop, s_iSides, 6.0f), {.fSmooth = 30.0f});
    }
}

void makeKeg(ModelMesh& mesh)
{
    // Lies on a cradle.
    ModelMesh barrel;
    constexpr int s_iSides = 12;
    const float fHigh = 4.2f;
    const float fWide = 1.55f;
    Solid side = barrelSide(fHigh, fWide, s_iSides);
    const std::array<glm::vec2, 2> arrLid{glm::vec2(0.82f * fWide, fHigh), {0.0f, fHigh - 0.05f}};
    const std::array<glm::vec2, 2> arrBottom{glm::vec2(0.0f, 0.05f), {0.82f * fWide, 0.0f}};
    const auto lie = [&](Solid solid)
    { return solid.move(0.0f, -0.5f * fHigh, 0.0f).turnX(90.0f).move(0.0f, 2.1f, 0.0f); };
    mesh.add("Wood", lie(side), {.fSmooth = 15.0f, .fSoft = 0.35f});
    mesh.add("Wood", lie(latheSolid(arrLid, s_iSides, 5.0f)));
    mesh.add("Wood", lie(latheSolid(arrBottom, s_iSides, 5.0f)));
    for (const float t : {0.12f, 0.32f, 0.68f, 0.88f})
    {
        const float fRadius = fWide * (0.82f + 0.18f * std::sin(3.1415927f * t));
        const std::array<glm::vec2, 4> arrHoop{glm::vec2(fRadius - 0.1f, fHigh * t - 0.2f),
                                               {fRadius + 0.1f, fHigh * t - 0.18f},
                                               {fRadius + 0.1f, fHigh * t + 0.18f},
                                               {fRadius - 0.1f, fHigh * t + 0.2f}};
        mesh.add("Metal", lie(latheSolid(arrHoop, s_iSides, 6.0f)), {.fSmooth = 30.0f});
    }
    for (const float fZ : {-1.2f, 1.2f})
    {
        mesh.add("Trim", boxSolid({3.0f, 0.6f, 0.5f}, 0.06f).move(0.0f, 0.0f, fZ));
        for (const float fX : {-1.25f, 1.25f})
            mesh.add("Trim", barSolid({fX, 0.3f, fZ}, {fX * 1.12f, 1.5f, fZ},
                                      {.fWide = 0.5f, .fHigh = 0.45f, .fBevel = 0.05f, .uSeed = 31}));
    }
    mesh.add("Trim", barSolid({0.0f, 1.45f, 2.0f}, {0.0f, 1.45f, 2.6f},
                              {.fWide = 0.24f, .fHigh = 0.24f, .uSeed = 33})); // the tap
}

void addSack(ModelMesh& mesh, const glm::vec3& foot, float fSize, float fTurn, uint32_t uSeed)
{
    Solid sack = ballSolid(2);
    sack.change(
        [&](const glm::vec3& p)
        {
            const float fOut = 1.0f + 0.16f * spaceNoise(p * 1.8f + 3.0f, uSeed);
            glm::vec3 q = p * fOut;
            q.y = std::max(q.y, -0.62f);
            // Drawn together at its neck.
            const float fNeck = smoothStep(0.62f, 0.86f, p.y);
            q.x *= 1.0f - 0.78f * fNeck;
            q.z *= 1.0f - 0.78f * fNeck;
            q.y += 0.22f * fNeck;
            return q;
        });
    sack.fit({-0.5f * fSize, -0.05f, -0.42f * fSize}, {0.5f * fSize, fSize * 1.05f, 0.42f * fSize})
        .turnY(fTurn)
        .move(foot);
    mesh.add("Cloth", sack, {.fSmooth = 180.0f, .fTile = 4.0f});
    const std::array<glm::vec2, 4> arrTie{
        glm::vec2(0.1f * fSize, 0.0f), {0.16f * fSize, 0.03f}, {0.16f * fSize, 0.2f}, {0.1f * fSize, 0.23f}};
    mesh.add("Trim", latheSolid(arrTie, 7).move(foot + glm::vec3(0.0f, fSize * 0.81f, 0.0f)),
             {.fSmooth = 60.0f});
}

void makeLogPile(ModelMesh& mesh)
{
    Dice dice(51);
    uint32_t u = 0;
    for (int iRow = 0; iRow < 3; ++iRow)
        for (int i = 0; i < 4 - iRow; ++i)
        {
            const float fX = 1.5f * (static_cast<float>(i) - 0.5f * static_cast<float>(3 - iRow));
            const float fOff = dice.roll(-0.3f, 0.3f);
            addLog(mesh, {fX, 0.72f + 1.28f * static_cast<float>(iRow), -4.0f + fOff},
                   {fX + dice.roll(-0.06f, 0.06f), 0.72f + 1.28f * static_cast<float>(iRow), 4.0f + fOff},
                   0.74f, 500u + u++, 8);
        }
    for (const float fZ : {-2.6f, 2.6f})
        for (const float fX : {-3.15f, 3.15f})
            mesh.add("Trim", barSolid({fX, -0.3f, fZ}, {fX * 1.02f, 2.6f, fZ},
                                      {.fWide = 0.36f, .fHigh = 0.36f, .fBevel = 0.06f, .uSeed = u++}));
}

} // namespace

std::vector<AssetModel> crateModels()
{
    return {
        {"env_crate_small_01",
         [](ModelMesh& mesh) {
             makeCrate(mesh, {3.6f, 3.2f, 3.6f}, false, false, 1);
         },
         {}},
        {"env_crate_large_01",
         [](ModelMesh& mesh) {
             makeCrate(mesh, {6.0f, 5.2f, 6.0f}, true, false, 2);
         },
         {}},
        {"env_crate_long_01",
         [](ModelMesh& mesh) {
             makeCrate(mesh, {8.0f, 3.4f, 4.0f}, false, false, 3);
         },
         {}},
        {"env_crate_open_01",
         [](ModelMesh& mesh) {
             makeCrate(mesh, {4.8f, 3.2f, 4.0f}, false, true, 4);
         },
         {}},
        {"env_barrel_01", [](ModelMesh& mesh) { makeBarrel(mesh, 4.6f, 1.75f, false); }, {}},
        {"env_barrel_open_01",
         [](ModelMesh& mesh) { makeBarrel(mesh, 4.2f, 1.7f, true); },
         {{"Wood", "9E7F60"}}},
        {"env_barrel_keg_01", &makeKeg, {}},
        {"env_sack_01",
         [](ModelMesh& mesh) {
             addSack(mesh, {0, 0, 0}, 2.6f, 20.0f, 5);
         },
         {}},
        {"env_sack_pile_01",
         [](ModelMesh& mesh)
         {
             addSack(mesh, {-1.1f, 0, 0.1f}, 2.7f, 10.0f, 6);
             addSack(mesh, {1.3f, 0, -0.3f}, 2.5f, 60.0f, 7);
             addSack(mesh, {0.3f, 0, 1.7f}, 2.2f, 130.0f, 8);
         },
         {}},
        {"env_log_pile_01", &makeLogPile, {}},
    };
}

} // namespace content
