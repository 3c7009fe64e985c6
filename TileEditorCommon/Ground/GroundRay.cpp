#include "TileEditorCommon/Ground/GroundRay.h"

#include <cmath>
#include <limits>

namespace tilebuilder
{

namespace
{

constexpr double s_fSpacing = 2.0;
constexpr double s_fInfinity = std::numeric_limits<double>::infinity();

/// A ray in units of quads along X and Y and metres along Z; the parameter runs from 0 to 1.
struct Ray
{
    double fX, fY, fZ;
    double fDx, fDy, fDz;
};

/// Steps through the unit squares of a lattice that a stretch of a ray passes.
class LatticeWalk
{
public:
    LatticeWalk(const Ray& ray, double fScale, double fFrom, double fTo, GridRect bounds)
        : m_bounds(bounds),
          m_fT(fFrom),
          m_fEnd(fTo)
    {
        start(ray.fX * fScale, ray.fDx * fScale, bounds.x0, bounds.x1, m_iX, m_iStepX, m_fNextX, m_fDeltaX);
        start(ray.fY * fScale, ray.fDy * fScale, bounds.y0, bounds.y1, m_iY, m_iStepY, m_fNextY, m_fDeltaY);
    }

    [[nodiscard]] int x() const { return m_iX; }
    [[nodiscard]] int y() const { return m_iY; }
    [[nodiscard]] double enter() const { return m_fT; }
    [[nodiscard]] double leave() const { return std::min({m_fNextX, m_fNextY, m_fEnd}); }

    bool next()
    {
        if (m_fNextX < m_fNextY)
        {
            m_fT = m_fNextX;
            m_iX += m_iStepX;
            m_fNextX += m_fDeltaX;
        }
        else
        {
            m_fT = m_fNextY;
            m_iY += m_iStepY;
            m_fNextY += m_fDeltaY;
        }
        return m_fT < m_fEnd && m_iX >= m_bounds.x0 && m_iX < m_bounds.x1 && m_iY >= m_bounds.y0 &&
               m_iY < m_bounds.y1;
    }

private:
    void start(double fOrigin, double fDirection, int iLow, int iHigh, int& iCell, int& iStep, double& fNext,
               double& fDelta) const
    {
        const double fAt =
            std::clamp(fOrigin + fDirection * m_fT, static_cast<double>(iLow), static_cast<double>(iHigh));
        iCell = std::clamp(static_cast<int>(fAt), iLow, iHigh - 1);
        iStep = fDirection < 0.0 ? -1 : 1;
        fDelta = fDirection != 0.0 ? std::abs(1.0 / fDirection) : s_fInfinity;
        fNext = fDirection != 0.0 ? (iCell + (iStep > 0 ? 1 : 0) - fOrigin) / fDirection : s_fInfinity;
    }

