#pragma once // The window that makes a new tile.

#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>
#include <array>
#include <cstdint>
#include <functional>

class GuiTips;

namespace tilebuilder
{

class EditorActionsI;

struct TileSizeChoice
{
    const char* pLabel;
    int32_t iCells; ///< on a side
};
inline constexpr std::array<TileSizeChoice, 5> s_arrTileSizes{
    TileSizeChoice{"Small", 1}, {"Medium", 2}, {"Large", 4}, {"XL", 8}, {"XXL", 16}};

/// Five buttons in "NewWindow". A click makes the tile and closes the window.
class TileCreateWindow
{
public:
    /// All are borrowed.
    TileCreateWindow(MyGUI::Window* pWindow, EditorActionsI& actions, GuiTips& tips,
                     std::function<void()> fnClose);

    [[nodiscard]] MyGUI::Window* window() const { return m_pWindow; }
    void show();

private:
    void onSize(MyGUI::Widget* pSender);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onWindowButton(MyGUI::Window* pSender, const std::string& sName);

    MyGUI::Window* m_pWindow;
    EditorActionsI& m_actions;
    std::function<void()> m_fnClose;
    std::array<MyGUI::Widget*, s_arrTileSizes.size()> m_arrButtons{};
};

} // namespace tilebuilder
