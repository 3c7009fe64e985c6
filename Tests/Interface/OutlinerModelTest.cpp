#include "TileEditorCommon/Interface/OutlinerModel.h"

#include "Tests/Interface/FakeActions.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"

#include <gtest/gtest.h>
#include <random>

namespace
{

using namespace tilebuilder;

struct OutlinerModelTest : testing::Test
{
    void SetUp() override
    {
        m_list.add(EntityTypeId_Node, "Camera");
        m_list.add(EntityTypeId_Asset, "Rock Large");
        m_list.add(EntityTypeId_Asset, "Wall");
        m_list.add({.eKind = EntityTypeId_Node, .sName = "hidden camera", .bOutlined = false});
        m_list.add(EntityTypeId_Asset, "rock small");
        m_model.update(~0u);
    }

    [[nodiscard]] static std::string rows(const OutlinerModel& model)
    {
        std::string sRows;
        for (size_t i = 0; i < model.rowCount(); ++i)
            sRows += (model.isMarked(i) ? "*" : "") + model.label(i) +
                     (model.row(i).isTitle() ? std::to_string(model.countOf(model.row(i).eKind)) : "") + ";";
        return sRows;
    }
    [[nodiscard]] std::string rows() const { return rows(m_model); }
    [[nodiscard]] std::string selected() const
    {
        std::string sIds;
        for (const Entity& entity : m_list.vecSelected)
            sIds += std::to_string(entity.uId);
        return sIds;
    }
    void click(size_t uRow, bool bControl = false, bool bShift = false)
    {
        m_model.click(uRow, bControl, bShift);
        m_model.update(ChangeSelection);
    }

    FakeActions m_actions;
    FakeEntities& m_list = m_actions.things;
    OutlinerModel m_model{m_actions};
};

TEST_F(OutlinerModelTest, thingsStandByKindAndPassByAllWords)
{
    EXPECT_EQ(rows(), "assets3;Rock Large;Wall;rock small;nodes1;Camera;");
    EXPECT_EQ(m_model.countText(), "4 things");
    for (const uint32_t uId : {1u, 2u, 3u, 4u, 5u})
        EXPECT_TRUE(m_model.isListed(uId)) << uId;
    EXPECT_FALSE(m_model.isListed(0));
    EXPECT_FALSE(m_model.isListed(77));

    EXPECT_TRUE(m_model.setSearch("ROCK l"));
    EXPECT_FALSE(m_model.setSearch("rock L"));
    EXPECT_EQ(rows(), "assets2;Rock Large;rock small;");
    EXPECT_EQ(m_model.countText(), "2 of 4 things");
    EXPECT_TRUE(m_model.isListed(5));
    EXPECT_FALSE(m_model.isListed(3));
    EXPECT_FALSE(m_model.isListed(4)) << "what stays out of the tree is found by no search";
    m_model.setSearch("xyz");
    EXPECT_EQ(m_model.emptyText(), "No name matches the search.");
}

TEST_F(OutlinerModelTest, aMoveAsksForNoNameAndAnAdditionForOne)
{
    m_list.uNamesAsked = 0;
    OutlinerChange change = m_model.update(ChangeEntitySet);
    EXPECT_FALSE(change.bRows);
    EXPECT_EQ(m_list.uNamesAsked, 0u) << "a move rebuilds the tree";

    m_list.add(EntityTypeId_Node, "Light");
    m_list.remove(2); // the last one moves into its place
    change = m_model.update(ChangeEntitySet);
    EXPECT_TRUE(change.bRows);
    EXPECT_EQ(m_list.uNamesAsked, 1u);
    EXPECT_EQ(rows(), "assets2;Wall;rock small;nodes2;Camera;Light;");
    EXPECT_FALSE(m_model.isListed(2));

    // Values of what isn't selected don't change by hand.
    m_list.mapThings[1].sName = "View";
    m_list.uNamesAsked = 0;
    EXPECT_FALSE(m_model.update(ChangeEntityValues).bRows);
    EXPECT_EQ(m_list.uNamesAsked, 0u);
    m_list.select(std::array{m_list.vecAll[0]});
    EXPECT_TRUE(m_model.update(ChangeEntityValues).bRows);
    m_list.mapThings[3].sName = "Fence";
    EXPECT_TRUE(m_model.update(ChangeNodeList).bRows);
    m_model.setSearch("fence");
    EXPECT_EQ(rows(), "assets1;Fence;");
}

TEST_F(OutlinerModelTest, anotherDocumentWithTheSameIdsIsSeen)
{
    m_list.mapThings[2].sName = "Tower";
    ++m_list.uGeneration;
    EXPECT_TRUE(m_model.update(ChangeEntitySet).bRows);
    m_model.setSearch("tower");
    EXPECT_EQ(rows(), "assets1;Tower;");
}

TEST_F(OutlinerModelTest, clicksSelectAsListsDo)
{
    click(1);
    EXPECT_EQ(selected(), "2");
    EXPECT_EQ(rows(), "assets3;*Rock Large;Wall;rock small;nodes1;Camera;");
    click(5, true);
    EXPECT_EQ(selected(), "21");
    EXPECT_EQ(m_model.activeRow(), 5u);
    click(1, true);
    EXPECT_EQ(selected(), "1");
    click(3);
    click(1, false, true);
    EXPECT_EQ(selected(), "532") << "the clicked one is the active one";
    click(5, false, true);
    EXPECT_EQ(selected(), "51") << "the range starts at the last plain click, and titles don't count";
    m_list.mapThings[3].bSelectable = false;
    click(2);
    EXPECT_EQ(selected(), "");
    click(99);

    m_model.step(1, false);
    m_model.update(ChangeSelection);
    EXPECT_EQ(selected(), "2");
    m_model.step(-5, false);
    EXPECT_EQ(selected(), "2") << "past the first one";
    click(3);
    m_model.step(1, false);
    EXPECT_EQ(selected(), "1") << "over the title";
}

TEST_F(OutlinerModelTest, aClosedKindStaysClosed)
{
    click(0);
    EXPECT_EQ(rows(), "assets3;nodes1;Camera;");
    m_list.add(EntityTypeId_Asset, "Hut");
    m_model.update(ChangeEntitySet);
    EXPECT_EQ(rows(), "assets4;nodes1;Camera;");
    EXPECT_TRUE(m_model.isListed(6)) << "closing hides lines, not things";
    m_list.select(std::array{m_list.vecAll[5]});
    m_model.update(ChangeSelection);
    EXPECT_EQ(m_model.activeRow(), std::nullopt);
    m_model.setOpen(EntityTypeId_Asset, true);
    EXPECT_EQ(m_model.activeRow(), 4u);
}

TEST_F(OutlinerModelTest, aLongWalkAgreesWithATreeBuiltAnew)
{
    std::mt19937 random(5);
    for (int i = 0; i < 400; ++i)
    {
        const uint32_t uChanges = random() % 3;
        for (uint32_t j = 0; j <= uChanges; ++j)
            if (random() % 2 == 0 && m_list.vecAll.size() > 1)
                m_list.remove(m_list.vecAll[random() % m_list.vecAll.size()].uId);
            else
                m_list.add(static_cast<EntityTypeId>(random() % EntityTypeId_COUNT),
                           "thing" + std::to_string(random() % 50));
        if (random() % 4 == 0)
            m_model.setSearch(random() % 2 ? "4" : "");
        m_model.update(ChangeEntitySet);
        OutlinerModel fresh(m_actions);
        fresh.setSearch(m_model.countText().find("of") == std::string::npos ? "" : "4");
        ASSERT_EQ(rows(), rows(fresh)) << i;
    }
}

} // namespace
