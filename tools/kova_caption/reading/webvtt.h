// SPDX-License-Identifier: MIT
// WebVTT: the text of a cue with its tags, and the settings that say where it stands.
#ifndef KOVA_CAPTION_READING_WEBVTT_H
#define KOVA_CAPTION_READING_WEBVTT_H

#include <string>

#include "base/notices.h"
#include "cues/cue.h"

namespace caption
{

// Adds a block to the cue unless there is no text in it.
void ReadWebVttCue(const std::string &text, const std::string &settings, Cue &cue, Notices &notices);

// The file without its style sheets and regions, which libavformat would stop at. Text of another format
// stays as it is.
std::string WithoutWebVttStyles(const std::string &file, Notices &notices);

} // namespace caption

#endif
