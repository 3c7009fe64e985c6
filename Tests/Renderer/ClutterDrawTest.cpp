// What the clutter hands to the device.

#include "KestrelCommon/renderer/ClutterDraw.h"
#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>

#include <glm/gtc/matrix_transform.hpp>

using namespace rend;
using Kind = RecordingDevice::CallKind;

namespace
{

constexpr const char* s_pTwoMeshes = R"({"clutterList":[
    {"uuid":"00000000-0000-4000-8000-000000000001","mesh":"$GAME_DATA/a.obj","texture":"t0","height":0.5,
     "scaleVariance":0.25,"wind":true},
    {"uuid":"00000000-0000-4000-8000-000000000002","mesh":"$GAME_DATA/b.obj","texture":"t1","height":2,
     "scaleVariance":0.1,"impostor_texture":"i1","slope":"skew"},
    {"uuid":"00000000-0000-4000-8000-000000000003","mesh":"$GAME_DATA/b.obj","texture":"t0","height":1,
     "scaleVariance":0.3,"impostor_texture":"i2","rotate":"rotate"}]})";

TEST(ClutterMeshTest, readsFacesAndRefusesBrokenOnes)
{
    LogCapture log;
    const auto mesh =
        parseClutterMesh("# a\r\nv -1 0 0\nv 1 0 0\r\nv 1 2 4.5\nv -1 2 4\nvt 0 0.25\nvn 0 0 1\n"
                         "f 1/1/1 2/1/1 3/1/1 4/1/1\ng more\nf 1/1/1 2/1/1 4//1\n",
                         "m");
    ASSERT_TRUE(mesh);
    EXPECT_EQ(mesh->vecIndices, (std::vector<uint16_t>{0, 1, 2, 0, 2, 3, 0, 1, 4}));
    EXPECT_EQ(mesh->uCoreIndices, 6u);
    EXPECT_EQ(mesh->vecVertices[0].texCoord[1], toHalf(0.75f));
    EXPECT_EQ(mesh->vecVertices[2].position,
              (std::array<uint16_t, 4>{toHalf(1), toHalf(2), toHalf(4.5f), toHalf(1)}));
    EXPECT_EQ(mesh->box.highest, glm::vec3(1, 2, 4.5f));
    EXPECT_EQ(log.errors(), 0u);
    for (const char* pBroken : {"", "v 1 2\n", "v 1 2 x\n", "v 1 2 nan\n", "v 1 2 1e30\n", "v 0 0 0\nf 1 1\n",
                                "v 0 0 0\nf 1 1 2\n", "v 0 0 0\nf 1 1 0\n", "v 0 0 0\nf 1/1 1/1 1/1\n",
                                "v 0 0 0\nf 1 1 -1\n", "v 0 0 0\nf 1 1 99999999999999999999\n", "v 0 0 0\n"})
        EXPECT_FALSE(parseClutterMesh(pBroken, "broken")) << pBroken;
    EXPECT_EQ(log.errors(), 12u);
}

/// Real shaders, two small meshes, a device that only takes notes.
struct ClutterDrawTest : testing::Test
{
    ClutterDrawTest()
    {
        std::ofstream(m_folder.path() / "a.obj") << "v -1 -3 0\nv 1 3 0\nv 0 0 8\nf 1 2 3\ng more\nf 3 2 1\n";
        std::ofstream(m_folder.path() / "b.obj") << "v -2 0 0\nv 2 0 0\nv 0 1 4\nf 1 2 3\n";
    }
    void SetUp() override
    {
        m_database.loadText(s_pTwoMeshes, "types");
        ASSERT_TRUE(m_draw.load(m_database)) << m_log.dump();
    }
    void plant(uint8_t uType, float x, int iCount)
    {
        for (int i = 0; i < iCount; ++i)
            m_groups.findOrCreate({static_cast<int16_t>(x / 32.0f), 0})
                ->addClutter(m_draw.types().mesh(uType), uType, {x, 1.0f, 0.5f}, {0, 0, 1}, 0x11223344, 1.0f);
    }
    void draw()
    {
        m_device.clearCalls();
        m_draw.prepare(m_groups);
        m_device.beginPass({}, {});
        m_draw.draw(m_groups, {.viewProjection = glm::scale(glm::mat4(1.0f), glm::vec3(1e-4f, 1e-4f, 0.0f)),
                               .camera = {5, 5}});
        m_device.endPass();
    }
    [[nodiscard]] std::vector<RecordingDevice::Call> calls(Kind eKind) const
    {
        std::vector<RecordingDevice::Call> vecCalls;
        std::copy_if(m_device.calls().begin(), m_device.calls().end(), std::back_inserter(vecCalls),
                     [&](const RecordingDevice::Call& call) { return call.eKind == eKind; });
        return vecCalls;
    }
    /// The constant buffer that was bound at the slot of the types last.
    template <class Records>
    [[nodiscard]] Records boundRecords() const
    {
        Records records{};
        for (const RecordingDevice::Call& call : calls(Kind::SetUniformBuffer))
            if (call.uA == 6)
                std::memcpy(&records, m_device.buffer({call.uId})->vecBytes.data(), sizeof(records));
        return records;
    }

    LogCapture m_log;
    TempFolder m_folder;
    RecordingDevice m_device;
    resource::ResourceManager m_resources{
        m_device,
        [this](std::string_view sPath)
        {
            const std::string sRest(sPath.substr(std::min(sizeof("$GAME_DATA"), sPath.size())));
            return sRest.ends_with(".obj")
                       ? m_folder.path() / sRest
                       : std::filesystem::path(QM_SOURCE_DIR) / "StarterContent/Data" / sRest;
        },
        1, false};
    tile::ClutterDatabase m_database;
    CullingGroups m_groups;
    ClutterDraw m_draw{m_device, m_resources};
};

