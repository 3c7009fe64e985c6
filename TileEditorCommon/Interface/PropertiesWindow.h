#pragma once // The window with the values of the active entity.

#include "TileEditorCommon/Interface/PropertiesModel.h"
#include "TileEditorCommon/Interface/PropertyPanel.h"

#include <MyGUI_Prerequest.h>
#include <memory>

namespace tilebuilder
{

/// Fills "PropertiesView". A swatch makes its colour the target of the colour editor, which the
/// interface shows as long as isColorOpen().
class PropertiesWindow
{
public:
    /// All are borrowed.
    PropertiesWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips);
    ~PropertiesWindow();
    PropertiesWindow(const PropertiesWindow&) = delete;
    PropertiesWindow& operator=(const PropertiesWindow&) = delete;

    void setVisible(bool bVisible);
    [[nodiscard]] MyGUI::Widget* widget() const { return m_pWindow; }
    void refresh();
    /// Each frame.
    void update();
    /// Takes another size of the window.
    void place();
    [[nodiscard]] bool isColorOpen() const { return m_bColorOpen; }

private:
    void openColor(const ColorRgba& color, bool bAlpha, ColorEdit onEdit);
    void closeColor();
    [[nodiscard]] bool isColorWanted() const;

    MyGUI::Widget* m_pWindow;
    EditorActionsI& m_actions;
    PropertiesModel m_model;
    MyGUI::EditBox* m_pEmpty;
    std::unique_ptr<PropertyPanel> m_pPanel;
    ColorRgba m_color{1.0f, 1.0f, 1.0f, 1.0f}; ///< target of swatches whose owner brings none
    ColorEdit m_onColor;
    bool m_bColorOpen = false;
    bool m_bColorChanged = false; ///< its last change isn't told as the end of a drag yet
    Entity m_colorEntity;
};

} // namespace tilebuilder
