#include "MyGuiCommon/ColorModel.h"

#include <charconv>
#include <cmath>

namespace
{

// A hair above 1 / 255, as stored colours use it: times 255 and truncated it is the byte again.
constexpr float s_fByteToFloat = 0.003921569f;

float ofByte(int32_t iByte)
{
    return std::min(static_cast<float>(iByte) * s_fByteToFloat, 1.0f);
}

} // namespace

std::array<float, 3> ColorModel::pureHue(float fHue)
{
    const float fSixth = (fHue - std::floor(fHue)) * 6.0f;
    return {std::clamp(std::abs(fSixth - 3.0f) - 1.0f, 0.0f, 1.0f),
            std::clamp(2.0f - std::abs(fSixth - 2.0f), 0.0f, 1.0f),
            std::clamp(2.0f - std::abs(fSixth - 4.0f), 0.0f, 1.0f)};
}

void ColorModel::setColor(const Rgba& color)
{
    Rgba clamped = color;
    for (float& fChannel : clamped)
        fChannel = std::clamp(fChannel, 0.0f, 1.0f);
    if (clamped == m_color)
        return;
    m_color = clamped;
    const auto [r, g, b, a] = m_color;
    m_fValue = std::max({r, g, b});
    const float fSpan = m_fValue - std::min({r, g, b});
    if (m_fValue > 0.0f)
        m_fSaturation = fSpan / m_fValue;
    if (fSpan <= 0.0f)
        return;
    float fSixth = 0.0f;
    if (m_fValue == r)
        fSixth = (g - b) / fSpan;
    else if (m_fValue == g)
        fSixth = 2.0f + (b - r) / fSpan;
    else
        fSixth = 4.0f + (r - g) / fSpan;
    m_fHue = fSixth < 0.0f ? fSixth / 6.0f + 1.0f : fSixth / 6.0f;
}

void ColorModel::fromHsv()
{
    const std::array<float, 3> pure = pureHue(m_fHue);
    for (size_t i = 0; i < pure.size(); ++i)
    {
        const float fChannel = m_fValue * (1.0f - m_fSaturation + m_fSaturation * pure[i]);
        m_color[i] = ofByte(static_cast<int32_t>(std::lround(fChannel * 255.0f)));
    }
}

void ColorModel::setHue(float fHue)
{
    m_fHue = std::clamp(fHue, 0.0f, 1.0f);
    fromHsv();
}

void ColorModel::setSaturationValue(float fSaturation, float fValue)
{
    m_fSaturation = std::clamp(fSaturation, 0.0f, 1.0f);
    m_fValue = std::clamp(fValue, 0.0f, 1.0f);
    fromHsv();
}

int32_t ColorModel::byteOf(size_t uChannel) const
{
    return static_cast<int32_t>(std::lround(m_color[uChannel] * 255.0f));
}

void ColorModel::setByte(size_t uChannel, int32_t iByte)
{
    Rgba color = m_color;
    color[uChannel] = ofByte(iByte);
    setColor(color);
}

std::string ColorModel::hex(bool bAlpha) const
{
    constexpr std::string_view s_sDigits = "0123456789ABCDEF";
    std::string sText;
    for (size_t i = 0; i < (bAlpha ? 4u : 3u); ++i)
    {
        const auto uByte = static_cast<size_t>(byteOf(i));
        sText += s_sDigits[uByte / 16];
        sText += s_sDigits[uByte % 16];
    }
    return sText;
}

bool ColorModel::setHex(std::string_view sText)
{
    while (!sText.empty() && (sText.front() == ' ' || sText.front() == '#'))
        sText.remove_prefix(1);
    while (!sText.empty() && sText.back() == ' ')
        sText.remove_suffix(1);
    if (sText.size() != 3 && sText.size() != 6 && sText.size() != 8)
        return false;
    uint32_t uDigits = 0;
    const auto [pEnd, error] = std::from_chars(sText.data(), sText.data() + sText.size(), uDigits, 16);
    if (error != std::errc{} || pEnd != sText.data() + sText.size())
        return false;
    Rgba color = m_color;
    const bool bShort = sText.size() == 3;
    const size_t uChannels = bShort ? 3 : sText.size() / 2;
    for (size_t i = 0; i < uChannels; ++i)
    {
        const auto uShift = static_cast<uint32_t>((uChannels - 1 - i) * (bShort ? 4 : 8));
        const uint32_t uByte = bShort ? (uDigits >> uShift & 15u) * 17u : uDigits >> uShift & 255u;
        color[i] = ofByte(static_cast<int32_t>(uByte));
    }
    setColor(color);
    return true;
}
