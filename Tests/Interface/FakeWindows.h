#pragma once // Windows that only note what is asked of them.

#include "TileEditorCommon/Contracts/EditorInterfaceI.h"

#include <string>

struct FakeWindows : tilebuilder::EditorInterfaceI
{
    std::string sCalls;
    bool bTileSettings = false;

    [[nodiscard]] bool isMouseFree() const override { return true; }
    [[nodiscard]] bool hasNoKeyFocus() const override { return true; }
    [[nodiscard]] bool isMouseOverWidget() const override { return false; }
    [[nodiscard]] bool isEditing() const override { return false; }
    void showToolPanels(uint8_t) override {}
    void showNewWindow() override { sCalls += "newWindow;"; }
    void showOpenWindow() override { sCalls += "openWindow;"; }
    void showSaveAsWindow() override { sCalls += "saveAsWindow;"; }
    void toggleStatusOverlay() override { sCalls += "overlay;"; }
    void showTileSettingsWindow(bool bShow) override
    {
        bTileSettings = bShow;
        sCalls += "tileSettings;";
    }
    [[nodiscard]] bool isTileSettingsVisible() const override { return bTileSettings; }
    bool bOutliner = true;
    void toggleOutliner() override { bOutliner = !bOutliner; }
    [[nodiscard]] bool isOutlinerVisible() const override { return bOutliner; }
    void refresh(uint32_t) override {}
    void showMessage(std::string_view, std::string_view) override {}
    void askYesNo(std::string_view, std::string_view, std::function<void()>) override {}
    void showProgress(std::string_view, float) override {}
    void hideProgress() override {}
};
