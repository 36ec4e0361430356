// Loading a large file while the user watches: the lines' preparation tells
// how far it is and stops when told, the load on its own thread ends in each
// of its outcomes, Ctrl-C is seen by all of them, the terminal gets a line a
// tenth, and the loading screen draws its bar to the fraction.
#include "GlTestSupport.h"

#include "Interrupt.h"
#include "KesraIo/Reader.h"
#include "Loading.h"
#include "LoadingScreen.h"
#include "SceneSource.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace
{

using KesraViewer::CBackgroundLoad;
using KesraViewer::LoadPhase;

class Loading : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::filesystem::create_directories(m_directory);
        KesraViewer::ForgetInterrupt();
    }
    void TearDown() override
    {
        std::filesystem::remove_all(m_directory);
        KesraViewer::ForgetInterrupt();
        std::signal(SIGINT, SIG_DFL);
    }

    // lines ASCII lines of nodes points each along x, a row apart, with
    // a scalar: the node's index along its line.
    std::string WriteLines(const std::string& name, int lines, int nodes) const
    {
        const std::string path = (m_directory / name).string();
        std::ofstream file(path);
        file << "# vtk DataFile Version 3.0\nlines\nASCII\nDATASET POLYDATA\nPOINTS " << lines * nodes
             << " float\n";
        for (int line = 0; line < lines; ++line)
        {
            for (int node = 0; node < nodes; ++node)
            {
                file << node << ' ' << line << " 0\n";
            }
        }
        file << "LINES " << lines << ' ' << lines * (nodes + 1) << '\n';
        for (int line = 0; line < lines; ++line)
        {
            file << nodes;
            for (int node = 0; node < nodes; ++node)
            {
                file << ' ' << line * nodes + node;
            }
            file << '\n';
        }
        file << "POINT_DATA " << lines * nodes << "\nSCALARS s float 1\nLOOKUP_TABLE default\n";
        for (int k = 0; k < lines * nodes; ++k)
        {
            file << k % nodes << '\n';
        }
        return path;
    }

    std::filesystem::path m_directory = std::filesystem::temp_directory_path() /
                                        ("kesra-viewer-loading-" + std::to_string(::getpid()));
};

// Waits for load's outcome, at most a minute.
CBackgroundLoad::Outcome Outcome(const CBackgroundLoad& load)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (load.Result() == CBackgroundLoad::Outcome::Running && std::chrono::steady_clock::now() < deadline)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return load.Result();
}

TEST_F(Loading, PreparingLinesTellsARisingFractionAndStopsWithNothingKept)
{
    const std::string path = WriteLines("lines.vtk", 500, 20);
    const KesraIo::PolyData poly = KesraIo::ReadPolyData(path);
    const std::vector<double> values(poly.connectivity.size(), 1.0);
    KesraBackend::SceneData plain;
    ASSERT_TRUE(KesraViewer::PrepareLines(poly, values, 0.0, plain));

    std::vector<double> told;
    KesraBackend::SceneData watched;
    ASSERT_TRUE(KesraViewer::PrepareLines(poly, values, 0.0, watched, [&told](double fraction) {
        told.push_back(fraction);
        return true;
    }));
    ASSERT_GE(told.size(), 100u);
    EXPECT_LE(told.size(), 300u);
    EXPECT_EQ(told.back(), 1.0);
    for (std::size_t i = 1; i < told.size(); ++i)
    {
        ASSERT_GT(told[i], told[i - 1]);
    }
    ASSERT_EQ(watched.lines.size(), plain.lines.size());
    EXPECT_EQ(watched.lines.back().values, plain.lines.back().values);
    EXPECT_EQ(watched.tubeRadius, plain.tubeRadius);

    for (const std::size_t stopAt : {std::size_t{1}, told.size() / 2, told.size()})
    {
        std::size_t heard = 0;
        KesraBackend::SceneData stopped;
        EXPECT_THROW(KesraViewer::PrepareLines(poly, values, 0.0, stopped,
                                               [&heard, stopAt](double) { return ++heard < stopAt; }),
                     KesraIo::ReadCancelled);
        EXPECT_EQ(heard, stopAt);
        EXPECT_TRUE(stopped.lines.empty()) << "stopped at call " << stopAt;
    }
}

TEST_F(Loading, LoadSceneReadsThenPreparesAndAStopEmptiesTheScene)
{
    const std::string path = WriteLines("lines.vtk", 400, 50);
    std::vector<std::pair<LoadPhase, double>> told;
    KesraBackend::SceneData data;
    std::string summary;
    std::string error;
    ASSERT_TRUE(KesraViewer::LoadScene(KesraViewer::SceneRequest{path, "", 0.0}, data, summary, error,
                                       [&told](LoadPhase phase, double fraction) {
                                           told.emplace_back(phase, fraction);
                                           return true;
                                       }))
        << error;
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.front().first, LoadPhase::Reading);
    EXPECT_EQ(told.back(), std::make_pair(LoadPhase::Preparing, 1.0));
    std::size_t switches = 0;
    for (std::size_t i = 1; i < told.size(); ++i)
    {
        switches += told[i].first != told[i - 1].first ? 1 : 0;
    }
    EXPECT_EQ(switches, 1u) << "reading, then preparing, once each";
    EXPECT_EQ(data.lines.size(), 400u);

    // Stopped while preparing, after the file was read whole.
    EXPECT_THROW(KesraViewer::LoadScene(KesraViewer::SceneRequest{path, "", 0.0}, data, summary, error,
                                        [](LoadPhase phase, double fraction) {
                                            return phase == LoadPhase::Reading || fraction < 0.5;
                                        }),
                 KesraIo::ReadCancelled);
    EXPECT_TRUE(data.lines.empty());
    EXPECT_TRUE(data.title.empty());
}

