// Values, handlers, templates and the checks of files against them.

#include "Tests/Data/DataWorld.h"

#include <random>

namespace
{

using DynamicData::Tag;

struct DynamicDataTest : testing::Test, DataWorld
{
};

/// One value of a type, read and written again.
TEST_F(DynamicDataTest, handlersReadWhatTheyAcceptAndKeepTheRest)
{
    start({{"one.json", R"({"v": null, "v_meta": {"type": "string"}})"}});
    file("there.png", "");
    struct Case
    {
        const char* pMeta;
        const char* pJson;
        const char* pWritten;
        Tag eTag;
        const char* pMessage;
    };
    const Case arrCases[] = {
        {R"("type":"null")", "null", "null", Tag::Null, ""},
        {R"("type":"null")", "1", "1", Tag::Int, "Expected null received int"},
        {R"("type":"string")", R"("short")", R"("short")", Tag::ShortString, ""},
        {R"("type":"string")", R"("a text beyond the short form")", R"("a text beyond the short form")",
         Tag::String, ""},
        {R"("type":"string")", R"("")", R"("")", Tag::ShortString, "Value is not allowed to be empty"},
        {R"("type":"string","allowEmpty":true)", R"("")", R"("")", Tag::ShortString, ""},
        {R"("type":"string")", "[1]", "[1]", Tag::Array, "Expected string received array"},
        {R"("type":"string","ignoreReadError":true)", "[1]", "[1]", Tag::Array, ""},
        {R"("type":"string","options":["a","b"])", R"("b")", R"("b")", Tag::ShortString, ""},
        {R"("type":"string","options":["a","b"])", R"("c")", R"("c")", Tag::ShortString,
         "Value 'c' is not an valid option."},
        {R"("type":"string","options":["a"],"ignoreOptions":true)", R"("c")", R"("c")", Tag::ShortString, ""},
        {R"("type":"texture")", R"("$GAME_DATA/there.png")", R"("$GAME_DATA/there.png")", Tag::ShortString,
         ""},
        {R"("type":"filepath")", R"("$GAME_DATA/none.png")", R"("$GAME_DATA/none.png")", Tag::ShortString,
         "'$GAME_DATA/none.png' dosent exists."},
        {R"("type":"filepath","ignoreReadError":true)", R"("$NO_KEY/none")", R"("$NO_KEY/none")",
         Tag::ShortString, ""},
        {R"("type":"renderable")", R"("00112233-4455-6677-8899-aabbccddeeff")",
         R"("00112233-4455-6677-8899-aabbccddeeff")", Tag::String, ""},
        {R"("type":"float")", "0.1", "0.1", Tag::Float, ""},
        {R"("type":"float")", "true", "1.0", Tag::Float, ""},
        {R"("type":"float")", "16777217", "16777216.0", Tag::Float, ""},
        {R"("type":"float")", R"("x")", R"("x")", Tag::ShortString, "Expected float received string"},
        {R"("type":"double")", "0.1", "0.1", Tag::Double, ""},
        {R"("type":"uint")", "-3", "0", Tag::Uint, ""},
        {R"("type":"uint")", "5000000000", "4294967295", Tag::Uint, ""},
        {R"("type":"uint")", "2.9", "2", Tag::Uint, ""},
        {R"("type":"int")", "-3e9", "-2147483648", Tag::Int, ""},
        {R"("type":"bool")", "true", "true", Tag::Bool, ""},
        {R"("type":"bool")", "1", "1", Tag::Int, "Expected bool received int"},
        {R"("type":"uint64")", "18446744073709551615", "18446744073709551615", Tag::Uint64, ""},
        {R"("type":"uint64")", "7", "7", Tag::Int, "Expected uint64 received int"},
        {R"("type":"uuid")", R"("00112233-4455-6677-8899-AABBCCDDEEFF")",
         R"("00112233-4455-6677-8899-aabbccddeeff")", Tag::Uuid, ""},
        {R"("type":"uuid")", R"("no")", R"("no")", Tag::ShortString, "Expected uuid received string"},
        {R"("type":"vec2")", "[1,2.5]", "[1.0,2.5]", Tag::Vec2, ""},
        {R"("type":"vec2")", "[1,2,3]", "[1,2,3]", Tag::Array, "Expected vec2 received array"},
        {R"("type":"vec3")", R"({"x":1})", "[1.0,0.0,0.0]", Tag::Vec3, ""},
        {R"("type":"vec3")", R"({"x":"1"})", R"({"x":"1"})", Tag::Object, "Expected vec3 received object"},
        {R"("type":"vec4")", "[1.5,0,0,-1]", "[1.5,0.0,0.0,-1.0]", Tag::Vec4, ""},
        {R"("type":"color")", "[1.5,0,0,-1]", "[1.0,0.0,0.0,0.0]", Tag::Vec4, ""},
        {R"("type":"map")", "[]", "[]", Tag::Array, "Expected map received array"},
        {R"("optional":true)", "-9223372036854775808", "-9223372036854775808", Tag::Int64, ""},
        {R"("optional":true)", "4294967295", "4294967295", Tag::Uint, ""},
        {R"("optional":true)", "1.0", "1.0", Tag::Double, ""},
    };
    for (const Case& one : arrCases)
    {
        file("Templates/one.json", std::string(R"({"v": null, "v_meta": {)") + one.pMeta + "}}");
        ASSERT_TRUE(pManager->reload(*pManager->getTemplate("one")));
        log.clear();
        const std::string sMessages = read("one", std::string(R"({"v":)") + one.pJson + "}");
        const DynamicData::Value* pValue = tree.object()->find("v");
        ASSERT_TRUE(pValue);
        EXPECT_EQ(pValue->tag(), one.eTag) << one.pMeta << one.pJson;
        EXPECT_EQ(text(*pValue), one.pWritten) << one.pMeta;
        const std::string sWanted = *one.pMessage ? std::string(one.pMessage) + "\n'v' in '/'\n" : "";
        EXPECT_EQ(sMessages, sWanted) << one.pMeta << one.pJson;
        EXPECT_EQ(log.has("Invalid UUID {no"), std::string_view(one.pJson) == R"("no")");
    }
}

constexpr const char* s_pLamp = R"({
    "template_meta": {"name": "lamp", "pattern": ["*.lamp", "$GAME_DATA/Lamps/*.json"]},
    "name": "", "name_meta": {"type": "string", "allowEmpty": true},
    "range": 10, "range_meta": {"type": "float"},
    "note": "n", "note_meta": {"optional": true},
    "old": 1, "old_meta": {"type": "int", "deprecated": true},
    "place": {"at": [0, 0, 0], "at_meta": {"type": "vec3"}},
    "parts": [{"kind": "bulb", "size": 1, "size_meta": {"type": "float"}}],
    "tags_meta": {"type": "map", "value_meta": {"type": "uint"}}, "tags": {}
})";

