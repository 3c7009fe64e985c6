// A hut in parts: walls of 4 m and 2 m, 3 m high, on a grid of 4 m; roof parts stand on the walls' tops.

#include "Tools/ContentBuilder/Models/AssetModels.h"
#include "Tools/ContentBuilder/Models/Masonry.h"
#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>

namespace content
{

namespace
{

constexpr float s_fHigh = 12.0f;
constexpr float s_fFoot = 1.2f;    ///< of stone
constexpr float s_fPlaster = 0.8f; ///< depths
constexpr float s_fTimber = 1.12f;
constexpr float s_fRise = 8.0f; ///< of the roof over half a module

void addPlaster(ModelMesh& mesh, float fLeft, float fRight, float fLow, float fHigh)
{
    Solid part = boxSolid({fRight - fLeft, fHigh - fLow, s_fPlaster});
    mesh.add("Plaster", part.move(0.5f * (fLeft + fRight), fLow, 0.0f), {.fTile = 10.0f});
}

void addPost(ModelMesh& mesh, float fX, float fLow, float fHigh, uint32_t uSeed)
{
    addTimber(mesh, {fX, fLow, 0.0f}, {fX, fHigh, 0.0f}, 0.75f, s_fTimber, uSeed);
}

void addBeam(ModelMesh& mesh, float fLeft, float fRight, float fY, uint32_t uSeed)
{
    addTimber(mesh, {fLeft, fY, 0.0f}, {fRight, fY, 0.0f}, 0.75f, s_fTimber + 0.06f, uSeed);
}

/// The foot with the sill on it, from one place to another.
void addFoot(ModelMesh& mesh, float fLeft, float fRight, uint32_t uSeed)
{
    addCoping(mesh, fLeft, fRight, -0.4f, s_fFoot + 0.4f, 1.5f, uSeed);
    addBeam(mesh, fLeft, fRight, s_fFoot + 0.36f, uSeed + 1);
}

struct Opening
{
    float fLeft = 0.0f;
    float fRight = 0.0f;
    float fLow = 0.0f;
    float fHigh = 0.0f;
};

void makeWall(ModelMesh& mesh, float fLength, const Opening& opening, bool bBraces, uint32_t uSeed)
{
    const float fHalf = 0.5f * fLength;
    const float fBottom = s_fFoot + 0.7f;
    const float fTop = s_fHigh - 0.7f;
    const bool bDoor = opening.fRight > opening.fLeft && opening.fLow <= 0.0f;
    const bool bWindow = opening.fRight > opening.fLeft && !bDoor;
    if (bDoor)
    {
        addFoot(mesh, -fHalf, opening.fLeft - 0.7f, uSeed);
        addFoot(mesh, opening.fRight + 0.7f, fHalf, uSeed + 3);
        addBlock(mesh, {opening.fLeft - 0.7f, -0.4f, -0.95f}, {opening.fRight + 0.7f, 0.45f, 0.95f},
                 uSeed + 6);
    }
    else
        addFoot(mesh, -fHalf, fHalf, uSeed);
    addBeam(mesh, -fHalf, fHalf, s_fHigh - 0.37f, uSeed + 7);
    addPost(mesh, -fHalf + 0.4f, fBottom, fTop, uSeed + 8);
    addPost(mesh, fHalf - 0.4f, fBottom, fTop, uSeed + 9);
    if (!bDoor && !bWindow)
    {
        addPlaster(mesh, -fHalf + 0.1f, fHalf - 0.1f, fBottom - 0.1f, fTop + 0.1f);
        if (fLength > 10.0f)
            addPost(mesh, 0.0f, fBottom, fTop, uSeed + 10);
    }
    else
    {
        addPlaster(mesh, -fHalf + 0.1f, opening.fLeft, fBottom - 0.1f, fTop + 0.1f);
        addPlaster(mesh, opening.fRight, fHalf - 0.1f, fBottom - 0.1f, fTop + 0.1f);
        addPlaster(mesh, opening.fLeft, opening.fRight, opening.fHigh, fTop + 0.1f);
        if (bWindow)
            addPlaster(mesh, opening.fLeft, opening.fRight, fBottom - 0.1f, opening.fLow);
        const float fSill = bDoor ? 0.45f : fBottom;
        addPost(mesh, opening.fLeft - 0.35f, fSill, fTop, uSeed + 11);
        addPost(mesh, opening.fRight + 0.35f, fSill, fTop, uSeed + 12);
        addTimber(mesh, {opening.fLeft, opening.fHigh + 0.3f, 0.0f},
                  {opening.fRight, opening.fHigh + 0.3f, 0.0f}, 0.7f, s_fTimber - 0.04f, uSeed + 13);
        if (bWindow)
        {
            addTimber(mesh, {opening.fLeft - 0.5f, opening.fLow - 0.25f, 0.0f},
                      {opening.fRight + 0.5f, opening.fLow - 0.25f, 0.0f}, 0.5f, s_fTimber + 0.5f,
                      uSeed + 14);
            const float fMiddle = 0.5f * (opening.fLow + opening.fHigh);
            addTimber(mesh, {0.0f, opening.fLow, 0.0f}, {0.0f, opening.fHigh, 0.0f}, 0.28f, 0.3f, uSeed + 15,
                      "Trim", {0.0f, 0.0f, 1.0f}, 0.0f);
            addTimber(mesh, {opening.fLeft, fMiddle, 0.0f}, {opening.fRight, fMiddle, 0.0f}, 0.28f, 0.26f,
                      uSeed + 16, "Trim", {0.0f, 0.0f, 1.0f}, 0.0f);
        }
    }
    if (bBraces) // from the foot of the outer posts inwards
        for (const float fSide : {-1.0f, 1.0f})
        {
            const float fInner = bDoor || bWindow ? 0.5f * (opening.fRight - opening.fLeft) + 0.6f : 0.3f;
            addTimber(mesh, {fSide * (fHalf - 0.6f), fBottom, 0.0f}, {fSide * fInner, fTop, 0.0f}, 0.6f,
                      s_fTimber - 0.12f, uSeed + 17);
        }
}

/// One side of the roof over a module: rows of shingles from ridge to eaves on rafters. X along the ridge.
void addRoofSide(ModelMesh& mesh, float fLeft, float fRight, float fDegreesY, uint32_t uSeed, bool bRafters)
{
    constexpr int s_iRows = 6;
    const glm::vec2 ridge(0.0f, s_fRise + 0.35f); // z, y
    const glm::vec2 eaves(10.2f, -2.2f + 0.35f);
    const glm::vec2 down = glm::normalize(eaves - ridge);
    const float fLength = glm::distance(eaves, ridge);
    const float fRow = fLength / s_iRows;
    const float fSlope = glm::degrees(std::atan2(-down.y, down.x));
    for (int i = 0; i < s_iRows; ++i)
    {
        // Made flat with the eaves at -Z, so that the picture's rows run down; a little steeper than the
        // roof.
        Solid row = boxSolid({fRight - fLeft, 0.34f, fRow * 1.12f});
        row.jitter(0.05f, uSeed * 9u + static_cast<uint32_t>(i));
        row.mapBox(8.0f, {0.31f * static_cast<float>(i), 0.19f * static_cast<float>(i)}, 2);
        row.turnY(180.0f).turnX(fSlope - 2.6f);
        const glm::vec2 at = ridge + down * (fRow * (static_cast<float>(i) + 0.5f));
        row.move(0.5f * (fLeft + fRight), at.y, at.x);
        mesh.add("Roof", row.turnY(fDegreesY), {.fSmooth = 20.0f});
    }
    if (!bRafters)
        return;
    const glm::quat turn = glm::angleAxis(glm::radians(fDegreesY), glm::vec3(0.0f, 1.0f, 0.0f));
    for (const float t : {0.06f, 0.5f, 0.94f})
    {
        const float fX = blend(fLeft, fRight, t);
        addTimber(mesh, turn * glm::vec3(fX, ridge.y - 0.75f, ridge.x + 0.1f),
                  turn * glm::vec3(fX, eaves.y - 0.25f, eaves.x - 0.5f), 0.55f, 0.6f,
                  uSeed + static_cast<uint32_t>(t * 100.0f), "Trim", {0.0f, 1.0f, 0.0f}, 0.0f);
    }
}

void makeGable(ModelMesh& mesh)
{
    const std::array<glm::vec2, 3> arrOutline{glm::vec2(-8.0f, 0.0f), {8.0f, 0.0f}, {0.0f, s_fRise - 0.1f}};
    mesh.add("Plaster", extrudedSolid(arrOutline, s_fPlaster), {.fTile = 10.0f});
    addBeam(mesh, -8.2f, 8.2f, 0.3f, 431);
    addTimber(mesh, {-7.6f, 0.5f, 0.0f}, {0.0f, s_fRise - 0.4f, 0.0f}, 0.7f, s_fTimber - 0.04f, 432);
    addTimber(mesh, {7.6f, 0.5f, 0.0f}, {0.0f, s_fRise - 0.4f, 0.0f}, 0.7f, s_fTimber - 0.08f, 433);
    addTimber(mesh, {0.0f, 0.6f, 0.0f}, {0.0f, s_fRise - 0.6f, 0.0f}, 0.7f, s_fTimber, 434);
    for (const float fSide : {-1.0f, 1.0f})
        addTimber(mesh, {0.2f * fSide, 1.2f, 0.0f}, {3.6f * fSide, 3.9f, 0.0f}, 0.55f, s_fTimber - 0.16f,
                  435);
}

/// Reaches half a metre over a gable, with boards along its edges.
void makeRoofEnd(ModelMesh& mesh)
{
    addRoofSide(mesh, 0.0f, 2.2f, 0.0f, 441, false);
    addRoofSide(mesh, -2.2f, 0.0f, 180.0f, 442, false);
    for (const float fSide : {-1.0f, 1.0f})
        addTimber(mesh, {1.95f, s_fRise - 0.2f, 0.0f}, {1.95f, -2.1f, 10.0f * fSide}, 0.95f, 0.35f, 443,
                  "Trim", {1.0f, 0.0f, 0.0f}, 0.05f);
    const std::array<glm::vec2, 4> arrCap{
        glm::vec2(-1.3f, -1.0f), {1.3f, -1.0f}, {0.35f, 0.5f}, {-0.35f, 0.5f}};
    Solid cap = extrudedSolid(arrCap, 2.3f);
    mesh.add("Trim", cap.turnY(90.0f).move(1.15f, s_fRise + 0.55f, 0.0f), {.fTile = 6.0f});
}

void makeRoof(ModelMesh& mesh)
{
    addRoofSide(mesh, -8.0f, 8.0f, 0.0f, 451, true);
}

/// Its foot is two metres above the walls' tops.
void makeRidge(ModelMesh& mesh)
{
    for (int i = 0; i < 5; ++i)
    {
        const float fGrow = 0.06f * static_cast<float>(i % 2);
        const std::array<glm::vec2, 4> arrCap{glm::vec2(-1.3f - fGrow, -1.0f),
                                              {1.3f + fGrow, -1.0f},
                                              {0.35f, 0.5f + fGrow},
                                              {-0.35f, 0.5f + fGrow}};
        Solid cap = extrudedSolid(arrCap, 3.18f);
        mesh.add("Trim", cap.turnY(90.0f).move(-6.4f + 3.2f * static_cast<float>(i), 0.55f, 0.0f),
                 {.fTile = 6.0f, .offset = {0.3f * static_cast<float>(i), 0.1f}});
    }
}

void makeCornerPost(ModelMesh& mesh)
{
    addBlock(mesh, {-1.05f, -0.5f, -1.05f}, {1.05f, s_fFoot + 0.1f, 1.05f}, 461, 0.18f);
    addTimber(mesh, {0.0f, s_fFoot, 0.0f}, {0.0f, s_fHigh + 0.1f, 0.0f}, 1.5f, 1.5f, 462, "Trim",
              {0.0f, 0.0f, 1.0f}, 0.16f);
}

void makeChimney(ModelMesh& mesh)
{
    addMasonry(mesh, {-2.2f, -0.5f, -1.8f}, {2.2f, 11.0f, 1.8f});
    addMasonry(mesh, {-1.5f, 11.0f, -1.4f}, {1.5f, 23.0f, 1.4f});
    for (const float fSide : {-1.0f, 1.0f}) // shoulders
        addBlock(mesh, {fSide > 0 ? 1.3f : -2.2f, 10.6f, -1.7f}, {fSide > 0 ? 2.2f : -1.3f, 12.2f, 1.7f},
                 fSide > 0 ? 471u : 472u, 0.4f);
    addBlock(mesh, {-2.5f, -0.6f, -2.1f}, {2.5f, 0.9f, 2.1f}, 473, 0.2f);
    addBlock(mesh, {-1.85f, 22.4f, -1.75f}, {1.85f, 23.3f, 1.75f}, 474, 0.16f);
    for (const float fX : {-0.75f, 0.75f})
    {
        const std::array<glm::vec2, 4> arrPot{
            glm::vec2(0.6f, 0.0f), {0.5f, 1.5f}, {0.36f, 1.5f}, {0.34f, 0.5f}};
        mesh.add("Roof", latheSolid(arrPot, 8).move(fX, 23.2f, 0.0f), {.fSmooth = 50.0f});
    }
}

void makeDoor(ModelMesh& mesh)
{
    for (int i = 0; i < 5; ++i)
        addTimber(mesh, {-1.72f + 0.86f * static_cast<float>(i), 0.1f, 0.0f},
                  {-1.72f + 0.86f * static_cast<float>(i), 7.9f, 0.0f}, 0.83f, 0.3f,
                  481u + static_cast<uint32_t>(i), "Wood", {0.0f, 0.0f, 1.0f}, 0.04f);
    for (const float fY : {1.4f, 6.4f})
    {
        addTimber(mesh, {-2.0f, fY, 0.2f}, {2.0f, fY, 0.2f}, 0.8f, 0.24f, 487, "Trim", {0.0f, 0.0f, 1.0f},
                  0.04f);
        mesh.add("Metal", boxSolid({2.6f, 0.3f, 0.1f}, 0.03f).move(-0.8f, fY - 0.15f, -0.2f));
    }
    addTimber(mesh, {-1.7f, 1.8f, 0.19f}, {1.7f, 6.0f, 0.19f}, 0.7f, 0.2f, 488, "Trim", {0.0f, 0.0f, 1.0f},
              0.04f);
    for (const float fZ : {-0.3f, 0.38f})
        mesh.add("Metal", boxSolid({0.3f, 0.8f, 0.2f}, 0.06f).move(1.6f, 3.7f, fZ));
}

void makeSteps(ModelMesh& mesh)
{
    for (int i = 0; i < 3; ++i)
        addBlock(mesh, {-3.0f, -0.5f, -1.6f},
                 {3.0f, 0.45f * static_cast<float>(3 - i), -1.6f + 1.5f * static_cast<float>(i + 1)},
                 491u + static_cast<uint32_t>(i), 0.14f);
}

void makePorch(ModelMesh& mesh)
{
    for (const float fX : {-4.0f, 4.0f})
    {
        addBlock(mesh, {fX - 0.7f, -0.4f, 5.3f}, {fX + 0.7f, 0.8f, 6.7f}, 501, 0.12f);
        addTimber(mesh, {fX, 0.7f, 6.0f}, {fX, 9.3f, 6.0f}, 0.8f, 0.8f, 502, "Trim", {0, 0, 1}, 0.1f);
        addTimber(mesh, {fX, 7.4f, 5.7f}, {fX, 9.5f, 3.6f}, 0.45f, 0.5f, 503, "Trim", {1, 0, 0}, 0.0f);
        addTimber(mesh, {fX, 9.7f, 0.4f}, {fX, 9.2f, 6.8f}, 0.6f, 0.6f, 504, "Trim", {0, 1, 0}, 0.0f);
    }
    addTimber(mesh, {-4.8f, 9.6f, 6.0f}, {4.8f, 9.6f, 6.0f}, 0.7f, 0.7f, 505, "Trim", {0, 1, 0}, 0.06f);
    for (int i = 0; i < 4; ++i)
    {
        const float t = (static_cast<float>(i) + 0.5f) / 4.0f;
        Solid row = boxSolid({10.4f, 0.32f, 2.1f});
        row.mapBox(8.0f, {0.31f * static_cast<float>(i), 0.19f * static_cast<float>(i)}, 2);
        row.turnY(180.0f).turnX(17.0f).move(0.0f, blend(12.0f, 9.4f, t), blend(0.2f, 7.6f, t));
        mesh.add("Roof", row, {.fSmooth = 20.0f});
    }
}

} // namespace

std::vector<AssetModel> hutModels()
{
    const auto wall = [](const char* pName, float fLength, const Opening& opening, bool bBraces,
                         uint32_t uSeed) {
        return AssetModel{
            pName, [=](ModelMesh& mesh) { makeWall(mesh, fLength, opening, bBraces, uSeed); }, {}};
    };
    return {
        wall("env_hut_wall_4m_01", 16.0f, {}, true, 401),
        wall("env_hut_wall_2m_01", 8.0f, {}, false, 402),
        wall("env_hut_wall_window_01", 16.0f, {-2.0f, 2.0f, 5.0f, 9.0f}, true, 403),
        wall("env_hut_wall_window_2m_01", 8.0f, {-1.5f, 1.5f, 5.0f, 9.0f}, false, 404),
        wall("env_hut_wall_door_01", 16.0f, {-2.2f, 2.2f, 0.0f, 8.5f}, true, 405),
        {"env_hut_corner_01", &makeCornerPost, {}},
        {"env_hut_gable_01", &makeGable, {}},
        {"env_hut_roof_slope_01", &makeRoof, {}},
        {"env_hut_roof_ridge_01", &makeRidge, {}},
        {"env_hut_roof_end_01", &makeRoofEnd, {}},
        {"env_hut_chimney_01", &makeChimney, {}},
        {"env_hut_door_01", &makeDoor, {}},
        {"env_hut_steps_01", &makeSteps, {}},
        {"env_hut_porch_01", &makePorch, {}},
    };
}

} // namespace content
