// A landscape painted by hand, and the windows around it.

#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Tile/TileImage.h"
#include "Tests/EndToEnd/Desktop.h"

#include <gtest/gtest.h>

namespace
{

struct Pixel
{
    int iX;
    int iY;
};

// Where things stand in a window of 1280 x 720.
constexpr Pixel s_aside{960, 660};
constexpr Pixel s_snow{183, 577};
constexpr Pixel s_red{1243, 104};
constexpr Pixel s_pebbles{42, 474};
constexpr Pixel s_fileMenu{27, 18}, s_new{60, 50}, s_open{60, 74}, s_exit{51, 244}, s_help{252, 18};
constexpr Pixel s_medium{641, 330}, s_firstTile{418, 250};
constexpr Pixel s_firstPage{384, 188};
constexpr int s_iPageStep = 30, s_iPages = 8;
/// The part of the view that panels and overlay leave free.
constexpr int s_iViewX = 400, s_iViewY = 260, s_iViewWide = 480, s_iViewHigh = 300;

class PaintEndToEnd : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_desktop.isUp()) << "Xvfb doesn't start";
        ASSERT_TRUE(m_desktop.startEditor()) << m_desktop.editorOutput();
    }

    void move(const Pixel& to) { m_desktop.act({"mousemove", std::to_string(to.iX), std::to_string(to.iY)}); }
    void click(const Pixel& at) { m_desktop.click(at.iX, at.iY); }
    void key(const char* pKey) { m_desktop.act({"key", pKey, "sleep", "0.3"}); }

    void stroke(const Pixel& at)
    {
        move(at);
        m_desktop.act({"mousedown", "1", "sleep", "0.7", "mouseup", "1", "sleep", "0.3"});
        move(s_aside);
    }

    Screenshot view() { return m_desktop.lookWhenCalm(s_iViewX, s_iViewY, s_iViewWide, s_iViewHigh); }
    static double change(const Screenshot& a, const Screenshot& b)
    {
        return a.difference(b, s_iViewX, s_iViewY, s_iViewWide, s_iViewHigh);
    }

    /// Waits for a tile file of the user; its place.
    std::string waitForTile(const std::string& sName)
    {
        std::string sFile;
        for (int iTry = 0; iTry < 40 && sFile.empty(); ++iTry)
        {
            m_desktop.act({"sleep", "0.25"});
            sFile = m_desktop.findTile(sName + ".tile");
        }
        return sFile;
    }

    std::string saveAs(const std::string& sName)
    {
        key("ctrl+shift+s");
        m_desktop.type(sName);
        key("Return");
        return waitForTile(sName);
    }

    Desktop m_desktop;
};

TEST_F(PaintEndToEnd, whatIsPaintedIsUndoneRedoneSavedAndFoundAgain)
{
    const auto tool = [this](const char* pKey, const Pixel& choice, const Pixel& place)
    {
        key(pKey);
        click(choice);
        const Screenshot before = view();
        stroke(place);
        const Screenshot after = view();
        EXPECT_GT(change(before, after), 0.05) << "tool " << pKey << " doesn't show";
        return after;
    };
    move(s_aside);
    key("2");
    const Screenshot bare = view();
    tool("3", s_snow, {560, 380});
    tool("4", s_red, {640, 330});
    const Screenshot painted = tool("5", s_pebbles, {720, 380});
    const double fPainted = change(bare, painted);

    for (int i = 0; i < 4; ++i)
        key("ctrl+z");
    EXPECT_LT(change(bare, view()), 0.02 * fPainted) << "something stays after all is undone";
    for (int i = 0; i < 4; ++i)
        key("ctrl+shift+z");
    EXPECT_LT(change(painted, view()), 0.02 * fPainted) << "something is missing after all is redone";

    const std::string sFile = saveAs("Garden");
    ASSERT_FALSE(sFile.empty()) << m_desktop.editorOutput();
    const auto vecFile = readFile(sFile);
    m_desktop.act({"sleep", "1"});
    click(s_fileMenu);
    m_desktop.act({"sleep", "0.5"});
    click(s_exit);
    ASSERT_EQ(m_desktop.waitForExit(), 0) << m_desktop.editorOutput();

    ASSERT_TRUE(m_desktop.startEditor()) << m_desktop.editorOutput();
    move(s_aside);
    key("ctrl+o");
    m_desktop.type("garden");
    m_desktop.act({"sleep", "1"});
    key("Return");
    m_desktop.act({"sleep", "1"});
    key("5");
    EXPECT_LT(change(painted, view()), 0.05 * fPainted) << "another picture after the restart";
    std::filesystem::remove(sFile + ".export");
    key("ctrl+s");
    for (int iTry = 0; iTry < 40 && !std::filesystem::exists(sFile + ".export"); ++iTry)
        m_desktop.act({"sleep", "0.25"});
    EXPECT_EQ(readFile(sFile), vecFile);
}

TEST_F(PaintEndToEnd, windowsWorkByMouseAndBadNamesAreRefused)
{
    move(s_aside);
    key("2");
    const Screenshot small = view();

    click(s_fileMenu);
    m_desktop.act({"sleep", "0.3"});
    click(s_new);
    m_desktop.act({"sleep", "0.3"});
    click(s_medium);
    move(s_aside);
    const Screenshot medium = view();
    EXPECT_GT(change(small, medium), 0.5) << "the new tile doesn't show";

    // Each is refused by a message, and nothing is written.
    for (const char* pName : {"a?b|", "x.", "  y"})
    {
        key("ctrl+shift+s");
        m_desktop.type(pName);
        key("Return");
        EXPECT_GT(change(medium, view()), 5.0) << "no message for " << pName;
        key("Return");
        EXPECT_EQ(change(medium, view()), 0.0) << pName;
        EXPECT_EQ(m_desktop.findTile(std::string(pName) + ".tile"), "");
    }
    const std::string sFile = saveAs("Pair");
    ASSERT_FALSE(sFile.empty()) << m_desktop.editorOutput();
    const auto vecImage = readFile(sFile);
    const auto image = vecImage ? tile::TileImage::open(*vecImage, sFile) : std::nullopt;
    ASSERT_TRUE(image);
    EXPECT_EQ(image->header().width, 2);
    m_desktop.act({"sleep", "1"});

    click(s_fileMenu);
    m_desktop.act({"sleep", "0.3"});
    click(s_open);
    m_desktop.act({"sleep", "0.7"});
    click(s_firstTile);
    click(s_firstTile);
    m_desktop.act({"sleep", "1.5"});
    move(s_aside);
    EXPECT_GT(change(medium, m_desktop.look()), 5.0) << "the opened tile doesn't show";

    click(s_help);
    m_desktop.act({"sleep", "0.5"});
    std::vector<Screenshot> vecPages;
    for (int i = 0; i < s_iPages; ++i)
    {
        click({s_firstPage.iX, s_firstPage.iY + i * s_iPageStep});
        vecPages.push_back(m_desktop.look());
        for (int j = 0; j < i; ++j)
            EXPECT_GT(vecPages.back().difference(vecPages[static_cast<size_t>(j)], 500, 170, 300, 250), 0.3)
                << "pages " << i << " and " << j << " look alike";
    }
}

} // namespace
