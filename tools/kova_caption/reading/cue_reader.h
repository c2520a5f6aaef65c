// SPDX-License-Identifier: MIT
// Converts the packets of one stream to cues. There is one reader for each way of storing subtitles.
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
    std::optional<std::int64_t> end; // none: unknown
};

class CueReader
{
public:
    virtual ~CueReader() = default;

    virtual void Take(AVPacket &packet, const PacketTime &time) = 0;

    // All cues, sorted by start. Call it after the last packet.
    virtual std::vector<Cue> Finish(std::int64_t endOfSource) = 0;
};

// Arguments that every reader takes.
struct ReaderContext {
    const MediaFile &source;
    const AVStream &stream;
    const std::string &charset; // from the command line
    Notices &notices;
};

std::unique_ptr<CueReader> ReadText(const ReaderContext &context);
std::unique_ptr<CueReader> ReadWebVtt(const ReaderContext &context);
std::unique_ptr<CueReader> ReadBitmaps(const ReaderContext &context);
std::unique_ptr<CueReader> ReadTeletext(const ReaderContext &context);

} // namespace caption

#endif
