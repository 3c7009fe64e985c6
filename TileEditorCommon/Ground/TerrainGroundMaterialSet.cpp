#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"

#include <json/value.h>

namespace tilebuilder
{

namespace
{

constexpr int s_iMaxSide = 8192;

/// A running 32-bit hash.
class IdentityHash
{
public:
    void add(uint32_t uValue)
    {
        m_uHash += uValue * s_uSeed;
        m_uHash = std::rotl(m_uHash, 11) * s_uFactor;
    }
    void add(std::string_view sText)
    {
        for (const char c : sText)
            add(static_cast<uint32_t>(static_cast<unsigned char>(c)));
    }
    /// Never 0, which means that no set is bound.
    [[nodiscard]] uint64_t value() const { return m_uHash ? m_uHash : s_uSeed; }

private:
    static constexpr uint32_t s_uSeed = 374761397u;
    static constexpr uint32_t s_uFactor = 2654435761u;
    uint32_t m_uHash = s_uSeed;
};

bool isSetPath(std::string_view sPath)
{
    return sPath.starts_with('$') && sPath.find('/') != std::string_view::npos &&
           (sPath.ends_with(".json") || sPath.ends_with(".materialset")) &&
           sPath.find('/') < sPath.rfind('.');
}

int sizeMember(const Json::Value& object, const char* pKey)
{
    const double fValue = jsonNumber(object, pKey, 0.0);
    return fValue >= -1.0e9 && fValue <= 1.0e9 ? static_cast<int>(fValue) : 0;
}

bool checkSize(std::string_view sPath, int iWidth, int iHeight)
{
    const auto isGood = [](int iSide) { return iSide > 0 && iSide % 4 == 0 && (iSide & (iSide - 1)) == 0; };
    if (!isGood(iWidth) || !isGood(iHeight))
    {
        QM_LOG_ERROR(sPath, " uses a compressed layout but its size is ", iWidth, "x", iHeight,
                     ". compressed textures must be power of 2s.");
        return false;
    }
    if (iWidth > s_iMaxSide || iHeight > s_iMaxSide)
    {
        QM_LOG_ERROR(sPath, " is to big at ", iWidth, "x", iHeight,
                     ". 8192x8192 is the maximum size possible.");
        return false;
    }
    return true;
}

bool checkPaths(std::string_view sPath, const GroundMaterialSetDesc& desc)
{
    for (size_t i = 0; i < GroundMaterialCount; ++i)
    {
        const char* pMissing = desc.arrDiffuse[i].empty()     ? "diffuse"
                               : desc.arrAsgMap[i].empty()    ? "asgMap"
                               : desc.arrNormalMap[i].empty() ? "normalMap"
                                                              : nullptr;
        if (!pMissing)
            continue;
        QM_LOG_ERROR("Failed to load. Ground Material Set (", sPath, ") ", pMissing, " path ", i,
                     " is not valid");
        return false;
    }
    return true;
}

} // namespace

std::optional<GroundMaterialSetDesc> readGroundMaterialSet(const Json::Value& root, std::string_view sPath)
{
    const Json::Value& set = jsonMember(root, "groundMaterials");
    if (!set.isObject())
    {
        QM_LOG_ERROR("Failed to load Ground Material Set (", sPath,
                     ")  json 'groundMaterials' was not valid");
        return std::nullopt;
    }
    GroundMaterialSetDesc desc;
    desc.iWidth = sizeMember(set, "width");
    desc.iHeight = sizeMember(set, "height");
    if (!checkSize(sPath, desc.iWidth, desc.iHeight))
        return std::nullopt;
    IdentityHash hash;
    hash.add(static_cast<uint32_t>(desc.iWidth));
    hash.add(static_cast<uint32_t>(desc.iHeight));

    const Json::Value& textures = jsonMember(set, "textures");
    if (!textures.isArray())
    {
        QM_LOG_ERROR("Failed to load Ground Material Set (", sPath, ")  'textures' was not valid");
        return std::nullopt;
    }
    if (textures.size() != GroundMaterialCount)
    {
        QM_LOG_ERROR("Failed to load. Ground Material Set (", sPath, ")  Set has ", textures.size(),
                     " textures needs to be ", GroundMaterialCount);
        return std::nullopt;
    }
    for (size_t i = 0; i < GroundMaterialCount; ++i)
    {
        const Json::Value& entry = textures[static_cast<Json::ArrayIndex>(i)];
        if (!entry.isObject())
            continue;
        desc.arrNames[i] = jsonText(entry, "name");
        desc.arrDiffuse[i] = jsonText(entry, "diffuse");
        desc.arrAsgMap[i] = jsonText(entry, "asgMap");
        desc.arrNormalMap[i] = jsonText(entry, "normalMap");
        for (const std::string& sText :
             {desc.arrNames[i], desc.arrDiffuse[i], desc.arrAsgMap[i], desc.arrNormalMap[i]})
            hash.add(sText);
    }
    if (!checkPaths(sPath, desc))
        return std::nullopt;
    desc.uHash = hash.value();
    return desc;
}

TerrainGroundMaterialSet::~TerrainGroundMaterialSet()
{
    destroyTextures();
}

void TerrainGroundMaterialSet::destroyTextures()
{
    if (!m_pTextures)
        return;
    for (const rend::TextureHandle texture : {m_diffuseArray, m_asgArray, m_normalArray})
        if (texture)
            m_pTextures->destroyTexture(texture);
}

bool TerrainGroundMaterialSet::load(const std::string& path)
{
    if (path == m_path)
        return false;
    if (!isSetPath(path))
    {
        QM_LOG_ERROR("Failed to load Ground Material Set (", path, ") is not a valid path");
        return false;
    }
    const auto root = readJsonFile(path);
    if (!root)
        return false;
    auto desc = readGroundMaterialSet(*root, path);
    if (!desc)
        return false;

    using Layout = resource::TextureResourceLayout;
    rend::TextureHandle diffuse;
    rend::TextureHandle asg;
    rend::TextureHandle normal;
    if (m_pTextures)
    {
        const auto create =
            [&](std::string_view sName, std::span<const std::string> spanPaths, Layout eLayout)
        { return m_pTextures->createTextureArray(sName, spanPaths, desc->iWidth, desc->iHeight, eLayout); };
        diffuse = create("Ground Diffuse", desc->arrDiffuse, Layout::Bc3);
        asg = create("Ground Asg", desc->arrAsgMap, Layout::Bc3);
        normal = create("Ground Normal", desc->arrNormalMap, Layout::Bc5);
        if (!diffuse || !asg || !normal)
        {
            for (const rend::TextureHandle texture : {diffuse, asg, normal})
                if (texture)
                    m_pTextures->destroyTexture(texture);
            return false;
        }
        destroyTextures();
    }
    m_diffuseArray = diffuse;
    m_asgArray = asg;
    m_normalArray = normal;
    m_desc = std::move(*desc);
    m_path = path;
    return true;
}

} // namespace tilebuilder
