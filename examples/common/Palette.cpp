#include "Palette.h"

#include <iterator>

namespace KesraExamples
{

// A switch rather than a table of member pointers: g++'s sanitizer builds
// misread calls through those as reading an uninitialised value.
void LoadPalette(KesraEngine::CKesraScalarBar& legend, Palette palette)
{
    switch (palette)
    {
    case Palette::RedBlue: legend.SetColorPaletteRedBlue(); break;
    case Palette::BlueRed: legend.SetColorPaletteBlueRed(); break;
    case Palette::Gray: legend.SetColorPaletteGrayScale(); break;
    case Palette::GreenRed: legend.SetColorPaletteGreenRed(); break;
    }
}

Palette NextPalette(Palette palette)
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

} // namespace KesraExamples
