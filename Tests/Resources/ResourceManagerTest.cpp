#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Resources/ShaderSource.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace resource;

namespace
{

Picture plain(int iWidth, int iHeight, uint8_t uValue)
{
    return {iWidth, iHeight,
            std::vector<std::byte>(static_cast<size_t>(iWidth * iHeight) * 4, std::byte{uValue})};
}

/// "$GAME_DATA" is an empty folder of the test's own.
struct ResourceManagerTest : testing::TestWithParam<bool>
{
    ResourceManagerTest() { std::filesystem::create_directories(m_folder.path() / "Textures/Default"); }

    std::filesystem::path file(std::string_view sKeyed) const { return m_folder.path() / sKeyed.substr(11); }

    void write(std::string_view sKeyed, std::string_view sText) const
    {
        std::filesystem::create_directories(file(sKeyed).parent_path());
        std::ofstream(file(sKeyed)) << sText;
    }

    /// With GetParam() loads run in the background.
    std::unique_ptr<ResourceManager> make()
    {
        const bool bBackground =
            testing::UnitTest::GetInstance()->current_test_info()->value_param() && GetParam();
        return std::make_unique<ResourceManager>(
            m_device,
            [this](std::string_view s)
            { return s.starts_with("$GAME_DATA/") ? file(s) : std::filesystem::path(); },
            2, bBackground);
    }

    LogCapture m_log;
    TempFolder m_folder;
    rend::RecordingDevice m_device;
};
using ResourceRulesTest = ResourceManagerTest;

constexpr auto s_eBc3 = TextureResourceLayout::Bc3;
constexpr auto s_eRgba8 = TextureResourceLayout::Rgba8;

} // namespace

