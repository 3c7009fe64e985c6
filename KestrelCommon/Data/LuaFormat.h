#pragma once // The stored form of Lua values: codes, ids and limits.

#include <cstdint>

/// The first byte of every stored value.
enum class LuaSaveDataType : uint8_t
{
    Nil = 1,
    Boolean = 2, ///< one bit
    Number = 3,  ///< 32-bit float
    String = 4,  ///< 32-bit length, alignment, bytes
    Table = 5,   ///< 32-bit count, array bit, 32-bit start index of an array, entries
    Int32 = 6,
    Int16 = 7,
    Int8 = 8,
    Json = 9,       ///< as String; the text of a JSON value
    Userdata = 100, ///< 32-bit LuaUserdataType, then what the type writes
    WeakRef = 101,  ///< 32-bit reference, check byte; never written
};

enum class LuaUserdataType : uint32_t
{
    Uuid = 10001,
    Vec3 = 10003,
    Quat = 10004,
    Color = 10005,
    LoadCellHandle = 10007,
    Shape = 10021,
    Body = 10022,
    Interactable = 10023,
    Container = 10024,
    Harvestable = 10025,
    Network = 10026,
    World = 10027,
    Unit = 10028,
    Storage = 10029,
    Player = 10030,
    Character = 10031,
    Joint = 10032,
    AiState = 10033,
    Lift = 10038,
    ScriptableObject = 10039,
    VoxelTerrain = 10042,
};

namespace lua
{

constexpr uint32_t s_uVersion = 1;
constexpr uint32_t s_uMagicBits = 24;
constexpr uint32_t s_uMagic = 0x4C5541; ///< 'L', 'U', 'A'
/// Tables within tables; what nests deeper is taken for a cycle.
constexpr uint32_t s_uMaxDepth = 200;
/// Bytes of one stored sequence, header included, written or read.
constexpr uint32_t s_uMaxBytes = 16u << 20;
/// The least bits that an item of an array and a pair of key and value take.
constexpr uint32_t s_uMinItemBits = 8;
constexpr uint32_t s_uMinPairBits = 16;

} // namespace lua
