#include "MyGuiCommon/TileEditorHyperTextBox.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/HyperText.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_Gui.h>
#include <MyGUI_ScrollView.h>

using GuiMetrics::px;

namespace
{

using Kind = HyperTextBlock::Kind;

/// How a kind of paragraph stands on the page; lengths in units.
struct BlockStyle
{
    const char* pFont;
    const char* pColour;
    int iBefore;
    int iIndent;
};

BlockStyle styleOf(Kind eKind)
{
    switch (eKind)
    {
    case Kind::Title:
        return {"QM_Title", "#E6E8EB", 0, 0};
    case Kind::Header:
        return {"QM_Strong", "#E6E8EB", 14, 0};
    case Kind::Item:
        return {"QM_LabelSmall", "#E6E8EB", 4, 14};
    case Kind::Note:
        return {"QM_LabelTiny", "#9AA3AE", 14, 0};
    case Kind::Text:
        break;
    }
    return {"QM_LabelSmall", "#E6E8EB", 8, 0};
}

} // namespace

namespace TileEditorHyperTextBox
{

void show(MyGUI::ScrollView& view, std::string_view sPage)
{
    while (view.getChildCount() > 0)
        MyGUI::Gui::getInstance().destroyWidget(view.getChildAt(0));
    view.setViewOffset({});
    const int iWidth = view.getViewCoord().width - px(12);
    int iTop = 0;
    for (const HyperTextBlock& block : parseHyperText(sPage))
    {
        const BlockStyle style = styleOf(block.eKind);
        iTop += px(style.iBefore);
        const int iIndent = px(style.iIndent);
        auto* pText = view.createWidget<MyGUI::EditBox>(
            "QM_WrapText", MyGUI::IntCoord(iIndent, iTop, iWidth - iIndent, px(16)), MyGUI::Align::Default);
        pText->setFontName(style.pFont);
        pText->setTextColour(MyGUI::Colour::parse(style.pColour));
        pText->setCaption(block.sCaption);
        pText->setSize(iWidth - iIndent, pText->getTextSize().height);
        if (block.eKind == Kind::Item)
        {
            auto* pBullet = view.createWidget<MyGUI::TextBox>(
                "QM_TextDim", MyGUI::IntCoord(px(2), iTop, iIndent, pText->getHeight()),
                MyGUI::Align::Default);
            pBullet->setTextAlign(MyGUI::Align::Left | MyGUI::Align::Top);
            pBullet->setFontName(style.pFont);
            pBullet->setCaption("\xE2\x80\xA2");
        }
        iTop += pText->getHeight();
    }
    view.setCanvasSize(iWidth, iTop + px(8));
}

} // namespace TileEditorHyperTextBox
