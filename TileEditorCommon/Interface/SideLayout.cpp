#include "TileEditorCommon/Interface/SideLayout.h"

#include <algorithm>
#include <cmath>

namespace tilebuilder
{

namespace
{

// Units

constexpr int s_iMargin = 12;
constexpr int s_iGap = 8;
constexpr int s_iPropertiesWidth = 264;
constexpr int s_iLibraryFrame = 62; ///< what the library needs besides its rows
constexpr int s_iLibraryRow = 84;
constexpr int s_iLibraryWidth = 576;
constexpr int s_iWideLibrary = 768;
constexpr int s_iWideView = 1500; ///< from here on the library is wide
constexpr int s_iHighView = 900;  ///< from here on it has three rows
constexpr int s_iLeastHeight = 96;

} // namespace

SideLayout sideLayout(const SideFrame& frame)
{
    const auto px = [&](int iUnits)
    { return static_cast<int>(std::lround(static_cast<float>(iUnits) * frame.fScale)); };
    SideLayout layout;
    const int iMargin = px(s_iMargin);
    const int iBottom = frame.iHeight - iMargin;
    const int iTop = frame.iBarBottom + iMargin;

    const int iRows = frame.iHeight >= px(s_iHighView) ? 3 : 2;
    const int iLibraryHeight = px(s_iLibraryFrame + iRows * s_iLibraryRow);
    const int iWanted = px(frame.iWidth >= px(s_iWideView) ? s_iWideLibrary : s_iLibraryWidth);
    layout.library = {iMargin, std::max(iTop, iBottom - iLibraryHeight),
                      std::max(1, std::min(iWanted, frame.iWidth - 2 * iMargin)), iLibraryHeight};
    layout.properties = {iMargin, iTop, px(s_iPropertiesWidth),
                         std::max(px(s_iLeastHeight), layout.library.iTop - px(s_iGap) - iTop)};
    const int iOutlinerTop = frame.colorEditor.bottom() + px(s_iGap);
    layout.outliner = {frame.colorEditor.iLeft, iOutlinerTop, frame.colorEditor.iWidth,
                       std::max(px(s_iLeastHeight), iBottom - iOutlinerTop)};
    return layout;
}

} // namespace tilebuilder
