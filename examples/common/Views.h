// The seven standard views of the example hosts, by the names their command
// lines and keys use.
#pragma once

#include "Engine/Camera.h"

namespace KesraExamples
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
    const char* name; // as the command line spells it
};

// The seven standard views, in the contact sheet's order.
inline constexpr NamedView kViews[] = {{View::Iso, "iso"},     {View::Front, "front"},
                                       {View::Back, "back"},   {View::Left, "left"},
                                       {View::Right, "right"}, {View::Top, "top"},
                                       {View::Bottom, "bottom"}};

// The name of a view, as the command line spells it.
const char* ViewName(View view);

// Turns camera to view, at once or through a smooth rotation.
void ApplyView(KesraEngine::CKesraCamera& camera, View view, bool smooth);

} // namespace KesraExamples
