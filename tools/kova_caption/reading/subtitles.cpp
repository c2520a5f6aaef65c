// SPDX-License-Identifier: MIT
#include "reading/subtitles.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>

#include "base/failure.h"
#include "reading/captions/cues.h"
#include "reading/captions/stream.h"
#include "reading/captions/text_file.h"
#include "reading/cue_reader.h"
#include "reading/service_directory.h"

namespace caption
{

static const char g_advice[] = "; give a subtitle file, or a recording with subtitles";

static std::string Tag(const AVStream &stream, const char *name)
{
    const AVDictionaryEntry *const entry = av_dict_get(stream.metadata, name, nullptr, 0);
    const std::string value = entry ? entry->value : "";
    return value == "und" ? "" : value; // undetermined
}

static StreamKind KindOf(const AVStream &stream)
{
    const AVCodecID codec = stream.codecpar->codec_id;
    const AVCodecDescriptor *const descriptor = avcodec_descriptor_get(codec);

    if (IsCaptionVideo(stream)) return StreamKind::EMBEDDED_CAPTIONS;
    if (codec == AV_CODEC_ID_DVB_TELETEXT || IsCaptionTrack(stream)) return StreamKind::TEXT;
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
    case AV_CODEC_ID_WEBVTT:
        return ReadWebVtt(context);
    default:
        break;
    }
    return KindOf(context.stream) == StreamKind::BITMAP ? ReadBitmaps(context) : ReadText(context);
}

static bool IsCaptions(const AVStream &stream)
{
    return IsCaptionVideo(stream) || IsCaptionTrack(stream);
}

static std::string ServiceName(std::uint8_t source)
{
    return Kova_Captions_SourceName(source);
}

static const AVStream &ChooseNumber(const MediaFile &source, int wanted)
{
    const AVFormatContext &format = source.format();

    if (wanted >= 0 && unsigned(wanted) < format.nb_streams &&
        KindOf(*format.streams[wanted]) != StreamKind::UNSUPPORTED) {
        return *format.streams[wanted];
    }
    throw Failure("--stream " + std::to_string(wanted) + ": " + source.file() +
                  ": no subtitle stream of that number; kova-caption info lists those there are");
}

// Of several the first, or the first in the viewer's language; none where the file has no streams because it
// is text with captions.
static const AVStream *Choose(const MediaFile &source, const SourceOptions &options)
{
    const AVFormatContext &format = source.format();
    const AVStream *subtitles = nullptr;
    const AVStream *inLanguage = nullptr;
    const AVStream *video = nullptr;
    const AVStream *unsupported = nullptr;
    const bool captionText = !source.text().empty() && format.nb_streams == 0;

    if (captionText && options.stream.value_or(0) == 0) return nullptr;
    if (options.stream) return &ChooseNumber(source, *options.stream);
    for (int i = int(format.nb_streams) - 1; i >= 0; --i) {
        const AVStream *const stream = format.streams[i];
        const StreamKind kind = KindOf(*stream);
        const bool wanted = options.service == 0 || IsCaptions(*stream);
        if (kind == StreamKind::EMBEDDED_CAPTIONS) video = stream;
        if (kind == StreamKind::UNSUPPORTED) {
            if (stream->codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE) unsupported = stream;
        } else if (kind != StreamKind::EMBEDDED_CAPTIONS && wanted) {
            subtitles = stream;
            if (options.viewer.language[0] && Tag(*stream, "language") == options.viewer.language) {
                inLanguage = stream;
            }
        }
    }
    if (inLanguage) return inLanguage;
    if (subtitles) return subtitles;
    if (video) return video;
    if (unsupported) {
        throw Failure(source.file() + ": no decoder for its subtitles (" +
                      avcodec_get_name(unsupported->codecpar->codec_id) +
                      "); convert them with another tool");
    }
    throw Failure(source.file() +
                  (options.service ? ": no stream that can carry closed captions" : ": no subtitle stream") +
                  g_advice);
}

namespace
{

// A file with the stream that the options choose.
struct Opened {
    explicit Opened(const SourceOptions &choices)
        : options(choices), source(choices.file, choices.charset, notices), stream(Choose(source, choices))
    {
        if (options.service && stream && !IsCaptions(*stream)) {
            throw Failure("--service " + ServiceName(options.service) + ": " + options.file +
                          ": no closed captions in stream " + std::to_string(stream->index) +
                          "; choose another stream or omit --service");
        }
    }

    // Read only where the settings need it: it is another pass over the beginning of the file.
    std::vector<KovaCaptionsServiceInfo> Announced() const
    {
        if (!stream || (!options.viewer.language[0] && !options.viewer.easy_reader)) return {};
        const ServiceDirectory directory = ReadServiceDirectory(options.file);
        const auto announced = directory.find(stream->id);
        return announced == directory.end() ? std::vector<KovaCaptionsServiceInfo>() : announced->second;
    }

