// SPDX-License-Identifier: MIT
#include "encoder.h"

#include <cstdlib>

// What a test asks for by mistake ends it.
static void Demand(bool condition)
{
    if (!condition) abort();
}

/* ------------------------------------------------------------------------------------------------------------- 608 */

uint8_t WithParity(unsigned byte)
{
    unsigned ones = 0;

    for (unsigned bit = 0; bit < 7; bit++) ones += byte >> bit & 1;
    return uint8_t((byte & 0x7F) | (ones % 2 ? 0 : 0x80));
}

Pairs operator+(Pairs left, const Pairs &right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Pairs Times(unsigned count, const Pairs &pairs)
{
    Pairs all;

    for (unsigned i = 0; i < count; i++) all = all + pairs;
    return all;
}

Pairs Raw(unsigned first, unsigned second)
{
    return {{WithParity(first), WithParity(second)}};
}

Pairs Once(unsigned first, unsigned second, unsigned channel)
{
    return Raw(first + (channel % 2 ? 0 : 8), second);
}

Pairs Twice(unsigned first, unsigned second, unsigned channel)
{
    return Times(2, Once(first, second, channel));
}

Pairs Code(Misc code, unsigned channel)
{
    return Twice(channel > 2 ? 0x15 : 0x14, code, channel);
}

static Pairs Preamble(unsigned row, unsigned low, unsigned channel)
{
    static const uint8_t FIRST[] = {0x11, 0x11, 0x12, 0x12, 0x15, 0x15, 0x16, 0x16,
                                    0x17, 0x17, 0x10, 0x13, 0x13, 0x14, 0x14};
    static const bool LOWER_HALF[] = {false, true, false, true,  false, true,  false, true,
                                      false, true, false, false, true,  false, true};

    Demand(row >= 1 && row <= 15);
    return Twice(FIRST[row - 1], (LOWER_HALF[row - 1] ? 0x60 : 0x40) + low, channel);
}

Pairs Pac(unsigned row, Color608 color, bool underline, unsigned channel)
{
    return Preamble(row, 2 * color + underline, channel);
}

Pairs PacIndent(unsigned row, unsigned indent, bool underline, unsigned channel)
{
    Demand(indent % 4 == 0 && indent <= 28);
    return Preamble(row, 0x10 + indent / 2 + underline, channel);
}

Pairs MidRow(Color608 color, bool underline, unsigned channel)
{
    return Twice(0x11, 0x20 + 2 * color + underline, channel);
}

Pairs Tab(unsigned columns, unsigned channel)
{
    Demand(columns >= 1 && columns <= 3);
    return Twice(0x17, 0x20 + columns, channel);
}

Pairs Text(const std::string &text)
{
    Pairs pairs;

    for (size_t i = 0; i < text.size(); i += 2) {
        pairs = pairs + Raw(uint8_t(text[i]), i + 1 < text.size() ? uint8_t(text[i + 1]) : 0);
    }
    return pairs;
}

uint8_t XdsChecksum(unsigned classCode, unsigned type, const std::string &content)
{
    unsigned sum = classCode + type + 0x0F;

    for (const char character : content) sum += uint8_t(character);
    return uint8_t(0x80 - sum % 0x80) & 0x7F;
}

Pairs Xds(unsigned classCode, unsigned type, const std::string &content)
{
    return Raw(classCode, type) + Text(content) + Raw(0x0F, XdsChecksum(classCode, type, content));
}

ByteString ToTriplets(unsigned field, const Pairs &pairs)
{
    ByteString triplets;

    for (const Pair pair : pairs)
        triplets = triplets + ByteString{uint8_t(0xFB + field), pair.first, pair.second};
    return triplets;
}

/* ------------------------------------------------------------------------------------------------------------- 708 */

ByteString Byte(unsigned byte)
{
    return {uint8_t(byte)};
}

ByteString Bytes(std::initializer_list<unsigned> bytes)
{
    ByteString all;

    for (const unsigned byte : bytes) all.push_back(uint8_t(byte));
    return all;
}

ByteString Ascii(const std::string &text)
{
    return ByteString(text.begin(), text.end());
}

ByteString SetCurrentWindow(unsigned window)
{
    return Bytes({CW0 + window});
}

ByteString ClearWindows(unsigned map)
{
    return Bytes({CLW, map});
}

ByteString DisplayWindows(unsigned map)
{
    return Bytes({DSW, map});
}

ByteString HideWindows(unsigned map)
{
    return Bytes({HDW, map});
}

ByteString ToggleWindows(unsigned map)
{
    return Bytes({TGW, map});
}

ByteString DeleteWindows(unsigned map)
{
    return Bytes({DLW, map});
}

ByteString Delay(unsigned tenths)
{
    return Bytes({DLY, tenths});
}

ByteString Wide(unsigned character)
{
    return Bytes({P16, character >> 8, character & 0xFF});
}

ByteString Define(const Window &window)
{
    return Bytes({0x98 + window.id,
                  window.visible << 5 | window.rowLock << 4 | window.columnLock << 3 | window.priority,
                  window.relative << 7 | window.vertical, window.horizontal,
                  window.point << 4 | (window.rows - 1), window.columns - 1,
                  window.windowStyle << 3 | window.penStyle});
}

ByteString SetPenAttributes(const PenAttributes &pen)
{
    return Bytes({0x90, pen.tag << 4 | pen.offset << 2 | pen.size,
                  pen.italics << 7 | pen.underline << 6 | pen.edge << 3 | pen.font});
}

ByteString SetPenColor(const PenColor &color)
{
    return Bytes({0x91, color.foregroundOpacity << 6 | color.foreground,
                  color.backgroundOpacity << 6 | color.background, color.edge});
}

ByteString SetPenLocation(unsigned row, unsigned column)
{
    return Bytes({0x92, row, column});
}

ByteString SetWindowAttributes(const WindowAttributes &window)
{
    return Bytes({0x97, window.fillOpacity << 6 | window.fill, (window.border & 3) << 6 | window.borderColor,
                  (window.border >> 2) << 7 | window.wordWrap << 6 | window.print << 4 | window.scroll << 2 |
                      window.justify,
                  window.effectSpeed << 4 | window.effectDirection << 2 | window.effect});
}

ByteString Block(unsigned service, const ByteString &bytes)
{
    Demand(bytes.size() <= 31);
    const auto size = unsigned(bytes.size());
    return (service < 7 ? Bytes({service << 5 | size}) : Bytes({0xE0 | size, service})) + bytes;
}

ByteString Blocks(unsigned service, const ByteString &bytes)
{
    ByteString blocks;

    for (size_t i = 0; i < bytes.size(); i += 31) {
        const size_t end = i + 31 < bytes.size() ? i + 31 : bytes.size();
        blocks = blocks + Block(service, ByteString(bytes.begin() + long(i), bytes.begin() + long(end)));
    }
    return blocks;
}

ByteString Packet(unsigned sequence, const ByteString &blocks)
{
    Demand(blocks.size() <= 127);
    const ByteString data = blocks.size() % 2 ? blocks : blocks + Byte(0);
    return Bytes({sequence << 6 | ((1 + unsigned(data.size())) / 2 & 0x3F)}) + data;
}

ByteString PacketTriplets(const ByteString &packet)
{
    ByteString triplets;

    Demand(packet.size() % 2 == 0);
    for (size_t i = 0; i < packet.size(); i += 2) {
        triplets = triplets + ByteString{uint8_t(i == 0 ? 0xFF : 0xFE), packet[i], packet[i + 1]};
    }
    return triplets;
}

/* -------------------------------------------------------------------------------------------------------- Carriage */

ByteString CcData(const ByteString &triplets)
{
    Demand(triplets.size() % 3 == 0 && triplets.size() <= 93);
    return Bytes({0xC0 | unsigned(triplets.size()) / 3, 0xFF}) + triplets + Byte(0xFF);
}

ByteString UserData(const ByteString &triplets)
{
    return Ascii("GA94") + Byte(3) + CcData(triplets);
}

ByteString Mpeg2Picture(const ByteString &triplets)
{
    return Bytes({0, 0, 1, 0, 0, 0x0F, 0xFF, 0xF8, 0, 0, 1, 0xB2}) + UserData(triplets) +
           Bytes({0, 0, 1, 1, 0x13, 0xFA});
}

ByteString H264Sei(const ByteString &triplets)
{
    const ByteString payload = Bytes({0xB5, 0x00, 0x31}) + UserData(triplets);
    const ByteString plain = Bytes({4, unsigned(payload.size())}) + payload + Byte(0x80);
    ByteString nal = Byte(6);
    unsigned zeros = 0;

    for (const uint8_t byte : plain) {
        if (zeros == 2 && byte <= 3) {
            nal.push_back(3);
            zeros = 0;
        }
        nal.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return nal;
}

ByteString Cdp(unsigned sequence, const ByteString &triplets)
{
    const auto count = unsigned(triplets.size()) / 3;
    ByteString packet =
        Bytes({0x96, 0x69, 0, 0x4F, 0x43, sequence >> 8, sequence & 0xFF, 0x72, 0xE0 | count}) + triplets +
        Bytes({0x74, sequence >> 8, sequence & 0xFF});
    uint8_t sum = 0;

    packet[2] = uint8_t(packet.size() + 1);
    for (const uint8_t byte : packet) sum = uint8_t(sum + byte);
    packet.push_back(uint8_t(0 - sum));
    return packet;
}
