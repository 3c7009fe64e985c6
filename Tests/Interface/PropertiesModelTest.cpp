#include "TileEditorCommon/Interface/PropertiesModel.h"

#include "Tests/Interface/FakeActions.h"
#include "Tests/Interface/FakePanel.h"
#include "TileEditorCommon/Contracts/ScaleFlags.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

struct PropertiesModelTest : testing::Test
{
    void SetUp() override
    {
        const Transform transform{
            {1.0f, 2.0f, 3.0f}, rotationFrom({90.0f, 0.0f, 30.0f}), glm::vec3(0.25f, 0.5f, 0.75f)};
        m_rock =
            m_list.add({.sName = "Rock", .transform = transform, .uScaleFlags = ScaleCan | ScaleQuarter});
        m_lamp = m_list.add(
            {.eKind = EntityTypeId_Node, .sName = "Lamp", .transform = transform, .uScaleFlags = 0});
        m_list.fnRows = [](uint32_t uId, PropertyPanelI& panel)
        { panel.button("own " + std::to_string(uId), {}); };
    }

    const std::string& rows()
    {
        m_model.fill(m_panel);
        return m_panel.sRows;
    }
    const Transform& transform(const Entity& entity) { return m_list.mapThings[entity.uId].transform; }
    void edit(const char* pRow, std::array<float, 3> values)
    {
        rows();
        m_panel.mapTriples.at(pRow)(values, EditPhase::Finished);
    }
    void setFlags(uint8_t uFlags) { m_list.mapThings[m_rock.uId].uScaleFlags = uFlags; }

    FakeActions m_actions;
    FakeEntities& m_list = m_actions.things;
    FakePanel m_panel;
    PropertiesModel m_model{m_actions};
    Entity m_rock;
    Entity m_lamp;
};

TEST_F(PropertiesModelTest, theActiveEntityIsShownUntilItIsGone)
{
    EXPECT_EQ(rows(), "");
    m_list.select(std::array{m_lamp, m_rock});
    EXPECT_EQ(
        rows(),
        "Rock;Asset, last of 2 selected;Position 100 200 300;Rotation 9000 0 3000;Scale 100 200 300;own 1;");
    m_list.select({});
    EXPECT_TRUE(rows().starts_with("Rock;Asset;")) << "the one shown before stays";
    m_list.select(std::array{m_lamp});
    EXPECT_EQ(rows(), "Lamp;Node;Position 100 200 300;Rotation 9000 0 3000;own 2;");
    m_list.remove(m_lamp.uId);
    EXPECT_EQ(rows(), "");
    m_list.select(std::array{m_rock});
    rows();
    ++m_list.uGeneration; // another document, in which the id is another thing
    m_list.vecSelected.clear();
    EXPECT_EQ(rows(), "");
}

TEST_F(PropertiesModelTest, typedAnglesStandWhileTheTurnIsTheirs)
{
    m_list.select(std::array{m_rock});
    edit("Rotation", {0.0f, 0.0f, 400.0f});
    EXPECT_NE(rows().find("Rotation 0 0 40000;"), std::string::npos);
    EXPECT_NEAR(eulerAngles(transform(m_rock).rotation)[2], 40.0f, 1e-3f);
    edit("Position", {7.0f, 8.0f, 9.0f});
    EXPECT_NE(rows().find("Position 700 800 900;Rotation 0 0 40000;"), std::string::npos);
    m_list.mapThings[m_rock.uId].transform.rotation = rotationFrom({0.0f, 0.0f, 50.0f});
    EXPECT_NE(rows().find("Rotation 0 0 5000;"), std::string::npos) << "turned by the gizmo meanwhile";
    edit("Rotation", {0.0f, 0.0f, 410.0f});
    m_list.mapThings[m_lamp.uId].transform.rotation = transform(m_rock).rotation;
    m_list.select(std::array{m_lamp});
    EXPECT_NE(rows().find("Rotation 0 0 5000;"), std::string::npos) << "angles typed for another one";
}

TEST_F(PropertiesModelTest, aMoveLeavesTurnAndSizeToTheBit)
{
    m_list.select(std::array{m_lamp});
    const Transform before = transform(m_lamp);
    edit("Position", {0.0f, 0.0f, 1.0f});
    EXPECT_EQ(transform(m_lamp).rotation, before.rotation);
    EXPECT_EQ(transform(m_lamp).scale, before.scale) << "what can't be scaled keeps its size";
    EXPECT_EQ(m_actions.sCalls, "dirty;");
}

TEST_F(PropertiesModelTest, sizesFollowTheFlags)
{
    m_list.select(std::array{m_rock});
    edit("Scale", {1.0f, 2.0f, 4.0f});
    EXPECT_EQ(transform(m_rock).scale, glm::vec3(0.25f, 0.5f, 1.0f));
    setFlags(ScaleCan | ScaleKeepY);
    edit("Scale", {3.0f, 5.0f, 7.0f});
    EXPECT_EQ(transform(m_rock).scale, glm::vec3(3.0f, 1.0f, 7.0f));
    setFlags(ScaleCan | ScaleQuarter | ScaleUniform);
    rows();
    m_panel.mapFloats.at("Scale")(2.0f, EditPhase::Changing);
    EXPECT_EQ(transform(m_rock).scale, glm::vec3(0.5f));
    const auto onScale = m_panel.mapFloats.at("Scale");
    setFlags(0);
    onScale(9.0f, EditPhase::Finished);
    EXPECT_EQ(transform(m_rock).scale, glm::vec3(0.5f));
    m_list.remove(m_rock.uId);
    onScale(9.0f, EditPhase::Finished); // of an entity that is gone
}

} // namespace
