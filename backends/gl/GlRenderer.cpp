#include "gl/GlRenderer.h"

#include "gl/GlAxis.h"
#include "gl/GlCamera.h"
#include "gl/GlDraggedArea.h"
#include "gl/GlLight.h"
#include "gl/GlMesh.h"
#include "gl/GlProgram.h"
#include "gl/GlRuler.h"
#include "gl/GlScalarBar.h"
#include "gl/GlStreamline.h"
#include "gl/GlTubeBatch.h"
#include "gl/GlTipManager.h"

#include <algorithm>
#include <cmath>

namespace KesraGl
{

namespace
{

// The share of a lit colour that does not depend on the light's direction.
constexpr float kAmbient = 0.35f;

float Channel(unsigned char byte)
{
    return static_cast<float>(byte) / 255.0f;
}

} // namespace

CGlRenderer::CGlRenderer(int width, int height, CGlSurface& surface)
    : COverlayRenderer(width, height), m_surface(surface)
{
}

CGlRenderer::~CGlRenderer()
{
    // The attached objects may be gone already: only the renderer's own.
    DropContext();
}

bool CGlRenderer::CreateContext()
{
    DestroyContext();
    m_error.clear();
    if (!m_surface.Create(m_width, m_height))
    {
        m_error = m_surface.LastError();
        return false;
    }
    try
    {
        m_meshProgram = std::make_unique<CGlProgram>("mesh.vert", "mesh.frag");
        m_canvas = std::make_unique<CGlCanvas>(Style(0));
    }
    catch (const GlError& error)
    {
        m_error = error.what();
        DropContext();
        return false;
    }
    InitializeState();
    return true;
}

void CGlRenderer::ReleaseBuffers()
{
    for (CGlStreamline* streamline : m_streamlines)
    {
        streamline->ReleaseBuffers();
    }
    for (CGlMesh* mesh : m_surfaces)
    {
        mesh->Release();
    }
    for (CGlTubeBatch* batch : m_batches)
    {
        batch->Release();
    }
    for (CGlMesh* lines : m_plainLines)
    {
        lines->Release();
    }
    if (m_axis != nullptr)
    {
        m_axis->ReleaseBuffers();
    }
}

void CGlRenderer::DestroyContext()
{
    if (m_surface.MakeCurrent())
    {
        ReleaseBuffers();
    }
    DropContext();
}

void CGlRenderer::DropContext()
{
    if (m_surface.MakeCurrent())
    {
        m_canvas.reset();
        m_meshProgram.reset();
    }
    // Without a current context the objects died with it.
    m_canvas.reset();
    m_meshProgram.reset();
    m_surface.Destroy();
}

bool CGlRenderer::MakeCurrent()
{
    return HasContext() && m_surface.MakeCurrent();
}

void CGlRenderer::InitializeState()
{
    if (!MakeCurrent())
    {
        return;
    }
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDisable(GL_CULL_FACE);
    // Colours are the legend's own bytes; dithering would move them by one.
    glDisable(GL_DITHER);
    ApplySmoothing();
    ApplyPolygonOffset();
}

bool CGlRenderer::BeginFrame()
{
    if (!MakeCurrent())
    {
        return false;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_surface.Framebuffer());
    glViewport(0, 0, m_width, m_height);
    return true;
}

void CGlRenderer::DrawBackground()
{
    if (!MakeCurrent())
    {
        return;
    }
    const Color& first = m_backgroundColor;
    glClearColor(Channel(first.red), Channel(first.green), Channel(first.blue), 1.0f);
    glDepthMask(GL_TRUE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    // Painted as well as cleared: vertex colours reach the pixels byte for
    // byte, where a driver may round a clear colour differently.
    const Color top{first.red, first.green, first.blue, 255};
    const Color& second = m_gradient != 0 ? m_backgroundColor2 : first;
    const Color bottom{second.red, second.green, second.blue, 255};
    m_canvas->Begin(m_width, m_height);
    m_canvas->Gradient(0.0f, 0.0f, static_cast<float>(m_width), static_cast<float>(m_height), bottom,
                       top);
    m_canvas->End();
}

CGlCamera* CGlRenderer::GetGlCamera() const
{
    return dynamic_cast<CGlCamera*>(m_camera);
}

void CGlRenderer::SetLightUniforms()
{
    const CGlLight& light = *m_light;
    const CGlProgram& program = *m_meshProgram;
    const auto vector = [&program](const char* name, const KesraEngine::CKesraLight::Vector& v) {
        program.Set(name, static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z));
    };
    const KesraEngine::CKesraLight::Vector position = light.GetPosition();
    const KesraEngine::CKesraLight::Vector focal = light.GetFocalPoint();
    program.Set("uLightOn", light.GetSwitch());
    program.Set("uLightType", light.GetLightType());
    vector("uLightVector", position - focal);
    vector("uLightPosition", position);
    vector("uSpotDirection", focal - position);
    vector("uAttenuation", light.GetAttenuationValues());
    program.Set("uSpotCosine",
                static_cast<float>(std::cos(light.GetConeAngle() * 3.14159265358979323846 / 180.0)));
    program.Set("uSpotExponent", light.GetExponent());
    const Color color = light.GetColor();
    program.Set("uLightColor", Channel(color.red), Channel(color.green), Channel(color.blue));
    program.Set("uIntensity", light.GetIntensity());
    program.Set("uAmbient", kAmbient);
}

void CGlRenderer::UseMeshProgram(const Mat4& projection, const Mat4& modelView,
                                 const float (&normal)[9], bool lit)
{
    m_sceneProgramReady = false;
    m_meshProgram->Use();
    m_meshProgram->SetMatrix4("uProjection", projection);
    m_meshProgram->SetMatrix4("uModelView", modelView);
    m_meshProgram->SetMatrix3("uNormalMatrix", normal);
    const bool shaded = lit && m_light != nullptr;
    m_meshProgram->Set("uShading", shaded ? 1 : 0);
    if (shaded)
    {
        SetLightUniforms();
    }
}

bool CGlRenderer::UseSceneProgram()
{
    const CGlCamera* camera = GetGlCamera();
    if (camera == nullptr || !HasContext())
    {
        return false;
    }
    if (!m_sceneProgramReady)
    {
        float normal[9];
        camera->NormalMatrix(normal);
        UseMeshProgram(camera->Projection(), camera->ModelView(), normal, true);
    }
    return true;
}

void CGlRenderer::DrawScene()
{
    if (!MakeCurrent() || !UseSceneProgram())
    {
        return;
    }
    // Every tube finds the program set up for this frame.
    m_sceneProgramReady = true;
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_POLYGON_OFFSET_FILL);
    for (CGlMesh* mesh : m_surfaces)
    {
        mesh->Draw();
    }
    for (CGlStreamline* streamline : m_streamlines)
    {
        streamline->DrawStreamline(*this);
    }
    DrawBatches();
    glDisable(GL_POLYGON_OFFSET_FILL);
    m_sceneProgramReady = false;
    if (!m_plainLines.empty())
    {
        const CGlCamera* camera = GetGlCamera();
        float normal[9];
        camera->NormalMatrix(normal);
        UseMeshProgram(camera->Projection(), camera->ModelView(), normal, false);
        for (CGlMesh* lines : m_plainLines)
        {
            lines->Draw();
        }
    }
}

