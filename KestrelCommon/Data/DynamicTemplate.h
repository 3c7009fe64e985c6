#pragma once // What a kind of data file holds: keys, types, defaults and limits.

#include "KestrelCommon/Data/DynamicData.h"

#include <functional>
#include <json/value.h>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class DynamicDataManager;

/// Read from a JSON file, in which a member K is the default of key K and K + "_meta" its meta data.
/// Meta data and defaults stand in tables by place, so that a value finds its own without a walk.
///
/// Ownership: the manager's; the address stays when the file is read again.
/// Threads:   main thread; read-only use from loaders.
class DynamicTemplate
{
public:
    /// What a meta object says of the shape of a value.
    enum class Shape : uint8_t
    {
        Free,  ///< by the JSON's own type
        Value, ///< one of the handlers' types
        Object,
        Array,
        Map, ///< an object whose keys are free
    };

    /// All entries as they stand, and those that reading asks for in ready form.
    class Meta : public DynamicData::Object
    {
    public:
        Meta(DynamicData::PlaceId uParentId, DynamicData::PlaceId uOwnId) : Object(uParentId, uOwnId) {}

        Shape eShape = Shape::Free;
        const void* pHandler = nullptr; ///< the manager's handler of the type
        std::string sType;
        DynamicData::KeyHash uTypeHash = 0;
        std::string sSubTemplate;
        bool bOptional = false;        ///< a missing key stays missing
        bool bDeprecated = false;      ///< a missing key isn't reported
        bool bAllowEmpty = false;      ///< of a text or path
        bool bIgnoreReadError = false; ///< no check of the value is reported
        bool bIgnoreOptions = false;   ///< a text may stand outside of its options
        bool bHasOptions = false;
        std::unordered_set<uint64_t> setOptions; ///< hashes of the allowed texts
    };

    explicit DynamicTemplate(std::string sPath) : m_sPath(std::move(sPath)) {}

    [[nodiscard]] const std::string& name() const { return m_sName; }
    /// Keyed path of its file.
    [[nodiscard]] const std::string& path() const { return m_sPath; }
    /// A tree with all defaults; its hash tells one state of the template from another.
    [[nodiscard]] const DynamicData::Value& root() const { return m_root; }
    [[nodiscard]] uint64_t rootHash() const { return m_uRootHash; }

    /// Null when there is none.
    [[nodiscard]] const Meta* meta(DynamicData::PlaceId uId) const;
    [[nodiscard]] const Meta* templateMeta() const { return meta(DynamicData::s_uTemplateMetaId); }
    [[nodiscard]] const DynamicData::Value* defaultOf(DynamicData::PlaceId uId) const;
    /// The keys that an object at a place has, in the order of the file.
    [[nodiscard]] const std::vector<DynamicData::KeyHash>& keysOf(DynamicData::PlaceId uId) const;
    /// One of its patterns fits the path of a file.
    [[nodiscard]] bool matches(std::string_view sFilePath) const;

    /// Told after the template was read again. The number takes the listener back.
    using Listener = std::function<void(const DynamicTemplate&)>;
    size_t addListener(Listener fnListener);
    void removeListener(size_t uNumber);

private:
    friend class DynamicTemplateBuilder;

    std::string m_sPath;
    std::string m_sName;
    Json::Value m_jSource; ///< as the file holds it; other templates may take it in
    DynamicData::Value m_root;
    uint64_t m_uRootHash = 0;
    std::vector<std::string> m_vecPatterns;
    std::unordered_map<DynamicData::PlaceId, std::unique_ptr<Meta>> m_mapMeta;
    std::unordered_map<DynamicData::PlaceId, DynamicData::Value> m_mapDefaults;
    std::unordered_map<DynamicData::PlaceId, std::vector<DynamicData::KeyHash>> m_mapKeys;
    std::vector<std::pair<size_t, Listener>> m_vecListeners;
    size_t m_uNextListener = 1;
};

/// '*' stands for any run of characters, '?' for one.
[[nodiscard]] bool matchesWildcard(std::string_view sPattern, std::string_view sText);