TEST_F(DynamicDataTest, missingKeysTakeTheirDefaultsAndUnknownOnesStay)
{
    start({{"lamp.json", s_pLamp}});
    EXPECT_EQ(read("lamp", R"({"range": 2, "parts": [{"size": 3}, {"kind": "rod"}], "mine": {"b": [1]}})"),
              "'/parts/0' is missing 'kind'\n"
              "'/parts/1' is missing 'size'\n"
              "'/' is missing 'name'\n"
              "'/' is missing 'place'\n"
              "'/' is missing 'tags'\n");
    EXPECT_EQ(text(tree),
              R"({"mine":{"b":[1]},"name":"","old":1,"parts":[{"kind":"bulb","size":3.0},)"
              R"({"kind":"rod","size":1.0}],"place":{"at":[0.0,0.0,0.0]},"range":2.0,"tags":{}})");
    EXPECT_EQ(
        read("lamp", R"({"name":"","range":1,"place":{"at":[0,0,0]},"parts":[],"tags":{"a":1,"b":"x"}})"),
        "Expected uint received string\n'b' in '/tags'\n");
    EXPECT_EQ(
        text(pManager->newObject(*pManager->getTemplate("lamp"))),
        R"({"name":"","old":1,"parts":[{"kind":"bulb","size":1.0}],"place":{"at":[0.0,0.0,0.0]},"range":10.0,"tags":{}})")
        << "optional keys are not among the defaults";
    EXPECT_EQ(pManager->getTemplateForFile("$GAME_DATA/x/y.lamp")->name(), "lamp");
    EXPECT_EQ(pManager->getTemplateForFile("$GAME_DATA/Lamps/a/b.json")->name(), "lamp");
    EXPECT_EQ(pManager->getTemplateForFile("$GAME_DATA/y.lamps"), nullptr);
}

