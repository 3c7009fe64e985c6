#pragma once // Every record kind in both forms and all versions, with bytes that are laid out by hand.

#include "KestrelCommon/Tile/Records/RecordList.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

using Bytes = std::vector<std::byte>;

/// Lays bytes out, least significant first as cells do or most significant first as prefabs do.
class Layout
{
public:
    explicit Layout(bool bBigEndian) : m_bBigEndian(bBigEndian) {}

    template <class T>
    Layout& value(T value)
    {
        std::array<uint8_t, sizeof(T)> arrBytes;
        std::memcpy(arrBytes.data(), &value, sizeof(T));
        if (m_bBigEndian)
            std::reverse(arrBytes.begin(), arrBytes.end());
        for (const uint8_t uByte : arrBytes)
            raw(uByte);
        return *this;
    }
    Layout& raw(uint8_t uByte)
    {
        for (int i = 7; i >= 0; --i)
            bit(uByte >> i & 1);
        return *this;
    }
    Layout& bit(bool bValue)
    {
        if (m_uBits % 8 == 0)
            m_vecBytes.push_back(std::byte{0});
        if (bValue)
            m_vecBytes.back() |= std::byte{static_cast<uint8_t>(128 >> m_uBits % 8)};
        ++m_uBits;
        return *this;
    }
    Layout& align()
    {
        m_uBits = (m_uBits + 7) / 8 * 8;
        return *this;
    }
    Layout& floats(std::initializer_list<float> listValues)
    {
        for (const float fValue : listValues)
            value(fValue);
        return *this;
    }
    Layout& text(std::string_view sText)
    {
        align();
        for (const char c : sText)
            raw(static_cast<uint8_t>(c));
        return *this;
    }
    Layout& text8(std::string_view sText) { return value(static_cast<uint8_t>(sText.size())).text(sText); }
    Layout& text32(std::string_view sText) { return value(static_cast<uint32_t>(sText.size())).text(sText); }
    Layout& uuid(uint8_t uFirst)
    {
        align();
        for (uint8_t i = 0; i < 16; ++i)
            raw(static_cast<uint8_t>(uFirst + i));
        return *this;
    }
    Layout& tags(std::initializer_list<std::string_view> listTags)
    {
        value(static_cast<uint8_t>(listTags.size()));
        for (const std::string_view sTag : listTags)
            text8(sTag);
        return *this;
    }

    [[nodiscard]] bool isBig() const { return m_bBigEndian; }
    [[nodiscard]] uint32_t bits() const { return m_uBits; }
    [[nodiscard]] const Bytes& bytes() const { return m_vecBytes; }

private:
    bool m_bBigEndian;
    uint32_t m_uBits = 0;
    Bytes m_vecBytes;
};

/// A list as it stands in a file, with its exact length.
struct Packed
{
    Bytes vecBytes;
    uint32_t uBits = 0;

    Packed() = default;
    // NOLINTNEXTLINE(google-explicit-constructor)
    Packed(const Layout& layout) : vecBytes(layout.bytes()), uBits(layout.bits()) {}
    explicit Packed(std::span<const std::byte> spanBytes)
        : vecBytes(spanBytes.begin(), spanBytes.end()),
          uBits(static_cast<uint32_t>(spanBytes.size() * 8))
    {
    }
    bool operator==(const Packed&) const = default;
};

/// A kind in one of its forms.
struct Codec
{
    std::string sName;
    bool bPrefab = false;
    uint32_t uFirstVersion = 1;

    /// The sample list as a version lays it out, with what another version could hold of it. Its
    /// records stand in the order of their bytes.
    std::function<Packed(uint32_t uLayout, uint32_t uContent)> fnSample;

    /// Reads a list and writes it again; nullopt when it is refused. Aborts when a refusal
    /// changed something.
    std::function<std::optional<Packed>(const Packed&, uint32_t uVersion, uint32_t uCount)> fnRewrite;

    /// The same verdict without reading; cells only.
    std::function<bool(const Packed&, uint32_t uVersion, uint32_t uCount)> fnCheck;

    [[nodiscard]] uint32_t currentVersion() const
    {
        return bPrefab ? uint32_t{tile::PrefabVersionCurrent} : uint32_t{tile::VersionCurrent};
    }
};

/// Records in every sample.
constexpr uint32_t SampleCount = 2;

[[nodiscard]] const std::vector<Codec>& codecs();
[[nodiscard]] const Codec& codec(std::string_view sName);
