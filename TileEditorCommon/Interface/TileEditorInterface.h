#pragma once // The windows and bars around the view.

#include "MyGuiCommon/GuiSystemManager.h"
#include "TileEditorCommon/Contracts/EditorInterfaceI.h"

#include <MyGUI_Prerequest.h>
#include <functional>
#include <memory>
#include <string>

class PopUpManager;

namespace tilebuilder
{

class EditorActionsI;
class KeyBindings;

/// What the interface works with; all are borrowed and outlive it.
struct InterfaceParts
{
    GuiSystemManager& gui;
    PopUpManager& popUps;
    EditorActionsI& actions;
    KeyBindings& keys;
    bool bInfoBox = true;              ///< has the status overlay
    std::function<void()> fnDrawFrame; ///< draws and shows a frame at once, for progress; may be empty
};

/// Holds no state of the document: refresh() reads the editor object and sets every enable, check
/// mark, colour and text anew.
///
/// The constructor binds the editor's actions to the key table. All widgets go and come back when
/// the GUI's size class changes.
/// Threads: main thread only.
class TileEditorInterface : public EditorInterfaceI, public GuiReloadListener
{
public:
    explicit TileEditorInterface(const InterfaceParts& parts);
    ~TileEditorInterface() override;
    TileEditorInterface(const TileEditorInterface&) = delete;
    TileEditorInterface& operator=(const TileEditorInterface&) = delete;

    /// Shows the figures of the last second in the status overlay, and the world's labels; each frame.
    void updateOverlay(uint32_t uFrames, double fCpuMs, double fGpuMs);

    /// MyGUI reports neither a widget under the mouse nor one with the keyboard.
    [[nodiscard]] bool isPointerFree() const;

    void showHelpWindow();

    /// The right-click menu, null before it first opened; for tests.
    [[nodiscard]] MyGUI::PopupMenu* entityMenu() const;

    /// What the colour editor shows.
    [[nodiscard]] std::array<float, 4> editorColor() const;

    // EditorInterfaceI

    [[nodiscard]] bool isMouseFree() const override;
    [[nodiscard]] bool hasNoKeyFocus() const override;
    [[nodiscard]] bool isMouseOverWidget() const override;
    [[nodiscard]] bool isOverWindow() const override;
    [[nodiscard]] bool isEditing() const override;
    void showToolPanels(uint8_t uTool) override;
    void showNewWindow() override;
    void showOpenWindow() override;
    void showSaveAsWindow() override;
    void toggleStatusOverlay() override;
    void showTileSettingsWindow(bool bShow) override;
    [[nodiscard]] bool isTileSettingsVisible() const override { return m_bTileSettings; }
    void toggleOutliner() override;
    [[nodiscard]] bool isOutlinerVisible() const override { return m_bOutliner; }
    [[nodiscard]] bool isListed(uint32_t uEntityId) const override;
    void onContentChanged() override;
    void showEntityMenu(int iX, int iY) override;
    void refresh(uint32_t uMask) override;
    void showMessage(std::string_view sTitle, std::string_view sText) override;
    void askYesNo(std::string_view sTitle, std::string_view sText, std::function<void()> onYes) override;
    void showProgress(std::string_view sName, float fDone) override;
    void hideProgress() override;
    void setBusy(bool bBusy) override;

    // GuiReloadListener

    void destroyWidgets() override;
    void createWidgets() override;
    void placeWidgets() override;

private:
    struct Face;

    void saveUnder(const std::string& sName);
    void hidePopups();
    void showColorEditor();

    InterfaceParts m_parts;
    std::unique_ptr<Face> m_pFace; ///< all widgets; null while the GUI starts anew
    bool m_bInfoHidden = false;
    bool m_bTileSettings = false;
    bool m_bOutliner = true; ///< shown with the entity tool
    uint8_t m_uTool = 0;     ///< whose panels are shown
};

} // namespace tilebuilder