TEST_F(DynamicDataTest, templatesTakeOthersIn)
{
    start(
        {{"row.json",
          R"({"template_meta": {"root_meta": {"type": "map", "value_meta": {"subTemplate": "lamp"}}}})"},
         {"old.json", R"({"template_meta": {"name": "lamp"}, "x": 1})"},
         {"pair.json",
          R"({"left": {}, "left_meta": {"subTemplate": "lamp"}, "rows": null, "rows_meta": {"subTemplate": "row"}})"},
         {"lamp.json", s_pLamp},
         {"a.json", R"({"b": {}, "b_meta": {"subTemplate": "b"}})"},
         {"b.json",
          R"({"a": {}, "a_meta": {"subTemplate": "a"}, "c": {}, "c_meta": {"subTemplate": "none"}})"},
         {"twice.json",
          R"({"list": [{"k": 1, "k_meta": {"type": "int"}}, {"k": 2, "k_meta": {"type": "int"}}]})"}});
    EXPECT_EQ(pManager->templates().size(), 6u) << "the later of two templates of a name replaces the older";
    EXPECT_EQ(pManager->templates()[1]->name(), "lamp");
    EXPECT_TRUE(log.has("recursive sub template 'a'"));
    EXPECT_TRUE(log.has("recursive sub template 'b'"));
    EXPECT_TRUE(log.has("sub template 'none' does not exist"));
    EXPECT_TRUE(log.has("duplicate default value"));
    EXPECT_TRUE(log.has("duplicate meta value"));
    EXPECT_TRUE(
        read("pair", R"({"left": {"range": "far"}, "rows": {"one": {"range": 7, "tags": {"t": -1}}}})")
            .starts_with("Expected float received string\n'range' in '/left'\n'/left' is missing 'name'\n"));
    const auto* pRow = tree.object()->find("rows")->object()->find("one")->object();
    EXPECT_EQ(pRow->find("range")->asFloat(), 7.0f);
    EXPECT_EQ(pRow->find("tags")->object()->find("t")->asUint(), 0u);
    EXPECT_TRUE(pRow->find("place")->object()->find("at")->tag() == Tag::Vec3);
    EXPECT_EQ(text(pManager->getTemplate("twice")->root()), R"({"list":[{"k":1},{"k":2}]})");
}

TEST_F(DynamicDataTest, templatesThatGrowWithoutBoundAreCut)
{
    std::vector<std::pair<std::string, std::string>> vecTemplates;
    for (int i = 0; i < 15; ++i)
    {
        const std::string sNext = "t" + std::to_string(i + 1);
        vecTemplates.emplace_back("t" + std::to_string(i) + ".json",
                                  R"({"a": 0, "a_meta": {"subTemplate": ")" + sNext +
                                      R"("}, "b": 0, "b_meta": {"subTemplate": ")" + sNext + "\"}}");
    }
    start(vecTemplates);
    EXPECT_TRUE(log.has("too many places"));
    EXPECT_TRUE(pManager->getTemplate("t13")->root().object()->find("b"));
}

