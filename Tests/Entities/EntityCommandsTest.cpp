#include "TileEditorCommon/Entities/EntityCommands.h"

#include "Tests/Entities/FakeKind.h"
#include "Tests/Support/LogCapture.h"
#include "TileEditorCommon/Entities/EntityClipboard.h"
#include "TileEditorCommon/Entities/EntityDrag.h"
#include "TileEditorCommon/Entities/EntityMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tilebuilder;
using C = EntityCommand;

namespace
{

struct EntityCommandsTest : testing::Test
{
    [[nodiscard]] glm::vec3 originOf(const Entity& entity) const
    {
        return world.instance(entity).origin.position;
    }
    void placeGrid(const glm::vec3& position)
    {
        Transform place;
        place.position = position;
        place.scale = glm::vec3(16.0f);
        entities.placeGrid(place);
    }

    LogCapture log;
    FakeWorld world;
    Entities& entities = world.entities;
    EntityDrag drag{entities};
    EntityClipboard clipboard{entities};
    EntityCommands commands{entities, drag, clipboard,
                            [](const glm::vec3& from, const glm::vec3&) {
                                return std::optional(GroundSpot{{from.x, from.y, 3.0f}, {0.0f, 0.0f, 1.0f}});
                            },
                            [] { return 100u; }};
};

TEST_F(EntityCommandsTest, conditionsFollowSelectionGridAndClipboard)
{
    EXPECT_TRUE(commands.canRun(C::SelectAll));
    for (const C eCommand : {C::None, C::Reset, C::Center, C::Copy, C::Paste, C::Delete, C::MoveToGrid,
                             C::GridToSelection, C::SelectAssets, C::PasteTransform})
        EXPECT_FALSE(commands.canRun(eCommand)) << static_cast<int>(eCommand);
    const Entity first = world.addSelected({1.0f, 1.0f, 0.0f});
    EXPECT_TRUE(commands.canRun(C::Reset) && commands.canRun(C::SelectAssets) && commands.canRun(C::Delete));
    EXPECT_FALSE(commands.canRun(C::Center) || commands.canRun(C::LookAt));
    EXPECT_FALSE(commands.canRun(C::MoveToGrid));
    placeGrid({10.0f, 10.0f, 0.0f});
    EXPECT_TRUE(commands.canRun(C::MoveToGrid));
    world.addSelected({2.0f, 1.0f, 0.0f});
    EXPECT_TRUE(commands.canRun(C::Center));
    EXPECT_FALSE(commands.canRun(C::CorrectTangent) || commands.canRun(C::InBetween));
    world.addSelected({3.0f, 1.0f, 0.0f});
    EXPECT_TRUE(commands.canRun(C::CorrectTangent) && commands.canRun(C::InBetween));
    commands.run(C::Copy);
    EXPECT_TRUE(commands.canRun(C::Paste) && commands.canRun(C::Replace) && commands.canRun(C::PasteColors));
    for (const C eCommand : {C::CreatePrefab, C::UnPrefab, C::OpenPrefab})
        EXPECT_FALSE(commands.canRun(eCommand));

    // What its type has taken away doesn't count.
    first.pType->remove(first.uId, false);
    EXPECT_EQ(commands.selectedCount(), 2u);
    EXPECT_FALSE(commands.canRun(C::InBetween));
    EXPECT_TRUE(commands.canRun(C::Center));
    entities.closeTile();
    EXPECT_FALSE(commands.canRun(C::SelectAll) || commands.canRun(C::Paste));
}

TEST_F(EntityCommandsTest, arrangingWritesPivotsBackAndKeepsLockedScales)
{
    const Entity scaled = world.addSelected({1.0f, 1.0f, 0.0f});
    const Entity rigid = world.addSelected({5.0f, 1.0f, 0.0f});
    Transform start = world.instance(rigid).origin;
    start.scale = glm::vec3(0.7f);
    entities.setPivot(rigid, start);
    world.pAssets->edit(rigid.uId)->uScaleFlags = ScaleQuarter;
    commands.run(C::ResetScale);
    EXPECT_EQ(world.instance(scaled).origin.scale, glm::vec3(0.25f));
    EXPECT_EQ(world.instance(rigid).origin.scale, glm::vec3(0.7f));
    commands.run(C::MoveToGround); // the middle of the bounds goes to the ground
    EXPECT_NEAR(entities.pivot(scaled).position.z, 3.0f, 1e-5f);
    world.sink.reset();
    commands.run(C::MoveToGround);
    EXPECT_EQ(world.sink.uChanges, 0u) << "what is there already isn't changed";
    entities.setTransformAroundOrigin(true);
    commands.run(C::MoveToGround);
    EXPECT_EQ(originOf(scaled).z, 3.0f);
}

TEST_F(EntityCommandsTest, gridCommandsActOnEachOrOnTheGroup)
{
    entities.setTransformAroundOrigin(true);
    const Entity first = world.addSelected({1.0f, 2.0f, 3.0f});
    placeGrid({10.0f, 20.0f, 5.0f});
    commands.run(C::MoveToGridZ);
    EXPECT_EQ(originOf(first), glm::vec3(1.0f, 2.0f, 5.0f));
    commands.run(C::MoveToGrid);
    EXPECT_EQ(originOf(first), glm::vec3(10.0f, 20.0f, 5.0f));
    const Entity second = world.addSelected({12.0f, 20.0f, 5.0f});
    commands.run(C::MoveToGrid);
    EXPECT_EQ(originOf(first), glm::vec3(9.0f, 20.0f, 5.0f));
    EXPECT_EQ(originOf(second), glm::vec3(11.0f, 20.0f, 5.0f));
    commands.run(C::MoveToGridXyz);
    EXPECT_EQ(originOf(second), glm::vec3(10.0f, 20.0f, 5.0f));
    commands.run(C::RandomOnPlane);
    EXPECT_FALSE(originOf(second) == glm::vec3(10.0f, 20.0f, 5.0f));
    EXPECT_EQ(originOf(second).z, 5.0f);

    entities.setPivot(first, Transform{});
    Transform there;
    there.position = {4.0f, 6.0f, 8.0f};
    entities.setPivot(second, there);
    commands.run(C::GridToSelection);
    EXPECT_EQ(originOf(entities.grid()), glm::vec3(2.0f, 3.0f, 4.0f));
    EXPECT_EQ(world.instance(entities.grid()).origin.scale, glm::vec3(16.0f));
}

TEST_F(EntityCommandsTest, centerTakesTheMeanOfCentresInEitherPivot)
{
    for (const bool bAroundOrigin : {false, true})
    {
        entities.clear();
        entities.setTransformAroundOrigin(bAroundOrigin);
        const Entity first = world.addSelected({0.0f, 0.0f, 0.0f}); // centre 2 m up
        const Entity second = world.addSelected({4.0f, 0.0f, 10.0f});
        commands.run(C::Center);
        EXPECT_EQ(entities.pivot(first).position, glm::vec3(2.0f, 0.0f, 7.0f));
        EXPECT_EQ(entities.pivot(second).position, glm::vec3(2.0f, 0.0f, 7.0f));
    }
}

TEST_F(EntityCommandsTest, nothingRunsInTheMiddleOfADrag)
{
    const Entity entity = world.addSelected({10.0f, 10.0f, 0.0f});
    const glm::vec3 eye = entities.pivot(entity).position + glm::vec3(-30.0f, -40.0f, 35.0f);
    drag.updateTool(eye, 0.4f, {}, false, false);
    const ToolPose& pose = drag.tool().pose();
    const glm::vec3 grip = pose.centre + glm::vec3(0.7f * pose.size, 0.0f, 0.0f);
    drag.beginTransform({eye, eye + (grip - eye) * 50.0f}, false);
    ASSERT_TRUE(drag.isDragging());
    commands.run(C::Delete);
    EXPECT_TRUE(entities.exists(entity));
    drag.endTransform();
    commands.run(C::Delete);
    EXPECT_FALSE(entities.exists(entity));
    EXPECT_TRUE(world.pAssets->bLastRemovedLinks);
}

TEST_F(EntityCommandsTest, everyActionOfTheKeyTableHasItsCommand)
{
    for (uint32_t uAction = 41; uAction <= 59; ++uAction)
        EXPECT_NE(entityCommandByAction(uAction), C::None) << uAction;
    EXPECT_EQ(entityCommandByAction(6), C::Delete);
    EXPECT_EQ(entityCommandByAction(45), C::MoveToGroundAndRotate);
    EXPECT_EQ(entityCommandByAction(51), C::PasteRotation);
    EXPECT_EQ(entityCommandByAction(52), C::PasteScale);
    EXPECT_EQ(entityCommandByAction(0), C::None);
    EXPECT_EQ(entityCommandByAction(60), C::None);
}

// Clipboard

TEST_F(EntityCommandsTest, pasteKeepsTheGroupAroundThePoint)
{
    world.addSelected({0.0f, 0.0f, 0.0f});
    world.addSelected({4.0f, 2.0f, 0.0f}, EntityTypeId_Decal);
    commands.run(C::Copy);
    entities.openTile({1, 1, tile::TypeGround, ""}); // the clipboard outlives the document
    const Entity other = world.addSelected({50.0f, 50.0f, 0.0f});
    commands.run(C::Paste);
    EXPECT_EQ(entities.count(), 1u) << "nowhere to paste to";
    commands.run(C::Paste, glm::vec3(20.0f, 20.0f, 5.0f));
    ASSERT_EQ(entities.selected().size(), 2u);
    EXPECT_FALSE(entities.isSelected(other.uId));
    EXPECT_EQ(originOf(entities.selected()[0]), glm::vec3(18.0f, 19.0f, 5.0f));
    EXPECT_EQ(originOf(entities.active()), glm::vec3(22.0f, 21.0f, 5.0f));
    EXPECT_TRUE(world.pAssets->bLastStored);

    // What can't be made empties the selection of what came before it.
    world.pAssets->bRefuses = true;
    commands.run(C::Paste, glm::vec3(0.0f));
    ASSERT_EQ(entities.selected().size(), 1u);
    EXPECT_EQ(entities.active().pType, world.pDecals);
}

TEST_F(EntityCommandsTest, copiedTransformsAreOfUnitScale)
{
    Transform place;
    place.position = {1.0f, 2.0f, 3.0f};
    place.rotation = glm::angleAxis(1.0f, glm::vec3(0.0f, 0.0f, 1.0f));
    place.scale = glm::vec3(0.5f);
    entities.setTransformAroundOrigin(true);
    entities.select(world.add(place), false);
    commands.run(C::Copy);
    ASSERT_TRUE(clipboard.transform());
    EXPECT_EQ(clipboard.transform()->scale, glm::vec3(2.0f));

    const Entity target = world.add({30.0f, 30.0f, 0.0f});
    world.pAssets->edit(target.uId)->uScaleFlags = ScaleCan; // of unit scale 1
    entities.select(target, false);
    commands.run(C::PasteRotation);
    EXPECT_EQ(world.instance(target).origin.rotation, place.rotation);
    EXPECT_EQ(originOf(target).x, 30.0f);
    commands.run(C::PasteTransform);
    EXPECT_EQ(originOf(target), place.position);
    EXPECT_EQ(world.instance(target).origin.scale, glm::vec3(2.0f));
    entities.clearSelection();
    commands.run(C::Copy);
    EXPECT_TRUE(clipboard.hasThings()) << "copying nothing keeps what was copied";
}

TEST_F(EntityCommandsTest, replacingTakesTheLastCopyToEachPlace)
{
    entities.select(world.add({0.0f, 0.0f, 0.0f}, 11), false);
    entities.select(world.add({0.0f, 0.0f, 0.0f}, 22), true);
    commands.run(C::Copy);
    entities.clearSelection();
    Transform place;
    place.position = {9.0f, 9.0f, 1.0f};
    place.scale = glm::vec3(3.0f);
    const Entity first = world.add(place, 1, EntityTypeId_Decal);
    const Entity second = world.addSelected({20.0f, 9.0f, 1.0f});
    entities.select(first, true);
    const glm::vec3 pivot = entities.pivot(first).position;
    commands.run(C::Replace);
    EXPECT_FALSE(entities.exists(first) || entities.exists(second));
    ASSERT_EQ(entities.selected().size(), 2u);
    EXPECT_EQ(world.instance(entities.active()).uValue, 22u);
    EXPECT_EQ(entities.pivot(entities.active()).position, pivot);
    EXPECT_EQ(world.instance(entities.active()).origin.scale, glm::vec3(3.0f));
    EXPECT_EQ(entities.count(), 4u);
}

TEST_F(EntityCommandsTest, coloursGoWhereTheirNamesAre)
{
    const Entity source = world.add({0.0f, 0.0f, 0.0f});
    const Entity target = world.add({5.0f, 0.0f, 0.0f});
    world.pAssets->edit(source.uId)->colors = {{"base", 0x11223344}, {"glow", 7}};
    entities.select(target, false);
    entities.select(source, true);
    commands.run(C::Copy);
    entities.select(target, false);
    world.sink.reset();
    commands.run(C::PasteColors);
    EXPECT_EQ(world.instance(target).colors, (tile::ColorMap{{"base", 0x11223344}, {"trim", 0}}));
    EXPECT_TRUE(world.sink.uChanged & ChangeEntityValues);
}

// Menu

void list(std::string& sText, const std::vector<EntityMenuItem>& vecItems, int iDepth)
{
    const auto keyText = [](uint32_t uAction) { return "<" + std::to_string(uAction) + ">"; };
    for (const EntityMenuItem& item : vecItems)
    {
        sText += std::string(static_cast<size_t>(iDepth), '.');
        sText += item.bSeparator ? "-" : item.text(keyText);
        sText += item.bEnabled ? "\n" : " off\n";
        list(sText, item.vecChildren, iDepth + 1);
    }
}

TEST_F(EntityCommandsTest, menuHasItsEntriesInOrderWithCountsAndKeys)
{
    std::string sText;
    world.addSelected({0.0f, 0.0f, 0.0f});
    world.addSelected({0.0f, 0.0f, 0.0f}, EntityTypeId_Prefab);
    world.add({0.0f, 0.0f, 0.0f}, 0, EntityTypeId_Decal);
    list(sText, buildEntityMenu(commands), 0);
    EXPECT_EQ(sText, R"(Transform
.[Reset <53>]
..Rotation
..Scale
.[Random Rotation <55>]
..X
..Y <56>
..Z
.[Round <54>]
..Rotation 90
..Rotation 45
..Rotation 10
..Rotation 1
..-
..Position 1.0
..Position 0.5
..Position 0.25
..-
..Scale 0.1
-
Camera
.Reset Rotation
.Reset Tilt
.Look At
.Correct Tangent off
-
Place
.[Move to Grid <41>] off
..XYZ off
..X off
..Y off
..Z <42> off
..Random in Sphere <58> off
..Random on Z Plane <57> off
.Move Grid To Selection <43> off
.Center <59>
.Move to Origin
.[Move to Ground <44>]
..And Rotate <45>
.[Place In-between] off
..Position off
..Scale off
..Rotation off
-
[Select All (3)]
.Assets (1)
.Harvestables (0) off
.Decals (1)
.Blueprints (0) off
.Nodes (0) off
.Prefabs (1)
Create Prefab (2) off
Un-Prefab (1) off
Open Prefab (fake 0) off
-
Copy <46>
Paste <47> off
[Paste Transform <49>] off
.Position <50> off
.Scale <52> off
.Rotation <51> off
Paste Colors off
-
Replace <48> off
Delete <6>
)");
}

TEST_F(EntityCommandsTest, menuEntriesNameCommandsThatRun)
{
    world.addSelected({0.0f, 0.0f, 0.0f});
    world.add({0.0f, 0.0f, 0.0f}, 0, EntityTypeId_Decal);
    const auto vecMenu = buildEntityMenu(commands);
    const auto itAll =
        std::find_if(vecMenu.begin(), vecMenu.end(),
                     [](const EntityMenuItem& item) { return item.sLabel == "[Select All (2)]"; });
    ASSERT_NE(itAll, vecMenu.end());
    commands.run(static_cast<C>(itAll->uCommand));
    EXPECT_EQ(entities.selected().size(), 2u);
    commands.run(static_cast<C>(itAll->vecChildren[2].uCommand));
    ASSERT_EQ(entities.selected().size(), 1u);
    EXPECT_EQ(entities.active().pType, world.pDecals);
    commands.run(static_cast<C>(itAll->vecChildren[3].uCommand)); // no blueprints
    EXPECT_EQ(entities.selected().size(), 1u);
    commands.run(static_cast<C>(250));
}

} // namespace
