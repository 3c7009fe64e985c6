#pragma once // A kind of things for the asset library, out of a plain list.

#include "TileEditorCommon/Contracts/LibrarySourceI.h"

struct FakeSource : tilebuilder::LibrarySourceI
{
    std::vector<tilebuilder::LibraryItem> vecItems;
    std::set<std::string> setCategories;
    uint64_t uRevision = 1;
    uint64_t uIconRevision = 1;
    std::string sIcon; ///< of every item
    size_t uIconsAsked = 0;
    tilebuilder::EntityTypeId eType = tilebuilder::EntityTypeId_Asset;

    void add(tilebuilder::LibraryItemKind eKind, std::string sName, std::string sContent,
             std::vector<std::string> vecCategories)
    {
        vecItems.push_back({.eKind = eKind,
                            .sName = std::move(sName),
                            .uuid = Uuid::random(),
                            .uKey = vecItems.size(),
                            .sContent = std::move(sContent),
                            .vecCategories = std::move(vecCategories)});
        setCategories.insert(vecItems.back().vecCategories.begin(), vecItems.back().vecCategories.end());
    }

    [[nodiscard]] uint64_t revision() const override { return uRevision; }
    void listItems(std::vector<tilebuilder::LibraryItem>& vecOut) const override
    {
        vecOut.insert(vecOut.end(), vecItems.begin(), vecItems.end());
    }
    void listCategories(std::set<std::string>& setOut) const override
    {
        setOut.insert(setCategories.begin(), setCategories.end());
    }
    [[nodiscard]] std::string iconPath(const tilebuilder::LibraryItem&) override
    {
        ++uIconsAsked;
        return sIcon;
    }
    [[nodiscard]] uint64_t iconRevision() const override { return uIconRevision; }
    [[nodiscard]] std::vector<tilebuilder::LibraryTipLine>
    tip(const tilebuilder::LibraryItem& item) const override
    {
        return {{"#BBBBBB Type: #EEEE33 Asset \n", {}}, {"#BBBBBB Name: #33EE33", item.sName}};
    }
    [[nodiscard]] std::vector<tilebuilder::LibraryMenuEntry>
    menu(const tilebuilder::LibraryItem&) const override
    {
        using tilebuilder::LibraryCommand;
        return {{"Open AssetList", LibraryCommand::OpenFile, "$GAME_DATA/a/list.json"},
                {"Open AssetList Location", LibraryCommand::OpenFolder, "$GAME_DATA/a/list.json"},
                {"Copy Prefab Path", LibraryCommand::CopyText, "$GAME_DATA/p.prefab"},
                {"Open Prefab In Editor", LibraryCommand::OpenDocument, "$GAME_DATA/p.prefab"}};
    }
    [[nodiscard]] tilebuilder::LibraryPlacement placement(const tilebuilder::LibraryItem& item) const override
    {
        return {.eType = eType, .uuid = item.uuid, .uIndex = static_cast<uint32_t>(item.uKey)};
    }
};
