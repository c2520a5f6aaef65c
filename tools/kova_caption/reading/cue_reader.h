// SPDX-License-Identifier: MIT
// Makes cues of the packets of one stream. There is one kind for each way in which subtitles are kept.
#ifndef KOVA_CAPTION_READING_CUE_READER_H
#define KOVA_CAPTION_READING_CUE_READER_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/notices.h"
#include "cues/cue.h"
#include "reading/av.h"
#include "reading/media_file.h"

namespace caption
{

// The times of a packet, in milliseconds.
struct PacketTime {
    std::int64_t start = 0;
    std::optional<std::int64_t> end; // none: the packet does not say
};

class CueReader
{
public:
    virtual ~CueReader() = default;

    virtual void Take(AVPacket &packet, const PacketTime &time) = 0;

    // All cues by their start, after the last packet.
    virtual std::vector<Cue> Finish(std::int64_t endOfSource) = 0;
};

// What every reader is made with.
struct ReaderContext {
    const MediaFile &source;
    const AVStream &stream;
    const std::string &charset; // what the user said
    Notices &notices;
};

std::unique_ptr<CueReader> ReadText(const ReaderContext &context);
std::unique_ptr<CueReader> ReadWebVtt(const ReaderContext &context);
std::unique_ptr<CueReader> ReadBitmaps(const ReaderContext &context);
std::unique_ptr<CueReader> ReadTeletext(const ReaderContext &context);

} // namespace caption

#endif
