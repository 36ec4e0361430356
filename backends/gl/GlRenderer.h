// CGlRenderer: a renderer drawing with OpenGL 3.3 core into a CGlSurface.
//
// The renderer shows the camera set with SetCamera and the objects the host
// attaches (tubes, surfaces, tips, legend, ruler, axis triad, dragged area,
// light), none of which it owns. What a frame is made of, the overlays' order
// and what follows a resize are every backend's (COverlayRenderer); the scene
// is depth tested. The surface (headless EGL or a window) only supplies the
// context and the framebuffer; everything drawn is made here, in
// CreateContext, and freed in DestroyContext.
#pragma once

#include "common/OverlayRenderer.h"
#include "gl/GlApi.h"
#include "gl/GlCanvas.h"
#include "gl/GlFont.h"
#include "gl/GlSurface.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace KesraGl
{

class CGlAxis;
class CGlCamera;
class CGlLight;
class CGlMesh;
class CGlProgram;
class CGlStreamline;
class CGlTubeBatch;

class CGlRenderer : public KesraBackend::COverlayRenderer
{
public:
    // surface is not owned and must outlive the context.
    CGlRenderer(int width, int height, CGlSurface& surface);
    ~CGlRenderer() override;

    // ---- Backend operations ----------------------------------------------------

    // Asks the surface for a context of the renderer's size, then makes the
    // shaders and the font atlas; false, with LastError, on any failure.
    bool CreateContext() override;
    // Frees every buffer, texture and program (the attached tubes', surfaces'
    // and triad's too, so call it while they live), then the surface's
    // context. The destructor frees only the renderer's own.
    void DestroyContext() override;
    bool MakeCurrent() override;
    // Depth test, smoothing switches and polygon offset into the new context.
    void InitializeState() override;
    // The background colour, or the first colour at the top fading into the
    // second at the bottom while the gradient switch is on; clears the depth.
    void DrawBackground() override;
    // Surfaces and tubes through the camera, lit by the applied light, then
    // the plain lines unlit.
    void DrawScene() override;
    // The name in the title colour, bold and larger, in the top-left corner.
    void DrawTitle() override;
    // Line smoothing: GL_LINE_SMOOTH. Polygon smoothing: multisampling, which
    // works on surfaces with samples (GL_POLYGON_SMOOTH would need the scene
    // sorted front to back). Point smoothing is not in the core profile: the
    // backend's only points, the light symbol, are drawn as discs instead of
    // squares.
    void ApplySmoothing() override;
    // glPolygonOffset with the two parameters, applied to the scene's faces.
    void ApplyPolygonOffset() override;
    // Presents through the surface with double buffering, else flushes.
    void SwapBuffers() override;
    // The surface's redraw request.
    void Invalidate() override;
    // From the surface's framebuffer, bottom row first.
    bool ReadPixels(int x, int y, int width, int height, unsigned char* rgba) override;
    // 1 outside the surface or without a context.
    float ReadDepth(int x, int y) override;

    const std::string& LastError() const { return m_error; }
    bool HasContext() const { return m_canvas != nullptr; }

    // ---- What is drawn (not owned; null detaches; the overlays' setters are
    // COverlayRenderer's) --------------------------------------------------------

    void AddStreamline(CGlStreamline* streamline);
    void ClearStreamlines() { m_streamlines.clear(); }
    void AddSurface(CGlMesh* mesh);
    // Packed tubes, drawn after the single ones; a moving batch, or one
    // still making its chunks within its build budget, draws its lines,
    // shaded as the tube's side facing the viewer.
    void AddTubeBatch(CGlTubeBatch* batch);
    void ClearTubeBatches() { m_batches.clear(); }
    // Lines (GL_LINES or strips) drawn after the tubes in their vertices' own
    // colours, unlit: a line has no surface to turn to the light.
    void AddPlainLines(CGlMesh* lines);
    void SetAxis(CGlAxis* axis);
    void SetFont(const CGlFont* font) { m_font = font; }
    // The host's own overlay (KesraBackend::Overlay::HostOverlay).
    void SetExtraOverlay(std::function<void(CGlRenderer&)> draw) { m_extraOverlay = std::move(draw); }

    // ---- For the backend's drawing classes ---------------------------------------

    CGlCamera* GetGlCamera() const;
    // Valid between CreateContext and DestroyContext.
    CGlCanvas& Canvas() { return *m_canvas; }
    // The applied light (CGlLight::Apply); null draws unlit colours.
    void SetShadingLight(CGlLight* light);
    const CGlLight* GetShadingLight() const { return m_light; }
    // Puts the mesh program in use with these matrices and the light.
    void UseMeshProgram(const Mat4& projection, const Mat4& modelView, const float (&normal)[9],
                        bool lit);
    // The scene's matrices from the camera; false without a GL camera. Inside
    // DrawScene the program is already set up and the call costs nothing.
    bool UseSceneProgram();
    // The font's face and size, the size changed by sizeChange pixels.
    TextStyle Style(int sizeChange, bool bold = false, bool italic = false) const;
    // A line of a layout in color; inside the overlays.
    void DrawText(const KesraBackend::TextLine& line, const Color& color);
    // The overlay canvas's measures of the font; 0 without a context.
    double TextWidth(const std::string& text, int sizeChange) const override;
    double TextHeight(int sizeChange) const override;
    bool RoundPoints() const { return m_roundPoints; }

protected:
    // The surface current, its framebuffer bound, the viewport over it.
    bool BeginFrame() override;
    void EndFrame() override {}
    // One canvas batch over the window for all overlays.
    bool BeginOverlays() override;
    void EndOverlays() override;
    // The triad's 3D arrows bring a program and depth state of their own:
    // the canvas's batch is closed around them.
    void DrawAxisTriad(KesraEngine::CKesraAxis& axis) override;
    // The host's own overlay.
    void DrawOwnOverlay(KesraBackend::Overlay overlay) override;
    // The surface's drawable.
    void ResizeSurface(int width, int height) override;

private:
    void ReleaseBuffers();
    void DropContext();
    void SetLightUniforms();
    void DrawBatches();

    CGlSurface& m_surface;
    std::string m_error;
    std::unique_ptr<CGlProgram> m_meshProgram;
    std::unique_ptr<CGlCanvas> m_canvas;
    bool m_roundPoints = false;
    bool m_sceneProgramReady = false;

    std::vector<CGlStreamline*> m_streamlines;
    std::vector<CGlMesh*> m_surfaces;
    std::vector<CGlTubeBatch*> m_batches;
    std::vector<CGlMesh*> m_plainLines;
    // The triad again, for its buffers.
    CGlAxis* m_axis = nullptr;
    const CGlFont* m_font = nullptr;
    CGlLight* m_light = nullptr;
    std::function<void(CGlRenderer&)> m_extraOverlay;
    CGlFont m_defaultFont;
};

} // namespace KesraGl
