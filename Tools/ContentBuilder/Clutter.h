#pragma once // The clutter types of the starter content: their meshes, pictures and impostors.

#include "Tools/ContentBuilder/ClutterShapes.h"
#include "Tools/ContentBuilder/Sprite.h"

#include <span>

namespace content
{

struct ClutterType
{
    const char* pFile; ///< below the game folder; files are <pFile>.obj, _dif.png, _imp.png
    ClutterShape (*fnShape)();
    void (*fnPaint)(Sprite& sprite);
    bool bImpostor;
};
[[nodiscard]] std::span<const ClutterType> clutterTypes();

constexpr int ImpostorSide = 32;

/// The shape seen from the side, averaged over directions, filling the picture: RGBA bytes, top row first.
[[nodiscard]] std::vector<uint8_t> makeImpostor(const ClutterShape& shape,
                                                const std::vector<uint8_t>& vecPicture);

} // namespace content
