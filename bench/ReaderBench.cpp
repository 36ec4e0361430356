// Reading a result file of 10^6 points on 1000 lines with three Float32
// point arrays (speed, velocity of 3 components, pressure), once per
// format, from files the test writer puts in a temporary folder on first use.
// Beside them, zlib's own inflate of the compressed file's blocks: the floor
// of reading that file.
//
// Each row runs twice: on warm pages, the allocator keeping what a pass
// frees for the next (a session's later reads), and on fresh pages, every
// large array a new mapping that the kernel zeroes page by page on first
// touch (a session's first read). Which one a row sees no longer depends on
// the rows before it.
//
// Counters: MB, bytes of the file per second of CPU time (10^6 bytes
// to the MB); peak_MB, how far the resident set rose during one read with
// the result still held; x_data, that peak over the result's own bytes
// (points, arrays, connectivity and offsets as stored in memory).
#include "KesraIo/Reader.h"
#include "io/support/PolyDataWriter.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <zlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

using namespace KesraIoTest;

constexpr std::size_t kLines = 1000;
constexpr std::size_t kPointsPerLine = 1000;

enum class Format
{
    LegacyAscii,
    LegacyBinary,
    VtpAscii,
    VtpBinary,
    VtpAppendedRaw,
    VtpAppendedBase64,
    VtpAppendedZlib
};

// The sample lines with their point arrays alone, velocity stored as floats.
const KesraIo::PolyData& BenchLines()
{
    static const KesraIo::PolyData lines = [] {
        KesraIo::PolyData data = SampleLines(kLines, kPointsPerLine);
        std::vector<KesraIo::DataArray> pointArrays;
        for (KesraIo::DataArray& array : data.arrays)
        {
            if (array.association == KesraIo::Association::Point)
            {
                pointArrays.push_back(std::move(array));
            }
        }
        data.arrays = std::move(pointArrays);
        return data;
    }();
    return lines;
}

std::string Bytes(Format format)
{
    const std::map<std::string, Scalar> floats = {{"velocity", Scalar::Float32}};
    if (format == Format::LegacyAscii || format == Format::LegacyBinary)
    {
        LegacyFormat legacy;
        legacy.binary = format == Format::LegacyBinary;
        legacy.arrayTypes = floats;
        return WriteLegacy(BenchLines(), legacy);
    }
    XmlFormat xml;
    xml.arrayTypes = floats;
    xml.encoding = format == Format::VtpAscii         ? Encoding::Ascii
                   : format == Format::VtpBinary      ? Encoding::Binary
                   : format == Format::VtpAppendedBase64 ? Encoding::AppendedBase64
                                                         : Encoding::AppendedRaw;
    xml.zlib = format == Format::VtpAppendedZlib;
    return WriteVtp(BenchLines(), xml);
}

