#pragma once // Shows that something takes a while.

#include "TileEditorCommon/Contracts/EditorInterfaceI.h"

namespace tilebuilder
{

/// From construction to destruction the pointer is a busy one, and of long work the user sees a name and how
/// far it is. Main thread only.
class ProgressScope
{
public:
    /// Without windows nothing shows.
    ProgressScope(EditorInterfaceI* pInterface, bool bLong, std::string sName)
        : m_pInterface(pInterface),
          m_bLong(bLong),
          m_sName(std::move(sName))
    {
        if (m_pInterface)
            m_pInterface->setBusy(true);
        advance(0.0f);
    }
    ~ProgressScope()
    {
        if (m_pInterface && m_bLong)
            m_pInterface->hideProgress();
        if (m_pInterface)
            m_pInterface->setBusy(false);
    }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    /// 0 to 1; draws at once.
    void advance(float fDone)
    {
        if (m_pInterface && m_bLong)
            m_pInterface->showProgress(m_sName, fDone);
    }

private:
    EditorInterfaceI* m_pInterface;
    bool m_bLong;
    std::string m_sName;
};

/// The busy pointer alone, for work of about a second at most.
class BusyScope : public ProgressScope
{
public:
    explicit BusyScope(EditorInterfaceI* pInterface) : ProgressScope(pInterface, false, {}) {}
};

} // namespace tilebuilder
