// Strokes of ground materials and colours against plain loops over the circle's samples.

#include "Benchmarks/BenchTile.h"
#include "Benchmarks/Harness.h"
#include "TileEditorCommon/Ground/DisplayColor.h"

#include <cmath>

namespace
{

using namespace bench;

constexpr int s_iVertices = 513;
constexpr int s_iTexels = 1025;
constexpr float s_fRadius = 50.0f;

// Calls for each sample of the circle with its place and its weight.
template <class Visit>
void circle(const tilebuilder::BrushDab& dab, float fSpacing, int iSide, const Visit& fnVisit)
{
    const auto clip = [&](float fMetres)
    { return std::clamp(static_cast<int>(fMetres / fSpacing), 0, iSide); };
    const int iX0 = clip(dab.x - dab.radius - 8.0f), iX1 = clip(dab.x + dab.radius + 8.0f);
    const int iY0 = clip(dab.y - dab.radius - 8.0f), iY1 = clip(dab.y + dab.radius + 8.0f);
    for (int iY = iY0; iY < iY1; ++iY)
        for (int iX = iX0; iX < iX1; ++iX)
        {
            const float fDx = static_cast<float>(iX) * fSpacing - dab.x;
            const float fDy = static_cast<float>(iY) * fSpacing - dab.y;
            const float fDistance = std::sqrt(fDx * fDx + fDy * fDy);
            if (fDistance <= dab.radius)
                fnVisit(static_cast<size_t>(iY) * static_cast<size_t>(iSide) + static_cast<size_t>(iX), iX,
                        iY,
                        dab.pBrush->falloff(std::max(1.0f - fDistance / dab.radius, 0.0f)) * dab.strength);
        }
}

int materialStroke(BenchTile& world)
{
    const auto dab = world.dab(500.0f, 520.0f, s_fRadius, 0.05f);
    world.surface.paintMaterial(2, false, world.dab(100.0f, 100.0f, 5.0f, 0.1f)); // makes the float weights
    std::vector<uint32_t> vecWords(world.surface.texels0().begin(), world.surface.texels0().end());
    std::vector<std::array<float, 4>> vecFloats(vecWords.size());
    for (size_t i = 0; i < vecWords.size(); ++i)
        tile::unpackBytes(vecWords[i], vecFloats[i].data());
    return !run({.sName = "material stroke, 50 m",
                 .fLimit = 1.5,
                 .fnFloor =
                     [&]
                 {
                     circle(dab, 1.0f, s_iTexels,
                            [&](size_t uPlace, int, int, float w)
                            {
                                float& fWeight = vecFloats[uPlace][2];
                                fWeight = std::min(fWeight + w, 1.0f);
                                vecWords[uPlace] = (vecWords[uPlace] & ~0xFF0000u) |
                                                   static_cast<uint32_t>(std::lround(fWeight * 255.0f)) << 16;
                            });
                 },
                 .fnProduct = [&] { world.surface.paintMaterial(2, false, dab); },
                 .fnEqual =
                     [&]
                 {
                     const auto spanWords = world.surface.texels0();
                     for (size_t i = 0; i < vecWords.size(); ++i)
                         if (std::abs(static_cast<int>(vecWords[i] >> 16 & 255) -
                                      static_cast<int>(spanWords[i] >> 16 & 255)) > 1)
                             return false;
                     return true;
                 },
                 .iRepeat = 20});
}

int colorStroke(BenchTile& world)
{
    const auto dab = world.dab(500.0f, 520.0f, s_fRadius, 0.05f);
    const glm::vec4 color(0.2f, 0.6f, 0.4f, 1.0f);
    // The tool's colour goes through bytes.
    tile::ColorValue target = tile::unpackColor(tile::packColor({color.r, color.g, color.b, color.a}));
    std::vector<tile::ColorValue> vecColors(world.surface.colors().begin(), world.surface.colors().end());
    std::vector<uint32_t> vecDisplay(vecColors.size());
    return !run({.sName = "colour stroke, 50 m",
                 .fLimit = 1.5,
                 .fnFloor =
                     [&]
                 {
                     circle(dab, 2.0f, s_iVertices,
                            [&](size_t uPlace, int iX, int iY, float w)
                            {
                                tile::ColorValue& value = vecColors[uPlace];
                                value.r = w * target.r + (1.0f - w) * value.r;
                                value.g = w * target.g + (1.0f - w) * value.g;
                                value.b = w * target.b + (1.0f - w) * value.b;
                                value.a = w * target.a + (1.0f - w) * value.a;
                                vecDisplay[uPlace] = tilebuilder::displayColor(tile::packColor(value),
                                                                               static_cast<uint32_t>(iX),
                                                                               static_cast<uint32_t>(iY));
                            });
                 },
                 .fnProduct = [&] { world.surface.paintColor(color, dab); },
                 .fnEqual =
                     [&]
                 {
                     const auto spanColors = world.surface.colors();
                     for (size_t i = 0; i < vecColors.size(); ++i)
                         if (std::abs(vecColors[i].g - spanColors[i].g) > 1.0e-3f)
                             return false;
                     return true;
                 },
                 .iRepeat = 50});
}

int paint()
{
    if (!isWanted("material stroke, 50 m") && !isWanted("colour stroke, 50 m"))
        return 0;
    BenchTile world;
    return materialStroke(world) + colorStroke(world);
}

const Registration s_paint(&paint);

} // namespace
