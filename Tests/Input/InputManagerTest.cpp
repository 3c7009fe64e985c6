#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/Core/GuiSinkI.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputTarget.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

/// Notes what comes and takes it or leaves it.
struct FakeGui : GuiSinkI
{
    bool bTakes = false;
    std::string sSeen;

    bool note(char cWhat)
    {
        sSeen += cWhat;
        return bTakes;
    }
    bool mouseMove(int, int, int iSum) override
    {
        sSeen += "m" + std::to_string(iSum);
        return bTakes;
    }
    bool mouseDown(int, int, int) override { return note('d'); }
    bool mouseUp(int, int, int) override { return note('u'); }
    bool keyDown(int, uint32_t) override { return note('K'); }
    bool keyUp(int) override { return note('k'); }
    bool text(uint32_t) override { return note('t'); }
    void releaseAll() override { sSeen += 'R'; }
};

struct FakeTarget : InputTarget
{
    std::string sSeen;
    uint32_t uMods = 0;

    bool note(char cWhat, const InputEvent& event)
    {
        sSeen += cWhat;
        uMods = event.uMods;
        return true;
    }
    bool keyDown(const InputEvent& event) override { return note('K', event); }
    bool keyUp(const InputEvent& event) override { return note('k', event); }
    bool mouseDown(const InputEvent& event) override { return note('d', event); }
    bool mouseUp(const InputEvent& event) override { return note('u', event); }
    bool mouseWheel(const InputEvent& event) override { return note('w', event); }
    bool mouseMove(const InputEvent& event) override { return note('m', event); }
};

struct InputManagerTest : testing::Test
{
    InputManagerTest()
    {
        m_input.setGui(&m_gui);
        m_input.setTarget(&m_target);
    }

    void key(uint32_t uKey, bool bDown, int iScanCode = 0)
    {
        m_input.queue({.eType = PlatformEventType::Key,
                       .bDown = bDown,
                       .uVirtualKey = uKey,
                       .iScanCode = iScanCode ? iScanCode : scanCodeOf(uKey)});
    }
    void button(int iButton, bool bDown)
    {
        m_input.queue(
            {.eType = PlatformEventType::MouseButton, .iX = 5, .iY = 6, .iButton = iButton, .bDown = bDown});
    }
    void wheel(int iSteps) { m_input.queue({.eType = PlatformEventType::MouseWheel, .iWheel = iSteps}); }
    /// A pass that draws.
    void frame()
    {
        m_input.endFrame();
        m_input.update();
    }

    FakeGui m_gui;
    FakeTarget m_target;
    InputManager m_input;
};

TEST_F(InputManagerTest, stateGoesPressedHeldReleasedUp)
{
    key('A', true);
    m_input.update();
    EXPECT_EQ(m_input.keyState['A'], InputPressed);
    m_input.update(); // a pass without a frame keeps the press for the frame to come
    EXPECT_EQ(m_input.keyState['A'], InputPressed);
    frame();
    EXPECT_EQ(m_input.keyState['A'], InputHeld);
    key('A', false);
    frame();
    EXPECT_EQ(m_input.keyState['A'], InputReleased);
    EXPECT_EQ(m_input.keyDown['A'], 0);
    frame();
    EXPECT_EQ(m_input.keyState['A'], InputUp);
    EXPECT_EQ(m_target.sSeen, "Kk");
}

TEST_F(InputManagerTest, tapWithinAFrameIsSeenAsPressThenRelease)
{
    key('A', true);
    key('A', false);
    button(0, true);
    button(0, false);
    m_input.update();
    EXPECT_EQ(m_input.keyState['A'], InputPressed);
    EXPECT_EQ(m_input.buttonState[0], InputPressed);
    EXPECT_EQ(m_input.buttonDown[0], 0);
    frame();
    EXPECT_EQ(m_input.keyState['A'], InputReleased);
    EXPECT_EQ(m_input.buttonState[0], InputReleased);
    frame();
    EXPECT_EQ(m_input.keyState['A'], InputUp);
}

TEST_F(InputManagerTest, repeatsReachNobodyAndTwinKeysCountAsOne)
{
    key(KeyShift, true);
    key(KeyShift, true);       // a repeat
    key(KeyShift, true, 0x36); // the right one
    m_input.update();
    EXPECT_EQ(m_gui.sSeen, "KK");
    EXPECT_EQ(m_target.sSeen, "K");
    key(KeyShift, false);
    frame();
    EXPECT_EQ(m_input.mods(), ModShift);
    EXPECT_EQ(m_input.keyState[KeyShift], InputHeld);
    key(KeyShift, false, 0x36);
    frame();
    EXPECT_EQ(m_input.mods(), 0u);
    EXPECT_EQ(m_target.sSeen, "Kk");
}

TEST_F(InputManagerTest, whatTheInterfaceTakesMissesTheTargetButNotTheStates)
{
    m_gui.bTakes = true;
    key('S', true);
    button(0, true);
    wheel(120);
    m_input.update();
    EXPECT_EQ(m_target.sSeen, "");
    EXPECT_EQ(m_input.keyState['S'], InputPressed);
    EXPECT_EQ(m_input.buttonDown[0], 1);
    EXPECT_EQ(m_input.iWheelDelta, 0);
}

TEST_F(InputManagerTest, wheelAddsUpUntilTheFrameAndIsAnAbsoluteSumForTheInterface)
{
    wheel(120);
    m_input.update();
    wheel(-240);
    m_input.update();
    EXPECT_EQ(m_input.iWheelDelta, -120);
    EXPECT_EQ(m_gui.sSeen, "m0m120m120m-120");
    frame();
    EXPECT_EQ(m_input.iWheelDelta, 0);
}

TEST_F(InputManagerTest, targetGetsModifiersOfTheMoment)
{
    key(KeyControl, true);
    button(1, true);
    key(KeyControl, false);
    m_input.update();
    EXPECT_EQ(m_target.sSeen, "Kdk");
    EXPECT_EQ(m_target.uMods, 0u);
    EXPECT_EQ(m_input.mousePosition.iX, 5);
}

TEST_F(InputManagerTest, focusChangeReleasesEverythingInItsPlaceInTheQueue)
{
    key('W', true);
    button(0, true);
    wheel(120);
    m_input.queue({.eType = PlatformEventType::FocusLost});
    key('D', true);
    m_input.update();
    EXPECT_EQ(m_input.keyState['W'], InputUp);
    EXPECT_EQ(m_input.buttonDown[0], 0);
    EXPECT_EQ(m_input.iWheelDelta, 0);
    EXPECT_EQ(m_input.keyState['D'], InputPressed);
    EXPECT_NE(m_gui.sSeen.find('R'), std::string::npos);
}

TEST_F(InputManagerTest, numbersOutOfRangeAreDropped)
{
    key(256, true, 30);
    key('A', true, 300);
    button(5, true);
    button(-1, true);
    m_input.update();
    EXPECT_EQ(m_target.sSeen, "");
    EXPECT_EQ(m_gui.sSeen, "");
}

} // namespace
