// kesra-qt-viewer's main window on an X server: a file opens and is
// remembered, every control of the settings dock changes the picture and
// changing it back brings the picture back, the view follows keys, and the
// status bar counts the nodes and names the value under the cursor.
#include "QtTestSupport.h"

#include "MainWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <functional>

using KesraQt::CSceneWidget;
using KesraQtTest::DifferentPixels;
using KesraQtViewer::MainWindow;

namespace
{

// Two polylines coloured by a point scalar from 0 to 7.
const char* const kLines = "# vtk DataFile Version 3.0\n"
                           "lines\n"
                           "ASCII\n"
                           "DATASET POLYDATA\n"
                           "POINTS 8 float\n"
                           "0 0 0  1 0.2 0  2 0.1 0.3  3 0 0.5\n"
                           "0 1 0  1 1.3 0.2  2 1.2 0.1  3 1 0\n"
                           "LINES 2 10\n"
                           "4 0 1 2 3\n"
                           "4 4 5 6 7\n"
                           "POINT_DATA 8\n"
                           "SCALARS pressure double 1\n"
                           "LOOKUP_TABLE default\n"
                           "0 1 2 3 4 5 6 7\n";

QString WriteFile(const QTemporaryDir& directory, const QString& name, const char* text)
{
    const QString path = directory.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
    {
        file.write(text);
    }
    return path;
}

} // namespace

class QtViewerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void opensAFileAndRemembersIt();
    void refusesABadFileAndKeepsTheScene();
    void everyLegendControlChangesThePictureAndReverts();
    void viewButtonsTurnAndZoomAllFits();
    void panelFollowsTheKeys();
    void statusBarNamesTheValueUnderTheCursor();

private:
    // The main window shown with the lines file.
    void Open(MainWindow& window);
    // Changes the picture through change and brings it back through revert.
    void ChangesAndReverts(const char* what, MainWindow& window, const std::function<void()>& change,
                           const std::function<void()>& revert);

    QTemporaryDir m_directory;
    QString m_lines;
};

void QtViewerTest::initTestCase()
{
    // Recent files go to a settings file of the test's own.
    QStandardPaths::setTestModeEnabled(true);
    QApplication::setOrganizationName("KesraEngineTest");
    QApplication::setApplicationName("QtViewerTest");
    QVERIFY(m_directory.isValid());
    m_lines = WriteFile(m_directory, "lines.vtk", kLines);
}

void QtViewerTest::init()
{
    QSettings().clear();
}

void QtViewerTest::Open(MainWindow& window)
{
    QString error;
    QVERIFY2(window.OpenFile(m_lines, error), qPrintable(error));
    window.resize(900, 600);
    QVERIFY(KesraQtTest::ShowAndWait(window));
}

void QtViewerTest::opensAFileAndRemembersIt()
{
    MainWindow window;
    Open(window);
    QCOMPARE(window.windowTitle(), QString("lines.vtk - kesra-qt-viewer"));
    QCOMPARE(window.View().streamlines().valueName, std::string("pressure"));
    QCOMPARE(window.findChild<QLabel*>("nodes")->text(), QString("8 nodes"));
    QCOMPARE(window.RecentFiles(), QStringList{m_lines});
    auto* recent = window.findChild<QMenu*>("recent");
    QCOMPARE(recent->actions().size(), 1);

    // The flow, then the file again from the menu: it moves to the top once.
    QString error;
    const QString other = WriteFile(m_directory, "other.vtk", kLines);
    QVERIFY(window.OpenFile(other, error));
    QCOMPARE(window.RecentFiles(), (QStringList{other, m_lines}));
    recent->actions().at(1)->trigger();
    QCOMPARE(window.RecentFiles(), (QStringList{m_lines, other}));
    QCOMPARE(window.windowTitle(), QString("lines.vtk - kesra-qt-viewer"));
    QVERIFY(window.OpenFile(QString(), error));
    QCOMPARE(window.View().nodeCount(), 1422);
    QCOMPARE(window.RecentFiles().size(), 2);
    for (int i = 0; i < MainWindow::kRecentFiles + 2; ++i)
    {
        QVERIFY(window.OpenFile(WriteFile(m_directory, QString("f%1.vtk").arg(i), kLines), error));
    }
    QCOMPARE(window.RecentFiles().size(), MainWindow::kRecentFiles);
    QVERIFY(window.RecentFiles().first().endsWith("f9.vtk"));
}

void QtViewerTest::refusesABadFileAndKeepsTheScene()
{
    MainWindow window;
    Open(window);
    const QImage before = window.View().snapshot();
    const QString bad = WriteFile(m_directory, "bad.vtk", "# vtk DataFile Version 3.0\nlines\nASCII\n"
                                                          "DATASET POLYDATA\nPOINTS 3 float\n0 0 0 1 1\n");
    QString error;
    QVERIFY(!window.OpenFile(bad, error));
    QVERIFY2(error.contains("bad.vtk"), qPrintable(error));
    QCOMPARE(DifferentPixels(window.View().snapshot(), before), 0);
    QCOMPARE(window.RecentFiles(), QStringList{m_lines});
}

