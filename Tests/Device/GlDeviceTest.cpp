#include "KestrelCommon/Device/GlDevice.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Device/EglContext.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace rend;

namespace
{

constexpr const char* s_pVertex = "layout(location = 0) in vec2 inPosition;\n"
                                  "layout(location = 1) in vec4 inColour;\n"
                                  "layout(std140, binding = 0) uniform Place { vec4 offsetDepth; };\n"
                                  "out vec4 colour;\n"
                                  "void main()\n"
                                  "{\n"
                                  "    colour = inColour;\n"
                                  "    gl_Position = vec4(inPosition + offsetDepth.xy, offsetDepth.z, 1.0);\n"
                                  "}\n";
constexpr const char* s_pFragment = "in vec4 colour;\n"
                                    "out vec4 result;\n"
                                    "void main() { result = colour; }\n";

struct Vertex
{
    float x, y;
    uint32_t uColour; ///< bytes R, G, B, A
};

template <class T>
std::span<const std::byte> bytesOf(const T& values)
{
    return std::as_bytes(std::span(values));
}

/// A real GL context on whatever driver is there, with pictures of 8 x 4 pixels.
struct GlDeviceTest : testing::Test
{
    void SetUp() override
    {
        m_pContext = EglContext::create();
        ASSERT_TRUE(m_pContext) << m_log.dump();
        makeDevice();
    }

    void makeDevice(bool bAvoidClipControl = false)
    {
        m_pDevice = createGlDevice(*m_pContext, {.iWidth = 8,
                                                 .iHeight = 4,
                                                 .cacheFolder = m_folder.path() / "Shaders",
                                                 .bDebugOutput = true,
                                                 .bAvoidClipControl = bAvoidClipControl});
        ASSERT_TRUE(m_pDevice) << m_log.dump();
    }

    PipelineDesc pipelineDesc() const
    {
        PipelineDesc desc;
        desc.sName = "test";
        desc.sVertexSource = s_pVertex;
        desc.sFragmentSource = s_pFragment;
        desc.vecSlots = {{sizeof(Vertex), false}};
        desc.vecAttributes = {{0, VertexFormat::Float2, 0, 0}, {1, VertexFormat::Unorm8x4, 8, 0}};
        return desc;
    }

    /// Draws counter-clockwise triangles over the left upper quarter of clip space at a depth.
    void drawQuarter(PipelineHandle pipeline, uint32_t uColour, float fDepth)
    {
        const std::array<Vertex, 4> arrVertices{
            {{-1, 0, uColour}, {0, 0, uColour}, {-1, 1, uColour}, {0, 1, uColour}}};
        const std::array<uint16_t, 6> arrIndices{0, 1, 2, 2, 1, 3};
        const std::array<float, 4> arrPlace{0, 0, fDepth, 0};
        m_pDevice->setPipeline(pipeline);
        m_pDevice->setVertexBuffer(
            0, m_pDevice->createBuffer({"v", sizeof(arrVertices), sizeof(Vertex), BufferKind::Vertex},
                                       bytesOf(arrVertices)));
        m_pDevice->setIndexBuffer(
            m_pDevice->createBuffer({"i", sizeof(arrIndices), 2, BufferKind::Index}, bytesOf(arrIndices)),
            IndexWidth::Bits16);
        m_pDevice->setUniformBuffer(
            0, m_pDevice->createBuffer({"c", sizeof(arrPlace), 0, BufferKind::Constant}, bytesOf(arrPlace)));
        m_pDevice->drawIndexed(6, 0);
    }

    uint32_t pixel(TargetHandle target, size_t uX, size_t uY)
    {
        std::array<uint32_t, 32> arrPixels{};
        EXPECT_TRUE(m_pDevice->readTarget(target, std::as_writable_bytes(std::span(arrPixels))));
        return arrPixels[uY * 8 + uX];
    }

