// What a window shows while a large file loads: the scene's paper, the
// file's name, the phase and a bar of how far it is.
#pragma once

#include "SceneSource.h"
#include "gl/GlCanvas.h"

#include <string>

namespace KesraViewer
{

// Needs a current context for its whole life, as its canvas does.
class CLoadingScreen
{
public:
    explicit CLoadingScreen(std::string fileName);

    // Draws into the bound framebuffer of width x height pixels.
    void Draw(int width, int height, LoadPhase phase, double fraction);

    // The bar's outline in pixels, y up, in a window of width x height.
    struct Box
    {
        float x0, y0, x1, y1;
    };
    static Box Bar(int width, int height);

    static constexpr KesraGl::Color kFill{56, 92, 160, 255};   // done
    static constexpr KesraGl::Color kTrack{255, 255, 255, 255}; // still to do

private:
    std::string m_fileName;
    KesraGl::TextStyle m_style;
    KesraGl::CGlCanvas m_canvas;
};

} // namespace KesraViewer
