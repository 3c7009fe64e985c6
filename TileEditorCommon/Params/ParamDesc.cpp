#include "TileEditorCommon/Params/ParamDesc.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/JsonText.h"
#include "KestrelCommon/Data/LuaBlob.h"

namespace tilebuilder
{

namespace
{

ParamType typeOfWord(std::string_view sWord)
{
    static constexpr const char* s_arrWords[] = {"bool", "string", "float", "connections", "effect", "track"};
    for (uint32_t i = 0; i < std::size(s_arrWords); ++i)
        if (sWord == s_arrWords[i])
            return static_cast<ParamType>(i + 1);
    return ParamType::None;
}

bool defaultFits(const Json::Value& jDefault, ParamType eType)
{
    if (jDefault.isNull())
        return true;
    switch (eType)
    {
    case ParamType::Bool:
        return jDefault.isBool();
    case ParamType::String:
        return jDefault.isString();
    case ParamType::Float:
        return jDefault.isNumeric() || jDefault.isBool();
    default:
        return jDefault.isObject();
    }
}

} // namespace

std::vector<ParamDesc> readParams(const Json::Value& json)
{
    std::vector<ParamDesc> vecParams;
    if (json.isNull())
        return vecParams;
    if (!json.isArray())
    {
        QM_LOG_ERROR("Must be array type");
        return vecParams;
    }
    for (const Json::Value& jEntry : json)
    {
        if (!jEntry.isObject())
        {
            QM_LOG_ERROR("Values must be object type");
            continue;
        }
        const auto report = [&jEntry](const char* pText)
        { QM_LOG_ERROR(pText, writeJsonText(jEntry, JsonStyle::Compact)); };
        ParamDesc desc{jsonText(jEntry, "name"), typeOfWord(jsonText(jEntry, "type")),
                       jsonMember(jEntry, "default")};
        const bool bTaken = std::ranges::any_of(vecParams, [&desc](const ParamDesc& other)
                                                { return other.strName == desc.strName; });
        if (desc.strName.empty())
            report("'name' can not be empty: ");
        else if (bTaken)
            report("Duplicate 'name' found: ");
        else if (desc.eType == ParamType::None)
            report("Invalid 'type': ");
        else
        {
            if (!defaultFits(desc.jsonDefault, desc.eType))
            {
                report("Default value type does not match: ");
                desc.jsonDefault = Json::Value();
            }
            vecParams.push_back(std::move(desc));
        }
    }
    return vecParams;
}

void writeBlob(BitStream& stream, const std::vector<ParamPtr>& vecParams,
               const ConnectionLookupI* pOnlyExisting)
{
    LuaBlobWriter out(stream);
    out.header();
    out.table(static_cast<uint32_t>(vecParams.size()));
    for (const ParamPtr& pParam : vecParams)
    {
        out.string(pParam->strName);
        pParam->serialize(out, pOnlyExisting);
    }
}

std::vector<ParamPtr> readBlob(BitStream& stream)
{
    LuaBlobReader in(stream);
    if (!in.header())
        return {};
    std::vector<ParamPtr> vecParams;
    const uint32_t uCount = in.table().uCount;
    for (uint32_t i = 0; i < uCount; ++i)
    {
        const std::string sName(in.string());
        ParamPtr pParam = createParamByCode(sName, static_cast<uint8_t>(in.takeType()));
        if (!pParam)
        {
            QM_LOG_ERROR("Failed to deserialize param ", sName);
            return {};
        }
        pParam->deserialize(in);
        vecParams.push_back(std::move(pParam));
    }
    return vecParams;
}

} // namespace tilebuilder
