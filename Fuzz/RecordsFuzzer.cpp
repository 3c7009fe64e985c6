// Records of all kinds, forms and versions: the first bytes choose the codec, the version and the
// count.

#include "Fuzz/Seeds.h"
#include "Tests/Records/CodecTable.h"
#include "Tests/Support/LogCapture.h"

#include <cstdlib>

namespace
{

constexpr size_t s_uChoice = 4; ///< codec, version, count, bits left out of the last byte

std::string seed(size_t uCodec, uint32_t uVersion)
{
    const Packed sample = codecs()[uCodec].fnSample(uVersion, uVersion);
    return std::string{
               static_cast<char>(uCodec), static_cast<char>(uVersion - codecs()[uCodec].uFirstVersion),
               static_cast<char>(SampleCount), static_cast<char>(sample.vecBytes.size() * 8 - sample.uBits)} +
           fuzz::text(sample.vecBytes);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    std::vector<std::string> vecSeeds;
    for (size_t i = 0; i < codecs().size(); ++i)
        for (uint32_t uVersion = codecs()[i].uFirstVersion; uVersion <= codecs()[i].currentVersion();
             ++uVersion)
            vecSeeds.push_back(seed(i, uVersion));
    fuzz::writeSeeds(*pArguments, *pppArguments, vecSeeds);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    static LogCapture s_log;
    s_log.clear();
    if (uSize < s_uChoice)
        return 0;
    const Codec& codec = codecs()[pData[0] % codecs().size()];
    const uint32_t uVersion =
        codec.uFirstVersion + pData[1] % (codec.currentVersion() + 1 - codec.uFirstVersion);
    const uint32_t uCount = pData[2];
    Packed packed(std::as_bytes(std::span(pData, uSize).subspan(s_uChoice)));
    packed.uBits -= std::min<uint32_t>(packed.uBits, pData[3] % 8);

    const auto rewritten = codec.fnRewrite(packed, uVersion, uCount);
    if (codec.fnCheck && codec.fnCheck(packed, uVersion, uCount) != rewritten.has_value())
        std::abort();
    if (!rewritten)
        return 0;
    // What was read is written as a list that reads the same.
    const auto again = codec.fnRewrite(*rewritten, codec.currentVersion(), uCount);
    if (!again || !(*again == *rewritten))
        std::abort();
    return 0;
}
