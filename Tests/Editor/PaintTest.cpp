// Strokes of the texture and colour tools, the eyedropper, and the sets of ground materials.

#include "KestrelCommon/Platform/VirtualKeys.h"
#include "Tests/Editor/EditorWorld.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Ground/Brush.h"

#include <gtest/gtest.h>

namespace tilebuilder
{
namespace
{

constexpr int s_iControlScanCode = 29;

struct PaintTest : testing::Test
{
    PaintTest() { m_editor.toolState().pBrush = brush(4); } // solid: the middle is as strong as the rim

    void control(bool bDown)
    {
        PlatformEvent event;
        event.eType = PlatformEventType::Key;
        event.iScanCode = s_iControlScanCode;
        event.uVirtualKey = KeyControl;
        event.bDown = bDown;
        m_world.input.queue(event);
        m_world.frames(1, 0.016f);
    }

    /// The byte of a weight in the middle of the tile.
    [[nodiscard]] uint32_t weight(uint32_t uMaterial)
    {
        const EditorTerrainSurface& surface = m_editor.surface();
        const auto span = uMaterial < 4 ? surface.texels0() : surface.texels1();
        return span[32 * surface.texelsX() + 32] >> uMaterial % 4 * 8 & 255u;
    }

    [[nodiscard]] tile::ColorValue color()
    {
        return m_editor.surface().colors()[16 * m_editor.surface().verticesX() + 16];
    }

    [[nodiscard]] size_t states() { return m_editor.tile()->states().size(); }

    /// A set of that many materials in the game's folder.
    void writeSet(const std::string& sPath, const std::string& sName, int iCount = 9)
    {
        const auto path = m_world.directories.resolvePath(sPath);
        std::filesystem::create_directories(path.parent_path());
        std::ofstream file(path);
        file << R"({"groundMaterials": {"width": 64, "height": 64, "textures": [)";
        for (int i = 0; i < iCount; ++i)
            file << (i ? "," : "") << R"({"name": ")" << sName << i << R"(", "diffuse": "$GAME_DATA/d)" << i
                 << R"(.png", "asgMap": "$GAME_DATA/a.png", "normalMap": "$GAME_DATA/n.png"})";
        file << "]}}";
    }

    void writeList(const std::string& sPath, const std::string& sName, const std::string& sSet)
    {
        const auto path = m_world.directories.resolvePath(sPath);
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << R"({"materialSetList": [{"name": ")" << sName << R"(", "materialSet": ")"
                            << sSet << R"("}]})";
    }

    EditorWorld m_world;
    TileEditor& m_editor = *m_world.pEditor;
};

TEST_F(PaintTest, aTextureStrokeAddsItsMaterialAloneAndControlTakesItAway)
{
    m_editor.setTool(ToolMaterial);
    EXPECT_EQ(m_world.windows.uPanels, ToolMaterial);
    for (const uint32_t uMaterial : {2u, 7u})
    {
        m_editor.toolState().groundMaterial = uMaterial;
        m_world.stroke(2); // the press, and a dab of two ticks
        EXPECT_EQ(weight(uMaterial), 127u);
        m_world.stroke(8);
        EXPECT_EQ(weight(uMaterial), 255u);
    }
    m_world.waitForQuiet();
    EXPECT_EQ(states(), 2u);

    control(true);
    m_world.stroke(2);
    EXPECT_EQ(weight(7), 128u);
    m_world.stroke(8);
    control(false);
    EXPECT_EQ(weight(7), 0u);
    EXPECT_EQ(weight(2), 255u) << "only the chosen one goes";
    m_world.waitForQuiet();
    EXPECT_EQ(states(), 3u);

    m_editor.undo();
    EXPECT_EQ(weight(7), 255u);
    m_editor.undo();
    EXPECT_EQ(weight(7), 0u);
    EXPECT_EQ(weight(2), 0u);
}

TEST_F(PaintTest, theNinthMaterialHasNoWeight)
{
    m_editor.setTool(ToolMaterial);
    m_editor.toolState().groundMaterial = 8;
    m_world.stroke(8);
    m_world.waitForQuiet();
    for (uint32_t i = 0; i < 8; ++i)
        EXPECT_EQ(weight(i), 0u);
    EXPECT_EQ(states(), 1u);
}

TEST_F(PaintTest, aColourStrokeGoesThroughBytesAndControlPaintsWhite)
{
    m_editor.setTool(ToolColor);
    m_editor.toolState().groundColor = {0.5f, 0.25f, 0.999f, 1.0f};
    m_editor.toolState().strength = 100;
    m_world.stroke(40);
    // 127, 63 and 254 of 255: the fractions that a byte can't hold are gone.
    EXPECT_NEAR(color().r, 127.0f / 255.0f, 1e-4f);
    EXPECT_NEAR(color().g, 63.0f / 255.0f, 1e-4f);
    EXPECT_NEAR(color().b, 254.0f / 255.0f, 1e-4f);
    m_world.waitForQuiet();
    EXPECT_EQ(states(), 2u);

    control(true);
    m_world.stroke(40);
    control(false);
    EXPECT_NEAR(color().r, 1.0f, 1e-4f);
    EXPECT_NEAR(color().g, 1.0f, 1e-4f);
    m_world.waitForQuiet();
    m_editor.undo();
    EXPECT_NEAR(color().g, 63.0f / 255.0f, 0.01f);
}

