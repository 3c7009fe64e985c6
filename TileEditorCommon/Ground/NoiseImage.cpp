#include "TileEditorCommon/Ground/NoiseImage.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tilebuilder
{

namespace
{

constexpr size_t s_uCount = NoiseImage::s_uSide * NoiseImage::s_uSide;
constexpr double s_fLowest = 36.0;
constexpr double s_fHighest = 199.0;
constexpr double s_fMean = 125.6;

struct Wave
{
    int iX;
    int iY;
    double fAmplitude;
    double fPhase;
};

// Whole numbers of periods across the image make it tile; unrelated directions hide the rows.
constexpr Wave s_arrWaves[] = {
    {1, 2, 1.0, 0.3},   {2, -1, 0.9, 1.9}, {3, 2, 0.7, 4.1},   {-2, 3, 0.7, 5.3}, {4, -3, 0.5, 2.2},
    {1, 5, 0.45, 0.9},  {5, 1, 0.45, 3.7}, {-4, 5, 0.35, 1.1}, {6, 3, 0.3, 5.9},  {3, -6, 0.3, 2.8},
    {7, -2, 0.22, 4.6}, {2, 7, 0.22, 0.1}, {-6, 6, 0.18, 3.3},
};

double waveSum(size_t uRow, size_t uColumn)
{
    constexpr double fTurn = 2.0 * std::numbers::pi / static_cast<double>(NoiseImage::s_uSide);
    double fSum = 0.0;
    for (const Wave& wave : s_arrWaves)
        fSum +=
            wave.fAmplitude *
            std::sin(fTurn * (wave.iX * static_cast<double>(uColumn) + wave.iY * static_cast<double>(uRow)) +
                     wave.fPhase);
    return fSum;
}

std::array<uint8_t, s_uCount> makeValues()
{
    std::array<double, s_uCount> arrSums;
    for (size_t i = 0; i < s_uCount; ++i)
        arrSums[i] = waveSum(i / NoiseImage::s_uSide, i % NoiseImage::s_uSide);
    const auto [pLow, pHigh] = std::minmax_element(arrSums.begin(), arrSums.end());
    const double fLow = *pLow;
    const double fSpan = *pHigh - fLow;

    // A power curve keeps both ends and moves the mean; bisection finds the power.
    const auto valueOf = [&](double fSum, double fPower)
    { return s_fLowest + (s_fHighest - s_fLowest) * std::pow((fSum - fLow) / fSpan, fPower); };
    double fFrom = 0.2;
    double fTo = 5.0;
    for (int i = 0; i < 40; ++i)
    {
        const double fPower = (fFrom + fTo) * 0.5;
        double fTotal = 0.0;
        for (const double fSum : arrSums)
            fTotal += valueOf(fSum, fPower);
        (fTotal / static_cast<double>(s_uCount) > s_fMean ? fFrom : fTo) = fPower;
    }
    std::array<uint8_t, s_uCount> arrValues;
    for (size_t i = 0; i < s_uCount; ++i)
        arrValues[i] = static_cast<uint8_t>(std::lround(valueOf(arrSums[i], fFrom)));
    return arrValues;
}

} // namespace

const std::array<uint8_t, s_uCount>& NoiseImage::values()
{
    static const auto s_arrValues = makeValues();
    return s_arrValues;
}

const std::array<float, s_uCount>& NoiseImage::factors()
{
    static const auto s_arrFactors = []
    {
        std::array<float, s_uCount> arrFactors;
        for (size_t i = 0; i < s_uCount; ++i)
            arrFactors[i] = 1.0f - (0.5f - static_cast<float>(values()[i]) * 0.0019607844f);
        return arrFactors;
    }();
    return s_arrFactors;
}

} // namespace tilebuilder
