#pragma once // An editor with a few assets, and a hand that does to it what a user does.

#include "KestrelCommon/Core/Random.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "Tests/Editor/EditorWorld.h"
#include "Tests/Support/RecordingPanel.h"
#include "TileEditorCommon/Contracts/EntityListI.h"
#include "TileEditorCommon/Contracts/LibrarySourceI.h"
#include "TileEditorCommon/Entities/Asset/AssetArgs.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityCommands.h"

#include <random>

namespace tilebuilder
{

/// Input goes the way of the real one: through the queue, in frames. All that is random comes from one seed.
class WalkWorld
{
public:
    static constexpr uint8_t s_uAssets = 3; ///< uuids 1 to 3: two slots, none, six

    explicit WalkWorld(uint32_t uSeed) : random(uSeed)
    {
        seedRandom(uSeed);
        write("walk.json", R"({"assetSetList": [{"assetSet": "$GAME_DATA/set.json", "category": "All"}]})");
        write("set.json", R"({"assetListRenderable": [)" + entry(1, "Rock", 2) + "," + entry(2, "Post", 0) +
                              "," + entry(3, "Tree", 6) + "]}");
        std::string sModel = "mtllib none\nv -1 0 -1\nv 4 0 0\nv 0 8 0\nv 0 0 2\n";
        for (const char cName : std::string("abcdef"))
            sModel += std::string("usemtl ") + cName + "\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
        write("model.obj", sModel);
        write("Character/character.rend", R"({"mesh": "$GAME_DATA/model.obj"})");
        assets().addSets("$GAME_DATA/walk.json", {});
        editor().setTool(ToolPlace);
        look();
        world.log.clear();
    }

    [[nodiscard]] TileEditor& editor() { return *world.pEditor; }
    [[nodiscard]] Entities& entities() { return world.pEditor->entityStore(); }
    [[nodiscard]] Tile& tile() { return *world.pEditor->tile(); }
    [[nodiscard]] AssetEntityType& assets() { return entities().typed<AssetEntityType>(); }
    [[nodiscard]] static Uuid uuid(uint8_t u) { return Uuid{{u}}; }

    /// 0 to uBelow - 1.
    uint32_t roll(uint32_t uBelow) { return static_cast<uint32_t>(random()) % uBelow; }
    float between(float fLow, float fHigh)
    {
        return fLow + (fHigh - fLow) * static_cast<float>(roll(1 << 20)) / static_cast<float>(1 << 20);
    }
    /// Now and then on an edge of a cell, or past those of the tile.
    glm::vec3 somePlace()
    {
        const glm::vec2 size(tile().width() * 64, tile().height() * 64);
        glm::vec3 place(between(0.0f, size.x), between(0.0f, size.y), between(-5.0f, 10.0f));
        switch (roll(12))
        {
        case 0:
            place.x = 64.0f * static_cast<float>(roll(static_cast<uint32_t>(tile().width()) + 1));
            break;
        case 1:
            place.y = -0.0f;
            break;
        case 2:
            place = {between(-20.0f, 0.0f), place.y, place.z};
            break;
        case 3:
            place.z = roll(2) ? 8192.0f : -0.0f;
            break;
        default:
            break;
        }
        return place;
    }
    /// The null entity when there is none.
    Entity someEntity()
    {
        const auto spanAll = entities().all();
        return spanAll.empty() ? NullEntity : spanAll[roll(static_cast<uint32_t>(spanAll.size()))];
    }

    /// From the side, with all of the tile in the view. Long enough after a restore for what comes then to
    /// count as done by hand.
    void look()
    {
        const auto fSize = static_cast<float>(std::max(tile().width(), tile().height()) * 64);
        world.camera.isGliding = false;
        world.camera.position = {-0.4f * fSize, -0.5f * fSize, fSize};
        world.camera.lookAlong(glm::vec3(fSize * 0.5f, fSize * 0.5f, 0.0f) - world.camera.position);
        world.frames(2, 0.016f);
    }
    /// False when the point isn't in view.
    bool moveTo(const glm::vec3& point) { return world.pointAt(point); }
    void button(bool bDown, int iButton = 0) { world.press(bDown, iButton); }
    void key(uint32_t uKey, bool bDown) { world.key(uKey, bDown); }
    /// Presses a key with Ctrl, perhaps with Shift too.
    void chord(uint32_t uKey, bool bShift)
    {
        key(KeyControl, true);
        if (bShift)
            key(KeyShift, true);
        key(uKey, true);
        key(uKey, false);
        if (bShift)
            key(KeyShift, false);
        key(KeyControl, false);
    }
    /// As the window does in every frame.
    void showProperties()
    {
        RecordingPanel panel;
        editor().entities()->displayProperties(entities().active(), panel);
    }
    /// What was done becomes a step now, as when the document is about to be left.
    void settle()
    {
        editor().whenSafe([] {});
        // What comes in the two frames after a restore counts as its own.
        world.frames(2, 0.016f);
    }

    EditorWorld world;
    std::mt19937 random;

private:
    /// With so many colour slots, "s0" for material "a" and so on.
    static std::string entry(uint8_t u, const std::string& sName, int iSlots)
    {
        std::string sMaterials;
        std::string sColors;
        for (int i = 0; i < iSlots; ++i)
        {
            const std::string sComma = i == 0 ? "" : ",";
            const std::string sSlot = "\"s" + std::to_string(i) + "\"";
            sMaterials += sComma + "\"" + static_cast<char>('a' + i) + R"(": {"colorSlot": )" + sSlot + "}";
            sColors += sComma + sSlot + R"(: "10203)" + std::to_string(i) + "\"";
        }
        return R"({"uuid": ")" + uuid(u).text() + R"(", "name": ")" + sName +
               R"(", "renderable": {"mesh": "$GAME_DATA/model.obj", "materials": {)" + sMaterials +
               R"(}}, "defaultColors": {)" + sColors + "}}";
    }
    void write(const std::string& sFile, const std::string& sText)
    {
        const std::filesystem::path path = world.directories.resolvePath("$GAME_DATA/" + sFile);
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << sText;
    }
};

} // namespace tilebuilder
