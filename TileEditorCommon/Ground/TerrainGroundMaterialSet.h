#pragma once // The nine ground materials that are bound to the surface.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <array>
#include <cstdint>
#include <json/forwards.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tilebuilder
{

constexpr size_t GroundMaterialCount = 9;

/// Makes texture arrays from picture files; the one thing that a set asks of the resources.
class GroundTextureSourceI
{
public:
    virtual ~GroundTextureSourceI() = default;

    /// A layer for each path, all of the given size. Null on failure, which it has reported.
    virtual rend::TextureHandle createTextureArray(std::string_view sName,
                                                   std::span<const std::string> spanPaths, int iWidth,
                                                   int iHeight, resource::TextureResourceLayout eLayout) = 0;
    virtual void destroyTexture(rend::TextureHandle texture) = 0;
};

/// What a set's file says.
struct GroundMaterialSetDesc
{
    int iWidth = 0;
    int iHeight = 0;
    uint64_t uHash = 0; ///< identity of the content
    std::array<std::string, GroundMaterialCount> arrNames;
    std::array<std::string, GroundMaterialCount> arrDiffuse;
    std::array<std::string, GroundMaterialCount> arrAsgMap;
    std::array<std::string, GroundMaterialCount> arrNormalMap;
};

/// Checks a set's JSON. A failure logs one line that names the path.
[[nodiscard]] std::optional<GroundMaterialSetDesc> readGroundMaterialSet(const Json::Value& root,
                                                                         std::string_view sPath);

/// On any failure the set that was bound stays. Main thread.
class TerrainGroundMaterialSet
{
public:
    static constexpr const char* s_pStandardPath =
        "$GAME_DATA/Terrain/Materials/gnd_standard_materialset.json";

    /// The source may be null, for a run without pictures; else it must outlive the set.
    explicit TerrainGroundMaterialSet(GroundTextureSourceI* pTextures) : m_pTextures(pTextures) {}
    ~TerrainGroundMaterialSet();
    TerrainGroundMaterialSet(const TerrainGroundMaterialSet&) = delete;
    TerrainGroundMaterialSet& operator=(const TerrainGroundMaterialSet&) = delete;

    /// True when a new set was bound; false without a message for the set that is bound already.
    bool load(const std::string& path);

    /// 0 until a set is loaded.
    [[nodiscard]] uint64_t hash() const { return m_desc.uHash; }
    [[nodiscard]] const std::array<std::string, GroundMaterialCount>& names() const
    {
        return m_desc.arrNames;
    }
    /// Keyed paths of the colour maps.
    [[nodiscard]] const std::array<std::string, GroundMaterialCount>& diffusePaths() const
    {
        return m_desc.arrDiffuse;
    }
    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] rend::TextureHandle diffuseArray() const { return m_diffuseArray; }
    [[nodiscard]] rend::TextureHandle asgArray() const { return m_asgArray; }
    [[nodiscard]] rend::TextureHandle normalArray() const { return m_normalArray; }

private:
    void destroyTextures();

    GroundTextureSourceI* m_pTextures;
    GroundMaterialSetDesc m_desc;
    std::string m_path;
    rend::TextureHandle m_diffuseArray;
    rend::TextureHandle m_asgArray;
    rend::TextureHandle m_normalArray;
};

} // namespace tilebuilder
