#pragma once // JSON from and to files, with defaults for what is missing.

#include <json/forwards.h>
#include <optional>
#include <string>
#include <string_view>

/// Parses a text; on failure nullopt with the parser's messages in sError.
[[nodiscard]] std::optional<Json::Value> parseJson(std::string_view sText, std::string& sError);

/// Reads a file by its keyed path. A file that is missing logs "Failed to parse '" path "'. File
/// not found!", one that doesn't parse "Failed to parse file '" path "':" and the messages.
[[nodiscard]] std::optional<Json::Value> readJsonFile(std::string_view sPath);

/// A text as it lies in the value, as long as that does; empty for anything else.
[[nodiscard]] std::string_view jsonView(const Json::Value& jValue);

/// Members of an object with a default for a missing one or one of another type; any value,
/// an array too, may be given for the object.
[[nodiscard]] std::string jsonText(const Json::Value& jObject, const char* pKey,
                                   std::string_view sDefault = {});
[[nodiscard]] double jsonNumber(const Json::Value& jObject, const char* pKey, double fDefault);
[[nodiscard]] bool jsonBool(const Json::Value& jObject, const char* pKey, bool bDefault);

/// A member of an object, or null.
[[nodiscard]] const Json::Value& jsonMember(const Json::Value& jObject, const char* pKey);

/// Indented by three blanks, ends in a line feed.
[[nodiscard]] std::string styledJson(const Json::Value& jValue);
