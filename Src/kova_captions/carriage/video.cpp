// SPDX-License-Identifier: MIT
// User data and SEI messages in coded video.
#include "bytes.h"

#include <string.h>

namespace captions
{

// From the country code to the end of the longest cc_data().
constexpr size_t LONGEST_PAYLOAD = 3 + 5 + 2 + 3 * KOVA_CAPTIONS_CC_DATA_TRIPLETS;

// The index of the next 00 00 01 from `start` on, or the size if there is none.
static size_t FindStartCode(Bytes bytes, size_t start)
{
    for (size_t i = start + 2; i < bytes.size;) {
        // A byte above 01 is in no start code, so neither are the two after it the end of one.
        if (bytes.data[i] > 1) {
            i += 3;
        } else if (bytes.data[i] == 1 && bytes.data[i - 1] == 0 && bytes.data[i - 2] == 0) {
            return i - 2;
        } else {
            i++;
        }
    }
    return bytes.size;
}

void ReadSeiPayload(Bytes bytes, KovaCaptionsTriplets *triplets)
{
    static const uint8_t USA_AND_ATSC[] = {0xB5, 0x00, 0x31};

    if (bytes.size < sizeof USA_AND_ATSC || memcmp(bytes.data, USA_AND_ATSC, sizeof USA_AND_ATSC) != 0)
        return;
    ReadUserData(bytes.From(sizeof USA_AND_ATSC), triplets);
}

namespace
{

// The bytes of a NAL unit without the emulation prevention bytes (00 00 03 gives 00 00).
class Payload
{
public:
    explicit Payload(Bytes nal) : m_nal(nal)
    {
    }

    bool Read(uint8_t *byte)
    {
        if (m_zeros >= 2 && m_next < m_nal.size && m_nal.data[m_next] == 3) {
            m_next++;
            m_zeros = 0;
        }
        if (m_next >= m_nal.size) return false;
        *byte = m_nal.data[m_next++];
        m_zeros = *byte == 0 ? m_zeros + 1 : 0;
        return true;
    }

    // A payload's type and its size are each a run of FF, 255 each, and a last byte.
    bool ReadNumber(size_t *number)
    {
        uint8_t byte = 0;

        *number = 0;
        do {
            if (!Read(&byte)) return false;
            *number += byte;
        } while (byte == 0xFF);
        return true;
    }

private:
    Bytes m_nal;
    size_t m_next = 0;
    unsigned m_zeros = 0;
};

} // namespace

static void ReadSeiMessages(Bytes bytes, KovaCaptionsTriplets *triplets)
{
    constexpr size_t USER_DATA_REGISTERED = 4;
    Payload payload(bytes);
    size_t type = 0, size = 0;

    // The trailing bits of the NAL unit look like the type of a message without a size.
    while (payload.ReadNumber(&type) && payload.ReadNumber(&size)) {
        uint8_t start[LONGEST_PAYLOAD], byte = 0;
        size_t kept = 0;

        for (size_t i = 0; i < size && payload.Read(&byte); i++) {
            if (kept < sizeof start) start[kept++] = byte;
        }
        if (type == USER_DATA_REGISTERED) ReadSeiPayload({start, kept}, triplets);
    }
}

static void ReadNalUnit(KovaCaptionsCoding coding, Bytes nal, KovaCaptionsTriplets *triplets)
{
    const unsigned type = coding == KOVA_CAPTIONS_H264 ? nal.At(0) & 0x1F : nal.At(0) >> 1 & 0x3F;

    if (coding == KOVA_CAPTIONS_H264 && type == 6) ReadSeiMessages(nal.From(1), triplets);
    if (coding == KOVA_CAPTIONS_H265 && (type == 39 || type == 40)) ReadSeiMessages(nal.From(2), triplets);
}

static bool IsCoding(KovaCaptionsCoding coding)
{
    return coding == KOVA_CAPTIONS_H264 || coding == KOVA_CAPTIONS_H265;
}

} // namespace captions

using namespace captions;

int Kova_Captions_ReadMpeg2(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets)
{
    constexpr uint8_t USER_DATA_START = 0xB2;

    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const Bytes video = {data, size};
    const size_t before = triplets->count;
    for (size_t start = FindStartCode(video, 0); start < size;) {
        const size_t next = FindStartCode(video, start + 3);
        if (video.At(start + 3) == USER_DATA_START) ReadUserData(video.First(next).From(start + 4), triplets);
        start = next;
    }
    return int(triplets->count - before);
}

int Kova_Captions_ReadSeiPayload(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets)
{
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const size_t before = triplets->count;
    ReadSeiPayload({data, size}, triplets);
    return int(triplets->count - before);
}

int Kova_Captions_ReadNalUnit(KovaCaptionsCoding coding, const uint8_t *data, size_t size,
                              KovaCaptionsTriplets *triplets)
{
    if (!IsCoding(coding) || !IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const size_t before = triplets->count;
    ReadNalUnit(coding, {data, size}, triplets);
    return int(triplets->count - before);
}

int Kova_Captions_ReadAnnexB(KovaCaptionsCoding coding, const uint8_t *data, size_t size,
                             KovaCaptionsTriplets *triplets)
{
    if (!IsCoding(coding) || !IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const Bytes video = {data, size};
    const size_t before = triplets->count;
    for (size_t start = FindStartCode(video, 0); start < size;) {
        const size_t next = FindStartCode(video, start + 3);
        ReadNalUnit(coding, video.First(next).From(start + 3), triplets);
        start = next;
    }
    return int(triplets->count - before);
}

int Kova_Captions_ReadLengthPrefixed(KovaCaptionsCoding coding, unsigned lengthSize, const uint8_t *data,
                                     size_t size, KovaCaptionsTriplets *triplets)
{
    if (!IsCoding(coding) || lengthSize < 1 || lengthSize > 4) return -1;
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const size_t before = triplets->count;
    for (Bytes rest = {data, size}; rest.size > 0;) {
        const size_t length = rest.Word32(0) >> (32 - 8 * lengthSize);
        const size_t there = rest.size > lengthSize ? rest.size - lengthSize : 0;
        if (rest.size < lengthSize || length > there) triplets->errors++;
        ReadNalUnit(coding, rest.From(lengthSize).First(length), triplets);
        rest = rest.From(lengthSize).From(length);
    }
    return int(triplets->count - before);
}
