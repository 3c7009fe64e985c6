#pragma once // The editor's settings file.

#include <cstdint>
#include <string_view>

struct EditorSettings
{
    static constexpr int32_t s_iMinFov = 45;
    static constexpr int32_t s_iMaxFov = 120;

    int32_t fov = s_iMinFov; ///< degrees, whole

    /// From the member "FOV" of the file; defaults when it is missing or doesn't parse, which is logged.
    [[nodiscard]] static EditorSettings read(std::string_view sPath);
};
