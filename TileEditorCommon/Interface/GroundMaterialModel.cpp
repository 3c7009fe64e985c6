#include "TileEditorCommon/Interface/GroundMaterialModel.h"

#include "KestrelCommon/Core/Assert.h"

namespace tilebuilder
{

GroundMaterialModel::GroundMaterialModel(EditorActionsI& actions)
    : m_actions(actions),
      m_vecSets(actions.materialSets()),
      m_bound(actions.boundMaterials())
{
}

size_t GroundMaterialModel::boundSet() const
{
    for (size_t i = 0; i < m_vecSets.size(); ++i)
        if (m_vecSets[i].sPath == m_bound.sPath)
            return i;
    return s_uNone;
}

size_t GroundMaterialModel::selected() const
{
    const size_t uMaterial = m_actions.toolState().groundMaterial;
    return uMaterial < m_bound.vecMaterials.size() ? uMaterial : s_uNone;
}

bool GroundMaterialModel::update()
{
    if (m_actions.boundMaterialHash() == m_bound.uHash)
        return false;
    m_bound = m_actions.boundMaterials();
    m_actions.toolState().groundMaterial = 0;
    return true;
}

void GroundMaterialModel::chooseSet(size_t uIndex)
{
    if (uIndex >= m_vecSets.size())
        return;
    const std::string& utf8Path = m_vecSets[uIndex].sPath;
    if (QM_ASSERT(!utf8Path.empty()))
        m_actions.bindMaterialSet(utf8Path);
    m_actions.markInterfaceDirty(0);
}

void GroundMaterialModel::chooseMaterial(size_t uIndex)
{
    if (uIndex >= m_bound.vecMaterials.size())
        return;
    m_actions.toolState().groundMaterial = static_cast<uint32_t>(uIndex);
    m_actions.markInterfaceDirty(0);
}

} // namespace tilebuilder
