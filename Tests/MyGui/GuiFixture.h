#pragma once // A GUI on a recording device, with the content of the game folder.

#include "KestrelCommon/Device/RecordingDevice.h"
#include "MyGuiCommon/GuiSystemManager.h"
#include "Tests/Support/LogCapture.h"

#include <MyGUI_Gui.h>
#include <gtest/gtest.h>

/// Any warning or error of MyGUI fails the test.
struct GuiFixture : testing::Test
{
    LogCapture m_log;
    rend::RecordingDevice m_device{1280, 720};
    std::unique_ptr<GuiSystemManager> m_pGui;
    uint32_t m_uExpectedWarnings = 0;
    uint32_t m_uExpectedErrors = 0;
    CursorShape m_eCursor = CursorShape::Count; ///< last one set
    std::string m_sClipboard;

    static std::string resolve(const std::string& sKeyed)
    {
        constexpr std::string_view s_sKey = "$GAME_DATA";
        return sKeyed.starts_with(s_sKey) ? std::string(QM_GAME_DIR) + "/Data" + sKeyed.substr(s_sKey.size())
                                          : sKeyed;
    }

    void startGui(int iWidth = 1280, int iHeight = 720)
    {
        GuiSettings settings;
        settings.pDevice = &m_device;
        settings.fnResolve = resolve;
        settings.iWidth = iWidth;
        settings.iHeight = iHeight;
        settings.fnSetCursor = [this](CursorShape eShape) { m_eCursor = eShape; };
        settings.fnClipboardText = [this] { return m_sClipboard; };
        settings.fnSetClipboardText = [this](const std::string& sText) { m_sClipboard = sText; };
        m_pGui = GuiSystemManager::create(std::move(settings));
        ASSERT_TRUE(m_pGui) << m_log.dump();
        ASSERT_TRUE(m_pGui->loadResolutions("$GAME_DATA/Gui/guiResolutions.json")) << m_log.dump();
        m_pGui->loadLanguage("English");
    }

    void SetUp() override { startGui(); }

    void TearDown() override
    {
        m_pGui.reset();
        EXPECT_EQ(m_log.errors(), m_uExpectedErrors) << m_log.dump();
        EXPECT_EQ(m_log.warnings(), m_uExpectedWarnings) << m_log.dump();
        EXPECT_EQ(m_device.bufferCount(), 0u);
        EXPECT_EQ(m_device.textureCount(), 0u);
    }

    /// Lets fades and animations come to their end.
    void settle(int iFrames = 30)
    {
        for (int i = 0; i < iFrames; ++i)
        {
            m_pGui->update();
            m_pGui->draw(0.05f);
        }
    }

    void click(int iX, int iY)
    {
        m_pGui->mouseMove(iX, iY, 0);
        m_pGui->mouseDown(iX, iY, 0);
        m_pGui->mouseUp(iX, iY, 0);
    }

    void click(const MyGUI::Widget* pWidget)
    {
        ASSERT_TRUE(pWidget);
        const MyGUI::IntCoord coord = pWidget->getAbsoluteCoord();
        click(coord.left + coord.width / 2, coord.top + coord.height / 2);
    }

    /// Presses and releases a key by its scan code.
    void key(int iScanCode)
    {
        m_pGui->keyDown(iScanCode, 0);
        m_pGui->keyUp(iScanCode);
    }

    void type(std::string_view sText)
    {
        for (const char c : sText)
            m_pGui->text(static_cast<uint32_t>(c));
    }

    /// A widget by name; fails the test when it isn't there.
    template <class T = MyGUI::Widget>
    T* widget(const std::string& sName)
    {
        T* pWidget = MyGUI::Gui::getInstance().findWidget<T>(sName, false);
        EXPECT_TRUE(pWidget) << sName;
        return pWidget;
    }
};
