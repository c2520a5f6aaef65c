// SPDX-License-Identifier: MIT
// Which characters of a source no font has.
#ifndef KOVA_CAPTION_COVERAGE_H
#define KOVA_CAPTION_COVERAGE_H

#include <cstdio>

#include "options.h"
#include "subtitles.h"

namespace caption
{

// Lists each with its cue: in the form in which it would be drawn, so letters that join count joined. The
// fonts are those that the options name; where they name none, what this machine has. A Failure if there are
// any.
void Coverage(const SourceOptions &source, const Options &options, std::FILE *out);

} // namespace caption

#endif
