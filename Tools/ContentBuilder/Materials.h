#pragma once // The ground materials of the two sets, nine each.

#include "Tools/ContentBuilder/Canvas.h"

#include <span>

namespace content
{

struct Material
{
    const char* pFile; ///< below the game folder; files are named <pFile>_dif.png, _asg.png, _nor.png
    void (*fnPaint)(Canvas& canvas);
    float fRelief; ///< see Canvas::maps
    float fShade;
};

/// In the order of the sets' files.
[[nodiscard]] std::span<const Material> standardMaterials();
[[nodiscard]] std::span<const Material> autumnMaterials();

// Painters that the sets share

/// Crumbly earth: the floor under most materials. u, v: 0 to 1.
[[nodiscard]] Texel earth(float u, float v, const Colour& dark, const Colour& light, uint32_t uSeed);
void paintRock(Canvas& canvas);

} // namespace content
