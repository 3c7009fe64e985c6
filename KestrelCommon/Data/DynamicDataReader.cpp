#include "KestrelCommon/Data/DynamicDataReader.h"

#include "KestrelCommon/Core/Text.h"

#include <json/value.h>
#include <limits>

using namespace DynamicData;
using Meta = DynamicTemplate::Meta;
using Shape = DynamicTemplate::Shape;

std::vector<std::string> DynamicDataPath::keys() const
{
    std::vector<std::string> vecKeys;
    for (const DynamicDataPath* pStep = this; pStep->pParent; pStep = pStep->pParent)
        vecKeys.push_back(pStep->sKey.data() ? std::string(pStep->sKey) : std::to_string(pStep->uIndex));
    std::ranges::reverse(vecKeys);
    return vecKeys;
}

std::string DynamicDataPath::text() const
{
    std::string sText;
    for (const std::string& sStep : keys())
        sText += '/' + sStep;
    return sText.empty() ? "/" : sText;
}

void DynamicDataErrors::add(std::string sMessage)
{
    m_vecEntries.push_back({std::move(sMessage), m_pPath ? m_pPath->keys() : std::vector<std::string>{}});
}

namespace
{

const char* jsonTypeName(const Json::Value& json)
{
    switch (json.type())
    {
    case Json::nullValue:
        return "null";
    case Json::intValue:
        return "int";
    case Json::uintValue:
        return "uint";
    case Json::realValue:
        return "real";
    case Json::stringValue:
        return "string";
    case Json::booleanValue:
        return "bool";
    case Json::arrayValue:
        return "array";
    default:
        return "object";
    }
}

/// A number in the smallest tag that holds it exactly.
void setNumber(const Json::Value& json, Value& value)
{
    if (json.type() == Json::realValue)
        return value.set(json.asDouble());
    if (json.type() == Json::uintValue && json.asUInt64() > std::numeric_limits<uint32_t>::max())
        return value.set(uint64_t{json.asUInt64()});
    const int64_t iNumber = json.asInt64();
    if (iNumber == static_cast<int32_t>(iNumber))
        value.set(static_cast<int32_t>(iNumber));
    else if (iNumber == static_cast<uint32_t>(iNumber))
        value.set(static_cast<uint32_t>(iNumber));
    else
        value.set(iNumber);
}

} // namespace

bool DynamicDataReader::readRoot(const Json::Value& json, Value& value)
{
    Value read;
    readValue(json, read, 0, s_uRootId, {});
    value = std::move(read);
    return m_bGood;
}

bool DynamicDataReader::readValue(const Json::Value& json, Value& value, PlaceId uParent, PlaceId uId,
                                  const DynamicDataPath& path)
{
    const Meta* pMeta = m_pTemplate ? m_pTemplate->meta(uId) : nullptr;
    if (!pMeta || pMeta->eShape == Shape::Free)
    {
        readByJsonType(json, value, uParent, uId, path);
        return true;
    }
    if (pMeta->eShape == Shape::Value)
    {
        if (readWithHandler(json, value, *pMeta, path))
            return true;
    }
    else if (pMeta->eShape == Shape::Array ? json.isArray() : json.isObject())
    {
        readByJsonType(json, value, uParent, uId, path);
        return true;
    }
    else if (!pMeta->bIgnoreReadError)
        report(UTILS::concat("Expected ", pMeta->sType, " received ", jsonTypeName(json)), path);
    // What doesn't fit stays as it is, so that writing gives it back.
    readByJsonType(json, value, uParent, uId, path);
    return pMeta->bIgnoreReadError;
}

bool DynamicDataReader::readWithHandler(const Json::Value& json, Value& value, const Meta& meta,
                                        const DynamicDataPath& path)
{
    const auto* pHandler = static_cast<const DynamicDataManager::TypeHandlerI*>(meta.pHandler);
    const size_t uBefore = m_pErrors ? m_pErrors->entries().size() : 0;
    if (m_pErrors)
        m_pErrors->m_pPath = &path;
    const bool bRead = pHandler->read(json, value, &meta, m_pErrors);
    if (m_pErrors)
        m_pErrors->m_pPath = nullptr;
    if (bRead)
        return true;
    if (meta.bIgnoreReadError)
        return false;
    m_bGood = false;
    if (m_pErrors && m_pErrors->entries().size() == uBefore)
        report(UTILS::concat("Expected ", meta.sType, " received ", jsonTypeName(json)), path);
    return false;
}

