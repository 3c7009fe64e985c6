#include "KestrelCommon/Data/JsonFile.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/PlainJson.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"

#include <json/json.h>

namespace
{

/// A reader forgets all about one text before the next. Its settings cost more than a small text.
Json::CharReader& reader()
{
    thread_local const std::unique_ptr<Json::CharReader> s_pReader = []
    {
        Json::CharReaderBuilder builder;
        builder["collectComments"] = false;
        builder["stackLimit"] = 200; // nesting; deeper input throws
        return std::unique_ptr<Json::CharReader>(builder.newCharReader());
    }();
    return *s_pReader;
}

} // namespace

std::optional<Json::Value> parseJson(std::string_view sText, std::string& sError)
{
    std::optional<Json::Value> jRoot(std::in_place);
    if (parsePlainJson(sText, *jRoot))
        return jRoot;
    jRoot.emplace();
    try
    {
        if (!reader().parse(sText.data(), sText.data() + sText.size(), &*jRoot, &sError))
            return std::nullopt;
    }
    catch (const Json::Exception& exception)
    {
        sError = exception.what();
        return std::nullopt;
    }
    return jRoot;
}

std::optional<Json::Value> readJsonFile(std::string_view sPath)
{
    const auto sText = readTextFile(DirectoryManager::ms_pInstance->resolvePath(sPath));
    if (!sText)
    {
        QM_LOG_ERROR("Failed to parse '", sPath, "'. File not found!");
        return std::nullopt;
    }
    std::string sError;
    auto jRoot = parseJson(*sText, sError);
    if (!jRoot)
        QM_LOG_ERROR("Failed to parse file '", sPath, "':\n", sError);
    return jRoot;
}

const Json::Value& jsonMember(const Json::Value& jObject, const char* pKey)
{
    if (jObject.isObject())
        if (const Json::Value* pMember = jObject.find(pKey, pKey + std::char_traits<char>::length(pKey)))
            return *pMember;
    return Json::Value::nullSingleton();
}

std::string_view jsonView(const Json::Value& jValue)
{
    const char* pBegin = nullptr;
    const char* pEnd = nullptr;
    return jValue.getString(&pBegin, &pEnd) ? std::string_view(pBegin, static_cast<size_t>(pEnd - pBegin))
                                            : std::string_view();
}

std::string jsonText(const Json::Value& jObject, const char* pKey, std::string_view sDefault)
{
    const Json::Value& jMember = jsonMember(jObject, pKey);
    return std::string(jMember.isString() ? jsonView(jMember) : sDefault);
}

double jsonNumber(const Json::Value& jObject, const char* pKey, double fDefault)
{
    const Json::Value& jMember = jsonMember(jObject, pKey);
    return jMember.isNumeric() ? jMember.asDouble() : fDefault;
}

bool jsonBool(const Json::Value& jObject, const char* pKey, bool bDefault)
{
    const Json::Value& jMember = jsonMember(jObject, pKey);
    return jMember.isBool() ? jMember.asBool() : bDefault;
}

std::string styledJson(const Json::Value& jValue)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "   ";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, jValue) + '\n';
}
