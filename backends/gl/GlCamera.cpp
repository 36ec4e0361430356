#include "gl/GlCamera.h"

namespace KesraGl
{

CGlCamera::CGlCamera(int width, int height) : CNavigatedCamera(width, height)
{
}

void CGlCamera::ApplyViewport()
{
    UpdateViewPortParameters();
    glViewport(0, 0, m_windowWidth, m_windowHeight);
}

void CGlCamera::ApplyProjection()
{
    float left, right, bottom, top, nearBound, farBound;
    GetParameters(left, right, bottom, top, nearBound, farBound);
    m_projection = Mat4{};
    m_projection[0] = 2.0f / (right - left);
    m_projection[5] = 2.0f / (top - bottom);
    m_projection[10] = -2.0f / (farBound - nearBound);
    m_projection[12] = -(right + left) / (right - left);
    m_projection[13] = -(top + bottom) / (top - bottom);
    m_projection[14] = -(farBound + nearBound) / (farBound - nearBound);
    m_projection[15] = 1.0f;
}

void CGlCamera::ApplyModelView()
{
    // W maps model points to window pixels; taking the window's middle off
    // and multiplying by the scale gives view coordinates in model units,
    // which the projection of GetParameters takes. So the picture and
    // ProjectPointWorldToView agree to float precision.
    const Matrix& toWindow = GetWorldToViewMatrix();
    const double middle[3] = {static_cast<double>(static_cast<float>(m_windowWidth) * 0.5f),
                              static_cast<double>(static_cast<float>(m_windowHeight) * 0.5f), 0.0};
    m_modelView = Mat4{};
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            const double shift = column == 3 ? middle[row] : 0.0;
            m_modelView[4 * column + row] = static_cast<float>((toWindow(row, column) - shift) * m_scale);
        }
    }
    m_modelView[15] = 1.0f;
}

void CGlCamera::NormalMatrix(float (&columns)[9]) const
{
    for (int column = 0; column < 3; ++column)
    {
        for (int row = 0; row < 3; ++row)
        {
            columns[3 * column + row] = static_cast<float>(m_rotateMatrix[4 * column + row]);
        }
    }
}

} // namespace KesraGl
