#include "Options.h"

#include <cerrno>
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

bool ParseView(const std::string& text, Options& options)
{
    for (const KesraExamples::NamedView& entry : KesraExamples::kViews)
    {
        if (text == entry.name)
        {
            options.view = entry.value;
            return true;
        }
    }
    return false;
}

std::string ViewNames()
{
    std::string names;
    for (const KesraExamples::NamedView& entry : KesraExamples::kViews)
    {
        names += names.empty() ? "" : ", ";
        names += entry.name;
    }
    return names;
}

} // namespace

const char* Usage()
{
    return "usage: kesra-viewer [--size WxH] [--view V] [--events FILE] [--bench-frames N] [FILE.vtk]\n"
           "       kesra-viewer --headless --snapshot FILE.png [--size WxH] [--view V]\n"
           "                    [--events FILE] [--bench-frames N] [FILE.vtk]\n"
           "Without a file the viewer shows the flow past a sphere.\n";
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
        if (option == "--headless")
        {
            options.headless = true;
            continue;
        }
        const bool takesValue = option == "--snapshot" || option == "--size" || option == "--view"
                                || option == "--events" || option == "--bench-frames";
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
        else if (option == "--size" && !ParseSize(value, options))
        {
            error = "--size takes WxH with sides from " + std::to_string(kMinSide) + " to "
                    + std::to_string(kMaxSide) + ", not " + value;
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
