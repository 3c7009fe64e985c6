#pragma once // Keeps the plants of each cell and level in the culling groups.

#include "KestrelCommon/renderer/ClutterTypes.h"
#include "KestrelCommon/renderer/CullingGroups.h"
#include "TileEditorCommon/Clutter/ClutterPositions.h"

#include <compare>
#include <functional>
#include <map>
#include <span>

namespace tilebuilder
{

struct ClutterKey
{
    int iCellX = 0;
    int iCellY = 0;
    int iLevel = 0; ///< 0 to 3

    auto operator<=>(const ClutterKey&) const = default;
};

struct ClutterRecord
{
    static constexpr uint32_t s_uNoSlot = ~0u;

    uint32_t index = 0; ///< global clutter index
    const rend::ClutterMesh* mesh = nullptr;
    glm::vec3 position{0.0f}; ///< metres in the world
    glm::vec3 normal{0.0f};
    uint32_t color = 0; ///< red highest
    float size = 0.0f;  ///< metres
    rend::GroupKey groupKey;
    uint32_t slot = s_uNoSlot; ///< in the culling group
};

struct ClutterCellPos
{
    int iX = 0;
    int iY = 0;

    bool operator==(const ClutterCellPos&) const = default;
};

/// Threads: main thread; generation fans out, a cell a task, and joins.
class Terrain3ClutterManager
{
public:
    /// The type at a place of a cell, in metres from its corner, or tile::EmptyClutter; for a type it
    /// fills height, colour (red lowest) and normal. Called from several threads at once.
    using SampleFunction = std::function<uint8_t(int iCellX, int iCellY, const glm::vec2& localPosition,
                                                 float& height, uint32_t& color, glm::vec3& normal)>;

    /// The samples of a cell, 128 x 128, row by row; empty when there is no such cell.
    using CellFunction = std::function<std::span<const uint8_t>(int iCellX, int iCellY)>;

    /// Groups and types are borrowed. With fnCell, places on empty samples are passed over at once. iDensity:
    /// see makeClutterPositions.
    Terrain3ClutterManager(rend::CullingGroups& groups, const rend::ClutterTypes& types,
                           SampleFunction fnSample, CellFunction fnCell = {}, int iPatchSize = 64,
                           int iDensity = 4);
    ~Terrain3ClutterManager();
    Terrain3ClutterManager(const Terrain3ClutterManager&) = delete;
    Terrain3ClutterManager& operator=(const Terrain3ClutterManager&) = delete;

    /// Drops and rebuilds the four levels of each cell; no cell twice.
    void regenerate(std::span<const ClutterCellPos> spanCells);
    /// The same without the culling groups: records without slots.
    void generateOnly(std::span<const ClutterCellPos> spanCells)
    {
        static_cast<void>(makeRecords(spanCells));
    }
    /// Drops everything.
    void clear();

    /// Empty for a key that was never generated.
    [[nodiscard]] std::span<const ClutterRecord> records(const ClutterKey& key) const;
    [[nodiscard]] const ClutterPositions& positions() const { return m_arrPositions; }

private:
    struct Records
    {
        std::vector<ClutterRecord> vec;
        bool bPlaced = false; ///< some hold slots
    };
    using CellRecords = std::array<Records*, 4>; ///< by level

    void remove(Records& records) const;
    void generate(const ClutterKey& key, std::vector<ClutterRecord>& vecRecords) const;
    std::vector<CellRecords> makeRecords(std::span<const ClutterCellPos> spanCells);
    void makeGroups(std::span<const CellRecords> spanCells) const;
    void add(Records& records) const;

    rend::CullingGroups& m_groups;
    const rend::ClutterTypes& m_types;
    SampleFunction m_fnSample;
    CellFunction m_fnCell;
    int m_iPatchSize;
    ClutterPositions m_arrPositions;
    std::array<std::vector<uint16_t>, 4> m_arrSampleOf; ///< of each place, the sample of a cell under it
    std::map<ClutterKey, Records> m_mapRecords;
};

} // namespace tilebuilder
