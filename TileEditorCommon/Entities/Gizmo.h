#pragma once // The small icons that stand for entities in the view and in lists.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tilebuilder
{

/// The images of "$GAME_DATA/TileEditor/gizmos.json", each known by a handle that counts from 1 in
/// the order of the file; 0 is the fallback ring. A handle is also the image's layer in the array
/// of billboards. Read at the first call. Main thread only.
class Gizmo
{
public:
    static constexpr const char* s_pListPath = "$GAME_DATA/TileEditor/gizmos.json";
    static constexpr const char* s_pFallbackPath = "$GAME_DATA/Gui/Editor/ed_gizmo_ring.png";

    /// h := h * 101 + c for each byte, on 64 bits, from 0.
    [[nodiscard]] static constexpr uint64_t hash(std::string_view sName)
    {
        uint64_t uHash = 0;
        for (const char c : sName)
            uHash = uHash * 101 + static_cast<unsigned char>(c);
        return uHash;
    }

    /// 0, with a line, for a name that the file doesn't hold.
    [[nodiscard]] static uint32_t handleByHash(uint64_t uHash);
    [[nodiscard]] static uint32_t handleByName(std::string_view sName) { return handleByHash(hash(sName)); }
    /// Keyed path of the image; the fallback's, with a line, for a handle that isn't given out.
    [[nodiscard]] static std::string pathByHandle(uint32_t uHandle);
    /// In the order of the handles, the fallback first.
    [[nodiscard]] static std::vector<std::string> allPaths();

    /// Forgets what was read: the next call reads the file anew.
    static void reset();
};

} // namespace tilebuilder
