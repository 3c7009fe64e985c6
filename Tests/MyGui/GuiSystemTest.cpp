#include "Tests/MyGui/GuiFixture.h"

namespace
{

using CallKind = rend::RecordingDevice::CallKind;

TEST_F(GuiFixture, startsDrawsAndEndsTwiceWithoutAWordInTheLog)
{
    MyGUI::Gui::getInstance().createWidgetT("Button", "QM_Button", MyGUI::IntCoord(10, 10, 96, 28),
                                            MyGUI::Align::Default, "Main");
    settle(2);
    EXPECT_GT(m_device.count(CallKind::Draw), 0u);
    m_pGui.reset();
    startGui();
    settle(2);
}

} // namespace
