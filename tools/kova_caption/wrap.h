// Breaks lines that are too wide.
#ifndef KOVA_CAPTION_WRAP_H
#define KOVA_CAPTION_WRAP_H

#include <functional>
#include <vector>

#include "cue.h"

namespace caption
{

using Measure = std::function<int(const Line &)>;

// Breaks at words so that every line measures at most maxWidth, in as few lines as that takes and about
// equally long ones. A word too wide for a line of its own is broken inside; a line keeps at least one
// character. Spaces at the ends of lines go, and so do invisible characters.
std::vector<Line> Wrap(const Line &line, int maxWidth, const Measure &measure);

} // namespace caption

#endif
