#include "KestrelCommon/Platform/CrashSender.h"
#include "KestrelCommon/Platform/StoreService.h"
#include "KestrelCommon/Platform/Window.h"
#include "TileEditor/CommandLine.h"
#include "TileEditor/TileEditorStandalone.h"

#include <cstdio>

namespace
{

constexpr int s_iNoWindow = static_cast<int>(0x80004005);

} // namespace

int main(int iCount, char** ppArguments)
{
    BugSplatUtil::init("qm_tools_0_6", "TileEditor", "0.6.6.729");
    const auto line = CommandLine::parse(iCount, ppArguments);
    if (!line)
        return 1;

    std::unique_ptr<Window> pWindow;
    if (!line->process)
    {
        if (!Window::hasDisplay())
        {
            std::fputs(
                "TileEditor: there is no display to open a window on; --process LIST works without one\n",
                stderr);
            return s_iNoWindow;
        }
        pWindow = Window::create({});
        if (!pWindow)
        {
            std::fputs("TileEditor: can't open a window with OpenGL 4.3 or later\n", stderr);
            return s_iNoWindow;
        }
    }

    platform::StoreService store;
    if (!store.init() || !store.isLoggedOn())
    {
        std::fputs("TileEditor: the store service isn't available\n", stderr);
        return 1;
    }
    {
        TileEditorStandalone standalone(pWindow.get(), store);
        standalone.run(*line);
    }
    store.shutdown();
    pWindow.reset();
    BugSplatUtil::shutdown();
    return 0;
}
