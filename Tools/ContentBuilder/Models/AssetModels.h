#pragma once // What models there are, and how they come into the asset database.

#include "Tools/ContentBuilder/Models/ModelMesh.h"

#include <string_view>

namespace content
{

struct AssetModel
{
    std::string sName;
    std::function<void(ModelMesh& mesh)> fnMake;
    std::map<std::string, std::string> mapColours; ///< slots that differ from the palette, "RRGGBB"
};

/// A material's picture and the colour slot that tints it; an empty slot: none.
struct AssetMaterial
{
    const char* pName;
    const char* pTexture;
    const char* pSlot;
    const char* pColour; ///< the palette's, "RRGGBB"
};
/// Null for an unknown name.
[[nodiscard]] const AssetMaterial* findAssetMaterial(std::string_view sName);

struct AssetSet
{
    const char* pRoot;     ///< folder below the game folder
    const char* pKey;      ///< the same as content paths name it
    const char* pFile;     ///< the set file's name without its ending
    const char* pFolder;   ///< of the models, below "Environment"
    const char* pCategory; ///< one of eight
    std::vector<AssetModel> (*fnModels)();
};
[[nodiscard]] std::span<const AssetSet> assetSets();

/// A version 5 style id made from the name alone: it never changes as long as the name stays.
[[nodiscard]] std::string assetUuid(std::string_view sName);

/// Contents of the files, as JSON texts.
[[nodiscard]] std::string renderableText(std::string_view sMeshPath, const ModelMesh& mesh);
[[nodiscard]] std::string assetSetText(const AssetSet& set,
                                       std::span<const std::pair<AssetModel, ModelMesh>> spanModels);
[[nodiscard]] std::string assetSetListText(std::string_view sRoot);

// The models, a file a set

[[nodiscard]] std::vector<AssetModel> rockModels();
[[nodiscard]] std::vector<AssetModel> treeModels();
[[nodiscard]] std::vector<AssetModel> fenceModels();
[[nodiscard]] std::vector<AssetModel> wallModels();
[[nodiscard]] std::vector<AssetModel> hutModels();
[[nodiscard]] std::vector<AssetModel> ruinModels();
[[nodiscard]] std::vector<AssetModel> crateModels();
[[nodiscard]] std::vector<AssetModel> lampModels();
[[nodiscard]] std::vector<AssetModel> bridgeModels();
[[nodiscard]] std::vector<AssetModel> slateModels();
[[nodiscard]] std::vector<AssetModel> autumnTreeModels();
[[nodiscard]] std::vector<AssetModel> campModels();
[[nodiscard]] std::vector<AssetModel> scrapFenceModels();
[[nodiscard]] std::vector<AssetModel> supplyModels();
[[nodiscard]] std::vector<AssetModel> campLampModels();
[[nodiscard]] std::vector<AssetModel> logBridgeModels();

// Shapes that several sets use

/// A rock that fills a box of the given size, standing on the origin; iLevel as ballSolid's.
struct RockShape
{
    glm::vec3 size{8.0f};
    int iLevel = 2;
    uint32_t uSeed = 1;
    int iCuts = 16;
    float fMoss = 0.0f;  ///< 0: none, 1: all that faces up
    float fLumpy = 0.3f; ///< how far from round before it is cut
};
void addRock(ModelMesh& mesh, const RockShape& shape, const glm::vec3& foot = glm::vec3(0.0f),
             float fDegreesY = 0.0f);

/// A log with cut ends along a path.
void addLog(ModelMesh& mesh, const glm::vec3& from, const glm::vec3& to, float fRadius, uint32_t uSeed,
            int iSides = 8, const char* pMaterial = "Bark");

/// A ball of leaves: a core, and bunches that stick out of it, lit as a part of the whole crown.
struct LeafBall
{
    glm::vec3 centre{0.0f};
    glm::vec3 radius{4.0f};
    int iLevel = 1;
    int iBunches = 18;
    float fBunch = 2.2f; ///< half a bunch's side
};
void addLeaves(ModelMesh& mesh, const LeafBall& ball, const glm::vec3& crown, uint32_t uSeed);

} // namespace content
