// A cell's clutter section, of both versions, and what reading it writes back.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Tile/ClutterSection.h"
#include "KestrelCommon/Tile/TileVersion.h"
#include "Tests/Support/LogCapture.h"

#include <cstdlib>

namespace
{

const std::array<Uuid, 2> s_arrTypes = {Uuid{{1}}, Uuid{{2}}};
const std::unordered_map<Uuid, uint8_t> s_mapIndexOf = {{s_arrTypes[0], 0}, {s_arrTypes[1], 1}};

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    std::vector<uint8_t> vecSamples(tile::SamplesPerPatch, tile::EmptyClutter);
    vecSamples[5] = 1;
    ByteStream stream;
    tile::writeClutterSection(stream, tile::ConstClutterSamples(vecSamples.data(), tile::SamplesPerPatch),
                              {s_arrTypes, &s_mapIndexOf});
    fuzz::writeSeeds(*pArguments, *pppArguments,
                     {fuzz::text(stream.bytes()), std::string(tile::SamplesPerPatch, '\3')});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    static LogCapture s_log;
    s_log.clear();
    const auto spanBytes = std::as_bytes(std::span(pData, uSize));
    const tile::ClutterTypes types{s_arrTypes, &s_mapIndexOf};
    for (const uint32_t uVersion : {1u, static_cast<uint32_t>(tile::VersionCurrent)})
    {
        std::vector<uint8_t> vecSamples(tile::SamplesPerPatch, 9);
        const tile::ClutterSamples samples(vecSamples.data(), tile::SamplesPerPatch);
        bool bNoTypes = false;
        const bool bRead = tile::readClutterSection(spanBytes, uVersion, types, samples, bNoTypes);
        if (bRead != tile::isClutterSection(spanBytes, uVersion))
            std::abort();
        if (!bRead && vecSamples != std::vector<uint8_t>(tile::SamplesPerPatch, 9))
            std::abort();
        if (!bRead)
            continue;
        // What was read is written as a section that reads the same.
        ByteStream stream;
        tile::writeClutterSection(stream, samples, types);
        std::vector<uint8_t> vecAgain(tile::SamplesPerPatch);
        if (!tile::readClutterSection(stream.bytes(), tile::VersionCurrent, types,
                                      tile::ClutterSamples(vecAgain.data(), tile::SamplesPerPatch),
                                      bNoTypes) ||
            vecAgain != vecSamples)
            std::abort();
    }
    return 0;
}
