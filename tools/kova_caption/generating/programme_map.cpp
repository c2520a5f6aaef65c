// SPDX-License-Identifier: MIT
#include "generating/programme_map.h"

#include <algorithm>
#include <stdexcept>

namespace caption
{

using namespace encoding;

static const std::size_t g_mostServices = 16;

static void AddService(ByteString &body, const std::string &language, unsigned kindAndNumber)
{
    body.insert(body.end(), language.begin(), language.end());
    // Not easy to read, for a wide picture; reserved bits are set.
    body = body + Bytes({kindAndNumber, 0x7F, 0xFF});
}

// [A/65 6.9.2]
ByteString ServiceDescriptor(const Recording &recording)
{
    std::size_t count = 0;
    ByteString body;

    for (unsigned field = 0; field < 2; ++field) {
        const bool used =
            std::any_of(recording.frames.begin(), recording.frames.end(),
                        [field](const Frame &frame) { return frame.fields[field].has_value(); });
        if (!used) continue;
        AddService(body, recording.language, 0x7E | field);
        ++count;
    }
    for (const unsigned service : recording.services) {
        if (count == g_mostServices) break;
        AddService(body, recording.language, 0xC0 | service);
        ++count;
    }
    return Bytes({0xE0 | unsigned(count)}) + body;
}

// Of sections. [ISO/IEC 13818-1, annex A]
static std::uint32_t Crc(const ByteString &bytes)
{
    std::uint32_t crc = 0xFFFFFFFF;

    for (const std::uint8_t byte : bytes) {
        crc ^= std::uint32_t(byte) << 24;
        for (int bit = 0; bit < 8; ++bit) crc = crc << 1 ^ (crc & 0x80000000 ? 0x04C11DB7 : 0);
    }
    return crc;
}

// Twelve bits, below four others.
static std::size_t Length(const std::uint8_t *at)
{
    return std::size_t(at[0] & 0x0F) << 8 | at[1];
}

static void SetLength(std::uint8_t *at, std::size_t length)
{
    at[0] = std::uint8_t((at[0] & 0xF0) | length >> 8);
    at[1] = std::uint8_t(length);
}

void AnnounceServices(std::uint8_t *packet, const ByteString &descriptor)
{
    const std::size_t header = 5; // with the pointer before the section
    const std::size_t crcSize = 4;

    if ((packet[1] & 0x1F) != 0x10 || packet[2] != 0) return;
    const std::uint8_t *const old = packet + header;
    ByteString section(old, old + 3 + Length(old + 1) - crcSize);
    const std::size_t info =
        12 + Length(old + 10) + 3; // where the first stream's descriptors have their length
    const ByteString added = Bytes({0x86, unsigned(descriptor.size())}) + descriptor;

    SetLength(&section[info], Length(&section[info]) + added.size());
    section.insert(section.begin() + std::ptrdiff_t(info) + 2, added.begin(), added.end());
    SetLength(&section[1], section.size() + crcSize - 3);
    const std::uint32_t crc = Crc(section);
    section = section + Bytes({crc >> 24, crc >> 16 & 0xFF, crc >> 8 & 0xFF, crc & 0xFF});
    if (section.size() > g_transportPacket - header) throw std::length_error("the programme map has no room");
    std::fill(packet + header, packet + g_transportPacket, 0xFF);
    std::copy(section.begin(), section.end(), packet + header);
}

} // namespace caption
