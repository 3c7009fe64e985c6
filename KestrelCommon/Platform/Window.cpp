#include "KestrelCommon/Platform/Window.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Platform/Utf8.h"
#include "KestrelCommon/Platform/VirtualKeys.h"

#include <SDL.h>
#include <cctype>
#include <cstdlib>

namespace
{

/// Keeps the video part of the library up while a window lives.
class VideoScope
{
public:
    VideoScope() : m_bUp(SDL_InitSubSystem(SDL_INIT_VIDEO) == 0) {}
    ~VideoScope()
    {
        if (m_bUp)
            SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }
    VideoScope(const VideoScope&) = delete;
    VideoScope& operator=(const VideoScope&) = delete;
    [[nodiscard]] bool isUp() const { return m_bUp; }

private:
    bool m_bUp;
};

/// SDL falls back on drivers that show nothing.
bool isVisibleDriver()
{
    const char* pDriver = SDL_GetCurrentVideoDriver();
    const std::string_view sDriver = pDriver ? pDriver : "";
    return !sDriver.empty() && sDriver != "offscreen" && sDriver != "dummy" && sDriver != "evdev";
}

constexpr SDL_SystemCursor s_arrCursors[] = {
    SDL_SYSTEM_CURSOR_ARROW,   SDL_SYSTEM_CURSOR_IBEAM,    SDL_SYSTEM_CURSOR_SIZEWE,
    SDL_SYSTEM_CURSOR_SIZENS,  SDL_SYSTEM_CURSOR_SIZENWSE, SDL_SYSTEM_CURSOR_SIZENESW,
    SDL_SYSTEM_CURSOR_SIZEALL, SDL_SYSTEM_CURSOR_HAND,     SDL_SYSTEM_CURSOR_WAIT,
};
static_assert(std::size(s_arrCursors) == static_cast<size_t>(CursorShape::Count));

struct CursorDeleter
{
    void operator()(SDL_Cursor* pCursor) const { SDL_FreeCursor(pCursor); }
};

uint32_t currentMods()
{
    const SDL_Keymod eMods = SDL_GetModState();
    return ((eMods & KMOD_SHIFT) ? ModShift : 0u) | ((eMods & KMOD_CTRL) ? ModControl : 0u) |
           ((eMods & KMOD_ALT) ? ModAlt : 0u);
}

/// 0 left, 1 right, 2 middle, then the side buttons; -1 for others.
int buttonNumber(uint8_t uButton)
{
    switch (uButton)
    {
    case SDL_BUTTON_LEFT:
        return 0;
    case SDL_BUTTON_RIGHT:
        return 1;
    case SDL_BUTTON_MIDDLE:
        return 2;
    case SDL_BUTTON_X1:
        return 3;
    case SDL_BUTTON_X2:
        return 4;
    default:
        return -1;
    }
}

} // namespace

struct Window::Impl
{
    VideoScope video;
    SDL_Window* pWindow = nullptr;
    SDL_GLContext pContext = nullptr;
    int iVersion = 0;
    int iMouseX = 0;
    int iMouseY = 0;
    int iAnchorX = 0; ///< where relative mode holds the cursor, window coordinates
    int iAnchorY = 0;
    float fWheelRest = 0.0f; ///< part of a wheel step that was too small to report
    CursorShape eShape = CursorShape::Count;
    std::array<std::unique_ptr<SDL_Cursor, CursorDeleter>, static_cast<size_t>(CursorShape::Count)>
        arrCursors;

    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl()
    {
        for (auto& pCursor : arrCursors)
            pCursor.reset();
        if (pContext)
            SDL_GL_DeleteContext(pContext);
        if (pWindow)
            SDL_DestroyWindow(pWindow);
    }

    bool open(const WindowSettings& settings, int iMinor);
    void translate(const SDL_Event& event, std::vector<PlatformEvent>& vecEvents);
    void translateWindow(const SDL_WindowEvent& event, std::vector<PlatformEvent>& vecEvents);
    void translateMotion(const SDL_MouseMotionEvent& event, PlatformEvent& out);
    bool translateWheel(const SDL_MouseWheelEvent& event, PlatformEvent& out);
    void placeMouse(int iX, int iY);
};

/// Tries one context version, with the window that it needs.
bool Window::Impl::open(const WindowSettings& settings, int iMinor)
{
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 4);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, iMinor);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_RED_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_GREEN_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_BLUE_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 0);

    const bool bWholeScreen = settings.iWidth <= 0 || settings.iHeight <= 0;
    int iWidth = settings.iWidth;
    int iHeight = settings.iHeight;
    uint32_t uFlags = SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI;
    if (bWholeScreen)
    {
        SDL_Rect bounds{0, 0, 1280, 720};
        SDL_GetDisplayUsableBounds(0, &bounds);
        iWidth = bounds.w;
        iHeight = bounds.h;
        uFlags |= SDL_WINDOW_MAXIMIZED;
    }
    pWindow = SDL_CreateWindow(settings.sTitle.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                               iWidth, iHeight, uFlags);
    if (!pWindow)
        return false;
    pContext = SDL_GL_CreateContext(pWindow);
    if (!pContext)
    {
        SDL_DestroyWindow(pWindow);
        pWindow = nullptr;
        return false;
    }
    iVersion = 40 + iMinor;
    return true;
}

