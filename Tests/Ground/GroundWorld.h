#pragma once // A surface with nothing around it.

#include "TileEditorCommon/Ground/Brush.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

/// Counts what a surface tells the editor object.
struct CountingSink : tilebuilder::EditorSinkI
{
    void markChanged(uint32_t uMask) override
    {
        ++iChanges;
        uMasks |= uMask;
    }
    void markInterfaceDirty(uint32_t) override {}
    int iChanges = 0;
    uint32_t uMasks = 0;
};

struct GroundWorld
{
    explicit GroundWorld(uint32_t uCellsX = 1, uint32_t uCellsY = 1, btCollisionWorld* pCollision = nullptr)
        : surface(sink, pCollision)
    {
        surface.init(uCellsX * 64, uCellsY * 64);
    }

    static tilebuilder::BrushDab dab(float fX, float fY, float fRadius, float fStrength, size_t uBrush = 4)
    {
        return {fX, fY, fRadius, fStrength, tilebuilder::brush(uBrush)};
    }

    /// Hills and hollows all over, so that any slip shows.
    void roughen()
    {
        surface.m_lockEdges = false;
        for (int i = 0; i < 60; ++i)
            surface.raise(dab(static_cast<float>(i * 37 % 64) * static_cast<float>(surface.cellsX()),
                              static_cast<float>(i * 23 % 64) * static_cast<float>(surface.cellsY()),
                              5.0f + static_cast<float>(i % 7) * 3.0f, 1.0f, static_cast<size_t>(i) % 4),
                          i % 3 ? 1.0f : -1.0f);
        surface.m_lockEdges = true;
        surface.rebuild();
    }

    [[nodiscard]] float at(uint32_t i, uint32_t j) const
    {
        return surface.heights()[size_t{j} * surface.verticesX() + i];
    }

    CountingSink sink;
    tilebuilder::EditorTerrainSurface surface;
};
