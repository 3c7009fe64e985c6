#include "TileEditorCommon/Clutter/ClutterPositions.h"

#include <algorithm>
#include <cmath>

namespace tilebuilder
{

ClutterPositions makeClutterPositions(int iPatchSize, int iDensity)
{
    const std::array<int, 5> arrCounts = {0, iPatchSize, iPatchSize + iPatchSize / 2, 2 * iPatchSize,
                                          2 * iPatchSize + iPatchSize / 2};
    const int n = arrCounts[static_cast<size_t>(std::clamp(iDensity, 0, 4))];
    ClutterPositions arrLists;
    if (n <= 0)
        return arrLists;
    const float fStep = 2.8284268f / static_cast<float>(n);
    const float fHalf = static_cast<float>(iPatchSize) * 0.5f;
    size_t k = 0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
        {
            const float a = static_cast<float>(i) * fStep + 1.4142135f + (j % 3 == 0 ? 0.3f * fStep : 0.0f);
            const float b = static_cast<float>(j) * fStep + 1.4142135f + (i % 3 == 0 ? 0.3f * fStep : 0.0f);
            if (a + b <= 3.95f)
                continue;
            const float w = 15.6025f - b * b + a * a;
            const float u = w * 0.12658228f;
            const float v = std::sqrt(a * a - w * w * 0.016023073f);
            if (!(u > 1.0009999f && u < 2.999f && v > 1.0009999f && v < 2.999f))
                continue;
            const size_t uList = k % 8 == 0 ? 3 : k % 4 == 0 ? 2 : k % 2 == 1 ? 1 : 0;
            arrLists[uList].emplace_back((u - 1.0f) * fHalf, (v - 1.0f) * fHalf);
            ++k;
        }
    return arrLists;
}

} // namespace tilebuilder
