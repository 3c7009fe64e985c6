#include "KestrelCommon/Data/DynamicDataHandlers.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/JsonText.h"

#include <json/value.h>
#include <limits>

namespace
{

using DynamicData::Tag;
using DynamicData::Value;
using Meta = DynamicTemplate::Meta;
using Errors = DynamicDataErrors;

/// A handler of fixed type names and tags.
class HandlerBase : public DynamicDataManager::TypeHandlerI
{
public:
    HandlerBase(std::initializer_list<const char*> listNames, std::initializer_list<Tag> listTags)
        : m_vecNames(listNames.begin(), listNames.end()),
          m_vecTags(listTags)
    {
    }
    void getTypeNames(std::vector<std::string>& out) const override
    {
        out.insert(out.end(), m_vecNames.begin(), m_vecNames.end());
    }
    void getValueTags(std::vector<Tag>& out) const override
    {
        out.insert(out.end(), m_vecTags.begin(), m_vecTags.end());
    }

protected:
    [[nodiscard]] bool owns(const Value& value) const
    {
        return std::ranges::find(m_vecTags, value.tag()) != m_vecTags.end();
    }
    static bool isNumberOrBool(const Json::Value& json) { return json.isNumeric() || json.isBool(); }

private:
    std::vector<std::string> m_vecNames;
    std::vector<Tag> m_vecTags;
};

void addError(const Meta* meta, Errors* errors, std::string sMessage)
{
    if (errors && !(meta && meta->bIgnoreReadError))
        errors->add(std::move(sMessage));
}

std::string_view textOf(const Json::Value& json)
{
    const char* pBegin = nullptr;
    const char* pEnd = nullptr;
    json.getString(&pBegin, &pEnd);
    return {pBegin, static_cast<size_t>(pEnd - pBegin)};
}

class NullTypeHandler : public HandlerBase
{
public:
    NullTypeHandler() : HandlerBase({"null"}, {Tag::Null}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        if (!json.isNull())
            return false;
        value.reset();
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = Json::Value();
        return true;
    }
};

class StringTypeHandler : public HandlerBase
{
public:
    StringTypeHandler() : HandlerBase({"string"}, {Tag::ShortString, Tag::String}) {}
    bool read(const Json::Value& json, Value& value, const Meta* meta, Errors* errors) const override
    {
        if (!json.isString())
            return false;
        const std::string_view sText = textOf(json);
        if (!check(sText, meta, errors))
            return false;
        value.setText(sText);
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        const std::string_view sText = value.text();
        json = Json::Value(sText.data(), sText.data() + sText.size());
        return true;
    }

protected:
    using HandlerBase::HandlerBase;

