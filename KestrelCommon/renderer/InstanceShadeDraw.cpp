// Instances pressed flat onto the ground, for the map of their shadows.

#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/InstanceDraw.h"
#include "KestrelCommon/renderer/InstanceShade.h"

#include <algorithm>

namespace rend
{

namespace
{

constexpr uint32_t s_uShadeSlot = 3; ///< constants

/// "CB_ASSET_SHADE"
struct ShadeData
{
    glm::vec4 shift; ///< X and Y that a metre of height adds; z: texture sides a metre
};

bool touches(const std::array<glm::vec2, 2>& arrReach, const glm::vec2& low, const glm::vec2& high)
{
    return arrReach[0].x < high.x && arrReach[1].x > low.x && arrReach[0].y < high.y && arrReach[1].y > low.y;
}

} // namespace

void InstanceDraw::beginShade(TargetHandle target, float fReach, const glm::vec3& sunDirection,
                              float fLowestSun)
{
    const float fHeight = std::max(sunDirection.z, fLowestSun);
    const ShadeData data{{-sunDirection.x / fHeight, -sunDirection.y / fHeight, 1.0f / fReach, 0.0f}};
    if (!m_shadeBuffer)
        m_shadeBuffer =
            m_resources.createBuffer({}, sizeof(data), 0, "CB_ASSET_SHADE", BufferKind::Constant, true);
    m_device.updateBuffer(m_shadeBuffer, 0, std::as_bytes(std::span(&data, 1)));
    m_device.beginPass(target, {.bClearColour = false, .bClearDepth = false});
}

uint64_t InstanceDraw::drawShade(const InstanceWorld& world, const glm::vec2& low, const glm::vec2& high,
                                 const glm::vec3& sunDirection)
{
    if (!m_shadePipeline || !m_shadeClearPipeline)
        return 0;
    m_device.setPipeline(m_shadeClearPipeline);
    m_device.draw(3, 0);

    struct Thrower
    {
        uint32_t uRenderable;
        const InstanceData* pData;
    };
    std::vector<Thrower> vecThrowers;
    for (const auto& pCell : world.cells())
    {
        if (pCell->vecInfo.empty() || !touches(InstanceShade::reachOf(pCell->box, sunDirection), low, high))
            continue;
        for (size_t u = 0; u < pCell->vecInfo.size(); ++u)
        {
            const InstanceKind& kind = world.kinds()[pCell->vecInfo[u].uKind];
            const Aabb box =
                movedBox(world.renderable(kind.uRenderable)->model().box, pCell->vecData[u].arrRows);
            if (kind.uPage == 0 && touches(InstanceShade::reachOf(box, sunDirection), low, high))
                vecThrowers.push_back({kind.uRenderable, &pCell->vecData[u]});
        }
    }
    if (vecThrowers.empty())
        return 0;
    std::sort(vecThrowers.begin(), vecThrowers.end(),
              [](const Thrower& a, const Thrower& b) { return a.uRenderable < b.uRenderable; });
    std::vector<InstanceData> vecData;
    for (const Thrower& thrower : vecThrowers)
    {
        (void)meshOf(world, thrower.uRenderable);
        vecData.push_back(*thrower.pData);
    }
    const auto bytes = std::as_bytes(std::span(vecData));
    const resource::BorrowedBuffer instances =
        m_resources.borrowBuffer(bytes.size(), sizeof(InstanceData), BufferKind::Vertex);
    m_device.updateBuffer(instances.buffer, 0, bytes);
    m_device.setPipeline(m_shadePipeline);
    m_device.setUniformBuffer(s_uShadeSlot, m_shadeBuffer);
    m_device.setVertexBuffer(1, instances.buffer);
    uint64_t uTriangles = 0;
    for (size_t uFirst = 0; uFirst < vecThrowers.size();)
    {
        size_t uEnd = uFirst;
        while (uEnd < vecThrowers.size() && vecThrowers[uEnd].uRenderable == vecThrowers[uFirst].uRenderable)
            ++uEnd;
        const Mesh& mesh = m_vecMeshes[vecThrowers[uFirst].uRenderable];
        m_device.setVertexBuffer(0, mesh.vertices);
        m_device.setIndexBuffer(mesh.indices, IndexWidth::Bits32);
        for (const Part& part : mesh.vecParts)
        {
            m_device.setTexture(0, part.arrTextures[0], SamplerMode::LinearWrap);
            m_device.drawIndexed(part.uIndices, part.uFirst, static_cast<uint32_t>(uEnd - uFirst),
                                 static_cast<uint32_t>(uFirst));
            uTriangles += uint64_t{part.uIndices} / 3 * (uEnd - uFirst);
        }
        uFirst = uEnd;
    }
    m_resources.returnBuffer(instances);
    return uTriangles;
}

} // namespace rend
