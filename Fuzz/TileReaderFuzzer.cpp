// A tile file of any content, read into a document and written again.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Io/Lz4Section.h"
#include "Tests/Document/TileWorld.h"

#include <cstdlib>
#include <tbb/global_control.h>

namespace
{

TileWorld* s_pWorld = nullptr;

// A file with an opaque section of every group.
std::string withObjects(const tilebuilder::TileState& state)
{
    std::string sImage = fuzz::text(state.bytes());
    ResizeableBuffer scratch;
    tile::CellHeader header;
    std::memcpy(&header, sImage.data() + 60, sizeof(header));
    for (const tile::SectionGroupInfo& group : tile::sectionGroups())
        for (uint32_t i = 0; i < group.uElements && group.isObjects(); ++i)
        {
            const std::string sRecords = std::string("records ") + group.pName;
            const auto spanPacked =
                lz4Compress(std::as_bytes(std::span(sRecords)), Lz4Quality::Final, scratch);
            tile::setSection(header, group, i,
                             {1, static_cast<uint32_t>(sImage.size()),
                              static_cast<uint32_t>(spanPacked.size()),
                              static_cast<uint32_t>(sRecords.size())});
            sImage += fuzz::text(spanPacked);
        }
    std::memcpy(sImage.data() + 60, &header, sizeof(header));
    return sImage;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    static tbb::global_control s_control(tbb::global_control::max_allowed_parallelism, 1);
    static TileWorld s_world;
    s_pWorld = &s_world;
    std::vector<std::string> vecSeeds;
    vecSeeds.push_back(fuzz::text(s_world.tile.write(tile::WriteFinal).bytes()));
    vecSeeds.push_back(withObjects(s_world.tile.write(tile::WriteFinal)));
    s_world.clutter.setSamples(0, 0, std::vector<uint8_t>(tile::SamplesPerPatch, 1));
    s_world.surface.raise(s_world.dab(30, 30, 9, 1), 1.0f);
    vecSeeds.push_back(fuzz::text(s_world.tile.write(tile::WriteFinal).bytes()));
    {
        TileWorld objects(3, 2, tile::TypeObjects);
        vecSeeds.push_back(withObjects(objects.tile.write(tile::WriteFinal)));
    }
    fuzz::writeSeeds(*pArguments, *pppArguments, vecSeeds);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    const auto spanImage = std::as_bytes(std::span(pData, uSize));
    tilebuilder::Tile& tile = s_pWorld->tile;
    if (!tile.read(spanImage, "$TEST_DATA", "x.tile", false, true, false))
        return 0;
    // What was read can be written, and reads as itself.
    const tilebuilder::TileState state = tile.write(tile::WriteUndo);
    if (!tile.read(state.bytes(), "$TEST_DATA", "x.tile", false, true, false))
        std::abort();
    const tilebuilder::TileState again = tile.write(tile::WriteUndo);
    if (again.hash != state.hash)
        std::abort();
    return 0;
}
