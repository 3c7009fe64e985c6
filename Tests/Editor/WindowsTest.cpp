// What the windows of the entity tool get of the editor object, and what they make it do.

#include "Tests/Editor/EditorWorld.h"
#include "TileEditorCommon/Contracts/EntityListI.h"
#include "TileEditorCommon/Contracts/LibrarySourceI.h"
#include "TileEditorCommon/Entities/Entities.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

TEST(EditorWindows, aPlacementIsArmedWithAllThatItsKindNeeds)
{
    EditorWorld world;
    EditorToolState& tools = world.pEditor->toolState();
    world.pEditor->setTool(ToolHeight);
    const Uuid uuid = Uuid::random();
    world.pEditor->beginPlacement({.eType = EntityTypeId_Asset, .uuid = uuid});
    EXPECT_EQ(tools.tool, ToolPlace);
    EXPECT_EQ(world.windows.uPanels, ToolPlace);
    EXPECT_FALSE(tools.noPlacement);
    EXPECT_EQ(tools.placementUuid, uuid);
    EXPECT_FALSE(tools.placementHandle);

    world.pEditor->beginPlacement({.eType = EntityTypeId_Decal, .uIndex = 0x0201});
    EXPECT_EQ(tools.placementType, EntityTypeId_Decal);
    EXPECT_EQ(tools.placementUuid.bytes[0], 1) << "kinds without uuids keep their number in its place";
    EXPECT_EQ(tools.placementUuid.bytes[1], 2);
    EXPECT_EQ(tools.placementUuid.bytes[4], 0);
    world.frames(2, 0.016f);
    EXPECT_TRUE(tools.noPlacement) << "the button isn't down: nothing is dragged";
}

TEST(EditorWindows, theListTellsWhatStandsThereAndWhenIdsStartAgain)
{
    EditorWorld world;
    EntityListI& list = *world.pEditor->entities();
    EXPECT_TRUE(list.all().empty());
    world.pEditor->toggleGrid();
    ASSERT_EQ(list.all().size(), 1u);
    const Entity grid = list.all()[0];
    EXPECT_EQ(list.kind(grid), EntityTypeId_Grid);
    EXPECT_EQ(list.icon(grid), "") << "a grid has no picture";
    EXPECT_TRUE(list.isOutlined(grid));
    list.select(std::array{grid});
    ASSERT_EQ(list.selected().size(), 1u);
    Transform transform = list.pivot(grid);
    transform.position.x = 8.0f;
    list.setPivot(grid, transform);
    EXPECT_EQ(world.pEditor->entityStore().pivot(grid).position.x, 8.0f);

    const uint64_t uGeneration = list.generation();
    world.pEditor->newTile(1);
    EXPECT_NE(list.generation(), uGeneration);
    EXPECT_FALSE(list.exists(grid));
    list.setPivot(grid, transform);
    EXPECT_EQ(list.kind(NullEntity), EntityTypeId_COUNT);
    EXPECT_EQ(list.name(NullEntity), "");
}

TEST(EditorWindows, hidingIsForTheEntityToolAndEndsWithShowing)
{
    EditorWorld world;
    EntityListI& list = *world.pEditor->entities();
    world.pEditor->toggleGrid();
    const Entity grid = list.all()[0];
    list.select(std::array{grid});
    world.pEditor->hideSelection();
    EXPECT_TRUE(list.isHidden(grid));
    world.pEditor->showHidden();
    EXPECT_FALSE(list.isHidden(grid));
    world.pEditor->setTool(ToolHeight);
    list.select(std::array{grid});
    world.pEditor->hideSelection();
    EXPECT_FALSE(list.isHidden(grid));
}

TEST(EditorWindows, contentsAreThoseThatTheGameHas)
{
    EditorWorld world;
    std::filesystem::create_directories(world.folder.path() / "game/Data");
    std::filesystem::create_directories(world.folder.path() / "game/Survival");
    std::filesystem::remove_all(world.folder.path() / "game/ChallengeData");
    std::string sContents;
    for (const LibraryContent& content : world.pEditor->libraryContents())
        sContents += content.sKey + "=" + content.sName + ";";
    EXPECT_EQ(sContents, "$GAME_DATA=Creative;$SURVIVAL_DATA=Survival;");
}

} // namespace
