#include "TileEditorCommon/Editor/OriginMark.h"

#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"

#include <json/value.h>

namespace tilebuilder
{

OriginMark::~OriginMark()
{
    show(false);
    if (m_uRenderable != rend::InstanceWorld::s_uNone)
        m_world.removeRenderable(m_uRenderable);
}

void OriginMark::show(bool bShow)
{
    if (bShow == isShown())
        return;
    if (!bShow)
    {
        m_world.removeInstance(std::exchange(m_uInstance, rend::InstanceWorld::s_uNone));
        return;
    }
    if (m_uRenderable == rend::InstanceWorld::s_uNone)
    {
        resource::RenderableDesc desc;
        if (const auto jRenderable = readJsonFile(s_pRenderable))
            desc = resource::readRenderable(*jRenderable).value_or(resource::RenderableDesc{});
        const auto fnResolve = [](std::string_view sPath)
        { return DirectoryManager::ms_pInstance->resolvePath(sPath); };
        m_uRenderable = m_world.addRenderable(std::make_shared<const resource::Renderable>(
            desc, std::make_shared<const resource::ModelFile>(desc.sMesh, fnResolve), false));
    }
    m_uInstance = m_world.addInstance(m_uRenderable,
                                      {glm::vec3(0.0f), {1.0f, 0.0f, 0.0f, 0.0f}, glm::vec3(s_fScale)}, {});
}

} // namespace tilebuilder
