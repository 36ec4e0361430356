// kesra-demo: streamlines of the flow around a sphere, drawn through the
// reference SVG backend. Writes the frame and, on request, a contact sheet of
// the seven standard views, and prints a summary.
//
// Exit codes: 0 done, 1 an output could not be written (nothing is left
// behind), 2 a bad option or value.
#include "Flow.h"
#include "Scene.h"
#include "svg/SvgSheet.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using KesraDemo::Palette;
using KesraDemo::View;

constexpr int kMinSide = 400;
constexpr int kMaxSide = 8000;

const char* const kUsage =
    "usage: kesra-demo [--out FILE] [--sheet FILE] [--size WxH] [--view VIEW]\n"
    "                  [--palette PALETTE] [--banded N] [--help]\n"
    "  --out FILE         the frame (default kesra-demo.svg)\n"
    "  --sheet FILE       also a contact sheet of the seven standard views\n"
    "  --size WxH         frame size in pixels, W and H from 400 to 8000 (default 1200x800)\n"
    "  --view VIEW        iso, front, back, left, right, top or bottom (default iso)\n"
    "  --palette PALETTE  redblue, bluered, gray or greenred (default redblue)\n"
    "  --banded N         0 for a smooth legend, else 2 to 30 colour blocks (default 0)\n"
    "  --help             this text\n";

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

bool ParseInt(const std::string& text, int& value)
{
    if (text.empty() || text.size() > 6 || text.find_first_not_of("0123456789") != std::string::npos)
    {
        return false;
    }
    value = std::stoi(text);
    return true;
}

bool ParseSize(const std::string& text, int& width, int& height)
{
    const std::size_t x = text.find('x');
    return x != std::string::npos && ParseInt(text.substr(0, x), width)
           && ParseInt(text.substr(x + 1), height) && width >= kMinSide && width <= kMaxSide
           && height >= kMinSide && height <= kMaxSide;
}

bool ParseView(const std::string& text, View& view)
{
    const View views[] = {View::Iso, View::Front, View::Back, View::Left,
                          View::Right, View::Top, View::Bottom};
    for (const View candidate : views)
    {
        if (text == KesraDemo::ViewName(candidate))
        {
            view = candidate;
            return true;
        }
    }
    return false;
}

bool ParsePalette(const std::string& text, Palette& palette)
{
    const struct
    {
        const char* name;
        Palette palette;
    } palettes[] = {{"redblue", Palette::RedBlue},
                    {"bluered", Palette::BlueRed},
                    {"gray", Palette::Gray},
                    {"greenred", Palette::GreenRed}};
    for (const auto& candidate : palettes)
    {
        if (text == candidate.name)
        {
            palette = candidate.palette;
            return true;
        }
    }
    return false;
}

void ApplyOption(Options& options, const std::string& name, const std::string& value)
{
    const auto bad = [&](const char* accepted) {
        return UsageError{name + ": '" + value + "' is not " + accepted};
    };
    if (name == "--out" || name == "--sheet")
    {
        if (value.empty())
        {
            throw UsageError{name + ": needs a file name"};
        }
        (name == "--out" ? options.out : options.sheet) = value;
    }
    else if (name == "--size")
    {
        if (!ParseSize(value, options.width, options.height))
        {
            throw bad("WxH with W and H from 400 to 8000");
        }
    }
    else if (name == "--view")
    {
        if (!ParseView(value, options.view))
        {
            throw bad("one of iso, front, back, left, right, top, bottom");
        }
    }
    else if (name == "--palette")
    {
        if (!ParsePalette(value, options.scene.palette))
        {
            throw bad("one of redblue, bluered, gray, greenred");
        }
    }
    else if (name == "--banded")
    {
        int blocks = 0;
        if (!ParseInt(value, blocks) || blocks == 1 || blocks > 30)
        {
            throw bad("0 (smooth) or a block count from 2 to 30");
        }
        options.scene.bandedBlocks = blocks;
    }
}

std::string AbsolutePath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
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
        if (name == "--help")
        {
            options.help = true;
            continue;
        }
        const bool known = name == "--out" || name == "--sheet" || name == "--size"
                           || name == "--view" || name == "--palette" || name == "--banded";
        if (!known)
        {
            throw UsageError{(name.compare(0, 1, "-") == 0 ? "unknown option '" : "unexpected argument '")
                             + name + "'; accepted: --out, --sheet, --size, --view, --palette, "
                               "--banded, --help"};
        }
        if (!hasValue)
        {
            if (i + 1 >= argc)
            {
                throw UsageError{name + ": needs a value"};
            }
            value = argv[++i];
        }
        ApplyOption(options, name, value);
    }
    if (!options.sheet.empty() && AbsolutePath(options.sheet) == AbsolutePath(options.out))
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

// Writes text to a temporary file next to path; renamed into place only when
// every output has been written, so that no half-written file is left.
std::string WriteTemporary(const std::string& path, const std::string& text)
{
    const std::string temporary = path + ".partial";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
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

void WriteOutputs(const std::vector<std::pair<std::string, std::string>>& outputs)
{
    std::vector<std::string> temporaries;
    try
    {
        for (const auto& [path, text] : outputs)
        {
            temporaries.push_back(WriteTemporary(path, text));
        }
        for (std::size_t i = 0; i < outputs.size(); ++i)
        {
            if (std::rename(temporaries[i].c_str(), outputs[i].first.c_str()) != 0)
            {
                throw WriteError{outputs[i].first, std::strerror(errno)};
            }
            temporaries[i].clear();
        }
    }
    catch (const WriteError&)
    {
        for (const std::string& temporary : temporaries)
        {
            if (!temporary.empty())
            {
                std::remove(temporary.c_str());
            }
        }
        throw;
    }
}

int Run(const Options& options)
{
    const auto start = std::chrono::steady_clock::now();
    const std::vector<KesraDemo::FlowLine> lines = KesraDemo::TraceSphereFlow();
    KesraDemo::DemoScene scene(lines, options.scene);

    std::vector<std::pair<std::string, std::string>> outputs;
    if (!options.sheet.empty())
    {
        const View views[] = {View::Iso, View::Front, View::Back, View::Left,
                              View::Right, View::Top, View::Bottom};
        // A third of the frame, but large enough to read.
        const int cellWidth = std::max(options.width / 3, 300);
        const int cellHeight = std::max(options.height / 3, 200);
        std::vector<KesraSvg::SheetCell> cells;
        for (const View view : views)
        {
            cells.push_back({KesraDemo::ViewName(view),
                             scene.RenderFrame(view, cellWidth, cellHeight, true), cellWidth,
                             cellHeight});
        }
        outputs.emplace_back(options.sheet,
                             KesraSvg::ComposeSheet("Flow around a sphere: the seven standard views",
                                                    cells, 3, cellWidth, cellHeight));
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
    std::printf("  view:          %s, %dx%d\n", KesraDemo::ViewName(options.view), options.width,
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
        std::fprintf(stderr, "kesra-demo: %s\n%s", error.message.c_str(), kUsage);
        return 2;
    }
    if (options.help)
    {
        std::fputs(kUsage, stdout);
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
