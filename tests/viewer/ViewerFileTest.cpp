// kesra-viewer on the user's own VTK polydata: tubes coloured through the
// legend by the file's point scalar, the legend over its range, and the
// refusals, each naming the file.
#include "GlTestSupport.h"

#include "SceneSource.h"
#include "ViewerScene.h"

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
    KesraExamples::SceneData data;
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
    KesraViewer::ViewerScene scene(context, data, kWidth, kHeight);
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
            scene.Tubes()[t]->GetNodeColor(static_cast<int>(i), color);
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
    KesraExamples::SceneData data;
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
    KesraExamples::SceneData data;
    std::string error;
    ASSERT_TRUE(KesraViewer::LoadScene(path, data, error)) << error;
    EXPECT_DOUBLE_EQ(data.tubeRadius, 0.005 * std::sqrt(8.0 * 8.0 + 8.0078125 * 8.0078125 + 4.0 * 4.0));
    ASSERT_EQ(data.lines.size(), 2u);
    EXPECT_EQ(data.lines[0].values, (std::vector<double>{0.0, 0.0}));
    EXPECT_EQ(data.lines[1].points[0].x, 5.0);
    EXPECT_EQ(data.skippedLines, 2u);
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
        KesraExamples::SceneData data;
        std::string error;
        EXPECT_FALSE(KesraViewer::LoadScene(path, data, error)) << c.name;
        EXPECT_NE(error.find(c.name), std::string::npos) << error;
        EXPECT_NE(error.find(c.says), std::string::npos) << error;
    }
    KesraExamples::SceneData data;
    std::string error;
    EXPECT_FALSE(KesraViewer::LoadScene("/no/such/lines.vtk", data, error));
    EXPECT_NE(error.find("/no/such/lines.vtk"), std::string::npos) << error;
}

} // namespace
