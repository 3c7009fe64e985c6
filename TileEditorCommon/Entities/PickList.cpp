#include "TileEditorCommon/Entities/PickList.h"

#include "TileEditorCommon/Contracts/EntityTraits.h"

#include <algorithm>
#include <array>
#include <glm/geometric.hpp>

namespace tilebuilder
{

namespace
{

constexpr float s_fLeastDistance = 0.01f; ///< what stands behind the eye counts as this far along
constexpr size_t s_uBlock = 512;

/// How far along the ray and how far from it, squared.
struct Block
{
    std::array<float, s_uBlock> arrAlong;
    std::array<float, s_uBlock> arrBeside;
};

} // namespace

void PickList::clear()
{
    m_vecX.clear();
    m_vecY.clear();
    m_vecZ.clear();
    m_vecGroup.clear();
}

void PickList::reserve(size_t uCount)
{
    m_vecX.reserve(uCount);
    m_vecY.reserve(uCount);
    m_vecZ.reserve(uCount);
    m_vecGroup.reserve(uCount);
}

void PickList::add(const glm::vec3& position, uint32_t uGroup)
{
    m_vecX.push_back(position.x);
    m_vecY.push_back(position.y);
    m_vecZ.push_back(position.z);
    m_vecGroup.push_back(uGroup);
}

void PickList::move(size_t uIndex, const glm::vec3& position)
{
    m_vecX[uIndex] = position.x;
    m_vecY[uIndex] = position.y;
    m_vecZ[uIndex] = position.z;
}

void PickList::remove(size_t uIndex)
{
    m_vecX[uIndex] = m_vecX.back();
    m_vecY[uIndex] = m_vecY.back();
    m_vecZ[uIndex] = m_vecZ.back();
    m_vecGroup[uIndex] = m_vecGroup.back();
    m_vecX.pop_back();
    m_vecY.pop_back();
    m_vecZ.pop_back();
    m_vecGroup.pop_back();
}

std::optional<size_t> PickList::pick(const PickRay& ray, uint32_t uViewMask) const
{
    std::optional<size_t> found;
    float fBestBeside = s_fFarRadius * s_fFarRadius;
    float fBestAlong = 0.0f;
    const float fOpening = (s_fFarRadius - s_fNearRadius) / ray.length;
    Block block;
    for (size_t uFirst = 0; uFirst < size(); uFirst += s_uBlock)
    {
        const size_t uCount = std::min(s_uBlock, size() - uFirst);
        // Plain arithmetic over the block, which the compiler does several lanes at a time.
        for (size_t i = 0; i < uCount; ++i)
        {
            const float fX = m_vecX[uFirst + i] - ray.start.x;
            const float fY = m_vecY[uFirst + i] - ray.start.y;
            const float fZ = m_vecZ[uFirst + i] - ray.start.z;
            const float fDot = fX * ray.direction.x + fY * ray.direction.y + fZ * ray.direction.z;
            const float fAlong = fDot < s_fLeastDistance ? s_fLeastDistance : fDot;
            const float fBesideX = fX - ray.direction.x * fAlong;
            const float fBesideY = fY - ray.direction.y * fAlong;
            const float fBesideZ = fZ - ray.direction.z * fAlong;
            block.arrAlong[i] = fAlong;
            block.arrBeside[i] = fBesideX * fBesideX + fBesideY * fBesideY + fBesideZ * fBesideZ;
        }
        for (size_t i = 0; i < uCount; ++i)
        {
            const float fBeside = block.arrBeside[i];
            if (!(fBeside <= fBestBeside))
                continue;
            const float fAlong = block.arrAlong[i];
            if (fBeside == fBestBeside && found && fAlong > fBestAlong)
                continue;
            const float fRadius = fAlong * fOpening + s_fNearRadius;
            if (fBeside > fRadius * fRadius || !isShown(m_vecGroup[uFirst + i], uViewMask))
                continue;
            // Past the end only what the sphere at the end of the sweep still touches.
            const float fPast = fAlong - ray.length;
            if (fPast > 0.0f && fPast * fPast + fBeside > s_fFarRadius * s_fFarRadius)
                continue;
            fBestBeside = fBeside;
            fBestAlong = fAlong;
            found = uFirst + i;
        }
    }
    return found;
}

} // namespace tilebuilder
