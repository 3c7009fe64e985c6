#pragma once // The window with the help pages.

#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>
#include <array>
#include <functional>
#include <string>
#include <vector>

namespace MyGUI
{
class Button;
}

namespace tilebuilder
{

struct HelpPage
{
    const char* pTab;
    const char* pFile; ///< below s_pHelpFolder
};
inline constexpr const char* s_pHelpFolder = "$GAME_DATA/Gui/Language/English/EditorHelp/";
inline constexpr std::array<HelpPage, 8> s_arrHelpPages{HelpPage{"Camera", "CameraHelp.html"},
                                                        {"Brush", "BrushHelp.html"},
                                                        {"Tool", "ToolHelp.html"},
                                                        {"Assets", "AssetHelp.html"},
                                                        {"Terrain Height", "TerrainHeightHelp.html"},
                                                        {"Ground Texture", "GroundTextureHelp.html"},
                                                        {"Ground Color", "GroundColorHelp.html"},
                                                        {"Grass Clutter", "ClutterGrassHelp.html"}};

/// Tabs down the left side of "HelpWindow", a page right of them.
class HelpWindow
{
public:
    /// The window is borrowed.
    HelpWindow(MyGUI::Window* pWindow, std::function<void()> fnClose);

    void show();

private:
    void select(size_t uPage);
    void onTab(MyGUI::Widget* pSender);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onWindowButton(MyGUI::Window* pSender, const std::string& sName);

    MyGUI::Window* m_pWindow;
    std::function<void()> m_fnClose;
    MyGUI::ScrollView* m_pPage = nullptr;
    std::vector<MyGUI::Button*> m_vecTabs;
    size_t m_uSelected = 0;
};

} // namespace tilebuilder
