#include "TileEditorCommon/Params/IParam.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/LuaFormat.h"
#include "TileEditorCommon/Params/ConnectionsParam.h"
#include "TileEditorCommon/Params/EffectParam.h"
#include "TileEditorCommon/Params/SimpleParam.h"
#include "TileEditorCommon/Params/TrackParam.h"

#include <atomic>

namespace tilebuilder
{

namespace
{

uint32_t nextParamUid()
{
    static std::atomic<uint32_t> s_uNext = 1;
    return s_uNext++;
}

ParamPtr makeParam(ParamType eType)
{
    switch (eType)
    {
    case ParamType::Bool:
        return std::make_shared<SimpleParam<bool>>();
    case ParamType::String:
        return std::make_shared<SimpleParam<std::string>>();
    case ParamType::Float:
        return std::make_shared<SimpleParam<float>>();
    case ParamType::Connections:
        return std::make_shared<ConnectionsParam>();
    case ParamType::Effect:
        return std::make_shared<EffectParam>();
    case ParamType::Track:
        return std::make_shared<TrackParam>();
    default:
        return nullptr;
    }
}

} // namespace

IParam::IParam(ParamType eKind) : eType(eKind), uParamUid(nextParamUid()) {}

IParam::IParam(const IParam& other)
    : std::enable_shared_from_this<IParam>(other),
      strName(other.strName),
      eType(other.eType),
      jsonDefault(other.jsonDefault),
      uParamUid(nextParamUid())
{
}

ParamPtr createParam(std::string_view sName, ParamType eType, const Json::Value& jsonDefault)
{
    const auto refuse = [](std::string_view sText)
    {
        QM_LOG_ERROR(sText);
        return nullptr;
    };
    if (eType == ParamType::Connections && sName != "connections")
        return refuse("'connections' type parameter must be named 'connections'");
    if (eType == ParamType::Effect && sName != "effect")
        return refuse("'effect' type parameter must be named 'effect'");
    if (eType == ParamType::Track && sName != "track")
        return refuse("'track' type parameter must be named 'track'");
    const ParamPtr pParam = makeParam(eType);
    if (!pParam)
        return refuse(UTILS::concat("Invalid param type: ", static_cast<uint32_t>(eType)));
    pParam->strName = sName;
    pParam->jsonDefault = jsonDefault;
    if (!jsonDefault.isNull())
        pParam->setDefault(jsonDefault);
    return pParam;
}

ParamPtr createParamByCode(std::string_view sName, uint8_t uTypeCode)
{
    const auto eCode = static_cast<LuaSaveDataType>(uTypeCode);
    ParamType eType = ParamType::None;
    if (eCode == LuaSaveDataType::Boolean)
        eType = ParamType::Bool;
    else if (eCode == LuaSaveDataType::Number)
        eType = ParamType::Float;
    else if (eCode == LuaSaveDataType::String)
        eType = ParamType::String;
    else if (sName == "connections" && eCode == LuaSaveDataType::Table)
        eType = ParamType::Connections;
    else if (sName == "effect" && eCode == LuaSaveDataType::Table)
        eType = ParamType::Effect;
    else if (sName == "track" && eCode == LuaSaveDataType::Json)
        eType = ParamType::Track;
    ParamPtr pParam = makeParam(eType);
    if (pParam)
        pParam->strName = sName;
    return pParam;
}

} // namespace tilebuilder
