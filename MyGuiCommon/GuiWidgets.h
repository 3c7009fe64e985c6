#pragma once // The widgets and skin parts that MyGUI learns from us.

namespace GuiWidgets
{

/// After the start of MyGUI and before any skin or layout is loaded.
void registerFactories();
/// Before the end of MyGUI, when no widget is left.
void unregisterFactories();

} // namespace GuiWidgets
