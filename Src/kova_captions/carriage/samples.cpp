// SPDX-License-Identifier: MIT
// Samples of the caption tracks of MP4 and QuickTime files.
#include "bytes.h"

#include <string.h>

namespace captions
{

constexpr uint32_t BoxType(char a, char b, char c, char d)
{
    return uint32_t(a) << 24 | uint32_t(b) << 16 | uint32_t(c) << 8 | uint32_t(d);
}

constexpr size_t BOX_HEADER = 8;

static bool StartsWithBox(Bytes sample)
{
    const uint32_t size = sample.Word32(0);

    return sample.size >= BOX_HEADER && size >= BOX_HEADER && size <= sample.size;
}

// The sum of what follows is what a box at the front takes; a damaged one takes the rest.
static size_t BoxSize(Bytes rest)
{
    const uint32_t size = rest.Word32(0);

    return size < BOX_HEADER || size > rest.size ? rest.size : size;
}

static Bytes BoxBody(Bytes rest)
{
    return rest.First(BoxSize(rest)).From(BOX_HEADER);
}

static uint32_t CountDamage(Bytes sample)
{
    uint32_t damage = 0;

    for (Bytes rest = sample; rest.size > 0; rest = rest.From(BoxSize(rest))) {
        const uint32_t type = rest.Word32(4);
        const bool isPairs = type == BoxType('c', 'd', 'a', 't') || type == BoxType('c', 'd', 't', '2');
        const bool isDamaged = rest.size < BOX_HEADER || rest.Word32(0) != BoxSize(rest);
        if (isDamaged || (isPairs && BoxBody(rest).size % 2)) damage++;
    }
    return damage;
}

namespace
{

// Walks the pairs of one field through all of its boxes.
class Pairs
{
public:
    Pairs(Bytes sample, uint32_t type) : m_rest(sample), m_type(type)
    {
    }

    bool Next(Bytes *pair)
    {
        while (m_pairs.size < 2) {
            if (m_rest.size == 0) return false;
            if (m_rest.Word32(4) == m_type) m_pairs = BoxBody(m_rest);
            m_rest = m_rest.From(BoxSize(m_rest));
        }
        *pair = m_pairs.First(2);
        m_pairs = m_pairs.From(2);
        return true;
    }

    void StartWith(Bytes pairs)
    {
        m_pairs = pairs;
    }

private:
    Bytes m_rest;
    Bytes m_pairs = {nullptr, 0};
    uint32_t m_type;
};

} // namespace

static void AppendPair(uint8_t field, bool isThere, Bytes pair, KovaCaptionsTriplets *triplets)
{
    constexpr uint8_t VALID = 0xFC, FILLER = 0xF8;

    if (isThere) Append(uint8_t(VALID | field), pair.At(0), pair.At(1), triplets);
    if (!isThere) Append(uint8_t(FILLER | field), 0x80, 0x80, triplets);
}

static void AppendFrames(Pairs first, Pairs second, KovaCaptionsTriplets *triplets)
{
    for (;;) {
        Bytes firstPair = {nullptr, 0}, secondPair = {nullptr, 0};
        const bool hasFirst = first.Next(&firstPair);
        const bool hasSecond = second.Next(&secondPair);
        if (!hasFirst && !hasSecond) return;
        AppendPair(0, hasFirst, firstPair, triplets);
        AppendPair(1, hasSecond, secondPair, triplets);
    }
}

} // namespace captions

using namespace captions;

int Kova_Captions_ReadC608(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets)
{
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const Bytes sample = {data, size};
    const size_t before = triplets->count;
    const bool hasBoxes = StartsWithBox(sample);
    const Bytes boxes = hasBoxes ? sample : Bytes{data, 0};
    Pairs first(boxes, BoxType('c', 'd', 'a', 't'));
    const Pairs second(boxes, BoxType('c', 'd', 't', '2'));
    if (!hasBoxes) first.StartWith(sample);
    AppendFrames(first, second, triplets);
    triplets->errors += hasBoxes ? CountDamage(sample) : uint32_t(size % 2);
    return int(triplets->count - before);
}

int Kova_Captions_ReadC708(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets,
                           KovaCaptionsCdp *cdp)
{
    KovaCaptionsCdp unasked;
    // cppcheck-suppress uninitvar ; the next line clears it
    KovaCaptionsCdp *const result = cdp ? cdp : &unasked;

    memset(result, 0, sizeof *result);
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const Bytes sample = {data, size};
    const size_t before = triplets->count;
    if (!StartsWithBox(sample)) {
        if (size > 0 && !ReadCdp(sample, triplets, result)) triplets->errors++;
        return int(triplets->count - before);
    }
    for (Bytes rest = sample; rest.size > 0; rest = rest.From(BoxSize(rest))) {
        const bool isPacket = rest.Word32(4) == BoxType('c', 'c', 'd', 'p');
        const bool isDamaged = rest.size < BOX_HEADER || rest.Word32(0) != BoxSize(rest);
        if (isPacket && !ReadCdp(BoxBody(rest), triplets, result)) triplets->errors++;
        if (!isPacket && isDamaged) triplets->errors++;
    }
    return int(triplets->count - before);
}
