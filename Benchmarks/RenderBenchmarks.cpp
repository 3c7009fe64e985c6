// A frame of the ground on the driver that is there, in full size and with no change spared.

#include "Benchmarks/Harness.h"
#include "Tests/Renderer/TestScene.h"

#include <glm/geometric.hpp>

#include <cstdio>

#include <sys/resource.h>

namespace
{

using namespace bench;

constexpr int s_iWidth = 1280;
constexpr int s_iHeight = 720;

struct Shot
{
    const char* pName;
    glm::vec3 position;
    glm::vec3 direction;
};

/// Draws from slightly different places, so that no picture serves twice.
void drawOnce(TestScene& scene, rend::TargetHandle target, const Shot& shot,
              std::vector<std::byte>& vecPixels)
{
    static float s_fMoved = 0.0f;
    s_fMoved = std::fmod(s_fMoved + 0.013f, 1.0f);
    scene.m_camera.position = shot.position + glm::vec3(s_fMoved, 0.0f, 0.0f);
    scene.m_camera.lookAlong(shot.direction);
    scene.m_pRenderer->render(
        target, s_iWidth, s_iHeight,
        {.view = scene.m_camera.viewMatrix(), .projection = scene.m_camera.projectionMatrix()});
    scene.m_pDevice->readTarget(target, vecPixels); // waits for the driver
}

/// Milliseconds of processor time of all threads; it tells more than wall time on a busy machine.
double processorMilliseconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-3;
}

/// Runs a line and says what a frame costs all processors together.
bool runFrames(const Comparison& line)
{
    if (!isWanted(line.sName))
        return true;
    const bool bKept = run(line);
    constexpr int s_iFrames = 9;
    const double fStart = processorMilliseconds();
    for (int i = 0; i < s_iFrames; ++i)
        line.fnProduct();
    std::printf("    processor time %.1f ms\n", (processorMilliseconds() - fStart) / s_iFrames);
    return bKept;
}

int render()
{
    if (!TestScene::isAvailable())
        return 0;
    TestScene scene(s_iWidth, s_iHeight);
    if (!scene.m_bReady)
        return 0;
    const rend::TargetHandle target = scene.m_pDevice->createTarget(
        {.sName = "Bench", .iWidth = s_iWidth, .iHeight = s_iHeight, .bWindowRows = true});
    std::vector<std::byte> vecPixels(size_t{s_iWidth} * s_iHeight * 4);
    int iMissed = 0;
    for (const int iCells : {1, 2, 4, 8, 16})
    {
        const float fSize = 64.0f * static_cast<float>(iCells);
        scene.setGround(iCells, [&](float fX, float fY) { return hillsAt(fX, fY, std::min(fSize, 256.0f)); });
        const float fMiddle = fSize * 0.5f;
        for (const Shot& shot :
             {Shot{
                  "whole", glm::vec3(fMiddle) - fSize * glm::vec3(0.75f, 0.75f, -0.55f), {1.0f, 1.0f, -1.0f}},
              Shot{"filling", {fMiddle, fMiddle * 0.2f, 45.0f}, {0.05f, 0.6f, -0.7f}}})
        {
            Comparison line;
            line.sName =
                "frame of " + std::to_string(iCells) + " x " + std::to_string(iCells) + ", " + shot.pName;
            line.fnProduct = [&] { drawOnce(scene, target, shot, vecPixels); };
            line.fMaxMs = iCells == 2 ? 50.0 : 0.0;
            iMissed += !runFrames(line);
        }
    }
    scene.m_camera.lookAlong({0.0f, 1.0f, -1.0f});
    iMissed += !run(
        {.sName = "frame of 16 x 16, nothing changed", .fnProduct = [&] { scene.draw(); }, .fMaxMs = 20.0});
    return iMissed;
}

const Registration s_render(&render);

} // namespace
