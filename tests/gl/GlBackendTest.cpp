// The OpenGL backend drawn headlessly on llvmpipe: what lands in the pixels
// and the depth buffer, and when the tubes' buffers are filled. The camera's
// mouse operations are every backend's (MouseNavigationTest, SvgCameraTest).
#include "GlTestSupport.h"

#include "gl/GlCamera.h"
#include "gl/GlDraggedArea.h"
#include "gl/GlLight.h"
#include "gl/GlProgram.h"
#include "gl/GlScalarBar.h"
#include "gl/GlStreamline.h"

#include <cmath>
#include <string>
#include <vector>

namespace
{

using KesraGl::CGlCamera;
using KesraGl::Color;
using KesraGl::CGlStreamline;
using KesraTest::ColorNear;
using KesraTest::HeadlessRenderer;
using KesraTest::PixelAt;
using Vector = KesraEngine::CKesraCamera::Vector;

constexpr int kWidth = 200;
constexpr int kHeight = 150;

// A straight tube through points, node i coloured colors[i].
void MakeTube(CGlStreamline& tube, const std::vector<Vector>& points, const std::vector<Color>& colors,
              double radius)
{
    ASSERT_TRUE(tube.Create(static_cast<int>(points.size()), 12, radius, 1.0));
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        double xyz[3] = {points[i].x, points[i].y, points[i].z};
        tube.SetNodeCoord(static_cast<int>(i), xyz);
        tube.SetStreamlineNodeColor(static_cast<int>(i), colors[i].red, colors[i].green,
                                    colors[i].blue, 255);
    }
    ASSERT_TRUE(tube.GenerationStreamline3D());
}

// A camera looking down the model's z axis (identity rotation) at scale
// model units per pixel, centred on the origin.
void LookDownZ(CGlCamera& camera, float scale)
{
    camera.SetRotateMatrixNoEventHandler(KesraMathKit::TKesraMatrix4<double>::IDENTITY);
    camera.SetRotateCenter(0.0f, 0.0f, 0.0f);
    camera.SetScaleNoEventHandler(scale);
}

// The window pixel that holds the projection of p.
void PixelOf(CGlCamera& camera, const Vector& p, int& x, int& y, double& depth)
{
    Vector view;
    camera.ProjectPointWorldToView(p, view);
    x = static_cast<int>(std::floor(view.x));
    y = static_cast<int>(std::floor(view.y));
    depth = view.z;
}

// A headless renderer and a camera looking down the model's z axis at
// 0.02 model units per pixel.
class GlScene : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(gl.created);
        LookDownZ(camera, scale);
        gl.renderer.SetCamera(&camera);
    }

    const float scale = 0.02f;
    HeadlessRenderer gl{kWidth, kHeight};
    CGlCamera camera{kWidth, kHeight};
};

class GlTubes : public GlScene
{
};

class GlLight : public GlScene
{
};

TEST(GlLegend, SwatchesAndRowsShowTheMappingsOwnBytes)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    KesraGl::CGlScalarBar legend;
    legend.SetValueRange(-2.0, 6.0, true, true);
    legend.SetBlockNum(6);
    ASSERT_TRUE(legend.Create(kWidth, kHeight, 80, 8));
    gl.renderer.SetScalarBar(&legend);
    float left, bottom, width, height;
    legend.BarRect(left, bottom, width, height);
    ASSERT_GT(height, 40.0f);
    const int x = static_cast<int>(left + 0.5f * width);

    for (const int inverse : {0, 1})
    {
        SCOPED_TRACE(inverse);
        legend.SetInverse(inverse);
        legend.SetBanded(1);
        gl.renderer.Render();
        EXPECT_EQ(legend.IsModified(), 0);
        // Each block's middle shows the colour of the block's middle value.
        for (int k = 0; k < 6; ++k)
        {
            const double value = -2.0 + (k + 0.5) * 8.0 / 6.0;
            Color expected{0, 0, 0, 255};
            legend.GetOpenGLColor(expected.red, expected.green, expected.blue, value);
            const int y = static_cast<int>(bottom + (k + 0.5f) * height / 6.0f);
            EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, y), expected, 1)) << "block " << k;
        }
        // Smooth, each pixel row shows the value at its centre.
        legend.SetBanded(0);
        gl.renderer.Render();
        for (int row = 1; row < static_cast<int>(height) - 1; row += 3)
        {
            const double value = -2.0 + (row + 0.5) / height * 8.0;
            Color expected{0, 0, 0, 255};
            legend.GetOpenGLColor(expected.red, expected.green, expected.blue, value);
            EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, static_cast<int>(bottom) + row), expected, 1))
                << "row " << row;
        }
    }
}

