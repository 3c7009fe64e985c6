#include "Tools/ContentBuilder/Models/ModelFiles.h"

#include "Tools/ContentBuilder/ImageFile.h"
#include "Tools/ContentBuilder/Models/AssetModels.h"
#include "Tools/ContentBuilder/Models/AssetTextures.h"
#include "Tools/ContentBuilder/Models/Figures.h"

#include <cstdio>
#include <fstream>

namespace content
{

namespace
{

bool writeText(OutputFolder& output, const std::string& sFile, const std::string& sText)
{
    std::ofstream file(output.prepare(sFile), std::ios::binary | std::ios::trunc);
    file << sText;
    file.close();
    if (!file)
        std::fprintf(stderr, "Failed to write %s\n", sFile.c_str());
    return static_cast<bool>(file);
}

bool makeTexture(const AssetTexture& texture, uint64_t uInputs, OutputFolder& output)
{
    const std::string sBase = std::string(s_pAssetTextureFolder) + texture.pName;
    std::vector<std::string> vecFiles{sBase + "_dif.png"};
    if (texture.bMaps)
        for (const char* pEnding : {"_nor.png", "_asg.png"})
            vecFiles.push_back(sBase + pEnding);
    if (output.isCurrent(vecFiles, uInputs))
        return true;
    std::array<std::vector<uint8_t>, 3> arrMaps;
    arrMaps[0] = texture.fnPaint(arrMaps[1], arrMaps[2]);
    for (size_t u = 0; u < vecFiles.size(); ++u)
        if (!writeImage(output.prepare(vecFiles[u]), s_iAssetTextureSide, s_iAssetTextureSide, arrMaps[u]))
        {
            std::fprintf(stderr, "Failed to write %s\n", vecFiles[u].c_str());
            return false;
        }
    output.markMade(vecFiles, uInputs);
    return true;
}

bool makeSet(const AssetSet& set, uint64_t uInputs, OutputFolder& output)
{
    const std::vector<AssetModel> vecModels = set.fnModels();
    const std::string sFolder = std::string(set.pRoot) + "/Environment/" + set.pFolder + "/";
    std::vector<std::string> vecFiles{std::string(set.pRoot) + "/Terrain/Database/AssetSets/" + set.pFile +
                                      ".json"};
    for (const AssetModel& model : vecModels)
        for (const char* pEnding : {".obj", ".rend"})
            vecFiles.push_back(sFolder + model.sName + pEnding);
    if (output.isCurrent(vecFiles, uInputs))
        return true;
    std::vector<std::pair<AssetModel, ModelMesh>> vecMade;
    for (const AssetModel& model : vecModels)
    {
        ModelMesh mesh;
        model.fnMake(mesh);
        const std::string sMesh =
            std::string(set.pKey) + "/Environment/" + set.pFolder + "/" + model.sName + ".obj";
        if (!writeText(output, sFolder + model.sName + ".obj", mesh.text()) ||
            !writeText(output, sFolder + model.sName + ".rend", renderableText(sMesh, mesh)))
            return false;
        vecMade.emplace_back(model, std::move(mesh));
    }
    if (!writeText(output, vecFiles[0], assetSetText(set, vecMade)))
        return false;
    output.markMade(vecFiles, uInputs);
    return true;
}

bool makeSetList(const char* pRoot, uint64_t uInputs, OutputFolder& output)
{
    const std::string sFile = std::string(pRoot) + "/Terrain/Database/assetsets.json";
    if (output.isCurrent({sFile}, uInputs))
        return true;
    if (!writeText(output, sFile, assetSetListText(pRoot)))
        return false;
    output.markMade({sFile}, uInputs);
    return true;
}

bool makeFigure(const Figure& figure, uint64_t uInputs, OutputFolder& output)
{
    const std::string sBase = std::string("Data/") + figure.pFile;
    std::vector<std::string> vecFiles{sBase + ".obj", sBase + ".rend"};
    for (const PlainMaterial& material : figure.vecMaterials)
        vecFiles.push_back(sBase + "_" + material.pName + "_dif.png");
    if (output.isCurrent(vecFiles, uInputs))
        return true;
    ModelMesh mesh;
    figure.fnMake(mesh);
    if (!writeText(output, vecFiles[0], mesh.text()) || !writeText(output, vecFiles[1], figureText(figure)))
        return false;
    for (size_t u = 0; u < figure.vecMaterials.size(); ++u)
    {
        constexpr int s_iSide = 4;
        std::vector<uint8_t> vecPixels;
        for (int i = 0; i < s_iSide * s_iSide; ++i)
        {
            const auto& arrColour = figure.vecMaterials[u].arrColour;
            vecPixels.insert(vecPixels.end(), {arrColour[0], arrColour[1], arrColour[2], 255});
        }
        if (!writeImage(output.prepare(vecFiles[u + 2]), s_iSide, s_iSide, vecPixels))
            return false;
    }
    output.markMade(vecFiles, uInputs);
    return true;
}

} // namespace

std::vector<std::function<bool()>> modelJobs(uint64_t uModels, uint64_t uPictures, OutputFolder& output)
{
    std::vector<std::function<bool()>> vecJobs;
    for (const AssetTexture& texture : assetTextures())
        vecJobs.emplace_back([&texture, uPictures, &output]
                             { return makeTexture(texture, uPictures, output); });
    for (const AssetSet& set : assetSets())
        vecJobs.emplace_back([&set, uModels, &output] { return makeSet(set, uModels, output); });
    for (const Figure& figure : figures())
        vecJobs.emplace_back([&figure, uModels, &output] { return makeFigure(figure, uModels, output); });
    for (const char* pRoot : {"Data", "Survival"})
        vecJobs.emplace_back([pRoot, uModels, &output] { return makeSetList(pRoot, uModels, output); });
    return vecJobs;
}

} // namespace content
