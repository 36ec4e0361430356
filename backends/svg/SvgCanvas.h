// CSvgCanvas: one SVG document under construction, addressed in window
// pixels as the library's camera gives them: x to the right, y up from the
// bottom edge. The canvas turns y down for SVG as it writes.
//
// Colours are RGB bytes; alpha is ignored, as a graphics interface without
// blending ignores it. Element ids carry the canvas's prefix, so that several
// documents can be nested in one (a contact sheet) without clashing ids.
#pragma once

#include "common/OverlayText.h"
#include "svg/SvgWriter.h"

#include <string>

namespace KesraSvg
{

using Color = KesraBackend::Color;
using Anchor = KesraBackend::Anchor;

struct TextStyle
{
    std::string face = "sans-serif";
    int size = 14;     // pixels
    bool bold = false;
    bool italic = false;
    Color color{0, 0, 0, 255};
    // Drawn as an outline under the glyphs while its alpha is not 0.
    Color halo{0, 0, 0, 0};
};

// A rough width of text in pixels at a size: SVG leaves the measuring to the
// viewer, and boxes around labels need an estimate.
double EstimateTextWidth(const std::string& text, int size);

class CSvgCanvas
{
public:
    // A document of width x height pixels (negative sizes count as 0).
    CSvgCanvas(int width, int height, std::string idPrefix);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    // SVG's y, down from the top edge, for a window y up from the bottom.
    double SvgY(double y) const { return m_height - y; }

    // A document-unique id with the canvas's prefix.
    std::string NewId(const char* what);

    // A group with a class name, so that the parts of a frame can be found.
    void BeginGroup(const char* className);
    void EndGroup() { m_writer.Close(); }
    // The writer, for elements the helpers below do not cover.
    CSvgWriter& Writer() { return m_writer; }

    // The rectangle with lower-left corner (x, y); no outline for a
    // lineWidth of 0 or less.
    void Rect(double x, double y, double width, double height, const std::string& fill,
              const Color& outline, double lineWidth);
    void Line(double x0, double y0, double x1, double y1, const Color& color, double width);
    // A text whose baseline starts, centres or ends at (x, y). A superscript
    // (the exponent of a power of ten) is raised after it, and tail follows
    // back on the baseline.
    void Text(double x, double y, const std::string& text, const TextStyle& style,
              Anchor anchor, const std::string& superscript = std::string(),
              const std::string& tail = std::string());

    // Closes the document and hands out its text.
    std::string Finish();

private:
    int m_width;
    int m_height;
    std::string m_idPrefix;
    int m_nextId = 0;
    CSvgWriter m_writer;
};

} // namespace KesraSvg
