// SPDX-License-Identifier: MIT
// MPEG-2 video with captions in the user data of its pictures, in a transport stream.
#include "generating/writers.h"

#include <algorithm>
#include <exception>

#include "base/failure.h"
#include "base/whole_file.h"
#include "generating/programme_map.h"
#include "generating/scene_painter.h"
#include "reading/av.h"
#include "terminal/progress.h"
#include "terminal/stop_signals.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace caption
{

using encoding::ByteString;

static const AVRational g_frameDuration = {1001, 30000};
static const int g_picturesInGroup = 15;
static const int g_quality = 4;           // of quantizers from 1 to 31
static const int g_videoBuffer = 9781248; // bits; with the rate the most of Main profile at High level
static const int g_videoRate = 80000000;  // bits a second
static const int g_ioBuffer = 64 * int(g_transportPacket);

static void Check(int result, const char *what)
{
    char reason[AV_ERROR_MAX_STRING_SIZE];

    if (result >= 0) return;
    av_strerror(result, reason, sizeof reason);
    throw Failure(std::string("the transport stream cannot be made: ") + what + " failed (" + reason + ")");
}

namespace
{

struct FreeOutput {
    void operator()(AVFormatContext *output) const
    {
        avformat_free_context(output);
    }
};

// Takes the transport stream from libavformat and announces the captions in it.
class Packets
{
public:
    Packets(const Recording &recording, const std::string &file)
        : descriptor_(ServiceDescriptor(recording)), out_(file)
    {
    }

    // For avio_alloc_context. No exception may pass through libavformat.
    static int Write(void *packets, std::uint8_t *bytes, int size)
    {
        auto &self = *static_cast<Packets *>(packets);
        try {
            self.Take(bytes, std::size_t(size));
            return size;
        } catch (...) {
            self.error_ = std::current_exception();
            return AVERROR_EXTERNAL;
        }
    }

    void Finish()
    {
        ThrowError();
        out_.Finish();
    }
    void ThrowError() const
    {
        if (error_) std::rethrow_exception(error_);
    }

private:
    void Take(const std::uint8_t *bytes, std::size_t size)
    {
        waiting_.insert(waiting_.end(), bytes, bytes + size);
        std::size_t at = 0;
        for (; at + g_transportPacket <= waiting_.size(); at += g_transportPacket) {
            AnnounceServices(&waiting_[at], descriptor_);
        }
        out_.Write(waiting_.data(), at);
        waiting_.erase(waiting_.begin(), waiting_.begin() + std::ptrdiff_t(at));
    }

    ByteString descriptor_;
    WholeFile out_;
    ByteString waiting_; // less than a packet between two calls
    std::exception_ptr error_;
};

class TsWriter
{
public:
    TsWriter(const Recording &recording, const std::string &file) : packets_(recording, file)
    {
        AVFormatContext *output = nullptr;
        Check(avformat_alloc_output_context2(&output, nullptr, "mpegts", nullptr), "the container");
        output_.reset(output);
        io_.reset(avio_alloc_context(static_cast<std::uint8_t *>(av_malloc(std::size_t(g_ioBuffer))),
                                     g_ioBuffer, 1, &packets_, nullptr, Packets::Write, nullptr));
        output_->pb = io_.get();
        output_->flags |= AVFMT_FLAG_BITEXACT;
        av_dict_set(&output_->metadata, "service_name", recording.title.c_str(), 0);
        av_dict_set(&output_->metadata, "service_provider", "kova-caption", 0);
        OpenEncoder();
        Check(avformat_write_header(output_.get(), nullptr), "the header");
    }

    void Put(const AVFrame &picture, std::int64_t number, const ByteString &triplets)
    {
        const av::Frame frame(av_frame_clone(&picture));
        AVFrameSideData *const data =
            av_frame_new_side_data(frame.get(), AV_FRAME_DATA_A53_CC, triplets.size());

        std::copy(triplets.begin(), triplets.end(), data->data);
        frame->pts = number;
        Check(avcodec_send_frame(encoder_.get(), frame.get()), "encoding");
        Drain();
    }

    void Finish()
    {
        Check(avcodec_send_frame(encoder_.get(), nullptr), "encoding");
        Drain();
        Check(av_write_trailer(output_.get()), "the end");
        packets_.Finish();
    }

private:
    void OpenEncoder()
    {
        const AVCodec *const codec = avcodec_find_encoder(AV_CODEC_ID_MPEG2VIDEO);
        stream_ = avformat_new_stream(output_.get(), nullptr);
        encoder_.reset(avcodec_alloc_context3(codec));
        encoder_->width = g_videoSize.width;
        encoder_->height = g_videoSize.height;
        encoder_->pix_fmt = AV_PIX_FMT_YUV420P;
        encoder_->time_base = g_frameDuration;
        encoder_->framerate = av_inv_q(g_frameDuration);
        encoder_->sample_aspect_ratio = {1, 1};
        encoder_->color_primaries = AVCOL_PRI_BT709;
        encoder_->color_trc = AVCOL_TRC_BT709;
        encoder_->colorspace = AVCOL_SPC_BT709;
        encoder_->color_range = AVCOL_RANGE_MPEG;
        encoder_->gop_size = g_picturesInGroup;
        encoder_->rc_buffer_size = g_videoBuffer;
        encoder_->rc_max_rate = g_videoRate;
        encoder_->flags |= AV_CODEC_FLAG_QSCALE | AV_CODEC_FLAG_BITEXACT;
        encoder_->global_quality = g_quality * FF_QP2LAMBDA;
        encoder_->thread_count = 1;                               // the same bytes on every machine
        av_opt_set(encoder_->priv_data, "motion_est", "zero", 0); // pictures do not move
        Check(avcodec_open2(encoder_.get(), codec, nullptr), "the encoder");
        Check(avcodec_parameters_from_context(stream_->codecpar, encoder_.get()), "the stream");
        stream_->time_base = g_frameDuration;
        stream_->avg_frame_rate = encoder_->framerate;
    }

    void Drain()
    {
        while (avcodec_receive_packet(encoder_.get(), packet_.get()) >= 0) {
            packet_->duration = 1;
            av_packet_rescale_ts(packet_.get(), g_frameDuration, stream_->time_base);
            packet_->stream_index = stream_->index;
            const int result = av_interleaved_write_frame(output_.get(), packet_.get());
            packets_.ThrowError();
            Check(result, "writing");
        }
    }

    Packets packets_;
    av::Io io_;
    std::unique_ptr<AVFormatContext, FreeOutput> output_;
    av::Decoder encoder_;
    av::Packet packet_{av_packet_alloc()};
    AVStream *stream_ = nullptr;
};

} // namespace

// BT.709, 16 to 235, colour differences of each four pixels.
static av::Frame ToFrame(const Picture &picture)
{
    const Size size = picture.size();
    av::Frame frame(av_frame_alloc());
    AVFrame &made = *frame;

    made.format = AV_PIX_FMT_YUV420P;
    made.width = size.width;
    made.height = size.height;
    Check(av_frame_get_buffer(&made, 0), "a picture");
    for (int y = 0; y < size.height; y += 2) {
        for (int x = 0; x < size.width; x += 2) {
            int red = 0, green = 0, blue = 0;
            for (int i = 0; i < 4; ++i) {
                const Color &pixel = picture.At(x + i % 2, y + i / 2);
                const int luma = (47 * pixel.red + 157 * pixel.green + 16 * pixel.blue + 128) >> 8;
                made.data[0][(y + i / 2) * made.linesize[0] + x + i % 2] = std::uint8_t(16 + luma);
                red += pixel.red;
                green += pixel.green;
                blue += pixel.blue;
            }
            const int at = y / 2 * made.linesize[1] + x / 2;
            made.data[1][at] = std::uint8_t(128 + ((-26 * red - 86 * green + 112 * blue) >> 10));
            made.data[2][at] = std::uint8_t(128 + ((112 * red - 102 * green - 10 * blue) >> 10));
        }
    }
    return frame;
}

void WriteTs(const Recording &recording, const std::string &file)
{
    ScenePainter painter;
    const StopSignals signals;
    const Progress progress(recording.frames.size());
    TsWriter writer(recording, file);
    av::Frame picture = ToFrame(painter.Paint(recording.title, {}));
    auto scene = recording.scenes.begin();

    for (std::size_t i = 0; i < recording.frames.size(); ++i) {
        signals.Read();
        progress.Show(i);
        for (; scene != recording.scenes.end() && scene->first <= i; ++scene) {
            picture = ToFrame(painter.Paint(recording.title, scene->second));
        }
        writer.Put(*picture, std::int64_t(i), AllTriplets(recording.frames[i]));
    }
    writer.Finish();
}

} // namespace caption
