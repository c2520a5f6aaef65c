// SPDX-License-Identifier: MIT
// Text subtitles. libavcodec converts them to ASS, except WebVTT, of which it would keep neither position nor
// colours.
#include <algorithm>
#include <cstring>

#include "base/timestamp.h"
#include "cues/timeline.h"
#include "reading/ass.h"
#include "reading/charset.h"
#include "reading/cue_reader.h"
#include "reading/decoder.h"
#include "reading/webvtt.h"

namespace caption
{

namespace
{

// Overlapping cues are intended. A cue without an end lasts until the next one.
void Keep(Timeline &timeline, Cue cue, const PacketTime &time)
{
    if (cue.blocks.empty()) return;
    cue.start = time.start;
    if (time.end) {
        timeline.Clear(cue.start);
        cue.end = *time.end;
        timeline.Add(std::move(cue));
    } else {
        timeline.Show(std::move(cue), std::nullopt);
    }
}

std::string TextOf(const AVPacket &packet, const ReaderContext &context, const PacketTime &time)
{
    const std::string bytes(reinterpret_cast<const char *>(packet.data), std::size_t(packet.size));
    return PieceToUtf8(bytes, context.charset, "the cue at " + Timestamp(time.start), context.notices);
}

// The packet with other bytes; null if memory is short.
static AVPacket *WithText(const AVPacket &packet, const std::string &text)
{
    av::Packet own(av_packet_alloc());
    if (!own || av_new_packet(own.get(), int(text.size())) < 0) return nullptr;
    if (av_packet_copy_props(own.get(), &packet) < 0) return nullptr;
    std::memcpy(own->data, text.data(), text.size());
    return own.release();
}

class AssReader : public CueReader
{
public:
    explicit AssReader(const ReaderContext &context)
        : context_(context), decoder_(OpenDecoder(context.source, context.stream)),
          script_(Header(), Asked(), context.notices)
    {
    }

    void Take(AVPacket &packet, const PacketTime &time) override
    {
        av::Packet own(IsBinary() ? av_packet_clone(&packet)
                                  : WithText(packet, TextOf(packet, context_, time)));
        if (!own) return;
        AVSubtitle subtitle = {};
        int decoded = 0;
        if (avcodec_decode_subtitle2(decoder_.get(), &subtitle, &decoded, own.get()) < 0) {
            context_.notices.Say("the cue at " + Timestamp(time.start) + " cannot be decoded and is skipped");
            return;
        }
        if (!decoded) return;
        const std::unique_ptr<AVSubtitle, void (*)(AVSubtitle *)> owner(&subtitle, avsubtitle_free);
        Cue cue;
        for (unsigned i = 0; i < subtitle.num_rects; ++i) {
            if (subtitle.rects[i]->ass) script_.Read(subtitle.rects[i]->ass, cue);
        }
        Keep(timeline_, std::move(cue), time);
    }

    std::vector<Cue> Finish(std::int64_t endOfSource) override
    {
        return timeline_.Finish(endOfSource);
    }

private:
    std::string Header() const
    {
        return {reinterpret_cast<const char *>(decoder_->subtitle_header),
                std::size_t(std::max(0, decoder_->subtitle_header_size))};
    }

    AssHeader Asked() const
    {
        switch (decoder_->codec_id) {
        case AV_CODEC_ID_ASS:
        case AV_CODEC_ID_SSA:
            return AssHeader::STYLES_AND_MARGINS;
        case AV_CODEC_ID_MOV_TEXT:
            return AssHeader::STYLES;
        default:
            return AssHeader::NOTHING;
        }
    }

    // The text is surrounded by binary lengths and offsets.
    bool IsBinary() const
    {
        return decoder_->codec_id == AV_CODEC_ID_MOV_TEXT;
    }

    ReaderContext context_;
    av::Decoder decoder_;
    AssScript script_;
    Timeline timeline_;
};

class WebVttReader : public CueReader
{
public:
    explicit WebVttReader(const ReaderContext &context) : context_(context)
    {
    }

    void Take(AVPacket &packet, const PacketTime &time) override
    {
        std::size_t size = 0;
        const std::uint8_t *const settings =
            av_packet_get_side_data(&packet, AV_PKT_DATA_WEBVTT_SETTINGS, &size);
        Cue cue;
        ReadWebVttCue(TextOf(packet, context_, time), {reinterpret_cast<const char *>(settings), size}, cue,
                      context_.notices);
        Keep(timeline_, std::move(cue), time);
    }

    std::vector<Cue> Finish(std::int64_t endOfSource) override
    {
        return timeline_.Finish(endOfSource);
    }

private:
    ReaderContext context_;
    Timeline timeline_;
};

} // namespace

std::unique_ptr<CueReader> ReadText(const ReaderContext &context)
{
    return std::make_unique<AssReader>(context);
}

std::unique_ptr<CueReader> ReadWebVtt(const ReaderContext &context)
{
    return std::make_unique<WebVttReader>(context);
}

} // namespace caption
