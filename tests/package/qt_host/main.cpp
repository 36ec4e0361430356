// A host of the Qt widget component: it builds against the installed widget
// and feeds it two lines and a legend setting. The widget is never shown, so
// no display or OpenGL context is needed: the offscreen platform does.
#include "qt/SceneWidget.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    KesraQt::CSceneWidget view;
    KesraBackend::SceneData data;
    data.valueName = "p";
    data.lines.push_back({{{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}}, {0.0, 1.0, 2.0}, {}});
    view.setStreamlines(data);
    view.setColorPalette(KesraBackend::Palette::Gray);
    if (view.nodeCount() != 3 || view.rangeMaximum() != 2.0 || view.colorPalette() != KesraBackend::Palette::Gray)
    {
        std::fprintf(stderr, "qt-host: %d nodes, range up to %g\n", view.nodeCount(), view.rangeMaximum());
        return 1;
    }
    std::printf("qt-host: %d nodes, legend [%g, %g]\n", view.nodeCount(), view.rangeMinimum(), view.rangeMaximum());
    return 0;
}
