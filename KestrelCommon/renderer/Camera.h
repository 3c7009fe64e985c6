#pragma once // The eye of the main view: flight, glide, matrices, rays.

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

/// What the camera reads of mouse and keyboard in a frame.
struct CameraInput
{
    float mouseX = 0.0f; ///< movement since the last frame, pixels to the right
    float mouseY = 0.0f; ///< downwards
    bool rightButton = false;
    bool flyAllowed = false; ///< the mouse is over no widget and an interface exists
    bool fast = false;       ///< Shift
    bool forward = false;    ///< W
    bool back = false;       ///< S
    bool right = false;      ///< D
    bool left = false;       ///< A
    bool up = false;         ///< Space
    bool down = false;       ///< Ctrl
};

/// From the eye through a point of the view; the direction has length 1.
struct CameraRay
{
    glm::vec3 origin;
    glm::vec3 direction;
};

/// Space: world metres, Z up. The identity rotation looks along +Y with +Z up and +X to the right.
/// View space has x right, y up, and looks along -z; clip depth runs from 1 (near) to 0 (far).
/// Threads: main thread only.
struct Camera
{
    float fov = 45.0f; ///< vertical, degrees
    float width = 1920.0f;
    float height = 1080.0f; ///< client area, pixels
    float nearPlane = 0.01f;
    float farPlane = 100.0f;
    float flySpeed = 1.0f;
    glm::quat rotation{1.0f, 0.0f, 0.0f, 0.0f};
    glm::vec3 position{0.0f};
    glm::vec3 targetPosition{0.0f}; ///< of a glide
    glm::quat targetRotation{1.0f, 0.0f, 0.0f, 0.0f};
    bool isGliding = false;
    bool wasFlying = false;   ///< the right button was held in the last frame
    bool flying = false;      ///< it flies in this frame
    bool dragged = false;     ///< the last right-button press moved the view
    float flyDistance = 0.0f; ///< view change of the current press: radians and metres summed

    /// Flies or glides for dt seconds.
    void update(float dt, const CameraInput& input);

    /// By the wheel while flying; kept within 0.3 to 6.
    void changeFlySpeed(float fChange);

    [[nodiscard]] glm::vec3 forward() const { return rotation * glm::vec3(0.0f, 1.0f, 0.0f); }
    [[nodiscard]] glm::vec3 right() const { return rotation * glm::vec3(1.0f, 0.0f, 0.0f); }
    [[nodiscard]] glm::vec3 up() const { return rotation * glm::vec3(0.0f, 0.0f, 1.0f); }

    [[nodiscard]] glm::mat4 viewMatrix() const;
    [[nodiscard]] glm::mat4 projectionMatrix() const;

    /// Through a client pixel, counted from the top left.
    [[nodiscard]] CameraRay ray(float fX, float fY) const;

    /// Where a world point stands in the client area, pixels; false when it is behind the eye.
    [[nodiscard]] bool project(const glm::vec3& point, glm::vec2& pixelOut) const;

    void setPose(const glm::vec3& newPosition, const glm::quat& newRotation);
    /// Turns to a direction of any length but 0, with +Z up.
    void lookAlong(const glm::vec3& direction) { rotation = rotationAlong(direction); }
    [[nodiscard]] static glm::quat rotationAlong(const glm::vec3& direction);

    /// Looks at the target, which has the size fSize (metres), from the side where the camera stands,
    /// turned down by fElevation degrees. With bGlide it goes there over the next frames.
    void frame(const glm::vec3& target, float fSize, float fElevation, bool bGlide);

private:
    void fly(float dt, const CameraInput& input);
    void glide(float dt);
};
