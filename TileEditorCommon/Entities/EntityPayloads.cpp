#include "TileEditorCommon/Entities/EntityPayloads.h"

#include "KestrelCommon/Io/BitStream.h"
#include "TileEditorCommon/Entities/EntityHash.h"
#include "TileEditorCommon/Params/IParam.h"
#include "TileEditorCommon/Params/ParamDesc.h"

namespace tilebuilder
{

namespace
{

uint64_t mixTags(uint64_t uHash, const tile::TagSet& setTags)
{
    for (const std::string& sTag : setTags)
        uHash = mixHash(uHash, std::string_view(sTag));
    return uHash;
}

uint64_t mixParams(uint64_t uHash, const ParamList& vecParams)
{
    BitStream stream;
    writeBlob(stream, vecParams, nullptr);
    return mixHash(uHash, stream.bytes());
}

} // namespace

uint64_t EntityCreateArgs::VoxelMesh::hash(uint64_t uSeed) const
{
    uint64_t uHash = mixHash(uSeed, std::as_bytes(std::span(uuid.bytes)));
    uHash = mixHash(uHash, std::as_bytes(std::span(arrSettings)));
    return mixHash(uHash, std::as_bytes(std::span(arrFlags)));
}

uint64_t EntityCreateArgs::Harvestable::hash(uint64_t uSeed) const
{
    uint64_t uHash = mixHash(mixHash(uSeed, std::as_bytes(std::span(uuid.bytes))), uColor);
    return mixTags(mixParams(uHash, vecParams), setTags);
}

uint64_t EntityCreateArgs::Blueprint::hash(uint64_t uSeed) const
{
    return mixTags(mixHash(mixHash(uSeed, std::string_view(strPathOrJson)), iSortingIndex), setTags);
}

uint64_t EntityCreateArgs::Prefab::hash(uint64_t uSeed) const
{
    uint64_t uHash = mixTags(mixHash(uSeed, std::string_view(strPath)), setTags);
    for (const EntityCreateArgs& child : vecChildArgs)
    {
        uHash = mixHash(mixHash(mixHash(mixHash(uHash, child.eTypeId), child.uId), child.uParentId),
                        child.uPrefabSlot);
        uHash = mixHash(uHash, std::as_bytes(std::span(&child.transform.position, 1)));
        uHash = mixHash(uHash, std::as_bytes(std::span(&child.transform.scale, 1)));
        uHash = child.pPayload ? child.pPayload->hash(uHash) : uHash;
    }
    return mixHash(uHash, uFlags);
}

uint64_t EntityCreateArgs::Node::hash(uint64_t uSeed) const
{
    uint64_t uHash = mixHash(uSeed, std::string_view(strName));
    for (const std::string& sTag : vecTags)
        uHash = mixHash(uHash, std::string_view(sTag));
    return mixParams(uHash, vecParams);
}

uint64_t EntityCreateArgs::Decal::hash(uint64_t uSeed) const
{
    return mixTags(mixHash(mixHash(mixHash(uSeed, uColor), uDecalIndex), uLayer), setTags);
}

} // namespace tilebuilder
