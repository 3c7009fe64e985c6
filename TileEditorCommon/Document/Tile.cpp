#include "TileEditorCommon/Document/Tile.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Tile/TileImage.h"

#include <fstream>

namespace tilebuilder
{

namespace fs = std::filesystem;

Tile::Tile(const TileServices& services) : m_services(services)
{
    for (const tile::SectionGroup eGroup : tile::objectReadOrder())
    {
        m_vecCarried.push_back(std::make_unique<CarriedObjects>(eGroup));
        m_providers[static_cast<size_t>(eGroup)] = m_vecCarried.back().get();
    }
}
Tile::~Tile() = default;

void Tile::addProvider(CellObjectProviderI& provider)
{
    m_providers[static_cast<size_t>(provider.group())] = &provider;
    std::erase_if(m_vecCarried, [&](const auto& pCarried) { return pCarried->group() == provider.group(); });
}

void Tile::create(const Uuid& uuid, uint64_t creatorId, int32_t width, int32_t height, uint32_t type)
{
    m_directory.clear();
    m_name.clear();
    m_uuid = uuid;
    m_creatorId = creatorId;
    m_width = width;
    m_height = height;
    m_type = type;
    m_terrainCategory = 0;
    m_terrainCategoryIndex = 0;
    m_bForeignObjects = false;
    for (const auto& pCarried : m_vecCarried)
        pCarried->clear();
    m_cellCache.clear();
    m_states.clear();
    m_stateIndex = 0;
}

bool Tile::load(const std::string& path)
{
    const auto vecImage = readFile(DirectoryManager::ms_pInstance->resolvePath(path));
    if (!vecImage)
        return false;
    const size_t uSlash = path.rfind('/');
    const std::string sDirectory = uSlash == std::string::npos ? std::string() : path.substr(0, uSlash);
    const std::string sName = uSlash == std::string::npos ? path : path.substr(uSlash + 1);
    if (!read(*vecImage, sDirectory, sName, false, true, false))
        return false;
    pushState(true);
    markSaved();
    if (m_bForeignObjects || (!m_services.host.keepsForeignNames() && !path.starts_with("$CONTENT")))
        m_name.clear();
    m_services.host.skipPendingChanges();
    m_services.host.markInterfaceDirty(0);
    return true;
}

void Tile::setTerrainCategory(uint32_t uCategory, uint32_t uIndex)
{
    m_terrainCategory = uCategory & 0xF;
    m_terrainCategoryIndex = uIndex & 0xFFF;
}

Uuid Tile::readUuid(const std::string& path)
{
    std::array<std::byte, 24> arrHead{};
    std::ifstream file(DirectoryManager::ms_pInstance->resolvePath(path), std::ios::binary);
    file.read(reinterpret_cast<char*>(arrHead.data()), static_cast<std::streamsize>(arrHead.size()));
    return tile::readUuid(std::span(arrHead).first(static_cast<size_t>(file.gcount())), path);
}

namespace
{

// Entries of a folder in the order of their names; sub-folders where they stand, depth first.
void listTiles(const fs::path& folder, const std::string& sKeyed, bool bSubFolders,
               std::vector<std::string>& vecFound)
{
    std::error_code error;
    std::vector<fs::directory_entry> vecEntries;
    for (auto it = fs::directory_iterator(folder, error); !error && it != fs::directory_iterator();
         it.increment(error))
        vecEntries.push_back(*it);
    std::ranges::sort(vecEntries);
    for (const fs::directory_entry& entry : vecEntries)
    {
        const std::string sPath = sKeyed + "/" + entry.path().filename().generic_string();
        if (entry.is_directory(error) && !entry.is_symlink(error))
        {
            if (bSubFolders)
                listTiles(entry.path(), sPath, true, vecFound);
        }
        else if (entry.path().extension() == ".tile")
            vecFound.push_back(sPath);
    }
}

} // namespace

std::vector<std::string> Tile::listGameTiles(bool creative, bool survival)
{
    std::vector<std::string> vecFound;
    const auto list = [&](const char* pFolder, bool bSubFolders)
    {
        const fs::path folder = DirectoryManager::ms_pInstance->resolvePath(pFolder);
        std::error_code error;
        if (fs::is_directory(folder, error))
            listTiles(folder, pFolder, bSubFolders, vecFound);
        else
            QM_LOG_ERROR("Directory '", pFolder, "' not found!");
    };
    if (creative)
    {
        list("$GAME_DATA/Terrain/Tiles/ClassicCreativeTiles", false);
        list("$GAME_DATA/Terrain/Tiles/CreativeTiles", false);
    }
    if (survival)
    {
        list("$SURVIVAL_DATA/Terrain/Tiles", true);
        list("$SURVIVAL_DATA/DungeonTiles", true);
    }
    return vecFound;
}

} // namespace tilebuilder
