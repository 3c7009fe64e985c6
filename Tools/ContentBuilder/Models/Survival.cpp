// What stranded people build: shelters, scrap fences, supplies, a fire.

#include "Tools/ContentBuilder/Models/AssetModels.h"
#include "Tools/ContentBuilder/Models/Lantern.h"
#include "Tools/ContentBuilder/Models/Masonry.h"
#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace content
{

namespace
{

/// A cloth between rows of points, seen from both sides; it sags between them.
void addCloth(ModelMesh& mesh, const std::array<glm::vec3, 4>& arrCorners, float fSag, int iParts)
{
    for (const bool bBack : {false, true})
    {
        Solid cloth;
        for (int iV = 0; iV <= iParts; ++iV)
            for (int iU = 0; iU <= iParts; ++iU)
            {
                const float u = static_cast<float>(iU) / static_cast<float>(iParts);
                const float v = static_cast<float>(iV) / static_cast<float>(iParts);
                glm::vec3 point = glm::mix(glm::mix(arrCorners[0], arrCorners[1], u),
                                           glm::mix(arrCorners[3], arrCorners[2], u), v);
                point.y -= fSag * 16.0f * u * (1.0f - u) * v * (1.0f - v) + (bBack ? 0.08f : 0.0f);
                cloth.vecPoints.push_back(point);
            }
        for (int iV = 0; iV < iParts; ++iV)
            for (int iU = 0; iU < iParts; ++iU)
            {
                const int a = iV * (iParts + 1) + iU;
                const int b = a + iParts + 1;
                if (bBack)
                    cloth.quad(a, b, b + 1, a + 1);
                else
                    cloth.quad(a, a + 1, b + 1, b);
            }
        mesh.add("Cloth", cloth, {.fSmooth = 80.0f, .fTile = 5.0f});
    }
}

void addPole(ModelMesh& mesh, const glm::vec3& from, const glm::vec3& to, float fRadius, uint32_t uSeed)
{
    addLog(mesh, from, to, fRadius, uSeed, 6);
}

void makeTent(ModelMesh& mesh)
{
    for (const float fX : {-5.0f, 5.0f})
    {
        addPole(mesh, {fX, -0.5f, -4.4f}, {fX, 8.2f, 0.35f}, 0.24f, fX > 0 ? 901u : 902u);
        addPole(mesh, {fX, -0.5f, 4.4f}, {fX, 8.2f, -0.35f}, 0.24f, fX > 0 ? 903u : 904u);
    }
    addPole(mesh, {-5.8f, 7.6f, 0.0f}, {5.8f, 7.6f, 0.0f}, 0.26f, 905);
    addCloth(mesh, {{{-5.3f, 0.2f, 4.9f}, {5.3f, 0.2f, 4.9f}, {5.3f, 7.95f, 0.05f}, {-5.3f, 7.95f, 0.05f}}},
             0.22f, 5);
    addCloth(mesh,
             {{{5.3f, 0.2f, -4.9f}, {-5.3f, 0.2f, -4.9f}, {-5.3f, 7.95f, -0.05f}, {5.3f, 7.95f, -0.05f}}},
             0.22f, 5);
    for (const float fX : {-5.3f, 0.0f, 5.3f})
        for (const float fZ : {-5.6f, 5.6f})
            addTimber(mesh, {fX, -0.4f, fZ * 0.96f}, {fX, 0.7f, fZ}, 0.24f, 0.24f, 906, "Trim", {1, 0, 0},
                      0.0f);
}

void makeLeanTo(ModelMesh& mesh)
{
    for (const float fX : {-6.0f, 6.0f})
    {
        addPole(mesh, {fX, -0.6f, 3.2f}, {fX, 8.6f, 3.2f}, 0.36f, fX > 0 ? 911u : 912u);
        addPole(mesh, {fX, 8.6f, 3.7f}, {fX, -0.3f, -6.6f}, 0.3f, fX > 0 ? 913u : 914u);
    }
    addPole(mesh, {-7.0f, 8.4f, 3.2f}, {7.0f, 8.4f, 3.2f}, 0.34f, 915);
    constexpr int s_iRows = 7;
    for (int i = 0; i < s_iRows; ++i)
    {
        const float t = (static_cast<float>(i) + 0.5f) / s_iRows;
        Dice dice(916u + static_cast<uint32_t>(i));
        const glm::vec3 at = glm::mix(glm::vec3(0.0f, 0.5f, -6.5f), glm::vec3(0.0f, 8.9f, 3.6f), t);
        mesh.add("Wood", barSolid(at - glm::vec3(6.8f + dice.roll(-0.3f, 0.3f), 0.0f, 0.0f),
                                  at + glm::vec3(6.8f + dice.roll(-0.3f, 0.3f), dice.roll(-0.1f, 0.1f), 0.0f),
                                  {.fWide = 1.98f,
                                   .fHigh = 0.28f,
                                   .fCrooked = 0.16f,
                                   .uSeed = 930u + static_cast<uint32_t>(i),
                                   .up = {0.0f, 1.0f, -0.83f}}));
    }
}

void makeScrapPanel(ModelMesh& mesh, const glm::vec3& lowest, const glm::vec3& highest, float fTurn,
                    uint32_t uSeed)
{
    // A sheet with folds along its height.
    constexpr int s_iFolds = 8;
    const glm::vec3 size = highest - lowest;
    for (const bool bBack : {false, true})
    {
        Solid sheet;
        for (int i = 0; i <= s_iFolds; ++i)
            for (const float fY : {0.0f, size.y})
                sheet.vecPoints.emplace_back(size.x * (static_cast<float>(i) / s_iFolds - 0.5f), fY,
                                             (i % 2 == 0 ? 0.2f : -0.2f) + (bBack ? -0.05f : 0.0f));
        for (int i = 0; i < s_iFolds; ++i)
        {
            const int a = 2 * i;
            if (bBack)
                sheet.quad(a, a + 1, a + 3, a + 2);
            else
                sheet.quad(a, a + 2, a + 3, a + 1);
        }
        sheet.turnZ(fTurn).move(0.5f * (lowest.x + highest.x), lowest.y, 0.5f * (lowest.z + highest.z));
        mesh.add("Metal", sheet,
                 {.fSmooth = 10.0f, .fTile = 6.0f, .offset = {hash(1, 1, uSeed), hash(1, 2, uSeed)}});
    }
}

void makeScrapWall(ModelMesh& mesh)
{
    for (const float fX : {-7.6f, -2.4f, 2.8f, 7.6f})
        addPole(mesh, {fX, -0.6f, -0.4f}, {fX, 11.6f + hash(static_cast<int>(fX), 1, 941), -0.4f}, 0.36f,
                941u + static_cast<uint32_t>(fX + 10.0f));
    addTimber(mesh, {-8.0f, 3.0f, -0.1f}, {8.0f, 3.2f, -0.1f}, 0.7f, 0.3f, 945);
    addTimber(mesh, {-8.0f, 8.6f, -0.1f}, {8.0f, 8.4f, -0.1f}, 0.7f, 0.3f, 946);
    makeScrapPanel(mesh, {-8.0f, 0.2f, 0.3f}, {-2.3f, 10.6f, 0.3f}, 1.5f, 947);
    makeScrapPanel(mesh, {-2.6f, 0.1f, 0.5f}, {2.9f, 9.8f, 0.5f}, -1.0f, 948);
    makeScrapPanel(mesh, {2.6f, 0.3f, 0.3f}, {7.9f, 11.2f, 0.3f}, 0.8f, 949);
    for (int i = 0; i < 3; ++i)
        addTimber(mesh, {-1.8f + 1.3f * static_cast<float>(i), 5.6f, 0.75f},
                  {-1.9f + 1.35f * static_cast<float>(i), 11.8f - static_cast<float>(i), 0.75f}, 1.1f, 0.24f,
                  950u + static_cast<uint32_t>(i), "Wood");
}

void makeScrapFence(ModelMesh& mesh)
{
    for (const float fX : {-3.8f, 3.8f})
        addPole(mesh, {fX, -0.6f, 0.0f}, {fX, 5.4f, 0.0f}, 0.3f, fX > 0 ? 961u : 962u);
    makeScrapPanel(mesh, {-4.0f, 0.2f, 0.4f}, {0.4f, 4.5f, 0.4f}, 1.2f, 963);
    makeScrapPanel(mesh, {0.1f, 0.3f, 0.5f}, {4.1f, 4.8f, 0.5f}, -1.6f, 964);
    addTimber(mesh, {-4.3f, 3.4f, 0.72f}, {4.3f, 3.7f, 0.72f}, 0.6f, 0.22f, 965, "Wood");
}

void makeStakes(ModelMesh& mesh)
{
    addPole(mesh, {-4.2f, 2.4f, 0.0f}, {4.2f, 2.4f, 0.0f}, 0.34f, 971);
    for (int i = 0; i < 6; ++i)
    {
        const float fX = -3.5f + 1.4f * static_cast<float>(i);
        const float fSide = i % 2 == 0 ? 1.0f : -1.0f;
        const glm::vec3 from(fX, -0.4f, -2.0f * fSide);
        const glm::vec3 to(fX, 4.2f, 1.6f * fSide);
        addPole(mesh, from, to, 0.26f, 972u + static_cast<uint32_t>(i));
        const std::array arrPath{to, to + glm::normalize(to - from) * 0.9f};
        const std::array arrRadii{0.24f, 0.01f};
        mesh.add("Wood", tubeSolid(arrPath, arrRadii, 6, 4.0f), {.fSmooth = 60.0f});
    }
}

void makeSteelBarrel(ModelMesh& mesh)
{
    std::vector<glm::vec2> vecProfile{{0.0f, 0.05f}, {1.35f, 0.0f}, {1.45f, 0.08f}};
    for (const float fY : {1.45f, 2.95f})
        for (const glm::vec2& point : {glm::vec2(1.42f, fY - 0.16f), {1.55f, fY}, {1.42f, fY + 0.16f}})
            vecProfile.push_back(point);
    for (const glm::vec2& point :
         {glm::vec2(1.42f, 4.3f), {1.5f, 4.36f}, {1.5f, 4.5f}, {1.36f, 4.5f}, {1.34f, 4.34f}, {0.0f, 4.34f}})
        vecProfile.push_back(point);
    mesh.add("Metal", latheSolid(vecProfile, 14, 5.0f), {.fSmooth = 32.0f});
    const std::array<glm::vec2, 3> arrCap{glm::vec2(0.26f, 4.3f), {0.26f, 4.46f}, {0.0f, 4.46f}};
    mesh.add("Trim", latheSolid(arrCap, 8).move(0.75f, 0.0f, 0.2f), {.fSmooth = 30.0f});
}

void makeSupplyCrate(ModelMesh& mesh)
{
    mesh.add("Cloth", boxSolid({6.0f, 3.0f, 3.6f}, 0.3f), {.fSmooth = 30.0f, .fTile = 5.0f});
    mesh.add("Cloth", boxSolid({6.2f, 0.8f, 3.8f}, 0.22f).move(0.0f, 2.7f, 0.0f),
             {.fSmooth = 30.0f, .fTile = 5.0f});
    for (const float fX : {-1.9f, 1.9f})
    {
        mesh.add("Metal", boxSolid({0.5f, 3.55f, 3.98f}, 0.06f).move(fX, -0.02f, 0.0f), {.fSmooth = 30.0f});
        mesh.add("Metal", boxSolid({0.8f, 0.8f, 0.3f}, 0.08f).move(fX, 2.2f, 1.95f), {.fSmooth = 30.0f});
    }
    for (const float fSide : {-1.0f, 1.0f})
    {
        const std::array arrGrip{glm::vec3(3.0f * fSide, 1.7f, -0.7f), glm::vec3(3.45f * fSide, 1.6f, -0.6f),
                                 glm::vec3(3.45f * fSide, 1.6f, 0.6f), glm::vec3(3.0f * fSide, 1.7f, 0.7f)};
        const std::array arrRadii{0.12f, 0.12f, 0.12f, 0.12f};
        mesh.add("Trim", tubeSolid(arrGrip, arrRadii, 5), {.fSmooth = 60.0f});
    }
}

void makeCanister(ModelMesh& mesh)
{
    mesh.add("Metal", boxSolid({1.7f, 2.3f, 0.85f}, 0.2f), {.fSmooth = 35.0f, .fTile = 4.0f});
    for (const float fZ : {-0.36f, 0.36f})
        mesh.add("Metal", boxSolid({1.1f, 1.4f, 0.2f}, 0.09f).move(0.0f, 0.4f, fZ),
                 {.fSmooth = 30.0f, .fTile = 4.0f});
    const std::array arrGrip{glm::vec3(-0.6f, 2.2f, 0.0f), glm::vec3(-0.5f, 2.62f, 0.0f),
                             glm::vec3(0.25f, 2.62f, 0.0f), glm::vec3(0.35f, 2.2f, 0.0f)};
    const std::array arrRadii{0.1f, 0.1f, 0.1f, 0.1f};
    mesh.add("Trim", tubeSolid(arrGrip, arrRadii, 6), {.fSmooth = 60.0f});
    const std::array<glm::vec2, 3> arrCap{glm::vec2(0.2f, 2.2f), {0.2f, 2.62f}, {0.0f, 2.62f}};
    mesh.add("Trim", latheSolid(arrCap, 8).move(0.62f, 0.0f, 0.0f), {.fSmooth = 30.0f});
}

void makeCampfire(ModelMesh& mesh)
{
    for (int i = 0; i < 9; ++i)
    {
        const float fAngle = 0.698f * static_cast<float>(i);
        addRock(
            mesh,
            {.size = {1.3f, 0.8f, 1.0f}, .iLevel = 1, .uSeed = 981u + static_cast<uint32_t>(i), .iCuts = 9},
            {2.0f * std::cos(fAngle), 0.0f, 2.0f * std::sin(fAngle)}, 57.3f * fAngle);
    }
    for (int i = 0; i < 5; ++i)
    {
        const float fAngle = 1.2566f * static_cast<float>(i) + 0.3f;
        const glm::vec3 out(std::cos(fAngle), 0.0f, std::sin(fAngle));
        addPole(mesh, out * 1.45f + glm::vec3(0, 0.15f, 0), out * 0.12f + glm::vec3(0, 1.5f, 0), 0.2f,
                991u + static_cast<uint32_t>(i));
    }
    addFlame(mesh, {0.0f, 0.3f, 0.0f}, 1.6f);
}

void makeCampLamp(ModelMesh& mesh)
{
    addPole(mesh, {0.0f, -0.6f, 0.0f}, {0.2f, 9.4f, 0.0f}, 0.3f, 995);
    addPole(mesh, {-0.5f, 8.6f, 0.0f}, {2.6f, 9.2f, 0.0f}, 0.2f, 996);
    const std::array arrRope{glm::vec3(2.2f, 9.2f, 0.0f), glm::vec3(2.2f, 8.2f, 0.0f)};
    const std::array arrRadii{0.05f, 0.05f};
    mesh.add("Metal", tubeSolid(arrRope, arrRadii, 4));
    addLantern(mesh, {2.2f, 6.2f, 0.0f}, 0.95f);
}

void makeLogBridge(ModelMesh& mesh)
{
    const std::array<float, 3> arrZ{-1.9f, 0.0f, 1.9f};
    for (size_t u = 0; u < arrZ.size(); ++u)
        addLog(mesh, {-16.4f + 0.4f * static_cast<float>(u), 0.95f, arrZ[u]},
               {16.2f - 0.3f * static_cast<float>(u), 1.0f, arrZ[u] + 0.15f}, 1.0f,
               1001u + static_cast<uint32_t>(u), 9);
    for (const float fX : {-13.5f, -4.5f, 4.5f, 13.5f})
    {
        addTimber(mesh, {fX, 1.98f, -3.0f}, {fX + 0.2f, 1.98f, 3.0f}, 0.7f, 0.35f, 1004, "Wood", {0, 1, 0},
                  0.05f);
        addPole(mesh, {fX, -0.3f, 3.05f}, {fX, 6.0f, 3.15f}, 0.26f,
                1005u + static_cast<uint32_t>(fX + 20.0f));
    }
    addPole(mesh, {-15.0f, 5.4f, 3.2f}, {15.0f, 5.5f, 3.2f}, 0.2f, 1010);
}

} // namespace

std::vector<AssetModel> campModels()
{
    return {
        {"env_camp_tent_01", &makeTent, {{"Cloth", "B7AE86"}}},
        {"env_camp_leanto_01", &makeLeanTo, {{"Wood", "A89880"}}},
        {"env_camp_scrap_wall_4m_01", &makeScrapWall, {{"Metal", "8F8578"}}},
    };
}

std::vector<AssetModel> scrapFenceModels()
{
    return {
        {"env_fence_scrap_2m_01", &makeScrapFence, {{"Metal", "95897A"}}},
        {"env_fence_stakes_2m_01", &makeStakes, {}},
    };
}

std::vector<AssetModel> supplyModels()
{
    return {
        {"env_barrel_steel_01", &makeSteelBarrel, {{"Metal", "7F9099"}}},
        {"env_crate_supply_01", &makeSupplyCrate, {{"Cloth", "8F9470"}}},
        {"env_canister_01", &makeCanister, {{"Metal", "A8776A"}}},
    };
}

std::vector<AssetModel> campLampModels()
{
    return {
        {"env_lamp_campfire_01", &makeCampfire, {{"Glow", "FFA850"}}},
        {"env_lamp_camp_01", &makeCampLamp, {}},
    };
}

std::vector<AssetModel> logBridgeModels()
{
    return {{"env_bridge_log_8m_01", &makeLogBridge, {}}};
}

} // namespace content
