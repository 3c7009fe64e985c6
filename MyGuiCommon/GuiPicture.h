#pragma once // Pictures for the interface.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Rows from the top, four bytes a pixel: red, green, blue, alpha, not premultiplied.
struct GuiPicture
{
    int iWidth = 0;
    int iHeight = 0;
    std::vector<uint8_t> vecPixels;
};

/// Reads a picture file of any common format. Nothing, with one error line, when that fails or a
/// side is above 8192. Clear pixels beside drawn ones take their colour, so that drawing at
/// another size leaves no dark rim.
[[nodiscard]] std::optional<GuiPicture> loadGuiPicture(const std::string& sRealPath);
