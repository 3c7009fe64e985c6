#pragma once // The fields of records in prefab files: bit-packed, multi-byte values big-endian.

#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Io/BitStream.h"
#include "KestrelCommon/Tile/Records/TagList.h"
#include "KestrelCommon/Tile/Records/TransformBlock.h"

#include <string>
#include <string_view>
#include <vector>

namespace tile
{

/// Appends fields. Texts, ids and blobs begin at a byte boundary.
class PrefabFieldWriter
{
public:
    explicit PrefabFieldWriter(BitStream& stream) : m_stream(stream) {}

    void value(uint8_t uValue) { m_stream.write(uValue); }
    void value(uint32_t uValue) { m_stream.write(uValue); }
    void value(int32_t iValue) { m_stream.write(iValue); }
    void flag(bool bValue) { m_stream.writeBool(bValue); }
    /// The four bytes of a cell record, in their order there.
    void cellColor(uint32_t uRedLowest) { m_stream.writeBytes(&uRedLowest, sizeof(uRedLowest)); }
    void uuid(const Uuid& uuid) { aligned(uuid.bytes.data(), uuid.bytes.size()); }
    void transform(const Transform& transform);
    void place(const Transform& transform);
    void text8(std::string_view sText);
    void text32(std::string_view sText);
    void blob(std::span<const std::byte> spanBlob);
    void colors(const ColorMap& mapColors);
    void tags(const TagsView& tags);

private:
    void aligned(const void* pData, size_t uBytes)
    {
        m_stream.alignWrite();
        m_stream.writeBytes(pData, static_cast<uint32_t>(uBytes));
    }

    BitStream& m_stream;
};

/// Reads fields. One that the rest can't hold gives false.
class PrefabFieldReader
{
public:
    explicit PrefabFieldReader(BitStream& stream) : m_stream(stream) {}

    template <class T>
    [[nodiscard]] bool value(T& value)
    {
        return m_stream.read(value);
    }
    [[nodiscard]] bool flag(bool& bValue) { return m_stream.readBool(bValue); }
    [[nodiscard]] bool cellColor(uint32_t& uRedLowest)
    {
        return m_stream.readBytes(&uRedLowest, sizeof(uRedLowest));
    }
    [[nodiscard]] bool uuid(Uuid& uuid)
    {
        return m_stream.readAlignedBytes(uuid.bytes.data(), static_cast<uint32_t>(uuid.bytes.size()));
    }
    [[nodiscard]] bool transform(Transform& transform, TransformForm eForm = TransformForm::Full);
    [[nodiscard]] bool text8(std::string& sText);
    [[nodiscard]] bool text32(std::string& sText);
    [[nodiscard]] bool blob(std::vector<std::byte>& vecBlob);
    [[nodiscard]] bool colors(ColorMap& mapColors);
    [[nodiscard]] bool tags(TagSet& setTags);

private:
    template <class Length>
    bool text(std::string_view& sView);

    BitStream& m_stream;
};

} // namespace tile
