// What captions cost on this machine's DirectFB.
#ifndef KOVA_CAPTION_BENCH_H
#define KOVA_CAPTION_BENCH_H

#include <cstdio>

#include "options.h"

namespace caption
{

// Every edge in every colour mode, in the window of layer 1, where every flip is made at once. A readable
// table, or JSON.
void Bench(const Options &options, bool json, std::FILE *out);

} // namespace caption

#endif
