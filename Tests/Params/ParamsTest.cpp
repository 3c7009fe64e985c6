// Parameters of nodes: descriptions, kinds, blobs and rows.

#include "KestrelCommon/Data/LuaBlob.h"
#include "Tests/Data/Bytes.h"
#include "Tests/Data/DataWorld.h"
#include "Tests/Support/RecordingPanel.h"
#include "TileEditorCommon/Params/ConnectionsParam.h"
#include "TileEditorCommon/Params/EffectParam.h"
#include "TileEditorCommon/Params/ParamDesc.h"
#include "TileEditorCommon/Params/SimpleParam.h"
#include "TileEditorCommon/Params/TrackParam.h"

namespace tilebuilder
{

namespace
{

constexpr const char* s_pEffects = R"({"effectSetList": [{"name": "Lamps", "effects": [
    {"name": "Lamp", "types": ["light"], "values": [
        {"name": "Color", "kind": "color", "default": [1, 1, 1, 1]},
        {"name": "Additive", "kind": "bool", "default": false},
        {"name": "Shadow Mode", "kind": "string", "default": "Off", "options": ["Off", "Static", "Dynamic"]},
        {"name": "Range", "kind": "float", "default": 10},
        {"name": "Drift", "kind": "vec3", "default": [0, 0, 0]},
        {"name": "Tune", "kind": "vec4", "default": [0, 0, 0, 0]}]},
    {"name": "Glow", "types": ["particle"], "values": [{"name": "Size", "kind": "float", "default": 1}]}]}]})";

constexpr const char* s_pTrack =
    R"({"template_meta": {"name": "Track"}, "fov": 45, "fov_meta": {"type": "float"},
    "track": [], "track_meta": {"type": "array", "value_meta": {"type": "vec3"}}})";

struct ParamsTest : testing::Test, DataWorld
{
    ParamsTest() { catalogue.read(json(s_pEffects), "sets.json"); }

    /// The bytes of one parameter's value, without blanks between.
    static std::string stored(IParam& param, const ConnectionLookupI* pOnlyExisting = nullptr)
    {
        BitStream stream;
        LuaBlobWriter out(stream);
        param.serialize(out, pOnlyExisting);
        return hexOf(stream);
    }
    /// The value written to a blob and read from it.
    static ParamPtr again(const ParamPtr& pParam)
    {
        BitStream stream;
        writeBlob(stream, {pParam}, nullptr);
        const auto vecParams = readBlob(stream);
        EXPECT_EQ(vecParams.size(), 1u);
        return vecParams.empty() ? nullptr : vecParams[0];
    }
    template <class T>
    static std::shared_ptr<T> make(const char* pName, ParamType eType, const Json::Value& jDefault = {})
    {
        return std::dynamic_pointer_cast<T>(createParam(pName, eType, jDefault));
    }
    void show(IParam& param, const ParamContext& context = {})
    {
        panel.begin(1);
        param.display(panel, context);
        panel.end();
        EXPECT_TRUE(panel.isBalanced());
    }

    EffectCatalogue catalogue;
    RecordingPanel panel;
};

TEST_F(ParamsTest, descriptionsAreCheckedEntryByEntry)
{
    const auto vecParams = readParams(json(R"([
        5, {"name": "", "type": "bool"}, {"name": "a", "type": "int"}, {"type": "bool"},
        {"name": "a", "type": "bool", "default": 1}, {"name": "a", "type": "float"},
        {"name": "b", "type": "float", "default": true}, {"name": "c", "type": "string", "default": "t"},
        {"name": "connections", "type": "connections", "default": {}}, {"name": "effect", "type": "effect", "default": []},
        {"name": "track", "type": "track", "default": null}])"));
    std::string sNames;
    for (const ParamDesc& desc : vecParams)
        sNames += desc.strName + std::to_string(static_cast<uint32_t>(desc.eType)) +
                  (desc.jsonDefault.isNull() ? " " : "= ");
    EXPECT_EQ(sNames, "a1 b3= c2= connections4= effect5 track6 ");
    EXPECT_EQ(log.count("Values must be object type"), 1u);
    EXPECT_EQ(log.count("'name' can not be empty: "), 2u);
    EXPECT_TRUE(log.has("'name' can not be empty: {\"name\":\"\",\"type\":\"bool\"}"));
    EXPECT_TRUE(log.has("Invalid 'type': {\"name\":\"a\",\"type\":\"int\"}"));
    EXPECT_TRUE(log.has("Duplicate 'name' found: {\"name\":\"a\",\"type\":\"float\"}"));
    EXPECT_EQ(log.count("Default value type does not match: "), 2u);
    EXPECT_TRUE(readParams({}).empty());
    EXPECT_EQ(log.errors(), 7u) << log.dump();
    EXPECT_TRUE(readParams(json(R"({"name": "a"})")).empty());
    EXPECT_TRUE(log.has("Must be array type"));
}

