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

    void render(const SceneView& view = {}) { m_renderer.render({}, 64, 64, view); }

    /// A ground of that many vertices, all at height 0.
    TerrainSurfaceBindings& publish(uint32_t uVerticesX, uint32_t uVerticesY)
    {
        TerrainSurfaceBindings& ground = m_renderer.terrainBindings();
        const size_t uVertices = size_t{uVerticesX} * uVerticesY;
        ground.indexCount = (uVerticesX - 1) * (uVerticesY - 1) * 6;
        ground.vertexBuffer = m_device.createBuffer({"v", uVertices * 20, 20, BufferKind::Vertex}, {});
        ground.indexBuffer = m_device.createBuffer({"i", ground.indexCount * 4, 4, BufferKind::Index}, {});
        ground.surfaceInfo = m_device.createBuffer({"c", 16, 0, BufferKind::Constant}, {});
        ground.verticesX = uVerticesX;
        ground.verticesY = uVerticesY;
        for (TextureHandle* pTexture : {&ground.diffuseArray, &ground.asgArray, &ground.normalArray,
                                        &ground.texture0, &ground.texture1})
            *pTexture = m_device.createTexture({.sName = "t"});
        return ground;
    }

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

    TerrainSurfaceBindings& ground = publish(2, 2);
    const auto arrTextures = {&ground.diffuseArray, &ground.asgArray, &ground.normalArray, &ground.texture0,
                              &ground.texture1};
    m_device.clearCalls();
    render();

    uint32_t uSlot = 0;
    std::vector<RecordingDevice::Call> vecTextures;
    std::copy_if(m_device.calls().begin(), m_device.calls().end(), std::back_inserter(vecTextures),
                 [](const RecordingDevice::Call& call) { return call.eKind == Kind::SetTexture; });
    ASSERT_EQ(vecTextures.size(), 6u) << "the last is the shade map";
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

/// A still scene costs a copy; whatever it shows makes it new, its lines don't.
TEST_F(RendererTest, windowSceneIsDrawnAgainOnlyWhenSomethingOfItChanged)
{
    const TerrainSurfaceBindings& ground = publish(2, 2);
    DebugDrawer drawer(16);
    m_renderer.setDebugDrawer(&drawer);
    SceneView view;
    const auto isDrawn = [&]
    {
        m_device.clearCalls();
        render(view);
        EXPECT_EQ(m_device.count(Kind::CopyTarget), 1u);
        return m_device.count(Kind::DrawIndexed) == 1;
    };
    EXPECT_TRUE(isDrawn());
    EXPECT_FALSE(isDrawn());
    const std::array<std::byte, 20> arrVertex{};
    const std::array<std::byte, 4> arrTexel{};
    EXPECT_TRUE(m_device.updateBuffer(ground.vertexBuffer, 20, arrVertex));
    EXPECT_TRUE(isDrawn());
    EXPECT_TRUE(m_device.updateTexture(ground.texture1, {0, 0, 1, 1}, 4, arrTexel));
    EXPECT_TRUE(isDrawn());
    m_device.generateMips(ground.normalArray);
    EXPECT_TRUE(isDrawn());
    view.view[3].x = 1.0f;
    EXPECT_TRUE(isDrawn());
    m_renderer.settings().exposure *= 1.1f;
    EXPECT_TRUE(isDrawn());
    drawer.addLine({0, 0, 0}, {1, 0, 0}, glm::vec4(1.0f));
    drawer.swap();
    EXPECT_FALSE(isDrawn());
    EXPECT_EQ(m_device.count(Kind::Draw), 2u);
    EXPECT_FALSE(isDrawn());
}
