// Pictures of single objects.

#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "TileEditorCommon/Pictures/IconGenerator.h"

#include <glm/geometric.hpp>
#include <glm/gtc/matrix_transform.hpp>

namespace tilebuilder
{

namespace
{

constexpr int s_iOversize = 4;
constexpr float s_fMargin = 1.06f; ///< the picture's side against that of the object
const glm::vec3 s_towardsEye(0.52f, -0.72f, 0.46f);

/// A model's +Y becomes +Z, its front looks along -Y.
Transform upright()
{
    return {glm::vec3(0.0f), glm::quat(0.70710677f, 0.70710677f, 0.0f, 0.0f), glm::vec3(0.25f)};
}

/// Averaging mixed colour with the empty ground; dividing by what is covered takes that back.
void divideByAlpha(std::vector<std::byte>& vecPixels)
{
    for (size_t u = 0; u + 3 < vecPixels.size(); u += 4)
    {
        const auto uAlpha = static_cast<uint32_t>(vecPixels[u + 3]);
        for (size_t k = 0; k < 3 && uAlpha > 0; ++k)
            vecPixels[u + k] = static_cast<std::byte>(
                std::min(255u, (static_cast<uint32_t>(vecPixels[u + k]) * 255u + uAlpha / 2) / uAlpha));
    }
}

} // namespace

rend::SceneView IconGenerator::objectView(std::span<const glm::vec3> spanPoints)
{
    rend::SceneView view;
    view.bOrthographic = true;
    view.bLines = false;
    view.view = glm::lookAt(s_towardsEye, glm::vec3(0.0f), glm::vec3(0.0f, 0.0f, 1.0f));
    const Transform transform = upright();
    Aabb seen; // in view space
    for (const glm::vec3& point : spanPoints)
    {
        const glm::vec3 place = view.view * glm::vec4(transform.apply(point), 1.0f);
        const bool bFirst = &point == spanPoints.data();
        seen.lowest = bFirst ? place : glm::min(seen.lowest, place);
        seen.highest = bFirst ? place : glm::max(seen.highest, place);
    }
    const glm::vec3 size = seen.size();
    const float fHalf = std::max({size.x, size.y, 0.002f}) * 0.5f * s_fMargin;
    const float fDeep = std::max(size.z, 0.002f) * s_fMargin;
    view.projection[0][0] = 1.0f / fHalf;
    view.projection[1][1] = 1.0f / fHalf;
    view.projection[2][2] = 1.0f / fDeep; // depth 1 at the front, 0 at the far end
    view.projection[3] = {-seen.centre().x / fHalf, -seen.centre().y / fHalf, 0.5f - seen.centre().z / fDeep,
                          1.0f};
    return view;
}

void IconGenerator::clearSubject()
{
    if (!m_pSubject)
        return;
    m_objects.removeInstance(m_uSubjectSlot);
    m_objects.removeRenderable(m_uSubject);
    m_pSubject.reset();
}

void IconGenerator::setSubject(const std::shared_ptr<const resource::Renderable>& pRenderable,
                               std::span<const uint32_t> spanColours)
{
    if (m_pSubject == pRenderable)
    {
        m_objects.setColours(m_uSubjectSlot, spanColours);
        return;
    }
    clearSubject();
    m_pSubject = pRenderable;
    m_uSubject = m_objects.addRenderable(pRenderable);
    m_uSubjectSlot = m_objects.addInstance(m_uSubject, upright(), spanColours);
}

bool IconGenerator::prepareObject(const std::shared_ptr<const resource::Renderable>& pRenderable)
{
    if (m_pSubject != pRenderable)
    {
        setSubject(pRenderable, {});
        const rend::TargetHandle target = targetFor(s_uObjectSide, s_uObjectSide);
        const int iSide = static_cast<int>(s_uObjectSide) * s_iOversize;
        return m_renderer.renderObjects(target, iSide, iSide, objectView(pRenderable->model().vecPositions),
                                        m_objects);
    }
    return m_renderer.resources().loadingCount() == 0;
}

std::string IconGenerator::renderObject(std::span<const std::string> spanPaths,
                                        const std::shared_ptr<const resource::Renderable>& pRenderable,
                                        std::span<const uint32_t> spanColours)
{
    const rend::TargetHandle target = targetFor(s_uObjectSide, s_uObjectSide);
    if (!target)
        return {};
    setSubject(pRenderable, spanColours);
    const int iSide = static_cast<int>(s_uObjectSide) * s_iOversize;
    const rend::RenderSettings saved = m_renderer.settings();
    m_renderer.settings() = {};
    m_renderer.renderObjects(target, iSide, iSide, objectView(pRenderable->model().vecPositions), m_objects);
    m_renderer.settings() = saved;
    resource::Picture picture{iSide, iSide, {}};
    picture.vecPixels.resize(static_cast<size_t>(iSide) * static_cast<size_t>(iSide) * 4);
    if (!m_renderer.device().readTarget(target, picture.vecPixels))
        return {};
    resource::Picture small = resource::reducePicture(picture, s_iOversize);
    divideByAlpha(small.vecPixels);
    for (const std::string& sPath : spanPaths)
    {
        const std::filesystem::path path = m_renderer.resources().resolver()(sPath);
        if (path.empty() || path.native().starts_with('$'))
            continue;
        std::error_code error;
        std::filesystem::create_directories(path.parent_path(), error);
        if (resource::writePicture(path, small.iWidth, small.iHeight, small.vecPixels))
            return sPath;
    }
    return {};
}

} // namespace tilebuilder