TEST(GlLegend, LogRowsAndRangeSwatchesShowTheirColours)
{
    // Tall enough for the swatches' line above the bar.
    HeadlessRenderer gl(300, 400);
    ASSERT_TRUE(gl.created);
    KesraGl::CGlScalarBar legend;
    legend.SetValueRange(0.01, 100.0, true, true);
    legend.SetLogScale(1);
    legend.SetUseBelowRangeColor(1);
    legend.SetUseAboveRangeColor(1);
    legend.SetBelowRangeColor(10, 200, 30);
    legend.SetAboveRangeColor(200, 20, 150);
    legend.SetNanColor(90, 60, 30);
    ASSERT_TRUE(legend.Create(300, 400, 150, 8));
    gl.renderer.SetScalarBar(&legend);
    gl.renderer.Render();
    const KesraBackend::LegendLayout layout = legend.Layout(gl.renderer);
    ASSERT_EQ(layout.swatches.size(), 3u) << "below, above and the log scale's NaN";
    for (const KesraBackend::LegendSwatch& swatch : layout.swatches)
    {
        const int x = static_cast<int>(swatch.box.left + 0.5 * swatch.box.width);
        const int y = static_cast<int>(swatch.box.bottom + 0.5 * swatch.box.height);
        EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, y), swatch.fill, 0)) << swatch.label.text;
    }
    // Each pixel row shows the value that the log scale puts at its centre.
    const KesraBackend::Box& bar = layout.bar;
    const int x = static_cast<int>(bar.left + 0.5 * bar.width);
    for (int row = 1; row < static_cast<int>(bar.height) - 1; row += 3)
    {
        const double value = std::pow(10.0, -2.0 + 4.0 * (row + 0.5) / bar.height);
        Color expected{0, 0, 0, 255};
        legend.GetOpenGLColor(expected.red, expected.green, expected.blue, value);
        EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, static_cast<int>(bar.bottom) + row), expected, 1))
            << "row " << row;
    }
}

TEST_F(GlTubes, NodePixelsCarryTheNodesColours)
{
    CGlStreamline tube;
    const std::vector<Vector> nodes = {Vector(-1.4, -0.5, 0.0), Vector(0.0, 0.2, 0.0),
                                       Vector(1.4, -0.5, 0.0)};
    const std::vector<Color> colors = {{230, 20, 20, 255}, {20, 200, 40, 255}, {30, 40, 220, 255}};
    MakeTube(tube, nodes, colors, 0.15);
    gl.renderer.AddStreamline(&tube);
    gl.renderer.Render();
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
        int x, y;
        double depth;
        PixelOf(camera, nodes[i], x, y, depth);
        // The open ends cover half of their nodes' pixels: there the colour
        // shows one pixel inward.
        x += i == 0 ? 1 : (i + 1 == nodes.size() ? -1 : 0);
        // Unlit (no light applied): the node's own colour, up to the change
        // along a pixel of the segment.
        EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, y), colors[i], 4)) << "node " << i;
    }
    int x, y;
    double depth;
    PixelOf(camera, Vector(0.0, 0.6, 0.0), x, y, depth);
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, y), Color{255, 255, 255, 255}, 0));
}

TEST_F(GlTubes, DepthInFrontOfAndBehindATube)
{
    const double radius = 0.1;
    CGlStreamline front;
    CGlStreamline back;
    const Color red{220, 30, 30, 255};
    const Color blue{30, 30, 220, 255};
    MakeTube(front, {Vector(-1.5, 0.0, 0.5), Vector(1.5, 0.0, 0.5)}, {red, red}, radius);
    MakeTube(back, {Vector(0.0, -1.2, -0.5), Vector(0.0, 1.2, -0.5)}, {blue, blue}, radius);
    // The tube behind is drawn last: only the depth test keeps it behind.
    gl.renderer.AddStreamline(&front);
    gl.renderer.AddStreamline(&back);
    // Without polygon offset the depth is the surface's own.
    gl.renderer.SetPolygonOffsetPara(0.0f, 0.0f);
    gl.renderer.ApplyPolygonOffset();
    gl.renderer.Render();

    // The orthographic volume spans view depths of -10000 to 10000 pixels,
    // nearer being smaller: depth = 0.5 - z / 20000 for z in pixels.
    const auto expectedDepth = [&](double z) { return 0.5 - z / scale / 20000.0; };
    int x, y;
    double z;
    PixelOf(camera, Vector(0.0, 0.0, 0.0), x, y, z);
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, y), red, 0));
    // The ring is a 12-gon: the nearest surface lies between its chords and
    // the circle.
    const double chord = radius * std::cos(3.14159265358979323846 / 12.0);
    const float inFront = gl.renderer.ReadDepth(x, y);
    EXPECT_GE(inFront, expectedDepth(0.5 + radius) - 1e-6);
    EXPECT_LE(inFront, expectedDepth(0.5 + chord) + 1e-6);

    PixelOf(camera, Vector(0.0, 0.8, 0.0), x, y, z);
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, x, y), blue, 0));
    const float behind = gl.renderer.ReadDepth(x, y);
    EXPECT_GE(behind, expectedDepth(-0.5 + radius) - 1e-6);
    EXPECT_LE(behind, expectedDepth(-0.5 + chord) + 1e-6);
    EXPECT_GT(behind, inFront);

    // The default offset pushes faces away, behind edges drawn over them.
    gl.renderer.SetPolygonOffsetPara(1.0f, 0.5f);
    gl.renderer.ApplyPolygonOffset();
    gl.renderer.Render();
    PixelOf(camera, Vector(0.0, 0.0, 0.0), x, y, z);
    EXPECT_GT(gl.renderer.ReadDepth(x, y), inFront);

    PixelOf(camera, Vector(1.0, 1.0, 0.0), x, y, z);
    EXPECT_EQ(gl.renderer.ReadDepth(x, y), 1.0f);
    EXPECT_EQ(gl.renderer.ReadDepth(-1, 0), 1.0f);
    EXPECT_EQ(gl.renderer.ReadDepth(0, kHeight), 1.0f);
}

