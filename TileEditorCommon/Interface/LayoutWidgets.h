#pragma once // Takes widgets out of a loaded layout by name.

#include "KestrelCommon/Core/Console.h"

#include <MyGUI_Widget.h>
#include <string>

namespace tilebuilder
{

/// A widget below another one, by name and class; null, with MyGUI's line or an error, when there
/// is none. The search sees what the layout made, not what skins made.
template <class T>
[[nodiscard]] T* findIn(MyGUI::Widget* pParent, const std::string& sName)
{
    MyGUI::Widget* pFound = pParent ? pParent->findWidget(sName) : nullptr;
    if (!pFound)
    {
        QM_LOG_ERROR("The layout has no widget '", sName, "'");
        return nullptr;
    }
    T* pCast = pFound->castType<T>(false);
    if (!pCast)
        QM_LOG_ERROR("Error cast type '", pFound->getTypeName(), "' to type '", T::getClassTypeName(), "'");
    return pCast;
}

} // namespace tilebuilder
