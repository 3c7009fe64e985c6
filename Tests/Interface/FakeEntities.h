#pragma once // A list of things as the windows see it, without a tile.

#include "TileEditorCommon/Contracts/EntityListI.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"

#include <algorithm>
#include <functional>
#include <map>
#include <vector>

struct FakeEntities : tilebuilder::EntityListI
{
    struct Thing
    {
        tilebuilder::EntityTypeId eKind = tilebuilder::EntityTypeId_Asset;
        std::string sName;
        Transform transform;
        uint8_t uScaleFlags = 3;
        bool bOutlined = true;
        bool bHidden = false;
        bool bSelectable = true;
    };

    std::vector<tilebuilder::Entity> vecAll;
    std::map<uint32_t, Thing> mapThings;
    std::vector<tilebuilder::Entity> vecSelected;
    uint32_t uNext = 1;
    uint64_t uGeneration = 1;
    mutable size_t uNamesAsked = 0;
    std::function<void(uint32_t, tilebuilder::PropertyPanelI&)> fnRows;

    /// Types are only told apart from none.
    static tilebuilder::EntityTypeI* anyType()
    {
        static int iPlace = 0;
        return reinterpret_cast<tilebuilder::EntityTypeI*>(&iPlace);
    }

    tilebuilder::Entity add(Thing thing)
    {
        vecAll.push_back({uNext++, anyType()});
        mapThings[vecAll.back().uId] = std::move(thing);
        return vecAll.back();
    }
    tilebuilder::Entity add(tilebuilder::EntityTypeId eKind, std::string sName)
    {
        return add(Thing{.eKind = eKind, .sName = std::move(sName)});
    }
    void remove(uint32_t uId)
    {
        const auto it = std::find(vecAll.begin(), vecAll.end(), tilebuilder::Entity{uId, nullptr});
        *it = vecAll.back();
        vecAll.pop_back();
        mapThings.erase(uId);
        std::erase(vecSelected, tilebuilder::Entity{uId, nullptr});
    }
    [[nodiscard]] const Thing& thing(const tilebuilder::Entity& entity) const
    {
        static const Thing s_none{};
        const auto it = mapThings.find(entity.uId);
        return it == mapThings.end() ? s_none : it->second;
    }

    [[nodiscard]] std::span<const tilebuilder::Entity> all() const override { return vecAll; }
    [[nodiscard]] uint64_t generation() const override { return uGeneration; }
    [[nodiscard]] bool exists(const tilebuilder::Entity& entity) const override
    {
        return mapThings.contains(entity.uId);
    }
    [[nodiscard]] tilebuilder::EntityTypeId kind(const tilebuilder::Entity& entity) const override
    {
        return thing(entity).eKind;
    }
    [[nodiscard]] std::string name(const tilebuilder::Entity& entity) const override
    {
        ++uNamesAsked;
        return thing(entity).sName;
    }
    [[nodiscard]] std::string icon(const tilebuilder::Entity& entity) const override
    {
        return "$GAME_DATA/Gui/Editor/ed_icon_" +
               std::string(tilebuilder::entityTraits(thing(entity).eKind).sGizmo) + ".png";
    }
    [[nodiscard]] bool isOutlined(const tilebuilder::Entity& entity) const override
    {
        return thing(entity).bOutlined;
    }
    [[nodiscard]] bool isHidden(const tilebuilder::Entity& entity) const override
    {
        return thing(entity).bHidden;
    }
    [[nodiscard]] std::span<const tilebuilder::Entity> selected() const override { return vecSelected; }
    void select(std::span<const tilebuilder::Entity> spanEntities) override
    {
        std::vector<tilebuilder::Entity> vecNew(spanEntities.begin(), spanEntities.end());
        std::erase_if(vecNew, [this](const auto& entity) { return !thing(entity).bSelectable; });
        vecSelected = std::move(vecNew);
    }
    [[nodiscard]] Transform pivot(const tilebuilder::Entity& entity) const override
    {
        return thing(entity).transform;
    }
    void setPivot(const tilebuilder::Entity& entity, const Transform& transform) override
    {
        mapThings.at(entity.uId).transform = transform;
    }
    [[nodiscard]] uint8_t scaleFlags(const tilebuilder::Entity& entity) const override
    {
        return thing(entity).uScaleFlags;
    }
    void displayProperties(const tilebuilder::Entity& entity, tilebuilder::PropertyPanelI& panel) override
    {
        if (fnRows)
            fnRows(entity.uId, panel);
    }
};
