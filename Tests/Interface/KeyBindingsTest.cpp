#include "TileEditorCommon/Interface/KeyBindings.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputManager.h"
#include "Tests/Interface/FakeActions.h"
#include "Tests/Interface/FakeWindows.h"
#include "TileEditorCommon/Interface/EditorBindings.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

struct KeyBindingsTest : testing::Test
{
    KeyBindingsTest() { bindEditorActions(m_keys, m_actions, m_windows); }

    void down(uint32_t uKey)
    {
        m_input.queue({.eType = PlatformEventType::Key,
                       .bDown = true,
                       .uVirtualKey = uKey,
                       .iScanCode = scanCodeOf(uKey)});
    }

    /// A frame in which the given keys go down anew; what it did.
    std::string frame(std::initializer_list<uint32_t> listKeys, bool bPointerFree = true,
                      bool bNoKeyFocus = true, bool bFlying = false)
    {
        m_input.clear();
        for (const uint32_t uKey : listKeys)
            down(uKey);
        return run(bPointerFree, bNoKeyFocus, bFlying);
    }

    std::string wheel(int32_t iSteps, bool bControl = false)
    {
        m_input.clear();
        if (bControl)
            down(KeyControl);
        m_input.queue({.eType = PlatformEventType::MouseWheel, .iWheel = iSteps * 120});
        return run(true, true, m_actions.camera.flying);
    }

    std::string run(bool bPointerFree, bool bNoKeyFocus, bool bFlying)
    {
        m_input.update();
        m_actions.sCalls.clear();
        m_windows.sCalls.clear();
        m_keys.update(bPointerFree, bNoKeyFocus, bFlying);
        m_input.endFrame();
        return m_actions.sCalls + m_windows.sCalls;
    }

    InputManager m_input;
    FakeActions m_actions;
    FakeWindows m_windows;
    KeyBindings m_keys{m_input};
};

TEST_F(KeyBindingsTest, modifiersMustBeExactlyThose)
{
    EXPECT_EQ(frame({KeyControl, 'S'}), "save;");
    EXPECT_EQ(frame({KeyControl, KeyShift, 'S'}), "saveAsWindow;");
    EXPECT_EQ(frame({KeyControl, KeyAlt, 'S'}), "");
    EXPECT_EQ(frame({'S'}), "");
    EXPECT_EQ(frame({KeyControl, 'N'}), "newWindow;");
    EXPECT_EQ(frame({KeyControl, 'O'}), "openWindow;");
}

// A chord may be over before the frame that sees it.
TEST_F(KeyBindingsTest, quickChordCountsWithTheModifiersOfItsPress)
{
    const auto tap = [this](bool bDown)
    {
        for (const uint32_t uKey : {uint32_t{KeyControl}, uint32_t{'O'}})
            m_input.queue({.eType = PlatformEventType::Key,
                           .bDown = bDown,
                           .uVirtualKey = uKey,
                           .iScanCode = scanCodeOf(uKey)});
    };
    tap(true);
    tap(false);
    EXPECT_EQ(run(true, true, false), "openWindow;");
}

TEST_F(KeyBindingsTest, aHeldKeyActsOnce)
{
    EXPECT_EQ(frame({KeyControl, 'S'}), "save;");
    EXPECT_EQ(run(true, true, false), "");
}

TEST_F(KeyBindingsTest, focusAndMouseBlockWhatTheTableSays)
{
    EXPECT_EQ(frame({KeyControl, 'S'}, true, false), "save;") << "a button has the keyboard";
    EXPECT_EQ(frame({KeyControl, KeyShift, 'S'}, true, false), "");
    EXPECT_EQ(frame({KeyControl, 'S'}, false, true), "") << "the mouse is over a widget";
    EXPECT_EQ(frame({'2'}, true, false), "tool 0;");
    EXPECT_EQ(frame({'I'}, true, false), "");
    EXPECT_EQ(frame({'I'}), "dirty;overlay;");
}

TEST_F(KeyBindingsTest, toolKeysFollowTheirNumbersAndRestWhileFlying)
{
    EXPECT_EQ(frame({'1'}), "tool 4;");
    EXPECT_EQ(frame({'2'}), "tool 0;");
    EXPECT_EQ(frame({'5'}), "tool 3;");
    EXPECT_EQ(frame({'2'}, true, true, true), "");
    EXPECT_EQ(frame({'E'}), "dirty;");
    EXPECT_EQ(m_actions.state.transformMode, 2);
}

