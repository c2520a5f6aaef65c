// SPDX-License-Identifier: MIT
#include "reading/media.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include "generating/programme_map.h"

namespace media
{

static void Check(int result, const char *what)
{
    if (result >= 0) return;
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(result, text, sizeof text);
    throw std::runtime_error(std::string(what) + ": " + text);
}

static void SetExtradata(std::uint8_t *&data, int &size, const Bytes &bytes)
{
    data = static_cast<std::uint8_t *>(av_mallocz(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    std::copy(bytes.begin(), bytes.end(), data);
    size = int(bytes.size());
}

Bytes Text(const std::string &text)
{
    return {text.begin(), text.end()};
}

Bytes operator+(Bytes a, const Bytes &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

void Write(const std::string &file, const std::string &format, const std::vector<Stream> &streams,
           const std::vector<Packet> &packets)
{
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext *output = nullptr;
    Check(avformat_alloc_output_context2(&output, nullptr, format.c_str(), file.c_str()), "container");
    for (const Stream &stream : streams) {
        AVStream *const made = avformat_new_stream(output, nullptr);
        AVCodecParameters &parameters = *made->codecpar;
        made->time_base = {1, 90000};
        parameters.codec_id = stream.codec;
        parameters.codec_type = avcodec_get_type(stream.codec);
        parameters.width = stream.size.width;
        parameters.height = stream.size.height;
        SetExtradata(parameters.extradata, parameters.extradata_size, stream.extradata);
        if (!stream.language.empty()) av_dict_set(&made->metadata, "language", stream.language.c_str(), 0);
        if (!stream.title.empty()) av_dict_set(&made->metadata, "title", stream.title.c_str(), 0);
    }
    Check(avio_open(&output->pb, file.c_str(), AVIO_FLAG_WRITE), "file");
    Check(avformat_write_header(output, nullptr), "header");
    for (const Packet &packet : packets) {
        AVPacket *made = av_packet_alloc();
        Check(av_new_packet(made, int(packet.bytes.size())), "packet");
        std::copy(packet.bytes.begin(), packet.bytes.end(), made->data);
        made->stream_index = packet.stream;
        made->pts = std::llround(packet.start * 90);
        made->dts = std::llround(packet.decoded.value_or(packet.start) * 90);
        made->duration = std::llround(packet.duration * 90);
        made->flags = AV_PKT_FLAG_KEY;
        if (!packet.settings.empty()) {
            std::uint8_t *const settings =
                av_packet_new_side_data(made, AV_PKT_DATA_WEBVTT_SETTINGS, packet.settings.size());
            std::copy(packet.settings.begin(), packet.settings.end(), settings);
        }
        av_packet_rescale_ts(made, {1, 90000}, output->streams[packet.stream]->time_base);
        Check(av_interleaved_write_frame(output, made), "write");
        av_packet_free(&made);
    }
    Check(av_write_trailer(output), "trailer");
    avio_closep(&output->pb);
    avformat_free_context(output);
}

static Bytes Encode(AVCodecContext &encoder, const caption::Bitmap &bitmap, int milliseconds)
{
    std::vector<std::uint32_t> palette(256);
    for (std::size_t i = 0; i < bitmap.palette.size(); ++i) {
        const caption::Color &color = bitmap.palette[i];
        palette[i] = std::uint32_t(color.alpha) << 24 | std::uint32_t(color.red) << 16 |
                     std::uint32_t(color.green) << 8 | color.blue;
    }
    Bytes indexes = bitmap.indexes;
    AVSubtitleRect rect = {};
    rect.type = SUBTITLE_BITMAP;
    rect.x = bitmap.x;
    rect.y = bitmap.y;
    rect.w = bitmap.size.width;
    rect.h = bitmap.size.height;
    rect.nb_colors = int(bitmap.palette.size());
    rect.data[0] = indexes.data();
    rect.data[1] = reinterpret_cast<std::uint8_t *>(palette.data());
    rect.linesize[0] = bitmap.size.width;
    AVSubtitleRect *rects[] = {&rect};
    AVSubtitle subtitle = {};
    subtitle.num_rects = bitmap.indexes.empty() ? 0 : 1;
    subtitle.rects = rects;
    subtitle.end_display_time = std::uint32_t(milliseconds);

    Bytes bytes(1 << 16);
    const int size = avcodec_encode_subtitle(&encoder, bytes.data(), int(bytes.size()), &subtitle);
    Check(size, "subtitle");
    bytes.resize(std::size_t(size));
    return bytes;
}

std::vector<Bytes> EncodeBitmaps(AVCodecID codec, const std::vector<caption::Bitmap> &bitmaps,
                                 caption::Size canvas, int milliseconds)
{
    const AVCodec *const found = avcodec_find_encoder(codec);
    AVCodecContext *encoder = avcodec_alloc_context3(found);
    std::vector<Bytes> packets;

    encoder->width = canvas.width;
    encoder->height = canvas.height;
    encoder->time_base = {1, 1000};
    Check(avcodec_open2(encoder, found, nullptr), "encoder");
    for (const caption::Bitmap &bitmap : bitmaps) packets.push_back(Encode(*encoder, bitmap, milliseconds));
    avcodec_free_context(&encoder);
    return packets;
}

static Bytes Big16(std::size_t value)
{
    return {std::uint8_t(value >> 8), std::uint8_t(value)};
}

static Bytes Big24(std::size_t value)
{
    return Bytes{std::uint8_t(value >> 16)} + Big16(value);
}

static Bytes Segment(std::uint8_t type, const Bytes &payload)
{
    return Bytes{type} + Big16(payload.size()) + payload;
}

// Runs of one colour; a row ends with two zeros.
static Bytes RunLengths(const caption::Bitmap &bitmap)
{
    Bytes coded;
    for (int y = 0; y < bitmap.size.height; ++y) {
        for (int x = 0; x < bitmap.size.width;) {
            const std::size_t row = std::size_t(y) * std::size_t(bitmap.size.width);
            const std::uint8_t index = bitmap.indexes[row + std::size_t(x)];
            int run = 1;
            while (run < 63 && x + run < bitmap.size.width &&
                   bitmap.indexes[row + std::size_t(x + run)] == index) {
                ++run;
            }
            coded = coded + (index ? Bytes{0, std::uint8_t(0x80 | run), index} : Bytes{0, std::uint8_t(run)});
            x += run;
        }
        coded = coded + Bytes{0, 0};
    }
    return coded;
}

// BT.709, as for pictures of high definition, in the range that video has.
static Bytes PgsColor(std::uint8_t index, const caption::Color &color)
{
    const double red = color.red / 255.0;
    const double green = color.green / 255.0;
    const double blue = color.blue / 255.0;
    const double luma = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    const auto level = [](double value) { return std::uint8_t(std::lround(value)); };
    return {index, level(16 + 219 * luma), level(128 + 224 * (red - luma) / 1.5748),
            level(128 + 224 * (blue - luma) / 1.8556), color.alpha};
}

Bytes PgsDisplaySet(const caption::Bitmap &bitmap, caption::Size canvas)
{
    enum { PALETTE = 0x14, OBJECT = 0x15, PRESENTATION = 0x16, WINDOW = 0x17, END = 0x80 };
    const auto pixels = [](int value) { return Big16(std::size_t(value)); };
    const Bytes composition = pixels(canvas.width) + pixels(canvas.height) + Bytes{0x10, 0, 0, 0x80, 0, 0};
    const Bytes window = Bytes{1, 0} + pixels(bitmap.x) + pixels(bitmap.y) + pixels(bitmap.size.width) +
                         pixels(bitmap.size.height);

    if (bitmap.indexes.empty()) return Segment(PRESENTATION, composition + Bytes{0}) + Segment(END, {});
    Bytes palette = {0, 0};
    for (std::size_t i = 0; i < bitmap.palette.size(); ++i) {
        palette = palette + PgsColor(std::uint8_t(i), bitmap.palette[i]);
    }
    const Bytes picture = pixels(bitmap.size.width) + pixels(bitmap.size.height) + RunLengths(bitmap);
    return Segment(PRESENTATION, composition + Bytes{1, 0, 0, 0, 0} + pixels(bitmap.x) + pixels(bitmap.y)) +
           Segment(WINDOW, window) + Segment(PALETTE, palette) +
           Segment(OBJECT, Bytes{0, 0, 0, 0xC0} + Big24(picture.size()) + picture) + Segment(END, {});
}

Bytes PgsFile(const std::vector<Packet> &sets)
{
    Bytes file;
    for (const Packet &set : sets) {
        const auto time = std::size_t(std::llround(set.start * 90));
        for (std::size_t at = 0; at < set.bytes.size();) {
            const std::size_t size = 3 + (std::size_t(set.bytes[at + 1]) << 8 | set.bytes[at + 2]);
            file = file + Text("PG") + Big16(time >> 16) + Big16(time) + Big16(0) + Big16(0);
            file.insert(file.end(), set.bytes.begin() + std::ptrdiff_t(at),
                        set.bytes.begin() + std::ptrdiff_t(at + size));
            at += size;
        }
    }
    return file;
}

static std::uint8_t Reversed(unsigned byte)
{
    unsigned reversed = 0;
    for (unsigned i = 0; i < 8; ++i) reversed |= (byte >> i & 1) << (7 - i);
    return std::uint8_t(reversed);
}

// Four bits with the four of Hamming's that protect them: each check bit makes three of the others and itself
// odd, the last one all eight.
static std::uint8_t Hamming(unsigned nibble)
{
    const unsigned d1 = nibble & 1;
    const unsigned d2 = nibble >> 1 & 1;
    const unsigned d3 = nibble >> 2 & 1;
    const unsigned d4 = nibble >> 3 & 1;
    const unsigned p1 = 1 ^ d1 ^ d3 ^ d4;
    const unsigned p2 = 1 ^ d1 ^ d2 ^ d4;
    const unsigned p3 = 1 ^ d1 ^ d2 ^ d3;
    const unsigned p4 = 1 ^ p1 ^ d1 ^ p2 ^ d2 ^ p3 ^ d3 ^ d4;
    return std::uint8_t(p1 | d1 << 1 | p2 << 2 | d2 << 3 | p3 << 4 | d3 << 5 | p4 << 6 | d4 << 7);
}

static std::uint8_t OddParity(unsigned byte)
{
    unsigned ones = 0;
    for (unsigned i = 0; i < 7; ++i) ones += byte >> i & 1;
    return std::uint8_t((byte & 0x7F) | (ones % 2 ? 0 : 0x80));
}

// A line of teletext as a data unit: the address of magazine and row, then 40 bytes.
static Bytes TeletextLine(unsigned line, unsigned magazine, unsigned row, const Bytes &payload)
{
    const Bytes sent = Bytes{Hamming((magazine & 7) | (row & 1) << 3), Hamming(row >> 1)} + payload;
    Bytes unit = {3, 44, std::uint8_t(0xC0 | 0x20 | line), 0xE4};
    for (const std::uint8_t byte : sent) unit.push_back(Reversed(byte));
    return unit;
}

static Bytes TeletextText(const std::string &text, std::size_t length)
{
    Bytes bytes;
    for (std::size_t i = 0; i < length; ++i)
        bytes.push_back(OddParity(i < text.size() ? unsigned(text[i]) : ' '));
    return bytes;
}

// The header names the page, erases it, and says that it is a subtitle.
static Bytes TeletextHeader(unsigned page)
{
    Bytes header;
    for (const unsigned nibble :
         {page % 10, page / 10 % 10, 0u, 8u /* erase */, 0u, 8u /* subtitle */, 0u, 0u}) {
        header.push_back(Hamming(nibble));
    }
    return header + TeletextText("", 32);
}

Bytes TeletextPage(int page, const std::vector<TeletextRow> &rows)
{
    const unsigned magazine = unsigned(page) / 100;
    Bytes packet = {0x10};
    unsigned line = 7;

    packet = packet + TeletextLine(line++, magazine, 0, TeletextHeader(unsigned(page) % 100));
    for (const TeletextRow &row : rows) {
        packet = packet + TeletextLine(line++, magazine, unsigned(row.row), TeletextText(row.text, 40));
    }
    // The header of another page ends this one. FF is the page that is none.
    Bytes end;
    for (const unsigned nibble : {15u, 15u, 15u, 7u, 15u, 3u, 0u, 0u}) end.push_back(Hamming(nibble));
    return packet + TeletextLine(line++, magazine, 0, end + TeletextText("", 32));
}

std::uint16_t CaptionCode(int first, int second)
{
    return std::uint16_t(OddParity(unsigned(first)) << 8 | OddParity(unsigned(second)));
}

std::vector<std::uint16_t> CaptionText(const std::string &text)
{
    std::vector<std::uint16_t> codes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        codes.push_back(CaptionCode(text[i], i + 1 < text.size() ? text[i + 1] : 0));
    }
    return codes;
}

// libx265 has no captions of its own: a prefix SEI message before the picture.
static Bytes Hevc(const Bytes &triplets, const Bytes &picture)
{
    Bytes payload = {0xB5, 0x00, 0x31, 'G', 'A', '9', '4', 0x03, std::uint8_t(0x40 | triplets.size() / 3),
                     0xFF};
    payload = payload + triplets + Bytes{0xFF};
    Bytes nal = {0, 0, 0, 1, 39 << 1, 1, 4, std::uint8_t(payload.size())};
    int zeros = 0;
    payload.push_back(0x80);
    for (const std::uint8_t byte : payload) {
        if (zeros == 2 && byte <= 3) nal.push_back(3);
        if (zeros == 2 && byte <= 3) zeros = 0;
        zeros = byte == 0 ? zeros + 1 : 0;
        nal.push_back(byte);
    }
    return nal + picture;
}

std::vector<Packet> VideoWithTriplets(AVCodecID codec, const std::vector<Bytes> &triplets, Stream &stream)
{
    const double frame = 1001.0 / 30; // milliseconds
    const AVCodec *const found = avcodec_find_encoder(codec);
    AVCodecContext *encoder = avcodec_alloc_context3(found);
    encoder->width = 64;
    encoder->height = 64;
    encoder->pix_fmt = AV_PIX_FMT_YUV420P;
    encoder->time_base = {1001, 30000};
    encoder->framerate = {30000, 1001};
    encoder->gop_size = 15;
    encoder->max_b_frames = 2; // so that frames are stored in another order than they are shown in
    encoder->thread_count = 1;
    encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (codec == AV_CODEC_ID_HEVC) av_opt_set(encoder->priv_data, "x265-params", "log-level=none:pools=1", 0);
    Check(avcodec_open2(encoder, found, nullptr), "encoder");
    stream.codec = codec;
    stream.size = {64, 64};
    stream.extradata.assign(encoder->extradata, encoder->extradata + encoder->extradata_size);

    std::vector<Packet> packets;
    AVPacket *packet = av_packet_alloc();
    const auto drain = [&] {
        for (; avcodec_receive_packet(encoder, packet) >= 0; av_packet_unref(packet)) {
            Bytes bytes(packet->data, packet->data + packet->size);
            if (codec == AV_CODEC_ID_HEVC) bytes = Hevc(triplets[std::size_t(packet->pts)], bytes);
            packets.push_back(
                {0, double(packet->pts) * frame, frame, bytes, "", double(packet->dts) * frame});
        }
    };
    for (std::size_t i = 0; i < triplets.size(); ++i) {
        AVFrame *picture = av_frame_alloc();
        picture->width = 64;
        picture->height = 64;
        picture->format = AV_PIX_FMT_YUV420P;
        picture->pts = std::int64_t(i);
        Check(av_frame_get_buffer(picture, 0), "frame");
        std::memset(picture->buf[0]->data, 128, picture->buf[0]->size);
        AVFrameSideData *const data =
            av_frame_new_side_data(picture, AV_FRAME_DATA_A53_CC, triplets[i].size());
        std::copy(triplets[i].begin(), triplets[i].end(), data->data);
        Check(avcodec_send_frame(encoder, picture), "frame");
        av_frame_free(&picture);
        drain();
    }
    Check(avcodec_send_frame(encoder, nullptr), "end");
    drain();
    av_packet_free(&packet);
    avcodec_free_context(&encoder);
    return packets;
}

std::vector<Packet> CaptionedVideo(AVCodecID codec, const std::vector<std::uint16_t> &captions,
                                   bool secondField, Stream &stream)
{
    std::vector<Bytes> triplets;
    for (const std::uint16_t pair : captions) {
        triplets.push_back(
            {std::uint8_t(secondField ? 0xFD : 0xFC), std::uint8_t(pair >> 8), std::uint8_t(pair)});
    }
    return VideoWithTriplets(codec, triplets, stream);
}

static Bytes FileBytes(const std::string &file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

static void WriteFile(const std::string &file, const Bytes &bytes)
{
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
}

void AnnounceServices(const std::string &file, const Bytes &descriptor)
{
    Bytes stream = FileBytes(file);

    for (std::size_t at = 0; at + caption::g_transportPacket <= stream.size();
         at += caption::g_transportPacket) {
        caption::AnnounceServices(&stream[at], descriptor);
    }
    WriteFile(file, stream);
}

static Bytes Number(std::uint32_t number)
{
    return {std::uint8_t(number >> 24), std::uint8_t(number >> 16), std::uint8_t(number >> 8),
            std::uint8_t(number)};
}

static Bytes Box(const std::string &type, const Bytes &content)
{
    return Number(std::uint32_t(content.size() + 8)) + Text(type) + content;
}

static Bytes Zeros(std::size_t count)
{
    return Bytes(count);
}

void WriteCaptionTrack(const std::string &file, const std::string &entry, const std::vector<Packet> &samples)
{
    const std::uint32_t second = 1000; // of the time scale
    Bytes data;
    Bytes durations = Zeros(4) + Number(std::uint32_t(samples.size()));
    Bytes sizes = Zeros(8) + Number(std::uint32_t(samples.size()));
    std::uint32_t duration = 0;

    for (const Packet &sample : samples) {
        data = data + sample.bytes;
        durations = durations + Number(1) + Number(std::uint32_t(sample.duration));
        sizes = sizes + Number(std::uint32_t(sample.bytes.size()));
        duration += std::uint32_t(sample.duration);
    }
    const Bytes type = Box("ftyp", Text("qt  ") + Number(0x200) + Text("qt  "));
    const Bytes description = Box("stsd", Zeros(4) + Number(1) + Box(entry, Zeros(6) + Bytes{0, 1}));
    const Bytes table =
        Box("stbl", description + Box("stts", durations) +
                        Box("stsc", Zeros(4) + Number(1) + Number(1) + Number(std::uint32_t(samples.size())) +
                                        Number(1)) +
                        Box("stsz", sizes) +
                        Box("stco", Zeros(4) + Number(1) + Number(std::uint32_t(type.size() + 8))));
    const Bytes handler = Box("hdlr", Zeros(4) + Text("mhlrclcp") + Zeros(13));
    const Bytes media = Box("mdia", Box("mdhd", Zeros(12) + Number(second) + Number(duration) + Zeros(4)) +
                                        handler + Box("minf", Box("gmhd", Zeros(0)) + table));
    const Bytes track =
        Box("trak",
            Box("tkhd", Number(1) + Zeros(8) + Number(1) + Zeros(4) + Number(duration) + Zeros(60)) + media);
    const Bytes movie =
        Box("moov", Box("mvhd", Zeros(12) + Number(second) + Number(duration) + Zeros(80)) + track);
    WriteFile(file, type + Box("mdat", data) + movie);
}

} // namespace media
