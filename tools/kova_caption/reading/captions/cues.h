// SPDX-License-Identifier: MIT
// The states of a caption channel become cues: exact ones to be listed, and ones to be drawn.
#ifndef KOVA_CAPTION_READING_CAPTIONS_CUES_H
#define KOVA_CAPTION_READING_CAPTIONS_CUES_H

#include <cstdint>
#include <vector>

#include "cues/cue.h"
#include "cues/listed_cue.h"
#include "reading/captions/closed_captions.h"

namespace caption
{

// Every state of the text and its place. One that is over within a frame is left out, and the next one begins
// in its place.
std::vector<ListedCue> ListedCues(const std::vector<CaptionState> &states);

// Those of a source. Text that comes in a burst is one cue, shown whole from its first letter on.
std::vector<Cue> DrawnCues(const DecodedCaptions &decoded, std::uint8_t source);

} // namespace caption

#endif
