#include "MyGuiCommon/GuiMetrics.h"
#include "Tests/MyGui/GuiFixture.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_InputManager.h>

namespace
{

using CallKind = rend::RecordingDevice::CallKind;

/// Makes and drops a button as a window would.
struct Listener : GuiReloadListener
{
    MyGUI::Widget* pButton = nullptr;
    int iPlaced = 0;

    void destroyWidgets() override
    {
        MyGUI::Gui::getInstance().destroyWidget(pButton);
        pButton = nullptr;
    }
    void createWidgets() override
    {
        pButton = MyGUI::Gui::getInstance().createWidgetT(
            "Button", "QM_Button", MyGUI::IntCoord(10, 10, 96, 28), MyGUI::Align::Default, "Main");
    }
    void placeWidgets() override { ++iPlaced; }
};

struct GuiSystemTest : GuiFixture
{
};

TEST_F(GuiSystemTest, startsDrawsAndEndsTwiceWithoutAWordInTheLog)
{
    Listener listener;
    listener.createWidgets();
    settle(2);
    EXPECT_GT(m_device.count(CallKind::Draw), 0u);
    m_pGui.reset();
    startGui();
    settle(2);
}

// A widget that outlived its MyGUI, or metrics of the old class, would show here.
TEST_F(GuiSystemTest, newSizeClassRemakesWidgetsAtItsScaleAndOthersOnlyPlaceThem)
{
    Listener listener;
    listener.createWidgets();
    m_pGui->addListener(&listener);
    m_pGui->resize(1600, 900);
    EXPECT_EQ(listener.iPlaced, 1);
    EXPECT_EQ(GuiMetrics::px(24), 24);

    m_pGui->resize(3840, 2160);
    EXPECT_EQ(listener.iPlaced, 1);
    EXPECT_TRUE(listener.pButton);
    EXPECT_EQ(GuiMetrics::px(24), 48);
    settle(2);

    m_pGui->resize(0, 500); // minimised
    EXPECT_EQ(m_pGui->width(), 3840);
    m_pGui->resize(1280, 720);
    EXPECT_EQ(GuiMetrics::px(24), 24);
}

TEST_F(GuiSystemTest, inputIsTakenOverWidgetsAndLeftElsewhere)
{
    Listener listener;
    listener.createWidgets();
    EXPECT_TRUE(m_pGui->mouseMove(20, 20, 0));
    EXPECT_TRUE(m_pGui->isMouseOverWidget());
    EXPECT_TRUE(m_pGui->mouseDown(20, 20, 0));
    EXPECT_TRUE(m_pGui->mouseUp(20, 20, 0));
    m_pGui->requestKeyFocus(listener.pButton);
    m_pGui->update();
    EXPECT_TRUE(m_pGui->hasKeyFocus());
    EXPECT_FALSE(m_pGui->isEditing());

    EXPECT_FALSE(m_pGui->mouseMove(600, 400, 0));
    EXPECT_FALSE(m_pGui->mouseDown(600, 400, 0));
    EXPECT_FALSE(m_pGui->hasKeyFocus());
}

TEST_F(GuiSystemTest, typedTextArrivesAndLosingTheWindowLetsGoOfTheKeyboard)
{
    auto* pEdit = MyGUI::Gui::getInstance().createWidget<MyGUI::EditBox>(
        "QM_EditBox", MyGUI::IntCoord(10, 10, 200, 28), MyGUI::Align::Default, "Main");
    m_pGui->requestKeyFocus(pEdit);
    EXPECT_FALSE(m_pGui->isEditing());
    m_pGui->update();
    EXPECT_TRUE(m_pGui->isEditing());
    type("Hill #1");
    key(14); // backspace
    EXPECT_EQ(std::string(pEdit->getOnlyText()), "Hill #");
    m_pGui->releaseAll();
    EXPECT_FALSE(m_pGui->hasKeyFocus());

    m_pGui->requestKeyFocus(pEdit);
    MyGUI::Gui::getInstance().destroyWidget(pEdit);
    m_pGui->update();
    EXPECT_FALSE(m_pGui->hasKeyFocus());
}

TEST_F(GuiSystemTest, cursorTakesTheShapeThatAnEditBoxAsksFor)
{
    MyGUI::Gui::getInstance().createWidget<MyGUI::EditBox>("QM_EditBox", MyGUI::IntCoord(10, 10, 200, 28),
                                                           MyGUI::Align::Default, "Main");
    m_pGui->mouseMove(100, 24, 0);
    m_pGui->update();
    EXPECT_EQ(m_eCursor, CursorShape::Text);
    m_pGui->mouseMove(600, 400, 0);
    m_pGui->update();
    EXPECT_EQ(m_eCursor, CursorShape::Arrow);
}

TEST_F(GuiSystemTest, busyPointerStaysUntilAllWorkIsDone)
{
    m_pGui->setBusy(true);
    EXPECT_EQ(m_eCursor, CursorShape::Wait) << "at once, for no frame may come for a while";
    m_pGui->setBusy(true);
    m_pGui->setBusy(false);
    m_pGui->update();
    EXPECT_EQ(m_eCursor, CursorShape::Wait);
    m_pGui->setBusy(false);
    EXPECT_EQ(m_eCursor, CursorShape::Arrow);
}

TEST_F(GuiSystemTest, copyAndPasteGoThroughThePlatform)
{
    auto* pEdit = MyGUI::Gui::getInstance().createWidget<MyGUI::EditBox>(
        "QM_EditBox", MyGUI::IntCoord(10, 10, 200, 28), MyGUI::Align::Default, "Main");
    m_pGui->requestKeyFocus(pEdit);
    m_pGui->update();
    const auto withControl = [this](int iScanCode)
    {
        m_pGui->keyDown(29, 0);
        key(iScanCode);
        m_pGui->keyUp(29);
    };
    m_sClipboard = "Hill #1";
    withControl(47); // v
    EXPECT_EQ(std::string(pEdit->getOnlyText()), "Hill #1");
    type("2");
    withControl(30); // a
    m_sClipboard.clear();
    withControl(46); // c
    EXPECT_EQ(m_sClipboard, "Hill #12");
}

TEST_F(GuiSystemTest, vertexBytesAreWhatThePipelineReads)
{
    Listener listener;
    listener.createWidgets();
    settle(2);
    uint32_t uPipeline = 0;
    for (const auto& call : m_device.calls())
        if (call.eKind == CallKind::SetPipeline)
            uPipeline = call.uId;
    const rend::PipelineDesc* pDesc = m_device.pipeline({uPipeline});
    ASSERT_TRUE(pDesc);
    EXPECT_EQ(pDesc->vecSlots[0].uStride, 24u);
    EXPECT_EQ(pDesc->vecAttributes[1].uOffset, 12u);
    EXPECT_EQ(pDesc->vecAttributes[2].uOffset, 16u);
}

} // namespace
