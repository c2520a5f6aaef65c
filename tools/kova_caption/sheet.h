// SPDX-License-Identifier: MIT
// All cues of a source in one picture.
#ifndef KOVA_CAPTION_SHEET_H
#define KOVA_CAPTION_SHEET_H

#include "options.h"
#include "picture.h"
#include "subtitles.h"

namespace caption
{

// Every cue by itself, made smaller, with its times beneath. The more there are the smaller they become; a
// Failure where they would be too small to see. columns: 0 chooses.
Picture Sheet(const SourceOptions &source, int columns, const Options &options);

} // namespace caption

#endif
