// CSvgRenderer: a renderer that writes each frame as one SVG document.
//
// The renderer shows the camera set with SetCamera and the objects the host
// attaches to it (tubes, surfaces, tips, legend, ruler, axis triad, dragged
// area, an inset curve), none of which it owns. What a frame is made of, the
// overlays' order and what follows a resize are every backend's
// (COverlayRenderer). The scene is the tubes, whose quadrilaterals the
// streamlines hand back through AddQuad, together with the surfaces, painted
// back to front by view depth over all of them, since SVG has no depth
// buffer. The finished document is read with GetDocument.
//
// The "graphics context" of SVG is the document under construction: there is
// no driver, thread binding or pixel buffer, so the operations that deal with
// those either keep the bookkeeping a host expects or say that they do not
// apply.
#pragma once

#include "Engine/Font.h"
#include "MathKit/Matrix4.h"
#include "MathKit/Vector3.h"
#include "common/OverlayRenderer.h"
#include "svg/SvgCanvas.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace KesraEngine
{
class CKesraAxis;
class CKesraCurve2D;
class CKesraScalarBar;
class CKesraStreamline;
} // namespace KesraEngine

namespace KesraSvg
{

class CSvgLight;

// One quadrilateral of the scene: corners in window pixels (y up) in outline
// order, the mean view depth (larger is nearer) and the shaded colour.
struct SceneQuad
{
    double x[4];
    double y[4];
    double depth;
    Color color;
};

// A surface of the host's model (the body a flow passes, a part), drawn with
// the tubes: quadrilaterals of four point indices each, counter-clockwise
// seen from outside, with a normal per point, in one colour.
struct SurfaceMesh
{
    std::vector<KesraMathKit::TKesraVector3<double>> points;
    std::vector<KesraMathKit::TKesraVector3<double>> normals;
    std::vector<std::array<int, 4>> quads;
    Color color{200, 200, 200, 255};
};

// A chart of a two-dimensional curve in a panel over the view.
struct CurveInset
{
    const KesraEngine::CKesraCurve2D* curve = nullptr;
    // Lower-left corner and size of the panel in window pixels (y up).
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
    std::string title;
    std::string xLabel;
    std::string yLabel;
    // Colours the line by its y values when set.
    const KesraEngine::CKesraScalarBar* legend = nullptr;
};

class CSvgRenderer : public KesraBackend::COverlayRenderer
{
public:
    using Vector = KesraMathKit::TKesraVector3<double>;
    using Matrix = KesraMathKit::TKesraMatrix4<double>;

    CSvgRenderer(int width, int height);
    ~CSvgRenderer() override;

    // ---- Backend operations ----------------------------------------------------

    // Makes the context: the place where frames are written. Always true.
    bool CreateContext() override;
    // Drops the context and every frame written.
    void DestroyContext() override;
    // True while a context exists; SVG binds nothing to a thread.
    bool MakeCurrent() override;
    // Hands the stored smoothing and polygon offset settings to the context.
    void InitializeState() override;
    // The first background colour at the top fading into the second at the
    // bottom while the gradient switch is on, else the first colour.
    void DrawBackground() override;
    // Asks every attached streamline to draw itself, adds the surfaces, then
    // paints the quadrilaterals of all of them back to front.
    void DrawScene() override;
    // The name in the title colour in the top-left corner, in the font a size
    // larger and bold.
    void DrawTitle() override;
    // Polygon smoothing and line smoothing choose SVG's shape-rendering for
    // faces and lines; point smoothing draws points as discs, else squares.
    void ApplySmoothing() override;
    // Not applicable: SVG paints later elements over earlier ones and has no
    // depth test for edges to fight with faces, so there is nothing to offset.
    void ApplyPolygonOffset() override;
    // The frame written last becomes the one GetDocument hands out and the
    // back buffer is emptied; without a new frame a call changes nothing, so
    // a host may swap after Render as with any other backend.
    void SwapBuffers() override;
    // Marks that the picture is out of date (see IsRedrawRequested); there is
    // no window system to ask for a redraw.
    void Invalidate() override;
    // Not applicable: an SVG frame is text, not pixels. Always false.
    bool ReadPixels(int x, int y, int width, int height, unsigned char* rgba) override;
    // Not applicable: there is no depth buffer. Always 1, the depth where
    // nothing is drawn.
    float ReadDepth(int x, int y) override;

