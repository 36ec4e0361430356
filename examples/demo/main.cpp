// kesra-demo: streamlines of the flow around a sphere, drawn through the
// reference SVG backend. Writes the frame and, on request, a contact sheet of
// the seven standard views and the legend in each of its options, and prints a
// summary.
//
// Exit codes: 0 done, 1 an output could not be written (nothing is left
// behind), 2 a bad option or value.
#include "Flow.h"
#include "Scene.h"
#include "common/Palette.h"
#include "svg/SvgSheet.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace
{

using KesraBackend::kPalettes;
using KesraBackend::kViews;
using KesraBackend::Palette;
using KesraBackend::View;

constexpr int kMinSide = 400;
constexpr int kMaxSide = 8000;

// The options that take a value; --help takes none.
constexpr const char* kValueOptions[] = {"--out", "--sheet", "--size",
                                         "--view", "--palette", "--banded"};

const char* NameOf(const char* name)
{
    return name;
}

template <typename Entry>
const char* NameOf(const Entry& entry)
{
    return entry.name;
}

template <typename Table>
std::string Names(const Table& table)
{
    std::string names;
    for (const auto& entry : table)
    {
        names += (names.empty() ? "" : ", ") + std::string(NameOf(entry));
    }
    return names;
}

// What an option accepts, for the usage and for a missing or bad value.
std::string Accepted(const std::string& option)
{
    if (option == "--size")
    {
        return "WxH with W and H from " + std::to_string(kMinSide) + " to " + std::to_string(kMaxSide);
    }
    if (option == "--view")
    {
        return "one of " + Names(kViews);
    }
    if (option == "--palette")
    {
        return "one of " + Names(kPalettes);
    }
    if (option == "--banded")
    {
        return "0 (smooth) or a block count from 2 to 30";
    }
    return "a file name";
}

std::string Usage()
{
    return "usage: kesra-demo [--out FILE] [--sheet FILE] [--size WxH] [--view VIEW]\n"
           "                  [--palette PALETTE] [--banded N] [--help]\n"
           "  --out FILE         the frame (default kesra-demo.svg)\n"
           "  --sheet FILE       also a contact sheet of the seven standard views and\n"
           "                     the legend in each of its options\n"
           "  --size WxH         " + Accepted("--size") + " pixels (default 1200x800)\n"
           "  --view VIEW        " + Accepted("--view") + " (default iso)\n"
           "  --palette PALETTE  " + Accepted("--palette") + " (default redblue)\n"
           "  --banded N         " + Accepted("--banded") + " (default 0)\n"
           "  --help             this text\n";
}

struct Options
{
    std::string out = "kesra-demo.svg";
    std::string sheet;
    int width = 1200;
    int height = 800;
    View view = View::Iso;
    KesraDemo::SceneOptions scene;
    bool help = false;
};

// A bad command line: the message names the option and what it accepts.
struct UsageError
{
    std::string message;
};

// Decimal digits only, any number of them, as long as the value fits.
bool ParseInt(const std::string& text, int& value)
{
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
    {
        return false;
    }
    int parsed = 0;
    for (const char c : text)
    {
        const int digit = c - '0';
        if (parsed > (std::numeric_limits<int>::max() - digit) / 10)
        {
            return false;
        }
        parsed = 10 * parsed + digit;
    }
    value = parsed;
    return true;
}

bool ParseSize(const std::string& text, int& width, int& height)
{
    const std::size_t x = text.find('x');
    return x != std::string::npos && ParseInt(text.substr(0, x), width)
           && ParseInt(text.substr(x + 1), height) && width >= kMinSide && width <= kMaxSide
           && height >= kMinSide && height <= kMaxSide;
}

template <typename Table, typename Value>
bool ParseName(const Table& table, const std::string& text, Value& value)
{
    for (const auto& entry : table)
    {
        if (text == entry.name)
        {
            value = entry.value;
            return true;
        }
    }
    return false;
}

// Throws UsageError for a value the option does not accept.
void ApplyOption(Options& options, const std::string& name, const std::string& value)
{
    bool accepted = !value.empty();
    if (name == "--out" || name == "--sheet")
    {
        (name == "--out" ? options.out : options.sheet) = value;
    }
    else if (name == "--size")
    {
        accepted = ParseSize(value, options.width, options.height);
    }
    else if (name == "--view")
    {
        accepted = ParseName(kViews, value, options.view);
    }
    else if (name == "--palette")
    {
        accepted = ParseName(kPalettes, value, options.scene.palette);
    }
    else if (name == "--banded")
    {
        int blocks = 0;
        accepted = ParseInt(value, blocks) && blocks != 1 && blocks <= 30;
        options.scene.bandedBlocks = blocks;
    }
    if (!accepted)
    {
        throw UsageError{name + ": '" + value + "' is not " + Accepted(name)};
    }
}

std::string AbsolutePath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

// True when the two paths name one file: the same path in two spellings, or
// two links to one existing file.
bool SameFile(const std::string& a, const std::string& b)
{
    std::error_code error;
    return AbsolutePath(a) == AbsolutePath(b) || std::filesystem::equivalent(a, b, error);
}

Options ParseCommandLine(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i)
    {
        std::string name = argv[i];
        std::string value;
        bool hasValue = false;
        const std::size_t equals = name.find('=');
        if (name.compare(0, 2, "--") == 0 && equals != std::string::npos)
        {
            value = name.substr(equals + 1);
            name.erase(equals);
            hasValue = true;
        }
        if (name == "--help" && !hasValue)
        {
            options.help = true;
            continue;
        }
        if (name == "--help")
        {
            throw UsageError{"--help: takes no value"};
        }
        if (std::find(std::begin(kValueOptions), std::end(kValueOptions), name)
            == std::end(kValueOptions))
        {
            throw UsageError{(name.compare(0, 1, "-") == 0 ? "unknown option '" : "unexpected argument '")
                             + name + "'; accepted: " + Names(kValueOptions) + ", --help"};
        }
        if (!hasValue)
        {
            if (i + 1 >= argc)
            {
                throw UsageError{name + ": needs a value, " + Accepted(name)};
            }
            value = argv[++i];
        }
        ApplyOption(options, name, value);
    }
    if (!options.sheet.empty() && SameFile(options.sheet, options.out))
    {
        throw UsageError{"--sheet: '" + options.sheet + "' is the frame's file too; give it another"};
    }
    return options;
}

