#pragma once // A landscape in the making: heights, what water did to them, and what grows where.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace forge
{

/// A grid of floats; rows run along X.
struct Grid
{
    Grid() = default;
    Grid(int iColumns, int iRows, float fValue = 0.0f)
        : iWidth(iColumns),
          iHeight(iRows),
          vecValues(static_cast<size_t>(iColumns) * static_cast<size_t>(iRows), fValue)
    {
    }

    [[nodiscard]] float& at(int iX, int iY) { return vecValues[static_cast<size_t>(iY * iWidth + iX)]; }
    [[nodiscard]] float at(int iX, int iY) const { return vecValues[static_cast<size_t>(iY * iWidth + iX)]; }
    /// Bilinear, clamped to the grid.
    [[nodiscard]] float sample(float fX, float fY) const;

    int iWidth = 0;
    int iHeight = 0;
    std::vector<float> vecValues;
};

struct ErosionSettings
{
    int iDroplets = 60000;
    float fCapacity = 3.0f;    ///< sediment per speed, water and slope
    float fErode = 0.3f;       ///< share of the free capacity taken up per step
    float fDeposit = 0.25f;    ///< share of the excess laid down per step
    float fEvaporate = 0.015f; ///< share of the water lost per step
    int iRadius = 3;           ///< samples over which soil is taken
    uint32_t uSeed = 1;
};

/// Lets droplets run downhill, taking soil where they speed up and laying it down where they slow;
/// adds to flow the water that passed. Heights in metres, samples 2 m apart. Droplet erosion after
/// H. T. Beyer, "Implementation of a method for hydraulic erosion" (TU Munich, 2015).
void erode(Grid& heights, Grid& flow, const ErosionSettings& settings);

/// Lets soil slide where neighbours differ by more than the talus, metres from sample to sample.
void slide(Grid& heights, float fTalus, int iPasses);

/// Rise over run at a sample, from central differences over 4 m.
[[nodiscard]] float steepness(const Grid& heights, int iX, int iY);

/// How much lower a sample lies than the mean around it, in metres; hollows are positive.
[[nodiscard]] Grid hollowness(const Grid& heights, int iRadius);

} // namespace forge
