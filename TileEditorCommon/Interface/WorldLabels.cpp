#include "TileEditorCommon/Interface/WorldLabels.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/MenuEntry.h"

#include <MyGUI_Gui.h>
#include <MyGUI_TextBox.h>
#include <cmath>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iPadding = 6;
constexpr int s_iHeight = 22;
constexpr float s_fFarOff = 100000.0f; ///< pixels; farther is nowhere near the view

} // namespace

WorldLabels::~WorldLabels()
{
    for (MyGUI::TextBox* pBox : m_vecBoxes)
        MyGUI::Gui::getInstance().destroyWidget(pBox);
}

void WorldLabels::show(std::span<const WorldLabel> spanLabels)
{
    while (m_vecBoxes.size() < spanLabels.size())
        m_vecBoxes.push_back(MyGUI::Gui::getInstance().createWidget<MyGUI::TextBox>(
            "QM_WorldLabel", MyGUI::IntCoord(0, 0, px(s_iHeight), px(s_iHeight)), MyGUI::Align::Default,
            "Overlay"));
    for (size_t i = 0; i < m_vecBoxes.size(); ++i)
    {
        MyGUI::TextBox& box = *m_vecBoxes[i];
        const bool bShown = i < spanLabels.size() && std::abs(spanLabels[i].pixel[0]) < s_fFarOff &&
                            std::abs(spanLabels[i].pixel[1]) < s_fFarOff;
        box.setVisible(bShown);
        if (!bShown)
            continue;
        const WorldLabel& label = spanLabels[i];
        if (const MyGUI::UString sText(escapeCaption(label.sText)); box.getCaption() != sText)
            box.setCaption(sText);
        const int iWidth = box.getTextSize().width + px(2 * s_iPadding);
        box.setCoord(static_cast<int>(std::lround(label.pixel[0])) - iWidth / 2,
                     static_cast<int>(std::lround(label.pixel[1])) - px(s_iHeight) / 2, iWidth,
                     px(s_iHeight));
    }
}

} // namespace tilebuilder
