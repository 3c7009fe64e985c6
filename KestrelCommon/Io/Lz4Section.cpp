#include "KestrelCommon/Io/Lz4Section.h"

#include "KestrelCommon/Core/Console.h"

#include <algorithm>
#include <lz4.h>
#include <lz4hc.h>
#include <memory>

namespace
{
constexpr uint32_t s_uMaxInput = 0x7E000000;
constexpr int s_iFinalLevel = 9;

// LZ4_compress_HC with a state that lives on: clearing a new one costs as much as a small section.
int compressFinal(const char* pSource, char* pOut, int iSize, int iBound)
{
    struct FreeStream
    {
        void operator()(LZ4_streamHC_t* pStream) const { LZ4_freeStreamHC(pStream); }
    };
    thread_local const std::unique_ptr<LZ4_streamHC_t, FreeStream> s_pStream(LZ4_createStreamHC());
    if (!s_pStream)
        return LZ4_compress_HC(pSource, pOut, iSize, iBound, s_iFinalLevel);
    LZ4_resetStreamHC_fast(s_pStream.get(), s_iFinalLevel);
    return LZ4_compress_HC_continue(s_pStream.get(), pSource, pOut, iSize, iBound);
}

} // namespace

uint32_t lz4Bound(uint32_t uSize)
{
    return uSize > s_uMaxInput ? 0 : uSize + uSize / 255 + 16;
}

std::span<const std::byte> lz4Compress(std::span<const std::byte> spanSource, Lz4Quality eQuality,
                                       ResizeableBuffer& bufferScratch)
{
    if (spanSource.empty() || spanSource.size() > s_uMaxInput)
    {
        QM_LOG_ERROR("Can't compress a section of ", spanSource.size(), " bytes");
        return {};
    }
    const int iSize = static_cast<int>(spanSource.size());
    const int iBound = static_cast<int>(lz4Bound(static_cast<uint32_t>(iSize)));
    bufferScratch.reserve(static_cast<uint64_t>(iBound));
    const auto* pSource = reinterpret_cast<const char*>(spanSource.data());
    auto* pOut = reinterpret_cast<char*>(bufferScratch.data());
    const int iWritten = eQuality == Lz4Quality::Final ? compressFinal(pSource, pOut, iSize, iBound)
                                                       : LZ4_compress_default(pSource, pOut, iSize, iBound);
    return {bufferScratch.data(), static_cast<size_t>(std::max(iWritten, 0))};
}

bool lz4Decompress(std::span<const std::byte> spanSource, std::span<std::byte> spanOut)
{
    if (spanSource.empty() || spanSource.size() > INT32_MAX || spanOut.size() > INT32_MAX)
        return false;
    const int iWritten = LZ4_decompress_safe(
        reinterpret_cast<const char*>(spanSource.data()), reinterpret_cast<char*>(spanOut.data()),
        static_cast<int>(spanSource.size()), static_cast<int>(spanOut.size()));
    return iWritten >= 0 && static_cast<size_t>(iWritten) == spanOut.size();
}
