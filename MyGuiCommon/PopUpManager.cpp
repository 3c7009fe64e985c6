#include "MyGuiCommon/PopUpManager.h"

#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/GuiMetrics.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_Gui.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ProgressBar.h>
#include <MyGUI_RenderManager.h>

using GuiMetrics::px;

namespace
{

constexpr int s_iWidth = 400;
constexpr int s_iPadding = 20;
constexpr int s_iTitleHeight = 24;
constexpr int s_iButtonWidth = 96;
constexpr int s_iButtonHeight = 28;
constexpr int s_iProgressSteps = 1000;
constexpr float s_fBackdropAlpha = 0.6f;

/// Language tags stay tags; any other "#" shows as it is, as in a file's name.
std::string shownText(std::string_view sText)
{
    std::string sShown;
    for (size_t i = 0; i < sText.size(); ++i)
    {
        sShown += sText[i];
        if (sText[i] == '#' && (i + 1 == sText.size() || sText[i + 1] != '{'))
            sShown += '#';
    }
    return sShown;
}

/// A name of the language table becomes a tag.
std::string shownTitle(std::string_view sTitle)
{
    const bool bName =
        !sTitle.empty() && sTitle.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_") == std::string_view::npos;
    return bName ? "#{" + std::string(sTitle) + "}" : shownText(sTitle);
}

} // namespace

/// What a box shows and does.
struct PopUpManager::Box
{
    enum class Kind
    {
        Message,
        YesNo,
        Text,
        Progress,
    };

    Kind eKind = Kind::Message;
    std::string sTitle;
    std::string sText; ///< the message; of a Text box what the user typed so far
    size_t uLimit = 0;
    float fDone = 0.0f;
    std::function<void()> fnYes;
    std::function<void()> fnNo;
    std::function<void(const std::string&)> fnConfirm;
    bool bClosed = false;
    bool bAccepted = false;

    void close(bool bAccept)
    {
        bClosed = true;
        bAccepted = bAccept;
    }
};

/// The widgets of a box.
struct PopUpManager::Face
{
    Box& box;
    MyGUI::Widget* pBackdrop = nullptr;
    MyGUI::Widget* pPanel = nullptr;
    MyGUI::EditBox* pMessage = nullptr;
    MyGUI::EditBox* pEdit = nullptr;
    MyGUI::ProgressBar* pBar = nullptr;
    EditorButton* pAccept = nullptr;
    EditorButton* pRefuse = nullptr;

    explicit Face(Box& boxIn);
    ~Face() { MyGUI::Gui::getInstance().destroyWidget(pBackdrop); }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    [[nodiscard]] MyGUI::Widget* firstFocus() const;
    EditorButton* addButton(const char* pSkin, const char* pCaption);
    int addBody(int iTop, int iInner);
    void addButtons(int iTop);
    void place();
    void onButton(MyGUI::Widget* pSender);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onAccept(MyGUI::EditBox*) { box.close(true); }
    void onText(MyGUI::EditBox* pSender) { box.sText = std::string(pSender->getOnlyText()); }
};

PopUpManager::Face::Face(Box& boxIn) : box(boxIn)
{
    const MyGUI::IntSize& view = MyGUI::RenderManager::getInstance().getViewSize();
    pBackdrop = MyGUI::Gui::getInstance().createWidgetT("Widget", "WhiteSkin",
                                                        MyGUI::IntCoord(0, 0, view.width, view.height),
                                                        MyGUI::Align::Stretch, "Message");
    pBackdrop->setColour(MyGUI::Colour::Black);
    pBackdrop->setAlpha(s_fBackdropAlpha);
    pPanel = pBackdrop->createWidgetT("Widget", "QM_Window", MyGUI::IntCoord(0, 0, px(s_iWidth), 100),
                                      MyGUI::Align::Default);
    pPanel->setInheritsAlpha(false);
    const int iInner = px(s_iWidth - 2 * s_iPadding);
    auto* pTitle = pPanel->createWidget<MyGUI::TextBox>(
        "QM_TitleText", MyGUI::IntCoord(px(s_iPadding), px(s_iPadding - 4), iInner, px(s_iTitleHeight)),
        MyGUI::Align::Default);
    pTitle->setCaptionWithReplacing(shownTitle(box.sTitle));
    int iTop = addBody(px(s_iPadding + s_iTitleHeight + 4), iInner);
    if (box.eKind != Box::Kind::Progress)
    {
        addButtons(iTop);
        iTop += px(s_iButtonHeight + s_iPadding);
    }
    pPanel->setSize(px(s_iWidth), iTop);
    place();
}

