#include "Tools/ContentBuilder/Assets.h"
#include "Tools/ContentBuilder/Noise.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/gtc/matrix_transform.hpp>

namespace content
{

namespace
{

ModelShape::Paint maps(const std::string& sName, const std::string& sSlot = "")
{
    return {"$GAME_DATA/Terrain/Assets/Materials/ast_" + sName, sSlot};
}

void largeRock(ModelShape& shape)
{
    shape.material("stone", maps("stone", "stone"));
    shape.lump({0, 8, 0}, {14, 15, 11}, 3, 0.34f, 0.75f, 11, -1.0f);
    shape.lump({11, 3, 5}, {7, 6.5f, 6}, 2, 0.3f, 0.75f, 15, -1.0f);
    shape.lump({-10, 2, 6}, {5, 4.5f, 5}, 2, 0.3f, 0.75f, 19, -1.0f);
}

void smallRock(ModelShape& shape)
{
    shape.material("stone", maps("stone", "stone"));
    shape.lump({0, 1.6f, 0}, {3.4f, 2.8f, 2.9f}, 2, 0.34f, 0.75f, 24, -0.4f);
}

void oak(ModelShape& shape)
{
    shape.material("bark", maps("bark"));
    shape.tube({{0, -0.5f, 0, 2.6f},
                {0, 2, 0.1f, 1.75f},
                {0.4f, 8, 0.3f, 1.35f},
                {0.1f, 15, 0.6f, 1.1f},
                {0.4f, 20, 0.2f, 0.7f}},
               8);
    shape.tube({{0.3f, 10, 0.3f, 0.8f}, {3.5f, 14, 1.2f, 0.6f}, {6, 18, 2, 0.4f}}, 6);
    shape.tube({{0.2f, 11.5f, 0.4f, 0.75f}, {-3.2f, 15, -1.6f, 0.55f}, {-5.5f, 19, -3, 0.4f}}, 6);
    shape.tube({{0.2f, 13, 0.4f, 0.65f}, {-0.6f, 16.5f, 3.6f, 0.5f}, {-1.2f, 19, 5.4f, 0.35f}}, 6);
    shape.material("leaves", maps("leaves", "leaves"));
    shape.lump({0.5f, 25, 0}, {7.6f, 6.2f, 7.4f}, 3, 0.26f, 0.35f, 31);
    shape.lump({6.5f, 20, 2.4f}, {5.6f, 4.6f, 5.4f}, 2, 0.26f, 0.35f, 32);
    shape.lump({-6.2f, 21, -3}, {5.6f, 4.8f, 5.2f}, 2, 0.26f, 0.35f, 33);
    shape.lump({-1.5f, 20.5f, 6.4f}, {5.2f, 4.2f, 4.8f}, 2, 0.26f, 0.35f, 34);
    shape.lump({2.6f, 21, -6}, {4.8f, 4.2f, 4.6f}, 2, 0.26f, 0.35f, 35);
}

void pine(ModelShape& shape)
{
    shape.material("bark", maps("bark"));
    shape.tube({{0, -0.5f, 0, 1.7f}, {0, 2, 0, 1.1f}, {0.2f, 16, 0.1f, 0.7f}, {0.1f, 34, 0, 0.2f}}, 7);
    shape.material("needles", maps("leaves", "needles"));
    Dice dice(41);
    for (int i = 0; i < 6; ++i)
    {
        const auto f = static_cast<float>(i);
        const float fLow = 6.0f + f * 5.2f;
        const float fWide = 8.2f - f * 1.2f;
        const float fHigh = 8.6f - f * 0.55f;
        const glm::mat4 turn = glm::rotate(glm::mat4(1.0f), dice.roll(0.0f, 6.0f), {0, 1, 0});
        shape.place(glm::translate(glm::mat4(1.0f), {dice.roll(-0.3f, 0.3f), fLow, dice.roll(-0.3f, 0.3f)}) *
                    turn);
        shape.lathe({{fWide * 0.45f, 0.9f}, {fWide, -0.5f}, {fWide * 0.62f, fHigh * 0.42f}, {0.15f, fHigh}},
                    11, 70.0f, 0.13f, 50 + static_cast<uint32_t>(i));
    }
    shape.place(glm::mat4(1.0f));
}

void fence(ModelShape& shape)
{
    shape.material("posts", maps("wood"));
    for (const float fX : {-8.0f, 0.0f, 8.0f})
    {
        shape.box({fX - 0.45f, -1.5f, -0.45f}, {fX + 0.45f, 4.9f, 0.45f}, 0.12f);
    }
    shape.material("rails", maps("painted", "paint"));
    Dice dice(61);
    for (const float fY : {1.3f, 2.7f, 4.1f})
        for (const float fX : {-8.0f, 0.0f})
            shape.beam({fX - 0.3f, fY + dice.roll(-0.12f, 0.12f), 0.55f},
                       {fX + 8.3f, fY + dice.roll(-0.12f, 0.12f), 0.55f}, 0.24f, 0.72f, 0.06f);
}

void crate(ModelShape& shape)
{
    constexpr float s_fHalf = 2.0f;
    shape.material("boards", maps("painted", "paint"));
    shape.box({-s_fHalf + 0.18f, 0.18f, -s_fHalf + 0.18f}, {s_fHalf - 0.18f, 3.82f, s_fHalf - 0.18f}, 0.02f);
    shape.material("frame", maps("wood"));
    for (int iAxis = 0; iAxis < 3; ++iAxis)
        for (const float fU : {-1.0f, 1.0f})
            for (const float fV : {-1.0f, 1.0f})
            {
                glm::vec3 from(0.0f);
                glm::vec3 to(0.0f);
                from[iAxis] = -s_fHalf;
                to[iAxis] = s_fHalf;
                from[(iAxis + 1) % 3] = to[(iAxis + 1) % 3] = fU * (s_fHalf - 0.27f);
                from[(iAxis + 2) % 3] = to[(iAxis + 2) % 3] = fV * (s_fHalf - 0.27f);
                from.y += s_fHalf;
                to.y += s_fHalf;
                shape.beam(from, to, 0.54f, 0.54f, 0.07f);
            }
    for (const float fSide : {-1.0f, 1.0f})
    {
        shape.beam({-1.4f, 0.6f, fSide * 1.86f}, {1.4f, 3.4f, fSide * 1.86f}, 0.24f, 0.5f, 0.05f);
        shape.beam({fSide * 1.86f, 0.6f, 1.4f}, {fSide * 1.86f, 3.4f, -1.4f}, 0.5f, 0.24f, 0.05f);
    }
}

void barrel(ModelShape& shape)
{
    shape.material("staves", maps("wood", "wood"));
    shape.lathe({{1.18f, 0}, {1.42f, 1.0f}, {1.5f, 1.9f}, {1.42f, 2.8f}, {1.18f, 3.8f}}, 14, 60.0f);
    shape.material("lid", maps("wood"));
    shape.lathe({{1.18f, 3.8f}, {1.06f, 3.8f}, {1.06f, 3.62f}, {0.0f, 3.62f}}, 14, 10.0f);
    shape.lathe({{0.0f, 0.02f}, {1.18f, 0.0f}}, 14, 10.0f);
    shape.material("hoops", maps("metal"));
    for (const float fY : {0.35f, 1.15f, 2.4f, 3.2f})
    {
        const auto radius = [](float f)
        { return 1.18f + 0.32f * (1.0f - std::pow((f - 1.9f) / 1.9f, 2.0f)) + 0.05f; };
        shape.lathe({{radius(fY) - 0.1f, fY},
                     {radius(fY), fY},
                     {radius(fY + 0.3f), fY + 0.3f},
                     {radius(fY + 0.3f) - 0.1f, fY + 0.3f}},
                    14, 20.0f);
    }
}

void lamp(ModelShape& shape)
{
    shape.material("foot", maps("stone", "stone"));
    shape.box({-1.3f, -0.5f, -1.3f}, {1.3f, 1.1f, 1.3f}, 0.25f);
    shape.material("post", maps("wood"));
    shape.box({-0.42f, 1.0f, -0.42f}, {0.42f, 13.5f, 0.42f}, 0.12f);
    shape.beam({-0.4f, 12.6f, 0}, {3.6f, 12.6f, 0}, 0.55f, 0.55f, 0.08f);
    shape.beam({0.3f, 10.4f, 0}, {2.4f, 12.4f, 0}, 0.4f, 0.4f, 0.06f);
    shape.material("lantern", maps("metal"));
    shape.tube({{3.1f, 12.4f, 0, 0.06f}, {3.1f, 11.6f, 0, 0.06f}}, 5);
    const glm::mat4 hung = glm::translate(glm::mat4(1.0f), {3.1f, 9.4f, 0});
    shape.place(hung);
    shape.lathe({{0.75f, 0.0f}, {0.75f, 0.2f}, {0.62f, 0.2f}}, 6, 10.0f);
    shape.lathe({{0.62f, 1.7f}, {0.95f, 1.7f}, {0.5f, 2.1f}, {0.12f, 2.35f}, {0.0f, 2.4f}}, 6, 10.0f);
    for (int i = 0; i < 6; ++i)
    {
        const float fAngle = static_cast<float>(i) * 1.0472f;
        const glm::vec3 foot(std::cos(fAngle) * 0.6f, 0.15f, std::sin(fAngle) * 0.6f);
        shape.beam(foot, foot + glm::vec3(0, 1.6f, 0), 0.1f, 0.1f, 0.0f);
    }
    shape.material("glass", maps("painted", "light"));
    shape.lathe({{0.5f, 0.2f}, {0.52f, 1.7f}}, 6, 10.0f);
    shape.place(glm::mat4(1.0f));
}

void stoneWall(ModelShape& shape)
{
    shape.material("stone", maps("stone", "stone"));
    Dice dice(71);
    // Courses of rough blocks, the joints of each shifted against the last.
    for (int iRow = 0; iRow < 4; ++iRow)
    {
        const float fY = -1.0f + static_cast<float>(iRow) * 1.55f;
        float fX = -8.0f;
        float fWide = iRow % 2 ? 1.6f : 2.6f;
        while (fX < 7.99f)
        {
            const float fEnd = 8.0f - fX - fWide < 1.2f ? 8.0f : fX + fWide;
            const float fOut = dice.roll(-0.14f, 0.14f);
            shape.box({fX + 0.05f, fY, -0.95f - fOut}, {fEnd - 0.05f, fY + 1.5f, 0.95f + fOut}, 0.24f);
            fX = fEnd;
            fWide = dice.roll(2.0f, 3.4f);
        }
    }
    shape.material("cap", maps("stone", "cap"));
    for (int i = 0; i < 5; ++i)
    {
        const float fX = -8.0f + static_cast<float>(i) * 3.2f;
        shape.box({fX + 0.03f, 5.2f, -1.25f}, {fX + 3.17f, 5.85f, 1.25f}, 0.2f);
    }
}

constexpr std::array<AssetModel, 9> s_arrModels = {{
    {"$GAME_DATA", "Data", "Terrain/Assets/Nature/env_rock_granite_large_01", largeRock},
    {"$GAME_DATA", "Data", "Terrain/Assets/Nature/env_rock_granite_small_01", smallRock},
    {"$GAME_DATA", "Data", "Terrain/Assets/Nature/env_tree_oak_01", oak},
    {"$GAME_DATA", "Data", "Terrain/Assets/Nature/env_tree_pine_01", pine},
    {"$GAME_DATA", "Data", "Terrain/Assets/Village/vil_fence_plank_01", fence},
    {"$GAME_DATA", "Data", "Terrain/Assets/Village/vil_wall_stone_01", stoneWall},
    {"$GAME_DATA", "Data", "Terrain/Assets/Village/vil_lamp_post_01", lamp},
    {"$SURVIVAL_DATA", "Survival", "Terrain/Assets/Camp/cmp_crate_wood_01", crate},
    {"$SURVIVAL_DATA", "Survival", "Terrain/Assets/Camp/cmp_barrel_wood_01", barrel},
}};

} // namespace

std::span<const AssetModel> assetModels()
{
    return s_arrModels;
}

} // namespace content
