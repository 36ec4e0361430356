#include "Options.h"

#include "gl/GlSceneControls.h"

#include <cerrno>
#include <cstddef>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace KesraViewer
{

namespace
{

constexpr int kMinSide = 16;
constexpr int kMaxSide = 8000;
constexpr int kMaxBenchFrames = 100000;

bool WholeNumber(const std::string& text, int low, int high, int& value)
{
    char* end = nullptr;
    errno = 0;
    const long number = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || end == text.c_str() || *end != '\0' || errno == ERANGE || number < low
        || number > high || !(text[0] >= '0' && text[0] <= '9'))
    {
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

bool ParseSize(const std::string& text, Options& options)
{
    const std::size_t x = text.find('x');
    return x != std::string::npos
           && WholeNumber(text.substr(0, x), kMinSide, kMaxSide, options.width)
           && WholeNumber(text.substr(x + 1), kMinSide, kMaxSide, options.height);
}

// The value named text in table, a list of {value, name} (views, palettes).
template <typename Entry, std::size_t N, typename Value>
bool ParseNamed(const Entry (&table)[N], const std::string& text, Value& value)
{
    for (const Entry& entry : table)
    {
        if (text == entry.name)
        {
            value = entry.value;
            return true;
        }
    }
    return false;
}

template <typename Entry, std::size_t N>
std::string NamesOf(const Entry (&table)[N])
{
    std::string names;
    for (const Entry& entry : table)
    {
        names += names.empty() ? "" : ", ";
        names += entry.name;
    }
    return names;
}

bool ParseView(const std::string& text, Options& options)
{
    return ParseNamed(KesraBackend::kViews, text, options.view);
}

std::string ViewNames()
{
    return NamesOf(KesraBackend::kViews);
}

// A finite number, the whole text of it.
bool RealNumber(const std::string& text, double& value)
{
    char* end = nullptr;
    errno = 0;
    const double number = std::strtod(text.c_str(), &end);
    if (text.empty() || end != text.c_str() + text.size() || errno == ERANGE || !std::isfinite(number))
    {
        return false;
    }
    value = number;
    return true;
}

bool ParseRange(const std::string& low, const std::string& high, Options& options)
{
    double minimum = 0.0;
    double maximum = 0.0;
    if (!RealNumber(low, minimum) || !RealNumber(high, maximum) || !(minimum < maximum))
    {
        return false;
    }
    options.hasRange = true;
    options.rangeMin = minimum;
    options.rangeMax = maximum;
    return true;
}

bool ParsePalette(const std::string& text, Options& options)
{
    return ParseNamed(KesraBackend::kPalettes, text, options.palette);
}

std::string PaletteNames()
{
    return NamesOf(KesraBackend::kPalettes);
}

constexpr int kMaxLabelDigits = 17;

// fixed, sci or auto; the first two optionally followed by ":DIGITS", the
// decimals after the point (automatic finds its own digits).
bool ParseFormat(const std::string& text, Options& options)
{
    const std::size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    int digits = 2;
    if (colon != std::string::npos
        && (name == "auto" || !WholeNumber(text.substr(colon + 1), 0, kMaxLabelDigits, digits)))
    {
        return false;
    }
    if (name == "fixed" || name == "sci" || name == "auto")
    {
        options.labelFormat = name == "fixed" ? KesraEngine::eLabelFormatFixed
                              : name == "sci" ? KesraEngine::eLabelFormatScientific
                                              : KesraEngine::eLabelFormatAutomatic;
        options.labelDigits = digits;
        return true;
    }
    return false;
}

} // namespace

std::string Usage()
{
    std::string usage =
        "usage: kesra-viewer [OPTIONS] [FILE]\n"
        "       kesra-viewer --headless --snapshot FILE.png [OPTIONS] [FILE]\n"
        "       kesra-viewer --info FILE\n"
        "Shows the polylines of FILE as tubes coloured by one of its arrays: legacy\n"
        ".vtk polydata (ASCII or binary, versions 2.0 to 5.1), XML polydata .vtp, its\n"
        "parallel summary .pvtp and multi-block .vtm. Without a file the viewer shows\n"
        "the flow past a sphere.\n"
        "  --info              print the file's points, lines, bounds and arrays\n"
        "                      (components, finite ranges), then exit\n"
        "  --scalars NAME      the array that colours: NAME (a vector by its\n"
        "                      magnitude), NAME:mag, NAME:x|y|z or NAME:N (component N\n"
        "                      from 0); default the file's active scalars, else its\n"
        "                      first point array, else the height z\n"
        "  --range MIN MAX     the legend's range (default the data's; r returns to it)\n"
        "  --radius R          the tube radius in model units (default from the size)\n"
        "  --unit TEXT         the ruler's unit (default none for a file)\n"
        "  --palette NAME      one of " + PaletteNames() + "\n"
        "                      (default redblue; p steps through them)\n"
        "  --log               the legend on a log scale: labels at decades, NaN and\n"
        "                      values <= 0 in the NaN colour (g toggles it)\n"
        "  --format F          the legend's labels: fixed[:D] or sci[:D] with D\n"
        "                      decimals from 0 to " + std::to_string(kMaxLabelDigits) + " (default 2), or auto, the\n"
        "                      fewest digits that tell neighbours apart\n"
        "  --size WxH          the window, sides from " + std::to_string(kMinSide) + " to " +
        std::to_string(kMaxSide) + " (default 1200x800)\n"
        "  --view V            one of " + ViewNames() + " (default iso)\n"
        "  --events FILE       replay mouse and key events first\n"
        "  --bench-frames N    time N frames at rest, then N of the moving view, and print\n"
        "                      the median and the worst of each\n"
        "  --headless          draw without a window (needs --snapshot or --bench-frames)\n"
        "  --snapshot FILE.png the picture after the events (headless)\n"
        "  --help              this text\n"
        "Controls:\n";
    for (const char* control : KesraGl::kSceneControls)
    {
        usage += std::string("  ") + control + "\n";
    }
    usage += "Exit codes: 0 done, 1 no graphics or an output not written, 2 bad input, 130 Ctrl-C.\n";
    return usage;
}

bool ParseOptions(int argc, const char* const* argv, Options& options, std::string& error)
{
    for (int i = 1; i < argc; ++i)
    {
        const std::string option = argv[i];
        if (option == "--help" || option == "-h")
        {
            options.help = true;
            continue;
        }
        if (option == "--headless" || option == "--info" || option == "--log")
        {
            (option == "--info" ? options.info
                                : option == "--log" ? options.logScale : options.headless) = true;
            continue;
        }
        if (option == "--range")
        {
            if (i + 2 >= argc || !ParseRange(argv[i + 1], argv[i + 2], options))
            {
                error = "--range takes two finite numbers MIN MAX with MIN < MAX";
                return false;
            }
            i += 2;
            continue;
        }
        const bool takesValue = option == "--snapshot" || option == "--size" || option == "--view"
                                || option == "--events" || option == "--bench-frames"
                                || option == "--scalars" || option == "--radius" || option == "--unit"
                                || option == "--palette" || option == "--format";
        if (!takesValue)
        {
            if (option.size() > 1 && option[0] == '-')
            {
                error = "unknown option " + option;
                return false;
            }
            if (!options.file.empty())
            {
                error = "one file at most, not " + options.file + " and " + option;
                return false;
            }
            options.file = option;
            continue;
        }
        if (i + 1 >= argc)
        {
            error = option + " needs a value";
            return false;
        }
        const std::string value = argv[++i];
        if (option == "--snapshot")
        {
            options.snapshot = value;
        }
        else if (option == "--events")
        {
            options.events = value;
        }
        else if (option == "--scalars")
        {
            options.scalars = value;
        }
        else if (option == "--unit")
        {
            options.hasUnit = true;
            options.unit = value;
        }
        else if (option == "--radius" && !(RealNumber(value, options.radius) && options.radius > 0.0))
        {
            error = "--radius takes a finite number greater than 0, not " + value;
            return false;
        }
        else if (option == "--size" && !ParseSize(value, options))
        {
            error = "--size takes WxH with sides from " + std::to_string(kMinSide) + " to "
                    + std::to_string(kMaxSide) + ", not " + value;
            return false;
        }
        else if (option == "--palette" && !ParsePalette(value, options))
        {
            error = "--palette takes one of " + PaletteNames() + ", not " + value;
            return false;
        }
        else if (option == "--format" && !ParseFormat(value, options))
        {
            error = "--format takes fixed[:D], sci[:D] (D from 0 to "
                    + std::to_string(kMaxLabelDigits) + ") or auto, not " + value;
            return false;
        }
        else if (option == "--view" && !ParseView(value, options))
        {
            error = "--view takes one of " + ViewNames() + ", not " + value;
            return false;
        }
        else if (option == "--bench-frames"
                 && !WholeNumber(value, 1, kMaxBenchFrames, options.benchFrames))
        {
            error = "--bench-frames takes a count from 1 to " + std::to_string(kMaxBenchFrames)
                    + ", not " + value;
            return false;
        }
    }
    if (options.info)
    {
        if (options.file.empty())
        {
            error = "--info needs a FILE";
            return false;
        }
        return true;
    }
    if (!options.scalars.empty() && options.file.empty())
    {
        error = "--scalars names an array of a FILE; the flow past a sphere has its speed only";
        return false;
    }
    if (options.headless && options.snapshot.empty() && options.benchFrames == 0)
    {
        error = "--headless needs --snapshot FILE.png or --bench-frames N";
        return false;
    }
    if (!options.headless && !options.snapshot.empty())
    {
        error = "--snapshot goes with --headless (in the window, s writes a snapshot)";
        return false;
    }
    return true;
}

} // namespace KesraViewer
