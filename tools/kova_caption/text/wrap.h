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

// Letters of one row: from begin to before end.
struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// The width of the letters of the span. If it exceeds `enough`, any larger value may be returned.
using Measure = std::function<int(const Letters &letters, Span span, int enough)>;

// Breaks lines at the ends of words so that every row measures at most maxWidth, in as few rows as possible
// and of about equal length. A word too wide for a row is broken inside; a row keeps at least one letter with
// its accents. Spaces at the ends of rows belong to none.
std::vector<Span> Wrap(const Letters &letters, int maxWidth, const Measure &measure);

} // namespace caption

#endif
