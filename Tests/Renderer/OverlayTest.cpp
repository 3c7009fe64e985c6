// What lies over a scene, and instances as the device hears of them.

#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/InstanceWorld.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "Tests/Support/LogCapture.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace rend;
using Kind = RecordingDevice::CallKind;

namespace
{

/// The real shaders, and a device that only takes notes. The eye stands at the origin and looks along -z.
struct OverlayTest : testing::Test
{
    void SetUp() override
    {
        ASSERT_TRUE(m_renderer.init()) << m_log.dump();
        m_renderer.setDebugDrawer(&m_drawer);
        m_renderer.setBillboards(&m_billboards);
        m_billboards.setImages(m_device.createTexture({.sName = "icons", .iLayers = 2}));
    }
    void render()
    {
        m_drawer.swap();
        m_device.clearCalls();
        m_renderer.render({}, 64, 64, {});
    }
    /// Instances (or vertices, when there is one instance) of the draws with a pipeline of that name.
    [[nodiscard]] std::vector<uint32_t> draws(std::string_view sName) const
    {
        std::vector<uint32_t> vecCounts;
        for (const RecordingDevice::Call& call : m_device.calls())
            if ((call.eKind == Kind::Draw || call.eKind == Kind::DrawIndexed) &&
                m_device.pipeline({call.uId})->sName == sName)
                vecCounts.push_back(call.uC > 1 ? call.uC : call.uA);
        return vecCounts;
    }
    static std::shared_ptr<const resource::Renderable> box(size_t uSlots)
    {
        resource::RenderableDesc desc{.sMesh = "none", .mapMaterials = {}};
        for (size_t u = 0; u < uSlots; ++u)
            desc.mapMaterials[std::to_string(u)].sColorSlot = std::to_string(u);
        auto pModel = std::make_shared<const resource::ModelFile>("none", [](std::string_view)
                                                                  { return std::filesystem::path(); });
        return std::make_shared<const resource::Renderable>(desc, pModel, false);
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
    DebugDrawer m_drawer{8};
    BillboardBatch m_billboards;
};

TEST_F(OverlayTest, iconsStayUntilTheNextBatchEnds)
{
    m_billboards.begin();
    for (int i = 0; i < 3; ++i)
        m_billboards.add({0, 0, static_cast<float>(-i)}, 1.0f, glm::vec4(1.0f), 0);
    render();
    EXPECT_TRUE(draws("billboards").empty()) << "not shown before the end";
    m_billboards.end();
    render();
    EXPECT_EQ(draws("billboards"), (std::vector<uint32_t>{3, 3})) << "faint through all, then in full";
    EXPECT_EQ(m_device.calls().front().eKind, Kind::UpdateBuffer);
    m_billboards.begin();
    m_billboards.add({0, 0, 0}, 1.0f, glm::vec4(1.0f), 0);
    render();
    EXPECT_EQ(draws("billboards"), (std::vector<uint32_t>{3, 3}));
    m_billboards.begin(); // drops what was added
    m_billboards.end();
    render();
    EXPECT_TRUE(draws("billboards").empty());
}

TEST_F(OverlayTest, boxesTakeNoRoomOfLinesAndHandlesComeLast)
{
    for (int i = 0; i < 100; ++i)
        m_drawer.addOrientedBox({}, {{0, 0, 0}, {1, 2, 3}}, glm::vec4(1.0f));
    for (int i = 0; i < 10; ++i)
        m_drawer.addLine({0, 0, 0}, {1, 1, 1}, glm::vec4(1.0f), false);
    m_drawer.addTriangles(std::array<glm::vec3, 4>{}, glm::vec4(1.0f)); // the fourth point makes none
    render();
    EXPECT_EQ(m_drawer.tested().size(), 1200u);
    EXPECT_EQ(m_drawer.untested().size(), 4u);
    EXPECT_EQ(draws("debug_lines"), (std::vector<uint32_t>{1200, 1200, 4}));
    EXPECT_EQ(draws("debug_solids"), (std::vector<uint32_t>{3}));
    const auto& vecCalls = m_device.calls();
    const auto itLast =
        std::find_if(vecCalls.rbegin(), vecCalls.rend(),
                     [](const RecordingDevice::Call& call) { return call.eKind == Kind::Draw; });
    EXPECT_EQ(m_device.pipeline({itLast->uId})->sName, "debug_solids");
    render();
    EXPECT_TRUE(draws("debug_solids").empty()) << "they live for a frame";
    EXPECT_TRUE(draws("debug_lines").empty());
}

TEST_F(OverlayTest, boxesAreScaledTurnedAndMoved)
{
    const Transform transform{{10, 0, 0}, {0.70710677f, 0.70710677f, 0, 0}, {1, 2, 1}};
    m_drawer.addOrientedBox(transform, {{0, 0, 0}, {1, 3, 1}}, glm::vec4(1.0f));
    m_drawer.swap();
    float fHigh = 0.0f;
    for (const DebugDrawer::Line& line : m_drawer.tested())
        fHigh = std::max({fHigh, line.start.z, line.end.z});
    EXPECT_NEAR(fHigh, 6.0f, 1e-5f); // +Y of the thing is up
}

TEST_F(OverlayTest, instancesAreDrawnByKindAndStayInAStillPicture)
{
    InstanceWorld world;
    m_renderer.setInstances(&world);
    const uint32_t uPlain = world.addRenderable(box(0));
    const uint32_t uMany = world.addRenderable(box(9));
    for (int i = 0; i < 5; ++i)
        world.addInstance(uPlain, {}, {});
    const uint32_t uSlot = world.addInstance(uMany, {}, {});
    render();
    // The stand-in has one part without a colour: of three pages the first draws it.
    EXPECT_EQ(draws("main_asset"), (std::vector<uint32_t>{5, 36}));
    render();
    EXPECT_TRUE(draws("main_asset").empty()) << "nothing changed";
    world.setColours(uSlot, std::array{1u});
    render();
    EXPECT_EQ(draws("main_asset").size(), 2u);
    world.removeInstance(uSlot);
    render();
    EXPECT_EQ(draws("main_asset"), (std::vector<uint32_t>{5}));

    EXPECT_TRUE(draws("asset_outline").empty());
    const uint32_t uPlace = world.addHighlight(uPlain, {});
    render();
    EXPECT_EQ(draws("asset_mask").size(), 1u);
    EXPECT_EQ(draws("asset_outline").size(), 1u);
    world.removeHighlight(uPlain, uPlace);
    render();
    EXPECT_TRUE(draws("asset_mask").empty());
    EXPECT_FALSE(draws("main_asset").empty()) << "the picture without the outline";

    // Another world under the same numbers is another scene.
    InstanceWorld other;
    other.addInstance(other.addRenderable(box(1)), {}, {});
    m_renderer.setInstances(&other);
    world.removeInstance(0);
    render();
    EXPECT_EQ(draws("main_asset").size(), 1u);
    m_renderer.setInstances(nullptr);
    EXPECT_EQ(m_log.errors(), m_log.count("Failed to load mesh")) << m_log.dump();
}

} // namespace
