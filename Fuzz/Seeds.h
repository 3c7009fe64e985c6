#pragma once // Seeds of a fuzz target, made by code instead of being stored.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz
{

/// Writes the seeds to the first folder among the arguments, when it is empty. Call it from
/// LLVMFuzzerInitialize.
inline void writeSeeds(int iArguments, char** ppArguments, const std::vector<std::string>& vecSeeds)
{
    for (int i = 1; i < iArguments; ++i)
    {
        const std::filesystem::path folder(ppArguments[i]);
        if (ppArguments[i][0] == '-' || !std::filesystem::is_directory(folder))
            continue;
        if (std::filesystem::is_empty(folder))
            for (size_t uSeed = 0; uSeed < vecSeeds.size(); ++uSeed)
                std::ofstream(folder / ("seed" + std::to_string(uSeed)), std::ios::binary) << vecSeeds[uSeed];
        return;
    }
}

inline std::string text(std::span<const std::byte> spanBytes)
{
    return {reinterpret_cast<const char*>(spanBytes.data()), spanBytes.size()};
}

} // namespace fuzz
