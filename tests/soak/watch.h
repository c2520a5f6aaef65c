// SPDX-License-Identifier: MIT
// Sees the flips of a display from below, where they happen: in the methods of the DirectFB interfaces that
// the library is given. DirectFB hands out one IDirectFB to a process; from it on, the few methods that lead
// to the display's surface are replaced by ours, which call the original and note the time. Draws and flips
// are both made under the display's lock, so which flip shows which draw is never in doubt.
#ifndef TEXTDISP_TESTS_SOAK_WATCH_H
#define TEXTDISP_TESTS_SOAK_WATCH_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace soak
{

// Opens DirectFB and begins to watch, before the display is created; false where there is no DirectFB. The
// reference is kept to the end of the process.
bool WatchDirectFB();

// From here on flips are counted and latencies kept, for which room is made now: it is not to look like a
// leak.
void StartMeasuring(size_t uiLatencies);

uint64_t Flips();

// For each line drawn: from when DirectFB had drawn it to when DirectFB had flipped it, the return of its
// Flip. A line drawn while an older one still waits counts as that one, so nothing looks faster than it was.
// To be read when no flip can come any more.
const std::vector<std::chrono::microseconds> &Latencies();

// Whether a line is not flipped yet.
bool IsFramePending();

} // namespace soak

#endif
