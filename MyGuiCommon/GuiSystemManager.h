#pragma once // The life of MyGUI: start, size classes, input, frames and end.

#include "KestrelCommon/Core/GuiSinkI.h"
#include "KestrelCommon/Device/DeviceTypes.h"
#include "KestrelCommon/Platform/Window.h"
#include "MyGuiCommon/GuiResolution.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace MyGUI
{
class Widget;
}
namespace rend
{
class GraphicsDeviceI;
}

/// What the GUI system needs of its surroundings. All calls come on the main thread.
struct GuiSettings
{
    rend::GraphicsDeviceI* pDevice = nullptr;                 ///< borrowed
    std::function<std::string(const std::string&)> fnResolve; ///< keyed path to real path
    std::string sLogFile;                                     ///< MyGUI's own log, real path; empty: none
    int iWidth = 1920;                                        ///< client pixels
    int iHeight = 1080;
    bool bScaling = true; ///< off: the size class of 1920 x 1080, whatever the client size

    // The platform; may be empty
    std::function<void(CursorShape)> fnSetCursor;
    std::function<void(bool)> fnSetTextInput; ///< typing begins or ends: input methods on or off
    std::function<std::string()> fnClipboardText;
    std::function<void(const std::string&)> fnSetClipboardText;
};

/// Who holds widgets. When the size class changes, all widgets go and come back: first every
/// listener lets go of its widgets, the last one first, then MyGUI starts anew with other metrics,
/// then every listener makes its widgets again, the first one first.
class GuiReloadListener
{
public:
    virtual ~GuiReloadListener() = default;
    virtual void destroyWidgets() = 0;
    virtual void createWidgets() = 0;
    /// The client size changed and the widgets stay.
    virtual void placeWidgets() = 0;
};

/// Owns MyGUI. Widgets, skins and fonts are there from loadResolutions() on.
///
/// Errors:   MyGUI's warnings and errors go to the program's log as well.
/// Threads:  main thread only.
class GuiSystemManager : public GuiSinkI
{
public:
    static constexpr const char* s_pRoot = "$GAME_DATA/Gui";
    static constexpr const char* s_pShader = "$GAME_DATA/Shaders/glsl/gui.glsl";

    /// Null with one error line when the shader is missing or doesn't compile.
    static std::unique_ptr<GuiSystemManager> create(GuiSettings settings);
    ~GuiSystemManager() override;
    GuiSystemManager(const GuiSystemManager&) = delete;
    GuiSystemManager& operator=(const GuiSystemManager&) = delete;

    /// Reads the table of size classes, chooses one and starts MyGUI with it. A table that can't be
    /// read leaves one class of 1920 with scale 1. False when MyGUI doesn't start.
    [[nodiscard]] bool loadResolutions(const std::string& sKeyedPath);
    /// The language table under "Language/"; a missing one is a warning of MyGUI.
    void loadLanguage(const std::string& sLanguage);

    /// The listener is borrowed. Its widgets are not made by this call.
    void addListener(GuiReloadListener* pListener);
    void removeListener(GuiReloadListener* pListener);

    /// A new client size; sizes of 0 are ignored. Starts MyGUI anew when the size class changes.
    void resize(int iWidth, int iHeight);
    [[nodiscard]] const GuiResolution& resolution() const { return m_resolution; }
    [[nodiscard]] int width() const { return m_settings.iWidth; }
    [[nodiscard]] int height() const { return m_settings.iHeight; }

    // Frame

    /// Applies the pending request for the key focus, if any, and the cursor's shape.
    void update();
    /// Moves animations on by dt seconds and draws over what the target holds; null: the window's.
    void draw(float fDt, rend::TargetHandle target = {});

    /// From true to false the pointer says that the program is busy; calls nest.
    void setBusy(bool bBusy);

    // Focus

    /// Gives the keyboard to the widget at the next update(); null takes it away. A request for a
    /// widget that is gone by then is dropped.
    void requestKeyFocus(MyGUI::Widget* pWidget);
    [[nodiscard]] bool isMouseOverWidget() const;
    [[nodiscard]] bool hasKeyFocus() const;
    /// The keyboard is with an edit box.
    [[nodiscard]] bool isEditing() const;

    // GuiSinkI

    bool mouseMove(int iX, int iY, int iWheelSum) override;
    bool mouseDown(int iX, int iY, int iButton) override;
    bool mouseUp(int iX, int iY, int iButton) override;
    bool keyDown(int iScanCode, uint32_t uCodePoint) override;
    bool keyUp(int iScanCode) override;
    bool text(uint32_t uCodePoint) override;
    void releaseAll() override;

private:
    struct Core;

    explicit GuiSystemManager(GuiSettings settings);
    bool start();
    void stop();
    void updateCursor();
    bool closeMenus();
    void onPointer(const std::string& sPointer);
    void onClipboardChanged(const std::string& sType, const std::string& sText);
    void onClipboardRequested(const std::string& sType, std::string& sText);
    [[nodiscard]] GuiResolution chooseResolution() const;

    GuiSettings m_settings;
    GuiResolutionTable m_mapResolutions;
    GuiResolution m_resolution;
    std::string m_sLanguage;
    std::string m_sShader;
    std::unique_ptr<Core> m_pCore;
    std::vector<GuiReloadListener*> m_vecListeners;
    std::optional<bool> m_textInput; ///< what the platform was told last
    int m_iBusy = 0;                 ///< how much work goes on
    std::string m_sPointer;          ///< shape that the widget under the mouse asks for
};
