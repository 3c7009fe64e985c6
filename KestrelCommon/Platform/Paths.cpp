#include "KestrelCommon/Platform/Paths.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace platform
{

namespace
{

std::filesystem::path homeFolder()
{
    if (const char* pHome = std::getenv("HOME"); pHome && *pHome)
        return pHome;
    const passwd* pUser = ::getpwuid(::getuid());
    return pUser && pUser->pw_dir ? pUser->pw_dir : "";
}

// Relative paths in these variables are to be ignored (XDG base directories, 0.8).
std::filesystem::path fromVariable(const char* pVariable, const char* pBelowHome)
{
    if (const char* pFolder = std::getenv(pVariable); pFolder && *pFolder == '/')
        return pFolder;
    const std::filesystem::path pathHome = homeFolder();
    return pathHome.empty() ? pathHome : pathHome / pBelowHome;
}

} // namespace

std::filesystem::path roamingDataFolder()
{
    return fromVariable("XDG_DATA_HOME", ".local/share");
}
std::filesystem::path localDataFolder()
{
    return fromVariable("XDG_CACHE_HOME", ".cache");
}

std::filesystem::path programFolder()
{
    std::error_code error;
    const auto pathProgram = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::current_path() : pathProgram.parent_path();
}

} // namespace platform
