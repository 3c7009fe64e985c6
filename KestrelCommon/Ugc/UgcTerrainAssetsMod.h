#pragma once // Assets and harvestables that somebody made for others to place.

#include "KestrelCommon/Ugc/UgcBase.h"

class UgcTerrainAssetsMod : public UgcBase
{
public:
    explicit UgcTerrainAssetsMod(std::string sDirectory)
        : UgcBase(UgcKind::TerrainAssets, std::move(sDirectory))
    {
    }

    void refresh() override;
    [[nodiscard]] std::string getPreviewPath() const override { return m_sPreviewPath; }
    /// Keyed, with a '/' at its end; empty when the item has no such folder.
    [[nodiscard]] std::string getIconPath() const override { return m_sIconFolder; }

private:
    std::string m_sPreviewPath;
    std::string m_sIconFolder;
};