    LogCapture m_log;
    TempFolder m_folder;
    std::unique_ptr<EglContext> m_pContext;
    std::unique_ptr<GraphicsDeviceI> m_pDevice;
};

/// With glClipControl and without, as on older drivers.
struct ClipSpaceTest : GlDeviceTest, testing::WithParamInterface<bool>
{
    void SetUp() override
    {
        GlDeviceTest::SetUp();
        makeDevice(GetParam());
    }
};
INSTANTIATE_TEST_SUITE_P(ClipControl, ClipSpaceTest, testing::Bool(),
                         [](const auto& avoided) { return avoided.param ? "Avoided" : "Used"; });

constexpr uint32_t s_uRed = 0xFF0000FF;
constexpr uint32_t s_uGreen = 0xFF00FF00;
constexpr uint32_t s_uBlack = 0xFF000000;

} // namespace

/// Rows, winding and depth direction, each of which differs between the window and other targets in GL.
TEST_P(ClipSpaceTest, windowAndTargetsHaveTheSameRowsWindingAndReversedDepth)
{
    const PipelineHandle pipeline = m_pDevice->createPipeline(pipelineDesc());
    ASSERT_TRUE(pipeline) << m_log.dump();
    const TargetHandle target = m_pDevice->createTarget({.sName = "t", .iWidth = 8, .iHeight = 4});
    const TargetHandle likeWindow =
        m_pDevice->createTarget({.sName = "w", .iWidth = 8, .iHeight = 4, .bWindowRows = true});
    for (const TargetHandle tested : {TargetHandle{}, target, likeWindow})
    {
        m_pDevice->beginPass(tested, {});
        drawQuarter(pipeline, s_uRed, 0.75f);
        drawQuarter(pipeline, s_uGreen, 0.25f); // farther, so hidden
        m_pDevice->endPass();
        EXPECT_EQ(pixel(tested, 0, 0), s_uRed);
        EXPECT_EQ(pixel(tested, 3, 1), s_uRed);
        EXPECT_EQ(pixel(tested, 4, 0), s_uBlack);
        EXPECT_EQ(pixel(tested, 0, 2), s_uBlack);
    }
    EXPECT_TRUE(m_pDevice->present());
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}

TEST_P(ClipSpaceTest, scissorCountsFromTheTopLeft)
{
    const PipelineHandle pipeline = m_pDevice->createPipeline(pipelineDesc());
    const TargetHandle target = m_pDevice->createTarget({.sName = "t", .iWidth = 8, .iHeight = 4});
    for (const TargetHandle tested : {TargetHandle{}, target})
    {
        m_pDevice->beginPass(tested, {});
        m_pDevice->setScissor(1, 0, 2, 1);
        drawQuarter(pipeline, s_uRed, 0.5f);
        m_pDevice->endPass();
        EXPECT_EQ(pixel(tested, 0, 0), s_uBlack);
        EXPECT_EQ(pixel(tested, 1, 0), s_uRed);
        EXPECT_EQ(pixel(tested, 3, 0), s_uBlack);
        EXPECT_EQ(pixel(tested, 1, 1), s_uBlack);
    }
}

/// Whatever the order of rows of both; the depth that came along hides what is drawn later.
TEST_F(GlDeviceTest, copiesKeepTheirRowsAndDepthAndScale)
{
    const PipelineHandle pipeline = m_pDevice->createPipeline(pipelineDesc());
    for (const bool bWindowRows : {false, true})
        for (const int iScale : {1, 2})
            for (const bool bDepth : {false, true})
            {
                const TargetHandle source = m_pDevice->createTarget(
                    {.sName = "s", .iWidth = 8 * iScale, .iHeight = 4 * iScale, .bWindowRows = bWindowRows});
                m_pDevice->beginPass(source, {});
                drawQuarter(pipeline, s_uRed, 0.75f);
                m_pDevice->endPass();
                m_pDevice->beginPass({}, {});
                m_pDevice->endPass();
                ASSERT_TRUE(m_pDevice->copyTarget(source, {}, bDepth));
                EXPECT_EQ(pixel({}, 0, 0), s_uRed);
                EXPECT_EQ(pixel({}, 1, 3), s_uBlack);
                EXPECT_EQ(pixel({}, 6, 0), s_uBlack);
                m_pDevice->beginPass({}, {.bClearColour = false, .bClearDepth = false});
                drawQuarter(pipeline, s_uGreen, 0.5f);
                m_pDevice->endPass();
                EXPECT_EQ(pixel({}, 0, 0), bDepth ? s_uRed : s_uGreen);
            }
    EXPECT_FALSE(m_pDevice->copyTarget({}, {}, false));
    EXPECT_EQ(m_log.errors(), 1u) << m_log.dump();
}

