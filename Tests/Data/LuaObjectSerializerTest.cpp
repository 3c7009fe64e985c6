// Values over the stack of a Lua state.

#include "KestrelCommon/Data/LuaObjectSerializer.h"
#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Data/LuaVm.h"
#include "Tests/Data/Bytes.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>
#include <lua.hpp>
#include <random>

namespace
{

struct LuaObjectSerializerTest : testing::Test
{
    LuaObjectSerializerTest() : pState(luaL_newstate()), pVm(std::make_unique<LuaVm>(pState))
    {
        luaL_openlibs(pState);
    }
    ~LuaObjectSerializerTest() override
    {
        pVm.reset();
        lua_close(pState);
    }

    /// Leaves the value of an expression on the stack.
    void eval(const std::string& sExpression)
    {
        ASSERT_EQ(luaL_dostring(pState, ("return " + sExpression).c_str()), 0) << lua_tostring(pState, -1);
    }
    /// The stored bytes of an expression, without the header.
    std::string stored(const std::string& sExpression)
    {
        eval(sExpression);
        BitStream stream;
        EXPECT_TRUE(LuaObjectSerializer::Serialize(pState, stream, -1, false)) << sExpression;
        lua_pop(pState, 1);
        const std::string sHex = hexOf(stream);
        EXPECT_EQ(sHex.substr(0, 14), "4c554100000001");
        return sHex.substr(14);
    }
    bool load(std::string_view sHex)
    {
        const std::vector<uint8_t> vecBytes = bytesOfHex(sHex);
        BitStream stream(vecBytes.data(), vecBytes.size(), true);
        return LuaObjectSerializer::Deserialize(pState, stream);
    }
    /// Whether two stack values are the same through and through.
    bool deepEqual(int iLeft, int iRight)
    {
        if (lua_type(pState, iLeft) != lua_type(pState, iRight))
            return false;
        if (!lua_istable(pState, iLeft))
            return lua_rawequal(pState, iLeft, iRight) != 0;
        size_t uCount = 0;
        for (lua_pushnil(pState); lua_next(pState, iRight); lua_pop(pState, 1))
            ++uCount;
        for (lua_pushnil(pState); lua_next(pState, iLeft); --uCount)
        {
            lua_pushvalue(pState, -2);
            lua_rawget(pState, iRight);
            const int iTop = lua_gettop(pState);
            const bool bEqual = deepEqual(iTop - 1, iTop);
            lua_pop(pState, 2);
            if (!bEqual)
            {
                lua_pop(pState, 1);
                return false;
            }
        }
        return uCount == 0;
    }

