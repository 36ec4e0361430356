// The seven standard views of the scenes, by the names command lines, keys
// and menus use.
#pragma once

#include "Engine/Camera.h"

namespace KesraBackend
{

enum class View
{
    Iso,
    Front,
    Back,
    Left,
    Right,
    Top,
    Bottom
};

struct NamedView
{
    View value;
    const char* name; // as a command line spells it
};

// The seven standard views, in the contact sheet's order.
inline constexpr NamedView kViews[] = {{View::Iso, "iso"},     {View::Front, "front"},
                                       {View::Back, "back"},   {View::Left, "left"},
                                       {View::Right, "right"}, {View::Top, "top"},
                                       {View::Bottom, "bottom"}};

// The name of a view, as a command line spells it.
inline const char* ViewName(View view)
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

// Turns camera to view, at once or through a smooth rotation.
inline void ApplyView(KesraEngine::CKesraCamera& camera, View view, bool smooth)
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

} // namespace KesraBackend