/// A first frame's time once came out as the time since the machine's start.
TEST_F(GlDeviceTest, frameTimeIsNeverMoreThanWhatPassed)
{
    const PipelineHandle pipeline = m_pDevice->createPipeline(pipelineDesc());
    const double fStart = FrameClock::seconds();
    for (int i = 0; i < 8; ++i)
    {
        m_pDevice->beginPass({}, {});
        drawQuarter(pipeline, s_uRed, 0.5f);
        m_pDevice->endPass();
        EXPECT_TRUE(m_pDevice->present());
        (void)pixel({}, 0, 0);
        EXPECT_LE(m_pDevice->gpuMilliseconds(), (FrameClock::seconds() - fStart) * 1000.0 + 1.0);
    }
}

/// A layer and a mip of an array are read back through a shader that samples them.
TEST_F(GlDeviceTest, arrayLayersKeepTheirOwnTexels)
{
    const TextureHandle array =
        m_pDevice->createTexture({.sName = "a", .iWidth = 2, .iHeight = 2, .iLayers = 2});
    const std::array<uint32_t, 4> arrRed{s_uRed, s_uRed, s_uRed, s_uRed};
    const std::array<uint32_t, 3> arrOne{s_uGreen, 0, s_uGreen};
    EXPECT_TRUE(m_pDevice->updateTexture(array, {0, 0, 2, 2, 1, 0}, 8, bytesOf(arrRed)));
    EXPECT_TRUE(m_pDevice->updateTexture(array, {0, 0, 1, 2, 1, 0}, 8, bytesOf(arrOne)));
    EXPECT_FALSE(m_pDevice->updateTexture(array, {1, 0, 2, 2, 1, 0}, 8, bytesOf(arrRed)));
    EXPECT_FALSE(m_pDevice->updateTexture(array, {0, 0, 2, 2, 2, 0}, 8, bytesOf(arrRed)));
    EXPECT_FALSE(m_pDevice->updateTexture(array, {0, 0, 2, 2, 1, 0}, 8, bytesOf(arrOne)));
    EXPECT_EQ(m_log.errors(), 3u);

    PipelineDesc desc = pipelineDesc();
    desc.sFragmentSource = "layout(binding = 3) uniform sampler2DArray source;\n"
                           "in vec4 colour;\n"
                           "out vec4 result;\n"
                           "void main() { result = texture(source, vec3(colour.rg, 1.0)); }\n";
    const PipelineHandle pipeline = m_pDevice->createPipeline(desc);
    m_pDevice->beginPass({}, {});
    m_pDevice->setTexture(3, array, SamplerMode::PointClamp);
    drawQuarter(pipeline, 0x00000000, 0.5f);
    EXPECT_EQ(pixel({}, 0, 0), s_uGreen);
    drawQuarter(pipeline, 0x000000FF, 0.6f);
    EXPECT_EQ(pixel({}, 0, 0), s_uRed);
    m_pDevice->endPass();
}

