#include "TileEditorCommon/Ground/GroundUploader.h"
#include "KestrelCommon/Device/RecordingDevice.h"
#include "Tests/Ground/GroundWorld.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;
using Kind = rend::RecordingDevice::CallKind;

struct GroundUploaderTest : testing::Test
{
    void frame()
    {
        device.clearCalls();
        if (world.surface.rebuild())
            uploader.upload(world.surface, bindings);
    }

    /// The device's bytes are the surface's.
    void expectEqual() const
    {
        const auto same = [](const std::vector<std::byte>& vecBytes, const auto& spanValues)
        { return std::ranges::equal(vecBytes, std::as_bytes(spanValues)); };
        EXPECT_TRUE(same(device.buffer(bindings.vertexBuffer)->vecBytes, world.surface.vertices()));
        EXPECT_TRUE(same(device.buffer(bindings.indexBuffer)->vecBytes, world.surface.indices()));
        EXPECT_TRUE(same(device.texture(bindings.texture0)->vecBytes, world.surface.texels0()));
        EXPECT_TRUE(same(device.texture(bindings.texture1)->vecBytes, world.surface.texels1()));
    }

    LogCapture log;
    rend::RecordingDevice device;
    rend::TerrainSurfaceBindings bindings;
    GroundWorld world{2, 1};
    GroundUploader uploader{device};
};

TEST_F(GroundUploaderTest, publishesTheGroundAndKeepsItEqual)
{
    frame();
    EXPECT_EQ(bindings.indexCount, 64u * 32 * 6);
    const auto& info = device.buffer(bindings.surfaceInfo)->vecBytes;
    ASSERT_EQ(info.size(), 16u);
    uint32_t uVertices;
    float fInverse;
    std::memcpy(&uVertices, info.data(), 4);
    std::memcpy(&fInverse, info.data() + 4, 4);
    EXPECT_EQ(uVertices, 65u);
    EXPECT_EQ(fInverse, 1.0f / 64);
    expectEqual();

    world.surface.raise(GroundWorld::dab(70, 30, 9, 1, 1), 1.0f);
    frame();
    expectEqual();
    world.surface.paintMaterial(5, false, GroundWorld::dab(127, 63, 4, 1));
    frame();
    EXPECT_EQ(device.count(Kind::UpdateTexture), 2u);
    EXPECT_EQ(device.count(Kind::UpdateBuffer), 0u);
    expectEqual();
    frame();
    EXPECT_TRUE(device.calls().empty());
    EXPECT_EQ(log.errors(), 0u) << log.dump();
}

TEST_F(GroundUploaderTest, colourSendsNoTriangles)
{
    frame();
    world.surface.paintColor({0, 0, 0, 1}, GroundWorld::dab(70, 30, 9, 1));
    frame();
    EXPECT_EQ(device.count(Kind::UpdateBuffer), 1u);
    expectEqual();
}

TEST_F(GroundUploaderTest, newGridsGetNewResourcesAndReleaseLeavesNone)
{
    frame();
    const rend::BufferHandle before = bindings.vertexBuffer;
    world.surface.init(64, 64);
    frame();
    EXPECT_NE(bindings.vertexBuffer, before);
    EXPECT_EQ(device.bufferCount(), 3u);
    EXPECT_EQ(device.textureCount(), 2u);
    expectEqual();
    bindings.diffuseArray = {77};
    uploader.release(bindings);
    EXPECT_EQ(device.bufferCount() + device.textureCount(), 0u);
    EXPECT_FALSE(bindings.vertexBuffer || bindings.texture1);
    EXPECT_FALSE(bindings.diffuseArray);
    EXPECT_EQ(bindings.indexCount, 0u);
    world.surface.raise(GroundWorld::dab(30, 30, 9, 1), 1.0f);
    frame(); // made again
    expectEqual();
}

} // namespace
