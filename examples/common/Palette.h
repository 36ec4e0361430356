// The legend's palettes as the example hosts offer them: by name on the
// demo's command line, in turn on the viewer's p key.
#pragma once

#include "Engine/ScalarBar.h"

namespace KesraExamples
{

enum class Palette
{
    RedBlue,
    BlueRed,
    Gray,
    GreenRed
};

struct NamedPalette
{
    Palette value;
    const char* name; // as the command line spells it
};

// Every palette, in the order the viewer steps through them.
inline constexpr NamedPalette kPalettes[] = {{Palette::RedBlue, "redblue"},
                                             {Palette::BlueRed, "bluered"},
                                             {Palette::Gray, "gray"},
                                             {Palette::GreenRed, "greenred"}};

void LoadPalette(KesraEngine::CKesraScalarBar& legend, Palette palette);

// The palette after palette, the first after the last.
Palette NextPalette(Palette palette);

} // namespace KesraExamples