// The folder of the written files, removed when the program ends.
class BenchFolder
{
public:
    BenchFolder()
        : m_path(std::filesystem::temp_directory_path() / ("kesra-reader-bench-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_path);
    }
    ~BenchFolder() { std::filesystem::remove_all(m_path); }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

const std::string& FilePath(Format format)
{
    static const BenchFolder folder;
    static std::map<Format, std::string> paths;
    const auto found = paths.find(format);
    if (found != paths.end())
    {
        return found->second;
    }
    const bool legacy = format == Format::LegacyAscii || format == Format::LegacyBinary;
    const std::string path =
        (folder.Path() / ("lines-" + std::to_string(static_cast<int>(format)) + (legacy ? ".vtk" : ".vtp"))).string();
    WriteFile(path, Bytes(format));
    return paths.emplace(format, path).first->second;
}

std::string WholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// ---- Memory ------------------------------------------------------------------------

enum class Pages
{
    Warm,
    Fresh
};

// Warm: no mapping of its own for any block, no trimming of the heap's top.
// Fresh: a mapping of its own for every block from 128 kB, unmapped when
// freed (setting the threshold also stops glibc from raising it).
void UsePages(Pages pages)
{
    if (pages == Pages::Warm)
    {
        mallopt(M_MMAP_MAX, 0);
        mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
        return;
    }
    mallopt(M_MMAP_MAX, 65536);
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 128 * 1024);
}

// A field of /proc/self/status in kB; 0 when there is none.
std::size_t StatusKb(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
    {
        if (line.compare(0, field.size(), field) == 0)
        {
            return std::stoul(line.substr(field.size()));
        }
    }
    return 0;
}

// Sets the resident set's high-water mark back to its current size; false
// where the kernel does not offer that.
bool ResetPeak()
{
    std::ofstream clear("/proc/self/clear_refs");
    clear << "5";
    clear.flush();
    return static_cast<bool>(clear);
}

double NumbersBytes(const KesraIo::Numbers& numbers)
{
    return static_cast<double>(numbers.Size() * (numbers.IsFloat() ? sizeof(float) : sizeof(double)));
}

double ResultBytes(const KesraIo::PolyData& lines)
{
    double bytes = NumbersBytes(lines.points);
    for (const KesraIo::DataArray& array : lines.arrays)
    {
        bytes += NumbersBytes(array.values);
    }
    return bytes + static_cast<double>((lines.connectivity.size() + lines.lineOffsets.size()) * sizeof(std::size_t));
}

struct Peak
{
    double megabytes;
    double overData;
};

// One read with the heap trimmed first, so that memory freed by earlier rows
// does not hide this one's growth; measured once per file and reported on
// every run of its row. Nothing where the kernel cannot reset the mark.
void ReportPeak(benchmark::State& state, const std::string& path)
{
    static std::map<std::string, Peak> peaks;
    auto found = peaks.find(path);
    if (found == peaks.end())
    {
        malloc_trim(0);
        const std::size_t before = StatusKb("VmRSS:");
        if (!ResetPeak() || before == 0)
        {
            return;
        }
        const KesraIo::PolyData lines = KesraIo::ReadPolyData(path);
        const std::size_t peak = StatusKb("VmHWM:");
        const double rise = static_cast<double>(peak > before ? peak - before : 0) * 1024.0;
        found = peaks.emplace(path, Peak{rise / 1e6, rise / ResultBytes(lines)}).first;
    }
    state.counters["peak_MB"] = found->second.megabytes;
    state.counters["x_data"] = found->second.overData;
}

// ---- Rows --------------------------------------------------------------------------

void SetFileRate(benchmark::State& state, std::size_t fileBytes)
{
    const auto bytes = static_cast<std::int64_t>(fileBytes) * static_cast<std::int64_t>(state.iterations());
    state.SetBytesProcessed(bytes);
    state.counters["MB"] = benchmark::Counter(static_cast<double>(bytes) / 1e6, benchmark::Counter::kIsRate);
    state.counters["file_MB"] = static_cast<double>(fileBytes) / 1e6;
}

void Read(benchmark::State& state, Format format, Pages pages)
{
    UsePages(pages);
    const std::string& path = FilePath(format);
    try
    {
        ReportPeak(state, path);
        for (auto _ : state)
        {
            benchmark::DoNotOptimize(KesraIo::ReadPolyData(path));
        }
    }
    catch (const KesraIo::ReadError& error)
    {
        state.SkipWithError(error.what());
        return;
    }
    SetFileRate(state, std::filesystem::file_size(path));
}

// Read with a monitor that counts its calls: what telling a host how far the
// read is costs, beside Read's row of the same file (calls: per read).
void ReadMonitored(benchmark::State& state, Format format, Pages pages)
{
    UsePages(pages);
    const std::string& path = FilePath(format);
    std::size_t calls = 0;
    const KesraIo::ReadMonitor monitor{[&calls](double) {
        ++calls;
        return true;
    }};
    try
    {
        for (auto _ : state)
        {
            benchmark::DoNotOptimize(KesraIo::ReadPolyData(path, monitor));
        }
    }
    catch (const KesraIo::ReadError& error)
    {
        state.SkipWithError(error.what());
        return;
    }
    SetFileRate(state, std::filesystem::file_size(path));
    state.counters["calls"] = static_cast<double>(calls) / static_cast<double>(state.iterations());
}

// The zlib file parsed from memory: the reader's share of Read/VtpAppendedZlib
// without the file's reading, as ZlibInflate has none.
void ParseZlibInMemory(benchmark::State& state, Pages pages)
{
    UsePages(pages);
    const std::string file = WholeFile(FilePath(Format::VtpAppendedZlib));
    try
    {
        for (auto _ : state)
        {
            benchmark::DoNotOptimize(KesraIo::ParseXmlPolyData(file, "lines.vtp"));
        }
    }
    catch (const KesraIo::ReadError& error)
    {
        state.SkipWithError(error.what());
        return;
    }
    SetFileRate(state, file.size());
}

// A compressed block of the appended data: where, and its sizes.
struct Block
{
    std::size_t at;
    std::size_t compressed;
    std::size_t inflated;
};

std::uint64_t LittleEndian(const std::string& bytes, std::size_t at)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < 8; ++i)
    {
        value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    }
    return value;
}

