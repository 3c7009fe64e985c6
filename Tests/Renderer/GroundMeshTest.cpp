#include "KestrelCommon/renderer/GroundMesh.h"
#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/renderer/Camera.h"
#include "KestrelCommon/renderer/GroundShade.h"

#include <gtest/gtest.h>

#include <map>

using namespace rend;
using Kind = RecordingDevice::CallKind;

namespace
{

struct Corner
{
    int iX;
    int iY;
};

/// Twice the area, positive counter-clockwise; in quads.
int area(const Corner& a, const Corner& b, const Corner& c)
{
    return (b.iX - a.iX) * (c.iY - a.iY) - (c.iX - a.iX) * (b.iY - a.iY);
}

/// A ground of 6 x 5 cells on a device that counts as a CPU's.
struct GroundMeshTest : testing::Test
{
    static constexpr uint32_t s_uVerticesX = 6 * 32 + 1;
    static constexpr uint32_t s_uVerticesY = 5 * 32 + 1;
    static constexpr int s_iQuads = 6 * 32 * 5 * 32;

    void SetUp() override
    {
        m_device.m_bSoftware = true;
        PipelineDesc desc;
        desc.sVertexSource = desc.sFragmentSource = "x";
        m_pipeline = m_device.createPipeline(desc);
        std::vector<uint32_t> vecIndices;
        for (uint32_t uY = 0; uY + 1 < s_uVerticesY; ++uY)
            for (uint32_t uX = 0; uX + 1 < s_uVerticesX; ++uX)
            {
                const uint32_t a = uY * s_uVerticesX + uX;
                const uint32_t c = a + s_uVerticesX;
                vecIndices.insert(vecIndices.end(), {c, a + 1, a, c, c + 1, a + 1});
            }
        m_ground.indexBuffer = m_device.createBuffer({"i", vecIndices.size() * 4, 4, BufferKind::Index},
                                                     std::as_bytes(std::span(vecIndices)));
        m_ground.vertexBuffer = m_device.createBuffer(
            {"v", size_t{s_uVerticesX} * s_uVerticesY * 20, 20, BufferKind::Vertex}, {});
        m_ground.indexCount = static_cast<uint32_t>(vecIndices.size());
        m_ground.verticesX = s_uVerticesX;
        m_ground.verticesY = s_uVerticesY;
    }

    /// All triangles that were drawn, by the bytes of the buffers they came from.
    std::vector<std::array<Corner, 3>> drawn() const
    {
        std::vector<std::array<Corner, 3>> vecTriangles;
        BufferHandle indices;
        for (const RecordingDevice::Call& call : m_device.calls())
        {
            if (call.eKind == Kind::SetIndexBuffer)
                indices = {call.uId};
            if (call.eKind != Kind::DrawIndexed)
                continue;
            const auto& vecBytes = m_device.buffer(indices)->vecBytes;
            for (uint32_t u = call.uB; u + 2 < call.uB + call.uA; u += 3)
            {
                std::array<uint32_t, 3> arrVertices{};
                std::memcpy(arrVertices.data(), vecBytes.data() + size_t{u} * 4, 12);
                std::array<Corner, 3> arrCorners{};
                for (size_t k = 0; k < 3; ++k)
                    arrCorners[k] = {static_cast<int>(arrVertices[k] % s_uVerticesX),
                                     static_cast<int>(arrVertices[k] / s_uVerticesX)};
                vecTriangles.push_back(arrCorners);
            }
        }
        return vecTriangles;
    }

    void draw(const glm::vec3& eye, const glm::vec3& direction)
    {
        Camera camera;
        camera.nearPlane = 0.1f;
        camera.farPlane = 3000.0f;
        camera.position = eye;
        camera.lookAlong(direction);
        m_device.clearCalls();
        m_device.beginPass({}, {});
        m_device.setPipeline(m_pipeline);
        m_mesh.draw(m_ground, camera.projectionMatrix() * camera.viewMatrix(), eye);
        m_device.endPass();
    }

    RecordingDevice m_device;
    TerrainSurfaceBindings m_ground;
    PipelineHandle m_pipeline;
    GroundMesh m_mesh{m_device};
};

} // namespace

