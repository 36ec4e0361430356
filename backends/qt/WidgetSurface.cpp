#include "qt/WidgetSurface.h"

#include <QOpenGLContext>
#include <QOpenGLWidget>

namespace KesraQt
{

bool CWidgetSurface::Create(int, int)
{
    if (!MakeCurrent())
    {
        m_error = "the widget has no OpenGL context yet (or no longer)";
        return false;
    }
    m_error.clear();
    return true;
}

bool CWidgetSurface::MakeCurrent()
{
    QOpenGLContext* const context = m_widget.context();
    if (context == nullptr || !context->isValid())
    {
        return false;
    }
    // The renderer asks before every step of a frame: only a switch costs.
    if (QOpenGLContext::currentContext() != context)
    {
        m_widget.makeCurrent();
    }
    return QOpenGLContext::currentContext() == context;
}

GLuint CWidgetSurface::Framebuffer() const
{
    return m_widget.defaultFramebufferObject();
}

void CWidgetSurface::RequestRedraw()
{
    if (!m_painting)
    {
        m_widget.update();
    }
}

} // namespace KesraQt
