#pragma once // Builds a text from pieces; for log lines and paths.

#include <string>
#include <string_view>
#include <type_traits>

namespace UTILS
{

namespace detail
{
inline void append(std::string& sOut, std::string_view sPiece)
{
    sOut += sPiece;
}
inline void append(std::string& sOut, const char* pPiece)
{
    sOut += pPiece;
}
inline void append(std::string& sOut, char cPiece)
{
    sOut += cPiece;
}
template <class T>
requires std::is_arithmetic_v<T>
void append(std::string& sOut, T value)
{
    sOut += std::to_string(value);
}
} // namespace detail

/// Joins texts, characters and numbers; a bool counts as 0 or 1.
template <class... Pieces>
[[nodiscard]] std::string concat(const Pieces&... pieces)
{
    std::string sOut;
    (detail::append(sOut, pieces), ...);
    return sOut;
}

/// The part of a path behind its last '/'.
[[nodiscard]] constexpr const char* baseName(const char* pPath)
{
    const char* pName = pPath;
    for (; *pPath; ++pPath)
        if (*pPath == '/')
            pName = pPath + 1;
    return pName;
}

} // namespace UTILS
