#include "TileEditorCommon/Interface/LibraryModel.h"

#include "Tests/Interface/FakeActions.h"
#include "Tests/Interface/FakeSource.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;
using RowKind = LibraryFilterRow::Kind;

struct LibraryModelTest : testing::Test
{
    void SetUp() override
    {
        m_assets.add(LibraryItemKind::Asset, "rock_Large", "$GAME_DATA", {"Rocks"});
        m_assets.add(LibraryItemKind::Asset, "rock_wall", "$SURVIVAL_DATA", {"Rocks", "Walls"});
        m_assets.add(LibraryItemKind::Asset, "lamp", "$SURVIVAL_DATA", {});
        m_nodes.add(LibraryItemKind::Node, "spawn rock", "", {});
        m_nodes.vecItems[0].bFiltersCategory = false;
        m_nodes.eType = EntityTypeId_Node;
        m_actions.vecSources = {&m_assets, &m_nodes};
        m_actions.vecContents = {{"$GAME_DATA", "Creative", false}, {"$SURVIVAL_DATA", "Survival", false}};
        m_pModel = std::make_unique<LibraryModel>(m_actions);
    }

    [[nodiscard]] std::string shown() const
    {
        std::string sNames;
        for (size_t i = 0; i < m_pModel->count(); ++i)
            sNames += m_pModel->item(i).sName + ";";
        return sNames;
    }
    void toggle(RowKind eKind, const std::string& sLabel = {})
    {
        for (const LibraryFilterRow& row : m_pModel->filterRows())
            if (row.eKind == eKind && (sLabel.empty() || row.sLabel == sLabel))
            {
                m_pModel->toggleFilter(LibraryFilterRow(row));
                return;
            }
        ADD_FAILURE() << "no row " << sLabel;
    }
    [[nodiscard]] std::string filters() const
    {
        std::string sRows;
        for (const LibraryFilterRow& row : m_pModel->filterRows())
            sRows += std::string(static_cast<size_t>(row.iDepth), ' ') + (row.bChecked ? "+" : "-") +
                     row.sLabel + ";";
        return sRows;
    }

    FakeActions m_actions;
    FakeSource m_assets;
    FakeSource m_nodes;
    std::unique_ptr<LibraryModel> m_pModel;
};

TEST_F(LibraryModelTest, searchTakesAllWordsOrOneUuidPastTheCheckBoxes)
{
    EXPECT_EQ(shown(), "rock_Large;rock_wall;lamp;spawn rock;");
    EXPECT_EQ(m_pModel->countText(), "4 items");
    m_pModel->setSearch("ROCK  WAL");
    EXPECT_EQ(shown(), "rock_wall;");
    EXPECT_EQ(m_pModel->countText(), "1 of 4 items");
    m_pModel->setSearch("lampe");
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(m_pModel->emptyText(), "No item matches the search.");

    toggle(RowKind::Content, "Survival");
    m_pModel->setSearch(" " + m_assets.vecItems[2].uuid.text() + " ");
    EXPECT_EQ(shown(), "lamp;");
    m_pModel->setSearch(m_assets.vecItems[2].uuid.text() + " lamp");
    EXPECT_EQ(shown(), "");
}

TEST_F(LibraryModelTest, aCategoryAndAContentLetThroughWhatIsTheirs)
{
    EXPECT_EQ(filters(), "-Options; -Categories;  +All;  +Rocks;  +Walls; -Data;  +Creative;  +Survival;");
    EXPECT_FALSE(m_pModel->isFiltered());
    toggle(RowKind::Category, "Rocks");
    EXPECT_EQ(filters(), "-Options; -Categories;  -All;  -Rocks;  +Walls; -Data;  +Creative;  +Survival;");
    EXPECT_EQ(shown(), "rock_wall;spawn rock;") << "what has no category passes only while all are chosen";
    toggle(RowKind::AllCategories);
    EXPECT_EQ(shown(), "rock_Large;rock_wall;lamp;spawn rock;");
    toggle(RowKind::AllCategories);
    EXPECT_EQ(shown(), "spawn rock;");
    toggle(RowKind::AllCategories);

    toggle(RowKind::Content, "Creative");
    EXPECT_EQ(shown(), "rock_wall;lamp;spawn rock;");
    toggle(RowKind::Content, "Survival");
    EXPECT_EQ(shown(), "spawn rock;");
}

