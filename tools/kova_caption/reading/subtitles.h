// SPDX-License-Identifier: MIT
// Reads subtitles of every format that libavformat and libavcodec support.
#ifndef KOVA_CAPTION_READING_SUBTITLES_H
#define KOVA_CAPTION_READING_SUBTITLES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/viewer.h"
#include "cues/cue.h"
#include "cues/listed_cue.h"
#include "reading/captions/closed_captions.h"

namespace caption
{

struct SourceOptions {
    std::string file;
    std::optional<int> stream = {}; // none: the first subtitle stream, else the first video with captions
    std::string charset = {};       // of a text file, as iconv names it; empty: auto-detect
    std::uint8_t service = 0;       // of closed captions, a number of KovaCaptionsSource; 0: by the settings
    ViewerSettings viewer =
        DefaultSettings(); // source, language and easy_reader choose where nothing else does
};

enum class StreamKind { TEXT, BITMAP, EMBEDDED_CAPTIONS, UNSUPPORTED };

// A channel or service of closed captions that shows something.
struct CaptionService {
    std::string name;     // what --service takes
    std::string language; // as it is announced, three letters; may be empty
    bool easyReader = false;
    std::size_t cues = 0;
};

struct StreamInfo {
    int index = 0; // for SourceOptions::stream
    StreamKind kind = StreamKind::UNSUPPORTED;
    std::string codec;    // as libavcodec names it
    std::string language; // from the file, usually three letters; may be empty
    std::string title;    // may be empty
    std::vector<CaptionService> services = {};
};

struct Listing {
    std::string service; // of closed captions; empty for other kinds
    std::vector<ListedCue> cues;
    std::vector<std::string> notices;
};

struct CommandListing {
    std::string service;
    std::vector<CaptionCommand> commands;
    std::vector<std::string> notices;
};

// Reads all cues of a source. Throws Failure if there are none, or if it cannot be read.
Subtitles ReadSubtitles(const SourceOptions &options);

// The same exactly as the source has it: every state of closed captions is a cue.
Listing ListCues(const SourceOptions &options);

// What a channel or service of closed captions is made of. A Failure if there are none.
CommandListing ListCommands(const SourceOptions &options);

// The subtitle streams of a source, including those that are not supported.
std::vector<StreamInfo> ListStreams(const SourceOptions &options);

} // namespace caption

#endif
