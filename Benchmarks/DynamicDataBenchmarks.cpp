// A data file of 5 MB, read through a template and looked at for changes.

#include "Benchmarks/Harness.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Data/DynamicDataResource.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/JsonText.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <json/value.h>

namespace bench
{

namespace
{

constexpr size_t s_uEntries = 11'500;

constexpr const char* s_pTemplate = R"({
    "template_meta": {"name": "objects", "pattern": "*.objects"},
    "objectList_meta": {"type": "array", "value_meta": {"subTemplate": "object"}},
    "objectList": []
})";

constexpr const char* s_pObject = R"({
    "template_meta": {"name": "object"},
    "uuid": "00112233-4455-4677-8899-aabbccddeeff", "uuid_meta": {"type": "uuid"},
    "name": "", "name_meta": {"type": "string"},
    "kind": "stone", "kind_meta": {"type": "string", "options": ["stone", "wood", "metal"]},
    "renderable": "", "renderable_meta": {"type": "renderable"},
    "color": [1, 1, 1, 1], "color_meta": {"type": "color"},
    "offset": [0, 0, 0], "offset_meta": {"type": "vec3"},
    "physics": {"density": 500, "density_meta": {"type": "float"}, "friction": 0.5, "friction_meta": {"type": "float"},
                "solid": true, "solid_meta": {"type": "bool"}, "layers": 1, "layers_meta": {"type": "uint"}},
    "tags": []
})";

/// A folder with both templates, the file and the renderables that it names.
struct DataFile
{
    TempFolder folder;
    DirectoryManager directories{
        {folder.path() / "roaming", folder.path() / "local", folder.path() / "game", {}, 7}};
    std::unique_ptr<DynamicDataManager> pManager;
    std::string sText;

    DataFile()
    {
        directories.addKey("$GAME_DATA", folder.text());
        std::filesystem::create_directories(folder.path() / "Templates");
        write(
            "Templates/template_list.json",
            R"({"template_list": ["$GAME_DATA/Templates/objects.json", "$GAME_DATA/Templates/object.json"]})");
        write("Templates/objects.json", s_pTemplate);
        write("Templates/object.json", s_pObject);
        for (int i = 0; i < 100; ++i)
            write("object_" + std::to_string(i) + ".rend", "{}");
        Json::Value jRoot;
        for (size_t i = 0; i < s_uEntries; ++i)
            jRoot["objectList"].append(entry(i));
        sText = writeJsonText(jRoot, JsonStyle::Indented);
        write("all.objects", sText);
        pManager = std::make_unique<DynamicDataManager>();
    }

    static Json::Value entry(size_t i)
    {
        constexpr const char* arrKinds[] = {"stone", "wood", "metal"};
        const auto iNumber = static_cast<int>(i);
        Json::Value jEntry;
        jEntry["uuid"] = Uuid::random().text();
        jEntry["name"] = "object number " + std::to_string(i);
        jEntry["kind"] = arrKinds[i % 3];
        jEntry["renderable"] = "$GAME_DATA/object_" + std::to_string(i % 100) + ".rend";
        for (int k = 0; k < 4; ++k)
            jEntry["color"].append((iNumber * 7 + k * 31) % 256 / 255.0);
        for (int k = 0; k < 3; ++k)
            jEntry["offset"].append((iNumber + k) % 64 / 8.0);
        jEntry["physics"]["density"] = 100.0 + iNumber % 900;
        jEntry["physics"]["friction"] = iNumber % 10 / 10.0;
        jEntry["physics"]["solid"] = i % 2 == 0;
        jEntry["physics"]["layers"] = iNumber % 16;
        jEntry["tags"].append("tag" + std::to_string(i % 20));
        jEntry["tags"].append("other");
        return jEntry;
    }

    void write(const std::string& sName, std::string_view sContent) const
    {
        std::ofstream(folder.path() / sName, std::ios::binary) << sContent;
    }
};

int dynamicData()
{
    constexpr const char* pRead = "read of a 5 MB data file through a template";
    constexpr const char* pSnapshot = "snapshot of that file without a change";
    if (!isWanted(pRead) && !isWanted(pSnapshot))
        return 0;
    DataFile file;
    DynamicDataManager& manager = *file.pManager;
    const DynamicTemplate* pTemplate = manager.getTemplate("objects");
    std::string sError;
    std::optional<Json::Value> jParsed;
    DynamicData::Value tree;
    bool bGood = false;
    int iMissed = !run({.sName = pRead,
                        .fLimit = 2.0,
                        .fnFloor = [&] { jParsed = parseJson(file.sText, sError); },
                        .fnProduct =
                            [&]
                        {
                            const auto jRoot = parseJson(file.sText, sError);
                            bGood = manager.read(tree, *jRoot, pTemplate);
                        },
                        .fnEqual =
                            [&]
                        {
                            // Colours alone lose digits, on their way through floats.
                            Json::Value jBack;
                            manager.write(pTemplate, tree, jBack);
                            for (Json::Value* pRoot : {&jBack, &*jParsed})
                                for (Json::Value& jEntry : (*pRoot)["objectList"])
                                    for (Json::Value& jPart : jEntry["color"])
                                        jPart = std::round(jPart.asDouble() * 255.0);
                            return bGood && file.sText.size() > 5'000'000 &&
                                   writeJsonText(jBack, JsonStyle::Compact) ==
                                       writeJsonText(*jParsed, JsonStyle::Compact);
                        }});
    const auto pResource = manager.load("$GAME_DATA/all.objects");
    if (!pResource)
        return iMissed + 1;
    uint64_t uHash = 0;
    iMissed += !run({.sName = pSnapshot,
                     .fLimit = 1.2,
                     .fnFloor =
                         [&]
                     {
                         Json::Value jTree;
                         manager.write(pTemplate, pResource->tree(), jTree);
                         uHash = xxh3(writeJsonText(jTree, JsonStyle::Compact));
                         keep(uHash);
                     },
                     .fnProduct = [&] { pResource->snapshot(false); },
                     .fnEqual = [&] { return pResource->undoCount() == 0 && uHash != 0; }});
    return iMissed;
}

const Registration s_dynamicData(&dynamicData);

} // namespace

} // namespace bench
