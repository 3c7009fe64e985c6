#include "TileEditorCommon/Interface/TileCreateWindow.h"

#include "KestrelCommon/Core/Text.h"
#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiTips.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"

#include <MyGUI_InputManager.h>
#include <MyGUI_Window.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iMetresPerCell = 64;

} // namespace

TileCreateWindow::TileCreateWindow(MyGUI::Window* pWindow, EditorActionsI& actions, GuiTips& tips,
                                   std::function<void()> fnClose)
    : m_pWindow(pWindow),
      m_actions(actions),
      m_fnClose(std::move(fnClose))
{
    for (size_t i = 0; i < s_arrTileSizes.size(); ++i)
    {
        const TileSizeChoice& choice = s_arrTileSizes[i];
        auto* pButton = pWindow->createWidget<EditorButton>(
            "EditorButton", MyGUI::IntCoord(px(20), px(20 + 50 * static_cast<int>(i)), px(160), px(40)),
            MyGUI::Align::Default);
        pButton->setCaption(choice.pLabel);
        pButton->eventMouseButtonClick += MyGUI::newDelegate(this, &TileCreateWindow::onSize);
        pButton->eventKeyButtonPressed += MyGUI::newDelegate(this, &TileCreateWindow::onKey);
        tips.set(pButton, UTILS::concat(choice.iCells, " x ", choice.iCells, " cells, ",
                                        choice.iCells * s_iMetresPerCell, " m on a side"));
        m_arrButtons[i] = pButton;
    }
    pWindow->setSize(pWindow->getWidth(), px((static_cast<int>(s_arrTileSizes.size()) + 3) * 40));
    pWindow->eventWindowButtonPressed += MyGUI::newDelegate(this, &TileCreateWindow::onWindowButton);
}

void TileCreateWindow::show()
{
    m_pWindow->setVisible(true);
    MyGUI::InputManager::getInstance().setKeyFocusWidget(m_arrButtons.front());
}

void TileCreateWindow::onSize(MyGUI::Widget* pSender)
{
    const auto it = std::find(m_arrButtons.begin(), m_arrButtons.end(), pSender);
    m_fnClose();
    m_actions.requestNewTile(s_arrTileSizes[static_cast<size_t>(it - m_arrButtons.begin())].iCells);
}

void TileCreateWindow::onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char)
{
    const auto uAt = static_cast<size_t>(std::find(m_arrButtons.begin(), m_arrButtons.end(), pSender) -
                                         m_arrButtons.begin());
    const size_t uCount = m_arrButtons.size();
    if (key == MyGUI::KeyCode::Escape)
        m_fnClose();
    else if (key == MyGUI::KeyCode::ArrowDown || key == MyGUI::KeyCode::Tab)
        MyGUI::InputManager::getInstance().setKeyFocusWidget(m_arrButtons[(uAt + 1) % uCount]);
    else if (key == MyGUI::KeyCode::ArrowUp)
        MyGUI::InputManager::getInstance().setKeyFocusWidget(m_arrButtons[(uAt + uCount - 1) % uCount]);
}

void TileCreateWindow::onWindowButton(MyGUI::Window*, const std::string&)
{
    m_fnClose();
}

} // namespace tilebuilder