TEST_F(PaintTest, theEyedropperTakesWhatWasPaintedAndTheSamePressPaintsNothing)
{
    m_editor.setTool(ToolColor);
    EditorToolState& state = m_editor.toolState();
    state.groundColor = {0.2f, 0.6f, 0.4f, 1.0f};
    state.strength = 100;
    m_world.stroke(60);
    m_world.waitForQuiet();

    m_editor.changeColor({1.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_EQ(state.groundColor[0], 1.0f);
    state.pickState = PickArmed;
    m_world.button(true);
    m_world.input.update();
    m_editor.leftMouseDown();
    EXPECT_EQ(state.pickState, PickConsumed);
    const ColorRgba expected{51 * 0.003921569f, 153 * 0.003921569f, 102 * 0.003921569f, 255 * 0.003921569f};
    EXPECT_EQ(state.groundColor, expected);
    EXPECT_EQ(state.pColorTarget, &state.groundColor);
    m_world.frames(10, 0.05f);
    EXPECT_EQ(state.pickState, PickConsumed);
    m_world.button(false);
    m_world.frames(2, 0.016f);
    EXPECT_EQ(state.pickState, PickNormal);
    m_world.waitForQuiet();
    EXPECT_EQ(states(), 2u) << "nothing was painted";
}

TEST_F(PaintTest, aPickBesideTheTileKeepsTheColourAndAnotherToolDisarms)
{
    m_editor.setTool(ToolColor);
    EditorToolState& state = m_editor.toolState();
    state.groundColor = {0.25f, 0.5f, 0.75f, 1.0f};
    state.pickState = PickArmed;
    m_world.camera.position = {-500.0f, -500.0f, 60.0f};
    m_editor.leftMouseDown();
    EXPECT_EQ(state.groundColor[1], 0.5f);
    EXPECT_EQ(state.pickState, PickConsumed);

    state.pickState = PickArmed;
    m_editor.setTool(ToolHeight);
    EXPECT_EQ(state.pickState, PickNormal);
    EXPECT_EQ(state.pColorTarget, nullptr);
    m_editor.changeColor({0.0f, 0.0f, 0.0f, 0.0f});
    EXPECT_EQ(state.groundColor[1], 0.5f);
}

TEST_F(PaintTest, choosingAColourIsNoStep)
{
    m_editor.setTool(ToolColor);
    uint32_t uMask = 0;
    ASSERT_TRUE(m_editor.takeInterfaceDirty(uMask));
    m_editor.markInterfaceDirty(ChangeColorPicked);
    ASSERT_TRUE(m_editor.takeInterfaceDirty(uMask));
    EXPECT_EQ(uMask, ChangeColorPicked);
    m_editor.changeColor({0.5f, 0.5f, 0.5f, 1.0f});
    m_world.waitForQuiet();
    EXPECT_EQ(states(), 1u);
}

TEST_F(PaintTest, bothListsAreReadInOrderAndABrokenSetLeavesTheBoundOne)
{
    writeList("$GAME_DATA/Terrain/Materials/gnd_materialset_list.json", "Standard", "$GAME_DATA/a.json");
    writeList("$SURVIVAL_DATA/Terrain/Materials/gnd_materialset_list.json", "Autumn",
              "$SURVIVAL_DATA/b.json");
    const auto vecSets = m_editor.materialSets();
    ASSERT_EQ(vecSets.size(), 2u);
    EXPECT_EQ(vecSets[0].sName + vecSets[0].sPath, "Standard$GAME_DATA/a.json");
    EXPECT_EQ(vecSets[1].sName + vecSets[1].sPath, "Autumn$SURVIVAL_DATA/b.json");

    writeSet("$GAME_DATA/a.json", "Meadow");
    writeSet("$SURVIVAL_DATA/b.json", "Leaves");
    writeSet("$GAME_DATA/short.json", "Few", 8);
    EXPECT_EQ(m_editor.boundMaterialHash(), 0u) << "this world has no standard set";
    EXPECT_TRUE(m_editor.boundMaterials().vecMaterials.empty());
    ASSERT_TRUE(m_editor.bindMaterialSet("$GAME_DATA/a.json"));
    const uint64_t uHash = m_editor.boundMaterialHash();
    EXPECT_NE(uHash, 0u);
    EXPECT_FALSE(m_editor.bindMaterialSet("$GAME_DATA/short.json"));
    EXPECT_TRUE(m_world.log.has("Set has 8 textures needs to be 9"));
    EXPECT_FALSE(m_editor.bindMaterialSet("$GAME_DATA/a.json"));
    EXPECT_EQ(m_editor.boundMaterialHash(), uHash);

    uint32_t uMask = 0;
    while (m_editor.takeInterfaceDirty(uMask))
        ;
    ASSERT_TRUE(m_editor.bindMaterialSet("$SURVIVAL_DATA/b.json"));
    EXPECT_TRUE(m_editor.takeInterfaceDirty(uMask)) << "the window shows the new set";
    EXPECT_NE(m_editor.boundMaterialHash(), uHash);
    const BoundMaterials bound = m_editor.boundMaterials();
    ASSERT_EQ(bound.vecMaterials.size(), 8u);
    EXPECT_EQ(bound.vecMaterials[7].sName, "Leaves7");
    EXPECT_EQ(bound.vecMaterials[7].sPicture, "$GAME_DATA/d7.png");
    m_world.waitForQuiet();
    EXPECT_EQ(states(), 1u) << "a set is no part of the document";
}

} // namespace
} // namespace tilebuilder