TEST_F(ParamsTest, typesKeepTheirNamesAndDefaults)
{
    EXPECT_FALSE(createParam("links", ParamType::Connections, {}));
    EXPECT_TRUE(log.has("'connections' type parameter must be named 'connections'"));
    EXPECT_FALSE(createParam("glow", ParamType::Effect, {}));
    EXPECT_TRUE(log.has("'effect' type parameter must be named 'effect'"));
    EXPECT_FALSE(createParam("path", ParamType::Track, {}));
    EXPECT_TRUE(log.has("'track' type parameter must be named 'track'"));
    EXPECT_FALSE(createParam("x", static_cast<ParamType>(7), {}));
    EXPECT_TRUE(log.has("Invalid param type: 7"));
    EXPECT_EQ(make<SimpleParam<float>>("f", ParamType::Float, true)->value, 1.0f);
    EXPECT_EQ(make<SimpleParam<std::string>>("s", ParamType::String, "t")->value, "t");
    EXPECT_TRUE(make<SimpleParam<bool>>("b", ParamType::Bool, true)->value);
    const auto pOne = createParam("a", ParamType::Bool, true);
    const auto pTwo = pOne->getCloneArgs();
    EXPECT_NE(pOne->uParamUid, pTwo->uParamUid);
    EXPECT_EQ(pTwo->strName, "a");
    EXPECT_EQ(pTwo->jsonDefault, Json::Value(true));
    EXPECT_TRUE(createParam("effect", ParamType::Effect, json(R"({"name": ""})")));
    EXPECT_TRUE(log.has("Invalid default json node passed to effect param"));
    const auto pEffect = make<EffectParam>("effect", ParamType::Effect, json(R"({"name": "Glow"})"));
    EXPECT_EQ(pEffect->iEffect, 1);
    EXPECT_EQ(pEffect->iEffectSet, 0);
}

TEST_F(ParamsTest, plainValuesHaveTheirBytes)
{
    const auto pFloat = make<SimpleParam<float>>("f", ParamType::Float, 2.0);
    EXPECT_EQ(stored(*pFloat), "0340000000") << "a float is a Number, whole or not";
    const auto pText = make<SimpleParam<std::string>>("s", ParamType::String, "ab");
    EXPECT_EQ(stored(*pText), "04000000026162");
    EXPECT_EQ(stored(*make<SimpleParam<bool>>("b", ParamType::Bool, true)), "0280");
    const std::vector<uint8_t> vecEmpty = bytesOfHex("00000000");
    BitStream stream(vecEmpty.data(), vecEmpty.size(), false);
    LuaBlobReader in(stream);
    pText->deserialize(in);
    EXPECT_EQ(pText->value, "ab") << "a text of no length changes nothing";
    BitStream blob;
    writeBlob(blob, {pFloat, pText}, nullptr);
    EXPECT_EQ(hexOf(blob), withoutBlanks("4c554100000001 0500000002 02000000008066 0340000000"
                                         "040000000173 04000000026162"));
}

