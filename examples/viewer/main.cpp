// kesra-viewer: streamline results as tubes in a live OpenGL view, or
// rendered headlessly into a PNG. See Options.cpp for the command line and
// gl/GlSceneInput.h for the controls.
#include "Hosts.h"
#include "SceneSource.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace
{

// A large file takes a while to read: say so before, and what it held after.
void ReportReading(const std::string& file)
{
    constexpr std::uintmax_t kReportedBytes = 16u << 20;
    std::error_code error;
    const std::uintmax_t bytes = file.empty() ? 0 : std::filesystem::file_size(file, error);
    if (!error && bytes >= kReportedBytes)
    {
        std::fprintf(stderr, "kesra-viewer: reading %s (%.0f MB)\n", file.c_str(), static_cast<double>(bytes) / 1e6);
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
    SceneData data;
    std::string summary;
    ReportReading(options.file);
    if (!LoadScene(SceneRequest{options.file, options.scalars, options.radius}, data, summary, error))
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
