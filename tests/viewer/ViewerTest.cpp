// kesra-viewer's scene and input handling, driven headlessly the way the
// window and --events drive them: standard views through smooth rotation,
// the rubber band, the axis triad following a drag, palettes and uploads,
// resizing, event files, the command line and PNG snapshots.
#include "GlTestSupport.h"

#include "EventScript.h"
#include "Flow.h"
#include "Options.h"
#include "PngFile.h"

#include <cmath>
#include <filesystem>
#include <sstream>

#include <unistd.h>

namespace
{

using KesraTest::ColorDistance;
using KesraGl::CGlScene;
using KesraGl::CGlSceneInput;
using Vector = KesraEngine::CKesraCamera::Vector;

constexpr int kWidth = 200;
constexpr int kHeight = 150;

// The flow scene is traced once for all tests.
const KesraBackend::SceneData& Flow()
{
    static const KesraBackend::SceneData data = KesraExamples::FlowSceneData();
    return data;
}

struct Viewer
{
    Viewer(int width = kWidth, int height = kHeight)
        : scene(context, Flow(), width, height), input(scene)
    {
        created = scene.CreateContext();
        EXPECT_TRUE(created) << scene.ContextError();
    }

    // True when the script stopped at a quit key.
    bool Replay(const std::string& script)
    {
        std::istringstream in(script);
        return KesraViewer::ReplayEvents(KesraViewer::ParseEvents(in, "script"), input, scene);
    }