/// A mip of 2 x 2 is smaller than its block, and one row of a larger level is given alone.
TEST_F(GlDeviceTest, compressedTexturesTakeBlocksAtEveryMip)
{
    if (!m_pDevice->hasCompressedTextures())
        GTEST_SKIP() << "the driver lacks the formats";
    const TextureHandle array = m_pDevice->createTexture({.sName = "b",
                                                          .iWidth = 8,
                                                          .iHeight = 8,
                                                          .iLayers = 2,
                                                          .iMips = 4,
                                                          .eLayout = resource::TextureResourceLayout::Bc3});
    // Full alpha; both colours and all codes the same.
    std::array<uint64_t, 4> arrRed{0xFFFF, 0xF800F800, 0xFFFF, 0xF800F800};
    const std::array<uint64_t, 2> arrGreen{0xFFFF, 0x07E007E0};
    EXPECT_TRUE(m_pDevice->updateTexture(array, {0, 0, 8, 4, 1, 0}, 32, bytesOf(arrRed)));
    EXPECT_TRUE(m_pDevice->updateTexture(array, {0, 4, 8, 4, 1, 0}, 32, bytesOf(arrRed)));
    EXPECT_TRUE(m_pDevice->updateTexture(array, {0, 0, 2, 2, 1, 2}, 16, bytesOf(arrGreen)));
    EXPECT_TRUE(m_pDevice->updateTexture(array, {0, 0, 1, 1, 1, 3}, 16, bytesOf(arrGreen)));
    EXPECT_FALSE(m_pDevice->updateTexture(array, {0, 2, 8, 4, 1, 0}, 32, bytesOf(arrRed)));
    EXPECT_EQ(m_log.errors(), 1u) << m_log.dump();

    PipelineDesc desc = pipelineDesc();
    desc.sFragmentSource =
        "layout(binding = 3) uniform sampler2DArray source;\n"
        "in vec4 colour;\n"
        "out vec4 result;\n"
        "void main() { result = texelFetch(source, ivec3(0, 0, 1), int(colour.r * 3.0)); }\n";
    const PipelineHandle pipeline = m_pDevice->createPipeline(desc);
    m_pDevice->beginPass({}, {});
    m_pDevice->setTexture(3, array, SamplerMode::LinearWrap);
    drawQuarter(pipeline, 0x00000000, 0.5f);
    EXPECT_EQ(pixel({}, 0, 0), s_uRed);
    drawQuarter(pipeline, 0x000000AA, 0.6f);
    EXPECT_EQ(pixel({}, 0, 0), s_uGreen);
    m_pDevice->endPass();
}

TEST_F(GlDeviceTest, brokenShaderIsOneLogLineAndNoPipeline)
{
    PipelineDesc desc = pipelineDesc();
    desc.sFragmentSource = "out vec4 result; void main() { result = nothing; }";
    EXPECT_FALSE(m_pDevice->createPipeline(desc));
    EXPECT_EQ(m_log.errors(), 1u) << m_log.dump();
    EXPECT_TRUE(m_log.has("fragment stage"));
}

/// Whatever the disk did to a cached program, drawing works.
TEST_F(GlDeviceTest, cachedProgramsServeAndDamagedOnesAreMadeAnew)
{
    const auto drawn = [&]
    {
        const PipelineHandle pipeline = m_pDevice->createPipeline(pipelineDesc());
        m_pDevice->beginPass({}, {});
        drawQuarter(pipeline, s_uRed, 0.5f);
        m_pDevice->endPass();
        return pixel({}, 0, 0);
    };
    EXPECT_EQ(drawn(), s_uRed);
    std::vector<std::filesystem::path> vecFiles;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path() / "Shaders"))
        vecFiles.push_back(entry.path());
    if (vecFiles.empty())
        GTEST_SKIP() << "the driver gives no program binaries";
    ASSERT_EQ(vecFiles.size(), 1u);
    const auto uSize = std::filesystem::file_size(vecFiles[0]);

    makeDevice();
    EXPECT_EQ(drawn(), s_uRed);
    for (const uintmax_t uKept : {uSize / 2, uintmax_t{7}, uintmax_t{0}})
    {
        std::filesystem::resize_file(vecFiles[0], uKept);
        makeDevice();
        EXPECT_EQ(drawn(), s_uRed) << uKept;
        EXPECT_EQ(std::filesystem::file_size(vecFiles[0]), uSize) << "not stored again";
    }
    std::fstream(vecFiles[0], std::ios::in | std::ios::out | std::ios::binary)
        .seekp(60)
        .put('\x7F')
        .put('\x13');
    makeDevice();
    EXPECT_EQ(drawn(), s_uRed);
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}
