#include "TileEditorCommon/Entities/EntityCommands.h"

#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityClipboard.h"
#include "TileEditorCommon/Entities/EntityDrag.h"

#include <algorithm>
#include <array>

namespace tilebuilder
{

namespace
{

using C = EntityCommand;
using Needs = EntityCommandInfo::Needs;
using Context = const ArrangeContext&;
using Things = ArrangedThings;

template <int iAxis>
void turnAtRandom(Things things, Context context)
{
    arrange::randomTurn(things, iAxis, context.fnRandom);
}

template <int iAxis>
void moveToGridAxis(Things things, Context context)
{
    arrange::moveCoordinate(things, iAxis, context.grid.position[iAxis]);
}

template <int iDegrees>
void roundTurn(Things things, Context)
{
    arrange::roundRotation(things, static_cast<float>(iDegrees));
}

template <int iSteps>
void roundPlace(Things things, Context)
{
    arrange::roundPosition(things, static_cast<float>(iSteps));
}

template <arrange::Spread eWhat>
void spread(Things things, Context)
{
    arrange::spreadInBetween(things, eWhat);
}

template <void (*fnArrange)(Things)>
void plain(Things things, Context)
{
    fnArrange(things);
}

void reset(Things things, Context)
{
    arrange::resetRotation(things);
    arrange::resetScale(things);
}

void roundAll(Things things, Context)
{
    arrange::roundPosition(things, 4.0f);
    arrange::roundRotation(things, 45.0f);
}

void pasteAll(Things things, Context context)
{
    arrange::pastePosition(things, context.copied);
    arrange::pasteRotation(things, context.copied);
    arrange::pasteScale(things, context.copied);
}

constexpr auto turnRandom = [](Things things, Context context)
{ arrange::randomRotation(things, context.fnRandom); };
constexpr auto groupToGrid = [](Things things, Context context)
{ arrange::moveGroupTo(things, context.grid.position); };
constexpr auto eachToGrid = [](Things things, Context context)
{ arrange::moveEachTo(things, context.grid.position); };
constexpr auto inBall = [](Things things, Context context)
{ arrange::scatterInBall(things, context.grid.position, context.grid.scale.x, context.fnRandom); };
constexpr auto onDisc = [](Things things, Context context)
{ arrange::scatterOnDisc(things, context.grid.position, context.grid.scale.x, context.fnRandom); };
constexpr auto toGround = [](Things things, Context context)
{ arrange::dropToGround(things, context.fnCastGround, false); };
constexpr auto ontoGround = [](Things things, Context context)
{ arrange::dropToGround(things, context.fnCastGround, true); };
constexpr auto pastePlace = [](Things things, Context context)
{ arrange::pastePosition(things, context.copied); };
constexpr auto pasteSize = [](Things things, Context context)
{ arrange::pasteScale(things, context.copied); };
constexpr auto pasteTurn = [](Things things, Context context)
{ arrange::pasteRotation(things, context.copied); };

constexpr std::array<EntityCommandInfo, static_cast<size_t>(C::COUNT)> s_arrCommands{{
    {C::None, 0, 0, Needs::Never},
    {C::Reset, 53, 1, Needs::Nothing, reset},
    {C::ResetRotation, 0, 1, Needs::Nothing, plain<arrange::resetRotation>},
    {C::ResetScale, 0, 1, Needs::Nothing, plain<arrange::resetScale>},
    {C::RandomRotation, 55, 1, Needs::Nothing, turnRandom},
    {C::RandomX, 0, 1, Needs::Nothing, turnAtRandom<0>},
    {C::RandomY, 56, 1, Needs::Nothing, turnAtRandom<1>},
    {C::RandomZ, 0, 1, Needs::Nothing, turnAtRandom<2>},
    {C::Round, 54, 1, Needs::Nothing, roundAll},
    {C::RoundRotation90, 0, 1, Needs::Nothing, roundTurn<90>},
    {C::RoundRotation45, 0, 1, Needs::Nothing, roundTurn<45>},
    {C::RoundRotation10, 0, 1, Needs::Nothing, roundTurn<10>},
    {C::RoundRotation1, 0, 1, Needs::Nothing, roundTurn<1>},
    {C::RoundPosition100, 0, 1, Needs::Nothing, roundPlace<1>},
    {C::RoundPosition50, 0, 1, Needs::Nothing, roundPlace<2>},
    {C::RoundPosition25, 0, 1, Needs::Nothing, roundPlace<4>},
    {C::RoundScale, 0, 1, Needs::Nothing, plain<arrange::roundScale>},
    {C::ClearRotation, 0, 1, Needs::Nothing, plain<arrange::clearRotation>},
    {C::ResetTilt, 0, 1, Needs::Nothing, plain<arrange::resetTilt>},
    {C::LookAt, 0, 2, Needs::Nothing, plain<arrange::lookAtLast>},
    {C::CorrectTangent, 0, 3, Needs::Nothing, plain<arrange::continueTangent>},
    {C::MoveToGrid, 41, 1, Needs::Grid, groupToGrid},
    {C::MoveToGridXyz, 0, 1, Needs::Grid, eachToGrid},
    {C::MoveToGridX, 0, 1, Needs::Grid, moveToGridAxis<0>},
    {C::MoveToGridY, 0, 1, Needs::Grid, moveToGridAxis<1>},
    {C::MoveToGridZ, 42, 1, Needs::Grid, moveToGridAxis<2>},
    {C::RandomInSphere, 58, 1, Needs::Grid, inBall},
    {C::RandomOnPlane, 57, 1, Needs::Grid, onDisc},
    {C::GridToSelection, 43, 1, Needs::Grid},
    {C::Center, 59, 2, Needs::Nothing, plain<arrange::gather>},
    {C::MoveToOrigin, 0, 1, Needs::Nothing, plain<arrange::moveLastToOrigin>},
    {C::MoveToGround, 44, 1, Needs::Nothing, toGround},
    {C::MoveToGroundAndRotate, 45, 1, Needs::Nothing, ontoGround},
    {C::InBetween, 0, 3, Needs::Nothing, spread<arrange::Spread::All>},
    {C::InBetweenPosition, 0, 3, Needs::Nothing, spread<arrange::Spread::Position>},
    {C::InBetweenScale, 0, 3, Needs::Nothing, spread<arrange::Spread::Scale>},
    {C::InBetweenRotation, 0, 3, Needs::Nothing, spread<arrange::Spread::Rotation>},
    {C::SelectAll, 0, 0, Needs::Nothing},
    {C::SelectAssets, 0, 0, Needs::Nothing},
    {C::SelectHarvestables, 0, 0, Needs::Nothing},
    {C::SelectDecals, 0, 0, Needs::Nothing},
    {C::SelectBlueprints, 0, 0, Needs::Nothing},
    {C::SelectNodes, 0, 0, Needs::Nothing},
    {C::SelectPrefabs, 0, 0, Needs::Nothing},
    {C::CreatePrefab, 0, 1, Needs::Never},
    {C::UnPrefab, 0, 1, Needs::Never},
    {C::OpenPrefab, 0, 1, Needs::Never},
    {C::Copy, 46, 1, Needs::Nothing},
    {C::Paste, 47, 0, Needs::CopyThings},
    {C::PasteTransform, 49, 1, Needs::CopyPlace, pasteAll},
    {C::PastePosition, 50, 1, Needs::CopyPlace, pastePlace},
    {C::PasteScale, 52, 1, Needs::CopyPlace, pasteSize},
    {C::PasteRotation, 51, 1, Needs::CopyPlace, pasteTurn},
    {C::PasteColors, 0, 1, Needs::CopyColors},
    {C::Replace, 48, 1, Needs::CopyThings},
    {C::Delete, 6, 1, Needs::Nothing},
}};
static_assert(
    []
    {
        for (size_t i = 0; i < s_arrCommands.size(); ++i)
            if (static_cast<size_t>(s_arrCommands[i].eCommand) != i)
                return false;
        return true;
    }(),
    "commands stand in the order of their numbers");

/// The kind that a command selects; EntityTypeId_COUNT for another command.
EntityTypeId selectedKind(EntityCommand eCommand)
{
    switch (eCommand)
    {
    case C::SelectAssets:
        return EntityTypeId_Asset;
    case C::SelectHarvestables:
        return EntityTypeId_Harvestable;
    case C::SelectDecals:
        return EntityTypeId_Decal;
    case C::SelectBlueprints:
        return EntityTypeId_Blueprint;
    case C::SelectNodes:
        return EntityTypeId_Node;
    case C::SelectPrefabs:
        return EntityTypeId_Prefab;
    default:
        return EntityTypeId_COUNT;
    }
}

bool hasUprightModel(EntityTypeId eId)
{
    return eId == EntityTypeId_Asset || eId == EntityTypeId_Harvestable || eId == EntityTypeId_VoxelMesh;
}

} // namespace

std::span<const EntityCommandInfo> entityCommands()
{
    return s_arrCommands;
}

EntityCommand entityCommandByAction(uint32_t uAction)
{
    const auto itFound = std::find_if(s_arrCommands.begin(), s_arrCommands.end(),
                                      [uAction](const EntityCommandInfo& info)
                                      { return info.uAction != 0 && info.uAction == uAction; });
    return itFound == s_arrCommands.end() ? C::None : itFound->eCommand;
}

EntityCommands::EntityCommands(Entities& entities, EntityDrag& drag, EntityClipboard& clipboard,
                               GroundCast fnCastGround, RandomSource fnRandom)
    : m_entities(entities),
      m_drag(drag),
      m_clipboard(clipboard),
      m_fnCastGround(std::move(fnCastGround)),
      m_fnRandom(std::move(fnRandom))
{
}

size_t EntityCommands::selectedCount() const
{
    return static_cast<size_t>(std::count_if(m_entities.selected().begin(), m_entities.selected().end(),
                                             [this](const Entity& entity)
                                             { return m_entities.exists(entity); }));
}

bool EntityCommands::canRun(EntityCommand eCommand, size_t uSelected) const
{
    if (eCommand >= C::COUNT || !m_entities.isTileOpen())
        return false;
    const EntityCommandInfo& info = s_arrCommands[static_cast<size_t>(eCommand)];
    if (uSelected < info.uLeast)
        return false;
    if (const EntityTypeId eKind = selectedKind(eCommand); eKind != EntityTypeId_COUNT)
        return m_entities.countOf(eKind) > 0;
    switch (info.eNeeds)
    {
    case Needs::Nothing:
        return true;
    case Needs::Grid:
        return static_cast<bool>(m_entities.grid());
    case Needs::CopyThings:
        return m_clipboard.hasThings();
    case Needs::CopyPlace:
        return m_clipboard.transform() != nullptr;
    case Needs::CopyColors:
        return !m_clipboard.colors().empty();
    case Needs::Never:
        return false;
    }
    return false;
}

void EntityCommands::run(EntityCommand eCommand, const std::optional<glm::vec3>& pastePoint)
{
    // A drag counts from where things stood when it began.
    if (m_drag.isDragging() || !canRun(eCommand))
        return;
    const EntityCommandInfo& info = s_arrCommands[static_cast<size_t>(eCommand)];
    if (info.fnArrange)
        runArranging(info);
    else if (const EntityTypeId eKind = selectedKind(eCommand); eKind != EntityTypeId_COUNT)
        m_entities.selectAllOfType(eKind);
    else if (eCommand == C::SelectAll)
        m_entities.selectAll();
    else if (eCommand == C::GridToSelection)
        moveGridToSelection();
    else if (eCommand == C::Copy)
        m_clipboard.copySelected();
    else if (eCommand == C::Paste && pastePoint)
        m_clipboard.pasteAt(*pastePoint);
    else if (eCommand == C::PasteColors)
        m_clipboard.pasteColors();
    else if (eCommand == C::Replace)
        m_clipboard.replaceSelected();
    else if (eCommand == C::Delete)
        m_entities.removeSelected();
    m_entities.sink().markInterfaceDirty(0);
}

std::vector<ArrangedThing> EntityCommands::selectedThings() const
{
    std::vector<ArrangedThing> vecThings;
    for (const Entity& entity : m_entities.selected())
    {
        if (!m_entities.exists(entity))
            continue;
        const EntityTypeId eId = entity.pType->getTypeId();
        vecThings.push_back({m_entities.pivot(entity), entity.pType->getCenterTransform(entity.uId).position,
                             entity.pType->getScaleFlags(entity.uId), hasUprightModel(eId),
                             eId == EntityTypeId_Prefab});
    }
    return vecThings;
}

void EntityCommands::runArranging(const EntityCommandInfo& info)
{
    ArrangeContext context{.fnRandom = m_fnRandom, .fnCastGround = m_fnCastGround};
    if (const Entity grid = m_entities.grid())
        context.grid = grid.pType->getOriginTransform(grid.uId);
    if (const Transform* pCopied = m_clipboard.transform())
        context.copied = *pCopied;
    std::vector<ArrangedThing> vecThings = selectedThings();
    info.fnArrange(vecThings, context);
    size_t i = 0;
    m_entities.forEachSelected([&](Transform& pivot) { pivot = vecThings[i++].pivot; });
}

void EntityCommands::moveGridToSelection()
{
    const Entity grid = m_entities.grid();
    Transform place = grid.pType->getOriginTransform(grid.uId);
    place.position = arrange::meanPivot(selectedThings());
    m_entities.placeGrid(place);
}

} // namespace tilebuilder