/// The part between title and buttons; where the buttons begin.
int PopUpManager::Face::addBody(int iTop, int iInner)
{
    const int iLeft = px(s_iPadding);
    if (box.eKind == Box::Kind::Text)
    {
        pEdit = pPanel->createWidget<MyGUI::EditBox>(
            "QM_EditBox", MyGUI::IntCoord(iLeft, iTop, iInner, px(28)), MyGUI::Align::Default, "PopUpEdit");
        pEdit->setMaxTextLength(box.uLimit);
        pEdit->setOnlyText(box.sText);
        pEdit->setTextSelection(0, pEdit->getTextLength());
        pEdit->eventEditSelectAccept += MyGUI::newDelegate(this, &Face::onAccept);
        pEdit->eventEditTextChange += MyGUI::newDelegate(this, &Face::onText);
        pEdit->eventKeyButtonPressed += MyGUI::newDelegate(this, &Face::onKey);
        return iTop + px(28 + s_iPadding);
    }
    if (box.eKind == Box::Kind::Progress)
    {
        pBar = pPanel->createWidget<MyGUI::ProgressBar>(
            "QM_Progress", MyGUI::IntCoord(iLeft, iTop, iInner, px(8)), MyGUI::Align::Default);
        pBar->setProgressRange(s_iProgressSteps);
        pBar->setProgressPosition(static_cast<size_t>(box.fDone * s_iProgressSteps));
        return iTop + px(8 + s_iPadding);
    }
    pMessage = pPanel->createWidget<MyGUI::EditBox>(
        "QM_WrapText", MyGUI::IntCoord(iLeft, iTop, iInner, px(24)), MyGUI::Align::Default);
    pMessage->setCaptionWithReplacing(shownText(box.sText));
    const int iHeight = std::max(pMessage->getTextSize().height, px(24));
    pMessage->setSize(iInner, iHeight);
    return iTop + iHeight + px(s_iPadding);
}

EditorButton* PopUpManager::Face::addButton(const char* pSkin, const char* pCaption)
{
    auto* pButton = pPanel->createWidget<EditorButton>(
        pSkin, MyGUI::IntCoord(0, 0, px(s_iButtonWidth), px(s_iButtonHeight)), MyGUI::Align::Default);
    pButton->setCaptionWithReplacing(pCaption);
    pButton->eventMouseButtonClick += MyGUI::newDelegate(this, &Face::onButton);
    pButton->eventKeyButtonPressed += MyGUI::newDelegate(this, &Face::onKey);
    return pButton;
}

void PopUpManager::Face::addButtons(int iTop)
{
    const bool bTwo = box.eKind != Box::Kind::Message;
    const bool bText = box.eKind == Box::Kind::Text;
    pAccept = addButton("QM_AccentButton", !bTwo ? "#{MENU_OK}" : bText ? "#{MENU_CONFIRM}" : "#{MENU_YES}");
    if (bTwo)
        pRefuse = addButton("QM_Button", bText ? "#{MENU_CANCEL}" : "#{MENU_NO}");
    const int iRight = px(s_iWidth - s_iPadding - s_iButtonWidth);
    pAccept->setPosition(iRight, iTop);
    if (pRefuse)
        pRefuse->setPosition(iRight - px(s_iButtonWidth + 8), iTop);
}

void PopUpManager::Face::place()
{
    const MyGUI::IntSize& view = MyGUI::RenderManager::getInstance().getViewSize();
    pBackdrop->setSize(view);
    pPanel->setPosition((view.width - pPanel->getWidth()) / 2, (view.height - pPanel->getHeight()) / 2);
}

MyGUI::Widget* PopUpManager::Face::firstFocus() const
{
    return pEdit ? static_cast<MyGUI::Widget*>(pEdit) : pAccept;
}

void PopUpManager::Face::onButton(MyGUI::Widget* pSender)
{
    box.close(pSender == pAccept);
}

