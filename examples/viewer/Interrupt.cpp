#include "Interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdio>

namespace KesraViewer
{

namespace
{

// A signal handler can only reach a lock-free atomic of static storage.
std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void OnInterrupt(int)
{
    g_interrupted.store(true);
}

} // namespace

void CatchInterrupt()
{
    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    // The default action is back as the handler runs: a second Ctrl-C kills
    // a program that is slow to look.
    action.sa_flags = SA_RESETHAND | SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
}

bool Interrupted()
{
    return g_interrupted.load();
}

int ReportInterrupted()
{
    std::fputs("kesra-viewer: interrupted\n", stderr);
    return kInterruptedStatus;
}

void ForgetInterrupt()
{
    g_interrupted.store(false);
    CatchInterrupt();
}

} // namespace KesraViewer
