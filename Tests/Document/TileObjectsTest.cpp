#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "Tests/Document/TileWorld.h"
#include "Tests/Records/CodecTable.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

/// Appends sections to the image of a tile without objects.
class ImageBuilder
{
public:
    explicit ImageBuilder(const TileState& state) : m_vecImage(state.bytes().begin(), state.bytes().end()) {}

    void add(size_t uCell, tile::SectionGroup eGroup, uint32_t uElement, uint32_t uCount,
             const std::string& sContent)
    {
        const auto spanPacked = lz4Compress(std::as_bytes(std::span(sContent)), Lz4Quality::Final, m_scratch);
        tile::CellHeader header;
        std::memcpy(&header, m_vecImage.data() + 60 + uCell * 388, 388);
        tile::setSection(header, tile::sectionGroup(eGroup), uElement,
                         {uCount, static_cast<uint32_t>(m_vecImage.size()),
                          static_cast<uint32_t>(spanPacked.size()), static_cast<uint32_t>(sContent.size())});
        std::memcpy(m_vecImage.data() + 60 + uCell * 388, &header, 388);
        m_vecImage.insert(m_vecImage.end(), spanPacked.begin(), spanPacked.end());
    }
    void setVersion(uint32_t uVersion) { std::memcpy(m_vecImage.data() + 4, &uVersion, 4); }
    [[nodiscard]] const std::vector<std::byte>& image() const { return m_vecImage; }

private:
    std::vector<std::byte> m_vecImage;
    ResizeableBuffer m_scratch;
};

std::string sectionText(std::span<const std::byte> spanImage, size_t uCell, tile::SectionGroup eGroup,
                        uint32_t uElement)
{
    const auto image = tile::TileImage::open(spanImage, "test");
    const tile::Section section =
        tile::section(image->cellHeader(uCell), tile::sectionGroup(eGroup), uElement);
    const auto spanPacked = image->sectionBytes(section);
    std::string sText(section.uSize, ' ');
    if (section.uCount == 0 || !spanPacked ||
        !lz4Decompress(*spanPacked, std::as_writable_bytes(std::span(sText))))
        return {};
    return std::to_string(section.uCount) + ":" + sText;
}

struct TileObjectsTest : testing::Test
{
    bool read(std::span<const std::byte> spanImage)
    {
        return world.tile.read(spanImage, "$TEST_DATA", "x.tile", false, true, false);
    }

    LogCapture log;
    TileWorld world{2, 1};
};

/// A section and the codec whose sample stands in it.
struct SampleSection
{
    tile::SectionGroup eGroup;
    uint32_t uElement;
    const char* pCodec;
};

const SampleSection s_arrSections[] = {
    {tile::SectionGroup::Assets, 0, "Asset"},
    {tile::SectionGroup::Assets, 3, "Asset"},
    {tile::SectionGroup::Blueprints, 0, "Blueprint"},
    {tile::SectionGroup::Nodes, 0, "Node"},
    {tile::SectionGroup::Prefabs, 0, "Prefab"},
    {tile::SectionGroup::Decals, 0, "Decal"},
    {tile::SectionGroup::Harvestables, 2, "Harvestable"},
    {tile::SectionGroup::Kinematics, 1, "Harvestable"},
    {tile::SectionGroup::VoxelMeshes, 0, "VoxelMesh"},
    {tile::SectionGroup::VoxelTerrain, 0, "VoxelTerrain"},
};

std::string sampleText(const char* pCodec, uint32_t uLayout, uint32_t uContent)
{
    const Packed packed = codec(pCodec).fnSample(uLayout, uContent);
    return {reinterpret_cast<const char*>(packed.vecBytes.data()), packed.vecBytes.size()};
}

struct CarriedObjectsTest : TileObjectsTest, testing::WithParamInterface<uint32_t>
{
};

