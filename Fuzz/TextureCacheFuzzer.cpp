// The file of a compressed picture in the cache.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Resources/BlockEncoder.h"
#include "KestrelCommon/Resources/TextureCache.h"

namespace
{

/// Sizes follow from the first byte, so that short inputs meet several of them.
resource::TextureCacheKey keyOf(uint8_t uChoice)
{
    return {.uSource = 7,
            .iWidth = 1 << (uChoice & 3),
            .iHeight = 1 << (uChoice >> 2 & 3),
            .iMips = 1 + (uChoice >> 4 & 3),
            .bColour = (uChoice & 64) != 0};
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    std::vector<std::string> vecSeeds;
    for (const uint8_t uChoice : {uint8_t{0}, uint8_t{0x2A}, uint8_t{0x7F}})
    {
        const resource::TextureCacheKey key = keyOf(uChoice);
        const std::vector<std::byte> vecBlocks(resource::blockChainBytes(key.iWidth, key.iHeight, key.iMips),
                                               std::byte{uChoice});
        vecSeeds.push_back(std::string(1, static_cast<char>(uChoice)) +
                           fuzz::text(resource::cachedTextureFile(key, vecBlocks)));
    }
    fuzz::writeSeeds(*pArguments, *pppArguments, vecSeeds);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    if (uSize == 0)
        return 0;
    const auto spanFile = std::as_bytes(std::span(pData, uSize)).subspan(1);
    const resource::TextureCacheKey key = keyOf(pData[0]);
    const auto blocks = resource::blocksOfCachedTexture(spanFile, key);
    if (blocks && !std::ranges::equal(resource::cachedTextureFile(key, *blocks), spanFile))
        __builtin_trap();
    return 0;
}
