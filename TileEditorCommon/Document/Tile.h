#pragma once // The document.

#include "KestrelCommon/Core/Uuid.h"
#include "TileEditorCommon/Contracts/DocumentHostI.h"
#include "TileEditorCommon/Document/CarriedObjects.h"
#include "TileEditorCommon/Document/CellCache.h"
#include "TileEditorCommon/Document/ImageCheck.h"
#include "TileEditorCommon/Document/TileState.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace tilebuilder
{

class EditorTerrainSurface;
class EditorTerrainClutter;
struct PreparedFile;

/// What a document works on; all outlive it.
struct TileServices
{
    DocumentHostI& host;
    EditorTerrainSurface& surface;
    EditorTerrainClutter& clutter;
};

enum class SaveResult : uint8_t
{
    Saved,
    Failed,                   ///< reported; the document, its name and its history are as before
    NeedsReplaceConfirmation, ///< another tile's file is in the way; nothing was done
};

/// A tile's identity and history; writes and reads the document as one byte image. The grids
/// belong to the surface and the clutter of the editor, of which the open document has the use.
///
/// Paths:   keyed. Threads: main thread; work fans out and joins inside a call.
/// Objects: groups without a provider are carried.
class Tile
{
public:
    static constexpr uint64_t s_uStateMemoryLimit = 0x20000000;

    explicit Tile(const TileServices& services);
    ~Tile();
    Tile(const Tile&) = delete;
    Tile& operator=(const Tile&) = delete;

    /// Lets a kind of object read and write its sections. Before anything is read.
    void addProvider(CellObjectProviderI& provider);

    /// An empty document without a place; its grids are the host's to make.
    void create(const Uuid& uuid, uint64_t creatorId, int32_t width, int32_t height, uint32_t type);

    /// Reads a file and starts a fresh, saved history. False: the file can't be read, or what
    /// read() says; nothing has changed then. A file with foreign objects loses its name.
    bool load(const std::string& path);

    /// Checks the image whole, then takes it in. When not restoring, the host is told to
    /// reinitialise in between. False: reported, nothing has changed.
    bool read(std::span<const std::byte> spanImage, const std::string& sDirectory, const std::string& sName,
              bool bRestoring, bool bClearSelection, bool bKeepIds);

    /// A complete image; bits of tile::WriteFlags. Without data, reported, when it would pass the
    /// 32-bit offsets of the format.
    [[nodiscard]] TileState write(uint32_t flags);

    /// Picks the place and writes the files, both beside before either is replaced. What the
    /// document is waiting to remember becomes a step first. With bReplace another tile's file
    /// may be replaced.
    SaveResult save(const std::string& name, const std::string& directory, uint64_t creatorId, bool bReplace);

    /// Writes one file of final quality and takes its name and directory on success.
    bool writeFile(const std::string& name, const std::string& directory, uint32_t flags);

    // History

    /// True when a step was added: always with reset, else when the image differs.
    bool pushState(bool reset);
    void undo();
    void redo();
    void markSaved();
    [[nodiscard]] bool isUnsaved() const;
    [[nodiscard]] const std::vector<TileState>& states() const { return m_states; }
    [[nodiscard]] uint64_t stateIndex() const { return m_stateIndex; }
    /// Bytes of all states.
    [[nodiscard]] uint64_t stateMemory() const;
    /// Takes the state at stateIndex() in again.
    bool restoreState(bool bClearSelection, bool bKeepIds);
    /// Frees compressed sections, as when the document is left.
    void clearCache() { m_cellCache.clear(); }

    // Identity

    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] const std::string& directory() const { return m_directory; }
    [[nodiscard]] const Uuid& uuid() const { return m_uuid; }
    [[nodiscard]] uint64_t creatorId() const { return m_creatorId; }
    [[nodiscard]] int32_t width() const { return m_width; }
    [[nodiscard]] int32_t height() const { return m_height; }
    [[nodiscard]] uint32_t type() const { return m_type; }
    [[nodiscard]] uint32_t terrainCategory() const { return m_terrainCategory; }
    [[nodiscard]] uint32_t terrainCategoryIndex() const { return m_terrainCategoryIndex; }
    void setTerrainCategory(uint32_t uCategory, uint32_t uIndex);
    /// The loaded file holds objects that writing it would lose.
    [[nodiscard]] bool holdsForeignObjects() const { return m_bForeignObjects; }
    /// How many objects of the loaded file could not be made, and so are in none of its states.
    [[nodiscard]] size_t lostObjects() const { return m_uLostObjects; }

    /// The id in a file without reading more; nil, reported, when there is none.
    [[nodiscard]] static Uuid readUuid(const std::string& path);
    /// The tiles that come with the game, as keyed paths.
    [[nodiscard]] static std::vector<std::string> listGameTiles(bool creative, bool survival);

private:
    struct CellParts;
    [[nodiscard]] std::string path() const { return m_directory + "/" + m_name; }
    void writeCell(size_t uCell, uint32_t flags, CellParts& parts);
    void writeObjects(size_t uCell, uint32_t flags, const tile::SectionGroupInfo& group, CellParts& parts);
    [[nodiscard]] ObjectCell objectCell(size_t uCell) const;
    [[nodiscard]] TileState assemble(std::vector<CellParts>& vecParts) const;
    void takeIdentity(const CheckedImage& checked, const std::string& sDirectory, const std::string& sName);
    void takeGround(const CheckedImage& checked, bool bRestoring);
    void takeObjects(const CheckedImage& checked, const ObjectReadMode& mode);
    void addEmptied(const CheckedImage& checked, const ObjectReadMode& mode,
                    std::vector<CheckedSection>& vecRead);
    void readSeparated(const ObjectSection& objects, std::deque<ByteStream>& deqSeparated);
    [[nodiscard]] CellObjectProviderI& provider(tile::SectionGroup eGroup) const
    {
        return *m_providers[static_cast<size_t>(eGroup)];
    }
    [[nodiscard]] bool isKnown(size_t uCell, const tile::SectionGroupInfo& group, uint32_t uElement,
                               std::span<const std::byte> spanBytes);
    void adoptSections(const CheckedImage& checked, const CheckedSection& section, uint64_t uRevision);
    [[nodiscard]] bool prepareFile(const std::string& name, const std::string& directory, uint32_t flags,
                                   PreparedFile& file);
    [[nodiscard]] bool commitFile(PreparedFile& file) const;
    void step(int64_t iBy);

    TileServices m_services;
    ProviderTable m_providers{};
    std::vector<std::unique_ptr<CarriedObjects>> m_vecCarried; ///< of the groups that nobody else serves

    std::string m_directory;
    std::string m_name; ///< empty until the tile has a place
    Uuid m_uuid;
    uint64_t m_creatorId = 0;
    int32_t m_width = 0;
    int32_t m_height = 0;
    uint32_t m_type = tile::TypeGround;
    uint32_t m_terrainCategory = 0;
    uint32_t m_terrainCategoryIndex = 0;
    bool m_bForeignObjects = false;
    size_t m_uLostObjects = 0;
    uint64_t m_surfaceRevision = 0; ///< of the surface when its fast sections were last compressed
    uint64_t m_clutterRevision = 0;
    CellCache m_cellCache;
    std::vector<TileState> m_states;
    uint64_t m_stateIndex = 0;
};

} // namespace tilebuilder
