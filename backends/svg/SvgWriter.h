// CSvgWriter: a minimal writer of XML text for SVG documents.
//
// Elements are opened, given attributes and closed in document order; an
// element without content is closed as `<name .../>`. Attribute values and
// text are escaped, and 8-bit text that is not valid UTF-8 is read as
// Latin-1, so that any text of the library yields a well-formed document.
// Numbers are written compactly: a fixed number of decimals at most, without
// trailing zeros.
#pragma once

#include <string>
#include <vector>

namespace KesraSvg
{

// value with at most decimals digits after the point (0 to 9), trailing zeros
// and a trailing point dropped, a negative zero written as 0. Magnitudes too
// large for 60 digits are written with an exponent. A value that is not
// finite is written as 0: SVG has no spelling for it.
std::string FormatNumber(double value, int decimals);
void AppendNumber(std::string& out, double value, int decimals);

// text as XML character data or attribute value: &, <, >, " and ' as
// entities, control characters other than tab and line feed as spaces, and
// bytes that do not form valid UTF-8 read as Latin-1.
std::string EscapeXml(const std::string& text);

// "#rrggbb" of three bytes.
std::string HexColor(unsigned char red, unsigned char green, unsigned char blue);

class CSvgWriter
{
public:
    // Starts an element; attributes may follow until content or Close.
    void Open(const char* name);
    // Attributes of the element just opened.
    void Attribute(const char* name, const std::string& value);
    void Attribute(const char* name, const char* value);
    void Attribute(const char* name, double value, int decimals);
    // Escaped character data inside the innermost open element.
    void Text(const std::string& text);
    // Markup that is already well-formed (a nested document), written as is.
    void Raw(const std::string& markup);
    // Closes the innermost open element.
    void Close();
    // Closes every open element and hands out the text; the writer is then
    // empty again.
    std::string Finish();

private:
    // Ends the start tag of the innermost element before content follows.
    void EndStartTag();

    std::string m_text;
    std::vector<std::string> m_open;
    // The innermost element's start tag is still open: nothing follows it yet.
    bool m_inStartTag = false;
};

} // namespace KesraSvg
