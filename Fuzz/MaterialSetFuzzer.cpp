// The JSON of a ground material set.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

#include <json/value.h>

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    std::string sGood = R"({"groundMaterials":{"width":512,"height":512,"textures":[)";
    for (int i = 0; i < 9; ++i)
        sGood += std::string(i ? "," : "") +
                 R"({"name":"a","diffuse":"$GAME_DATA/d.png","asgMap":"$GAME_DATA/a.png","normalMap":"n"})";
    sGood += "]}}";
    fuzz::writeSeeds(*pArguments, *pppArguments,
                     {sGood, R"({"groundMaterials":{"width":1e99,"height":-4,"textures":{}}})", "[[[[1]]]]"});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    std::string sError;
    const auto root = parseJson({reinterpret_cast<const char*>(pData), uSize}, sError);
    if (root)
        static_cast<void>(tilebuilder::readGroundMaterialSet(*root, "$GAME_DATA/set.json"));
    return 0;
}
