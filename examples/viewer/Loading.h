// Loading a large file while the user watches: how far it is on the
// terminal, and the load on a thread of its own, so that a window stays
// drawn and answers its keys meanwhile.
#pragma once

#include "SceneSource.h"

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>

namespace KesraViewer
{

// Files from this size on take long enough to read that the viewer says how
// far it is.
bool IsLargeFile(const std::string& file);

// Prints a line on stderr every tenth of each phase of a load, and the last.
class TerminalProgress
{
public:
    explicit TerminalProgress(bool enabled) : m_enabled(enabled) {}

    void Tell(LoadPhase phase, double fraction);

private:
    bool m_enabled;
    LoadPhase m_phase = LoadPhase::Reading;
    int m_tenths = -1; // the last tenth printed in m_phase
};

// The phase of a load as the user reads it: "reading", "preparing lines".
const char* PhaseName(LoadPhase phase);

// Loads a scene on a thread of its own from construction on. The loading
// stops when told, or when the user interrupts (Ctrl-C); the destructor
// stops it and waits for the thread.
class CBackgroundLoad
{
public:
    enum class Outcome
    {
        Running,
        Loaded,  // TakeData, Summary
        Refused, // Error
        Stopped  // by Stop or by Ctrl-C
    };

    // terminal: print the progress on stderr as well.
    CBackgroundLoad(SceneRequest request, bool terminal);
    ~CBackgroundLoad();
    CBackgroundLoad(const CBackgroundLoad&) = delete;
    CBackgroundLoad& operator=(const CBackgroundLoad&) = delete;

    void Stop() { m_stop.store(true); }
    // Stops and waits for the thread.
    void Join();

    LoadPhase Phase() const { return m_phase.load(); }
    double Fraction() const { return m_fraction.load(); }
    Outcome Result() const { return m_outcome.load(); }

    // Once loaded: the scene, moved out, and its line for the terminal.
    SceneData TakeData() { return std::move(m_data); }
    const std::string& Summary() const { return m_summary; }
    // Once refused: why.
    const std::string& Error() const { return m_error; }

private:
    void Run();
    bool Tell(LoadPhase phase, double fraction);

    SceneRequest m_request;
    TerminalProgress m_terminal;
    std::atomic<bool> m_stop{false};
    std::atomic<LoadPhase> m_phase{LoadPhase::Reading};
    std::atomic<double> m_fraction{0.0};
    // Written by the thread before the outcome is stored; read after.
    SceneData m_data;
    std::string m_summary;
    std::string m_error;
    std::atomic<Outcome> m_outcome{Outcome::Running};
    std::thread m_thread; // last: started once everything above is there
};

} // namespace KesraViewer
