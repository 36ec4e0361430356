#include "Markup.h"

#include "KesraIo/PolyData.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstring>

namespace KesraIo
{

const char* Attributes::Find(std::string_view name) const
{
    for (const char** pair = m_pairs; pair[0] != nullptr; pair += 2)
    {
        if (name == pair[0])
        {
            return pair[1];
        }
    }
    return nullptr;
}

struct Markup::Parser
{
    XML_Parser expat = XML_ParserCreate(nullptr);
    ~Parser() { XML_ParserFree(expat); }
};

Markup::Markup(const std::string& name, MarkupHandler& handler)
    : m_parser(std::make_unique<Parser>()), m_name(name), m_handler(handler)
{
    if (m_parser->expat == nullptr)
    {
        throw std::bad_alloc();
    }
    XML_SetUserData(m_parser->expat, this);
    XML_SetElementHandler(m_parser->expat, &Markup::OnStart, &Markup::OnEnd);
    XML_SetStartDoctypeDeclHandler(m_parser->expat, &Markup::OnDoctype);
    XML_SetEntityDeclHandler(m_parser->expat, &Markup::OnEntity);
}

Markup::~Markup() = default;

void Markup::Stop(std::exception_ptr error)
{
    if (!m_error)
    {
        m_error = std::move(error);
    }
    XML_StopParser(m_parser->expat, XML_FALSE);
}

// Exceptions must not unwind through expat's C frames: each hook catches
// what the handler throws and stops the parse, and Feed throws it again.
// expat finishes the tag it is in after a stop (an empty element still
// ends): the handler hears nothing more.
void Markup::OnStart(void* user, const char* element, const char** attributes)
{
    auto* markup = static_cast<Markup*>(user);
    if (markup->m_error)
    {
        return;
    }
    try
    {
        markup->m_handler.Start(element, Attributes(attributes));
    }
    catch (...)
    {
        markup->Stop(std::current_exception());
    }
}

void Markup::OnEnd(void* user, const char* element)
{
    auto* markup = static_cast<Markup*>(user);
    if (markup->m_error)
    {
        return;
    }
    try
    {
        markup->m_handler.End(element);
    }
    catch (...)
    {
        markup->Stop(std::current_exception());
    }
}

void Markup::OnDoctype(void* user, const char* name, const char*, const char*, int)
{
    auto* markup = static_cast<Markup*>(user);
    markup->Stop(std::make_exception_ptr(
        ReadError(markup->m_name + ":" + std::to_string(markup->Line()) + ": <!DOCTYPE " + name +
                  ">: document type declarations are refused (they may declare entities); expected the "
                  "root element right after the XML declaration")));
}

void Markup::OnEntity(void* user, const char* name, int, const char*, int, const char*, const char*, const char*,
                      const char*)
{
    auto* markup = static_cast<Markup*>(user);
    markup->Stop(std::make_exception_ptr(ReadError(markup->m_name + ":" + std::to_string(markup->Line()) +
                                                   ": <!ENTITY " + name + ">: entity declarations are refused")));
}

void Markup::Feed(std::string_view bytes, bool last)
{
    // expat takes an int length: large inputs go in slices.
    constexpr std::size_t kSlice = std::size_t{1} << 20;
    do
    {
        const std::size_t size = std::min(bytes.size(), kSlice);
        const bool final = last && size == bytes.size();
        const XML_Status status =
            XML_Parse(m_parser->expat, bytes.data(), static_cast<int>(size), final ? XML_TRUE : XML_FALSE);
        if (status != XML_STATUS_OK)
        {
            if (m_error)
            {
                std::rethrow_exception(m_error);
            }
            const XML_Error code = XML_GetErrorCode(m_parser->expat);
            throw ReadError(m_name + ":" + std::to_string(Line()) + ": malformed XML (" + XML_ErrorString(code) +
                            ") at column " + std::to_string(XML_GetCurrentColumnNumber(m_parser->expat) + 1));
        }
        bytes.remove_prefix(size);
    } while (!bytes.empty());
}

void Markup::Skip(std::string_view bytes)
{
    m_skippedBytes += bytes.size();
    m_skippedLines += static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
}

std::size_t Markup::Line() const
{
    return static_cast<std::size_t>(XML_GetCurrentLineNumber(m_parser->expat)) + m_skippedLines;
}

std::size_t Markup::EventStart() const
{
    return static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(m_parser->expat), 0)) + m_skippedBytes;
}

std::size_t Markup::EventEnd() const
{
    return EventStart() + static_cast<std::size_t>(std::max(XML_GetCurrentByteCount(m_parser->expat), 0));
}

} // namespace KesraIo
