#include "KestrelCommon/Data/LuaBlob.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

void LuaBlobWriter::header()
{
    m_stream.alignWrite();
    m_stream.writeWord(lua::s_uMagic, lua::s_uMagicBits);
    m_stream.write(lua::s_uVersion);
}

void LuaBlobWriter::text(LuaSaveDataType eType, std::string_view sText)
{
    if (!QM_ASSERT(sText.size() <= lua::s_uMaxBytes))
        sText = {};
    field<32>(eType, static_cast<uint32_t>(sText.size()));
    m_stream.alignWrite();
    m_stream.writeBytes(sText.data(), static_cast<uint32_t>(sText.size()));
}

void LuaBlobWriter::color(const std::array<float, 4>& color)
{
    userdata(LuaUserdataType::Color);
    for (const float fPart : color)
        m_stream.write(fPart);
}

bool readLuaHeader(BitStream& stream)
{
    const uint32_t uBefore = stream.readOffset();
    stream.alignRead();
    uint64_t uMagic = 0;
    const bool bMagic = stream.readWord(uMagic, lua::s_uMagicBits) && uMagic == lua::s_uMagic;
    uint32_t uVersion = 0;
    if (!QM_ASSERT_TEXT(bMagic, "tag[i] == LUA_MAGIC_TAG[i]"))
        QM_LOG_ERROR("LuaObjectSerializer::Deserialize was given data that is not serlized Lua data.");
    else if (!stream.read(uVersion) || uVersion != lua::s_uVersion)
        QM_LOG_ERROR("LuaObjectSerializer::Deserialize was given data with version: ", uVersion,
                     " but the current version is: ", lua::s_uVersion);
    else
        return true;
    stream.rewind(uBefore);
    return false;
}

bool LuaBlobReader::header()
{
    return readLuaHeader(m_stream);
}

LuaSaveDataType LuaBlobReader::takeType()
{
    return static_cast<LuaSaveDataType>(take(8));
}

LuaSaveDataType LuaBlobReader::peek()
{
    uint64_t uType = 0;
    const uint32_t uBefore = m_stream.readOffset();
    if (!m_bCut && m_stream.readWord(uType, 8))
        m_stream.rewind(uBefore);
    return static_cast<LuaSaveDataType>(uType);
}

// Type code and payload are taken at once where the payload's length is known; at the very end, where
// the code may be all that is left, both count as missing.

bool LuaBlobReader::boolean()
{
    const uint64_t uBoth = take(9);
    const auto type = static_cast<LuaSaveDataType>(uBoth >> 1);
    QM_ASSERT(type == LuaSaveDataType::Boolean);
    return uBoth & 1;
}

int8_t LuaBlobReader::int8()
{
    const uint64_t uBoth = take(16);
    const auto type = static_cast<LuaSaveDataType>(uBoth >> 8);
    QM_ASSERT(type == LuaSaveDataType::Int8);
    return static_cast<int8_t>(uBoth);
}

int16_t LuaBlobReader::int16()
{
    const uint64_t uBoth = take(24);
    const auto type = static_cast<LuaSaveDataType>(uBoth >> 16);
    QM_ASSERT(type == LuaSaveDataType::Int16);
    return static_cast<int16_t>(uBoth);
}

int32_t LuaBlobReader::int32()
{
    const uint64_t uBoth = take(40);
    const auto type = static_cast<LuaSaveDataType>(uBoth >> 32);
    QM_ASSERT(type == LuaSaveDataType::Int32);
    return static_cast<int32_t>(uBoth);
}

float LuaBlobReader::number()
{
    const uint64_t uBoth = take(40);
    const auto type = static_cast<LuaSaveDataType>(uBoth >> 32);
    QM_ASSERT(type == LuaSaveDataType::Number);
    return std::bit_cast<float>(static_cast<uint32_t>(uBoth));
}

std::string_view LuaBlobReader::string()
{
    const LuaSaveDataType type = takeType();
    QM_ASSERT(type == LuaSaveDataType::String);
    return stringBody();
}

