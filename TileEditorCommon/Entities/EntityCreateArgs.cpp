#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include "TileEditorCommon/Entities/EntityHash.h"

namespace tilebuilder
{

uint64_t EntityCreateArgs::recordHash() const
{
    uint64_t uHash = pPayload ? pPayload->hash(0) : 0;
    uHash = mixHash(uHash, eTypeId);
    uHash = mixHash(uHash, uId);
    uHash = mixHash(uHash, uParentId);
    uHash = mixHash(uHash, uPrefabSlot);
    uHash = mixHash(uHash, std::as_bytes(std::span(&transform.position, 1)));
    return mixHash(uHash, std::as_bytes(std::span(&transform.scale, 1)));
}

} // namespace tilebuilder
