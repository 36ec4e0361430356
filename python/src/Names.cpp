#include "Names.h"

#include "Arrays.h"

namespace KesraPython
{

namespace
{

template <class Entries>
auto Named(const Entries& entries, const std::string& name, const char* argument)
{
    std::string known;
    for (const auto& entry : entries)
    {
        if (name == entry.name)
        {
            return entry.value;
        }
        known += std::string(known.empty() ? "" : ", ") + "'" + entry.name + "'";
    }
    Refuse(argument, "unknown name '" + name + "', expected one of " + known);
}

} // namespace

KesraExamples::Palette PaletteNamed(const std::string& name, const char* argument)
{
    return Named(KesraExamples::kPalettes, name, argument);
}

const char* PaletteName(KesraExamples::Palette palette)
{
    for (const KesraExamples::NamedPalette& entry : KesraExamples::kPalettes)
    {
        if (entry.value == palette)
        {
            return entry.name;
        }
    }
    return KesraExamples::kPalettes[0].name;
}

KesraExamples::View ViewNamed(const std::string& name, const char* argument)
{
    return Named(KesraExamples::kViews, name, argument);
}

} // namespace KesraPython
