// CGlSurface: where a renderer's frames go, kept apart from what is drawn.
//
// The headless EGL context (CEglContext) and a host's window both implement
// it; the renderer only asks it for a current context, the framebuffer to draw
// into, presentation and redraw requests.
#pragma once

#include "gl/GlApi.h"

#include <string>

namespace KesraGl
{

class CGlSurface
{
public:
    CGlSurface() = default;
    CGlSurface(const CGlSurface&) = delete;
    CGlSurface& operator=(const CGlSurface&) = delete;
    virtual ~CGlSurface() = default;

    // Makes an OpenGL 3.3 core context with a width x height drawable and
    // makes it current; false, with LastError saying why, when none can be had.
    virtual bool Create(int width, int height) = 0;
    // Releases the context; the renderer has freed its objects before.
    virtual void Destroy() = 0;
    virtual bool MakeCurrent() = 0;
    // The framebuffer that frames are drawn into (0 for a window's own).
    virtual GLuint Framebuffer() const = 0;
    // Adapts the drawable to a new size.
    virtual void Resize(int width, int height) = 0;
    // Shows the finished frame.
    virtual void Present() = 0;
    // Asks for a redraw through the window system; a headless surface only
    // remembers the request.
    virtual void RequestRedraw() = 0;
    virtual const std::string& LastError() const = 0;
};

} // namespace KesraGl