    // ---- The picture -------------------------------------------------------------

    // The presented frame; empty before the first.
    const std::string& GetDocument() const { return m_frontDocument; }
    bool IsRedrawRequested() const { return m_redrawRequested; }
    // Prefix of the element ids of every frame, for documents nested in one.
    void SetIdPrefix(std::string prefix) { m_idPrefix = std::move(prefix); }

    // ---- What is drawn (not owned; null detaches; the overlays' setters are
    // COverlayRenderer's) --------------------------------------------------------

    void AddStreamline(KesraEngine::CKesraStreamline* streamline);
    void ClearStreamlines() { m_streamlines.clear(); }
    void AddSurface(const SurfaceMesh* surface);
    void SetAxis(KesraEngine::CKesraAxis* axis) { m_attached.axis = axis; }
    void SetCurveInset(const CurveInset& inset) { m_curveInset = inset; }
    // The font of every text; null for a 14-pixel sans-serif.
    void SetFont(const KesraEngine::CKesraFont* font) { m_font = font; }

    // ---- For the backend's drawing classes ---------------------------------------

    // The frame under way, or null outside Render.
    CSvgCanvas* GetCanvas() { return m_canvas.get(); }
    // Collects a quadrilateral for DrawScene to sort and paint: corners in
    // window pixels and view depth, in counter-clockwise order seen from
    // outside; normalSum, in model space, points outside. A quadrilateral
    // that faces away from the viewer is left out, being hidden behind its
    // own body; the others are shaded (Shade) with the normal turned into
    // view space by the camera's rotation.
    void AddQuad(const Vector (&corners)[4], const Vector& normalSum, const Color& base);
    // The light that shades the tubes (CSvgLight::Apply); null for unlit
    // colours.
    void SetShadingLight(CSvgLight* light);
    const CSvgLight* GetShadingLight() const { return m_light; }
    // The colour of a surface of colour base whose unit normal, in view space
    // (x right, y up, z toward the viewer), is normal: Lambert shading with a
    // highlight, in the light's colour and intensity; only the ambient part
    // while the light is switched off; base itself without a light.
    Color Shade(const Vector& normal, const Color& base) const;
    // The font's face, size and style, the size changed by sizeChange pixels,
    // in color.
    TextStyle GetTextStyle(int sizeChange, const Color& color) const;
    // A line of a layout in color, into the frame under way.
    void DrawText(const KesraBackend::TextLine& line, const Color& color);
    // SVG leaves measuring to the viewer: EstimateTextWidth, and the font
    // size as the height.
    double TextWidth(const std::string& text, int sizeChange) const override;
    double TextHeight(int sizeChange) const override;
    // SVG's shape-rendering for faces and lines, as ApplySmoothing chose.
    const char* FaceRendering() const { return m_faceRendering; }
    const char* LineRendering() const { return m_lineRendering; }
    // Draws a marked point at window pixel (x, y) with the point smoothing.
    void DrawPoint(double x, double y, double size, const Color& color);

protected:
    // A new document of the window's size; false without a context.
    bool BeginFrame() override;
    // The finished document goes to the back buffer (double buffering) or
    // straight to the front one; the picture is up to date.
    void EndFrame() override;
    bool BeginOverlays() override { return m_canvas != nullptr; }
    void EndOverlays() override {}
    // The curve inset.
    void DrawOwnOverlay(KesraBackend::Overlay overlay) override;
    // Nothing to resize: the next document has the new size.
    void ResizeSurface(int, int) override {}

private:
    void AddSurfaceQuads(const SurfaceMesh& surface);

    bool m_contextCreated = false;
    std::unique_ptr<CSvgCanvas> m_canvas;
    std::string m_backDocument;
    std::string m_frontDocument;
    std::string m_idPrefix;
    bool m_redrawRequested = false;
    const char* m_faceRendering = "crispEdges";
    const char* m_lineRendering = "crispEdges";
    bool m_roundPoints = false;
    std::vector<SceneQuad> m_quads;

    std::vector<KesraEngine::CKesraStreamline*> m_streamlines;
    std::vector<const SurfaceMesh*> m_surfaces;
    CurveInset m_curveInset;
    const KesraEngine::CKesraFont* m_font = nullptr;
    CSvgLight* m_light = nullptr;
};

} // namespace KesraSvg
