#include "subtitles.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include "ass_text.h"
#include "failure.h"
#include "timestamp.h"

namespace caption
{

namespace
{

struct CloseInput {
    void operator()(AVFormatContext *context) const
    {
        avformat_close_input(&context);
    }
};

struct FreeDecoder {
    void operator()(AVCodecContext *context) const
    {
        avcodec_free_context(&context);
    }
};

struct FreePacket {
    void operator()(AVPacket *packet) const
    {
        av_packet_free(&packet);
    }
};

using Input = std::unique_ptr<AVFormatContext, CloseInput>;
using Decoder = std::unique_ptr<AVCodecContext, FreeDecoder>;
using Packet = std::unique_ptr<AVPacket, FreePacket>;

} // namespace

static const char g_advice[] = "; give an SRT, WebVTT or ASS file";

static Input Open(const std::string &file)
{
    // Asked first, because libavformat would also take an address, and its words are of no help here.
    if (std::filesystem::is_directory(file)) throw Failure(file + ": is a folder" + g_advice);
    std::FILE *const readable = std::fopen(file.c_str(), "rb");
    if (!readable) throw Failure(file + ": cannot be read (" + std::strerror(errno) + ")" + g_advice);
    std::fclose(readable);

    AVFormatContext *context = nullptr;
    if (avformat_open_input(&context, ("file:" + file).c_str(), nullptr, nullptr) < 0) {
        throw Failure(file + ": is no subtitle file that could be understood" + g_advice);
    }
    return Input(context);
}

static Decoder OpenDecoder(const AVStream &stream, const std::string &file)
{
    const AVCodec *const codec = avcodec_find_decoder(stream.codecpar->codec_id);
    Decoder decoder(codec ? avcodec_alloc_context3(codec) : nullptr);

    if (!decoder || avcodec_parameters_to_context(decoder.get(), stream.codecpar) < 0) {
        throw Failure(file + ": no decoder for its subtitles here" + g_advice);
    }
    decoder->pkt_timebase = stream.time_base;
    if (avcodec_open2(decoder.get(), codec, nullptr) < 0) {
        throw Failure(file + ": its subtitles cannot be decoded" + g_advice);
    }
    return decoder;
}

// The ninth field, which may itself hold commas.
static std::string TextOfEvent(const char *event)
{
    for (int field = 0; field < 8 && event; ++field) {
        event = std::strchr(event, ',');
        if (event) ++event;
    }
    return event ? event : "";
}

static bool IsBlank(const Line &line)
{
    return PlainText(line).find_first_not_of(" \t") == std::string::npos;
}

static void AddLines(Block &block, const AVSubtitle &subtitle, const std::string &file)
{
    for (unsigned i = 0; i < subtitle.num_rects; ++i) {
        if (subtitle.rects[i]->type == SUBTITLE_BITMAP) {
            throw Failure(file + ": its subtitles are pictures, not text" + g_advice);
        }
        if (!subtitle.rects[i]->ass) continue;
        for (Line &line : FromAss(TextOfEvent(subtitle.rects[i]->ass))) {
            if (!IsBlank(line)) block.lines.push_back(std::move(line));
        }
    }
}

Subtitles ReadSubtitles(const SourceOptions &options)
{
    const std::string &file = options.file;
    av_log_set_level(AV_LOG_QUIET);

    const Input input = Open(file);
    const int index = av_find_best_stream(input.get(), AVMEDIA_TYPE_SUBTITLE, -1, -1, nullptr, 0);
    if (index < 0) throw Failure(file + ": has no subtitle stream" + g_advice);
    const AVStream &stream = *input->streams[index];
    const Decoder decoder = OpenDecoder(stream, file);
    const Packet packet(av_packet_alloc());
    Subtitles subtitles;

    for (; av_read_frame(input.get(), packet.get()) >= 0; av_packet_unref(packet.get())) {
        if (packet->stream_index != index) continue;
        const AVRational milliseconds = {1, 1000};
        Cue cue;
        cue.start =
            av_rescale_q(packet->pts == AV_NOPTS_VALUE ? 0 : packet->pts, stream.time_base, milliseconds);
        cue.end = cue.start +
                  av_rescale_q(std::max<std::int64_t>(packet->duration, 0), stream.time_base, milliseconds);

        AVSubtitle subtitle = {};
        int decoded = 0;
        if (avcodec_decode_subtitle2(decoder.get(), &subtitle, &decoded, packet.get()) < 0) {
            throw Failure(file + ": the cue at " + Timestamp(cue.start) +
                          " cannot be decoded; the text must be UTF-8 (iconv converts it)");
        }
        if (!decoded) continue;
        const std::unique_ptr<AVSubtitle, void (*)(AVSubtitle *)> owner(&subtitle, avsubtitle_free);
        Block block;
        AddLines(block, subtitle, file);
        if (block.lines.empty()) continue;
        cue.blocks.push_back(std::move(block));
        subtitles.cues.push_back(std::move(cue));
    }
    if (subtitles.cues.empty()) throw Failure(file + ": has no cue with text in it" + g_advice);
    return subtitles;
}

static std::string Tag(const AVStream &stream, const char *name)
{
    const AVDictionaryEntry *const entry = av_dict_get(stream.metadata, name, nullptr, 0);
    return entry ? entry->value : "";
}

static StreamKind KindOf(AVCodecID codec)
{
    const AVCodecDescriptor *const descriptor = avcodec_descriptor_get(codec);

    if (!descriptor || !avcodec_find_decoder(codec)) return StreamKind::UNSUPPORTED;
    return descriptor->props & AV_CODEC_PROP_TEXT_SUB ? StreamKind::TEXT : StreamKind::BITMAP;
}

std::vector<StreamInfo> ListStreams(const SourceOptions &options)
{
    av_log_set_level(AV_LOG_QUIET);

    const Input input = Open(options.file);
    std::vector<StreamInfo> streams;
    for (unsigned i = 0; i < input->nb_streams; ++i) {
        const AVStream &stream = *input->streams[i];
        if (stream.codecpar->codec_type != AVMEDIA_TYPE_SUBTITLE) continue;
        const AVCodecID codec = stream.codecpar->codec_id;
        streams.push_back(
            {int(i), KindOf(codec), avcodec_get_name(codec), Tag(stream, "language"), Tag(stream, "title")});
    }
    return streams;
}

} // namespace caption
