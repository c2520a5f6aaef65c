// SPDX-License-Identifier: MIT
#include "reading/captions/stream.h"

#include <algorithm>

namespace caption
{

CaptionStream::CaptionStream(const MediaFile &file, const AVStream &stream, ClosedCaptions::Keep keep)
    : file_(file), stream_(stream), captions_(keep),
      finder_(FindTriplets(file, stream,
                           [this](std::int64_t time, const std::uint8_t *triplets, std::size_t count) {
                               captions_.Take(time, triplets, count);
                               end_ = std::max(end_, time);
                           }))
{
}

void CaptionStream::Take(const AVPacket &packet)
{
    const std::int64_t timestamp = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;

    if (timestamp != AV_NOPTS_VALUE) {
        time_ = file_.Microseconds(stream_, timestamp);
        end_ = std::max(end_, file_.Microseconds(stream_, av_sat_add64(timestamp, packet.duration)));
    }
    finder_->Take(packet, time_);
}

DecodedCaptions CaptionStream::Finish()
{
    finder_->Finish();
    return captions_.Finish(end_);
}

DecodedCaptions DecodeStream(MediaFile &file, const AVStream &stream, ClosedCaptions::Keep keep)
{
    const av::Packet packet(av_packet_alloc());
    CaptionStream captions(file, stream, keep);

    file.ReadOnly(stream);
    while (file.Read(*packet)) {
        if (packet->stream_index == stream.index && packet->size > 0) captions.Take(*packet);
    }
    return captions.Finish();
}

DecodedCaptions DecodeTriplets(const Triplets &triplets, ClosedCaptions::Keep keep)
{
    ClosedCaptions captions(keep);

    for (const Triplet &triplet : triplets.triplets) captions.Take(triplet.time, triplet.bytes.data(), 1);
    return captions.Finish(triplets.end);
}

} // namespace caption
