// What the windows of the entity tool ask: the list of things, what can be placed, what is shown.

#include "KestrelCommon/Platform/Window.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Ugc/UgcBase.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "TileEditorCommon/Catalogue/DataLibrary.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/LibrarySourceI.h"
#include "TileEditorCommon/Editor/EntityListView.h"
#include "TileEditorCommon/Editor/OriginMark.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/Entities.h"

#include <cstring>
#include <set>

namespace tilebuilder
{

namespace
{

constexpr std::string_view s_sContentItem = "$CONTENT_";

/// The game's own contents, in the order of the check boxes.
constexpr std::array<std::pair<const char*, const char*>, 3> s_arrContents{
    {{"$CHALLENGE_DATA", "Challenge"}, {"$GAME_DATA", "Creative"}, {"$SURVIVAL_DATA", "Survival"}}};

} // namespace

EntityListI* TileEditor::entities()
{
    return m_pEntityList.get();
}

std::span<LibrarySourceI* const> TileEditor::librarySources()
{
    return m_vecLibrarySources;
}

std::vector<LibraryContent> TileEditor::libraryContents() const
{
    std::vector<LibraryContent> vecContents;
    for (const auto& [pKey, pName] : s_arrContents)
        if (DirectoryManager::ms_pInstance->exists(pKey))
            vecContents.push_back({pKey, pName, false});
    // Content items whose things are there.
    std::set<std::string> setKeys;
    std::vector<LibraryItem> vecItems;
    for (const LibrarySourceI* pSource : m_vecLibrarySources)
        pSource->listItems(vecItems);
    for (const LibraryItem& item : vecItems)
        if (item.sContent.starts_with(s_sContentItem))
            setKeys.insert(item.sContent);
    for (const std::string& sKey : setKeys)
    {
        const auto pItem = UgcManager::ms_pInstance ? UgcManager::ms_pInstance->findByPath(sKey) : nullptr;
        vecContents.push_back({sKey, pItem ? pItem->name() : sKey, true});
    }
    return vecContents;
}

void TileEditor::startCatalogue()
{
    std::vector<std::string> vecFolders{"$GAME_DATA", "$SURVIVAL_DATA"};
    if (const auto& pContext = UgcManager::ms_pInstance->context)
        vecFolders.push_back(pContext->directoryKey());
    m_pDataLibrary->loadAsync(vecFolders);
}

void TileEditor::updateCatalogue()
{
    if (m_pDataLibrary->poll() && m_pInterface)
        m_pInterface->onContentChanged();
}

void TileEditor::beginPlacement(const LibraryPlacement& placement)
{
    setTool(ToolPlace);
    m_toolState.placementType = placement.eType;
    m_toolState.placementPath = placement.sPath;
    m_toolState.placementUuid = placement.uuid;
    // Kinds without uuids hold their number in the same place.
    if (placement.uuid.isNil())
        std::memcpy(m_toolState.placementUuid.bytes.data(), &placement.uIndex, sizeof(placement.uIndex));
    m_toolState.placementHandle = NullEntity;
    m_toolState.placementIds.clear();
    m_toolState.noPlacement = false;
}

void TileEditor::hideSelection()
{
    if (m_toolState.tool != ToolPlace)
        return;
    m_pEntities->hideSelected();
    markInterfaceDirty(ChangeSelection);
}

void TileEditor::showHidden()
{
    m_pEntities->showHidden();
    markInterfaceDirty(ChangeSelection);
}

bool TileEditor::isOriginShown() const
{
    return m_pOriginMark->isShown();
}

void TileEditor::toggleOrigin()
{
    m_pOriginMark->show(!m_pOriginMark->isShown());
    markInterfaceDirty(0);
}

void TileEditor::openOutside(const std::string& sPath)
{
    Window::openOutside(DirectoryManager::ms_pInstance->resolvePath(sPath).generic_string());
}

void TileEditor::copyText(const std::string& sText)
{
    Window::setClipboardText(sText);
}

} // namespace tilebuilder
