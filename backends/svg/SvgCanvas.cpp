#include "svg/SvgCanvas.h"

#include <utility>

namespace KesraSvg
{

double EstimateTextWidth(const std::string& text, int size)
{
    // Average advance widths of a sans-serif face, in ems.
    double ems = 0.0;
    for (const char c : text)
    {
        const unsigned char byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0u) == 0x80u)
        {
            continue; // a continuation byte of a UTF-8 sequence
        }
        if (c >= 'A' && c <= 'Z')
        {
            ems += 0.68;
        }
        else if (c >= '0' && c <= '9')
        {
            ems += 0.56;
        }
        else if (c == ' ' || c == '.' || c == ',' || c == ':' || c == 'i' || c == 'l'
                 || c == '[' || c == ']' || c == '(' || c == ')')
        {
            ems += 0.3;
        }
        else
        {
            ems += 0.55;
        }
    }
    return ems * size;
}

CSvgCanvas::CSvgCanvas(int width, int height, std::string idPrefix)
    : m_width(width < 0 ? 0 : width), m_height(height < 0 ? 0 : height),
      m_idPrefix(std::move(idPrefix))
{
    m_writer.Raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    m_writer.Open("svg");
    m_writer.Attribute("xmlns", "http://www.w3.org/2000/svg");
    m_writer.Attribute("width", m_width, 0);
    m_writer.Attribute("height", m_height, 0);
    m_writer.Attribute("viewBox", "0 0 " + FormatNumber(m_width, 0) + " " + FormatNumber(m_height, 0));
}

std::string CSvgCanvas::NewId(const char* what)
{
    return m_idPrefix + what + std::to_string(m_nextId++);
}

void CSvgCanvas::BeginGroup(const char* className)
{
    m_writer.Open("g");
    m_writer.Attribute("class", className);
}

void CSvgCanvas::Rect(double x, double y, double width, double height, const std::string& fill,
                      const Color& outline, double lineWidth)
{
    m_writer.Open("rect");
    m_writer.Attribute("x", x, 2);
    m_writer.Attribute("y", SvgY(y + height), 2);
    m_writer.Attribute("width", width, 2);
    m_writer.Attribute("height", height, 2);
    m_writer.Attribute("fill", fill);
    if (lineWidth > 0.0)
    {
        m_writer.Attribute("stroke", HexColor(outline.red, outline.green, outline.blue));
        m_writer.Attribute("stroke-width", lineWidth, 2);
    }
    m_writer.Close();
}

void CSvgCanvas::Line(double x0, double y0, double x1, double y1, const Color& color, double width)
{
    m_writer.Open("line");
    m_writer.Attribute("x1", x0, 2);
    m_writer.Attribute("y1", SvgY(y0), 2);
    m_writer.Attribute("x2", x1, 2);
    m_writer.Attribute("y2", SvgY(y1), 2);
    m_writer.Attribute("stroke", HexColor(color.red, color.green, color.blue));
    m_writer.Attribute("stroke-width", width, 2);
    m_writer.Close();
}

void CSvgCanvas::Text(double x, double y, const std::string& text, const TextStyle& style,
                      Anchor anchor, const std::string& superscript, const std::string& tail)
{
    m_writer.Open("text");
    m_writer.Attribute("x", x, 1);
    m_writer.Attribute("y", SvgY(y), 1);
    m_writer.Attribute("font-family", "'" + style.face + "', sans-serif");
    m_writer.Attribute("font-size", style.size, 0);
    if (style.bold)
    {
        m_writer.Attribute("font-weight", "bold");
    }
    if (style.italic)
    {
        m_writer.Attribute("font-style", "italic");
    }
    if (anchor != Anchor::Start)
    {
        m_writer.Attribute("text-anchor", anchor == Anchor::Middle ? "middle" : "end");
    }
    m_writer.Attribute("fill", HexColor(style.color.red, style.color.green, style.color.blue));
    if (style.halo.alpha != 0)
    {
        m_writer.Attribute("stroke", HexColor(style.halo.red, style.halo.green, style.halo.blue));
        m_writer.Attribute("stroke-opacity", style.halo.alpha / 255.0, 2);
        m_writer.Attribute("stroke-width", "3");
        m_writer.Attribute("stroke-linejoin", "round");
        m_writer.Attribute("paint-order", "stroke");
    }
    m_writer.Text(text);
    if (!superscript.empty())
    {
        const double raise = 0.4 * style.size;
        m_writer.Open("tspan");
        m_writer.Attribute("dy", -raise, 1);
        m_writer.Attribute("font-size", 0.75 * style.size, 1);
        m_writer.Text(superscript);
        m_writer.Close();
        m_writer.Open("tspan");
        m_writer.Attribute("dy", raise, 1);
        m_writer.Text(tail);
        m_writer.Close();
    }
    else
    {
        m_writer.Text(tail);
    }
    m_writer.Close();
}

std::string CSvgCanvas::Finish()
{
    return m_writer.Finish();
}

} // namespace KesraSvg
