#include "KestrelCommon/renderer/Renderer.h"
#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

using namespace rend;
using Kind = RecordingDevice::CallKind;

namespace
{

/// The real shaders, and a device that only takes notes.
struct RendererTest : testing::Test
{
    void SetUp() override { ASSERT_TRUE(m_renderer.init()) << m_log.dump(); }

    void render() { m_renderer.render({}, 64, 64, {}); }

    LogCapture m_log;
    RecordingDevice m_device;
    resource::ResourceManager m_resources{m_device,
                                          [](std::string_view sPath) {
                                              return std::filesystem::path(QM_SOURCE_DIR) /
                                                     "StarterContent/Data" /
                                                     sPath.substr(sizeof("$GAME_DATA"));
                                          },
                                          1, false};
    Renderer m_renderer{m_device, m_resources};
};

} // namespace

TEST_F(RendererTest, groundIsOneIndexedDrawWithFiveTexturesInTheirOrder)
{
    EXPECT_EQ(m_renderer.terrainBindings().renderLayers, 0x2040u);
    render();
    EXPECT_EQ(m_device.count(Kind::DrawIndexed), 0u) << "nothing is published yet";

    TerrainSurfaceBindings& ground = m_renderer.terrainBindings();
    ground.vertexBuffer = m_device.createBuffer({"v", 80, 20, BufferKind::Vertex}, {});
    ground.indexBuffer = m_device.createBuffer({"i", 24, 4, BufferKind::Index}, {});
    ground.surfaceInfo = m_device.createBuffer({"c", 16, 0, BufferKind::Constant}, {});
    ground.indexCount = 6;
    const auto arrTextures = {&ground.diffuseArray, &ground.asgArray, &ground.normalArray, &ground.texture0,
                              &ground.texture1};
    for (TextureHandle* pTexture : arrTextures)
        *pTexture = m_device.createTexture({.sName = "t"});
    m_device.clearCalls();
    render();

    uint32_t uSlot = 0;
    std::vector<RecordingDevice::Call> vecTextures;
    std::copy_if(m_device.calls().begin(), m_device.calls().end(), std::back_inserter(vecTextures),
                 [](const RecordingDevice::Call& call) { return call.eKind == Kind::SetTexture; });
    ASSERT_EQ(vecTextures.size(), 5u);
    for (const TextureHandle* pTexture : arrTextures)
    {
        EXPECT_EQ(vecTextures[uSlot].uId, pTexture->uId);
        EXPECT_EQ(vecTextures[uSlot].uA, uSlot);
        ++uSlot;
    }
    ASSERT_EQ(m_device.count(Kind::DrawIndexed), 1u);
    const auto it =
        std::find_if(m_device.calls().begin(), m_device.calls().end(),
                     [](const RecordingDevice::Call& call) { return call.eKind == Kind::DrawIndexed; });
    EXPECT_EQ(it->uA, 6u);
    EXPECT_EQ(it->uB, 0u);
    const PipelineDesc* pPipeline = m_device.pipeline({it->uId});
    EXPECT_EQ(pPipeline->vecDefines.front(), "GBUFFER 1");
    EXPECT_EQ(pPipeline->vecSlots.front().uStride, 20u);

    ground.release();
    EXPECT_EQ(ground.renderLayers, 0x2040u);
    m_device.clearCalls();
    render();
    EXPECT_EQ(m_device.count(Kind::DrawIndexed), 0u);
}

/// Lines live from the swap after they were added to the next; what is too much is left out.
TEST_F(RendererTest, linesLiveForOneFrameAndHaveALimit)
{
    DebugDrawer drawer(16);
    m_renderer.setDebugDrawer(&drawer);
    const auto drawn = [&]
    {
        m_device.clearCalls();
        render();
        uint32_t uLines = 0;
        for (const RecordingDevice::Call& call : m_device.calls())
            if (call.eKind == Kind::Draw && call.uA == 4)
                uLines += call.uC;
        return uLines;
    };
    drawer.addBox({0, 0, 0}, {1, 1, 1}, glm::vec4(1.0f), false); // twelve edges, eight fit
    EXPECT_EQ(drawn(), 0u);
    drawer.swap();
    EXPECT_EQ(drawn(), 8u);
    EXPECT_EQ(m_log.warnings(), 1u);
    drawer.addLine({0, 0, 0}, {1, 0, 0}, glm::vec4(1.0f));
    drawer.swap();
    EXPECT_EQ(drawn(), 2u) << "a tested line is drawn faintly through everything and fully where it is seen";
    drawer.swap();
    EXPECT_EQ(drawn(), 0u);
}
