// SPDX-License-Identifier: MIT
// Bitmap subtitles: DVB, PGS, VobSub, XSUB. Each replaces the previous one.
#include <algorithm>

#include "base/timestamp.h"
#include "cues/timeline.h"
#include "reading/cue_reader.h"
#include "reading/decoder.h"

namespace caption
{

static Bitmap BitmapOf(const AVSubtitleRect &rect)
{
    Bitmap bitmap;

    bitmap.x = rect.x;
    bitmap.y = rect.y;
    bitmap.size = {rect.w, rect.h};
    for (int y = 0; y < rect.h; ++y) {
        const std::uint8_t *const row = rect.data[0] + std::ptrdiff_t(y) * rect.linesize[0];
        bitmap.indexes.insert(bitmap.indexes.end(), row, row + rect.w);
    }
    for (int i = 0; i < rect.nb_colors && i < 256; ++i) {
        const std::uint32_t packed = reinterpret_cast<const std::uint32_t *>(rect.data[1])[i];
        bitmap.palette.push_back({std::uint8_t(packed >> 16), std::uint8_t(packed >> 8), std::uint8_t(packed),
                                  std::uint8_t(packed >> 24)});
    }
    const std::size_t highest = *std::max_element(bitmap.indexes.begin(), bitmap.indexes.end());
    if (bitmap.palette.size() <= highest) bitmap.palette.resize(highest + 1, {0, 0, 0, 0});
    return bitmap;
}

// The canvas of a stream that does not name one.
static Size UsualCanvas(AVCodecID codec)
{
    return codec == AV_CODEC_ID_HDMV_PGS_SUBTITLE ? Size{1920, 1080} : Size{720, 576};
}

namespace
{

class BitmapReader : public CueReader
{
public:
    explicit BitmapReader(const ReaderContext &context)
        : context_(context), decoder_(OpenDecoder(context.source, context.stream))
    {
    }

    void Take(AVPacket &packet, const PacketTime &time) override
    {
        AVSubtitle subtitle = {};
        int decoded = 0;

        if (avcodec_decode_subtitle2(decoder_.get(), &subtitle, &decoded, &packet) < 0) {
            context_.notices.Say("the bitmap at " + Timestamp(time.start) +
                                 " cannot be decoded and is skipped");
            return;
        }
        if (!decoded) return;
        const std::unique_ptr<AVSubtitle, void (*)(AVSubtitle *)> owner(&subtitle, avsubtitle_free);
        Cue cue;
        cue.start = time.start + subtitle.start_display_time;
        for (unsigned i = 0; i < subtitle.num_rects; ++i) {
            const AVSubtitleRect &rect = *subtitle.rects[i];
            if (rect.type == SUBTITLE_BITMAP && rect.w > 0 && rect.h > 0 && rect.data[0] && rect.data[1]) {
                cue.bitmaps.push_back(BitmapOf(rect));
            }
        }
        if (cue.bitmaps.empty()) {
            timeline_.Clear(cue.start);
            return;
        }
        cue.canvas = {decoder_->width, decoder_->height};
        if (cue.canvas.width <= 0 || cue.canvas.height <= 0) cue.canvas = UsualCanvas(decoder_->codec_id);
        const bool ends = subtitle.end_display_time > subtitle.start_display_time &&
                          subtitle.end_display_time != UINT32_MAX;
        timeline_.Show(std::move(cue),
                       ends ? std::make_optional(time.start + subtitle.end_display_time) : time.end);
    }

    std::vector<Cue> Finish(std::int64_t endOfSource) override
    {
        return timeline_.Finish(endOfSource);
    }

private:
    ReaderContext context_;
    av::Decoder decoder_;
    Timeline timeline_;
};

} // namespace

std::unique_ptr<CueReader> ReadBitmaps(const ReaderContext &context)
{
    return std::make_unique<BitmapReader>(context);
}

} // namespace caption
