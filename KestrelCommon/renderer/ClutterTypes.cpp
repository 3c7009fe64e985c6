#include "KestrelCommon/renderer/ClutterTypes.h"

#include <glm/common.hpp>

namespace rend
{

ClutterTypes::ClutterTypes(const tile::ClutterDatabase& database, const resource::PathResolver& fnResolve)
    : m_vecTextures(database.textures())
{
    m_arrImpostorOf.fill(s_uNoImpostor);
    for (const std::string& sPath : database.meshes())
    {
        auto mesh = loadClutterMesh(fnResolve(sPath));
        m_vecMeshes.push_back(mesh ? std::move(*mesh) : defaultClutterMesh());
    }
    for (const tile::GrassInfo& type : database.types())
    {
        const size_t uType = m_vecMeshOf.size();
        m_vecMeshOf.push_back(static_cast<uint32_t>(type.meshIndex));
        m_arrRecords[uType] = {type.height, type.scaleVariance, type.flags, 0};
        if (type.impostorTexture.empty())
            continue;
        const size_t uImpostor = m_vecImpostorTextures.size();
        const Aabb& box = mesh(uType).box;
        const glm::vec3 extent = glm::abs(box.highest - box.lowest);
        m_arrImpostorOf[uType] = static_cast<uint8_t>(uImpostor);
        m_arrImpostors[uImpostor] = {type.scaleVariance, (extent.x + extent.y) * 0.0625f,
                                     extent.z * 0.125f * type.height, 0};
        m_vecImpostorTextures.push_back(type.impostorTexture);
    }
}

float ClutterTypes::size(size_t uType) const
{
    return (m_arrRecords[uType].scaleVariance + 1.0f) * m_arrRecords[uType].height;
}

} // namespace rend
