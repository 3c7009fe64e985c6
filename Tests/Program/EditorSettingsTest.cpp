#include "TileEditor/EditorSettings.h"

#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace
{

TEST(EditorSettings, theFieldOfViewStaysWithinItsBounds)
{
    LogCapture log;
    TempFolder folder;
    DirectoryManager directories({folder.path(), folder.path(), folder.path(), {}, 1});
    const std::string sFile = folder.text() + "/settings.json";
    EXPECT_EQ(EditorSettings::read(sFile).fov, 45);
    EXPECT_TRUE(log.has("Failed to parse '" + sFile + "'. File not found!"));
    for (const auto& [pText, iFov] :
         std::initializer_list<std::pair<const char*, int>>{{"{\"FOV\": 30}", 45},
                                                            {"{\"FOV\": 90.7}", 90},
                                                            {"{\"FOV\": 300}", 120},
                                                            {"{\"FOV\": -1e300}", 45},
                                                            {"{}", 45},
                                                            {"{\"FOV\": \"wide\"}", 45},
                                                            {"{\"FOV\"", 45}})
    {
        std::ofstream(sFile) << pText;
        EXPECT_EQ(EditorSettings::read(sFile).fov, iFov) << pText;
    }
}

} // namespace