TEST_F(ParamsTest, connectionsHaveTheirBytes)
{
    const auto pParam = make<ConnectionsParam>("connections", ParamType::Connections);
    EXPECT_EQ(pParam->iId, -1);
    pParam->iId = 7;
    pParam->add(70000);
    struct Known : ConnectionLookupI
    {
        bool hasConnection(int32_t iId) const override { return iId != 70000; }
    } known;
    // "id" 7, "otherIds" with one plain Int32
    BitStream wanted;
    LuaBlobWriter out(wanted);
    const auto writeHead = [&](uint32_t uIds)
    {
        out.table(2);
        out.string("id");
        out.int32(7);
        out.string("otherIds");
        out.array(uIds);
    };
    writeHead(1);
    out.int32(70000);
    EXPECT_EQ(stored(*pParam), hexOf(wanted));
    EXPECT_EQ(stored(*pParam),
              withoutBlanks("0500000002 020000000100 6964 0600000007 0400000008 6f74686572496473"
                            "0500000001 80000000 83 000088b8 00"));

    // Only known ids; one with a cell, one with everything
    pParam->add(0x12345);
    pParam->vecConnections[1].cell = {-1, 2};
    pParam->add(3);
    pParam->vecConnections[2].vecActions = {0, 5};
    pParam->vecConnections[2].vecConditions = {{0, 6, 9.0f}, {1, 2, 3.0f}, {2, 3, 4.5f}};
    wanted.truncate(0);
    writeHead(2);
    out.table(2);
    out.string("id");
    out.int16(0x2345);
    out.string("cell");
    out.array(2);
    out.int16(-1);
    out.int16(2);
    out.table(3);
    out.string("id");
    out.int16(3);
    out.string("actions");
    out.array(2);
    for (const int8_t iAction : {int8_t{0}, int8_t{5}})
    {
        out.table(1);
        out.string("name");
        out.int8(iAction);
    }
    out.string("conditions");
    out.array(3);
    const ConnectionCondition arrStored[] = {{1, 1, -1.0f}, {1, 4, -1.0f}, {2, 3, 4.5f}};
    for (const ConnectionCondition& condition : arrStored)
    {
        out.table(3);
        out.string("variable");
        out.int8(static_cast<int8_t>(condition.variable));
        out.string("condition");
        out.int8(static_cast<int8_t>(condition.condition));
        out.string("value");
        out.number(condition.value);
    }
    EXPECT_EQ(stored(*pParam, &known), hexOf(wanted));

    pParam->ccount = 9;
    const auto pBack = std::dynamic_pointer_cast<ConnectionsParam>(again(pParam));
    ASSERT_TRUE(pBack);
    EXPECT_EQ(pBack->ccount, 0u) << "not kept";
    EXPECT_EQ(pBack->iId, 7);
    ASSERT_EQ(pBack->vecConnections.size(), 3u);
    EXPECT_EQ(pBack->vecConnections[0], pParam->vecConnections[0]);
    EXPECT_EQ(pBack->vecConnections[1].iId, 0x2345) << "cut to 16 bits";
    EXPECT_EQ(pBack->vecConnections[1].cell, (std::array<int32_t, 2>{-1, 2}));
    EXPECT_EQ(pBack->vecConnections[2].vecActions, pParam->vecConnections[2].vecActions);
    EXPECT_EQ(pBack->vecConnections[2].vecConditions,
              (std::vector<ConnectionCondition>{{0, 1, -1.0f}, {1, 4, -1.0f}, {2, 3, 4.5f}}));
    EXPECT_TRUE(log.lines().empty()) << log.dump();

    pBack->removeAt(0);
    EXPECT_EQ(pBack->vecConnections[0].iId, 3) << "the last moves into the hole";
    EXPECT_EQ(pBack->find(0x2345), 1u);
    EXPECT_FALSE(pBack->find(70000));
}

