#pragma once // The one window: size, focus, events, cursor, clipboard and its OpenGL context.

#include "KestrelCommon/Platform/PlatformEvent.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct WindowSettings
{
    std::string sTitle = "Tile Editor";
    int iMinimumWidth = 320;
    int iMinimumHeight = 240;
    int iWidth = 0; ///< 0: the size of the primary screen, shown maximised
    int iHeight = 0;
    bool bVerticalSync = false;
};

enum class CursorShape : uint8_t
{
    Arrow,
    Text,
    SizeHorizontal,
    SizeVertical,
    SizeDiagonal,     ///< from the upper left to the lower right
    SizeAntiDiagonal, ///< from the upper right to the lower left
    SizeAll,
    Hand,
    Wait,
    Count
};

/// A resizable window with an OpenGL core context, 4.5 or the highest from there down to 4.3.
///
/// Units:   client pixels, the origin in the top left corner.
/// Threads: main thread only. One at a time.
class Window
{
public:
    /// Null with one error line when there is no display or no context.
    static std::unique_ptr<Window> create(const WindowSettings& settings);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Whether a display is there to open a window on.
    [[nodiscard]] static bool hasDisplay();

    // Events

    /// Appends all waiting events. Sizes of 0 are not reported.
    void pump(std::vector<PlatformEvent>& vecEvents);
    /// Sleeps until an event waits, at most that long.
    void waitEvents(int iMilliseconds);

    // State

    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;
    /// The window is the active one.
    [[nodiscard]] bool hasFocus() const;
    void setTitle(const std::string& sTitle);

    // Cursor

    void setCursor(CursorShape eShape);
    void showCursor(bool bShown);
    /// Holds the cursor where it is, hidden, and reports raw movement only.
    void setRelativeMouse(bool bOn);
    [[nodiscard]] bool isRelativeMouse() const;

    /// Whether key presses also come as text, through the system's input method. On at first.
    static void setTextInput(bool bOn);

    // Clipboard, UTF-8

    [[nodiscard]] static std::string clipboardText();
    static void setClipboardText(const std::string& sText);

    /// Hands a file or folder to the desktop's own program for it; absolute path. False with a line when
    /// there is none.
    static bool openOutside(const std::string& sPath);

    // OpenGL

    /// False with one error line when the context can't be bound.
    [[nodiscard]] bool makeCurrent();
    void swap();
    /// Major * 10 + minor, such as 45.
    [[nodiscard]] int contextVersion() const;

    /// A box of the system's own, for what goes wrong before there is an interface.
    static void showMessageBox(const std::string& sTitle, const std::string& sText);

private:
    struct Impl;
    explicit Window(std::unique_ptr<Impl> pImpl);

    std::unique_ptr<Impl> m_pImpl;
};
