#include "KestrelCommon/renderer/ClutterDraw.h"

#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Resources/ShaderSource.h"

namespace rend
{

namespace
{

constexpr uint32_t s_uDrawSlot = 2;
constexpr uint32_t s_uTypeSlot = 6;
constexpr uint32_t s_uShadeSlot = 5; ///< texture

constexpr int s_iTextureSide = 256;
constexpr int s_iImpostorSide = 32;

// The budget of a CPU, in instances, and the frame times between which it rests.
constexpr float s_fLeastBudget = 1500.0f;
constexpr float s_fMostBudget = 60000.0f;
constexpr float s_fFirstBudget = 9000.0f;
constexpr float s_fRestBudget = 26000.0f;
constexpr float s_fFullRange = 12.0f; ///< metres
constexpr double s_fSlowFrame = 0.046;
constexpr double s_fQuickFrame = 0.036;
constexpr double s_fHitch = 0.3; ///< a frame that long says nothing about drawing

/// "CB_CLUTTER_DRAW"
struct DrawData
{
    float fTime; ///< seconds
    float fHasShade;
    std::array<float, 2> arrUnused;
    std::array<uint32_t, 8> arrHasImpostor; ///< a bit a type
};

template <class T>
std::span<const std::byte> bytesOf(const T& value)
{
    return std::as_bytes(std::span(&value, 1));
}

void setInstanceInput(PipelineDesc& desc, uint32_t uLocation, uint32_t uSlot)
{
    desc.vecSlots.push_back({sizeof(ClutterInstance), true});
    desc.vecAttributes.push_back({uLocation, VertexFormat::Float2, 0, uSlot});
    desc.vecAttributes.push_back({uLocation + 1, VertexFormat::Half4, 8, uSlot});
    desc.vecAttributes.push_back({uLocation + 2, VertexFormat::Uint1, 16, uSlot});
}

} // namespace

ClutterDraw::ClutterDraw(GraphicsDeviceI& device, resource::ResourceManager& resources)
    : m_device(device),
      m_resources(resources),
      m_fBudget(s_fFirstBudget)
{
}

ClutterDraw::~ClutterDraw()
{
    release();
}

void ClutterDraw::release()
{
    m_device.destroyPipeline(m_pipeline);
    m_device.destroyPipeline(m_impostorPipeline);
    for (const BufferHandle buffer : {m_gpuClutterBuffer, m_gpuClutterImpostorBuffer, m_drawBuffer})
        m_device.destroyBuffer(buffer);
    for (const MeshBuffers& mesh : m_vecMeshes)
    {
        m_device.destroyBuffer(mesh.vertices);
        m_device.destroyBuffer(mesh.indices);
    }
    m_vecMeshes.clear();
}

bool ClutterDraw::createPipelines()
{
    const auto build = [&](PipelineHandle& pipelineOut, std::string_view sShader, PipelineDesc desc)
    {
        desc.vecDefines = {"GBUFFER 1"};
        if (m_device.isSoftware())
            desc.vecDefines.emplace_back("SOFTWARE 1");
        if (resource::loadShaderSource(m_resources.resolver(), sShader, desc))
            pipelineOut = m_device.createPipeline(desc);
    };
    PipelineDesc meshes;
    meshes.eCull = CullMode::None;
    meshes.vecSlots = {{sizeof(ClutterVertex), false}};
    meshes.vecAttributes = {
        {0, VertexFormat::Half4, 0, 0}, {1, VertexFormat::Half2, 8, 0}, {2, VertexFormat::Half4, 12, 0}};
    setInstanceInput(meshes, 3, 1);
    build(m_pipeline, "main_clutter", meshes);

    PipelineDesc impostors;
    impostors.eCull = CullMode::None;
    impostors.eTopology = Topology::TriangleStrip;
    setInstanceInput(impostors, 0, 0);
    build(m_impostorPipeline, "main_clutter_impostor", impostors);
    return m_pipeline && m_impostorPipeline;
}

bool ClutterDraw::load(const tile::ClutterDatabase& database)
{
    release();
    m_types = ClutterTypes(database, m_resources.resolver());
    const bool bPipelines = createPipelines();
    if (m_types.size() == 0)
        return bPipelines;

    const auto constants = [&](const auto& records, std::string_view sName)
    { return m_resources.createBuffer(bytesOf(records), sizeof(records), 0, sName, BufferKind::Constant); };
    m_gpuClutterBuffer = constants(m_types.meshRecords(), "Clutter Buffer");
    m_gpuClutterImpostorBuffer = constants(m_types.impostorRecords(), "Clutter Impostor Buffer");
    m_drawBuffer =
        m_resources.createBuffer({}, sizeof(DrawData), 0, "CB_CLUTTER_DRAW", BufferKind::Constant, true);

    for (const ClutterMesh& mesh : m_types.meshes())
    {
        const auto vertices = std::as_bytes(std::span(mesh.vecVertices));
        const auto indices = std::as_bytes(std::span(mesh.vecIndices));
        m_vecMeshes.push_back(
            {m_resources.createBuffer(vertices, vertices.size(), sizeof(ClutterVertex), "Clutter Mesh",
                                      BufferKind::Vertex),
             m_resources.createBuffer(indices, indices.size(), sizeof(uint16_t), "Clutter Index",
                                      BufferKind::Index),
             m_device.isSoftware() ? mesh.uCoreIndices : static_cast<uint32_t>(mesh.vecIndices.size())});
    }
    m_textures = m_resources.loadTextureArray(m_types.textures(), s_iTextureSide, s_iTextureSide,
                                              resource::TextureResourceLayout::Bc3, 0, 0);
    if (!m_types.impostorTextures().empty())
        m_impostorTextures =
            m_resources.loadTextureArray(m_types.impostorTextures(), s_iImpostorSide, s_iImpostorSide,
                                         resource::TextureResourceLayout::Bc3, 0, 0);
    return bPipelines;
}

/// On a CPU the budget sinks at once when frames get slow, and rises slowly while it leaves plants out. A
/// picture at rest may take longer.
ClutterDensity ClutterDraw::density(const ClutterView& view)
{
    if (!m_device.isSoftware() || !view.bWindow)
        return {};
    if (view.bRest)
        return {s_fRestBudget, s_fRestBudget, s_fFullRange};
    const double fNow = FrameClock::seconds();
    const double fTook = fNow - std::exchange(m_fLastFrame, fNow);
    const uint64_t uTicks = FrameClock::ticks() - std::exchange(m_uLastTick, FrameClock::ticks());
    if (uTicks == 1 && fTook < s_fHitch) // frames without a draw in between tell nothing
    {
        m_fFrameTime += (fTook - m_fFrameTime) * 0.25;
        if (m_fFrameTime > s_fSlowFrame)
            m_fBudget *= static_cast<float>(std::max(0.85, s_fSlowFrame / m_fFrameTime));
        else if (m_fFrameTime < s_fQuickFrame && m_gather.isThinned())
            m_fBudget *= 1.012f;
        m_fBudget = std::clamp(m_fBudget, s_fLeastBudget, s_fMostBudget);
    }
    return {m_fBudget, m_fBudget, s_fFullRange};
}

void ClutterDraw::draw(const CullingGroups& groups, const ClutterView& view)
{
    m_gather.gather(groups, Frustum(view.viewProjection), view.camera, density(view));
    if (drawnCount() == 0)
        return;
    const bool bMoves = view.bWindow && !m_device.isSoftware();
    DrawData data{bMoves ? static_cast<float>(std::fmod(FrameClock::seconds(), 3600.0)) : 0.0f,
                  view.shade ? 1.0f : 0.0f,
                  {},
                  {}};
    for (size_t uType = 0; uType < m_types.size(); ++uType)
        if (m_types.impostorOf()[uType] != ClutterTypes::s_uNoImpostor)
            data.arrHasImpostor[uType / 32] |= 1u << (uType % 32);
    m_device.updateBuffer(m_drawBuffer, 0, bytesOf(data));
    m_device.setUniformBuffer(s_uDrawSlot, m_drawBuffer);
    m_device.setTexture(s_uShadeSlot, view.shade, SamplerMode::PointClamp);
    drawNear();
    drawFar();
}

void ClutterDraw::drawNear()
{
    const auto bytes = std::as_bytes(m_gather.nearInstances());
    if (bytes.empty() || bytes.size() >= s_uMaxListBytes || !m_pipeline)
        return;
    const resource::BorrowedBuffer instances =
        m_resources.borrowBuffer(bytes.size(), sizeof(ClutterInstance), BufferKind::Vertex);
    m_device.updateBuffer(instances.buffer, 0, bytes);
    m_device.setPipeline(m_pipeline);
    m_device.setUniformBuffer(s_uTypeSlot, m_gpuClutterBuffer);
    m_device.setTexture(0, m_textures, SamplerMode::LinearClamp);
    m_device.setVertexBuffer(1, instances.buffer);
    const MeshBuffers* pLast = nullptr;
    for (const ClutterBatch& batch : m_gather.nearBatches())
    {
        const MeshBuffers& mesh = m_vecMeshes[m_types.meshIndex(batch.uType)];
        if (&mesh != pLast)
        {
            m_device.setVertexBuffer(0, mesh.vertices);
            m_device.setIndexBuffer(mesh.indices, IndexWidth::Bits16);
            pLast = &mesh;
        }
        m_device.drawIndexed(mesh.uIndices, 0, batch.uCount, batch.uFirst);
    }
    m_resources.returnBuffer(instances);
}

void ClutterDraw::drawFar()
{
    const auto bytes = std::as_bytes(m_gather.farInstances());
    if (bytes.empty() || bytes.size() >= s_uMaxListBytes || !m_impostorPipeline)
        return;
    const resource::BorrowedBuffer instances =
        m_resources.borrowBuffer(bytes.size(), sizeof(ClutterInstance), BufferKind::Vertex);
    m_device.updateBuffer(instances.buffer, 0, bytes);
    m_device.setPipeline(m_impostorPipeline);
    m_device.setUniformBuffer(s_uTypeSlot, m_gpuClutterImpostorBuffer);
    m_device.setTexture(0, m_impostorTextures, SamplerMode::LinearClamp);
    m_device.setVertexBuffer(0, instances.buffer);
    m_device.draw(4, 0, static_cast<uint32_t>(m_gather.farInstances().size()));
    m_resources.returnBuffer(instances);
}

size_t ClutterDraw::drawnCount() const
{
    return m_gather.nearInstances().size() + m_gather.farInstances().size();
}

} // namespace rend