TEST_F(Loading, TheBackgroundLoadEndsLoadedRefusedOrStopped)
{
    const std::string path = WriteLines("lines.vtk", 300, 40);
    {
        CBackgroundLoad load(KesraViewer::SceneRequest{path, "", 0.0}, false);
        ASSERT_EQ(Outcome(load), CBackgroundLoad::Outcome::Loaded) << load.Error();
        EXPECT_EQ(load.Phase(), LoadPhase::Preparing);
        EXPECT_EQ(load.Fraction(), 1.0);
        EXPECT_NE(load.Summary().find("300 lines"), std::string::npos) << load.Summary();
        EXPECT_EQ(load.TakeData().lines.size(), 300u);
    }
    {
        CBackgroundLoad load(KesraViewer::SceneRequest{path, "nothing", 0.0}, false);
        ASSERT_EQ(Outcome(load), CBackgroundLoad::Outcome::Refused);
        EXPECT_NE(load.Error().find("--scalars"), std::string::npos) << load.Error();
    }
    {
        // Stopped long before its end: no line is kept.
        const std::string large = WriteLines("large.vtk", 2000, 100);
        CBackgroundLoad load(KesraViewer::SceneRequest{large, "", 0.0}, false);
        load.Join();
        EXPECT_EQ(load.Result(), CBackgroundLoad::Outcome::Stopped);
        EXPECT_TRUE(load.TakeData().lines.empty());
    }
}

TEST_F(Loading, CtrlCIsSeenByTheLoadAndTheSecondOneKills)
{
    KesraViewer::CatchInterrupt();
    EXPECT_FALSE(KesraViewer::Interrupted());
    ASSERT_EQ(std::raise(SIGINT), 0);
    EXPECT_TRUE(KesraViewer::Interrupted());
    struct sigaction now = {};
    sigaction(SIGINT, nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL) << "a second Ctrl-C would not kill";

    const std::string path = WriteLines("lines.vtk", 100, 40);
    CBackgroundLoad load(KesraViewer::SceneRequest{path, "", 0.0}, false);
    EXPECT_EQ(Outcome(load), CBackgroundLoad::Outcome::Stopped);

    KesraViewer::ForgetInterrupt();
    EXPECT_FALSE(KesraViewer::Interrupted());
    CBackgroundLoad again(KesraViewer::SceneRequest{path, "", 0.0}, false);
    EXPECT_EQ(Outcome(again), CBackgroundLoad::Outcome::Loaded);
}

TEST_F(Loading, TheTerminalGetsALineEveryTenthOfEachPhase)
{
    testing::internal::CaptureStderr();
    KesraViewer::TerminalProgress terminal(true);
    for (int step = 0; step <= 100; ++step)
    {
        terminal.Tell(LoadPhase::Reading, step / 100.0);
    }
    terminal.Tell(LoadPhase::Preparing, 0.05);
    terminal.Tell(LoadPhase::Preparing, 0.25);
    terminal.Tell(LoadPhase::Preparing, 1.0);
    KesraViewer::TerminalProgress silent(false);
    silent.Tell(LoadPhase::Reading, 0.5);
    const std::string printed = testing::internal::GetCapturedStderr();
    std::string expected;
    for (int tenth = 1; tenth <= 10; ++tenth)
    {
        expected += "kesra-viewer: reading " + std::to_string(10 * tenth) + "%\n";
    }
    expected += "kesra-viewer: preparing lines 20%\nkesra-viewer: preparing lines 100%\n";
    EXPECT_EQ(printed, expected);
}

TEST(LoadingScreen, TheBarIsFilledToTheFractionOnTheScenesPaper)
{
    constexpr int kWidth = 320;
    constexpr int kHeight = 200;
    KesraTest::HeadlessRenderer headless(kWidth, kHeight);
    ASSERT_TRUE(headless.created);
    KesraViewer::CLoadingScreen screen("lines.vtk");
    glBindFramebuffer(GL_FRAMEBUFFER, headless.context.Framebuffer());
    const KesraViewer::CLoadingScreen::Box bar = KesraViewer::CLoadingScreen::Bar(kWidth, kHeight);
    EXPECT_EQ(bar.x1 - bar.x0, 160.0f);
    const int row = static_cast<int>(0.5f * (bar.y0 + bar.y1));
    for (const double fraction : {0.25, 0.75})
    {
        SCOPED_TRACE(fraction);
        screen.Draw(kWidth, kHeight, LoadPhase::Reading, fraction);
        glFinish();
        const int split = static_cast<int>(bar.x0 + fraction * (bar.x1 - bar.x0));
        using KesraTest::ColorNear;
        using KesraTest::PixelAt;
        EXPECT_TRUE(ColorNear(PixelAt(headless.renderer, static_cast<int>(bar.x0) + 2, row),
                              KesraViewer::CLoadingScreen::kFill, 0));
        EXPECT_TRUE(ColorNear(PixelAt(headless.renderer, split - 2, row), KesraViewer::CLoadingScreen::kFill, 0));
        EXPECT_TRUE(ColorNear(PixelAt(headless.renderer, split + 2, row), KesraViewer::CLoadingScreen::kTrack, 0));
        EXPECT_TRUE(ColorNear(PixelAt(headless.renderer, static_cast<int>(bar.x1) - 2, row),
                              KesraViewer::CLoadingScreen::kTrack, 0));
        // The scene's paper: pale blue at the top, white at the bottom.
        EXPECT_TRUE(ColorNear(PixelAt(headless.renderer, 2, kHeight - 1), KesraGl::Color{214, 226, 242, 255}, 2));
        EXPECT_TRUE(ColorNear(PixelAt(headless.renderer, 2, 0), KesraGl::Color{255, 255, 255, 255}, 2));
    }
}

} // namespace