TEST_F(GlTubes, BuffersAreFilledOncePerChangeNotPerFrame)
{
    CGlStreamline tube;
    const Color grey{128, 128, 128, 255};
    MakeTube(tube, {Vector(-1.0, 0.0, 0.0), Vector(0.0, 0.3, 0.0), Vector(1.0, 0.0, 0.0)},
             {grey, grey, grey}, 0.1);
    gl.renderer.AddStreamline(&tube);
    EXPECT_EQ(tube.UploadCount(), 0);
    gl.renderer.Render();
    gl.renderer.Render();
    camera.SetRotateAngle(30.0, 20.0, 0.0);
    camera.SetScale(0.01f);
    gl.renderer.Render();
    EXPECT_EQ(tube.UploadCount(), 1);
    // Three rings, and a rim and a centre for each end's disc.
    EXPECT_EQ(tube.VertexCount(), 3 * 12 + 2 * 13);

    tube.SetStreamlineNodeColor(1, 10, 200, 10, 255);
    gl.renderer.Render();
    gl.renderer.Render();
    EXPECT_EQ(tube.UploadCount(), 2);
    double xyz[3] = {0.0, -0.3, 0.0};
    tube.SetNodeCoord(1, xyz);
    tube.GenerationStreamline3D();
    gl.renderer.Render();
    EXPECT_EQ(tube.UploadCount(), 3);
    // A refused change changes nothing.
    EXPECT_FALSE(tube.SetStreamlineNodeColor(7, 0, 0, 0, 255));
    gl.renderer.Render();
    EXPECT_EQ(tube.UploadCount(), 3);

    // A new context fills them again, once.
    ASSERT_TRUE(gl.renderer.CreateContext());
    gl.renderer.Render();
    gl.renderer.Render();
    EXPECT_EQ(tube.UploadCount(), 4);
}

TEST_F(GlLight, ShadesTubesAndLeavesTheAmbientPartWhenOff)
{
    CGlStreamline tube;
    const Color base{200, 160, 100, 255};
    MakeTube(tube, {Vector(-1.5, 0.0, 0.0), Vector(1.5, 0.0, 0.0)}, {base, base}, 0.3);
    gl.renderer.AddStreamline(&tube);
    KesraGl::CGlLight light(gl.renderer);
    light.SetPosition(Vector(0.0, 0.0, 1.0));
    light.SetFocalPoint(Vector(0.0, 0.0, 0.0));
    light.SetColor({255, 255, 255, 255});
    light.SetIntensity(1.0f);
    light.Apply();
    EXPECT_EQ(gl.renderer.GetShadingLight(), &light);
    int x, y;
    double z;
    PixelOf(camera, Vector(0.0, 0.0, 0.0), x, y, z);

    light.TurnOn();
    gl.renderer.Render();
    const Color lit = PixelAt(gl.renderer, x, y);
    // Facing the light: the full colour, brightened by the highlight.
    EXPECT_GE(lit.red, base.red);
    EXPECT_GE(lit.blue, base.blue);

    light.TurnOff();
    gl.renderer.Render();
    const Color ambient = PixelAt(gl.renderer, x, y);
    EXPECT_TRUE(ColorNear(ambient, Color{70, 56, 35, 255}, 1));
    EXPECT_EQ(light.GetSwitch(), 0);
}

