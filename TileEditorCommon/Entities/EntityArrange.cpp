#include "TileEditorCommon/Entities/EntityArrange.h"

#include "TileEditorCommon/Entities/EntityTypeI.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>
#include <glm/trigonometric.hpp>
#include <limits>

namespace tilebuilder::arrange
{

namespace
{

constexpr glm::vec3 s_up(0.0f, 0.0f, 1.0f);
constexpr glm::vec3 s_forward(0.0f, 1.0f, 0.0f);
constexpr float s_fQuarterTurn = 0.70710677f;
constexpr float s_fUnitScale = 0.25f; ///< of kinds with ScaleQuarter
constexpr float s_fMaxRandom = 32767.0f;
constexpr float s_fRadiansPerRandom = 0.00019175345f;                 ///< a whole turn over s_fMaxRandom
constexpr float s_fAzimuthPerRandom = 4.7938363e-5f;                  ///< a quarter turn over s_fMaxRandom
constexpr float s_fRayHeight = 10000.0f;                              ///< metres above and below
constexpr float s_fSamePlace = std::numeric_limits<float>::epsilon(); ///< square metres

float roundedTo(float fValue, float fSteps)
{
    return std::round(fValue * fSteps) / fSteps;
}

glm::vec3 normalizedOr(const glm::vec3& vector, const glm::vec3& instead)
{
    const float fLength = glm::length(vector);
    return fLength > 1e-6f ? vector / fLength : instead;
}

/// The part of a vector that stands upright on an axis of length 1.
glm::vec3 across(const glm::vec3& vector, const glm::vec3& axis)
{
    return vector - axis * glm::dot(vector, axis);
}

/// Right of a direction, in the ground plane; for a vertical one what the turn has on its right.
glm::vec3 levelRight(const glm::vec3& forward, const glm::quat& rotation)
{
    const glm::vec3 own =
        normalizedOr(across(rotation * glm::vec3(1.0f, 0.0f, 0.0f), s_up), {1.0f, 0.0f, 0.0f});
    return normalizedOr(glm::cross(forward, s_up), own);
}

/// Stands on a surface with its heading kept.
glm::quat aligned(const ArrangedThing& thing, const glm::vec3& up)
{
    // What is forward of an upright model with Y up is its -Z.
    const glm::quat& rotation = thing.pivot.rotation;
    const glm::vec3 forward = rotation * (thing.bUprightModel ? glm::vec3(0.0f, 0.0f, -1.0f) : s_forward);
    glm::vec3 right = glm::cross(forward, up);
    if (glm::length(right) < 1e-3f)
        right = across(rotation * glm::vec3(1.0f, 0.0f, 0.0f), up);
    right = normalizedOr(right, {1.0f, 0.0f, 0.0f});
    const glm::quat frame = frameRotation(right, glm::normalize(glm::cross(up, right)), up);
    return thing.bUprightModel ? glm::normalize(frame * upright()) : frame;
}

} // namespace

glm::quat upright()
{
    return {s_fQuarterTurn, s_fQuarterTurn, 0.0f, 0.0f};
}

glm::quat frameRotation(const glm::vec3& right, const glm::vec3& forward, const glm::vec3& up)
{
    return glm::normalize(glm::quat_cast(glm::mat3(right, forward, up)));
}

glm::vec3 eulerAngles(const glm::quat& rotation)
{
    const glm::mat3 matrix = glm::mat3_cast(glm::normalize(rotation));
    const float fSine = std::clamp(-matrix[0][2], -1.0f, 1.0f);
    // Straight up or down X and Z turn about the same axis: all of it counts as X.
    if (std::abs(fSine) > 0.999999f)
        return {std::atan2(-matrix[2][1], matrix[1][1]), std::asin(fSine), 0.0f};
    return {std::atan2(matrix[1][2], matrix[2][2]), std::asin(fSine), std::atan2(matrix[0][1], matrix[0][0])};
}

glm::vec3 meanPivot(std::span<const ArrangedThing> spanThings)
{
    glm::dvec3 sum(0.0);
    for (const ArrangedThing& thing : spanThings)
        sum += glm::dvec3(thing.pivot.position);
    return spanThings.empty() ? glm::vec3(0.0f) : glm::vec3(sum / static_cast<double>(spanThings.size()));
}

void resetRotation(ArrangedThings things)
{
    for (ArrangedThing& thing : things)
        thing.pivot.rotation = thing.bPrefab ? glm::quat(1.0f, 0.0f, 0.0f, 0.0f) : upright();
}

void resetScale(ArrangedThings things)
{
    for (ArrangedThing& thing : things)
        thing.pivot.scale = glm::vec3(thing.uScaleFlags & ScaleQuarter ? s_fUnitScale : 1.0f);
}

void randomRotation(ArrangedThings things, const RandomSource& fnRandom)
{
    for (ArrangedThing& thing : things)
    {
        glm::vec3 angles;
        for (int i = 0; i < 3; ++i)
            angles[i] = static_cast<float>(fnRandom()) * -s_fRadiansPerRandom;
        thing.pivot.rotation = glm::normalize(glm::quat(angles));
    }
}

void randomTurn(ArrangedThings things, int iAxis, const RandomSource& fnRandom)
{
    glm::vec3 axis(0.0f);
    axis[iAxis] = 1.0f;
    for (ArrangedThing& thing : things)
    {
        const float fAngle = static_cast<float>(fnRandom()) * -s_fRadiansPerRandom;
        thing.pivot.rotation = glm::normalize(upright() * glm::angleAxis(fAngle, axis));
    }
}

void roundRotation(ArrangedThings things, float fDegrees)
{
    for (ArrangedThing& thing : things)
    {
        glm::vec3 angles = eulerAngles(thing.pivot.rotation);
        for (int i = 0; i < 3; ++i)
            angles[i] = glm::radians(std::round(glm::degrees(angles[i]) / fDegrees) * fDegrees);
        thing.pivot.rotation = glm::normalize(glm::quat(angles));
    }
}

void roundPosition(ArrangedThings things, float fSteps)
{
    for (ArrangedThing& thing : things)
        for (int i = 0; i < 3; ++i)
            thing.pivot.position[i] = roundedTo(thing.pivot.position[i], fSteps);
}

void roundScale(ArrangedThings things)
{
    for (ArrangedThing& thing : things)
        for (int i = 0; i < 3; ++i)
            thing.pivot.scale[i] = std::round(thing.pivot.scale[i] * 40.0f) * 0.025f;
}

void clearRotation(ArrangedThings things)
{
    for (ArrangedThing& thing : things)
        thing.pivot.rotation = glm::quat(1.0f, 0.0f, 0.0f, 0.0f);
}

void resetTilt(ArrangedThings things)
{
    for (ArrangedThing& thing : things)
    {
        const glm::vec3 forward = glm::normalize(thing.pivot.rotation * s_forward);
        const glm::vec3 right = levelRight(forward, thing.pivot.rotation);
        thing.pivot.rotation = frameRotation(right, glm::cross(s_up, right), s_up);
    }
}

void lookAtLast(ArrangedThings things)
{
    if (things.size() < 2)
        return;
    const glm::vec3 target = things.back().pivot.position;
    for (ArrangedThing& thing : things.first(things.size() - 1))
    {
        const glm::vec3 way = target - thing.pivot.position;
        if (glm::dot(way, way) <= s_fSamePlace)
            continue;
        const glm::vec3 forward = glm::normalize(way);
        const glm::vec3 right = levelRight(forward, thing.pivot.rotation);
        thing.pivot.rotation = frameRotation(right, forward, glm::cross(right, forward));
    }
}

void continueTangent(ArrangedThings things)
{
    if (things.size() < 3)
        return;
    const Transform& first = things[0].pivot;
    const Transform& second = things[1].pivot;
    things[2].pivot.position = 2.0f * second.position - first.position;
    things[2].pivot.rotation = glm::normalize(glm::slerp(first.rotation, second.rotation, 2.0f));
}

void moveGroupTo(ArrangedThings things, const glm::vec3& point)
{
    if (things.size() == 1)
    {
        things.front().pivot.position = point;
        return;
    }
    const glm::vec3 shift = point - meanPivot(things);
    for (ArrangedThing& thing : things)
        thing.pivot.position += shift;
}

void moveEachTo(ArrangedThings things, const glm::vec3& point)
{
    for (ArrangedThing& thing : things)
        thing.pivot.position = point;
}

void moveCoordinate(ArrangedThings things, int iAxis, float fValue)
{
    for (ArrangedThing& thing : things)
        thing.pivot.position[iAxis] = fValue;
}

void scatterInBall(ArrangedThings things, const glm::vec3& middle, float fRadius,
                   const RandomSource& fnRandom)
{
    for (ArrangedThing& thing : things)
    {
        const float fOut = std::cbrt(static_cast<float>(fnRandom()) / s_fMaxRandom) * fRadius;
        const float fPolar = std::acos(2.0f * static_cast<float>(fnRandom()) / s_fMaxRandom - 1.0f);
        const float fAzimuth = static_cast<float>(fnRandom()) * s_fAzimuthPerRandom;
        thing.pivot.position =
            middle + fOut * glm::vec3(std::sin(fPolar) * std::cos(fAzimuth),
                                      std::sin(fPolar) * std::sin(fAzimuth), std::cos(fPolar));
    }
}

void scatterOnDisc(ArrangedThings things, const glm::vec3& middle, float fRadius,
                   const RandomSource& fnRandom)
{
    for (ArrangedThing& thing : things)
    {
        const float fAngle = static_cast<float>(fnRandom()) * s_fRadiansPerRandom;
        const float fOut = static_cast<float>(fnRandom()) / s_fMaxRandom * fRadius;
        thing.pivot.position = middle + glm::vec3(std::cos(fAngle) * fOut, std::sin(fAngle) * fOut, 0.0f);
    }
}

void gather(ArrangedThings things)
{
    if (things.size() < 2)
        return;
    glm::dvec3 sum(0.0);
    for (const ArrangedThing& thing : things)
        sum += glm::dvec3(thing.centre);
    moveEachTo(things, glm::vec3(sum / static_cast<double>(things.size())));
}

void moveLastToOrigin(ArrangedThings things)
{
    if (things.empty())
        return;
    const glm::vec3 shift = things.back().pivot.position;
    for (ArrangedThing& thing : things)
        thing.pivot.position -= shift;
}

void dropToGround(ArrangedThings things, const GroundCast& fnCastGround, bool bAlign)
{
    for (ArrangedThing& thing : things)
    {
        const glm::vec3& place = thing.pivot.position;
        const auto hit = fnCastGround({place.x, place.y, s_fRayHeight}, {place.x, place.y, -s_fRayHeight});
        if (!hit)
            continue;
        thing.pivot.position = hit->position;
        if (bAlign)
            thing.pivot.rotation = aligned(thing, glm::normalize(hit->normal));
    }
}

void spreadInBetween(ArrangedThings things, Spread eWhat)
{
    if (things.size() < 3)
        return;
    const Transform first = things.front().pivot;
    const Transform last = things.back().pivot;
    const auto includes = [eWhat](Spread ePart)
    { return (static_cast<uint8_t>(eWhat) & static_cast<uint8_t>(ePart)) != 0; };
    for (size_t i = 1; i + 1 < things.size(); ++i)
    {
        const float fPart = static_cast<float>(i) / static_cast<float>(things.size() - 1);
        Transform& pivot = things[i].pivot;
        if (includes(Spread::Position))
            pivot.position = glm::mix(first.position, last.position, fPart);
        if (includes(Spread::Scale))
            pivot.scale = glm::mix(first.scale, last.scale, fPart);
        if (includes(Spread::Rotation))
            pivot.rotation = glm::normalize(glm::slerp(first.rotation, last.rotation, fPart));
    }
}

void pastePosition(ArrangedThings things, const Transform& copied)
{
    moveEachTo(things, copied.position);
}

void pasteRotation(ArrangedThings things, const Transform& copied)
{
    for (ArrangedThing& thing : things)
        thing.pivot.rotation = copied.rotation;
}

void pasteScale(ArrangedThings things, const Transform& copied)
{
    for (ArrangedThing& thing : things)
    {
        const uint8_t uFlags = thing.uScaleFlags;
        if (!(uFlags & ScaleCan))
            continue;
        glm::vec3 scale = uFlags & ScaleUniform ? glm::vec3(copied.scale.x) : copied.scale;
        if (uFlags & ScaleQuarter)
            scale *= s_fUnitScale;
        if (uFlags & ScaleKeepY)
            scale.y = thing.pivot.scale.y;
        thing.pivot.scale = scale;
    }
}

} // namespace tilebuilder::arrange
