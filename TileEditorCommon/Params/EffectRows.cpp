// The rows of an effect parameter.

#include "TileEditorCommon/Contracts/PropertyPanelI.h"
#include "TileEditorCommon/Params/EffectParam.h"

namespace tilebuilder
{

namespace
{

/// The values of a light, in the order of their rows.
struct LightRow
{
    const char* pName;
    FloatRange range{};
};
constexpr FloatRange s_rangeTen{0.0f, 10.0f, 0.0f, true};
constexpr FloatRange s_rangeMetres{0.0f, 500.0f, 0.0f, true};
constexpr LightRow s_arrLightRows[] = {
    {"Color"},
    {"Additive"},
    {"Shadow Mode"},
    {"Falloff Mode"},
    {"Falloff factor"},
    {"Intensity", s_rangeTen},
    {"Max Intensity", s_rangeTen},
    {"Cone Angle"},
    {"Cone Fade"},
    {"Range", s_rangeMetres},
    {"Radius", s_rangeMetres},
    {"Ambient"},
    {"Ambient Max Intensity", s_rangeTen},
    {"Ambient Intensity Scale", s_rangeTen},
    {"Ambient Range Scale", s_rangeTen},
    {"Ambient Pos Scale", s_rangeTen},
};

bool isLightValue(std::string_view sName)
{
    return std::ranges::any_of(s_arrLightRows, [sName](const LightRow& row) { return sName == row.pName; });
}

/// Writes what a row gives, when the parameter and its effect are still there.
class Writer
{
public:
    Writer(const std::shared_ptr<EffectParam>& pParam, const ParamContext& context)
        : m_pParam(pParam),
          m_context(context)
    {
    }

    template <class Change>
    void operator()(Change change) const
    {
        const auto pParam = m_pParam.lock();
        if (!pParam)
            return;
        change(*pParam);
        if (m_context.onChanged)
            m_context.onChanged();
    }

    /// Sets a value of the effect by name.
    template <class T>
    void value(const std::string& sName, EffectValueKind eKind, const T& content) const
    {
        (*this)(
            [&](EffectParam& param)
            {
                if (param.m_pEffect)
                    param.m_pEffect->set(sName, {eKind, content});
            });
    }

