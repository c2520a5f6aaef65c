// SPDX-License-Identifier: MIT
// Triplets, cc_data() and the user data structure that carries it.
#include "bytes.h"

#include <string.h>

namespace captions
{

void Append(uint8_t first, uint8_t second, uint8_t third, KovaCaptionsTriplets *triplets)
{
    if (triplets->count == triplets->capacity) {
        triplets->dropped++;
        return;
    }
    uint8_t *const triplet = triplets->bytes + 3 * triplets->count++;
    triplet[0] = first;
    triplet[1] = second;
    triplet[2] = third;
}

void AppendAll(Bytes bytes, size_t count, KovaCaptionsTriplets *triplets)
{
    const size_t whole = bytes.size / 3 < count ? bytes.size / 3 : count;

    for (size_t i = 0; i < whole; i++) {
        Append(bytes.data[3 * i], bytes.data[3 * i + 1], bytes.data[3 * i + 2], triplets);
    }
    if (whole < count) triplets->errors++;
}

void ReadCcData(Bytes bytes, KovaCaptionsTriplets *triplets)
{
    const uint8_t flags = bytes.At(0);

    if (bytes.size < 2) {
        triplets->errors++;
        return;
    }
    if (flags & 0x40) AppendAll(bytes.From(2), flags & 0x1F, triplets);
}

void ReadUserData(Bytes bytes, KovaCaptionsTriplets *triplets)
{
    static const char IDENTIFIER_AND_TYPE[] = "GA94\x03";
    const size_t length = sizeof IDENTIFIER_AND_TYPE - 1;

    if (bytes.size < length || memcmp(bytes.data, IDENTIFIER_AND_TYPE, length) != 0) return;
    ReadCcData(bytes.From(length), triplets);
}

} // namespace captions

using namespace captions;

int Kova_Captions_ReadTriplets(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets)
{
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const size_t before = triplets->count;
    AppendAll({data, size}, (size + 2) / 3, triplets);
    return int(triplets->count - before);
}

int Kova_Captions_ReadCcData(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets)
{
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const size_t before = triplets->count;
    ReadCcData({data, size}, triplets);
    return int(triplets->count - before);
}

int Kova_Captions_ReadUserData(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets)
{
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const size_t before = triplets->count;
    ReadUserData({data, size}, triplets);
    return int(triplets->count - before);
}