TEST_F(KeyBindingsTest, entityKeysTellTheirNumbers)
{
    EXPECT_EQ(frame({KeyDelete}, true, false), "entity 6;") << "also while a list has the keyboard";
    EXPECT_EQ(frame({KeyControl, 'C'}, true, false), "");
    const std::pair<std::vector<uint32_t>, uint32_t> arrKeys[] = {
        {{KeyControl, 'G'}, 41}, {{KeyControl, KeyShift, 'G'}, 42}, {{KeyControl, KeyShift, KeyAlt, 'G'}, 43},
        {{KeyControl, 'H'}, 44}, {{KeyControl, KeyShift, 'H'}, 45}, {{KeyControl, 'C'}, 46},
        {{KeyControl, 'V'}, 47}, {{KeyControl, KeyShift, 'V'}, 48}, {{KeyControl, 'T'}, 49},
        {{KeyControl, 'Q'}, 50}, {{KeyControl, 'W'}, 51},           {{KeyControl, 'E'}, 52},
        {{KeyControl, 'R'}, 53}, {{KeyControl, KeyShift, 'R'}, 54}, {{'U'}, 55},
        {{KeyShift, 'U'}, 56},   {{KeyShift, KeyAlt, 'U'}, 57},     {{KeyControl, KeyShift, KeyAlt, 'U'}, 58},
        {{KeyShift, 'C'}, 59},
    };
    for (const auto& [vecKeys, uAction] : arrKeys)
    {
        m_input.clear();
        for (const uint32_t uKey : vecKeys)
            down(uKey);
        EXPECT_EQ(run(true, true, false), "entity " + std::to_string(uAction) + ";");
    }
    frame({'S'}, true, false);
    frame({'X'});
    EXPECT_TRUE(m_actions.bSnap && m_actions.bAroundOrigin);
    frame({'X'}, true, false);
    EXPECT_TRUE(m_actions.bAroundOrigin) << "a widget has the keyboard";
}

TEST_F(KeyBindingsTest, polledKeyIsActiveInItsFrameOnly)
{
    frame({KeySpace});
    EXPECT_TRUE(m_keys.isActive(ActionCharacter));
    EXPECT_FALSE(m_keys.isActive(ActionMoveGrid));
    run(true, true, false);
    EXPECT_FALSE(m_keys.isActive(ActionCharacter));
}

TEST_F(KeyBindingsTest, shortcutTexts)
{
    EXPECT_EQ(m_keys.text(ActionSaveAs), "#BBBBBB(ctrl+shift+s)");
    EXPECT_EQ(m_keys.text(ActionToolPlace), "#BBBBBB(1)");
    EXPECT_EQ(m_keys.text(999), "");
    m_keys.bind(999, {.uVk = KeyDelete, .uMods = ModAlt | ModControl});
    EXPECT_EQ(m_keys.text(999), "#BBBBBB(ctrl+alt+delete)");
}

TEST_F(KeyBindingsTest, wheelTurnsTheBrushDownWhenItTurnsAway)
{
    m_actions.state.tool = ToolHeight;
    wheel(1);
    EXPECT_EQ(m_actions.state.size, 24);
    wheel(3, true);
    EXPECT_EQ(m_actions.state.strength, 47);
    EXPECT_EQ(m_actions.state.size, 24);
    wheel(40);
    EXPECT_EQ(m_actions.state.size, 0);
    wheel(-60, true);
    EXPECT_EQ(m_actions.state.strength, 100);
    m_actions.state.size = EditorToolState::s_iMaxSize;
    wheel(-1);
    EXPECT_EQ(m_actions.state.size, EditorToolState::s_iMaxSize);
}

TEST_F(KeyBindingsTest, wheelMovesOrSpeedsTheCamera)
{
    m_actions.state.tool = ToolPlace;
    EXPECT_EQ(wheel(3), "forward 6;");
    m_actions.camera.flying = true;
    m_actions.camera.flySpeed = 1.0f;
    EXPECT_EQ(wheel(-2), "");
    EXPECT_FLOAT_EQ(m_actions.camera.flySpeed, 1.4f);
    wheel(100);
    EXPECT_FLOAT_EQ(m_actions.camera.flySpeed, 0.3f);
    m_actions.state.tool = ToolHeight;
    wheel(-100);
    EXPECT_FLOAT_EQ(m_actions.camera.flySpeed, 6.0f);
    EXPECT_EQ(m_actions.state.size, 25);
}

} // namespace
