#pragma once // A parameter of a plain value.

#include "TileEditorCommon/Params/IParam.h"

#include <string>

namespace tilebuilder
{

/// T is bool, float or std::string.
template <class T>
class SimpleParam : public IParam
{
public:
    SimpleParam();

    void display(PropertyPanelI& widgets, const ParamContext& context) override;
    [[nodiscard]] std::shared_ptr<IParam> getCloneArgs() const override
    {
        return std::make_shared<SimpleParam>(*this);
    }
    void serialize(LuaBlobWriter& stream, const ConnectionLookupI* pOnlyExisting) override;
    /// A string of no length leaves the value as it was.
    void deserialize(LuaBlobReader& stream) override;
    void setDefault(const Json::Value& json) override;

    T value{};
};

extern template class SimpleParam<bool>;
extern template class SimpleParam<float>;
extern template class SimpleParam<std::string>;

} // namespace tilebuilder
