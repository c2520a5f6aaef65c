// SPDX-License-Identifier: MIT
// A view of bytes that is read from its start, and what the carriers share.
#ifndef KOVA_CAPTIONS_BYTES_H
#define KOVA_CAPTIONS_BYTES_H

#include <kova/kova_captions_carriage.h>

namespace captions
{

// Reading past the end gives zeros; whether there is enough is asked before, by size.
struct Bytes {
    const uint8_t *data;
    size_t size;

    uint8_t At(size_t index) const
    {
        return index < size ? data[index] : uint8_t(0);
    }

    uint32_t Word16(size_t index) const
    {
        return uint32_t(At(index)) << 8 | At(index + 1);
    }

    uint32_t Word32(size_t index) const
    {
        return Word16(index) << 16 | Word16(index + 2);
    }

    Bytes From(size_t index) const
    {
        return index < size ? Bytes{data + index, size - index} : Bytes{data + size, 0};
    }

    Bytes First(size_t length) const
    {
        return {data, length < size ? length : size};
    }
};

inline bool IsUsable(const uint8_t *data, size_t size)
{
    return data || size == 0;
}

inline bool IsUsable(const KovaCaptionsTriplets *triplets)
{
    return triplets && triplets->count <= triplets->capacity && (triplets->bytes || triplets->capacity == 0);
}

void Append(uint8_t first, uint8_t second, uint8_t third, KovaCaptionsTriplets *triplets);

// Appends `count` triplets, or as many whole ones as there are, and counts an error for what is missing.
void AppendAll(Bytes bytes, size_t count, KovaCaptionsTriplets *triplets);

void ReadCcData(Bytes bytes, KovaCaptionsTriplets *triplets);
void ReadUserData(Bytes bytes, KovaCaptionsTriplets *triplets);
void ReadSeiPayload(Bytes bytes, KovaCaptionsTriplets *triplets);
bool ReadCdp(Bytes bytes, KovaCaptionsTriplets *triplets, KovaCaptionsCdp *cdp);

// One service of the descriptor's loop and of the packet's: six bytes.
constexpr size_t SERVICE_BYTES = 6;
KovaCaptionsServiceInfo ReadService(Bytes bytes);

} // namespace captions

#endif
