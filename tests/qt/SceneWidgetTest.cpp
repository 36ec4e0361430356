// CSceneWidget in real windows on an X server: it draws the scene into Qt's
// framebuffer as the headless host draws it, Qt's mouse, wheel and resize
// events reach the scene, two widgets keep apart, and a context that Qt
// re-creates brings the same picture back.
#include "QtTestSupport.h"

#include "gl/GlScene.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QOpenGLContext>
#include <QSignalSpy>
#include <QTabWidget>
#include <QWheelEvent>

#include <cmath>
#include <memory>

using KesraQt::CSceneWidget;
using KesraQtTest::DifferentPixels;

namespace
{

constexpr int kWidth = 400;
constexpr int kHeight = 300;

// A top-level widget of the test size showing data, drawn once.
std::unique_ptr<CSceneWidget> Shown(const KesraBackend::SceneData& data)
{
    auto view = std::make_unique<CSceneWidget>();
    view->resize(kWidth, kHeight);
    view->setStreamlines(data);
    KesraQtTest::ShowAndWait(*view);
    return view;
}

// The columns from the right edge to the legend bar's left side and the rows
// from the top to its top: where the first pixel of the palette's full blue
// is, scanning the right part of the picture.
QPoint LegendCorner(const QImage& picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGBA8888);
    for (int y = 0; y < image.height(); ++y)
    {
        const uchar* row = image.constScanLine(y);
        for (int x = image.width() / 2; x < image.width(); ++x)
        {
            const uchar* p = row + 4 * x;
            if (p[0] < 40 && p[1] < 40 && p[2] > 200)
            {
                return QPoint(image.width() - x, y);
            }
        }
    }
    return QPoint(-1, -1);
}

} // namespace

class SceneWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawsTheSceneAsTheHeadlessHostDoes();
    void dragTurnsTheView();
    void wheelZoomsAtTheCursor();
    void resizeKeepsTheLegendInItsCorner();
    void twoWidgetsDrawIndependently();
    void survivesHidingAndANewContext();
    void keysReachTheLegendAndTheApplicationKeepsItsOwn();
    void refusedSettingsChangeNothing();
    void makesALargeResultsTubesPaintByPaint();
};

void SceneWidgetTest::drawsTheSceneAsTheHeadlessHostDoes()
{
    const auto empty = Shown(KesraBackend::SceneData());
    const auto view = Shown(KesraQtTest::Flow());
    QVERIFY2(view->openGlError().isEmpty(), qPrintable(view->openGlError()));
    const QImage picture = view->snapshot();
    QCOMPARE(picture.size(), QSize(kWidth, kHeight));
    // The tubes, sphere and tips cover a good part of what the empty frame
    // leaves as paper.
    QVERIFY(DifferentPixels(picture, empty->snapshot(), 8) > kWidth * kHeight / 10);
    const QImage headless = KesraQtTest::HeadlessPicture(KesraQtTest::Flow(), kWidth, kHeight);
    if (headless.isNull())
    {
        QSKIP("no EGL device for the headless picture");
    }
    // The same driver draws both: only a few edge pixels may differ.
    QVERIFY2(DifferentPixels(picture, headless, 16) < kWidth * kHeight / 500,
             qPrintable(QString::number(DifferentPixels(picture, headless, 16))));
    QCOMPARE(view->nodeCount(), 1422);
}

void SceneWidgetTest::dragTurnsTheView()
{
    const auto view = Shown(KesraQtTest::Flow());
    const QImage before = view->snapshot();
    const auto rotation = view->scene().Camera().GetRotateMatrix();
    QSignalSpy viewChanged(view.get(), &CSceneWidget::viewChanged);
    QSignalSpy frames(view.get(), &QOpenGLWidget::frameSwapped);
    QTest::mousePress(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(200, 150));
    QTest::mouseMove(view.get(), QPoint(230, 160));
    QTest::mouseMove(view.get(), QPoint(260, 170));
    QTest::mouseRelease(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(260, 170));
    QVERIFY(!(view->scene().Camera().GetRotateMatrix() == rotation));
    QVERIFY(viewChanged.count() > 0);
    // The window shows the turn by itself, not only a snapshot.
    QTRY_VERIFY(frames.count() > 0);
    QVERIFY(DifferentPixels(before, view->snapshot(), 8) > 1000);
    // The drag is over: a move without a button turns nothing.
    const auto turned = view->scene().Camera().GetRotateMatrix();
    QTest::mouseMove(view.get(), QPoint(100, 100));
    QVERIFY(view->scene().Camera().GetRotateMatrix() == turned);
}

