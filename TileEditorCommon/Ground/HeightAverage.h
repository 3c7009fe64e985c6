#pragma once // The weighted averages that flatten and smooth strokes pull heights to.

#include "TileEditorCommon/Ground/GridRect.h"

#include <span>
#include <vector>

namespace tilebuilder
{

/// Heights of a vertex grid, borrowed; rows of iColumns run along X.
struct HeightGrid
{
    std::span<const float> spanHeights;
    int iColumns = 0;
    int iRows = 0;
};

/// The average around vertex (i, j) over the window of k = trunc(r + 1) vertices before it and
/// k - 1 behind, clipped to the grid, each weighted by the mean of two one-dimensional Gaussians
/// of sigma r / 3. Radius in vertices, above 0. The plain double sum, for few vertices.
[[nodiscard]] float weightedAverage(const HeightGrid& grid, int i, int j, float fRadius);

/// The same for all vertices of a rectangle within the grid, 4k terms a vertex.
///
/// The weight is a mean, so the sum of weight * height is half of a sum along the columns of
/// Gaussian * running column sums, plus the same along the rows; the sum of weights follows from
/// prefix sums of the Gaussian. Sums are kept in double. Differs from the plain sum in float by
/// less than 1e-4 m.
///
/// Keeps its scratch memory from call to call; one thread at a time, fans out by itself.
class HeightAverager
{
public:
    /// Results row by row, rect.width() * rect.height() of them; valid until the next call.
    std::span<const float> run(const HeightGrid& grid, const GridRect& rect, float fRadius);

private:
    void prepare(const HeightGrid& grid, const GridRect& rect, float fRadius);
    void sumRows(const HeightGrid& grid, int iRow);
    void averageRows(const HeightGrid& grid, int iFirst, int iLast);

    GridRect m_rect;
    int m_iReach = 0;                 ///< k
    int m_iStride = 0;                ///< doubles of a padded row
    std::vector<double> m_vecKernel;  ///< 2k Gaussian values, from -k to k - 1
    std::vector<double> m_vecPrefix;  ///< of the kernel, 2k + 1
    std::vector<double> m_vecRowSums; ///< R: box sums along X, for each row that a window reaches
    std::vector<float> m_vecResults;
};

} // namespace tilebuilder
