#include "EventScript.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace KesraViewer
{

namespace
{

constexpr int kMaxCoordinate = 100000;

class LineReader
{
public:
    LineReader(const std::string& text, const std::string& where) : m_words(text), m_where(where) {}

    [[noreturn]] void Fail(const std::string& expected) const
    {
        throw EventError(m_where + ": expected " + expected);
    }

    std::string Word(const std::string& expected)
    {
        std::string word;
        if (!(m_words >> word))
        {
            Fail(expected);
        }
        return word;
    }

    int Number(const std::string& expected, int low, int high)
    {
        return Check(Word(expected), expected, low, high);
    }

    // word as a whole number in [low, high].
    int Check(const std::string& word, const std::string& expected, int low, int high) const
    {
        char* end = nullptr;
        errno = 0;
        const long value = std::strtol(word.c_str(), &end, 10);
        if (end == word.c_str() || *end != '\0' || errno == ERANGE || value < low || value > high)
        {
            Fail(expected + " (a whole number from " + std::to_string(low) + " to "
                 + std::to_string(high) + "), not \"" + word + "\"");
        }
        return static_cast<int>(value);
    }

    KesraGl::MouseButton ButtonWord()
    {
        const std::string word = Word("a button: left, middle or right");
        if (word == "left")
        {
            return KesraGl::MouseButton::Left;
        }
        if (word == "middle")
        {
            return KesraGl::MouseButton::Middle;
        }
        if (word != "right")
        {
            Fail("a button: left, middle or right, not \"" + word + "\"");
        }
        return KesraGl::MouseButton::Right;
    }

    void Position(Event& event)
    {
        event.a = Number("x", -kMaxCoordinate, kMaxCoordinate);
        event.b = Number("y", -kMaxCoordinate, kMaxCoordinate);
    }

    bool Rest(std::string& word) { return static_cast<bool>(m_words >> word); }

    void End()
    {
        std::string word;
        if (m_words >> word)
        {
            Fail("the end of the line, not \"" + word + "\"");
        }
    }

private:
    std::istringstream m_words;
    std::string m_where;
};

Event ParseLine(LineReader& reader, const std::string& kind)
{
    Event event;
    if (kind == "press")
    {
        event.kind = Event::Kind::Press;
        event.button = reader.ButtonWord();
        reader.Position(event);
        std::string word;
        while (reader.Rest(word))
        {
            if (word == "shift")
            {
                event.modifiers.shift = true;
            }
            else if (word == "ctrl")
            {
                event.modifiers.ctrl = true;
            }
            else
            {
                reader.Fail("shift, ctrl or the end of the line, not \"" + word + "\"");
            }
        }
        return event;
    }
    if (kind == "move" || kind == "release")
    {
        event.kind = kind == "move" ? Event::Kind::Move : Event::Kind::Release;
        if (event.kind == Event::Kind::Release)
        {
            event.button = reader.ButtonWord();
        }
        reader.Position(event);
    }
    else if (kind == "wheel")
    {
        event.kind = Event::Kind::Wheel;
        reader.Position(event);
        event.c = reader.Number("wheel steps", -100, 100);
    }
    else if (kind == "key")
    {
        event.kind = Event::Kind::Key;
        const std::string word = reader.Word("a key: one character or esc");
        if (word == "esc")
        {
            event.key = KesraGl::CGlSceneInput::kEscape;
        }
        else if (word.size() == 1)
        {
            event.key = word[0];
        }
        else
        {
            reader.Fail("a key: one character or esc, not \"" + word + "\"");
        }
    }
    else if (kind == "frame")
    {
        event.kind = Event::Kind::Frame;
        std::string word;
        event.a = reader.Rest(word) ? reader.Check(word, "a frame count", 1, 100000) : 1;
    }
    else if (kind == "resize")
    {
        event.kind = Event::Kind::Resize;
        event.a = reader.Number("a width", 1, 8000);
        event.b = reader.Number("a height", 1, 8000);
    }
    else
    {
        reader.Fail("an event (press, move, release, wheel, key, frame, resize), not \"" + kind + "\"");
    }
    reader.End();
    return event;
}

} // namespace

std::vector<Event> ParseEvents(std::istream& in, const std::string& name)
{
    std::vector<Event> events;
    std::string text;
    int number = 0;
    while (std::getline(in, text))
    {
        ++number;
        const std::size_t hash = text.find('#');
        if (hash != std::string::npos)
        {
            text.erase(hash);
        }
        LineReader reader(text, name + ":" + std::to_string(number));
        std::string kind;
        if (!reader.Rest(kind))
        {
            continue;
        }
        events.push_back(ParseLine(reader, kind));
    }
    return events;
}

std::vector<Event> ReadEventFile(const std::string& path)
{
    std::ifstream in(path);
    if (!in)
    {
        throw EventError(path + ": cannot be read");
    }
    return ParseEvents(in, path);
}

bool ReplayEvents(const std::vector<Event>& events, KesraGl::CGlSceneInput& input, KesraGl::CGlScene& scene)
{
    for (const Event& event : events)
    {
        switch (event.kind)
        {
        case Event::Kind::Press: input.Press(event.button, event.a, event.b, event.modifiers); break;
        case Event::Kind::Move: input.Move(event.a, event.b); break;
        case Event::Kind::Release: input.Release(event.button, event.a, event.b); break;
        case Event::Kind::Wheel: input.Wheel(event.a, event.b, event.c); break;
        case Event::Kind::Resize: input.Resize(event.a, event.b); break;
        case Event::Kind::Key:
            if (input.Key(event.key) == KesraGl::KeyAction::Quit)
            {
                return true;
            }
            break;
        case Event::Kind::Frame:
            for (int i = 0; i < event.a; ++i)
            {
                scene.Render();
            }
            break;
        }
    }
    return false;
}

} // namespace KesraViewer
