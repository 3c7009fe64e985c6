#pragma once // Content files that moved: from old path to new.

#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Resources/PathResolver.h"

#include <string>
#include <unordered_map>

namespace resource
{

/// The table of "upgrade_resources.json". A file that exists is never redirected.
class PathUpgrades
{
public:
    explicit PathUpgrades(PathResolver fnResolve) : m_fnResolve(std::move(fnResolve)) {}

    /// {"upgrade": [[["old", "new"], ...], ...]}. Bad pairs are logged and left out, a file that can't
    /// be read or parsed is logged; the rest counts. False: nothing could be read.
    bool load(std::string_view sKeyedPath);

    /// The path to use in place of a keyed one.
    [[nodiscard]] std::string upgrade(std::string_view sPath) const;

private:
    [[nodiscard]] bool exists(std::string_view sPath) const;

    PathResolver m_fnResolve;
    std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> m_mapUpgrades;
};

} // namespace resource
