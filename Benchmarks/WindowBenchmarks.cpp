// The windows of the entity tool: the search in the library, the outliner after a move.

#include "Benchmarks/Harness.h"
#include "Tests/Entities/FakeKind.h"
#include "Tests/Interface/FakeActions.h"
#include "Tests/Interface/FakeSource.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Editor/EntityListView.h"
#include "TileEditorCommon/Interface/LibraryModel.h"
#include "TileEditorCommon/Interface/OutlinerModel.h"
#include "TileEditorCommon/Interface/TileSearch.h"

namespace
{

using namespace bench;
using namespace tilebuilder;

constexpr uint32_t s_uItems = 5000;
constexpr uint32_t s_uEntities = 20000;

int search()
{
    constexpr std::string_view s_sName = "search in a library of 5,000 items";
    if (!isWanted(s_sName))
        return 0;
    FakeActions actions;
    FakeSource source;
    constexpr std::array<const char*, 5> s_arrKinds{"rock_granite", "tree_pine", "fence_wood", "Wall_Stone",
                                                    "lamp"};
    constexpr std::array<const char*, 4> s_arrSizes{"small", "medium", "large", "huge"};
    for (uint32_t i = 0; i < s_uItems; ++i)
        source.add(LibraryItemKind::Asset,
                   std::string(s_arrKinds[i % 5]) + "_" + s_arrSizes[i % 4] + "_" + std::to_string(i),
                   "$GAME_DATA", {s_arrKinds[i % 5]});
    actions.vecSources = {&source};
    actions.vecContents = {{"$GAME_DATA", "Creative", false}};
    LibraryModel model(actions);

    std::vector<std::string> vecNames;
    for (const LibraryItem& item : source.vecItems)
        vecNames.push_back(lowered(item.sName));
    const std::vector<std::string> vecWords{"stone", "large"};
    std::vector<uint32_t> vecFound;
    const auto floor = [&]
    {
        vecFound.clear();
        for (uint32_t i = 0; i < vecNames.size(); ++i)
        {
            bool bAll = true;
            for (const std::string& sWord : vecWords)
                bAll = bAll && vecNames[i].find(sWord) != std::string::npos;
            if (bAll)
                vecFound.push_back(i);
        }
        keep(vecFound);
    };
    const auto equal = [&]
    {
        bool bEqual = vecFound.size() == model.count() && !vecFound.empty();
        for (size_t i = 0; bEqual && i < vecFound.size(); ++i)
            bEqual = model.item(i).sName == source.vecItems[vecFound[i]].sName;
        return bEqual;
    };
    return run({.sName = std::string(s_sName),
                .fLimit = 2.0,
                .fnFloor = floor,
                .fnProduct = [&] { model.setSearch("Stone LARGE"); },
                .fnEqual = equal,
                .iRepeat = 20})
               ? 0
               : 1;
}

int outliner()
{
    constexpr std::string_view s_sName = "outliner after one of 20,000 entities moved";
    if (!isWanted(s_sName))
        return 0;
    struct ListedActions : FakeActions
    {
        EntityListI* pList = nullptr;
        EntityListI* entities() override { return pList; }
    };
    FakeWorld world;
    std::vector<Entity> vecEntities;
    for (uint32_t i = 0; i < s_uEntities; ++i)
        vecEntities.push_back(
            world.add(glm::vec3(static_cast<float>(i % 64), static_cast<float>(i / 640), 0.0f)));
    EntityListView list(world.entities);
    ListedActions actions;
    actions.pList = &list;
    OutlinerModel model(actions);
    list.select(std::array{vecEntities[777]});
    model.update(ChangeSelection);
    float fMove = 0.0f;
    size_t uRebuilt = 0;
    return run({.sName = std::string(s_sName),
                .fnProduct =
                    [&]
                {
                    fMove = fMove > 50.0f ? 0.0f : fMove + 0.25f;
                    list.setPivot(vecEntities[777], {.position = glm::vec3(fMove, 5.0f, 0.0f)});
                    uRebuilt += model.update(ChangeEntitySet).bRows ? 1 : 0;
                },
                .fnEqual = [&] { return uRebuilt == 0 && model.rowCount() == s_uEntities + 1; },
                .iRepeat = 20,
                .fMaxMs = 1.0})
               ? 0
               : 1;
}

int windows()
{
    return search() + outliner();
}

const Registration s_registration(windows);

} // namespace
