#include "KestrelCommon/Resources/Model.h"

#include <array>
#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace resource
{

namespace
{

constexpr size_t s_uMaxVertices = 2000000;
constexpr uintmax_t s_uMaxFileSize = 256u << 20;
constexpr float s_fMaxPlace = 1.0e6f;

constexpr unsigned s_uSteps = aiProcess_Triangulate | aiProcess_PreTransformVertices |
                              aiProcess_JoinIdenticalVertices | aiProcess_GenSmoothNormals |
                              aiProcess_SortByPType | aiProcess_FlipUVs | aiProcess_ImproveCacheLocality;

/// False: a place is no finite number, or an index leads nowhere.
bool appendMesh(const aiScene& scene, const aiMesh& mesh, Model& model)
{
    const auto uBase = static_cast<uint32_t>(model.vecPositions.size());
    const bool bCoords = mesh.HasTextureCoords(0);
    for (unsigned u = 0; u < mesh.mNumVertices; ++u)
    {
        const aiVector3D& p = mesh.mVertices[u];
        const glm::vec3 place(p.x, p.y, p.z);
        for (int i = 0; i < 3; ++i)
            if (!(std::abs(place[i]) <= s_fMaxPlace))
                return false;
        glm::vec3 normal(0.0f, 1.0f, 0.0f);
        if (mesh.HasNormals())
            normal = {mesh.mNormals[u].x, mesh.mNormals[u].y, mesh.mNormals[u].z};
        const float fLength = glm::length(normal);
        const aiVector3D coords = bCoords ? mesh.mTextureCoords[0][u] : aiVector3D();
        model.vecPositions.push_back(place);
        model.vecNormals.push_back(fLength > 1.0e-6f && std::isfinite(fLength) ? normal / fLength
                                                                               : glm::vec3(0.0f, 1.0f, 0.0f));
        model.vecCoords.emplace_back(std::isfinite(coords.x) ? coords.x : 0.0f,
                                     std::isfinite(coords.y) ? coords.y : 0.0f);
    }
    ModelPart part;
    part.uFirst = static_cast<uint32_t>(model.vecIndices.size());
    if (mesh.mMaterialIndex < scene.mNumMaterials)
        part.sMaterial = scene.mMaterials[mesh.mMaterialIndex]->GetName().C_Str();
    for (unsigned uFace = 0; uFace < mesh.mNumFaces; ++uFace)
    {
        const aiFace& face = mesh.mFaces[uFace];
        if (face.mNumIndices != 3)
            continue;
        for (unsigned u = 0; u < 3; ++u)
        {
            if (face.mIndices[u] >= mesh.mNumVertices)
                return false;
            model.vecIndices.push_back(uBase + face.mIndices[u]);
        }
    }
    part.uCount = static_cast<uint32_t>(model.vecIndices.size()) - part.uFirst;
    if (part.uCount > 0)
        model.vecParts.push_back(std::move(part));
    return true;
}

void findBox(Model& model)
{
    model.box = {model.vecPositions.front(), model.vecPositions.front()};
    for (const glm::vec3& place : model.vecPositions)
    {
        model.box.lowest = glm::min(model.box.lowest, place);
        model.box.highest = glm::max(model.box.highest, place);
    }
}

} // namespace

std::optional<Model> loadModel(const std::filesystem::path& path, std::string& sError)
{
    struct Release
    {
        Assimp::Importer& importer;
        ~Release() { importer.FreeScene(); }
    };
    std::error_code error;
    const uintmax_t uSize = std::filesystem::file_size(path, error);
    if (error || uSize > s_uMaxFileSize)
    {
        sError = error ? "no such file" : "the file is too large";
        return std::nullopt;
    }
    thread_local Assimp::Importer importer; // to make one takes longer than to read a small file
    const Release release{importer};
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE, aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, 50.0f);
    const aiScene* pScene = importer.ReadFile(path.string(), s_uSteps);
    if (!pScene || (pScene->mFlags & AI_SCENE_FLAGS_INCOMPLETE) != 0)
    {
        sError = importer.GetErrorString();
        return std::nullopt;
    }
    size_t uVertices = 0;
    for (unsigned u = 0; u < pScene->mNumMeshes; ++u)
        uVertices += pScene->mMeshes[u]->mNumVertices;
    if (uVertices > s_uMaxVertices)
    {
        sError = "too many vertices";
        return std::nullopt;
    }
    Model model;
    for (unsigned u = 0; u < pScene->mNumMeshes; ++u)
        if (!appendMesh(*pScene, *pScene->mMeshes[u], model))
        {
            sError = "a vertex has no proper place";
            return std::nullopt;
        }
    if (model.vecIndices.empty())
    {
        sError = "no triangles";
        return std::nullopt;
    }
    findBox(model);
    return model;
}

Model standInModel()
{
    Model model;
    model.bStandIn = true;
    for (int iAxis = 0; iAxis < 3; ++iAxis)
        for (const float fSide : {-1.0f, 1.0f})
        {
            const auto uBase = static_cast<uint32_t>(model.vecPositions.size());
            glm::vec3 normal(0.0f);
            normal[iAxis] = fSide;
            for (const auto& [fU, fV] : {std::pair{-1.0f, -1.0f}, {1.0f, -1.0f}, {1.0f, 1.0f}, {-1.0f, 1.0f}})
            {
                glm::vec3 place = normal;
                place[(iAxis + 1) % 3] = fU * fSide; // so that the front shows to the outside
                place[(iAxis + 2) % 3] = fV;
                model.vecPositions.push_back(place * 2.0f + glm::vec3(0.0f, 2.0f, 0.0f));
                model.vecNormals.push_back(normal);
                model.vecCoords.emplace_back(fU * 0.5f + 0.5f, 0.5f - fV * 0.5f);
            }
            for (const uint32_t u : {0u, 1u, 2u, 0u, 2u, 3u})
                model.vecIndices.push_back(uBase + u);
        }
    model.vecParts.push_back({"", 0, static_cast<uint32_t>(model.vecIndices.size())});
    findBox(model);
    return model;
}

} // namespace resource
