// The JSON of a clutter database, and the text of a clutter mesh.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Tile/ClutterDatabase.h"
#include "KestrelCommon/renderer/ClutterMesh.h"
#include "Tests/Support/LogCapture.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    fuzz::writeSeeds(
        *pArguments, *pppArguments,
        {R"({"clutterList":[{"uuid":"00000000-0000-4000-8000-000000000001","name":"a","height":1,"wind":true,
             "slope":"skew","rotate":"rotate","mesh":"m","texture":"t","impostor_texture":"i"}]})",
         R"({"clutterList":[{"uuid":"x"},{"uuid":[]},7,{"uuid":"00000000-0000-4000-8000-000000000001","height":"h"}]})",
         R"({"clutterList":{"a":1}})",
         "v -1 0 0\nv 1 0 0\nv 1 2 4\nvt 0 0.25\nvn 0 0 1\nf 1/1/1 2/1/1 3//1\ng more\nf 3 2 1\n"});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    static LogCapture s_log;
    s_log.clear();
    const std::string_view sText(reinterpret_cast<const char*>(pData), uSize);
    tile::ClutterDatabase database;
    static_cast<void>(database.loadText(sText, "fuzz"));
    for (const tile::GrassInfo& type : database.types())
        if (static_cast<size_t>(type.meshIndex) >= database.meshes().size() ||
            static_cast<size_t>(type.textureIndex) >= database.textures().size())
            std::abort();
    if (const auto mesh = rend::parseClutterMesh(sText, "fuzz"))
    {
        if (mesh->uCoreIndices > mesh->vecIndices.size() || mesh->vecIndices.size() % 3 != 0)
            std::abort();
        for (const uint16_t uIndex : mesh->vecIndices)
            if (uIndex >= mesh->vecVertices.size())
                std::abort();
    }
    return 0;
}
