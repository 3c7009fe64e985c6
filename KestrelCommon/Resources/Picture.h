#pragma once // Pictures in memory and on disk.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace resource
{

/// Four bytes a pixel, R, G, B, A; top row first, no gaps.
struct Picture
{
    int iWidth = 0;
    int iHeight = 0;
    std::vector<std::byte> vecPixels;
};

/// PNG, JPG, TGA and what else the library reads, by the file's content. nullopt with no line when the
/// file is missing, broken or above 16384 pixels on a side. Any thread.
[[nodiscard]] std::optional<Picture> loadPicture(const std::filesystem::path& path);

/// Width and height as the file's head tells them, without reading its pixels. Any thread.
[[nodiscard]] std::optional<std::pair<int, int>> pictureSize(const std::filesystem::path& path);

/// As loadPicture() from a file's bytes; the name only helps with formats that don't show by their content.
[[nodiscard]] std::optional<Picture> readPicture(std::span<const std::byte> spanFile,
                                                 const std::filesystem::path& name);

/// Bilinear when growing, area average when shrinking. An empty picture or size yields an empty one.
[[nodiscard]] Picture scalePicture(const Picture& picture, int iWidth, int iHeight);

/// Averages squares of iFactor x iFactor pixels; rows and columns that fill none are left out.
[[nodiscard]] Picture reducePicture(const Picture& picture, int iFactor);

/// The picture of half the size, at least 1 pixel a side; odd last rows and columns are left out. RGB
/// are taken for sRGB and averaged as light, alpha as it stands.
[[nodiscard]] Picture halveColours(const Picture& picture);

/// The same for plain values: all four channels are averaged as they stand.
[[nodiscard]] Picture halveValues(const Picture& picture);

/// As PNG or, for ".jpg", JPG without alpha; written beside and renamed, so that the old file or the
/// new one stands at any moment. False: nothing changed, no temporary file is left. Logs nothing.
[[nodiscard]] bool writePicture(const std::filesystem::path& path, int iWidth, int iHeight,
                                std::span<const std::byte> spanRgba);

} // namespace resource
