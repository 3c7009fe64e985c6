#include "MyGuiCommon/PopUpManager.h"
#include "Tests/MyGui/GuiFixture.h"

namespace
{

constexpr int s_iEscape = 1;
constexpr int s_iTab = 15;
constexpr int s_iEnter = 28;

struct PopUpManagerTest : GuiFixture
{
    void SetUp() override
    {
        GuiFixture::SetUp();
        m_pPopUps = std::make_unique<PopUpManager>(*m_pGui);
    }
    void TearDown() override
    {
        m_pPopUps.reset();
        GuiFixture::TearDown();
    }
    void ask(const std::string& sInitial = {})
    {
        m_pPopUps->askText("Save Tile", 10, sInitial,
                           [this](const std::string& sText) { m_sAnswer = sText; });
    }
    void press(int iScanCode)
    {
        key(iScanCode);
        m_pPopUps->update();
    }

    std::unique_ptr<PopUpManager> m_pPopUps;
    std::string m_sAnswer = "none";
};

TEST_F(PopUpManagerTest, promptHasTheKeyboardAtOnceAndEnterConfirms)
{
    ask();
    EXPECT_TRUE(m_pGui->isEditing());
    EXPECT_TRUE(m_pGui->mouseMove(3, 3, 0)); // the backdrop keeps the mouse from the view
    type("North Hill and more");
    press(s_iEnter);
    EXPECT_EQ(m_sAnswer, "North Hill");
    EXPECT_FALSE(m_pPopUps->isOpen());
    EXPECT_FALSE(m_pGui->hasKeyFocus());
    settle(2);
}

TEST_F(PopUpManagerTest, typingReplacesTheOldNameAndEscapeDropsAll)
{
    ask("Old");
    type("New");
    press(s_iEnter);
    EXPECT_EQ(m_sAnswer, "New");

    ask("Old");
    type("x");
    press(s_iEscape);
    EXPECT_EQ(m_sAnswer, "New");
    EXPECT_FALSE(m_pPopUps->isOpen());
}

TEST_F(PopUpManagerTest, questionsAnswerByKeyAndHandlersMayAskAgain)
{
    std::string sOrder;
    m_pPopUps->askYesNo("#{MENU_YN_TITLE_ARE_YOU_SURE}", "First?",
                        [&]
                        {
                            sOrder += 'y';
                            m_pPopUps->askYesNo(
                                "Again", "Second?", [&] { sOrder += 'Y'; }, [&] { sOrder += 'N'; });
                        });
    press(s_iEnter);
    EXPECT_EQ(sOrder, "y");
    press(s_iTab); // from Yes to No
    press(s_iEnter);
    EXPECT_EQ(sOrder, "yN");
    m_pPopUps->askYesNo(
        "Again", "Third?", [&] { sOrder += 'Y'; }, [&] { sOrder += 'n'; });
    press(s_iEscape);
    EXPECT_EQ(sOrder, "yNn");
}

TEST_F(PopUpManagerTest, boxesWaitForEachOtherBehindProgress)
{
    m_pPopUps->showProgress("Saving", 0.5f);
    m_pPopUps->showMessage("ERROR_MESSAGE", "One with a # and a {brace}");
    m_pPopUps->showMessage("ERROR_MESSAGE", "Two");
    settle(2);
    press(s_iEnter); // nothing to press yet
    m_pPopUps->hideProgress();
    press(s_iEnter);
    EXPECT_TRUE(m_pPopUps->isOpen());
    press(s_iEnter);
    EXPECT_FALSE(m_pPopUps->isOpen());
}

TEST_F(PopUpManagerTest, promptOutlivesANewSizeClass)
{
    ask();
    type("Ab");
    m_pGui->resize(3840, 2160);
    press(s_iEnter);
    EXPECT_EQ(m_sAnswer, "Ab");
}

} // namespace