    GridRect m_bounds;
    double m_fT;
    double m_fEnd;
    int m_iX = 0;
    int m_iY = 0;
    int m_iStepX = 1;
    int m_iStepY = 1;
    double m_fNextX = 0.0;
    double m_fNextY = 0.0;
    double m_fDeltaX = 0.0;
    double m_fDeltaY = 0.0;
};

// Narrows a stretch of the ray to a slab; false when nothing is left.
bool clipSlab(double fOrigin, double fDirection, double fLow, double fHigh, double& fFrom, double& fTo)
{
    if (fDirection == 0.0)
        return fOrigin >= fLow && fOrigin <= fHigh;
    double fEnter = (fLow - fOrigin) / fDirection;
    double fLeave = (fHigh - fOrigin) / fDirection;
    if (fEnter > fLeave)
        std::swap(fEnter, fLeave);
    fFrom = std::max(fFrom, fEnter);
    fTo = std::min(fTo, fLeave);
    return fFrom <= fTo;
}

/// The height of one triangle's plane over its quad, as base + u * slopeU + v * slopeV.
struct Plane
{
    double fBase, fSlopeU, fSlopeV;
};

// Where the ray crosses a plane between two parameters; infinity when it stays on one side.
double crossing(const Ray& ray, double fColumn, double fRow, const Plane& plane, double fFrom, double fTo)
{
    const auto above = [&](double fT)
    {
        const double fU = ray.fX + ray.fDx * fT - fColumn;
        const double fV = ray.fY + ray.fDy * fT - fRow;
        return ray.fZ + ray.fDz * fT - (plane.fBase + fU * plane.fSlopeU + fV * plane.fSlopeV);
    };
    const double fStart = above(fFrom);
    const double fEnd = above(fTo);
    if (fStart == 0.0)
        return fFrom;
    if (!((fStart < 0.0) != (fEnd < 0.0)))
        return s_fInfinity;
    return fFrom + (fTo - fFrom) * (fStart / (fStart - fEnd));
}

double hitQuad(const Ray& ray, const GroundMesh& mesh, int iX, int iY, double fFrom, double fTo)
{
    const auto uColumns = static_cast<size_t>(mesh.iQuadsX) + 1;
    const size_t uA = static_cast<size_t>(iY) * uColumns + static_cast<size_t>(iX);
    const float fA = mesh.spanHeights[uA];
    const float fB = mesh.spanHeights[uA + 1];
    const float fC = mesh.spanHeights[uA + uColumns];
    const float fD = mesh.spanHeights[uA + uColumns + 1];

    const double fZFrom = ray.fZ + ray.fDz * fFrom;
    const double fZTo = ray.fZ + ray.fDz * fTo;
    if (std::min(fZFrom, fZTo) > static_cast<double>(std::max(std::max(fA, fB), std::max(fC, fD))) ||
        std::max(fZFrom, fZTo) < static_cast<double>(std::min(std::min(fA, fB), std::min(fC, fD))))
        return s_fInfinity;

    const double a = fA, b = fB, c = fC, d = fD;
    const size_t uQuad =
        static_cast<size_t>(iY) * static_cast<size_t>(mesh.iQuadsX) + static_cast<size_t>(iX);
    const bool bSplitBC = mesh.spanIndices[uQuad * 6] == uA + uColumns;
    // The side of the diagonal, linear along the ray: positive over the first plane.
    const double fUFrom = ray.fX + ray.fDx * fFrom - iX;
    const double fVFrom = ray.fY + ray.fDy * fFrom - iY;
    const double fSideFrom = bSplitBC ? 1.0 - fUFrom - fVFrom : fUFrom - fVFrom;
    const double fSlope = bSplitBC ? -(ray.fDx + ray.fDy) : ray.fDx - ray.fDy;
    const Plane first = bSplitBC ? Plane{a, b - a, c - a} : Plane{a, b - a, d - b};
    const Plane second = bSplitBC ? Plane{b + c - d, d - c, d - b} : Plane{a, d - c, c - a};

    const double fSideTo = fSideFrom + fSlope * (fTo - fFrom);
    const bool bStartsFirst = fSideFrom > 0.0 || (fSideFrom == 0.0 && fSideTo > 0.0);
    const Plane& begin = bStartsFirst ? first : second;
    if ((fSideFrom > 0.0) == (fSideTo > 0.0) || fSideFrom == 0.0)
        return crossing(ray, iX, iY, begin, fFrom, fTo);
    const double fMiddle = std::clamp(fFrom - fSideFrom / fSlope, fFrom, fTo);
    const double fT = crossing(ray, iX, iY, begin, fFrom, fMiddle);
    return fT < s_fInfinity ? fT : crossing(ray, iX, iY, bStartsFirst ? second : first, fMiddle, fTo);
}

} // namespace

void GroundRay::updateBounds(const GroundMesh& mesh, const GridRect& vertices)
{
    const int iBlocksX = (mesh.iQuadsX + s_iBlockQuads - 1) / s_iBlockQuads;
    const int iBlocksY = (mesh.iQuadsY + s_iBlockQuads - 1) / s_iBlockQuads;
    GridRect blocks{(vertices.x0 - 1) / s_iBlockQuads, (vertices.y0 - 1) / s_iBlockQuads,
                    (vertices.x1 - 1) / s_iBlockQuads + 1, (vertices.y1 - 1) / s_iBlockQuads + 1};
    if (iBlocksX != m_iBlocksX || iBlocksY != m_iBlocksY)
    {
        m_iBlocksX = iBlocksX;
        m_iBlocksY = iBlocksY;
        m_vecBlocks.assign(static_cast<size_t>(iBlocksX) * static_cast<size_t>(iBlocksY), {});
        blocks = {0, 0, iBlocksX, iBlocksY};
    }
    blocks = blocks.clipped({0, 0, iBlocksX, iBlocksY});
    for (int iBlockY = blocks.y0; iBlockY < blocks.y1; ++iBlockY)
        for (int iBlockX = blocks.x0; iBlockX < blocks.x1; ++iBlockX)
        {
            const int iRight = std::min((iBlockX + 1) * s_iBlockQuads, mesh.iQuadsX);
            const int iBottom = std::min((iBlockY + 1) * s_iBlockQuads, mesh.iQuadsY);
            float fLow = std::numeric_limits<float>::max();
            float fHigh = std::numeric_limits<float>::lowest();
            for (int j = iBlockY * s_iBlockQuads; j <= iBottom; ++j)
            {
                const float* pRow =
                    mesh.spanHeights.data() + static_cast<size_t>(j) * static_cast<size_t>(mesh.iQuadsX + 1);
                for (int i = iBlockX * s_iBlockQuads; i <= iRight; ++i)
                {
                    fLow = pRow[i] < fLow ? pRow[i] : fLow;
                    fHigh = pRow[i] > fHigh ? pRow[i] : fHigh;
                }
            }
            m_vecBlocks[static_cast<size_t>(iBlockY) * static_cast<size_t>(iBlocksX) +
                        static_cast<size_t>(iBlockX)] = {fLow, fHigh};
        }
}

std::optional<GroundHit> GroundRay::cast(const GroundMesh& mesh, const glm::vec3& from,
                                         const glm::vec3& to) const
{
    for (const float fValue : {from.x, from.y, from.z, to.x, to.y, to.z})
        if (!std::isfinite(fValue))
            return std::nullopt;
    if (m_vecBlocks.empty())
        return std::nullopt;

    Ray ray{};
    ray.fX = static_cast<double>(from.x) / s_fSpacing;
    ray.fY = static_cast<double>(from.y) / s_fSpacing;
    ray.fZ = static_cast<double>(from.z);
    ray.fDx = static_cast<double>(to.x) / s_fSpacing - ray.fX;
    ray.fDy = static_cast<double>(to.y) / s_fSpacing - ray.fY;
    ray.fDz = static_cast<double>(to.z) - ray.fZ;
    double fFrom = 0.0;
    double fTo = 1.0;
    if (!clipSlab(ray.fX, ray.fDx, 0.0, mesh.iQuadsX, fFrom, fTo) ||
        !clipSlab(ray.fY, ray.fDy, 0.0, mesh.iQuadsY, fFrom, fTo))
        return std::nullopt;

    LatticeWalk blocks(ray, 1.0 / s_iBlockQuads, fFrom, fTo, {0, 0, m_iBlocksX, m_iBlocksY});
    do
    {
        const double fEnter = blocks.enter();
        const double fLeave = blocks.leave();
        const Range& range = m_vecBlocks[static_cast<size_t>(blocks.y()) * static_cast<size_t>(m_iBlocksX) +
                                         static_cast<size_t>(blocks.x())];
        const double fZEnter = ray.fZ + ray.fDz * fEnter;
        const double fZLeave = ray.fZ + ray.fDz * fLeave;
        if (std::min(fZEnter, fZLeave) > static_cast<double>(range.fHigh) ||
            std::max(fZEnter, fZLeave) < static_cast<double>(range.fLow))
            continue;
        const GridRect inBlock{blocks.x() * s_iBlockQuads, blocks.y() * s_iBlockQuads,
                               std::min((blocks.x() + 1) * s_iBlockQuads, mesh.iQuadsX),
                               std::min((blocks.y() + 1) * s_iBlockQuads, mesh.iQuadsY)};
        LatticeWalk quads(ray, 1.0, fEnter, fLeave, inBlock);
        do
        {
            const double fT = hitQuad(ray, mesh, quads.x(), quads.y(), quads.enter(), quads.leave());
            if (fT < s_fInfinity)
            {
                GroundHit hit;
                hit.fraction = static_cast<float>(fT);
                hit.position = {static_cast<float>((ray.fX + ray.fDx * fT) * s_fSpacing),
                                static_cast<float>((ray.fY + ray.fDy * fT) * s_fSpacing),
                                static_cast<float>(ray.fZ + ray.fDz * fT)};
                return hit;
            }
        } while (quads.next());
    } while (blocks.next());
    return std::nullopt;
}

} // namespace tilebuilder