TEST_F(LibraryModelTest, whatComesLaterIsChosenUnlessOnlySomeAre)
{
    const auto addTower = [this]
    {
        m_assets.add(LibraryItemKind::Asset, "tower", "$CONTENT_a",
                     {"Towers" + std::to_string(m_assets.vecItems.size())});
        ++m_assets.uRevision;
        m_actions.vecContents.push_back({"$CONTENT_a", "Mine", true});
        m_pModel->rebuildFilters();
        m_actions.vecContents.pop_back();
        return m_pModel->refresh();
    };
    toggle(RowKind::Content, "Creative");
    EXPECT_FALSE(m_pModel->refresh());
    EXPECT_TRUE(addTower());
    EXPECT_EQ(filters(),
              "-Options; -Categories;  +All;  +Rocks;  +Towers3;  +Walls; -Data;  -Creative;  +Survival;"
              "  -Steam Workshop;   +Mine;");
    EXPECT_EQ(shown(), "rock_wall;lamp;tower;spawn rock;");
    toggle(RowKind::Category, "Walls");
    addTower();
    EXPECT_EQ(shown(), "rock_wall;tower;spawn rock;");
}

TEST_F(LibraryModelTest, iconsAreAskedForOnceUntilNewOnesCome)
{
    EXPECT_EQ(m_pModel->iconPath(0), "");
    EXPECT_EQ(m_pModel->iconPath(0), "");
    EXPECT_EQ(m_assets.uIconsAsked, 1u) << "the disk is asked for each drawing of an item";
    m_assets.sIcon = "$CACHE_DATA/Icons/a.png";
    ++m_assets.uIconRevision;
    EXPECT_TRUE(m_pModel->refresh());
    EXPECT_EQ(m_pModel->iconPath(0), m_assets.sIcon);
    ++m_assets.uIconRevision;
    ++m_assets.uRevision;
    m_pModel->refresh();
    EXPECT_EQ(m_pModel->iconPath(0), m_assets.sIcon);
    EXPECT_EQ(m_assets.uIconsAsked, 2u);
}

TEST_F(LibraryModelTest, itemsTellAndDoWhatTheirSourceSays)
{
    m_assets.vecItems[0].sName = "a#b";
    ++m_assets.uRevision;
    m_pModel->refresh();
    EXPECT_EQ(m_pModel->tip(0),
              "#BBBBBB Type: #EEEE33 Asset \n#BBBBBB Name: #33EE33a##b\n#BBBBBB Content: #9999EECreative");
    EXPECT_EQ(m_pModel->tip(3), "#BBBBBB Type: #EEEE33 Asset \n#BBBBBB Name: #33EE33spawn rock");
    EXPECT_EQ(LibraryModel::typeIcon(LibraryItemKind::AssetPrefab),
              "$GAME_DATA/Gui/Editor/ed_icon_asset_prefab.png");
    for (const LibraryMenuEntry& entry : m_pModel->menu(0))
        m_pModel->runCommand(entry);
    EXPECT_EQ(m_actions.sCalls,
              "outside $GAME_DATA/a/list.json;outside $GAME_DATA/a;copy $GAME_DATA/p.prefab;"
              "open $GAME_DATA/p.prefab;");
    m_actions.sCalls.clear();
    EXPECT_TRUE(m_pModel->beginDrag(2));
    EXPECT_EQ(m_actions.sCalls, "place 0 2;");
    m_nodes.eType = EntityTypeId_COUNT;
    EXPECT_FALSE(m_pModel->beginDrag(3));
    EXPECT_EQ(m_actions.sCalls, "place 0 2;");
}

} // namespace
