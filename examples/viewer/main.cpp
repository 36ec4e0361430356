// kesra-viewer: streamline results as tubes in a live OpenGL view, or
// rendered headlessly into a PNG. See Options.cpp for the command line and
// gl/GlSceneInput.h for the controls.
#include "Hosts.h"
#include "SceneSource.h"

#include <cstdio>

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
    if (!LoadScene(SceneRequest{options.file, options.scalars, options.radius}, data, summary, error))
    {
        std::fprintf(stderr, "kesra-viewer: %s\n", error.c_str());
        return 2;
    }
    if (!summary.empty())
    {
        std::printf("%s\n", summary.c_str());
    }
    if (options.hasUnit)
    {
        data.lengthUnit = options.unit;
    }
    return options.headless ? RunHeadless(options, std::move(data)) : RunWindow(options, std::move(data));
}
