#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"
#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

#include <fstream>
#include <gtest/gtest.h>
#include <json/json.h>

namespace
{

using namespace tilebuilder;

struct FakeTextures : GroundTextureSourceI
{
    rend::TextureHandle createTextureArray(std::string_view, std::span<const std::string> spanPaths,
                                           int iWidth, int iHeight,
                                           resource::TextureResourceLayout eLayout) override
    {
        vecFirst.push_back(spanPaths[0]);
        vecLayouts.push_back(eLayout);
        iPixels = iWidth * iHeight;
        return {uRefuse == vecFirst.size() ? 0 : static_cast<uint32_t>(vecFirst.size())};
    }
    void destroyTexture(rend::TextureHandle texture) override { vecDestroyed.push_back(texture.uId); }

    std::vector<std::string> vecFirst;
    std::vector<resource::TextureResourceLayout> vecLayouts;
    std::vector<uint32_t> vecDestroyed;
    int iPixels = 0;
    size_t uRefuse = 0; ///< the call that fails
};

struct MaterialSetTest : testing::Test
{
    MaterialSetTest()
        : directories(
              {folder.path() / "roaming", folder.path() / "local", folder.path() / "game/Release", {}, 7})
    {
        directories.addKey("$TEST_DATA", folder.text());
        root["groundMaterials"]["width"] = 512;
        root["groundMaterials"]["height"] = 256;
        for (int i = 0; i < 9; ++i)
        {
            Json::Value entry;
            entry["name"] = "material " + std::to_string(i);
            for (const char* pKey : {"diffuse", "asgMap", "normalMap"})
                entry[pKey] = "$GAME_DATA/" + std::string(pKey) + std::to_string(i) + ".png";
            root["groundMaterials"]["textures"].append(entry);
        }
    }
    std::string put(const std::string& sName, const std::string& sText)
    {
        std::ofstream(folder.path() / sName) << sText;
        return "$TEST_DATA/" + sName;
    }
    std::string put(const std::string& sName) { return put(sName, root.toStyledString()); }

    LogCapture log;
    TempFolder folder;
    DirectoryManager directories;
    FakeTextures textures;
    TerrainGroundMaterialSet set{&textures};
    Json::Value root;
};

TEST_F(MaterialSetTest, bindsAGoodSetOnce)
{
    const std::string sPath = put("good.materialset");
    ASSERT_TRUE(set.load(sPath)) << log.dump();
    EXPECT_FALSE(set.load(sPath));
    EXPECT_EQ(log.errors(), 0u) << log.dump();
    EXPECT_EQ(set.names()[8], "material 8");
    EXPECT_EQ(textures.vecFirst,
              (std::vector<std::string>{"$GAME_DATA/diffuse0.png", "$GAME_DATA/asgMap0.png",
                                        "$GAME_DATA/normalMap0.png"}));
    using Layout = resource::TextureResourceLayout;
    EXPECT_EQ(textures.vecLayouts, (std::vector{Layout::Bc3, Layout::Bc3, Layout::Bc5}));
    EXPECT_EQ(textures.iPixels, 512 * 256);
    EXPECT_EQ(set.normalArray().uId, 3u);
    const uint64_t uHash = set.hash();
    EXPECT_NE(uHash, 0u);

    root["groundMaterials"]["textures"][4]["asgMap"] = "$GAME_DATA/other.png";
    ASSERT_TRUE(set.load(put("second.json")));
    EXPECT_NE(set.hash(), uHash);
    EXPECT_EQ(textures.vecDestroyed, (std::vector<uint32_t>{1, 2, 3}));
    textures.uRefuse = 8;
    root["groundMaterials"]["width"] = 64;
    EXPECT_FALSE(set.load(put("third.json")));
    EXPECT_EQ(set.path(), "$TEST_DATA/second.json");
    EXPECT_EQ(textures.vecDestroyed.size(), 5u);
}

TEST_F(MaterialSetTest, everyFailureIsToldAndLeavesTheSet)
{
    ASSERT_TRUE(set.load(put("good.json")));
    const uint64_t uHash = set.hash();
    const auto refuse = [&](const std::string& sPath, const std::string& sText)
    {
        log.clear();
        EXPECT_FALSE(set.load(sPath)) << sPath;
        EXPECT_TRUE(log.has(sText)) << sText << '\n' << log.dump();
        EXPECT_EQ(set.hash(), uHash);
        EXPECT_EQ(set.path(), "$TEST_DATA/good.json");
    };
    const auto edited = [&](const std::function<void(Json::Value&)>& fnEdit)
    {
        Json::Value copy = root;
        fnEdit(copy);
        return put("x.json", copy.toStyledString());
    };
    for (const char* pPath : {"/tmp/x.json", "$TEST_DATA/x.txt", "$TEST_DATA.json", "", "x/$y.json"})
        refuse(pPath, std::string("Failed to load Ground Material Set (") + pPath + ") is not a valid path");
    refuse(put("broken.json", "{"), "Failed to parse file '$TEST_DATA/broken.json':");
    refuse(put("deep.json", std::string(100'000, '[')), "Failed to parse file '$TEST_DATA/deep.json':");
    refuse(
        put("array.json", "[1]"),
        "Failed to load Ground Material Set ($TEST_DATA/array.json)  json 'groundMaterials' was not valid");
    const std::string sX = "$TEST_DATA/x.json";
    refuse(
        edited([](auto& j) { j["groundMaterials"]["width"] = 1000; }),
        sX + " uses a compressed layout but its size is 1000x256. compressed textures must be power of 2s.");
    refuse(edited([](auto& j) { j["groundMaterials"]["height"] = "tall"; }),
           sX + " uses a compressed layout but its size is 512x0. compressed textures must be power of 2s.");
    refuse(edited([](auto& j) { j["groundMaterials"]["width"] = 2; }),
           sX + " uses a compressed layout but its size is 2x256.");
    refuse(edited([](auto& j) { j["groundMaterials"]["height"] = 16384; }),
           sX + " is to big at 512x16384. 8192x8192 is the maximum size possible.");
    refuse(edited([](auto& j) { j["groundMaterials"]["textures"] = 3; }),
           "Failed to load Ground Material Set (" + sX + ")  'textures' was not valid");
    refuse(edited([](auto& j) { j["groundMaterials"]["textures"].append(Json::objectValue); }),
           "Failed to load. Ground Material Set (" + sX + ")  Set has 10 textures needs to be 9");
    refuse(edited([](auto& j) { j["groundMaterials"]["textures"][3]["asgMap"] = ""; }),
           "Failed to load. Ground Material Set (" + sX + ") asgMap path 3 is not valid");
    refuse(edited([](auto& j) { j["groundMaterials"]["textures"][0] = 7; }),
           "Failed to load. Ground Material Set (" + sX + ") diffuse path 0 is not valid");
    refuse(edited([](auto& j) { j["groundMaterials"]["textures"][8].removeMember("normalMap"); }),
           "Failed to load. Ground Material Set (" + sX + ") normalMap path 8 is not valid");
}

} // namespace
