#pragma once // Stored Lua values written and read directly, without a Lua state.

#include "KestrelCommon/Data/LuaFormat.h"
#include "KestrelCommon/Io/BitStream.h"

#include <array>
#include <bit>
#include <string_view>

/// Writes a sequence of values into a stream, each with its type code.
///
/// The caller keeps the shape: a table is its header and then as many items, or pairs of key and
/// value, as the header says. Borrows the stream.
class LuaBlobWriter
{
public:
    explicit LuaBlobWriter(BitStream& stream) : m_stream(stream) {}

    /// Aligns and writes magic and version.
    void header();

    void nil() { m_stream.writeWord(code(LuaSaveDataType::Nil), 8); }
    void boolean(bool bValue) { m_stream.writeWord(code(LuaSaveDataType::Boolean) << 1 | bValue, 9); }
    void int8(int8_t iValue) { field<8>(LuaSaveDataType::Int8, static_cast<uint8_t>(iValue)); }
    void int16(int16_t iValue) { field<16>(LuaSaveDataType::Int16, static_cast<uint16_t>(iValue)); }
    void int32(int32_t iValue) { field<32>(LuaSaveDataType::Int32, static_cast<uint32_t>(iValue)); }
    /// Always a Number, also for a whole value.
    void number(float fValue) { field<32>(LuaSaveDataType::Number, std::bit_cast<uint32_t>(fValue)); }
    void string(std::string_view sText) { text(LuaSaveDataType::String, sText); }
    void json(std::string_view sText) { text(LuaSaveDataType::Json, sText); }

    void table(uint32_t uPairs)
    {
        m_stream.writeWord(code(LuaSaveDataType::Table) << 33 | uint64_t{uPairs} << 1, 41);
    }
    void array(uint32_t uItems, int32_t iStartIndex = 1)
    {
        m_stream.writeWord(code(LuaSaveDataType::Table) << 33 | uint64_t{uItems} << 1 | 1, 41);
        m_stream.writeWord(static_cast<uint32_t>(iStartIndex), 32);
    }

    /// The payload of the userdata follows.
    void userdata(LuaUserdataType eType)
    {
        field<32>(LuaSaveDataType::Userdata, static_cast<uint32_t>(eType));
    }
    void color(const std::array<float, 4>& color);

    [[nodiscard]] BitStream& stream() { return m_stream; }

private:
    static constexpr uint64_t code(LuaSaveDataType eType) { return static_cast<uint64_t>(eType); }
    template <uint32_t Bits>
    void field(LuaSaveDataType eType, uint32_t uValue)
    {
        m_stream.writeWord(code(eType) << Bits | uValue, 8 + Bits);
    }
    void text(LuaSaveDataType eType, std::string_view sText);

    BitStream& m_stream;
};

/// What the header of a stored table says.
struct LuaTableHeader
{
    uint32_t uCount = 0;
    bool bArray = false;
    int32_t iStartIndex = 0; ///< of an array
};

/// Reads values one by one, where the caller knows what must come next.
///
/// Errors: a type code that isn't the one asked for is an assertion, and the read goes on. What
///     lies behind the end reads as zero or empty. A count or a length that what is left can't hold
///     reads as 0 and ends the stream: nothing is allocated for it. isCut() tells of both.
/// Texts are views into the stream's memory.
class LuaBlobReader
{
public:
    explicit LuaBlobReader(BitStream& stream) : m_stream(stream) {}

    /// Aligns and checks magic and version. False, with a line in the log, leaves the position.
    [[nodiscard]] bool header();

    [[nodiscard]] LuaTableHeader table();
    [[nodiscard]] std::string_view string();
    [[nodiscard]] bool boolean();
    [[nodiscard]] int8_t int8();
    [[nodiscard]] int16_t int16();
    [[nodiscard]] int32_t int32();
    [[nodiscard]] float number();

    /// The next type code, which is not taken; 0 at the end.
    [[nodiscard]] LuaSaveDataType peek();
    [[nodiscard]] LuaSaveDataType takeType();

    // Payloads, when the type code was taken

    [[nodiscard]] LuaTableHeader tableBody();
    [[nodiscard]] std::string_view stringBody();
    [[nodiscard]] bool booleanBody();
    [[nodiscard]] float numberBody();
    [[nodiscard]] uint32_t uint32Body() { return static_cast<uint32_t>(take(32)); }
    [[nodiscard]] std::array<float, 4> colorBody();

    /// Passes over a value whose kind is of no use. A userdata of unknown length ends the stream.
    void skip();

    /// A read passed the end, or the end was set by a count or length that can't be.
    [[nodiscard]] bool isCut() const { return m_bCut; }
    [[nodiscard]] BitStream& stream() { return m_stream; }

private:
    uint64_t take(uint32_t uBits)
    {
        uint64_t uValue = 0;
        if (m_bCut || !m_stream.readWord(uValue, uBits))
            m_bCut = true;
        return uValue;
    }
    void skipBody(LuaSaveDataType eType, uint32_t uDepth);

    BitStream& m_stream;
    bool m_bCut = false;
};

/// Aligns, reads and checks the start of a stored sequence; the messages are those of the serializer.
[[nodiscard]] bool readLuaHeader(BitStream& stream);

/// The payload bytes of a userdata type that stores any; 0 for the others.
[[nodiscard]] uint32_t luaUserdataBytes(LuaUserdataType eType);
