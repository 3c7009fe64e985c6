#pragma once // The few pictures that all models share.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace content
{

/// Most are near white, for the colours of an object to tint.
struct AssetTexture
{
    const char* pName;
    bool bMaps; ///< has a normal and an asg map besides the diffuse one
    std::vector<uint8_t> (*fnPaint)(std::vector<uint8_t>& vecNormal, std::vector<uint8_t>& vecAsg);
};

constexpr int s_iAssetTextureSide = 256;
constexpr const char* s_pAssetTextureFolder = "Data/Environment/Textures/";

[[nodiscard]] std::span<const AssetTexture> assetTextures();
/// Null for an unknown name.
[[nodiscard]] const AssetTexture* findAssetTexture(std::string_view sName);

} // namespace content
