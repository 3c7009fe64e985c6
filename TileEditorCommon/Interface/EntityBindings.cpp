#include "TileEditorCommon/Interface/EntityBindings.h"

#include "KestrelCommon/Platform/VirtualKeys.h"
#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/KeyBindings.h"

namespace tilebuilder
{

namespace
{

struct EntityKey
{
    uint8_t uAction;
    uint32_t uVk;
    uint32_t uMods;
    bool bNeedsNoKeyFocus = true;
};

constexpr EntityKey s_arrKeys[] = {
    {6, KeyDelete, 0, false},
    {41, 'G', ModControl},
    {42, 'G', ModControl | ModShift},
    {43, 'G', ModControl | ModShift | ModAlt},
    {44, 'H', ModControl},
    {45, 'H', ModControl | ModShift},
    {46, 'C', ModControl},
    {47, 'V', ModControl},
    {48, 'V', ModControl | ModShift},
    {49, 'T', ModControl},
    {50, 'Q', ModControl},
    {51, 'W', ModControl},
    {52, 'E', ModControl},
    {53, 'R', ModControl},
    {54, 'R', ModControl | ModShift},
    {55, 'U', 0},
    {56, 'U', ModShift},
    {57, 'U', ModShift | ModAlt},
    {58, 'U', ModControl | ModShift | ModAlt},
    {59, 'C', ModShift},
};

} // namespace

void bindEntityActions(KeyBindings& keys, EditorActionsI& actions)
{
    for (const EntityKey& key : s_arrKeys)
        keys.bind(key.uAction,
                  {.uVk = key.uVk,
                   .uMods = key.uMods,
                   .bNeedsNoKeyFocus = key.bNeedsNoKeyFocus,
                   .fnHandler = [&actions, uAction = key.uAction] { actions.runEntityAction(uAction); }});
    keys.bind(ActionSnap,
              {.uVk = 'S', .bNeedsNoKeyFocus = false, .fnHandler = [&actions] { actions.toggleSnapping(); }});
    keys.bind(ActionPivot, {.uVk = 'X', .fnHandler = [&actions] { actions.toggleTransformOrigin(); }});
}

std::string entityMenuCaption(const EntityMenuItem& item, const KeyBindings& keys)
{
    EntityMenuItem escaped;
    escaped.sLabel = escapeCaption(item.sLabel);
    escaped.uAction = item.uAction;
    std::string sCaption = escaped.text(
        [&](uint32_t uAction)
        {
            // Greyed out as a whole: the key's own colour would outshine the label.
            const std::string sKey = keys.text(uAction);
            const size_t uText = sKey.find('(');
            return item.bEnabled || uText == std::string::npos ? sKey : sKey.substr(uText);
        });
    // Room for the arrow.
    if (!item.vecChildren.empty())
        sCaption += "    ";
    return sCaption;
}

} // namespace tilebuilder
