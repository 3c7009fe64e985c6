#include "KestrelCommon/Data/PlainJson.h"

#include <charconv>
#include <cstring>
#include <json/value.h>

namespace
{

constexpr int s_iMaxDepth = 100;               ///< of nesting; well below the limit of the full parser
constexpr std::ptrdiff_t s_iMaxText = 1 << 24; ///< bytes of one string
constexpr std::ptrdiff_t s_iMaxIntDigits = 18; ///< always within 64 bits

class PlainReader
{
public:
    explicit PlainReader(std::string_view sText) : m_pAt(sText.data()), m_pEnd(sText.data() + sText.size()) {}

    bool readWhole(Json::Value& jRoot)
    {
        if (!readValue(jRoot, 0))
            return false;
        skipSpaces();
        return m_pAt == m_pEnd;
    }

private:
    void skipSpaces()
    {
        while (m_pAt != m_pEnd && (*m_pAt == ' ' || *m_pAt == '\n' || *m_pAt == '\r' || *m_pAt == '\t'))
            ++m_pAt;
    }

    bool take(char c)
    {
        skipSpaces();
        if (m_pAt == m_pEnd || *m_pAt != c)
            return false;
        ++m_pAt;
        return true;
    }

    bool takeWord(std::string_view sWord)
    {
        if (!std::string_view(m_pAt, static_cast<size_t>(m_pEnd - m_pAt)).starts_with(sWord))
            return false;
        m_pAt += sWord.size();
        return true;
    }

    bool readValue(Json::Value& jValue, int iDepth)
    {
        skipSpaces();
        if (m_pAt == m_pEnd || iDepth > s_iMaxDepth)
            return false;
        switch (*m_pAt)
        {
        case '{':
            return readObject(jValue, iDepth);
        case '[':
            return readArray(jValue, iDepth);
        case '"':
        {
            std::string_view sText;
            if (!readText(sText))
                return false;
            jValue = Json::Value(sText.data(), sText.data() + sText.size());
            return true;
        }
        case 't':
            jValue = Json::Value(true);
            return takeWord("true");
        case 'f':
            jValue = Json::Value(false);
            return takeWord("false");
        case 'n':
            jValue = Json::Value();
            return takeWord("null");
        default:
            return readNumber(jValue);
        }
    }

    bool readObject(Json::Value& jValue, int iDepth)
    {
        ++m_pAt;
        jValue = Json::Value(Json::objectValue);
        if (take('}'))
            return true;
        do
        {
            std::string_view sKey;
            skipSpaces();
            if (m_pAt == m_pEnd || *m_pAt != '"' || !readText(sKey) || !take(':') ||
                !readValue(*jValue.demand(sKey.data(), sKey.data() + sKey.size()), iDepth + 1))
                return false;
        } while (take(','));
        return take('}');
    }

    bool readArray(Json::Value& jValue, int iDepth)
    {
        ++m_pAt;
        jValue = Json::Value(Json::arrayValue);
        if (take(']'))
            return true;
        Json::ArrayIndex uNext = 0;
        do
        {
            if (!readValue(jValue[uNext++], iDepth + 1))
                return false;
        } while (take(','));
        return take(']');
    }

    /// Of a text without escapes what stands between its quotes.
    bool readText(std::string_view& sText)
    {
        const char* pBegin = m_pAt + 1;
        const auto* pQuote =
            static_cast<const char*>(std::memchr(pBegin, '"', static_cast<size_t>(m_pEnd - pBegin)));
        if (!pQuote || pQuote - pBegin > s_iMaxText)
            return false;
        sText = {pBegin, static_cast<size_t>(pQuote - pBegin)};
        m_pAt = pQuote + 1;
        return std::memchr(pBegin, '\\', sText.size()) == nullptr;
    }

    const char* skipDigits(const char* p) const
    {
        while (p != m_pEnd && *p >= '0' && *p <= '9')
            ++p;
        return p;
    }

    bool readNumber(Json::Value& jValue)
    {
        const char* pBegin = m_pAt;
        const char* pDigits = pBegin + (*pBegin == '-');
        const char* p = skipDigits(pDigits);
        if (p == pDigits || p - pDigits > s_iMaxIntDigits)
            return false;
        const bool bReal = p != m_pEnd && (*p == '.' || *p == 'e' || *p == 'E');
        if (!bReal)
        {
            Json::LargestInt iValue = 0;
            std::from_chars(pBegin, p, iValue);
            jValue = Json::Value(iValue);
        }
        else
        {
            if (*p == '.')
            {
                const char* pFraction = p + 1;
                p = skipDigits(pFraction);
                if (p == pFraction)
                    return false;
            }
            if (p != m_pEnd && (*p == 'e' || *p == 'E'))
                return false;
            double fValue = 0.0;
            if (std::from_chars(pBegin, p, fValue).ec != std::errc())
                return false;
            jValue = Json::Value(fValue);
        }
        m_pAt = p;
        return true;
    }

    const char* m_pAt;
    const char* m_pEnd;
};

} // namespace

bool parsePlainJson(std::string_view sText, Json::Value& jRoot)
{
    return PlainReader(sText).readWhole(jRoot);
}
