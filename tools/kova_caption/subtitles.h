// Reads subtitle files of every kind that libavformat and libavcodec know as text.
#ifndef KOVA_CAPTION_SUBTITLES_H
#define KOVA_CAPTION_SUBTITLES_H

#include <cstdint>
#include <string>
#include <vector>

#include "styled_text.h"

namespace caption
{

struct Cue {
    std::int64_t start = 0; // milliseconds
    std::int64_t end = 0;
    std::vector<Line> lines;
};

// The cues of the file's first text subtitle stream, in the file's order, those without text left out. A
// Failure if there are none.
std::vector<Cue> ReadSubtitles(const std::string &file);

} // namespace caption

#endif
