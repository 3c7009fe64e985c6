#pragma once // The global table of clutter types.

#include "KestrelCommon/Tile/ClutterSection.h"

#include <json/forwards.h>
#include <string>
#include <string_view>
#include <vector>

namespace tile
{

/// One type of grass or ground cover; its place in the table is the global clutter index.
struct GrassInfo
{
    enum Flags : uint32_t
    {
        GroundNormal = 1,
        Wind = 2,
        Slope = 4,
        Rotate = 8,
    };

    Uuid uuid;
    std::string name;
    uint32_t flags = 0;
    float height = 0.0f;
    float scaleVariance = 0.0f;
    int32_t textureIndex = 0; ///< into textures()
    int32_t meshIndex = 0;    ///< into meshes(); entries with the same mesh share one
    std::string impostorTexture;
};

/// Fewer than 255 types in the order of reading. Filled at start-up, then only read.
class ClutterDatabase
{
public:
    static constexpr size_t s_uMaxTypes = 254;

    /// Appends the types of the two databases of the game, as far as they exist.
    void loadGameDatabases();

    /// Appends the types of a file; a type with a bad id is reported and skipped. False: the file
    /// can't be read or parsed.
    bool load(std::string_view sPath);
    bool loadText(std::string_view sText, std::string_view sName);

    [[nodiscard]] const std::vector<GrassInfo>& types() const { return m_vecTypes; }
    [[nodiscard]] const std::vector<std::string>& textures() const { return m_vecTextures; }
    [[nodiscard]] const std::vector<std::string>& meshes() const { return m_vecMeshes; }

    /// For the section code; valid until the next load.
    [[nodiscard]] ClutterTypes lookUp() const { return {m_vecUuids, &m_mapIndexOf}; }

private:
    bool loadRoot(const Json::Value& root);

    std::vector<GrassInfo> m_vecTypes;
    std::vector<Uuid> m_vecUuids;
    std::vector<std::string> m_vecTextures;
    std::vector<std::string> m_vecMeshes;
    std::unordered_map<Uuid, uint8_t> m_mapIndexOf;
};

} // namespace tile
