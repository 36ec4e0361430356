// CKesraDraggedArea: the rubber-band rectangle that a user drags over a view.
//
// It holds whether dragging is enabled, whether a drag is under way, the
// window size (pixels), the rectangle's colour (RGBA bytes) and the two mouse
// positions that span the rectangle (window pixels). The mouse reaches it only
// through the derived class: the dragged flag and the mouse positions have no
// setter here and are written by the backend's mouse handling, which the host
// then reads through GetMouseStart, GetMouseEnd and IsDragged.
//
// The class is the base of a drawing backend's dragged area: its constructor
// is protected and its eleven virtual operations are all abstract and the
// backend's. The library calls none of them.
#pragma once

#include "MathKit/Export.h"
#include "MathKit/GenColor.h"

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraDraggedArea
{
public:
    using Color = KesraMathKit::TKesraGenColor<unsigned char>;

    CKesraDraggedArea(const CKesraDraggedArea&) = default;
    CKesraDraggedArea& operator=(const CKesraDraggedArea&) = default;
    ~CKesraDraggedArea() = default;

    // Stores the flag and ends any drag under way, whether it enables or
    // disables.
    void SetEanble(bool enabled);
    bool IsEnable() const { return m_enabled; }
    bool IsDragged() const { return m_dragged; }

    // Stored without checks.
    void SetWindowSize(int width, int height);
    void GetWindowSize(int& width, int& height) const;

    // All four components, alpha included.
    void SetColor(const Color& color) { m_color = color; }
    void GetColor(Color& color) const { color = m_color; }

    // Where the drag began and where it is now or ended, in window pixels.
    void GetMouseStart(int& x, int& y) const;
    void GetMouseEnd(int& x, int& y) const;

    // ---- Backend operations ------------------------------------------------

    // A mouse button went down at window pixel (x, y): starts a drag there
    // when enabled; true when the event was taken.
    virtual bool OnMouseDown(int x, int y) = 0;
    // The mouse moved to (x, y): moves the rectangle's end while a drag is
    // under way; true when the event was taken.
    virtual bool OnMouseMove(int x, int y) = 0;
    // The button came up at (x, y): ends the drag there; true when a drag
    // ended.
    virtual bool OnMouseUp(int x, int y) = 0;
    // Abandons a drag under way without a result (the user pressed Escape).
    virtual void CancelDrag() = 0;
    // Hands the finished rectangle (x0, y0)-(x1, y1) to the host's action
    // (zoom to it, pick inside it).
    virtual void OnAreaSelected(int x0, int y0, int x1, int y1) = 0;
    // Sets up a projection of one unit per window pixel for drawing over the
    // scene.
    virtual void BeginOverlay() = 0;
    // Restores the projection that BeginOverlay replaced.
    virtual void EndOverlay() = 0;
    // Draws the rectangle between the two mouse positions in its colour.
    virtual void Draw() = 0;
    // Removes the rectangle drawn last (the further point keeps its old far
    // corner for drawing modes that erase by redrawing).
    virtual void Erase() = 0;
    // Width in pixels of the rectangle's outline.
    virtual void SetLineWidth(float width) = 0;
    // Asks the host's window system to redraw the area the rectangle covers.
    virtual void RequestRedraw() = 0;

protected:
    // Window width and height in pixels; no argument is checked.
    CKesraDraggedArea(int width, int height);

    bool m_enabled;
    bool m_dragged;
    int m_windowWidth;
    int m_windowHeight;
    Color m_color;
    int m_mouseStartX;
    int m_mouseStartY;
    int m_mouseEndX;
    int m_mouseEndY;
    // A third position of the derived class's own; this class only starts it
    // at (0, 0) and copies it.
    int m_furtherPointX;
    int m_furtherPointY;
};

} // namespace KesraEngine
