// SPDX-License-Identifier: MIT
#include "generating/writers.h"

#include <algorithm>
#include <cstdio>

namespace caption
{

using encoding::ByteString;

namespace
{

struct Letter {
    char letter;
    ByteString bytes;
};

} // namespace

// What letters stand for, the longest first.
static std::vector<Letter> Letters()
{
    std::vector<Letter> letters;
    ByteString fillers;

    for (char letter = 'G'; letter <= 'O'; ++letter) {
        fillers.insert(fillers.end(), {0xFA, 0x00, 0x00});
        letters.insert(letters.begin(), {letter, fillers});
    }
    for (const Letter &letter :
         {Letter{'P', {0xFB, 0x80, 0x80}}, Letter{'Q', {0xFC, 0x80, 0x80}}, Letter{'R', {0xFD, 0x80, 0x80}},
          Letter{'S', {0x96, 0x69}}, Letter{'T', {0x61, 0x01}}, Letter{'U', {0xE1, 0x00, 0x00, 0x00}},
          Letter{'Z', {0x00}}}) {
        letters.push_back(letter);
    }
    return letters;
}

static std::string Compressed(const ByteString &bytes)
{
    static const std::vector<Letter> letters = Letters();
    std::string text;

    for (std::size_t at = 0; at < bytes.size();) {
        const auto begin = bytes.begin() + std::ptrdiff_t(at);
        const auto letter = std::find_if(letters.begin(), letters.end(), [&](const Letter &known) {
            return known.bytes.size() <= bytes.size() - at &&
                   std::equal(known.bytes.begin(), known.bytes.end(), begin);
        });
        text += letter == letters.end() ? HexText({*begin}) : std::string(1, letter->letter);
        at += letter == letters.end() ? 1 : letter->bytes.size();
    }
    return text;
}

// A packet of ancillary data with a caption distribution packet: identifiers, count, data, checksum.
static ByteString Ancillary(const ByteString &cdp)
{
    ByteString packet = {0x61, 0x01, std::uint8_t(cdp.size())};
    std::uint8_t sum = 0;

    packet.insert(packet.end(), cdp.begin(), cdp.end());
    for (const std::uint8_t byte : packet) sum = std::uint8_t(sum + byte);
    packet.push_back(sum);
    return packet;
}

std::string MccText(const Recording &recording)
{
    const std::size_t last = recording.frames.size() - 1;
    unsigned sequence = 0;
    std::string text = "File Format=MacCaption_MCC V1.0\n\n"
                       "// " +
                       recording.title +
                       "\n\n"
                       "Creation Program=kova-caption\n"
                       "Time Code Rate=30DF\n\n";

    for (std::size_t i = 0; i <= last; ++i) {
        const Frame &frame = recording.frames[i];
        if (SentTriplets(frame).empty() && i < last) continue;
        text +=
            FrameLabel(i) + "\t" + Compressed(Ancillary(encoding::Cdp(sequence, AllTriplets(frame)))) + "\n";
        sequence = (sequence + 1) % 0x10000;
    }
    return text;
}

} // namespace caption
