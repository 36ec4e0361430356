#include "svg/SvgCamera.h"

namespace KesraSvg
{

CSvgCamera::CSvgCamera(int width, int height) : CNavigatedCamera(width, height)
{
}

void CSvgCamera::ApplyViewport()
{
    UpdateViewPortParameters();
}

void CSvgCamera::ApplyProjection()
{
    float left, right, bottom, top, nearBound, farBound;
    GetParameters(left, right, bottom, top, nearBound, farBound);
}

void CSvgCamera::ApplyModelView()
{
    UpdateWorldToViewMatrix();
}

} // namespace KesraSvg
