#include "TileEditorCommon/Catalogue/DataLibrary.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Services/TaskManager.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <json/value.h>
#include <mutex>

namespace tilebuilder
{

namespace
{

namespace fs = std::filesystem;

enum class FileList : uint8_t
{
    None, ///< only the table
    Prefabs,
    Blueprints,
    Tiles,
};

struct FileKind
{
    std::string_view sExtension;
    FileList eList;
    bool bPath; ///< goes into the list of paths
};

constexpr std::array<FileKind, 8> s_arrKinds{{{".prefab", FileList::Prefabs, false},
                                              {".blueprint", FileList::Blueprints, false},
                                              {".tile", FileList::Tiles, true},
                                              {".export", FileList::None, true},
                                              {".fbx", FileList::None, true},
                                              {".dae", FileList::None, true},
                                              {".json", FileList::None, false},
                                              {".rend", FileList::None, false}}};

const FileKind* kindOf(std::string_view sPath)
{
    const size_t uName = sPath.rfind('/');
    const size_t uDot = sPath.rfind('.');
    if (uDot == std::string_view::npos || (uName != std::string_view::npos && uDot < uName))
        return nullptr;
    for (const FileKind& kind : s_arrKinds)
        if (kind.sExtension == sPath.substr(uDot))
            return &kind;
    return nullptr;
}

/// The files of known kinds below a folder, by their real paths, sorted so that every walk over the
/// same files gives the same lists. Parts that can't be read are left out.
std::vector<std::string> listFiles(const std::string& sFolder)
{
    std::vector<std::string> vecFiles;
    std::error_code error;
    fs::recursive_directory_iterator it(sFolder, fs::directory_options::skip_permission_denied, error);
    for (; !error && it != fs::recursive_directory_iterator(); it.increment(error))
    {
        std::error_code typeError;
        std::string sPath = it->path().generic_string();
        if (kindOf(sPath) && it->is_regular_file(typeError))
            vecFiles.push_back(std::move(sPath));
    }
    std::sort(vecFiles.begin(), vecFiles.end());
    return vecFiles;
}

} // namespace

/// One walk over all folders: a task each, and what follows the last of them.
struct DataLibrary::Walk
{
    std::vector<std::string> vecFolders; ///< real paths
    std::vector<std::vector<std::string>> vecLists;
    std::atomic<size_t> uLeft{0};
    std::mutex lock;
    std::condition_variable ended;
    bool bEnded = false; ///< with the lock

