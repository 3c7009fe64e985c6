#include "KestrelCommon/Data/DynamicData.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Hash.h"

namespace DynamicData
{

namespace
{

uint64_t hashOf(const void* pData, size_t uBytes, uint64_t uSeed)
{
    return xxh3({static_cast<const std::byte*>(pData), uBytes}, uSeed);
}

} // namespace

KeyHash keyHash(std::string_view sKey)
{
    return xxh3(sKey);
}

PlaceId placeId(KeyHash uKey, PlaceId uParent)
{
    return hashOf(&uKey, sizeof(uKey), uParent);
}

// Value

Value::Value(std::unique_ptr<Object> pObject)
{
    put(Tag::Object, pObject.release());
}

Value::Value(std::unique_ptr<Array> pArray)
{
    put(Tag::Array, pArray.release());
}

Value& Value::operator=(Value&& other) noexcept
{
    if (this == &other)
        return *this;
    // What this value owns may hold the other one, so it goes last.
    Value old(std::move(*this));
    m_arrBytes = other.m_arrBytes;
    m_uLength = other.m_uLength;
    m_eTag = std::exchange(other.m_eTag, Tag::Null);
    return *this;
}

bool Value::isTag(Tag eTag) const
{
    return QM_ASSERT(m_eTag == eTag);
}

Object* Value::object()
{
    return m_eTag == Tag::Object ? pointer<Object>() : nullptr;
}

const Object* Value::object() const
{
    return m_eTag == Tag::Object ? pointer<const Object>() : nullptr;
}

Array* Value::array()
{
    return m_eTag == Tag::Array ? pointer<Array>() : nullptr;
}

const Array* Value::array() const
{
    return m_eTag == Tag::Array ? pointer<const Array>() : nullptr;
}

Container* Value::container()
{
    if (Object* pObject = object())
        return pObject;
    return array();
}

const Container* Value::container() const
{
    if (const Object* pObject = object())
        return pObject;
    return array();
}

std::string_view Value::text() const
{
    if (m_eTag == Tag::ShortString)
        return {reinterpret_cast<const char*>(m_arrBytes.data()), m_uLength};
    if (!isTag(Tag::String))
        return {};
    uint64_t uLength;
    std::memcpy(&uLength, m_arrBytes.data() + s_uPointerBytes, sizeof(uLength));
    return {pointer<const char>(), uLength};
}

void Value::setText(std::string_view sText)
{
    if (sText.size() <= s_uShortLength)
    {
        // The text may be this value's own.
        std::array<std::byte, s_uShortLength> arrText;
        std::memcpy(arrText.data(), sText.data(), sText.size());
        destroy();
        m_arrBytes = arrText;
        m_uLength = static_cast<uint8_t>(sText.size());
        m_eTag = Tag::ShortString;
        return;
    }
    char* pText = new char[sText.size()];
    std::memcpy(pText, sText.data(), sText.size());
    put(Tag::String, pText);
    const uint64_t uLength = sText.size();
    std::memcpy(m_arrBytes.data() + s_uPointerBytes, &uLength, sizeof(uLength));
}

void Value::destroy()
{
    switch (std::exchange(m_eTag, Tag::Null))
    {
    case Tag::Object:
        delete pointer<Object>();
        break;
    case Tag::Array:
        delete pointer<Array>();
        break;
    case Tag::String:
        delete[] pointer<char>();
        break;
    default:
        break;
    }
}

Value Value::clone() const
{
    if (const Object* pObject = object())
        return Value(pObject->cloneObject());
    if (const Array* pArray = array())
        return Value(pArray->cloneArray());
    Value copy;
    if (m_eTag == Tag::String)
    {
        copy.setText(text());
        return copy;
    }
    copy.m_arrBytes = m_arrBytes;
    copy.m_uLength = m_uLength;
    copy.m_eTag = m_eTag;
    return copy;
}

size_t Value::payloadBytes() const
{
    switch (m_eTag)
    {
    case Tag::Float:
    case Tag::Uint:
    case Tag::Int:
        return 4;
    case Tag::Bool:
        return 1;
    case Tag::Double:
    case Tag::Uint64:
    case Tag::Int64:
    case Tag::Vec2:
        return 8;
    case Tag::Vec3:
        return 12;
    case Tag::Uuid:
    case Tag::Vec4:
        return 16;
    default:
        return 0;
    }
}

uint64_t Value::hash(uint64_t uSeed) const
{
    // Both forms of text count as one, so that a hash tells nothing of a text's length but itself.
    std::array<std::byte, 1 + s_uShortLength> arrKey;
    arrKey[0] = static_cast<std::byte>(isText() ? Tag::ShortString : m_eTag);
    if (const Container* pContainer = container())
        return pContainer->hash(hashOf(arrKey.data(), 1, uSeed));
    if (isText())
    {
        const std::string_view sText = text();
        return hashOf(sText.data(), sText.size(), hashOf(arrKey.data(), 1, uSeed));
    }
    const size_t uBytes = payloadBytes();
    std::memcpy(arrKey.data() + 1, m_arrBytes.data(), uBytes);
    return hashOf(arrKey.data(), 1 + uBytes, uSeed);
}

// Container

Value& Container::at(size_t uIndex)
{
    static thread_local Value s_null;
    if (uIndex < m_vecValues.size())
        return m_vecValues[uIndex];
    s_null.reset();
    return s_null;
}

const Value& Container::at(size_t uIndex) const
{
    static const Value s_null{};
    return uIndex < m_vecValues.size() ? m_vecValues[uIndex] : s_null;
}

Value* Container::tryAt(size_t uIndex)
{
    return uIndex < m_vecValues.size() ? &m_vecValues[uIndex] : nullptr;
}

const Value* Container::tryAt(size_t uIndex) const
{
    return uIndex < m_vecValues.size() ? &m_vecValues[uIndex] : nullptr;
}

void Container::cloneValues(const Container& other)
{
    m_vecValues.reserve(other.m_vecValues.size());
    for (const Value& value : other.m_vecValues)
        m_vecValues.push_back(value.clone());
}

// Object

uint64_t Object::hash(uint64_t uSeed) const
{
    const uint64_t uSize = m_vecValues.size();
    uint64_t uHash = hashOf(&uSize, sizeof(uSize), uSeed);
    for (size_t i = 0; i < m_vecValues.size(); ++i)
        uHash = m_vecValues[i].hash(uHash ^ m_vecKeys[i]);
    return uHash;
}

void Object::removeAt(size_t uIndex)
{
    if (uIndex >= m_vecValues.size())
        return;
    m_vecKeys.erase(m_vecKeys.begin() + static_cast<ptrdiff_t>(uIndex));
    m_vecValues.erase(m_vecValues.begin() + static_cast<ptrdiff_t>(uIndex));
}

PlaceId Object::childId(size_t uIndex) const
{
    return placeId(m_bMap || uIndex >= m_vecKeys.size() ? s_uElementKey : m_vecKeys[uIndex], m_uOwnId);
}

PlaceId Object::keyId(size_t uIndex) const
{
    return placeId(uIndex < m_vecKeys.size() ? m_vecKeys[uIndex] : s_uElementKey, m_uOwnId);
}

Value* Object::find(KeyHash uKey)
{
    const auto iterKey = std::ranges::find(m_vecKeys, uKey);
    return iterKey == m_vecKeys.end() ? nullptr
                                      : &m_vecValues[static_cast<size_t>(iterKey - m_vecKeys.begin())];
}

const Value* Object::find(KeyHash uKey) const
{
    return const_cast<Object*>(this)->find(uKey);
}

Value& Object::set(KeyHash uKey, Value value)
{
    if (Value* pValue = find(uKey))
        return *pValue = std::move(value);
    return append(uKey, std::move(value));
}

Value& Object::append(KeyHash uKey, Value value)
{
    m_vecKeys.push_back(uKey);
    return m_vecValues.emplace_back(std::move(value));
}

void Object::reserve(size_t uCount)
{
    m_vecKeys.reserve(uCount);
    m_vecValues.reserve(uCount);
}

std::unique_ptr<Object> Object::cloneObject() const
{
    auto pCopy = std::make_unique<Object>(m_uParentId, m_uOwnId, m_bMap);
    pCopy->m_vecKeys = m_vecKeys;
    pCopy->cloneValues(*this);
    return pCopy;
}

// Array

uint64_t Array::hash(uint64_t uSeed) const
{
    const uint64_t uSize = m_vecValues.size();
    uint64_t uHash = hashOf(&uSize, sizeof(uSize), uSeed);
    for (const Value& value : m_vecValues)
        uHash = value.hash(uHash);
    return uHash;
}

void Array::removeAt(size_t uIndex)
{
    if (uIndex < m_vecValues.size())
        m_vecValues.erase(m_vecValues.begin() + static_cast<ptrdiff_t>(uIndex));
}

PlaceId Array::childId(size_t) const
{
    return placeId(s_uElementKey, m_uOwnId);
}

PlaceId Array::keyId(size_t uIndex) const
{
    return placeId(uIndex, m_uOwnId);
}

Value& Array::append(Value value)
{
    return m_vecValues.emplace_back(std::move(value));
}

Value& Array::insert(size_t uIndex, Value value)
{
    const size_t uPlace = std::min(uIndex, m_vecValues.size());
    return *m_vecValues.insert(m_vecValues.begin() + static_cast<ptrdiff_t>(uPlace), std::move(value));
}

std::unique_ptr<Array> Array::cloneArray() const
{
    auto pCopy = std::make_unique<Array>(m_uParentId, m_uOwnId);
    pCopy->cloneValues(*this);
    return pCopy;
}

} // namespace DynamicData
