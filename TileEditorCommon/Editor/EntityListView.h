#pragma once // The entities as the windows see them.

#include "TileEditorCommon/Contracts/EntityListI.h"

namespace tilebuilder
{

class Entities;

class EntityListView : public EntityListI
{
public:
    /// Borrowed.
    explicit EntityListView(Entities& entities) : m_entities(entities) {}

    [[nodiscard]] std::span<const Entity> all() const override;
    [[nodiscard]] uint64_t generation() const override;
    [[nodiscard]] bool exists(const Entity& entity) const override;
    [[nodiscard]] EntityTypeId kind(const Entity& entity) const override;
    [[nodiscard]] std::string name(const Entity& entity) const override;
    [[nodiscard]] std::string icon(const Entity& entity) const override;
    [[nodiscard]] bool isOutlined(const Entity& entity) const override;
    [[nodiscard]] bool isHidden(const Entity& entity) const override;
    [[nodiscard]] std::span<const Entity> selected() const override;
    void select(std::span<const Entity> spanEntities) override;
    [[nodiscard]] Transform pivot(const Entity& entity) const override;
    void setPivot(const Entity& entity, const Transform& transform) override;
    [[nodiscard]] uint8_t scaleFlags(const Entity& entity) const override;
    void displayProperties(const Entity& entity, PropertyPanelI& panel) override;

private:
    Entities& m_entities;
};

} // namespace tilebuilder
