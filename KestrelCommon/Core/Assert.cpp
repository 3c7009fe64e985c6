#include "KestrelCommon/Core/Assert.h"

#include <atomic>

namespace UTILS
{

namespace
{
std::atomic<AssertCallback> s_fnCallback{nullptr};
}

void setAssertCallback(AssertCallback fnCallback)
{
    s_fnCallback = fnCallback;
}

bool reportAssert(const char* pExpression, const char* pFile, int iLine)
{
    if (const AssertCallback fnCallback = s_fnCallback)
        fnCallback(pExpression, pFile, iLine);
    return false;
}

} // namespace UTILS
