#include "KestrelCommon/Effects/EffectCatalogue.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"

#include <json/value.h>

EffectCatalogue* EffectCatalogue::ms_pInstance = nullptr;

// Values

bool convertEffectValue(const EffectValue& from, EffectValueKind eKind, EffectValue& to)
{
    EffectValue result{eKind, from.content};
    const bool bVector =
        eKind == EffectValueKind::Color || eKind == EffectValueKind::Vec3 || eKind == EffectValueKind::Vec4;
    const size_t uForm = eKind == EffectValueKind::Float  ? 0
                         : eKind == EffectValueKind::Bool ? 1
                         : bVector                        ? 2
                                                          : 3;
    if (from.content.index() != uForm)
        return false;
    if (eKind == EffectValueKind::Vec3)
        std::get<std::array<float, 4>>(result.content)[3] = 1.0f;
    to = std::move(result);
    return true;
}

bool readEffectValue(const Json::Value& jKind, const Json::Value& jValue, EffectValue& value)
{
    static constexpr std::pair<const char*, EffectValueKind> s_arrKinds[] = {
        {"float", EffectValueKind::Float}, {"bool", EffectValueKind::Bool},
        {"color", EffectValueKind::Color}, {"vec3", EffectValueKind::Vec3},
        {"vec4", EffectValueKind::Vec4},   {"string", EffectValueKind::String},
    };
    const auto* pKind = std::ranges::find_if(s_arrKinds, [&](const auto& kind)
                                             { return jKind.isString() && jKind.asString() == kind.first; });
    if (pKind == std::end(s_arrKinds))
        return false;
    EffectValue read{pKind->second};
    switch (read.kind)
    {
    case EffectValueKind::Float:
        if (!jValue.isNumeric())
            return false;
        read.content = static_cast<float>(jValue.asDouble());
        break;
    case EffectValueKind::Bool:
        if (!jValue.isBool())
            return false;
        read.content = jValue.asBool();
        break;
    case EffectValueKind::String:
        if (!jValue.isString())
            return false;
        read.content = jValue.asString();
        break;
    default:
    {
        const Json::ArrayIndex uParts = read.kind == EffectValueKind::Vec3 ? 3 : 4;
        std::array<float, 4> arrParts{0.0f, 0.0f, 0.0f, 1.0f};
        if (!jValue.isArray() || jValue.size() != uParts)
            return false;
        for (Json::ArrayIndex i = 0; i < uParts; ++i)
        {
            if (!jValue[i].isNumeric())
                return false;
            arrParts[i] = static_cast<float>(jValue[i].asDouble());
        }
        read.content = arrParts;
        break;
    }
    }
    value = std::move(read);
    return true;
}

// Effects

std::optional<size_t> EffectTemplate::find(std::string_view sName) const
{
    for (size_t i = 0; i < values.size(); ++i)
        if (values[i].name == sName)
            return i;
    return std::nullopt;
}

EffectInstance::EffectInstance(std::shared_ptr<const EffectTemplate> pTemplate)
    : m_pTemplate(std::move(pTemplate))
{
    m_vecValues.reserve(m_pTemplate->values.size());
    for (const EffectValueDesc& desc : m_pTemplate->values)
        m_vecValues.push_back(desc.byDefault);
}

bool EffectInstance::set(std::string_view sName, const EffectValue& value)
{
    const auto uIndex = m_pTemplate->find(sName);
    return uIndex &&
           convertEffectValue(value, m_pTemplate->values[*uIndex].byDefault.kind, m_vecValues[*uIndex]);
}

// Catalogue

namespace
{

class CatalogueReader
{
public:
    CatalogueReader(const Json::Value& jRoot, std::string_view sPath)
        : m_jLists(jsonMember(jRoot, "valueLists")),
          m_sPath(sPath)
    {
    }

