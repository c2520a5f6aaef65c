// SPDX-License-Identifier: MIT
// WebVTT: the text of a cue with its tags, and the settings that place it.
#ifndef KOVA_CAPTION_READING_WEBVTT_H
#define KOVA_CAPTION_READING_WEBVTT_H

#include <string>

#include "base/notices.h"
#include "cues/cue.h"

namespace caption
{

// Adds a block to the cue, unless there is no text.
void ReadWebVttCue(const std::string &text, const std::string &settings, Cue &cue, Notices &notices);

// Removes style sheets and regions, at which libavformat would stop. Text of another format stays as it is.
std::string WithoutWebVttStyles(const std::string &file, Notices &notices);

} // namespace caption

#endif