TEST_P(CarriedObjectsTest, everyVersionIsKeptAndWrittenAsTheCurrentOne)
{
    const uint32_t uVersion = GetParam();
    ImageBuilder builder(world.tile.write(tile::WriteFinal));
    builder.setVersion(uVersion);
    for (const auto& [eGroup, uElement, pCodec] : s_arrSections)
        builder.add(1, eGroup, uElement, SampleCount, sampleText(pCodec, uVersion, uVersion));
    ASSERT_TRUE(read(builder.image())) << log.dump();
    EXPECT_EQ(world.tile.holdsForeignObjects(), uVersion < 4) << "assets by name";
    EXPECT_EQ(log.errors() + log.warnings(), 0u) << log.dump();
    EXPECT_EQ(log.count("The tile's 2 decals can't be shown yet"), uVersion >= 8 ? 1u : 0u);
    EXPECT_TRUE(log.has("The tile's 4 assets can't be shown yet and are kept as they are"));

    world.tile.pushState(true);
    world.surface.raise(world.dab(30, 30, 9, 1), 1.0f);
    world.tile.pushState(false);
    world.tile.undo(); // an undo image has no voxel terrain, yet it stays
    const TileState undo = world.tile.write(tile::WriteUndo);
    const TileState file = world.tile.write(tile::WritePlain | tile::WriteFinal);
    const TileState exported = world.tile.write(tile::WriteExport | tile::WriteFinal);
    for (const auto& [eGroup, uElement, pCodec] : s_arrSections)
    {
        const bool bPresent = uVersion >= tile::sectionGroup(eGroup).uFirstVersion;
        const std::string sWanted =
            bPresent ? "2:" + sampleText(pCodec, tile::VersionCurrent, uVersion) : std::string();
        EXPECT_EQ(sectionText(file.bytes(), 1, eGroup, uElement), sWanted) << pCodec;
        EXPECT_EQ(sectionText(undo.bytes(), 1, eGroup, uElement),
                  eGroup == tile::SectionGroup::VoxelTerrain ? "" : sWanted)
            << pCodec;
        EXPECT_EQ(sectionText(file.bytes(), 0, eGroup, uElement), "") << pCodec;
        const std::string sExported = sectionText(exported.bytes(), 1, eGroup, uElement);
        if (eGroup == tile::SectionGroup::Prefabs && bPresent)
            EXPECT_EQ(sExported, "1:" + sWanted.substr(2 + (sWanted.size() - 2) / 2)) << "the kept one";
        else
            EXPECT_EQ(sExported, sWanted) << pCodec;
    }
    EXPECT_EQ(log.count("The content of 1 prefabs is not in the export"), uVersion >= 7 ? 1u : 0u);

    // Another document has none of them.
    const TileState empty = TileWorld(1, 1).tile.write(tile::WriteFinal);
    ASSERT_TRUE(read(empty.bytes()));
    EXPECT_EQ(world.tile.write(tile::WriteFinal).size, empty.size);
}

INSTANTIATE_TEST_SUITE_P(Versions, CarriedObjectsTest, testing::Range(3u, 14u));

TEST_F(TileObjectsTest, prefabsAmongOldBlueprintsBecomePrefabs)
{
    std::string sBlueprints;
    for (const std::string sPath : {"$A/x.prefab", "$A/y.blueprint"})
        sBlueprints += std::string(28, '\0') + static_cast<char>(sPath.size()) + sPath;
    ImageBuilder builder(world.tile.write(tile::WriteFinal));
    builder.setVersion(6);
    builder.add(1, tile::SectionGroup::Blueprints, 0, 2, sBlueprints);
    ASSERT_TRUE(read(builder.image())) << log.dump();
    const TileState file = world.tile.write(tile::WriteFinal);
    const std::string sPrefabs = sectionText(file.bytes(), 1, tile::SectionGroup::Prefabs, 0);
    EXPECT_EQ(sPrefabs.substr(0, 2), "1:");
    EXPECT_NE(sPrefabs.find("$A/x.prefab"), std::string::npos);
    EXPECT_EQ(sectionText(file.bytes(), 1, tile::SectionGroup::Blueprints, 0),
              "1:" + std::string(28, '\0') + std::string("\x0e\0\0\0", 4) + "$A/y.blueprint" +
                  std::string(1, '\0'));
}

