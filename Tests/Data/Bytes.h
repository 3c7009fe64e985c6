#pragma once // Streams as hexadecimal text, for golden bytes.

#include "KestrelCommon/Io/BitStream.h"

#include <string>
#include <string_view>
#include <vector>

inline std::string hexOf(const BitStream& stream)
{
    constexpr const char* pDigits = "0123456789abcdef";
    std::string sHex;
    for (const std::byte b : stream.bytes())
        (sHex += pDigits[static_cast<int>(b) >> 4]) += pDigits[static_cast<int>(b) & 15];
    return sHex;
}

inline std::string withoutBlanks(std::string sText)
{
    std::erase(sText, ' ');
    return sText;
}

inline std::vector<uint8_t> bytesOfHex(std::string_view sHex)
{
    const std::string sDigits = withoutBlanks(std::string(sHex));
    std::vector<uint8_t> vecBytes;
    for (size_t i = 0; i + 1 < sDigits.size(); i += 2)
        vecBytes.push_back(static_cast<uint8_t>(std::stoi(sDigits.substr(i, 2), nullptr, 16)));
    return vecBytes;
}
