// SPDX-License-Identifier: MIT
// What captions cost on this machine's DirectFB.
#ifndef KOVA_CAPTION_BENCH_H
#define KOVA_CAPTION_BENCH_H

#include <chrono>
#include <cstdio>

#include "options.h"

namespace caption
{

// Every edge in every colour mode, in the window of layer 1, where every flip is made at once. Each figure is
// a mean over at least that time. A readable table, or JSON.
void Bench(const Options &options, std::chrono::milliseconds time, bool json, std::FILE *out);

} // namespace caption

#endif