void Window::Impl::placeMouse(int iX, int iY)
{
    int iWindowWidth = 0;
    int iWindowHeight = 0;
    int iWidth = 0;
    int iHeight = 0;
    SDL_GetWindowSize(pWindow, &iWindowWidth, &iWindowHeight);
    SDL_GL_GetDrawableSize(pWindow, &iWidth, &iHeight);
    iMouseX = iWindowWidth > 0 ? static_cast<int>(int64_t{iX} * iWidth / iWindowWidth) : iX;
    iMouseY = iWindowHeight > 0 ? static_cast<int>(int64_t{iY} * iHeight / iWindowHeight) : iY;
}

void Window::Impl::translateWindow(const SDL_WindowEvent& event, std::vector<PlatformEvent>& vecEvents)
{
    PlatformEvent out;
    switch (event.event)
    {
    case SDL_WINDOWEVENT_SIZE_CHANGED:
        out.eType = PlatformEventType::Resize;
        SDL_GL_GetDrawableSize(pWindow, &out.iX, &out.iY);
        if (out.iX <= 0 || out.iY <= 0)
            return;
        break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
        out.eType = PlatformEventType::FocusGained;
        break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
        out.eType = PlatformEventType::FocusLost;
        break;
    case SDL_WINDOWEVENT_CLOSE:
        out.eType = PlatformEventType::Close;
        break;
    default:
        return;
    }
    vecEvents.push_back(out);
}

void Window::Impl::translateMotion(const SDL_MouseMotionEvent& event, PlatformEvent& out)
{
    if (!SDL_GetRelativeMouseMode())
        placeMouse(event.x, event.y);
    out.eType = PlatformEventType::MouseMove;
    out.iDeltaX = event.xrel;
    out.iDeltaY = event.yrel;
}

bool Window::Impl::translateWheel(const SDL_MouseWheelEvent& event, PlatformEvent& out)
{
    fWheelRest += event.preciseY * 120.0f;
    out.eType = PlatformEventType::MouseWheel;
    out.iWheel = static_cast<int>(fWheelRest);
    fWheelRest -= static_cast<float>(out.iWheel);
    return out.iWheel != 0;
}

void Window::Impl::translate(const SDL_Event& event, std::vector<PlatformEvent>& vecEvents)
{
    PlatformEvent out;
    out.uMods = currentMods();
    switch (event.type)
    {
    case SDL_QUIT:
        out.eType = PlatformEventType::Close;
        break;
    case SDL_WINDOWEVENT:
        translateWindow(event.window, vecEvents);
        return;
    case SDL_MOUSEMOTION:
        translateMotion(event.motion, out);
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        if (!SDL_GetRelativeMouseMode())
            placeMouse(event.button.x, event.button.y);
        out.eType = PlatformEventType::MouseButton;
        out.iButton = buttonNumber(event.button.button);
        out.bDown = event.type == SDL_MOUSEBUTTONDOWN;
        if (out.iButton < 0)
            return;
        break;
    case SDL_MOUSEWHEEL:
        if (!translateWheel(event.wheel, out))
            return;
        break;
    case SDL_KEYDOWN:
    case SDL_KEYUP:
    {
        const KeyCodes codes = keyCodes(event.key.keysym.scancode);
        out.eType = PlatformEventType::Key;
        out.bDown = event.type == SDL_KEYDOWN;
        out.bRepeat = event.key.repeat != 0;
        out.uVirtualKey = codes.uVirtualKey;
        out.iScanCode = codes.iScanCode;
        break;
    }
    case SDL_TEXTINPUT:
        out.eType = PlatformEventType::Text;
        for (const uint32_t uPoint : codePoints(event.text.text))
        {
            out.uCodePoint = uPoint;
            vecEvents.push_back(out);
        }
        return;
    default:
        return;
    }
    out.iX = iMouseX;
    out.iY = iMouseY;
    vecEvents.push_back(out);
}

Window::Window(std::unique_ptr<Impl> pImpl) : m_pImpl(std::move(pImpl)) {}
Window::~Window() = default;

bool Window::hasDisplay()
{
    // Asked first: without either, the libraries below complain on standard error.
    const auto isSet = [](const char* pVariable)
    {
        const char* pValue = std::getenv(pVariable);
        return pValue && *pValue;
    };
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("SDL_VIDEODRIVER"))
        return false;
    // The connection stays for the window to come: a display server may begin anew when its last
    // client goes, and refuse others meanwhile.
    static const VideoScope s_video;
    return s_video.isUp() && isVisibleDriver() && SDL_GetNumVideoDisplays() > 0;
}