void SceneWidgetTest::wheelZoomsAtTheCursor()
{
    const auto view = Shown(KesraQtTest::Flow());
    const float scale = view->scene().Camera().GetScale();
    QSignalSpy viewChanged(view.get(), &CSceneWidget::viewChanged);
    const QPointF at(120.0, 90.0);
    QWheelEvent notch(at, view->mapToGlobal(at), QPoint(), QPoint(0, 2 * 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QSignalSpy frames(view.get(), &QOpenGLWidget::frameSwapped);
    QApplication::sendEvent(view.get(), &notch);
    // Closer: fewer model units a pixel, 10 % a notch.
    QVERIFY(view->scene().Camera().GetScale() < 0.85f * scale);
    QVERIFY(viewChanged.count() > 0);
    QTRY_VERIFY(frames.count() > 0);
    // A touchpad's fraction of a notch is the parent's to scroll.
    const float zoomed = view->scene().Camera().GetScale();
    QWheelEvent fraction(at, view->mapToGlobal(at), QPoint(0, 4), QPoint(0, 30), Qt::NoButton, Qt::NoModifier,
                         Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.get(), &fraction);
    QCOMPARE(view->scene().Camera().GetScale(), zoomed);
    QVERIFY(!fraction.isAccepted());
}

void SceneWidgetTest::resizeKeepsTheLegendInItsCorner()
{
    const auto view = Shown(KesraQtTest::TwoLines());
    const QPoint corner = LegendCorner(view->snapshot());
    QVERIFY(corner.x() > 0);
    // Wider: the legend keeps its distance from the right edge and its height.
    view->resize(kWidth + 200, kHeight);
    QTRY_COMPARE(view->snapshot().size(), QSize(kWidth + 200, kHeight));
    QCOMPARE(view->scene().Renderer().GetWidth(), kWidth + 200);
    QCOMPARE(LegendCorner(view->snapshot()), corner);
    // Taller too: the bar grows with the window, still as far from the right.
    view->resize(kWidth + 200, kHeight + 100);
    QTRY_COMPARE(view->snapshot().size(), QSize(kWidth + 200, kHeight + 100));
    QCOMPARE(view->scene().Renderer().GetHeight(), kHeight + 100);
    QCOMPARE(LegendCorner(view->snapshot()).x(), corner.x());
}

void SceneWidgetTest::twoWidgetsDrawIndependently()
{
    QWidget window;
    auto* layout = new QHBoxLayout(&window);
    auto* left = new CSceneWidget;
    auto* right = new CSceneWidget;
    layout->addWidget(left);
    layout->addWidget(right);
    left->setStreamlines(KesraQtTest::Flow());
    right->setStreamlines(KesraQtTest::TwoLines());
    window.resize(2 * kWidth, kHeight);
    QVERIFY(KesraQtTest::ShowAndWait(window));
    QVERIFY(left->context() != right->context());
    const QImage leftBefore = left->snapshot();
    const QImage rightBefore = right->snapshot();
    QVERIFY(DifferentPixels(leftBefore, rightBefore) > 0);

    right->setColorPalette(KesraBackend::Palette::Gray);
    right->setView(KesraBackend::View::Top, false);
    QVERIFY(DifferentPixels(right->snapshot(), rightBefore, 8) > 100);
    QCOMPARE(DifferentPixels(left->snapshot(), leftBefore), 0);
    QTest::mousePress(left, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
    QTest::mouseMove(left, QPoint(160, 120));
    QTest::mouseRelease(left, Qt::LeftButton, Qt::NoModifier, QPoint(160, 120));
    const QImage rightNow = right->snapshot();
    QVERIFY(DifferentPixels(left->snapshot(), leftBefore, 8) > 100);
    QCOMPARE(DifferentPixels(right->snapshot(), rightNow), 0);
    QCOMPARE(left->colorPalette(), KesraBackend::Palette::RedBlue);
}

void SceneWidgetTest::survivesHidingAndANewContext()
{
    QTabWidget tabs;
    auto* view = new CSceneWidget;
    view->setStreamlines(KesraQtTest::Flow());
    tabs.addTab(view, "view");
    tabs.addTab(new QLabel("other"), "other");
    tabs.resize(kWidth, kHeight);
    QVERIFY(KesraQtTest::ShowAndWait(tabs));
    const QImage before = view->snapshot();
    QVERIFY(!before.isNull());

    tabs.setCurrentIndex(1);
    QTRY_VERIFY(!view->isVisible());
    tabs.setCurrentIndex(0);
    QTRY_VERIFY(view->isVisible());
    QCOMPARE(DifferentPixels(view->snapshot(), before), 0);

    // Into another window: Qt destroys the context and makes a new one.
    QSignalSpy destroyed(view->context(), &QOpenGLContext::aboutToBeDestroyed);
    QWidget other;
    auto* layout = new QHBoxLayout(&other);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
    view->show();
    other.resize(view->size());
    QVERIFY(KesraQtTest::ShowAndWait(other));
    QTRY_VERIFY(view->context() != nullptr && view->isVisible());
    QCOMPARE(destroyed.count(), 1);
    QVERIFY2(view->openGlError().isEmpty(), qPrintable(view->openGlError()));
    QCOMPARE(DifferentPixels(view->snapshot(), before), 0);
}

void SceneWidgetTest::keysReachTheLegendAndTheApplicationKeepsItsOwn()
{
    const auto view = Shown(KesraQtTest::Flow());
    QSignalSpy legendChanged(view.get(), &CSceneWidget::legendChanged);
    QSignalSpy frames(view.get(), &QOpenGLWidget::frameSwapped);
    QTest::keyClick(view.get(), Qt::Key_P);
    QCOMPARE(view->colorPalette(), KesraBackend::Palette::BlueRed);
    QTRY_VERIFY(frames.count() > 0);
    QTest::keyClick(view.get(), Qt::Key_B);
    QVERIFY(view->isBanded());
    QTest::keyClick(view.get(), Qt::Key_V);
    QVERIFY(view->isInverse());
    QCOMPARE(legendChanged.count(), 3);
    // A key that leaves the legend alone says nothing of it.
    QTest::keyClick(view.get(), Qt::Key_F);
    QCOMPARE(legendChanged.count(), 3);
    // The data keeps the legend's settings.
    view->setStreamlines(KesraQtTest::TwoLines());
    QCOMPARE(view->colorPalette(), KesraBackend::Palette::BlueRed);
    QVERIFY(view->isBanded() && view->isInverse());
    QCOMPARE(view->rangeMaximum(), 9.0);

    // q, s and a lone Esc reach the parent, which decides what they mean.
    QWidget parent;
    auto* child = new CSceneWidget(&parent);
    child->resize(kWidth, kHeight);
    QVERIFY(KesraQtTest::ShowAndWait(parent));
    QKeyEvent quit(QEvent::KeyPress, Qt::Key_Q, Qt::NoModifier, "q");
    QApplication::sendEvent(child, &quit);
    QVERIFY(!quit.isAccepted());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(child, &escape);
    QVERIFY(!escape.isAccepted());
    QKeyEvent palette(QEvent::KeyPress, Qt::Key_P, Qt::NoModifier, "p");
    QApplication::sendEvent(child, &palette);
    QVERIFY(palette.isAccepted());
}

void SceneWidgetTest::refusedSettingsChangeNothing()
{
    const auto view = Shown(KesraQtTest::TwoLines());
    QSignalSpy legendChanged(view.get(), &CSceneWidget::legendChanged);
    const QImage before = view->snapshot();
    view->setValueRange(3.0, 3.0);
    view->setValueRange(std::nan(""), 4.0);
    view->setBlockCount(1);
    view->setBlockCount(31);
    QCOMPARE(legendChanged.count(), 0);
    QCOMPARE(view->rangeMinimum(), 0.0);
    QCOMPARE(view->rangeMaximum(), 9.0);
    QCOMPARE(DifferentPixels(view->snapshot(), before), 0);
    view->setValueRange(2.0, 4.0);
    QCOMPARE(legendChanged.count(), 1);
    view->resetValueRange();
    QCOMPARE(legendChanged.count(), 2);
    QCOMPARE(DifferentPixels(view->snapshot(), before), 0);
}

void SceneWidgetTest::makesALargeResultsTubesPaintByPaint()
{
    // Enough nodes for several chunks of tubes.
    KesraBackend::SceneData data;
    for (int line = 0; line < 120; ++line)
    {
        KesraBackend::ScalarLine scalarLine;
        for (int node = 0; node < 4000; ++node)
        {
            const double s = node / 4000.0;
            scalarLine.points.emplace_back(s, 0.01 * line, 0.02 * std::sin(20.0 * s));
            scalarLine.values.push_back(s);
        }
        data.lines.push_back(std::move(scalarLine));
    }
    CSceneWidget view;
    view.resize(kWidth, kHeight);
    view.setStreamlines(data);
    // One chunk a paint, whatever the machine's speed.
    view.scene().SetBuildBudget(1e-9);
    QSignalSpy frames(&view, &QOpenGLWidget::frameSwapped);
    QVERIFY(KesraQtTest::ShowAndWait(view));
    const std::size_t chunks = view.scene().TubeBatch().ChunkCount();
    QVERIFY(chunks >= 3);
    // The widget asks for the next paint itself until the last chunk is made.
    QTRY_VERIFY_WITH_TIMEOUT(!view.scene().IsBuilding(), 60000);
    QVERIFY(static_cast<std::size_t>(frames.count()) >= chunks);
    // The last paint drew every tube, as a snapshot does.
    QTRY_COMPARE(DifferentPixels(view.grabFramebuffer(), view.snapshot()), 0);
}

QTEST_MAIN(SceneWidgetTest)
#include "SceneWidgetTest.moc"