TEST_F(TileObjectsTest, withoutBoundsCarriedObjectsOfAllCellsMeetInTheFirst)
{
    TileWorld objects(2, 1, tile::TypeObjects);
    ImageBuilder builder(objects.tile.write(tile::WriteFinal));
    const std::string sDecals = sampleText("Decal", 13, 13);
    builder.add(0, tile::SectionGroup::Decals, 0, 2, sDecals);
    builder.add(1, tile::SectionGroup::Decals, 0, 2, sDecals);
    ASSERT_TRUE(objects.tile.read(builder.image(), "$TEST_DATA", "x.tile", false, true, false));
    objects.tile.pushState(true);
    objects.tile.restoreState(true, true);
    objects.tile.restoreState(true, false);
    const TileState state = objects.tile.write(tile::WriteFinal);
    const std::string sWritten = sectionText(state.bytes(), 0, tile::SectionGroup::Decals, 0);
    ASSERT_EQ(sWritten.size(), 2 + 2 * sDecals.size());
    EXPECT_EQ(sWritten.substr(0, 2), "4:");
    EXPECT_NE(sWritten.find(sDecals), std::string::npos);
    const float fMoved = 64.0f + 1.5f;
    EXPECT_NE(sWritten.find(std::string(reinterpret_cast<const char*>(&fMoved), 4) + sDecals.substr(4, 30)),
              std::string::npos);
    EXPECT_EQ(sectionText(state.bytes(), 1, tile::SectionGroup::Decals, 0), "");
}

TEST_F(TileObjectsTest, assetsThatAreStoredByNameLeaveTheTileWithoutAName)
{
    const auto path = world.folder.path() / "test/old.tile";
    for (const uint32_t uVersion : {3u, 4u})
    {
        ImageBuilder builder(world.tile.write(tile::WriteFinal));
        builder.setVersion(uVersion);
        builder.add(0, tile::SectionGroup::Assets, 0, 2, sampleText("Asset", uVersion, uVersion));
        static_cast<void>(writeFileSafely(path, builder.image()));
        ASSERT_TRUE(world.tile.load("$TEST_DATA/old.tile")) << log.dump();
        EXPECT_EQ(world.tile.holdsForeignObjects(), uVersion == 3);
        EXPECT_EQ(world.tile.name(), uVersion == 3 ? "" : "old.tile");
    }
}

TEST_F(TileObjectsTest, damagedSectionsAreRefusedAndTheDocumentStays)
{
    const TileState before = world.tile.write(tile::WriteFinal);
    for (const auto& [eGroup, uElement, pCodec] : s_arrSections)
    {
        const std::string sRecords = sampleText(pCodec, 13, 13);
        // Compressed bytes cut off, a record that reaches past its section, bytes behind the last.
        for (int iFault = 0; iFault < 3; ++iFault)
        {
            ImageBuilder builder(before);
            builder.add(0, eGroup, uElement, SampleCount,
                        iFault == 1   ? sRecords.substr(0, sRecords.size() - 1)
                        : iFault == 2 ? sRecords + "x"
                                      : sRecords);
            auto image = builder.image();
            if (iFault == 0)
                image.resize(image.size() - 1);
            log.clear();
            EXPECT_FALSE(read(image)) << pCodec << iFault;
            EXPECT_TRUE(log.has("ASSERT: 'u")) << pCodec << iFault << log.dump();
        }
    }
    EXPECT_EQ(world.tile.write(tile::WriteFinal).hash, before.hash);
}

/// Keeps texts as objects: one record is a byte of length and the text.
struct TextProvider : CellObjectProviderI
{
    tile::SectionGroup group() const override { return tile::SectionGroup::Nodes; }
    void prepareWrite(uint32_t, const std::string& sPath) override { sPrepared = sPath; }
    void releaseWrite() override { ++iReleased; }
    uint64_t revision(const ObjectCell&, uint32_t, uint32_t) const override { return uRevision; }
    uint32_t appendRecords(ByteStream& stream, const ObjectCell& cell, uint32_t, uint32_t) override
    {
        ++iAsked;
        for (const std::string& sText : cell.bBounded ? mapTexts[cell.uIndex] : mapTexts[0])
        {
            stream.write(static_cast<uint8_t>(sText.size()));
            stream.write(sText.data(), sText.size());
        }
        return static_cast<uint32_t>((cell.bBounded ? mapTexts[cell.uIndex] : mapTexts[0]).size());
    }
    size_t checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount, uint32_t) const override
    {
        size_t uPlace = 0;
        for (; uCount > 0 && uPlace < spanRecords.size(); --uCount)
            uPlace += 1 + static_cast<size_t>(spanRecords[uPlace]);
        return uPlace;
    }
    void beginRead(const ObjectReadMode& mode) override
    {
        setRead.clear();
        if (!mode.bRestoring)
            mapTexts.clear();
    }
    void readRecords(const ObjectSection& section) override
    {
        setRead.insert(section.cell.uIndex);
        std::vector<std::string>& vecTexts = mapTexts[section.cell.uIndex];
        vecTexts.clear();
        const auto spanRecords = section.spanRecords;
        for (size_t uPlace = 0; uPlace < spanRecords.size();
             uPlace += 1 + static_cast<size_t>(spanRecords[uPlace]))
            vecTexts.emplace_back(reinterpret_cast<const char*>(spanRecords.data()) + uPlace + 1,
                                  static_cast<size_t>(spanRecords[uPlace]));
    }
    void endRead() override {}

    std::map<size_t, std::vector<std::string>> mapTexts;
    std::set<size_t> setRead; ///< cells named by the last read
    std::string sPrepared;
    uint64_t uRevision = 0;
    int iReleased = 0;
    std::atomic<int> iAsked = 0;
};

