// CWidgetSurface: a CGlSurface over a QOpenGLWidget, so that the backend draws
// into the context and the framebuffer object that Qt gives the widget. It
// makes no context, window or framebuffer of its own: Qt has made them before
// initializeGL, re-binds them around paintGL and composes the result into the
// window (also on Wayland). The framebuffer is asked for at every frame, since
// Qt replaces it on every resize and it is never 0.
#pragma once

#include "gl/GlSurface.h"

#include <string>

class QOpenGLWidget;

namespace KesraQt
{

class CWidgetSurface : public KesraGl::CGlSurface
{
public:
    // widget is not owned and must outlive the surface.
    explicit CWidgetSurface(QOpenGLWidget& widget) : m_widget(widget) {}

    // Succeeds while the widget's context lives (from initializeGL until Qt
    // destroys it); the size is Qt's to keep.
    bool Create(int width, int height) override;
    // Qt owns the context: nothing to release.
    void Destroy() override {}
    // The widget's context and framebuffer, unless they are current already.
    bool MakeCurrent() override;
    // QOpenGLWidget::defaultFramebufferObject.
    GLuint Framebuffer() const override;
    // Qt resizes the framebuffer before it calls resizeGL.
    void Resize(int, int) override {}
    // Qt composes the frame into the window after paintGL.
    void Present() override {}
    // A widget update; requests from inside a paint are dropped, since the
    // frame under way already shows what they ask for.
    void RequestRedraw() override;
    const std::string& LastError() const override { return m_error; }

    // Set by the widget around its paintGL.
    void SetPainting(bool painting) { m_painting = painting; }

private:
    QOpenGLWidget& m_widget;
    std::string m_error;
    bool m_painting = false;
};

} // namespace KesraQt
