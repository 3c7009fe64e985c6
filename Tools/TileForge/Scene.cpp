#include "Tools/TileForge/Scene.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>

namespace forge
{

namespace
{

float smooth(float fFrom, float fTo, float f)
{
    const float t = std::clamp((f - fFrom) / (fTo - fFrom), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

} // namespace

glm::vec2 Frame::world(float fX, float fY) const
{
    const float fCosine = std::cos(glm::radians(fDegrees));
    const float fSine = std::sin(glm::radians(fDegrees));
    return at + glm::vec2(fCosine * fX + fSine * fY, fSine * fX - fCosine * fY);
}

float Scene::heightAt(const glm::vec2& at) const
{
    return m_land.heights.sample(at.x * 0.5f, at.y * 0.5f);
}

float Scene::steepAt(const glm::vec2& at) const
{
    return glm::length(
               glm::vec2(heightAt(at + glm::vec2(2.0f, 0.0f)) - heightAt(at - glm::vec2(2.0f, 0.0f)),
                         heightAt(at + glm::vec2(0.0f, 2.0f)) - heightAt(at - glm::vec2(0.0f, 2.0f)))) *
           0.25f;
}

glm::vec2 Scene::downhillAt(const glm::vec2& at) const
{
    const glm::vec2 up(heightAt(at + glm::vec2(3.0f, 0.0f)) - heightAt(at - glm::vec2(3.0f, 0.0f)),
                       heightAt(at + glm::vec2(0.0f, 3.0f)) - heightAt(at - glm::vec2(0.0f, 3.0f)));
    return glm::length(up) > 1.0e-4f ? -glm::normalize(up) : glm::vec2(0.0f, -1.0f);
}

float Scene::shareOf(Material eMaterial, const glm::vec2& at) const
{
    const int iTexels = 64 * m_land.iCells + 1;
    const int iX = std::clamp(static_cast<int>(at.x + 0.5f), 0, iTexels - 1);
    const int iY = std::clamp(static_cast<int>(at.y + 0.5f), 0, iTexels - 1);
    return static_cast<float>(m_land.vecWeights[static_cast<size_t>(iY * iTexels + iX)][eMaterial]) / 255.0f;
}

float Scene::roll(float fLow, float fHigh)
{
    m_uState ^= m_uState << 13;
    m_uState ^= m_uState >> 17;
    m_uState ^= m_uState << 5;
    return fLow + (fHigh - fLow) * static_cast<float>(m_uState >> 8) / static_cast<float>(1 << 24);
}

Frame Scene::level(const glm::vec2& at, const glm::vec2& half, float fDegrees, float fBlend)
{
    const Frame frame{at, fDegrees, heightAt(at)};
    const glm::vec2 along = frame.world(1.0f, 0.0f) - at;
    const glm::vec2 front = frame.world(0.0f, 1.0f) - at;
    for (int iY = 0; iY < m_land.heights.iHeight; ++iY)
        for (int iX = 0; iX < m_land.heights.iWidth; ++iX)
        {
            const glm::vec2 way = 2.0f * glm::vec2(iX, iY) - at;
            const float fOut =
                std::max(std::abs(glm::dot(way, along)) - half.x, std::abs(glm::dot(way, front)) - half.y);
            float& fHeight = m_land.heights.at(iX, iY);
            fHeight = glm::mix(frame.fHeight, fHeight, smooth(0.0f, fBlend, fOut));
        }
    return frame;
}

void Scene::cover(const glm::vec2& at, float fRadius, Material eMaterial, float fAmount)
{
    const int iTexels = 64 * m_land.iCells + 1;
    for (int iY = std::max(0, static_cast<int>(at.y - fRadius));
         iY < std::min(iTexels, static_cast<int>(at.y + fRadius) + 2); ++iY)
        for (int iX = std::max(0, static_cast<int>(at.x - fRadius));
             iX < std::min(iTexels, static_cast<int>(at.x + fRadius) + 2); ++iX)
        {
            const float fAway = glm::distance(at, glm::vec2(iX, iY));
            const float fPart = fAmount * (1.0f - smooth(0.5f, 1.0f, fAway / fRadius));
            auto& weights = m_land.vecWeights[static_cast<size_t>(iY * iTexels + iX)];
            for (size_t u = 0; u < weights.size(); ++u)
            {
                const float fWanted = u == eMaterial ? 255.0f : 0.0f;
                weights[u] =
                    static_cast<uint8_t>(glm::mix(static_cast<float>(weights[u]), fWanted, fPart) + 0.5f);
            }
        }
}

void Scene::place(const std::string& sName, const glm::vec2& at, float fDegrees, const PlaceOptions& options)
{
    m_vecAssets.push_back(
        {sName, {at, heightAt(at) + options.fUp}, fDegrees, options.fScale, options.mapColours});
}

void Scene::placeIn(const Frame& frame, const std::string& sName, float fX, float fY, float fUp,
                    float fDegrees, const std::map<std::string, std::string>& mapColours)
{
    m_vecAssets.push_back(
        {sName, {frame.world(fX, fY), frame.fHeight + fUp}, frame.fDegrees + fDegrees, 1.0f, mapColours});
}

void Scene::reserve(const glm::vec2& at, float fRadius)
{
    m_vecCircles.push_back({at, fRadius});
}

bool Scene::isFree(const glm::vec2& at, float fRadius) const
{
    return std::none_of(m_vecCircles.begin(), m_vecCircles.end(),
                        [&](const Circle& circle)
                        { return glm::distance(circle.at, at) < circle.fRadius + fRadius; });
}

void Scene::scatter(const Scatter& scatter, const std::function<float(const glm::vec2&)>& fnLikely)
{
    int iPlaced = 0;
    for (int iTry = 0; iTry < 60 * scatter.iCount && iPlaced < scatter.iCount; ++iTry)
    {
        const glm::vec2 at(roll(1.5f, size() - 1.5f), roll(1.5f, size() - 1.5f));
        if (roll(0.0f, 1.0f) > fnLikely(at) || !isFree(at, scatter.fRadius))
            continue;
        const auto pick = [&](size_t uCount)
        { return std::min(static_cast<size_t>(roll(0.0f, static_cast<float>(uCount))), uCount - 1); };
        PlaceOptions options{.fScale = roll(scatter.fSmallest, scatter.fLargest), .mapColours = {}};
        options.fUp = -scatter.fSink - sinkAt(at, scatter.fFoot * options.fScale);
        if (!scatter.vecColours.empty())
            options.mapColours = scatter.vecColours[pick(scatter.vecColours.size())];
        place(scatter.vecNames[pick(scatter.vecNames.size())], at, roll(0.0f, 360.0f), options);
        reserve(at, scatter.fRadius);
        ++iPlaced;
    }
}

} // namespace forge
