#pragma once // A short road through JSON that is written as most of it is.

#include <json/forwards.h>
#include <string_view>

/// Parses a text without comments, escapes and other rarities to the very value that jsoncpp makes of it, in
/// a part of its time. False: jsoncpp has to say what the text is; the value is to be thrown away then.
[[nodiscard]] bool parsePlainJson(std::string_view sText, Json::Value& jRoot);
