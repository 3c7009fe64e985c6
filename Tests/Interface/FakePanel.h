#pragma once // A panel that writes its rows down as text and lets tests edit them by label.

#include "TileEditorCommon/Contracts/PropertyPanelI.h"

#include <cmath>
#include <map>

struct FakePanel : tilebuilder::PropertyPanelI
{
    std::string sRows;
    std::map<std::string, tilebuilder::TripleEdit> mapTriples;
    std::map<std::string, tilebuilder::FloatEdit> mapFloats;

    void note(std::string_view sText) { sRows += std::string(sText) + ";"; }
    static std::string number(float fValue) { return std::to_string(std::lround(fValue * 100.0f)); }

    void begin(uint64_t) override
    {
        sRows.clear();
        mapTriples.clear();
        mapFloats.clear();
    }
    void end() override {}
    void heading(std::string_view sText) override { note(sText); }
    void beginGroup(std::string_view, std::string_view sTitle, bool, tilebuilder::HoverAction) override
    {
        note(sTitle);
    }
    void endGroup() override {}
    void beginLine() override {}
    void endLine() override {}
    void label(std::string_view sText) override { note(sText); }
    void text(std::string_view sLabel, std::string_view, tilebuilder::TextEdit) override { note(sLabel); }
    void check(std::string_view sLabel, bool, tilebuilder::BoolEdit) override { note(sLabel); }
    void intNumber(std::string_view sLabel, int32_t, const tilebuilder::IntRange&,
                   tilebuilder::IntEdit) override
    {
        note(sLabel);
    }
    void floatNumber(std::string_view sLabel, float fValue, const tilebuilder::FloatRange&,
                     tilebuilder::FloatEdit onEdit) override
    {
        note(std::string(sLabel) + " " + number(fValue));
        mapFloats[std::string(sLabel)] = std::move(onEdit);
    }
    void triple(std::string_view sLabel, const std::array<float, 3>& value, const tilebuilder::FloatRange&,
                tilebuilder::TripleEdit onEdit) override
    {
        note(std::string(sLabel) + " " + number(value[0]) + " " + number(value[1]) + " " + number(value[2]));
        mapTriples[std::string(sLabel)] = std::move(onEdit);
    }
    void choice(std::string_view sLabel, const std::vector<std::string>&, size_t,
                tilebuilder::ChoiceEdit) override
    {
        note(sLabel);
    }
    void swatch(std::string_view sLabel, const tilebuilder::ColorRgba&, bool, tilebuilder::ColorEdit) override
    {
        note(sLabel);
    }
    void button(std::string_view sLabel, tilebuilder::PanelAction) override { note(sLabel); }
    void pictureButton(std::string_view sLabel, std::string_view, tilebuilder::PanelAction) override
    {
        note(sLabel);
    }
    void dataView(std::string_view sKey, DynamicData::Value&, const DynamicData::Value*,
                  const DynamicTemplate*, tilebuilder::DataEdit) override
    {
        note(sKey);
    }
};
