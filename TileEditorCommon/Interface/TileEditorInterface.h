#pragma once // The windows and bars around the view.

#include "MyGuiCommon/GuiSystemManager.h"
#include "TileEditorCommon/Contracts/EditorInterfaceI.h"
#include "TileEditorCommon/Interface/KeyBindings.h"

#include <functional>
#include <memory>
#include <string>

class InputManager;
class PopUpManager;

namespace tilebuilder
{

class EditorActionsI;

/// Holds no state of the document: refresh() reads the editor object and sets every enable, check
/// mark, colour and text anew.
///
/// Owns the key table and binds the editor's actions to it. All widgets go and come back when the
/// GUI's size class changes.
/// Threads: main thread only.
class TileEditorInterface : public EditorInterfaceI, public GuiReloadListener
{
public:
    /// All are borrowed and outlive it. bInfoBox: there is a status overlay.
    TileEditorInterface(EditorActionsI& actions, GuiSystemManager& gui, PopUpManager& popUps,
                        const InputManager& input, bool bInfoBox = true);
    ~TileEditorInterface() override;
    TileEditorInterface(const TileEditorInterface&) = delete;
    TileEditorInterface& operator=(const TileEditorInterface&) = delete;

    /// Called to draw and show a frame at once, while long work reports its progress.
    void setDrawFrame(std::function<void()> fnDrawFrame) { m_fnDrawFrame = std::move(fnDrawFrame); }

    /// Runs the actions of this frame's keys and wheel steps; once a frame, before the editor's update.
    void updateKeys();
    /// For actions that are polled.
    [[nodiscard]] const KeyBindings& keys() const { return m_keys; }

    /// Shows the figures of the last second in the status overlay; each frame.
    void updateOverlay(uint32_t uFrames, double fCpuMs, double fGpuMs);

    /// MyGUI reports neither a widget under the mouse nor one with the keyboard.
    [[nodiscard]] bool isPointerFree() const;

    // EditorInterfaceI

    [[nodiscard]] bool isMouseFree() const override;
    [[nodiscard]] bool hasNoKeyFocus() const override;
    [[nodiscard]] bool isMouseOverWidget() const override;
    [[nodiscard]] bool isEditing() const override;
    void showToolPanels(uint8_t uTool) override;
    void showNewWindow() override;
    void showOpenWindow() override;
    void showSaveAsWindow() override;
    void toggleStatusOverlay() override;
    void refresh(uint32_t uMask) override;
    void showMessage(std::string_view sTitle, std::string_view sText) override;
    void askYesNo(std::string_view sTitle, std::string_view sText, std::function<void()> onYes) override;
    void showProgress(std::string_view sName, float fDone) override;
    void hideProgress() override;

    // GuiReloadListener

    void destroyWidgets() override;
    void createWidgets() override;
    void placeWidgets() override;

private:
    struct Face;

    void saveUnder(const std::string& sName);
    void hidePopups();

    EditorActionsI& m_actions;
    GuiSystemManager& m_gui;
    PopUpManager& m_popUps;
    KeyBindings m_keys;
    bool m_bInfoBox;
    std::function<void()> m_fnDrawFrame;
    std::unique_ptr<Face> m_pFace; ///< all widgets; null while the GUI starts anew
    bool m_bInfoHidden = false;
};

} // namespace tilebuilder
