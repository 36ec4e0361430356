// The legend as the SVG backend draws it, read back from the document: at
// window sizes from 200 x 150 up, with every label format and few or many
// blocks, no two of its texts and swatches overlap and none leaves the
// window; a panel lies under all of it.
#include "svg/SvgCanvas.h"
#include "svg/SvgRenderer.h"
#include "svg/SvgScalarBar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <regex>
#include <string>
#include <vector>

namespace
{

using KesraBackend::Box;

// A setting of the legend that changes how its labels are written, with a
// value range that makes the most of it. New label formats are added here.
struct LabelFormat
{
    const char* name;
    std::function<void(KesraSvg::CSvgScalarBar&)> apply;
};

const std::vector<LabelFormat>& LabelFormats()
{
    static const std::vector<LabelFormat> formats{
        {"default", [](KesraSvg::CSvgScalarBar& legend) { legend.SetValueRange(0.52, 1.48, true, true); }},
        {"six decimals",
         [](KesraSvg::CSvgScalarBar& legend) {
             legend.SetValueFormat(3, 6);
             legend.SetValueRange(-1234.5, 98765.4, true, true);
         }},
        {"power of ten",
         [](KesraSvg::CSvgScalarBar& legend) {
             legend.SetValueFormat(1, 2);
             legend.SetValueRange(0.0, 25000.0, true, true);
         }},
        {"wide integers",
         [](KesraSvg::CSvgScalarBar& legend) {
             legend.SetValueFormat(12, 0);
             legend.SetValueRange(-123456789.0, 987654321.0, true, true);
         }},
        // The label options: texts of the library's formats, a scale factor in
        // the title, and the swatches of the range colours on their own line.
        {"fixed, swatches",
         [](KesraSvg::CSvgScalarBar& legend) {
             legend.SetLabelFormat(KesraEngine::eLabelFormatFixed, 4);
             legend.SetUseNanColor(1);
             legend.SetUseBelowRangeColor(1);
             legend.SetUseAboveRangeColor(1);
             legend.SetValueRange(-1234.5, 98765.4, true, true);
         }},
        {"scientific",
         [](KesraSvg::CSvgScalarBar& legend) {
             legend.SetLabelFormat(KesraEngine::eLabelFormatScientific, 3);
             legend.SetValueRange(1.0e-7, 4.5e-3, true, true);
         }},
        {"automatic, scaled",
         [](KesraSvg::CSvgScalarBar& legend) {
             legend.SetLabelFormat(KesraEngine::eLabelFormatAutomatic, 0);
             legend.SetLabelScale(3);
             legend.SetValueRange(0.0, 25000.0, true, true);
         }},
    };
    return formats;
}

struct Drawn
{
    std::string what;
    Box box;
};

// The texts of a document, boxed with the renderer's own metrics; y up.
std::vector<Drawn> DrawnTexts(const std::string& svg, const KesraSvg::CSvgRenderer& measure, int height)
{
    static const std::regex text(
        "<text x=\"([^\"]+)\" y=\"([^\"]+)\"[^>]* font-size=\"([0-9]+)\"([^>]*)>([^<]*)"
        "(?:<tspan[^>]*>([^<]*)</tspan><tspan[^>]*>([^<]*)</tspan>)?</text>");
    std::vector<Drawn> drawn;
    for (std::sregex_iterator it(svg.begin(), svg.end(), text), end; it != end; ++it)
    {
        const std::smatch& m = *it;
        KesraBackend::TextLine line;
        line.x = std::stod(m[1]);
        line.y = height - std::stod(m[2]);
        line.sizeChange = std::stoi(m[3]) - KesraBackend::TextSize(nullptr, 0);
        const std::string rest = m[4];
        line.anchor = rest.find("\"middle\"") != std::string::npos ? KesraBackend::Anchor::Middle
                      : rest.find("\"end\"") != std::string::npos  ? KesraBackend::Anchor::End
                                                                    : KesraBackend::Anchor::Start;
        line.text = m[5];
        line.superscript = m[6];
        line.tail = m[7];
        drawn.push_back(
            Drawn{line.text + line.superscript + line.tail, KesraBackend::TextBox(measure, line)});
    }
    return drawn;
}

// The rectangles of the group of a class (its first), y up.
std::vector<Drawn> DrawnRects(const std::string& svg, const std::string& group, int height)
{
    const std::size_t begin = svg.find("<g class=\"" + group + "\"");
    if (begin == std::string::npos)
    {
        return {};
    }
    const std::string part = svg.substr(begin, svg.find("</g>", begin) - begin);
    static const std::regex rect(
        "<rect x=\"([^\"]+)\" y=\"([^\"]+)\" width=\"([^\"]+)\" height=\"([^\"]+)\"");
    std::vector<Drawn> drawn;
    for (std::sregex_iterator it(part.begin(), part.end(), rect), end; it != end; ++it)
    {
        const double h = std::stod((*it)[4]);
        drawn.push_back(Drawn{group, Box{std::stod((*it)[1]), height - std::stod((*it)[2]) - h,
                                         std::stod((*it)[3]), h}});
    }
    return drawn;
}

// The numbers in the document carry one or two decimals: boxes that meet
// may seem to overlap by their rounding.
bool Overlap(const Box& a, const Box& b)
{
    constexpr double kRounding = 0.1;
    return KesraBackend::Overlaps(Box{a.left + kRounding, a.bottom + kRounding, a.width - 2 * kRounding,
                                      a.height - 2 * kRounding},
                                  b);
}

bool Inside(const Box& box, int width, int height)
{
    return box.left >= 0.0 && box.bottom >= 0.0 && box.left + box.width <= width
           && box.bottom + box.height <= height;
}

std::string Describe(const Drawn& drawn)
{
    return "'" + drawn.what + "' at " + std::to_string(drawn.box.left) + ", "
           + std::to_string(drawn.box.bottom) + " size " + std::to_string(drawn.box.width) + " x "
           + std::to_string(drawn.box.height);
}

struct Case
{
    int width;
    int height;
    int direction;
    int blocks;
    const LabelFormat* format;
};

// The legend alone in a frame, placed as the viewer places it: at the
// right edge over a vertical bar, at the bottom under a horizontal one.
std::string DrawLegend(const Case& c, KesraSvg::CSvgRenderer& renderer)
{
    KesraSvg::CSvgScalarBar legend;
    legend.SetDirection(c.direction);
    legend.SetBanded(1);
    legend.SetBlockNum(c.blocks);
    const int startX = c.direction == 0 ? c.width - std::clamp(c.width / 7, 90, 170) : c.width / 5;
    legend.Create(c.width, c.height, startX, std::min(40, c.height / 8));
    legend.SetTitle("Flow speed magnitude", false);
    legend.SetUnit("[m/s]");
    legend.SetNote("mean of 12 runs (g)");
    c.format->apply(legend);
    renderer.SetScalarBar(&legend);
    renderer.Render();
    renderer.SetScalarBar(nullptr);
    return renderer.GetDocument();
}

TEST(SvgLegendFit, NoTextOrSwatchOverlapsOrLeavesTheWindowAtAnySize)
{
    int cases = 0;
    for (int i = 0; i < 40; ++i)
    {
        const int width = 200 + (i * 53) % 1400;
        const int height = 150 + (i * 97) % 1000;
        KesraSvg::CSvgRenderer renderer(width, height);
        renderer.CreateContext();
        renderer.SetName("");
        for (const LabelFormat& format : LabelFormats())
        {
            for (const int blocks : {2, 8, 30})
            {
                for (const int direction : {0, 1})
                {
                    const Case c{width, height, direction, blocks, &format};
                    const std::string svg = DrawLegend(c, renderer);
                    const std::vector<Drawn> texts = DrawnTexts(svg, renderer, height);
                    const std::vector<Drawn> swatches = DrawnRects(svg, "swatches", height);
                    const std::vector<Drawn> panel = DrawnRects(svg, "panel", height);
                    const std::string where = std::to_string(width) + " x " + std::to_string(height)
                                              + ", " + format.name + ", " + std::to_string(blocks)
                                              + " blocks, direction " + std::to_string(direction);
                    ASSERT_GE(texts.size(), 5u) << where << ": two labels, unit, title, note";
                    ASSERT_EQ(swatches.size(), static_cast<std::size_t>(blocks)) << where;
                    ASSERT_EQ(panel.size(), 1u) << where;
                    // Texts, then the range colours' swatches, then the bar's
                    // blocks, which alone may meet each other.
                    std::vector<Drawn> all = texts;
                    const std::vector<Drawn> range = DrawnRects(svg, "range-swatches", height);
                    all.insert(all.end(), range.begin(), range.end());
                    const std::size_t apart = all.size();
                    all.insert(all.end(), swatches.begin(), swatches.end());
                    for (std::size_t a = 0; a < all.size(); ++a)
                    {
                        EXPECT_TRUE(Inside(all[a].box, width, height)) << where << ": " << Describe(all[a]);
                        // Under the panel, whole.
                        const Box& p = panel[0].box;
                        EXPECT_TRUE(all[a].box.left >= p.left && all[a].box.bottom >= p.bottom
                                    && all[a].box.left + all[a].box.width <= p.left + p.width
                                    && all[a].box.bottom + all[a].box.height <= p.bottom + p.height)
                            << where << ": " << Describe(all[a]) << " outside the panel";
                        // Swatches meet their neighbours edge to edge.
                        const std::size_t from = a < apart ? a + 1 : all.size();
                        for (std::size_t b = from; b < all.size(); ++b)
                        {
                            EXPECT_FALSE(Overlap(all[a].box, all[b].box))
                                << where << ": " << Describe(all[a]) << " overlaps " << Describe(all[b]);
                        }
                    }
                    EXPECT_TRUE(Inside(panel[0].box, width, height)) << where << ": the panel " << Describe(panel[0]);
                    ++cases;
                }
            }
        }
    }
    EXPECT_EQ(cases, 40 * LabelFormats().size() * 3 * 2);
}

} // namespace
