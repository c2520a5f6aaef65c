// SPDX-License-Identifier: MIT
#include "reading/subtitles.h"

#include <algorithm>

#include "base/failure.h"
#include "reading/cue_reader.h"

namespace caption
{

static std::string Tag(const AVStream &stream, const char *name)
{
    const AVDictionaryEntry *const entry = av_dict_get(stream.metadata, name, nullptr, 0);
    const std::string value = entry ? entry->value : "";
    return value == "und" ? "" : value; // undetermined
}

static bool IsVideo(const AVStream &stream)
{
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
           !(stream.disposition & AV_DISPOSITION_ATTACHED_PIC) &&
           avcodec_find_decoder(stream.codecpar->codec_id);
}

static StreamKind KindOf(const AVStream &stream)
{
    const AVCodecID codec = stream.codecpar->codec_id;
    const AVCodecDescriptor *const descriptor = avcodec_descriptor_get(codec);

    if (IsVideo(stream)) return StreamKind::EMBEDDED_CAPTIONS;
    if (codec == AV_CODEC_ID_DVB_TELETEXT || codec == AV_CODEC_ID_EIA_608) return StreamKind::TEXT;
    if (stream.codecpar->codec_type != AVMEDIA_TYPE_SUBTITLE || !descriptor || !avcodec_find_decoder(codec)) {
        return StreamKind::UNSUPPORTED;
    }
    return descriptor->props & AV_CODEC_PROP_TEXT_SUB ? StreamKind::TEXT : StreamKind::BITMAP;
}

static std::unique_ptr<CueReader> ReaderOf(const ReaderContext &context)
{
    switch (context.stream.codecpar->codec_id) {
    case AV_CODEC_ID_DVB_TELETEXT:
        return ReadTeletext(context);
    case AV_CODEC_ID_EIA_608:
        return ReadCaptions(context);
    case AV_CODEC_ID_WEBVTT:
        return ReadWebVtt(context);
    default:
        break;
    }
    switch (KindOf(context.stream)) {
    case StreamKind::EMBEDDED_CAPTIONS:
        return ReadCaptionsInVideo(context);
    case StreamKind::BITMAP:
        return ReadBitmaps(context);
    default:
        return ReadText(context);
    }
}

static const AVStream &Choose(const MediaFile &source, std::optional<int> wanted)
{
    const AVFormatContext &format = source.format();
    const AVStream *subtitles = nullptr;
    const AVStream *video = nullptr;
    const AVStream *unsupported = nullptr;

    for (int i = int(format.nb_streams) - 1; i >= 0; --i) {
        const AVStream *const stream = format.streams[i];
        const StreamKind kind = KindOf(*stream);
        const bool usable = kind != StreamKind::UNSUPPORTED;
        if (wanted == i && usable) return *stream;
        if (kind == StreamKind::EMBEDDED_CAPTIONS) video = stream;
        if (kind == StreamKind::TEXT || kind == StreamKind::BITMAP) subtitles = stream;
        if (!usable && stream->codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE) unsupported = stream;
    }
    if (wanted) {
        throw Failure("--stream " + std::to_string(*wanted) + ": " + source.file() +
                      " has no subtitles in a stream of that number; kova-caption info lists those it has");
    }
    if (subtitles) return *subtitles;
    if (video) return *video;
    if (unsupported) {
        throw Failure(source.file() + ": nothing here decodes its subtitles, " +
                      avcodec_get_name(unsupported->codecpar->codec_id) + "; convert them with another tool");
    }
    throw Failure(source.file() +
                  ": has no subtitle stream; give a file of subtitles, or a video that holds some");
}

Subtitles ReadSubtitles(const SourceOptions &options)
{
    Notices notices;
    MediaFile source(options.file, options.charset, notices);
    const AVStream &stream = Choose(source, options.stream);
    const std::string charset = source.text().empty() ? options.charset : ""; // text is UTF-8 by now
    const std::unique_ptr<CueReader> reader = ReaderOf({source, stream, charset, notices});
    const av::Packet packet(av_packet_alloc());
    PacketTime time;
    std::int64_t endOfSource = 0;

    source.ReadOnly(stream);
    while (source.Read(*packet)) {
        if (packet->stream_index != stream.index || packet->size == 0) continue;
        const std::int64_t timestamp = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
        if (timestamp != AV_NOPTS_VALUE) time.start = source.Milliseconds(stream, timestamp);
        time.end.reset();
        if (packet->duration > 0 && timestamp != AV_NOPTS_VALUE) {
            time.end = source.Milliseconds(stream, av_sat_add64(timestamp, packet->duration));
        }
        endOfSource = std::max(endOfSource, time.end.value_or(time.start));
        reader->Take(*packet, time);
    }

    Subtitles subtitles;
    subtitles.cues = reader->Finish(endOfSource);
    subtitles.notices = notices.said();
    if (subtitles.cues.empty()) {
        throw Failure(options.file +
                      (IsVideo(stream) ? ": has no subtitle stream, and no captions in its video"
                                       : ": has no cue with anything to show in it") +
                      "; give a file of subtitles, or a video that holds some");
    }
    return subtitles;
}

std::vector<StreamInfo> ListStreams(const SourceOptions &options)
{
    Notices notices;
    const MediaFile source(options.file, options.charset, notices);
    std::vector<StreamInfo> streams;

    for (unsigned i = 0; i < source.format().nb_streams; ++i) {
        const AVStream &stream = *source.format().streams[i];
        if (IsVideo(stream)) {
            MediaFile again(options.file, options.charset, notices);
            if (i >= again.format().nb_streams || !HasCaptions(again, *again.format().streams[i])) continue;
        } else if (stream.codecpar->codec_type != AVMEDIA_TYPE_SUBTITLE) {
            continue;
        }
        streams.push_back({int(i), KindOf(stream), avcodec_get_name(stream.codecpar->codec_id),
                           Tag(stream, "language"), Tag(stream, "title")});
    }
    return streams;
}

} // namespace caption
