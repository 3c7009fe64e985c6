#include "Tools/ContentBuilder/Models/Figures.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace content
{

namespace
{

void addTube(ModelMesh& mesh, const char* pMaterial, std::initializer_list<glm::vec3> listPath,
             std::initializer_list<float> listRadii, int iSides = 8)
{
    const std::vector<glm::vec3> vecPath(listPath);
    const std::vector<float> vecRadii(listRadii);
    mesh.add(pMaterial, tubeSolid(vecPath, vecRadii, iSides), {.fSmooth = 70.0f});
}

/// A person of 1.8 m who stands at ease and looks along +Z.
void makeCharacter(ModelMesh& mesh)
{
    const auto flat = [](Solid solid, float fDeep) { return solid.scale({1.0f, 1.0f, fDeep}); };
    for (const float fSide : {-1.0f, 1.0f})
    {
        mesh.add("boots", boxSolid({0.46f, 0.4f, 1.02f}, 0.12f).move(0.46f * fSide, 0.0f, 0.17f),
                 {.fSmooth = 50.0f});
        addTube(mesh, "boots",
                {{0.46f * fSide, 0.2f, 0.0f}, {0.45f * fSide, 1.3f, -0.04f}, {0.45f * fSide, 1.5f, -0.04f}},
                {0.25f, 0.3f, 0.34f});
        addTube(mesh, "trousers",
                {{0.45f * fSide, 1.3f, -0.04f}, {0.43f * fSide, 2.0f, 0.02f}, {0.4f * fSide, 3.5f, 0.0f}},
                {0.27f, 0.3f, 0.44f});
        // Arms hang a little away from the body, elbows bent.
        const glm::vec3 shoulder(0.92f * fSide, 5.65f, -0.02f);
        const glm::vec3 elbow(1.2f * fSide, 4.45f, -0.08f);
        const glm::vec3 wrist(1.22f * fSide, 3.4f, 0.26f);
        addTube(mesh, "tunic",
                {shoulder, glm::mix(shoulder, elbow, 0.5f), elbow, glm::mix(elbow, wrist, 0.35f)},
                {0.3f, 0.29f, 0.25f, 0.27f});
        addTube(mesh, "skin", {glm::mix(elbow, wrist, 0.3f), wrist}, {0.19f, 0.15f});
        Solid hand = ballSolid(1);
        mesh.add("skin", hand.scale({0.16f, 0.27f, 0.2f}).move(wrist + glm::vec3(0.0f, -0.2f, 0.06f)),
                 {.fSmooth = 180.0f});
    }
    const std::array<glm::vec2, 8> arrTunic{
        glm::vec2(0.98f, 2.75f), {0.86f, 3.4f}, {0.74f, 3.85f}, {0.84f, 4.6f},
        {0.98f, 5.3f},           {0.9f, 5.75f}, {0.5f, 6.0f},   {0.24f, 6.04f}};
    mesh.add("tunic", flat(latheSolid(arrTunic, 12), 0.64f), {.fSmooth = 70.0f});
    const std::array<glm::vec2, 2> arrHem{glm::vec2(0.0f, 2.95f), {0.98f, 2.75f}};
    mesh.add("tunic", flat(latheSolid(arrHem, 12), 0.64f));
    const std::array<glm::vec2, 4> arrBelt{
        glm::vec2(0.74f, 3.66f), {0.81f, 3.68f}, {0.81f, 3.98f}, {0.74f, 4.0f}};
    mesh.add("boots", flat(latheSolid(arrBelt, 12), 0.66f), {.fSmooth = 30.0f});
    mesh.add("buckle", boxSolid({0.3f, 0.3f, 0.08f}, 0.02f).move(0.0f, 3.68f, 0.54f));
    addTube(mesh, "skin", {{0.0f, 5.9f, 0.0f}, {0.0f, 6.35f, 0.04f}}, {0.24f, 0.21f});
    Solid head = ballSolid(2);
    head.change([](const glm::vec3& p)
                { return glm::vec3(p.x * (p.y < 0.0f ? 1.0f + 0.3f * p.y : 1.0f), p.y, p.z); });
    mesh.add("skin", head.scale({0.4f, 0.5f, 0.45f}).move(0.0f, 6.62f, 0.06f), {.fSmooth = 180.0f});
    mesh.add("skin", boxSolid({0.1f, 0.16f, 0.12f}, 0.04f).move(0.0f, 6.52f, 0.5f), {.fSmooth = 60.0f});
    for (const float fSide : {-1.0f, 1.0f})
        mesh.add("hair", boxSolid({0.1f, 0.1f, 0.04f}).move(0.16f * fSide, 6.64f, 0.45f));
    Solid hair = ballSolid(2);
    hair.change(
        [](const glm::vec3& p)
        {
            // Drawn back from the face.
            const float fFace =
                std::clamp((p.z - 0.1f) * 2.2f, 0.0f, 1.0f) * std::clamp(0.75f - p.y, 0.0f, 1.0f);
            return p * (1.0f - 0.3f * fFace);
        });
    mesh.add("hair", hair.scale({0.46f, 0.5f, 0.5f}).move(0.0f, 6.72f, -0.04f), {.fSmooth = 60.0f});
}

/// Arms of one unit along the axes of the world, with arrows.
void makeOrigin(ModelMesh& mesh)
{
    const std::array<const char*, 3> arrNames{"x", "y", "z"};
    for (int iAxis = 0; iAxis < 3; ++iAxis)
    {
        glm::vec3 axis(0.0f);
        axis[iAxis] = 1.0f;
        const std::array arrArm{axis * 0.03f, axis * 0.84f};
        const std::array arrThin{0.014f, 0.014f};
        mesh.add(arrNames[static_cast<size_t>(iAxis)], tubeSolid(arrArm, arrThin, 8), {.fSmooth = 60.0f});
        const std::array arrTip{axis * 0.82f, axis * 1.0f};
        const std::array arrCone{0.045f, 0.001f};
        mesh.add(arrNames[static_cast<size_t>(iAxis)], tubeSolid(arrTip, arrCone, 10), {.fSmooth = 40.0f});
    }
    Solid ball = ballSolid(1);
    mesh.add("middle", ball.scale(glm::vec3(0.05f)), {.fSmooth = 180.0f});
}

} // namespace

std::span<const Figure> figures()
{
    static const std::array<Figure, 2> s_arrFigures = {{
        {"Character/character",
         {{"skin", {222, 180, 150}},
          {"hair", {92, 70, 54}},
          {"tunic", {110, 136, 128}},
          {"trousers", {112, 100, 84}},
          {"boots", {98, 72, 54}},
          {"buckle", {206, 176, 104}}},
         &makeCharacter},
        {"TileEditor/gui_gizmo_origin",
         {{"x", {140, 255, 140}},
          {"y", {140, 140, 255}},
          {"z", {255, 255, 140}},
          {"middle", {240, 240, 240}}},
         &makeOrigin},
    }};
    return s_arrFigures;
}

std::string figureText(const Figure& figure)
{
    const std::string sBase = std::string("$GAME_DATA/") + figure.pFile;
    std::string sText = "{\n    \"mesh\": \"" + sBase + ".obj\",\n    \"materials\": {";
    bool bFirst = true;
    for (const PlainMaterial& material : figure.vecMaterials)
    {
        sText += bFirst ? "\n" : ",\n";
        bFirst = false;
        sText += std::string("        \"") + material.pName + "\": { \"diffuse\": \"" + sBase + "_" +
                 material.pName + "_dif.png\" }";
    }
    return sText + "\n    }\n}\n";
}

} // namespace content
