#pragma once // Boxes that stand before everything else: messages, questions, a line of text, progress.

#include "KestrelCommon/Core/UserMessageI.h"
#include "MyGuiCommon/GuiSystemManager.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// One box shows at a time; others wait in the order of their calls. While one shows, a backdrop
/// takes the mouse. Enter means Ok, Yes or Confirm, Escape means Ok, No or Cancel, Tab changes
/// between the buttons. The box has the keyboard at once.
///
/// Titles and texts may hold language tags, "#{NAME}"; a title of capitals and underscores alone
/// is such a name itself. Other text shows as it is.
/// Handlers run in update(), after their box has gone.
/// Threads: main thread only.
class PopUpManager : public UserMessageI, public GuiReloadListener
{
public:
    /// Borrows the GUI system, which must be loaded.
    explicit PopUpManager(GuiSystemManager& gui);
    ~PopUpManager() override;
    PopUpManager(const PopUpManager&) = delete;
    PopUpManager& operator=(const PopUpManager&) = delete;

    // UserMessageI
    void showMessage(std::string_view sTitle, std::string_view sText) override;

    /// Either handler may be empty.
    void askYesNo(std::string_view sTitle, std::string_view sText, std::function<void()> fnYes,
                  std::function<void()> fnNo = {});

    /// A line of text, at most that many characters; the initial text is selected whole.
    void askText(std::string_view sTitle, size_t uLimit, std::string_view sInitial,
                 std::function<void(const std::string&)> fnConfirm);

    /// Shows or moves the progress of long work, before all other boxes; 0 to 1. The caller draws.
    void showProgress(std::string_view sName, float fDone);
    void hideProgress();

    /// Runs the handler of the box that the user closed, and shows the next.
    void update();

    [[nodiscard]] bool isOpen() const;

    // GuiReloadListener
    void destroyWidgets() override;
    void createWidgets() override;
    void placeWidgets() override;

private:
    struct Box;
    struct Face;

    void showFront();

    GuiSystemManager& m_gui;
    std::deque<std::unique_ptr<Box>> m_boxes;
    std::unique_ptr<Box> m_pProgress;
    std::unique_ptr<Face> m_pFace; ///< of the box that shows
};
