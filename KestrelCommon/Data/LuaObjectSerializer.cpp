#include "KestrelCommon/Data/LuaObjectSerializer.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/LuaBlob.h"
#include "KestrelCommon/Data/LuaVm.h"

#include <json/value.h>
#include <limits>
#include <lua.hpp>

namespace
{

/// Stack slots that one level of a value needs.
constexpr int s_iSlotsPerLevel = 6;
constexpr double s_fMinInt = std::numeric_limits<int32_t>::min();
constexpr double s_fMaxInt = std::numeric_limits<int32_t>::max();

/// Whether a number equals its own truncation to 32 bits, which then stands in iValue.
bool isInt32(double fValue, int32_t& iValue)
{
    if (!(fValue >= s_fMinInt && fValue <= s_fMaxInt)) // also not a number
        return false;
    iValue = static_cast<int32_t>(fValue);
    return fValue == iValue;
}

class Writer
{
public:
    Writer(lua_State* pState, BitStream& stream, bool bForOtherVm)
        : m_pState(pState),
          m_out(stream),
          m_uStart(stream.bitsUsed()),
          m_pVm(LuaVm::of(pState)),
          m_bForOtherVm(bForOtherVm)
    {
    }

    bool run(int iStackIndex)
    {
        m_out.header();
        return value(iStackIndex, 0);
    }

private:
    bool value(int iIndex, uint32_t uDepth)
    {
        switch (lua_type(m_pState, iIndex))
        {
        case LUA_TBOOLEAN:
            m_out.boolean(lua_toboolean(m_pState, iIndex) != 0);
            break;
        case LUA_TNUMBER:
            number(lua_tonumber(m_pState, iIndex));
            break;
        case LUA_TSTRING:
        {
            size_t uLength = 0;
            const char* pText = lua_tolstring(m_pState, iIndex, &uLength);
            if (!fits(uint64_t{uLength} * 8))
                return false;
            m_out.string({pText, uLength});
            break;
        }
        case LUA_TTABLE:
            return table(iIndex, uDepth + 1);
        case LUA_TUSERDATA:
            userdata(iIndex);
            break;
        default:
            m_out.nil();
            break;
        }
        return fits(0);
    }

    void number(double fValue)
    {
        int32_t iValue = 0;
        if (!isInt32(fValue, iValue))
            m_out.number(static_cast<float>(fValue));
        else if (iValue == static_cast<int8_t>(iValue))
            m_out.int8(static_cast<int8_t>(iValue));
        else if (iValue == static_cast<int16_t>(iValue))
            m_out.int16(static_cast<int16_t>(iValue));
        else
            m_out.int32(iValue);
    }

    bool table(int iIndex, uint32_t uDepth)
    {
        if (uDepth > lua::s_uMaxDepth || !lua_checkstack(m_pState, s_iSlotsPerLevel))
        {
            QM_LOG_ERROR("A Lua table that nests more than ", lua::s_uMaxDepth, " levels can't be stored.");
            return false;
        }
        uint64_t uCount = 0;
        bool bWholeKeys = true;
        int32_t iMin = std::numeric_limits<int32_t>::max();
        int32_t iMax = std::numeric_limits<int32_t>::min();
        lua_pushnil(m_pState);
        for (; lua_next(m_pState, iIndex); lua_pop(m_pState, 1))
        {
            ++uCount;
            int32_t iKey = 0;
            bWholeKeys = bWholeKeys && lua_type(m_pState, -2) == LUA_TNUMBER &&
                         isInt32(lua_tonumber(m_pState, -2), iKey);
            if (bWholeKeys)
            {
                iMin = std::min(iMin, iKey);
                iMax = std::max(iMax, iKey);
            }
        }
        const bool bArray = bWholeKeys && uCount > 0 && uint64_t(int64_t{iMax} - iMin) + 1 == uCount;
        if (!fits(uCount * (bArray ? lua::s_uMinItemBits : lua::s_uMinPairBits)))
            return false;
        return bArray ? array(iIndex, uDepth, iMin, iMax)
                      : pairs(iIndex, uDepth, static_cast<uint32_t>(uCount));
    }