TEST(GlRenderer, ReadPixelsRefusesWhatLeavesTheSurfaceAndResizeReachesIt)
{
    KesraGl::CEglContext context;
    KesraGl::CGlRenderer renderer(kWidth, kHeight, context);
    unsigned char rgba[4 * 4] = {7, 7, 7, 7};
    EXPECT_FALSE(renderer.ReadPixels(0, 0, 1, 1, rgba)) << "no context yet";
    ASSERT_TRUE(renderer.CreateContext()) << renderer.LastError();
    renderer.SetBackgroundColor({10, 20, 30, 255});
    renderer.SetBackgroundColor2({200, 100, 0, 255});
    renderer.SetGradient(0);
    renderer.Render();
    EXPECT_FALSE(renderer.ReadPixels(kWidth - 1, 0, 2, 1, rgba));
    EXPECT_FALSE(renderer.ReadPixels(0, -1, 1, 1, rgba));
    EXPECT_FALSE(renderer.ReadPixels(0, 0, 0, 1, rgba));
    EXPECT_FALSE(renderer.ReadPixels(0, 0, 1, 1, nullptr));
    EXPECT_EQ(rgba[0], 7);
    ASSERT_TRUE(renderer.ReadPixels(kWidth - 2, kHeight - 2, 2, 2, rgba));
    EXPECT_EQ(rgba[12], 10);
    EXPECT_EQ(rgba[13], 20);
    EXPECT_EQ(rgba[14], 30);
    // The gradient runs from the first colour at the top to the second at
    // the bottom.
    renderer.SetGradient(1);
    renderer.Render();
    ASSERT_TRUE(renderer.ReadPixels(0, 0, 1, 1, rgba));
    EXPECT_TRUE(ColorNear(Color{rgba[0], rgba[1], rgba[2], 255}, Color{200, 100, 0, 255}, 2));
    ASSERT_TRUE(renderer.ReadPixels(0, kHeight - 1, 1, 1, rgba));
    EXPECT_TRUE(ColorNear(Color{rgba[0], rgba[1], rgba[2], 255}, Color{10, 20, 30, 255}, 2));

    renderer.Resize(kWidth + 40, kHeight - 50);
    renderer.Render();
    EXPECT_TRUE(renderer.ReadPixels(kWidth + 39, kHeight - 51, 1, 1, rgba));
    EXPECT_FALSE(renderer.ReadPixels(0, kHeight - 50, 1, 1, rgba));

    renderer.DestroyContext();
    EXPECT_FALSE(renderer.HasContext());
    EXPECT_FALSE(renderer.ReadPixels(0, 0, 1, 1, rgba));
    EXPECT_EQ(renderer.ReadDepth(0, 0), 1.0f);
}

TEST(GlRenderer, AMissingShaderIsNamed)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    try
    {
        KesraGl::CGlProgram program("missing.vert", "mesh.frag");
        FAIL() << "a missing shader linked";
    }
    catch (const KesraGl::GlError& error)
    {
        EXPECT_NE(std::string(error.what()).find("missing.vert"), std::string::npos) << error.what();
    }
}

TEST(GlDraggedArea, HandsTheFinishedRectangleToTheAction)
{
    HeadlessRenderer gl(kWidth, kHeight);
    ASSERT_TRUE(gl.created);
    KesraGl::CGlDraggedArea area(kWidth, kHeight, gl.renderer);
    std::vector<int> selected;
    area.SetAreaHandler([&](int x0, int y0, int x1, int y1) { selected = {x0, y0, x1, y1}; });
    area.SetEanble(false);
    EXPECT_FALSE(area.OnMouseDown(10, 10));
    area.SetEanble(true);
    area.SetLineWidth(2.0f);
    ASSERT_TRUE(area.OnMouseDown(10, 20));
    EXPECT_TRUE(area.OnMouseMove(50, 60));
    area.SetColor({0, 0, 255, 255});
    gl.renderer.SetDraggedArea(&area);
    gl.renderer.Render();
    // The outline is drawn while the drag is under way.
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, 10, 40), Color{0, 0, 255, 255}, 0));
    EXPECT_TRUE(area.OnMouseUp(70, 80));
    EXPECT_EQ(selected, (std::vector<int>{10, 20, 70, 80}));
    EXPECT_FALSE(area.IsDragged());
    gl.renderer.Render();
    EXPECT_TRUE(ColorNear(PixelAt(gl.renderer, 10, 40), Color{255, 255, 255, 255}, 0));

    selected.clear();
    ASSERT_TRUE(area.OnMouseDown(5, 5));
    area.CancelDrag();
    EXPECT_FALSE(area.OnMouseUp(30, 30));
    EXPECT_TRUE(selected.empty());
    area.SetLineWidth(-1.0f);
    EXPECT_EQ(area.GetLineWidth(), 2.0f);
}

} // namespace
