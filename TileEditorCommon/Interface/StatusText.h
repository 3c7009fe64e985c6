#pragma once // The text of the status overlay. No GUI.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace tilebuilder
{

struct StatusFigures
{
    uint32_t uFrames = 0; ///< of the last second
    double fCpuMs = 0.0;
    double fGpuMs = 0.0;
    std::array<float, 3> camera{};
    std::array<float, 3> cursor{};
    std::optional<float> gridSpacing;
};

/// Lines of figures with four significant digits.
[[nodiscard]] std::string statusText(const StatusFigures& figures);

} // namespace tilebuilder