    void end()
    {
        {
            const std::lock_guard guard(lock);
            bEnded = true;
        }
        ended.notify_all();
    }
    [[nodiscard]] bool hasEnded()
    {
        const std::lock_guard guard(lock);
        return bEnded;
    }
};

DataLibrary::DataLibrary() = default;

DataLibrary::~DataLibrary()
{
    if (!QM_ASSERT_TEXT(!m_bHasTask, "Call Shutdown First"))
        waitForTask();
}

uint64_t DataLibrary::hashOf(std::string_view sPath)
{
    return fnv1a64(sPath);
}

void DataLibrary::loadAsync(std::span<const std::string> spanFolders)
{
    if (m_bHasTask)
    {
        QM_LOG_WARNING("DataLibrary Load Async called twice");
        waitForTask();
    }
    m_bStarted = true;
    m_pTask = std::make_shared<Walk>();
    for (const std::string& sFolder : spanFolders)
        m_pTask->vecFolders.push_back(DirectoryManager::ms_pInstance->resolvePath(sFolder).generic_string());
    m_pTask->vecLists.resize(m_pTask->vecFolders.size());
    m_pTask->uLeft = m_pTask->vecFolders.size();
    m_bHasTask = true;
    if (m_pTask->vecFolders.empty())
        m_pTask->end();
    for (size_t i = 0; i < m_pTask->vecFolders.size(); ++i)
    {
        const auto fnList = [this, pWalk = m_pTask, i]
        {
            pWalk->vecLists[i] = listFiles(pWalk->vecFolders[i]);
            if (--pWalk->uLeft > 0)
                return;
            takeIn(*pWalk);
            pWalk->end();
        };
        if (g_kestrelTaskManager)
            g_kestrelTaskManager->enqueueLowPriority(fnList);
        else
            fnList();
    }
}

bool DataLibrary::poll()
{
    if (!m_bStarted || !m_pTask->hasEnded())
        return false;
    m_bStarted = false;
    return true;
}

void DataLibrary::shutdown()
{
    waitForTask();
    m_bHasTask = false;
    m_bStarted = false;
}

void DataLibrary::waitForTask()
{
    if (!m_pTask)
        return;
    std::unique_lock guard(m_pTask->lock);
    m_pTask->ended.wait(guard, [this] { return m_pTask->bEnded; });
    QM_ASSERT_TEXT(m_pTask->uLeft == 0, "eResult == Concurrency::completed");
}

void DataLibrary::takeIn(const Walk& walk)
{
    std::vector<std::string> vecKeyed;
    for (const std::vector<std::string>& vecFiles : walk.vecLists)
        for (const std::string& sFile : vecFiles)
            if (std::string sKeyed = DirectoryManager::ms_pInstance->replacePathWithKey(sFile, false);
                !sKeyed.empty())
                vecKeyed.push_back(std::move(sKeyed));

    const std::unique_lock guard(m_filesLock);
    for (const std::string& sPath : vecKeyed)
        sortIn(sPath);
    std::sort(m_vecPaths.begin(), m_vecPaths.end());
}

bool DataLibrary::sortIn(const std::string& sPath)
{
    const FileKind* pKind = kindOf(sPath);
    const uint64_t uHash = hashOf(sPath);
    if (!pKind || !m_mapFiles.try_emplace(uHash, sPath).second)
        return false;
    if (pKind->eList == FileList::Prefabs)
        m_vecPrefabs.push_back(uHash);
    else if (pKind->eList == FileList::Blueprints)
        m_vecBlueprints.push_back(uHash);
    else if (pKind->eList == FileList::Tiles)
        m_vecTiles.push_back(uHash);
    if (pKind->bPath)
        m_vecPaths.push_back(sPath);
    return pKind->bPath;
}

void DataLibrary::addFile(const std::string& sPath)
{
    const std::unique_lock guard(m_filesLock);
    if (sortIn(sPath))
        std::sort(m_vecPaths.begin(), m_vecPaths.end());
}

void DataLibrary::removeFile(std::string_view sPath)
{
    const uint64_t uHash = hashOf(sPath);
    {
        const std::unique_lock guard(m_parsedLock);
        m_mapParsed.erase(uHash);
    }
    const std::unique_lock guard(m_dataLock);
    m_mapData.erase(uHash);
}

std::string DataLibrary::getPath(uint64_t uHash) const
{
    const std::shared_lock guard(m_filesLock);
    const auto it = m_mapFiles.find(uHash);
    return it == m_mapFiles.end() ? std::string() : it->second;
}

DataLibrary::Bytes DataLibrary::getData(uint64_t uHash)
{
    const std::string sPath = getPath(uHash);
    if (sPath.empty())
        return nullptr;
    {
        const std::shared_lock guard(m_dataLock);
        if (const auto it = m_mapData.find(uHash); it != m_mapData.end())
            return it->second;
    }
    const std::unique_lock guard(m_dataLock);
    if (const auto it = m_mapData.find(uHash); it != m_mapData.end())
        return it->second;
    std::optional<std::vector<std::byte>> bytes =
        readFile(DirectoryManager::ms_pInstance->resolvePath(sPath));
    if (!bytes)
        return nullptr;
    auto pBytes = std::make_shared<const std::vector<std::byte>>(std::move(*bytes));
    return m_mapData.emplace(uHash, std::move(pBytes)).first->second;
}

DataLibrary::Parsed DataLibrary::getParsed(uint64_t uHash)
{
    {
        const std::shared_lock guard(m_parsedLock);
        if (const auto it = m_mapParsed.find(uHash); it != m_mapParsed.end())
            return it->second;
    }
    const Bytes pBytes = getData(uHash);
    if (!pBytes)
        return nullptr;
    const std::unique_lock guard(m_parsedLock);
    if (const auto it = m_mapParsed.find(uHash); it != m_mapParsed.end())
        return it->second;
    std::string sError;
    std::optional<Json::Value> value =
        parseJson({reinterpret_cast<const char*>(pBytes->data()), pBytes->size()}, sError);
    if (!value)
    {
        QM_LOG_ERROR("Failed to parse file '", getPath(uHash), "': ", sError);
        return nullptr;
    }
    return m_mapParsed.emplace(uHash, std::make_shared<Json::Value>(std::move(*value))).first->second;
}

std::vector<uint64_t> DataLibrary::prefabs() const
{
    const std::shared_lock guard(m_filesLock);
    return m_vecPrefabs;
}

std::vector<uint64_t> DataLibrary::blueprints() const
{
    const std::shared_lock guard(m_filesLock);
    return m_vecBlueprints;
}

std::vector<uint64_t> DataLibrary::tiles() const
{
    const std::shared_lock guard(m_filesLock);
    return m_vecTiles;
}

std::vector<std::string> DataLibrary::paths() const
{
    const std::shared_lock guard(m_filesLock);
    return m_vecPaths;
}

} // namespace tilebuilder
