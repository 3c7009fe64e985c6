#pragma once // What the windows and the key table ask of the editor object.

#include "KestrelCommon/Core/Uuid.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Contracts/EntityMenuItem.h"
#include "TileEditorCommon/Contracts/HistoryStatus.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tilebuilder
{

class EntityListI;
class LibrarySourceI;
struct LibraryPlacement;

/// A falloff that the brush window offers. The falloff is borrowed and lives as long as the program.
struct BrushChoice
{
    const Brush* pBrush = nullptr;
    std::string sName; ///< "Linear", "Smooth", "Rounded", "Sharp", "Solid", "Gauss"; also names the picture
};

/// A ground material set that can be bound.
struct MaterialSetChoice
{
    std::string sName;
    std::string sPath; ///< keyed path of the set's file
};

/// A ground material that can be painted.
struct MaterialChoice
{
    std::string sName;
    std::string sPicture; ///< keyed path of the colour map
};

/// The ground material set on the ground.
struct BoundMaterials
{
    uint64_t uHash = 0; ///< 0: none is bound
    std::string sPath;
    std::vector<MaterialChoice> vecMaterials; ///< in the order of their weights
};

/// A tile that the open window lists.
struct TileFile
{
    std::string sName;     ///< file name without folder and extension
    std::string sPath;     ///< keyed path of the file
    std::string sCategory; ///< "User", "Creative", "Survival" or the name of the context's item
    Uuid uuid;             ///< nil when the file's header can't be read
    /// Keyed path of the picture, or the bare name of the one that stands for a missing picture.
    std::string sPreviewPath;
    bool bWorkshop = false; ///< shared: its item has a number
};

/// A tile's mark as a member of one of the world generator's lists; 4 and 12 bits wide in the file.
struct TerrainCategory
{
    uint32_t uCategory = 0;
    uint32_t uIndex = 0; ///< in the list of that category

    bool operator==(const TerrainCategory&) const = default;
};

/// A text that stands at a place of the world, this frame.
struct WorldLabel
{
    std::string sText;
    std::array<float, 2> pixel{}; ///< of the client area, from the top left
};

/// What the status overlay and the wheel need of the camera.
struct CameraStatus
{
    std::array<float, 3> position{}; ///< metres in the world
    float flySpeed = 1.0f;
    bool flying = false; ///< the right button turns the view
};

/// A part of the game's content, or an item of the user's, that the asset library can leave out.
struct LibraryContent
{
    std::string sKey;       ///< of its keyed paths
    std::string sName;      ///< "Challenge", "Creative", "Survival", or the item's
    bool bWorkshop = false; ///< an item
};

/// The editor object as the interface sees it: values to show and operations to call. The windows
/// hold no document state; they read these at each refresh and write through them.
///
/// Strings that come back are copies. Main thread only.
class EditorActionsI
{
public:
    virtual ~EditorActionsI() = default;

    // Tools

    [[nodiscard]] virtual EditorToolState& toolState() = 0;
    /// Changes the tool and its panels; the interface becomes dirty in any case.
    virtual void setTool(uint8_t uTool) = 0;
    /// All falloffs in the order of their buttons.
    [[nodiscard]] virtual std::vector<BrushChoice> brushes() const = 0;

    // Ground materials and colours

    /// What the lists of the game's content name, read from disk.
    [[nodiscard]] virtual std::vector<MaterialSetChoice> materialSets() const = 0;
    [[nodiscard]] virtual BoundMaterials boundMaterials() const = 0;
    [[nodiscard]] virtual uint64_t boundMaterialHash() const = 0;
    /// True when a new set was bound; else the bound one stays. Changes no document.
    virtual bool bindMaterialSet(const std::string& sPath) = 0;
    /// What the colour editor and the eyedropper work on from now on; null: nothing. The target is
    /// borrowed until the next call; a kind of ColorTargetKind.
    virtual void setColorTarget(ColorRgba* pTarget, uint8_t uKind, ColorCallback onChanged,
                                ColorCallback onPicked) = 0;
    /// Writes the target and calls onColorChanged; nothing without a target.
    virtual void changeColor(const ColorRgba& color) = 0;
    /// The names of all clutter types, by global index.
    [[nodiscard]] virtual std::vector<std::string> clutterNames() const { return {}; }

    // Things on the tile

    /// Null in a program without entities.
    [[nodiscard]] virtual EntityListI* entities() { return nullptr; }
    /// What the asset library lists, in its order; borrowed, as long-lived as the editor object.
    [[nodiscard]] virtual std::span<LibrarySourceI* const> librarySources() { return {}; }
    [[nodiscard]] virtual std::vector<LibraryContent> libraryContents() const { return {}; }
    /// Arms a placement drag: what is placed follows the cursor until the button goes up.
    virtual void beginPlacement(const LibraryPlacement& /*placement*/) {}
    /// Takes the selected entities out of view and picking, until showHidden().
    virtual void hideSelection() {}
    virtual void showHidden() {}
    [[nodiscard]] virtual bool isOriginShown() const { return false; }
    virtual void toggleOrigin() {}
    /// Hands a file or folder to the desktop's own program for it; keyed path.
    virtual void openOutside(const std::string& /*sPath*/) {}
    virtual void copyText(const std::string& /*sText*/) {}

    // What is done to the selection

    /// A command by its number in the table of keys; nothing outside of the entity tool or when it
    /// can't run.
    virtual void runEntityAction(uint32_t /*uAction*/) {}
    [[nodiscard]] virtual bool canRunEntityAction(uint32_t /*uAction*/) const { return false; }
    /// The right-click menu as it stands now; "Paste" goes to where the cursor points at this call.
    [[nodiscard]] virtual std::vector<EntityMenuItem> entityMenu() { return {}; }
    /// An entry's command, while its condition holds.
    virtual void runEntityMenu(uint32_t /*uCommand*/) {}
    [[nodiscard]] virtual bool isSnapping() const { return false; }
    virtual void toggleSnapping() {}
    /// Whether things turn and grow around their model's own origin, else around their middle.
    [[nodiscard]] virtual bool transformsAroundOrigin() const { return false; }
    virtual void toggleTransformOrigin() {}

    // Document

    [[nodiscard]] virtual bool isDocumentOpen() const = 0;
    /// The document's present name and folder; both empty for a tile that was never saved.
    [[nodiscard]] virtual std::string documentName() const = 0;
    [[nodiscard]] virtual std::string documentDirectory() const = 0;
    [[nodiscard]] virtual Uuid documentUuid() const = 0;
    [[nodiscard]] virtual bool isUnsaved() const = 0;
    /// Keyed paths of the documents on the way to the open one, which is the last.
    [[nodiscard]] virtual std::vector<std::string> pathStack() const = 0;

    virtual void save() = 0;
    /// An empty directory has the tile make a new place for the file.
    virtual void saveAs(const std::string& sName, const std::string& sDirectory) = 0;
    /// Asks first when there are unsaved changes. Cells on a side.
    virtual void requestNewTile(int32_t iSize) = 0;
    /// Asks first when there are unsaved changes. The path stack becomes that path.
    virtual void openDocument(const std::string& sPath) = 0;
    /// Opens an entry of the path stack, below the last, and cuts the stack behind it.
    virtual void openStackLevel(size_t uLevel) = 0;
    /// The open document belongs to an item of the user's own, which may be deleted.
    [[nodiscard]] virtual bool canDeleteTile() const = 0;
    /// Asks first; the item's folder goes, and an empty tile opens.
    virtual void deleteTile() = 0;
    virtual void requestExit() = 0;
    /// All tiles that can be opened, looked up on disk, in the order of the list.
    [[nodiscard]] virtual std::vector<TileFile> tileFiles() const = 0;
    /// The categories that files can have in this run: the context's item, "User", what the game gives.
    [[nodiscard]] virtual std::vector<std::string> tileCategories() const = 0;
    /// The open document's; all 0 without one.
    [[nodiscard]] virtual TerrainCategory terrainCategory() const = 0;
    /// An undo step, unless it is the same. Nothing without a document.
    virtual void setTerrainCategory(const TerrainCategory& category) = 0;

    // History

    [[nodiscard]] virtual HistoryStatus history() const = 0;
    virtual void undo() = 0;
    virtual void redo() = 0;
    /// Opens the document's file again, after a question about unsaved changes.
    virtual void restoreFromDisk() = 0;
    /// Leaves one state of the open document and drops all documents that were left.
    virtual void resetUndoHistory() = 0;

    // View

    [[nodiscard]] virtual CameraStatus cameraStatus() const = 0;
    /// Clamped to 0.3 to 6.0 by the caller.
    virtual void setFlySpeed(float fSpeed) = 0;
    /// Moves the camera along its view, cancelling a glide. Metres.
    virtual void moveCameraForward(float fDistance) = 0;
    /// Where the ray through the cursor meets the ground or an object, 4000 m at most.
    [[nodiscard]] virtual std::optional<std::array<float, 3>> cursorHit() const = 0;
    /// Glides to the selection; with bLastOnly close up to the active entity.
    virtual void focusSelection(bool /*bLastOnly*/) {}
    /// The tile's character comes to where the ray through the cursor hits.
    virtual void placeCharacterAtCursor() {}
    /// The same with the tile's grid, on steps of 0.25 m; then it goes to the selection, if there is one.
    virtual void placeGridAtCursor() {}
    /// Makes the grid of the open document at its origin, or takes it away.
    virtual void toggleGrid() {}
    [[nodiscard]] virtual bool hasGrid() const { return false; }
    /// Metres; nothing without a grid entity.
    [[nodiscard]] virtual std::optional<float> gridSpacing() const = 0;
    /// What stands in the view in this frame.
    [[nodiscard]] virtual std::vector<WorldLabel> worldLabels() const = 0;

    /// The interface must refresh; bits of ChangeMask.
    virtual void markInterfaceDirty(uint32_t uMask) = 0;
};

} // namespace tilebuilder
