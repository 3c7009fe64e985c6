#include "KestrelCommon/Data/JsonText.h"

#include <charconv>
#include <json/value.h>
#include <limits>

namespace
{

constexpr size_t s_uIndent = 3;
constexpr size_t s_uLineWidth = 90;

void appendQuoted(std::string& sOut, const char* pBegin, const char* pEnd)
{
    sOut += '"';
    for (const char* pChar = pBegin; pChar != pEnd; ++pChar)
        switch (const char c = *pChar)
        {
        case '"':
            sOut += "\\\"";
            break;
        case '\\':
            sOut += "\\\\";
            break;
        case '\n':
            sOut += "\\n";
            break;
        case '\t':
            sOut += "\\t";
            break;
        case '\r':
            sOut += "\\r";
            break;
        default:
            if (static_cast<unsigned char>(c) >= 0x20)
                sOut += c;
            else
            {
                constexpr const char* pDigits = "0123456789abcdef";
                ((sOut += "\\u00") += pDigits[c >> 4 & 15]) += pDigits[c & 15];
            }
        }
    sOut += '"';
}

template <class T>
void appendNumber(std::string& sOut, T value)
{
    char arrText[32];
    const char* pEnd = std::to_chars(arrText, arrText + sizeof(arrText), value).ptr;
    sOut.append(arrText, static_cast<size_t>(pEnd - arrText));
    if constexpr (std::is_floating_point_v<T>)
        if (std::string_view(arrText, static_cast<size_t>(pEnd - arrText)).find_first_of(".e") ==
            std::string_view::npos)
            sOut += ".0";
}

double finite(double fValue)
{
    constexpr double fMax = std::numeric_limits<double>::max();
    return fValue != fValue ? 0.0 : std::clamp(fValue, -fMax, fMax);
}

class TextWriter
{
public:
    TextWriter(std::string& sOut, bool bIndented) : m_sOut(sOut), m_bIndented(bIndented) {}

    void value(const Json::Value& jValue, size_t uDepth)
    {
        switch (jValue.type())
        {
        case Json::nullValue:
            m_sOut += "null";
            break;
        case Json::intValue:
            appendNumber(m_sOut, jValue.asInt64());
            break;
        case Json::uintValue:
            appendNumber(m_sOut, jValue.asUInt64());
            break;
        case Json::realValue:
            appendNumber(m_sOut, finite(jValue.asDouble()));
            break;
        case Json::booleanValue:
            m_sOut += jValue.asBool() ? "true" : "false";
            break;
        case Json::stringValue:
        {
            const char* pBegin = nullptr;
            const char* pEnd = nullptr;
            jValue.getString(&pBegin, &pEnd);
            appendQuoted(m_sOut, pBegin, pEnd);
            break;
        }
        case Json::arrayValue:
            list(jValue, uDepth, '[', ']');
            break;
        case Json::objectValue:
            list(jValue, uDepth, '{', '}');
            break;
        }
    }

private:
    void list(const Json::Value& jValue, size_t uDepth, char cOpen, char cClose)
    {
        m_sOut += cOpen;
        const bool bSpread = m_bIndented && !jValue.empty() && !onOneLine(jValue);
        bool bFirst = true;
        for (auto iterItem = jValue.begin(); iterItem != jValue.end(); ++iterItem)
        {
            if (!bFirst)
                m_sOut += m_bIndented && !bSpread ? ", " : ",";
            bFirst = false;
            if (bSpread)
                newLine(uDepth + 1);
            if (jValue.isObject())
            {
                const char* pEnd = nullptr;
                const char* pBegin = iterItem.memberName(&pEnd);
                appendQuoted(m_sOut, pBegin, pEnd);
                m_sOut += m_bIndented ? ": " : ":";
            }
            value(*iterItem, uDepth + 1);
        }
        if (bSpread)
            newLine(uDepth);
        m_sOut += cClose;
    }

    static bool onOneLine(const Json::Value& jValue)
    {
        if (!jValue.isArray() || jValue.size() > 16)
            return false;
        size_t uWidth = 0;
        for (const Json::Value& jItem : jValue)
        {
            if (jItem.isArray() || jItem.isObject())
                return false;
            uWidth += jItem.isString() ? jItem.asString().size() + 4 : 8;
        }
        return uWidth <= s_uLineWidth;
    }

    void newLine(size_t uDepth)
    {
        m_sOut += '\n';
        m_sOut.append(uDepth * s_uIndent, ' ');
    }

    std::string& m_sOut;
    bool m_bIndented;
};

} // namespace

std::string writeJsonText(const Json::Value& jValue, JsonStyle eStyle)
{
    std::string sText;
    TextWriter(sText, eStyle == JsonStyle::Indented).value(jValue, 0);
    if (eStyle == JsonStyle::Indented)
        sText += '\n';
    return sText;
}

double shortestDouble(float fValue)
{
    if (!std::isfinite(fValue))
        return fValue != fValue
                   ? 0.0
                   : static_cast<double>(std::copysign(std::numeric_limits<float>::max(), fValue));
    char arrText[32];
    const char* pEnd = std::to_chars(arrText, arrText + sizeof(arrText), fValue).ptr;
    double fResult = 0.0;
    std::from_chars(arrText, pEnd, fResult);
    return fResult;
}
