// CKesraRenderer: the display settings of one view's drawing surface.
//
// It holds the surface size (pixels), a name, whether it is the active view,
// the title and background colours, three smoothing switches, double
// buffering, two polygon offset parameters and the camera that it shows.
// Integer switches are stored as 0 or 1. The colours are RGBA bytes and are
// stored with all four components as given.
//
// Camera: a non-owning pointer. The renderer never creates, deletes or calls
// it; the host keeps the camera alive while the renderer points to it, and a
// copied renderer shows the same camera.
//
// The class is the base of a drawing backend's renderer: its constructor is
// protected, most setters are virtual so that the backend can replace them, and
// its sixteen abstract operations are the backend's. The library calls only
// the last of them, OnResize, from Resize.
#pragma once

#include "MathKit/Export.h"
#include "MathKit/GenColor.h"

#include <string>

namespace KesraEngine
{

class CKesraCamera;

// How the backend blends what it draws with what is already on the surface;
// the library stores no mode and gives the values no meaning of its own.
enum eBlendingMode : int
{
    eBlendingNone = 0,      // draw opaque, replacing the surface
    eBlendingAlpha = 1,     // mix by the source alpha (transparency)
    eBlendingAdditive = 2   // add the source to the surface (glow)
};

class KESRA_ENGINE_API CKesraRenderer
{
public:
    using Color = KesraMathKit::TKesraGenColor<unsigned char>;

    CKesraRenderer(const CKesraRenderer&) = default;
    // All or nothing: when a text cannot be copied, std::bad_alloc leaves
    // this object as it was.
    CKesraRenderer& operator=(const CKesraRenderer& other);

    // Virtual so that a host may delete a backend renderer through this class.
    virtual ~CKesraRenderer();

    // Stores the size in pixels, then calls OnResize(width, height) as its
    // last step. No argument is checked.
    virtual void Resize(int width, int height);
    int GetWidth() const { return m_width; }
    int GetHeight() const { return m_height; }

    // Copies the zero-terminated text; a null pointer is ignored.
    virtual void SetName(const char* name);
    // Points into the renderer's own copy, valid until the name changes or the
    // renderer is destroyed.
    virtual const char* GetName() const;

    // Non-zero makes the view active and its title red (255, 0, 0); zero makes
    // it inactive and the title grey (198, 198, 198). The title's alpha stays.
    virtual void SetActive(int active);
    virtual int GetActive() const;

    // Stored as given; the next SetActive recolours red, green and blue.
    virtual void SetTitleColor(Color color);
    Color GetTitleColor() const { return m_titleColor; }

    // Non-zero draws the background as a gradient of the two colours.
    virtual void SetGradient(int gradient);
    virtual int GetGradient() const;

    virtual void SetBackgroundColor(Color color);
    Color GetBackgroundColor() const { return m_backgroundColor; }
    virtual void SetBackgroundColor2(Color color);
    Color GetBackgroundColor2() const { return m_backgroundColor2; }

    // Anti-aliasing switches: any non-zero value is stored as 1.
    virtual void SetPointSmoothing(int smoothing);
    virtual int GetPointSmoothing() const;
    virtual void SetLineSmoothing(int smoothing);
    virtual int GetLineSmoothing() const;
    virtual void SetPolygonSmoothing(int smoothing);
    virtual int GetPolygonSmoothing() const;

    virtual void SetDoubleBuffer(bool doubleBuffer);
    bool GetDoubleBuffer() const { return m_doubleBuffer; }

    // Neither setting is stored here: they reach only a backend that replaces
    // these setters.
    virtual void SetBlendingMode(eBlendingMode mode);
    virtual void SetReadonlyZBuffer(bool readonly);

    // ---- Backend operations ------------------------------------------------

    // Creates the graphics context on the host's window; false when the
    // graphics interface is unavailable.
    virtual bool CreateContext() = 0;
    // Releases the context and everything created in it.
    virtual void DestroyContext() = 0;
    // Makes this renderer's context current on the calling thread; false when
    // there is none.
    virtual bool MakeCurrent() = 0;
    // Hands the stored settings (smoothing switches, polygon offset) to a
    // freshly created context.
    virtual void InitializeState() = 0;
    // Draws one whole frame: background, scene, overlays and title, then
    // presents it.
    virtual void Render() = 0;
    // Clears the surface with the background colour, or with the gradient of
    // the two background colours when the gradient switch is on.
    virtual void DrawBackground() = 0;
    // Draws the model through the camera's projection and world-to-view matrix.
    virtual void DrawScene() = 0;
    // Draws the window-aligned overlays (legend, ruler, axis triad, tips) over
    // the scene.
    virtual void DrawOverlays() = 0;
    // Draws the name in the title colour in a corner of the surface.
    virtual void DrawTitle() = 0;
    // Hands the three smoothing switches to the graphics interface.
    virtual void ApplySmoothing() = 0;
    // Hands the two polygon offset parameters to the graphics interface, so
    // that edges drawn over faces stay visible.
    virtual void ApplyPolygonOffset() = 0;
    // Presents the back buffer; does nothing without double buffering.
    virtual void SwapBuffers() = 0;
    // Asks the host's window system for a redraw of the surface.
    virtual void Invalidate() = 0;
    // Copies the RGBA bytes of the window rectangle (x, y, width, height),
    // bottom row first, into rgba (4 * width * height bytes); false when the
    // rectangle leaves the surface or there is no context.
    virtual bool ReadPixels(int x, int y, int width, int height, unsigned char* rgba) = 0;
    // Depth in [0, 1] at window pixel (x, y); 1 where nothing is drawn.
    virtual float ReadDepth(int x, int y) = 0;
    // Adapts viewport and buffers to a surface of width by height pixels;
    // called by Resize after it stored the size.
    virtual void OnResize(int width, int height) = 0;

    // ---- Not virtual -------------------------------------------------------

    // Stored without checks; their meaning is the graphics interface's.
    void SetPolygonOffsetPara(float para1, float para2);
    void GetPolygonOffsetPara(float& para1, float& para2) const;

    // Not owned; may be null.
    void SetCamera(CKesraCamera* camera) { m_camera = camera; }
    CKesraCamera* GetCamera() const { return m_camera; }

protected:
    // Surface width and height in pixels; no argument is checked.
    CKesraRenderer(int width, int height);

    int m_width;
    int m_height;
    std::string m_name;
    int m_active;
    Color m_titleColor;
    int m_gradient;
    Color m_backgroundColor;
    Color m_backgroundColor2;
    int m_pointSmoothing;
    int m_lineSmoothing;
    int m_polygonSmoothing;
    bool m_doubleBuffer;
    float m_polygonOffsetPara1;
    float m_polygonOffsetPara2;
    CKesraCamera* m_camera;
};

} // namespace KesraEngine