    LogCapture log;
    lua_State* pState;
    std::unique_ptr<LuaVm> pVm;
};

TEST_F(LuaObjectSerializerTest, valuesTakeTheirSmallestForm)
{
    const std::pair<const char*, const char*> arrCases[] = {
        {"nil", "01"},
        {"print", "01"},
        {"true", "0280"},
        {"127", "087f"},
        {"-1", "08ff"},
        {"-128", "0880"},
        {"128", "070080"},
        {"-32768", "078000"},
        {"32768", "0600008000"},
        {"2147483648", "034f000000"},
        {"-2147483648", "0680000000"},
        {"1.5", "033fc00000"},
        {"0/0", "03ffc00000"},
        {"1e300", "037f800000"},
        {"'a\\0b'", "0400000003610062"},
        {"''", "0400000000"},
        {"{}", "050000000000"},
        {"{[5]=1,[6]=2}", "0500000002800000028400840100"},
        {"{[1.5]=true}", "050000000101 9fe00000 0140"},
        {"{[2147483648]=true}", "0500000001 01a7800000 0140"},
    };
    for (const auto& [pExpression, pHex] : arrCases)
    {
        const std::string sStored = stored(pExpression);
        if (std::string_view(pExpression) == "0/0")
        {
            EXPECT_EQ(sStored.substr(0, 2), "03"); // either sign of not-a-number
        }
        else
        {
            EXPECT_EQ(sStored, withoutBlanks(pHex)) << pExpression;
        }
    }
    EXPECT_EQ(stored("{1,2,x=3}").substr(0, 11), "05000000030") << "mixed keys make no array";
    EXPECT_EQ(stored("{[1]=1,[3]=2}").substr(0, 11), "05000000020") << "holes make no array";
}

TEST_F(LuaObjectSerializerTest, randomTablesComeBack)
{
    std::mt19937 random(5);
    const std::function<std::string(int)> make = [&](int iDepth) -> std::string
    {
        switch (random() % (iDepth > 0 ? 8 : 6))
        {
        case 0:
            return random() % 2 ? "true" : "false";
        case 1:
            return std::to_string(static_cast<int32_t>(random()) >> random() % 32);
        case 2:
            return std::to_string(static_cast<int>(random() % 4096) / 8.0);
        case 3:
            return "'" + std::string(random() % 30, 'k') + "'";
        case 4:
            return "''";
        case 5:
            return "{}";
        default:
        {
            std::string sTable = "{";
            const bool bArray = random() % 2;
            for (uint32_t i = random() % 9; i > 0; --i)
                sTable +=
                    (bArray ? "" : "['" + std::to_string(random() % 50) + "']=") + make(iDepth - 1) + ",";
            return sTable + "}";
        }
        }
    };
    for (int i = 0; i < 300; ++i)
    {
        const std::string sExpression = make(5);
        eval(sExpression);
        BitStream stream;
        stream.writeBool(true); // the serializer aligns by itself
        ASSERT_TRUE(LuaObjectSerializer::Serialize(pState, stream, 1, false));
        bool bBit = false;
        ASSERT_TRUE(stream.readBool(bBit));
        ASSERT_TRUE(LuaObjectSerializer::Deserialize(pState, stream)) << sExpression;
        ASSERT_EQ(lua_gettop(pState), 2);
        ASSERT_TRUE(deepEqual(1, 2)) << sExpression;
        lua_settop(pState, 0);
    }
}

TEST_F(LuaObjectSerializerTest, cyclesAndWideSharingFailAndLeaveTheStream)
{
    const char* arrExpressions[] = {
        "(function() local t = {} t.t = t return t end)()",
        "(function() local t = {1} for i = 1, 60 do t = {t, t} end return t end)()",
        "string.rep('x', 16 * 1024 * 1024)",
        "(function() local t = {} for i = 1, 201 do t = {t} end return t end)()",
    };
    for (const char* pExpression : arrExpressions)
    {
        log.clear();
        eval(pExpression);
        BitStream stream;
        stream.write(uint8_t{7});
        stream.writeBool(true);
        EXPECT_FALSE(LuaObjectSerializer::Serialize(pState, stream, -1, false)) << pExpression;
        EXPECT_EQ(stream.bitsUsed(), 9u);
        EXPECT_EQ(hexOf(stream), "0780");
        EXPECT_EQ(lua_gettop(pState), 1);
        EXPECT_EQ(log.lines().size(), 1u) << log.dump();
        lua_settop(pState, 0);
    }
    eval("(function() local t = {} for i = 1, 199 do t = {t} end return t end)()");
    BitStream stream;
    EXPECT_TRUE(LuaObjectSerializer::Serialize(pState, stream, -1, false)) << "200 levels are allowed";
    EXPECT_TRUE(LuaObjectSerializer::Deserialize(pState, stream));
}

TEST_F(LuaObjectSerializerTest, readsEveryCode)
{
    pVm->registerStandardUserdata();
    EXPECT_TRUE(load("4c5541 00000001"));
    EXPECT_EQ(lua_gettop(pState), 0);
    EXPECT_TRUE(load("4c5541 00000001 01 05 00000002 80000002 84 00840100"));
    ASSERT_EQ(lua_gettop(pState), 2);
    EXPECT_TRUE(lua_isnil(pState, 1));
    lua_rawgeti(pState, 2, 6);
    EXPECT_EQ(lua_tonumber(pState, -1), 2.0) << "the second item from start index 5";
    lua_settop(pState, 0);
    EXPECT_TRUE(load("4c5541 00000001 04 00000003 610062"));
    EXPECT_EQ(lua_objlen(pState, 1), 1u) << "a text ends at its first zero byte";
    lua_settop(pState, 0);
    const std::string sJson = R"({"a":[true,null,2.5],"b":"t"})";
    BitStream json;
    json.writeBytes("LUA\0\0\0\1\x09\0\0\0\x1d", 12);
    ASSERT_EQ(sJson.size(), 0x1du);
    json.writeBytes(sJson.data(), static_cast<uint32_t>(sJson.size()));
    json.writeBytes("\x09\0\0\0\0", 5); // empty JSON
    EXPECT_TRUE(LuaObjectSerializer::Deserialize(pState, json));
    eval("{a={true,nil,2.5},b='t'}");
    EXPECT_TRUE(deepEqual(1, 3));
    EXPECT_TRUE(lua_isnil(pState, 2));
    lua_settop(pState, 0);
    EXPECT_TRUE(load("4c5541 00000001 65 00000007 01 081e"));
    EXPECT_EQ(lua_tonumber(pState, 2), 30.0) << "a weak reference takes five bytes";
}

TEST_F(LuaObjectSerializerTest, badDataIsToldAndFails)
{
    struct Case
    {
        const char* pHex;
        const char* pMessage; ///< null: nothing is logged
        int iPushed;
    };
    const Case arrCases[] = {
        {"4c5542 00000001 01", "ASSERT: 'tag[i] == LUA_MAGIC_TAG[i]'", 0},
        {"4c55", "LuaObjectSerializer::Deserialize was given data that is not serlized Lua data.", 0},
        {"4c5541 00000002 01",
         "LuaObjectSerializer::Deserialize was given data with version: 2 but the current version is: 1", 0},
        {"4c5541 00000001 2a 01", "Unknown lua data type 42", 1},
        {"4c5541 00000001 64 00002711 00",
         "Lua userdata type '10001' is not known to the LuaVM that tires to "
         "deserialized it.",
         1},
        {"4c5541 00000001 03 3f80", nullptr, 1},
        {"4c5541 00000001 04 00000009 61", nullptr, 1},
        {"4c5541 00000001 05 7fffffff 80000000 80 00000000", nullptr, 1},
        {"4c5541 00000001 05 00000001 00 8000", "key that no table can have", 1},
        {"4c5541 00000001 09 00000001 7b", "Stored JSON can't be read", 1},
        {"4c5541 00000001 65 fffffffe 01", "ASSERT: 'weakScriptRef.iRef != (-2)'", 1},
    };
    for (const Case& bad : arrCases)
    {
        log.clear();
        lua_settop(pState, 0);
        EXPECT_EQ(load(bad.pHex), std::string_view(bad.pHex).find("fffffffe") != std::string_view::npos)
            << bad.pHex;
        EXPECT_EQ(lua_gettop(pState), bad.iPushed) << bad.pHex;
        EXPECT_TRUE(bad.pMessage ? log.has(bad.pMessage) : log.lines().empty()) << bad.pHex << "\n"
                                                                                << log.dump();
    }
    std::string sDeep = "4c554100000001";
    BitStream deep;
    deep.writeBytes("LUA\0\0\0\1", 7);
    for (int i = 0; i < 300; ++i)
    {
        deep.writeWord(0x05ull << 33 | 1 << 1 | 1, 41);
        deep.writeWord(1, 32);
    }
    deep.write(uint8_t{1});
    EXPECT_FALSE(LuaObjectSerializer::Deserialize(pState, deep));
    EXPECT_TRUE(log.has("nests more than 200"));
}

TEST_F(LuaObjectSerializerTest, userdataGoesByItsRecord)
{
    pVm->registerStandardUserdata();
    const auto store = [&](int iIndex, bool bForOtherVm)
    {
        BitStream stream;
        EXPECT_TRUE(LuaObjectSerializer::Serialize(pState, stream, iIndex, bForOtherVm));
        return hexOf(stream).substr(14);
    };
    const Uuid uuid = *Uuid::parse("00112233-4455-6677-8899-aabbccddeeff");
    LuaVm::pushUserdata(pState, "Uuid", &uuid, sizeof(uuid));
    EXPECT_EQ(store(1, false), "6400002711ffeeddccbbaa99887766554433221100") << "ids are reversed here alone";
    const float arrQuat[] = {1.0f, 2.0f, 0.0f, -1.0f};
    LuaVm::pushUserdata(pState, "Quat", arrQuat, sizeof(arrQuat));
    EXPECT_EQ(store(2, false), "64000027143f8000004000000000000000bf800000");
    const uint32_t uId = 0x1234;
    LuaVm::pushUserdata(pState, "Unit", &uId, sizeof(uId));
    EXPECT_EQ(store(3, false), "640000272c00001234");
    EXPECT_EQ(store(3, true), "01");
    EXPECT_TRUE(log.has("Lua userdata type 'Unit' is not known to the LuaVM that will deserialize it."));
    LuaVm::pushUserdata(pState, "Network", &uId, sizeof(uId));
    EXPECT_EQ(store(4, false), "01");
    EXPECT_TRUE(log.has("'Network' does not have a serialize function and can't be serialized."));
    lua_newuserdata(pState, 4);
    EXPECT_EQ(store(5, false), "01");
    EXPECT_TRUE(log.has("Lua userdata type '0' is not known to the LuaVM that tires to serialize it."));
    EXPECT_FALSE(pVm->registerUserdata({.name = "Other", .id = 10001}));
    EXPECT_TRUE(
        log.has("Lua userdata 'Other' tried to register at the same typeid10001 when usedata 'Uuid' was "
                "already registed to typeid: 10001"));

    lua_settop(pState, 0);
    EXPECT_TRUE(load("4c5541 00000001 64 00002711 ffeeddccbbaa99887766554433221100 64 00002729 00001234"
                     "64 0000272b 01020304"));
    ASSERT_EQ(lua_gettop(pState), 3);
    EXPECT_EQ(std::memcmp(luaL_checkudata(pState, 1, "Uuid"), &uuid, 16), 0);
    EXPECT_EQ(*static_cast<uint32_t*>(luaL_checkudata(pState, 2, "Harvestable")) & 0xFFFF, 0x1234u);
    EXPECT_EQ(*static_cast<uint32_t*>(luaL_checkudata(pState, 3, "World")), 4u) << "the low byte alone";
    EXPECT_FALSE(load("4c5541 00000001 64 0000272a"));
    EXPECT_TRUE(log.has("'Network' does not have a deserialize function and can't be deserialized."));
}

TEST_F(LuaObjectSerializerTest, recordsMakeAndEndTheirObjects)
{
    static int s_iEnded = 0;
    s_iEnded = 0;
    const auto construct = [](lua_State* pLua)
    {
        lua_pushboolean(pLua, 1);
        lua_setfield(pLua, -2, "made");
    };
    EXPECT_TRUE(pVm->registerUserdata(
        {.name = "Thing", .id = 5, .construct = construct, .destroy = [](void*) { ++s_iEnded; }}));
    const int iValue = 3;
    for (int i = 0; i < 2; ++i)
        LuaVm::pushUserdata(pState, "Thing", &iValue, sizeof(iValue));
    lua_getmetatable(pState, 1);
    lua_getfield(pState, -1, "made");
    EXPECT_TRUE(lua_toboolean(pState, -1));
    lua_settop(pState, 1);
    lua_gc(pState, LUA_GCCOLLECT, 0);
    EXPECT_EQ(s_iEnded, 1);
    EXPECT_EQ(LuaVm::of(pState), pVm.get());
    pVm.reset();
    EXPECT_EQ(LuaVm::of(pState), nullptr);
    lua_settop(pState, 0);
    lua_gc(pState, LUA_GCCOLLECT, 0);
    EXPECT_EQ(s_iEnded, 1) << "nothing is called without the records";
}

/// Any prefix and any flipped byte of a good blob is read without harm.
TEST_F(LuaObjectSerializerTest, damagedBlobsAreReadWithoutHarm)
{
    pVm->registerStandardUserdata();
    eval("{name='x', list={1,300,70000,1.5,true,{}}, {a={b={c='deep'}}}, ['']=false}");
    BitStream stream;
    ASSERT_TRUE(LuaObjectSerializer::Serialize(pState, stream, 1, false));
    std::vector<std::byte> vecBytes(stream.bytes().begin(), stream.bytes().end());
    for (size_t uSize = 8; uSize + 1 < vecBytes.size(); ++uSize)
    {
        lua_settop(pState, 0);
        BitStream cut(vecBytes.data(), uSize, false);
        EXPECT_FALSE(LuaObjectSerializer::Deserialize(pState, cut)) << uSize;
        EXPECT_EQ(lua_gettop(pState), 1);
    }
    for (size_t i = 0; i < vecBytes.size() * 8; ++i)
    {
        lua_settop(pState, 0);
        vecBytes[i / 8] ^= static_cast<std::byte>(1 << i % 8);
        BitStream changed(vecBytes.data(), vecBytes.size(), false);
        static_cast<void>(LuaObjectSerializer::Deserialize(pState, changed));
        vecBytes[i / 8] ^= static_cast<std::byte>(1 << i % 8);
    }
}

} // namespace
