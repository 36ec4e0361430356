#include "support/SvgScene.h"
#include "svg/SvgSheet.h"
#include "svg/SvgWriter.h"

#include <gtest/gtest.h>

#include <limits>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace
{

using KesraSvg::FormatNumber;
using KesraTest::SmallSvgScene;
using Vector = KesraMathKit::TKesraVector3<double>;

int Count(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    {
        ++count;
    }
    return count;
}

// The fills of the tubes' polygons, in painting order.
std::vector<std::string> TubeFills(const std::string& svg)
{
    const std::size_t begin = svg.find("class=\"tubes\"");
    const std::string tubes = svg.substr(begin, svg.find("</g>", begin) - begin);
    std::vector<std::string> fills;
    const std::regex fill("<polygon points=\"[^\"]*\" fill=\"(#[0-9a-f]{6})\"");
    for (std::sregex_iterator it(tubes.begin(), tubes.end(), fill), end; it != end; ++it)
    {
        fills.push_back((*it)[1]);
    }
    return fills;
}

TEST(SvgWriterTest, EscapesTextAndWritesCompactNumbers)
{
    EXPECT_EQ(KesraSvg::EscapeXml("a<b>&\"c'\x01"), "a&lt;b&gt;&amp;&quot;c&apos; ");
    // Valid UTF-8 passes; a lone byte above 127 is read as Latin-1.
    EXPECT_EQ(KesraSvg::EscapeXml("\xC3\x97 \xE9"), "\xC3\x97 \xC3\xA9");
    EXPECT_EQ(FormatNumber(12.50, 2), "12.5");
    EXPECT_EQ(FormatNumber(3.0, 1), "3");
    EXPECT_EQ(FormatNumber(-0.04, 1), "0");
    EXPECT_EQ(FormatNumber(std::numeric_limits<double>::quiet_NaN(), 2), "0");
    EXPECT_EQ(FormatNumber(-2e300, 1), "-2.000000000e+300");
    KesraSvg::CSvgWriter writer;
    writer.Open("g");
    writer.Attribute("id", "x");
    writer.Open("rect");
    writer.Open("text");
    writer.Text("1 < 2");
    EXPECT_EQ(writer.Finish(), "<g id=\"x\"><rect><text>1 &lt; 2</text></rect></g>\n");
}

TEST(SvgSceneTest, FrameHoldsEveryPart)
{
    SmallSvgScene scene;
    const std::string& svg = scene.Render();
    for (const char* part : {"class=\"background\"", "<linearGradient", "class=\"tubes\"",
                             "class=\"legend\"", "class=\"ruler\"", "class=\"axis\"",
                             "class=\"tips\"", "class=\"dragged-area\"", "class=\"title\"",
                             ">crossing<", ">Two tubes &lt;&amp;&gt; &quot;crossing&quot;<",
                             ">Value<", ">[1]<", ">X<", ">Y<", ">Z<"})
    {
        EXPECT_NE(svg.find(part), std::string::npos) << part;
    }
    // Text in the font's face and size.
    EXPECT_NE(svg.find("font-family=\"&apos;Arial&apos;, sans-serif\" font-size=\"14\""),
              std::string::npos);
    // The drag is drawn only while under way; a flat background has no gradient.
    scene.drag.OnMouseUp(60, 50);
    scene.renderer.SetGradient(0);
    const std::string& after = scene.Render();
    EXPECT_EQ(after.find("dragged-area"), std::string::npos);
    EXPECT_EQ(after.find("<linearGradient id=\"background"), std::string::npos);
}

TEST(SvgSceneTest, LegendSwatchesCarryTheColoursOfTheirValues)
{
    for (const int banded : {0, 1})
    {
        SmallSvgScene scene;
        scene.legend.SetColorPaletteGreenRed();
        scene.legend.SetBanded(banded);
        scene.legend.SetBlockNum(5);
        for (KesraSvg::CSvgStreamline* tube : {scene.nearTube, scene.farTube})
        {
            tube->SetNodeValues({0.0, 2.5, 5.0, 7.5, 10.0}, &scene.legend);
        }
        scene.renderer.SetShadingLight(nullptr); // tubes in their base colours
        const std::string& svg = scene.Render();
        const std::regex swatch(banded ? "fill=\"#([0-9a-f]{6})\"[^>]*data-value=\"([^\"]+)\""
                                       : "stop-color=\"#([0-9a-f]{6})\" data-value=\"([^\"]+)\"");
        std::vector<double> values;
        std::set<std::string> colours;
        for (std::sregex_iterator it(svg.begin(), svg.end(), swatch), end; it != end; ++it)
        {
            unsigned char rgb[3];
            values.push_back(std::stod((*it)[2]));
            scene.legend.GetOpenGLColor(rgb[0], rgb[1], rgb[2], values.back());
            EXPECT_EQ((*it)[1].str(), KesraSvg::HexColor(rgb[0], rgb[1], rgb[2]).substr(1));
            colours.insert("#" + (*it)[1].str());
        }
        // Block middles, or 32 equal steps from the minimum 0 to the maximum 10.
        ASSERT_EQ(values.size(), banded ? 5u : 33u);
        for (std::size_t k = 0; k < values.size(); ++k)
        {
            EXPECT_EQ(values[k], banded ? 2.0 * k + 1.0 : 10.0 * k / 32) << k;
        }
        // Banded, a stretch whose two nodes lie in different blocks is still
        // in a swatch's colour.
        for (const std::string& fill : banded ? TubeFills(svg) : std::vector<std::string>())
        {
            EXPECT_EQ(colours.count(fill), 1u) << fill;
        }
    }
}

TEST(SvgSceneTest, LegendLabelsTakeThePowerOfTen)
{
    SmallSvgScene scene;
    scene.legend.SetValueRange(0.0, 25000.0, true, true);
    scene.legend.SetValueFormat(3, 1);
    const std::string& svg = scene.Render();
    // Five digits where three are wanted: labels in thousands.
    const int exponent = KesraEngine::CKesraScalarBar::GetExponentialBase(0.0, 25000.0, 3);
    ASSERT_EQ(exponent, 3);
    EXPECT_NE(svg.find(">25.0<"), std::string::npos);
    EXPECT_TRUE(std::regex_search(svg, std::regex(">\\[1\\] \xC3\x97" "10<tspan[^>]*>3</tspan>")));
    EXPECT_EQ(scene.legend.IsModified(), 0);
}

TEST(SvgSceneTest, OverlayTextsReadOverTheSceneAndATipOutOfViewIsPinned)
{
    SmallSvgScene scene;
    std::string svg = scene.Render();
    // The legend's panel first, under the bar; the title and the ruler's
    // labels over white halos (their ink is dark on the light background).
    const std::size_t legend = svg.find("<g class=\"legend\"><g class=\"panel\" fill-opacity=\"0.75\"><rect");
    EXPECT_NE(legend, std::string::npos);
    EXPECT_LT(legend, svg.find("linearGradient", legend));
    const std::string halo = "stroke=\"#ffffff\" stroke-opacity=\"0.63\" stroke-width=\"3\"";
    EXPECT_NE(svg.find(halo, svg.find("class=\"title\"")), std::string::npos);
    const std::size_t ruler = svg.find("class=\"ruler\"");
    EXPECT_LT(svg.find(halo, ruler), svg.find("</g>", ruler));
    EXPECT_EQ(Count(svg, "class=\"pin\""), 0);

    // The tip's point far right of the view: an arrow at the edge instead
    // of the point.
    const double point[3] = {40.0, -0.5, 0.0};
    const double label[3] = {0.0, -0.5, 0.5};
    scene.tips->InsertTip("far away", point, label);
    svg = scene.Render();
    const std::regex pin("<polygon class=\"pin\" points=\"([0-9.]+),");
    std::smatch match;
    ASSERT_TRUE(std::regex_search(svg, match, pin));
    EXPECT_EQ(std::stod(match[1]), SmallSvgScene::kWidth - KesraBackend::kTipPinInset
                                       + 0.5 * KesraBackend::kTipArrow);
}

TEST(SvgSceneTest, TubeCornerLandsWhereTheCameraProjectsIt)
{
    SmallSvgScene scene;
    const std::string& svg = scene.Render();
    // The vertex of node 1 that faces the viewer most (normal along -y).
    double corner[3];
    double normal[3];
    double facing = 0.0;
    for (int j = 0; j < 8; ++j)
    {
        ASSERT_TRUE(scene.nearTube->GetSliceNodeNormal(1, j, normal));
        if (normal[1] < facing)
        {
            facing = normal[1];
            ASSERT_TRUE(scene.nearTube->GetSliceNodeCoord(1, j, corner));
        }
    }
    ASSERT_LT(facing, -0.9);
    Vector window;
    scene.camera.ProjectPointWorldToView(Vector(corner[0], corner[1], corner[2]), window);
    const std::string point = FormatNumber(window.x, 1) + "," +
                              FormatNumber(SmallSvgScene::kHeight - window.y, 1);
    EXPECT_NE(svg.find(point), std::string::npos) << point;
}

TEST(SvgSceneTest, TubesArePaintedBackToFrontOverAllTubes)
{
    SmallSvgScene scene;
    scene.light.TurnOff(); // flat colours: one fill per tube
    const std::vector<std::string> fills = TubeFills(scene.Render());
    const std::string nearFill = KesraSvg::HexColor(82, 0, 0);
    const std::string farFill = KesraSvg::HexColor(0, 0, 82);
    std::size_t lastFar = 0;
    std::size_t firstNear = fills.size();
    for (std::size_t i = 0; i < fills.size(); ++i)
    {
        ASSERT_TRUE(fills[i] == nearFill || fills[i] == farFill) << fills[i];
        lastFar = fills[i] == farFill ? i : lastFar;
        firstNear = fills[i] == nearFill ? std::min(firstNear, i) : firstNear;
    }
    EXPECT_LT(lastFar, firstNear);
    // Only faces toward the viewer are painted: half of each tube's 32.
    EXPECT_EQ(fills.size(), 32u);
}

TEST(SvgCameraTest, MouseWorkMovesTheCamera)
{
    KesraSvg::CSvgCamera camera(400, 300);
    const Vector centre(0.0, 0.0, 0.0);
    Vector at;
    camera.BeginPan(100, 100);
    camera.Pan(130, 90);
    camera.EndInteraction();
    camera.Pan(300, 300); // ignored after the end
    camera.ProjectPointWorldToView(centre, at);
    EXPECT_NEAR(at.x, 230.0, 1e-9);
    EXPECT_NEAR(at.y, 140.0, 1e-9);

    // The model point under the wheel stays put.
    Vector before;
    const Vector point(-50.0, 20.0, 0.0);
    camera.ProjectPointWorldToView(point, before);
    camera.WheelZoom(static_cast<int>(before.x), static_cast<int>(before.y), 3);
    EXPECT_NEAR(camera.GetScale(), 0.729, 1e-6);
    camera.ProjectPointWorldToView(point, at);
    EXPECT_NEAR(at.x, before.x, 0.01);
    EXPECT_NEAR(at.y, before.y, 0.01);

    // The rectangle's centre moves to the middle, its wider side fills.
    camera.SetScale(1.0f);
    camera.SetTranslation(0.0f, 0.0f);
    camera.ZoomToRectangle(250, 200, 350, 250);
    camera.ProjectPointWorldToView(Vector(100.0, 75.0, 0.0), at);
    EXPECT_NEAR(at.x, 200.0, 1e-4);
    EXPECT_NEAR(at.y, 150.0, 1e-4);
    EXPECT_FLOAT_EQ(camera.GetScale(), 0.25f);

    // Dragging up zooms in; dragging right turns the front (+z) to the right.
    camera.BeginZoom(0, 0);
    camera.Zoom(0, 10);
    EXPECT_LT(camera.GetScale(), 0.25f);
    camera.BeginRotate(0, 0);
    camera.Rotate(180, 0);
    const auto& rotation = camera.GetRotateMatrix();
    EXPECT_NEAR(rotation[8], 1.0, 1e-12); // model z now along view x
}

TEST(SvgDraggedAreaTest, RecordsTheDragAsTheMouseMoves)
{
    SmallSvgScene scene;
    KesraSvg::CSvgDraggedArea area(scene.renderer, 400, 300);
    EXPECT_FALSE(area.OnMouseDown(5, 5)); // not enabled
    area.SetEanble(true);
    std::vector<int> selected;
    area.SetAreaHandler([&](int x0, int y0, int x1, int y1) { selected = {x0, y0, x1, y1}; });
    EXPECT_TRUE(area.OnMouseDown(10, 20));
    EXPECT_TRUE(area.OnMouseMove(30, 40));
    EXPECT_TRUE(area.IsDragged());
    EXPECT_TRUE(scene.renderer.IsRedrawRequested());
    int x = 0;
    int y = 0;
    area.GetMouseEnd(x, y);
    EXPECT_EQ(x, 30);
    EXPECT_EQ(y, 40);
    EXPECT_TRUE(area.OnMouseUp(50, 60));
    EXPECT_FALSE(area.IsDragged());
    EXPECT_EQ(selected, (std::vector<int>{10, 20, 50, 60}));
    EXPECT_FALSE(area.OnMouseMove(1, 1));
}

TEST(SvgRendererTest, PixelQueriesDoNotApplyAndNoContextWritesNothing)
{
    KesraSvg::CSvgRenderer renderer(20, 10);
    unsigned char pixel[4];
    EXPECT_FALSE(renderer.ReadPixels(0, 0, 1, 1, pixel));
    EXPECT_EQ(renderer.ReadDepth(0, 0), 1.0f);
    renderer.Render();
    EXPECT_TRUE(renderer.GetDocument().empty());
    EXPECT_TRUE(renderer.CreateContext());
    renderer.SetDoubleBuffer(false);
    renderer.Render();
    EXPECT_NE(renderer.GetDocument().find("width=\"20\" height=\"10\""), std::string::npos);
    // Render presents its frame; a host's own swap after it keeps that frame.
    renderer.SetDoubleBuffer(true);
    renderer.Resize(30, 10);
    renderer.Render();
    renderer.SwapBuffers();
    EXPECT_NE(renderer.GetDocument().find("width=\"30\" height=\"10\""), std::string::npos);
}

TEST(SvgSheetTest, SheetNestsEveryFrame)
{
    SmallSvgScene scene;
    std::vector<KesraSvg::SheetCell> cells;
    for (int i = 0; i < 7; ++i)
    {
        scene.renderer.SetIdPrefix("v" + std::to_string(i));
        cells.push_back({"view " + std::to_string(i), scene.Render(), 400, 300});
    }
    const std::string sheet = KesraSvg::ComposeSheet("Sheet", cells, 3, 200, 150);
    EXPECT_EQ(Count(sheet, "class=\"view\""), 7);
    EXPECT_EQ(Count(sheet, "<?xml"), 1);
    EXPECT_EQ(Count(sheet, "id=\"v6background0\""), 1);
    // A frame that is only its declaration nests as nothing.
    EXPECT_EQ(Count(KesraSvg::ComposeSheet("", {{"bare", "<?xml?> \n", 1, 1}}, 1, 1, 1), "<?xml"), 1);
}

} // namespace
