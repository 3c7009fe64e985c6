#pragma once // Writes pictures to disk.

#include <cstdint>
#include <filesystem>
#include <span>

namespace content
{

/// RGBA bytes, top row first, as PNG or, for ".tga", as TGA. Without alpha when all of it is 255.
[[nodiscard]] bool writeImage(const std::filesystem::path& path, int iWidth, int iHeight,
                              std::span<const uint8_t> spanRgba);

} // namespace content