    bool array(int iIndex, uint32_t uDepth, int32_t iMin, int32_t iMax)
    {
        m_out.array(static_cast<uint32_t>(int64_t{iMax} - iMin + 1), iMin);
        const int iItem = lua_gettop(m_pState) + 1;
        for (int64_t iKey = iMin; iKey <= iMax; ++iKey)
        {
            lua_rawgeti(m_pState, iIndex, static_cast<int>(iKey));
            if (!value(iItem, uDepth))
                return false;
            lua_pop(m_pState, 1);
        }
        return true;
    }

    bool pairs(int iIndex, uint32_t uDepth, uint32_t uCount)
    {
        m_out.table(uCount);
        const int iKey = lua_gettop(m_pState) + 1;
        lua_pushnil(m_pState);
        while (lua_next(m_pState, iIndex))
        {
            if (!value(iKey, uDepth) || !value(iKey + 1, uDepth))
                return false;
            lua_pop(m_pState, 1);
        }
        return true;
    }

    void userdata(int iIndex)
    {
        uint32_t uId = 0;
        if (lua_getmetatable(m_pState, iIndex))
        {
            lua_pushliteral(m_pState, "__typeid");
            lua_rawget(m_pState, -2);
            const double fId = lua_tonumber(m_pState, -1);
            uId = fId >= 0.0 && fId <= std::numeric_limits<uint32_t>::max() ? static_cast<uint32_t>(fId) : 0;
            lua_pop(m_pState, 2);
        }
        const LuaUserdataRecord* pRecord = m_pVm ? m_pVm->find(uId) : nullptr;
        if (!pRecord)
            QM_LOG_ERROR("Lua userdata type '", uId,
                         "' is not known to the LuaVM that tires to serialize it.");
        else if (m_bForOtherVm && pRecord->bLocalOnly)
            QM_LOG_ERROR("Lua userdata type '", pRecord->name,
                         "' is not known to the LuaVM that will deserialize it.");
        else if (!pRecord->serialize)
            QM_LOG_ERROR("Lua userdata type '", pRecord->name,
                         "' does not have a serialize function and can't be serialized.");
        else
        {
            m_out.userdata(static_cast<LuaUserdataType>(uId));
            return pRecord->serialize(lua_touserdata(m_pState, iIndex), m_out.stream());
        }
        m_out.nil();
    }

    /// False, with a line in the log, when that many bits more pass the limit.
    bool fits(uint64_t uBits)
    {
        if (uint64_t{m_out.stream().bitsUsed() - m_uStart} + uBits <= uint64_t{lua::s_uMaxBytes} * 8)
            return true;
        QM_LOG_ERROR("A Lua value that takes more than ", lua::s_uMaxBytes, " bytes can't be stored.");
        return false;
    }

    lua_State* m_pState;
    LuaBlobWriter m_out;
    uint32_t m_uStart;
    LuaVm* m_pVm;
    bool m_bForOtherVm;
};

class Reader
{
public:
    Reader(lua_State* pState, BitStream& stream)
        : m_pState(pState),
          m_stream(stream),
          m_in(stream),
          m_pVm(LuaVm::of(pState))
    {
    }