TEST_F(ParamsTest, oldAndOddConnectionsAreRead)
{
    BitStream stream;
    LuaBlobWriter out(stream);
    out.header();
    out.table(1);
    out.string("connections");
    out.table(5);
    out.string("v");
    out.int8(3);
    out.string("version");
    out.int8(1);
    out.string("id");
    out.int32(5);
    out.string("otherIds");
    out.array(2);
    out.table(2); // stored (1, 4, 0.0) is no preset
    out.string("id");
    out.int16(-1);
    out.string("conditions");
    out.array(1);
    out.table(3);
    out.string("variable");
    out.int8(1);
    out.string("condition");
    out.int8(4);
    out.string("value");
    out.number(0.0f);
    out.boolean(true); // no connection at all
    out.string("more");
    out.array(1);
    out.nil();
    const auto vecParams = readBlob(stream);
    ASSERT_EQ(vecParams.size(), 1u);
    const auto& param = dynamic_cast<const ConnectionsParam&>(*vecParams[0]);
    EXPECT_EQ(param.iId, 5);
    ASSERT_EQ(param.vecConnections.size(), 2u);
    EXPECT_EQ(param.vecConnections[0].iId, 0xFFFF);
    EXPECT_EQ(param.vecConnections[0].vecConditions[0], (ConnectionCondition{1, 4, 0.0f}));
    EXPECT_TRUE(log.has("ASSERT: 'Invalid path!'"));
    EXPECT_TRUE(log.has("ASSERT: 'Key not implemented!'"));
    EXPECT_EQ(log.lines().size(), 2u) << log.dump();
    EXPECT_EQ(stream.bitsLeft(), 0u);
}

TEST_F(ParamsTest, effectsHaveTheirBytesAndComeBack)
{
    const auto pParam = make<EffectParam>("effect", ParamType::Effect, json(R"({"name": "Lamp"})"));
    BitStream wanted;
    LuaBlobWriter out(wanted);
    out.table(1);
    out.string("name");
    out.string("Lamp");
    EXPECT_EQ(stored(*pParam), hexOf(wanted)) << "at its defaults the name alone";

    pParam->m_pEffect->set("Range", {EffectValueKind::Float, 25.0f});
    pParam->m_pEffect->set("Color", {EffectValueKind::Color, std::array<float, 4>{1.0f, 0.5f, 0.0f, 0.25f}});
    pParam->m_pEffect->set("Drift", {EffectValueKind::Vec3, std::array<float, 4>{1.0f, 2.0f, 3.0f, 9.0f}});
    pParam->m_pEffect->set("Shadow Mode", {EffectValueKind::String, std::string("Static")});
    pParam->m_pEffect->set("Additive", {EffectValueKind::Bool, true});
    pParam->fTimeOfDayEnd = 0.5f;
    pParam->bInverseTimeOfDay = true;
    pParam->bAutoPlay = false;
    wanted.truncate(0);
    out.table(4);
    out.string("name");
    out.string("Lamp");
    out.string("params");
    out.array(10);
    out.string("Color");
    out.color({1.0f, 0.5f, 0.0f, 0.25f});
    out.string("Additive");
    out.boolean(true);
    out.string("Shadow Mode");
    out.string("Static");
    out.string("Range");
    out.number(25.0f);
    out.string("Drift");
    out.color({1.0f, 2.0f, 3.0f, 1.0f});
    out.string("timeOfDay");
    out.array(3);
    out.number(0.0f);
    out.number(0.5f);
    out.boolean(true);
    out.string("autoPlay");
    out.boolean(false);
    EXPECT_EQ(stored(*pParam), hexOf(wanted));

    const auto pBack = again(pParam);
    EXPECT_EQ(stored(*pBack), hexOf(wanted));
    EXPECT_TRUE(log.lines().empty()) << log.dump();
    const auto pClone = std::dynamic_pointer_cast<EffectParam>(pBack->getCloneArgs());
    pClone->m_pEffect->set("Range", {EffectValueKind::Float, 10.0f});
    EXPECT_EQ(stored(*pBack), hexOf(wanted)) << "a clone has values of its own";
}

