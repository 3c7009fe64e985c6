#include "Tests/EndToEnd/Desktop.h"

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace
{

void pause(int iMilliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(iMilliseconds));
}

// A number that no server on this machine uses.
int freeDisplay()
{
    for (int iDisplay = 60 + static_cast<int>(::getpid() % 400); iDisplay < 500; ++iDisplay)
        if (!std::filesystem::exists("/tmp/.X" + std::to_string(iDisplay) + "-lock"))
            return iDisplay;
    return 59;
}

} // namespace

double Screenshot::difference(const Screenshot& other, int iX, int iY, int iWide, int iHigh) const
{
    if (other.vecPixels.size() != vecPixels.size())
        return 255.0;
    double fSum = 0.0;
    for (int y = iY; y < iY + iHigh; ++y)
        for (int i = (y * iWidth + iX) * 3; i < (y * iWidth + iX + iWide) * 3; ++i)
            fSum += std::abs(int{vecPixels[static_cast<size_t>(i)]} -
                             int{other.vecPixels[static_cast<size_t>(i)]});
    return fSum / (3.0 * iWide * iHigh);
}

size_t Screenshot::colours(int iX, int iY, int iWide, int iHigh) const
{
    std::set<uint32_t> setColours;
    for (int y = iY; y < iY + iHigh; ++y)
        for (int x = iX; x < iX + iWide; ++x)
        {
            const uint8_t* pPixel = vecPixels.data() + static_cast<size_t>(y * iWidth + x) * 3;
            setColours.insert(pPixel[0] << 16 | pPixel[1] << 8 | pPixel[2]);
        }
    return setColours.size();
}

Desktop::Desktop()
{
    const int iDisplay = freeDisplay();
    m_pServer = std::make_unique<ChildProcess>(std::vector<std::string>{
        "Xvfb", ":" + std::to_string(iDisplay), "-screen", "0", "1280x720x24", "-nolisten", "tcp"});
    for (int iTry = 0; iTry < 100 && m_pServer->isRunning(); ++iTry, pause(50))
        if (std::filesystem::exists("/tmp/.X11-unix/X" + std::to_string(iDisplay)))
        {
            m_iDisplay = iDisplay;
            return;
        }
}

std::vector<std::pair<std::string, std::string>> Desktop::environment() const
{
    return {{"DISPLAY", ":" + std::to_string(m_iDisplay)},
            {"HOME", m_home.text()},
            {"XDG_DATA_HOME", m_home.text() + "/data"},
            {"XDG_CACHE_HOME", m_home.text() + "/cache"},
            {"QUILLMERE_GAME_DIR", QM_GAME_DIR},
            {"QUILLMERE_USER_ID", ""},
            {"WAYLAND_DISPLAY", ""},
            {"SDL_VIDEODRIVER", "x11"},
            // The window's driver is unloaded with what it never freed; the batch proves our own leaks.
            {"ASAN_OPTIONS", "detect_leaks=0"}};
}

bool Desktop::startEditor()
{
    m_pEditor = std::make_unique<ChildProcess>(std::vector<std::string>{QM_EDITOR}, environment(),
                                               m_home.text() + "/output.txt");
    // The ground fills the middle of the window with many colours.
    for (int iTry = 0; iTry < 600 && m_pEditor->isRunning(); ++iTry, pause(100))
        if (look().colours(400, 200, 400, 300) > 500)
            return true;
    return false;
}

int Desktop::waitForExit()
{
    return m_pEditor->wait(30.0);
}

void Desktop::act(const std::vector<std::string>& vecWords)
{
    std::vector<std::string> vecCommand{"xdotool"};
    vecCommand.insert(vecCommand.end(), vecWords.begin(), vecWords.end());
    runCommand(vecCommand, environment());
    pause(250);
}

void Desktop::click(int iX, int iY)
{
    act({"mousemove", std::to_string(iX), std::to_string(iY)});
    act({"mousedown", "1"});
    act({"mouseup", "1"});
}

void Desktop::type(const std::string& sText)
{
    static const std::map<char, std::string> s_mapNames{
        {' ', "space"}, {'.', "period"}, {'?', "question"}, {'|', "bar"}};
    for (const char c : sText)
    {
        const auto it = s_mapNames.find(c);
        act({"key", it == s_mapNames.end() ? std::string(1, c) : it->second});
    }
}

Screenshot Desktop::look()
{
    const std::string sFile = m_home.text() + "/look.ppm";
    Screenshot shot;
    if (runCommand({"import", "-window", "root", "-depth", "8", "ppm:" + sFile}, environment(),
                   m_home.text() + "/import.txt"))
        return shot;
    std::ifstream file(sFile, std::ios::binary);
    std::string sMagic;
    int iMost = 0;
    file >> sMagic >> shot.iWidth >> shot.iHeight >> iMost;
    file.get();
    shot.vecPixels.resize(static_cast<size_t>(shot.iWidth * shot.iHeight * 3));
    file.read(reinterpret_cast<char*>(shot.vecPixels.data()),
              static_cast<std::streamsize>(shot.vecPixels.size()));
    return shot;
}

Screenshot Desktop::lookWhenCalm(int iX, int iY, int iWide, int iHigh)
{
    Screenshot before = look();
    for (int iTry = 0; iTry < 40; ++iTry)
    {
        pause(200);
        Screenshot now = look();
        if (now.difference(before, iX, iY, iWide, iHigh) == 0.0)
            return now;
        before = std::move(now);
    }
    return before;
}

std::string Desktop::findTile(const std::string& sFileName) const
{
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_home.path() / "data", error))
        if (entry.path().filename() == sFileName)
            return entry.path().string();
    return {};
}

std::string Desktop::editorOutput() const
{
    std::stringstream text;
    text << std::ifstream(m_home.path() / "output.txt").rdbuf();
    return text.str();
}
