#include "TileEditorCommon/Params/EffectParam.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/LuaBlob.h"

namespace tilebuilder
{

namespace
{

void writeValue(LuaBlobWriter& stream, const EffectValue& value)
{
    switch (value.kind)
    {
    case EffectValueKind::Float:
        return stream.number(std::get<float>(value.content));
    case EffectValueKind::Bool:
        return stream.boolean(std::get<bool>(value.content));
    case EffectValueKind::String:
        return stream.string(std::get<std::string>(value.content));
    default:
        return stream.color(std::get<std::array<float, 4>>(value.content));
    }
}

/// False, with an assertion, for a type code that no value has; the value is then passed over.
bool readValue(LuaBlobReader& stream, EffectValue& value)
{
    switch (stream.peek())
    {
    case LuaSaveDataType::Boolean:
        value = {EffectValueKind::Bool, stream.boolean()};
        return true;
    case LuaSaveDataType::Number:
        value = {EffectValueKind::Float, stream.number()};
        return true;
    case LuaSaveDataType::String:
        value = {EffectValueKind::String, std::string(stream.string())};
        return true;
    case LuaSaveDataType::Userdata:
    {
        static_cast<void>(stream.takeType());
        const auto id = static_cast<LuaUserdataType>(stream.uint32Body());
        QM_ASSERT(id == LuaUserdataType::Color);
        value = {EffectValueKind::Color, stream.colorBody()};
        return true;
    }
    default:
        QM_ASSERT_TEXT(false, "Invalid parameter!");
        stream.skip();
        return false;
    }
}

} // namespace

EffectParam::EffectParam() : IParam(ParamType::Effect) {}

std::shared_ptr<IParam> EffectParam::getCloneArgs() const
{
    auto pCopy = std::make_shared<EffectParam>(*this);
    if (m_pEffect)
        pCopy->m_pEffect = std::make_shared<EffectInstance>(*m_pEffect);
    return pCopy;
}

const std::string& EffectParam::effectName() const
{
    return m_pEffect ? m_pEffect->description().name : m_sStoredName;
}

void EffectParam::setEffect(EffectCatalogue::Place place)
{
    const EffectCatalogue* pCatalogue = EffectCatalogue::ms_pInstance;
    auto pEffect = pCatalogue ? pCatalogue->effect(place) : nullptr;
    if (!pEffect)
        return;
    const auto& vecEffects = pCatalogue->sets()[static_cast<size_t>(place.iSet)].effects;
    iEffectSet = place.iSet;
    iEffect = std::min(place.iEffect, static_cast<int32_t>(vecEffects.size()) - 1);
    m_pEffect = std::make_shared<EffectInstance>(std::move(pEffect));
    m_sStoredName.clear();
    m_vecStored.clear();
}

bool EffectParam::find(std::string_view sEffect)
{
    const auto place =
        EffectCatalogue::ms_pInstance ? EffectCatalogue::ms_pInstance->find(sEffect) : std::nullopt;
    if (place)
    {
        setEffect(*place);
        return true;
    }
    iEffect = -1;
    iEffectSet = -1;
    m_pEffect.reset();
    m_vecStored.clear();
    m_sStoredName = sEffect;
    return false;
}

void EffectParam::setDefault(const Json::Value& json)
{
    const std::string sName = jsonText(json, "name");
    if (sName.empty())
        QM_LOG_ERROR("Invalid default json node passed to effect param");
    else if (!find(sName))
        QM_LOG_WARNING("No effect set has the effect '", sName, "'");
}

void EffectParam::serialize(LuaBlobWriter& stream, const ConnectionLookupI*)
{
    uint32_t uChanged = 0;
    for (size_t i = 0; m_pEffect && i < m_pEffect->size(); ++i)
        uChanged += m_pEffect->differs(i);
    const uint32_t uValues = uChanged + static_cast<uint32_t>(m_vecStored.size());
    const bool bTimeOfDay = fTimeOfDayStart != 0.0f || fTimeOfDayEnd != 1.0f;
    stream.table(1 + (uValues > 0) + bTimeOfDay + !bAutoPlay);
    stream.string("name");
    stream.string(effectName());
    if (uValues)
    {
        stream.string("params");
        stream.array(uValues * 2);
        for (size_t i = 0; uChanged && i < m_pEffect->size(); ++i)
            if (m_pEffect->differs(i))
            {
                stream.string(m_pEffect->description().values[i].name);
                writeValue(stream, m_pEffect->value(i));
            }
        for (const StoredValue& stored : m_vecStored)
        {
            stream.string(stored.sName);
            writeValue(stream, stored.value);
        }
    }
    if (bTimeOfDay)
    {
        stream.string("timeOfDay");
        stream.array(3);
        stream.number(fTimeOfDayStart);
        stream.number(fTimeOfDayEnd);
        stream.boolean(bInverseTimeOfDay);
    }
    if (!bAutoPlay)
    {
        stream.string("autoPlay");
        stream.boolean(false);
    }
}

void EffectParam::deserialize(LuaBlobReader& stream)
{
    const LuaTableHeader table = stream.tableBody();
    const uint32_t uEffectsTblCount = table.uCount;
    QM_ASSERT(uEffectsTblCount >= 1 && uEffectsTblCount <= 4);
    QM_ASSERT(!table.bArray);
    for (uint32_t i = 0; i < uEffectsTblCount && !stream.isCut(); ++i)
    {
        const std::string_view sKey = stream.string();
        QM_ASSERT_TEXT((i == 0) == (sKey == "name"), "name");
        if (sKey == "name")
        {
            const std::string sName(stream.string());
            if (!find(sName))
                QM_LOG_WARNING("No effect set has the effect '", sName, "', it is kept as it was stored");
        }
        else if (sKey == "params")
            readValues(stream);
        else if (sKey == "timeOfDay")
            readTimeOfDay(stream);
        else if (sKey == "autoPlay")
            bAutoPlay = stream.boolean();
        else
        {
            QM_ASSERT_TEXT(false, "Key not implemented!");
            stream.skip();
        }
    }
}

void EffectParam::readValues(LuaBlobReader& stream)
{
    const LuaTableHeader table = stream.table();
    const uint32_t uParamsTblCount = table.uCount;
    const int32_t iParamsTblStartIndex = table.iStartIndex;
    QM_ASSERT(table.bArray);
    QM_ASSERT(uParamsTblCount > 0);
    QM_ASSERT(iParamsTblStartIndex == 1);
    for (uint32_t i = 0; i + 1 < uParamsTblCount && !stream.isCut(); i += 2)
    {
        StoredValue stored{std::string(stream.string()), {}};
        if (!readValue(stream, stored.value) || stream.isCut())
            continue;
        if (!m_pEffect || !m_pEffect->set(stored.sName, stored.value))
            m_vecStored.push_back(std::move(stored));
    }
}

void EffectParam::readTimeOfDay(LuaBlobReader& stream)
{
    const LuaTableHeader table = stream.table();
    if (!QM_ASSERT(table.bArray && table.uCount == 3))
        return;
    fTimeOfDayStart = stream.number();
    fTimeOfDayEnd = stream.number();
    bInverseTimeOfDay = stream.boolean();
}

} // namespace tilebuilder
