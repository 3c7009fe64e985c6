// Content items that come and go while the editor runs.

#include "KestrelCommon/Ugc/UgcBase.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"
#include "TileEditorCommon/Entities/Entities.h"

namespace tilebuilder
{

namespace
{

using Items = UgcManager::Items;

/// Whose items bring things to place.
constexpr std::array s_arrContentKinds{UgcKind::TerrainAssets, UgcKind::BlocksAndParts};

/// The manager knows a callback by its type.
struct TellAdded
{
    std::function<void(const Items&)> fnTell;
    void operator()(const Items& vecItems) const { fnTell(vecItems); }
};
struct TellRemoved
{
    std::function<void(const Items&)> fnTell;
    void operator()(const Items& vecItems) const { fnTell(vecItems); }
};

} // namespace

void TileEditor::registerContent()
{
    UgcManager* pManager = UgcManager::ms_pInstance;
    if (!pManager)
        return;
    for (const UgcKind eKind : s_arrContentKinds)
    {
        pManager->addAddedCallback(eKind,
                                   TellAdded{[this](const Items& vecItems) { onItemsAdded(vecItems); }});
        pManager->addRemovedCallback(
            eKind, TellRemoved{[this](const Items& vecItems) { onItemsRemoved(vecItems); }});
    }
    // What is there already, and the item that the run works within, which may bring assets of its own.
    if (pManager->context)
        onItemsAdded({pManager->context});
}

void TileEditor::unregisterContent()
{
    UgcManager* pManager = UgcManager::ms_pInstance;
    if (!pManager)
        return;
    for (const UgcKind eKind : s_arrContentKinds)
    {
        pManager->removeAddedCallback(eKind, TellAdded{});
        pManager->removeRemovedCallback(eKind, TellRemoved{});
    }
}

/// With a context only what it depends on counts, and the item itself.
bool TileEditor::isInContext(const UgcBase& item) const
{
    const auto& pContext = UgcManager::ms_pInstance->context;
    if (!pContext || pContext.get() == &item)
        return true;
    const ContentId id = item.getContentId();
    for (const ContentId& needed : pContext->getDependencies())
        if (needed.localId == id.localId || (id.fileId != 0 && needed.fileId == id.fileId))
            return true;
    return false;
}

void TileEditor::onItemsAdded(const Items& vecItems)
{
    auto& assets = m_pEntities->typed<AssetEntityType>();
    bool bChanged = false;
    for (const auto& pItem : vecItems)
    {
        const bool bBringsAssets =
            pItem->kind() == UgcKind::TerrainAssets || pItem->kind() == UgcKind::CustomGame;
        if (!bBringsAssets || !isInContext(*pItem) || pItem->paths().sAssetSets.empty() ||
            assets.knowsOrigin(pItem->getLocalId()))
            continue;
        bChanged = assets.addSets(pItem->paths().sAssetSets, pItem->getLocalId()) || bChanged;
    }
    if (!bChanged)
        return;
    if (isDocumentOpen())
    {
        // What isn't a step yet would be lost: the document is read anew from its state.
        if (m_pending.isPending())
            pushPending();
        m_pTile->restoreState(false, true);
    }
    if (m_pInterface)
        m_pInterface->onContentChanged();
    markInterfaceDirty(0);
}

void TileEditor::onItemsRemoved(const Items& vecItems)
{
    for (const auto& pItem : vecItems)
        m_pEntities->typed<AssetEntityType>().removeSets(pItem->getLocalId());
    if (m_pInterface)
        m_pInterface->onContentChanged();
    markInterfaceDirty(0);
}

} // namespace tilebuilder