bool CGlRenderer::BeginOverlays()
{
    if (!MakeCurrent())
    {
        return false;
    }
    m_canvas->Begin(m_width, m_height);
    return true;
}

void CGlRenderer::EndOverlays()
{
    m_canvas->End();
}

void CGlRenderer::DrawAxisTriad(KesraEngine::CKesraAxis& axis)
{
    m_canvas->End();
    axis.Draw();
    m_canvas->Begin(m_width, m_height);
}

void CGlRenderer::DrawOwnOverlay(KesraBackend::Overlay overlay)
{
    if (overlay == KesraBackend::Overlay::HostOverlay && m_extraOverlay)
    {
        m_extraOverlay(*this);
    }
}

void CGlRenderer::DrawTitle()
{
    if (!MakeCurrent() || m_name.empty())
    {
        return;
    }
    m_canvas->Begin(m_width, m_height);
    DrawText(TitleLine(), Color{m_titleColor.red, m_titleColor.green, m_titleColor.blue, 255});
    m_canvas->End();
}

void CGlRenderer::ApplySmoothing()
{
    if (!MakeCurrent())
    {
        return;
    }
    m_lineSmoothing != 0 ? glEnable(GL_LINE_SMOOTH) : glDisable(GL_LINE_SMOOTH);
    m_polygonSmoothing != 0 ? glEnable(GL_MULTISAMPLE) : glDisable(GL_MULTISAMPLE);
    m_roundPoints = m_pointSmoothing != 0;
}

