#pragma once // A game of the user's own, the one kind of item that a run can work within.

#include "KestrelCommon/Ugc/UgcBase.h"

/// What the game builds on; the words stand in "config.json".
enum class BaseGameContent : uint32_t
{
    None = 0,
    Creative = 1,
    Survival = 3,
};

/// A script file of the game and the class in it; the file is a keyed path.
struct GameScript
{
    std::string sFile;
    std::string sClass;
};

class UgcCustomGameMod : public UgcBase
{
public:
    explicit UgcCustomGameMod(std::string sDirectory) : UgcBase(UgcKind::CustomGame, std::move(sDirectory)) {}

    /// Reads the base game from "config.json" and finds the content.
    void refresh() override;
    /// Whether "config.json" is there; tells the user when it isn't.
    [[nodiscard]] bool validate() override;
    /// Reads the scripts from "config.json"; tells the user what is missing.
    [[nodiscard]] bool prepare() override;
    [[nodiscard]] std::string getPreviewPath() const override { return m_sPreviewPath; }
    [[nodiscard]] std::string getAssetIconPath() const { return directoryKey() + "/Gui/AssetIcons/"; }

    [[nodiscard]] BaseGameContent baseGameContent() const { return m_eBaseGameContent; }
    [[nodiscard]] const std::string& iconSetName() const { return m_sIconSetName; }
    [[nodiscard]] const GameScript& gameScript() const { return m_gameScript; }
    [[nodiscard]] const GameScript& playerScript() const { return m_playerScript; }

private:
    [[nodiscard]] std::string configPath() const { return directoryKey() + "/config.json"; }
    bool readScript(const Json::Value& jConfig, const char* pKey, GameScript& script) const;

    BaseGameContent m_eBaseGameContent = BaseGameContent::None;
    std::string m_sIconSetName;
    std::string m_sPreviewPath;
    GameScript m_gameScript;
    GameScript m_playerScript;
};
