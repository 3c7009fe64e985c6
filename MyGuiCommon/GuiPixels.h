#pragma once // Textures of the interface that are made in code. Main thread only.

#include <array>
#include <functional>
#include <string>

namespace GuiPixels
{

/// Red, green, blue and alpha, 0 to 1.
using Colour = std::array<float, 4>;

/// Fills a texture of that name, making it when it is missing. The function gives the colour at the
/// middle of each pixel; x and y are 0 to 1, y downwards. The texture lives as long as the GUI.
void fill(const std::string& sName, int iWidth, int iHeight,
          const std::function<Colour(float x, float y)>& fnColour);

/// How much of a picture's width a thumbnail shows.
inline constexpr float s_fMiddle = 0.625f;
inline constexpr float s_fWhole = 1.0f;

/// The name of a texture that shows the middle of a picture file at that size in pixels, opaque or, with
/// bClear, as clear as the file; read at the first call, and again once the file was written anew. A file
/// that can't be read shows as clear, with one error line. The path is keyed or real.
[[nodiscard]] std::string thumbnail(const std::string& sPath, int iWidth, int iHeight,
                                    float fPart = s_fMiddle, bool bClear = false);

} // namespace GuiPixels
