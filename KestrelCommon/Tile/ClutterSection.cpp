#include "KestrelCommon/Tile/ClutterSection.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Tile/TileVersion.h"

namespace tile
{

namespace
{
constexpr size_t s_uEntrySize = 1 + sizeof(Uuid);
}

void writeClutterSection(ByteStream& stream, ConstClutterSamples samples, const ClutterTypes& types)
{
    std::array<bool, 256> arrUsed{};
    for (const uint8_t uSample : samples)
        arrUsed[uSample] = true;
    arrUsed[EmptyClutter] = false;
    const auto uCount = static_cast<size_t>(std::count(arrUsed.begin(), arrUsed.end(), true));

    stream.write(static_cast<uint8_t>(uCount));
    for (size_t i = 0; i < arrUsed.size(); ++i)
    {
        if (!arrUsed[i])
            continue;
        stream.write(static_cast<uint8_t>(i));
        stream.write(i < types.spanUuids.size() ? types.spanUuids[i] : Uuid{});
    }
    stream.write(samples.data(), samples.size());
}

bool isClutterSection(std::span<const std::byte> spanBytes, uint32_t uVersion)
{
    if (uVersion < VersionClutterTable)
        return spanBytes.size() == SamplesPerPatch;
    return !spanBytes.empty() &&
           spanBytes.size() == 1 + static_cast<size_t>(spanBytes[0]) * s_uEntrySize + SamplesPerPatch;
}

bool readClutterSection(std::span<const std::byte> spanBytes, uint32_t uVersion, const ClutterTypes& types,
                        ClutterSamples samples, bool& bNoTypes)
{
    if (!isClutterSection(spanBytes, uVersion))
        return false;
    const std::byte* pSamples = spanBytes.data() + spanBytes.size() - SamplesPerPatch;
    if (uVersion < VersionClutterTable)
    {
        std::memcpy(samples.data(), pSamples, SamplesPerPatch);
        return true;
    }

    std::array<uint8_t, 256> arrLocalToGlobal;
    arrLocalToGlobal.fill(EmptyClutter);
    std::array<bool, 256> arrKnown{};
    arrKnown[EmptyClutter] = true;
    for (const std::byte* pEntry = spanBytes.data() + 1; pEntry < pSamples; pEntry += s_uEntrySize)
    {
        const auto uLocal = static_cast<uint8_t>(*pEntry);
        if (uLocal == EmptyClutter)
            continue;
        Uuid uuid;
        std::memcpy(&uuid, pEntry + 1, sizeof(uuid));
        arrKnown[uLocal] = true;
        if (uuid.isNil())
        {
            arrLocalToGlobal[uLocal] = uLocal;
            continue;
        }
        if (types.pIndexOf)
            if (const auto it = types.pIndexOf->find(uuid); it != types.pIndexOf->end())
            {
                arrLocalToGlobal[uLocal] = it->second;
                continue;
            }
        if (types.spanUuids.empty())
            bNoTypes = true;
        else
        {
            QM_ASSERT_TEXT(false, "false && \"Uuid dosen't exist in the clutter manager, defaulting to 0.\"");
            arrLocalToGlobal[uLocal] = 0;
        }
    }

    // Most ground is bare, so empty samples are taken eight at a time.
    constexpr uint64_t uEmpty = ~uint64_t{0};
    bool bAllKnown = true;
    for (size_t i = 0; i < SamplesPerPatch; i += sizeof(uEmpty))
    {
        uint64_t uEight;
        std::memcpy(&uEight, pSamples + i, sizeof(uEight));
        if (uEight == uEmpty)
        {
            std::memcpy(samples.data() + i, &uEmpty, sizeof(uEmpty));
            continue;
        }
        for (size_t k = i; k < i + sizeof(uEmpty); ++k)
        {
            const auto uLocal = static_cast<uint8_t>(pSamples[k]);
            bAllKnown &= arrKnown[uLocal];
            samples[k] = arrLocalToGlobal[uLocal];
        }
    }
    QM_ASSERT_TEXT(bAllKnown,
                   "find_it != mapLocalToGlobalIdx.end() && \"This should never happend, problem in the "
                   "exporter?\"");
    return true;
}

} // namespace tile
