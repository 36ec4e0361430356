#include "Loading.h"

#include "Interrupt.h"
#include "KesraIo/Reader.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

namespace KesraViewer
{

bool IsLargeFile(const std::string& file)
{
    constexpr std::uintmax_t kLargeBytes = 16u << 20;
    std::error_code error;
    const std::uintmax_t bytes = file.empty() ? 0 : std::filesystem::file_size(file, error);
    return !error && bytes >= kLargeBytes;
}

const char* PhaseName(LoadPhase phase)
{
    return phase == LoadPhase::Reading ? "reading" : "preparing lines";
}

void TerminalProgress::Tell(LoadPhase phase, double fraction)
{
    if (!m_enabled)
    {
        return;
    }
    if (phase != m_phase)
    {
        m_phase = phase;
        m_tenths = -1;
    }
    const int tenths = static_cast<int>(10.0 * fraction);
    // Nothing at 0%: the line before this phase says it starts.
    if (tenths > m_tenths && tenths > 0)
    {
        m_tenths = tenths;
        std::fprintf(stderr, "kesra-viewer: %s %d%%\n", PhaseName(phase), 10 * tenths);
    }
}

CBackgroundLoad::CBackgroundLoad(SceneRequest request, bool terminal)
    : m_request(std::move(request)), m_terminal(terminal), m_thread([this]() { Run(); })
{
}

CBackgroundLoad::~CBackgroundLoad()
{
    Join();
}

void CBackgroundLoad::Join()
{
    Stop();
    if (m_thread.joinable())
    {
        m_thread.join();
    }
}

bool CBackgroundLoad::Tell(LoadPhase phase, double fraction)
{
    m_phase.store(phase);
    m_fraction.store(fraction);
    m_terminal.Tell(phase, fraction);
    return !m_stop.load() && !Interrupted();
}

void CBackgroundLoad::Run()
{
    Outcome outcome = Outcome::Refused;
    try
    {
        const bool loaded = LoadScene(m_request, m_data, m_summary, m_error,
                                      [this](LoadPhase phase, double fraction) { return Tell(phase, fraction); });
        outcome = loaded ? Outcome::Loaded : Outcome::Refused;
    }
    catch (const KesraIo::ReadCancelled&)
    {
        outcome = Outcome::Stopped;
    }
    catch (const std::bad_alloc&)
    {
        m_data = SceneData();
        m_error = m_request.file + ": not enough memory to hold it";
    }
    m_outcome.store(outcome);
}

} // namespace KesraViewer
