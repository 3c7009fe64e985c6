#include "MyGuiCommon/GuiXmlScale.h"

#include "KestrelCommon/Core/Console.h"

#include <MyGUI_XmlDocument.h>
#include <set>
#include <sstream>

namespace
{

using MyGUI::xml::ElementPtr;

/// Properties whose values are lengths on the screen, or sizes made of them.
const std::set<std::string, std::less<>>& lengthProperties()
{
    static const std::set<std::string, std::less<>> s_setNames = {
        "MinSize",       "MaxSize",     "SizeItem",       "HeightLine",        "HeightButton",
        "MinTrackSize",  "FontHeight",  "DistanceButton", "TrackRangeMargins", "ButtonWidth",
        "OffsetBar",     "TrackMin",    "TrackWidth",     "TrackStep",         "ItemHeight",
        "MaxListLength", "Margin",      "CanvasSize",     "WidthSeparator",    "ButtonSize",
        "IconSize",      "HeaderHeight"};
    return s_setNames;
}

/// Scales each whole number of a text such as "12 4 100 24"; other words stay.
std::string scaleNumbers(const std::string& sNumbers, float fScale)
{
    std::istringstream in(sNumbers);
    std::string sOut;
    for (std::string sWord; in >> sWord;)
    {
        if (!sOut.empty())
            sOut += ' ';
        char* pEnd = nullptr;
        const double fValue = std::strtod(sWord.c_str(), &pEnd);
        sOut += pEnd && *pEnd == '\0' ? std::to_string(std::lround(fValue * fScale)) : sWord;
    }
    return sOut;
}

void scaleAttribute(ElementPtr pElement, const std::string& sName, float fScale)
{
    std::string sValue;
    if (pElement->findAttribute(sName, sValue))
        pElement->setAttribute(sName, scaleNumbers(sValue, fScale));
}

/// A font's lengths have fractions.
void scaleFontProperty(ElementPtr pProperty, float fScale)
{
    const std::string sKey = pProperty->findAttribute("key");
    if (sKey == "Size")
    {
        const double fSize = std::strtod(pProperty->findAttribute("value").c_str(), nullptr);
        pProperty->setAttribute("value", std::to_string(fSize * fScale));
    }
    else if (sKey == "OffsetHeight" || sKey == "TabWidth" || sKey == "SpaceWidth")
        scaleAttribute(pProperty, "value", fScale);
}

void scaleElement(ElementPtr pElement, bool bFont, float fScale)
{
    const std::string& sName = pElement->getName();
    if (sName == "Widget")
        scaleAttribute(pElement, "position", fScale);
    else if (sName == "BasisSkin" || sName == "Child")
        scaleAttribute(pElement, "offset", fScale);
    else if (sName == "Resource")
    {
        const std::string sType = pElement->findAttribute("type");
        bFont = sType == "ResourceTrueTypeFont";
        if (sType == "ResourceSkin")
            scaleAttribute(pElement, "size", fScale);
    }
    else if (sName == "Property" || sName == "UserString")
    {
        if (bFont)
            scaleFontProperty(pElement, fScale);
        else if (lengthProperties().contains(pElement->findAttribute("key")))
            scaleAttribute(pElement, "value", fScale);
    }
    MyGUI::xml::ElementEnumerator it = pElement->getElementEnumerator();
    while (it.next())
        scaleElement(it.current(), bFont, fScale);
}

} // namespace

std::string scaleGuiXml(const std::string& sXml, float fScale)
{
    if (fScale == 1.0f)
        return sXml;
    MyGUI::xml::Document document;
    std::istringstream in(sXml);
    if (!document.open(in) || !document.getRoot())
    {
        QM_LOG_ERROR("A GUI file is no XML: ", document.getLastError());
        return sXml;
    }
    scaleElement(document.getRoot(), false, fScale);
    document.createDeclaration(); // without one nothing is written
    std::ostringstream out;
    document.save(out);
    return out.str();
}
