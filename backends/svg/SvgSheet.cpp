#include "svg/SvgSheet.h"

#include "svg/SvgCanvas.h"

#include <algorithm>

namespace KesraSvg
{

namespace
{

constexpr int kMargin = 12;
constexpr int kCaption = 24;
constexpr int kTitle = 40;

// The document without its XML declaration, so that it can be nested.
std::string WithoutDeclaration(const std::string& document)
{
    if (document.compare(0, 5, "<?xml") == 0)
    {
        const std::size_t end = document.find("?>");
        if (end != std::string::npos)
        {
            // Nothing after the declaration leaves nothing to nest.
            const std::size_t body = document.find_first_not_of(" \r\n\t", end + 2);
            return body == std::string::npos ? std::string() : document.substr(body);
        }
    }
    return document;
}

// cell's document scaled into the width x height pixels whose top-left
// corner is (left, top), SVG's y down.
void Nest(CSvgWriter& svg, int left, int top, int width, int height, const SheetCell& cell)
{
    svg.Open("g");
    svg.Attribute("transform", "translate(" + std::to_string(left) + " " + std::to_string(top) + ")");
    svg.Open("svg");
    svg.Attribute("width", width, 0);
    svg.Attribute("height", height, 0);
    svg.Attribute("viewBox", "0 0 " + std::to_string(std::max(cell.width, 1)) + " " +
                                 std::to_string(std::max(cell.height, 1)));
    svg.Raw(WithoutDeclaration(cell.document));
    svg.Close();
    svg.Close();
}

// Where a strip cell goes: its top-left corner and size, SVG's y down.
struct StripPlace
{
    int left = 0;
    int top = 0;
    int width = 1;
    int height = 1;
};

// The strip's cells at their own sizes, left to right from top, a row wrapping
// where the next cell would pass width (a cell wider than that gets a row of
// its own).
std::vector<StripPlace> PlaceStrip(const std::vector<SheetCell>& strip, int width, int top)
{
    std::vector<StripPlace> places;
    int left = kMargin;
    int rowHeight = 0;
    for (const SheetCell& cell : strip)
    {
        StripPlace place{left, top, std::max(cell.width, 1), std::max(cell.height, 1)};
        if (left > kMargin && left + place.width + kMargin > width)
        {
            place.left = kMargin;
            place.top = top + kCaption + rowHeight + kMargin;
            rowHeight = 0;
        }
        left = place.left + place.width + kMargin;
        top = place.top;
        rowHeight = std::max(rowHeight, place.height);
        places.push_back(place);
    }
    return places;
}

} // namespace

std::string ComposeSheet(const std::string& title, const std::vector<SheetCell>& cells,
                         int columns, int cellWidth, int cellHeight, const SheetCell* key,
                         const std::vector<SheetCell>& strip)
{
    columns = std::max(columns, 1);
    cellWidth = std::max(cellWidth, 1);
    cellHeight = std::max(cellHeight, 1);
    const int count = static_cast<int>(cells.size());
    const int rows = std::max((count + columns - 1) / columns, 1);
    const int gridWidth = kMargin + columns * (cellWidth + kMargin);
    const int keyWidth = key != nullptr ? std::max(key->width, 1) : 0;
    const int keyHeight = key != nullptr ? std::max(key->height, 1) : 0;
    const int width = gridWidth + (key != nullptr ? keyWidth + kMargin : 0);
    const int above = std::max(kTitle + rows * (cellHeight + kCaption + kMargin),
                               kTitle + kCaption + keyHeight + kMargin);
    const std::vector<StripPlace> places = PlaceStrip(strip, width, above);
    int height = above + kMargin;
    for (const StripPlace& place : places)
    {
        height = std::max(height, place.top + kCaption + place.height + 2 * kMargin);
    }
    CSvgCanvas sheet(width, height, "sheet");
    sheet.Rect(0.0, 0.0, width, height, "#f4f4f4", Color{}, 0.0);
    TextStyle titleStyle;
    titleStyle.size = 20;
    titleStyle.bold = true;
    titleStyle.color = Color{40, 40, 40, 255};
    sheet.Text(kMargin, height - 28.0, title, titleStyle, Anchor::Start);
    TextStyle captionStyle;
    captionStyle.size = 15;
    captionStyle.color = Color{40, 40, 40, 255};
    const Color outline{170, 170, 170, 255};
    for (int i = 0; i < count; ++i)
    {
        const int left = kMargin + (i % columns) * (cellWidth + kMargin);
        const int top = kTitle + (i / columns) * (cellHeight + kCaption + kMargin);
        const SheetCell& cell = cells[static_cast<std::size_t>(i)];
        sheet.BeginGroup("view");
        sheet.Text(left + 2.0, height - (top + 17.0), cell.caption, captionStyle, Anchor::Start);
        Nest(sheet.Writer(), left, top + kCaption, cellWidth, cellHeight, cell);
        sheet.Rect(left, height - (top + kCaption + cellHeight), cellWidth, cellHeight, "none",
                   outline, 1.0);
        sheet.EndGroup();
    }
    if (key != nullptr)
    {
        sheet.BeginGroup("key");
        sheet.Text(gridWidth + 2.0, height - (kTitle + 17.0), key->caption, captionStyle,
                   Anchor::Start);
        Nest(sheet.Writer(), gridWidth, kTitle + kCaption, keyWidth, keyHeight, *key);
        sheet.Rect(gridWidth, height - (kTitle + kCaption + keyHeight), keyWidth, keyHeight, "none",
                   outline, 1.0);
        sheet.EndGroup();
    }
    for (std::size_t i = 0; i < strip.size(); ++i)
    {
        const StripPlace& place = places[i];
        const SheetCell& cell = strip[i];
        sheet.BeginGroup("strip");
        sheet.Text(place.left + 2.0, height - (place.top + 17.0), cell.caption, captionStyle,
                   Anchor::Start);
        Nest(sheet.Writer(), place.left, place.top + kCaption, place.width, place.height, cell);
        sheet.Rect(place.left, height - (place.top + kCaption + place.height), place.width,
                   place.height, "none", outline, 1.0);
        sheet.EndGroup();
    }
    return sheet.Finish();
}

} // namespace KesraSvg