/// Any JSON goes through a tree without loss, with a template that fits nothing of it too.
TEST_F(DynamicDataTest, randomTreesAreWrittenAsTheyWereRead)
{
    start(
        {{"any.json",
          R"({"a": 1, "a_meta": {"type": "vec3","optional":true}, "b": "", "b_meta": {"type": "uuid","optional":true},
                            "c": [], "c_meta": {"type": "array","value_meta":{"type":"float"},"optional":true}})"}});
    std::mt19937_64 random(3);
    const std::function<Json::Value(int)> make = [&](int iDepth) -> Json::Value
    {
        switch (random() % (iDepth > 0 ? 10 : 8))
        {
        case 0:
            return {};
        case 1:
            return static_cast<Json::Int64>(random()) >> random() % 64;
        case 2:
            return static_cast<Json::UInt64>(random());
        case 3:
            return static_cast<double>(static_cast<int64_t>(random())) / 1024.0;
        case 4:
            return random() % 2 == 0;
        case 5:
            return std::string(random() % 40, '\x01') + "\xc3\xa4\"\\";
        case 6:
            return Json::Value(Json::objectValue);
        case 7:
            return Json::Value(Json::arrayValue);
        default:
        {
            Json::Value jResult;
            for (uint64_t i = random() % 6; i > 0; --i)
                if (iDepth % 2)
                    jResult[std::string(1, static_cast<char>('a' + random() % 4))] = make(iDepth - 1);
                else
                    jResult.append(make(iDepth - 1));
            return jResult;
        }
        }
    };
    for (int i = 0; i < 300; ++i)
    {
        const std::string sText = writeJsonText(make(5), JsonStyle::Compact);
        const Json::Value jOnce = json(sText);
        ASSERT_EQ(json(writeJsonText(jOnce, JsonStyle::Indented)), jOnce);
        pManager->read(tree, jOnce, nullptr);
        ASSERT_EQ(text(tree), sText);
        pManager->read(tree, jOnce, pManager->getTemplate("any"));
        const DynamicData::Value copy = tree.clone();
        EXPECT_EQ(copy.hash(7), tree.hash(7));
        DynamicData::Value again;
        pManager->read(again, json(text(tree)), pManager->getTemplate("any"));
        ASSERT_EQ(text(again), text(tree));
        ASSERT_EQ(again.hash(7), tree.hash(7)) << sText;
    }
}

TEST_F(DynamicDataTest, hashesTellTreesApart)
{
    start({});
    const char* arrTexts[] = {"{}",
                              "[]",
                              R"({"a":1})",
                              R"({"b":1})",
                              R"({"a":2})",
                              R"({"a":1.0})",
                              R"({"a":[1]})",
                              R"({"a":[[1]]})",
                              R"({"a":"1"})",
                              R"({"a":null})",
                              R"({"a":true})",
                              R"({"a":{},"b":1})",
                              R"({"a":"a text beyond the short form"})",
                              R"({"a":"b text beyond the short form"})"};
    std::set<uint64_t> setHashes;
    for (const char* pText : arrTexts)
    {
        pManager->read(tree, json(pText), nullptr);
        EXPECT_TRUE(setHashes.insert(tree.hash(0)).second) << pText;
    }
}

TEST_F(DynamicDataTest, containersKeepOrderAndPlaces)
{
    start({{"lamp.json", s_pLamp}});
    read("lamp", R"({"name":"","range":1,"place":{},"parts":[{},{},{}],"tags":{"a":1,"b":2}})");
    DynamicData::Object& root = *tree.object();
    DynamicData::Array& parts = *root.find("parts")->array();
    const DynamicData::Object& tags = *root.find("tags")->object();
    EXPECT_EQ(parts.childId(0), parts.childId(2));
    EXPECT_NE(parts.keyId(0), parts.keyId(2));
    EXPECT_TRUE(tags.isMap());
    EXPECT_EQ(tags.childId(0), tags.childId(1));
    EXPECT_NE(tags.keyId(0), tags.keyId(1));
    EXPECT_EQ(parts.parentId(), root.ownId());
    parts.at(1).object()->set(DynamicData::keyHash("size"), {}).set(5.0f);
    parts.removeAt(0);
    EXPECT_EQ(parts.at(0).object()->find("size")->asFloat(), 5.0f);
    EXPECT_TRUE(parts.at(9).isNull());
    EXPECT_EQ(parts.tryAt(9), nullptr);
    EXPECT_EQ(root.find("range")->asBool(), false);
    EXPECT_TRUE(log.has("ASSERT: 'm_eTag == eTag'"));
    tree = std::move(parts.at(0)); // a part of its own
    EXPECT_EQ(tree.object()->find("size")->asFloat(), 5.0f);
}

} // namespace
