#include "KestrelCommon/Core/Uuid.h"

#include "KestrelCommon/Core/Hash.h"

#include <algorithm>
#include <boost/uuid/random_generator.hpp>
#include <span>

namespace
{

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

constexpr bool isDash(size_t uPlace)
{
    return uPlace == 8 || uPlace == 13 || uPlace == 18 || uPlace == 23;
}

} // namespace

std::optional<Uuid> Uuid::parse(std::string_view sText)
{
    if (sText.size() != s_uTextLength)
        return std::nullopt;
    Uuid uuid;
    size_t uDigit = 0;
    for (size_t uPlace = 0; uPlace < s_uTextLength; ++uPlace)
    {
        if (isDash(uPlace))
        {
            if (sText[uPlace] != '-')
                return std::nullopt;
            continue;
        }
        const int iValue = hexDigit(sText[uPlace]);
        if (iValue < 0)
            return std::nullopt;
        uuid.bytes[uDigit / 2] = static_cast<uint8_t>(uuid.bytes[uDigit / 2] << 4 | iValue);
        ++uDigit;
    }
    return uuid;
}

Uuid Uuid::random()
{
    thread_local boost::uuids::random_generator generator;
    const boost::uuids::uuid source = generator();
    Uuid uuid;
    std::copy(source.begin(), source.end(), uuid.bytes.begin());
    return uuid;
}

std::string Uuid::text() const
{
    static constexpr char s_arrDigits[] = "0123456789abcdef";
    std::string sText;
    sText.reserve(s_uTextLength);
    for (const uint8_t uByte : bytes)
    {
        if (isDash(sText.size()))
            sText += '-';
        sText += s_arrDigits[uByte >> 4];
        sText += s_arrDigits[uByte & 15];
    }
    return sText;
}

size_t std::hash<Uuid>::operator()(const Uuid& uuid) const noexcept
{
    return static_cast<size_t>(xxh3(std::as_bytes(std::span(uuid.bytes))));
}
