// SPDX-License-Identifier: MIT
// Finds the caption triplets in the packets of a stream: of a video that carries them, or of a caption track.
#ifndef KOVA_CAPTION_READING_CAPTIONS_TRIPLET_FINDER_H
#define KOVA_CAPTION_READING_CAPTIONS_TRIPLET_FINDER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "reading/av.h"
#include "reading/media_file.h"

namespace caption
{

// Takes triplets, three bytes each, with their time in microseconds, in presentation order.
using TripletSink = std::function<void(std::int64_t time, const std::uint8_t *triplets, std::size_t count)>;

class TripletFinder
{
public:
    virtual ~TripletFinder() = default;

    // A packet with its presentation time in microseconds, in the order of the stream.
    virtual void Take(const AVPacket &packet, std::int64_t time) = 0;

    // After the last packet.
    virtual void Finish() = 0;
};

// A track of nothing but captions.
bool IsCaptionTrack(const AVStream &stream);

// A video that can carry captions.
bool IsCaptionVideo(const AVStream &stream);

// The stream is one of these two kinds.
std::unique_ptr<TripletFinder> FindTriplets(const MediaFile &file, const AVStream &stream, TripletSink sink);

} // namespace caption

#endif
