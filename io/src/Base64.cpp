#include "Base64.h"

#include "XmlDecode.h"

#include <array>
#include <cstdint>

namespace KesraIo
{
namespace
{

constexpr std::int8_t kSpace = -2;
constexpr std::int8_t kInvalid = -1;

constexpr std::array<std::int8_t, 256> MakeTable()
{
    std::array<std::int8_t, 256> table{};
    for (auto& entry : table)
    {
        entry = kInvalid;
    }
    const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int i = 0; i < 64; ++i)
    {
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::int8_t>(i);
    }
    for (const char c : {' ', '\t', '\n', '\r'})
    {
        table[static_cast<unsigned char>(c)] = kSpace;
    }
    return table;
}

constexpr std::array<std::int8_t, 256> kTable = MakeTable();

std::string Shown(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7f)
    {
        return std::string("'") + c + "'";
    }
    return "byte " + std::to_string(byte);
}

} // namespace

std::size_t Base64Reader::NextGroup(unsigned char bytes[3])
{
    int values[4] = {0, 0, 0, 0};
    int count = 0;
    int padding = 0;
    std::size_t groupAt = m_at;
    while (count < 4 && m_at < m_text.size())
    {
        const char c = m_text[m_at];
        const std::int8_t value = kTable[static_cast<unsigned char>(c)];
        if (value == kSpace)
        {
            ++m_at;
            continue;
        }
        if (count == 0)
        {
            groupAt = m_at;
        }
        if (c == '=' && count >= 2)
        {
            ++padding;
        }
        else if (value < 0 || padding > 0)
        {
            throw DataError("expected a base64 character, found " + Shown(c), m_at);
        }
        else
        {
            values[count] = value;
        }
        ++count;
        ++m_at;
    }
    if (count == 0)
    {
        return 0;
    }
    if (count < 4)
    {
        throw DataError("the base64 text ends inside a group of four characters (is it truncated?)", groupAt);
    }
    const std::uint32_t bits = (static_cast<std::uint32_t>(values[0]) << 18) |
                               (static_cast<std::uint32_t>(values[1]) << 12) |
                               (static_cast<std::uint32_t>(values[2]) << 6) | static_cast<std::uint32_t>(values[3]);
    bytes[0] = static_cast<unsigned char>(bits >> 16);
    bytes[1] = static_cast<unsigned char>(bits >> 8);
    bytes[2] = static_cast<unsigned char>(bits);
    return static_cast<std::size_t>(3 - padding);
}

void Base64Reader::Read(unsigned char* out, std::size_t size)
{
    const std::size_t wanted = size;
    while (size > 0 && m_carried > 0)
    {
        *out++ = m_carry[m_carryAt++];
        --m_carried;
        --size;
    }
    const auto* text = reinterpret_cast<const unsigned char*>(m_text.data());
    while (size > 0)
    {
        // Whole groups of plain characters, the bulk of any array.
        while (size >= 3 && m_at + 4 <= m_text.size())
        {
            const int a = kTable[text[m_at]];
            const int b = kTable[text[m_at + 1]];
            const int c = kTable[text[m_at + 2]];
            const int d = kTable[text[m_at + 3]];
            if ((a | b | c | d) < 0)
            {
                break;
            }
            const auto bits = static_cast<std::uint32_t>((a << 18) | (b << 12) | (c << 6) | d);
            out[0] = static_cast<unsigned char>(bits >> 16);
            out[1] = static_cast<unsigned char>(bits >> 8);
            out[2] = static_cast<unsigned char>(bits);
            out += 3;
            size -= 3;
            m_at += 4;
        }
        if (size == 0)
        {
            break;
        }
        // Whitespace, padding or the last bytes wanted: one group the slow way.
        unsigned char group[3];
        const std::size_t got = NextGroup(group);
        if (got == 0)
        {
            throw DataError("the base64 text ends after " + std::to_string(wanted - size) + " of the " +
                                std::to_string(wanted) + " bytes expected",
                            m_at);
        }
        const std::size_t used = got < size ? got : size;
        for (std::size_t i = 0; i < used; ++i)
        {
            out[i] = group[i];
        }
        out += used;
        size -= used;
        for (std::size_t i = used; i < got; ++i)
        {
            m_carry[i - used] = group[i];
        }
        m_carried = got - used;
        m_carryAt = 0;
    }
}

} // namespace KesraIo
