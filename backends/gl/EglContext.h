// CEglContext: a headless OpenGL 3.3 core context through EGL, drawing into
// a framebuffer object of its own (colour RGBA8, depth 24 bits), for tests and
// snapshots. Mesa's surfaceless platform is tried first, then the first EGL
// device; no display server is involved.
#pragma once

#include "gl/GlSurface.h"

#include <EGL/egl.h>

namespace KesraGl
{

class CEglContext : public CGlSurface
{
public:
    CEglContext() = default;
    ~CEglContext() override;

    bool Create(int width, int height) override;
    void Destroy() override;
    bool MakeCurrent() override;
    GLuint Framebuffer() const override { return m_framebuffer; }
    void Resize(int width, int height) override;
    // A framebuffer object is read where it was drawn: nothing to show.
    void Present() override {}
    void RequestRedraw() override { m_redrawRequested = true; }
    const std::string& LastError() const override { return m_error; }

    bool IsRedrawRequested() const { return m_redrawRequested; }

private:
    bool Fail(const std::string& message);
    bool OpenDisplay();
    void MakeBuffers(int width, int height);

    std::string m_error;
    EGLDisplay m_display = EGL_NO_DISPLAY;
    EGLContext m_context = EGL_NO_CONTEXT;
    GLuint m_framebuffer = 0;
    GLuint m_colorBuffer = 0;
    GLuint m_depthBuffer = 0;
    bool m_redrawRequested = false;
};

} // namespace KesraGl
