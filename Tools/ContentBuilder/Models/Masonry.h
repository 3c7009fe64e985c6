#pragma once // Walls of stone and bars of timber: what walls, ruins, huts and bridges share.

#include "Tools/ContentBuilder/Models/ModelMesh.h"

namespace content
{

/// A block of hewn stone from one corner to the other, its edges worn.
void addBlock(ModelMesh& mesh, const glm::vec3& lowest, const glm::vec3& highest, uint32_t uSeed,
              float fWear = 0.14f);

/// A plain part of a wall; the courses of its picture go on from part to part.
void addMasonry(ModelMesh& mesh, const glm::vec3& lowest, const glm::vec3& highest);

/// Blocks that stand out of both faces of a wall along X around z = 0.
struct ProudBlocks
{
    float fLeft = -8.0f;
    float fRight = 8.0f;
    float fLow = 1.0f;
    float fHigh = 11.0f;
    float fDepth = 2.0f; ///< of the wall
    int iCount = 6;
    uint32_t uSeed = 1;
};
void addProudBlocks(ModelMesh& mesh, const ProudBlocks& blocks);

/// A row of blocks along X that lies on a wall.
void addCoping(ModelMesh& mesh, float fLeft, float fRight, float fY, float fHigh, float fDepth,
               uint32_t uSeed);

/// A round arch in a wall: what is above it up to fTop, and its stones, which stand out a little.
struct ArchOpening
{
    float fCentre = 0.0f;
    float fRadius = 3.0f;
    float fSpring = 6.0f; ///< height where it begins to bend
    float fTop = 12.0f;
    float fDepth = 2.0f;
    float fStones = 1.4f; ///< how far they reach around it
    float fRise = 1.0f;   ///< 1: half a circle, less: flatter
};
void addArch(ModelMesh& mesh, const ArchOpening& arch);

/// A squared timber.
void addTimber(ModelMesh& mesh, const glm::vec3& from, const glm::vec3& to, float fWide, float fHigh,
               uint32_t uSeed, const char* pMaterial = "Trim", const glm::vec3& up = {0.0f, 0.0f, 1.0f},
               float fBevel = 0.08f);

/// Boards side by side over a rectangle, along Z or along X; their tops lie at fTop.
struct Boards
{
    float fLeft = -8.0f;
    float fRight = 8.0f;
    float fBack = -8.0f;
    float fFront = 8.0f;
    float fTop = 1.0f;
    float fThick = 0.35f;
    int iCount = 8;
    bool bAlongX = false;
    uint32_t uSeed = 1;
    const char* pMaterial = "Wood";
};
void addBoards(ModelMesh& mesh, const Boards& boards);

} // namespace content
