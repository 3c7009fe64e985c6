#pragma once // The table of what can be done to the selection, by key or by menu.

#include "TileEditorCommon/Entities/EntityArrange.h"

#include <cstdint>
#include <optional>
#include <span>

namespace tilebuilder
{

class Entities;
class EntityClipboard;
class EntityDrag;

enum class EntityCommand : uint8_t
{
    None,
    Reset,
    ResetRotation,
    ResetScale,
    RandomRotation,
    RandomX,
    RandomY,
    RandomZ,
    Round,
    RoundRotation90,
    RoundRotation45,
    RoundRotation10,
    RoundRotation1,
    RoundPosition100,
    RoundPosition50,
    RoundPosition25,
    RoundScale,
    ClearRotation,
    ResetTilt,
    LookAt,
    CorrectTangent,
    MoveToGrid,
    MoveToGridXyz,
    MoveToGridX,
    MoveToGridY,
    MoveToGridZ,
    RandomInSphere,
    RandomOnPlane,
    GridToSelection,
    Center,
    MoveToOrigin,
    MoveToGround,
    MoveToGroundAndRotate,
    InBetween,
    InBetweenPosition,
    InBetweenScale,
    InBetweenRotation,
    SelectAll,
    SelectAssets,
    SelectHarvestables,
    SelectDecals,
    SelectBlueprints,
    SelectNodes,
    SelectPrefabs,
    CreatePrefab,
    UnPrefab,
    OpenPrefab,
    Copy,
    Paste,
    PasteTransform,
    PastePosition,
    PasteScale,
    PasteRotation,
    PasteColors,
    Replace,
    Delete,
    COUNT,
};

/// What an arranging command may need besides the things.
struct ArrangeContext
{
    Transform grid;
    Transform copied;
    RandomSource fnRandom;
    GroundCast fnCastGround;
};

struct EntityCommandInfo
{
    enum class Needs : uint8_t
    {
        Nothing,
        Grid,       ///< the tile's grid entity
        CopyThings, ///< something in the clipboard
        CopyPlace,  ///< a transform in the clipboard
        CopyColors,
        Never, ///< not there yet
    };

    EntityCommand eCommand = EntityCommand::None;
    uint8_t uAction = 0; ///< number in the table of keys; 0: none
    uint8_t uLeast = 0;  ///< so many must be selected
    Needs eNeeds = Needs::Nothing;
    void (*fnArrange)(ArrangedThings, const ArrangeContext&) = nullptr; ///< null: not by transforms alone
};

/// All commands, in the order of their numbers.
[[nodiscard]] std::span<const EntityCommandInfo> entityCommands();
/// None for an action that no command has.
[[nodiscard]] EntityCommand entityCommandByAction(uint32_t uAction);

/// Runs commands on the selection. Main thread only; borrows all.
class EntityCommands
{
public:
    EntityCommands(Entities& entities, EntityDrag& drag, EntityClipboard& clipboard, GroundCast fnCastGround,
                   RandomSource fnRandom);

    /// The condition under which the menu's entry is enabled.
    [[nodiscard]] bool canRun(EntityCommand eCommand) const { return canRun(eCommand, selectedCount()); }
    /// The same for those who ask about many and have counted.
    [[nodiscard]] bool canRun(EntityCommand eCommand, size_t uSelected) const;
    /// Nothing when it can't run. The point is where "Paste" goes; nothing is pasted without one.
    void run(EntityCommand eCommand, const std::optional<glm::vec3>& pastePoint = std::nullopt);

    [[nodiscard]] size_t selectedCount() const;
    [[nodiscard]] const Entities& entities() const { return m_entities; }

private:
    void runArranging(const EntityCommandInfo& info);
    void moveGridToSelection();
    [[nodiscard]] std::vector<ArrangedThing> selectedThings() const;

    Entities& m_entities;
    EntityDrag& m_drag;
    EntityClipboard& m_clipboard;
    GroundCast m_fnCastGround;
    RandomSource m_fnRandom;
};

} // namespace tilebuilder