    KesraGl::CEglContext context;
    KesraGl::CGlScene scene;
    KesraGl::CGlSceneInput input;
    bool created = false;
};

// Pixels that differ by more than one level in any channel.
int DifferentPixels(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b)
{
    EXPECT_EQ(a.size(), b.size());
    int different = 0;
    for (std::size_t i = 0; i + 3 < std::min(a.size(), b.size()); i += 4)
    {
        const KesraGl::Color p{a[i], a[i + 1], a[i + 2], 255};
        const KesraGl::Color q{b[i], b[i + 1], b[i + 2], 255};
        different += ColorDistance(p, q) > 1 ? 1 : 0;
    }
    return different;
}

TEST(ViewerViews, SmoothRotationReachesTheStandardViewAndItsPicture)
{
    Viewer smooth;
    Viewer direct;
    ASSERT_TRUE(smooth.created && direct.created);
    const int frames = smooth.scene.Camera().GetSmoothRotateFrames();
    ASSERT_GT(frames, 1);
    // Key 1 starts the turn to the front view; the frames carry it out.
    smooth.Replay("key 1\nframe " + std::to_string(frames - 1));
    EXPECT_TRUE(smooth.scene.IsAnimating());
    // The turn draws the moving view's lines; its end the tubes again.
    EXPECT_TRUE(smooth.scene.IsMoving());
    smooth.Replay("frame");
    EXPECT_FALSE(smooth.scene.IsAnimating());
    EXPECT_FALSE(smooth.scene.IsMoving());

    direct.scene.SetView(KesraBackend::View::Front, false);
    const auto& reached = smooth.scene.Camera().GetRotateMatrix();
    const auto& target = direct.scene.Camera().GetRotateMatrix();
    for (int k = 0; k < 16; ++k)
    {
        EXPECT_NEAR(reached[k], target[k], 1e-12) << "element " << k;
    }
    EXPECT_EQ(DifferentPixels(smooth.scene.Capture(), direct.scene.Capture()), 0);
}

TEST(ViewerViews, TheAxisTriadsXLabelFollowsARotationDrag)
{
    Viewer viewer;
    ASSERT_TRUE(viewer.created);
    float x0, y0;
    viewer.scene.Axis().LabelPosition(0, x0, y0);
    const std::vector<unsigned char> before = viewer.scene.Capture();
    viewer.Replay("press left 100 75\nmove 130 80\nmove 160 90\nrelease left 160 90\nframe");
    float x1, y1;
    viewer.scene.Axis().LabelPosition(0, x1, y1);
    EXPECT_GT(std::hypot(x1 - x0, y1 - y0), 5.0f);
    // The triad got the camera's rotation through the observer.
    EXPECT_EQ(viewer.scene.Axis().GetRotateMatrix()[0], viewer.scene.Camera().GetRotateMatrix()[0]);
    // The pixels around the new label changed.
    const std::vector<unsigned char> after = viewer.scene.Capture();
    int changed = 0;
    for (int y = static_cast<int>(y1) - 6; y <= static_cast<int>(y1) + 6; ++y)
    {
        for (int x = static_cast<int>(x1) - 6; x <= static_cast<int>(x1) + 6; ++x)
        {
            const std::size_t i = (static_cast<std::size_t>(y) * kWidth + x) * 4;
            changed += ColorDistance({before[i], before[i + 1], before[i + 2], 255},
                                     {after[i], after[i + 1], after[i + 2], 255}) > 40 ? 1 : 0;
        }
    }
    EXPECT_GT(changed, 5);
}

TEST(ViewerViews, TheTourRunsUntilItsKeyAndZoomAllRestoresTheFit)
{
    Viewer viewer;
    ASSERT_TRUE(viewer.created);
    KesraGl::CGlCamera& camera = viewer.scene.Camera();
    const float fitted = camera.GetScale();
    viewer.Replay("key i\nframe 26");
    EXPECT_TRUE(camera.IsSixSidesInspection());
    const auto before = camera.GetRotateMatrix();
    // Past the pause at the first side, the tour turns the view.
    viewer.Replay("frame 12");
    bool turned = false;
    for (int k = 0; k < 16; ++k)
    {
        turned = turned || before[k] != camera.GetRotateMatrix()[k];
    }
    EXPECT_TRUE(turned);
    // The triad turns with the tour, through the observer.
    EXPECT_EQ(viewer.scene.Axis().GetRotateMatrix()[0], camera.GetRotateMatrix()[0]);
    viewer.Replay("key i\nframe");
    EXPECT_FALSE(viewer.scene.IsAnimating());

    viewer.Replay("wheel 30 30 4\npress middle 100 75\nmove 140 95\nrelease middle 140 95\nframe");
    EXPECT_NE(camera.GetScale(), fitted);
    viewer.Replay("key f\nframe");
    EXPECT_EQ(camera.GetScale(), fitted);
    float x = 1.0f, y = 1.0f;
    camera.GetTranslation(x, y);
    EXPECT_EQ(y, 0.0f);
}

TEST(ViewerViews, CtrlDragZoomsToTheRectangleAndKeepsItInView)
{
    Viewer viewer;
    ASSERT_TRUE(viewer.created);
    KesraGl::CGlCamera& camera = viewer.scene.Camera();
    const float scaleBefore = camera.GetScale();
    // Window rows count from the top; the camera's from the bottom.
    const int left = 60, right = 100, top = 50, bottom = 70;
    std::vector<Vector> inside;
    for (const KesraBackend::ScalarLine& line : Flow().lines)
    {
        for (const Vector& p : line.points)
        {
            Vector v;
            camera.ProjectPointWorldToView(p, v);
            if (v.x > left && v.x < right && v.y > kHeight - 1 - bottom && v.y < kHeight - 1 - top)
            {
                inside.push_back(p);
            }
        }
    }
    ASSERT_FALSE(inside.empty());
    viewer.Replay("press left 60 50 ctrl\nmove 80 60\nframe\nmove 100 70\nrelease left 100 70\nframe");
    EXPECT_FALSE(viewer.scene.Area().IsDragged());
    EXPECT_FLOAT_EQ(camera.GetScale(), scaleBefore * static_cast<float>(40.0 / kWidth));
    for (const Vector& p : inside)
    {
        Vector v;
        camera.ProjectPointWorldToView(p, v);
        EXPECT_TRUE(v.x >= 0.0 && v.x <= kWidth && v.y >= 0.0 && v.y <= kHeight)
            << "(" << v.x << ", " << v.y << ") left the window";
    }
    // Esc abandons a band under way, with no zoom.
    const float scale = camera.GetScale();
    viewer.Replay("press left 20 20 ctrl\nmove 60 60\nkey esc\nrelease left 60 60\nframe");
    EXPECT_EQ(camera.GetScale(), scale);
}

TEST(ViewerLegend, KeysRecolourTheTubesOnceEach)
{
    Viewer viewer;
    ASSERT_TRUE(viewer.created);
    const int tubes = static_cast<int>(viewer.scene.Tubes().size());
    ASSERT_GT(tubes, 10);
    // A drag draws the moving view's lines until the button is released.
    viewer.Replay("frame 2\npress left 10 10\nmove 40 30");
    EXPECT_TRUE(viewer.scene.IsMoving());
    viewer.Replay("release left 40 30");
    EXPECT_FALSE(viewer.scene.IsMoving());
    viewer.Replay("wheel 100 70 2\nframe 3");
    // Each chunk's geometry and colours once: turns and zooms upload nothing.
    const int chunks = static_cast<int>(viewer.scene.TubeBatch().ChunkCount());
    ASSERT_GE(chunks, 1);
    EXPECT_EQ(viewer.scene.UploadCount(), 2 * chunks);
    // The records are gone, the counts stay.
    const KesraBackend::ScalarLine& line = Flow().lines.front();
    EXPECT_FALSE(viewer.scene.Tubes().front()->IsCreate());
    EXPECT_EQ(viewer.scene.Tubes().front()->GetNodes(), static_cast<int>(line.points.size()));

    unsigned char before[4] = {0, 0, 0, 0};
    ASSERT_TRUE(viewer.scene.NodeColour(0, 0, before));
    viewer.Replay("key p\nframe 2");
    EXPECT_EQ(viewer.scene.UploadCount(), 3 * chunks);
    unsigned char after[4] = {0, 0, 0, 0};
    ASSERT_TRUE(viewer.scene.NodeColour(0, 0, after));
    EXPECT_NE(std::vector<int>(before, before + 3), std::vector<int>(after, after + 3));

    viewer.Replay("key b\nframe\nkey v\nframe");
    EXPECT_EQ(viewer.scene.Legend().GetBanded(), 1);
    EXPECT_EQ(viewer.scene.Legend().GetInverse(), 1);
    EXPECT_EQ(viewer.scene.UploadCount(), 5 * chunks);
    // Every node shows the legend's colour of its value.
    for (std::size_t i = 0; i < line.values.size(); ++i)
    {
        unsigned char expected[3];
        viewer.scene.Legend().GetOpenGLColor(expected[0], expected[1], expected[2], line.values[i]);
        unsigned char color[4];
        ASSERT_TRUE(viewer.scene.NodeColour(0, i, color));
        EXPECT_EQ(std::vector<int>(color, color + 4), std::vector<int>({expected[0], expected[1], expected[2], 255}));
    }
    EXPECT_FALSE(viewer.scene.NodeColour(0, line.values.size(), after));
    EXPECT_FALSE(viewer.scene.NodeColour(viewer.scene.Data().lines.size(), 0, after));
}

TEST(ViewerWindow, ResizeReachesTheRendererAndTheOverlays)
{
    Viewer viewer;
    ASSERT_TRUE(viewer.created);
    viewer.Replay("resize 160 120\nframe");
    EXPECT_EQ(viewer.scene.Renderer().GetWidth(), 160);
    EXPECT_EQ(viewer.scene.Renderer().GetHeight(), 120);
    int width = 0, height = 0;
    viewer.scene.Camera().GetWindowSize(width, height);
    EXPECT_EQ(std::make_pair(width, height), std::make_pair(160, 120));
    viewer.scene.Axis().GetWindowSize(width, height);
    EXPECT_EQ(std::make_pair(width, height), std::make_pair(160, 120));
    EXPECT_EQ(viewer.scene.Capture().size(), 160u * 120u * 4u);
    // The help overlay and zoom all change the picture; q ends a replay.
    const std::vector<unsigned char> plain = viewer.scene.Capture();
    EXPECT_TRUE(viewer.Replay("key h\nframe\nkey q\nkey h"));
    EXPECT_GT(DifferentPixels(plain, viewer.scene.Capture()), 500);
    EXPECT_FALSE(viewer.Replay("key h\nframe"));
}

TEST(ViewerEvents, MalformedLinesAreRefusedWithTheirLine)
{
    const struct
    {
        const char* script;
        const char* message;
    } cases[] = {
        {"frame\njump 1 2", "script:2: expected an event"},
        {"press left 10", "script:1: expected y"},
        {"press thumb 1 2", "script:1: expected a button"},
        {"press left 1 2 alt", "script:1: expected shift, ctrl"},
        {"# fine\nmove 1 x", "script:2: expected y (a whole number"},
        {"wheel 1 2 3 4", "script:1: expected the end of the line"},
        {"key ab", "script:1: expected a key"},
        {"frame 0", "script:1: expected a frame count"},
        {"resize 10", "script:1: expected a height"},
        {"move 99999999999 1", "script:1: expected x"},
    };
    for (const auto& c : cases)
    {
        std::istringstream in(c.script);
        try
        {
            KesraViewer::ParseEvents(in, "script");
            ADD_FAILURE() << c.script << " was accepted";
        }
        catch (const KesraViewer::EventError& error)
        {
            EXPECT_EQ(std::string(error.what()).rfind(c.message, 0), 0u) << error.what();
        }
    }
    std::istringstream good("press middle 1 2 shift ctrl # pan\nkey esc\n\nframe 3\n");
    const std::vector<KesraViewer::Event> events = KesraViewer::ParseEvents(good, "good");
    ASSERT_EQ(events.size(), 3u);
    EXPECT_TRUE(events[0].modifiers.shift && events[0].modifiers.ctrl);
    EXPECT_EQ(events[0].button, KesraGl::MouseButton::Middle);
    EXPECT_EQ(events[1].key, KesraGl::CGlSceneInput::kEscape);
    EXPECT_EQ(events[2].a, 3);
}

TEST(ViewerOptions, CommandLines)
{
    const auto parse = [](std::vector<const char*> args, KesraViewer::Options& options,
                          std::string& error) {
        args.insert(args.begin(), "kesra-viewer");
        return KesraViewer::ParseOptions(static_cast<int>(args.size()), args.data(), options, error);
    };
    KesraViewer::Options options;
    std::string error;
    ASSERT_TRUE(parse({"--headless", "--snapshot", "a.png", "--size", "320x240", "--view", "top",
                       "--events", "e.txt", "--bench-frames", "5", "lines.vtk"},
                      options, error))
        << error;
    EXPECT_EQ(options.width, 320);
    EXPECT_EQ(options.height, 240);
    EXPECT_EQ(options.view, KesraBackend::View::Top);
    EXPECT_EQ(options.benchFrames, 5);
    EXPECT_EQ(options.file, "lines.vtk");

    const struct
    {
        std::vector<const char*> args;
        const char* message;
    } refused[] = {
        {{"--headless"}, "--headless needs"},
        {{"--snapshot", "a.png"}, "--snapshot goes with --headless"},
        {{"--size", "320"}, "--size takes WxH"},
        {{"--size", "8x8"}, "--size takes WxH"},
        {{"--size", "-200x100"}, "--size takes WxH"},
        {{"--view", "sideways"}, "--view takes one of iso, front"},
        {{"--bench-frames", "0"}, "--bench-frames takes"},
        {{"--events"}, "--events needs a value"},
        {{"--fast"}, "unknown option --fast"},
        {{"a.vtk", "b.vtk"}, "one file at most"},
    };
    for (const auto& c : refused)
    {
        KesraViewer::Options fresh;
        EXPECT_FALSE(parse(c.args, fresh, error)) << c.message;
        EXPECT_EQ(error.rfind(c.message, 0), 0u) << error;
    }
}

TEST(ViewerSnapshot, DecodesWithTheRequestedSizeAndLeavesNothingOnFailure)
{
    Viewer viewer(160, 100);
    ASSERT_TRUE(viewer.created);
    const std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("kesra-viewer-test-" + std::to_string(::getpid()));
    std::filesystem::create_directories(directory);
    const std::string path = (directory / "shot.png").string();
    const std::vector<unsigned char> frame = viewer.scene.Capture();
    std::string error;
    ASSERT_TRUE(KesraViewer::WritePng(path, 160, 100, frame, error)) << error;
    int width = 0, height = 0;
    std::vector<unsigned char> decoded;
    ASSERT_TRUE(KesraViewer::ReadPng(path, width, height, decoded, error)) << error;
    EXPECT_EQ(width, 160);
    EXPECT_EQ(height, 100);
    // The file's top row is the frame's last.
    ASSERT_EQ(decoded.size(), frame.size());
    EXPECT_TRUE(std::equal(decoded.begin(), decoded.begin() + 160 * 4, frame.end() - 160 * 4));

    EXPECT_FALSE(KesraViewer::WritePng((directory / "none" / "shot.png").string(), 160, 100, frame, error));
    EXPECT_NE(error.find("cannot be written"), std::string::npos) << error;
    EXPECT_FALSE(KesraViewer::WritePng(path, 161, 100, frame, error));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory), {}), 1);
    std::filesystem::remove_all(directory);
}

} // namespace
