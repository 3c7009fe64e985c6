#pragma once // Shows a help page.

#include <MyGUI_Prerequest.h>
#include <string_view>

/// Fills a scroll view with the paragraphs of a page, at the view's width.
namespace TileEditorHyperTextBox
{

/// Replaces what the view shows and goes to its top.
void show(MyGUI::ScrollView& view, std::string_view sPage);

} // namespace TileEditorHyperTextBox
