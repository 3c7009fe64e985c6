#pragma once // Shows that something takes a while.

#include "TileEditorCommon/Contracts/EditorInterfaceI.h"

namespace tilebuilder
{

/// From construction to destruction the user sees a name and how far it is. Main thread only.
class ProgressScope
{
public:
    /// Without windows, or for work that is over in the blink of an eye, nothing shows.
    ProgressScope(EditorInterfaceI* pInterface, bool bLong, std::string sName)
        : m_pInterface(bLong ? pInterface : nullptr),
          m_sName(std::move(sName))
    {
        advance(0.0f);
    }
    ~ProgressScope()
    {
        if (m_pInterface)
            m_pInterface->hideProgress();
    }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    /// 0 to 1; draws at once.
    void advance(float fDone)
    {
        if (m_pInterface)
            m_pInterface->showProgress(m_sName, fDone);
    }

private:
    EditorInterfaceI* m_pInterface;
    std::string m_sName;
};

} // namespace tilebuilder
