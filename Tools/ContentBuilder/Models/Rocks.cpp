// Rocks and cliffs: balls cut flat in many directions, mossy on top.

#include "Tools/ContentBuilder/Models/AssetModels.h"

#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace content
{

void addRock(ModelMesh& mesh, const RockShape& shape, const glm::vec3& foot, float fDegreesY)
{
    Solid solid = ballSolid(shape.iLevel);
    solid.change([&](const glm::vec3& point)
                 { return point * (1.0f + shape.fLumpy * spaceNoise(point * 1.6f + 7.0f, shape.uSeed)); });
    cutFlat(solid, shape.iCuts, 0.58f, 0.86f, shape.uSeed);
    solid.change([](const glm::vec3& point)
                 { return glm::vec3(point.x, std::max(point.y, -0.24f), point.z); });
    const float fSmall = 0.012f;
    solid.jitter(fSmall, shape.uSeed + 5);
    const glm::vec3 half = shape.size * glm::vec3(0.5f, 1.0f, 0.5f);
    // A little of it stands in the ground.
    solid.fit({-half.x, -0.04f * shape.size.y, -half.z}, half);
    solid.turnY(fDegreesY).move(foot);

    const float fTile = std::clamp(0.75f * std::max(shape.size.x, shape.size.y), 8.0f, 20.0f);
    const Look look{.fSmooth = 24.0f,
                    .fSoft = 0.3f,
                    .fTile = fTile,
                    .offset = {hash(1, 0, shape.uSeed), hash(2, 0, shape.uSeed)}};
    if (shape.fMoss <= 0.0f)
    {
        mesh.add("Rock", solid, look);
        return;
    }
    // Both parts are given the normals of the whole.
    Solid bare = solid;
    Solid grown = solid;
    const auto isGrown = [&](const Solid::Face& face)
    {
        const glm::vec3 normal = glm::normalize(solid.faceNormal(face));
        const glm::vec3& place = solid.vecPoints[static_cast<size_t>(face.arrPoints[0])];
        return normal.y > blend(1.02f, 0.62f, shape.fMoss) + 0.16f * spaceNoise(place * 0.35f, shape.uSeed);
    };
    std::erase_if(bare.vecFaces, [&](const Solid::Face& face) { return isGrown(face); });
    std::erase_if(grown.vecFaces, [&](const Solid::Face& face) { return !isGrown(face); });
    mesh.add("Rock", bare, look);
    if (!grown.vecFaces.empty())
        mesh.add("Moss", grown, {.fSmooth = 60.0f, .fSoft = 0.4f, .fTile = 6.0f});
}

namespace
{

/// A group of tall slabs that lean on each other, as a face of a cliff.
struct CliffShape
{
    int iSlabs = 4;
    float fWidth = 64.0f;
    float fHeight = 44.0f;
    float fDepth = 20.0f;
    float fBend = 0.0f; ///< degrees from one end to the other
    uint32_t uSeed = 1;
};

void addCliff(ModelMesh& mesh, const CliffShape& shape)
{
    Dice dice(shape.uSeed);
    // One mass behind holds the slabs together.
    addRock(mesh,
            {.size = {shape.fWidth * 0.95f, shape.fHeight * 0.72f, shape.fDepth * 0.9f},
             .uSeed = shape.uSeed * 17u + 3u,
             .iCuts = 18,
             .fMoss = 0.9f},
            {0.0f, 0.0f, -0.22f * shape.fDepth - std::abs(shape.fBend) * 0.0012f * shape.fWidth});
    const float fEach = shape.fWidth / static_cast<float>(shape.iSlabs);
    for (int i = 0; i < shape.iSlabs; ++i)
    {
        const float t = (static_cast<float>(i) + 0.5f) / static_cast<float>(shape.iSlabs) - 0.5f;
        const float fHigh = shape.fHeight * (i % 2 == 0 ? dice.roll(0.86f, 1.0f) : dice.roll(0.66f, 0.86f));
        glm::vec3 foot(t * shape.fWidth, 0.0f, dice.roll(-0.1f, 0.1f) * shape.fDepth);
        foot.z -= std::abs(shape.fBend) * 0.0042f * shape.fWidth * t * t * 4.0f;
        addRock(mesh,
                {.size = {fEach * dice.roll(1.5f, 1.75f), fHigh, shape.fDepth * dice.roll(0.8f, 1.0f)},
                 .uSeed = shape.uSeed * 31u + static_cast<uint32_t>(i),
                 .iCuts = 20,
                 .fMoss = 0.8f,
                 .fLumpy = 0.4f},
                foot, shape.fBend * t + dice.roll(-12.0f, 12.0f));
    }
    // What broke off lies at the foot.
    for (int i = 0; i < 2; ++i)
    {
        const float fSize = dice.roll(5.0f, 9.0f);
        addRock(mesh,
                {.size = {fSize * 1.2f, fSize * 0.8f, fSize},
                 .iLevel = 1,
                 .uSeed = shape.uSeed * 77u + static_cast<uint32_t>(i)},
                {dice.roll(-0.4f, 0.4f) * shape.fWidth, 0.0f, shape.fDepth * 0.55f}, dice.roll(0.0f, 360.0f));
    }
}

AssetModel rock(const char* pName, const RockShape& shape)
{
    return {pName, [=](ModelMesh& mesh) { addRock(mesh, shape); }, {}};
}

void makeCluster(ModelMesh& mesh)
{
    addRock(mesh, {.size = {9.0f, 8.0f, 8.0f}, .iLevel = 2, .uSeed = 41, .fMoss = 0.6f},
            {-2.0f, 0.0f, -1.0f});
    addRock(mesh, {.size = {7.0f, 4.6f, 6.0f}, .iLevel = 2, .uSeed = 42, .fMoss = 0.5f}, {4.2f, 0.0f, 1.2f},
            40.0f);
    addRock(mesh, {.size = {4.0f, 2.4f, 3.4f}, .iLevel = 1, .uSeed = 43}, {-2.6f, 0.0f, 4.6f}, 100.0f);
    addRock(mesh, {.size = {3.0f, 1.8f, 2.6f}, .iLevel = 1, .uSeed = 44}, {1.2f, 0.0f, 4.8f}, 10.0f);
    addRock(mesh, {.size = {2.4f, 1.2f, 2.2f}, .iLevel = 1, .uSeed = 45}, {6.4f, 0.0f, 4.6f}, 70.0f);
}

void makePebbles(ModelMesh& mesh)
{
    Dice dice(46);
    for (int i = 0; i < 9; ++i)
    {
        const float fSize = dice.roll(0.7f, 1.9f);
        const float fAngle = 2.4f * static_cast<float>(i);
        const float fAway = 1.35f * std::sqrt(static_cast<float>(i)) * dice.roll(0.8f, 1.2f);
        addRock(mesh,
                {.size = {fSize * dice.roll(1.0f, 1.5f), fSize * 0.65f, fSize},
                 .iLevel = 1,
                 .uSeed = 460u + static_cast<uint32_t>(i),
                 .iCuts = 10},
                {std::cos(fAngle) * fAway, 0.0f, std::sin(fAngle) * fAway}, dice.roll(0.0f, 360.0f));
    }
}

void makeArch(ModelMesh& mesh)
{
    addRock(mesh, {.size = {12.0f, 25.0f, 12.0f}, .iLevel = 2, .uSeed = 51, .iCuts = 20},
            {-12.0f, 0.0f, 0.0f});
    addRock(mesh, {.size = {14.0f, 22.0f, 13.0f}, .iLevel = 2, .uSeed = 52, .iCuts = 20}, {12.0f, 0.0f, 0.5f},
            30.0f);
    addRock(mesh, {.size = {37.0f, 11.0f, 11.0f}, .iLevel = 2, .uSeed = 53, .iCuts = 24, .fMoss = 0.8f},
            {0.0f, 18.0f, 0.0f}, 3.0f);
    addRock(mesh, {.size = {6.0f, 4.0f, 5.0f}, .iLevel = 1, .uSeed = 54}, {-4.0f, 0.0f, 5.0f});
}

void makeCliffLedge(ModelMesh& mesh)
{
    addRock(mesh, {.size = {30.0f, 12.0f, 18.0f}, .iLevel = 2, .uSeed = 61, .iCuts = 22, .fMoss = 0.9f});
    addRock(mesh, {.size = {22.0f, 8.0f, 14.0f}, .iLevel = 2, .uSeed = 62, .iCuts = 20, .fMoss = 0.9f},
            {16.0f, 0.0f, 2.0f}, 20.0f);
    addRock(mesh, {.size = {18.0f, 16.0f, 12.0f}, .iLevel = 2, .uSeed = 63, .iCuts = 20, .fMoss = 0.9f},
            {-9.0f, 0.0f, -5.0f}, -15.0f);
}

} // namespace

std::vector<AssetModel> rockModels()
{
    const auto cliff = [](const char* pName, const CliffShape& shape) {
        return AssetModel{pName, [=](ModelMesh& mesh) { addCliff(mesh, shape); }, {}};
    };
    return {
        rock("env_rock_granite_small_01",
             {.size = {4.2f, 2.8f, 3.6f}, .iLevel = 1, .uSeed = 11, .iCuts = 12}),
        rock("env_rock_granite_small_02",
             {.size = {3.2f, 3.4f, 3.0f}, .iLevel = 1, .uSeed = 12, .iCuts = 12}),
        rock("env_rock_granite_medium_01", {.size = {10.5f, 7.0f, 8.5f}, .uSeed = 13, .fMoss = 0.45f}),
        rock("env_rock_granite_medium_02", {.size = {8.0f, 9.5f, 7.0f}, .uSeed = 14, .fMoss = 0.3f}),
        rock("env_rock_granite_large_01",
             {.size = {26.0f, 24.0f, 22.0f}, .iLevel = 3, .uSeed = 15, .iCuts = 24, .fMoss = 0.6f}),
        rock("env_rock_granite_large_02",
             {.size = {34.0f, 18.0f, 24.0f}, .iLevel = 3, .uSeed = 16, .iCuts = 26, .fMoss = 0.7f}),
        rock("env_rock_slab_01", {.size = {15.0f, 3.2f, 11.0f}, .uSeed = 17, .iCuts = 14, .fMoss = 0.5f}),
        rock("env_rock_spire_01",
             {.size = {11.0f, 34.0f, 10.0f}, .uSeed = 18, .iCuts = 26, .fMoss = 0.4f, .fLumpy = 0.5f}),
        {"env_rock_cluster_01", &makeCluster, {}},
        {"env_rock_pebbles_01", &makePebbles, {}},
        {"env_rock_arch_01", &makeArch, {}},
        cliff("env_cliff_wall_01", {.uSeed = 21}),
        cliff("env_cliff_wall_02", {.fHeight = 30.0f, .fDepth = 17.0f, .uSeed = 22}),
        cliff("env_cliff_corner_01",
              {.fWidth = 48.0f, .fHeight = 42.0f, .fDepth = 22.0f, .fBend = 80.0f, .uSeed = 23}),
        {"env_cliff_ledge_01", &makeCliffLedge, {}},
    };
}

std::vector<AssetModel> slateModels()
{
    const std::map<std::string, std::string> mapSlate{{"Rock", "8B8F98"}, {"Moss", "9A8E55"}};
    const auto slate = [&](const char* pName, const glm::vec3& size, int iLayers, uint32_t uSeed)
    {
        return AssetModel{
            pName,
            [=](ModelMesh& mesh)
            {
                // Plates that lie askew on each other.
                Dice dice(uSeed);
                for (int i = 0; i < iLayers; ++i)
                {
                    const float t = static_cast<float>(i) / static_cast<float>(iLayers);
                    const float fPart = blend(1.0f, 0.55f, t) * dice.roll(0.88f, 1.05f);
                    addRock(
                        mesh,
                        {.size = {size.x * fPart, size.y * 2.1f / static_cast<float>(iLayers),
                                  size.z * fPart},
                         .iLevel = 2,
                         .uSeed = uSeed * 41u + static_cast<uint32_t>(i),
                         .iCuts = 12,
                         .fMoss = i + 1 == iLayers ? 0.5f : 0.0f},
                        {dice.roll(-0.1f, 0.1f) * size.x, size.y * t * 0.8f, dice.roll(-0.1f, 0.1f) * size.z},
                        dice.roll(0.0f, 360.0f));
                }
            },
            mapSlate};
    };
    return {
        slate("env_rock_slate_small_01", {4.6f, 2.2f, 4.0f}, 2, 91),
        slate("env_rock_slate_medium_01", {10.0f, 6.0f, 9.0f}, 3, 92),
        slate("env_rock_slate_large_01", {24.0f, 20.0f, 21.0f}, 5, 93),
        slate("env_rock_slate_plate_01", {18.0f, 4.0f, 14.0f}, 2, 94),
    };
}

} // namespace content
