#pragma once // A tree of typed values that isn't fixed at compile time.

#include "KestrelCommon/Core/Uuid.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace DynamicData
{

class Array;
class Container;
class Object;

/// XXH3 of a key's or type name's text.
using KeyHash = uint64_t;
/// A place in a tree: a key's hash, hashed with the id of the place above as seed. All elements of an
/// array, and all entries of a map, share a place.
using PlaceId = uint64_t;

constexpr PlaceId s_uRootId = 1;         ///< the root of every tree
constexpr PlaceId s_uTemplateMetaId = 2; ///< a template's own meta data
constexpr KeyHash s_uElementKey = 3;     ///< stands for every element and entry

[[nodiscard]] KeyHash keyHash(std::string_view sKey);
[[nodiscard]] PlaceId placeId(KeyHash uKey, PlaceId uParent);

enum class Tag : uint8_t
{
    Null = 0,
    Object = 1,
    Array = 2,
    String = 3,
    ShortString = 4,
    Float = 5,
    Double = 6,
    Uint = 7,
    Int = 8,
    Bool = 9,
    Uint64 = 10,
    Uuid = 11,
    Vec2 = 12,
    Vec3 = 13,
    Vec4 = 14,
    Int64 = 15, ///< a JSON integer that no other tag holds; read and written without a template alone
};

/// One value: a tag and 24 bytes in all. Owns its container or its long text. Moves; copies are made
/// by clone(). Reading another kind than the tag says is an assertion and gives the default.
///
/// Threads: as a plain variable.
class Value
{
public:
    static constexpr size_t s_uShortLength = 22;

    Value() = default;
    explicit Value(std::unique_ptr<Object> pObject);
    explicit Value(std::unique_ptr<Array> pArray);
    Value(Value&& other) noexcept
        : m_arrBytes(other.m_arrBytes),
          m_uLength(other.m_uLength),
          m_eTag(other.m_eTag)
    {
        other.m_eTag = Tag::Null;
    }
    Value& operator=(Value&& other) noexcept;
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value()
    {
        if (ownsMemory())
            destroy();
    }

    [[nodiscard]] Tag tag() const { return m_eTag; }
    [[nodiscard]] bool isNull() const { return m_eTag == Tag::Null; }
    [[nodiscard]] bool isText() const { return m_eTag == Tag::String || m_eTag == Tag::ShortString; }

    /// Null for other kinds.
    [[nodiscard]] Object* object();
    [[nodiscard]] const Object* object() const;
    [[nodiscard]] Array* array();
    [[nodiscard]] const Array* array() const;
    [[nodiscard]] Container* container();
    [[nodiscard]] const Container* container() const;

    /// Valid until the value changes or moves.
    [[nodiscard]] std::string_view text() const;
    [[nodiscard]] float asFloat() const { return get<float>(Tag::Float); }
    [[nodiscard]] double asDouble() const { return get<double>(Tag::Double); }
    [[nodiscard]] uint32_t asUint() const { return get<uint32_t>(Tag::Uint); }
    [[nodiscard]] int32_t asInt() const { return get<int32_t>(Tag::Int); }
    [[nodiscard]] bool asBool() const { return get<bool>(Tag::Bool); }
    [[nodiscard]] uint64_t asUint64() const { return get<uint64_t>(Tag::Uint64); }
    [[nodiscard]] int64_t asInt64() const { return get<int64_t>(Tag::Int64); }
    [[nodiscard]] Uuid asUuid() const { return get<Uuid>(Tag::Uuid); }
    [[nodiscard]] std::array<float, 2> asVec2() const { return get<std::array<float, 2>>(Tag::Vec2); }
    [[nodiscard]] std::array<float, 3> asVec3() const { return get<std::array<float, 3>>(Tag::Vec3); }
    [[nodiscard]] std::array<float, 4> asVec4() const { return get<std::array<float, 4>>(Tag::Vec4); }

    void setText(std::string_view sText);
    void set(float fValue) { put(Tag::Float, fValue); }
    void set(double fValue) { put(Tag::Double, fValue); }
    void set(uint32_t uValue) { put(Tag::Uint, uValue); }
    void set(int32_t iValue) { put(Tag::Int, iValue); }
    void set(bool bValue) { put(Tag::Bool, bValue); }
    void set(uint64_t uValue) { put(Tag::Uint64, uValue); }
    void set(int64_t iValue) { put(Tag::Int64, iValue); }
    void set(const Uuid& uuid) { put(Tag::Uuid, uuid); }
    void set(const std::array<float, 2>& vec) { put(Tag::Vec2, vec); }
    void set(const std::array<float, 3>& vec) { put(Tag::Vec3, vec); }
    void set(const std::array<float, 4>& vec) { put(Tag::Vec4, vec); }

    /// Frees what it owns; the value is null.
    void destroy();
    void reset() { destroy(); }
    [[nodiscard]] Value clone() const;
    /// Over tags and payloads of the whole tree; equal trees have equal hashes.
    [[nodiscard]] uint64_t hash(uint64_t uSeed) const;

private:
    static constexpr size_t s_uPointerBytes = sizeof(void*);

    [[nodiscard]] bool ownsMemory() const { return m_eTag >= Tag::Object && m_eTag <= Tag::String; }
    [[nodiscard]] bool isTag(Tag eTag) const;
    template <class T>
    [[nodiscard]] T get(Tag eTag) const
    {
        T value{};
        if (isTag(eTag))
            std::memcpy(&value, m_arrBytes.data(), sizeof(T));
        return value;
    }
    template <class T>
    void put(Tag eTag, const T& value)
    {
        static_assert(sizeof(T) <= s_uShortLength);
        destroy();
        std::memcpy(m_arrBytes.data(), &value, sizeof(T));
        m_eTag = eTag;
    }
    template <class T>
    [[nodiscard]] T* pointer() const
    {
        T* pResult;
        std::memcpy(&pResult, m_arrBytes.data(), sizeof(pResult));
        return pResult;
    }
    [[nodiscard]] size_t payloadBytes() const;

    alignas(8) std::array<std::byte, s_uShortLength> m_arrBytes;
    uint8_t m_uLength = 0; ///< of a short text
    Tag m_eTag = Tag::Null;
};

/// What objects and arrays share: two ids and children by index.
class Container
{
public:
    virtual ~Container() = default;

    [[nodiscard]] virtual bool isObject() const = 0;
    [[nodiscard]] virtual bool isArray() const = 0;
    [[nodiscard]] virtual bool isMap() const = 0;
    [[nodiscard]] virtual uint64_t hash(uint64_t uSeed) const = 0;
    /// A shared null value past the end.
    [[nodiscard]] Value& at(size_t uIndex);
    [[nodiscard]] const Value& at(size_t uIndex) const;
    /// Null past the end.
    [[nodiscard]] Value* tryAt(size_t uIndex);
    [[nodiscard]] const Value* tryAt(size_t uIndex) const;
    /// The rest keep their order.
    virtual void removeAt(size_t uIndex) = 0;
    [[nodiscard]] size_t size() const { return m_vecValues.size(); }
    [[nodiscard]] bool empty() const { return m_vecValues.empty(); }
    /// The place of a child, by which a template knows it.
    [[nodiscard]] virtual PlaceId childId(size_t uIndex) const = 0;
    /// Tells a child from its siblings, also in arrays and maps.
    [[nodiscard]] virtual PlaceId keyId(size_t uIndex) const = 0;

    [[nodiscard]] PlaceId parentId() const { return m_uParentId; }
    [[nodiscard]] PlaceId ownId() const { return m_uOwnId; }

protected:
    Container(PlaceId uParentId, PlaceId uOwnId) : m_uParentId(uParentId), m_uOwnId(uOwnId) {}
    void cloneValues(const Container& other);

    PlaceId m_uParentId;
    PlaceId m_uOwnId;
    std::vector<Value> m_vecValues;
};

/// Keys and values in the order of insertion; a map when its keys are free.
class Object : public Container
{
public:
    Object(PlaceId uParentId, PlaceId uOwnId, bool bMap = false) : Container(uParentId, uOwnId), m_bMap(bMap)
    {
    }

    [[nodiscard]] bool isObject() const override { return true; }
    [[nodiscard]] bool isArray() const override { return false; }
    [[nodiscard]] bool isMap() const override { return m_bMap; }
    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
    void removeAt(size_t uIndex) override;
    [[nodiscard]] PlaceId childId(size_t uIndex) const override;
    [[nodiscard]] PlaceId keyId(size_t uIndex) const override;

    [[nodiscard]] KeyHash keyAt(size_t uIndex) const { return m_vecKeys[uIndex]; }
    /// Null when there is none.
    [[nodiscard]] Value* find(KeyHash uKey);
    [[nodiscard]] const Value* find(KeyHash uKey) const;
    [[nodiscard]] const Value* find(std::string_view sKey) const { return find(keyHash(sKey)); }
    [[nodiscard]] Value* find(std::string_view sKey) { return find(keyHash(sKey)); }
    /// Replaces the value of a key, or adds both at the end.
    Value& set(KeyHash uKey, Value value);
    /// Adds a key that isn't there.
    Value& append(KeyHash uKey, Value value);
    void reserve(size_t uCount);
    [[nodiscard]] std::unique_ptr<Object> cloneObject() const;

private:
    std::vector<KeyHash> m_vecKeys;
    bool m_bMap;
};

class Array : public Container
{
public:
    Array(PlaceId uParentId, PlaceId uOwnId) : Container(uParentId, uOwnId) {}

    [[nodiscard]] bool isObject() const override { return false; }
    [[nodiscard]] bool isArray() const override { return true; }
    [[nodiscard]] bool isMap() const override { return false; }
    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
    void removeAt(size_t uIndex) override;
    [[nodiscard]] PlaceId childId(size_t uIndex) const override;
    [[nodiscard]] PlaceId keyId(size_t uIndex) const override;

    Value& append(Value value);
    /// Before an element; at the end when the index is past it.
    Value& insert(size_t uIndex, Value value);
    void reserve(size_t uCount) { m_vecValues.reserve(uCount); }
    [[nodiscard]] std::unique_ptr<Array> cloneArray() const;
};

} // namespace DynamicData
