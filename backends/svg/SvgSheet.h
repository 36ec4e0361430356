// A contact sheet: several SVG frames side by side in one SVG document.
//
// Each frame is nested as it is, scaled into its cell (keeping its aspect),
// under a caption. The
// frames must have been written with distinct id prefixes
// (CSvgRenderer::SetIdPrefix), since their ids end up in one document.
#pragma once

#include <string>
#include <vector>

namespace KesraSvg
{

struct SheetCell
{
    std::string caption;
    std::string document; // a whole SVG document, as CSvgRenderer writes it
    int width = 0;        // the document's size in pixels, scaled to the cell
    int height = 0;
};

// A sheet of cells of cellWidth x cellHeight pixels, columns to a row, under
// a title. Each cell is a group of class "view". A key, when given (such as
// the colour legend that all cells share), stands once to the right of the
// grid at its own size, in a group of class "key". The strip's cells, when
// given (such as the legend in each of its options), follow below, each at
// its own size under its caption, in groups of class "strip", in rows as wide
// as the sheet above them.
std::string ComposeSheet(const std::string& title, const std::vector<SheetCell>& cells,
                         int columns, int cellWidth, int cellHeight,
                         const SheetCell* key = nullptr,
                         const std::vector<SheetCell>& strip = {});

} // namespace KesraSvg
