#include "MyGuiCommon/GuiWidgets.h"

#include "MyGuiCommon/AdvanceEditBox.h"
#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/FloatEditBox.h"
#include "MyGuiCommon/SliceSkin.h"
#include "MyGuiCommon/VirtualList.h"

#include <MyGUI_FactoryManager.h>

namespace GuiWidgets
{

void registerFactories()
{
    SliceSkin::registerFactory();
    MyGUI::FactoryManager& factory = MyGUI::FactoryManager::getInstance();
    factory.registerFactory<EditorButton>("Widget");
    factory.registerFactory<NumberEdit>("Widget");
    factory.registerFactory<AdvanceEditBox>("Widget");
    factory.registerFactory<FloatEditBox>("Widget");
    factory.registerFactory<VirtualList>("Widget");
}

void unregisterFactories()
{
    MyGUI::FactoryManager& factory = MyGUI::FactoryManager::getInstance();
    factory.unregisterFactory<VirtualList>("Widget");
    factory.unregisterFactory<FloatEditBox>("Widget");
    factory.unregisterFactory<AdvanceEditBox>("Widget");
    factory.unregisterFactory<NumberEdit>("Widget");
    factory.unregisterFactory<EditorButton>("Widget");
    SliceSkin::unregisterFactory();
}

} // namespace GuiWidgets
