#include "TileEditorCommon/Interface/ClutterModel.h"

#include "KestrelCommon/Core/Assert.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"

namespace tilebuilder
{

ClutterModel::ClutterModel(EditorActionsI& actions) : m_actions(actions)
{
    update();
}

std::vector<ClutterEntry> ClutterModel::entries() const
{
    std::vector<std::string> grassNameList = m_actions.clutterNames();
    if (!QM_ASSERT_TEXT(grassNameList.size() < GrassValues.size(),
                        "grassNameList.size() < (sizeof(*RtlpNumberOf(GrassValues)))"))
        grassNameList.resize(GrassValues.size() - 1);
    std::vector<ClutterEntry> vecEntries;
    for (std::string& sName : grassNameList)
    {
        const bool bChecked = GrassValues[vecEntries.size()];
        vecEntries.push_back({std::move(sName), bChecked});
    }
    return vecEntries;
}

void ClutterModel::toggle(size_t uIndex)
{
    if (uIndex >= m_actions.clutterNames().size() || uIndex >= GrassValues.size())
        return;
    GrassValues[uIndex] = !GrassValues[uIndex];
    writeSelection();
}

bool ClutterModel::update()
{
    Flags arrFlags{};
    for (const uint8_t uIndex : m_actions.toolState().clutterSelection)
        if (uIndex < arrFlags.size())
            arrFlags[uIndex] = true;
    if (arrFlags == GrassValues)
        return false;
    GrassValues = arrFlags;
    return true;
}

void ClutterModel::writeSelection()
{
    std::vector<uint8_t>& vecSelection = m_actions.toolState().clutterSelection;
    vecSelection.clear();
    for (size_t u = 0; u < GrassValues.size(); ++u)
        if (GrassValues[u])
            vecSelection.push_back(static_cast<uint8_t>(u));
    m_actions.markInterfaceDirty(0);
}

} // namespace tilebuilder
