#pragma once // Builds a template from its JSON.

#include "KestrelCommon/Data/DynamicTemplate.h"

/// One run over one template. Faults go to the log, and what can be read is kept.
class DynamicTemplateBuilder
{
public:
    DynamicTemplateBuilder(DynamicDataManager& manager, DynamicTemplate& target);

    /// Takes the file's JSON and finds the name in it.
    void setSource(Json::Value jSource);
    /// Makes meta data, defaults and root from the source and tells the listeners. The sources of
    /// templates that are taken in must be set.
    void build();

private:
    using Meta = DynamicTemplate::Meta;

    void storeMeta(const Json::Value& jMeta, DynamicData::PlaceId uParent, DynamicData::PlaceId uId,
                   std::string_view sWhere);
    void fillMeta(Meta& meta, const Json::Value& jMeta, DynamicData::PlaceId uId, std::string_view sWhere);
    void readTemplateObject(const Json::Value& jObject, DynamicData::Object& object);
    void readMembers(const Json::Value& jObject, DynamicData::Object& object);
    DynamicData::Value readDefault(const Json::Value& jValue, DynamicData::PlaceId uParent,
                                   DynamicData::PlaceId uId, std::string_view sWhere);
    DynamicData::Value readArray(const Json::Value& jArray, DynamicData::PlaceId uParent,
                                 DynamicData::PlaceId uId, std::string_view sWhere);
    DynamicData::Value takeIn(const std::string& sName, DynamicData::PlaceId uParent,
                              DynamicData::PlaceId uId);
    void report(std::string_view sText, std::string_view sWhere) const;

    DynamicDataManager& m_manager;
    DynamicTemplate& m_target;
    std::vector<std::string> m_vecInProgress;
    bool m_bTooMany = false;
    std::unordered_map<DynamicData::PlaceId, DynamicData::Value> m_mapTakenIn;
};
