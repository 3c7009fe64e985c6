#pragma once // What the editor object asks of the windows around the view.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tilebuilder
{

/// Main thread only. A program without windows gives the editor object none.
class EditorInterfaceI
{
public:
    virtual ~EditorInterfaceI() = default;

    // Input

    /// No widget under the mouse, and the key focus, if any, not on an edit box.
    [[nodiscard]] virtual bool isMouseFree() const = 0;
    /// No widget has the keyboard.
    [[nodiscard]] virtual bool hasNoKeyFocus() const = 0;
    /// The mouse is over a widget.
    [[nodiscard]] virtual bool isMouseOverWidget() const = 0;
    /// A window lies under the cursor, even while a widget elsewhere holds the mouse.
    [[nodiscard]] virtual bool isOverWindow() const { return false; }
    /// The key focus is on an edit box.
    [[nodiscard]] virtual bool isEditing() const = 0;

    // Windows

    virtual void showToolPanels(uint8_t uTool) = 0;
    virtual void showNewWindow() = 0;
    virtual void showOpenWindow() = 0;
    virtual void showSaveAsWindow() = 0;
    virtual void toggleStatusOverlay() = 0;
    virtual void showTileSettingsWindow(bool bShow) = 0;
    [[nodiscard]] virtual bool isTileSettingsVisible() const = 0;
    /// What can be placed comes from other contents than before.
    virtual void onContentChanged() {}
    virtual void toggleOutliner() {}
    [[nodiscard]] virtual bool isOutlinerVisible() const { return false; }

    /// The right-click menu of the entity tool, at a client pixel.
    virtual void showEntityMenu(int /*iX*/, int /*iY*/) {}
    /// Whether a click may take this entity: a visible outliner lets only those pass that it lists.
    [[nodiscard]] virtual bool isListed(uint32_t /*uEntityId*/) const { return true; }

    /// Reads the editor object and sets every widget anew; bits of ChangeMask.
    virtual void refresh(uint32_t uMask) = 0;

    // Messages

    virtual void showMessage(std::string_view sTitle, std::string_view sText) = 0;
    /// Calls onYes when the user agrees; nothing on No.
    virtual void askYesNo(std::string_view sTitle, std::string_view sText, std::function<void()> onYes) = 0;
    /// Shows or, at the end, hides progress on long work; draws a frame at once. 0 to 1.
    virtual void showProgress(std::string_view sName, float fDone) = 0;
    virtual void hideProgress() = 0;
    /// From true to false the pointer says that the program is busy; calls nest.
    virtual void setBusy(bool /*bBusy*/) {}
};

} // namespace tilebuilder
