#pragma once // A real scene on whatever driver is there: hills with all materials, drawn offscreen.

#include "KestrelCommon/Device/EglContext.h"
#include "KestrelCommon/Device/GlDevice.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "KestrelCommon/renderer/Renderer.h"

#include <functional>
#include <string>

/// What the ground is made of at a place (metres).
struct TestGroundSample
{
    float fHeight = 0.0f;
    std::array<float, 8> arrWeights{};
    std::array<uint8_t, 3> arrColour{255, 255, 255};
};

/// Owns a context, a device of the given size, the resources of the laid out game folder and a renderer.
class TestScene
{
public:
    /// The game folder must have been laid out: see isAvailable().
    TestScene(int iWidth, int iHeight, bool bForceHardwarePath = false);
    ~TestScene();

    /// False where there is no game folder; true without a driver then makes m_bReady false.
    [[nodiscard]] static bool isAvailable();

    /// Replaces the ground by one of iCells x iCells cells.
    void setGround(int iCells, const std::function<TestGroundSample(float fX, float fY)>& fnSample);

    /// Draws the camera's view into the window's target; the frame's milliseconds until it is done.
    double draw();
    /// Of the window's target.
    [[nodiscard]] resource::Picture picture();
    /// Writes the picture below the folder that QM_TEST_PICTURES names, if it is set.
    void keep(const std::string& sName);

    bool m_bReady = false;
    std::unique_ptr<rend::EglContext> m_pContext;
    std::unique_ptr<rend::GraphicsDeviceI> m_pDevice;
    std::unique_ptr<resource::ResourceManager> m_pResources;
    std::unique_ptr<rend::Renderer> m_pRenderer;
    rend::DebugDrawer m_debugDrawer{2048};
    Camera m_camera;
};

/// Hills, a valley, a snowy top, a sandy shore; weights by height and slope.
[[nodiscard]] TestGroundSample hillsAt(float fX, float fY, float fSize);
