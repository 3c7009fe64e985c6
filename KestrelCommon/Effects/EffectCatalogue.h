#pragma once // The effects that the game knows: sets of named effects with typed values.

#include "KestrelCommon/Effects/EffectValue.h"

#include <json/forwards.h>
#include <memory>
#include <optional>
#include <string_view>

/// One effect, as the catalogue describes it. Never changes.
struct EffectTemplate
{
    std::string name;
    bool hasLight = false;
    bool hasParticles = false;
    bool hasSound = false;
    std::vector<EffectValueDesc> values; ///< in the order in which they are shown

    /// The place of a value; none when there is no such name.
    [[nodiscard]] std::optional<size_t> find(std::string_view sName) const;
};

struct EffectSet
{
    std::string name;
    std::vector<std::shared_ptr<const EffectTemplate>> effects;
};

/// An effect with values of its own. The values are enumerated by index, as in the template.
class EffectInstance
{
public:
    explicit EffectInstance(std::shared_ptr<const EffectTemplate> pTemplate);

    [[nodiscard]] const EffectTemplate& description() const { return *m_pTemplate; }
    [[nodiscard]] size_t size() const { return m_vecValues.size(); }
    [[nodiscard]] const EffectValue& value(size_t uIndex) const { return m_vecValues[uIndex]; }
    [[nodiscard]] bool differs(size_t uIndex) const
    {
        return m_vecValues[uIndex] != m_pTemplate->values[uIndex].byDefault;
    }
    /// False: no such value, or of another form.
    bool set(std::string_view sName, const EffectValue& value);

private:
    std::shared_ptr<const EffectTemplate> m_pTemplate;
    std::vector<EffectValue> m_vecValues;
};

/// One instance, filled at start-up and then only read, from any thread.
///
/// File: "effectSetList", each with "name" and "effects". An effect has "name", "types" of "light",
///     "particle" and "sound", the names of value lists that it "uses", and "values" of its own, which
///     replace those of the lists. A value has "name", "kind", "default" and, for a text, "options".
///     "valueLists" holds the lists by name.
/// Errors: a set, effect or value with a fault is reported and left out.
class EffectCatalogue
{
public:
    static constexpr const char* s_pGamePath = "$GAME_DATA/Effects/Database/effectsets.json";
    static EffectCatalogue* ms_pInstance;

    /// A place in the catalogue.
    struct Place
    {
        int32_t iSet = -1;
        int32_t iEffect = -1;
    };

    EffectCatalogue();
    ~EffectCatalogue();
    EffectCatalogue(const EffectCatalogue&) = delete;
    EffectCatalogue& operator=(const EffectCatalogue&) = delete;

    /// Adds the sets of a file by its keyed path. False: it can't be read.
    bool load(std::string_view sPath);
    void read(const Json::Value& jRoot, std::string_view sPath);

    [[nodiscard]] const std::vector<EffectSet>& sets() const { return m_vecSets; }
    /// The first effect of that name through all sets.
    [[nodiscard]] std::optional<Place> find(std::string_view sEffect) const;
    /// The effect index is limited to the last of its set; null when there is no such set or it is empty.
    [[nodiscard]] std::shared_ptr<const EffectTemplate> effect(Place place) const;

private:
    std::vector<EffectSet> m_vecSets;
};
