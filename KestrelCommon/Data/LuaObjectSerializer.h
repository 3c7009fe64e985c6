#pragma once // Values on the stack of a Lua state, stored and brought back.

class BitStream;
struct lua_State;

/// The form is that of LuaBlob.h. A state without a LuaVm stores and reads no userdata.
///
/// Threads: those of the state.
namespace LuaObjectSerializer
{

/// Aligns the stream and writes the header and the value at a stack index. Numbers take the smallest
/// form that holds them; what can't be stored becomes Nil. With bForOtherVm so does userdata that
/// only this VM understands.
///
/// False, with a line in the log: tables nest more than 200 deep or the output passes 16 MiB, as a
/// table that holds itself makes it. The stream is then as it was, and so is the stack in any case.
[[nodiscard]] bool Serialize(lua_State* pState, BitStream& stream, int iStackIndex, bool bForOtherVm);

/// Aligns the stream, checks the header and pushes every value up to the end of the stream.
///
/// False: a bad header (the stack is as it was), a value that can't be read (nil in its place), nesting
/// or size beyond the limits, or a value that the end cuts off (zero, empty, or the table's items so
/// far; nothing is read behind it).
[[nodiscard]] bool Deserialize(lua_State* pState, BitStream& stream);

} // namespace LuaObjectSerializer