void DynamicDataReader::readByJsonType(const Json::Value& json, Value& value, PlaceId uParent, PlaceId uId,
                                       const DynamicDataPath& path)
{
    switch (json.type())
    {
    case Json::nullValue:
        value.reset();
        break;
    case Json::intValue:
    case Json::uintValue:
    case Json::realValue:
        setNumber(json, value);
        break;
    case Json::booleanValue:
        value.set(json.asBool());
        break;
    case Json::stringValue:
    {
        const char* pBegin = nullptr;
        const char* pEnd = nullptr;
        json.getString(&pBegin, &pEnd);
        value.setText({pBegin, static_cast<size_t>(pEnd - pBegin)});
        break;
    }
    case Json::arrayValue:
    {
        auto pArray = std::make_unique<Array>(uParent, uId);
        pArray->reserve(json.size());
        const PlaceId uElement = placeId(s_uElementKey, uId);
        DynamicDataPath pathItem{&path, {}, 0};
        for (const Json::Value& jItem : json)
        {
            if (!readValue(jItem, pArray->append({}), uId, uElement, pathItem))
                reportMember(pathItem);
            ++pathItem.uIndex;
        }
        value = Value(std::move(pArray));
        break;
    }
    case Json::objectValue:
    {
        const Meta* pMeta = m_pTemplate ? m_pTemplate->meta(uId) : nullptr;
        auto pObject = std::make_unique<Object>(uParent, uId, pMeta && pMeta->eShape == Shape::Map);
        readObject(json, *pObject, path);
        value = Value(std::move(pObject));
        break;
    }
    }
}

void DynamicDataReader::readObject(const Json::Value& json, Object& object, const DynamicDataPath& path)
{
    object.reserve(json.size());
    for (auto iterMember = json.begin(); iterMember != json.end(); ++iterMember)
    {
        const char* pEnd = nullptr;
        const char* pBegin = iterMember.memberName(&pEnd);
        const DynamicDataPath pathMember{&path, {pBegin, static_cast<size_t>(pEnd - pBegin)}, 0};
        const KeyHash uKey = m_manager.addName(pathMember.sKey);
        const PlaceId uId = placeId(object.isMap() ? s_uElementKey : uKey, object.ownId());
        if (!readValue(*iterMember, object.append(uKey, {}), object.ownId(), uId, pathMember))
            reportMember(pathMember);
    }
    if (m_pTemplate && !object.isMap())
        addMissing(object, path);
}

void DynamicDataReader::addMissing(Object& object, const DynamicDataPath& path)
{
    for (const KeyHash uKey : m_pTemplate->keysOf(object.ownId()))
    {
        if (object.find(uKey))
            continue;
        const PlaceId uId = placeId(uKey, object.ownId());
        const Meta* pMeta = m_pTemplate->meta(uId);
        if (pMeta && pMeta->bOptional)
            continue;
        if (const Value* pDefault = m_pTemplate->defaultOf(uId))
            object.append(uKey, pDefault->clone());
        if (!pMeta || (!pMeta->bDeprecated && !pMeta->bIgnoreReadError))
        {
            m_bGood = false;
            if (m_pErrors)
                report(UTILS::concat("'", path.text(), "' is missing '", m_manager.name(uKey), "'"), path);
        }
    }
}

void DynamicDataReader::report(std::string sMessage, const DynamicDataPath& path)
{
    m_bGood = false;
    if (!m_pErrors)
        return;
    m_pErrors->m_pPath = &path;
    m_pErrors->add(std::move(sMessage));
    m_pErrors->m_pPath = nullptr;
}

void DynamicDataReader::reportMember(const DynamicDataPath& path)
{
    if (m_pErrors)
        report(UTILS::concat("'", path.keys().back(), "' in '", path.pParent->text(), "'"), path);
}
