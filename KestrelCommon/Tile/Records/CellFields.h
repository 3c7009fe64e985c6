#pragma once // The fields of cell records, one by one: little-endian bytes without padding.

#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Io/ByteStream.h"
#include "KestrelCommon/Tile/Records/TagList.h"
#include "KestrelCommon/Tile/Records/TransformBlock.h"

#include <vector>

namespace tile
{

/// Where a record of a cell is written.
struct CellPlace
{
    glm::vec3 origin{0.0f}; ///< of the cell, subtracted from positions
    const TagSet* pInheritedTags = nullptr;
};

/// Appends the fields of one record. The room is made once, so that a field costs its copy; what
/// isn't used of it stays untouched and free.
class CellFieldWriter
{
public:
    /// No record may take more than that many bytes.
    CellFieldWriter(ByteStream& stream, size_t uMaxBytes)
        : m_stream(stream),
          m_pPlace(stream.extend(uMaxBytes))
    {
    }
    ~CellFieldWriter() { m_stream.setPosition(static_cast<uint32_t>(m_pPlace - m_stream.data())); }
    CellFieldWriter(const CellFieldWriter&) = delete;
    CellFieldWriter& operator=(const CellFieldWriter&) = delete;

    void bytes(const void* pData, size_t uBytes)
    {
        if (uBytes)
            std::memcpy(m_pPlace, pData, uBytes);
        m_pPlace += uBytes;
    }
    template <class T>
    requires std::is_trivially_copyable_v<T>
    void value(const T& value) { bytes(&value, sizeof(T)); }

    /// A negative zero is written as zero, which it is read as.
    void position(const glm::vec3& at, const glm::vec3& origin)
    {
        value(at - origin + glm::vec3(0.0f));
    }
    void transform(const Transform& transform, const glm::vec3& origin)
    {
        position(transform.position, origin);
        bytes(&transform.rotation, TransformSize - sizeof(glm::vec3));
    }
    void place(const Transform& transform, const glm::vec3& origin)
    {
        position(transform.position, origin);
        bytes(&transform.rotation, PlaceSize - sizeof(glm::vec3));
    }
    void cellColor(uint32_t uRedLowest) { value(uRedLowest); }
    void flag(bool bValue) { value(static_cast<uint8_t>(bValue)); }
    void text8(std::string_view sText)
    {
        value(static_cast<uint8_t>(sText.size()));
        bytes(sText.data(), sText.size());
    }
    void text32(std::string_view sText)
    {
        value(static_cast<uint32_t>(sText.size()));
        bytes(sText.data(), sText.size());
    }
    void blob(std::span<const std::byte> spanBlob)
    {
        value(static_cast<uint32_t>(spanBlob.size()));
        bytes(spanBlob.data(), spanBlob.size());
    }
    void colors(const ColorMap& mapColors);
    void tags(const TagsView& tags);

private:
    ByteStream& m_stream;
    std::byte* m_pPlace;
};

/// Reads the fields of records. A field that the rest can't hold gives false; what was filled
/// before is then of no use.
class CellFieldReader
{
public:
    /// Without bKeep lengths are checked but texts, lists and blobs are passed over, so that
    /// nothing is allocated.
    CellFieldReader(std::span<const std::byte> spanBytes, const glm::vec3& origin, bool bKeep)
        : m_pStart(spanBytes.data()),
          m_pPlace(m_pStart),
          m_pEnd(m_pStart + spanBytes.size()),
          m_origin(origin),
          m_bKeep(bKeep)
    {
    }

    [[nodiscard]] size_t position() const { return static_cast<size_t>(m_pPlace - m_pStart); }
    [[nodiscard]] size_t remaining() const { return static_cast<size_t>(m_pEnd - m_pPlace); }

    template <class T>
    requires std::is_trivially_copyable_v<T>
    [[nodiscard]] bool value(T& value) { return bytes(&value, sizeof(T)); }
    [[nodiscard]] bool uuid(Uuid& uuid) { return value(uuid); }
    [[nodiscard]] bool cellColor(uint32_t& uRedLowest) { return value(uRedLowest); }
    [[nodiscard]] bool flag(bool& bValue);
    [[nodiscard]] bool transform(Transform& transform, TransformForm eForm = TransformForm::Full);
    [[nodiscard]] bool text8(std::string& sText);
    [[nodiscard]] bool text32(std::string& sText);
    [[nodiscard]] bool blob(std::vector<std::byte>& vecBlob);
    [[nodiscard]] bool colors(ColorMap& mapColors);
    [[nodiscard]] bool tags(TagSet& setTags);

private:
    bool bytes(void* pOut, size_t uBytes)
    {
        if (uBytes > remaining())
            return false;
        std::memcpy(pOut, m_pPlace, uBytes);
        m_pPlace += uBytes;
        return true;
    }
    bool view(std::string_view& sView, size_t uBytes)
    {
        if (uBytes > remaining())
            return false;
        sView = {reinterpret_cast<const char*>(m_pPlace), uBytes};
        m_pPlace += uBytes;
        return true;
    }
    template <class Length>
    bool text(std::string_view& sView);

    const std::byte* m_pStart;
    const std::byte* m_pPlace;
    const std::byte* m_pEnd;
    glm::vec3 m_origin;
    bool m_bKeep;
};

} // namespace tile
