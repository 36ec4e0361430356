// A small scene drawn by the reference SVG backend, shared by the backend's
// tests and by the writer whose output the XML check parses: two tubes that
// cross on the picture at different depths (the near one red, the far one
// blue), a legend, a ruler, an axis triad, one tip and a drag under way, seen
// from the front in a 400 x 300 window.
#pragma once

#include "svg/SvgAxis.h"
#include "svg/SvgCamera.h"
#include "svg/SvgDraggedArea.h"
#include "svg/SvgLight.h"
#include "svg/SvgRenderer.h"
#include "svg/SvgRuler.h"
#include "svg/SvgScalarBar.h"
#include "svg/SvgStreamline.h"
#include "svg/SvgTipManager.h"

#include <string>

namespace KesraTest
{

struct SmallSvgScene
{
    static constexpr int kWidth = 400;
    static constexpr int kHeight = 300;

    KesraSvg::CSvgRenderer renderer{kWidth, kHeight};
    KesraSvg::CSvgCamera camera{kWidth, kHeight};
    KesraSvg::CSvgLight light{renderer};
    KesraSvg::CSvgFont font;
    KesraSvg::CSvgScalarBar legend;
    KesraSvg::CSvgRuler ruler;
    KesraSvg::CSvgAxis axis{renderer};
    KesraSvg::CSvgDraggedArea drag{renderer, kWidth, kHeight};
    KesraSvg::CSvgStreamlineFactory tubeFactory;
    KesraSvg::CSvgTipManagerFactory tipFactory;
    KesraSvg::CSvgStreamline* nearTube = nullptr;
    KesraSvg::CSvgStreamline* farTube = nullptr;
    KesraEngine::CKesraTipManager* tips = nullptr;

    SmallSvgScene()
    {
        renderer.CreateContext();
        renderer.SetCamera(&camera);
        renderer.SetFont(&font);
        renderer.SetName("Two tubes <&> \"crossing\"");
        light.Apply();
        legend.Create(kWidth, kHeight, kWidth - 90, 30);
        legend.SetTitle("Value", false);
        legend.SetUnit("[1]");
        legend.SetValueRange(0.0, 10.0, true, true);
        ruler.Create(kWidth, kHeight, 150, 10);
        axis.Create(kWidth, kHeight);
        // In the front view y points away from the viewer: y = -0.5 is near.
        nearTube = MakeTube(-0.5, -0.5, 0.5, 255, 0, 0);
        farTube = MakeTube(0.5, 0.5, -0.5, 0, 0, 255);
        tips = tipFactory.CreateTipManager();
        const double point[3] = {0.0, -0.5, 0.0};
        const double label[3] = {0.0, -0.5, 0.9};
        tips->InsertTip("crossing", point, label);
        renderer.SetScalarBar(&legend);
        renderer.SetRuler(&ruler);
        renderer.SetAxis(&axis);
        renderer.SetTipManager(tips);
        renderer.SetDraggedArea(&drag);
        drag.SetEanble(true);
        drag.OnMouseDown(20, 20);
        drag.OnMouseMove(60, 50);

        const float box[6] = {-1.2f, 1.2f, -1.0f, 1.0f, -1.0f, 1.0f};
        camera.ZoomAll(box);
        camera.SetRotateMatrixToFrontView(false);
        ruler.SetOpenGLScale(1.0f / camera.GetScale());
        axis.SetRotateMatrix(camera.GetRotateMatrix());
    }

    // A tube from (-1, y, z0) to (1, y, z1) in one colour.
    KesraSvg::CSvgStreamline* MakeTube(double y, double z0, double z1, unsigned char red,
                                       unsigned char green, unsigned char blue)
    {
        KesraSvg::CSvgStreamline* tube = tubeFactory.MakeStreamline();
        tube->Create(5, 8, 0.1, 1.0);
        for (int i = 0; i < 5; ++i)
        {
            const double t = i / 4.0;
            double xyz[3] = {-1.0 + 2.0 * t, y, z0 + (z1 - z0) * t};
            tube->SetNodeCoord(i, xyz);
            tube->SetStreamlineNodeColor(i, red, green, blue, 255);
        }
        tube->GenerationStreamline3D();
        renderer.AddStreamline(tube);
        return tube;
    }

    const std::string& Render()
    {
        renderer.Render();
        return renderer.GetDocument();
    }
};

} // namespace KesraTest
