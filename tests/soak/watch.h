// SPDX-License-Identifier: MIT
// Observes the flips of a display in the methods of the DirectFB interfaces that the library gets. DirectFB
// returns one IDirectFB per process; starting there, the few methods that lead to the display's surface are
// replaced by functions that call the original and store the time. Draws and flips are both made under the
// display's lock, so it is always known which flip shows which draw.
#ifndef TEXTDISP_TESTS_SOAK_WATCH_H
#define TEXTDISP_TESTS_SOAK_WATCH_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace soak
{

// Opens DirectFB and starts to watch, before the display is created; false without DirectFB. The reference is
// kept until the process ends.
bool WatchDirectFB();

// From here on flips are counted and latencies stored. Their memory is reserved now, so that it does not look
// like a leak.
void StartMeasuring(size_t uiLatencies);

uint64_t Flips();

// For each line: the time from the end of DirectFB's drawing to the return of DirectFB's Flip. A line drawn
// while an older one is not flipped yet counts as the older one, so no latency is too short. Read it when no
// flip can come any more.
const std::vector<std::chrono::microseconds> &Latencies();

// Whether a line is not flipped yet.
bool IsFramePending();

} // namespace soak

#endif
