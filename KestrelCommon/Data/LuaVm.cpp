#include "KestrelCommon/Data/LuaVm.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Io/BitStream.h"

#include <array>
#include <lua.hpp>

namespace
{

constexpr const char* s_pVmField = "VMPtr";

int collect(lua_State* pState)
{
    const auto* pRecord = static_cast<const LuaUserdataRecord*>(lua_touserdata(pState, lua_upvalueindex(1)));
    if (void* pObject = lua_touserdata(pState, 1))
        pRecord->destroy(pObject);
    return 0;
}

void writeUuid(const void* pObject, BitStream& stream)
{
    stream.write(*static_cast<const Uuid*>(pObject)); // reversed, as every value of several bytes
}

bool readUuid(lua_State* pState, BitStream& stream, const char* pName)
{
    Uuid uuid;
    if (!stream.read(uuid))
        return false;
    LuaVm::pushUserdata(pState, pName, &uuid, sizeof(uuid));
    return true;
}

/// Floats in the order in which they lie in memory.
template <size_t Count>
void writeFloats(const void* pObject, BitStream& stream)
{
    for (size_t i = 0; i < Count; ++i)
        stream.write(static_cast<const float*>(pObject)[i]);
}

template <size_t Count>
bool readFloats(lua_State* pState, BitStream& stream, const char* pName)
{
    std::array<float, Count> arrFloats;
    for (float& fValue : arrFloats)
        if (!stream.read(fValue))
            return false;
    LuaVm::pushUserdata(pState, pName, arrFloats.data(), sizeof(arrFloats));
    return true;
}

void writeId(const void* pObject, BitStream& stream)
{
    stream.write(*static_cast<const uint32_t*>(pObject));
}

template <uint32_t Mask>
bool readId(lua_State* pState, BitStream& stream, const char* pName)
{
    uint32_t uId = 0;
    if (!stream.read(uId))
        return false;
    uId &= Mask;
    LuaVm::pushUserdata(pState, pName, &uId, sizeof(uId));
    return true;
}

} // namespace

LuaVm::LuaVm(lua_State* pState) : m_pState(pState)
{
    lua_pushlightuserdata(pState, this);
    lua_setfield(pState, LUA_REGISTRYINDEX, s_pVmField);
}

LuaVm::~LuaVm()
{
    // The metatables may outlive this object: what Lua collects later finds no record.
    for (const auto& [uId, record] : m_mapRecords)
    {
        luaL_getmetatable(m_pState, record.name.c_str());
        lua_pushnil(m_pState);
        lua_setfield(m_pState, -2, "__gc");
        lua_pop(m_pState, 1);
    }
    lua_pushnil(m_pState);
    lua_setfield(m_pState, LUA_REGISTRYINDEX, s_pVmField);
}

LuaVm* LuaVm::of(lua_State* pState)
{
    lua_getfield(pState, LUA_REGISTRYINDEX, s_pVmField);
    auto* pVm = static_cast<LuaVm*>(lua_touserdata(pState, -1));
    lua_pop(pState, 1);
    return pVm;
}

bool LuaVm::registerUserdata(const LuaUserdataRecord& record)
{
    const auto [iterRecord, bNew] = m_mapRecords.try_emplace(record.id, record);
    if (!bNew)
    {
        QM_LOG_ERROR("Lua userdata '", record.name, "' tried to register at the same typeid", record.id,
                     " when usedata '", iterRecord->second.name,
                     "' was already registed to typeid: ", record.id);
        return false;
    }
    luaL_newmetatable(m_pState, record.name.c_str());
    lua_pushinteger(m_pState, static_cast<lua_Integer>(record.id));
    lua_setfield(m_pState, -2, "__typeid");
    if (record.destroy)
    {
        lua_pushlightuserdata(m_pState, &iterRecord->second);
        lua_pushcclosure(m_pState, &collect, 1);
        lua_setfield(m_pState, -2, "__gc");
    }
    if (record.construct)
        record.construct(m_pState);
    lua_pop(m_pState, 1);
    return true;
}

const LuaUserdataRecord* LuaVm::find(uint32_t uId) const
{
    const auto iterRecord = m_mapRecords.find(uId);
    return iterRecord == m_mapRecords.end() ? nullptr : &iterRecord->second;
}

void LuaVm::pushUserdata(lua_State* pState, const char* pName, const void* pBytes, size_t uBytes)
{
    std::memcpy(lua_newuserdata(pState, uBytes), pBytes, uBytes);
    luaL_getmetatable(pState, pName);
    lua_setmetatable(pState, -2);
}

void LuaVm::registerStandardUserdata()
{
    using enum LuaUserdataType;
    const auto add =
        [this](const char* pName, LuaUserdataType eType, bool bLocalOnly, auto fnWrite, auto fnRead)
    {
        registerUserdata({.name = pName,
                          .id = static_cast<uint32_t>(eType),
                          .bLocalOnly = bLocalOnly,
                          .serialize = fnWrite,
                          .deserialize = fnRead});
    };
    add("Uuid", Uuid, false, &writeUuid, &readUuid);
    add("Vec3", Vec3, false, &writeFloats<3>, &readFloats<3>);
    add("Quat", Quat, false, &writeFloats<4>, &readFloats<4>);
    add("Color", Color, false, &writeFloats<4>, &readFloats<4>);
    add("World", World, false, &writeId, &readId<0xFF>);
    add("Unit", Unit, true, &writeId, &readId<UINT32_MAX>);
    static constexpr std::pair<const char*, LuaUserdataType> s_arrIds[] = {
        {"Shape", Shape},         {"Body", Body},   {"Interactable", Interactable},
        {"Container", Container}, {"Joint", Joint}, {"Harvestable", Harvestable},
        {"Player", Player},       {"Lift", Lift},   {"ScriptableObject", ScriptableObject},
        {"Character", Character},
    };
    for (const auto& [pName, eType] : s_arrIds)
        add(pName, eType, false, &writeId, &readId<UINT32_MAX>);
    static constexpr std::pair<const char*, LuaUserdataType> s_arrNeverStored[] = {
        {"Network", Network}, {"VoxelTerrain", VoxelTerrain}};
    static constexpr std::pair<const char*, LuaUserdataType> s_arrLocal[] = {
        {"LoadCellHandle", LoadCellHandle}, {"Storage", Storage}, {"AiState", AiState}};
    for (const auto& [pName, eType] : s_arrNeverStored)
        add(pName, eType, false, nullptr, nullptr);
    for (const auto& [pName, eType] : s_arrLocal)
        add(pName, eType, true, nullptr, nullptr);
}
