#include "svg/SvgWriter.h"

#include <cmath>
#include <cstdio>

namespace KesraSvg
{

namespace
{

// Length of the valid UTF-8 sequence that starts at text[i], or 0.
std::size_t Utf8SequenceLength(const std::string& text, std::size_t i)
{
    const auto byte = [&text](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t length = 0;
    unsigned int minimum = 0;
    unsigned int code = 0;
    if (lead >= 0xC2 && lead <= 0xDF)
    {
        length = 2;
        code = lead & 0x1Fu;
        minimum = 0x80;
    }
    else if (lead >= 0xE0 && lead <= 0xEF)
    {
        length = 3;
        code = lead & 0x0Fu;
        minimum = 0x800;
    }
    else if (lead >= 0xF0 && lead <= 0xF4)
    {
        length = 4;
        code = lead & 0x07u;
        minimum = 0x10000;
    }
    else
    {
        return 0;
    }
    if (i + length > text.size())
    {
        return 0;
    }
    for (std::size_t k = 1; k < length; ++k)
    {
        if ((byte(i + k) & 0xC0u) != 0x80u)
        {
            return 0;
        }
        code = (code << 6) | (byte(i + k) & 0x3Fu);
    }
    // Overlong forms, surrogates and code points beyond Unicode are not text.
    const bool valid = code >= minimum && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return valid ? length : 0;
}

void AppendLatin1(std::string& out, unsigned char byte)
{
    out += static_cast<char>(0xC0 | (byte >> 6));
    out += static_cast<char>(0x80 | (byte & 0x3F));
}

} // namespace

void AppendNumber(std::string& out, double value, int decimals)
{
    if (!std::isfinite(value))
    {
        out += '0';
        return;
    }
    decimals = decimals < 0 ? 0 : (decimals > 9 ? 9 : decimals);
    char buffer[64];
    const int written = std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    if (written <= 0 || written >= static_cast<int>(sizeof buffer))
    {
        // Too many digits for fixed notation; SVG numbers take an exponent.
        std::snprintf(buffer, sizeof buffer, "%.9e", value);
        out += buffer;
        return;
    }
    std::size_t end = static_cast<std::size_t>(written);
    if (decimals > 0)
    {
        while (buffer[end - 1] == '0')
        {
            --end;
        }
        if (buffer[end - 1] == '.')
        {
            --end;
        }
    }
    // Rounding can leave "-0", which reads as a different number to a person.
    if (end == 2 && buffer[0] == '-' && buffer[1] == '0')
    {
        out += '0';
        return;
    }
    out.append(buffer, end);
}

std::string FormatNumber(double value, int decimals)
{
    std::string text;
    AppendNumber(text, value, decimals);
    return text;
}

std::string EscapeXml(const std::string& text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();)
    {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80)
        {
            const std::size_t length = Utf8SequenceLength(text, i);
            if (length == 0)
            {
                AppendLatin1(out, c);
                ++i;
            }
            else
            {
                out.append(text, i, length);
                i += length;
            }
            continue;
        }
        switch (c)
        {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&apos;"; break;
        default:
            out += (c < 0x20 && c != '\t' && c != '\n') ? ' ' : static_cast<char>(c);
            break;
        }
        ++i;
    }
    return out;
}

std::string HexColor(unsigned char red, unsigned char green, unsigned char blue)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", red, green, blue);
    return buffer;
}

void CSvgWriter::Open(const char* name)
{
    EndStartTag();
    m_text += '<';
    m_text += name;
    m_open.emplace_back(name);
    m_inStartTag = true;
}

void CSvgWriter::Attribute(const char* name, const std::string& value)
{
    m_text += ' ';
    m_text += name;
    m_text += "=\"";
    m_text += EscapeXml(value);
    m_text += '"';
}

void CSvgWriter::Attribute(const char* name, const char* value)
{
    Attribute(name, std::string(value));
}

void CSvgWriter::Attribute(const char* name, double value, int decimals)
{
    m_text += ' ';
    m_text += name;
    m_text += "=\"";
    AppendNumber(m_text, value, decimals);
    m_text += '"';
}

void CSvgWriter::Text(const std::string& text)
{
    EndStartTag();
    m_text += EscapeXml(text);
}

void CSvgWriter::Raw(const std::string& markup)
{
    EndStartTag();
    m_text += markup;
}

void CSvgWriter::Close()
{
    if (m_open.empty())
    {
        return;
    }
    if (m_inStartTag)
    {
        m_text += "/>";
        m_inStartTag = false;
    }
    else
    {
        m_text += "</";
        m_text += m_open.back();
        m_text += '>';
    }
    m_open.pop_back();
}

std::string CSvgWriter::Finish()
{
    while (!m_open.empty())
    {
        Close();
    }
    m_text += '\n';
    std::string text;
    text.swap(m_text);
    return text;
}

void CSvgWriter::EndStartTag()
{
    if (m_inStartTag)
    {
        m_text += '>';
        m_inStartTag = false;
    }
}

} // namespace KesraSvg
