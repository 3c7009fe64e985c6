// Stored Lua values: the direct functions, and a table over a Lua state.

#include "Benchmarks/Harness.h"
#include "KestrelCommon/Data/LuaBlob.h"
#include "KestrelCommon/Data/LuaObjectSerializer.h"

#include <lua.hpp>
#include <memory>

namespace bench
{

namespace
{

constexpr size_t s_uValues = 10'000;

/// Values of all simple kinds in turn, and where the bytes of their fields lie.
struct MixedValues
{
    std::vector<int32_t> vecNumbers;
    std::vector<std::string> vecTexts;
    std::vector<uint8_t> vecFields; ///< lengths of code and payload, as a copy takes them
    std::vector<std::byte> vecBytes;

    MixedValues()
    {
        for (size_t i = 0; i < s_uValues; ++i)
        {
            vecNumbers.push_back(static_cast<int32_t>(i * 7919 % 65536));
            vecTexts.push_back("value " + std::to_string(i % 1000));
        }
        size_t uBytes = 0;
        for (size_t i = 0; i < s_uValues; ++i)
        {
            const size_t arrSizes[] = {1, 4, 2, 1, 4, 4 + vecTexts[i].size()};
            vecFields.push_back(1);
            vecFields.push_back(static_cast<uint8_t>(arrSizes[i % 6]));
            uBytes += 1 + arrSizes[i % 6];
        }
        for (size_t i = 0; i < uBytes; ++i)
            vecBytes.push_back(static_cast<std::byte>(i));
    }
};

/// Copies every field by its own length; the common lengths without a call.
void copyFields(const MixedValues& values, const std::byte* pFrom, std::byte* pTo)
{
    for (const uint8_t uLength : values.vecFields)
    {
        switch (uLength)
        {
        case 1:
            std::memcpy(pTo, pFrom, 1);
            break;
        case 2:
            std::memcpy(pTo, pFrom, 2);
            break;
        case 4:
            std::memcpy(pTo, pFrom, 4);
            break;
        default:
            std::memcpy(pTo, pFrom, uLength);
            break;
        }
        pFrom += uLength;
        pTo += uLength;
    }
}

void writeAll(const MixedValues& values, BitStream& stream)
{
    LuaBlobWriter out(stream);
    out.header();
    out.array(s_uValues);
    for (size_t i = 0; i < s_uValues; ++i)
        switch (i % 6)
        {
        case 0:
            out.boolean(values.vecNumbers[i] & 1);
            break;
        case 1:
            out.number(static_cast<float>(values.vecNumbers[i]));
            break;
        case 2:
            out.int16(static_cast<int16_t>(values.vecNumbers[i]));
            break;
        case 3:
            out.int8(static_cast<int8_t>(values.vecNumbers[i]));
            break;
        case 4:
            out.int32(values.vecNumbers[i]);
            break;
        default:
            out.string(values.vecTexts[i]);
            break;
        }
}

/// A sum over all that was read.
uint64_t readAll(BitStream& stream)
{
    LuaBlobReader in(stream);
    if (!in.header())
        return 0;
    uint64_t uSum = 0;
    const uint32_t uCount = in.table().uCount;
    for (size_t i = 0; i < uCount; ++i)
        switch (i % 6)
        {
        case 0:
            uSum += in.boolean();
            break;
        case 1:
            uSum += static_cast<uint64_t>(in.number());
            break;
        case 2:
            uSum += static_cast<uint16_t>(in.int16());
            break;
        case 3:
            uSum += static_cast<uint8_t>(in.int8());
            break;
        case 4:
            uSum += static_cast<uint32_t>(in.int32());
            break;
        default:
            uSum += in.string().size();
            break;
        }
    return uSum;
}

uint64_t sumOf(const MixedValues& values)
{
    uint64_t uSum = 0;
    for (size_t i = 0; i < s_uValues; ++i)
    {
        const auto uNumber = static_cast<uint32_t>(values.vecNumbers[i]);
        const uint64_t arrSums[] = {uNumber & 1,    uNumber, uNumber & 0xFFFF,
                                    uNumber & 0xFF, uNumber, values.vecTexts[i].size()};
        uSum += arrSums[i % 6];
    }
    return uSum;
}

int directBlob()
{
    const MixedValues values;
    std::vector<std::byte> vecCopy(values.vecBytes.size());
    std::vector<std::byte> vecBack(values.vecBytes.size());
    uint64_t uSum = 0;
    return !run({.sName = "blob of 10,000 values, written and read directly",
                 .fLimit = 4.0,
                 .fnFloor =
                     [&]
                 {
                     copyFields(values, values.vecBytes.data(), vecCopy.data());
                     keep(vecCopy.data());
                     copyFields(values, vecCopy.data(), vecBack.data());
                     keep(vecBack.data());
                 },
                 .fnProduct =
                     [&]
                 {
                     BitStream stream;
                     writeAll(values, stream);
                     uSum = readAll(stream);
                 },
                 .fnEqual = [&] { return uSum == sumOf(values) && vecBack == values.vecBytes; },
                 .iRepeat = 200});
}

/// A table of 10,000 entries in records of a few kinds of values.
constexpr const char* s_pTable = R"(
    local t = {}
    for i = 1, 1000 do
        t[i] = { id = i, name = 'node ' .. i, on = i % 2 == 0, weight = i / 8, list = { i, i + 1, 70000 + i, -i } }
    end
    return t)";

/// Pushes an equal table, built by the least calls.
void buildEqual(lua_State* pState)
{
    lua_createtable(pState, 1000, 0);
    for (int i = 1; i <= 1000; ++i)
    {
        lua_createtable(pState, 0, 5);
        lua_pushinteger(pState, i);
        lua_setfield(pState, -2, "id");
        lua_pushstring(pState, ("node " + std::to_string(i)).c_str());
        lua_setfield(pState, -2, "name");
        lua_pushboolean(pState, i % 2 == 0);
        lua_setfield(pState, -2, "on");
        lua_pushnumber(pState, i / 8.0);
        lua_setfield(pState, -2, "weight");
        lua_createtable(pState, 4, 0);
        const int arrItems[] = {i, i + 1, 70000 + i, -i};
        for (int k = 0; k < 4; ++k)
        {
            lua_pushinteger(pState, arrItems[k]);
            lua_rawseti(pState, -2, k + 1);
        }
        lua_setfield(pState, -2, "list");
        lua_rawseti(pState, -2, i);
    }
}

int walk(lua_State* pState, int iTable)
{
    int iCount = 0;
    for (lua_pushnil(pState); lua_next(pState, iTable); lua_pop(pState, 1), ++iCount)
        if (lua_istable(pState, -1))
            iCount += walk(pState, lua_gettop(pState));
    return iCount;
}

bool equalTables(lua_State* pState, int iLeft, int iRight)
{
    for (lua_pushnil(pState); lua_next(pState, iLeft); lua_pop(pState, 1))
    {
        lua_pushvalue(pState, -2);
        lua_rawget(pState, iRight);
        const int iTop = lua_gettop(pState);
        const bool bEqual = lua_istable(pState, -1) && lua_istable(pState, -2)
                                ? equalTables(pState, iTop - 1, iTop)
                                : lua_rawequal(pState, -1, -2) != 0;
        lua_pop(pState, 1);
        if (!bEqual)
            return false;
    }
    return true;
}

int stateBlob()
{
    const std::unique_ptr<lua_State, void (*)(lua_State*)> pState(luaL_newstate(), &lua_close);
    luaL_openlibs(pState.get());
    if (luaL_dostring(pState.get(), s_pTable))
        return 1;
    lua_gc(pState.get(), LUA_GCSTOP, 0);
    const auto collect = [&]
    {
        lua_settop(pState.get(), 1);
        lua_gc(pState.get(), LUA_GCCOLLECT, 0);
        lua_gc(pState.get(), LUA_GCSTOP, 0);
    };
    int iCount = 0;
    bool bRead = false;
    bool bEqual = true;
    return !run({.sName = "blob of 10,000 values over a Lua state",
                 .fLimit = 2.0,
                 .fnFloor =
                     [&]
                 {
                     for (int i = 0; i < 3; ++i)
                         iCount = walk(pState.get(), 1);
                     buildEqual(pState.get());
                     bEqual = bEqual && iCount == 10'000;
                 },
                 .fnProduct =
                     [&]
                 {
                     BitStream stream;
                     bRead = LuaObjectSerializer::Serialize(pState.get(), stream, 1, false) &&
                             LuaObjectSerializer::Deserialize(pState.get(), stream);
                 },
                 .fnEqual = [&] { return bRead && bEqual && equalTables(pState.get(), 1, 2); },
                 .fnBeforeFloor = collect,
                 .fnBeforeProduct = collect,
                 .iRepeat = 1});
}

int luaBlobs()
{
    return directBlob() + stateBlob();
}

const Registration s_luaBlobs(&luaBlobs);

} // namespace

} // namespace bench