LuaTableHeader LuaBlobReader::table()
{
    const LuaSaveDataType type = takeType();
    QM_ASSERT(type == LuaSaveDataType::Table);
    return tableBody();
}

LuaTableHeader LuaBlobReader::tableBody()
{
    const uint64_t uBoth = take(33);
    LuaTableHeader header{static_cast<uint32_t>(uBoth >> 1), (uBoth & 1) != 0, 0};
    if (header.bArray)
        header.iStartIndex = static_cast<int32_t>(take(32));
    const uint64_t uEntryBits = header.bArray ? lua::s_uMinItemBits : lua::s_uMinPairBits;
    if (m_bCut || header.uCount * uEntryBits > m_stream.bitsLeft())
    {
        m_bCut = true;
        header.uCount = 0;
    }
    return header;
}

std::string_view LuaBlobReader::stringBody()
{
    const auto uLength = static_cast<uint32_t>(take(32));
    std::span<const std::byte> spanText;
    if (m_bCut || !m_stream.viewAlignedBytes(spanText, uLength))
    {
        m_bCut = true;
        return {};
    }
    return {reinterpret_cast<const char*>(spanText.data()), spanText.size()};
}

bool LuaBlobReader::booleanBody()
{
    return take(1) != 0;
}

float LuaBlobReader::numberBody()
{
    return std::bit_cast<float>(uint32Body());
}

std::array<float, 4> LuaBlobReader::colorBody()
{
    std::array<float, 4> color;
    for (float& fPart : color)
        fPart = numberBody();
    return color;
}

uint32_t luaUserdataBytes(LuaUserdataType eType)
{
    switch (eType)
    {
    case LuaUserdataType::Uuid:
    case LuaUserdataType::Quat:
    case LuaUserdataType::Color:
        return 16;
    case LuaUserdataType::Vec3:
        return 12;
    case LuaUserdataType::Shape:
    case LuaUserdataType::Body:
    case LuaUserdataType::Interactable:
    case LuaUserdataType::Container:
    case LuaUserdataType::Harvestable:
    case LuaUserdataType::World:
    case LuaUserdataType::Unit:
    case LuaUserdataType::Player:
    case LuaUserdataType::Character:
    case LuaUserdataType::Joint:
    case LuaUserdataType::Lift:
    case LuaUserdataType::ScriptableObject:
        return 4;
    default:
        return 0;
    }
}

void LuaBlobReader::skip()
{
    skipBody(takeType(), 0);
}

void LuaBlobReader::skipBody(LuaSaveDataType eType, uint32_t uDepth)
{
    switch (eType)
    {
    case LuaSaveDataType::Nil:
        break;
    case LuaSaveDataType::Boolean:
        take(1);
        break;
    case LuaSaveDataType::Number:
    case LuaSaveDataType::Int32:
        take(32);
        break;
    case LuaSaveDataType::Int16:
        take(16);
        break;
    case LuaSaveDataType::Int8:
        take(8);
        break;
    case LuaSaveDataType::String:
    case LuaSaveDataType::Json:
        static_cast<void>(stringBody());
        break;
    case LuaSaveDataType::WeakRef:
        take(40);
        break;
    case LuaSaveDataType::Userdata:
    {
        const uint32_t uBytes = luaUserdataBytes(static_cast<LuaUserdataType>(uint32Body()));
        m_bCut |= uBytes == 0;
        for (uint32_t i = 0; i < uBytes; i += 4)
            take(32);
        break;
    }
    case LuaSaveDataType::Table:
    {
        m_bCut |= uDepth >= lua::s_uMaxDepth;
        const LuaTableHeader header = tableBody();
        const uint64_t uValues = uint64_t{header.uCount} * (header.bArray ? 1 : 2);
        for (uint64_t i = 0; i < uValues && !m_bCut; ++i)
            skipBody(takeType(), uDepth + 1);
        break;
    }
    default:
        m_bCut = true;
        break;
    }
}
