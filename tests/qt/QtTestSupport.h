// Shared pieces of the Qt widget tests: the scenes they show, the headless
// picture of a scene to compare with, and picture comparison.
#pragma once

#include "Flow.h"
#include "gl/EglContext.h"
#include "gl/GlScene.h"
#include "qt/SceneWidget.h"

#include <QApplication>
#include <QImage>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace KesraQtTest
{

// The flow past a sphere, traced once for all tests.
inline const KesraBackend::SceneData& Flow()
{
    static const KesraBackend::SceneData data = KesraExamples::FlowSceneData();
    return data;
}

// Two short polylines with a value at every point.
inline KesraBackend::SceneData TwoLines()
{
    KesraBackend::SceneData data;
    data.title = "two lines";
    data.valueName = "p";
    for (int l = 0; l < 2; ++l)
    {
        KesraBackend::ScalarLine line;
        for (int i = 0; i < 5; ++i)
        {
            line.points.emplace_back(i, l + 0.3 * i, 0.2 * l * i);
            line.values.push_back(5.0 * l + i);
        }
        data.lines.push_back(line);
    }
    return data;
}

// The same scene drawn headless through EGL at width x height, as
// kesra-viewer --headless draws it; a null image without EGL.
inline QImage HeadlessPicture(const KesraBackend::SceneData& data, int width, int height)
{
    KesraGl::CEglContext context;
    KesraGl::CGlScene scene(context, data, width, height);
    if (!scene.CreateContext())
    {
        return QImage();
    }
    const std::vector<unsigned char> rgba = scene.Capture();
    QImage image(width, height, QImage::Format_RGBA8888);
    const std::size_t row = static_cast<std::size_t>(width) * 4;
    for (int y = 0; y < height; ++y)
    {
        std::memcpy(image.scanLine(y), &rgba[static_cast<std::size_t>(height - 1 - y) * row], row);
    }
    return image;
}

// Pixels whose red, green or blue differ by more than tolerance.
inline int DifferentPixels(const QImage& a, const QImage& b, int tolerance = 0)
{
    if (a.size() != b.size())
    {
        return a.width() * a.height() + 1;
    }
    const QImage left = a.convertToFormat(QImage::Format_RGBA8888);
    const QImage right = b.convertToFormat(QImage::Format_RGBA8888);
    int different = 0;
    for (int y = 0; y < left.height(); ++y)
    {
        const uchar* p = left.constScanLine(y);
        const uchar* q = right.constScanLine(y);
        for (int x = 0; x < left.width(); ++x)
        {
            for (int c = 0; c < 3; ++c)
            {
                if (std::abs(p[4 * x + c] - q[4 * x + c]) > tolerance)
                {
                    ++different;
                    break;
                }
            }
        }
    }
    return different;
}

// Shows widget and waits until it has drawn its first frame.
inline bool ShowAndWait(QWidget& widget)
{
    widget.show();
    return QTest::qWaitForWindowExposed(&widget);
}

// Lets a smooth turn run to its end.
inline bool WaitForStill(KesraQt::CSceneWidget& view)
{
    return QTest::qWaitFor([&view] { return !view.scene().IsAnimating(); }, 10000);
}

} // namespace KesraQtTest
