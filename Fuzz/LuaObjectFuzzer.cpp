// Stored Lua values read onto a stack; what was read whole is stored and read again.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Data/LuaBlob.h"
#include "KestrelCommon/Data/LuaObjectSerializer.h"
#include "KestrelCommon/Data/LuaVm.h"

#include <cstdlib>
#include <lua.hpp>

namespace
{

lua_State* s_pState = nullptr;

std::string seed(void (*fnWrite)(LuaBlobWriter& out))
{
    BitStream stream;
    LuaBlobWriter out(stream);
    out.header();
    fnWrite(out);
    return fuzz::text(stream.bytes());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    s_pState = luaL_newstate();
    static LuaVm s_vm(s_pState);
    s_vm.registerStandardUserdata();
    const auto mixed = [](LuaBlobWriter& out)
    {
        out.table(3);
        out.string("list");
        out.array(3, -1);
        out.int32(70000);
        out.boolean(true);
        out.string("text");
        out.int8(4);
        out.color({1.0f, 0.5f, 0.0f, 1.0f});
        out.number(1.5f);
        out.json(R"({"a":[1,null,"b"],"c":{"d":true}})");
    };
    const auto deep = [](LuaBlobWriter& out)
    {
        for (int i = 0; i < 210; ++i)
            out.array(1);
        out.nil();
    };
    fuzz::writeSeeds(*pArguments, *pppArguments, {seed(mixed), seed(deep), seed([](LuaBlobWriter&) {})});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    BitStream stream(pData, uSize, false);
    const bool bGood = LuaObjectSerializer::Deserialize(s_pState, stream);
    const int iTop = lua_gettop(s_pState);
    for (int i = 1; bGood && i <= iTop && i <= 8; ++i)
    {
        BitStream again;
        if (!LuaObjectSerializer::Serialize(s_pState, again, i, false))
            continue;
        if (!LuaObjectSerializer::Deserialize(s_pState, again) || lua_gettop(s_pState) != iTop + 1)
            std::abort();
        lua_settop(s_pState, iTop);
    }
    lua_settop(s_pState, 0);
    lua_gc(s_pState, LUA_GCCOLLECT, 0);
    return 0;
}
