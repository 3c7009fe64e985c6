// The JSON of lists of asset sets, of sets, and of renderables.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Assets/AssetSets.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "Tests/Support/LogCapture.h"

#include <cstdlib>
#include <json/value.h>

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    fuzz::writeSeeds(
        *pArguments, *pppArguments,
        {R"({"iconDirectory":"$GAME_DATA/Icons","assetSetList":[{"assetSet":"$GAME_DATA/a.json","hidden":true,
             "categories":["a","b"]},{"assetSet":"b","category":"c"},7,{"categories":{}}]})",
         R"({"assetListRenderable":[{"uuid":"00000000-0000-4000-8000-000000000001","name":"a","hidden":true,
             "renderable":{"mesh":"m","materials":{"x":{"colorSlot":"s"}}},"defaultColors":{"s":"#A1B2C3","t":"xyz"}},
             {"uuid":"x","renderable":"r"},{"uuid":[],"renderable":{}},7]})",
         R"({"mesh":"$GAME_DATA/a.obj","materials":{"bark":{"diffuse":"d","normal":"n","asg":"g","colorSlot":"w"},
             "leaf":{},"odd":7}})",
         R"({"materials":[]})"});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    static LogCapture s_log;
    s_log.clear();
    const std::string_view sText(reinterpret_cast<const char*>(pData), uSize);
    std::string sError;
    if (const auto jRoot = parseJson(sText, sError))
    {
        for (const terrain::AssetSetRef& ref : terrain::readAssetSetList(*jRoot).vecSets)
            if (ref.sSet.empty())
                std::abort();
        for (const terrain::AssetEntry& entry : terrain::readAssetSet(*jRoot))
            if (entry.uuid.isNil() || (entry.renderable && entry.renderable->sMesh.empty()))
                std::abort();
    }
    if (const auto desc = resource::parseRenderable(sText, "fuzz"))
    {
        const auto pModel = std::make_shared<const resource::ModelFile>(desc->sMesh, [](std::string_view)
                                                                        { return std::filesystem::path(); });
        const resource::Renderable renderable(*desc, pModel, false);
        for (const auto& [sName, material] : desc->mapMaterials)
        {
            const int iSlot = renderable.colorSlotOf(sName);
            if (material.sColorSlot.empty()
                    ? iSlot != -1
                    : renderable.colorSlots()[static_cast<size_t>(iSlot)] != material.sColorSlot)
                std::abort();
        }
    }
    return 0;
}
