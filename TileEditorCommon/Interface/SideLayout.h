#pragma once // Where the side windows of the entity tool stand. No GUI.

namespace tilebuilder
{

/// Pixels from the top left of the view.
struct SideCoord
{
    int iLeft = 0;
    int iTop = 0;
    int iWidth = 0;
    int iHeight = 0;

    [[nodiscard]] int right() const { return iLeft + iWidth; }
    [[nodiscard]] int bottom() const { return iTop + iHeight; }
    bool operator==(const SideCoord&) const = default;
};

/// What the places hang on, pixels.
struct SideFrame
{
    int iWidth = 1280; ///< of the whole view
    int iHeight = 720;
    int iBarBottom = 36;
    SideCoord colorEditor; ///< where it is or would be
    float fScale = 1.0f;   ///< pixels a unit
};

/// The library stands in the bottom left corner, the properties above it, the outliner at the right
/// edge below the place of the colour editor. Larger views give the library more rows.
struct SideLayout
{
    SideCoord library;
    SideCoord properties;
    SideCoord outliner;
};
[[nodiscard]] SideLayout sideLayout(const SideFrame& frame);

} // namespace tilebuilder
