// SPDX-License-Identifier: MIT
// Plays subtitles in real time on the display.
#ifndef KOVA_CAPTION_PLAYING_PLAYER_H
#define KOVA_CAPTION_PLAYING_PLAYER_H

#include <cstdint>
#include <cstdio>
#include <vector>

#include "base/options.h"
#include "cues/cue.h"
#include "drawing/stage.h"
#include "playing/keys.h"
#include "reading/subtitles.h"

namespace caption
{

struct Playback {
    double speed = 1;
    std::int64_t start = 0; // milliseconds
    bool loop = false;
};

// Plays until the last caption ends or the viewer quits. Prints each caption on `out` as it appears, and at
// the end how late captions were: the time from the moment a caption is due to the return of its flip.
void Play(const SourceOptions &source, const Playback &playback, const Options &options, std::FILE *out);

// The same for cues that are read, on a stage that is set, with time and keys from `input`.
void PlayCues(const std::vector<Cue> &cues, const Playback &playback, Stage &stage, PlayerInput &input,
              std::FILE *out);

} // namespace caption

#endif
