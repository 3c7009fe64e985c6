// Puts buildings together from their parts.

#include "Tools/TileForge/Scene.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>

namespace forge
{

Frame buildHut(Scene& scene, const Hut& hut, const glm::vec2& at, float fDegrees)
{
    constexpr float s_fWallTop = 3.0f;
    const float fHalf = 2.0f * static_cast<float>(hut.iModules);
    const Frame frame = scene.level(at, {fHalf + 1.2f, 3.2f}, fDegrees, 4.5f);
    scene.cover(at, fHalf + 3.5f, Dirt, 0.9f);
    scene.reserve(at, fHalf + 2.2f);
    const std::map<std::string, std::string> mapColours{{"Roof", hut.pRoof}, {"Plaster", hut.pPlaster}};
    const auto add = [&](const char* pName, float fX, float fY, float fUp, float fTurn)
    { scene.placeIn(frame, pName, fX, fY, fUp, fTurn, mapColours); };

    const int iDoor = hut.iModules / 2;
    for (int i = 0; i < hut.iModules; ++i)
    {
        const float fX = -fHalf + 2.0f + 4.0f * static_cast<float>(i);
        add(i == iDoor ? "env_hut_wall_door_01" : "env_hut_wall_window_01", fX, 2.0f, 0.0f, 0.0f);
        add(i % 2 == 0 ? "env_hut_wall_4m_01" : "env_hut_wall_window_01", fX, -2.0f, 0.0f, 180.0f);
        add("env_floor_plank_4m_01", fX, 0.0f, 0.0f, 0.0f);
        add("env_hut_roof_slope_01", fX, 0.0f, s_fWallTop, 0.0f);
        add("env_hut_roof_slope_01", fX, 0.0f, s_fWallTop, 180.0f);
        add("env_hut_roof_ridge_01", fX, 0.0f, s_fWallTop + 2.0f, 0.0f);
        if (i == iDoor)
        {
            add("env_hut_door_01", fX, 2.0f, 0.12f, 0.0f);
            if (hut.bPorch)
                add("env_hut_porch_01", fX, 2.1f, 0.0f, 0.0f);
            add("env_floor_flagstone_2m_01", fX, 3.3f, 0.0f, 0.0f);
            add("env_lamp_wall_01", fX + 1.0f, 2.14f, 1.7f, 0.0f);
        }
    }
    for (const float fSide : {-1.0f, 1.0f})
    {
        const float fTurn = fSide > 0.0f ? 90.0f : -90.0f;
        add(hut.bChimney && fSide < 0.0f ? "env_hut_wall_4m_01" : "env_hut_wall_window_01", fSide * fHalf,
            0.0f, 0.0f, fTurn);
        add("env_hut_gable_01", fSide * fHalf, 0.0f, s_fWallTop, fTurn);
        add("env_hut_roof_end_01", fSide * fHalf, 0.0f, s_fWallTop, fSide > 0.0f ? 0.0f : 180.0f);
        for (const float fFront : {-2.0f, 2.0f})
            add("env_hut_corner_01", fSide * fHalf, fFront, 0.0f, 0.0f);
    }
    if (hut.bChimney)
        add("env_hut_chimney_01", -fHalf - 0.55f, 0.0f, 0.0f, 90.0f);
    return frame;
}

void buildRow(Scene& scene, const std::vector<std::string>& vecParts, float fLength, const glm::vec2& from,
              const glm::vec2& to, float fSink)
{
    const float fReach = glm::distance(from, to);
    const int iCount = static_cast<int>(std::floor(fReach / fLength + 0.3f));
    const glm::vec2 along = (to - from) / fReach;
    const float fDegrees = glm::degrees(std::atan2(along.y, along.x));
    for (int i = 0; i < iCount; ++i)
    {
        const glm::vec2 at = from + along * (fLength * (static_cast<float>(i) + 0.5f));
        scene.place(vecParts[static_cast<size_t>(i) % vecParts.size()], at, fDegrees,
                    {.fUp = -fSink, .mapColours = {}});
        scene.reserve(at, 0.6f * fLength);
    }
}

} // namespace forge
