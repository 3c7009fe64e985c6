#include "TileEditorCommon/Entities/EntityMenu.h"

#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityCommands.h"

namespace tilebuilder
{

namespace
{

using C = EntityCommand;
using Items = std::vector<EntityMenuItem>;

class Builder
{
public:
    explicit Builder(const EntityCommands& commands)
        : m_commands(commands),
          m_uSelected(commands.selectedCount())
    {
    }

    /// An entry that runs a command, with children also a menu.
    EntityMenuItem item(std::string sLabel, EntityCommand eCommand, Items vecChildren = {}) const
    {
        const EntityCommandInfo& info = entityCommands()[static_cast<size_t>(eCommand)];
        return {.sLabel = std::move(sLabel),
                .uAction = info.uAction,
                .uCommand = static_cast<uint32_t>(eCommand),
                .bEnabled = m_commands.canRun(eCommand, m_uSelected),
                .vecChildren = std::move(vecChildren)};
    }
    /// A menu that does nothing of its own.
    static EntityMenuItem menu(std::string sLabel, Items vecChildren)
    {
        return {.sLabel = std::move(sLabel), .vecChildren = std::move(vecChildren)};
    }
    static EntityMenuItem separator() { return {.bSeparator = true}; }
    static std::string counted(const char* pText, size_t uCount, const char* pEnd = ")")
    {
        return pText + std::to_string(uCount) + pEnd;
    }

    EntityMenuItem transform() const;
    EntityMenuItem camera() const;
    EntityMenuItem place() const;
    EntityMenuItem selectAll() const;

    [[nodiscard]] size_t selected() const { return m_uSelected; }
    [[nodiscard]] const Entities& entities() const { return m_commands.entities(); }

private:
    const EntityCommands& m_commands;
    size_t m_uSelected;
};

EntityMenuItem Builder::transform() const
{
    return menu(
        "Transform",
        {item("[Reset ", C::Reset, {item("Rotation", C::ResetRotation), item("Scale", C::ResetScale)}),
         item("[Random Rotation ", C::RandomRotation,
              {item("X", C::RandomX), item("Y ", C::RandomY), item("Z", C::RandomZ)}),
         item("[Round ", C::Round,
              {item("Rotation 90", C::RoundRotation90), item("Rotation 45", C::RoundRotation45),
               item("Rotation 10", C::RoundRotation10), item("Rotation 1", C::RoundRotation1), separator(),
               item("Position 1.0", C::RoundPosition100), item("Position 0.5", C::RoundPosition50),
               item("Position 0.25", C::RoundPosition25), separator(), item("Scale 0.1", C::RoundScale)})});
}

EntityMenuItem Builder::camera() const
{
    return menu("Camera", {item("Reset Rotation", C::ClearRotation), item("Reset Tilt", C::ResetTilt),
                           item("Look At", C::LookAt), item("Correct Tangent", C::CorrectTangent)});
}

EntityMenuItem Builder::place() const
{
    return menu("Place",
                {item("[Move to Grid ", C::MoveToGrid,
                      {item("XYZ", C::MoveToGridXyz), item("X", C::MoveToGridX), item("Y", C::MoveToGridY),
                       item("Z ", C::MoveToGridZ), item("Random in Sphere ", C::RandomInSphere),
                       item("Random on Z Plane ", C::RandomOnPlane)}),
                 item("Move Grid To Selection ", C::GridToSelection), item("Center ", C::Center),
                 item("Move to Origin", C::MoveToOrigin),
                 item("[Move to Ground ", C::MoveToGround, {item("And Rotate ", C::MoveToGroundAndRotate)}),
                 item("[Place In-between]", C::InBetween,
                      {item("Position", C::InBetweenPosition), item("Scale", C::InBetweenScale),
                       item("Rotation", C::InBetweenRotation)})});
}

EntityMenuItem Builder::selectAll() const
{
    const auto kind = [this](const char* pText, EntityTypeId eId, EntityCommand eCommand)
    { return item(counted(pText, entities().countOf(eId)), eCommand); };
    return item(counted("[Select All (", entities().count(), ")]"), C::SelectAll,
                {kind("Assets (", EntityTypeId_Asset, C::SelectAssets),
                 kind("Harvestables (", EntityTypeId_Harvestable, C::SelectHarvestables),
                 kind("Decals (", EntityTypeId_Decal, C::SelectDecals),
                 kind("Blueprints (", EntityTypeId_Blueprint, C::SelectBlueprints),
                 kind("Nodes (", EntityTypeId_Node, C::SelectNodes),
                 kind("Prefabs (", EntityTypeId_Prefab, C::SelectPrefabs)});
}

} // namespace

std::vector<EntityMenuItem> buildEntityMenu(const EntityCommands& commands)
{
    const Builder builder(commands);
    const Entities& entities = builder.entities();
    size_t uPrefabs = 0;
    std::string sPrefab;
    for (const Entity& entity : entities.selected())
        if (entities.exists(entity) && entity.pType->getTypeId() == EntityTypeId_Prefab)
        {
            ++uPrefabs;
            sPrefab = entity.pType->getDisplayName(entity.uId);
        }

    Items vecMenu{builder.transform(), Builder::separator(), builder.camera(),   Builder::separator(),
                  builder.place(),     Builder::separator(), builder.selectAll()};
    if (entities.isTileOpen())
        vecMenu.push_back(
            builder.item(Builder::counted("Create Prefab (", builder.selected()), C::CreatePrefab));
    vecMenu.push_back(builder.item(Builder::counted("Un-Prefab (", uPrefabs), C::UnPrefab));
    vecMenu.push_back(
        builder.item("Open Prefab (" + (uPrefabs == 1 ? sPrefab : std::string()) + ")", C::OpenPrefab));
    for (EntityMenuItem& item : Items{
             Builder::separator(), builder.item("Copy ", C::Copy), builder.item("Paste ", C::Paste),
             builder.item("[Paste Transform ", C::PasteTransform,
                          {builder.item("Position ", C::PastePosition), builder.item("Scale ", C::PasteScale),
                           builder.item("Rotation ", C::PasteRotation)}),
             builder.item("Paste Colors", C::PasteColors), Builder::separator(),
             builder.item("Replace ", C::Replace), builder.item("Delete ", C::Delete)})
        vecMenu.push_back(std::move(item));
    return vecMenu;
}

} // namespace tilebuilder
