// SPDX-License-Identifier: MIT
// Signals that ask the tool to end, taken in between two steps of its work.
#ifndef KOVA_CAPTION_TERMINAL_STOP_SIGNALS_H
#define KOVA_CAPTION_TERMINAL_STOP_SIGNALS_H

#include <csignal>

namespace caption
{

// A signal asked the tool to end. Thrown so that everything is put back first; then it is raised again.
struct Interrupted {
    int signal;
};

// The handlers stand while it lives; one at a time does. What they catch goes through a pipe, so that no
// signal falls between the look at a flag and a wait, whichever thread it reaches.
class StopSignals
{
public:
    // After DirectFB has started, which has handlers of its own.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;

    // Readable once a signal has come.
    int File() const;

    // Throws Interrupted if one has.
    void Read() const;

private:
    struct sigaction before_[4] = {};
};

} // namespace caption

#endif
