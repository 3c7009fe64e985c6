#include "KestrelCommon/Tile/Records/SortedRecords.h"

#include "KestrelCommon/Core/Assert.h"

#include <algorithm>

namespace tile
{

namespace
{

/// A record by the first of its bytes, so that most comparisons touch no other memory.
struct Key
{
    uint64_t uHead;
    uint32_t uStart;
    uint32_t uSize;
    uint32_t uOwner; ///< id, if any
};

uint64_t headOf(const std::byte* pRecord, uint32_t uSize)
{
    uint64_t uHead = 0;
    std::memcpy(&uHead, pRecord, std::min<size_t>(uSize, sizeof(uHead)));
    return __builtin_bswap64(uHead);
}

// Negative, 0 or positive, as the first comes before, with or after the second.
int compare(std::span<const std::byte> spanFirst, std::span<const std::byte> spanSecond)
{
    const int iOrder =
        std::memcmp(spanFirst.data(), spanSecond.data(), std::min(spanFirst.size(), spanSecond.size()));
    if (iOrder != 0 || spanFirst.size() == spanSecond.size())
        return iOrder;
    return spanFirst.size() < spanSecond.size() ? -1 : 1;
}

} // namespace

void SortedRecords::end()
{
    if (m_bSorted && !m_vecStarts.empty())
        m_bSorted = compare(m_stream.bytes().subspan(m_vecStarts.back(), m_uLast - m_vecStarts.back()),
                            m_stream.bytes().subspan(m_uLast)) <= 0;
    m_vecStarts.push_back(m_uLast);
    m_uLast = m_stream.size();
}

uint32_t SortedRecords::finish(std::span<uint32_t> spanIds)
{
    const auto uCount = static_cast<uint32_t>(m_vecStarts.size());
    if (m_bSorted || !QM_ASSERT(spanIds.empty() || spanIds.size() == uCount))
        return uCount;
    const auto spanRecords = m_stream.bytes().subspan(m_uStart);
    thread_local std::vector<std::byte> s_vecCopy;
    s_vecCopy.assign(spanRecords.begin(), spanRecords.end());
    const std::byte* const pCopy = s_vecCopy.data();

    std::vector<Key> vecKeys(uCount);
    for (uint32_t i = 0; i < uCount; ++i)
    {
        const uint32_t uStart = m_vecStarts[i] - m_uStart;
        const uint32_t uSize = (i + 1 < uCount ? m_vecStarts[i + 1] : m_uLast) - m_vecStarts[i];
        vecKeys[i] = {headOf(pCopy + uStart, uSize), uStart, uSize, spanIds.empty() ? 0 : spanIds[i]};
    }
    std::sort(vecKeys.begin(), vecKeys.end(),
              [pCopy](const Key& first, const Key& second)
              {
                  return first.uHead != second.uHead ? first.uHead < second.uHead
                                                     : compare({pCopy + first.uStart, first.uSize},
                                                               {pCopy + second.uStart, second.uSize}) < 0;
              });
    std::byte* pPlace = m_stream.data() + m_uStart;
    for (const Key& key : vecKeys)
    {
        std::memcpy(pPlace, pCopy + key.uStart, key.uSize);
        pPlace += key.uSize;
    }
    for (size_t i = 0; i < spanIds.size(); ++i)
        spanIds[i] = vecKeys[i].uOwner;
    m_bSorted = true;
    return uCount;
}

} // namespace tile
