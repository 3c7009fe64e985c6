#pragma once // A value that an effect can be tuned by.

#include <array>
#include <cstdint>
#include <json/forwards.h>
#include <string>
#include <variant>
#include <vector>

enum class EffectValueKind : uint8_t
{
    Float,
    Bool,
    Color, ///< red, green, blue, alpha, 0 to 1
    Vec3,  ///< the first three of four floats
    Vec4,
    String,
};

/// A value of a kind; two are equal when kind and content are.
struct EffectValue
{
    EffectValueKind kind = EffectValueKind::Float;
    std::variant<float, bool, std::array<float, 4>, std::string> content = 0.0f;

    bool operator==(const EffectValue&) const = default;
};

/// What an effect says of one of its values.
struct EffectValueDesc
{
    std::string name; ///< also its label
    EffectValue byDefault;
    std::vector<std::string> options; ///< of a text; empty: any
};

/// A value in another kind of the same form, such as a colour as a vector of four; false when the
/// forms differ. The fourth part of a vector of three is 1.
[[nodiscard]] bool convertEffectValue(const EffectValue& from, EffectValueKind eKind, EffectValue& to);

/// From JSON by a kind's word ("float", "bool", "color", "vec3", "vec4", "string"); false when either is
/// wrong.
[[nodiscard]] bool readEffectValue(const Json::Value& jKind, const Json::Value& jValue, EffectValue& value);