    bool run()
    {
        while (!m_bStopped && m_stream.bitsLeft() >= 8)
        {
            if (!lua_checkstack(m_pState, s_iSlotsPerLevel))
            {
                QM_LOG_ERROR("Too many stored Lua values for the stack of a Lua state.");
                return false;
            }
            value(0, 0);
        }
        return !m_bFailed;
    }

private:
    /// Pushes one value. The reserved bits are the least that the items and pairs still to come need.
    void value(uint32_t uDepth, uint64_t uReserved)
    {
        const LuaSaveDataType eType = m_in.takeType();
        switch (eType)
        {
        case LuaSaveDataType::Nil:
            lua_pushnil(m_pState);
            break;
        case LuaSaveDataType::Boolean:
            lua_pushboolean(m_pState, m_in.booleanBody());
            break;
        case LuaSaveDataType::Number:
            lua_pushnumber(m_pState, m_in.numberBody());
            break;
        case LuaSaveDataType::String:
        {
            const std::string_view sText = m_in.stringBody();
            lua_pushlstring(m_pState, sText.data(), std::min(sText.find('\0'), sText.size()));
            break;
        }
        case LuaSaveDataType::Table:
            return table(uDepth + 1, uReserved);
        case LuaSaveDataType::Int32:
            integer<int32_t>();
            break;
        case LuaSaveDataType::Int16:
            integer<int16_t>();
            break;
        case LuaSaveDataType::Int8:
            integer<int8_t>();
            break;
        case LuaSaveDataType::Json:
            json();
            break;
        case LuaSaveDataType::Userdata:
            userdata();
            break;
        case LuaSaveDataType::WeakRef:
            weakReference();
            break;
        default:
            lua_pushnil(m_pState);
            if (m_in.isCut())
                break;
            QM_ASSERT_TEXT(false, "false");
            QM_LOG_ERROR("Unknown lua data type ", static_cast<uint32_t>(eType));
            stop(); // what follows has no known place
            break;
        }
        if (m_in.isCut())
            stop();
    }

    template <class T>
    void integer()
    {
        uint64_t uValue = 0;
        if (!m_stream.readWord(uValue, sizeof(T) * 8))
            stop();
        lua_pushnumber(m_pState, static_cast<T>(uValue));
    }

    void table(uint32_t uDepth, uint64_t uReserved)
    {
        if (uDepth > lua::s_uMaxDepth || !lua_checkstack(m_pState, s_iSlotsPerLevel))
        {
            QM_LOG_ERROR("A stored Lua table nests more than ", lua::s_uMaxDepth, " levels.");
            lua_pushnil(m_pState);
            return stop();
        }
        const LuaTableHeader header = m_in.tableBody();
        const uint64_t uEntryBits = header.bArray ? lua::s_uMinItemBits : lua::s_uMinPairBits;
        if (m_in.isCut() || header.uCount * uEntryBits + uReserved > m_stream.bitsLeft() ||
            (header.bArray && int64_t{header.iStartIndex} + header.uCount > int64_t{INT32_MAX} + 1))
        {
            lua_newtable(m_pState);
            return stop();
        }
        const auto iCount = static_cast<int>(header.uCount);
        const bool bFromOne = header.bArray && (header.iStartIndex == 0 || header.iStartIndex == 1);
        lua_createtable(m_pState, bFromOne ? iCount + 1 : 0, bFromOne ? 0 : iCount);
        const int iTable = lua_gettop(m_pState);
        for (int64_t i = 0; i < iCount && !m_bStopped; ++i)
        {
            const uint64_t uLeft = uReserved + static_cast<uint64_t>(iCount - 1 - i) * uEntryBits;
            if (header.bArray)
            {
                value(uDepth, uLeft);
                lua_rawseti(m_pState, iTable, static_cast<int>(header.iStartIndex + i));
                continue;
            }
            value(uDepth, uLeft + lua::s_uMinItemBits);
            if (m_bStopped)
            {
                lua_pop(m_pState, 1);
                break;
            }
            value(uDepth, uLeft);
            const double fKey = lua_type(m_pState, -2) == LUA_TNUMBER ? lua_tonumber(m_pState, -2) : 0.0;
            if (!lua_isnil(m_pState, -2) && fKey == fKey)
                lua_rawset(m_pState, iTable);
            else
            {
                QM_LOG_ERROR("A stored Lua table has a key that no table can have.");
                lua_pop(m_pState, 2);
                m_bFailed = true;
            }
        }
    }

    void json()
    {
        const std::string_view sText = m_in.stringBody();
        if (sText.empty())
            return lua_pushnil(m_pState);
        std::string sError;
        if (const auto jValue = parseJson(sText, sError))
            return jsonValue(*jValue);
        QM_LOG_ERROR("Stored JSON can't be read: ", sError);
        lua_pushnil(m_pState);
        m_bFailed = true;
    }