    bool captions() const
    {
        return !stream || IsCaptions(*stream);
    }

    const SourceOptions &options;
    Notices notices;
    MediaFile source;
    const AVStream *const stream; // null where the file is text with captions
};

} // namespace

static DecodedCaptions Decode(Opened &opened, ClosedCaptions::Keep keep)
{
    MediaFile &source = opened.source;

    if (opened.stream) return DecodeStream(source, *opened.stream, keep);
    return DecodeTriplets(ReadCaptionText(source.text(), source.file(), opened.notices), keep);
}

static std::uint8_t SourceOf(const KovaCaptionsServiceInfo &info)
{
    if (info.digital) return info.number;
    return info.field == 1 ? KOVA_CAPTIONS_CC1 : KOVA_CAPTIONS_CC3;
}

// The source that the settings name, else the one that is announced in the viewer's language and as easy to
// read as the viewer wants, else the first.
static std::uint8_t Preferred(const ViewerSettings &settings, const std::vector<std::uint8_t> &sources,
                              const std::vector<KovaCaptionsServiceInfo> &announced)
{
    std::uint8_t best = sources.front();
    int most = 0;

    for (const std::uint8_t source : sources) {
        if (source == settings.source) return source;
        for (const KovaCaptionsServiceInfo &info : announced) {
            if (SourceOf(info) != source) continue;
            const bool language = settings.language[0] && std::string(settings.language) == info.language;
            const bool easy = info.easy_reader == settings.easy_reader;
            const int likeness = 2 * language + (easy && (language || settings.easy_reader));
            if (likeness > most) best = source;
            most = std::max(most, likeness);
        }
    }
    return best;
}

// The one asked for, or the preferred one. A Failure that names those that are there.
template <class Value> static std::uint8_t ChooseService(const Opened &opened, const BySource<Value> &there)
{
    const std::uint8_t wanted = opened.options.service;
    std::string names;

    if (there.empty()) {
        const bool video = opened.stream && IsCaptionVideo(*opened.stream);
        throw Failure(opened.options.file +
                      (video ? ": no subtitle stream and no captions in the video"
                             : ": no captions with visible content") +
                      g_advice);
    }
    if (wanted == 0) {
        std::vector<std::uint8_t> sources;
        for (const auto &source : there) sources.push_back(source.first);
        return Preferred(opened.options.viewer, sources, opened.Announced());
    }
    if (there.count(wanted)) return wanted;
    for (const auto &source : there) names += (names.empty() ? "" : ", ") + ServiceName(source.first);
    throw Failure("--service " + ServiceName(wanted) + ": " + opened.options.file +
                  ": no captions there; captions are in " + names);
}

