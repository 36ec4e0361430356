#include "qt/SceneWidget.h"

#include "Engine/CameraEventHandler.h"
#include "gl/GlScene.h"
#include "gl/GlSceneInput.h"
#include "qt/WidgetSurface.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QSurfaceFormat>
#include <QWheelEvent>

#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace KesraQt
{

// Tells the widget of every change of the camera, however it came.
class CViewObserver : public KesraEngine::IKesraCameraEventHandler
{
public:
    explicit CViewObserver(CSceneWidget& widget) : m_widget(widget) {}

    void OnRotateMatUpdate(const KesraMathKit::TKesraMatrix4<double>&) override { Changed(); }
    void OnTranslateUpdate(float, float) override { Changed(); }
    void OnScaleUpdate(float) override { Changed(); }
    void OnTransformUpdate(const KesraMathKit::TKesraMatrix4<double>&, float, float, float) override
    {
        Changed();
    }

private:
    void Changed() { Q_EMIT m_widget.viewChanged(); }

    CSceneWidget& m_widget;
};

struct CSceneWidget::LegendState
{
    KesraBackend::Palette palette = KesraBackend::Palette::RedBlue;
    int banded = 0;
    int blocks = 0;
    int inverse = 0;
    double minimum = 0.0;
    double maximum = 0.0;

    bool operator==(const LegendState& other) const
    {
        return palette == other.palette && banded == other.banded && blocks == other.blocks
               && inverse == other.inverse && minimum == other.minimum && maximum == other.maximum;
    }
};

namespace
{

KesraGl::MouseButton ButtonOf(Qt::MouseButton button)
{
    switch (button)
    {
    case Qt::MiddleButton: return KesraGl::MouseButton::Middle;
    case Qt::RightButton: return KesraGl::MouseButton::Right;
    default: return KesraGl::MouseButton::Left;
    }
}

KesraGl::KeyModifiers ModifiersOf(Qt::KeyboardModifiers modifiers)
{
    KesraGl::KeyModifiers result;
    result.shift = modifiers.testFlag(Qt::ShiftModifier);
    result.ctrl = modifiers.testFlag(Qt::ControlModifier);
    return result;
}

bool Handled(Qt::MouseButton button)
{
    return button == Qt::LeftButton || button == Qt::MiddleButton || button == Qt::RightButton;
}

} // namespace

CSceneWidget::CSceneWidget(QWidget* parent)
    : QOpenGLWidget(parent), m_surface(std::make_unique<CWidgetSurface>(*this))
{
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    setFormat(format);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    MakeScene(KesraBackend::SceneData());
}

CSceneWidget::~CSceneWidget()
{
    // QOpenGLWidget's destructor destroys the context after this object's
    // members are gone: the release must not be called then.
    if (context() != nullptr)
    {
        disconnect(context(), nullptr, this, nullptr);
    }
    // The scene frees its buffers in the widget's context, while both live.
    DropScene();
}

void CSceneWidget::MakeScene(KesraBackend::SceneData data)
{
    const bool keep = m_scene != nullptr;
    const LegendState legend = keep ? Legend() : LegendState();
    DropScene();
    const int width = std::max(Pixels(this->width()), 1);
    const int height = std::max(Pixels(this->height()), 1);
    m_scene = std::make_unique<KesraGl::CGlScene>(*m_surface, std::move(data), width, height);
    // A large result's tubes are made a tenth of a second a paint, so that
    // the application answers meanwhile; a snapshot still waits for all.
    m_scene->SetBuildBudget(0.1);
    m_input = std::make_unique<KesraGl::CGlSceneInput>(*m_scene);
    m_observer = std::make_unique<CViewObserver>(*this);
    m_scene->Camera().RegisterEventHandler(m_observer.get());
    // Before the first show the widget's size is not yet the one it will
    // have: the first resize fits the model again.
    m_fitOnResize = context() == nullptr;
    if (keep)
    {
        m_scene->SetPalette(legend.palette);
        m_scene->SetBlockCount(legend.blocks);
        m_scene->SetBanded(legend.banded == 1);
        m_scene->SetInverse(legend.inverse == 1);
    }
    if (context() != nullptr)
    {
        MakeOpenGl();
    }
}

void CSceneWidget::DropScene()
{
    if (m_scene == nullptr)
    {
        return;
    }
    m_scene->Camera().UnregisterEventHandler(m_observer.get());
    m_input.reset();
    m_scene.reset();
    m_observer.reset();
}

void CSceneWidget::setStreamlines(KesraBackend::SceneData data)
{
    MakeScene(std::move(data));
    Q_EMIT legendChanged();
    Q_EMIT viewChanged();
    update();
}

const KesraBackend::SceneData& CSceneWidget::streamlines() const
{
    return m_scene->Data();
}

int CSceneWidget::nodeCount() const
{
    // From the scene's lines: the tubes keep their nodes only from the first
    // frame on, and the count is wanted before it.
    std::size_t nodes = 0;
    for (const KesraBackend::ScalarLine& line : m_scene->Data().lines)
    {
        nodes += line.points.size();
    }
    return static_cast<int>(nodes);
}

// ---- OpenGL ---------------------------------------------------------------------

void CSceneWidget::initializeGL()
{
    // The context goes with a move to another window: the scene's objects go
    // with it, and initializeGL comes again in the new one.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &CSceneWidget::ReleaseOpenGl,
            Qt::DirectConnection);
    MakeOpenGl();
}