    void jsonValue(const Json::Value& jValue)
    {
        if (!lua_checkstack(m_pState, s_iSlotsPerLevel))
        {
            lua_pushnil(m_pState); // into a slot of the level above
            m_bFailed = true;
            return;
        }
        if (jValue.isBool())
            lua_pushboolean(m_pState, jValue.asBool());
        else if (jValue.isNumeric())
            lua_pushnumber(m_pState, jValue.asDouble());
        else if (const char* pBegin = nullptr, *pEnd = nullptr; jValue.getString(&pBegin, &pEnd))
            lua_pushlstring(m_pState, pBegin, static_cast<size_t>(pEnd - pBegin));
        else if (jValue.isArray())
        {
            lua_createtable(m_pState, static_cast<int>(jValue.size()), 0);
            for (Json::ArrayIndex i = 0; i < jValue.size(); ++i)
            {
                jsonValue(jValue[i]);
                lua_rawseti(m_pState, -2, static_cast<int>(i) + 1);
            }
        }
        else if (jValue.isObject())
        {
            lua_createtable(m_pState, 0, static_cast<int>(jValue.size()));
            for (auto iterMember = jValue.begin(); iterMember != jValue.end(); ++iterMember)
            {
                const std::string sKey = iterMember.name();
                lua_pushlstring(m_pState, sKey.data(), sKey.size());
                jsonValue(*iterMember);
                lua_rawset(m_pState, -3);
            }
        }
        else
            lua_pushnil(m_pState);
    }

    void userdata()
    {
        uint32_t uId = 0;
        const bool bId = m_stream.read(uId);
        const LuaUserdataRecord* pRecord = m_pVm ? m_pVm->find(uId) : nullptr;
        if (bId && !pRecord)
            QM_LOG_ERROR("Lua userdata type '", uId,
                         "' is not known to the LuaVM that tires to deserialized it.");
        else if (bId && !pRecord->deserialize)
            QM_LOG_ERROR("Lua userdata type '", pRecord->name,
                         "' does not have a deserialize function and can't be deserialized.");
        else if (bId && pRecord->deserialize(m_pState, m_stream, pRecord->name.c_str()))
            return;
        lua_pushnil(m_pState);
        stop(); // the payload's length is not known
    }

    /// This program keeps no table of weak references, so all of them have ended.
    void weakReference()
    {
        struct
        {
            int32_t iRef = 0;
        } weakScriptRef;
        uint8_t uCheck = 0;
        if (!m_stream.read(weakScriptRef.iRef) || !m_stream.read(uCheck))
            stop();
        else
            QM_ASSERT(weakScriptRef.iRef != (-2));
        lua_pushnil(m_pState);
    }

    void stop()
    {
        m_bFailed = true;
        m_bStopped = true;
    }

    lua_State* m_pState;
    BitStream& m_stream;
    LuaBlobReader m_in;
    LuaVm* m_pVm;
    bool m_bFailed = false;
    bool m_bStopped = false;
};

} // namespace

bool LuaObjectSerializer::Serialize(lua_State* pState, BitStream& stream, int iStackIndex, bool bForOtherVm)
{
    const int iTop = lua_gettop(pState);
    const uint32_t uBits = stream.bitsUsed();
    const int iIndex =
        iStackIndex < 0 && iStackIndex > LUA_REGISTRYINDEX ? iTop + 1 + iStackIndex : iStackIndex;
    const bool bDone =
        lua_checkstack(pState, s_iSlotsPerLevel) && Writer(pState, stream, bForOtherVm).run(iIndex);
    if (!bDone)
        stream.truncate(uBits);
    lua_settop(pState, iTop);
    return bDone;
}

bool LuaObjectSerializer::Deserialize(lua_State* pState, BitStream& stream)
{
    if (stream.bitsLeft() / 8 > lua::s_uMaxBytes)
    {
        QM_LOG_ERROR("Stored Lua values of more than ", lua::s_uMaxBytes, " bytes can't be read.");
        return false;
    }
    return readLuaHeader(stream) && Reader(pState, stream).run();
}
