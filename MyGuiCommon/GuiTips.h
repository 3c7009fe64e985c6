#pragma once // Tips: small texts that appear when the mouse rests on a widget.

#include <MyGUI_Prerequest.h>
#include <memory>
#include <string>

/// Lives as long as the widgets do; one at a time. Main thread only.
class GuiTips
{
public:
    GuiTips();
    ~GuiTips();
    GuiTips(const GuiTips&) = delete;
    GuiTips& operator=(const GuiTips&) = delete;

    /// Sets or replaces a widget's tip; colour tags as in captions. An empty text takes it away.
    void set(MyGUI::Widget* pWidget, const std::string& sText);
    void hide();

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
