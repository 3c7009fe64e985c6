// A section as a file may hold it, and the way there and back of any bytes.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Io/Lz4Section.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    ResizeableBuffer scratch;
    std::vector<std::string> vecSeeds;
    for (const char* pText : {"a", "abcabcabcabcabcabcabcabcabcabcabcabcabcabcabcabc", "no repetition"})
        vecSeeds.push_back("\1" + fuzz::text(lz4Compress(std::as_bytes(std::span(std::string_view(pText))),
                                                         Lz4Quality::Final, scratch)));
    fuzz::writeSeeds(*pArguments, *pppArguments, vecSeeds);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    if (uSize < 2)
        return 0;
    const auto spanInput = std::as_bytes(std::span(pData + 1, uSize - 1));
    for (const size_t uWanted : {size_t{pData[0]}, size_t{pData[0]} * 200})
    {
        std::vector<std::byte> vecOut(uWanted);
        static_cast<void>(lz4Decompress(spanInput, vecOut));
    }
    ResizeableBuffer scratch;
    for (const Lz4Quality eQuality : {Lz4Quality::Fast, Lz4Quality::Final})
    {
        const auto spanPacked = lz4Compress(spanInput, eQuality, scratch);
        std::vector<std::byte> vecBack(spanInput.size());
        if (!lz4Decompress(spanPacked, vecBack) || !std::ranges::equal(vecBack, spanInput))
            std::abort();
    }
    return 0;
}
