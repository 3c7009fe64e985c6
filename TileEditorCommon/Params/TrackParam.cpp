#include "TileEditorCommon/Params/TrackParam.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/JsonText.h"
#include "KestrelCommon/Data/LuaBlob.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"

namespace tilebuilder
{

namespace
{

const DynamicTemplate* trackTemplate()
{
    const DynamicDataManager* pManager = DynamicDataManager::ms_pInstance;
    return pManager ? pManager->getTemplate(TrackParam::s_pTemplateName) : nullptr;
}

} // namespace

TrackParam::TrackParam() : IParam(ParamType::Track) {}

TrackParam::TrackParam(const TrackParam& other)
    : IParam(other),
      m_uHash(other.m_uHash),
      m_jsonValue(other.m_jsonValue),
      m_sBroken(other.m_sBroken),
      m_bHasObject(other.m_bHasObject),
      m_object(other.m_object.clone()),
      m_baseline(other.m_baseline.clone())
{
}

std::shared_ptr<IParam> TrackParam::getCloneArgs() const
{
    return std::shared_ptr<TrackParam>(new TrackParam(*this));
}

void TrackParam::takeJson(Json::Value json)
{
    m_jsonValue = std::move(json);
    m_bHasObject = false;
    m_object.reset();
    m_baseline.reset();
}

void TrackParam::setDefault(const Json::Value& json)
{
    m_sBroken.clear();
    takeJson(json);
}

DynamicData::Value* TrackParam::object()
{
    if (m_bHasObject)
        return &m_object;
    const DynamicTemplate* pTemplate = trackTemplate();
    if (!pTemplate)
        return nullptr;
    DynamicDataManager& manager = *DynamicDataManager::ms_pInstance;
    if (m_jsonValue.isNull())
        m_object = manager.newObject(*pTemplate);
    else
        manager.read(m_object, m_jsonValue, pTemplate);
    m_baseline = m_object.clone();
    m_uHash = m_object.hash(0);
    m_bHasObject = true;
    return &m_object;
}

const Json::Value& TrackParam::json()
{
    const DynamicDataManager* pManager = DynamicDataManager::ms_pInstance;
    if (!m_bHasObject || !pManager)
        return m_jsonValue;
    if (const uint64_t uHash = m_object.hash(0); uHash != m_uHash)
    {
        pManager->write(trackTemplate(), m_object, m_jsonValue);
        m_uHash = uHash;
        m_sBroken.clear();
    }
    return m_jsonValue;
}

void TrackParam::serialize(LuaBlobWriter& stream, const ConnectionLookupI*)
{
    const Json::Value& jTrack = json();
    stream.json(m_sBroken.empty() ? writeJsonText(jTrack, JsonStyle::Compact) : m_sBroken);
}

void TrackParam::deserialize(LuaBlobReader& stream)
{
    const std::string_view sText = stream.stringBody();
    m_sBroken.clear();
    if (sText.empty())
        return takeJson(Json::Value(Json::objectValue));
    std::string sError;
    auto jTrack = parseJson(sText, sError);
    if (!jTrack)
    {
        QM_LOG_ERROR("The track of a node can't be read, it is kept as it was stored: ", sError);
        m_sBroken = sText;
    }
    takeJson(jTrack ? std::move(*jTrack) : Json::Value(Json::objectValue));
}

void TrackParam::update()
{
    if (const DynamicData::Value* pTrack = object(); pTrack && pPreview)
        pPreview->update(*pTrack);
}

void TrackParam::display(PropertyPanelI& widgets, const ParamContext& context)
{
    DynamicData::Value* pTrack = object();
    if (!pTrack)
        return widgets.label(UTILS::concat("The template '", s_pTemplateName, "' is missing"));
    // The row holds the parameter, so that the tree outlives it.
    widgets.dataView("track", *pTrack, &m_baseline, trackTemplate(),
                     [pSelf = shared_from_this(), fnChanged = context.onChanged](EditPhase)
                     {
                         if (fnChanged)
                             fnChanged();
                     });
}

} // namespace tilebuilder
