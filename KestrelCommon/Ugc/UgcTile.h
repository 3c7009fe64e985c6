#pragma once // A content item that holds one tile.

#include "KestrelCommon/Ugc/UgcBase.h"

class UgcTile : public UgcBase
{
public:
    explicit UgcTile(std::string sDirectory) : UgcBase(UgcKind::Tile, std::move(sDirectory)) {}

    /// Takes the folder's ".tile" and ".png"; logs when there is none or more than one tile.
    void refresh() override;
    [[nodiscard]] bool validate() override;
    [[nodiscard]] std::string getIconPath() const override { return m_sIconPath; }

    /// Keyed path of the tile's file; empty: none.
    [[nodiscard]] const std::string& tilePath() const { return m_sTilePath; }

private:
    std::string m_sTilePath;
    std::string m_sIconPath;
};
