#pragma once // The graphics device on OpenGL.

#include "KestrelCommon/Device/GlContextI.h"
#include "KestrelCommon/Device/GraphicsDeviceI.h"

#include <filesystem>
#include <memory>

namespace rend
{

struct GlDeviceSettings
{
    int iWidth = 1920; ///< of the window's target, pixels
    int iHeight = 1080;
    std::filesystem::path cacheFolder; ///< for compiled programs; made when missing; empty: none kept
    bool bForceHardwarePath = false;   ///< isSoftware() answers false on any driver (pictures, tests)
    bool bDebugOutput = false;         ///< the driver's messages go to the log
    bool bAvoidClipControl = false;    ///< as on drivers without glClipControl (tests)
};

/// Makes the context current. The context must outlive the device.
/// Null with one error line when it is older than OpenGL 4.3.
[[nodiscard]] std::unique_ptr<GraphicsDeviceI> createGlDevice(GlContextI& context,
                                                              const GlDeviceSettings& settings);

} // namespace rend
