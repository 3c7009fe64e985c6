// The templates of the starter content fit each of its data files.

#include "Tests/Data/DataWorld.h"

namespace
{

namespace fs = std::filesystem;

/// Checks all data files below the game's folders; the messages, a line each.
std::string checkContent(const fs::path& pathRoot, bool bPaths)
{
    LogCapture log;
    TempFolder folder;
    DirectoryManager directories{{folder.path() / "a", folder.path() / "b", folder.path() / "c", {}, 7}};
    const std::pair<const char*, const char*> arrKeys[] = {
        {"$GAME_DATA", "Data"}, {"$SURVIVAL_DATA", "Survival"}, {"$CHALLENGE_DATA", "ChallengeData"}};
    for (const auto& [pKey, pFolder] : arrKeys)
        directories.addKey(pKey, (pathRoot / pFolder).generic_string());
    DynamicDataManager manager;
    std::string sMessages;
    size_t uFiles = 0;
    for (const auto& [pKey, pFolder] : arrKeys)
    {
        std::error_code error;
        for (const auto& entry : fs::recursive_directory_iterator(pathRoot / pFolder, error))
        {
            const std::string sRelative = fs::relative(entry.path(), pathRoot / pFolder).generic_string();
            const std::string sEnding = entry.path().extension().string();
            const bool bTemplate =
                sRelative.starts_with("Templates/") && !sRelative.ends_with("/template_list.json");
            if ((sEnding != ".json" && sEnding != ".rend") || bTemplate)
                continue;
            ++uFiles;
            const std::string sPath = std::string(pKey) + "/" + sRelative;
            DynamicDataErrors errors;
            const auto pResource = manager.load(sPath, &errors);
            if (!pResource || !pResource->getTemplate())
            {
                sMessages += sPath + " has no template\n";
                continue;
            }
            for (size_t i = 0; i < errors.entries().size(); ++i)
            {
                const std::string& sMessage = errors.entries()[i].sMessage;
                if (!bPaths && sMessage.ends_with("' dosent exists."))
                    ++i; // and the line that names the member
                else
                    sMessages += sPath + ": " + sMessage + '\n';
            }
        }
    }
    EXPECT_GT(uFiles, 8u);
    EXPECT_EQ(log.errors(), 0u) << log.dump();
    return sMessages;
}

TEST(StarterContent, everyDataFileFitsItsTemplate)
{
    EXPECT_EQ(checkContent(QM_SOURCE_DIR "/StarterContent", false), "");
}

TEST(StarterContent, everyPathInTheGameFolderExists)
{
    // Pictures and models are made when the game folder is laid out.
    if (!fs::exists(QM_GAME_DIR "/Data/Templates/template_list.json"))
        GTEST_SKIP() << "no game folder";
    EXPECT_EQ(checkContent(QM_GAME_DIR, true), "");
}

} // namespace