// The blocks of every array of the zlib file, found through each array's
// offset attribute and header (UInt64, little-endian: the writer's defaults).
std::vector<Block> Blocks(const std::string& file)
{
    std::vector<Block> blocks;
    const std::size_t appended = file.find('_', file.find("<AppendedData")) + 1;
    const std::string attribute = "offset=\"";
    for (std::size_t found = file.find(attribute); found < appended; found = file.find(attribute, found + 1))
    {
        const std::size_t at = appended + std::stoul(file.substr(found + attribute.size()));
        const std::uint64_t count = LittleEndian(file, at);
        const std::uint64_t blockSize = LittleEndian(file, at + 8);
        const std::uint64_t lastSize = LittleEndian(file, at + 16);
        std::size_t data = at + 24 + 8 * count;
        for (std::uint64_t b = 0; b < count; ++b)
        {
            const std::size_t compressed = LittleEndian(file, at + 24 + 8 * b);
            const bool shortLast = b + 1 == count && lastSize != 0;
            blocks.push_back({data, compressed, shortLast ? lastSize : blockSize});
            data += compressed;
        }
    }
    return blocks;
}

// Inflates every block of the zlib file into out, in file order; false when
// one does not inflate.
bool InflateAll(const std::string& file, const std::vector<Block>& blocks, unsigned char* out)
{
    for (const Block& block : blocks)
    {
        uLongf length = static_cast<uLongf>(block.inflated);
        if (uncompress(out, &length, reinterpret_cast<const Bytef*>(file.data() + block.at),
                       static_cast<uLong>(block.compressed)) != Z_OK)
        {
            return false;
        }
        out += length;
    }
    return true;
}

// zlib's own inflate of the zlib file's blocks, from memory, into one
// buffer, new each pass as a reader's result is.
void ZlibInflate(benchmark::State& state, Pages pages)
{
    UsePages(pages);
    const std::string file = WholeFile(FilePath(Format::VtpAppendedZlib));
    const std::vector<Block> blocks = Blocks(file);
    std::size_t total = 0;
    for (const Block& block : blocks)
    {
        total += block.inflated;
    }
    for (auto _ : state)
    {
        const std::unique_ptr<unsigned char[]> out(new unsigned char[total]);
        if (!InflateAll(file, blocks, out.get()))
        {
            state.SkipWithError("a block does not inflate");
            return;
        }
        benchmark::DoNotOptimize(out.get());
        benchmark::ClobberMemory();
    }
    SetFileRate(state, file.size());
    state.counters["blocks"] = static_cast<double>(blocks.size());
}

// Rows named Read/<format>/<pages>, ReadMonitored/<format>/warm,
// ParseZlibInMemory/<pages>, ZlibInflate/<pages>.
const bool kRegistered = [] {
    const std::pair<Format, const char*> formats[] = {
        {Format::LegacyAscii, "LegacyAscii"},
        {Format::LegacyBinary, "LegacyBinary"},
        {Format::VtpAscii, "VtpAscii"},
        {Format::VtpBinary, "VtpBinaryInline"},
        {Format::VtpAppendedRaw, "VtpAppendedRaw"},
        {Format::VtpAppendedBase64, "VtpAppendedBase64"},
        {Format::VtpAppendedZlib, "VtpAppendedZlib"},
    };
    const std::pair<Pages, const char*> pageKinds[] = {{Pages::Warm, "warm"}, {Pages::Fresh, "fresh"}};
    for (const auto& [pages, pagesName] : pageKinds)
    {
        for (const auto& [format, formatName] : formats)
        {
            benchmark::RegisterBenchmark((std::string("Read/") + formatName + "/" + pagesName).c_str(), Read, format,
                                         pages)
                ->Unit(benchmark::kMillisecond);
            if (pages == Pages::Warm)
            {
                benchmark::RegisterBenchmark((std::string("ReadMonitored/") + formatName + "/warm").c_str(),
                                             ReadMonitored, format, pages)
                    ->Unit(benchmark::kMillisecond);
            }
        }
        benchmark::RegisterBenchmark((std::string("ParseZlibInMemory/") + pagesName).c_str(), ParseZlibInMemory,
                                     pages)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("ZlibInflate/") + pagesName).c_str(), ZlibInflate, pages)
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

} // namespace
