// Set-up and shutdown: the services in their order.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Core/ScopeTimer.h"
#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Device/EglContext.h"
#include "KestrelCommon/Device/GlDevice.h"
#include "KestrelCommon/Platform/CrashSender.h"
#include "KestrelCommon/Platform/Paths.h"
#include "KestrelCommon/Platform/StoreService.h"
#include "KestrelCommon/Platform/Window.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/Services/TaskManager.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "KestrelCommon/renderer/DebugDrawer.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "MyGuiCommon/GuiSystemManager.h"
#include "MyGuiCommon/PopUpManager.h"
#include "TileEditor/CommandLine.h"
#include "TileEditor/EditorSettings.h"
#include "TileEditor/TileEditorStandalone.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/TileEditorInterface.h"

#include <filesystem>
#include <unistd.h>
#include <utility>

namespace
{

// The client size of a run without a window.
constexpr int s_iBatchWidth = 1920;
constexpr int s_iBatchHeight = 1080;
constexpr size_t s_uDebugLineVertices = 2048;
/// Behind the notice of the start.
constexpr std::array<float, 4> s_arrStartColour{0.12f, 0.13f, 0.15f, 1.0f};

/// The window's own context, as the device wants it.
class WindowContext : public rend::GlContextI
{
public:
    explicit WindowContext(Window& window) : m_window(window) {}
    bool makeCurrent() override { return m_window.makeCurrent(); }
    bool swap() override
    {
        m_window.swap();
        return true;
    }
    [[nodiscard]] bool isOffscreen() const override { return false; }

private:
    Window& m_window;
};

void logStep(std::string_view sText)
{
    UTILS::log(sText, UTILS::AttributeGreen, UTILS::LogDefault);
}

} // namespace

TileEditorStandalone::TileEditorStandalone(Window* pWindow, platform::StoreService& store)
    : m_pWindow(pWindow),
      m_store(store),
      m_iWidth(pWindow ? pWindow->width() : s_iBatchWidth),
      m_iHeight(pWindow ? pWindow->height() : s_iBatchHeight),
      m_fStart(FrameClock::seconds())
{
}

TileEditorStandalone::~TileEditorStandalone() = default;

bool TileEditorStandalone::setUp(const CommandLine& line, bool bBackgroundLoading)
{
    if (!setUpDirectories())
        return false;
    const ScopeTimer timer("SETUP TILE EDITOR");
    if (m_pWindow)
        m_pWindow->setCursor(CursorShape::Wait);
    BugSplatUtil::addFile(m_pDirectoryManager->settingsFile());
    BugSplatUtil::setTempFolder(m_pDirectoryManager->tempFolder());
    QM_LOG("Setup editor width: ", m_iWidth, " height: ", m_iHeight);
    m_uFov = EditorSettings::read(m_pDirectoryManager->tileEditorSettingsFile()).fov;
    m_pTaskManager = std::make_unique<TaskManager>();
    m_pTaskManager->start();
    m_pDynamicDataManager = std::make_unique<DynamicDataManager>();

    logStep("Initializing ResourceManager");
    if (!setUpDevice())
        return false;
    setUpResources(bBackgroundLoading);
    m_pInputManager = std::make_unique<InputManager>();
    m_pInputManager->setTarget(this);
    setUpCamera();
    if (!setUpGui())
        return false;
    showStart(0.3f);
    setUpContent(line);
    setUpEditor();
    showStart(0.7f);
    m_bReady = true;
    return true;
}

bool TileEditorStandalone::setUpDirectories()
{
    m_pDirectoryManager = std::make_unique<DirectoryManager>(
        DirectoryPlaces{platform::roamingDataFolder(), platform::localDataFolder(), platform::programFolder(),
                        m_store.gameInstallFolder(), m_store.userId()});
    if (m_pDirectoryManager->openLogs("editor") != DirectoryManager::Success)
        return false;
    BugSplatUtil::addFile(m_pDirectoryManager->mainLog());
    BugSplatUtil::addFile(m_pDirectoryManager->issuesLog());
    UTILS::ConsoleSettings settings;
    settings.sLogFile = m_pDirectoryManager->mainLog();
    settings.bConsole = true;
    settings.bColours = ::isatty(STDOUT_FILENO) == 1;
    m_pConsole = std::make_unique<UTILS::Console>(std::move(settings));
    logStep("Initializing Logger");
    return m_pDirectoryManager->initialise() == DirectoryManager::Success;
}

