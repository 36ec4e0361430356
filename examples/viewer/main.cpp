// kesra-viewer: streamline results as tubes in a live OpenGL view, or
// rendered headlessly into a PNG. See Options.cpp for the command line and
// gl/GlSceneInput.h for the controls.
#include "Hosts.h"
#include "Interrupt.h"
#include "KesraIo/Reader.h"
#include "Loading.h"
#include "SceneSource.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace
{

// A large file takes a while to read: say so before, how far it is while,
// and what it held after.
void ReportReading(const std::string& file)
{
    if (KesraViewer::IsLargeFile(file))
    {
        std::error_code error;
        const double bytes = static_cast<double>(std::filesystem::file_size(file, error));
        std::fprintf(stderr, "kesra-viewer: reading %s (%.0f MB)\n", file.c_str(), bytes / 1e6);
    }
}

} // namespace

int main(int argc, char** argv)
{
    using namespace KesraViewer;
    Options options;
    std::string error;
    if (!ParseOptions(argc, argv, options, error))
    {
        std::fprintf(stderr, "kesra-viewer: %s\n(kesra-viewer --help lists the options)\n", error.c_str());
        return 2;
    }
    if (options.help)
    {
        std::fputs(Usage().c_str(), stdout);
        return 0;
    }
    if (options.info)
    {
        std::string text;
        if (!DescribeFile(options.file, text, error))
        {
            std::fprintf(stderr, "kesra-viewer: %s\n", error.c_str());
            return 2;
        }
        std::fputs(text.c_str(), stdout);
        return 0;
    }
    CatchInterrupt();
    ReportReading(options.file);
    const SceneRequest request{options.file, options.scalars, options.radius};
    // A window opens before a large file is read and shows how far it is.
    if (!options.headless && IsLargeFile(options.file))
    {
        return RunWindow(options, request);
    }
    SceneData data;
    std::string summary;
    TerminalProgress terminal(IsLargeFile(options.file));
    const auto progress = [&terminal](LoadPhase phase, double fraction) {
        terminal.Tell(phase, fraction);
        return !Interrupted();
    };
    bool loaded = false;
    try
    {
        loaded = LoadScene(request, data, summary, error, progress);
    }
    catch (const KesraIo::ReadCancelled&)
    {
        return ReportInterrupted();
    }
    if (!loaded)
    {
        std::fprintf(stderr, "kesra-viewer: %s\n", error.c_str());
        return 2;
    }
    if (!summary.empty())
    {
        std::printf("%s\n", summary.c_str());
        std::fflush(stdout);
    }
    if (options.hasUnit)
    {
        data.lengthUnit = options.unit;
    }
    return options.headless ? RunHeadless(options, std::move(data)) : RunWindow(options, std::move(data));
}
