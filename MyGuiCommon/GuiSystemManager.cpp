#include "MyGuiCommon/GuiSystemManager.h"

#include "KestrelCommon/Core/Console.h"
#include "MyGuiCommon/GuiDataManager.h"
#include "MyGuiCommon/GuiLog.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiRenderManager.h"
#include "MyGuiCommon/GuiWidgets.h"

#include <MyGUI_Button.h>
#include <MyGUI_ClipboardManager.h>
#include <MyGUI_EditBox.h>
#include <MyGUI_Exception.h>
#include <MyGUI_FontManager.h>
#include <MyGUI_Gui.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_LanguageManager.h>
#include <MyGUI_MenuControl.h>
#include <MyGUI_PointerManager.h>
#include <MyGUI_ResourceManager.h>
#include <MyGUI_TextIterator.h>
#include <MyGUI_WidgetManager.h>
#include <fstream>
#include <iterator>

namespace
{

constexpr int s_iLastKeyCode = 236;

std::optional<std::string> readFile(const std::string& sRealPath)
{
    std::ifstream in(sRealPath, std::ios::binary);
    if (!in)
        return std::nullopt;
    return std::string{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// The shape of a pointer name that MyGUI's widgets use.
CursorShape shapeOf(std::string_view sPointer)
{
    constexpr std::pair<std::string_view, CursorShape> s_arrShapes[] = {
        {"beam", CursorShape::Text},
        {"size_left", CursorShape::SizeDiagonal},
        {"size_right", CursorShape::SizeAntiDiagonal},
        {"size_horz", CursorShape::SizeHorizontal},
        {"size_vert", CursorShape::SizeVertical},
        {"hand", CursorShape::Hand},
    };
    for (const auto& [sName, eShape] : s_arrShapes)
        if (sName == sPointer)
            return eShape;
    return CursorShape::Arrow;
}

} // namespace

/// One life of MyGUI; the members end in the reverse of their order.
struct GuiSystemManager::Core : MyGUI::IUnlinkWidget
{
    GuiLog log;
    GuiDataManager data;
    GuiRenderManager render;
    MyGUI::Gui gui;
    bool bStarted = false;
    MyGUI::Widget* pWantsFocus = nullptr; ///< cleared when the widget goes
    bool bFocusPending = false;

    Core(const GuiSettings& settings, float fScale)
        : log(settings.sLogFile),
          data(settings.fnResolve, s_pRoot),
          render(*settings.pDevice, data)
    {
        data.setScale(fScale);
    }
    ~Core() override
    {
        if (!bStarted)
            return;
        MyGUI::WidgetManager::getInstance().unregisterUnlinker(this);
        gui.destroyAllChildWidget();
        GuiWidgets::unregisterFactories();
        gui.shutdown();
    }

    void _unlinkWidget(MyGUI::Widget* pWidget) override
    {
        if (pWidget != pWantsFocus)
            return;
        pWantsFocus = nullptr;
        bFocusPending = false;
    }
};

std::unique_ptr<GuiSystemManager> GuiSystemManager::create(GuiSettings settings)
{
    std::unique_ptr<GuiSystemManager> pManager(new GuiSystemManager(std::move(settings)));
    const std::optional<std::string> shader = readFile(pManager->m_settings.fnResolve(s_pShader));
    if (!shader)
    {
        QM_LOG_ERROR("Failed to read '", s_pShader, "'");
        return nullptr;
    }
    pManager->m_sShader = *shader;
    return pManager;
}

GuiSystemManager::GuiSystemManager(GuiSettings settings)
    : m_settings(std::move(settings)),
      m_mapResolutions{{1920, {}}}
{
}

GuiSystemManager::~GuiSystemManager()
{
    stop();
}

GuiResolution GuiSystemManager::chooseResolution() const
{
    if (m_settings.bScaling)
        return chooseGuiResolution(m_mapResolutions, m_settings.iWidth, m_settings.iHeight);
    GuiResolution resolution = chooseGuiResolution(m_mapResolutions, 1920, 1080);
    resolution.iOffsetX = (m_settings.iWidth - resolution.iWidth) / 2;
    resolution.iOffsetY = (m_settings.iHeight - resolution.iHeight) / 2;
    return resolution;
}

bool GuiSystemManager::loadResolutions(const std::string& sKeyedPath)
{
    const std::optional<std::string> json = readFile(m_settings.fnResolve(sKeyedPath));
    if (!json)
        QM_LOG_ERROR("Failed to read '", sKeyedPath, "'");
    else if (auto table = parseGuiResolutions(*json))
        m_mapResolutions = std::move(*table);
    m_resolution = chooseResolution();
    return start();
}

bool GuiSystemManager::start()
{
    GuiMetrics::setScale(m_resolution.fScale);
    m_pCore = std::make_unique<Core>(m_settings, m_resolution.fScale);
    if (!m_pCore->render.initialise(m_sShader))
    {
        QM_LOG_ERROR("Failed to build the shader of the interface");
        m_pCore.reset();
        return false;
    }
    m_pCore->render.setViewSize(m_settings.iWidth, m_settings.iHeight);
    try
    {
        m_pCore->gui.initialise("");
        m_pCore->bStarted = true;
        MyGUI::WidgetManager::getInstance().registerUnlinker(m_pCore.get());
        GuiWidgets::registerFactories();
        MyGUI::ResourceManager::getInstance().load("core.xml");
        MyGUI::FontManager::getInstance().setDefaultFont("QM_Label");
    }
    catch (const MyGUI::Exception& exception)
    {
        QM_LOG_ERROR("Failed to start the interface: ", exception.getFullDescription());
        m_pCore.reset();
        return false;
    }
    MyGUI::PointerManager& pointers = MyGUI::PointerManager::getInstance();
    pointers.setVisible(false);
    pointers.eventChangeMousePointer += MyGUI::newDelegate(this, &GuiSystemManager::onPointer);
    MyGUI::ClipboardManager& clipboard = MyGUI::ClipboardManager::getInstance();
    clipboard.eventClipboardChanged += MyGUI::newDelegate(this, &GuiSystemManager::onClipboardChanged);
    clipboard.eventClipboardRequested += MyGUI::newDelegate(this, &GuiSystemManager::onClipboardRequested);
    if (!m_sLanguage.empty())
        MyGUI::LanguageManager::getInstance().setCurrentLanguage(m_sLanguage);
    return true;
}

void GuiSystemManager::onPointer(const std::string& sPointer)
{
    m_sPointer = sPointer;
}

void GuiSystemManager::onClipboardChanged(const std::string& sType, const std::string& sText)
{
    if (sType == "Text" && m_settings.fnSetClipboardText)
        m_settings.fnSetClipboardText(MyGUI::TextIterator::getOnlyText(sText));
}

void GuiSystemManager::onClipboardRequested(const std::string& sType, std::string& sText)
{
    if (sType == "Text" && m_settings.fnClipboardText)
        sText = MyGUI::TextIterator::toTagsString(m_settings.fnClipboardText());
}

void GuiSystemManager::stop()
{
    m_pCore.reset();
    m_sPointer.clear();
}

void GuiSystemManager::loadLanguage(const std::string& sLanguage)
{
    m_sLanguage = sLanguage;
    if (m_pCore)
        MyGUI::LanguageManager::getInstance().setCurrentLanguage(sLanguage);
}

void GuiSystemManager::addListener(GuiReloadListener* pListener)
{
    m_vecListeners.push_back(pListener);
}

void GuiSystemManager::removeListener(GuiReloadListener* pListener)
{
    std::erase(m_vecListeners, pListener);
}

void GuiSystemManager::resize(int iWidth, int iHeight)
{
    if (iWidth <= 0 || iHeight <= 0)
        return;
    m_settings.iWidth = iWidth;
    m_settings.iHeight = iHeight;
    const GuiResolution resolution = chooseResolution();
    const bool bReload = resolution.fScale != m_resolution.fScale;
    m_resolution = resolution;
    if (!m_pCore)
        return;
    if (!bReload)
    {
        m_pCore->render.setViewSize(iWidth, iHeight);
        for (GuiReloadListener* pListener : m_vecListeners)
            pListener->placeWidgets();
        return;
    }
    for (auto it = m_vecListeners.rbegin(); it != m_vecListeners.rend(); ++it)
        (*it)->destroyWidgets();
    stop();
    if (!start())
        return;
    for (GuiReloadListener* pListener : m_vecListeners)
        pListener->createWidgets();
}

void GuiSystemManager::update()
{
    if (!m_pCore)
        return;
    if (std::exchange(m_pCore->bFocusPending, false))
    {
        MyGUI::Widget* pWidget = std::exchange(m_pCore->pWantsFocus, nullptr);
        MyGUI::InputManager::getInstance().setKeyFocusWidget(pWidget);
    }
    updateCursor();
    if (const bool bEditing = isEditing(); m_textInput != bEditing && m_settings.fnSetTextInput)
    {
        m_textInput = bEditing;
        m_settings.fnSetTextInput(bEditing);
    }
}

void GuiSystemManager::updateCursor()
{
    if (m_settings.fnSetCursor)
        m_settings.fnSetCursor(m_iBusy > 0 ? CursorShape::Wait : shapeOf(m_sPointer));
}

void GuiSystemManager::setBusy(bool bBusy)
{
    m_iBusy = std::max(0, m_iBusy + (bBusy ? 1 : -1));
    updateCursor();
}

void GuiSystemManager::draw(float fDt, rend::TargetHandle target)
{
    if (m_pCore)
        m_pCore->render.drawFrame(fDt, target);
}

void GuiSystemManager::requestKeyFocus(MyGUI::Widget* pWidget)
{
    if (!m_pCore)
        return;
    m_pCore->pWantsFocus = pWidget;
    m_pCore->bFocusPending = true;
}

bool GuiSystemManager::isMouseOverWidget() const
{
    return m_pCore && MyGUI::InputManager::getInstance().isFocusMouse();
}

bool GuiSystemManager::hasKeyFocus() const
{
    return m_pCore && MyGUI::InputManager::getInstance().isFocusKey();
}

bool GuiSystemManager::isEditing() const
{
    if (!m_pCore)
        return false;
    const MyGUI::Widget* pWidget = MyGUI::InputManager::getInstance().getKeyFocusWidget();
    return pWidget && pWidget->isType<MyGUI::EditBox>();
}

/// An open menu goes when it loses the keyboard.
bool GuiSystemManager::closeMenus()
{
    MyGUI::InputManager& input = MyGUI::InputManager::getInstance();
    MyGUI::Widget* pWidget = input.getKeyFocusWidget();
    while (pWidget && !pWidget->isType<MyGUI::MenuControl>())
        pWidget = pWidget->getParent();
    if (pWidget)
        input.resetKeyFocusWidget();
    return pWidget != nullptr;
}

bool GuiSystemManager::mouseMove(int iX, int iY, int iWheelSum)
{
    return m_pCore && MyGUI::InputManager::getInstance().injectMouseMove(iX, iY, iWheelSum);
}

bool GuiSystemManager::mouseDown(int iX, int iY, int iButton)
{
    return m_pCore && MyGUI::InputManager::getInstance().injectMousePress(
                          iX, iY, static_cast<MyGUI::MouseButton::Enum>(iButton));
}

bool GuiSystemManager::mouseUp(int iX, int iY, int iButton)
{
    return m_pCore && MyGUI::InputManager::getInstance().injectMouseRelease(
                          iX, iY, static_cast<MyGUI::MouseButton::Enum>(iButton));
}

bool GuiSystemManager::keyDown(int iScanCode, uint32_t uCodePoint)
{
    if (m_pCore && iScanCode == MyGUI::KeyCode::Escape && closeMenus())
        return true;
    return m_pCore && MyGUI::InputManager::getInstance().injectKeyPress(
                          static_cast<MyGUI::KeyCode::Enum>(iScanCode), uCodePoint);
}

bool GuiSystemManager::keyUp(int iScanCode)
{
    return m_pCore &&
           MyGUI::InputManager::getInstance().injectKeyRelease(static_cast<MyGUI::KeyCode::Enum>(iScanCode));
}

bool GuiSystemManager::text(uint32_t uCodePoint)
{
    if (!m_pCore)
        return false;
    MyGUI::InputManager& input = MyGUI::InputManager::getInstance();
    const bool bTaken = input.injectKeyPress(MyGUI::KeyCode::None, uCodePoint);
    input.injectKeyRelease(MyGUI::KeyCode::None);
    return bTaken;
}

void GuiSystemManager::releaseAll()
{
    if (!m_pCore)
        return;
    MyGUI::InputManager& input = MyGUI::InputManager::getInstance();
    input.resetMouseCaptureWidget();
    input.resetKeyFocusWidget();
    for (int iKey = 1; iKey <= s_iLastKeyCode; ++iKey)
        input.injectKeyRelease(static_cast<MyGUI::KeyCode::Enum>(iKey));
}
