// The markup layer of the XML readers: expat, reduced to the elements and
// their attributes, with document type declarations refused (they are the
// only place entities can be declared, and no result file needs one).
//
// Handlers may throw; the exception stops the parse and leaves Feed as it
// was thrown. A reader feeds a document in order and may pass over runs of
// it (long element contents, data that is not XML) with Skip: positions and
// lines still count every byte of the document, so contents can be cut out
// of the document itself instead of copied.
#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace KesraIo
{

// The attributes of one start tag, as expat hands them over.
class Attributes
{
public:
    explicit Attributes(const char** pairs) : m_pairs(pairs) {}

    // The value of the attribute, or nullptr when the tag has none.
    const char* Find(std::string_view name) const;

private:
    const char** m_pairs;
};

class MarkupHandler
{
public:
    virtual void Start(std::string_view element, const Attributes& attributes) = 0;
    virtual void End(std::string_view element) = 0;

protected:
    ~MarkupHandler() = default;
};

class Markup
{
public:
    // name is how messages call the document; the handler must outlive this.
    Markup(const std::string& name, MarkupHandler& handler);
    ~Markup();
    Markup(const Markup&) = delete;
    Markup& operator=(const Markup&) = delete;

    // Parses the next bytes of the document; last when no more follow.
    // Throws ReadError with the line and expat's reason on malformed XML.
    void Feed(std::string_view bytes, bool last);

    // Passes over the next bytes of the document without parsing them.
    void Skip(std::string_view bytes);

    // The current event (a start or end tag): its line, where it starts in
    // the document, and the index just past it.
    std::size_t Line() const;
    std::size_t EventStart() const;
    std::size_t EventEnd() const;

private:
    // expat's hooks; user is this Markup.
    static void OnStart(void* user, const char* element, const char** attributes);
    static void OnEnd(void* user, const char* element);
    static void OnDoctype(void* user, const char* name, const char* system, const char* pub, int internal);
    static void OnEntity(void* user, const char* name, int parameter, const char* value, int length, const char* base,
                         const char* system, const char* pub, const char* notation);
    void Stop(std::exception_ptr error);

    struct Parser;
    std::unique_ptr<Parser> m_parser;
    const std::string& m_name;
    MarkupHandler& m_handler;
    std::exception_ptr m_error;
    std::size_t m_skippedBytes = 0;
    std::size_t m_skippedLines = 0;
};

} // namespace KesraIo
