// Lanterns, torches and a brazier.

#include "Tools/ContentBuilder/Models/Lantern.h"

#include "Tools/ContentBuilder/Models/AssetModels.h"
#include "Tools/ContentBuilder/Models/Masonry.h"
#include "Tools/ContentBuilder/Noise.h"

#include <glm/common.hpp>

namespace content
{

void addLantern(ModelMesh& mesh, const glm::vec3& foot, float fSize)
{
    const auto at = [&](const Solid& solid) { return Solid(solid).scale(glm::vec3(fSize)).move(foot); };
    mesh.add("Metal", at(boxSolid({1.1f, 0.18f, 1.1f}, 0.05f)));
    mesh.add("Glow", at(boxSolid({0.72f, 1.2f, 0.72f}, 0.12f).move(0.0f, 0.16f, 0.0f)),
             {.fSmooth = 60.0f, .fTile = 2.0f});
    for (const float fX : {-0.44f, 0.44f})
        for (const float fZ : {-0.44f, 0.44f})
            mesh.add("Metal", at(boxSolid({0.12f, 1.3f, 0.12f}).move(fX, 0.12f, fZ)));
    const std::array<glm::vec2, 5> arrRoof{
        glm::vec2(0.0f, 1.36f), {0.88f, 1.34f}, {0.84f, 1.46f}, {0.26f, 1.86f}, {0.0f, 1.98f}};
    mesh.add("Metal", at(latheSolid(arrRoof, 4, 4.0f).turnY(45.0f)), {.fSmooth = 20.0f});
    const std::array arrRing{glm::vec3(-0.16f, 1.9f, 0.0f), glm::vec3(-0.14f, 2.16f, 0.0f),
                             glm::vec3(0.14f, 2.16f, 0.0f), glm::vec3(0.16f, 1.9f, 0.0f)};
    const std::array arrRadii{0.045f, 0.045f, 0.045f, 0.045f};
    mesh.add("Metal", at(tubeSolid(arrRing, arrRadii, 4)), {.fSmooth = 60.0f});
}

void addFlame(ModelMesh& mesh, const glm::vec3& foot, float fSize)
{
    for (int i = 0; i < 3; ++i)
    {
        const std::array<glm::vec2, 5> arrFlame{
            glm::vec2(0.0f, 0.0f), {0.34f, 0.25f}, {0.3f, 0.6f}, {0.12f, 1.1f}, {0.0f, 1.5f}};
        Solid tongue = latheSolid(arrFlame, 6, 2.0f);
        const float fTurn = 120.0f * static_cast<float>(i);
        tongue.scale(glm::vec3(fSize * (i == 0 ? 1.1f : 0.75f)))
            .turnZ(i == 0 ? 4.0f : -14.0f)
            .move(i == 0 ? 0.0f : 0.28f * fSize, 0.0f, 0.0f)
            .turnY(fTurn)
            .move(foot);
        mesh.add("Glow", tongue, {.fSmooth = 60.0f});
    }
}

namespace
{

void makePostLamp(ModelMesh& mesh)
{
    addBlock(mesh, {-0.9f, -0.5f, -0.9f}, {0.9f, 0.7f, 0.9f}, 701, 0.18f);
    addTimber(mesh, {0, 0.5f, 0}, {0, 12.2f, 0}, 0.72f, 0.72f, 702, "Wood", {0, 0, 1}, 0.12f);
    addTimber(mesh, {-0.6f, 11.4f, 0}, {3.2f, 11.4f, 0}, 0.5f, 0.5f, 703, "Wood", {0, 1, 0}, 0.08f);
    addTimber(mesh, {0.2f, 9.6f, 0}, {1.9f, 11.3f, 0}, 0.4f, 0.4f, 704, "Wood", {0, 0, 1}, 0.05f);
    const std::array arrHook{glm::vec3(2.7f, 11.2f, 0), glm::vec3(2.7f, 10.6f, 0)};
    const std::array arrRadii{0.06f, 0.06f};
    mesh.add("Metal", tubeSolid(arrHook, arrRadii, 5));
    addLantern(mesh, {2.7f, 8.4f, 0.0f}, 1.05f);
}

void makeWallLamp(ModelMesh& mesh)
{
    // Its back lies on a wall at z = 0; the origin is at the plate's foot.
    mesh.add("Metal", boxSolid({0.7f, 2.6f, 0.16f}, 0.05f).move(0.0f, 0.0f, 0.08f));
    const std::array arrArm{glm::vec3(0, 0.5f, 0.1f), glm::vec3(0, 1.5f, 0.9f), glm::vec3(0, 2.3f, 1.3f),
                            glm::vec3(0, 2.4f, 1.7f)};
    const std::array arrRadii{0.1f, 0.1f, 0.09f, 0.08f};
    mesh.add("Metal", tubeSolid(arrArm, arrRadii, 6), {.fSmooth = 60.0f});
    addLantern(mesh, {0.0f, 0.3f, 1.7f}, 0.95f);
}

void makeStoneLantern(ModelMesh& mesh)
{
    addBlock(mesh, {-1.5f, -0.5f, -1.5f}, {1.5f, 0.6f, 1.5f}, 711, 0.18f);
    const std::array<glm::vec2, 5> arrShaft{
        glm::vec2(0.95f, 0.5f), {0.7f, 1.0f}, {0.62f, 3.6f}, {0.95f, 4.0f}, {0.95f, 4.1f}};
    mesh.add("Stone", latheSolid(arrShaft, 8), {.fSmooth = 35.0f});
    addBlock(mesh, {-1.25f, 4.0f, -1.25f}, {1.25f, 4.5f, 1.25f}, 712, 0.1f);
    for (const float fX : {-0.9f, 0.9f})
        for (const float fZ : {-0.9f, 0.9f})
            addBlock(mesh, {fX - 0.22f, 4.4f, fZ - 0.22f}, {fX + 0.22f, 6.1f, fZ + 0.22f}, 713, 0.05f);
    mesh.add("Glow", boxSolid({1.3f, 1.5f, 1.3f}, 0.2f).move(0.0f, 4.5f, 0.0f),
             {.fSmooth = 60.0f, .fTile = 3.0f});
    const std::array<glm::vec2, 5> arrRoof{
        glm::vec2(0.0f, 6.0f), {2.3f, 6.0f}, {2.2f, 6.35f}, {0.6f, 7.4f}, {0.0f, 7.6f}};
    mesh.add("Stone", latheSolid(arrRoof, 4).turnY(45.0f), {.fSmooth = 20.0f});
    Solid ball = ballSolid(1);
    mesh.add("Stone", ball.scale(glm::vec3(0.42f)).move(0.0f, 7.75f, 0.0f), {.fSmooth = 180.0f});
}

void makeTorch(ModelMesh& mesh)
{
    addTimber(mesh, {0, -0.6f, 0}, {0, 7.0f, 0}, 0.42f, 0.42f, 721, "Wood", {0, 0, 1}, 0.1f);
    const std::array<glm::vec2, 4> arrBasket{
        glm::vec2(0.25f, 6.3f), {0.55f, 7.1f}, {0.45f, 7.15f}, {0.0f, 6.9f}};
    mesh.add("Metal", latheSolid(arrBasket, 8), {.fSmooth = 40.0f});
    addFlame(mesh, {0.0f, 6.95f, 0.0f}, 1.0f);
}

void makeBrazier(ModelMesh& mesh)
{
    const std::array<glm::vec2, 5> arrBowl{
        glm::vec2(0.4f, 2.6f), {1.3f, 3.0f}, {1.8f, 3.9f}, {1.62f, 3.95f}, {1.1f, 3.3f}};
    mesh.add("Metal", latheSolid(arrBowl, 10), {.fSmooth = 35.0f});
    const std::array<glm::vec2, 2> arrCoal{glm::vec2(1.45f, 3.5f), {0.0f, 3.75f}};
    mesh.add("Glow", latheSolid(arrCoal, 10));
    for (int i = 0; i < 3; ++i)
    {
        const float fAngle = 2.0943951f * static_cast<float>(i);
        const glm::vec3 out(std::cos(fAngle), 0.0f, std::sin(fAngle));
        mesh.add("Metal", barSolid(out * 1.5f - glm::vec3(0, 0.2f, 0), out * 0.75f + glm::vec3(0, 3.1f, 0),
                                   {.fWide = 0.22f, .fHigh = 0.22f, .uSeed = 731}));
    }
    addFlame(mesh, {0.0f, 3.55f, 0.0f}, 1.5f);
}

} // namespace

std::vector<AssetModel> lampModels()
{
    return {
        {"env_lamp_post_01", &makePostLamp, {}},
        {"env_lamp_wall_01", &makeWallLamp, {}},
        {"env_lamp_lantern_01", [](ModelMesh& mesh) { addLantern(mesh, glm::vec3(0.0f), 1.0f); }, {}},
        {"env_lamp_stone_01", &makeStoneLantern, {}},
        {"env_lamp_torch_01", &makeTorch, {{"Glow", "FFB45C"}}},
        {"env_lamp_brazier_01", &makeBrazier, {{"Glow", "FFAA52"}}},
    };
}

} // namespace content
