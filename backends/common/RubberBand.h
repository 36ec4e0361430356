// CRubberBand: the mouse bookkeeping that every backend's dragged area
// shares. It records the drag in the fields the library reads back
// (IsDragged, GetMouseStart, GetMouseEnd), keeps the previous end as the
// further point while the mouse moves, asks for a redraw whenever the
// rectangle changes, and hands the finished rectangle to the host's handler.
// Drawing, the overlay and the redraw request stay the backend's.
// Header-only, so that each backend's archive carries its own copy.
#pragma once

#include "Engine/DraggedArea.h"

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

    // Receives every finished rectangle; empty to receive none.
    void SetAreaHandler(AreaHandler handler) { m_handler = std::move(handler); }

protected:
    CRubberBand(int width, int height) : CKesraDraggedArea(width, height) {}

private:
    AreaHandler m_handler;
};

} // namespace KesraBackend