TEST_F(ClutterDrawTest, eachTypeNearbyIsOneInstancedDraw)
{
    draw();
    EXPECT_EQ(calls(Kind::DrawIndexed).size() + calls(Kind::Draw).size(), 0u);
    plant(2, 40, 3);
    plant(0, 5, 2);
    plant(1, 5, 4);
    draw();
    const auto vecDraws = calls(Kind::DrawIndexed);
    ASSERT_EQ(vecDraws.size(), 3u);
    const auto expect = [&](size_t u, uint32_t uIndices, uint32_t uInstances, uint32_t uFirst)
    {
        EXPECT_EQ(vecDraws[u].uA, uIndices);
        EXPECT_EQ(vecDraws[u].uB, 0u);
        EXPECT_EQ(vecDraws[u].uC, uInstances);
        EXPECT_EQ(vecDraws[u].uD, uFirst);
    };
    expect(0, 6, 2, 0);
    expect(1, 3, 4, 2);
    expect(2, 3, 3, 6);
    EXPECT_EQ(calls(Kind::SetIndexBuffer).size(), 2u) << "types 1 and 2 share a mesh";
    const PipelineDesc* pPipeline = m_device.pipeline({vecDraws[0].uId});
    EXPECT_EQ(pPipeline->vecSlots.size(), 2u);
    EXPECT_TRUE(pPipeline->vecSlots[1].bPerInstance);
    EXPECT_EQ(pPipeline->vecSlots[1].uStride, 20u);

    // The instances as they lie in the borrowed buffer.
    uint32_t uInstances = 0;
    for (const RecordingDevice::Call& call : calls(Kind::SetVertexBuffer))
        if (call.uA == 1)
            uInstances = call.uId;
    std::array<ClutterInstance, 9> arrInstances;
    ASSERT_GE(m_device.buffer({uInstances})->vecBytes.size(), sizeof(arrInstances));
    std::memcpy(arrInstances.data(), m_device.buffer({uInstances})->vecBytes.data(), sizeof(arrInstances));
    EXPECT_EQ(arrInstances[0].colorIndex, 0x11223300u);
    EXPECT_EQ(arrInstances[8].colorIndex, 0x11223302u);
    EXPECT_EQ(arrInstances[8].x, 40.0f);
    EXPECT_EQ(arrInstances[8].z, toHalf(0.5f));

    const auto records = boundRecords<ClutterTypes::MeshRecords>();
    EXPECT_EQ(records[1].height, 2.0f);
    EXPECT_EQ(records[0].flags, 2u);
    EXPECT_EQ(records[1].flags, 4u);
    EXPECT_EQ(records[2].flags, 8u);
    EXPECT_EQ(records[2].scaleVariance, 0.3f);
    EXPECT_EQ(records[3].height, 0.0f);
    EXPECT_EQ(m_device.texture({calls(Kind::SetTexture)[0].uId})->desc.iLayers, 3);
    EXPECT_EQ(m_device.texture({calls(Kind::SetTexture)[0].uId})->desc.iWidth, 256);
}

TEST_F(ClutterDrawTest, allImpostorsAreOneStripDraw)
{
    plant(0, 905, 2);
    plant(1, 905, 4);
    plant(2, 1205, 3);
    draw();
    EXPECT_TRUE(calls(Kind::DrawIndexed).empty());
    const auto vecDraws = calls(Kind::Draw);
    ASSERT_EQ(vecDraws.size(), 1u);
    EXPECT_EQ(vecDraws[0].uA, 4u);
    EXPECT_EQ(vecDraws[0].uC, 7u);
    EXPECT_EQ(m_device.pipeline({vecDraws[0].uId})->eTopology, Topology::TriangleStrip);
    const auto records = boundRecords<ClutterTypes::ImpostorRecords>();
    EXPECT_EQ(records[0].scaleVariance, 0.1f);
    EXPECT_EQ(records[0].halfWidth, (4.0f + 1.0f) * 0.0625f);
    EXPECT_EQ(records[0].halfHeight, 4.0f * 0.125f * 2.0f);
    EXPECT_EQ(records[1].halfHeight, 4.0f * 0.125f);
    EXPECT_EQ(m_device.texture({calls(Kind::SetTexture)[0].uId})->desc.iLayers, 2);
    EXPECT_EQ(m_device.texture({calls(Kind::SetTexture)[0].uId})->desc.iWidth, 32);
}

TEST_F(ClutterDrawTest, framesBorrowTheSameBuffers)
{
    plant(0, 5, 40);
    plant(1, 905, 40);
    draw();
    const size_t uBuffers = m_device.bufferCount();
    for (int i = 0; i < 8; ++i)
    {
        m_resources.update();
        draw();
    }
    EXPECT_EQ(m_device.bufferCount(), uBuffers);
}

/// A CPU that draws leaves out the part of a mesh behind its core.
TEST_F(ClutterDrawTest, aCpuDrawsTheCoreOfMeshes)
{
    m_device.m_bSoftware = true;
    ASSERT_TRUE(m_draw.load(m_database));
    plant(0, 5, 1);
    draw();
    ASSERT_EQ(calls(Kind::DrawIndexed).size(), 1u);
    EXPECT_EQ(calls(Kind::DrawIndexed)[0].uA, 3u);
}

} // namespace