void CGlRenderer::ApplyPolygonOffset()
{
    if (MakeCurrent())
    {
        glPolygonOffset(m_polygonOffsetPara1, m_polygonOffsetPara2);
    }
}

void CGlRenderer::SwapBuffers()
{
    if (!MakeCurrent())
    {
        return;
    }
    if (m_doubleBuffer)
    {
        m_surface.Present();
    }
    else
    {
        glFlush();
    }
}

void CGlRenderer::Invalidate()
{
    m_surface.RequestRedraw();
}

bool CGlRenderer::ReadPixels(int x, int y, int width, int height, unsigned char* rgba)
{
    if (rgba == nullptr || x < 0 || y < 0 || width <= 0 || height <= 0 || x + width > m_width
        || y + height > m_height || !MakeCurrent())
    {
        return false;
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_surface.Framebuffer());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x, y, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    return glGetError() == GL_NO_ERROR;
}

float CGlRenderer::ReadDepth(int x, int y)
{
    if (x < 0 || y < 0 || x >= m_width || y >= m_height || !MakeCurrent())
    {
        return 1.0f;
    }
    float depth = 1.0f;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_surface.Framebuffer());
    glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    return depth;
}

void CGlRenderer::ResizeSurface(int width, int height)
{
    m_surface.Resize(width, height);
}

void CGlRenderer::SetAxis(CGlAxis* axis)
{
    m_axis = axis;
    m_attached.axis = axis;
}

void CGlRenderer::SetShadingLight(CGlLight* light)
{
    m_light = light;
    m_attached.light = light;
}

void CGlRenderer::AddStreamline(CGlStreamline* streamline)
{
    if (streamline != nullptr)
    {
        m_streamlines.push_back(streamline);
    }
}

void CGlRenderer::AddTubeBatch(CGlTubeBatch* batch)
{
    if (batch != nullptr)
    {
        m_batches.push_back(batch);
    }
}

void CGlRenderer::DrawBatches()
{
    for (CGlTubeBatch* batch : m_batches)
    {
        if (!batch->IsVisible())
        {
            continue;
        }
        batch->Build(batch->BuildBudget());
        // Until its last chunk is made a batch shows the lines of those made:
        // a frame of tubes costs a software renderer seconds, and a window
        // making them chunk by chunk has to stay responsive.
        if (!batch->IsMoving() && batch->IsBuilt())
        {
            batch->Draw();
            continue;
        }
        // A moving view's lines stay sharp: smoothing costs a software
        // renderer several times the frame.
        glDisable(GL_LINE_SMOOTH);
        m_meshProgram->Set("uTangents", 1);
        batch->DrawLines();
        m_meshProgram->Set("uTangents", 0);
        ApplySmoothing();
    }
}

void CGlRenderer::AddSurface(CGlMesh* mesh)
{
    if (mesh != nullptr)
    {
        m_surfaces.push_back(mesh);
    }
}

void CGlRenderer::AddPlainLines(CGlMesh* lines)
{
    if (lines != nullptr)
    {
        m_plainLines.push_back(lines);
    }
}

TextStyle CGlRenderer::Style(int sizeChange, bool bold, bool italic) const
{
    CGlFont font = m_font != nullptr ? *m_font : m_defaultFont;
    if (bold)
    {
        font.SetBold(1);
    }
    if (italic)
    {
        font.SetItalic(1);
    }
    return TextStyle{font.FontFile(), KesraBackend::TextSize(&font, sizeChange)};
}

void CGlRenderer::DrawText(const KesraBackend::TextLine& line, const Color& color)
{
    if (line.text.empty() && line.superscript.empty() && line.tail.empty())
    {
        return;
    }
    const TextStyle style = Style(line.sizeChange, line.bold, line.italic);
    if (line.halo)
    {
        m_canvas->HaloText(static_cast<float>(line.x), static_cast<float>(line.y), line.text, style, color,
                           KesraBackend::HaloColor(color), line.anchor, line.superscript, line.tail);
        return;
    }
    m_canvas->Text(static_cast<float>(line.x), static_cast<float>(line.y), line.text, style, color,
                   line.anchor, line.superscript, line.tail);
}

double CGlRenderer::TextWidth(const std::string& text, int sizeChange) const
{
    return m_canvas != nullptr ? m_canvas->TextWidth(text, Style(sizeChange)) : 0.0;
}

double CGlRenderer::TextHeight(int sizeChange) const
{
    return m_canvas != nullptr ? m_canvas->Ascender(Style(sizeChange)) : 0.0;
}

} // namespace KesraGl