TEST_F(ParamsTest, anEffectThatNoSetKnowsLosesNothing)
{
    BitStream stream;
    LuaBlobWriter out(stream);
    out.header();
    out.table(1);
    out.string("effect");
    out.table(4);
    out.string("name");
    out.string("Gone");
    out.string("params");
    out.array(6);
    out.string("Heat");
    out.number(2.0f);
    out.string("Tint");
    out.color({0.1f, 0.2f, 0.3f, 0.4f});
    out.string("Word");
    out.string("w");
    out.string("timeOfDay");
    out.array(3);
    out.number(0.25f);
    out.number(1.0f);
    out.boolean(false);
    out.string("autoPlay");
    out.boolean(false);
    const auto vecParams = readBlob(stream);
    ASSERT_EQ(vecParams.size(), 1u);
    BitStream back;
    writeBlob(back, vecParams, nullptr);
    EXPECT_EQ(hexOf(back), hexOf(stream));
    EXPECT_EQ(log.errors(), 0u) << log.dump();
    EXPECT_TRUE(log.has("No effect set has the effect 'Gone'"));
    EXPECT_EQ(stored(*vecParams[0]->getCloneArgs()), stored(*vecParams[0]));

    // A known effect keeps values that it doesn't have, or has in another form.
    stream.truncate(0);
    out.header();
    out.table(1);
    out.string("effect");
    out.table(2);
    out.string("name");
    out.string("Glow");
    out.string("params");
    out.array(6);
    out.string("Size");
    out.number(3.0f);
    out.string("Size");
    out.boolean(true);
    out.string("Other");
    out.boolean(true);
    const auto vecKnown = readBlob(stream);
    back.truncate(0);
    writeBlob(back, vecKnown, nullptr);
    EXPECT_EQ(hexOf(back), hexOf(stream));
}

TEST_F(ParamsTest, tracksGoThroughTheTemplateOrStayAsTheyAre)
{
    const Json::Value jTrack = json(R"({"fov": 60, "track": [[1, 2, 3]], "mine": true})");
    const auto pBare = make<TrackParam>("track", ParamType::Track, jTrack);
    EXPECT_EQ(pBare->object(), nullptr);
    show(*pBare);
    EXPECT_EQ(panel.dump(), "label The template 'Track' is missing\n");
    const std::string sText = R"({"fov":60,"mine":true,"track":[[1,2,3]]})";
    BitStream wanted;
    LuaBlobWriter(wanted).json(sText);
    EXPECT_EQ(stored(*pBare), hexOf(wanted));

    start({{"track.json", s_pTrack}});
    const auto pParam = std::dynamic_pointer_cast<TrackParam>(again(pBare));
    ASSERT_TRUE(pParam && pParam->object());
    EXPECT_EQ(pParam->object()->object()->find("track")->array()->at(0).asVec3()[2], 3.0f);
    EXPECT_EQ(stored(*pParam), hexOf(wanted)) << "untouched JSON stays as it was";
    int iChanges = 0;
    show(*pParam, {.onChanged = [&iChanges] { ++iChanges; }});
    const auto* pRow = panel.find("track");
    ASSERT_TRUE(pRow && pRow->pTree && pRow->pBaseline);
    EXPECT_EQ(pRow->pTemplate->name(), "Track");
    pRow->pTree->object()->find("fov")->set(30.5f);
    panel.edited("track");
    EXPECT_EQ(iChanges, 1);
    const auto pClone = std::dynamic_pointer_cast<TrackParam>(pParam->getCloneArgs());
    EXPECT_EQ(writeJsonText(pParam->json(), JsonStyle::Compact),
              R"({"fov":30.5,"mine":true,"track":[[1.0,2.0,3.0]]})");
    EXPECT_EQ(pClone->json(), pParam->json());
    EXPECT_NE(pClone->baseline().hash(0), pClone->object()->hash(0)) << "the baseline is what was loaded";

    struct Preview : TrackPreviewI
    {
        explicit Preview(int& iCount) : m_iCount(iCount) {}
        void update(const DynamicData::Value& track) override { m_iCount += track.object() != nullptr; }
        int& m_iCount;
    };
    int iSeen = 0;
    pClone->pPreview = std::make_unique<Preview>(iSeen);
    pClone->update();
    EXPECT_EQ(iSeen, 1);
    EXPECT_EQ(writeJsonText(make<TrackParam>("track", ParamType::Track)->json(), JsonStyle::Compact), "null");
}

