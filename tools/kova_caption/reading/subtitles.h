// SPDX-License-Identifier: MIT
// Reads subtitles of every kind that libavformat and libavcodec know.
#ifndef KOVA_CAPTION_READING_SUBTITLES_H
#define KOVA_CAPTION_READING_SUBTITLES_H

#include <optional>
#include <string>
#include <vector>

#include "cues/cue.h"

namespace caption
{

struct SourceOptions {
    std::string file;
    std::optional<int> stream = {}; // none: the first of subtitles, else the first video with captions in it
    std::string charset = {};       // of a text file, a name that iconv knows; empty: found out
};

enum class StreamKind { TEXT, BITMAP, EMBEDDED_CAPTIONS, UNSUPPORTED };

struct StreamInfo {
    int index = 0; // what SourceOptions::stream takes
    StreamKind kind = StreamKind::UNSUPPORTED;
    std::string codec;    // as libavcodec names it
    std::string language; // as the file says, mostly three letters; may be empty
    std::string title;    // may be empty
};

// Everything a source shows. A Failure if that is nothing, or if it cannot be read.
Subtitles ReadSubtitles(const SourceOptions &options);

// The streams that could be read, and those with subtitles that cannot.
std::vector<StreamInfo> ListStreams(const SourceOptions &options);

} // namespace caption

#endif
