#include "Tests/Walk/WalkActions.h"

#include "TileEditorCommon/Entities/TransformTool.h"
#include "TileEditorCommon/Entities/TransformToolMesh.h"

#include <glm/trigonometric.hpp>
#include <numeric>

namespace tilebuilder
{

namespace
{

constexpr size_t s_uManyThings = 60;
constexpr const char* s_pDirectory = "$GAME_DATA";

void selectSome(WalkWorld& walk)
{
    std::vector<Entity> vecChosen;
    for (uint32_t i = 1 + walk.roll(4); i > 0; --i)
        if (const Entity entity = walk.someEntity())
            vecChosen.push_back(entity);
    walk.editor().entities()->select(vecChosen);
    walk.showProperties();
}

/// A command of the menu on something that is selected.
void runOnSome(WalkWorld& walk, EntityCommand eCommand)
{
    if (walk.entities().selected().empty())
        selectSome(walk);
    static_cast<void>(walk.editor().entityMenu());
    walk.editor().runEntityMenu(static_cast<uint32_t>(eCommand));
}

// Placing

void place(WalkWorld& walk)
{
    if (walk.entities().count() > s_uManyThings)
    {
        selectSome(walk);
        runOnSome(walk, EntityCommand::Delete);
        return;
    }
    LibraryPlacement placement;
    placement.eType = EntityTypeId_Asset;
    placement.uuid = WalkWorld::uuid(static_cast<uint8_t>(1 + walk.roll(WalkWorld::s_uAssets)));
    walk.button(true);
    walk.editor().beginPlacement(placement);
    for (uint32_t i = 1 + walk.roll(3); i > 0; --i)
        walk.moveTo(walk.somePlace());
    walk.button(false);
}

void placeAnywhere(WalkWorld& walk)
{
    if (walk.entities().count() > s_uManyThings)
        return;
    auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
    pPayload->uuid = WalkWorld::uuid(static_cast<uint8_t>(1 + walk.roll(WalkWorld::s_uAssets)));
    if (walk.roll(2))
        pPayload->setTags = {"cave", "spawn"};
    EntityCreateArgs args;
    args.eTypeId = EntityTypeId_Asset;
    args.transform.position = walk.somePlace();
    args.transform.scale = glm::vec3(walk.roll(4) ? 0.25f : 12.0f);
    args.pPayload = std::move(pPayload);
    walk.entities().createEntity(std::move(args));
}

// Moving

void interrupt(WalkWorld& walk);

/// A drag by the handle of an axis; with Shift copies go.
void dragHandle(WalkWorld& walk, uint8_t uMode, bool bClone, bool bInterrupt = false)
{
    if (walk.entities().selected().empty() || walk.entities().count() > s_uManyThings)
        selectSome(walk);
    const Entity active = walk.entities().active();
    if (!active)
        return;
    walk.editor().toolState().transformMode = uMode;
    const Transform pivot = walk.entities().pivot(active);
    const Camera& camera = walk.world.camera;
    const float fSize =
        ToolPose::sizeFor(pivot.position, camera.position, std::tan(glm::radians(camera.fov) * 0.5f));
    glm::vec3 along(0.0f);
    along[static_cast<int>(walk.roll(3))] = 1.0f;
    glm::vec3 grip = pivot.position + 0.7f * fSize * along;
    if (uMode == ModeScale)
    {
        along = glm::normalize(pivot.rotation) * along;
        grip = pivot.position + 0.7f * fSize * along;
    }
    if (uMode == ModeRotate)
    {
        // Where the ring is nearest to the eye, and along it.
        const glm::vec3 toEye = camera.position - pivot.position;
        const glm::vec3 outward = glm::normalize(toEye - along * glm::dot(along, toEye));
        grip = pivot.position + ToolShape::ringRadius * fSize * outward;
        along = glm::cross(along, outward);
    }
    if (bClone)
        walk.key(KeyShift, true);
    if (walk.moveTo(grip))
    {
        walk.button(true);
        for (uint32_t i = walk.roll(3); i > 0; --i)
            walk.moveTo(grip + walk.between(-0.5f, 1.5f) * fSize * along);
        if (bInterrupt)
        {
            interrupt(walk);
            walk.moveTo(grip + fSize * along);
        }
        walk.button(false);
    }
    if (bClone)
        walk.key(KeyShift, false);
    walk.editor().toolState().transformMode = ModeTranslate;
}

void moveByHandle(WalkWorld& walk)
{
    dragHandle(walk, ModeTranslate, false);
}
void cloneByHandle(WalkWorld& walk)
{
    if (walk.entities().count() < s_uManyThings)
        dragHandle(walk, ModeTranslate, true);
}
void scaleByHandle(WalkWorld& walk)
{
    dragHandle(walk, ModeScale, false);
}
void turnByHandle(WalkWorld& walk)
{
    dragHandle(walk, ModeRotate, false);
}

void dragOverGround(WalkWorld& walk)
{
    selectSome(walk);
    walk.moveTo(walk.somePlace());
    walk.button(true, 2);
    walk.moveTo(walk.somePlace());
    if (walk.roll(6) == 0)
    {
        interrupt(walk);
        walk.moveTo(walk.somePlace());
    }
    walk.button(false, 2);
}

/// As typed into the panel.
void setValues(WalkWorld& walk)
{
    selectSome(walk);
    EntityListI& list = *walk.editor().entities();
    const Entity entity = walk.entities().active();
    if (!entity)
        return;
    Transform pivot = list.pivot(entity);
    if (walk.roll(3))
        pivot.position = walk.somePlace();
    else
        pivot.scale =
            glm::vec3(walk.between(0.1f, 12.0f), walk.between(0.1f, 2.0f), walk.between(-2.0f, 2.0f));
    list.setPivot(entity, pivot);
}

void arrange(WalkWorld& walk)
{
    selectSome(walk);
    runOnSome(walk,
              static_cast<EntityCommand>(1 + walk.roll(static_cast<uint32_t>(EntityCommand::SelectAll) - 1)));
}

// Clipboard, colours

void copy(WalkWorld& walk)
{
    selectSome(walk);
    runOnSome(walk, EntityCommand::Copy);
}

void paste(WalkWorld& walk)
{
    if (walk.entities().count() > s_uManyThings)
        return;
    walk.moveTo(walk.somePlace());
    runOnSome(walk, EntityCommand::Paste);
}

void pasteValues(WalkWorld& walk)
{
    constexpr auto uFirst = static_cast<uint32_t>(EntityCommand::PasteTransform);
    selectSome(walk);
    runOnSome(walk, static_cast<EntityCommand>(uFirst + walk.roll(5)));
}

void replace(WalkWorld& walk)
{
    selectSome(walk);
    runOnSome(walk, EntityCommand::Replace);
}

void remove(WalkWorld& walk)
{
    selectSome(walk);
    runOnSome(walk, EntityCommand::Delete);
}

void colour(WalkWorld& walk)
{
    selectSome(walk);
    const Entity active = walk.entities().active();
    tile::ColorMap mapColors = walk.entities().colors(active);
    for (auto& [sSlot, uColor] : mapColors)
        if (walk.roll(2))
            uColor = static_cast<uint32_t>(walk.random());
    walk.entities().setColors(active, mapColors);
}

// Selection and view

void click(WalkWorld& walk)
{
    const Entity entity = walk.someEntity();
    if (!entity || !walk.moveTo(walk.entities().pivot(entity).position))
        return;
    const bool bControl = walk.roll(3) == 0;
    if (bControl)
        walk.key(KeyControl, true);
    walk.button(true);
    walk.button(false);
    if (bControl)
        walk.key(KeyControl, false);
}

void selectByMenu(WalkWorld& walk)
{
    runOnSome(walk, walk.roll(2) ? EntityCommand::SelectAll : EntityCommand::SelectAssets);
}

void hide(WalkWorld& walk)
{
    selectSome(walk);
    walk.editor().hideSelection();
}

void show(WalkWorld& walk)
{
    walk.editor().showHidden();
}

void helpers(WalkWorld& walk)
{
    walk.moveTo(walk.somePlace());
    switch (walk.roll(4))
    {
    case 0:
        walk.editor().toggleGrid();
        break;
    case 1:
        walk.editor().placeGridAtCursor();
        break;
    case 2:
        walk.editor().placeCharacterAtCursor();
        break;
    default:
        if (const Entity character = walk.entities().character())
            walk.entities().removeEntity(character, true);
    }
}

void switches(WalkWorld& walk)
{
    if (walk.roll(2))
        walk.editor().toggleTransformOrigin();
    else
        walk.editor().toggleSnapping();
    walk.editor().toolState().viewMask = walk.roll(4) ? EditorToolState::s_uDefaultViewMask : 8;
}

// Ground and document

void sculpt(WalkWorld& walk)
{
    walk.editor().setTool(ToolHeight);
    walk.moveTo(walk.somePlace());
    walk.button(true);
    walk.world.frames(2, 0.05f);
    walk.button(false);
    walk.editor().setTool(ToolPlace);
}

void undo(WalkWorld& walk)
{
    walk.chord('Z', false);
}

void redo(WalkWorld& walk)
{
    const bool bLast = walk.tile().stateIndex() + 1 >= walk.tile().states().size();
    walk.chord('Z', !bLast); // of the last state there is nothing to redo
}

void save(WalkWorld& walk)
{
    walk.editor().saveAs(walk.roll(4) ? "walk.tile" : "other.tile", s_pDirectory);
    if (walk.world.windows.fnOnYes)
        std::exchange(walk.world.windows.fnOnYes, nullptr)();
}

/// The file as it was saved, or a document that was left as it was.
void reload(WalkWorld& walk)
{
    if (walk.editor().pathStack().empty())
        return;
    const auto vecLeft = walk.editor().history().vecCached;
    if (walk.roll(2))
        walk.editor().restoreFromDisk();
    else if (vecLeft.empty() || walk.roll(2))
        walk.editor().openDocument(walk.editor().pathStack().back());
    else
        walk.editor().openDocument(vecLeft[walk.roll(static_cast<uint32_t>(vecLeft.size()))].sPath);
    if (walk.world.windows.fnOnYes)
        std::exchange(walk.world.windows.fnOnYes, nullptr)();
    walk.look();
}

void begin(WalkWorld& walk)
{
    walk.editor().newTile(1 + static_cast<int32_t>(walk.roll(4) == 0));
    walk.look();
    for (int i = 0; i < 5; ++i)
        placeAnywhere(walk);
}

/// A tile without ground, from a file.
void beginWithoutGround(WalkWorld& walk)
{
    Tile bare({walk.editor(), walk.editor().surface(), walk.editor().clutter()});
    bare.create(WalkWorld::uuid(99), 1, 1, 1, 1);
    bare.writeFile("bare.tile", s_pDirectory, tile::WritePlain);
    walk.editor().openTile(std::string(s_pDirectory) + "/bare.tile", true);
    walk.look();
    for (int i = 0; i < 5; ++i)
        placeAnywhere(walk);
}

/// What keys and windows can do while the mouse is down.
void interrupt(WalkWorld& walk)
{
    constexpr void (*s_arrInterruptions[])(WalkWorld&) = {undo,   redo, remove, replace,  paste, selectByMenu,
                                                          colour, hide, save,   switches, begin, reload};
    s_arrInterruptions[walk.roll(static_cast<uint32_t>(std::size(s_arrInterruptions)))](walk);
    // A hand is slower than the frames after a restore, whose changes are its own.
    walk.world.frames(2, 0.016f);
}

void interruptedDrag(WalkWorld& walk)
{
    if (walk.entities().count() < s_uManyThings)
        dragHandle(walk, static_cast<uint8_t>(walk.roll(3)), walk.roll(3) == 0, true);
}

void interruptedPlacement(WalkWorld& walk)
{
    LibraryPlacement placement;
    placement.eType = EntityTypeId_Asset;
    placement.uuid = WalkWorld::uuid(static_cast<uint8_t>(1 + walk.roll(WalkWorld::s_uAssets)));
    walk.button(true);
    walk.editor().beginPlacement(placement);
    walk.moveTo(walk.somePlace());
    interrupt(walk);
    walk.moveTo(walk.somePlace());
    walk.button(false);
}

constexpr WalkAction s_arrActions[] = {
    {"place", 10, place},
    {"place anywhere", 12, placeAnywhere},
    {"move by handle", 10, moveByHandle},
    {"clone by handle", 6, cloneByHandle},
    {"scale by handle", 5, scaleByHandle},
    {"turn by handle", 5, turnByHandle},
    {"drag over the ground", 6, dragOverGround},
    {"set values", 8, setValues},
    {"arrange", 10, arrange},
    {"copy", 4, copy},
    {"paste", 6, paste},
    {"paste values", 4, pasteValues},
    {"replace", 5, replace},
    {"remove", 5, remove},
    {"colour", 8, colour},
    {"click", 6, click},
    {"select by menu", 2, selectByMenu},
    {"hide", 3, hide},
    {"show", 2, show},
    {"helpers", 4, helpers},
    {"switches", 3, switches},
    {"sculpt", 2, sculpt},
    {"undo", 12, undo},
    {"redo", 14, redo},
    {"save", 3, save},
    {"reload", 3, reload},
    {"begin", 1, begin},
    {"begin without ground", 1, beginWithoutGround},
    {"interrupted drag", 5, interruptedDrag},
    {"interrupted placement", 4, interruptedPlacement},
};

} // namespace

std::span<const WalkAction> walkActions()
{
    return s_arrActions;
}

const WalkAction& someWalkAction(WalkWorld& walk)
{
    constexpr uint32_t uAll =
        std::accumulate(std::begin(s_arrActions), std::end(s_arrActions), 0u,
                        [](uint32_t uSum, const WalkAction& action) { return uSum + action.uWeight; });
    uint32_t uRoll = walk.roll(uAll);
    const WalkAction* pAction = s_arrActions;
    for (; uRoll >= pAction->uWeight; ++pAction)
        uRoll -= pAction->uWeight;
    return *pAction;
}

} // namespace tilebuilder
