// CGlScene: a whole picture of streamline results: tubes coloured through the
// legend, the sphere, tips at the largest and smallest values, legend, ruler,
// axis triad, rubber band, a help overlay and the mark of a probed value,
// drawn by this backend into the surface the host gives (a window, a toolkit's
// widget, or the headless EGL context). The lines show as tubes or, switched,
// as plain lines. Nothing here needs a window: a host without one draws the
// scene into a CEglContext and reads the frame back with Capture.
//
// The host's camera observer hands every rotation to the triad and every zoom
// to the ruler; nothing else follows the camera, so a turn or a zoom costs no
// upload: tubes are rebuilt only when the legend's colours change.
//
// The data, its extremes and their tips, the sphere's mesh, the palettes and
// the look are every backend's (common/); what is here is the OpenGL wiring,
// the window's layout, the controls' effects and the help.
#pragma once

#include "common/OverlayUpdater.h"
#include "common/Palette.h"
#include "common/SceneData.h"
#include "common/SceneExtremes.h"
#include "common/Views.h"
#include "gl/GlAxis.h"
#include "gl/GlCamera.h"
#include "gl/GlDraggedArea.h"
#include "gl/GlFont.h"
#include "gl/GlLight.h"
#include "gl/GlMesh.h"
#include "gl/GlRenderer.h"
#include "gl/GlRuler.h"
#include "gl/GlScalarBar.h"
#include "gl/GlStreamline.h"
#include "gl/GlTipManager.h"
#include "gl/GlTubeBatch.h"

#include <string>
#include <vector>

namespace KesraGl
{

using KesraBackend::ScalarLine;
using KesraBackend::SceneData;
using KesraBackend::View;

class CGlScene
{
public:
    CGlScene(CGlSurface& surface, SceneData data, int width, int height);
    ~CGlScene();
    CGlScene(const CGlScene&) = delete;
    CGlScene& operator=(const CGlScene&) = delete;

    // Makes the context and fits the model; false with ContextError.
    bool CreateContext();
    const std::string& ContextError() const { return m_renderer.LastError(); }

    // The new window size reaches the renderer (Resize) and the overlays'
    // layout; the model keeps its place in the middle.
    void Resize(int width, int height);
    // Fits the model into the part of the window left of the legend.
    void ZoomAll();
    void SetView(View view, bool smooth);
    void NextPalette();
    void ToggleBanded();
    void ToggleInverse();
    // The legend's settings one by one, the tubes recoloured through them,
    // as a settings panel sets them.
    void SetPalette(KesraBackend::Palette palette);
    KesraBackend::Palette GetPalette() const { return m_palette; }
    void SetBanded(bool banded);
    // Refused (no change) unless 2 <= blocks <= 30.
    void SetBlockCount(int blocks);
    void SetInverse(bool inverse);
    // The legend's log scale, the tubes recoloured through it.
    void SetLogScale(bool logScale);
    void ToggleLogScale();
    void ToggleSixSides();
    void ToggleHelp() { m_help = !m_help; m_renderer.Invalidate(); }
    // The legend over [minimum, maximum], the tubes recoloured through it;
    // refused unless both are finite and minimum < maximum.
    void SetValueRange(double minimum, double maximum);
    // The legend back over the data's finite range.
    void ResetValueRange();
    // The data's finite range ([0, 1] when no value is finite).
    double DataMinimum() const { return m_dataMinimum; }
    double DataMaximum() const { return m_dataMaximum; }
    // Tubes, or the lines themselves one pixel wide, in the same colours.
    void ToggleLines();
    bool ShowsLines() const { return m_showLines; }

    // A node of a drawn line and its value.
    struct Probe
    {
        std::size_t line = 0; // in Data().lines
        std::size_t node = 0;
        double value = 0.0;
    };
    // The node drawn nearest to window pixel (x, y up), within kProbePixels;
    // it is marked with its value until the next probe. False, and the mark
    // gone, when no node is that near.
    static constexpr double kProbePixels = 12.0;
    bool ProbeAt(int x, int y, Probe& probe);
    // The same node without marking it, as a status line follows the cursor.
    bool NearestNode(int x, int y, Probe& probe);

