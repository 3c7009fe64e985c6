#include "KestrelCommon/Data/DynamicTemplateBuilder.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Data/JsonFile.h"

using namespace DynamicData;

namespace
{

constexpr std::string_view s_sMetaSuffix = "_meta";
constexpr const char* s_pTemplateMeta = "template_meta";
/// Places of one template; templates that take each other in many times over end here.
constexpr size_t s_uMaxPlaces = 10'000;

std::string_view keyOf(const Json::Value::const_iterator& iterMember)
{
    const char* pEnd = nullptr;
    const char* pBegin = iterMember.memberName(&pEnd);
    return {pBegin, static_cast<size_t>(pEnd - pBegin)};
}

std::string_view fileStem(std::string_view sPath)
{
    const std::string_view sFile = sPath.substr(sPath.rfind('/') + 1);
    return sFile.substr(0, sFile.rfind('.'));
}

} // namespace

DynamicTemplateBuilder::DynamicTemplateBuilder(DynamicDataManager& manager, DynamicTemplate& target)
    : m_manager(manager),
      m_target(target)
{
}

void DynamicTemplateBuilder::setSource(Json::Value jSource)
{
    m_target.m_jSource = std::move(jSource);
    const Json::Value& jMeta = jsonMember(m_target.m_jSource, s_pTemplateMeta);
    m_target.m_sName = jsonText(jMeta, "name", fileStem(m_target.m_sPath));
}

void DynamicTemplateBuilder::build()
{
    const Json::Value& jSource = m_target.m_jSource;
    m_target.m_mapMeta.clear();
    m_target.m_mapDefaults.clear();
    m_target.m_mapKeys.clear();
    m_target.m_vecPatterns.clear();
    m_vecInProgress = {m_target.m_sName};

    const Json::Value& jTemplateMeta = jsonMember(jSource, s_pTemplateMeta);
    if (jTemplateMeta.isObject())
    {
        storeMeta(jTemplateMeta, 0, s_uTemplateMetaId, s_pTemplateMeta);
        const Json::Value& jPattern = jsonMember(jTemplateMeta, "pattern");
        if (jPattern.isString())
            m_target.m_vecPatterns.push_back(jPattern.asString());
        else if (jPattern.isArray())
            for (const Json::Value& jOne : jPattern)
                if (jOne.isString())
                    m_target.m_vecPatterns.push_back(jOne.asString());
        const Json::Value& jRootMeta = jsonMember(jTemplateMeta, "root_meta");
        if (jRootMeta.isObject())
            storeMeta(jRootMeta, 0, s_uRootId, "root_meta");
    }
    if (jSource.isArray())
        m_target.m_root = readArray(jSource, 0, s_uRootId, "/");
    else
    {
        const Meta* pRootMeta = m_target.meta(s_uRootId);
        const bool bMap = pRootMeta && pRootMeta->eShape == DynamicTemplate::Shape::Map;
        auto pRoot = std::make_unique<Object>(0, s_uRootId, bMap);
        readTemplateObject(jSource, *pRoot);
        m_target.m_root = Value(std::move(pRoot));
    }
    m_target.m_uRootHash = m_target.m_root.hash(0);
    const auto vecListeners = m_target.m_vecListeners;
    for (const auto& [uNumber, fnListener] : vecListeners)
        fnListener(m_target);
}

void DynamicTemplateBuilder::storeMeta(const Json::Value& jMeta, PlaceId uParent, PlaceId uId,
                                       std::string_view sWhere)
{
    if (m_target.m_mapMeta.contains(uId))
        return report("duplicate meta value", sWhere);
    auto pMeta = std::make_unique<Meta>(uParent, uId);
    Meta& meta = *pMeta;
    // In the table first, so that a chain of templates finds what stands above it.
    m_target.m_mapMeta.emplace(uId, std::move(pMeta));
    fillMeta(meta, jMeta, uId, sWhere);
}