bool TileEditorStandalone::setUpDevice()
{
    const ScopeTimer timer("SETUP GRAPHICS DEVICE");
    if (m_pWindow)
        m_pContext = std::make_unique<WindowContext>(*m_pWindow);
    else
        m_pContext = rend::EglContext::create();
    if (!m_pContext)
        return false;
    rend::GlDeviceSettings settings;
    settings.iWidth = m_iWidth;
    settings.iHeight = m_iHeight;
    settings.cacheFolder = m_pDirectoryManager->shaderCacheFolder();
    std::error_code error;
    m_bFirstStart = !std::filesystem::exists(settings.cacheFolder, error) ||
                    std::filesystem::is_empty(settings.cacheFolder, error);
    m_pDevice = rend::createGlDevice(*m_pContext, settings);
    return m_pDevice != nullptr;
}

void TileEditorStandalone::setUpResources(bool bBackgroundLoading)
{
    const ScopeTimer timer("SETUP RESOURCES");
    m_pResourceManager = std::make_unique<resource::ResourceManager>(
        *m_pDevice, [this](std::string_view sPath) { return m_pDirectoryManager->resolvePath(sPath); },
        m_pTaskManager->threadCount(), bBackgroundLoading);
    m_pResourceManager->setTextureCache(m_pDirectoryManager->resolvePath("$CACHE_DATA/Textures"));
    m_pResourceManager->init();
    m_pRenderer = std::make_unique<rend::Renderer>(*m_pDevice, *m_pResourceManager);
    m_pRenderer->init();
    m_pResourceManager->initDefaults();
}

void TileEditorStandalone::setUpCamera()
{
    m_camera.fov = static_cast<float>(m_uFov);
    m_camera.width = static_cast<float>(m_iWidth);
    m_camera.height = static_cast<float>(m_iHeight);
    m_camera.nearPlane = 0.1f;
    m_camera.farPlane = 2000.0f;
    m_camera.lookAlong({0.0f, 1.0f, 0.0f});
}

bool TileEditorStandalone::setUpGui()
{
    const ScopeTimer timer("SETUP GUI");
    GuiSettings settings;
    settings.pDevice = m_pDevice.get();
    settings.fnResolve = [this](const std::string& sPath)
    { return m_pDirectoryManager->resolvePath(sPath).string(); };
    settings.sLogFile = m_pDirectoryManager->myGuiLog();
    settings.iWidth = m_iWidth;
    settings.iHeight = m_iHeight;
    if (m_pWindow)
    {
        settings.fnSetCursor = [this](CursorShape eShape) { m_pWindow->setCursor(eShape); };
        settings.fnSetTextInput = &Window::setTextInput;
        settings.fnClipboardText = &Window::clipboardText;
        settings.fnSetClipboardText = &Window::setClipboardText;
    }
    m_pGuiSystemManager = GuiSystemManager::create(std::move(settings));
    if (!m_pGuiSystemManager || !m_pGuiSystemManager->loadResolutions("$GAME_DATA/Gui/guiResolutions.json"))
        return false;
    m_pGuiSystemManager->loadLanguage("English");
    m_pInputManager->setGui(m_pGuiSystemManager.get());
    m_pPopUpManager = std::make_unique<PopUpManager>(*m_pGuiSystemManager);
    return true;
}

/// Says what goes on until the first picture of a tile is there, which hides it.
void TileEditorStandalone::showStart(float fDone)
{
    if (!m_pWindow)
        return;
    if (!std::exchange(m_bStarting, true))
        m_pGuiSystemManager->setBusy(true);
    m_pPopUpManager->showProgress(
        m_bFirstStart ? "Preparing shaders and textures, once only" : "Starting the editor", fDone);
    m_pDevice->beginPass({}, {.arrColour = s_arrStartColour});
    m_pDevice->endPass();
    m_pGuiSystemManager->update();
    m_pGuiSystemManager->draw(0.0f);
    if (!m_pDevice->present())
        QM_LOG_WARNING("The start can't be shown");
}

