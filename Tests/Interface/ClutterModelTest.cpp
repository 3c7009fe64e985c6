#include "TileEditorCommon/Interface/ClutterModel.h"

#include "Tests/Interface/FakeActions.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

struct ClutterActions : FakeActions
{
    std::vector<std::string> vecNames{"Grass", "Fern", "Reeds"};
    [[nodiscard]] std::vector<std::string> clutterNames() const override { return vecNames; }
};

TEST(ClutterModelTest, checkedTypesAreTheSelectionInAscendingOrder)
{
    ClutterActions actions;
    actions.state.clutterSelection = {1};
    ClutterModel model(actions);
    ASSERT_EQ(model.entries().size(), 3u);
    EXPECT_EQ(model.entries()[2].sLabel, "Reeds");
    EXPECT_TRUE(model.entries()[1].bChecked);

    model.toggle(2);
    model.toggle(0);
    EXPECT_EQ(actions.state.clutterSelection, (std::vector<uint8_t>{0, 1, 2}));
    model.toggle(1);
    EXPECT_EQ(actions.state.clutterSelection, (std::vector<uint8_t>{0, 2}));
    model.toggle(3); // no such type
    model.toggle(255);
    EXPECT_EQ(actions.state.clutterSelection, (std::vector<uint8_t>{0, 2}));

    actions.state.clutterSelection = {1, 254};
    EXPECT_TRUE(model.update());
    EXPECT_FALSE(model.update());
    EXPECT_FALSE(model.entries()[0].bChecked);
    EXPECT_TRUE(model.entries()[1].bChecked);
}

TEST(ClutterModelTest, moreTypesThanFlagsAreTold)
{
    LogCapture log;
    ClutterActions actions;
    actions.vecNames.assign(254, "x");
    const ClutterModel model(actions);
    EXPECT_EQ(model.entries().size(), 254u);
    EXPECT_EQ(log.errors(), 0u);
    actions.vecNames.assign(255, "x");
    EXPECT_EQ(model.entries().size(), 254u);
    EXPECT_TRUE(log.has("grassNameList.size() < (sizeof(*RtlpNumberOf(GrassValues)))"));
}

} // namespace
