#pragma once // What a colour editor does to its colour. No GUI.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// A colour seen as red, green, blue and as hue, saturation, value at once. Channels are 0 to 1 and
/// display values. What is chosen here are whole bytes: channels times 255, truncated, give them back.
///
/// Grey has no hue and black no saturation: the last ones are kept for them, so that the marks of an
/// editor don't jump when a colour passes through grey.
class ColorModel
{
public:
    using Rgba = std::array<float, 4>;

    [[nodiscard]] const Rgba& color() const { return m_color; }
    [[nodiscard]] float hue() const { return m_fHue; } ///< 0 up to 1, red at 0
    [[nodiscard]] float saturation() const { return m_fSaturation; }
    [[nodiscard]] float value() const { return m_fValue; }

    /// Channels beyond 0 to 1 are clamped.
    void setColor(const Rgba& color);
    void setHue(float fHue);
    void setSaturationValue(float fSaturation, float fValue);

    /// The nearest byte of channel 0 to 3.
    [[nodiscard]] int32_t byteOf(size_t uChannel) const;
    void setByte(size_t uChannel, int32_t iByte);

    /// "RRGGBB", or "RRGGBBAA" with alpha; upper case, no "#".
    [[nodiscard]] std::string hex(bool bAlpha) const;
    /// Takes 3, 6 or 8 digits with or without "#" before them and blanks around; three digits are
    /// doubled, and without digits for it alpha stays. False: not a colour, nothing changed.
    bool setHex(std::string_view sText);

    /// Red, green, blue of a hue at full saturation and value.
    [[nodiscard]] static std::array<float, 3> pureHue(float fHue);

private:
    void fromHsv();

    Rgba m_color{1.0f, 1.0f, 1.0f, 1.0f};
    float m_fHue = 0.0f;
    float m_fSaturation = 0.0f;
    float m_fValue = 1.0f;
};
