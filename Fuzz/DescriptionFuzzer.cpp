// The description of a content item, read and used as the browser of items does.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Ugc/UgcBase.h"
#include "Tests/Support/TempFolder.h"

#include "KestrelCommon/Services/DirectoryManager.h"

namespace
{

struct World
{
    TempFolder folder;
    DirectoryManager directories{
        {folder.path() / "roaming", folder.path() / "local", folder.path() / "game/Release", {}, 7}};
};
World* s_pWorld = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    static World s_world;
    s_pWorld = &s_world;
    fuzz::writeSeeds(
        *pArguments, *pppArguments,
        {R"({"type":"Tile","version":1,"localId":"0123abcd-4567-49ef-8123-456789abcdef","fileId":5,"name":"Hill",
                         "dependencies":[{"fileId":7,"localId":"0123abcd-4567-49ef-8123-456789abcdee","name":"other"}]})",
         R"({"localId":3,"version":"x","fileId":-1,"dependencies":[1,[],{}]})"});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    const std::string sPath = s_pWorld->folder.text() + "/description.json";
    std::ofstream(sPath, std::ios::binary)
        .write(reinterpret_cast<const char*>(pData), static_cast<std::streamsize>(uSize));
    UgcBase item(UgcKind::Tile, s_pWorld->folder.text());
    if (item.readDescription(sPath))
    {
        static_cast<void>(item.name());
        static_cast<void>(item.getLocalId());
        static_cast<void>(item.getContentId());
        static_cast<void>(item.getVersion());
        static_cast<void>(item.getDependencies());
    }
    return 0;
}