void QtViewerTest::ChangesAndReverts(const char* what, MainWindow& window, const std::function<void()>& change,
                                     const std::function<void()>& revert)
{
    const QImage before = window.View().snapshot();
    change();
    KesraQtTest::WaitForStill(window.View());
    QVERIFY2(DifferentPixels(window.View().snapshot(), before, 8) > 50, what);
    revert();
    KesraQtTest::WaitForStill(window.View());
    QVERIFY2(DifferentPixels(window.View().snapshot(), before, 2) < 20, what);
}

void QtViewerTest::everyLegendControlChangesThePictureAndReverts()
{
    MainWindow window;
    Open(window);
    auto* palette = window.findChild<QComboBox*>("palette");
    auto* banded = window.findChild<QCheckBox*>("banded");
    auto* blocks = window.findChild<QSpinBox*>("blocks");
    auto* inverse = window.findChild<QCheckBox*>("inverse");
    auto* minimum = window.findChild<QDoubleSpinBox*>("minimum");
    auto* maximum = window.findChild<QDoubleSpinBox*>("maximum");
    auto* dataRange = window.findChild<QPushButton*>("dataRange");
    QVERIFY(palette && banded && blocks && inverse && minimum && maximum && dataRange);
    // The four first palettes and the published ones, each by its own name.
    QCOMPARE(palette->count(), 8);
    QCOMPARE(palette->itemText(4), QString("Viridis"));
    QCOMPARE(palette->itemText(6), QString("Cool to warm"));
    QCOMPARE(palette->itemText(7), QString("Turbo"));
    QVERIFY(!blocks->isEnabled());

    for (int index = 1; index < palette->count(); ++index)
    {
        ChangesAndReverts("palette", window, [&] { palette->setCurrentIndex(index); },
                          [&] { palette->setCurrentIndex(0); });
    }
    ChangesAndReverts("banded", window, [&] { banded->click(); }, [&] { banded->click(); });
    banded->click();
    QVERIFY(blocks->isEnabled());
    const int count = blocks->value();
    ChangesAndReverts("blocks", window, [&] { blocks->setValue(3); }, [&] { blocks->setValue(count); });
    QCOMPARE(window.View().blockCount(), count);
    banded->click();
    ChangesAndReverts("inverse", window, [&] { inverse->click(); }, [&] { inverse->click(); });
    ChangesAndReverts("minimum", window, [&] { minimum->setValue(3.0); }, [&] { minimum->setValue(0.0); });
    ChangesAndReverts("maximum", window, [&] { maximum->setValue(4.0); }, [&] { dataRange->click(); });
    QCOMPARE(window.View().rangeMaximum(), 7.0);
    QCOMPARE(maximum->value(), 7.0);
    // A minimum above the maximum is refused; the box shows the legend again.
    minimum->setValue(9.0);
    QCOMPARE(window.View().rangeMinimum(), 0.0);
    QCOMPARE(minimum->value(), 0.0);
}

void QtViewerTest::viewButtonsTurnAndZoomAllFits()
{
    MainWindow window;
    Open(window);
    for (const KesraBackend::NamedView& entry : KesraBackend::kViews)
    {
        if (entry.value == KesraBackend::View::Iso)
        {
            continue;
        }
        auto* button = window.findChild<QPushButton*>(QString("view-") + entry.name);
        auto* iso = window.findChild<QPushButton*>("view-iso");
        QVERIFY(button && iso);
        ChangesAndReverts(entry.name, window, [&] { button->click(); }, [&] { iso->click(); });
    }
    auto* fit = window.findChild<QPushButton*>("zoomAll");
    CSceneWidget& view = window.View();
    ChangesAndReverts(
        "zoom all", window,
        [&] {
            QWheelEvent notch(QPointF(50, 50), view.mapToGlobal(QPointF(50, 50)), QPoint(), QPoint(0, 360),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(&view, &notch);
        },
        [&] { fit->click(); });
}

void QtViewerTest::panelFollowsTheKeys()
{
    MainWindow window;
    Open(window);
    auto* palette = window.findChild<QComboBox*>("palette");
    auto* banded = window.findChild<QCheckBox*>("banded");
    auto* inverse = window.findChild<QCheckBox*>("inverse");
    QTest::keyClick(&window.View(), Qt::Key_P);
    QCOMPARE(palette->currentIndex(), 1);
    QTest::keyClick(&window.View(), Qt::Key_B);
    QVERIFY(banded->isChecked());
    QTest::keyClick(&window.View(), Qt::Key_V);
    QVERIFY(inverse->isChecked());
}

void QtViewerTest::statusBarNamesTheValueUnderTheCursor()
{
    MainWindow window;
    Open(window);
    CSceneWidget& view = window.View();
    auto* value = window.findChild<QLabel*>("value");
    // Node 2 of the second line, value 6, where the camera draws it.
    KesraEngine::CKesraCamera::Vector drawn;
    view.scene().Camera().ProjectPointWorldToView(view.streamlines().lines[1].points[2], drawn);
    const QPoint at(static_cast<int>(drawn.x), view.height() - 1 - static_cast<int>(drawn.y));
    QTest::mouseMove(&view, at);
    QTRY_COMPARE(value->text(), QString("pressure 6"));
    QTest::mouseMove(&view, QPoint(5, view.height() - 5));
    QTRY_COMPARE(value->text(), QString());
}

QTEST_MAIN(QtViewerTest)
#include "QtViewerTest.moc"
