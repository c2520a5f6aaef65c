// SPDX-License-Identifier: MIT
// Plays subtitles in real time on the display.
#ifndef KOVA_CAPTION_PLAYING_PLAYER_H
#define KOVA_CAPTION_PLAYING_PLAYER_H

#include <cstdint>
#include <cstdio>

#include "base/options.h"
#include "reading/subtitles.h"

namespace caption
{

struct Playback {
    double speed = 1;
    std::int64_t start = 0; // milliseconds
    bool loop = false;
};

// Until the last caption goes or the viewer ends it. Says on `out` what is shown, and at the end how many
// milliseconds after its time each caption was on the screen.
void Play(const SourceOptions &source, const Playback &playback, const Options &options, std::FILE *out);

} // namespace caption

#endif
