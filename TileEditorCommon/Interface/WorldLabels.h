#pragma once // Texts that stand at places of the world, over the view.

#include "TileEditorCommon/Contracts/EditorActionsI.h"

#include <MyGUI_Prerequest.h>
#include <span>
#include <vector>

namespace tilebuilder
{

/// White labels below all windows, which the mouse goes through. Their widgets are kept from frame
/// to frame and go with the last of them.
class WorldLabels
{
public:
    WorldLabels() = default;
    ~WorldLabels();
    WorldLabels(const WorldLabels&) = delete;
    WorldLabels& operator=(const WorldLabels&) = delete;

    /// Shows these and no others; each frame. The pixel is a label's middle.
    void show(std::span<const WorldLabel> spanLabels);

private:
    std::vector<MyGUI::TextBox*> m_vecBoxes; ///< owned by the GUI's root
};

} // namespace tilebuilder
