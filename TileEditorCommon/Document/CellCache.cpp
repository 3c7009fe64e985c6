#include "TileEditorCommon/Document/CellCache.h"

#include "KestrelCommon/Core/Hash.h"

#include <new>

namespace tilebuilder
{

namespace
{

void keep(CachedSection& section, std::span<const std::byte> spanBytes)
{
    // A section that is renewed is often as large as it was.
    if (!section.pBytes || section.uCompressedSize != spanBytes.size())
    {
        auto* pMemory = static_cast<std::byte*>(std::malloc(std::max<size_t>(spanBytes.size(), 1)));
        if (!pMemory)
            throw std::bad_alloc();
        section.pBytes.reset(pMemory);
    }
    if (!spanBytes.empty())
        std::memcpy(section.pBytes.get(), spanBytes.data(), spanBytes.size());
    section.uCompressedSize = static_cast<uint32_t>(spanBytes.size());
}

} // namespace

size_t CellCache::slot(const tile::SectionGroupInfo& group, uint32_t uElement)
{
    size_t uSlot = uElement;
    for (const tile::SectionGroupInfo& earlier : tile::sectionGroups())
    {
        if (earlier.eGroup == group.eGroup)
            break;
        uSlot += earlier.uElements;
    }
    return uSlot;
}

void CellCache::resize(size_t uCells)
{
    const size_t uWanted = uCells * s_uSlots * 2;
    if (m_vecSections.size() == uWanted)
        return;
    m_vecSections.clear();
    m_vecSections.resize(uWanted);
}

size_t CellCache::bytesUsed() const
{
    size_t uBytes = 0;
    for (const CachedSection& section : m_vecSections)
        uBytes += section.uCompressedSize;
    return uBytes;
}

void CellCache::refresh(CachedSection& section, uint64_t uRevision, Lz4Quality eQuality,
                        const Serialise& fnSerialise)
{
    thread_local ByteStream s_raw(0x10000);
    thread_local ResizeableBuffer s_compressed(0x10000);
    s_raw.setPosition(0);
    const uint32_t uCount = fnSerialise(s_raw);
    if (eQuality == Lz4Quality::Final)
    {
        const uint64_t uHash = xxh3(s_raw.bytes());
        if (section.pBytes && section.uRawHash == uHash && section.uSize == s_raw.size() &&
            section.uCount == uCount)
        {
            section.uRevision = uRevision;
            return;
        }
        section.uRawHash = uHash;
    }
    section.uCount = uCount;
    section.uSize = s_raw.size();
    keep(section, uCount ? lz4Compress(s_raw.bytes(), eQuality, s_compressed) : std::span<const std::byte>{});
    section.uRevision = uRevision;
}

void CellCache::adopt(CachedSection& section, uint64_t uRevision, const tile::Section& described,
                      std::span<const std::byte> spanBytes)
{
    keep(section, spanBytes);
    section.uCount = described.uCount;
    section.uSize = described.uSize;
    section.uRevision = uRevision;
    section.uRawHash = 0;
}

} // namespace tilebuilder
