#include "svg/SvgAxis.h"

#include "svg/SvgRenderer.h"

#include <algorithm>
#include <array>

namespace KesraSvg
{

CSvgAxis::CSvgAxis(CSvgRenderer& renderer) : m_renderer(&renderer)
{
}

void CSvgAxis::Draw()
{
    CSvgCanvas* canvas = m_renderer->GetCanvas();
    if (canvas == nullptr || m_created == 0 || m_drawAxis == 0)
    {
        return;
    }
    const double extentX = static_cast<double>(m_scaleX) * m_windowWidth;
    const double extentY = static_cast<double>(m_scaleY) * m_windowHeight;
    if (!(extentX > 0.0 && extentY > 0.0))
    {
        return;
    }
    const double margin = 14.0;
    const double centreX = margin + 0.5 * extentX;
    const double centreY = margin + 0.5 * extentY;
    const char* const letters[3] = {"X", "Y", "Z"};
    const Color colors[3] = {{205, 35, 35, 255}, {30, 150, 45, 255}, {35, 75, 210, 255}};
    std::array<int, 3> order = {0, 1, 2};
    // Column k of the view rotation: where model axis k points in view space.
    const auto viewComponent = [this](int axis, int row) { return m_rotateMatrix[4 * axis + row]; };
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return viewComponent(a, 2) < viewComponent(b, 2);
    });
    canvas->BeginGroup("axis");
    canvas->Writer().Attribute("shape-rendering", m_renderer->LineRendering());
    TextStyle style = m_renderer->GetTextStyle(-2, Color{});
    style.bold = true;
    for (const int axis : order)
    {
        const double dx = viewComponent(axis, 0);
        const double dy = viewComponent(axis, 1);
        const double endX = centreX + 0.36 * extentX * dx;
        const double endY = centreY + 0.36 * extentY * dy;
        canvas->Line(centreX, centreY, endX, endY, colors[axis], 2.5);
        style.color = colors[axis];
        style.halo = KesraBackend::HaloColor(colors[axis]);
        canvas->Text(centreX + 0.48 * extentX * dx, centreY + 0.48 * extentY * dy - 0.35 * style.size,
                     letters[axis], style, Anchor::Middle);
    }
    m_renderer->DrawPoint(centreX, centreY, 5.0, Color{90, 90, 90, 255});
    canvas->EndGroup();
}

} // namespace KesraSvg
