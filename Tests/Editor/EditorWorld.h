#pragma once // The editor object without a window or a device, in folders of its own.

#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <chrono>
#include <cmath>
#include <fstream>
#include <thread>

/// Windows that remember what they were asked.
struct FakeInterface : tilebuilder::EditorInterfaceI
{
    bool isMouseFree() const override { return !bOverWidget; }
    bool hasNoKeyFocus() const override { return true; }
    bool isMouseOverWidget() const override { return bOverWidget; }
    bool isEditing() const override { return false; }
    void showToolPanels(uint8_t uTool) override { uPanels = uTool; }
    void showNewWindow() override {}
    void showOpenWindow() override {}
    void showSaveAsWindow() override { ++iSaveAs; }
    void toggleStatusOverlay() override {}
    void showTileSettingsWindow(bool bShow) override { bTileSettings = bShow; }
    bool isTileSettingsVisible() const override { return bTileSettings; }
    void refresh(uint32_t) override {}
    void showMessage(std::string_view, std::string_view sText) override { sMessage = sText; }
    void askYesNo(std::string_view, std::string_view sText, std::function<void()> fnYes) override
    {
        sQuestion = sText;
        fnOnYes = std::move(fnYes);
    }
    void showProgress(std::string_view, float) override { ++iProgress; }
    void hideProgress() override {}
    void setBusy(bool bBusy) override
    {
        iBusy += bBusy ? 1 : -1;
        iBusyTimes += bBusy;
    }

    bool bOverWidget = false;
    bool bTileSettings = false;
    uint8_t uPanels = 99;
    int iSaveAs = 0;
    int iProgress = 0; ///< frames of progress
    int iBusy = 0;     ///< how much work goes on
    int iBusyTimes = 0;
    std::string sMessage;
    std::string sQuestion;
    std::function<void()> fnOnYes;
};

struct EditorWorld
{
    EditorWorld()
        : directories(
              {folder.path() / "roaming", folder.path() / "local", folder.path() / "game/Release", {}, 7})
    {
        directories.initialise();
        pUgc = std::make_unique<UgcManager>(nullptr);
        camera.width = 1280.0f;
        camera.height = 720.0f;
        camera.nearPlane = 0.1f;
        camera.farPlane = 2000.0f;
        tilebuilder::EditorServices services;
        services.pCamera = &camera;
        services.pInput = &input;
        pEditor = std::make_unique<tilebuilder::TileEditor>(services, true, 0);
        pEditor->setInterface(&windows);
        // Looks straight down at the middle of a one-cell tile.
        camera.position = {32.0f, 32.0f, 60.0f};
        camera.lookAlong({0.0f, 0.001f, -1.0f});
        frames(3, 0.016f);
    }

    void frames(int iCount, float dt)
    {
        for (int iFrame = 0; iFrame < iCount; ++iFrame)
        {
            input.update();
            pEditor->update(dt);
            input.endFrame();
        }
    }

    void button(bool bDown)
    {
        PlatformEvent event;
        event.eType = PlatformEventType::MouseButton;
        event.iX = 640;
        event.iY = 360;
        event.bDown = bDown;
        input.queue(event);
    }

    /// Moves the mouse over a point of the world. False when it isn't in view.
    bool pointAt(const glm::vec3& point)
    {
        glm::vec2 pixel;
        if (!camera.project(point, pixel))
            return false;
        PlatformEvent move;
        move.eType = PlatformEventType::MouseMove;
        move.iX = static_cast<int>(std::lround(pixel.x));
        move.iY = static_cast<int>(std::lround(pixel.y));
        input.queue(move);
        frames(1, 0.016f);
        return true;
    }

    /// A frame with a button going down or up where the mouse is, as the program's shell has it.
    void press(bool bDown, int iButton)
    {
        PlatformEvent event;
        event.eType = PlatformEventType::MouseButton;
        event.iX = input.mousePosition.iX;
        event.iY = input.mousePosition.iY;
        event.iButton = iButton;
        event.bDown = bDown;
        input.queue(event);
        input.update();
        if (bDown && iButton == 0)
            pEditor->leftMouseDown();
        pEditor->update(0.016f);
        input.endFrame();
    }

    void key(uint32_t uKey, bool bDown)
    {
        input.queue({.eType = PlatformEventType::Key,
                     .bDown = bDown,
                     .uVirtualKey = uKey,
                     .iScanCode = scanCodeOf(uKey)});
        frames(1, 0.016f);
    }

    /// A stroke of that many frames in the middle of the view, and the quiet after it.
    void stroke(int iFrames)
    {
        PlatformEvent move;
        move.eType = PlatformEventType::MouseMove;
        move.iX = 640;
        move.iY = 360;
        input.queue(move);
        button(true);
        frames(iFrames, 0.05f);
        button(false);
        frames(2, 0.016f);
    }

    void waitForQuiet()
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(160));
        frames(1, 0.016f);
    }

    [[nodiscard]] float middleHeight() const { return pEditor->surface().getHeight(32.0f, 32.0f); }

    LogCapture log;
    TempFolder folder;
    DirectoryManager directories;
    std::unique_ptr<UgcManager> pUgc;
    InputManager input;
    Camera camera;
    FakeInterface windows;
    std::unique_ptr<tilebuilder::TileEditor> pEditor;
};
