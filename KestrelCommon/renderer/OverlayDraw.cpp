#include "KestrelCommon/renderer/OverlayDraw.h"

#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Resources/ShaderSource.h"

#include <algorithm>

namespace rend
{

namespace
{

constexpr uint32_t s_uDrawSlot = 2;

struct LineData
{
    float fCore; ///< half width, pixels
    float fRim;
    float fDepthBias;
    float fOpacity;
};

struct IconData
{
    glm::vec4 right; ///< of the view, in the world
    glm::vec4 up;
    float fOpacity;
    float fDepthBias;
    std::array<float, 2> arrUnused{};
};

struct GridData
{
    glm::vec4 origin;      ///< and the spacing
    glm::vec4 axisX;       ///< and how far the plane reaches, metres
    glm::vec4 axisY;       ///< and the depth bias
    glm::vec4 colour;      ///< of every second line
    glm::vec4 otherColour; ///< of those between them
};

constexpr float s_fGridLines = 1024.0f; ///< to each side
constexpr float s_fGridReach = 2000.0f; ///< metres, no farther than the eye sees
constexpr float s_fGridDepthBias = 0.002f;
constexpr float s_fGridLift = 0.1f; ///< metres above the plane
constexpr glm::vec4 s_gridColour{1.0f};
constexpr glm::vec4 s_otherGridColour{0.6f};

constexpr float s_fHiddenLineOpacity = 0.28f;
constexpr float s_fHiddenIconOpacity = 0.3f;
/// As a part of the depth: what lies on the ground wins against the ground under it.
constexpr float s_fLineDepthBias = 0.004f;
constexpr float s_fIconDepthBias = 0.01f;

template <class T>
std::span<const std::byte> bytesOf(const T& value)
{
    return std::as_bytes(std::span(&value, 1));
}

} // namespace

OverlayDraw::OverlayDraw(GraphicsDeviceI& device, resource::ResourceManager& resources)
    : m_device(device),
      m_resources(resources)
{
}

OverlayDraw::~OverlayDraw()
{
    for (const PipelineHandle pipeline : {m_linePipeline, m_lineThroughPipeline, m_iconPipeline,
                                          m_iconThroughPipeline, m_solidPipeline, m_gridPipeline})
        m_device.destroyPipeline(pipeline);
}

bool OverlayDraw::init()
{
    const auto build = [&](PipelineHandle& pipelineOut, std::string_view sShader, PipelineDesc desc)
    {
        if (m_device.isSoftware())
            desc.vecDefines.emplace_back("SOFTWARE 1");
        if (resource::loadShaderSource(m_resources.resolver(), sShader, desc))
            pipelineOut = m_device.createPipeline(desc);
    };
    PipelineDesc lines;
    lines.eTopology = Topology::TriangleStrip;
    lines.eCull = CullMode::None;
    lines.eBlend = BlendMode::Alpha;
    lines.vecSlots = {{sizeof(DebugDrawer::Line), true}};
    lines.vecAttributes = {{0, VertexFormat::Float3, 0, 0},
                           {1, VertexFormat::Float3, 12, 0},
                           {2, VertexFormat::Unorm8x4, 24, 0}};
    lines.eDepth = DepthMode::Test;
    build(m_linePipeline, "debug_lines", lines);
    lines.eDepth = DepthMode::None;
    build(m_lineThroughPipeline, "debug_lines", lines);

    PipelineDesc icons = lines;
    icons.vecSlots = {{sizeof(BillboardBatch::Icon), true}};
    icons.vecAttributes = {
        {0, VertexFormat::Float4, 0, 0}, {1, VertexFormat::Unorm8x4, 16, 0}, {2, VertexFormat::Uint1, 20, 0}};
    build(m_iconThroughPipeline, "billboards", icons);
    icons.eDepth = DepthMode::Test;
    build(m_iconPipeline, "billboards", icons);

    PipelineDesc solids;
    solids.eCull = CullMode::None;
    solids.eBlend = BlendMode::Alpha;
    solids.vecSlots = {{sizeof(DebugDrawer::SolidVertex), false}};
    solids.vecAttributes = {{0, VertexFormat::Float3, 0, 0}, {1, VertexFormat::Unorm8x4, 12, 0}};
    build(m_solidPipeline, "debug_solids", solids);

    PipelineDesc grid;
    grid.eTopology = Topology::TriangleStrip;
    grid.eCull = CullMode::None;
    grid.eBlend = BlendMode::Alpha;
    grid.eDepth = DepthMode::Test;
    build(m_gridPipeline, "editor_grid", grid);
    return m_linePipeline && m_lineThroughPipeline && m_iconPipeline && m_iconThroughPipeline &&
           m_solidPipeline && m_gridPipeline;
}

bool OverlayDraw::wantsDepth() const
{
    return m_grid || (m_pDebugDrawer && !m_pDebugDrawer->tested().empty()) ||
           (m_pBillboards && !m_pBillboards->shown().empty());
}

void OverlayDraw::draw(const glm::mat4& view)
{
    drawGrid();
    drawBillboards(view);
    if (!m_pDebugDrawer)
        return;
    drawLineList(m_pDebugDrawer->tested(), m_lineThroughPipeline, s_fHiddenLineOpacity);
    drawLineList(m_pDebugDrawer->tested(), m_linePipeline, 1.0f);
    drawLineList(m_pDebugDrawer->untested(), m_lineThroughPipeline, 1.0f);
}

void OverlayDraw::drawGrid()
{
    if (!m_grid || !m_gridPipeline)
        return;
    const glm::vec3 normal = glm::cross(m_grid->axisX, m_grid->axisY);
    const GridData data{{m_grid->position + normal * s_fGridLift, m_grid->fSpacing},
                        {m_grid->axisX, std::min(s_fGridLines * m_grid->fSpacing, s_fGridReach)},
                        {m_grid->axisY, s_fGridDepthBias},
                        s_gridColour,
                        s_otherGridColour};
    const resource::BorrowedBuffer constants =
        m_resources.borrowBuffer(sizeof(data), 0, BufferKind::Constant);
    m_device.updateBuffer(constants.buffer, 0, bytesOf(data));
    m_device.setPipeline(m_gridPipeline);
    m_device.setUniformBuffer(s_uDrawSlot, constants.buffer);
    m_device.draw(4, 0, 1);
    m_resources.returnBuffer(constants);
}

void OverlayDraw::drawBillboards(const glm::mat4& view)
{
    if (!m_pBillboards || m_pBillboards->shown().empty() || !m_pBillboards->images() || !m_iconPipeline ||
        !m_iconThroughPipeline)
        return;
    const glm::vec3 back(view[0][2], view[1][2], view[2][2]);
    m_vecIcons.assign(m_pBillboards->shown().begin(), m_pBillboards->shown().end());
    std::sort(m_vecIcons.begin(), m_vecIcons.end(),
              [&](const BillboardBatch::Icon& a, const BillboardBatch::Icon& b)
              { return glm::dot(a.position, back) < glm::dot(b.position, back); });
    const auto bytes = std::as_bytes(std::span(m_vecIcons));
    const resource::BorrowedBuffer icons =
        m_resources.borrowBuffer(bytes.size(), sizeof(BillboardBatch::Icon), BufferKind::Vertex);
    m_device.updateBuffer(icons.buffer, 0, bytes);
    IconData data{{view[0][0], view[1][0], view[2][0], 0.0f},
                  {view[0][1], view[1][1], view[2][1], 0.0f},
                  0.0f,
                  s_fIconDepthBias};
    for (const bool bThrough : {true, false})
    {
        data.fOpacity = bThrough ? s_fHiddenIconOpacity : 1.0f;
        const resource::BorrowedBuffer constants =
            m_resources.borrowBuffer(sizeof(data), 0, BufferKind::Constant);
        m_device.updateBuffer(constants.buffer, 0, bytesOf(data));
        m_device.setPipeline(bThrough ? m_iconThroughPipeline : m_iconPipeline);
        m_device.setTexture(0, m_pBillboards->images(), SamplerMode::LinearClamp);
        m_device.setUniformBuffer(s_uDrawSlot, constants.buffer);
        m_device.setVertexBuffer(0, icons.buffer);
        m_device.draw(4, 0, static_cast<uint32_t>(m_vecIcons.size()));
        m_resources.returnBuffer(constants);
    }
    m_resources.returnBuffer(icons);
}

void OverlayDraw::drawLineList(std::span<const DebugDrawer::Line> spanLines, PipelineHandle pipeline,
                               float fOpacity)
{
    if (spanLines.empty() || !pipeline)
        return;
    const LineData data{1.0f, 2.25f, s_fLineDepthBias, fOpacity};
    const resource::BorrowedBuffer lines =
        m_resources.borrowBuffer(spanLines.size_bytes(), sizeof(DebugDrawer::Line), BufferKind::Vertex);
    const resource::BorrowedBuffer constants =
        m_resources.borrowBuffer(sizeof(data), 0, BufferKind::Constant);
    m_device.updateBuffer(lines.buffer, 0, std::as_bytes(spanLines));
    m_device.updateBuffer(constants.buffer, 0, bytesOf(data));
    m_device.setPipeline(pipeline);
    m_device.setUniformBuffer(s_uDrawSlot, constants.buffer);
    m_device.setVertexBuffer(0, lines.buffer);
    m_device.draw(4, 0, static_cast<uint32_t>(spanLines.size()));
    m_resources.returnBuffer(constants);
    m_resources.returnBuffer(lines);
}

void OverlayDraw::drawSolids()
{
    if (!hasSolids() || !m_solidPipeline)
        return;
    const auto bytes = std::as_bytes(m_pDebugDrawer->solids());
    const resource::BorrowedBuffer vertices =
        m_resources.borrowBuffer(bytes.size(), sizeof(DebugDrawer::SolidVertex), BufferKind::Vertex);
    m_device.updateBuffer(vertices.buffer, 0, bytes);
    m_device.setPipeline(m_solidPipeline);
    m_device.setVertexBuffer(0, vertices.buffer);
    m_device.draw(static_cast<uint32_t>(m_pDebugDrawer->solids().size()), 0);
    m_resources.returnBuffer(vertices);
}

} // namespace rend