/// The picture that is drawn next shows what was prepared.
void TileEditorStandalone::hideStart()
{
    if (!std::exchange(m_bStarting, false))
        return;
    m_pPopUpManager->hideProgress();
    m_pGuiSystemManager->setBusy(false);
}

void TileEditorStandalone::setUpContent(const CommandLine& line)
{
    const ScopeTimer timer("SETUP CONTENT ITEMS");
    m_pUgcManager = std::make_unique<UgcManager>(m_pPopUpManager.get());
    m_pDirectoryManager->setContentKeyLookup(
        [this](const Uuid& uuid)
        {
            const auto pItem = m_pUgcManager->getItem(uuid);
            return pItem ? pItem->directoryKey() : std::string();
        });
    m_pUgcManager->addFolder(m_pDirectoryManager->challengesFolder());
    m_pUgcManager->addFolder(m_pDirectoryManager->challengeBlueprintsFolder());
    for (const char* pFolder : {"/Blueprints", "/Mods", "/Tiles", "/Worlds", "/Challenges"})
        m_pUgcManager->addFolder(m_pDirectoryManager->userSubFolder(pFolder));
    if (!line.ugc)
        return;
    const auto uuid = Uuid::parse(*line.ugc);
    const auto pItem = uuid ? m_pUgcManager->getItem(*uuid) : nullptr;
    if (!pItem || pItem->kind() != UgcKind::CustomGame)
        return;
    m_pUgcManager->context = pItem;
    if (m_pWindow)
        m_pWindow->setTitle("Tile Editor - " + pItem->name());
}

void TileEditorStandalone::setUpEditor()
{
    const ScopeTimer timer("SETUP EDITOR");
    m_pDebugDrawer = std::make_unique<rend::DebugDrawer>(s_uDebugLineVertices);
    m_pRenderer->setDebugDrawer(m_pDebugDrawer.get());
    tilebuilder::EditorServices services;
    services.pCamera = &m_camera;
    services.pInput = m_pInputManager.get();
    services.pAudio = &m_audio;
    services.pDevice = m_pDevice.get();
    services.pResources = m_pResourceManager.get();
    services.pRenderer = m_pRenderer.get();
    m_pTileEditor = std::make_unique<tilebuilder::TileEditor>(services, true, 0);
    m_pKeyBindings = std::make_unique<tilebuilder::KeyBindings>(*m_pInputManager);
    m_pInterface = std::make_unique<tilebuilder::TileEditorInterface>(
        tilebuilder::InterfaceParts{*m_pGuiSystemManager, *m_pPopUpManager, *m_pTileEditor, *m_pKeyBindings,
                                    true, [this] { drawFrame(0.0f); }});
    m_pTileEditor->setInterface(m_pInterface.get());
}

void TileEditorStandalone::shutDown()
{
    if (m_pRenderer)
        m_pRenderer->setDebugDrawer(nullptr);
    m_pDebugDrawer.reset();
    if (m_pTileEditor)
        m_pTileEditor->setInterface(nullptr);
    m_pInterface.reset();
    m_pKeyBindings.reset();
    m_pTileEditor.reset();
    if (m_pUgcManager)
        m_pUgcManager->stop();
    m_pUgcManager.reset();
    m_pPopUpManager.reset();
    if (m_pInputManager)
        m_pInputManager->setGui(nullptr);
    m_pGuiSystemManager.reset();
    m_pRenderer.reset();
    m_pResourceManager.reset();
    m_pDevice.reset();
    m_pContext.reset();
    if (m_pTaskManager)
        m_pTaskManager->stop();
    m_pTaskManager.reset();
    m_pDynamicDataManager.reset();
    m_pInputManager.reset();
    m_pConsole.reset();
    m_pDirectoryManager.reset();
}
