#include "KestrelCommon/renderer/Renderer.h"

#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Resources/ShaderSource.h"
#include "KestrelCommon/renderer/ClutterDraw.h"
#include "KestrelCommon/renderer/InstanceDraw.h"

#include <glm/geometric.hpp>
#include <glm/matrix.hpp>

namespace rend
{

namespace
{

// Constant slots and the structs behind them, as the shaders declare them.

constexpr uint32_t s_uSurfaceSlot = 0;
constexpr uint32_t s_uFrameSlot = 1;
constexpr uint32_t s_uDrawSlot = 2;
constexpr uint32_t s_uVerticesSlot = 0;      ///< storage: the ground's own vertices
constexpr uint32_t s_uShadeSlot = 5;         ///< texture
constexpr uint32_t s_uInstanceShadeSlot = 6; ///< texture

struct FrameData
{
    glm::mat4 viewProjection;
    glm::mat4 inverseViewProjection;
    glm::vec4 eye;
    glm::vec4 sunDirection;
    glm::vec4 sunColour;
    glm::vec4 skyZenith;
    glm::vec4 skyHorizon;
    glm::vec4 skyNadir;
    glm::vec4 fog;
    glm::vec4 viewport;
    glm::vec4 viewAxis;
};

struct QuadData
{
    glm::vec4 colour;
    std::array<glm::vec4, 8> arrPlaces;
    glm::vec4 size;
};

struct SurroundingsData
{
    glm::vec4 plainColour;
    glm::vec4 tileSize;
};

constexpr glm::vec4 s_quadColour{0.105f, 0.112f, 0.100f, 1.0f};
constexpr std::array<float, 4> s_arrBackground{0.27f, 0.275f, 0.25f, 1.0f};
constexpr float s_fSurroundingsReach = 4000.0f; ///< metres

template <class T>
std::span<const std::byte> bytesOf(const T& value)
{
    return std::as_bytes(std::span(&value, 1));
}

/// Normal, height and colour in one slot, 20 bytes; X and Y follow from the vertex number.
void setGroundInput(PipelineDesc& desc)
{
    desc.vecSlots = {{20, false}};
    desc.vecAttributes = {{0, VertexFormat::Float3, 0, 0},
                          {1, VertexFormat::Float1, 12, 0},
                          {2, VertexFormat::Unorm8x4, 16, 0}};
}

} // namespace

Renderer::Renderer(GraphicsDeviceI& device, resource::ResourceManager& resources)
    : m_device(device),
      m_resources(resources),
      m_pCullingGroups(std::make_unique<CullingGroups>()),
      m_pClutterDraw(std::make_unique<ClutterDraw>(device, resources)),
      m_pInstanceDraw(std::make_unique<InstanceDraw>(device, resources)),
      m_shade(device),
      m_instanceShade(device),
      m_mesh(device),
      m_overlay(device, resources),
      m_schedule(device.isSoftware())
{
    m_frameBuffer = m_device.createBuffer({"CB_FRAME", sizeof(FrameData), 0, BufferKind::Constant, true}, {});
}

Renderer::~Renderer()
{
    for (const PipelineHandle pipeline : {m_groundPipeline, m_groundDepthPipeline, m_rimPipeline,
                                          m_surroundingsPipeline, m_skyPipeline, m_quadPipeline})
        m_device.destroyPipeline(pipeline);
    m_device.destroyTarget(m_sceneTarget);
    m_device.destroyBuffer(m_frameBuffer);
}

bool Renderer::init()
{
    bool bAll = true;
    const auto build = [&](PipelineHandle& pipelineOut, std::string_view sShader, PipelineDesc desc)
    {
        if (m_device.isSoftware())
            desc.vecDefines.emplace_back("SOFTWARE 1");
        if (resource::loadShaderSource(m_resources.resolver(), sShader, desc))
            pipelineOut = m_device.createPipeline(desc);
        bAll = bAll && pipelineOut;
    };

    PipelineDesc ground;
    setGroundInput(ground);
    ground.eCull = CullMode::Front; // its triangles run clockwise seen from above
    ground.vecDefines = {"GBUFFER 1"};
    build(m_groundPipeline, "main_editor_terrain_surface", ground);
    ground.vecDefines = {"DEPTH 1"};
    build(m_groundDepthPipeline, "main_editor_terrain_surface", ground);

    PipelineDesc shade;
    shade.eDepth = DepthMode::None;
    shade.eCull = CullMode::None;
    PipelineHandle shadePipeline;
    build(shadePipeline, "terrain_shade", shade);
    m_shade.setPipeline(shadePipeline);

    PipelineDesc strips;
    strips.eTopology = Topology::TriangleStrip;
    strips.eCull = CullMode::None;
    build(m_surroundingsPipeline, "surroundings", strips);
    if (m_device.hasStorageBuffers())
        build(m_rimPipeline, "terrain_rim", strips);

    PipelineDesc sky;
    sky.eDepth = DepthMode::Test;
    sky.eCull = CullMode::None;
    build(m_skyPipeline, "sky", sky);

    build(m_quadPipeline, "plain_surface", strips);

    const bool bInstances = m_pInstanceDraw->init();
    return m_overlay.init() && bInstances && bAll;
}

TerrainSurfaceBindings& Renderer::terrainBindings()
{
    if (!m_pTerrainBindings)
        m_pTerrainBindings = std::make_unique<TerrainSurfaceBindings>();
    return *m_pTerrainBindings;
}

bool Renderer::loadClutter(const tile::ClutterDatabase& database)
{
    return m_pClutterDraw->load(database);
}

const ClutterTypes& Renderer::clutterTypes() const
{
    return m_pClutterDraw->types();
}

void Renderer::resetForGroundTile()
{
    m_eSceneMode = SceneMode::GroundTile;
    m_arrDistances = {10000.0f, 400.0f, 10000.0f};
}

/// All that stands ready before the scene is drawn.
void Renderer::prepare(int iWidth, int iHeight, const SceneView& view, bool bWhole)
{
    m_pClutterDraw->prepare(*m_pCullingGroups);
    if (m_pInstances)
    {
        const bool bTile = hasGround() && m_pTerrainBindings->verticesX > 0;
        const glm::vec2 size =
            bTile ? 2.0f * glm::vec2(m_pTerrainBindings->verticesX - 1, m_pTerrainBindings->verticesY - 1)
                  : glm::vec2(0.0f);
        m_instanceShade.update(*m_pInstanceDraw, *m_pInstances, size, glm::normalize(m_settings.sunDirection),
                               bWhole);
    }
    updateFrameBuffer(iWidth, iHeight, view);
    if (m_pTerrainBindings)
        m_shade.update(*m_pTerrainBindings, m_settings.sunDirection, m_frameBuffer, s_uFrameSlot, bWhole);
}

void Renderer::updateFrameBuffer(int iWidth, int iHeight, const SceneView& view)
{
    const glm::mat4 inverseView = glm::inverse(view.view);
    glm::mat4 turnOnly = view.view;
    turnOnly[3] = {0.0f, 0.0f, 0.0f, 1.0f};
    const auto fWidth = static_cast<float>(iWidth);
    const auto fHeight = static_cast<float>(iHeight);

    FrameData frame;
    frame.viewProjection = view.projection * view.view;
    frame.inverseViewProjection = glm::inverse(view.projection * turnOnly);
    frame.eye = {glm::vec3(inverseView[3]), view.bOrthographic ? 1.0f : 0.0f};
    frame.sunDirection = {glm::normalize(m_settings.sunDirection), 0.0f};
    frame.sunColour = {m_settings.sunColour, m_settings.exposure};
    frame.skyZenith = {m_settings.skyZenith, 0.0f};
    frame.skyHorizon = {m_settings.skyHorizon, 0.0f};
    frame.skyNadir = {m_settings.skyNadir, 0.0f};
    const float fFar = view.projection[3][2] / std::max(view.projection[2][2], 1.0e-9f);
    frame.fog = {m_settings.fogHalvings / fFar, m_settings.fogStart * fFar, fFar,
                 m_pInstances ? m_instanceShade.scale() : 0.0f};
    frame.viewport = {fWidth, fHeight, 1.0f / fWidth, 1.0f / fHeight};
    frame.viewAxis = {-glm::vec3(inverseView[2]), 0.0f};
    m_device.updateBuffer(m_frameBuffer, 0, bytesOf(frame));
}

void Renderer::render(TargetHandle target, int iWidth, int iHeight, const SceneView& view)
{
    if (iWidth < 1 || iHeight < 1)
        return;
    if (!target)
    {
        renderWindow(iWidth, iHeight, view);
        return;
    }
    prepare(iWidth, iHeight, view, true);
    m_device.beginPass(target, {.arrColour = s_arrBackground});
    drawScene(view, false);
    if (view.bLines)
        m_overlay.draw(view.view);
    m_device.endPass();
}

bool Renderer::renderObjects(TargetHandle target, int iWidth, int iHeight, const SceneView& view,
                             InstanceWorld& world)
{
    if (!m_pObjectDraw)
    {
        m_pObjectDraw = std::make_unique<InstanceDraw>(m_device, m_resources);
        m_pObjectDraw->init();
    }
    updateFrameBuffer(iWidth, iHeight, view);
    m_device.beginPass(target, {.arrColour = {0.0f, 0.0f, 0.0f, 0.0f}});
    m_device.setUniformBuffer(s_uFrameSlot, m_frameBuffer);
    m_pObjectDraw->draw(
        world, {.viewProjection = view.projection * view.view, .eye = glm::vec3(glm::inverse(view.view)[3])});
    m_device.endPass();
    return m_resources.loadingCount() == 0;
}

void Renderer::renderWindow(int iWidth, int iHeight, const SceneView& view)
{
    prepare(iWidth, iHeight, view, false);
    if (const auto size = m_schedule.next(stateOf(iWidth, iHeight, view), FrameClock::seconds(),
                                          m_pClutterDraw->isThinned() || m_pInstanceDraw->isThinned()))
    {
        if (!m_sceneTarget || *size != m_sceneSize)
        {
            m_device.destroyTarget(m_sceneTarget);
            m_sceneTarget = m_device.createTarget(
                {.sName = "Scene", .iWidth = size->iWidth, .iHeight = size->iHeight, .bWindowRows = true});
            m_sceneSize = *size;
        }
        m_device.beginPass(m_sceneTarget, {.arrColour = s_arrBackground});
        drawScene(view, true);
        m_device.endPass();
        if (m_pInstances)
            m_pInstanceDraw->drawOutlines(*m_pInstances, m_sceneTarget, size->iWidth, size->iHeight, true,
                                          view.projection * view.view, m_frameBuffer);
    }
    if (m_sceneTarget)
        m_device.copyTarget(m_sceneTarget, {}, view.bLines && m_overlay.wantsDepth());
    m_device.beginPass({}, {.bClearColour = false, .bClearDepth = false});
    m_device.setUniformBuffer(s_uFrameSlot, m_frameBuffer);
    if (view.bLines)
        m_overlay.draw(view.view);
    m_device.endPass();
    if (!view.bLines || !m_overlay.hasSolids())
        return;
    m_device.beginPass({}, {.bClearColour = false, .bClearDepth = true});
    m_device.setUniformBuffer(s_uFrameSlot, m_frameBuffer);
    m_overlay.drawSolids();
    m_device.endPass();
}

SceneState Renderer::stateOf(int iWidth, int iHeight, const SceneView& view) const
{
    SceneState state{view, m_settings, iWidth, iHeight, {}};
    state.view.bLines = false;
    if (m_pTerrainBindings)
        state.arrContent = groundState(*m_pTerrainBindings);
    state.arrContent[s_uClutterRevision] = m_pCullingGroups->revision();
    state.arrContent[s_uClutterTime] = m_pClutterDraw->isMoving() ? FrameClock::ticks() : 0;
    if (m_pInstances)
    {
        state.arrContent[s_uInstanceRevision] = uint64_t{m_pInstances->id()} << 40 ^ m_pInstances->revision();
        state.arrContent[s_uInstanceTextures] = m_pInstanceDraw->textureRevision();
        state.arrContent[s_uInstanceShade] = m_instanceShade.revision();
    }
    return state;
}

std::array<uint64_t, s_uSceneContents> Renderer::groundState(const TerrainSurfaceBindings& ground) const
{
    // A handle in the high bits beside its revision: neither grows that far in a run.
    const auto content = [this](auto handle)
    { return uint64_t{handle.uId} << 40 ^ m_device.revision(handle); };
    return {content(ground.vertexBuffer), content(ground.indexBuffer),
            content(ground.surfaceInfo),  content(ground.texture0),
            content(ground.texture1),     content(ground.diffuseArray),
            content(ground.asgArray),     content(ground.normalArray),
            m_shade.revision(),           ground.indexCount};
}

bool Renderer::hasGround() const
{
    const TerrainSurfaceBindings* pGround = m_pTerrainBindings.get();
    return pGround && pGround->vertexBuffer && pGround->indexBuffer && pGround->surfaceInfo;
}

/// From what hides most to what is hidden most.
void Renderer::drawScene(const SceneView& view, bool bWindow)
{
    m_device.setUniformBuffer(s_uFrameSlot, m_frameBuffer);
    drawGround(view);
    drawRim();
    drawQuads(view);
    drawInstances(view, bWindow);
    if (m_instanceShade.scale() > 0.0f)
        m_device.setTexture(s_uInstanceShadeSlot, m_instanceShade.texture(), SamplerMode::LinearClamp);
    m_pClutterDraw->draw(*m_pCullingGroups, {.viewProjection = view.projection * view.view,
                                             .camera = glm::vec2(glm::inverse(view.view)[3]),
                                             .shade = m_shade.texture(),
                                             .bWindow = bWindow,
                                             .bRest = bWindow && m_schedule.isResting()});
    if (view.uQuads != 0)
        return; // they reach as far as the view
    drawSurroundings();
    if (!m_skyPipeline)
        return;
    m_device.setPipeline(m_skyPipeline);
    m_device.draw(3, 0);
}

void Renderer::drawGround(const SceneView& view)
{
    if (!m_groundPipeline || !hasGround())
        return;
    const TerrainSurfaceBindings& ground = *m_pTerrainBindings;
    // A CPU picks one mip, which the shader varies from place to place.
    const SamplerMode eMaps = m_device.isSoftware() ? SamplerMode::LinearWrap : SamplerMode::AnisotropicWrap;
    m_device.setPipeline(m_groundPipeline);
    m_device.setTexture(0, ground.diffuseArray, eMaps);
    m_device.setTexture(1, ground.asgArray, eMaps);
    m_device.setTexture(2, ground.normalArray, eMaps);
    m_device.setTexture(3, ground.texture0, SamplerMode::LinearClamp);
    m_device.setTexture(4, ground.texture1, SamplerMode::LinearClamp);
    m_device.setTexture(s_uShadeSlot, m_shade.texture(), SamplerMode::PointClamp);
    if (m_instanceShade.scale() > 0.0f)
        m_device.setTexture(s_uInstanceShadeSlot, m_instanceShade.texture(), SamplerMode::LinearClamp);
    m_device.setUniformBuffer(s_uSurfaceSlot, ground.surfaceInfo);
    m_device.setVertexBuffer(0, ground.vertexBuffer);
    if (view.bOrthographic) // a picture: as fine as it gets
    {
        m_device.setIndexBuffer(ground.indexBuffer, ground.indexWidth);
        m_device.drawIndexed(ground.indexCount, 0);
        return;
    }
    m_mesh.draw(ground, view.projection * view.view, glm::vec3(glm::inverse(view.view)[3]));
}

void Renderer::drawInstances(const SceneView& view, bool bWindow)
{
    if (m_pInstances)
        m_pInstanceDraw->draw(*m_pInstances, {.viewProjection = view.projection * view.view,
                                              .eye = glm::vec3(glm::inverse(view.view)[3]),
                                              .shade = m_shade.texture(),
                                              .bInMotion = bWindow && !m_schedule.isResting()});
}

void Renderer::drawRim()
{
    if (!m_rimPipeline || !hasGround())
        return;
    const TerrainSurfaceBindings& ground = *m_pTerrainBindings;
    m_device.setPipeline(m_rimPipeline);
    m_device.setUniformBuffer(s_uSurfaceSlot, ground.surfaceInfo);
    m_device.setStorageBuffer(s_uVerticesSlot, ground.vertexBuffer);
    m_device.draw(2 * std::max(ground.verticesX, ground.verticesY), 0, 4);
}

void Renderer::drawSurroundings()
{
    if (!m_surroundingsPipeline || !hasGround() || m_pTerrainBindings->verticesX == 0)
        return;
    const glm::vec2 tile =
        2.0f * glm::vec2(m_pTerrainBindings->verticesX - 1, m_pTerrainBindings->verticesY - 1);
    const SurroundingsData data{{m_settings.plainColour, 0.0f}, {tile, s_fSurroundingsReach, 0.0f}};
    const resource::BorrowedBuffer borrowed = m_resources.borrowBuffer(sizeof(data), 0, BufferKind::Constant);
    m_device.updateBuffer(borrowed.buffer, 0, bytesOf(data));
    m_device.setPipeline(m_surroundingsPipeline);
    m_device.setUniformBuffer(s_uDrawSlot, borrowed.buffer);
    m_device.draw(4, 0, 4);
    m_resources.returnBuffer(borrowed);
}

void Renderer::drawQuads(const SceneView& view)
{
    const uint32_t uQuads = std::min(view.uQuads, static_cast<uint32_t>(view.arrQuads.size()));
    if (uQuads == 0 || !m_quadPipeline)
        return;
    QuadData data{s_quadColour, {}, {view.quadSize, 0.0f, 0.0f}};
    for (size_t u = 0; u < uQuads; ++u)
        data.arrPlaces[u] = {view.arrQuads[u], 0.0f, 0.0f};
    const resource::BorrowedBuffer borrowed = m_resources.borrowBuffer(sizeof(data), 0, BufferKind::Constant);
    m_device.updateBuffer(borrowed.buffer, 0, bytesOf(data));
    m_device.setPipeline(m_quadPipeline);
    m_device.setUniformBuffer(s_uDrawSlot, borrowed.buffer);
    m_device.draw(4, 0, uQuads);
    m_resources.returnBuffer(borrowed);
}

} // namespace rend
