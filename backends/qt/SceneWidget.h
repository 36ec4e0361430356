// CSceneWidget: a QOpenGLWidget that shows streamline results through the
// OpenGL backend's whole scene (CGlScene): tubes coloured through the legend,
// tips at the extremes, ruler, axis triad, title. Drop it into a layout, hand
// it the lines and their values, and the user turns, pans and zooms it with
// the same mouse and keys as every host of the scene (CGlSceneInput; the s
// and q keys are left to the application).
//
// The widget draws into the framebuffer object Qt gives it and owns no
// context of its own. It asks for an OpenGL 3.3 core context with a depth
// buffer; an application whose other OpenGL widgets want another format sets
// the shared default (QSurfaceFormat::setDefaultFormat) before QApplication.
// When Qt re-creates the context (the widget moved into another window), the
// scene's objects are released with the old one and made again in the new
// one, and the picture comes back as it was.
//
// Sizes and positions are Qt's device-independent pixels; the scene itself
// works in the framebuffer's pixels (times devicePixelRatio).
#pragma once

#include "common/Palette.h"
#include "common/SceneData.h"
#include "common/Views.h"

#include <QImage>
#include <QOpenGLWidget>
#include <QString>

#include <memory>

namespace KesraGl
{
class CGlScene;
class CGlSceneInput;
} // namespace KesraGl

namespace KesraQt
{

class CWidgetSurface;
class CViewObserver;

class CSceneWidget : public QOpenGLWidget
{
    Q_OBJECT

public:
    explicit CSceneWidget(QWidget* parent = nullptr);
    ~CSceneWidget() override;

    // ---- The data -----------------------------------------------------------

    // Replaces what is shown: the lines, their values, names and units. The
    // view starts again from the isometric one, fitted beside the legend, the
    // legend over the data's finite range with the widget's palette, banding
    // and inversion kept.
    void setStreamlines(KesraBackend::SceneData data);
    const KesraBackend::SceneData& streamlines() const;
    // Points of all lines that are drawn.
    int nodeCount() const;

    // ---- The legend (each change recolours the tubes and emits legendChanged)

    KesraBackend::Palette colorPalette() const;
    bool isBanded() const;
    int blockCount() const;
    bool isInverse() const;
    double rangeMinimum() const;
    double rangeMaximum() const;
    // The data's finite range, where resetValueRange returns.
    double dataMinimum() const;
    double dataMaximum() const;

    // ---- Reading the picture -----------------------------------------------

    // A frame drawn now and read back, at the framebuffer's size; a null
    // image before the widget has a context.
    QImage snapshot();
    // The value of the drawn node nearest to position (widget pixels), within
    // twelve framebuffer pixels; false when none is that near.
    bool valueAt(const QPointF& position, double& value);
    // Why the scene could not be made in the widget's context; empty while
    // all is well.
    QString openGlError() const { return m_error; }

    // For hosts that need more than this class offers (the camera, the
    // legend, the ruler); it is replaced by setStreamlines.
    KesraGl::CGlScene& scene() { return *m_scene; }

public Q_SLOTS:
    void setColorPalette(KesraBackend::Palette palette);
    void setBanded(bool banded);
    // Refused (no change) unless 2 <= blocks <= 30.
    void setBlockCount(int blocks);
    void setInverse(bool inverse);
    // Refused (no change) unless both are finite and minimum < maximum.
    void setValueRange(double minimum, double maximum);
    void resetValueRange();
    // Turns to view through a smooth rotation, or at once.
    void setView(KesraBackend::View view, bool smooth = true);
    // Fits the whole model beside the legend.
    void zoomAll();

Q_SIGNALS:
    // The camera turned, moved or zoomed (a drag, the wheel, a view, a fit).
    void viewChanged();
    // The legend's palette, banding, block count, inversion or range changed.
    void legendChanged();
    // The cursor moved over the widget: the value of the node under it, if
    // any (found false otherwise).
    void hoveredValueChanged(bool found, double value);

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct LegendState;

    void MakeScene(KesraBackend::SceneData data);
    void DropScene();
    void ReleaseOpenGl();
    void MakeOpenGl();
    LegendState Legend() const;
    void ChangeLegend(const LegendState& before);
    int Pixels(double logical) const;

    std::unique_ptr<CWidgetSurface> m_surface;
    std::unique_ptr<KesraGl::CGlScene> m_scene;
    std::unique_ptr<KesraGl::CGlSceneInput> m_input;
    std::unique_ptr<CViewObserver> m_observer;
    QString m_error;
    bool m_fitOnResize = true;
};

} // namespace KesraQt
