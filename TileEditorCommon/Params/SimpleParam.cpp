#include "TileEditorCommon/Params/SimpleParam.h"

#include "KestrelCommon/Data/LuaBlob.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"

namespace tilebuilder
{

template <class T>
SimpleParam<T>::SimpleParam()
    : IParam(std::is_same_v<T, bool>    ? ParamType::Bool
             : std::is_same_v<T, float> ? ParamType::Float
                                        : ParamType::String)
{
}

template <class T>
void SimpleParam<T>::display(PropertyPanelI& widgets, const ParamContext& context)
{
    const auto assign = [pWeak = weak_from_this(), fnChanged = context.onChanged](const T& newValue)
    {
        const auto pParam = std::static_pointer_cast<SimpleParam>(pWeak.lock());
        if (!pParam)
            return;
        pParam->value = newValue;
        if (fnChanged)
            fnChanged();
    };
    if constexpr (std::is_same_v<T, bool>)
        widgets.check(strName, value, assign);
    else if constexpr (std::is_same_v<T, float>)
        widgets.floatNumber(strName, value, {}, [assign](float fValue, EditPhase) { assign(fValue); });
    else
        widgets.text(strName, value, [assign](const std::string& sValue, EditPhase) { assign(sValue); });
}

template <class T>
void SimpleParam<T>::serialize(LuaBlobWriter& stream, const ConnectionLookupI*)
{
    if constexpr (std::is_same_v<T, bool>)
        stream.boolean(value);
    else if constexpr (std::is_same_v<T, float>)
        stream.number(value);
    else
        stream.string(value);
}

template <class T>
void SimpleParam<T>::deserialize(LuaBlobReader& stream)
{
    if constexpr (std::is_same_v<T, bool>)
        value = stream.booleanBody();
    else if constexpr (std::is_same_v<T, float>)
        value = stream.numberBody();
    else if (const std::string_view sText = stream.stringBody(); !sText.empty())
        value = sText;
}

template <class T>
void SimpleParam<T>::setDefault(const Json::Value& json)
{
    if constexpr (std::is_same_v<T, bool>)
    {
        if (json.isBool())
            value = json.asBool();
    }
    else if constexpr (std::is_same_v<T, float>)
    {
        if (json.isNumeric() || json.isBool())
            value = static_cast<float>(json.asDouble());
    }
    else if (json.isString())
        value = json.asString();
}

template class SimpleParam<bool>;
template class SimpleParam<float>;
template class SimpleParam<std::string>;

} // namespace tilebuilder
