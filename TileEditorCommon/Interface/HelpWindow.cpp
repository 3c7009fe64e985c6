#include "TileEditorCommon/Interface/HelpWindow.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/TileEditorHyperTextBox.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_Button.h>
#include <MyGUI_DataManager.h>
#include <MyGUI_DataStreamHolder.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ScrollView.h>
#include <MyGUI_Window.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iTabHeight = 28;

/// The page's text; empty, with an error line, when it can't be read.
std::string readPage(const HelpPage& page)
{
    const std::string sPath = std::string(s_pHelpFolder) + page.pFile;
    MyGUI::DataStreamHolder data(MyGUI::DataManager::getInstance().getData(sPath));
    if (!data.getData())
    {
        QM_LOG_ERROR("Failed to read '", sPath, "'");
        return {};
    }
    std::string sText(data.getData()->size(), '\0');
    data.getData()->read(sText.data(), sText.size());
    return sText;
}

} // namespace

HelpWindow::HelpWindow(MyGUI::Window* pWindow, std::function<void()> fnClose)
    : m_pWindow(pWindow),
      m_fnClose(std::move(fnClose)),
      m_pPage(findIn<MyGUI::ScrollView>(pWindow, "HelpPage"))
{
    pWindow->eventWindowButtonPressed += MyGUI::newDelegate(this, &HelpWindow::onWindowButton);
    auto* pTabs = findIn<MyGUI::Widget>(pWindow, "HelpTabs");
    if (!pTabs)
        return;
    for (const HelpPage& page : s_arrHelpPages)
    {
        const int iTop = static_cast<int>(m_vecTabs.size()) * px(s_iTabHeight + 2);
        auto* pTab = pTabs->createWidget<MyGUI::Button>(
            "QM_ListLine", MyGUI::IntCoord(0, iTop, pTabs->getWidth(), px(s_iTabHeight)),
            MyGUI::Align::Default, std::string("Help ") + page.pTab);
        pTab->setCaption(page.pTab);
        pTab->eventMouseButtonClick += MyGUI::newDelegate(this, &HelpWindow::onTab);
        pTab->eventKeyButtonPressed += MyGUI::newDelegate(this, &HelpWindow::onKey);
        m_vecTabs.push_back(pTab);
    }
}

void HelpWindow::show()
{
    m_pWindow->setVisible(true);
    select(m_uSelected);
}

void HelpWindow::select(size_t uPage)
{
    if (uPage >= m_vecTabs.size())
        return;
    m_uSelected = uPage;
    for (size_t i = 0; i < m_vecTabs.size(); ++i)
        m_vecTabs[i]->setStateSelected(i == uPage);
    MyGUI::InputManager::getInstance().setKeyFocusWidget(m_vecTabs[uPage]);
    if (m_pPage)
        TileEditorHyperTextBox::show(*m_pPage, readPage(s_arrHelpPages[uPage]));
}

void HelpWindow::onTab(MyGUI::Widget* pSender)
{
    select(static_cast<size_t>(std::find(m_vecTabs.begin(), m_vecTabs.end(), pSender) - m_vecTabs.begin()));
}

void HelpWindow::onKey(MyGUI::Widget*, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Escape)
        m_fnClose();
    else if (key == MyGUI::KeyCode::ArrowDown || key == MyGUI::KeyCode::Tab)
        select((m_uSelected + 1) % m_vecTabs.size());
    else if (key == MyGUI::KeyCode::ArrowUp)
        select((m_uSelected + m_vecTabs.size() - 1) % m_vecTabs.size());
}

void HelpWindow::onWindowButton(MyGUI::Window*, const std::string&)
{
    m_fnClose();
}

} // namespace tilebuilder