// An output that failed: the path and the reason.
struct WriteError
{
    std::string path;
    std::string reason;
};

// Creates a temporary file next to path, under a name that exists nowhere
// else: neither on disk (the "x" mode refuses an existing file) nor among
// the outputs, so that it can replace none of them.
std::FILE* OpenTemporary(const std::string& path, const std::vector<std::string>& targets,
                         std::mt19937_64& random, std::string& temporary)
{
    for (int attempt = 0; attempt < 100; ++attempt)
    {
        char suffix[32];
        std::snprintf(suffix, sizeof suffix, ".%016llx.tmp",
                      static_cast<unsigned long long>(random()));
        temporary = path + suffix;
        if (std::find(targets.begin(), targets.end(), temporary) != targets.end())
        {
            continue;
        }
        std::FILE* file = std::fopen(temporary.c_str(), "wbx");
        if (file != nullptr || errno != EEXIST)
        {
            return file;
        }
    }
    errno = EEXIST;
    return nullptr;
}

// Writes text to a new temporary file next to path and returns its name.
std::string WriteTemporary(const std::string& path, const std::string& text,
                           const std::vector<std::string>& targets, std::mt19937_64& random)
{
    std::string temporary;
    std::FILE* file = OpenTemporary(path, targets, random, temporary);
    if (file == nullptr)
    {
        throw WriteError{path, std::strerror(errno)};
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const int writeErrno = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed)
    {
        const int reason = written ? errno : writeErrno;
        std::remove(temporary.c_str());
        throw WriteError{path, std::strerror(reason)};
    }
    return temporary;
}

