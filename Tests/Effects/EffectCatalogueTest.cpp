#include "KestrelCommon/Effects/EffectCatalogue.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>
#include <json/value.h>

namespace
{

struct EffectCatalogueTest : testing::Test
{
    void read(std::string_view sText)
    {
        std::string sError;
        const auto jRoot = parseJson(sText, sError);
        ASSERT_TRUE(jRoot) << sError;
        catalogue.read(*jRoot, "sets.json");
    }

    LogCapture log;
    EffectCatalogue catalogue;
};

TEST_F(EffectCatalogueTest, setsHoldEffectsWithTheirValues)
{
    read(R"({"valueLists": {"light": [{"name": "Range", "kind": "float", "default": 10},
                                      {"name": "Color", "kind": "color", "default": [1, 1, 1, 1]}]},
             "effectSetList": [{"name": "Empty", "effects": []},
                               {"name": "Lamps", "effects": [
                {"name": "Lamp", "types": ["light", "sound"], "uses": ["light", "none"],
                 "values": [{"name": "Range", "kind": "float", "default": 4},
                            {"name": "Drift", "kind": "vec3", "default": [1, 2, 3]},
                            {"name": "Mode", "kind": "string", "default": "a", "options": ["a", "b"]}]},
                {"name": "Off"}]}]})");
    EXPECT_TRUE(log.lines().empty()) << log.dump();
    const auto place = catalogue.find("Lamp");
    ASSERT_TRUE(place);
    EXPECT_EQ(place->iSet, 1);
    EXPECT_FALSE(catalogue.find("lamp"));
    const auto pLamp = catalogue.effect(*place);
    EXPECT_TRUE(pLamp->hasLight && pLamp->hasSound && !pLamp->hasParticles);
    ASSERT_EQ(pLamp->values.size(), 4u);
    EXPECT_EQ(std::get<float>(pLamp->values[0].byDefault.content), 4.0f)
        << "its own value replaces the list's";
    EXPECT_EQ(pLamp->values[3].options.size(), 2u);
    EXPECT_EQ(catalogue.effect({1, 99})->name, "Off") << "limited to the last of the set";
    EXPECT_EQ(catalogue.effect({0, 0}), nullptr);
    EXPECT_EQ(catalogue.effect({-1, 0}), nullptr);

    EffectInstance instance(pLamp);
    EXPECT_TRUE(instance.set("Range", {EffectValueKind::Float, 4.0f}));
    EXPECT_FALSE(instance.differs(0));
    EXPECT_TRUE(instance.set("Range", {EffectValueKind::Float, 5.0f}));
    EXPECT_TRUE(instance.differs(0));
    EXPECT_FALSE(instance.set("Range", {EffectValueKind::Bool, true})) << "another form";
    EXPECT_FALSE(instance.set("Height", {EffectValueKind::Float, 5.0f}));
    // A stored vector of three comes as a colour, whose alpha means nothing.
    EXPECT_TRUE(
        instance.set("Drift", {EffectValueKind::Color, std::array<float, 4>{1.0f, 2.0f, 3.0f, 0.5f}}));
    EXPECT_FALSE(instance.differs(2));
}

TEST_F(EffectCatalogueTest, faultsAreReportedAndLeftOut)
{
    read(R"({"effectSetList": [3, {"effects": []}, {"name": "A", "effects": [
        {"name": ""}, {"name": "x", "values": [{"name": "v", "kind": "float", "default": "1"},
            {"name": "w", "kind": "quat", "default": 1}, {"name": "c", "kind": "color", "default": [1, 1, 1]},
            {"kind": "bool", "default": true}, {"name": "good", "kind": "bool", "default": true}]},
        {"name": "x"}]}]})");
    EXPECT_EQ(log.errors(), 8u) << log.dump();
    ASSERT_EQ(catalogue.sets().size(), 1u);
    ASSERT_EQ(catalogue.sets()[0].effects.size(), 1u);
    EXPECT_EQ(catalogue.sets()[0].effects[0]->values.size(), 1u);
}

TEST_F(EffectCatalogueTest, theStarterContentHasLightsParticlesAndSounds)
{
    DirectoryManager directories{{}};
    directories.addKey("$GAME_DATA", QM_SOURCE_DIR "/StarterContent/Data");
    ASSERT_TRUE(catalogue.load(EffectCatalogue::s_pGamePath));
    EXPECT_TRUE(log.lines().empty()) << log.dump();
    const auto place = catalogue.find("Campfire");
    ASSERT_TRUE(place);
    const auto pFire = catalogue.effect(*place);
    EXPECT_TRUE(pFire->hasLight && pFire->hasParticles && pFire->hasSound);
    EXPECT_EQ(pFire->values.size(), 22u);
    EXPECT_FALSE(catalogue.load("$GAME_DATA/Effects/none.json"));
}

} // namespace
