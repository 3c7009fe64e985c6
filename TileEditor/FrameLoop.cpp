// The frame loop and the batch.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/FrameAllocator.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/Platform/StoreService.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Platform/Window.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "KestrelCommon/renderer/DebugDrawer.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "MyGuiCommon/GuiSystemManager.h"
#include "MyGuiCommon/PopUpManager.h"
#include "TileEditor/CommandLine.h"
#include "TileEditor/TileEditorStandalone.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/TileEditorInterface.h"

#include <stdexcept>

namespace
{

constexpr double s_fPeriodWithFocus = 0.001; ///< seconds
constexpr double s_fPeriodWithoutFocus = 0.1;

} // namespace

void TileEditorStandalone::run(const CommandLine& line)
{
    if (setUp(line, !line.process))
    {
        if (line.process)
            runBatch(*line.process);
        else
            runFrameLoop();
    }
    shutDown();
}

void TileEditorStandalone::runBatch(const std::string& sListPath)
{
    const uint32_t uCount = m_pTileEditor->processTiles(sListPath);
    QM_LOG("Done processing ", uCount, " tiles");
}

void TileEditorStandalone::runFrameLoop()
{
    double fLast = FrameClock::seconds();
    while (pumpEvents())
    {
        m_pInputManager->update();
        FrameClock::countTick();
        const bool bFocus = m_pWindow->hasFocus();
        const double fPeriod = bFocus ? s_fPeriodWithFocus : s_fPeriodWithoutFocus;
        const double fNow = FrameClock::seconds();
        if (fNow - fLast < fPeriod)
        {
            if (!bFocus)
                m_pWindow->waitEvents(static_cast<int>((fPeriod - (fNow - fLast)) * 1000.0) + 1);
            continue;
        }
        const auto dt = static_cast<float>(fNow - fLast);
        fLast = fNow;
        runFrame(dt);
        m_pInputManager->endFrame();
        if (!m_pTileEditor->isRunning())
            return;
    }
}

bool TileEditorStandalone::pumpEvents()
{
    std::vector<PlatformEvent> vecEvents;
    m_pWindow->pump(vecEvents);
    for (const PlatformEvent& event : vecEvents)
    {
        if (event.eType == PlatformEventType::Close)
        {
            // Asks when something would be lost; the loop then goes on until the answer.
            m_pTileEditor->requestExit();
            if (!m_pTileEditor->isRunning())
                return false;
            continue;
        }
        if (event.eType == PlatformEventType::Resize)
            resize(event.iX, event.iY);
        else
            m_pInputManager->queue(event);
    }
    return true;
}

void TileEditorStandalone::runFrame(float dt)
{
    FrameAllocator::resetAll();
    m_statistics.addTime(dt);
    updateCamera(dt);
    m_pResourceManager->update();
    m_pKeyBindings->update(m_pInterface->isMouseFree(), m_pInterface->hasNoKeyFocus(), m_camera.flying);
    m_pTileEditor->update(dt);
    m_store.runCallbacks();
    m_pUgcManager->updateAdded();
    m_pUgcManager->updateRemoved();
    m_pDebugDrawer->swap();
    m_pDynamicDataManager->update();
    m_pPopUpManager->update();
    if (!m_pTileEditor->isRunning())
        return;
    uint32_t uMask = 0;
    if (m_pTileEditor->takeInterfaceDirty(uMask))
    {
        if (uMask & tilebuilder::ChangeColorPicked)
            m_pTileEditor->changeColor(m_pInterface->editorColor());
        m_pInterface->refresh(uMask);
    }
    drawFrame(dt);
}

void TileEditorStandalone::updateCamera(float dt)
{
    const InputManager& input = *m_pInputManager;
    CameraInput camera;
    camera.mouseX = static_cast<float>(input.cursorDelta.iX);
    camera.mouseY = static_cast<float>(input.cursorDelta.iY);
    camera.rightButton = input.buttonDown[1] != 0;
    camera.flyAllowed = !m_pInterface->isMouseOverWidget();
    camera.fast = input.keyDown[KeyShift] != 0;
    camera.forward = input.keyDown['W'] != 0;
    camera.back = input.keyDown['S'] != 0;
    camera.right = input.keyDown['D'] != 0;
    camera.left = input.keyDown['A'] != 0;
    camera.up = input.keyDown[KeySpace] != 0;
    camera.down = input.keyDown[KeyControl] != 0;
    m_camera.update(dt, camera);
    if (m_camera.flying != m_pWindow->isRelativeMouse())
        m_pWindow->setRelativeMouse(m_camera.flying);
}

void TileEditorStandalone::drawFrame(float dt)
{
    if (!m_pWindow)
        return;
    const double fBegin = FrameClock::seconds();
    rend::SceneView view;
    view.view = m_camera.viewMatrix();
    view.projection = m_camera.projectionMatrix();
    m_pRenderer->render({}, m_iWidth, m_iHeight, view);
    hideStart();
    m_statistics.addRender((FrameClock::seconds() - fBegin) * 1000.0, m_pDevice->gpuMilliseconds());
    m_pGuiSystemManager->update();
    m_pInterface->updateOverlay(static_cast<uint32_t>(m_statistics.frames()), m_statistics.cpuMilliseconds(),
                                m_statistics.gpuMilliseconds());
    m_pGuiSystemManager->draw(dt);
    if (!m_pDevice->present())
    {
        QM_LOG_ERROR("Render failed to present code: 0");
        throw std::runtime_error("Render failed to present code: 0");
    }
    FrameClock::countFrame();
    if (std::exchange(m_bFirstFrame, false))
        UTILS::log(UTILS::concat("FIRST FRAME - ", (FrameClock::seconds() - m_fStart) * 1000.0, "ms"),
                   UTILS::AttributeNormal, UTILS::LogProfile);
}

void TileEditorStandalone::resize(int iWidth, int iHeight)
{
    if (iWidth <= 0 || iHeight <= 0)
        return;
    m_iWidth = iWidth;
    m_iHeight = iHeight;
    if (!m_pDevice->resize(iWidth, iHeight))
    {
        const std::string sText =
            UTILS::concat("Failed to resize renderer to dimensions ", iWidth, " x ", iHeight, " code: 0");
        QM_LOG_ERROR(sText);
        throw std::runtime_error(sText);
    }
    m_pGuiSystemManager->resize(iWidth, iHeight);
    m_camera.width = static_cast<float>(iWidth);
    m_camera.height = static_cast<float>(iHeight);
    m_pTileEditor->markInterfaceDirty(0);
}

bool TileEditorStandalone::keyUp(const InputEvent& event)
{
    if (event.uVirtualKey == KeyShift && m_pTileEditor)
        m_pTileEditor->toolState().selectMode = 1;
    return true;
}

bool TileEditorStandalone::mouseDown(const InputEvent& event)
{
    if (event.iButton == 0 && m_pTileEditor)
        m_pTileEditor->leftMouseDown();
    return true;
}