// All or nothing: every output is written to a temporary first and renamed
// into place only when all are written and no target is a directory. Should
// a rename still fail, the temporaries and the outputs already in place go.
void WriteOutputs(const std::vector<std::pair<std::string, std::string>>& outputs)
{
    std::vector<std::string> targets;
    for (const auto& output : outputs)
    {
        targets.push_back(output.first);
    }
    std::random_device seed;
    std::mt19937_64 random((static_cast<std::uint64_t>(seed()) << 32) ^ seed());
    std::vector<std::string> temporaries;
    std::size_t renamed = 0;
    try
    {
        for (const auto& [path, text] : outputs)
        {
            temporaries.push_back(WriteTemporary(path, text, targets, random));
        }
        for (const std::string& target : targets)
        {
            std::error_code error;
            if (std::filesystem::is_directory(target, error))
            {
                throw WriteError{target, std::strerror(EISDIR)};
            }
        }
        for (; renamed < targets.size(); ++renamed)
        {
            if (std::rename(temporaries[renamed].c_str(), targets[renamed].c_str()) != 0)
            {
                throw WriteError{targets[renamed], std::strerror(errno)};
            }
        }
    }
    catch (const WriteError&)
    {
        for (std::size_t i = 0; i < temporaries.size(); ++i)
        {
            std::remove((i < renamed ? targets[i] : temporaries[i]).c_str());
        }
        throw;
    }
}

int Run(const Options& options)
{
    const auto start = std::chrono::steady_clock::now();
    const KesraBackend::SceneData data = KesraExamples::FlowSceneData();
    KesraDemo::DemoScene scene(data, options.scene);

    std::vector<std::pair<std::string, std::string>> outputs;
    if (!options.sheet.empty())
    {
        // A third of the frame, but large enough to read.
        const int cellWidth = std::max(options.width / 3, 300);
        const int cellHeight = std::max(options.height / 3, 200);
        std::vector<KesraSvg::SheetCell> cells;
        for (const KesraBackend::NamedView& view : kViews)
        {
            cells.push_back({view.name, scene.RenderFrame(view.value, cellWidth, cellHeight, true),
                             cellWidth, cellHeight});
        }
        const KesraSvg::SheetCell key = scene.RenderKey(2 * cellHeight);
        outputs.emplace_back(options.sheet,
                             KesraSvg::ComposeSheet("Flow around a sphere: the seven standard views",
                                                    cells, 3, cellWidth, cellHeight, &key,
                                                    scene.RenderLegendStrip(2 * cellHeight)));
    }
    // The frame last, so that the summary tells of its ruler.
    outputs.insert(outputs.begin(),
                   {options.out, scene.RenderFrame(options.view, options.width, options.height, false)});
    WriteOutputs(outputs);
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    const KesraDemo::SceneSummary& summary = scene.Summary();
    std::printf("kesra-demo: potential flow of a 1 m/s stream past a sphere of radius 1 m\n");
    std::printf("  streamlines:   %d\n", summary.streamlines);
    std::printf("  nodes:         %d\n", summary.nodes);
    std::printf("  ring vertices: %d\n", summary.ringVertices);
    std::printf("  speed range:   %.3f to %.3f m/s\n", summary.minSpeed, summary.maxSpeed);
    std::printf("  ruler:         %s\n", scene.RulerText().c_str());
    std::printf("  view:          %s, %dx%d\n", KesraBackend::ViewName(options.view), options.width,
                options.height);
    std::printf("  frame:         %s\n", AbsolutePath(options.out).c_str());
    if (!options.sheet.empty())
    {
        std::printf("  sheet:         %s (seven views)\n", AbsolutePath(options.sheet).c_str());
    }
    std::printf("  time taken:    %.3f s\n", seconds);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    try
    {
        options = ParseCommandLine(argc, argv);
    }
    catch (const UsageError& error)
    {
        std::fprintf(stderr, "kesra-demo: %s\n%s", error.message.c_str(), Usage().c_str());
        return 2;
    }
    if (options.help)
    {
        std::fputs(Usage().c_str(), stdout);
        return 0;
    }
    try
    {
        return Run(options);
    }
    catch (const WriteError& error)
    {
        std::fprintf(stderr, "kesra-demo: cannot write '%s': %s\n", error.path.c_str(),
                     error.reason.c_str());
        return 1;
    }
}
