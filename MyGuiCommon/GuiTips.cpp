#include "MyGuiCommon/GuiTips.h"

#include "MyGuiCommon/GuiMetrics.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_Gui.h>
#include <MyGUI_RenderManager.h>
#include <MyGUI_ToolTipManager.h>
#include <MyGUI_WidgetToolTip.h>

namespace
{

constexpr const char* s_pKey = "Tip";
constexpr int s_iPadding = 8;
constexpr int s_iBelowMouse = 20;

} // namespace

struct GuiTips::Impl
{
    MyGUI::Widget* pBox = nullptr;
    MyGUI::TextBox* pText = nullptr;

    void onTip(MyGUI::Widget* pSender, const MyGUI::ToolTipInfo& info);
    void place(const MyGUI::IntPoint& point);
};

void GuiTips::Impl::place(const MyGUI::IntPoint& point)
{
    const MyGUI::IntSize& view = MyGUI::RenderManager::getInstance().getViewSize();
    const int iX = std::min(point.left, view.width - pBox->getWidth() - GuiMetrics::px(4));
    int iY = point.top + GuiMetrics::px(s_iBelowMouse);
    if (iY + pBox->getHeight() > view.height)
        iY = point.top - pBox->getHeight() - GuiMetrics::px(4);
    pBox->setPosition(std::max(iX, 0), std::max(iY, 0));
}

void GuiTips::Impl::onTip(MyGUI::Widget* pSender, const MyGUI::ToolTipInfo& info)
{
    if (info.type == MyGUI::ToolTipInfo::Hide)
        pBox->setVisible(false);
    else if (info.type == MyGUI::ToolTipInfo::Move)
        place(info.point);
    else
    {
        pText->setCaptionWithReplacing(pSender->getUserString(s_pKey));
        const MyGUI::IntSize size = pText->getTextSize();
        const int iPadding = GuiMetrics::px(s_iPadding);
        pBox->setSize(size.width + 2 * iPadding, size.height + iPadding);
        pText->setCoord(iPadding, iPadding / 2, size.width, size.height);
        pBox->setVisible(true);
        place(info.point);
    }
}

GuiTips::GuiTips() : m_pImpl(std::make_unique<Impl>())
{
    m_pImpl->pBox = MyGUI::Gui::getInstance().createWidgetT(
        "Widget", "QM_Tip", MyGUI::IntCoord(0, 0, 100, 24), MyGUI::Align::Default, "ToolTip", "Tip");
    m_pImpl->pText = m_pImpl->pBox->createWidget<MyGUI::TextBox>("QM_Text", MyGUI::IntCoord(0, 0, 100, 24),
                                                                 MyGUI::Align::Default);
    m_pImpl->pBox->setVisible(false);
    MyGUI::ToolTipManager::getInstance().setDelayVisible(0.45f);
}

GuiTips::~GuiTips()
{
    MyGUI::Gui::getInstance().destroyWidget(m_pImpl->pBox);
}

void GuiTips::set(MyGUI::Widget* pWidget, const std::string& sText)
{
    const bool bHad = pWidget->isUserString(s_pKey);
    if (!bHad && !sText.empty())
        pWidget->eventToolTip += MyGUI::newDelegate(m_pImpl.get(), &Impl::onTip);
    pWidget->setUserString(s_pKey, sText);
    pWidget->setNeedToolTip(!sText.empty());
}

void GuiTips::hide()
{
    m_pImpl->pBox->setVisible(false);
}