    // One frame drawn and presented; the frame after a smooth turn's last
    // one is asked for, to show the tubes again.
    void Render();
    // One frame drawn and read back, RGBA bottom row first, then presented.
    std::vector<unsigned char> Capture();
    bool IsAnimating() const { return m_camera.IsAnimating(); }

    CGlRenderer& Renderer() { return m_renderer; }
    CGlCamera& Camera() { return m_camera; }
    CGlScalarBar& Legend() { return m_legend; }
    CGlAxis& Axis() { return m_axis; }
    CGlRuler& Ruler() { return m_ruler; }
    CGlDraggedArea& Area() { return m_area; }
    // One streamline per drawn line, in Data().lines' order without the lines
    // of fewer than two points. Their records live only while the batch makes
    // their tubes: from the first frame on they keep their counts and draw
    // flags, and the colours are NodeColour's.
    const std::vector<CGlStreamline*>& Tubes() const { return m_tubes; }
    CGlTubeBatch& TubeBatch() { return m_batch; }
    // The colour node of Data().lines[line] is drawn in; false for a node or
    // a line that is not drawn.
    bool NodeColour(std::size_t line, std::size_t node, unsigned char* rgba) const;
    // While moving (a drag, a smooth turn), the tubes are drawn as lines
    // shaded as tubes; the host sets it back once the view rests.
    void SetMoving(bool moving);
    // Whether the next frame draws the lines: moving, or a smooth turn under way.
    bool IsMoving() const { return m_moving || m_camera.IsAnimating(); }
    // Seconds a frame may spend making tubes (0, the default: all of them at
    // the first frame). With a budget, a window stays responsive while a
    // large result's tubes are made: each frame makes what fits, shows the
    // lines made so far and a progress bar, and asks for the next frame.
    void SetBuildBudget(double seconds) { m_batch.SetBuildBudget(seconds); }
    // Tubes still to be made (while they are shown).
    bool IsBuilding() const { return m_batch.IsVisible() && !m_batch.IsBuilt(); }
    const SceneData& Data() const { return m_data; }
    // Vertex buffer fills over all tubes.
    int UploadCount() const;
    int VertexCount() const;
    // Nodes of the lines drawn while moving.
    std::size_t LineNodeCount() const { return m_batch.LineNodeCount(); }

private:
    void BuildTubes();
    void BuildTips();
    void BuildSphere();
    void Recolour();
    void Layout(int width, int height);
    void DrawHelp(CGlRenderer& renderer) const;
    void DrawProbe(CGlRenderer& renderer);
    void DrawBuildProgress(CGlRenderer& renderer) const;
    void FillLines();
    int LegendWidth() const;

    SceneData m_data;
    CGlRenderer m_renderer;
    CGlCamera m_camera;
    CGlLight m_light;
    CGlFont m_font;
    CGlScalarBar m_legend;
    CGlRuler m_ruler;
    CGlAxis m_axis;
    CGlDraggedArea m_area;
    CGlStreamlineFactory m_tubeFactory;
    CGlTipManagerFactory m_tipFactory;
    CGlTipManager* m_tips = nullptr;
    CGlMesh m_sphere;
    KesraBackend::OverlayUpdater m_updater;
    CGlTubeBatch m_batch;
    std::vector<CGlStreamline*> m_tubes;
    // The ring and its value of each tube, in m_tubes' order.
    std::vector<const ScalarLine*> m_tubeLines;
    KesraBackend::Extremes m_extremes;
    float m_box[6] = {0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f};
    KesraBackend::Palette m_palette = KesraBackend::Palette::RedBlue;
    bool m_help = false;
    // The data's finite range, to which the legend returns.
    double m_dataMinimum = 0.0;
    double m_dataMaximum = 1.0;
    // The plain lines, filled only while they are shown.
    CGlMesh m_lines{GL_LINE_STRIP};
    bool m_showLines = false;
    bool m_moving = false;
    bool m_probed = false;
    Probe m_probe;
};

} // namespace KesraGl
