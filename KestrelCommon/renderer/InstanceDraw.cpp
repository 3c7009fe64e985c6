#include "KestrelCommon/renderer/InstanceDraw.h"

#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Resources/ShaderSource.h"

#include <bit>

namespace rend
{

namespace
{

constexpr uint32_t s_uPartSlot = 2;
constexpr uint32_t s_uViewSlot = 3;
constexpr uint32_t s_uShadeSlot = 5; ///< texture
constexpr int s_iMaxTextureSide = 1024;

// A CPU draws some 10 million triangles a second.
constexpr uint64_t s_uMovingTriangles = 120000;
constexpr uint64_t s_uRestingTriangles = 900000;
constexpr float s_fSmallest = 0.0008f; ///< about a pixel

struct MeshVertex
{
    glm::vec3 place;
    glm::vec3 normal;
    glm::vec2 coords;
};
static_assert(sizeof(MeshVertex) == 32);

/// "CB_ASSET_PART"
struct PartData
{
    glm::vec4 tint{1.0f};
    int32_t iColour = -1; ///< of the four of the page; -1: none
    std::array<int32_t, 3> arrUnused{};
};

/// "CB_ASSET_VIEW"
struct ViewData
{
    float fHasShade;
    std::array<float, 3> arrUnused{};
};

template <class T>
std::span<const std::byte> bytesOf(const T& value)
{
    return std::as_bytes(std::span(&value, 1));
}

void setInstanceInput(PipelineDesc& desc)
{
    desc.vecSlots = {{sizeof(MeshVertex), false}, {sizeof(InstanceData), true}};
    desc.vecAttributes = {
        {0, VertexFormat::Float3, 0, 0}, {1, VertexFormat::Float3, 12, 0}, {2, VertexFormat::Float2, 24, 0}};
    for (uint32_t u = 0; u < 3; ++u)
        desc.vecAttributes.push_back({3 + u, VertexFormat::Float4, 16 * u, 1});
    for (uint32_t u = 0; u < 4; ++u)
        desc.vecAttributes.push_back({6 + u, VertexFormat::Unorm8x4, 48 + 4 * u, 1});
}

/// The power of 2 that a side is scaled to.
int textureSide(int iSide)
{
    return std::clamp(static_cast<int>(std::bit_floor(static_cast<unsigned>(std::max(iSide, 4)))), 4,
                      s_iMaxTextureSide);
}

} // namespace

InstanceDraw::InstanceDraw(GraphicsDeviceI& device, resource::ResourceManager& resources)
    : m_device(device),
      m_resources(resources)
{
}

InstanceDraw::~InstanceDraw()
{
    for (Mesh& mesh : m_vecMeshes)
        release(mesh);
    for (const PipelineHandle pipeline :
         {m_pipeline, m_maskPipeline, m_outlinePipeline, m_shadePipeline, m_shadeClearPipeline})
        m_device.destroyPipeline(pipeline);
    for (const TextureHandle texture : {m_white, m_flat, m_matt})
        m_device.destroyTexture(texture);
    m_device.destroyBuffer(m_viewBuffer);
    m_device.destroyBuffer(m_shadeBuffer);
    m_device.destroyTarget(m_mask);
}

bool InstanceDraw::init()
{
    const auto build = [&](PipelineHandle& pipelineOut, std::string_view sShader, PipelineDesc desc)
    {
        if (m_device.isSoftware())
            desc.vecDefines.emplace_back("SOFTWARE 1");
        if (resource::loadShaderSource(m_resources.resolver(), sShader, desc))
            pipelineOut = m_device.createPipeline(desc);
    };
    PipelineDesc meshes;
    setInstanceInput(meshes);
    build(m_pipeline, "main_asset", meshes);
    meshes.eDepth = DepthMode::None;
    meshes.eCull = CullMode::None;
    meshes.eBlend = BlendMode::Additive; // seen where any face is
    build(m_maskPipeline, "asset_mask", meshes);
    meshes.eBlend = BlendMode::Opaque;
    build(m_shadePipeline, "asset_shade", meshes);
    PipelineDesc clear;
    clear.eDepth = DepthMode::None;
    clear.eCull = CullMode::None;
    clear.vecDefines = {"CLEAR 1"};
    build(m_shadeClearPipeline, "asset_shade", clear);
    PipelineDesc outline;
    outline.eDepth = DepthMode::None;
    outline.eCull = CullMode::None;
    outline.eBlend = BlendMode::Alpha;
    build(m_outlinePipeline, "asset_outline", outline);
    m_viewBuffer =
        m_resources.createBuffer({}, sizeof(ViewData), 0, "CB_ASSET_VIEW", BufferKind::Constant, true);
    const bool bSrgb = !m_device.isSoftware();
    m_white = plainTexture("Plain white", {255, 255, 255, 255}, bSrgb);
    m_flat = plainTexture("Plain normal", {128, 128, 255, 255}, false);
    m_matt = plainTexture("Plain asg", {255, 40, 0, 255}, false);
    return m_pipeline && m_maskPipeline && m_outlinePipeline && m_shadePipeline && m_shadeClearPipeline;
}

TextureHandle InstanceDraw::plainTexture(std::string_view sName, const std::array<uint8_t, 4>& arrColour,
                                         bool bSrgb)
{
    const TextureHandle texture =
        m_device.createTexture({.sName = std::string(sName), .iLayers = 1, .bSrgb = bSrgb});
    m_device.updateTexture(texture, {0, 0, 1, 1}, 4, std::as_bytes(std::span(arrColour)));
    return texture;
}

void InstanceDraw::release(Mesh& mesh)
{
    m_device.destroyBuffer(mesh.vertices);
    m_device.destroyBuffer(mesh.indices);
    for (const Part& part : mesh.vecParts)
        m_device.destroyBuffer(part.constants);
    mesh = {};
}

TextureHandle InstanceDraw::texture(const std::string& sPath, TextureHandle fallback,
                                    resource::TextureResourceLayout eLayout)
{
    if (sPath.empty())
        return fallback;
    const auto size = resource::pictureSize(m_resources.resolver()(m_resources.upgradePath(sPath)));
    const TextureHandle texture =
        m_resources.loadTextureArray(std::array{sPath}, size ? textureSide(size->first) : 4,
                                     size ? textureSide(size->second) : 4, eLayout, 0, 0);
    if (!texture)
        return fallback;
    if (std::find(m_vecTextures.begin(), m_vecTextures.end(), texture) == m_vecTextures.end())
        m_vecTextures.push_back(texture);
    return texture;
}

uint64_t InstanceDraw::textureRevision() const
{
    uint64_t uSum = m_vecTextures.size();
    for (const TextureHandle texture : m_vecTextures)
        uSum += m_device.revision(texture);
    return uSum;
}

void InstanceDraw::makeParts(Mesh& mesh, const resource::Renderable& renderable)
{
    using resource::TextureResourceLayout;
    for (const resource::ModelPart& part : renderable.model().vecParts)
    {
        const resource::RenderableMaterial& material = renderable.material(part.sMaterial);
        const int iSlot = renderable.colorSlotOf(part.sMaterial);
        PartData data;
        if (renderable.model().bStandIn)
            data.tint = {0.95f, 0.25f, 0.75f, 1.0f};
        data.iColour = iSlot < 0 ? -1 : iSlot % 4;
        mesh.vecParts.push_back(
            {part.uFirst,
             part.uCount,
             {texture(material.sDiffuse, m_white, TextureResourceLayout::Bc3),
              // A CPU draws without these two.
              m_device.isSoftware() ? m_flat : texture(material.sNormal, m_flat, TextureResourceLayout::Bc5),
              m_device.isSoftware() ? m_matt : texture(material.sAsg, m_matt, TextureResourceLayout::Bc3)},
             m_resources.createBuffer(bytesOf(data), sizeof(data), 0, "CB_ASSET_PART", BufferKind::Constant),
             iSlot < 0 ? 0 : static_cast<uint32_t>(iSlot) / 4});
    }
}

const InstanceDraw::Mesh& InstanceDraw::meshOf(const InstanceWorld& world, uint32_t uRenderable)
{
    if (uRenderable >= m_vecMeshes.size())
        m_vecMeshes.resize(world.renderableCount());
    Mesh& mesh = m_vecMeshes[uRenderable];
    const resource::Renderable* pRenderable = world.renderable(uRenderable);
    if (!pRenderable || mesh.uGeneration == world.generation(uRenderable))
        return mesh;
    release(mesh);
    mesh.uGeneration = world.generation(uRenderable);
    const resource::Model& model = pRenderable->model();
    std::vector<MeshVertex> vecVertices(model.vecPositions.size());
    for (size_t u = 0; u < vecVertices.size(); ++u)
        vecVertices[u] = {model.vecPositions[u], model.vecNormals[u], model.vecCoords[u]};
    const auto vertices = std::as_bytes(std::span(vecVertices));
    const auto indices = std::as_bytes(std::span(model.vecIndices));
    mesh.vertices = m_resources.createBuffer(vertices, vertices.size(), sizeof(MeshVertex), "Asset Mesh",
                                             BufferKind::Vertex);
    mesh.indices =
        m_resources.createBuffer(indices, indices.size(), sizeof(uint32_t), "Asset Index", BufferKind::Index);
    makeParts(mesh, *pRenderable);
    return mesh;
}

void InstanceDraw::countTriangles(const InstanceWorld& world)
{
    if (std::exchange(m_uWorld, world.id()) != world.id())
        m_vecTriangles.clear();
    for (size_t uKind = m_vecTriangles.size(); uKind < world.kinds().size(); ++uKind)
    {
        const resource::Renderable* pRenderable = world.renderable(world.kinds()[uKind].uRenderable);
        m_vecTriangles.push_back(
            pRenderable ? static_cast<uint32_t>(pRenderable->model().vecIndices.size() / 3) : 0);
    }
}

void InstanceDraw::draw(InstanceWorld& world, const InstanceView& view)
{
    world.sortCells();
    if (!m_pipeline || world.cells().empty())
        return;
    InstanceLimits limits{.fSmallest = s_fSmallest};
    if (m_device.isSoftware())
    {
        countTriangles(world);
        limits.uTriangles = view.bInMotion ? s_uMovingTriangles : s_uRestingTriangles;
    }
    m_gather.gather(world, Frustum(view.viewProjection), view.eye, limits, m_vecTriangles);
    const auto bytes = std::as_bytes(m_gather.instances());
    if (bytes.empty())
        return;
    // What is new is made first: that binds nothing.
    for (const InstanceBatch& batch : m_gather.batches())
        (void)meshOf(world, world.kinds()[batch.uKind].uRenderable);

    const ViewData data{view.shade ? 1.0f : 0.0f};
    m_device.updateBuffer(m_viewBuffer, 0, bytesOf(data));
    const resource::BorrowedBuffer instances =
        m_resources.borrowBuffer(bytes.size(), sizeof(InstanceData), BufferKind::Vertex);
    m_device.updateBuffer(instances.buffer, 0, bytes);
    m_device.setPipeline(m_pipeline);
    m_device.setUniformBuffer(s_uViewSlot, m_viewBuffer);
    m_device.setTexture(s_uShadeSlot, view.shade, SamplerMode::PointClamp);
    m_device.setVertexBuffer(1, instances.buffer);
    const SamplerMode eMaps = m_device.isSoftware() ? SamplerMode::LinearWrap : SamplerMode::AnisotropicWrap;
    for (const InstanceBatch& batch : m_gather.batches())
    {
        const InstanceKind& kind = world.kinds()[batch.uKind];
        const Mesh& mesh = meshOf(world, kind.uRenderable);
        m_device.setVertexBuffer(0, mesh.vertices);
        m_device.setIndexBuffer(mesh.indices, IndexWidth::Bits32);
        for (const Part& part : mesh.vecParts)
        {
            if (part.uPage != kind.uPage)
                continue;
            for (uint32_t u = 0; u < part.arrTextures.size(); ++u)
                m_device.setTexture(u, part.arrTextures[u], eMaps);
            m_device.setUniformBuffer(s_uPartSlot, part.constants);
            m_device.drawIndexed(part.uIndices, part.uFirst, batch.uCount, batch.uFirst);
        }
    }
    m_resources.returnBuffer(instances);
}

} // namespace rend
