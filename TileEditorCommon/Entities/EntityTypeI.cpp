#include "TileEditorCommon/Entities/EntityTypeI.h"

#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"
#include "TileEditorCommon/Entities/EntityHostI.h"

namespace tilebuilder
{

bool EntityTypeI::clone(uint32_t uId, EntityHostI& host, Entity& copy)
{
    EntityCreateArgs args;
    if (!getCloneArgs(uId, args))
        return false;
    args.bStored = true;
    const Entity made = host.createEntity(std::move(args));
    if (!made)
        return false;
    copy = made;
    return true;
}

uint32_t EntityTypeI::getFilterFlag() const
{
    return entityTraits(getTypeId()).uFilterFlag;
}

} // namespace tilebuilder
