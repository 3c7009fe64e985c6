#pragma once // The store service's place: who the user is and where the game is installed.

#include <cstdint>
#include <filesystem>
#include <string>

namespace platform
{

/// A local stand-in that always reports success and a logged-on user. Main thread only.
class StoreService
{
public:
    /// Reads the environment: QUILLMERE_USER_ID (a number, 1 without it) and QUILLMERE_GAME_DIR.
    bool init();
    void shutdown() { m_bRunning = false; }

    /// Delivers what became ready since the last call.
    void runCallbacks() {}

    [[nodiscard]] bool isLoggedOn() const { return m_bRunning; }
    [[nodiscard]] uint64_t userId() const { return m_uUserId; }

    /// The game's install folder; empty when the service doesn't know it.
    [[nodiscard]] const std::filesystem::path& gameInstallFolder() const { return m_pathGame; }

private:
    bool m_bRunning = false;
    uint64_t m_uUserId = 1;
    std::filesystem::path m_pathGame;
};

} // namespace platform