/// From near and far: everything once, the same side up, and no edge that another one meets halfway.
TEST_F(GroundMeshTest, cellsOfAllLevelsCoverTheGroundOnceAndMeetWithoutGaps)
{
    size_t uLast = m_ground.indexCount;
    for (const glm::vec3& eye : {glm::vec3(192.0f, -60.0f, 260.0f), glm::vec3(192.0f, -500.0f, 800.0f)})
    {
        draw(eye, glm::vec3(192.0f, 160.0f, 0.0f) - eye);
        int iArea = 0;
        std::map<std::array<int, 4>, int> mapEdges;
        const auto vecTriangles = drawn();
        for (const auto& [a, b, c] : vecTriangles)
        {
            EXPECT_LT(area(a, b, c), 0);
            iArea -= area(a, b, c);
            for (const auto& [from, to] : {std::pair{a, b}, std::pair{b, c}, std::pair{c, a}})
            {
                ++mapEdges[{from.iX, from.iY, to.iX, to.iY}];
                --mapEdges[{to.iX, to.iY, from.iX, from.iY}];
            }
        }
        EXPECT_EQ(iArea, 2 * s_iQuads);
        for (const auto& [edge, iCount] : mapEdges)
        {
            const bool bRim = (edge[0] == edge[2] && (edge[0] == 0 || edge[0] == s_uVerticesX - 1)) ||
                              (edge[1] == edge[3] && (edge[1] == 0 || edge[1] == s_uVerticesY - 1));
            if (iCount != 0)
                EXPECT_TRUE(bRim) << edge[0] << ", " << edge[1] << " to " << edge[2] << ", " << edge[3];
        }
        EXPECT_LT(vecTriangles.size() * 3, uLast) << "the farther, the coarser";
        uLast = vecTriangles.size() * 3;
    }
}

TEST_F(GroundMeshTest, whatIsOutOfViewIsLeftOutAndWhatIsNearIsWhole)
{
    draw({192.0f, 100.0f, 2.0f}, {0.0f, -1.0f, 0.0f});
    int iArea = 0;
    for (const auto& [a, b, c] : drawn())
    {
        EXPECT_EQ(area(a, b, c), -1);
        EXPECT_LT(std::min({a.iY, b.iY, c.iY}), 64) << "behind";
        iArea += 1;
    }
    EXPECT_GE(iArea, 2 * 4 * 32 * 32);

    m_device.m_bSoftware = false;
    draw({192.0f, 100.0f, 2.0f}, {0.0f, -1.0f, 0.0f});
    EXPECT_EQ(m_device.count(Kind::DrawIndexed), 1u);
    EXPECT_EQ(drawn().size(), size_t{2} * s_iQuads);
}

/// A change is worked off in bands that touch each row once; a new ground at once.
TEST_F(GroundMeshTest, shadeIsRenewedByAndByAndWhole)
{
    GroundShade shade(m_device);
    shade.setPipeline(m_pipeline);
    const auto rows = [&](bool bWhole = false)
    {
        m_device.clearCalls();
        shade.update(m_ground, {0.5f, 0.5f, 0.7f}, {}, 1, bWhole);
        std::vector<uint32_t> vecRows;
        for (const RecordingDevice::Call& call : m_device.calls())
            if (call.eKind == Kind::SetScissor)
                for (uint32_t u = 0; u < call.uD; ++u)
                    vecRows.push_back(call.uB + u);
        return vecRows;
    };
    EXPECT_EQ(rows().size(), s_uVerticesY);
    EXPECT_TRUE(rows().empty());
    const std::array<std::byte, 20> arrVertex{};
    (void)m_device.updateBuffer(m_ground.vertexBuffer, 0, arrVertex);
    const uint64_t uRevision = shade.revision();
    std::vector<uint32_t> vecAll;
    for (int i = 0; i < 50; ++i)
    {
        const auto vecSome = rows();
        EXPECT_LT(vecSome.size(), s_uVerticesY);
        vecAll.insert(vecAll.end(), vecSome.begin(), vecSome.end());
    }
    std::sort(vecAll.begin(), vecAll.end());
    ASSERT_EQ(vecAll.size(), s_uVerticesY);
    for (uint32_t u = 0; u < s_uVerticesY; ++u)
        EXPECT_EQ(vecAll[u], u);
    EXPECT_NE(shade.revision(), uRevision);
    (void)m_device.updateBuffer(m_ground.vertexBuffer, 0, arrVertex);
    EXPECT_EQ(rows(true).size(), s_uVerticesY) << "a picture can't wait";
}
