#pragma once // An editor object that only notes what the windows ask of it.

#include "Tests/Interface/FakeEntities.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/LibrarySourceI.h"

#include <string>
#include <vector>

struct FakeActions : tilebuilder::EditorActionsI
{
    tilebuilder::EditorToolState state;
    tilebuilder::CameraStatus camera;
    bool bOpen = true;
    bool bUnsaved = false;
    bool bOwn = true;
    std::string sName;
    std::string sDirectory;
    std::vector<std::string> vecStack;
    std::vector<tilebuilder::TileFile> vecFiles;
    std::vector<std::string> vecCategories{"User", "Creative"};
    tilebuilder::TerrainCategory category;
    std::vector<tilebuilder::WorldLabel> vecLabels;
    std::vector<tilebuilder::MaterialSetChoice> vecSets;
    tilebuilder::BoundMaterials bound;
    bool bBinds = true; ///< a set that is asked for is bound
    tilebuilder::HistoryStatus status;
    FakeEntities things;
    std::vector<tilebuilder::LibrarySourceI*> vecSources;
    std::vector<tilebuilder::LibraryContent> vecContents;
    std::string sCalls; ///< one word a call, in order

    FakeActions() { state.pBrush = brush(1); }

    /// Stands for a falloff; only its address counts.
    static const tilebuilder::Brush* brush(size_t uIndex)
    {
        static const int s_arrPlaces[6] = {};
        return reinterpret_cast<const tilebuilder::Brush*>(&s_arrPlaces[uIndex]);
    }

    bool bSnap = false;
    bool bAroundOrigin = false;
    std::vector<tilebuilder::EntityMenuItem> vecEntityMenu;

    void runEntityAction(uint32_t uAction) override { note("entity " + std::to_string(uAction)); }
    [[nodiscard]] std::vector<tilebuilder::EntityMenuItem> entityMenu() override { return vecEntityMenu; }
    void runEntityMenu(uint32_t uCommand) override { note("command " + std::to_string(uCommand)); }
    [[nodiscard]] bool isSnapping() const override { return bSnap; }
    void toggleSnapping() override { bSnap = !bSnap; }
    [[nodiscard]] bool transformsAroundOrigin() const override { return bAroundOrigin; }
    void toggleTransformOrigin() override { bAroundOrigin = !bAroundOrigin; }

    void note(const std::string& sCall) { sCalls += sCall + ";"; }

    tilebuilder::EditorToolState& toolState() override { return state; }
    void setTool(uint8_t uTool) override
    {
        state.tool = uTool;
        note("tool " + std::to_string(uTool));
    }
    [[nodiscard]] std::vector<tilebuilder::BrushChoice> brushes() const override
    {
        std::vector<tilebuilder::BrushChoice> vecChoices;
        for (const char* pName : {"Linear", "Smooth", "Rounded", "Sharp", "Solid", "Gauss"})
            vecChoices.push_back({brush(vecChoices.size()), pName});
        return vecChoices;
    }
    [[nodiscard]] std::vector<tilebuilder::MaterialSetChoice> materialSets() const override
    {
        return vecSets;
    }
    [[nodiscard]] tilebuilder::BoundMaterials boundMaterials() const override { return bound; }
    [[nodiscard]] uint64_t boundMaterialHash() const override { return bound.uHash; }
    bool bindMaterialSet(const std::string& sPath) override
    {
        note("bind " + sPath);
        return bBinds;
    }
    void setColorTarget(tilebuilder::ColorRgba* pTarget, uint8_t uKind, tilebuilder::ColorCallback onChanged,
                        tilebuilder::ColorCallback onPicked) override
    {
        state.pColorTarget = pTarget;
        state.colorTargetKind = uKind;
        state.onColorChanged = std::move(onChanged);
        state.onColorPicked = std::move(onPicked);
    }
    void changeColor(const tilebuilder::ColorRgba& color) override
    {
        note("color");
        if (state.pColorTarget)
            *state.pColorTarget = color;
    }
    [[nodiscard]] tilebuilder::EntityListI* entities() override { return &things; }
    [[nodiscard]] std::span<tilebuilder::LibrarySourceI* const> librarySources() override
    {
        return vecSources;
    }
    [[nodiscard]] std::vector<tilebuilder::LibraryContent> libraryContents() const override
    {
        return vecContents;
    }
    void beginPlacement(const tilebuilder::LibraryPlacement& placement) override
    {
        note("place " + std::to_string(placement.eType) + " " + std::to_string(placement.uIndex));
    }
    void hideSelection() override { note("hide"); }
    void showHidden() override { note("showHidden"); }
    void toggleOrigin() override { note("origin"); }
    void toggleGrid() override { note("grid"); }
    void openOutside(const std::string& sPath) override { note("outside " + sPath); }
    void copyText(const std::string& sText) override { note("copy " + sText); }
    [[nodiscard]] bool isDocumentOpen() const override { return bOpen; }
    [[nodiscard]] std::string documentName() const override { return sName; }
    [[nodiscard]] std::string documentDirectory() const override { return sDirectory; }
    [[nodiscard]] Uuid documentUuid() const override { return {}; }
    [[nodiscard]] bool isUnsaved() const override { return bUnsaved; }
    [[nodiscard]] tilebuilder::HistoryStatus history() const override { return status; }
    [[nodiscard]] bool canDeleteTile() const override { return bOwn; }
    void deleteTile() override { note("delete"); }
    void undo() override { note("undo"); }
    void redo() override { note("redo"); }
    void restoreFromDisk() override { note("restore"); }
    void resetUndoHistory() override { note("reset"); }
    [[nodiscard]] std::vector<std::string> pathStack() const override { return vecStack; }
    void save() override { note("save"); }
    void saveAs(const std::string& sNew, const std::string& sFolder) override
    {
        note("saveAs " + sNew + "|" + sFolder);
    }
    void requestNewTile(int32_t iSize) override { note("new " + std::to_string(iSize)); }
    void openDocument(const std::string& sPath) override { note("open " + sPath); }
    void openStackLevel(size_t uLevel) override { note("level " + std::to_string(uLevel)); }
    void requestExit() override { note("exit"); }
    [[nodiscard]] std::vector<tilebuilder::TileFile> tileFiles() const override { return vecFiles; }
    [[nodiscard]] std::vector<std::string> tileCategories() const override { return vecCategories; }
    [[nodiscard]] tilebuilder::TerrainCategory terrainCategory() const override { return category; }
    void setTerrainCategory(const tilebuilder::TerrainCategory& chosen) override
    {
        category = chosen;
        note("category " + std::to_string(chosen.uCategory) + "/" + std::to_string(chosen.uIndex));
    }
    [[nodiscard]] std::vector<tilebuilder::WorldLabel> worldLabels() const override { return vecLabels; }
    [[nodiscard]] tilebuilder::CameraStatus cameraStatus() const override { return camera; }
    void setFlySpeed(float fSpeed) override { camera.flySpeed = fSpeed; }
    void moveCameraForward(float fDistance) override
    {
        note("forward " + std::to_string(static_cast<int>(fDistance)));
    }
    [[nodiscard]] std::optional<std::array<float, 3>> cursorHit() const override
    {
        return std::array{12.5f, 40.25f, 3.0f};
    }
    [[nodiscard]] std::optional<float> gridSpacing() const override { return std::nullopt; }
    void markInterfaceDirty(uint32_t) override { note("dirty"); }
};
