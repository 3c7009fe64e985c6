#pragma once // What must be true after everything that a user does, worked out the slow way.

#include "Tests/Walk/WalkWorld.h"
#include "TileEditorCommon/Document/EntitySections.h"
#include "TileEditorCommon/Interface/OutlinerModel.h"

#include <map>
#include <set>

namespace tilebuilder
{

/// What the files hold of the assets: one text for each, in any order.
using WalkContent = std::multiset<std::string>;

/// Compares what is kept, cached and followed with what a look at every single entity gives.
/// Failures are those of the test framework.
class WalkChecks
{
public:
    explicit WalkChecks(WalkWorld& walk);

    /// After an action; what it did is a step already. pAction: its name.
    void check(const std::string& sAction);

private:
    void checkList();
    void checkSelection();
    void checkPlaces();
    void checkRays();
    void checkOutliner();
    void checkHistory(const std::string& sAction);
    void checkImage();
    void checkFiles();
    [[nodiscard]] size_t cellOf(const Entity& entity, StoredForm eForm) const;
    [[nodiscard]] WalkContent living(StoredForm eForm) const;
    [[nodiscard]] WalkContent stored(std::span<const std::byte> spanImage) const;
    [[nodiscard]] TileState writeAfresh(uint32_t uFlags);

    WalkWorld& m_walk;
    EntitySections m_sections;
    OutlinerModel m_outliner;
    OutlinerModel m_searched;
    uint32_t m_uErrors;                          ///< lines up to the last check
    std::map<uint64_t, WalkContent> m_mapStates; ///< by the hash of the image
    std::map<uint32_t, std::string> m_mapBefore; ///< content by id, after the last action
    uint64_t m_uState = 0;                       ///< hash of the image then
};

} // namespace tilebuilder
