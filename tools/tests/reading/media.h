// SPDX-License-Identifier: MIT
// Files with subtitles in them, made while testing: from the definitions of the formats, or by an encoder
// where libavcodec has one.
#ifndef KOVA_CAPTION_TESTS_MEDIA_H
#define KOVA_CAPTION_TESTS_MEDIA_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
}

#include "cues/cue.h"

namespace media
{

using Bytes = std::vector<std::uint8_t>;

struct Stream {
    AVCodecID codec = AV_CODEC_ID_NONE;
    Bytes extradata = {};
    caption::Size size = {}; // of bitmaps and video
    std::string language = {};
    std::string title = {};
};

struct Packet {
    int stream = 0;
    double start = 0; // milliseconds
    double duration = 0;
    Bytes bytes;
    std::string settings = {};          // of a cue of WebVTT
    std::optional<double> decoded = {}; // when, where it is not at its start
};

// Puts packets, in order of time, into a container that libavformat knows by this name.
void Write(const std::string &file, const std::string &format, const std::vector<Stream> &streams,
           const std::vector<Packet> &packets);

Bytes Text(const std::string &text);
Bytes operator+(Bytes a, const Bytes &b);

// Pictures as packets of DVB or VobSub subtitles; one without pixels clears.
std::vector<Bytes> EncodeBitmaps(AVCodecID codec, const std::vector<caption::Bitmap> &bitmaps,
                                 caption::Size canvas, int milliseconds);

// What a display set of PGS holds: a picture at (x, y) of a canvas, or nothing.
Bytes PgsDisplaySet(const caption::Bitmap &bitmap, caption::Size canvas);

// The same as a file of its own, .sup.
Bytes PgsFile(const std::vector<Packet> &sets);

// A row of a teletext page: its number, from 1 to 24, and its text with control codes, 40 at most.
struct TeletextRow {
    int row = 0;
    std::string text;
};

// A subtitle page from 100 to 899 as broadcast in one packet. No rows clear it.
Bytes TeletextPage(int page, const std::vector<TeletextRow> &rows);

// Two bytes of closed captions with their parity set.
std::vector<std::uint16_t> CaptionText(const std::string &text);
std::uint16_t CaptionCode(int first, int second);

// Frames of grey video, 30000/1001 of them a second, stored in another order than they are shown in; frame i
// carries triplets[i].
std::vector<Packet> VideoWithTriplets(AVCodecID codec, const std::vector<Bytes> &triplets, Stream &stream);

// The same with a pair of CEA-608 in each frame, for the first field or the second.
std::vector<Packet> CaptionedVideo(AVCodecID codec, const std::vector<std::uint16_t> &captions,
                                   bool secondField, Stream &stream);

// Announces caption services in the transport stream's programme map: the body of a caption service
// descriptor.
void AnnounceServices(const std::string &file, const Bytes &descriptor);

// A QuickTime file with nothing but a track of captions, of one sample entry, "c608" or "c708". Times and
// durations are milliseconds.
void WriteCaptionTrack(const std::string &file, const std::string &entry, const std::vector<Packet> &samples);

} // namespace media

#endif