void CSceneWidget::MakeOpenGl()
{
    if (m_scene->CreateContext())
    {
        m_error.clear();
        m_scene->Resize(std::max(Pixels(width()), 1), std::max(Pixels(height()), 1));
    }
    else
    {
        m_error = QString::fromStdString(m_scene->ContextError());
    }
}

void CSceneWidget::ReleaseOpenGl()
{
    if (m_scene != nullptr)
    {
        m_scene->Renderer().DestroyContext();
    }
}

void CSceneWidget::resizeGL(int, int)
{
    // Qt's arguments are device-independent; the framebuffer is not.
    m_scene->Resize(std::max(Pixels(width()), 1), std::max(Pixels(height()), 1));
    if (m_fitOnResize)
    {
        m_fitOnResize = false;
        m_scene->ZoomAll();
    }
}

void CSceneWidget::paintGL()
{
    m_surface->SetPainting(true);
    m_scene->Render();
    m_surface->SetPainting(false);
    // A smooth turn advances a step a frame, and tubes still to be made a
    // chunk or more.
    if (m_scene->IsAnimating() || m_scene->IsBuilding())
    {
        update();
    }
}

QImage CSceneWidget::snapshot()
{
    if (!m_scene->Renderer().HasContext())
    {
        return QImage();
    }
    makeCurrent();
    const std::vector<unsigned char> rgba = m_scene->Capture();
    doneCurrent();
    const int width = m_scene->Renderer().GetWidth();
    const int height = m_scene->Renderer().GetHeight();
    if (rgba.size() != static_cast<std::size_t>(width) * height * 4)
    {
        return QImage();
    }
    QImage image(width, height, QImage::Format_RGBA8888);
    const std::size_t row = static_cast<std::size_t>(width) * 4;
    // OpenGL reads bottom row first, images are top row first.
    for (int y = 0; y < height; ++y)
    {
        std::memcpy(image.scanLine(y), &rgba[static_cast<std::size_t>(height - 1 - y) * row], row);
    }
    return image;
}

bool CSceneWidget::valueAt(const QPointF& position, double& value)
{
    KesraGl::CGlScene::Probe probe;
    const int up = m_scene->Renderer().GetHeight() - 1 - Pixels(position.y());
    if (!m_scene->NearestNode(Pixels(position.x()), up, probe))
    {
        return false;
    }
    value = probe.value;
    return true;
}

int CSceneWidget::Pixels(double logical) const
{
    return static_cast<int>(std::floor(logical * devicePixelRatioF()));
}

// ---- The legend -------------------------------------------------------------------

CSceneWidget::LegendState CSceneWidget::Legend() const
{
    LegendState state;
    KesraGl::CGlScalarBar& legend = m_scene->Legend();
    state.palette = m_scene->GetPalette();
    state.banded = legend.GetBanded();
    state.blocks = legend.GetBlockNum();
    state.inverse = legend.GetInverse();
    legend.GetValueRange(state.minimum, state.maximum);
    return state;
}

void CSceneWidget::ChangeLegend(const LegendState& before)
{
    if (!(Legend() == before))
    {
        Q_EMIT legendChanged();
    }
}

