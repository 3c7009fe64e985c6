// The whole interface with the starter content on a recording device.

#include "Benchmarks/Harness.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "MyGuiCommon/PopUpManager.h"
#include "Tests/MyGui/GuiFixture.h"
#include "Tests/Support/TempFolder.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/TileEditorInterface.h"

namespace
{

using namespace bench;
using namespace tilebuilder;

struct Gui : GuiFixture
{
    Gui() { startGui(); }
    void TestBody() override {}
};

int refreshing()
{
    constexpr std::string_view s_sName = "refresh of the whole interface, nothing new";
    if (!isWanted(s_sName))
        return 0;
    TempFolder folder;
    DirectoryManager directories(
        {folder.path() / "roaming", folder.path() / "local", QM_GAME_DIR "/Release", {}, 7});
    if (directories.initialise() != DirectoryManager::Success)
        return 1;
    UgcManager content(nullptr);
    Gui gui;
    PopUpManager popUps(*gui.m_pGui);
    InputManager input;
    Camera camera;
    camera.width = 1280.0f;
    camera.height = 720.0f;
    EditorServices services;
    services.pCamera = &camera;
    services.pInput = &input;
    TileEditor editor(services, true, 0);
    KeyBindings keys(input);
    TileEditorInterface windows({*gui.m_pGui, popUps, editor, keys, true, {}});
    editor.setInterface(&windows);
    // With a tool, so that what only some tools show is there too.
    int iMissed = 0;
    for (const auto& [uTool, pTool] : {std::pair{ToolHeight, "height"},
                                       {ToolMaterial, "material"},
                                       {ToolClutter, "clutter"},
                                       {ToolPlace, "entity"}})
    {
        editor.setTool(uTool);
        windows.refresh(~0u);
        gui.settle(2);
        iMissed += !run({.sName = std::string(s_sName) + ", " + pTool + " tool",
                         .fnProduct = [&] { windows.refresh(~0u); },
                         .iRepeat = 20,
                         .fMaxMs = 1.0});
    }
    editor.setInterface(nullptr);
    return iMissed;
}

const Registration s_refreshing(&refreshing);

} // namespace
