#include "KestrelCommon/Device/EglContext.h"

#include "KestrelCommon/Core/Console.h"

#include <epoxy/egl.h>

namespace rend
{

std::unique_ptr<EglContext> EglContext::create()
{
    std::unique_ptr<EglContext> pResult(new EglContext);

    if (epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_MESA_platform_surfaceless"))
        pResult->m_pDisplay =
            eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!pResult->m_pDisplay)
        pResult->m_pDisplay = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if (!pResult->m_pDisplay || !eglInitialize(pResult->m_pDisplay, nullptr, nullptr))
    {
        QM_LOG_ERROR("No EGL display for drawing without a window");
        return nullptr;
    }
    if (!eglBindAPI(EGL_OPENGL_API))
    {
        QM_LOG_ERROR("EGL has no OpenGL here");
        return nullptr;
    }
    for (const EGLint iMinor : {5, 3})
    {
        const std::array<EGLint, 7> arrAttributes = {EGL_CONTEXT_MAJOR_VERSION,
                                                     4,
                                                     EGL_CONTEXT_MINOR_VERSION,
                                                     iMinor,
                                                     EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                                     EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                                     EGL_NONE};
        pResult->m_pContext =
            eglCreateContext(pResult->m_pDisplay, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, arrAttributes.data());
        if (pResult->m_pContext)
            break;
    }
    if (!pResult->m_pContext || !pResult->makeCurrent())
    {
        QM_LOG_ERROR("No OpenGL 4.3 context without a window, EGL code: ", eglGetError());
        return nullptr;
    }
    return pResult;
}

EglContext::~EglContext()
{
    if (!m_pDisplay)
        return;
    eglMakeCurrent(m_pDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (m_pContext)
        eglDestroyContext(m_pDisplay, m_pContext);
    // The display stays initialised: it is one for the process, and other contexts may use it.
}

bool EglContext::makeCurrent()
{
    return eglMakeCurrent(m_pDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, m_pContext) == EGL_TRUE;
}

} // namespace rend
