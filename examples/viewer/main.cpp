// kesra-viewer: streamline results as tubes in a live OpenGL view, or
// rendered headlessly into a PNG. See Options.cpp for the command line and
// InputHandler.h for the controls.
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
        std::fprintf(stderr, "kesra-viewer: %s\n%s", error.c_str(), Usage());
        return 2;
    }
    if (options.help)
    {
        std::fputs(Usage(), stdout);
        return 0;
    }
    SceneData data;
    if (!LoadScene(options.file, data, error))
    {
        std::fprintf(stderr, "kesra-viewer: %s\n", error.c_str());
        return 2;
    }
    if (data.skippedLines > 0)
    {
        std::fprintf(stderr, "kesra-viewer: %zu lines skipped: too short for the tubes to show\n",
                     data.skippedLines);
    }
    return options.headless ? RunHeadless(options, std::move(data)) : RunWindow(options, std::move(data));
}
