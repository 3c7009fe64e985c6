#pragma once // Where the instances of renderables stand.

#include "KestrelCommon/Core/Transform.h"
#include "KestrelCommon/Resources/Renderable.h"
#include "KestrelCommon/renderer/CullingGroups.h"

#include <array>
#include <glm/vec4.hpp>

namespace rend
{

/// What the GPU gets of an instance: a cache line.
struct alignas(64) InstanceData
{
    std::array<glm::vec4, 3> arrRows;   ///< of the matrix from the model to the world, metres
    std::array<uint32_t, 4> arrColours; ///< four slots; bytes R, G, B, A from the lowest, display values
};
static_assert(sizeof(InstanceData) == 64);

[[nodiscard]] std::array<glm::vec4, 3> instanceRows(const Transform& transform);
/// The box around a turned and scaled box.
[[nodiscard]] Aabb movedBox(const Aabb& box, const std::array<glm::vec4, 3>& arrRows);

/// What is drawn with one stream of instances: a renderable, and of its colours four.
struct InstanceKind
{
    uint32_t uRenderable = 0;
    uint32_t uPage = 0; ///< colours 4 * page to 4 * page + 3; parts without a colour are in page 0
};

/// Instances of a 32 m x 32 m square of the world, told by their origin.
struct InstanceCell
{
    struct Info
    {
        uint32_t uKind;
        uint32_t uRecord;
    };
    struct Batch
    {
        uint32_t uKind;
        uint32_t uFirst;
        uint32_t uCount;
        float fSize; ///< metres, the largest extent of its largest instance
    };

    std::vector<InstanceData> vecData;
    std::vector<Info> vecInfo;     ///< beside vecData
    std::vector<Batch> vecBatches; ///< when it isn't dirty: by kind
    Aabb box;                      ///< around its instances, or larger
    bool bDirty = false;           ///< the order must be made anew
};

/// Renderables and their instances, for all kinds of objects. Adding, moving, colouring and removing take
/// constant time: what leaves a list is replaced by the last of it.
///
/// No GPU is needed; who draws asks for the cells after sortCells().
/// Threads: main thread only; sortCells() fans out and joins.
class InstanceWorld
{
public:
    static constexpr uint32_t s_uNone = 0xFFFFFFFF;
    static constexpr float s_fCellSize = 32.0f; ///< metres

    // Renderables

    /// The number by which it is known here. Loads the model when the first instance comes.
    uint32_t addRenderable(std::shared_ptr<const resource::Renderable> pRenderable);
    /// It must have no instances and no highlights; its number may be given again.
    void removeRenderable(uint32_t uRenderable);
    /// Null for a number that isn't in use.
    [[nodiscard]] const resource::Renderable* renderable(uint32_t uRenderable) const;
    [[nodiscard]] size_t renderableCount() const { return m_vecRenderables.size(); }
    /// Another one for every renderable that was ever added to any world: what was made from one of
    /// another generation is stale. 0 for a number that isn't in use.
    [[nodiscard]] uint32_t generation(uint32_t uRenderable) const;

    // Instances

    /// Colours in the order of the renderable's slots; missing ones are white. Returns the slot by which
    /// the instance is known until it is removed.
    uint32_t addInstance(uint32_t uRenderable, const Transform& transform,
                         std::span<const uint32_t> spanColours);
    void removeInstance(uint32_t uSlot);
    void setTransform(uint32_t uSlot, const Transform& transform);
    void setColours(uint32_t uSlot, std::span<const uint32_t> spanColours);
    /// Null for a slot that isn't in use. Valid until the next change.
    [[nodiscard]] const InstanceData* instance(uint32_t uSlot) const;
    [[nodiscard]] size_t instanceCount(uint32_t uRenderable) const;
    [[nodiscard]] size_t instanceCount() const { return m_uInstances; }

    // Highlights: outlines that show through everything. Places of a renderable's list, 0 to count - 1

    /// The place of the new one, the last.
    uint32_t addHighlight(uint32_t uRenderable, const Transform& transform);
    /// The last one takes the place.
    void removeHighlight(uint32_t uRenderable, uint32_t uPlace);
    void moveHighlight(uint32_t uRenderable, uint32_t uPlace, const Transform& transform);
    [[nodiscard]] std::span<const InstanceData> highlights(uint32_t uRenderable) const;
    [[nodiscard]] size_t highlightCount() const { return m_uHighlights; }

    // Drawing

    /// Puts the instances of cells that changed in order, and gives them batches and boxes.
    void sortCells();
    [[nodiscard]] std::span<const std::unique_ptr<InstanceCell>> cells() const { return m_vecCells; }
    [[nodiscard]] std::span<const InstanceKind> kinds() const { return m_vecKinds; }
    /// Boxes where instances came, went or moved since the last call, both places of a move; colours don't
    /// count. False: too many for a list, anything may have changed.
    bool takeChanges(std::vector<Aabb>& vecBoxes);
    /// Differs from that of any other world.
    [[nodiscard]] uint32_t id() const { return m_uId; }
    /// Differs after each change.
    [[nodiscard]] uint64_t revision() const { return m_uRevision; }

private:
    struct RenderableEntry
    {
        std::shared_ptr<const resource::Renderable> pRenderable;
        uint32_t uFirstKind = s_uNone; ///< known with the first instance
        uint32_t uPages = 1;
        uint32_t uInstances = 0;
        uint32_t uGeneration = 0;
        Aabb box; ///< of the model
        std::vector<InstanceData> vecHighlights;
    };
    struct Record
    {
        uint32_t uCell = s_uNone; ///< none: free
        uint32_t uPlace = 0;
        uint32_t uRenderable = 0;
        uint32_t uNextPage = s_uNone; ///< record of the instance's next four colours
    };

    static uint32_t uniqueNumber();
    void ensureKinds(RenderableEntry& entry, uint32_t uRenderable);
    [[nodiscard]] uint32_t cellAt(const glm::vec3& position);
    uint32_t takeRecord();
    void insert(uint32_t uRecord, uint32_t uKind, const InstanceData& data, uint32_t uCell, const Aabb& box);
    void takeOut(const Record& record);
    void sortCell(InstanceCell& cell);
    void noteChange(const Aabb& box);

    std::vector<RenderableEntry> m_vecRenderables;
    std::vector<uint32_t> m_vecFreeRenderables;
    std::vector<InstanceKind> m_vecKinds;
    std::vector<Record> m_vecRecords; ///< by slot
    std::vector<uint32_t> m_vecFreeRecords;
    std::vector<std::unique_ptr<InstanceCell>> m_vecCells;
    std::unordered_map<GroupKey, uint32_t, GroupKeyHash> m_mapCells;
    std::vector<Aabb> m_vecChanges;
    bool m_bManyChanges = true;
    size_t m_uInstances = 0;
    size_t m_uHighlights = 0;
    uint64_t m_uRevision = 0;
    uint32_t m_uId = uniqueNumber();
};

} // namespace rend
