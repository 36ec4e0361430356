// The legend's palettes as the scenes offer them: by name on a command line,
// in turn on a key, from a list in a settings panel.
#pragma once

#include "Engine/ScalarBar.h"

#include <cstddef>
#include <iterator>

namespace KesraBackend
{

enum class Palette
{
    RedBlue,
    BlueRed,
    Gray,
    GreenRed,
    Viridis,
    Cividis,
    CoolWarm,
    Turbo
};

struct NamedPalette
{
    Palette value;
    const char* name; // as a command line spells it
};

// Every palette, in the order a key steps through them.
inline constexpr NamedPalette kPalettes[] = {{Palette::RedBlue, "redblue"},
                                             {Palette::BlueRed, "bluered"},
                                             {Palette::Gray, "gray"},
                                             {Palette::GreenRed, "greenred"},
                                             {Palette::Viridis, "viridis"},
                                             {Palette::Cividis, "cividis"},
                                             {Palette::CoolWarm, "coolwarm"},
                                             {Palette::Turbo, "turbo"}};

// A switch rather than a table of member pointers: g++'s sanitizer builds
// misread calls through those as reading an uninitialised value.
inline void LoadPalette(KesraEngine::CKesraScalarBar& legend, Palette palette)
{
    switch (palette)
    {
    case Palette::RedBlue: legend.SetColorPaletteRedBlue(); break;
    case Palette::BlueRed: legend.SetColorPaletteBlueRed(); break;
    case Palette::Gray: legend.SetColorPaletteGrayScale(); break;
    case Palette::GreenRed: legend.SetColorPaletteGreenRed(); break;
    case Palette::Viridis: legend.SetColorPaletteViridis(); break;
    case Palette::Cividis: legend.SetColorPaletteCividis(); break;
    case Palette::CoolWarm: legend.SetColorPaletteCoolWarm(); break;
    case Palette::Turbo: legend.SetColorPaletteTurbo(); break;
    }
}

// The palette after palette, the first after the last.
inline Palette NextPalette(Palette palette)
{
    const std::size_t count = std::size(kPalettes);
    for (std::size_t i = 0; i < count; ++i)
    {
        if (kPalettes[i].value == palette)
        {
            return kPalettes[(i + 1) % count].value;
        }
    }
    return kPalettes[0].value;
}

} // namespace KesraBackend