TEST_F(ParamsTest, theStarterContentHasATrack)
{
    directories.removeKey("$GAME_DATA");
    directories.addKey("$GAME_DATA", QM_SOURCE_DIR "/StarterContent/Data");
    const DynamicDataManager manager;
    const auto pTrack =
        make<TrackParam>("track", ParamType::Track,
                         json(R"({"cameraTrack": {"fov": 60, "track": [{"position": [1, 2, 3]}]}})"));
    ASSERT_TRUE(pTrack->object());
    ASSERT_EQ(pTrack->object()->object()->size(), 1u) << "a view opens a single element by itself";
    const auto* pCamera = pTrack->object()->object()->find("cameraTrack")->object();
    const auto* pPoint = pCamera->find("track")->array()->at(0).object();
    EXPECT_EQ(pPoint->find("position")->asVec3()[2], 3.0f);
    EXPECT_TRUE(pPoint->find("tangents")->object()->find("in"));
    EXPECT_FALSE(pCamera->find("jumpCut")->asBool());
    EXPECT_EQ(log.errors(), 0u) << log.dump();
}

TEST_F(ParamsTest, brokenBlobsGiveNoneAndSaySo)
{
    const std::pair<const char*, const char*> arrCases[] = {
        {"4c5542 00000001", "given data that is not serlized Lua data"},
        {"4c5541 00000009", "given data with version: 9"},
        {"4c5541 00000001 05 00000001 00 02000000 0098 fc", nullptr},
        {"4c5541 00000001 05 000fffff 00", nullptr},
    };
    for (const auto& [pHex, pMessage] : arrCases)
    {
        const auto vecBytes = bytesOfHex(pHex);
        BitStream stream(vecBytes.data(), vecBytes.size(), false);
        EXPECT_TRUE(readBlob(stream).empty()) << pHex;
        EXPECT_TRUE(!pMessage || log.has(pMessage)) << log.dump();
    }
    BitStream stream;
    LuaBlobWriter out(stream);
    out.header();
    out.table(2);
    out.string("good");
    out.boolean(true);
    out.string("bad");
    out.int32(1);
    EXPECT_TRUE(readBlob(stream).empty());
    EXPECT_TRUE(log.has("Failed to deserialize param bad"));
    for (const char* pName : {"effect", "connections", "track"})
    {
        stream.truncate(0);
        out.header();
        out.table(1);
        out.string(pName);
        out.int8(1);
        EXPECT_TRUE(readBlob(stream).empty());
        EXPECT_TRUE(log.has(std::string("Failed to deserialize param ") + pName));
    }
}

/// Every prefix and every flipped bit of a blob with all kinds is read without harm.
TEST_F(ParamsTest, damagedBlobsAreReadWithoutHarm)
{
    const auto pConnections = make<ConnectionsParam>("connections", ParamType::Connections);
    pConnections->add(5);
    pConnections->vecConnections[0].vecActions = {1};
    pConnections->vecConnections[0].vecConditions = {{2, 3, 4.0f}};
    const auto pEffect = make<EffectParam>("effect", ParamType::Effect, json(R"({"name": "Lamp"})"));
    pEffect->m_pEffect->set("Color", {EffectValueKind::Color, std::array<float, 4>{}});
    pEffect->fTimeOfDayEnd = 0.5f;
    BitStream stream;
    writeBlob(stream,
              {pConnections, pEffect, make<TrackParam>("track", ParamType::Track, json(R"({"a": [1]})")),
               make<SimpleParam<std::string>>("s", ParamType::String, "text")},
              nullptr);
    std::vector<std::byte> vecBytes(stream.bytes().begin(), stream.bytes().end());
    for (size_t uSize = 0; uSize < vecBytes.size(); ++uSize)
    {
        BitStream cut(vecBytes.data(), uSize, false);
        static_cast<void>(readBlob(cut));
    }
    for (size_t i = 0; i < vecBytes.size() * 8; ++i)
    {
        vecBytes[i / 8] ^= static_cast<std::byte>(1 << i % 8);
        BitStream changed(vecBytes.data(), vecBytes.size(), false);
        static_cast<void>(readBlob(changed));
        vecBytes[i / 8] ^= static_cast<std::byte>(1 << i % 8);
    }
}

