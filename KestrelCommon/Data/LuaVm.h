#pragma once // What a Lua state knows beside Lua: the userdata types that can be stored.

#include "KestrelCommon/Data/LuaFormat.h"

#include <cstdint>
#include <string>
#include <unordered_map>

class BitStream;
struct lua_State;

/// How one type of userdata is made and stored. The functions may be null; none may raise a Lua error.
struct LuaUserdataRecord
{
    std::string name; ///< of the metatable in the registry
    uint32_t id = 0;
    bool bLocalOnly = false; ///< means nothing to another VM
    /// Fills the metatable, which is on top of the stack, when the type is registered.
    void (*construct)(lua_State* pState) = nullptr;
    /// Called with the object's memory when Lua collects it.
    void (*destroy)(void* pObject) = nullptr;
    void (*serialize)(const void* pObject, BitStream& stream) = nullptr;
    /// Pushes a userdata with the metatable of the name; false, nothing pushed: the stream ended.
    bool (*deserialize)(lua_State* pState, BitStream& stream, const char* pName) = nullptr;
};

/// Owns no state, only stands beside one: the registry field "VMPtr" leads from the state to it.
///
/// Lifetime: must outlive the last use of the state, but not the state itself.
/// Threads:  those of the state.
class LuaVm
{
public:
    explicit LuaVm(lua_State* pState);
    ~LuaVm();
    LuaVm(const LuaVm&) = delete;
    LuaVm& operator=(const LuaVm&) = delete;

    /// The one beside a state; null when there is none.
    [[nodiscard]] static LuaVm* of(lua_State* pState);

    /// Makes the metatable. False, with a line in the log: the id is taken.
    bool registerUserdata(const LuaUserdataRecord& record);
    /// All types that this program knows to store, and those that it knows not to.
    void registerStandardUserdata();

    /// Null when unknown. Valid as long as the VM.
    [[nodiscard]] const LuaUserdataRecord* find(uint32_t uId) const;

    /// Pushes a userdata that holds a copy of the bytes, with the metatable of a registered name.
    static void pushUserdata(lua_State* pState, const char* pName, const void* pBytes, size_t uBytes);

private:
    lua_State* m_pState;
    std::unordered_map<uint32_t, LuaUserdataRecord> m_mapRecords;
};
