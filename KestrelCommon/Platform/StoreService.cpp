#include "KestrelCommon/Platform/StoreService.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace platform
{

bool StoreService::init()
{
    if (const char* pId = std::getenv("QUILLMERE_USER_ID"))
    {
        const std::string_view sId(pId);
        uint64_t uId = 0;
        const auto [pEnd, error] = std::from_chars(sId.data(), sId.data() + sId.size(), uId);
        if (error == std::errc() && pEnd == sId.data() + sId.size())
            m_uUserId = uId;
    }
    if (const char* pFolder = std::getenv("QUILLMERE_GAME_DIR"))
        m_pathGame = pFolder;
    m_bRunning = true;
    return true;
}

} // namespace platform
