#pragma once // A particle, light and sound effect of a node.

#include "KestrelCommon/Effects/EffectCatalogue.h"
#include "TileEditorCommon/Params/IParam.h"

namespace tilebuilder
{

/// Chooses an effect of the catalogue and tunes its values.
///
/// An effect that no set knows, and stored values that the effect doesn't have, are kept and written
/// again, so that loading and saving a tile loses nothing.
class EffectParam : public IParam
{
public:
    EffectParam();

    void display(PropertyPanelI& widgets, const ParamContext& context) override;
    [[nodiscard]] std::shared_ptr<IParam> getCloneArgs() const override;
    void serialize(LuaBlobWriter& stream, const ConnectionLookupI* pOnlyExisting) override;
    void deserialize(LuaBlobReader& stream) override;
    /// An object with "name".
    void setDefault(const Json::Value& json) override;

    /// Takes the effect at a place of the catalogue, with its own values; a place that isn't there
    /// leaves everything.
    void setEffect(EffectCatalogue::Place place);
    /// The name in use, also of an effect that no set knows.
    [[nodiscard]] const std::string& effectName() const;

    int32_t iEffect = -1; ///< within its set
    int32_t iEffectSet = -1;
    std::shared_ptr<EffectInstance> m_pEffect; ///< null for an effect that no set knows
    float fTimeOfDayStart = 0.0f;              ///< 0 to 1
    float fTimeOfDayEnd = 1.0f;
    bool bInverseTimeOfDay = false;
    bool bAutoPlay = true;

private:
    struct StoredValue
    {
        std::string sName;
        EffectValue value;
    };

    bool find(std::string_view sEffect);
    void readValues(LuaBlobReader& stream);
    void readTimeOfDay(LuaBlobReader& stream);

    std::string m_sStoredName;            ///< of an effect that no set knows
    std::vector<StoredValue> m_vecStored; ///< that the effect doesn't have
};

} // namespace tilebuilder
