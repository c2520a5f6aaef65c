// One cue of WebVTT: its text with tags, and the settings that say where it stands.
#ifndef KOVA_CAPTION_WEBVTT_CUE_H
#define KOVA_CAPTION_WEBVTT_CUE_H

#include <string>

#include "cue.h"
#include "notices.h"

namespace caption
{

// Adds a block to the cue unless there is no text in it.
void ReadWebVttCue(const std::string &text, const std::string &settings, Cue &cue, Notices &notices);

// What is noticed of the parts of a file that are no cues.
void ReadWebVttHead(const std::string &file, Notices &notices);

} // namespace caption

#endif
