#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/Device/DeviceChecks.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

using namespace rend;

TEST(RecordingDeviceTest, keepsTheBytesOfPartialUpdates)
{
    LogCapture log;
    RecordingDevice device;
    const TextureHandle texture = device.createTexture({.sName = "t",
                                                        .iWidth = 4,
                                                        .iHeight = 3,
                                                        .iLayers = 2,
                                                        .eLayout = resource::TextureResourceLayout::R8});
    const std::array<std::byte, 6> arrBytes{std::byte{1}, std::byte{2}, std::byte{9},
                                            std::byte{3}, std::byte{4}, std::byte{9}};
    ASSERT_TRUE(device.updateTexture(texture, {2, 1, 2, 2, 1, 0}, 3, arrBytes));
    const auto& vecBytes = device.texture(texture)->vecBytes;
    EXPECT_EQ(vecBytes[12 + 4 + 2], std::byte{1});
    EXPECT_EQ(vecBytes[12 + 8 + 3], std::byte{4});
    EXPECT_EQ(std::count(vecBytes.begin(), vecBytes.end(), std::byte{9}), 0);

    const BufferHandle buffer = device.createBuffer({"b", 8, 4, BufferKind::Vertex}, {});
    EXPECT_FALSE(device.updateBuffer(buffer, 3, arrBytes));
    EXPECT_TRUE(device.updateBuffer(buffer, 2, arrBytes));
    EXPECT_EQ(device.buffer(buffer)->vecBytes[7], std::byte{9});
    device.destroyBuffer(buffer);
    EXPECT_FALSE(device.updateBuffer(buffer, 0, arrBytes));
    EXPECT_EQ(log.errors(), 1u);
}

struct RegionCase
{
    TextureRegion region;
    size_t uPitch;
    size_t uBytes;
    bool bValid;
};

/// A BC1 texture of 10 x 6 with 2 mips: blocks of 8 bytes, ragged at the edge.
struct CompressedRegionTest : testing::TestWithParam<RegionCase>
{
};

TEST_P(CompressedRegionTest, blocksAreCheckedAtTheRaggedEdge)
{
    LogCapture log;
    const TextureDesc desc{.sName = "t",
                           .iWidth = 10,
                           .iHeight = 6,
                           .iMips = 2,
                           .eLayout = resource::TextureResourceLayout::Bc1};
    EXPECT_EQ(checkTextureUpdate(desc, GetParam().region, GetParam().uPitch, GetParam().uBytes),
              GetParam().bValid);
    EXPECT_EQ(log.errors(), GetParam().bValid ? 0u : 1u);
}

INSTANTIATE_TEST_SUITE_P(Regions, CompressedRegionTest,
                         testing::Values(RegionCase{{0, 0, 10, 6, 0, 0}, 24, 48, true},
                                         RegionCase{{0, 0, 10, 6, 0, 0}, 24, 47, false},
                                         RegionCase{{8, 4, 2, 2, 0, 0}, 8, 8, true},
                                         RegionCase{{2, 0, 4, 4, 0, 0}, 8, 8, false},
                                         RegionCase{{0, 0, 6, 4, 0, 0}, 16, 16, false},
                                         RegionCase{{0, 0, 5, 3, 0, 1}, 16, 16, true},
                                         RegionCase{{0, 0, 4, 4, 0, 2}, 8, 8, false},
                                         RegionCase{{4, 0, 2147483647, 4, 0, 0}, 8, 8, false},
                                         RegionCase{{0, 0, 8, 8, 0, 0}, 16, 32, false}));
