// kesra-viewer on the user's own VTK polydata: tubes coloured through the
// legend by the file's point scalar, the legend over its range, and the
// refusals, each naming the file.
#include "GlTestSupport.h"

#include "SceneSource.h"
#include "gl/GlScene.h"

#include <cmath>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace
{

constexpr int kWidth = 200;
constexpr int kHeight = 150;

class ViewerFile : public ::testing::Test
{
protected:
    void SetUp() override { std::filesystem::create_directories(m_directory); }
    void TearDown() override { std::filesystem::remove_all(m_directory); }

    // Writes text into a file of the test's own directory; returns its path.
    std::string Write(const std::string& name, const std::string& text) const
    {
        const std::string path = (m_directory / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

private:
    std::filesystem::path m_directory = std::filesystem::temp_directory_path()
                                        / ("kesra-viewer-files-" + std::to_string(::getpid()));
};

const char* const kHeader = "# vtk DataFile Version 3.0\nstreamlines\nASCII\nDATASET POLYDATA\n";

TEST_F(ViewerFile, TubesTakeTheScalarsColoursAndTheLegendItsRange)
{
    const std::string path = Write("lines.vtk", std::string(kHeader)
        + "POINTS 7 float\n0 0 0  1 0 0  2 0.5 0  0 1 1  1 1 1  1 1 1  2 1 1\n"
          "LINES 2 9\n3 0 1 2\n4 3 4 5 6\n"
          "POINT_DATA 7\nSCALARS pressure float 1\nLOOKUP_TABLE default\n10 20 30 40 50 55 60\n");
    KesraBackend::SceneData data;
    std::string error;
    ASSERT_TRUE(KesraViewer::LoadScene(path, data, error)) << error;
    EXPECT_EQ(data.title, "lines.vtk");
    EXPECT_EQ(data.valueName, "pressure");
    ASSERT_EQ(data.lines.size(), 2u);
    // The repeated point 5 is dropped: a tube segment needs a direction.
    EXPECT_EQ(data.lines[1].points.size(), 3u);
    EXPECT_EQ(data.lines[1].values, (std::vector<double>{40.0, 50.0, 60.0}));

    // Thick enough to cover whole pixels in a small window.
    data.tubeRadius = 0.08;
    KesraGl::CEglContext context;
    KesraGl::CGlScene scene(context, data, kWidth, kHeight);
    ASSERT_TRUE(scene.CreateContext()) << scene.ContextError();
    double minimum = 0.0, maximum = 0.0;
    scene.Legend().GetValueRange(minimum, maximum);
    EXPECT_EQ(minimum, 10.0);
    EXPECT_EQ(maximum, 60.0);
    ASSERT_EQ(scene.Tubes().size(), 2u);
    for (std::size_t t = 0; t < 2; ++t)
    {
        for (std::size_t i = 0; i < data.lines[t].values.size(); ++i)
        {
            unsigned char expected[3];
            scene.Legend().GetOpenGLColor(expected[0], expected[1], expected[2], data.lines[t].values[i]);
            unsigned char color[4] = {0, 0, 0, 0};
            ASSERT_TRUE(scene.NodeColour(t, i, color));
            EXPECT_EQ(std::vector<int>(color, color + 3), std::vector<int>(expected, expected + 3));
        }
    }
    // The tubes are in the picture: the first line's middle node shows its
    // colour, lit, not the background.
    scene.Render();
    KesraEngine::CKesraCamera::Vector view;
    scene.Camera().ProjectPointWorldToView(data.lines[0].points[1], view);
    const KesraGl::Color pixel =
        KesraTest::PixelAt(scene.Renderer(), static_cast<int>(view.x), static_cast<int>(view.y));
    unsigned char red, green, blue;
    scene.Legend().GetOpenGLColor(red, green, blue, 20.0);
    EXPECT_GT(KesraTest::ColorDistance(pixel, {214, 226, 242, 255}), 30);
    EXPECT_GT(pixel.red + 40, red) << "lit, the colour's own red shows";
}

TEST_F(ViewerFile, WithoutAScalarTheHeightColours)
{
    const std::string path = Write("plain.vtk", std::string(kHeader)
        + "POINTS 3 double\n0 0 0 1 0 2 2 0 5\nLINES 1 4\n3 0 1 2\n");
    KesraBackend::SceneData data;
    std::string error;
    ASSERT_TRUE(KesraViewer::LoadScene(path, data, error)) << error;
    EXPECT_EQ(data.valueName, "z");
    ASSERT_EQ(data.lines.size(), 1u);
    EXPECT_EQ(data.lines[0].values, (std::vector<double>{0.0, 2.0, 5.0}));
}

TEST_F(ViewerFile, LinesAreSplitWhereTheyTurnBackAndSpecksSkipped)
{
    // A hairpin, a line shorter than its tube is thick, and a single point.
    const std::string path = Write("hairpin.vtk", std::string(kHeader)
        + "POINTS 6 float\n0 0 0  5 0 0  0 0.0078125 0  8 8 0  8 8.0078125 0  4 4 4\n"
          "LINES 3 9\n3 0 1 2\n2 3 4\n1 5\n");
    KesraBackend::SceneData data;
    std::string error;
    ASSERT_TRUE(KesraViewer::LoadScene(path, data, error)) << error;
    EXPECT_DOUBLE_EQ(data.tubeRadius, 0.005 * std::sqrt(8.0 * 8.0 + 8.0078125 * 8.0078125 + 4.0 * 4.0));
    ASSERT_EQ(data.lines.size(), 2u);
    EXPECT_EQ(data.lines[0].values, (std::vector<double>{0.0, 0.0}));
    EXPECT_EQ(data.lines[1].points[0].x, 5.0);
    EXPECT_EQ(data.skippedLines, 2u);
}

// Two lines of four points each, a point scalar, a point vector and a cell
// scalar; the cell data numbers a vertex first.
const char* const kArrays = "POINTS 9 float\n0 0 0  1 0.2 0  2 0.1 0.3  3 0 0.5\n"
                            "0 1 0  1 1.3 0.2  2 1.2 0.1  3 1 0  5 5 5\n"
                            "VERTICES 1 2\n1 8\nLINES 3 12\n4 0 1 2 3\n4 4 5 6 7\n1 8\n"
                            "CELL_DATA 4\nSCALARS zone int 1\nLOOKUP_TABLE default\n9 1 5 7\n"
                            "POINT_DATA 9\nSCALARS pressure double 1\nLOOKUP_TABLE default\n0 1 2 3 4 5 6 7 8\n"
                            "VECTORS velocity float\n1 0 0 2 0 0 3 0 0 4 0 0 0 -1 0 0 -2 0 0 -3 0 0 -4 0 0 0 9\n";

TEST_F(ViewerFile, TheNamedArrayColoursAndTheSummaryTellsIt)
{
    const std::string path = Write("arrays.vtk", std::string(kHeader) + kArrays);
    const struct
    {
        const char* scalars;
        std::vector<double> first;  // the first line's values
        std::vector<double> second; // the second's
        const char* name;           // the legend's title
    } cases[] = {
        {"", {0, 1, 2, 3}, {4, 5, 6, 7}, "pressure"},
        {"velocity:y", {0, 0, 0, 0}, {-1, -2, -3, -4}, "velocity:y"},
        {"velocity", {1, 2, 3, 4}, {1, 2, 3, 4}, "velocity"},
        {"zone", {1, 1, 1, 1}, {5, 5, 5, 5}, "zone"}, // a line's tuple at each of its points
    };
    for (const auto& c : cases)
    {
        KesraBackend::SceneData data;
        std::string summary;
        std::string error;
        ASSERT_TRUE(KesraViewer::LoadScene({path, c.scalars}, data, summary, error)) << error;
        ASSERT_EQ(data.lines.size(), 2u) << "the one-point line is skipped";
        EXPECT_EQ(data.lines[0].values, c.first) << c.scalars;
        EXPECT_EQ(data.lines[1].values, c.second) << c.scalars;
        EXPECT_EQ(data.valueName, c.name);
        EXPECT_TRUE(data.lengthUnit.empty()) << "a file's lengths have no unit";
        EXPECT_NE(summary.find("arrays.vtk: 2 lines (1 skipped), 9 points, coloured by " + std::string(c.name)),
                  std::string::npos)
            << summary;
    }
    KesraBackend::SceneData data;
    std::string summary;
    std::string error;
    EXPECT_FALSE(KesraViewer::LoadScene({path, "zone:y"}, data, summary, error));
    EXPECT_NE(error.find("arrays.vtk: --scalars: array 'zone' has 1 component(s)"), std::string::npos) << error;
    EXPECT_NE(error.find("velocity (point, 3 components)"), std::string::npos) << error;

    std::string text;
    ASSERT_TRUE(KesraViewer::DescribeFile(path, text, error)) << error;
    EXPECT_NE(text.find("  cell zone: 1 component, range [1, 7]\n"), std::string::npos) << text;
    EXPECT_FALSE(KesraViewer::DescribeFile(path + ".none", text, error));
    EXPECT_NE(error.find("arrays.vtk.none: cannot be opened"), std::string::npos) << error;
}

TEST_F(ViewerFile, RangeLinesAndProbe)
{
    const std::string path = Write("arrays.vtk", std::string(kHeader) + kArrays);
    KesraBackend::SceneData data;
    std::string error;
    ASSERT_TRUE(KesraViewer::LoadScene(path, data, error)) << error;
    data.tubeRadius = 0.08;
    KesraGl::CEglContext context;
    KesraGl::CGlScene scene(context, data, kWidth, kHeight);
    ASSERT_TRUE(scene.CreateContext()) << scene.ContextError();

    // The legend's range: refusals leave it, reset brings the data's back.
    double minimum = 0.0, maximum = 0.0;
    scene.SetValueRange(2.0, 5.0);
    scene.SetValueRange(5.0, 2.0);
    scene.SetValueRange(1.0, 1.0);
    scene.SetValueRange(std::nan(""), 3.0);
    scene.Legend().GetValueRange(minimum, maximum);
    EXPECT_EQ(minimum, 2.0);
    EXPECT_EQ(maximum, 5.0);
    unsigned char expected[4] = {0, 0, 0, 0};
    unsigned char color[4] = {0, 0, 0, 0};
    scene.Legend().GetOpenGLColor(expected[0], expected[1], expected[2], 6.0);
    ASSERT_TRUE(scene.NodeColour(1, 2, color));
    EXPECT_EQ(std::vector<int>(color, color + 3), std::vector<int>(expected, expected + 3)) << "recoloured";
    scene.ResetValueRange();
    scene.Legend().GetValueRange(minimum, maximum);
    EXPECT_EQ(minimum, 0.0);
    EXPECT_EQ(maximum, 7.0);

    // The value under a node's pixel, and none far from every node.
    scene.Render();
    KesraEngine::CKesraCamera::Vector view;
    scene.Camera().ProjectPointWorldToView(scene.Data().lines[1].points[2], view);
    KesraGl::CGlScene::Probe probe;
    ASSERT_TRUE(scene.ProbeAt(static_cast<int>(view.x) + 3, static_cast<int>(view.y) - 2, probe));
    EXPECT_EQ(probe.line, 1u);
    EXPECT_EQ(probe.node, 2u);
    EXPECT_EQ(probe.value, 6.0);
    EXPECT_FALSE(scene.ProbeAt(0, 0, probe));

    // Plain lines: the tubes hide, the line shows its node's own colour,
    // unlit; and back.
    const int x = static_cast<int>(std::lround(view.x));
    const int y = static_cast<int>(std::lround(view.y));
    const KesraGl::Color tube = KesraTest::PixelAt(scene.Renderer(), x, y);
    scene.ToggleLines();
    EXPECT_TRUE(scene.ShowsLines());
    EXPECT_FALSE(scene.Tubes()[0]->GetDrawStreamline());
    scene.Render();
    scene.Legend().GetOpenGLColor(expected[0], expected[1], expected[2], 6.0);
    const KesraGl::Color line = KesraTest::PixelAt(scene.Renderer(), x, y);
    EXPECT_TRUE(KesraTest::ColorNear(line, {expected[0], expected[1], expected[2], 255}, 40));
    // A tube's width away the background shows.
    const KesraGl::Color beside = KesraTest::PixelAt(scene.Renderer(), x, y + 6);
    EXPECT_NE(KesraTest::ColorDistance(beside, tube), 0);
    scene.ToggleLines();
    EXPECT_TRUE(scene.Tubes()[0]->GetDrawStreamline());
    scene.Render();
    EXPECT_EQ(KesraTest::ColorDistance(KesraTest::PixelAt(scene.Renderer(), x, y), tube), 0);
}

TEST_F(ViewerFile, RefusalsNameTheFile)
{
    const struct
    {
        const char* name;
        std::string text;
        const char* says; // besides the file's name
    } cases[] = {
        {"nan.vtk", std::string(kHeader) + "POINTS 2 float\n0 0 0 nan 1 1\nLINES 1 3\n2 0 1\n", ""},
        {"short-scalar.vtk",
         std::string(kHeader) + "POINTS 2 float\n0 0 0 1 1 1\nLINES 1 3\n2 0 1\n"
             "POINT_DATA 2\nSCALARS s float 1\nLOOKUP_TABLE default\n7\n", ""},
        {"one-point.vtk", std::string(kHeader) + "POINTS 2 float\n0 0 0 0 0 0\nLINES 1 3\n2 0 1\n",
         "no line with two or more distinct points"},
        {"truncated.vtk", std::string(kHeader) + "POINTS 4 float\n0 0 0 1 1", ""},
    };
    for (const auto& c : cases)
    {
        const std::string path = Write(c.name, c.text);
        KesraBackend::SceneData data;
        std::string error;
        EXPECT_FALSE(KesraViewer::LoadScene(path, data, error)) << c.name;
        EXPECT_NE(error.find(c.name), std::string::npos) << error;
        EXPECT_NE(error.find(c.says), std::string::npos) << error;
    }
    KesraBackend::SceneData data;
    std::string error;
    EXPECT_FALSE(KesraViewer::LoadScene("/no/such/lines.vtk", data, error));
    EXPECT_NE(error.find("/no/such/lines.vtk"), std::string::npos) << error;
}

} // namespace
