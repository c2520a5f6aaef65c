// SPDX-License-Identifier: MIT
// Signals that ask the tool to stop, handled between two steps of its work.
#ifndef KOVA_CAPTION_TERMINAL_STOP_SIGNALS_H
#define KOVA_CAPTION_TERMINAL_STOP_SIGNALS_H

#include <csignal>

namespace caption
{

// A signal asked the tool to stop. It is thrown so that destructors restore everything first; main then
// raises the signal again.
struct Interrupted {
    int signal;
};

// Installs the handlers for its lifetime; only one instance may exist. A handler writes to a pipe, so no
// signal is lost between the check of a flag and a wait, whichever thread receives it.
class StopSignals
{
public:
    // Construct it after DirectFB has started, which installs handlers of its own.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;

    // A file descriptor that becomes readable when a signal arrives.
    int File() const;

    // Throws Interrupted if a signal has arrived.
    void Read() const;

private:
    struct sigaction before_[4] = {};
};

} // namespace caption

#endif
