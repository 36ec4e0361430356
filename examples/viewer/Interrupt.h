// Ctrl-C while the viewer works: the first one is noted and every long step
// (reading, preparing lines, the window's loop, the snapshot) looks at it and
// ends the program cleanly; a second one ends it at once.
#pragma once

namespace KesraViewer
{

// The status of a run ended by Ctrl-C, as a shell reports a death by SIGINT.
constexpr int kInterruptedStatus = 130;

// Installs the handler of SIGINT.
void CatchInterrupt();

// Whether Ctrl-C has come since CatchInterrupt (or the last ForgetInterrupt).
bool Interrupted();

// Prints that the run was interrupted; returns kInterruptedStatus.
int ReportInterrupted();

// Forgets a Ctrl-C and installs the handler again, for a test's next case.
void ForgetInterrupt();

} // namespace KesraViewer
