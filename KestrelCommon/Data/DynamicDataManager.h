#pragma once // Reads and writes data files through templates, and keeps the open ones.

#include "KestrelCommon/Data/DynamicTemplate.h"

#include <functional>
#include <json/forwards.h>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class DynamicDataResource;
class DynamicTemplateBuilder;

/// The way from the root of a tree to a value, on the reader's stack.
struct DynamicDataPath
{
    const DynamicDataPath* pParent = nullptr;
    std::string_view sKey;
    size_t uIndex = 0; ///< of an array's element, whose key is empty

    [[nodiscard]] std::vector<std::string> keys() const;
    /// "/" for the root, "/key/0/key" below it.
    [[nodiscard]] std::string text() const;
};

/// What reading found wrong, in the order of the file.
class DynamicDataErrors
{
public:
    struct Entry
    {
        std::string sMessage;
        std::vector<std::string> vecPath; ///< of keys from the root
    };

    void add(std::string sMessage);
    [[nodiscard]] const std::vector<Entry>& entries() const { return m_vecEntries; }
    [[nodiscard]] bool empty() const { return m_vecEntries.empty(); }

private:
    friend class DynamicDataReader;
    const DynamicDataPath* m_pPath = nullptr; ///< where the reader stands
    std::vector<Entry> m_vecEntries;
};

/// One instance. Makes the type handlers and the templates, which live as long as it.
///
/// Errors:  template and file faults go to the log; a value's faults go to the caller's list, and
///     the value keeps its JSON, so that writing loses nothing.
/// Threads: main thread, apart from read-only use of the template list by loaders.
class DynamicDataManager
{
public:
    static constexpr const char* s_pListPath = "$GAME_DATA/Templates/template_list.json";
    static DynamicDataManager* ms_pInstance;

    /// Reads and writes values of one kind. A read of JSON of another kind is false and leaves the
    /// value; so is a write of a tag that isn't the handler's own.
    class TypeHandlerI
    {
    public:
        virtual ~TypeHandlerI() = default;
        virtual void getTypeNames(std::vector<std::string>& out) const = 0;
        virtual void getValueTags(std::vector<DynamicData::Tag>& out) const = 0;
        virtual bool read(const Json::Value& json, DynamicData::Value& value,
                          const DynamicTemplate::Meta* meta, DynamicDataErrors* errors) const = 0;
        virtual bool write(const DynamicData::Value& value, Json::Value& json) const = 0;
    };

    /// Wall milliseconds of a steady clock.
    using Clock = std::function<uint64_t()>;

    explicit DynamicDataManager(std::string_view sListPath = s_pListPath, Clock fnClock = {});
    ~DynamicDataManager();
    DynamicDataManager(const DynamicDataManager&) = delete;
    DynamicDataManager& operator=(const DynamicDataManager&) = delete;

    // Templates

    /// Null when there is none.
    [[nodiscard]] DynamicTemplate* getTemplate(std::string_view sName) const;
    /// The first with a pattern that fits.
    [[nodiscard]] DynamicTemplate* getTemplateForFile(std::string_view sPath) const;
    [[nodiscard]] const std::vector<std::unique_ptr<DynamicTemplate>>& templates() const
    {
        return m_vecTemplates;
    }
    /// Reads a template's file again, and the open resources of it from their history. False: the
    /// file can't be read, and all stays.
    bool reload(DynamicTemplate& dynamicTemplate);

    // Trees

    [[nodiscard]] DynamicData::Value newObject(const DynamicTemplate& dynamicTemplate) const;
    /// Fills a tree; true when nothing was wrong with it. The template may be null.
    bool read(DynamicData::Value& value, const Json::Value& json, const DynamicTemplate* pTemplate,
              DynamicDataErrors* errors = nullptr);
    void write(const DynamicTemplate* pTemplate, const DynamicData::Value& value, Json::Value& json) const;

    // Files

    /// The open resource of a path, or a new one. Null, with a line in the log, on failure.
    [[nodiscard]] std::shared_ptr<DynamicDataResource> load(std::string_view sPath,
                                                            DynamicDataErrors* errors = nullptr);
    [[nodiscard]] std::shared_ptr<DynamicDataResource> create(const DynamicTemplate& dynamicTemplate);
    /// Replaces the file safely when the tree differs from what was last saved or loaded. False, with
    /// a line in the log: nothing changed.
    bool save(DynamicDataResource& resource);
    bool saveAs(DynamicDataResource& resource, std::string_view sPath);

    /// Once a frame: takes the snapshots and sends the notifications that are due.
    void update();

    // Names

    DynamicData::KeyHash addName(std::string_view sName);
    /// Empty for a hash whose text was never seen.
    [[nodiscard]] std::string_view name(DynamicData::KeyHash uHash) const;

    // For handlers and readers

    [[nodiscard]] const TypeHandlerI* handlerOfType(std::string_view sType) const;
    [[nodiscard]] const TypeHandlerI* handlerOfTag(DynamicData::Tag eTag) const;
    /// Whether a keyed path exists; those that do are asked for once between two frames.
    [[nodiscard]] bool pathExists(std::string_view sPath);
    [[nodiscard]] uint64_t now() const { return m_fnClock(); }

private:
    void addHandlers();
    void readTemplateList(std::string_view sListPath);
    bool saveTo(DynamicDataResource& resource, std::string_view sPath, bool bEvenUnchanged);
    void addTemplate(std::string_view sPath, Json::Value jSource);

    Clock m_fnClock;
    std::vector<std::unique_ptr<TypeHandlerI>> m_vecHandlers;
    std::unordered_map<DynamicData::KeyHash, const TypeHandlerI*> m_mapHandlersByType;
    std::array<const TypeHandlerI*, 16> m_arrHandlersByTag{};
    std::unordered_map<DynamicData::KeyHash, std::string> m_mapNames;
    std::vector<std::unique_ptr<DynamicTemplate>> m_vecTemplates;
    std::vector<std::weak_ptr<DynamicDataResource>> m_vecResources;
    std::unordered_map<uint64_t, std::weak_ptr<DynamicDataResource>> m_mapResources; ///< by hash of path
    std::unordered_set<uint64_t> m_setExisting;                                      ///< hashes of paths
};
