#pragma once // Turning, sizing and placing several things at once. Pure functions over their transforms.

#include "KestrelCommon/Core/Transform.h"

#include <cstdint>
#include <functional>
#include <glm/vec3.hpp>
#include <optional>
#include <span>

namespace tilebuilder
{

/// A thing as commands see it; in the order of selecting, the active one last.
struct ArrangedThing
{
    Transform pivot;            ///< what a command changes
    glm::vec3 centre{0.0f};     ///< middle of its bounds, metres in the world
    uint8_t uScaleFlags = 0;    ///< bits of ScaleFlags
    bool bUprightModel = false; ///< its model has Y up, so that it stands by a quarter turn
    bool bPrefab = false;
};
using ArrangedThings = std::span<ArrangedThing>;

/// 0 to 32767.
using RandomSource = std::function<uint32_t()>;

struct GroundSpot
{
    glm::vec3 position{0.0f};
    glm::vec3 normal{0.0f, 0.0f, 1.0f}; ///< of any length but 0
};
/// Where a segment of the world meets the ground.
using GroundCast = std::function<std::optional<GroundSpot>(const glm::vec3& from, const glm::vec3& to)>;

/// A change of the one transform.
using TransformFunction = std::function<void(Transform&)>;

/// All functions here act on pivots and let scales change of things that can't be scaled: whoever
/// writes back keeps those.
namespace arrange
{

/// A quarter turn around X, which stands a model with Y up on the ground.
[[nodiscard]] glm::quat upright();
/// The turn whose axes are right, forward and up.
[[nodiscard]] glm::quat frameRotation(const glm::vec3& right, const glm::vec3& forward, const glm::vec3& up);
/// Radians around X, Y and Z, applied in this order; Y from -90 to 90 degrees.
[[nodiscard]] glm::vec3 eulerAngles(const glm::quat& rotation);

[[nodiscard]] glm::vec3 meanPivot(std::span<const ArrangedThing> spanThings);

void resetRotation(ArrangedThings things);
void resetScale(ArrangedThings things);

void randomRotation(ArrangedThings things, const RandomSource& fnRandom);
/// About one axis of the upright model, 0 to 2.
void randomTurn(ArrangedThings things, int iAxis, const RandomSource& fnRandom);

/// Each angle to the nearest multiple of that many degrees.
void roundRotation(ArrangedThings things, float fDegrees);
/// Each coordinate to the nearest multiple of 1 / fSteps metres.
void roundPosition(ArrangedThings things, float fSteps);
void roundScale(ArrangedThings things);

void clearRotation(ArrangedThings things);
/// Keeps the heading of the Y axis.
void resetTilt(ArrangedThings things);
/// All but the last turn their Y axis to the last; needs two.
void lookAtLast(ArrangedThings things);
/// The third goes on where the first two lead; needs three.
void continueTangent(ArrangedThings things);

/// One goes to the point, several bring their mean there.
void moveGroupTo(ArrangedThings things, const glm::vec3& point);
void moveEachTo(ArrangedThings things, const glm::vec3& point);
void moveCoordinate(ArrangedThings things, int iAxis, float fValue);
void scatterInBall(ArrangedThings things, const glm::vec3& middle, float fRadius,
                   const RandomSource& fnRandom);
void scatterOnDisc(ArrangedThings things, const glm::vec3& middle, float fRadius,
                   const RandomSource& fnRandom);
/// All go to the mean of their centres.
void gather(ArrangedThings things);
/// The group shifts so that the last lands on the world's origin.
void moveLastToOrigin(ArrangedThings things);
/// Without ground below or above a thing it stays.
void dropToGround(ArrangedThings things, const GroundCast& fnCastGround, bool bAlign);

enum class Spread : uint8_t
{
    Position = 1,
    Scale = 2,
    Rotation = 4,
    All = 7,
};
/// Evenly between the first and the last, which stay; needs three.
void spreadInBetween(ArrangedThings things, Spread eWhat);

void pastePosition(ArrangedThings things, const Transform& copied);
void pasteRotation(ArrangedThings things, const Transform& copied);
/// The copied scale counts in unit scales.
void pasteScale(ArrangedThings things, const Transform& copied);

} // namespace arrange

} // namespace tilebuilder
