#include "TileEditorCommon/Interface/KeyBindings.h"

#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputManager.h"

namespace tilebuilder
{

bool KeyBindings::isActive(const KeyBinding& binding) const
{
    return !m_bFlying && binding.uVk < InputManager::s_uKeyCount &&
           m_input.keyState[binding.uVk] == InputPressed &&
           m_input.modsAtPress(binding.uVk) == binding.uMods &&
           (m_bNoKeyFocus || !binding.bNeedsNoKeyFocus) && (m_bPointerFree || !binding.bNeedsPointerFree);
}

bool KeyBindings::isActive(uint32_t uId) const
{
    const auto it = m_mapKeys.find(uId);
    return it != m_mapKeys.end() && isActive(it->second);
}

void KeyBindings::update(bool bPointerFree, bool bNoKeyFocus, bool bFlying)
{
    m_bPointerFree = bPointerFree;
    m_bNoKeyFocus = bNoKeyFocus;
    m_bFlying = bFlying;

    // A handler may bind, so those that run are taken first.
    std::vector<std::function<void()>> vecKeys;
    for (const auto& [uId, binding] : m_mapKeys)
        if (binding.fnHandler && isActive(binding))
            vecKeys.push_back(binding.fnHandler);
    const int32_t iSteps = m_input.iWheelDelta / 120;
    std::vector<std::function<void(int32_t)>> vecWheel;
    for (const auto& [uId, binding] : m_mapWheel)
        if (binding.fnHandler && iSteps != 0 && m_input.mods() == binding.uMods &&
            (bNoKeyFocus || !binding.bNeedsNoKeyFocus) && (bPointerFree || !binding.bNeedsPointerFree))
            vecWheel.push_back(binding.fnHandler);

    for (const auto& fnHandler : vecKeys)
        fnHandler();
    for (const auto& fnHandler : vecWheel)
        fnHandler(iSteps);
}

std::string KeyBindings::text(uint32_t uId) const
{
    const auto it = m_mapKeys.find(uId);
    if (it == m_mapKeys.end())
        return {};
    std::string sText = "#BBBBBB(";
    if (it->second.uMods & ModControl)
        sText += "ctrl+";
    if (it->second.uMods & ModShift)
        sText += "shift+";
    if (it->second.uMods & ModAlt)
        sText += "alt+";
    sText += keyName(it->second.uVk);
    return sText + ")";
}

} // namespace tilebuilder
