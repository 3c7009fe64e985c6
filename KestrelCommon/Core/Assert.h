#pragma once // Assertions that go to the log and let the program go on.

#include "KestrelCommon/Core/Text.h"

namespace UTILS
{

/// Called for every failed assertion, from any thread. Null: assertions are silent.
using AssertCallback = void (*)(const char* pExpression, const char* pFile, int iLine);
void setAssertCallback(AssertCallback fnCallback);

/// Hands a failed condition to the callback; always false, for use in conditions.
bool reportAssert(const char* pExpression, const char* pFile, int iLine);

} // namespace UTILS

/// True when the condition holds. Else reports it by its own text and is false:
/// the caller goes on with an empty or default value.
#define QM_ASSERT(...)                                                                                       \
    ((__VA_ARGS__) ? true : ::UTILS::reportAssert(#__VA_ARGS__, ::UTILS::baseName(__FILE__), __LINE__))

/// The same with the text given apart from the condition.
#define QM_ASSERT_TEXT(condition, text)                                                                      \
    ((condition) ? true : ::UTILS::reportAssert(text, ::UTILS::baseName(__FILE__), __LINE__))
