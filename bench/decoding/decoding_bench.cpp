// SPDX-License-Identifier: MIT
// Decodes a stream of caption triplets over and over, for bench/decode. Prints how many triplets a second.
// usage: decoding_bench write608|write708 FILE.ccd    writes a stream of ten minutes
//        decoding_bench ours|ffmpeg FILE.ccd PASSES   decodes it
//        decoding_bench memory                        prints what a decoder takes
#include "captions/encoder.h"
#include "kova/kova_captions.h"

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace
{

constexpr unsigned PICTURES = 18000; // ten minutes at 29.97 pictures a second

// The triplets of one picture.
struct Picture {
    std::int64_t microseconds = 0;
    ByteString triplets;
};

std::int64_t TimeOf(std::size_t picture)
{
    return std::int64_t(picture) * 1001000 / 30;
}

std::string Sentence(unsigned number)
{
    return "CAPTION " + std::to_string(number) + " SAYS WHAT IS SAID";
}

// Rolling captions, one pair a picture, as live broadcasts have them.
std::vector<ByteString> Stream608()
{
    std::vector<ByteString> pictures;
    for (unsigned number = 0; pictures.size() < PICTURES; ++number) {
        const Pairs row = Code(RU3) + Code(CR) + PacIndent(15, number % 8 * 4) +
                          MidRow(Color608(number % 7)) + Text(Sentence(number));
        for (const Pair &pair : row) pictures.push_back(ToTriplets(1, {pair}));
    }
    return pictures;
}

// Pop-on captions in two windows that take turns, one packet a picture, as converters of recorded programmes send them.
std::vector<ByteString> Stream708()
{
    std::vector<ByteString> pictures;
    for (unsigned number = 0; pictures.size() < PICTURES; ++number) {
        const unsigned window = number % 2;
        const ByteString commands[] = {
            DeleteWindows(1u << window),
            Define(Window(window).Hidden().Rows(2).Anchor(7, 70, 105)),
            SetPenAttributes({}) + SetPenColor({}) + SetPenLocation(0, 0),
            Ascii(Sentence(number)),
            SetPenLocation(1, 4),
            Ascii(Sentence(number + 1)),
            ToggleWindows(3),
        };
        for (const ByteString &bytes : commands) {
            pictures.push_back(PacketTriplets(Packet(unsigned(pictures.size()) % 4, Blocks(1, bytes))));
        }
    }
    return pictures;
}

int Write(const std::vector<ByteString> &pictures, const char *file)
{
    std::FILE *const out = std::fopen(file, "w");
    if (!out) {
        std::perror(file);
        return 1;
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        std::fprintf(out, "%" PRId64 " ", TimeOf(i) / 1000);
        for (const unsigned char byte : pictures[i]) std::fprintf(out, "%02x", byte);
        std::fputc('\n', out);
    }
    return std::fclose(out) ? 1 : 0;
}

std::vector<Picture> Read(const char *file)
{
    std::vector<Picture> pictures;
    std::ifstream in(file);
    std::int64_t milliseconds = 0;
    for (std::string digits; in >> milliseconds >> digits;) {
        Picture picture{milliseconds * 1000, {}};
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
            picture.triplets.push_back(std::uint8_t(std::stoul(digits.substr(i, 2), nullptr, 16)));
        }
        pictures.push_back(picture);
    }
    return pictures;
}

// Runs the passes and prints their speed. A pass gets the shift of its times, so that time never goes back.
int Measure(const std::vector<Picture> &pictures, int passes, const std::function<void(std::int64_t)> &decode)
{
    std::size_t triplets = 0;
    for (const Picture &picture : pictures) triplets += picture.triplets.size() / 3;

    const auto start = std::chrono::steady_clock::now();
    for (int pass = 0; pass < passes; ++pass) decode(pass * TimeOf(PICTURES + 1000));
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    std::printf("{\"triplets\": %zu, \"seconds\": %.6f}\n", triplets * std::size_t(passes), spent.count());
    return 0;
}

int DecodeOurs(const std::vector<Picture> &pictures, int passes)
{
    KovaCaptions *const decoder = Kova_Captions_Create(nullptr);
    const int result = Measure(pictures, passes, [&](std::int64_t shift) {
        for (const Picture &picture : pictures) {
            Kova_Captions_PushTriplets(decoder, picture.microseconds + shift, picture.triplets.data(),
                                       picture.triplets.size() / 3);
        }
    });
    Kova_Captions_Destroy(decoder);
    return result;
}

int DecodeByFfmpeg(const std::vector<Picture> &pictures, int passes)
{
    AVCodecContext *decoder = avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_EIA_608));
    AVPacket *packet = av_packet_alloc();
    decoder->pkt_timebase = {1, 1000};
    if (avcodec_open2(decoder, nullptr, nullptr) < 0) return 1;

    const int result = Measure(pictures, passes, [&](std::int64_t shift) {
        for (const Picture &picture : pictures) {
            AVSubtitle subtitle = {};
            int got = 0;
            // It is lent the bytes, so that copying them does not count.
            packet->data = const_cast<std::uint8_t *>(picture.triplets.data());
            packet->size = int(picture.triplets.size());
            packet->pts = (picture.microseconds + shift) / 1000;
            avcodec_decode_subtitle2(decoder, &subtitle, &got, packet);
            if (got) avsubtitle_free(&subtitle);
        }
    });
    av_packet_free(&packet);
    avcodec_free_context(&decoder);
    return result;
}

int PrintMemory()
{
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    const std::size_t all = Kova_Captions_GetMemorySize(&options);
    options.services = 0;
    const std::size_t none = Kova_Captions_GetMemorySize(&options);
    options.services = 2;
    const std::size_t one = Kova_Captions_GetMemorySize(&options);
    std::printf("{\"all\": %zu, \"channels\": %zu, \"service\": %zu}\n", all, none, one - none);
    return 0;
}

} // namespace

int main(int count, char **arguments)
{
    const std::string what = count > 1 ? arguments[1] : "";
    if (what == "memory" && count == 2) return PrintMemory();
    if (what == "write608" && count == 3) return Write(Stream608(), arguments[2]);
    if (what == "write708" && count == 3) return Write(Stream708(), arguments[2]);
    if ((what == "ours" || what == "ffmpeg") && count == 4) {
        const std::vector<Picture> pictures = Read(arguments[2]);
        const int passes = std::atoi(arguments[3]);
        return what == "ours" ? DecodeOurs(pictures, passes) : DecodeByFfmpeg(pictures, passes);
    }
    std::fprintf(stderr, "usage: decoding_bench write608|write708 FILE | ours|ffmpeg FILE PASSES | memory\n");
    return 2;
}