    [[nodiscard]] virtual bool check(std::string_view sText, const Meta* meta, Errors* errors) const
    {
        if (!meta)
            return true;
        if (sText.empty() && !meta->bAllowEmpty)
        {
            addError(meta, errors, "Value is not allowed to be empty");
            return false;
        }
        if (!meta->bHasOptions || meta->bIgnoreOptions || meta->bIgnoreReadError || sText.empty() ||
            meta->setOptions.contains(xxh3(sText)))
            return true;
        addError(meta, errors, UTILS::concat("Value '", sText, "' is not an valid option."));
        return false;
    }
};

class FilepathTypeHandler : public StringTypeHandler
{
public:
    explicit FilepathTypeHandler(DynamicDataManager& manager)
        : StringTypeHandler({"filepath", "texture", "renderable"}, {Tag::ShortString, Tag::String}),
          m_manager(manager)
    {
    }

protected:
    [[nodiscard]] bool check(std::string_view sText, const Meta* meta, Errors* errors) const override
    {
        if (!StringTypeHandler::check(sText, meta, errors))
            return false;
        if (sText.empty() || m_manager.pathExists(sText))
            return true;
        if (const auto uuid = Uuid::parse(sText); uuid && !uuid->isNil())
            return true; // content by its id
        addError(meta, errors, UTILS::concat("'", sText, "' dosent exists."));
        return false;
    }

private:
    DynamicDataManager& m_manager;
};

class FloatTypeHandler : public HandlerBase
{
public:
    FloatTypeHandler() : HandlerBase({"float"}, {Tag::Float}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        if (!isNumberOrBool(json))
            return false;
        value.set(static_cast<float>(json.asDouble()));
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (value.tag() == Tag::Double)
            json = Json::Value(value.asDouble());
        else if (owns(value))
            json = Json::Value(shortestDouble(value.asFloat()));
        else
            return false;
        return true;
    }
};

class DoubleTypeHandler : public HandlerBase
{
public:
    DoubleTypeHandler() : HandlerBase({"double"}, {Tag::Double}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        if (!isNumberOrBool(json))
            return false;
        value.set(json.asDouble());
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = Json::Value(value.asDouble());
        return true;
    }
};

/// Of whole numbers, clamped to the range of the type.
template <class T>
bool readWhole(const Json::Value& json, Value& value)
{
    using Limits = std::numeric_limits<T>;
    if (json.isBool())
        value.set(static_cast<T>(json.asBool()));
    else if (json.type() == Json::intValue)
        value.set(static_cast<T>(std::clamp<int64_t>(json.asInt64(), Limits::min(), Limits::max())));
    else if (json.type() == Json::uintValue)
        value.set(static_cast<T>(std::min<uint64_t>(json.asUInt64(), Limits::max())));
    else if (json.isNumeric())
        value.set(static_cast<T>(std::clamp(json.asDouble(), static_cast<double>(Limits::min()),
                                            static_cast<double>(Limits::max()))));
    else
        return false;
    return true;
}

class UintTypeHandler : public HandlerBase
{
public:
    UintTypeHandler() : HandlerBase({"uint"}, {Tag::Uint}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        return readWhole<uint32_t>(json, value);
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = Json::Value(Json::UInt{value.asUint()});
        return true;
    }
};

class IntTypeHandler : public HandlerBase
{
public:
    IntTypeHandler() : HandlerBase({"int"}, {Tag::Int}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        return readWhole<int32_t>(json, value);
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = Json::Value(Json::Int{value.asInt()});
        return true;
    }
};

class BoolTypeHandler : public HandlerBase
{
public:
    BoolTypeHandler() : HandlerBase({"bool"}, {Tag::Bool}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        if (!json.isBool())
            return false;
        value.set(json.asBool());
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = Json::Value(value.asBool());
        return true;
    }
};

class UInt64TypeHandler : public HandlerBase
{
public:
    UInt64TypeHandler() : HandlerBase({"uint64"}, {Tag::Uint64}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        // The parser holds every number that fits as signed; only a larger one is unsigned.
        if (json.type() != Json::uintValue)
            return false;
        value.set(uint64_t{json.asUInt64()});
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = Json::Value(Json::UInt64{value.asUint64()});
        return true;
    }
};

class UuidTypeHandler : public HandlerBase
{
public:
    UuidTypeHandler() : HandlerBase({"uuid"}, {Tag::Uuid}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        if (!json.isString())
            return false;
        const std::string_view sText = textOf(json);
        const auto uuid = Uuid::parse(sText);
        if (!uuid)
        {
            QM_LOG_ERROR("Invalid UUID {", sText);
            return false;
        }
        value.set(*uuid);
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = Json::Value(value.asUuid().text());
        return true;
    }
};

template <size_t Count>
bool readVector(const Json::Value& json, std::array<float, Count>& vec)
{
    if (!json.isArray() || json.size() != Count)
        return false;
    std::array<float, Count> read;
    for (Json::ArrayIndex i = 0; i < Count; ++i)
    {
        if (!json[i].isNumeric())
            return false;
        read[i] = static_cast<float>(json[i].asDouble());
    }
    vec = read;
    return true;
}

template <size_t Count>
Json::Value writeVector(const std::array<float, Count>& vec)
{
    Json::Value json(Json::arrayValue);
    for (const float fPart : vec)
        json.append(shortestDouble(fPart));
    return json;
}

class Vec2TypeHandler : public HandlerBase
{
public:
    Vec2TypeHandler() : HandlerBase({"vec2"}, {Tag::Vec2}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        std::array<float, 2> vec;
        if (!readVector(json, vec))
            return false;
        value.set(vec);
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = writeVector(value.asVec2());
        return true;
    }
};

class Vec3TypeHandler : public HandlerBase
{
public:
    Vec3TypeHandler() : HandlerBase({"vec3"}, {Tag::Vec3}) {}
    bool read(const Json::Value& json, Value& value, const Meta*, Errors*) const override
    {
        std::array<float, 3> vec{};
        if (json.isObject())
        {
            constexpr const char* arrNames[] = {"x", "y", "z"};
            for (size_t i = 0; i < 3; ++i)
            {
                const Json::Value& jPart = jsonMember(json, arrNames[i]);
                if (!jPart.isNull() && !jPart.isNumeric())
                    return false;
                vec[i] = static_cast<float>(jPart.asDouble());
            }
        }
        else if (!readVector(json, vec))
            return false;
        value.set(vec);
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = writeVector(value.asVec3());
        return true;
    }
};

class Vec4TypeHandler : public HandlerBase
{
public:
    Vec4TypeHandler() : HandlerBase({"vec4", "color"}, {Tag::Vec4}), m_uColor(DynamicData::keyHash("color"))
    {
    }
    bool read(const Json::Value& json, Value& value, const Meta* meta, Errors*) const override
    {
        std::array<float, 4> vec;
        if (!readVector(json, vec))
            return false;
        if (meta && meta->uTypeHash == m_uColor)
            for (float& fPart : vec)
                fPart = std::clamp(fPart, 0.0f, 1.0f);
        value.set(vec);
        return true;
    }
    bool write(const Value& value, Json::Value& json) const override
    {
        if (!owns(value))
            return false;
        json = writeVector(value.asVec4());
        return true;
    }

private:
    DynamicData::KeyHash m_uColor;
};

} // namespace

std::vector<std::unique_ptr<DynamicDataManager::TypeHandlerI>>
makeDynamicDataHandlers(DynamicDataManager& manager)
{
    std::vector<std::unique_ptr<DynamicDataManager::TypeHandlerI>> vecHandlers;
    vecHandlers.push_back(std::make_unique<NullTypeHandler>());
    vecHandlers.push_back(std::make_unique<StringTypeHandler>());
    vecHandlers.push_back(std::make_unique<FilepathTypeHandler>(manager));
    vecHandlers.push_back(std::make_unique<FloatTypeHandler>());
    vecHandlers.push_back(std::make_unique<DoubleTypeHandler>());
    vecHandlers.push_back(std::make_unique<UintTypeHandler>());
    vecHandlers.push_back(std::make_unique<IntTypeHandler>());
    vecHandlers.push_back(std::make_unique<BoolTypeHandler>());
    vecHandlers.push_back(std::make_unique<UInt64TypeHandler>());
    vecHandlers.push_back(std::make_unique<UuidTypeHandler>());
    vecHandlers.push_back(std::make_unique<Vec2TypeHandler>());
    vecHandlers.push_back(std::make_unique<Vec3TypeHandler>());
    vecHandlers.push_back(std::make_unique<Vec4TypeHandler>());
    return vecHandlers;
}
