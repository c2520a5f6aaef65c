// SPDX-License-Identifier: MIT
// Decodes a .ccd file with FFmpeg's CEA-608 decoder and prints {"cc1": ["text", ...], "cc3": [...]}: every caption in
// order of presentation.
// usage: decode_ffmpeg FILE.ccd
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace
{

struct Entry {
    std::int64_t milliseconds = 0;
    std::vector<std::uint8_t> triplets;
};

std::vector<Entry> ReadCcd(const char *file)
{
    std::vector<Entry> entries;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::string time;
        if (!(words >> time)) continue;

        Entry entry;
        int hours = 0, minutes = 0;
        double seconds = 0;
        if (std::sscanf(time.c_str(), "%d:%d:%lf", &hours, &minutes, &seconds) == 3) {
            entry.milliseconds = std::llround((hours * 3600 + minutes * 60 + seconds) * 1000);
        } else {
            entry.milliseconds = std::atoll(time.c_str());
        }
        std::string digits;
        for (std::string word; words >> word;) digits += word;
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
            entry.triplets.push_back(std::uint8_t(std::stoul(digits.substr(i, 2), nullptr, 16)));
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

// An event of ASS without its leading fields and its tags.
std::string PlainText(const char *event)
{
    std::string text = event;
    for (int field = 0; field < 8; ++field) text.erase(0, text.find(',') + 1);

    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '{') {
            i = std::min(text.find('}', i), text.size());
        } else if (text.compare(i, 2, "\\N") == 0) {
            plain += '\n';
            ++i;
        } else if (text.compare(i, 2, "\\h") == 0) {
            plain += ' ';
            ++i;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

std::vector<std::string> Decode(const std::vector<Entry> &entries, const char *field)
{
    std::vector<std::string> captions;
    AVCodecContext *decoder = avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_EIA_608));
    AVDictionary *options = nullptr;
    av_dict_set(&options, "data_field", field, 0);
    decoder->pkt_timebase = {1, 1000};
    if (avcodec_open2(decoder, nullptr, &options) < 0) {
        std::fprintf(stderr, "decode_ffmpeg: libavcodec has no CEA-608 decoder with the option data_field\n");
        std::exit(1);
    }

    AVPacket *packet = av_packet_alloc();
    const auto decode = [&](const Entry *entry) {
        AVSubtitle subtitle = {};
        int got = 0;
        av_packet_unref(packet);
        if (entry) {
            if (av_new_packet(packet, int(entry->triplets.size())) < 0) std::abort();
            std::copy(entry->triplets.begin(), entry->triplets.end(), packet->data);
            packet->pts = entry->milliseconds;
        }
        if (avcodec_decode_subtitle2(decoder, &subtitle, &got, packet) < 0 || !got) return false;
        for (unsigned i = 0; i < subtitle.num_rects; ++i) {
            const std::string text = PlainText(subtitle.rects[i]->ass);
            if (text.find_first_not_of(" \n") != std::string::npos) captions.push_back(text);
        }
        avsubtitle_free(&subtitle);
        return true;
    };
    for (const Entry &entry : entries) decode(&entry);
    decode(nullptr); // the last one is still held back

    av_packet_free(&packet);
    avcodec_free_context(&decoder);
    return captions;
}

void PrintCaptions(const char *file)
{
    const std::vector<Entry> entries = ReadCcd(file);
    nlohmann::json found = nlohmann::json::object();
    for (const auto &[name, field] : {std::pair("cc1", "first"), std::pair("cc3", "second")}) {
        const std::vector<std::string> captions = Decode(entries, field);
        if (!captions.empty()) found[name] = captions;
    }
    std::cout << found.dump(1) << '\n';
}

} // namespace

int main(int count, char **arguments)
{
    if (count != 2) {
        std::fprintf(stderr, "usage: decode_ffmpeg FILE.ccd\n");
        return 2;
    }
    try {
        PrintCaptions(arguments[1]);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "decode_ffmpeg: %s: %s\n", arguments[1], error.what());
        return 1;
    }
    return 0;
}
