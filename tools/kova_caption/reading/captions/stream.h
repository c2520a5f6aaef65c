// SPDX-License-Identifier: MIT
// The captions that one stream of a file carries.
#ifndef KOVA_CAPTION_READING_CAPTIONS_STREAM_H
#define KOVA_CAPTION_READING_CAPTIONS_STREAM_H

#include <cstdint>
#include <memory>

#include "reading/av.h"
#include "reading/captions/closed_captions.h"
#include "reading/captions/triplet_finder.h"
#include "reading/captions/triplets.h"
#include "reading/media_file.h"

namespace caption
{

class CaptionStream
{
public:
    // The stream is one that IsCaptionTrack or IsCaptionVideo.
    CaptionStream(const MediaFile &file, const AVStream &stream, ClosedCaptions::Keep keep);
    CaptionStream(const CaptionStream &) = delete;
    CaptionStream &operator=(const CaptionStream &) = delete;

    // A packet of the stream, in the order of the file.
    void Take(const AVPacket &packet);

    // After the last packet.
    DecodedCaptions Finish();

private:
    const MediaFile &file_;
    const AVStream &stream_;
    ClosedCaptions captions_;
    std::unique_ptr<TripletFinder> finder_;
    std::int64_t time_ = 0; // microseconds
    std::int64_t end_ = 0;
};

// Reads the file to its end.
DecodedCaptions DecodeStream(MediaFile &file, const AVStream &stream, ClosedCaptions::Keep keep);

DecodedCaptions DecodeTriplets(const Triplets &triplets, ClosedCaptions::Keep keep);

} // namespace caption

#endif
