#include "TileEditorCommon/Pictures/IconGenerator.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/Renderer.h"

#include <glm/geometric.hpp>
#include <glm/gtc/matrix_transform.hpp>

namespace tilebuilder
{

namespace
{

constexpr float s_fCellSize = 64.0f;
constexpr uint32_t s_uOversize = 4; ///< the target's side against the picture's

/// Reversed depth: 1 at the eye, 0 at the far plane.
glm::mat4 orthographic(float fLeft, float fRight, float fBottom, float fTop, float fFar)
{
    glm::mat4 projection(1.0f);
    projection[0][0] = 2.0f / (fRight - fLeft);
    projection[1][1] = 2.0f / (fTop - fBottom);
    projection[2][2] = 1.0f / fFar;
    projection[3][0] = -(fRight + fLeft) / (fRight - fLeft);
    projection[3][1] = -(fTop + fBottom) / (fTop - fBottom);
    projection[3][2] = 1.0f;
    return projection;
}

} // namespace

size_t IconGenerator::KeyHash::operator()(uint64_t uKey) const
{
    return fnv1a64({reinterpret_cast<const char*>(&uKey), sizeof(uKey)});
}

IconGenerator::~IconGenerator()
{
    for (const auto& [uKey, target] : m_mapTargets)
        m_renderer.device().destroyTarget(target);
}

TilePictureFraming IconGenerator::framing(bool bSmall)
{
    return bSmall ? TilePictureFraming{220, 150, 1.0f, -0.12f}
                  : TilePictureFraming{1920, 1080, 0.85f, -0.08f};
}

rend::SceneView IconGenerator::tileView(int iWidth, int iHeight, const TilePictureFraming& framing)
{
    const auto fWidth = static_cast<float>(iWidth);
    const auto fHeight = static_cast<float>(iHeight);
    rend::SceneView view;
    view.bOrthographic = true;
    view.bLines = false;

    view.quadSize = {s_fCellSize * fWidth, s_fCellSize * fHeight};
    constexpr std::array<std::array<int, 2>, 8> s_arrAround = {
        {{-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}}};
    for (const auto& [iX, iY] : s_arrAround)
        view.arrQuads[view.uQuads++] = glm::vec2(iX, iY) * view.quadSize;

    const float fAspect = static_cast<float>(framing.uWidth) / static_cast<float>(framing.uHeight);
    const glm::vec3 centre(32.0f * fWidth, 32.0f * fHeight, 0.0f);
    const float fDistance = std::max(centre.x, centre.y) * 0.70710677f / std::sin(fAspect * 0.7853982f);
    const glm::vec3 away(centre.x + 0.35355338f * fDistance, centre.y + 0.35355338f * fDistance,
                         1.4142135f * fDistance);
    const float fReach = glm::length(away);
    const float fFar = 2.0f * fReach + 100.0f;
    const float fScale = fFar / (2.0f * fReach);
    const glm::vec3 eye(centre.x - away.x * fScale, centre.y - away.y * fScale, away.z * fScale);
    view.view = glm::lookAt(eye, centre, glm::vec3(0.0f, 0.0f, 1.0f));

    const float fSide = s_fCellSize * std::max(fWidth, fHeight);
    const float fHalf = framing.fZoom * fAspect * fSide * 0.5f;
    view.projection = orthographic(-fHalf, fHalf, -(framing.fOffset + 0.5f) * fSide * framing.fZoom,
                                   (0.5f - framing.fOffset) * fSide * framing.fZoom, fFar);
    return view;
}

rend::TargetHandle IconGenerator::targetFor(uint32_t uWidth, uint32_t uHeight)
{
    const uint64_t uKey = ((uint64_t{uWidth} << 13) + uHeight) * 4;
    if (const auto it = m_mapTargets.find(uKey); it != m_mapTargets.end())
        return it->second;
    const rend::TargetHandle target =
        m_renderer.device().createTarget({.sName = "Icon",
                                          .iWidth = static_cast<int>(uWidth * s_uOversize),
                                          .iHeight = static_cast<int>(uHeight * s_uOversize)});
    if (target)
        m_mapTargets.emplace(uKey, target);
    return target;
}

bool IconGenerator::renderTile(std::string_view sPath, int iWidth, int iHeight, bool bSmall)
{
    const std::filesystem::path path = m_renderer.resources().resolver()(sPath);
    if (path.empty() || path.native().starts_with('$'))
    {
        QM_LOG_ERROR("Failed to create tile icon at non valid path: ", sPath);
        return false;
    }
    const TilePictureFraming frame = framing(bSmall);
    const rend::TargetHandle target = targetFor(frame.uWidth, frame.uHeight);
    if (!target)
        return false;

    resource::Picture picture{
        static_cast<int>(frame.uWidth * s_uOversize), static_cast<int>(frame.uHeight * s_uOversize), {}};
    picture.vecPixels.resize(size_t{frame.uWidth} * frame.uHeight * s_uOversize * s_uOversize * 4);
    const rend::RenderSettings saved = m_renderer.settings();
    m_renderer.settings() = {};
    m_renderer.resources().finishLoading();
    m_renderer.render(target, picture.iWidth, picture.iHeight, tileView(iWidth, iHeight, frame));
    UTILS::log(UTILS::concat("Saving texture icon to: ", sPath), UTILS::AttributeNormal);
    const bool bRead = m_renderer.device().readTarget(target, picture.vecPixels);
    m_renderer.settings() = saved;
    if (!bRead)
        return false;
    const resource::Picture small = resource::reducePicture(picture, static_cast<int>(s_uOversize));
    return resource::writePicture(path, small.iWidth, small.iHeight, small.vecPixels);
}

} // namespace tilebuilder
