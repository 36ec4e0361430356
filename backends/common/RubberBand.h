// CRubberBand: what every backend's dragged area does apart from drawing.
// It records the drag in the fields the library reads back (IsDragged,
// GetMouseStart, GetMouseEnd), keeps the previous end as the further point
// while the mouse moves, asks its renderer for a redraw whenever the rectangle
// changes, and hands the finished rectangle to the host's handler. Every
// backend draws each frame anew, so erasing is asking for a frame without the
// rectangle. Drawing and the overlay around it stay the backend's.
// Header-only, so that each backend's archive carries its own copy.
#pragma once

#include "Engine/DraggedArea.h"
#include "Engine/Renderer.h"

#include <functional>
#include <utility>

namespace KesraBackend
{

class CRubberBand : public KesraEngine::CKesraDraggedArea
{
public:
    using AreaHandler = std::function<void(int x0, int y0, int x1, int y1)>;

    // Starts a drag at (x, y) when enabled.
    bool OnMouseDown(int x, int y) override
    {
        if (!m_enabled)
        {
            return false;
        }
        m_dragged = true;
        m_mouseStartX = m_mouseEndX = m_furtherPointX = x;
        m_mouseStartY = m_mouseEndY = m_furtherPointY = y;
        RequestRedraw();
        return true;
    }

    // Moves the rectangle's end while a drag is under way.
    bool OnMouseMove(int x, int y) override
    {
        if (!m_dragged)
        {
            return false;
        }
        m_furtherPointX = m_mouseEndX;
        m_furtherPointY = m_mouseEndY;
        m_mouseEndX = x;
        m_mouseEndY = y;
        RequestRedraw();
        return true;
    }

    // Ends the drag at (x, y) and hands the rectangle to OnAreaSelected.
    bool OnMouseUp(int x, int y) override
    {
        if (!m_dragged)
        {
            return false;
        }
        m_mouseEndX = x;
        m_mouseEndY = y;
        m_dragged = false;
        RequestRedraw();
        OnAreaSelected(m_mouseStartX, m_mouseStartY, m_mouseEndX, m_mouseEndY);
        return true;
    }

    // Ends a drag under way without a result.
    void CancelDrag() override
    {
        if (m_dragged)
        {
            m_dragged = false;
            RequestRedraw();
        }
    }

    // Calls the host's handler, if any, with the rectangle.
    void OnAreaSelected(int x0, int y0, int x1, int y1) override
    {
        if (m_handler)
        {
            m_handler(x0, y0, x1, y1);
        }
    }

    // The further point keeps the corner that was drawn; the next frame is
    // drawn without the rectangle once the drag is over.
    void Erase() override
    {
        m_furtherPointX = m_mouseEndX;
        m_furtherPointY = m_mouseEndY;
        RequestRedraw();
    }

    // Outline width in pixels; refused unless > 0.
    void SetLineWidth(float width) override
    {
        if (width > 0.0f)
        {
            m_lineWidth = width;
        }
    }
    float GetLineWidth() const { return m_lineWidth; }

    // The renderer's redraw request.
    void RequestRedraw() override { m_renderer->Invalidate(); }

    // Receives every finished rectangle; empty to receive none.
    void SetAreaHandler(AreaHandler handler) { m_handler = std::move(handler); }

protected:
    // renderer is not owned and must outlive the area.
    CRubberBand(int width, int height, KesraEngine::CKesraRenderer& renderer)
        : CKesraDraggedArea(width, height), m_renderer(&renderer)
    {
    }

private:
    KesraEngine::CKesraRenderer* m_renderer;
    AreaHandler m_handler;
    float m_lineWidth = 1.5f;
};

} // namespace KesraBackend
