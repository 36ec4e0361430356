#include "LoadingScreen.h"

#include "Loading.h"
#include "common/OverlayText.h"
#include "gl/GlFont.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace KesraViewer
{

namespace
{

KesraGl::TextStyle LoadingStyle()
{
    const KesraGl::CGlFont font;
    return KesraGl::TextStyle{font.FontFile(), KesraBackend::TextSize(&font, 0)};
}

// The scene's paper (pale blue at the top, white at the bottom) and its
// title's ink.
constexpr KesraGl::Color kPaperTop{214, 226, 242, 255};
constexpr KesraGl::Color kPaperBottom{255, 255, 255, 255};
constexpr KesraGl::Color kInk{32, 48, 84, 255};

} // namespace

CLoadingScreen::CLoadingScreen(std::string fileName)
    : m_fileName(std::move(fileName)), m_style(LoadingStyle()), m_canvas(m_style)
{
}

CLoadingScreen::Box CLoadingScreen::Bar(int width, int height)
{
    // Half the window wide (at most 480 pixels), 16 high, in the middle.
    const float w = std::min(480.0f, 0.5f * static_cast<float>(width));
    const float x0 = std::round(0.5f * (static_cast<float>(width) - w));
    const float y0 = std::round(0.5f * static_cast<float>(height)) - 8.0f;
    return Box{x0, y0, x0 + std::round(w), y0 + 16.0f};
}

void CLoadingScreen::Draw(int width, int height, LoadPhase phase, double fraction)
{
    glViewport(0, 0, width, height);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    const Box bar = Bar(width, height);
    const float done = static_cast<float>(std::clamp(fraction, 0.0, 1.0));
    const float split = std::round(bar.x0 + done * (bar.x1 - bar.x0));
    const int percent = static_cast<int>(100.0 * std::clamp(fraction, 0.0, 1.0));
    m_canvas.Begin(width, height);
    m_canvas.Gradient(0.0f, 0.0f, static_cast<float>(width), static_cast<float>(height), kPaperBottom, kPaperTop);
    m_canvas.Rect(bar.x0, bar.y0, bar.x1, bar.y1, kTrack);
    m_canvas.Rect(bar.x0, bar.y0, split, bar.y1, kFill);
    m_canvas.Frame(bar.x0 - 1.0f, bar.y0 - 1.0f, bar.x1 + 1.0f, bar.y1 + 1.0f, 1.0f, kInk);
    const float middle = 0.5f * static_cast<float>(width);
    m_canvas.Text(middle, bar.y1 + 2.5f * static_cast<float>(m_style.size), m_fileName, m_style, kInk,
                  KesraGl::Anchor::Middle);
    m_canvas.Text(middle, bar.y1 + 1.0f * static_cast<float>(m_style.size),
                  std::string(PhaseName(phase)) + " " + std::to_string(percent) + "%", m_style, kInk,
                  KesraGl::Anchor::Middle);
    m_canvas.End();
}

} // namespace KesraViewer