TEST_F(ParamsTest, rowsShowAndWriteTheValues)
{
    int iChanges = 0;
    int iPressed = 0;
    std::vector<EffectCommand> vecCommands;
    int iRows = 0;
    const ParamContext context{[&] { ++iChanges; }, [&] { ++iPressed; },
                               [&](EffectCommand eCommand) { vecCommands.push_back(eCommand); },
                               [&] { ++iRows; }};
    const auto pBool = make<SimpleParam<bool>>("open", ParamType::Bool);
    show(*pBool, context);
    panel.set("open", true);
    EXPECT_TRUE(pBool->value);
    auto pFloat = make<SimpleParam<float>>("size", ParamType::Float, 2.5);
    show(*pFloat, context);
    EXPECT_EQ(panel.value("size"), "2.5");
    EXPECT_EQ(panel.find("size")->floatRange.max, std::numeric_limits<float>::max());
    panel.drag("size", {3.0f, 4.0f});
    EXPECT_EQ(pFloat->value, 4.0f);
    pFloat.reset();
    panel.set("size", 5.0f); // the row outlives its parameter
    const auto pText = make<SimpleParam<std::string>>("name", ParamType::String, "x");
    show(*pText, context);
    panel.set("name", "y");
    EXPECT_EQ(pText->value, "y");
    EXPECT_EQ(iChanges, 5);
    show(*make<ConnectionsParam>("connections", ParamType::Connections), context);
    panel.press("Connect");
    EXPECT_EQ(iPressed, 1);

    const auto pEffect = make<EffectParam>("effect", ParamType::Effect, json(R"({"name": "Lamp"})"));
    show(*pEffect, context);
    EXPECT_EQ(panel.dump(),
              "choice Effect Set = Lamps\nchoice Effect = Lamp\nfloat Time of day = 0\nfloat = 1\n"
              "check Inverse time of day = off\ngroup Light\n  swatch Color = 1 1 1 1\n"
              "  check Additive = off\n  choice Shadow Mode = Off\n  float Range = 10\ngroup Misc\n"
              "  triple Drift = 0 0 0\n  swatch Tune = 0 0 0 0\n  check AutoPlay = on\n"
              "  button Restart\n  button Stop\n  button Start\n");
    EXPECT_EQ(panel.find("Range")->floatRange.max, 500.0f);
    panel.set("Color", ColorRgba{0.5f, 0.0f, 0.0f, 1.0f});
    panel.set("Additive", true);
    panel.choose("Shadow Mode", "Dynamic");
    panel.set("Range", 25.0f);
    panel.set("Drift", std::array<float, 3>{1.0f, 2.0f, 3.0f});
    panel.set("Tune", ColorRgba{1.0f, 2.0f, 3.0f, 4.0f});
    panel.set("Time of day", 0.25f);
    panel.set("", 0.75f);
    panel.set("Inverse time of day", true);
    panel.set("AutoPlay", false);
    panel.press("Stop");
    show(*pEffect, context);
    EXPECT_EQ(panel.dump(),
              "choice Effect Set = Lamps\nchoice Effect = Lamp\nfloat Time of day = 0.25\nfloat = 0.75\n"
              "check Inverse time of day = on\ngroup Light\n  swatch Color = 0.5 0 0 1\n"
              "  check Additive = on\n  choice Shadow Mode = Dynamic\n  float Range = 25\ngroup Misc\n"
              "  triple Drift = 1 2 3\n  swatch Tune = 1 2 3 4\n  check AutoPlay = off\n"
              "  button Restart\n  button Stop\n  button Start\n");
    panel.choose("Effect", "Glow");
    EXPECT_EQ(iRows, 1);
    EXPECT_EQ(vecCommands, (std::vector{EffectCommand::Stop, EffectCommand::Restart}));
    show(*pEffect, context);
    EXPECT_EQ(panel.find("Light"), nullptr);
    EXPECT_EQ(panel.value("Size"), "1");
}

} // namespace

} // namespace tilebuilder
