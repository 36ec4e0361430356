// A host of the SVG backend component: it draws one frame with the installed
// backend and checks that the document is a whole SVG picture of the window's
// size.
#include "svg/SvgCamera.h"
#include "svg/SvgRenderer.h"

#include <cstdio>
#include <string>

int main()
{
    KesraSvg::CSvgCamera camera(320, 240);
    KesraSvg::CSvgRenderer renderer(320, 240);
    renderer.SetCamera(&camera);
    if (!renderer.CreateContext())
    {
        std::fprintf(stderr, "svg-host: no context\n");
        return 1;
    }
    renderer.Render();
    renderer.SwapBuffers();
    const std::string& svg = renderer.GetDocument();
    const bool whole = svg.find("<svg") != std::string::npos &&
                       svg.find("width=\"320\"") != std::string::npos &&
                       svg.rfind("</svg>") != std::string::npos;
    if (!whole)
    {
        std::fprintf(stderr, "svg-host: not a 320-pixel-wide SVG document:\n%s\n", svg.c_str());
        return 1;
    }
    std::printf("svg-host: %zu bytes of SVG\n", svg.size());
    return 0;
}
