#include "KestrelCommon/renderer/Camera.h"

#include <glm/geometric.hpp>
#include <glm/gtc/matrix_transform.hpp>

namespace
{

constexpr float s_fHalfDegree = 0.008726647f; ///< radians of half a degree
constexpr float s_fRadiansPerPixel = 0.002f;
constexpr float s_fSpeed = 20.0f; ///< metres a second
constexpr float s_fFastSpeed = 80.0f;
constexpr float s_fDragLimit = 0.01f; ///< a shorter stroke is a click
constexpr glm::vec3 s_worldUp{0.0f, 0.0f, 1.0f};

} // namespace

void Camera::update(float dt, const CameraInput& input)
{
    flying = input.rightButton && (input.flyAllowed || flying);
    if (flying)
        fly(dt, input);
    if (wasFlying && !input.rightButton)
    {
        dragged = flyDistance > s_fDragLimit;
        flyDistance = 0.0f;
    }
    else if (input.rightButton && !wasFlying)
        dragged = false;
    wasFlying = input.rightButton;
    if (isGliding)
        glide(dt);
}

void Camera::fly(float dt, const CameraInput& input)
{
    const float fYaw = -input.mouseX * s_fRadiansPerPixel;
    const float fPitch = -input.mouseY * s_fRadiansPerPixel;
    // The angle to the up axis; a turn may take it to either end and no further.
    const float fToUp = std::acos(std::clamp(forward().z, -1.0f, 1.0f));
    const float fTurned = fToUp - std::clamp(fToUp - fPitch, 0.0f, 3.1415925f);
    rotation = glm::normalize(glm::angleAxis(fYaw, s_worldUp) * rotation *
                              glm::angleAxis(fTurned, glm::vec3(1.0f, 0.0f, 0.0f)));

    const auto axis = [](bool bPlus, bool bMinus) { return (bPlus ? 1.0f : 0.0f) - (bMinus ? 1.0f : 0.0f); };
    const float fStep = (input.fast ? s_fFastSpeed : s_fSpeed) * flySpeed * dt;
    const glm::vec3 move =
        (forward() * axis(input.forward, input.back) + right() * axis(input.right, input.left) +
         s_worldUp * axis(input.up, input.down)) *
        fStep;
    position += move;

    const float fChange = std::abs(fYaw) + std::abs(fTurned) + glm::length(move);
    flyDistance += fChange;
    if (flyDistance > s_fDragLimit)
        isGliding = false;
}

void Camera::glide(float dt)
{
    position = targetPosition + (position - targetPosition) * std::pow(0.92f, dt * 120.0f);
    rotation = glm::normalize(glm::slerp(rotation, targetRotation, 1.0f - std::pow(0.94f, dt * 120.0f)));
    const float fCosine = std::min(std::abs(glm::dot(rotation, targetRotation)), 1.0f);
    // The cosine of so small an angle is lost in a float: the sine's square tells it.
    const float fAngle = 2.0f * std::asin(std::sqrt(std::max(0.0f, 1.0f - fCosine * fCosine)));
    if (glm::distance(position, targetPosition) > 0.0001f || fAngle > 0.0005f)
        return;
    position = targetPosition;
    rotation = targetRotation;
    isGliding = false;
}

void Camera::changeFlySpeed(float fChange)
{
    flySpeed = std::clamp(flySpeed + fChange, 0.3f, 6.0f);
}

glm::mat4 Camera::viewMatrix() const
{
    const glm::vec3 x = right();
    const glm::vec3 y = up();
    const glm::vec3 z = -forward();
    return {{x.x, y.x, z.x, 0.0f},
            {x.y, y.y, z.y, 0.0f},
            {x.z, y.z, z.z, 0.0f},
            {-glm::dot(x, position), -glm::dot(y, position), -glm::dot(z, position), 1.0f}};
}

glm::mat4 Camera::projectionMatrix() const
{
    const float fFocal = 1.0f / std::tan(fov * s_fHalfDegree);
    const float fRange = farPlane - nearPlane;
    glm::mat4 projection(0.0f);
    projection[0][0] = fFocal * height / width;
    projection[1][1] = fFocal;
    projection[2][2] = nearPlane / fRange;
    projection[2][3] = -1.0f;
    projection[3][2] = nearPlane * farPlane / fRange;
    return projection;
}

CameraRay Camera::ray(float fX, float fY) const
{
    const float fTangent = std::tan(fov * s_fHalfDegree);
    const float fRight = (2.0f * fX / width - 1.0f) * fTangent * width / height;
    const float fUp = (1.0f - 2.0f * fY / height) * fTangent;
    return {position, glm::normalize(forward() + right() * fRight + up() * fUp)};
}

bool Camera::project(const glm::vec3& point, glm::vec2& pixelOut) const
{
    const glm::vec4 clip = projectionMatrix() * viewMatrix() * glm::vec4(point, 1.0f);
    if (clip.w <= nearPlane)
        return false;
    pixelOut = {(clip.x / clip.w * 0.5f + 0.5f) * width, (0.5f - clip.y / clip.w * 0.5f) * height};
    return true;
}

void Camera::setPose(const glm::vec3& newPosition, const glm::quat& newRotation)
{
    position = newPosition;
    rotation = newRotation;
    isGliding = false;
}

glm::quat Camera::rotationAlong(const glm::vec3& direction)
{
    const glm::vec3 ahead = glm::normalize(direction);
    const float fYaw = std::atan2(-ahead.x, ahead.y);
    const float fPitch = std::asin(std::clamp(ahead.z, -1.0f, 1.0f));
    return glm::angleAxis(fYaw, s_worldUp) * glm::angleAxis(fPitch, glm::vec3(1.0f, 0.0f, 0.0f));
}

void Camera::frame(const glm::vec3& target, float fSize, float fElevation, bool bGlide)
{
    const float fTangent = std::tan(fov * 0.008726646f);
    const float fDistance = fTangent == 0.0f ? 2.0f : std::max(fSize, 2.0f) / fTangent;

    glm::vec2 ahead = glm::vec2(target) - glm::vec2(position);
    if (glm::length(ahead) < 0.0001f)
        ahead = glm::vec2(forward());
    if (glm::length(ahead) < 0.0001f)
        ahead = glm::vec2(up()); // looking straight down: the upper edge of the view
    ahead = glm::length(ahead) < 0.0001f ? glm::vec2(0.0f, 1.0f) : glm::normalize(ahead);

    const float fAngle = glm::radians(fElevation);
    const glm::vec3 direction(ahead * std::cos(fAngle), -std::sin(fAngle));
    targetPosition = target - direction * fDistance;
    targetRotation = rotationAlong(direction);
    isGliding = bGlide;
    if (!bGlide)
        setPose(targetPosition, targetRotation);
}
