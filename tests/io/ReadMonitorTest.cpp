// Reading with a monitor: the fraction it is told rises to 1 in a bounded
// number of calls, a false answer stops every kind of file at any point with
// ReadCancelled (not a ReadError), and the result read under a monitor is
// the one read without.
#include "KesraIo/Reader.h"
#include "io/support/PolyDataWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

namespace
{

using namespace KesraIoTest;

struct Kind
{
    const char* name;
    std::string path;
};

class ReadMonitorTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const char* scratch = std::getenv("TEST_TMPDIR");
        s_directory = std::filesystem::path(scratch != nullptr ? scratch : "/tmp") /
                      ("kesra-read-monitor-" + std::to_string(::getpid()));
        std::filesystem::create_directories(s_directory);
        // 2 * 10^5 points: tens of progress steps in every kind of file.
        s_lines = SampleLines(400, 500);
        LegacyFormat ascii;
        LegacyFormat binary;
        binary.binary = true;
        XmlFormat inlineText;
        inlineText.encoding = Encoding::Ascii;
        XmlFormat raw;
        XmlFormat zlib;
        zlib.zlib = true;
        zlib.blockSize = 1 << 14;
        s_kinds = {{"legacy ASCII", Write("ascii.vtk", WriteLegacy(s_lines, ascii))},
                   {"legacy binary", Write("binary.vtk", WriteLegacy(s_lines, binary))},
                   {"XML ASCII", Write("ascii.vtp", WriteVtp(s_lines, inlineText))},
                   {"XML appended", Write("raw.vtp", WriteVtp(s_lines, raw))},
                   {"XML zlib", Write("zlib.vtp", WriteVtp(s_lines, zlib))}};
        std::vector<std::string> files;
        const std::vector<KesraIo::PolyData> pieces = SplitByLines(s_lines, 3);
        for (std::size_t i = 0; i < pieces.size(); ++i)
        {
            files.push_back("piece" + std::to_string(i) + ".vtp");
            Write(files.back(), WriteVtp(pieces[i], i == 1 ? zlib : raw));
        }
        s_kinds.push_back({"collection", Write("all.vtm", WriteVtm({{"lines", files}}, raw))});
    }

    static void TearDownTestSuite() { std::filesystem::remove_all(s_directory); }

    static std::string Write(const std::string& name, const std::string& bytes)
    {
        const std::string path = (s_directory / name).string();
        WriteFile(path, bytes);
        return path;
    }

    static std::filesystem::path s_directory;
    static KesraIo::PolyData s_lines;
    static std::vector<Kind> s_kinds;
};

std::filesystem::path ReadMonitorTest::s_directory;
KesraIo::PolyData ReadMonitorTest::s_lines;
std::vector<Kind> ReadMonitorTest::s_kinds;

// Every fraction the monitor was told, answering true.
std::vector<double> Fractions(const std::string& path, KesraIo::PolyData& data)
{
    std::vector<double> told;
    data = KesraIo::ReadPolyData(path, KesraIo::ReadMonitor{[&told](double fraction) {
                                     told.push_back(fraction);
                                     return true;
                                 }});
    return told;
}

TEST_F(ReadMonitorTest, TheFractionRisesToOneAndTheResultIsTheSame)
{
    for (const Kind& kind : s_kinds)
    {
        SCOPED_TRACE(kind.name);
        KesraIo::PolyData data;
        const std::vector<double> told = Fractions(kind.path, data);
        ASSERT_GE(told.size(), 4u) << "too few calls to show progress";
        EXPECT_LE(told.size(), 300u) << "more calls than a host wants";
        EXPECT_GT(told.front(), 0.0);
        EXPECT_EQ(told.back(), 1.0);
        for (std::size_t i = 1; i < told.size(); ++i)
        {
            ASSERT_GT(told[i], told[i - 1]) << "call " << i;
        }
        // Reading from the disk takes a third: parsing told its part too.
        EXPECT_GT(told[told.size() - 2], 0.5);
        const KesraIo::PolyData plain = KesraIo::ReadPolyData(kind.path);
        EXPECT_EQ(data.points.Floats(), plain.points.Floats());
        EXPECT_EQ(data.points.Doubles(), plain.points.Doubles());
        EXPECT_EQ(data.connectivity, plain.connectivity);
        EXPECT_EQ(data.lineOffsets, plain.lineOffsets);
        ASSERT_EQ(data.arrays.size(), plain.arrays.size());
        EXPECT_EQ(data.PointCount(), s_lines.PointCount());
    }
}

TEST_F(ReadMonitorTest, FalseStopsEveryKindAtAnyPoint)
{
    for (const Kind& kind : s_kinds)
    {
        SCOPED_TRACE(kind.name);
        KesraIo::PolyData unused;
        const std::size_t calls = Fractions(kind.path, unused).size();
        // The first call (reading from the disk), one in the middle (parsing)
        // and the last (the whole result is there, and still refused).
        for (const std::size_t stopAt : {std::size_t{1}, calls / 2, calls})
        {
            std::size_t heard = 0;
            const KesraIo::ReadMonitor monitor{[&heard, stopAt](double) { return ++heard < stopAt; }};
            try
            {
                KesraIo::ReadPolyData(kind.path, monitor);
                ADD_FAILURE() << "not stopped at call " << stopAt;
            }
            catch (const KesraIo::ReadCancelled& stopped)
            {
                EXPECT_STRNE(stopped.what(), "");
            }
            catch (const KesraIo::ReadError& error)
            {
                ADD_FAILURE() << "a stop reported as a bad file: " << error.what();
            }
            EXPECT_EQ(heard, stopAt) << "the monitor was asked again after it said stop";
        }
    }
}

TEST_F(ReadMonitorTest, WithoutAFunctionOrWithABadFileTheReadIsAsBefore)
{
    const KesraIo::PolyData data = KesraIo::ReadPolyData(s_kinds[1].path, KesraIo::ReadMonitor{});
    EXPECT_EQ(data.PointCount(), s_lines.PointCount());

    const std::string bad = Write("bad.vtk", "# vtk DataFile Version 3.0\nx\nASCII\nDATASET POLYDATA\n"
                                             "POINTS 3 float\n0 0 0 1 1\n");
    std::size_t heard = 0;
    const KesraIo::ReadMonitor counting{[&heard](double) { return ++heard > 0; }};
    EXPECT_THROW(KesraIo::ReadPolyData(bad, counting), KesraIo::ReadError);
    EXPECT_THROW(KesraIo::ReadPolyData(Write("none.vtp", ""), counting), KesraIo::ReadError);
    EXPECT_THROW(KesraIo::ReadPolyData((s_directory / "missing.vtk").string(), counting), KesraIo::ReadError);
}

} // namespace
