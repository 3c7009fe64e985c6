#pragma once // Brings layouts, skins and fonts to the interface's scale.

#include <string>

/// Multiplies every length of a layout, skin or font file that is measured on the screen: places
/// and sizes of widgets and of a skin's parts, sizes of fonts and of items. Places in a texture
/// stay. The text comes back as it was, with one error line, when it isn't XML.
[[nodiscard]] std::string scaleGuiXml(const std::string& sXml, float fScale);