void DynamicTemplateBuilder::fillMeta(Meta& meta, const Json::Value& jMeta, PlaceId uId,
                                      std::string_view sWhere)
{
    if (!QM_ASSERT_TEXT(!jMeta.isNull() && jMeta.isObject(), "!jObject.isNull() && jObject.isObject()"))
        return;
    for (auto iterMember = jMeta.begin(); iterMember != jMeta.end(); ++iterMember)
    {
        Value value;
        m_manager.read(value, *iterMember, nullptr);
        meta.set(m_manager.addName(keyOf(iterMember)), std::move(value));
    }
    const std::string sType = jsonText(jMeta, "type");
    if (!sType.empty())
    {
        meta.sType = sType;
        meta.uTypeHash = m_manager.addName(sType);
        meta.pHandler = m_manager.handlerOfType(sType);
        meta.eShape = sType == "object"  ? DynamicTemplate::Shape::Object
                      : sType == "array" ? DynamicTemplate::Shape::Array
                      : sType == "map"   ? DynamicTemplate::Shape::Map
                      : meta.pHandler    ? DynamicTemplate::Shape::Value
                                         : DynamicTemplate::Shape::Free;
        if (meta.eShape == DynamicTemplate::Shape::Free)
            report("unknown type '" + sType + "'", sWhere);
    }
    meta.bOptional = jsonBool(jMeta, "optional", meta.bOptional);
    meta.bDeprecated = jsonBool(jMeta, "deprecated", meta.bDeprecated);
    meta.bAllowEmpty = jsonBool(jMeta, "allowEmpty", meta.bAllowEmpty);
    meta.bIgnoreReadError = jsonBool(jMeta, "ignoreReadError", meta.bIgnoreReadError);
    meta.bIgnoreOptions = jsonBool(jMeta, "ignoreOptions", meta.bIgnoreOptions);
    if (const Json::Value& jOptions = jsonMember(jMeta, "options"); jOptions.isArray())
    {
        meta.bHasOptions = true;
        for (const Json::Value& jOption : jOptions)
            if (jOption.isString())
                meta.setOptions.insert(xxh3(jOption.asString()));
    }
    if (const Json::Value& jElement = jsonMember(jMeta, "value_meta"); jElement.isObject())
        storeMeta(jElement, uId, placeId(s_uElementKey, uId), sWhere);
    meta.sSubTemplate = jsonText(jMeta, "subTemplate");
    if (!meta.sSubTemplate.empty())
    {
        Value taken = takeIn(meta.sSubTemplate, meta.parentId(), uId);
        m_target.m_mapDefaults.try_emplace(uId, taken.clone());
        m_mapTakenIn.insert_or_assign(uId, std::move(taken));
    }
}

Value DynamicTemplateBuilder::takeIn(const std::string& sName, PlaceId uParent, PlaceId uId)
{
    if (std::ranges::find(m_vecInProgress, sName) != m_vecInProgress.end())
    {
        report("recursive sub template '" + sName + "'", m_vecInProgress.back());
        return {};
    }
    const DynamicTemplate* pOther = m_manager.getTemplate(sName);
    if (m_target.m_mapMeta.size() + m_target.m_mapDefaults.size() > s_uMaxPlaces)
    {
        if (!std::exchange(m_bTooMany, true))
            report("too many places", m_vecInProgress.back());
        return {};
    }
    if (!pOther)
    {
        report("sub template '" + sName + "' does not exist", m_vecInProgress.back());
        return {};
    }
    m_vecInProgress.push_back(sName);
    const Json::Value& jSource = pOther->m_jSource;
    // What the other template says of its root holds for this place, where nothing else is said.
    Meta& meta = *m_target.m_mapMeta.at(uId);
    const Json::Value& jRootMeta = jsonMember(jsonMember(jSource, s_pTemplateMeta), "root_meta");
    if (jRootMeta.isObject() && meta.sType.empty())
    {
        const std::string sSubTemplate = std::exchange(meta.sSubTemplate, {});
        fillMeta(meta, jRootMeta, uId, sName);
        meta.sSubTemplate = sSubTemplate;
    }
    Value taken;
    if (jSource.isArray())
        taken = readArray(jSource, uParent, uId, sName);
    else
    {
        auto pObject = std::make_unique<Object>(uParent, uId, meta.eShape == DynamicTemplate::Shape::Map);
        readTemplateObject(jSource, *pObject);
        taken = Value(std::move(pObject));
    }
    m_vecInProgress.pop_back();
    return taken;
}