std::unique_ptr<Window> Window::create(const WindowSettings& settings)
{
    auto pImpl = std::make_unique<Impl>();
    if (!pImpl->video.isUp() || !isVisibleDriver())
    {
        QM_LOG_ERROR("No display to open a window on: ", SDL_GetError());
        return nullptr;
    }
    // A click that gives the window the focus is a click like any other.
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    int iMinor = 5;
    while (iMinor >= 3 && !pImpl->open(settings, iMinor))
        --iMinor;
    if (!pImpl->pWindow)
    {
        QM_LOG_ERROR("No window with an OpenGL 4.3 core context: ", SDL_GetError());
        return nullptr;
    }
    SDL_SetWindowMinimumSize(pImpl->pWindow, settings.iMinimumWidth, settings.iMinimumHeight);
    SDL_GL_SetSwapInterval(settings.bVerticalSync ? 1 : 0);
    SDL_StartTextInput();
    return std::unique_ptr<Window>(new Window(std::move(pImpl)));
}

void Window::pump(std::vector<PlatformEvent>& vecEvents)
{
    SDL_Event event;
    while (SDL_PollEvent(&event))
        m_pImpl->translate(event, vecEvents);
}

void Window::waitEvents(int iMilliseconds)
{
    SDL_WaitEventTimeout(nullptr, std::max(iMilliseconds, 0));
}

int Window::width() const
{
    int iWidth = 0;
    SDL_GL_GetDrawableSize(m_pImpl->pWindow, &iWidth, nullptr);
    return iWidth;
}

int Window::height() const
{
    int iHeight = 0;
    SDL_GL_GetDrawableSize(m_pImpl->pWindow, nullptr, &iHeight);
    return iHeight;
}

bool Window::hasFocus() const
{
    return (SDL_GetWindowFlags(m_pImpl->pWindow) & SDL_WINDOW_INPUT_FOCUS) != 0;
}

void Window::setTitle(const std::string& sTitle)
{
    SDL_SetWindowTitle(m_pImpl->pWindow, sTitle.c_str());
}

void Window::setCursor(CursorShape eShape)
{
    if (eShape == m_pImpl->eShape || eShape >= CursorShape::Count)
        return;
    const auto uIndex = static_cast<size_t>(eShape);
    auto& pCursor = m_pImpl->arrCursors[uIndex];
    if (!pCursor)
        pCursor.reset(SDL_CreateSystemCursor(s_arrCursors[uIndex]));
    if (!pCursor)
        return;
    SDL_SetCursor(pCursor.get());
    m_pImpl->eShape = eShape;
}

void Window::showCursor(bool bShown)
{
    SDL_ShowCursor(bShown ? SDL_ENABLE : SDL_DISABLE);
}

void Window::setRelativeMouse(bool bOn)
{
    if (bOn == isRelativeMouse())
        return;
    if (bOn)
        SDL_GetMouseState(&m_pImpl->iAnchorX, &m_pImpl->iAnchorY);
    SDL_SetRelativeMouseMode(bOn ? SDL_TRUE : SDL_FALSE);
    // Some drivers let the hidden cursor wander.
    if (!bOn)
        SDL_WarpMouseInWindow(m_pImpl->pWindow, m_pImpl->iAnchorX, m_pImpl->iAnchorY);
}

bool Window::isRelativeMouse() const
{
    return SDL_GetRelativeMouseMode() == SDL_TRUE;
}

void Window::setTextInput(bool bOn)
{
    if (bOn)
        SDL_StartTextInput();
    else
        SDL_StopTextInput();
}

std::string Window::clipboardText()
{
    char* pText = SDL_GetClipboardText();
    std::string sText = pText ? pText : "";
    SDL_free(pText);
    return sText;
}

void Window::setClipboardText(const std::string& sText)
{
    SDL_SetClipboardText(sText.c_str());
}

bool Window::openOutside(const std::string& sPath)
{
    // What has a meaning of its own in a URL is written as a number.
    std::string sUrl = "file://";
    for (const char c : sPath)
        if (std::string_view("/-_.~").find(c) != std::string_view::npos ||
            std::isalnum(static_cast<unsigned char>(c)))
            sUrl += c;
        else
        {
            constexpr std::string_view s_sDigits = "0123456789ABCDEF";
            sUrl += '%';
            sUrl += s_sDigits[static_cast<unsigned char>(c) >> 4];
            sUrl += s_sDigits[static_cast<unsigned char>(c) & 15];
        }
    if (SDL_OpenURL(sUrl.c_str()) == 0)
        return true;
    QM_LOG_ERROR("Failed to open '", sPath, "': ", SDL_GetError());
    return false;
}

bool Window::makeCurrent()
{
    if (SDL_GL_MakeCurrent(m_pImpl->pWindow, m_pImpl->pContext) == 0)
        return true;
    QM_LOG_ERROR("Failed to make the OpenGL context current: ", SDL_GetError());
    return false;
}

void Window::swap()
{
    SDL_GL_SwapWindow(m_pImpl->pWindow);
}

int Window::contextVersion() const
{
    return m_pImpl->iVersion;
}

void Window::showMessageBox(const std::string& sTitle, const std::string& sText)
{
    if (SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_ERROR, sTitle.c_str(), sText.c_str(), nullptr) != 0)
        QM_LOG_ERROR(sTitle, ": ", sText);
}
