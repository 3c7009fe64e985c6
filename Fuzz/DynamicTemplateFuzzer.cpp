// A template and a data file that is read through it: the text before the first zero byte and the
// one behind it. What was read is written, and reads the same again.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/TempFolder.h"

#include <cstdlib>
#include <json/value.h>

namespace
{

struct World
{
    TempFolder folder;
    DirectoryManager directories{
        {folder.path() / "roaming", folder.path() / "local", folder.path() / "game/Release", {}, 7}};

    World()
    {
        directories.addKey("$GAME_DATA", folder.text());
        write("list.json", R"({"template_list": ["$GAME_DATA/a.json", "$GAME_DATA/b.json"]})");
        write(
            "b.json",
            R"({"template_meta": {"name": "b"}, "x": 1, "x_meta": {"type": "float"}, "y": {}, "y_meta": {"subTemplate": "a"}})");
    }
    void write(const char* pName, std::string_view sText) const
    {
        std::ofstream(folder.path() / pName, std::ios::binary) << sText;
    }
};
World* s_pWorld = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    static World s_world;
    s_pWorld = &s_world;
    using namespace std::string_literals;
    fuzz::writeSeeds(
        *pArguments, *pppArguments,
        {R"({"template_meta": {"name": "a", "root_meta": {"type": "map", "value_meta": {"type": "color"}}}})"
         "\0"
         R"({"one": [1, 2, 3, 0.5], "two": "x"})"s,
         R"({"n": "", "n_meta": {"type": "string", "options": ["a"]}, "l": [{"v": [0, 0, 0], "v_meta": {"type": "vec3"}}],
             "s": {}, "s_meta": {"subTemplate": "b"}, "u": 0, "u_meta": {"type": "uint64", "optional": true}})"
         "\0"
         R"({"n": "b", "l": [{"v": {"x": 1}}, {}], "s": {"x": 1e400, "y": 1}, "u": 18446744073709551615})"s,
         "[[1], {\"k\": 2}]\0[[], 7, -9223372036854775808]"s});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    const std::string_view sInput(reinterpret_cast<const char*>(pData), uSize);
    const size_t uCut = std::min(sInput.find('\0'), uSize);
    s_pWorld->write("a.json", sInput.substr(0, uCut));
    DynamicDataManager manager("$GAME_DATA/list.json");
    std::string sError;
    const auto jFile = parseJson(sInput.substr(std::min(uCut + 1, uSize)), sError);
    if (!jFile || manager.templates().empty())
        return 0;
    const DynamicTemplate* pTemplate = manager.templates().front().get();
    DynamicData::Value tree;
    DynamicDataErrors errors;
    manager.read(tree, *jFile, pTemplate, &errors);
    Json::Value jWritten;
    manager.write(pTemplate, tree, jWritten);
    DynamicData::Value again;
    manager.read(again, jWritten, pTemplate);
    Json::Value jAgain;
    manager.write(pTemplate, again, jAgain);
    if (jAgain.compare(jWritten) != 0)
        std::abort();
    return 0;
}
