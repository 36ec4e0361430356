#include "Views.h"

namespace KesraExamples
{

const char* ViewName(View view)
{
    for (const NamedView& entry : kViews)
    {
        if (entry.value == view)
        {
            return entry.name;
        }
    }
    return kViews[0].name;
}

void ApplyView(KesraEngine::CKesraCamera& camera, View view, bool smooth)
{
    switch (view)
    {
    case View::Front: camera.SetRotateMatrixToFrontView(smooth); break;
    case View::Back: camera.SetRotateMatrixToBackView(smooth); break;
    case View::Left: camera.SetRotateMatrixToLeftView(smooth); break;
    case View::Right: camera.SetRotateMatrixToRightView(smooth); break;
    case View::Top: camera.SetRotateMatrixToTopView(smooth); break;
    case View::Bottom: camera.SetRotateMatrixToBottomView(smooth); break;
    default: camera.SetRotateMatrixToISOView(smooth); break;
    }
}

} // namespace KesraExamples