void PopUpManager::Face::onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Escape)
        box.close(box.eKind == Box::Kind::Message);
    else if (key == MyGUI::KeyCode::Tab)
    {
        std::vector<MyGUI::Widget*> vecOrder;
        for (MyGUI::Widget* pWidget :
             {static_cast<MyGUI::Widget*>(pEdit), static_cast<MyGUI::Widget*>(pRefuse),
              static_cast<MyGUI::Widget*>(pAccept)})
            if (pWidget)
                vecOrder.push_back(pWidget);
        const auto itNow = std::find(vecOrder.begin(), vecOrder.end(), pSender);
        const size_t uNext = (static_cast<size_t>(itNow - vecOrder.begin()) + 1) % vecOrder.size();
        MyGUI::InputManager::getInstance().setKeyFocusWidget(vecOrder[uNext]);
    }
}

PopUpManager::PopUpManager(GuiSystemManager& gui) : m_gui(gui)
{
    m_gui.addListener(this);
}

PopUpManager::~PopUpManager()
{
    m_gui.removeListener(this);
    m_pFace.reset();
}

bool PopUpManager::isOpen() const
{
    return m_pProgress || !m_boxes.empty();
}

void PopUpManager::showMessage(std::string_view sTitle, std::string_view sText)
{
    auto pBox = std::make_unique<Box>();
    pBox->sTitle = sTitle;
    pBox->sText = sText;
    m_boxes.push_back(std::move(pBox));
    showFront();
}

void PopUpManager::askYesNo(std::string_view sTitle, std::string_view sText, std::function<void()> fnYes,
                            std::function<void()> fnNo)
{
    auto pBox = std::make_unique<Box>();
    pBox->eKind = Box::Kind::YesNo;
    pBox->sTitle = sTitle;
    pBox->sText = sText;
    pBox->fnYes = std::move(fnYes);
    pBox->fnNo = std::move(fnNo);
    m_boxes.push_back(std::move(pBox));
    showFront();
}

void PopUpManager::askText(std::string_view sTitle, size_t uLimit, std::string_view sInitial,
                           std::function<void(const std::string&)> fnConfirm)
{
    auto pBox = std::make_unique<Box>();
    pBox->eKind = Box::Kind::Text;
    pBox->sTitle = sTitle;
    pBox->sText = sInitial;
    pBox->uLimit = uLimit;
    pBox->fnConfirm = std::move(fnConfirm);
    m_boxes.push_back(std::move(pBox));
    showFront();
}

void PopUpManager::showProgress(std::string_view sName, float fDone)
{
    if (!m_pProgress || m_pProgress->sTitle != sName)
    {
        m_pFace.reset();
        m_pProgress = std::make_unique<Box>();
        m_pProgress->eKind = Box::Kind::Progress;
        m_pProgress->sTitle = sName;
    }
    m_pProgress->fDone = std::clamp(fDone, 0.0f, 1.0f);
    showFront();
    if (m_pFace && m_pFace->pBar)
        m_pFace->pBar->setProgressPosition(static_cast<size_t>(m_pProgress->fDone * s_iProgressSteps));
}

void PopUpManager::hideProgress()
{
    if (!m_pProgress)
        return;
    m_pFace.reset();
    m_pProgress.reset();
    showFront();
}

/// Makes the face of the box whose turn it is, unless it is there.
void PopUpManager::showFront()
{
    Box* pFront = m_pProgress ? m_pProgress.get() : m_boxes.empty() ? nullptr : m_boxes.front().get();
    if (m_pFace && &m_pFace->box == pFront)
        return;
    m_pFace.reset();
    if (!pFront || !MyGUI::Gui::getInstancePtr())
        return;
    m_pFace = std::make_unique<Face>(*pFront);
    MyGUI::InputManager::getInstance().setKeyFocusWidget(m_pFace->firstFocus());
}

void PopUpManager::update()
{
    if (m_boxes.empty() || !m_boxes.front()->bClosed)
        return;
    const std::unique_ptr<Box> pBox = std::move(m_boxes.front());
    m_boxes.pop_front();
    if (m_pFace && &m_pFace->box == pBox.get())
        m_pFace.reset();
    showFront();
    if (pBox->bAccepted && pBox->fnYes)
        pBox->fnYes();
    if (!pBox->bAccepted && pBox->fnNo)
        pBox->fnNo();
    if (pBox->bAccepted && pBox->fnConfirm)
        pBox->fnConfirm(pBox->sText);
}

void PopUpManager::destroyWidgets()
{
    m_pFace.reset();
}

void PopUpManager::createWidgets()
{
    showFront();
}

void PopUpManager::placeWidgets()
{
    if (m_pFace)
        m_pFace->place();
}