KesraBackend::Palette CSceneWidget::colorPalette() const
{
    return m_scene->GetPalette();
}

bool CSceneWidget::isBanded() const
{
    return Legend().banded == 1;
}

int CSceneWidget::blockCount() const
{
    return Legend().blocks;
}

bool CSceneWidget::isInverse() const
{
    return Legend().inverse == 1;
}

double CSceneWidget::rangeMinimum() const
{
    return Legend().minimum;
}

double CSceneWidget::rangeMaximum() const
{
    return Legend().maximum;
}

double CSceneWidget::dataMinimum() const
{
    return m_scene->DataMinimum();
}

double CSceneWidget::dataMaximum() const
{
    return m_scene->DataMaximum();
}

void CSceneWidget::setColorPalette(KesraBackend::Palette palette)
{
    const LegendState before = Legend();
    m_scene->SetPalette(palette);
    ChangeLegend(before);
}

void CSceneWidget::setBanded(bool banded)
{
    const LegendState before = Legend();
    m_scene->SetBanded(banded);
    ChangeLegend(before);
}

void CSceneWidget::setBlockCount(int blocks)
{
    const LegendState before = Legend();
    m_scene->SetBlockCount(blocks);
    ChangeLegend(before);
}

void CSceneWidget::setInverse(bool inverse)
{
    const LegendState before = Legend();
    m_scene->SetInverse(inverse);
    ChangeLegend(before);
}

void CSceneWidget::setValueRange(double minimum, double maximum)
{
    const LegendState before = Legend();
    m_scene->SetValueRange(minimum, maximum);
    ChangeLegend(before);
}

void CSceneWidget::resetValueRange()
{
    const LegendState before = Legend();
    m_scene->ResetValueRange();
    ChangeLegend(before);
}

// ---- The view -----------------------------------------------------------------------

void CSceneWidget::setView(KesraBackend::View view, bool smooth)
{
    m_scene->SetView(view, smooth);
}

void CSceneWidget::zoomAll()
{
    m_scene->ZoomAll();
}

// ---- Input ----------------------------------------------------------------------------
// The scene asks for every redraw its input needs (through the surface's
// RequestRedraw): the handlers only translate.

void CSceneWidget::mousePressEvent(QMouseEvent* event)
{
    if (!Handled(event->button()))
    {
        QOpenGLWidget::mousePressEvent(event);
        return;
    }
    const QPointF at = event->position();
    m_input->Press(ButtonOf(event->button()), Pixels(at.x()), Pixels(at.y()), ModifiersOf(event->modifiers()));
}

void CSceneWidget::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF at = event->position();
    m_input->Move(Pixels(at.x()), Pixels(at.y()));
    double value = 0.0;
    const bool found = valueAt(at, value);
    Q_EMIT hoveredValueChanged(found, value);
}

void CSceneWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (!Handled(event->button()))
    {
        QOpenGLWidget::mouseReleaseEvent(event);
        return;
    }
    const QPointF at = event->position();
    m_input->Release(ButtonOf(event->button()), Pixels(at.x()), Pixels(at.y()));
}

void CSceneWidget::wheelEvent(QWheelEvent* event)
{
    // A notch of a wheel is 120; a touchpad's finer steps scroll the parent.
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0)
    {
        event->ignore();
        return;
    }
    const QPointF at = event->position();
    m_input->Wheel(Pixels(at.x()), Pixels(at.y()), steps);
}

void CSceneWidget::keyPressEvent(QKeyEvent* event)
{
    char key = 0;
    if (event->key() == Qt::Key_Escape)
    {
        key = KesraGl::CGlSceneInput::kEscape;
    }
    else if (event->text().size() == 1 && event->text().at(0).unicode() < 128)
    {
        key = static_cast<char>(event->text().at(0).unicode());
    }
    // Snapshots and quitting are the application's: it sees those keys.
    if (key == 0 || key == 's' || key == 'q')
    {
        QOpenGLWidget::keyPressEvent(event);
        return;
    }
    const LegendState before = Legend();
    if (m_input->Key(key) == KesraGl::KeyAction::Quit)
    {
        // Esc with no rubber band under way: the application's too.
        QOpenGLWidget::keyPressEvent(event);
        return;
    }
    ChangeLegend(before);
}

} // namespace KesraQt
