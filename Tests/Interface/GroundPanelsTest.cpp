// What the ground material window and the colour editor window decide.

#include "KestrelCommon/Core/Assert.h"
#include "Tests/Interface/FakeActions.h"
#include "TileEditorCommon/Interface/ColorPanel.h"
#include "TileEditorCommon/Interface/GroundMaterialModel.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

std::string s_sAssertion; ///< the last one

struct GroundMaterialModelTest : testing::Test
{
    GroundMaterialModelTest()
    {
        UTILS::setAssertCallback([](const char* pText, const char*, int) { s_sAssertion = pText; });
        s_sAssertion.clear();
        m_actions.vecSets = {
            {"Standard", "$GAME_DATA/a.json"}, {"Autumn", "$SURVIVAL_DATA/b.json"}, {"Broken", ""}};
        m_actions.bound = {
            7, "$GAME_DATA/a.json", {{"Grass", "g.png"}, {"Sand", "s.png"}, {"Rock", "r.png"}}};
    }
    ~GroundMaterialModelTest() override { UTILS::setAssertCallback(nullptr); }

    FakeActions m_actions;
};

TEST_F(GroundMaterialModelTest, windowsMadeAnewKeepTheMaterialAndAnotherSetStartsAtTheFirst)
{
    m_actions.state.groundMaterial = 2;
    GroundMaterialModel model(m_actions);
    EXPECT_FALSE(model.update());
    EXPECT_EQ(model.selected(), 2u);
    EXPECT_EQ(model.boundSet(), 0u);

    model.chooseMaterial(1);
    EXPECT_EQ(m_actions.state.groundMaterial, 1u);
    model.chooseMaterial(3);
    EXPECT_EQ(m_actions.state.groundMaterial, 1u) << "there are three";

    m_actions.bound = {8, "$SURVIVAL_DATA/b.json", {{"Leaves", "l.png"}, {"Mud", "m.png"}}};
    EXPECT_TRUE(model.update());
    EXPECT_EQ(m_actions.state.groundMaterial, 0u);
    EXPECT_EQ(model.boundSet(), 1u);
    ASSERT_EQ(model.materials().size(), 2u);
    EXPECT_EQ(model.materials()[1].sName, "Mud");
    EXPECT_FALSE(model.update());
}

TEST_F(GroundMaterialModelTest, choosingASetBindsItsPathAndAnEmptyPathAsserts)
{
    GroundMaterialModel model(m_actions);
    model.chooseSet(1);
    EXPECT_EQ(m_actions.sCalls, "bind $SURVIVAL_DATA/b.json;dirty;");
    model.chooseSet(2);
    EXPECT_EQ(s_sAssertion, "!utf8Path.empty()");
    model.chooseSet(3);
    EXPECT_EQ(m_actions.sCalls, "bind $SURVIVAL_DATA/b.json;dirty;dirty;") << "nothing else was bound";
}

TEST_F(GroundMaterialModelTest, aSetOfNoListAndNoSetAtAllSelectNothing)
{
    m_actions.bound = {9, "$GAME_DATA/elsewhere.json", {}};
    const GroundMaterialModel model(m_actions);
    EXPECT_EQ(model.boundSet(), GroundMaterialModel::s_uNone);
    EXPECT_EQ(model.selected(), GroundMaterialModel::s_uNone);
}

TEST(ColorPanelTest, showsTheTargetAndArmsTheEyedropper)
{
    FakeActions actions;
    EXPECT_FALSE(colorPanel(actions.state).bTarget);
    actions.state.groundColor = {0.5f, 0.25f, 0.0f, 1.0f};
    actions.setColorTarget(&actions.state.groundColor, ColorTargetGround, {}, {});
    EXPECT_EQ(colorPanel(actions.state), (ColorPanel{.pTitle = colorPanel(actions.state).pTitle,
                                                     .color = {0.5f, 0.25f, 0.0f, 1.0f},
                                                     .bTarget = true,
                                                     .bAlpha = false,
                                                     .bArmed = false}));
    toggleEyedropper(actions);
    EXPECT_TRUE(colorPanel(actions.state).bArmed);
    EXPECT_EQ(actions.state.pickState, PickArmed);
    toggleEyedropper(actions);
    EXPECT_EQ(actions.state.pickState, PickNormal);
    resetColor(actions);
    EXPECT_EQ(actions.state.groundColor, (ColorRgba{1.0f, 1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(actions.sCalls, "dirty;dirty;color;dirty;");
}

} // namespace
