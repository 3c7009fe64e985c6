#pragma once // A data folder of its own with templates, and a clock that tests turn.

#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Data/DynamicDataResource.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/JsonText.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <json/value.h>

struct DataWorld
{
    DataWorld() { directories.addKey("$GAME_DATA", folder.text()); }

    /// Writes a file below the data folder; its keyed path.
    std::string file(const std::string& sName, std::string_view sText)
    {
        const std::filesystem::path path = folder.path() / sName;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << sText;
        return "$GAME_DATA/" + sName;
    }
    std::string fileText(const std::string& sName) const
    {
        std::ifstream stream(folder.path() / sName, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// Starts the manager with these templates: file names and texts.
    void start(const std::vector<std::pair<std::string, std::string>>& vecTemplates)
    {
        std::string sList;
        for (const auto& [sName, sText] : vecTemplates)
            sList += (sList.empty() ? "\"" : ",\"") + file("Templates/" + sName, sText) + '"';
        file("Templates/template_list.json", "{\"template_list\":[" + sList + "]}");
        pManager.reset();
        pManager =
            std::make_unique<DynamicDataManager>(DynamicDataManager::s_pListPath, [this] { return uNow; });
    }
    static Json::Value json(std::string_view sText)
    {
        std::string sError;
        const auto jValue = parseJson(sText, sError);
        EXPECT_TRUE(jValue) << sError;
        return jValue.value_or(Json::Value());
    }
    /// Reads a text through a template; the messages with their paths, a line each.
    std::string read(const char* pTemplate, std::string_view sText)
    {
        DynamicDataErrors errors;
        const bool bGood = pManager->read(tree, json(sText), pManager->getTemplate(pTemplate), &errors);
        EXPECT_EQ(bGood, errors.empty());
        std::string sMessages;
        for (const auto& entry : errors.entries())
            sMessages += entry.sMessage + '\n';
        return sMessages;
    }
    /// The tree as compact text.
    std::string text(const DynamicData::Value& value) const
    {
        Json::Value jValue;
        pManager->write(nullptr, value, jValue);
        return writeJsonText(jValue, JsonStyle::Compact);
    }

    LogCapture log;
    TempFolder folder;
    DirectoryManager directories{
        {folder.path() / "roaming", folder.path() / "local", folder.path() / "game", {}, 7}};
    uint64_t uNow = 1000;
    std::unique_ptr<DynamicDataManager> pManager;
    DynamicData::Value tree;
};
