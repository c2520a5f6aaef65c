// SPDX-License-Identifier: MIT
#include "generating/encoder708.h"

#include <stdexcept>

namespace caption::encoding
{

static const std::size_t g_blockSize = 31;

static void Demand(bool condition)
{
    if (!condition) throw std::invalid_argument("CEA-708 has no room for this");
}

ByteString Byte(unsigned byte)
{
    return {std::uint8_t(byte)};
}

ByteString Bytes(std::initializer_list<unsigned> bytes)
{
    ByteString all;

    for (const unsigned byte : bytes) all.push_back(std::uint8_t(byte));
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
    Demand(bytes.size() <= g_blockSize);
    const auto size = unsigned(bytes.size());
    return (service < 7 ? Bytes({service << 5 | size}) : Bytes({0xE0 | size, service})) + bytes;
}

ByteString Blocks(unsigned service, const ByteString &bytes)
{
    ByteString blocks;

    for (std::size_t i = 0; i < bytes.size(); i += g_blockSize) {
        const std::size_t end = i + g_blockSize < bytes.size() ? i + g_blockSize : bytes.size();
        blocks = blocks + Block(service, ByteString(bytes.begin() + std::ptrdiff_t(i),
                                                    bytes.begin() + std::ptrdiff_t(end)));
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
    for (std::size_t i = 0; i < packet.size(); i += 2) {
        triplets = triplets + ByteString{std::uint8_t(i == 0 ? 0xFF : 0xFE), packet[i], packet[i + 1]};
    }
    return triplets;
}

// Commands by their lengths, unassigned ones included. [CTA-708 7.1]
std::size_t ElementSize(const ByteString &bytes, std::size_t at)
{
    const unsigned code = bytes.at(at);
    const unsigned next = at + 1 < bytes.size() ? bytes[at + 1] : 0;

    if (code == EXT1) {
        if (next < 0x20) return 2 + next / 8;
        if (next >= 0x80 && next <= 0x87) return 6;
        if (next >= 0x88 && next <= 0x8F) return 7;
        if (next >= 0x90 && next <= 0x9F) return 3 + (bytes.at(at + 2) & 0x1Fu);
        return 2;
    }
    if (code < 0x20) return code < 0x10 ? 1 : code < 0x18 ? 2 : 3;
    if (code < 0x88 || code > 0x9F) return 1;
    if (code <= DLY) return 2;
    if (code < 0x90 || (code >= 0x93 && code <= 0x96)) return 1;
    if (code == 0x91) return 4;
    if (code == 0x97) return 5;
    return code >= 0x98 ? 7 : 3;
}

std::vector<ByteString> BlockParts(const ByteString &bytes)
{
    std::vector<ByteString> parts;

    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t size = ElementSize(bytes, at);
        Demand(size <= g_blockSize && at + size <= bytes.size());
        if (parts.empty() || parts.back().size() + size > g_blockSize) parts.emplace_back();
        parts.back().insert(parts.back().end(), bytes.begin() + std::ptrdiff_t(at),
                            bytes.begin() + std::ptrdiff_t(at + size));
        at += size;
    }
    return parts;
}

ByteString Cdp(unsigned sequence, const ByteString &triplets)
{
    const auto count = unsigned(triplets.size()) / 3;
    ByteString packet =
        Bytes({0x96, 0x69, 0, 0x4F, 0x43, sequence >> 8, sequence & 0xFF, 0x72, 0xE0 | count}) + triplets +
        Bytes({0x74, sequence >> 8, sequence & 0xFF});
    std::uint8_t sum = 0;

    packet[2] = std::uint8_t(packet.size() + 1);
    for (const std::uint8_t byte : packet) sum = std::uint8_t(sum + byte);
    packet.push_back(std::uint8_t(0 - sum));
    return packet;
}

} // namespace caption::encoding
