// Trees, trunks and bushes: bent tubes, balls and bunches of leaves, skirts of needles.

#include "Tools/ContentBuilder/Models/AssetModels.h"

#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>

namespace content
{

void addLeaves(ModelMesh& mesh, const LeafBall& ball, const glm::vec3& crown, uint32_t uSeed)
{
    const auto lit = [&](const glm::vec3& place, const glm::vec3& normal)
    {
        return 0.55f * normal + 0.8f * glm::normalize(place - crown + glm::vec3(0.0f, 1.0e-3f, 0.0f)) +
               glm::vec3(0.0f, 0.25f, 0.0f);
    };
    Solid core = ballSolid(ball.iLevel);
    core.change(
        [&](const glm::vec3& point)
        {
            const float fOut = 1.0f + 0.22f * spaceNoise(point * 2.1f + 9.0f, uSeed);
            return glm::vec3(point.x, point.y < 0.0f ? point.y * 0.72f : point.y, point.z) * fOut;
        });
    core.scale(ball.radius * 0.94f).move(ball.centre);
    mesh.add("Leaves", core, lit, {.fSmooth = 180.0f, .fTile = 9.0f});

    Dice dice(uSeed * 3u + 1u);
    for (int i = 0; i < ball.iBunches; ++i)
    {
        const glm::vec3 out = spreadDirection(i, ball.iBunches);
        if (out.y < -0.75f)
            continue;
        glm::vec3 place = out * ball.radius;
        if (out.y < 0.0f)
            place.y *= 0.72f;
        place += ball.centre;
        // A bunch looks outwards and a little to a side, so that the edge of the crown is ragged.
        const glm::vec3 facing = glm::normalize(
            out + 0.75f * glm::vec3(dice.roll(-1.0f, 1.0f), dice.roll(-0.5f, 0.9f), dice.roll(-1.0f, 1.0f)));
        glm::vec3 side = glm::normalize(
            glm::cross(facing, glm::abs(facing.y) > 0.9f ? glm::vec3(1, 0, 0) : glm::vec3(0, 1, 0)));
        const glm::quat roll = glm::angleAxis(dice.roll(0.0f, 6.2831853f), facing);
        side = roll * side;
        const glm::vec3 up = glm::cross(facing, side);
        const float fHalf = ball.fBunch * dice.roll(0.8f, 1.2f);
        const glm::vec2 cut(dice.roll() < 0.5f ? 0.0f : 0.5f, out.y > -0.1f ? 0.5f : 0.0f);
        std::array<ModelMesh::Corner, 4> arrCorners{};
        for (size_t u = 0; u < 4; ++u)
        {
            const float fX = u == 0 || u == 3 ? -1.0f : 1.0f;
            const float fY = u < 2 ? -1.0f : 1.0f;
            const glm::vec3 corner = place + (side * fX + up * fY) * fHalf;
            arrCorners[u] = {corner, glm::normalize(lit(corner, out)),
                             cut + glm::vec2(fX * 0.25f + 0.25f, fY * 0.25f + 0.25f)};
        }
        mesh.card("LeafCards", arrCorners);
    }
}

void addLog(ModelMesh& mesh, const glm::vec3& from, const glm::vec3& to, float fRadius, uint32_t uSeed,
            int iSides, const char* pMaterial)
{
    std::vector<glm::vec3> vecPath;
    std::vector<float> vecRadii;
    for (int i = 0; i < 4; ++i)
    {
        const float t = static_cast<float>(i) / 3.0f;
        const float fOff = i == 1 || i == 2 ? 0.18f * fRadius : 0.0f;
        vecPath.push_back(glm::mix(from, to, t) + fOff * glm::vec3(hash(i, 1, uSeed) - 0.5f,
                                                                   hash(i, 2, uSeed) - 0.5f,
                                                                   hash(i, 3, uSeed) - 0.5f));
        vecRadii.push_back(fRadius * blend(1.06f, 0.92f, t) * blend(0.95f, 1.05f, hash(i, 4, uSeed)));
    }
    Solid log = tubeSolid(vecPath, vecRadii, iSides, 6.0f);
    // The two fans at its ends are cut wood.
    Solid ends = log;
    std::erase_if(log.vecFaces, [](const Solid::Face& face) { return face.iCount == 3; });
    std::erase_if(ends.vecFaces, [](const Solid::Face& face) { return face.iCount != 3; });
    mesh.add(pMaterial, log, {.fSmooth = 70.0f});
    mesh.add("Wood", ends, {.fTile = 5.0f});
}

namespace
{

struct Branch
{
    glm::vec3 from;
    glm::vec3 to;
    float fThick;
    float fThin;
    glm::vec3 bow{0.0f}; ///< how far its middle is off the straight line
    int iSides = 6;
};

void addBranch(ModelMesh& mesh, const Branch& branch, const char* pMaterial, int iParts = 4)
{
    std::vector<glm::vec3> vecPath;
    std::vector<float> vecRadii;
    for (int i = 0; i <= iParts; ++i)
    {
        const float t = static_cast<float>(i) / static_cast<float>(iParts);
        vecPath.push_back(glm::mix(branch.from, branch.to, t) + branch.bow * (4.0f * t * (1.0f - t)));
        vecRadii.push_back(blend(branch.fThick, branch.fThin, std::pow(t, 0.8f)));
    }
    mesh.add(pMaterial, tubeSolid(vecPath, vecRadii, branch.iSides, 6.0f), {.fSmooth = 75.0f});
}

/// A trunk that spreads into roots at its foot.
void addTrunk(ModelMesh& mesh, const Branch& trunk, const char* pMaterial, uint32_t uSeed,
              float fFlare = 0.8f)
{
    std::vector<glm::vec3> vecPath;
    std::vector<float> vecRadii;
    const float fLength = glm::distance(trunk.from, trunk.to);
    for (const float t : {-0.03f, 0.02f, 0.07f, 0.16f, 0.36f, 0.6f, 0.82f, 1.0f})
    {
        vecPath.push_back(glm::mix(trunk.from, trunk.to, t) + trunk.bow * (4.0f * t * (1.0f - t)));
        const float fRoot = fFlare * std::exp2(-std::max(t, 0.0f) * fLength / (2.2f * trunk.fThick) * 1.6f);
        vecRadii.push_back(blend(trunk.fThick, trunk.fThin, std::max(t, 0.0f)) * (1.0f + fRoot));
    }
    Solid solid = tubeSolid(vecPath, vecRadii, trunk.iSides, 6.0f);
    // The roots: every other side of the lower rings reaches farther out.
    for (int iRing = 0; iRing < 3; ++iRing)
        for (int i = 0; i < trunk.iSides; ++i)
        {
            glm::vec3& point = solid.vecPoints[static_cast<size_t>(iRing * trunk.iSides + i)];
            const glm::vec3& centre = vecPath[static_cast<size_t>(iRing)];
            const float fOut = (i % 2 == 0 ? 0.45f : -0.1f) * fFlare * (iRing == 2 ? 0.5f : 1.0f) *
                               blend(0.6f, 1.3f, hash(i, 0, uSeed));
            point.x = centre.x + (point.x - centre.x) * (1.0f + fOut);
            point.z = centre.z + (point.z - centre.z) * (1.0f + fOut);
        }
    mesh.add(pMaterial, solid, {.fSmooth = 75.0f});
}

struct BroadTree
{
    float fHeight = 34.0f; ///< of the crown's top
    float fTrunk = 13.0f;  ///< where the crown begins
    float fThick = 1.9f;   ///< the trunk's radius
    float fCrown = 10.0f;  ///< the crown's radius
    int iBalls = 6;
    float fBall = 5.6f;  ///< the radius of one
    float fTall = 0.86f; ///< how much higher than wide they are
    int iBunches = 20;
    float fBunch = 2.3f;
    float fLean = 1.5f;
    const char* pBark = "Bark";
    uint32_t uSeed = 1;
};

void makeBroadTree(ModelMesh& mesh, const BroadTree& tree)
{
    Dice dice(tree.uSeed);
    const float fFork = tree.fTrunk * 1.05f;
    const glm::vec3 top(dice.roll(-1.0f, 1.0f) * tree.fLean, fFork, dice.roll(-1.0f, 1.0f) * tree.fLean);
    addTrunk(mesh,
             {{0.0f, 0.0f, 0.0f},
              top,
              tree.fThick,
              tree.fThick * 0.62f,
              {dice.roll(-0.6f, 0.6f) * tree.fLean, 0.0f, dice.roll(-0.6f, 0.6f) * tree.fLean},
              8},
             tree.pBark, tree.uSeed);
    const float fMiddle = 0.5f * (tree.fTrunk + tree.fHeight);
    const glm::vec3 crown(top.x, fMiddle - 0.12f * tree.fHeight, top.z);
    for (int i = 0; i < tree.iBalls; ++i)
    {
        // One on top, the others around it in two rings.
        const float fAngle = 2.3999632f * static_cast<float>(i) + dice.roll(-0.25f, 0.25f);
        const float t = static_cast<float>(i) / static_cast<float>(tree.iBalls - 1);
        const bool bTop = i == 0;
        const float fAway = bTop ? 0.0f : (tree.fCrown - tree.fBall * 0.8f) * dice.roll(0.85f, 1.1f);
        const float fSize = tree.fBall * (bTop ? 1.12f : dice.roll(0.85f, 1.1f));
        const float fUp =
            bTop ? tree.fHeight - fSize * (tree.fTall + 0.1f)
                 : blend(tree.fHeight - 1.75f * fSize * tree.fTall, tree.fTrunk + 0.55f * fSize, t) +
                       dice.roll(-0.6f, 0.6f);
        const glm::vec3 centre(top.x + std::cos(fAngle) * fAway, fUp, top.z + std::sin(fAngle) * fAway);
        addLeaves(mesh,
                  {.centre = centre,
                   .radius = glm::vec3(fSize, fSize * tree.fTall, fSize),
                   .iBunches = tree.iBunches,
                   .fBunch = tree.fBunch},
                  crown, tree.uSeed * 13u + static_cast<uint32_t>(i));
        const glm::vec3 start = bTop ? top - glm::vec3(0.0f, 0.5f, 0.0f)
                                     : glm::mix(glm::vec3(0.0f), top, dice.roll(0.74f, 0.97f));
        addBranch(mesh,
                  {start,
                   centre - glm::vec3(0.0f, fSize * 0.25f, 0.0f),
                   tree.fThick * (bTop ? 0.6f : 0.42f),
                   tree.fThick * 0.16f,
                   {0.0f, bTop ? 0.0f : -0.9f, 0.0f},
                   5},
                  tree.pBark, 3);
    }
}

struct PineTree
{
    float fHeight = 44.0f;
    float fFree = 6.0f; ///< the trunk below the needles
    float fThick = 1.5f;
    float fWide = 9.5f; ///< the lowest skirt's radius
    int iSkirts = 6;
    int iPoints = 9;
    uint32_t uSeed = 1;
};

/// A ragged cone of needles: an outer and an inner skin with a row of points as its hem.
void addSkirt(ModelMesh& mesh, float fTop, float fBottom, float fWide, int iPoints, uint32_t uSeed,
              const glm::vec3& axis)
{
    Solid solid;
    const int iSides = iPoints * 2;
    const float fHigh = fTop - fBottom;
    const auto ring = [&](float t, float fRadius, bool bHem)
    {
        for (int i = 0; i < iSides; ++i)
        {
            const bool bPoint = i % 2 == 0;
            const float fAngle = 6.2831853f *
                                 (static_cast<float>(i) + 0.35f * (hash(i / 2, 1, uSeed) - 0.5f)) /
                                 static_cast<float>(iSides);
            const float fOut =
                fRadius * (bHem ? (bPoint ? 1.0f : 0.74f) * blend(0.88f, 1.1f, hash(i / 2, 2, uSeed)) : 1.0f);
            const float fDown = bHem ? (bPoint ? 0.06f : -0.07f) * fHigh : 0.0f;
            solid.vecPoints.push_back(axis + glm::vec3(std::cos(fAngle) * fOut,
                                                       blend(fTop, fBottom, t) - fDown,
                                                       std::sin(fAngle) * fOut));
        }
    };
    ring(0.0f, fWide * 0.03f, false);
    ring(0.5f, fWide * 0.42f, false);
    ring(1.0f, fWide, true);
    ring(0.72f, fWide * 0.22f, false); // under it
    for (int iRing = 0; iRing < 3; ++iRing)
        for (int i = 0; i < iSides; ++i)
        {
            const int a = iRing * iSides + i;
            const int b = iRing * iSides + (i + 1) % iSides;
            const float fU = static_cast<float>(i) * 3.0f / static_cast<float>(iSides);
            const float fV = static_cast<float>(i + 1) * 3.0f / static_cast<float>(iSides);
            const float fHere = -0.5f * static_cast<float>(iRing);
            solid.mappedQuad({a, b, b + iSides, a + iSides},
                             {glm::vec2(fU, fHere), {fV, fHere}, {fV, fHere - 0.5f}, {fU, fHere - 0.5f}});
        }
    mesh.add("Needles", solid,
             [&](const glm::vec3& place, const glm::vec3& normal)
             {
                 const glm::vec3 out =
                     glm::normalize(glm::vec3(place.x - axis.x, fWide * 0.4f, place.z - axis.z));
                 return normal.y < 0.0f ? normal : 0.5f * normal + out;
             },
             {.fSmooth = 50.0f});
}

void makePine(ModelMesh& mesh, const PineTree& tree)
{
    Dice dice(tree.uSeed);
    const glm::vec3 top(dice.roll(-0.8f, 0.8f), tree.fHeight * 0.94f, dice.roll(-0.8f, 0.8f));
    addTrunk(mesh, {{0.0f, 0.0f, 0.0f}, top, tree.fThick, 0.22f, {0.0f, 0.0f, 0.0f}, 7}, "Bark", tree.uSeed,
             0.6f);
    const float fSpan = tree.fHeight - tree.fFree;
    for (int i = 0; i < tree.iSkirts; ++i)
    {
        const float t = static_cast<float>(i) / static_cast<float>(tree.iSkirts);
        const float fNext = static_cast<float>(i + 1) / static_cast<float>(tree.iSkirts);
        const float fBottom = tree.fFree + fSpan * std::pow(t, 0.92f);
        const float fTop =
            i + 1 == tree.iSkirts ? tree.fHeight : tree.fFree + fSpan * (fNext + 0.55f / tree.iSkirts);
        const float fWide = tree.fWide * (1.0f - 0.83f * t) * dice.roll(0.93f, 1.06f);
        const glm::vec3 at = glm::mix(glm::vec3(0.0f), top, fBottom / tree.fHeight);
        addSkirt(mesh, fTop, fBottom, fWide, std::max(tree.iPoints - i / 2, 6),
                 tree.uSeed * 7u + static_cast<uint32_t>(i), {at.x, 0.0f, at.z});
    }
}

void makeDeadTree(ModelMesh& mesh)
{
    addTrunk(mesh, {{0, 0, 0}, {1.2f, 20.0f, 0.6f}, 1.7f, 0.7f, {-1.4f, 0.0f, 0.6f}, 8}, "Bark", 71, 0.9f);
    const std::array<Branch, 7> arrBranches = {{
        {{1.0f, 19.0f, 0.6f}, {3.6f, 29.0f, -1.2f}, 0.72f, 0.12f, {-0.8f, 0.6f, 0.0f}, 5},
        {{0.6f, 16.5f, 0.6f}, {-5.2f, 25.0f, 2.0f}, 0.6f, 0.1f, {-0.4f, -1.2f, 0.0f}, 5},
        {{-0.4f, 12.0f, 0.8f}, {5.8f, 18.5f, 4.2f}, 0.52f, 0.09f, {0.0f, -1.2f, 0.0f}, 5},
        {{-0.6f, 9.5f, 0.7f}, {-4.6f, 13.0f, -3.4f}, 0.45f, 0.09f, {0.0f, -0.8f, 0.0f}, 5},
        {{1.8f, 25.5f, -0.5f}, {6.2f, 27.6f, -2.6f}, 0.3f, 0.06f, {0.0f, -0.5f, 0.0f}, 4},
        {{-2.7f, 19.5f, 1.3f}, {-6.6f, 21.6f, -1.2f}, 0.26f, 0.06f, {0.0f, -0.5f, 0.0f}, 4},
        {{2.7f, 14.0f, 2.5f}, {4.6f, 18.8f, 0.8f}, 0.26f, 0.06f, {0.0f, 0.0f, 0.0f}, 4},
    }};
    for (const Branch& branch : arrBranches)
        addBranch(mesh, branch, "Bark", 3);
}

void makeFallenTrunk(ModelMesh& mesh)
{
    addLog(mesh, {-11.0f, 1.5f, 0.0f}, {11.0f, 1.25f, 1.0f}, 1.55f, 72, 10);
    for (const Branch& branch : {Branch{{-3.0f, 2.2f, 0.2f}, {-1.2f, 5.6f, 1.6f}, 0.5f, 0.14f, {}, 5},
                                 Branch{{4.0f, 1.6f, 1.0f}, {6.2f, 2.6f, 4.6f}, 0.45f, 0.12f, {}, 5},
                                 Branch{{1.0f, 1.6f, -0.6f}, {0.0f, 2.0f, -3.4f}, 0.4f, 0.16f, {}, 5}})
        addBranch(mesh, branch, "Bark", 2);
    // Moss on its back.
    Solid moss = ballSolid(1);
    moss.scale({4.2f, 0.55f, 1.25f}).turnY(-2.6f).move(-4.0f, 2.72f, 0.3f);
    mesh.add("Moss", moss, {.fSmooth = 180.0f, .fTile = 6.0f});
}

void makeStump(ModelMesh& mesh)
{
    addTrunk(mesh, {{0, 0, 0}, {0.2f, 3.4f, 0.1f}, 1.7f, 1.5f, {}, 10}, "Bark", 73, 0.7f);
    Solid cut;
    const std::array<glm::vec2, 2> arrProfile{glm::vec2(1.42f, 0.0f), {0.0f, 0.06f}};
    cut = latheSolid(arrProfile, 10, 4.0f);
    cut.move(0.2f, 3.42f, 0.1f);
    mesh.add("Wood", cut, {.fTile = 4.0f});
    addRock(mesh, {.size = {1.6f, 0.8f, 1.3f}, .iLevel = 1, .uSeed = 74, .iCuts = 8}, {2.6f, 0.0f, 1.2f});
}

void makeBush(ModelMesh& mesh, float fWide, float fHigh, int iBalls, uint32_t uSeed)
{
    Dice dice(uSeed);
    for (int i = 0; i < iBalls; ++i)
    {
        const float fAngle = 2.4f * static_cast<float>(i);
        const float fAway = i == 0 ? 0.0f : 0.52f * fWide;
        const float fSize = (i == 0 ? 0.62f : dice.roll(0.42f, 0.52f)) * fWide;
        addLeaves(
            mesh,
            {.centre = {std::cos(fAngle) * fAway, fSize * 0.62f * fHigh / fWide, std::sin(fAngle) * fAway},
             .radius = {fSize, fSize * fHigh / fWide, fSize},
             .iBunches = 18,
             .fBunch = 0.3f * fWide},
            {0.0f, -0.3f * fHigh, 0.0f}, uSeed * 5u + static_cast<uint32_t>(i));
    }
}

} // namespace

std::vector<AssetModel> treeModels()
{
    const auto broad = [](const char* pName, const BroadTree& tree,
                          std::map<std::string, std::string> mapColours) {
        return AssetModel{pName, [=](ModelMesh& mesh) { makeBroadTree(mesh, tree); }, std::move(mapColours)};
    };
    const auto pine = [](const char* pName, const PineTree& tree) {
        return AssetModel{pName, [=](ModelMesh& mesh) { makePine(mesh, tree); }, {}};
    };
    const auto bush =
        [](const char* pName, float fWide, float fHigh, int iBalls, uint32_t uSeed, const char* pLeaves)
    {
        return AssetModel{pName,
                          [=](ModelMesh& mesh) { makeBush(mesh, fWide, fHigh, iBalls, uSeed); },
                          {{"Leaves", pLeaves}}};
    };
    return {
        broad("env_tree_oak_01", {.uSeed = 1}, {}),
        broad("env_tree_oak_02",
              {.fHeight = 42.0f,
               .fTrunk = 15.0f,
               .fThick = 2.5f,
               .fCrown = 14.0f,
               .iBalls = 7,
               .fBall = 7.0f,
               .fBunch = 2.9f,
               .uSeed = 2},
              {{"Leaves", "98AE5C"}}),
        broad("env_tree_birch_01",
              {.fHeight = 40.0f,
               .fTrunk = 15.0f,
               .fThick = 1.0f,
               .fCrown = 7.0f,
               .iBalls = 6,
               .fBall = 4.3f,
               .fTall = 1.35f,
               .iBunches = 20,
               .fBunch = 1.9f,
               .pBark = "Birch",
               .uSeed = 3},
              {{"Leaves", "B7C46C"}}),
        broad("env_tree_birch_02",
              {.fHeight = 30.0f,
               .fTrunk = 10.0f,
               .fThick = 0.75f,
               .fCrown = 5.6f,
               .iBalls = 5,
               .fBall = 3.4f,
               .fTall = 1.45f,
               .iBunches = 18,
               .fBunch = 1.7f,
               .fLean = 2.2f,
               .pBark = "Birch",
               .uSeed = 4},
              {{"Leaves", "BDC872"}}),
        broad("env_tree_young_01",
              {.fHeight = 17.0f,
               .fTrunk = 5.0f,
               .fThick = 0.6f,
               .fCrown = 4.4f,
               .iBalls = 4,
               .fBall = 2.9f,
               .fTall = 1.3f,
               .iBunches = 18,
               .fBunch = 1.5f,
               .uSeed = 5},
              {{"Leaves", "ADBF66"}}),
        pine("env_tree_pine_01", {.uSeed = 1}),
        pine("env_tree_pine_02",
             {.fHeight = 58.0f, .fFree = 10.0f, .fThick = 1.9f, .fWide = 11.0f, .iSkirts = 7, .uSeed = 2}),
        pine("env_tree_pine_small_01", {.fHeight = 20.0f,
                                        .fFree = 2.0f,
                                        .fThick = 0.7f,
                                        .fWide = 5.2f,
                                        .iSkirts = 5,
                                        .iPoints = 8,
                                        .uSeed = 3}),
        {"env_tree_dead_01", &makeDeadTree, {{"Bark", "A59A8C"}}},
        {"env_trunk_fallen_01", &makeFallenTrunk, {}},
        {"env_trunk_stump_01", &makeStump, {}},
        bush("env_bush_round_01", 5.0f, 4.4f, 3, 81, "93A858"),
        bush("env_bush_low_01", 5.6f, 2.8f, 4, 82, "A0AE5E"),
    };
}

std::vector<AssetModel> autumnTreeModels()
{
    const auto broad = [](const char* pName, const BroadTree& tree, const char* pLeaves) {
        return AssetModel{pName, [=](ModelMesh& mesh) { makeBroadTree(mesh, tree); }, {{"Leaves", pLeaves}}};
    };
    return {
        broad("env_tree_maple_01",
              {.fHeight = 32.0f, .fTrunk = 11.0f, .fThick = 1.6f, .fCrown = 11.0f, .uSeed = 31}, "D69A62"),
        broad("env_tree_maple_02",
              {.fHeight = 27.0f,
               .fTrunk = 9.0f,
               .fThick = 1.2f,
               .fCrown = 8.5f,
               .iBalls = 5,
               .fBall = 5.0f,
               .uSeed = 32},
              "C67C5C"),
        broad("env_tree_aspen_01",
              {.fHeight = 38.0f,
               .fTrunk = 14.0f,
               .fThick = 0.9f,
               .fCrown = 6.4f,
               .iBalls = 6,
               .fBall = 4.0f,
               .fTall = 1.4f,
               .fBunch = 1.8f,
               .pBark = "Birch",
               .uSeed = 33},
              "E3BC5C"),
        {"env_bush_autumn_01",
         [](ModelMesh& mesh) { makeBush(mesh, 4.6f, 3.8f, 3, 83); },
         {{"Leaves", "C98A52"}}},
    };
}

} // namespace content
