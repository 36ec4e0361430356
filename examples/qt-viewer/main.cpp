// kesra-qt-viewer: the Qt widget component in an application's main window.
//   kesra-qt-viewer [--screenshot FILE.png] [FILE]
// Without a file it shows the flow past a sphere; File > Open reads another.
// --screenshot writes the whole window as it first shows, then exits. A file
// that cannot be read exits with 2 and says why, a screenshot that cannot be
// written with 1.
#include "MainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QSurfaceFormat>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    // Every OpenGL widget of the application shares one format: the scene's.
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);

    QApplication application(argc, argv);
    QApplication::setOrganizationName("KesraEngine");
    QApplication::setApplicationName("kesra-qt-viewer");
    QCommandLineParser parser;
    parser.setApplicationDescription("Streamline results in a Qt window");
    parser.addHelpOption();
    parser.addPositionalArgument("file", "A .vtk, .vtp, .pvtp or .vtm file of polylines");
    const QCommandLineOption screenshot("screenshot", "Write the window to FILE.png and exit", "FILE.png");
    parser.addOption(screenshot);
    parser.process(application);
    const QStringList files = parser.positionalArguments();

    KesraQtViewer::MainWindow window;
    QString error;
    if (!window.OpenFile(files.isEmpty() ? QString() : files.first(), error))
    {
        std::fprintf(stderr, "kesra-qt-viewer: %s\n", error.toLocal8Bit().constData());
        return 2;
    }
    window.resize(1200, 800);
    window.show();
    if (parser.isSet(screenshot))
    {
        // Once the window has shown and drawn its first frames.
        QTimer::singleShot(500, &window, [&window, &parser, &screenshot] {
            const QString path = parser.value(screenshot);
            const bool saved = window.grab().save(path, "PNG");
            if (!saved)
            {
                std::fprintf(stderr, "kesra-qt-viewer: cannot write %s\n", path.toLocal8Bit().constData());
            }
            QApplication::exit(saved ? 0 : 1);
        });
    }
    return QApplication::exec();
}