static std::string InCapitals(std::string text)
{
    for (char &c : text) c = char(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// What is not shown unless it is asked for.
static void NoteOthers(const DecodedCaptions &decoded, std::uint8_t chosen, Notices &notices)
{
    const auto name = [](std::uint8_t source) {
        return (source <= KOVA_CAPTIONS_S63 ? "service " : "channel ") + InCapitals(ServiceName(source));
    };
    const bool usual = chosen == KOVA_CAPTIONS_S1 || chosen == KOVA_CAPTIONS_CC1;

    if (!usual) notices.Say("captions are read from " + name(chosen));
    for (const auto &source : decoded.states) {
        if (source.first != chosen) notices.Say("captions of " + name(source.first) + " are ignored");
    }
}

static std::vector<Cue> ReadCues(Opened &opened)
{
    MediaFile &source = opened.source;
    const AVStream &stream = *opened.stream;
    const std::string charset =
        source.text().empty() ? opened.options.charset : ""; // the text is UTF-8 already
    const std::unique_ptr<CueReader> reader = ReaderOf({source, stream, charset, opened.notices});
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
    std::vector<Cue> cues = reader->Finish(endOfSource);
    if (cues.empty()) {
        throw Failure(opened.options.file + ": no cue with visible content" + g_advice);
    }
    return cues;
}

Subtitles ReadSubtitles(const SourceOptions &options)
{
    Opened opened(options);
    Subtitles subtitles;

    if (opened.captions()) {
        const DecodedCaptions decoded = Decode(opened, ClosedCaptions::Keep::STATES);
        const std::uint8_t service = ChooseService(opened, decoded.states);
        if (options.service == 0) NoteOthers(decoded, service, opened.notices);
        subtitles.cues = DrawnCues(decoded, service);
    } else {
        subtitles.cues = ReadCues(opened);
    }
    subtitles.notices = opened.notices.said();
    return subtitles;
}

static ListedCue Listed(const Cue &cue)
{
    ListedCue listed;

    listed.start = cue.start;
    if (!cue.openEnd) listed.end = cue.end;
    for (const Line &line : Lines(cue)) listed.lines.push_back({{}, {}, {}, PlainText(line)});
    listed.pictures = cue.bitmaps.size();
    return listed;
}

Listing ListCues(const SourceOptions &options)
{
    Opened opened(options);
    Listing listing;

    if (opened.captions()) {
        const DecodedCaptions decoded = Decode(opened, ClosedCaptions::Keep::STATES);
        const std::uint8_t service = ChooseService(opened, decoded.states);
        listing.service = ServiceName(service);
        listing.cues = ListedCues(decoded.states.at(service));
    } else {
        for (const Cue &cue : ReadCues(opened)) listing.cues.push_back(Listed(cue));
    }
    listing.notices = opened.notices.said();
    return listing;
}

CommandListing ListCommands(const SourceOptions &options)
{
    Opened opened(options);

    if (!opened.captions()) {
        throw Failure(options.file + ": no closed captions, so no commands; omit --commands");
    }
    const DecodedCaptions decoded = Decode(opened, ClosedCaptions::Keep::COMMANDS);
    // Codes that show nothing are listed too, but a source that shows something comes first.
    const bool shows = options.service == 0 && !decoded.states.empty();
    const std::uint8_t service =
        shows ? ChooseService(opened, decoded.states) : ChooseService(opened, decoded.commands);
    return {ServiceName(service), decoded.commands.at(service), opened.notices.said()};
}

// What a stream's captions are announced as.
static std::vector<CaptionService> ServicesOf(const DecodedCaptions &decoded,
                                              const std::vector<KovaCaptionsServiceInfo> &announced)
{
    std::vector<CaptionService> services;

    for (const auto &source : decoded.states) {
        CaptionService service;
        service.name = ServiceName(source.first);
        service.cues = ListedCues(source.second).size();
        for (const KovaCaptionsServiceInfo &info : announced) {
            if (SourceOf(info) != source.first) continue;
            service.language = info.language;
            service.easyReader = info.easy_reader;
        }
        services.push_back(std::move(service));
    }
    return services;
}

// Reads the file to its end once, whatever the number of streams with captions.
static std::map<int, DecodedCaptions> DecodeAll(MediaFile &source)
{
    const av::Packet packet(av_packet_alloc());
    std::map<int, std::unique_ptr<CaptionStream>> streams;
    std::map<int, DecodedCaptions> decoded;

    for (unsigned i = 0; i < source.format().nb_streams; ++i) {
        AVStream &stream = *source.format().streams[i];
        const bool captions = IsCaptions(stream);
        stream.discard = captions ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        if (!captions) continue;
        streams[int(i)] = std::make_unique<CaptionStream>(source, stream, ClosedCaptions::Keep::STATES);
    }
    while (!streams.empty() && source.Read(*packet)) {
        const auto stream = streams.find(packet->stream_index);
        if (stream != streams.end() && packet->size > 0) stream->second->Take(*packet);
    }
    for (const auto &stream : streams) decoded[stream.first] = stream.second->Finish();
    return decoded;
}

static std::string CodecName(const AVStream &stream)
{
    if (stream.codecpar->codec_tag == MKTAG('c', '6', '0', '8')) return "c608";
    if (stream.codecpar->codec_tag == MKTAG('c', '7', '0', '8')) return "c708";
    return avcodec_get_name(stream.codecpar->codec_id);
}

std::vector<StreamInfo> ListStreams(const SourceOptions &options)
{
    Notices notices;
    MediaFile source(options.file, options.charset, notices);
    std::vector<StreamInfo> streams;

    if (!source.text().empty() && source.format().nb_streams == 0) {
        const Triplets triplets = ReadCaptionText(source.text(), source.file(), notices);
        const DecodedCaptions decoded = DecodeTriplets(triplets, ClosedCaptions::Keep::STATES);
        return {{0, StreamKind::TEXT, CaptionTextFormat(source.text()), "", "", ServicesOf(decoded, {})}};
    }
    const ServiceDirectory directory = ReadServiceDirectory(options.file);
    const std::map<int, DecodedCaptions> decoded = DecodeAll(source);
    for (unsigned i = 0; i < source.format().nb_streams; ++i) {
        const AVStream &stream = *source.format().streams[i];
        const auto captions = decoded.find(int(i));
        const auto announced = directory.find(stream.id);
        StreamInfo info = {
            int(i), KindOf(stream), CodecName(stream), Tag(stream, "language"), Tag(stream, "title"), {}};
        if (captions != decoded.end()) {
            info.services = ServicesOf(captions->second, announced == directory.end()
                                                             ? std::vector<KovaCaptionsServiceInfo>()
                                                             : announced->second);
        }
        const bool subtitles = stream.codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE;
        if (subtitles || !info.services.empty()) streams.push_back(std::move(info));
    }
    return streams;
}

} // namespace caption
