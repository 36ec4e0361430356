#include "gl/EglContext.h"

#include <EGL/eglext.h>

#include <cstring>

namespace KesraGl
{

namespace
{

bool HasExtension(const char* list, const char* name)
{
    if (list == nullptr)
    {
        return false;
    }
    const std::size_t length = std::strlen(name);
    for (const char* at = std::strstr(list, name); at != nullptr; at = std::strstr(at + 1, name))
    {
        const bool starts = at == list || at[-1] == ' ';
        const bool ends = at[length] == '\0' || at[length] == ' ';
        if (starts && ends)
        {
            return true;
        }
    }
    return false;
}

template <typename Function>
Function Lookup(const char* name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

} // namespace

CEglContext::~CEglContext()
{
    Destroy();
}

bool CEglContext::Fail(const std::string& message)
{
    m_error = "EGL: " + message;
    Destroy();
    return false;
}

bool CEglContext::OpenDisplay()
{
    const char* clientExtensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    const auto getPlatformDisplay =
        Lookup<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    if (getPlatformDisplay == nullptr)
    {
        return false;
    }
    if (HasExtension(clientExtensions, "EGL_MESA_platform_surfaceless"))
    {
        m_display = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    }
    if (m_display == EGL_NO_DISPLAY && HasExtension(clientExtensions, "EGL_EXT_device_enumeration"))
    {
        const auto queryDevices = Lookup<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
        EGLDeviceEXT device = nullptr;
        EGLint count = 0;
        if (queryDevices != nullptr && queryDevices(1, &device, &count) == EGL_TRUE && count > 0)
        {
            m_display = getPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr);
        }
    }
    if (m_display == EGL_NO_DISPLAY)
    {
        return false;
    }
    if (eglInitialize(m_display, nullptr, nullptr) != EGL_TRUE)
    {
        m_display = EGL_NO_DISPLAY;
        return false;
    }
    return true;
}

bool CEglContext::Create(int width, int height)
{
    Destroy();
    m_error.clear();
    if (width <= 0 || height <= 0)
    {
        return Fail("a drawable of " + std::to_string(width) + "x" + std::to_string(height)
                    + " pixels has no area");
    }
    if (!OpenDisplay())
    {
        return Fail("no headless display (neither the surfaceless platform nor an EGL device)");
    }
    if (eglBindAPI(EGL_OPENGL_API) != EGL_TRUE)
    {
        return Fail("the display does not offer desktop OpenGL");
    }
    const EGLint configAttributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                                       EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint configs = 0;
    if (eglChooseConfig(m_display, configAttributes, &config, 1, &configs) != EGL_TRUE || configs < 1)
    {
        // The surfaceless platform may offer configurations without surface types.
        const EGLint anyAttributes[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
        if (eglChooseConfig(m_display, anyAttributes, &config, 1, &configs) != EGL_TRUE
            || configs < 1)
        {
            return Fail("no configuration for desktop OpenGL");
        }
    }
    const EGLint contextAttributes[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 3,
                                        EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                        EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
    m_context = eglCreateContext(m_display, config, EGL_NO_CONTEXT, contextAttributes);
    if (m_context == EGL_NO_CONTEXT)
    {
        return Fail("no OpenGL 3.3 core profile context");
    }
    if (!MakeCurrent())
    {
        return Fail("the context cannot be made current without a surface");
    }
    MakeBuffers(width, height);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
    {
        return Fail("the framebuffer object is incomplete");
    }
    return true;
}

void CEglContext::MakeBuffers(int width, int height)
{
    if (m_framebuffer == 0)
    {
        glGenFramebuffers(1, &m_framebuffer);
        glGenRenderbuffers(1, &m_colorBuffer);
        glGenRenderbuffers(1, &m_depthBuffer);
    }
    glBindRenderbuffer(GL_RENDERBUFFER, m_colorBuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glBindRenderbuffer(GL_RENDERBUFFER, m_depthBuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, width, height);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_colorBuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, m_depthBuffer);
}

void CEglContext::Resize(int width, int height)
{
    if (m_context != EGL_NO_CONTEXT && width > 0 && height > 0 && MakeCurrent())
    {
        MakeBuffers(width, height);
    }
}

bool CEglContext::MakeCurrent()
{
    return m_context != EGL_NO_CONTEXT
           && eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context) == EGL_TRUE;
}

void CEglContext::Destroy()
{
    if (m_context != EGL_NO_CONTEXT && MakeCurrent() && m_framebuffer != 0)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glDeleteRenderbuffers(1, &m_depthBuffer);
        glDeleteRenderbuffers(1, &m_colorBuffer);
        glDeleteFramebuffers(1, &m_framebuffer);
    }
    m_framebuffer = m_colorBuffer = m_depthBuffer = 0;
    if (m_display != EGL_NO_DISPLAY)
    {
        eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        if (m_context != EGL_NO_CONTEXT)
        {
            eglDestroyContext(m_display, m_context);
        }
        eglTerminate(m_display);
    }
    m_context = EGL_NO_CONTEXT;
    m_display = EGL_NO_DISPLAY;
}

} // namespace KesraGl
