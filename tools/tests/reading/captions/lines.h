// SPDX-License-Identifier: MIT
// Caption triplets as a test writes them down.
#ifndef KOVA_CAPTION_TESTS_READING_CAPTIONS_LINES_H
#define KOVA_CAPTION_TESTS_READING_CAPTIONS_LINES_H

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

#include "reading/captions/triplets.h"

// One triplet a line: microseconds, a blank, six hexadecimal digits.
inline std::string Listed(const caption::Triplets &read)
{
    std::string lines;
    for (const caption::Triplet &triplet : read.triplets) {
        char line[64];
        std::snprintf(line, sizeof line, "%lld %02x%02x%02x\n", static_cast<long long>(triplet.time),
                      unsigned(triplet.bytes[0]), unsigned(triplet.bytes[1]), unsigned(triplet.bytes[2]));
        lines += line;
    }
    return lines;
}

// The time of the n-th frame of 30000/1001 a second, in microseconds.
inline std::int64_t FrameTime(std::int64_t n)
{
    return std::llround(double(n) * 1001e6 / 30000);
}

#endif