TEST_F(TileObjectsTest, aProviderFillsAndReadsItsSections)
{
    TextProvider provider;
    world.tile.addProvider(provider);
    provider.mapTexts[0] = {"first", "second"};
    provider.mapTexts[1] = {"third"};
    provider.uRevision = 1;
    world.tile.pushState(true);
    EXPECT_EQ(provider.iAsked, 2);
    EXPECT_EQ(provider.iReleased, 1);
    provider.mapTexts[1].push_back("fourth");
    EXPECT_FALSE(world.tile.pushState(false)) << "the revision says that nothing changed";
    provider.uRevision = 2;
    EXPECT_TRUE(world.tile.pushState(false));
    world.tile.undo();
    EXPECT_EQ(provider.mapTexts[1], std::vector<std::string>{"third"});
    EXPECT_EQ(provider.setRead, std::set<size_t>{1}) << "the other cell's section is known";
    world.tile.redo();
    EXPECT_EQ(provider.mapTexts[1], (std::vector<std::string>{"third", "fourth"}));
    EXPECT_EQ(provider.mapTexts[0], (std::vector<std::string>{"first", "second"}));

    // A section that is in one state alone goes and comes; what was read needn't be written again.
    provider.mapTexts[0].clear();
    ++provider.uRevision;
    EXPECT_TRUE(world.tile.pushState(false));
    world.tile.undo();
    EXPECT_EQ(provider.mapTexts[0].size(), 2u);
    world.tile.redo();
    EXPECT_TRUE(provider.mapTexts[0].empty());
    EXPECT_EQ(provider.setRead, std::set<size_t>{0});
    provider.iAsked = 0;
    EXPECT_FALSE(world.tile.pushState(false));
    EXPECT_EQ(provider.iAsked, 0);
    world.tile.restoreState(true, true);
    EXPECT_EQ(provider.setRead, (std::set<size_t>{0, 1}));
    provider.mapTexts[0] = {"first"};
    ++provider.uRevision;

    // A record that reaches past its section.
    ImageBuilder builder(TileWorld(2, 1).tile.write(tile::WriteFinal));
    builder.add(0, tile::SectionGroup::Nodes, 0, 1, std::string("\7short"));
    EXPECT_FALSE(read(builder.image()));
    EXPECT_TRUE(log.has("ASSERT: 'uReadSize == h.nodeSize'"));
    EXPECT_EQ(provider.mapTexts[0].size(), 1u);
}

TEST_F(TileObjectsTest, withoutGroundObjectsAreWrittenOnce)
{
    TileWorld objects(2, 2, tile::TypeObjects);
    TextProvider provider;
    objects.tile.addProvider(provider);
    provider.mapTexts[0] = {"only"};
    const TileState state = objects.tile.write(tile::WriteFinal);
    EXPECT_EQ(sectionText(state.bytes(), 0, tile::SectionGroup::Nodes, 0), "1:\4only");
    for (size_t uCell = 1; uCell < 4; ++uCell)
        EXPECT_EQ(sectionText(state.bytes(), uCell, tile::SectionGroup::Nodes, 0), "");
}

} // namespace
