// The assets that come with the program: whole, of sane sizes, right side out.

#include "KestrelCommon/Resources/Picture.h"
#include "Tests/Content/StarterAssets.h"
#include "Tests/Support/LogCapture.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <gtest/gtest.h>
#include <json/value.h>
#include <set>

namespace
{

struct StarterContentTest : testing::Test
{
    void SetUp() override
    {
        if (!std::filesystem::exists(std::filesystem::path(QM_GAME_DIR) / "Data"))
            GTEST_SKIP() << "no game folder";
        m_vecAssets = starterAssets();
    }
    LogCapture m_log;
    std::vector<StarterAsset> m_vecAssets;
};

TEST_F(StarterContentTest, thereIsEnoughToBuildWithAndAllOfItIsFound)
{
    std::set<std::string> setCategories;
    std::set<std::string> setRoots;
    std::set<std::string> setNames;
    std::set<Uuid> setUuids;
    size_t uColoured = 0;
    for (const StarterAsset& asset : m_vecAssets)
    {
        setCategories.insert(asset.vecCategories.begin(), asset.vecCategories.end());
        setRoots.insert(asset.sRoot);
        EXPECT_TRUE(setNames.insert(asset.entry.sName).second) << asset.entry.sName;
        EXPECT_TRUE(setUuids.insert(asset.entry.uuid).second) << asset.entry.sName;
        EXPECT_TRUE(asset.entry.sName.starts_with("env_")) << asset.entry.sName;
        EXPECT_TRUE(asset.pRenderable) << asset.entry.sName;
        const size_t uColours = asset.entry.mapDefaultColors.size();
        EXPECT_LE(uColours, 4u) << asset.entry.sName;
        uColoured += uColours >= 1 && uColours <= 3;
    }
    EXPECT_GE(m_vecAssets.size(), 60u);
    EXPECT_EQ(setCategories.size(), 8u);
    EXPECT_EQ(setRoots.size(), 2u);
    EXPECT_GE(uColoured * 4, m_vecAssets.size() * 3);
    EXPECT_EQ(m_log.errors() + m_log.warnings(), 0u) << m_log.dump();
}

TEST_F(StarterContentTest, namesKeepTheirIds)
{
    // Tiles are stored with these: they must never change.
    const std::map<std::string, std::string> mapKnown = {
        {"env_rock_granite_large_01", "dc61a18d-b882-5663-97d4-08e6d1de8817"},
        {"env_tree_oak_01", "068fb4da-bc37-5985-9bcd-8869509c9861"},
        {"env_crate_small_01", "a10cbd8f-8f37-50dc-b9cb-d75555e0f0b8"},
    };
    size_t uFound = 0;
    for (const StarterAsset& asset : m_vecAssets)
        if (const auto it = mapKnown.find(asset.entry.sName); it != mapKnown.end())
        {
            ++uFound;
            EXPECT_EQ(asset.entry.uuid.text(), it->second) << asset.entry.sName;
        }
    EXPECT_EQ(uFound, mapKnown.size());
}

/// How many pieces of a model are turned inside out: a piece is a set of faces that hang together; when it is
/// closed, its volume must not be negative.
size_t insideOut(const resource::Model& model, const resource::ModelPart& part)
{
    std::map<std::array<int, 3>, size_t> mapPlaces;
    std::vector<size_t> vecRoots;
    const auto rootOf = [&](size_t u)
    {
        while (vecRoots[u] != u)
            u = vecRoots[u] = vecRoots[vecRoots[u]];
        return u;
    };
    const auto placeOf = [&](uint32_t uIndex)
    {
        const glm::vec3 at = model.vecPositions[uIndex] * 250.0f;
        const auto [it, bNew] =
            mapPlaces.try_emplace({static_cast<int>(std::lround(at.x)), static_cast<int>(std::lround(at.y)),
                                   static_cast<int>(std::lround(at.z))},
                                  vecRoots.size());
        if (bNew)
            vecRoots.push_back(vecRoots.size());
        return it->second;
    };
    struct Piece
    {
        glm::vec3 sum{0.0f};
        float fCount = 0.0f;
        float fVolume = 0.0f;
        glm::vec3 area{0.0f}; ///< sums up to nothing when it is closed
        float fAreas = 0.0f;
    };
    std::map<size_t, Piece> mapPieces;
    const uint32_t uEnd = part.uFirst + part.uCount;
    for (uint32_t u = part.uFirst; u < uEnd; u += 3)
        for (const uint32_t k : {1u, 2u})
        {
            const size_t uFirst = placeOf(model.vecIndices[u]);
            const size_t uOther = placeOf(model.vecIndices[u + k]);
            vecRoots[rootOf(uFirst)] = rootOf(uOther);
        }
    const auto pieceOf = [&](uint32_t u) -> Piece&
    { return mapPieces[rootOf(placeOf(model.vecIndices[u]))]; };
    for (uint32_t u = part.uFirst; u < uEnd; ++u)
    {
        pieceOf(u).sum += model.vecPositions[model.vecIndices[u]];
        pieceOf(u).fCount += 1.0f;
    }
    for (uint32_t u = part.uFirst; u < uEnd; u += 3)
    {
        Piece& piece = pieceOf(u);
        const glm::vec3 centre = piece.sum / piece.fCount;
        const auto point = [&](uint32_t k) { return model.vecPositions[model.vecIndices[u + k]] - centre; };
        piece.fVolume += glm::dot(glm::cross(point(0), point(1)), point(2));
        const glm::vec3 area = glm::cross(point(1) - point(0), point(2) - point(0));
        piece.area += area;
        piece.fAreas += glm::length(area);
    }
    size_t uCount = 0;
    for (const auto& [uRoot, piece] : mapPieces)
        uCount += piece.fVolume < -1.0e-3f && glm::length(piece.area) < 0.02f * piece.fAreas;
    return uCount;
}

TEST_F(StarterContentTest, modelsAreOfSaneSizesAndRightSideOut)
{
    for (const StarterAsset& asset : m_vecAssets)
    {
        ASSERT_TRUE(asset.pRenderable);
        const std::string& sName = asset.entry.sName;
        const resource::Model& model = asset.pRenderable->model();
        ASSERT_FALSE(model.bStandIn) << sName;
        const size_t uTriangles = model.vecIndices.size() / 3;
        EXPECT_GE(uTriangles, 50u) << sName;
        EXPECT_LE(uTriangles, 2000u) << sName;
        const glm::vec3 size = model.box.size();
        EXPECT_GT(std::max({size.x, size.y, size.z}), 1.2f) << sName << ": quarter metres";
        EXPECT_LT(std::max({size.x, size.y, size.z}), 120.0f) << sName;
        EXPECT_GT(std::min({size.x, size.y, size.z}), 0.15f) << sName;
        // The foot stands at the origin, no more than a part of it in the ground.
        EXPECT_LE(model.box.lowest.y, 0.3f) << sName;
        const bool bBridge = sName.starts_with("env_bridge_stone"); // reaches down into the dip
        EXPECT_GE(model.box.lowest.y, bBridge ? -8.0f : -0.2f * size.y - 1.0f) << sName;
        EXPECT_LE(model.box.lowest.x, 0.01f) << sName;
        EXPECT_GE(model.box.highest.x, -0.01f) << sName;

        // Where a face looks away from its normals it is inside out; leaves and needles are lit as a whole.
        size_t uWrong = 0;
        size_t uThin = 0;
        for (const resource::ModelPart& part : model.vecParts)
        {
            if (part.sMaterial.starts_with("Leaf") || part.sMaterial == "Leaves")
                continue;
            EXPECT_EQ(insideOut(model, part), 0u) << sName << ", " << part.sMaterial;
            for (uint32_t u = part.uFirst; u < part.uFirst + part.uCount; u += 3)
            {
                const auto* pIndex = &model.vecIndices[u];
                const glm::vec3 a = model.vecPositions[pIndex[0]];
                const glm::vec3 cross =
                    glm::cross(model.vecPositions[pIndex[1]] - a, model.vecPositions[pIndex[2]] - a);
                const glm::vec3 normal =
                    model.vecNormals[pIndex[0]] + model.vecNormals[pIndex[1]] + model.vecNormals[pIndex[2]];
                uWrong += glm::dot(cross, normal) < 0.0f;
                uThin += glm::length(cross) < 1.0e-5f;
            }
        }
        EXPECT_LE(uWrong, uTriangles / 25) << sName;
        EXPECT_LE(uThin, uTriangles / 25) << sName;
    }
    EXPECT_EQ(m_log.errors() + m_log.warnings(), 0u) << m_log.dump();
}

TEST_F(StarterContentTest, coloursAndPicturesOfEachMaterialExist)
{
    for (const StarterAsset& asset : m_vecAssets)
    {
        ASSERT_TRUE(asset.pRenderable);
        const std::string& sName = asset.entry.sName;
        const resource::Renderable& renderable = *asset.pRenderable;
        std::set<std::string> setUsed;
        for (const resource::ModelPart& part : renderable.model().vecParts)
        {
            const resource::RenderableMaterial& material = renderable.material(part.sMaterial);
            ASSERT_FALSE(material.sDiffuse.empty()) << sName << ", " << part.sMaterial;
            if (!material.sColorSlot.empty())
                setUsed.insert(material.sColorSlot);
            for (const std::string& sPicture : {material.sDiffuse, material.sNormal, material.sAsg})
                if (!sPicture.empty())
                {
                    const auto size = resource::pictureSize(starterPath(sPicture));
                    ASSERT_TRUE(size) << sName << ": " << sPicture;
                    EXPECT_EQ(size->first & (size->first - 1), 0) << sPicture;
                    EXPECT_LE(size->first, 512) << sPicture;
                }
        }
        std::set<std::string> setDefaults;
        for (const auto& [sSlot, uColour] : asset.entry.mapDefaultColors)
            setDefaults.insert(sSlot);
        EXPECT_EQ(setUsed, setDefaults) << sName;
        EXPECT_EQ(setUsed.size(), renderable.colorSlots().size()) << sName;
    }
}

TEST_F(StarterContentTest, picturesOfTheEditorsMarksExist)
{
    std::vector<std::string> vecPictures{"$GAME_DATA/Gui/Editor/ed_gizmo_ring.png"};
    std::set<std::string> setNames;
    const Json::Value jList = starterJson("$GAME_DATA/TileEditor/gizmos.json");
    for (const Json::Value& jGizmo : jList["gizmos"])
    {
        EXPECT_TRUE(setNames.insert(jGizmo["name"].asString()).second);
        vecPictures.push_back(jGizmo["path"].asString());
    }
    for (const char* pName :
         {"asset", "harvestable", "kinematic", "prefab", "decal", "voxelmesh", "node", "error"})
        EXPECT_TRUE(setNames.contains(pName)) << pName;
    for (const std::string& sPicture : vecPictures) // they become the layers of one texture
        EXPECT_EQ(resource::pictureSize(starterPath(sPicture)), std::pair(64, 64)) << sPicture;
    for (const char* pKind : {"asset", "harvestable", "kinematic", "decal", "shape", "node", "blueprint",
                              "prefab", "asset_prefab", "search"})
        EXPECT_TRUE(resource::pictureSize(
            starterPath(std::string("$GAME_DATA/Gui/Editor/ed_icon_") + pKind + ".png")))
            << pKind;
}

TEST_F(StarterContentTest, theFigureIsAPersonTall)
{
    const auto pFigure = starterRenderable("$GAME_DATA/Character/character.rend");
    ASSERT_TRUE(pFigure);
    ASSERT_FALSE(pFigure->model().bStandIn);
    EXPECT_NEAR(pFigure->model().box.lowest.y, 0.0f, 0.05f);
    EXPECT_NEAR(pFigure->model().box.highest.y, 7.2f, 0.1f); // 1.8 m
    const auto pOrigin = starterRenderable("$GAME_DATA/TileEditor/gui_gizmo_origin.rend");
    ASSERT_TRUE(pOrigin);
    EXPECT_NEAR(glm::length(pOrigin->model().box.highest - glm::vec3(1.0f)), 0.0f, 0.01f);
    EXPECT_EQ(m_log.errors() + m_log.warnings(), 0u) << m_log.dump();
}

} // namespace
