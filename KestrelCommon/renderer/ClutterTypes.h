#pragma once // What the renderer knows of each clutter type.

#include "KestrelCommon/Resources/PathResolver.h"
#include "KestrelCommon/Tile/ClutterDatabase.h"
#include "KestrelCommon/renderer/ClutterMesh.h"

#include <array>
#include <memory>

namespace rend
{

/// Meshes and the per-type records of the two constant buffers, by the database's global index.
/// Filled at start-up, then only read.
class ClutterTypes
{
public:
    static constexpr uint8_t s_uNoImpostor = 255;

    /// 16 bytes each, 256 of them a buffer.
    struct MeshRecord
    {
        float height = 0.0f;
        float scaleVariance = 0.0f;
        uint32_t flags = 0;
        uint32_t unused = 0;
    };
    struct ImpostorRecord
    {
        float scaleVariance = 0.0f;
        float halfWidth = 0.0f;  ///< metres
        float halfHeight = 0.0f; ///< metres
        uint32_t unused = 0;
    };
    using MeshRecords = std::array<MeshRecord, 256>;
    using ImpostorRecords = std::array<ImpostorRecord, 256>;
    static_assert(sizeof(MeshRecords) == 4096 && sizeof(ImpostorRecords) == 4096);

    ClutterTypes() { m_arrImpostorOf.fill(s_uNoImpostor); }

    /// Loads the meshes; one that can't be read becomes a cross of squares, with a line.
    ClutterTypes(const tile::ClutterDatabase& database, const resource::PathResolver& fnResolve);

    [[nodiscard]] size_t size() const { return m_vecMeshOf.size(); }
    [[nodiscard]] uint32_t meshIndex(size_t uType) const { return m_vecMeshOf[uType]; }
    [[nodiscard]] const ClutterMesh& mesh(size_t uType) const { return m_vecMeshes[m_vecMeshOf[uType]]; }
    [[nodiscard]] const std::vector<ClutterMesh>& meshes() const { return m_vecMeshes; }
    /// (variance + 1) * height, metres.
    [[nodiscard]] float size(size_t uType) const;

    /// By global index; s_uNoImpostor for a type that isn't drawn from afar.
    [[nodiscard]] const std::array<uint8_t, 256>& impostorOf() const { return m_arrImpostorOf; }
    [[nodiscard]] const MeshRecords& meshRecords() const { return m_arrRecords; }
    [[nodiscard]] const ImpostorRecords& impostorRecords() const { return m_arrImpostors; }
    [[nodiscard]] const std::vector<std::string>& textures() const { return m_vecTextures; }
    [[nodiscard]] const std::vector<std::string>& impostorTextures() const { return m_vecImpostorTextures; }

private:
    std::vector<ClutterMesh> m_vecMeshes;
    std::vector<uint32_t> m_vecMeshOf;
    MeshRecords m_arrRecords{};
    ImpostorRecords m_arrImpostors{};
    std::array<uint8_t, 256> m_arrImpostorOf{};
    std::vector<std::string> m_vecTextures;
    std::vector<std::string> m_vecImpostorTextures;
};

} // namespace rend