TEST_P(ResourceManagerTest, layersAreScaledUploadedAndSharedByRequest)
{
    ASSERT_TRUE(writePicture(file("$GAME_DATA/a.png"), 16, 16, plain(16, 16, 200).vecPixels));
    ASSERT_TRUE(writePicture(file("$GAME_DATA/b.png"), 4, 4, plain(4, 4, 100).vecPixels));
    const auto pManager = make();
    pManager->initDefaults(); // four error lines: the folder has none
    m_log.clear();
    const std::vector<std::string> vecPaths = {"$GAME_DATA/a.png", "$GAME_DATA/b.png",
                                               "$GAME_DATA/gone_nor.png"};
    const rend::TextureHandle texture = pManager->loadTextureArray(vecPaths, 8, 8, s_eBc3, 0, 0);
    ASSERT_TRUE(texture);
    for (int i = 0; i < 2000 && pManager->loadingCount() > 0; ++i)
    {
        pManager->update();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_EQ(pManager->loadingCount(), 0u);
    const auto* pTexture = m_device.texture(texture);
    ASSERT_EQ(pTexture->vecBytes.size(), 8u * 8 * 4 * 3);
    EXPECT_EQ(pTexture->desc.iMips, 4);
    EXPECT_TRUE(pTexture->desc.bSrgb) << "colours, and no CPU draws";
    EXPECT_FALSE(pTexture->bMipsMade);
    EXPECT_EQ(m_device.count(rend::RecordingDevice::CallKind::UpdateTexture), 4u + 3 * 4)
        << "with their mips";
    EXPECT_EQ(pTexture->vecBytes[0], std::byte{200});
    EXPECT_EQ(pTexture->vecBytes[8 * 8 * 4], std::byte{100});
    // The missing one is the flat normal map, by its name.
    EXPECT_EQ(pTexture->vecBytes[2 * 8 * 8 * 4 + 2], std::byte{255});
    EXPECT_EQ(m_log.count("gone_nor.png"), 1u);

    EXPECT_EQ(pManager->loadTextureArray(vecPaths, 8, 8, s_eBc3, 0, 0), texture);
    EXPECT_NE(pManager->loadTextureArray(vecPaths, 8, 8, s_eBc3, 0, 1), texture);
    EXPECT_NE(pManager->loadTextureArray(std::span(vecPaths).first(2), 8, 8, s_eBc3, 0, 0), texture);
}

TEST_F(ResourceRulesTest, onlyColoursAreTakenForSrgbAndTheirMipsAverageLight)
{
    Picture checker = plain(4, 2, 0);
    for (size_t u = 0; u < checker.vecPixels.size(); ++u)
        checker.vecPixels[u] = std::byte{(u / 4 + u / 16) % 2 == 0 ? uint8_t{255} : uint8_t{0}};
    const Picture half = halveColours(checker);
    ASSERT_EQ(half.vecPixels.size(), 8u);
    EXPECT_EQ(half.vecPixels[0], std::byte{188}) << "half the light of white";
    EXPECT_EQ(half.vecPixels[7], std::byte{128}) << "alpha is a height";
    EXPECT_EQ(halveColours(half).iHeight, 1);

    const auto isSrgb = [&](const char* pPath, TextureResourceLayout eLayout)
    {
        const std::vector<std::string> vecPath{pPath};
        return m_device.texture(make()->loadTextureArray(vecPath, 8, 8, eLayout, 0, 0))->desc.bSrgb;
    };
    EXPECT_FALSE(isSrgb("$GAME_DATA/a_asg.png", s_eBc3));
    EXPECT_FALSE(isSrgb("$GAME_DATA/a.png", TextureResourceLayout::Bc5));
    m_device.m_bSoftware = true;
    EXPECT_FALSE(isSrgb("$GAME_DATA/a_dif.png", s_eBc3)) << "its shaders do that themselves";
}

INSTANTIATE_TEST_SUITE_P(Loading, ResourceManagerTest, testing::Bool());

TEST_F(ResourceRulesTest, picturesAreCompressedOnlyForAGpuThatReadsThem)
{
    ASSERT_TRUE(writePicture(file("$GAME_DATA/a.png"), 8, 8, plain(8, 8, 200).vecPixels));
    const std::vector<std::string> vecPaths = {"$GAME_DATA/a.png", "$GAME_DATA/gone_nor.png"};
    const auto layoutOf = [&](TextureResourceLayout eLayout)
    {
        m_device.clearCalls();
        const auto pManager = make();
        return m_device.texture(pManager->loadTextureArray(vecPaths, 8, 8, eLayout, 0, 0))->desc.eLayout;
    };
    EXPECT_EQ(layoutOf(s_eBc3), s_eRgba8) << "a GPU without the formats";
    m_device.m_bCompressed = true;
    EXPECT_EQ(layoutOf(s_eRgba8), s_eRgba8);
    EXPECT_EQ(layoutOf(s_eBc3), s_eBc3);
    EXPECT_EQ(m_device.count(rend::RecordingDevice::CallKind::UpdateTexture), 2u * 4) << "layers by mips";
    m_device.m_bSoftware = true;
    EXPECT_EQ(layoutOf(TextureResourceLayout::Bc5), s_eRgba8) << "a CPU unpacks at every sample";
    m_device.m_bSoftware = false;

    m_log.clear();
    const auto pManager = make();
    const auto* pTexture =
        m_device.texture(pManager->loadTextureArray(vecPaths, 8, 8, TextureResourceLayout::Bc5, 0, 0));
    ASSERT_EQ(pTexture->vecBytes.size(), 2u * 64);
    EXPECT_EQ(pTexture->desc.iMips, 4);
    EXPECT_FALSE(pTexture->bMipsMade);
    EXPECT_EQ(pTexture->vecBytes[8], std::byte{200});
    EXPECT_EQ(pTexture->vecBytes[64], std::byte{128}) << "the flat normal map, compressed too";
    EXPECT_EQ(m_log.count("gone_nor.png"), 1u) << m_log.dump();
}

TEST_F(ResourceRulesTest, compressedPicturesAreKeptAndDamagedOnesMadeAnew)
{
    m_device.m_bCompressed = true;
    const auto source = file("$GAME_DATA/a.png");
    ASSERT_TRUE(writePicture(source, 8, 8, plain(8, 8, 200).vecPixels));
    const std::filesystem::path folder = m_folder.path() / "Cache/Textures";
    const std::vector<std::string> vecPaths = {"$GAME_DATA/a.png"};
    const auto firstByte = [&](int iMips = 1)
    {
        const auto pManager = make();
        pManager->setTextureCache(folder);
        return m_device.texture(pManager->loadTextureArray(vecPaths, 8, 8, s_eBc3, iMips, 0))->vecBytes[0];
    };
    const auto entries = [&] { return std::distance(std::filesystem::directory_iterator(folder), {}); };
    EXPECT_EQ(firstByte(), std::byte{200});
    ASSERT_EQ(entries(), 1);
    const std::filesystem::path entry = std::filesystem::directory_iterator(folder)->path();

    // An entry that is whole is used as it is: this one says 9 where the picture says 200.
    const TextureCacheKey key = {.uSource = xxh3(std::span<const std::byte>(*readFile(source))),
                                 .iWidth = 8,
                                 .iHeight = 8,
                                 .bColour = true};
    const TextureCache cache(folder);
    ASSERT_EQ(cache.filePath(key), entry);
    const std::vector<std::byte> vecNines(64, std::byte{9});
    cache.store(key, vecNines);
    EXPECT_EQ(firstByte(), std::byte{9});

    const auto uWhole = std::filesystem::file_size(entry);
    for (const int iDamage : {0, 1, 2, 3})
    {
        cache.store(key, vecNines);
        if (iDamage < 3)
            std::filesystem::resize_file(entry, iDamage == 0 ? uWhole - 1 : iDamage == 1 ? 0 : uWhole + 1);
        else
        {
            std::fstream bytes(entry, std::ios::in | std::ios::out | std::ios::binary);
            bytes.seekp(-1, std::ios::end);
            bytes.put(8);
        }
        EXPECT_EQ(firstByte(), std::byte{200}) << iDamage;
        EXPECT_EQ(cache.find(key).value_or(vecNines)[0], std::byte{200}) << "rewritten";
    }
    EXPECT_EQ(entries(), 1) << "nothing is left beside";

    EXPECT_EQ(firstByte(0), std::byte{200});
    EXPECT_EQ(entries(), 2) << "another count of mips";
    ASSERT_TRUE(writePicture(source, 8, 8, plain(8, 8, 100).vecPixels));
    EXPECT_EQ(firstByte(), std::byte{100}) << "the picture changed";
    EXPECT_EQ(entries(), 3);

    // A folder that can't be made, here below a file, costs no more than the entries.
    std::filesystem::remove_all(folder);
    std::ofstream(folder) << "x";
    EXPECT_EQ(firstByte(), std::byte{100});
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}

TEST_P(ResourceManagerTest, streamedTexturesComeByUseAndGoWhenRoomIsWanted)
{
    ASSERT_TRUE(writePicture(file("$GAME_DATA/a.png"), 8, 8, plain(8, 8, 200).vecPixels));
    ASSERT_TRUE(writePicture(file("$GAME_DATA/b.png"), 8, 8, plain(8, 8, 100).vecPixels));
    m_device.m_bCompressed = true;
    const auto pManager = make();
    pManager->setStreamBudgets({.uStreaming = 64}); // one of 8 x 8 with a mip
    const auto request = [&](const char* pPath)
    {
        const std::vector<std::string> vecPath{pPath};
        return pManager->requestStreamedArray(vecPath, 8, 8, s_eBc3, 1, 0).value_or(99);
    };
    const size_t uA = request("$GAME_DATA/a.png");
    const size_t uB = request("$GAME_DATA/b.png");
    EXPECT_EQ(request("$GAME_DATA/a.png"), uA);
    EXPECT_EQ(pManager->useStreamedTexture(99), rend::TextureHandle{});
    EXPECT_EQ(m_device.textureCount(), 0u);
    const auto frames = [&](int iCount, size_t uUsed)
    {
        for (int i = 0; i < iCount; ++i)
        {
            static_cast<void>(pManager->useStreamedTexture(uUsed));
            pManager->update();
            pManager->finishLoading();
        }
        return pManager->useStreamedTexture(uUsed);
    };
    EXPECT_FALSE(pManager->useStreamedTexture(uA));
    const auto* pTexture = m_device.texture(frames(1, uA));
    ASSERT_TRUE(pTexture);
    EXPECT_EQ(pTexture->vecBytes[0], std::byte{200});

    EXPECT_FALSE(frames(25, uB)) << "neither fits while the other may still be wanted";
    EXPECT_FALSE(m_log.has("UNLOADED"));
    pTexture = m_device.texture(frames(10, uB));
    ASSERT_TRUE(pTexture);
    EXPECT_EQ(pTexture->vecBytes[0], std::byte{100});
    EXPECT_TRUE(m_log.has("Stream UNLOADED: $GAME_DATA/a.png - 0mb"));
    EXPECT_EQ(m_device.textureCount(), 1u);

    // With room again both are there, by force at once.
    pManager->setStreamBudgets({});
    static_cast<void>(pManager->useStreamedTexture(uA));
    pManager->finishStreaming();
    EXPECT_TRUE(m_log.has("Performing force stream completion"));
    EXPECT_TRUE(pManager->useStreamedTexture(uA));
    EXPECT_EQ(m_device.textureCount(), 2u);
}

TEST_F(ResourceRulesTest, shortMemoryHalvesTexturesOrRefusesThem)
{
    const std::vector<std::string> vecPath{"$GAME_DATA/a.png"};
    const auto pManager = make();
    pManager->setStreamBudgets({.uAll = 8 * 8 * 4});
    const rend::TextureHandle texture = pManager->loadTextureArray(vecPath, 16, 8, s_eRgba8, 1, 0);
    ASSERT_TRUE(texture);
    EXPECT_EQ(m_device.texture(texture)->desc.iWidth, 8);
    EXPECT_EQ(m_device.texture(texture)->desc.iHeight, 4);
    EXPECT_TRUE(m_log.has("Loaded NON streaming texture as low quality: '$GAME_DATA/a.png' we are short"));
    EXPECT_FALSE(pManager->loadTextureArray(vecPath, 16, 16, s_eRgba8, 1, 0));
    EXPECT_TRUE(m_log.has("Failed to load NON streaming texture: '$GAME_DATA/a.png' out of gpu memory"));
    EXPECT_EQ(m_device.textureCount(), 1u);
}

TEST_F(ResourceRulesTest, brokenRequestsYieldNullAndTheirOwnMessage)
{
    const auto pManager = make();
    const std::vector<std::string> vecOne = {"$GAME_DATA/a.png"};
    const auto refused =
        [&](std::span<const std::string> spanPaths, int iWidth, int iHeight, std::string_view sMessage)
    {
        m_log.clear();
        EXPECT_FALSE(pManager->loadTextureArray(spanPaths, iWidth, iHeight, s_eBc3, 1, 0));
        EXPECT_TRUE(m_log.has(sMessage)) << m_log.dump();
    };
    refused({}, 8, 8,
            "the call to load a texture array is empty, this is fine but will return nullptr - is this "
            "intended?");
    refused(vecOne, 1000, 1000,
            "$GAME_DATA/a.png uses a compressed layout but its size is 1000x1000. compressed textures must "
            "be power of 2s.");
    refused(vecOne, 8, 6,
            " uses a compressed layout but its size is 8x6. compressed textures must be multiples of 4.");
    refused(vecOne, 16384, 16384,
            "$GAME_DATA/a.png is to big at 16384x16384. 8192x8192 is the maximum size possible.");
    refused(std::vector<std::string>(513, vecOne[0]), 4, 4,
            "$GAME_DATA/a.png array is to big at 513. 512 is the maximum array size possible.");
    EXPECT_TRUE(pManager->loadTextureArray(std::vector<std::string>(512, vecOne[0]), 4, 4, s_eBc3, 1, 0));
    m_log.clear();
    EXPECT_TRUE(pManager->loadTextureArray(vecOne, 10, 7, s_eRgba8, 3, 0));
    EXPECT_TRUE(m_log.has("$GAME_DATA/a.png is uncompressed but uses mipmaps: 3"));
    EXPECT_TRUE(m_log.has("$GAME_DATA/a.png uses mipmap count: 3 its recomended to only use 1 or 0(auto)."));
}

TEST_F(ResourceRulesTest, borrowedBuffersAreReusedByFitAndForgottenAfterFiveFrames)
{
    BufferPool pool(m_device);
    constexpr auto s_eVertex = rend::BufferKind::Vertex;
    const BorrowedBuffer small = pool.borrow(100, 20, s_eVertex);
    const BorrowedBuffer large = pool.borrow(900, 20, s_eVertex);
    EXPECT_EQ(small.uCapacity, 128u);
    EXPECT_EQ(m_device.buffer(small.buffer)->desc.sName.find("Borrowable Vertex Buffer"), 0u);
    pool.giveBack(large);
    pool.giveBack(small);
    EXPECT_EQ(pool.borrow(96, 20, s_eVertex).buffer, small.buffer) << "the smallest that fits";
    const BorrowedBuffer tiny = pool.borrow(90, 20, s_eVertex);
    EXPECT_NE(tiny.buffer, large.buffer) << "960 is ten times too large for 90";
    const BorrowedBuffer constants = pool.borrow(900, 0, rend::BufferKind::Constant);
    EXPECT_NE(constants.buffer, large.buffer);
    EXPECT_EQ(m_device.buffer(constants.buffer)->desc.sName.find("Borrowable CBuffer"), 0u);

    const BorrowedBuffer tenth = pool.borrow(96, 20, s_eVertex);
    EXPECT_NE(tenth.buffer, large.buffer) << "exactly ten times";
    const auto age = [&](int iFrames)
    {
        for (int i = 0; i < iFrames; ++i)
            pool.update();
    };
    age(4);
    EXPECT_EQ(pool.borrow(97, 20, s_eVertex).buffer, large.buffer) << "four frames old, and just below ten";
    age(9); // while lent it doesn't age
    pool.giveBack(large);
    age(4);
    EXPECT_TRUE(m_device.buffer(large.buffer));
    age(1);
    EXPECT_FALSE(m_device.buffer(large.buffer));
    EXPECT_NE(pool.borrow(900, 20, s_eVertex).buffer, large.buffer);
    EXPECT_TRUE(m_device.buffer(tiny.buffer)) << "still lent";
    EXPECT_EQ(pool.freeCount(), 0u);
}

TEST_F(ResourceRulesTest, movedPathsAreFollowedButNotForever)
{
    write("$GAME_DATA/exists.txt", "x");
    std::string sPairs;
    for (int i = 0; i < 10; ++i)
        sPairs += "[\"$GAME_DATA/" + std::to_string(i) + "\", \"$GAME_DATA/" + std::to_string(i + 1) + "\"],";
    write(
        "$GAME_DATA/upgrade_resources.json",
        R"({"upgrade": [[["$GAME_DATA/a", "$GAME_DATA/b"], ["$GAME_DATA/only"], ["$GAME_DATA/b", "$GAME_DATA/c"]], [)" +
            sPairs + R"(["$GAME_DATA/exists.txt", "$GAME_DATA/a"]]]})");
    const auto pManager = make();
    pManager->init();
    EXPECT_TRUE(
        m_log.has("Entry no 2 in \"$GAME_DATA/upgrade_resources.json\" does not consist of two items!"));
    EXPECT_TRUE(
        m_log.has("$GAME_DATA/exists.txt is marked for upgrade, but the file exists. Ignoring upgrade pair"));
    EXPECT_EQ(pManager->upgradePath("$GAME_DATA/a"), "$GAME_DATA/c");
    EXPECT_EQ(pManager->upgradePath("$GAME_DATA/exists.txt"), "$GAME_DATA/exists.txt");
    EXPECT_EQ(pManager->upgradePath(""), "");
    EXPECT_EQ(pManager->upgradePath("$GAME_DATA/2"), "$GAME_DATA/10");
    EXPECT_FALSE(m_log.has("internaly"));
    EXPECT_EQ(pManager->upgradePath("$GAME_DATA/1"), "$GAME_DATA/10");
    EXPECT_EQ(m_log.count("internaly"), 1u) << "nine steps are one too many, whatever comes then";
    EXPECT_EQ(pManager->upgradePath("$GAME_DATA/0"), "$GAME_DATA/9");
    EXPECT_TRUE(m_log.has(
        "Failed to internaly upgrade the path: \"$GAME_DATA/9\" has reached the max upgrade depth of: 8"));

    write("$GAME_DATA/b", "came back"); // after the table was read
    EXPECT_EQ(pManager->upgradePath("$GAME_DATA/a"), "$GAME_DATA/b");
    write("$GAME_DATA/a", "likewise");
    EXPECT_EQ(pManager->upgradePath("$GAME_DATA/a"), "$GAME_DATA/a");
}

TEST_F(ResourceRulesTest, picturesKeepRowsAndChannelsAndFailWhole)
{
    Picture picture = plain(3, 2, 0);
    for (size_t u = 0; u < picture.vecPixels.size(); ++u)
        picture.vecPixels[u] = static_cast<std::byte>(u * 10);
    const std::filesystem::path path = m_folder.path() / "p.png";
    ASSERT_TRUE(writePicture(path, 3, 2, picture.vecPixels));
    const auto loaded = loadPicture(path);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->vecPixels, picture.vecPixels);

    EXPECT_FALSE(writePicture(path, 3, 3, picture.vecPixels));
    EXPECT_FALSE(writePicture(m_folder.path() / "none/p.png", 3, 2, picture.vecPixels));
    std::filesystem::resize_file(path, 20);
    EXPECT_FALSE(loadPicture(path));
    EXPECT_FALSE(loadPicture(m_folder.path()));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.path()), {}), 2)
        << "temporary files are left";

    Picture squares = plain(4, 2, 0);
    for (const size_t uPixel : {0u, 1u, 4u, 5u})
        squares.vecPixels[uPixel * 4] = std::byte{static_cast<uint8_t>(uPixel * 20)};
    EXPECT_EQ(reducePicture(squares, 2).vecPixels[0], std::byte{50});
    EXPECT_EQ(scalePicture(plain(5, 7, 77), 16, 2).vecPixels, plain(16, 2, 77).vecPixels);
}

TEST_F(ResourceRulesTest, shadersIncludeFilesOfTheirFolder)
{
    write("$GAME_DATA/Shaders/glsl/a.glsl", "first\n#include \"b.glsl\"\nlast\n");
    write("$GAME_DATA/Shaders/glsl/b.glsl", "middle\n");
    write("$GAME_DATA/Shaders/glsl/loop.glsl", "#include \"loop.glsl\"\n");
    const auto pManager = make();
    rend::PipelineDesc desc;
    ASSERT_TRUE(loadShaderSource(pManager->resolver(), "a", desc));
    EXPECT_EQ(desc.sVertexSource, "first\n#line 1\nmiddle\n#line 3\nlast\n");
    EXPECT_FALSE(loadShaderSource(pManager->resolver(), "loop", desc));
    EXPECT_FALSE(loadShaderSource(pManager->resolver(), "none", desc));
    EXPECT_EQ(desc.sName, "a");
    EXPECT_EQ(m_log.errors(), 2u);
}
