// Base64 text read as a run of bytes, piece by piece. Writers encode an
// array's header and its data either as one text or as two texts one after
// the other (the first ending in '=' padding); both read as the same bytes,
// because a padded group simply ends a text and the next group starts the
// next one. Whitespace between groups is skipped.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace KesraIo
{

class Base64Reader
{
public:
    explicit Base64Reader(std::string_view text) : m_text(text) {}

    // Decodes the next size bytes into out. Throws DataError, placed at a
    // character of the text, when the text ends first or holds a character
    // that is not base64.
    void Read(unsigned char* out, std::size_t size);

    // The most bytes the rest of the text can hold.
    std::size_t MostLeft() const { return m_carried + (m_text.size() - m_at) / 4 * 3; }

    // Characters of the text read so far.
    std::size_t Position() const { return m_at; }

private:
    // The bytes of the next group of four characters; 0 at the end of the text.
    std::size_t NextGroup(unsigned char bytes[3]);

    std::string_view m_text;
    std::size_t m_at = 0;
    unsigned char m_carry[3] = {0, 0, 0}; // decoded bytes of a group not yet read
    std::size_t m_carried = 0;
    std::size_t m_carryAt = 0;
};

} // namespace KesraIo