void DynamicTemplateBuilder::readTemplateObject(const Json::Value& jObject, Object& object)
{
    if (!QM_ASSERT(jObject.isObject()))
        return;
    for (auto iterMember = jObject.begin(); iterMember != jObject.end(); ++iterMember)
    {
        const std::string_view sKey = keyOf(iterMember);
        if (!sKey.ends_with(s_sMetaSuffix) || sKey == s_pTemplateMeta)
            continue;
        const std::string_view sOwner = sKey.substr(0, sKey.size() - s_sMetaSuffix.size());
        storeMeta(*iterMember, object.ownId(), placeId(m_manager.addName(sOwner), object.ownId()), sOwner);
    }
    readMembers(jObject, object);
}

void DynamicTemplateBuilder::readMembers(const Json::Value& jObject, Object& object)
{
    for (auto iterMember = jObject.begin(); iterMember != jObject.end(); ++iterMember)
    {
        const std::string_view sKey = keyOf(iterMember);
        if (sKey.ends_with(s_sMetaSuffix))
            continue;
        const KeyHash uKey = m_manager.addName(sKey);
        if (object.isMap())
        {
            const PlaceId uElement = placeId(s_uElementKey, object.ownId());
            Value entry = readDefault(*iterMember, object.ownId(), uElement, sKey);
            m_target.m_mapDefaults.try_emplace(uElement, entry.clone());
            object.append(uKey, std::move(entry));
            continue;
        }
        const PlaceId uId = placeId(uKey, object.ownId());
        const Meta* pMeta = m_target.meta(uId);
        const bool bTakenIn = m_mapTakenIn.contains(uId);
        Value value = readDefault(*iterMember, object.ownId(), uId, sKey);
        if (!m_target.m_mapDefaults.try_emplace(uId, value.clone()).second && !bTakenIn)
            report("duplicate default value", sKey);
        else
            m_target.m_mapKeys[object.ownId()].push_back(uKey);
        if (!pMeta || !pMeta->bOptional)
            object.append(uKey, std::move(value));
    }
}

Value DynamicTemplateBuilder::readDefault(const Json::Value& jValue, PlaceId uParent, PlaceId uId,
                                          std::string_view sWhere)
{
    const Meta* pMeta = m_target.meta(uId);
    if (const auto iterTaken = m_mapTakenIn.find(uId); iterTaken != m_mapTakenIn.end())
        return iterTaken->second.clone();
    const bool bContainer = !pMeta || pMeta->eShape != DynamicTemplate::Shape::Value;
    if (bContainer && jValue.isArray())
        return readArray(jValue, uParent, uId, sWhere);
    if (bContainer && jValue.isObject())
    {
        const bool bMap = pMeta && pMeta->eShape == DynamicTemplate::Shape::Map;
        auto pObject = std::make_unique<Object>(uParent, uId, bMap);
        readTemplateObject(jValue, *pObject);
        return Value(std::move(pObject));
    }
    Value value;
    // A default need not pass the checks that a file's value must: an empty path waits to be chosen.
    const auto* pHandler =
        pMeta ? static_cast<const DynamicDataManager::TypeHandlerI*>(pMeta->pHandler) : nullptr;
    if (!pHandler || !pHandler->read(jValue, value, pMeta, nullptr))
        m_manager.read(value, jValue, nullptr);
    return value;
}

Value DynamicTemplateBuilder::readArray(const Json::Value& jArray, PlaceId uParent, PlaceId uId,
                                        std::string_view sWhere)
{
    auto pArray = std::make_unique<Array>(uParent, uId);
    const PlaceId uElement = placeId(s_uElementKey, uId);
    if (QM_ASSERT(jArray.isArray()))
        for (const Json::Value& jItem : jArray)
        {
            Value item = readDefault(jItem, uId, uElement, sWhere);
            m_target.m_mapDefaults.try_emplace(uElement, item.clone());
            pArray->append(std::move(item));
        }
    return Value(std::move(pArray));
}

void DynamicTemplateBuilder::report(std::string_view sText, std::string_view sWhere) const
{
    QM_LOG_ERROR(m_target.m_sPath, ": ", sText, " (", sWhere, ")");
}
