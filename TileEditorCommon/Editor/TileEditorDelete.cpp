// Deleting the user's own tile.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/TileEditor.h"

namespace tilebuilder
{

namespace
{

// The item that the user may delete with its folder; null: none.
UgcManager::Item ownItemOf(const std::string& sPath)
{
    if (sPath.empty())
        return nullptr;
    auto pItem = UgcManager::ms_pInstance->findByPath(sPath);
    return pItem && UgcManager::isUsersOwn(*pItem) ? pItem : nullptr;
}

} // namespace

bool TileEditor::canDeleteTile() const
{
    return ownItemOf(documentPath()) != nullptr;
}

void TileEditor::deleteTile()
{
    if (!m_pTile)
        return;
    const std::string sPath = documentPath();
    markInterfaceDirty(0);
    if (!ownItemOf(sPath))
    {
        showMessage("Error deleting tile.");
        return;
    }
    if (!m_pInterface)
        return;
    m_pInterface->askYesNo("#{MENU_YN_MESSAGE_CONFIRM}",
                           "This action will delete your local tile.\nAny tile on workshop will stay.",
                           [this, sPath]
                           {
                               // Asked for anew: the answer may come frames later.
                               const auto pItem = ownItemOf(sPath);
                               if (!pItem || documentPath() != sPath)
                                   return;
                               UgcManager::ms_pInstance->removeItem(pItem);
                               // Its unsaved changes go with it, so nothing is asked.
                               newTile(1);
                               dropCachedTile(sPath);
                           });
}

} // namespace tilebuilder
