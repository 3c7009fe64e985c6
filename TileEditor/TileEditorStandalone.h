#pragma once // The program's shell: set-up, frame loop or batch, shutdown.

#include "KestrelCommon/Platform/AudioListener.h"
#include "KestrelCommon/Services/InputTarget.h"
#include "KestrelCommon/renderer/Camera.h"
#include "TileEditor/FrameStatistics.h"

#include <memory>
#include <string>

class DirectoryManager;
class DynamicDataManager;
class GuiSystemManager;
class InputManager;
class PopUpManager;
class TaskManager;
class UgcManager;
class Window;
struct CommandLine;
struct PlatformEvent;
namespace UTILS
{
class Console;
}
namespace platform
{
class StoreService;
}
namespace rend
{
class DebugDrawer;
class GlContextI;
class GraphicsDeviceI;
class Renderer;
} // namespace rend
namespace resource
{
class ResourceManager;
}
namespace tilebuilder
{
class KeyBindings;
class TileEditor;
class TileEditorInterface;
} // namespace tilebuilder

/// Owns the engine's services and the editor object. They are made in a fixed order and taken
/// down in a fixed order, so that everything can log and resolve paths to the end.
///
/// Threads: main thread only.
class TileEditorStandalone : public InputTarget
{
public:
    /// The window is borrowed; null in a batch run, which draws without any display.
    TileEditorStandalone(Window* pWindow, platform::StoreService& store);
    ~TileEditorStandalone() override;

    /// Sets up, runs the frame loop or the batch, and takes everything down.
    void run(const CommandLine& line);

    // InputTarget
    bool keyDown(const InputEvent&) override { return true; }
    bool keyUp(const InputEvent& event) override;
    bool mouseDown(const InputEvent& event) override;
    bool mouseUp(const InputEvent&) override { return true; }
    bool mouseWheel(const InputEvent&) override { return true; }
    bool mouseMove(const InputEvent&) override { return true; }

private:
    // Set-up, in TileEditorSetup.cpp

    bool setUp(const CommandLine& line, bool bBackgroundLoading);
    bool setUpDirectories();
    bool setUpDevice();
    void setUpResources(bool bBackgroundLoading);
    void setUpCamera();
    bool setUpGui();
    void setUpContent(const CommandLine& line);
    void setUpEditor();
    void showStart(float fDone);
    void hideStart();
    void shutDown();

    // Frame loop, in FrameLoop.cpp

    void runFrameLoop();
    bool pumpEvents();
    void runFrame(float dt);
    void updateCamera(float dt);
    void drawFrame(float dt);
    void resize(int iWidth, int iHeight);

    void runBatch(const std::string& sListPath);

    Window* m_pWindow;
    platform::StoreService& m_store;
    platform::AudioListener m_audio;

    std::unique_ptr<DirectoryManager> m_pDirectoryManager;
    std::unique_ptr<UTILS::Console> m_pConsole;
    std::unique_ptr<TaskManager> m_pTaskManager;
    std::unique_ptr<DynamicDataManager> m_pDynamicDataManager;
    std::unique_ptr<rend::GlContextI> m_pContext;
    std::unique_ptr<rend::GraphicsDeviceI> m_pDevice;
    std::unique_ptr<resource::ResourceManager> m_pResourceManager;
    std::unique_ptr<rend::Renderer> m_pRenderer;
    std::unique_ptr<InputManager> m_pInputManager;
    Camera m_camera;
    std::unique_ptr<GuiSystemManager> m_pGuiSystemManager;
    std::unique_ptr<PopUpManager> m_pPopUpManager;
    std::unique_ptr<UgcManager> m_pUgcManager;
    std::unique_ptr<rend::DebugDrawer> m_pDebugDrawer;
    std::unique_ptr<tilebuilder::TileEditor> m_pTileEditor;
    std::unique_ptr<tilebuilder::KeyBindings> m_pKeyBindings;
    std::unique_ptr<tilebuilder::TileEditorInterface> m_pInterface;

    int m_iWidth; ///< client pixels
    int m_iHeight;
    int32_t m_uFov = 45; ///< degrees
    bool m_bReady = false;
    bool m_bFirstFrame = true;
    bool m_bStarting = false;   ///< the notice shows
    bool m_bFirstStart = false; ///< nothing is in the caches yet
    double m_fStart;            ///< seconds, for the time to the first frame
    FrameStatistics m_statistics;
};
