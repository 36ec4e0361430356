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

KesraBackend::Palette PaletteNamed(const std::string& name, const char* argument)
{
    return Named(KesraBackend::kPalettes, name, argument);
}

const char* PaletteName(KesraBackend::Palette palette)
{
    for (const KesraBackend::NamedPalette& entry : KesraBackend::kPalettes)
    {
        if (entry.value == palette)
        {
            return entry.name;
        }
    }
    return KesraBackend::kPalettes[0].name;
}

KesraBackend::View ViewNamed(const std::string& name, const char* argument)
{
    return Named(KesraBackend::kViews, name, argument);
}

} // namespace KesraPython