    [[nodiscard]] const ParamContext& context() const { return m_context; }

private:
    std::weak_ptr<EffectParam> m_pParam;
    ParamContext m_context;
};

size_t indexOf(const std::vector<std::string>& vecTexts, const std::string& sText)
{
    return static_cast<size_t>(std::ranges::find(vecTexts, sText) - vecTexts.begin());
}

void addValueRow(PropertyPanelI& widgets, const EffectValueDesc& desc, const EffectValue& value,
                 const FloatRange& range, const Writer& write)
{
    const std::string& sName = desc.name;
    switch (value.kind)
    {
    case EffectValueKind::Float:
        widgets.floatNumber(sName, std::get<float>(value.content), range,
                            [write, sName](float fValue, EditPhase)
                            { write.value(sName, EffectValueKind::Float, fValue); });
        break;
    case EffectValueKind::Bool:
        widgets.check(sName, std::get<bool>(value.content),
                      [write, sName](bool bValue) { write.value(sName, EffectValueKind::Bool, bValue); });
        break;
    case EffectValueKind::String:
        if (desc.options.empty())
            widgets.text(sName, std::get<std::string>(value.content),
                         [write, sName](const std::string& sValue, EditPhase)
                         { write.value(sName, EffectValueKind::String, sValue); });
        else
            widgets.choice(sName, desc.options, indexOf(desc.options, std::get<std::string>(value.content)),
                           [write, sName, vecOptions = desc.options](size_t uIndex)
                           {
                               if (uIndex < vecOptions.size())
                                   write.value(sName, EffectValueKind::String, vecOptions[uIndex]);
                           });
        break;
    case EffectValueKind::Vec3:
    {
        const auto& parts = std::get<std::array<float, 4>>(value.content);
        widgets.triple(
            sName, {parts[0], parts[1], parts[2]}, {},
            [write, sName](const std::array<float, 3>& vec, EditPhase) {
                write.value(sName, EffectValueKind::Vec3, std::array<float, 4>{vec[0], vec[1], vec[2], 1.0f});
            });
        break;
    }
    default:
        widgets.swatch(sName, std::get<std::array<float, 4>>(value.content), true,
                       [write, sName, eKind = value.kind](const ColorRgba& color, EditPhase)
                       { write.value(sName, eKind, color); });
        break;
    }
}

} // namespace

void EffectParam::display(PropertyPanelI& widgets, const ParamContext& context)
{
    const Writer write(std::static_pointer_cast<EffectParam>(shared_from_this()), context);

    // Which effect
    const auto choose = [write](EffectCatalogue::Place place)
    {
        write([place](EffectParam& param) { param.setEffect(place); });
        if (write.context().onEffect)
            write.context().onEffect(EffectCommand::Restart);
        if (write.context().onRowsChanged)
            write.context().onRowsChanged();
    };
    std::vector<std::string> vecSets;
    std::vector<std::string> vecEffects;
    if (const EffectCatalogue* pCatalogue = EffectCatalogue::ms_pInstance)
    {
        for (const EffectSet& set : pCatalogue->sets())
            vecSets.push_back(set.name);
        if (iEffectSet >= 0 && static_cast<size_t>(iEffectSet) < pCatalogue->sets().size())
            for (const auto& pEffect : pCatalogue->sets()[static_cast<size_t>(iEffectSet)].effects)
                vecEffects.push_back(pEffect->name);
    }
    widgets.choice("Effect Set", vecSets, static_cast<size_t>(iEffectSet),
                   [choose](size_t uIndex) {
                       choose({static_cast<int32_t>(uIndex), 0});
                   });
    widgets.choice("Effect", vecEffects, static_cast<size_t>(iEffect),
                   [choose, iSet = iEffectSet](size_t uIndex) {
                       choose({iSet, static_cast<int32_t>(uIndex)});
                   });
    if (!m_pEffect && !m_sStoredName.empty())
        widgets.label(m_sStoredName);

    // When it plays
    widgets.beginLine();
    widgets.floatNumber("Time of day", fTimeOfDayStart, {0.0f, 1.0f},
                        [write](float fValue, EditPhase)
                        { write([fValue](EffectParam& param) { param.fTimeOfDayStart = fValue; }); });
    widgets.floatNumber("", fTimeOfDayEnd, {0.0f, 1.0f},
                        [write](float fValue, EditPhase)
                        { write([fValue](EffectParam& param) { param.fTimeOfDayEnd = fValue; }); });
    widgets.endLine();
    widgets.check("Inverse time of day", bInverseTimeOfDay,
                  [write](bool bValue)
                  { write([bValue](EffectParam& param) { param.bInverseTimeOfDay = bValue; }); });

    // What it looks like
    const bool bLight = m_pEffect && m_pEffect->description().hasLight;
    if (bLight)
    {
        const PanelGroup group(widgets, "light", "Light");
        for (const LightRow& row : s_arrLightRows)
            if (const auto uIndex = m_pEffect->description().find(row.pName))
                addValueRow(widgets, m_pEffect->description().values[*uIndex], m_pEffect->value(*uIndex),
                            row.range, write);
    }
    const PanelGroup group(widgets, "misc", "Misc");
    for (size_t i = 0; m_pEffect && i < m_pEffect->size(); ++i)
        if (const EffectValueDesc& desc = m_pEffect->description().values[i];
            !bLight || !isLightValue(desc.name))
            addValueRow(widgets, desc, m_pEffect->value(i), {}, write);
    widgets.check("AutoPlay", bAutoPlay,
                  [write](bool bValue)
                  { write([bValue](EffectParam& param) { param.bAutoPlay = bValue; }); });
    const auto button = [&](const char* pLabel, EffectCommand eCommand)
    {
        widgets.button(pLabel,
                       [write, eCommand]
                       {
                           if (write.context().onEffect)
                               write.context().onEffect(eCommand);
                       });
    };
    const PanelLine line(widgets);
    button("Restart", EffectCommand::Restart);
    button("Stop", EffectCommand::Stop);
    button("Start", EffectCommand::Start);
}

} // namespace tilebuilder
