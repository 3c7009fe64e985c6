#pragma once // What the history menu needs to know.

#include <cstdint>
#include <string>
#include <vector>

namespace tilebuilder
{

/// A document that was left and can be returned to with its steps.
struct CachedDocument
{
    std::string sPath;
    bool bUnsaved = false;
    uint64_t uBytes = 0; ///< of its states
};

/// The history of the open document and the memory that all histories take.
struct HistoryStatus
{
    uint64_t uStates = 0;
    uint64_t uStateIndex = 0;
    uint64_t uBytesUsed = 0;
    uint64_t uBytesLimit = 0;
    std::vector<CachedDocument> vecCached; ///< other than the open one, by path
    bool bHasCached = false;               ///< any, the open one's path included

    /// A history of n states has n - 1 steps.
    [[nodiscard]] uint64_t steps() const { return uStates ? uStates - 1 : 0; }
};

/// "12b", "3kb", "5mb": whole units, rounded down.
[[nodiscard]] inline std::string memoryText(uint64_t uBytes)
{
    if (uBytes > 0x100000)
        return std::to_string(uBytes >> 20) + "mb";
    if (uBytes < 1025)
        return std::to_string(uBytes) + "b";
    return std::to_string(uBytes >> 10) + "kb";
}

} // namespace tilebuilder
