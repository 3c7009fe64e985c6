#pragma once // A display of its own with the editor on it, worked by real mouse and key events.

#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TempFolder.h"

#include <cstdint>
#include <memory>

/// What the display shows, RGB.
struct Screenshot
{
    int iWidth = 0;
    int iHeight = 0;
    std::vector<uint8_t> vecPixels;

    /// Mean difference of the channels within a rectangle, 0 to 255.
    [[nodiscard]] double difference(const Screenshot& other, int iX, int iY, int iWide, int iHigh) const;
    /// How many different colours a rectangle holds.
    [[nodiscard]] size_t colours(int iX, int iY, int iWide, int iHigh) const;
};

/// An X server of 1280 x 720 in memory, and a home folder that starts empty.
class Desktop
{
public:
    Desktop();

    [[nodiscard]] bool isUp() const { return m_iDisplay > 0; }
    /// Starts the editor; true once its first picture is there.
    bool startEditor();
    /// The editor's exit status, once it ended by itself; -1: it didn't.
    int waitForExit();
    [[nodiscard]] bool editorRuns() { return m_pEditor && m_pEditor->isRunning(); }

    /// xdotool's own words, such as {"key", "ctrl+s"}.
    void act(const std::vector<std::string>& vecWords);
    void click(int iX, int iY);
    void type(const std::string& sText);
    [[nodiscard]] Screenshot look();
    /// Waits until two looks in a row are equal in a rectangle.
    [[nodiscard]] Screenshot lookWhenCalm(int iX, int iY, int iWide, int iHigh);

    /// The user's tile file of that name; empty while there is none.
    [[nodiscard]] std::string findTile(const std::string& sFileName) const;
    [[nodiscard]] std::string editorOutput() const;

private:
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> environment() const;

    TempFolder m_home;
    int m_iDisplay = 0;
    std::unique_ptr<ChildProcess> m_pServer;
    std::unique_ptr<ChildProcess> m_pEditor;
};
