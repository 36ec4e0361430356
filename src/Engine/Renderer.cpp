#include "Engine/Renderer.h"

namespace KesraEngine
{

namespace
{

using Color = CKesraRenderer::Color;

// Integer switches reach the backend as 0 or 1, whatever non-zero value the
// host passed.
int ToSwitch(int value)
{
    return value != 0 ? 1 : 0;
}

// The title shows which view takes the user's input.
constexpr Color kActiveTitle(255, 0, 0, 0);
constexpr Color kInactiveTitle(198, 198, 198, 0);

} // namespace

CKesraRenderer::CKesraRenderer(int width, int height)
    : m_width(width),
      m_height(height),
      m_name("Kesra"),
      m_active(1),
      m_titleColor(kActiveTitle),
      m_gradient(1),
      m_backgroundColor(255, 255, 255, 255),
      m_backgroundColor2(255, 255, 255, 255),
      m_pointSmoothing(0),
      m_lineSmoothing(0),
      m_polygonSmoothing(0),
      m_doubleBuffer(true),
      m_polygonOffsetPara1(1.0f),
      m_polygonOffsetPara2(0.5f),
      m_camera(nullptr)
{
}

CKesraRenderer::~CKesraRenderer() = default;

CKesraRenderer& CKesraRenderer::operator=(const CKesraRenderer& other)
{
    // The text is copied first and swapped in: std::bad_alloc from the copy
    // leaves this object as it was, and nothing after it can fail.
    std::string name(other.m_name);
    m_width = other.m_width;
    m_height = other.m_height;
    m_name.swap(name);
    m_active = other.m_active;
    m_titleColor = other.m_titleColor;
    m_gradient = other.m_gradient;
    m_backgroundColor = other.m_backgroundColor;
    m_backgroundColor2 = other.m_backgroundColor2;
    m_pointSmoothing = other.m_pointSmoothing;
    m_lineSmoothing = other.m_lineSmoothing;
    m_polygonSmoothing = other.m_polygonSmoothing;
    m_doubleBuffer = other.m_doubleBuffer;
    m_polygonOffsetPara1 = other.m_polygonOffsetPara1;
    m_polygonOffsetPara2 = other.m_polygonOffsetPara2;
    m_camera = other.m_camera;
    return *this;
}

void CKesraRenderer::Resize(int width, int height)
{
    m_width = width;
    m_height = height;
    OnResize(width, height);
}

void CKesraRenderer::SetName(const char* name)
{
    if (name != nullptr)
    {
        m_name = name;
    }
}

const char* CKesraRenderer::GetName() const
{
    return m_name.c_str();
}

void CKesraRenderer::SetActive(int active)
{
    m_active = ToSwitch(active);
    const Color& title = m_active != 0 ? kActiveTitle : kInactiveTitle;
    m_titleColor.red = title.red;
    m_titleColor.green = title.green;
    m_titleColor.blue = title.blue;
}

int CKesraRenderer::GetActive() const
{
    return m_active;
}

void CKesraRenderer::SetTitleColor(Color color)
{
    m_titleColor = color;
}

void CKesraRenderer::SetGradient(int gradient)
{
    m_gradient = ToSwitch(gradient);
}

int CKesraRenderer::GetGradient() const
{
    return m_gradient;
}

void CKesraRenderer::SetBackgroundColor(Color color)
{
    m_backgroundColor = color;
}

void CKesraRenderer::SetBackgroundColor2(Color color)
{
    m_backgroundColor2 = color;
}

void CKesraRenderer::SetPointSmoothing(int smoothing)
{
    m_pointSmoothing = ToSwitch(smoothing);
}

int CKesraRenderer::GetPointSmoothing() const
{
    return m_pointSmoothing;
}

void CKesraRenderer::SetLineSmoothing(int smoothing)
{
    m_lineSmoothing = ToSwitch(smoothing);
}

int CKesraRenderer::GetLineSmoothing() const
{
    return m_lineSmoothing;
}

void CKesraRenderer::SetPolygonSmoothing(int smoothing)
{
    m_polygonSmoothing = ToSwitch(smoothing);
}

int CKesraRenderer::GetPolygonSmoothing() const
{
    return m_polygonSmoothing;
}

void CKesraRenderer::SetDoubleBuffer(bool doubleBuffer)
{
    m_doubleBuffer = doubleBuffer;
}

void CKesraRenderer::SetBlendingMode(eBlendingMode)
{
}

void CKesraRenderer::SetReadonlyZBuffer(bool)
{
}

void CKesraRenderer::SetPolygonOffsetPara(float para1, float para2)
{
    m_polygonOffsetPara1 = para1;
    m_polygonOffsetPara2 = para2;
}

void CKesraRenderer::GetPolygonOffsetPara(float& para1, float& para2) const
{
    para1 = m_polygonOffsetPara1;
    para2 = m_polygonOffsetPara2;
}

} // namespace KesraEngine
