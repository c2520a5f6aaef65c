// SPDX-License-Identifier: MIT
// Breaks lines that are too wide.
#ifndef KOVA_CAPTION_TEXT_WRAP_H
#define KOVA_CAPTION_TEXT_WRAP_H

#include <cstddef>
#include <functional>
#include <vector>

#include "text/letters.h"

namespace caption
{

// Letters of a line that stand in one row, from begin to before end.
struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// How wide the letters of the span are. What is wider than `enough` may be answered with any width above it.
using Measure = std::function<int(const Letters &letters, Span span, int enough)>;

// Breaks where words end, so that every row measures at most maxWidth, in as few rows as that takes and about
// equally long ones. A word too wide for a row of its own is broken inside; a row keeps at least one letter
// with its accents. Spaces at the ends of rows belong to none.
std::vector<Span> Wrap(const Letters &letters, int maxWidth, const Measure &measure);

} // namespace caption

#endif
