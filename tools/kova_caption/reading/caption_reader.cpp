// SPDX-License-Identifier: MIT
// Closed captions in a stream of their own, and carried by the frames of a video.
#include "reading/closed_captions.h"
#include "reading/cue_reader.h"
#include "reading/decoder.h"

namespace caption
{

namespace
{

class CaptionReader : public CueReader
{
public:
    explicit CaptionReader(const ReaderContext &context) : captions_(context.notices)
    {
    }

    void Take(AVPacket &packet, const PacketTime &time) override
    {
        captions_.Take(packet.data, std::size_t(packet.size), time.start);
    }

    std::vector<Cue> Finish(std::int64_t endOfSource) override
    {
        return captions_.Finish(endOfSource);
    }

private:
    ClosedCaptions captions_;
};

// Frames come out of it in the order they are shown in, which is the captions' too.
class VideoDecoder
{
public:
    VideoDecoder(const MediaFile &source, const AVStream &stream)
        : decoder_(OpenDecoder(source, stream)), frame_(av_frame_alloc())
    {
    }

    // The packet, or null after the last one. What frames carry is given to take, with their timestamps.
    template <class Take> void Decode(const AVPacket *packet, Take take)
    {
        avcodec_send_packet(decoder_.get(), packet);
        while (avcodec_receive_frame(decoder_.get(), frame_.get()) >= 0) {
            const AVFrameSideData *const data = av_frame_get_side_data(frame_.get(), AV_FRAME_DATA_A53_CC);
            if (data) take(*data, frame_->best_effort_timestamp);
        }
    }

private:
    av::Decoder decoder_;
    av::Frame frame_;
};

class VideoCaptionReader : public CueReader
{
public:
    explicit VideoCaptionReader(const ReaderContext &context)
        : context_(context), decoder_(context.source, context.stream), captions_(context.notices)
    {
    }

    void Take(AVPacket &packet, const PacketTime &) override
    {
        Decode(&packet);
    }

    std::vector<Cue> Finish(std::int64_t endOfSource) override
    {
        Decode(nullptr);
        return captions_.Finish(endOfSource);
    }

private:
    void Decode(const AVPacket *packet)
    {
        decoder_.Decode(packet, [this](const AVFrameSideData &data, std::int64_t timestamp) {
            if (timestamp != AV_NOPTS_VALUE) time_ = context_.source.Milliseconds(context_.stream, timestamp);
            captions_.Take(data.data, data.size, time_);
        });
    }

    ReaderContext context_;
    VideoDecoder decoder_;
    ClosedCaptions captions_;
    std::int64_t time_ = 0;
};

} // namespace

std::unique_ptr<CueReader> ReadCaptions(const ReaderContext &context)
{
    return std::make_unique<CaptionReader>(context);
}

std::unique_ptr<CueReader> ReadCaptionsInVideo(const ReaderContext &context)
{
    return std::make_unique<VideoCaptionReader>(context);
}

bool HasCaptions(MediaFile &source, const AVStream &video)
{
    const av::Packet packet(av_packet_alloc());
    VideoDecoder decoder(source, video);
    bool found = false;
    const auto note = [&](const AVFrameSideData &, std::int64_t) { found = true; };

    source.ReadOnly(video);
    for (int packets = 0; packets < 250 && !found && source.Read(*packet); ++packets) {
        if (packet->stream_index == video.index) decoder.Decode(packet.get(), note);
    }
    decoder.Decode(nullptr, note);
    return found;
}

} // namespace caption