    bool readSet(const Json::Value& jSet, EffectSet& set) const
    {
        set.name = jsonText(jSet, "name");
        const Json::Value& jEffects = jsonMember(jSet, "effects");
        if (set.name.empty() || !jEffects.isArray())
            return report("an effect set needs 'name' and 'effects'");
        for (const Json::Value& jEffect : jEffects)
        {
            auto pEffect = std::make_shared<EffectTemplate>();
            if (!readEffect(jEffect, *pEffect))
                continue;
            const bool bTaken = std::ranges::any_of(set.effects, [&](const auto& pOther)
                                                    { return pOther->name == pEffect->name; });
            if (bTaken)
                report("a second effect '" + pEffect->name + "' in set '" + set.name + "'");
            else
                set.effects.push_back(std::move(pEffect));
        }
        return true;
    }

private:
    bool readEffect(const Json::Value& jEffect, EffectTemplate& effect) const
    {
        effect.name = jsonText(jEffect, "name");
        if (effect.name.empty())
            return report("an effect needs a 'name'");
        for (const std::string& sType : texts(jsonMember(jEffect, "types")))
        {
            effect.hasLight |= sType == "light";
            effect.hasParticles |= sType == "particle";
            effect.hasSound |= sType == "sound";
        }
        for (const std::string& sList : texts(jsonMember(jEffect, "uses")))
            readValues(jsonMember(m_jLists, sList.c_str()), effect);
        readValues(jsonMember(jEffect, "values"), effect);
        return true;
    }

    void readValues(const Json::Value& jValues, EffectTemplate& effect) const
    {
        if (!jValues.isArray())
            return;
        for (const Json::Value& jValue : jValues)
        {
            EffectValueDesc desc;
            desc.name = jsonText(jValue, "name");
            desc.options = texts(jsonMember(jValue, "options"));
            if (desc.name.empty() ||
                !readEffectValue(jsonMember(jValue, "kind"), jsonMember(jValue, "default"), desc.byDefault))
            {
                report("value '" + desc.name + "' of effect '" + effect.name +
                       "' needs a 'kind' and a 'default' that fits");
                continue;
            }
            if (const auto uOld = effect.find(desc.name))
                effect.values[*uOld] = std::move(desc);
            else
                effect.values.push_back(std::move(desc));
        }
    }

    static std::vector<std::string> texts(const Json::Value& jTexts)
    {
        std::vector<std::string> vecTexts;
        if (jTexts.isArray())
            for (const Json::Value& jText : jTexts)
                if (jText.isString())
                    vecTexts.push_back(jText.asString());
        return vecTexts;
    }

    bool report(const std::string& sText) const
    {
        QM_LOG_ERROR(m_sPath, ": ", sText);
        return false;
    }

    const Json::Value& m_jLists;
    std::string_view m_sPath;
};

} // namespace

EffectCatalogue::EffectCatalogue()
{
    QM_ASSERT(!ms_pInstance);
    ms_pInstance = this;
}

EffectCatalogue::~EffectCatalogue()
{
    ms_pInstance = nullptr;
}

bool EffectCatalogue::load(std::string_view sPath)
{
    const auto jRoot = readJsonFile(sPath);
    if (jRoot)
        read(*jRoot, sPath);
    return jRoot.has_value();
}

void EffectCatalogue::read(const Json::Value& jRoot, std::string_view sPath)
{
    const CatalogueReader reader(jRoot, sPath);
    const Json::Value& jSets = jsonMember(jRoot, "effectSetList");
    for (Json::ArrayIndex i = 0; jSets.isArray() && i < jSets.size(); ++i)
        if (EffectSet set; reader.readSet(jSets[i], set))
            m_vecSets.push_back(std::move(set));
}

std::optional<EffectCatalogue::Place> EffectCatalogue::find(std::string_view sEffect) const
{
    for (size_t uSet = 0; uSet < m_vecSets.size(); ++uSet)
        for (size_t uEffect = 0; uEffect < m_vecSets[uSet].effects.size(); ++uEffect)
            if (m_vecSets[uSet].effects[uEffect]->name == sEffect)
                return Place{static_cast<int32_t>(uSet), static_cast<int32_t>(uEffect)};
    return std::nullopt;
}

std::shared_ptr<const EffectTemplate> EffectCatalogue::effect(Place place) const
{
    if (place.iSet < 0 || static_cast<size_t>(place.iSet) >= m_vecSets.size() || place.iEffect < 0)
        return nullptr;
    const auto& vecEffects = m_vecSets[static_cast<size_t>(place.iSet)].effects;
    if (vecEffects.empty())
        return nullptr;
    return vecEffects[std::min(static_cast<size_t>(place.iEffect), vecEffects.size() - 1)];
}
