// SPDX-License-Identifier: MIT
// A list of triplets that a test can write down and compare.
#ifndef KOVA_TESTS_CAPTIONS_TRIPLET_LIST_H
#define KOVA_TESTS_CAPTIONS_TRIPLET_LIST_H

#include "generating/bytes.h"
#include "kova/kova_captions_carriage.h"

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

using caption::encoding::ByteString;
using caption::encoding::operator+;

// Bytes in hexadecimal, blanks between them as the writer likes: Hex("fc 94 20").
inline ByteString Hex(const char *text)
{
    ByteString bytes;
    unsigned byte = 0;
    int read = 0;

    for (; sscanf(text, " %2x%n", &byte, &read) == 1; text += read) bytes.push_back(uint8_t(byte));
    return bytes;
}

inline std::string ToHex(const uint8_t *bytes, size_t count)
{
    std::string text;

    for (size_t i = 0; i < count; i++) {
        char byte[4];
        snprintf(byte, sizeof byte, "%02x", unsigned(bytes[i]));
        text += (i == 0 ? "" : i % 3 == 0 ? "  " : " ") + std::string(byte);
    }
    return text;
}

// Owns the room of a KovaCaptionsTriplets. The room is exactly as large as stated, so that the sanitizers see what
// goes beyond it.
class TripletList
{
public:
    explicit TripletList(size_t capacity = 100) : m_room(3 * capacity)
    {
        m_list.bytes = m_room.data();
        m_list.capacity = capacity;
    }

    TripletList(const TripletList &) = delete;
    TripletList &operator=(const TripletList &) = delete;

    KovaCaptionsTriplets *operator&()
    {
        return &m_list;
    }

    const KovaCaptionsTriplets *operator->() const
    {
        return &m_list;
    }

    // "fc 94 20  fd 80 80"
    std::string Text() const
    {
        return ToHex(m_list.bytes, 3 * m_list.count);
    }

private:
    std::vector<uint8_t> m_room;
    KovaCaptionsTriplets m_list = {};
};

#endif
