#pragma once // Fills a tree from JSON by a template.

#include "KestrelCommon/Data/DynamicDataManager.h"

/// One run over one file.
class DynamicDataReader
{
public:
    /// Template and errors may be null.
    DynamicDataReader(DynamicDataManager& manager, const DynamicTemplate* pTemplate,
                      DynamicDataErrors* errors)
        : m_manager(manager),
          m_pTemplate(pTemplate),
          m_pErrors(errors)
    {
    }

    /// True when nothing was wrong.
    bool readRoot(const Json::Value& json, DynamicData::Value& value);

private:
    bool readValue(const Json::Value& json, DynamicData::Value& value, DynamicData::PlaceId uParent,
                   DynamicData::PlaceId uId, const DynamicDataPath& path);
    bool readWithHandler(const Json::Value& json, DynamicData::Value& value,
                         const DynamicTemplate::Meta& meta, const DynamicDataPath& path);
    void readByJsonType(const Json::Value& json, DynamicData::Value& value, DynamicData::PlaceId uParent,
                        DynamicData::PlaceId uId, const DynamicDataPath& path);
    void readObject(const Json::Value& json, DynamicData::Object& object, const DynamicDataPath& path);
    void addMissing(DynamicData::Object& object, const DynamicDataPath& path);
    void report(std::string sMessage, const DynamicDataPath& path);
    void reportMember(const DynamicDataPath& path);

    DynamicDataManager& m_manager;
    const DynamicTemplate* m_pTemplate;
    DynamicDataErrors* m_pErrors;
    bool m_bGood = true;
};
