#pragma once // Which size class the interface is drawn for.

#include <map>
#include <optional>
#include <string>

/// What the table of resolutions says of a width.
struct GuiResolutionEntry
{
    float fScale = 1.0f; ///< pixels per unit of the layouts and skins
};

/// By width in pixels, rising.
using GuiResolutionTable = std::map<int, GuiResolutionEntry>;

struct GuiResolution
{
    int iWidth = 1280; ///< of the GUI, 16:9
    int iHeight = 720;
    int iOffsetX = 0; ///< of the GUI's box within the client area, pixels
    int iOffsetY = 0;
    float fScale = 1.0f;

    bool operator==(const GuiResolution&) const = default;
};

/// Reads {"resolutionList": [{"w": 1920, "scale": 1.0}, ...]}; a missing width counts as 1280, a
/// missing or impossible scale as 1. Nothing, with one error line, when it doesn't parse or the
/// list is empty.
[[nodiscard]] std::optional<GuiResolutionTable> parseGuiResolutions(const std::string& sJson);

/// Fits a 16:9 box into the client area and takes the last listed width that isn't greater than the
/// box's, else the smallest. The table isn't empty.
[[nodiscard]] GuiResolution chooseGuiResolution(const GuiResolutionTable& mapTable, int iClientWidth,
                                                int iClientHeight);
