// SPDX-License-Identifier: MIT
// Caption distribution packets (SMPTE ST 334-2) and the ancillary packets around them.
#include "bytes.h"

#include <string.h>

namespace captions
{

enum Section : uint8_t {
    TIME_CODE_SECTION = 0x71,
    CC_DATA_SECTION = 0x72,
    SERVICE_SECTION = 0x73,
    FOOTER = 0x74,
    FIRST_FUTURE_SECTION = 0x75,
    LAST_FUTURE_SECTION = 0xEF
};

constexpr size_t HEADER_BYTES = 7;
constexpr size_t FOOTER_BYTES = 4;

// Two digits, the tens in as many bits as the mask has.
static uint8_t Decimal(uint8_t byte, unsigned tensMask)
{
    return uint8_t((byte >> 4 & tensMask) * 10 + (byte & 0x0F));
}

// Each section takes itself off the front of the packet, and is false if the packet ends in it.
static bool ReadTimeCode(Bytes *rest, KovaCaptionsCdp *cdp)
{
    constexpr size_t LENGTH = 5;

    if (rest->size < LENGTH) return false;
    cdp->has_time_code = 1;
    cdp->time_code.hours = Decimal(rest->At(1), 3);
    cdp->time_code.minutes = Decimal(rest->At(2), 7);
    cdp->second_field = rest->At(3) >> 7;
    cdp->time_code.seconds = Decimal(rest->At(3), 7);
    cdp->time_code.drop = rest->At(4) >> 7;
    cdp->time_code.frames = Decimal(rest->At(4), 3);
    *rest = rest->From(LENGTH);
    return true;
}

static bool ReadTriplets(Bytes *rest, KovaCaptionsTriplets *triplets)
{
    const size_t count = rest->At(1) & 0x1F;
    const size_t there = rest->From(2).size / 3;

    if (rest->size < 2) return false;
    AppendAll(rest->From(2), count < there ? count : there, triplets);
    *rest = rest->From(2 + 3 * count);
    return count <= there;
}

static bool ReadServices(Bytes *rest, KovaCaptionsCdp *cdp)
{
    constexpr size_t LENGTH = 1 + SERVICE_BYTES;
    const unsigned count = rest->At(1) & 0x0F;

    if (rest->size < 2) return false;
    cdp->has_services = 1;
    cdp->services_start = rest->At(1) >> 6 & 1;
    cdp->services_change = rest->At(1) >> 5 & 1;
    cdp->services_complete = rest->At(1) >> 4 & 1;
    *rest = rest->From(2);
    for (unsigned i = 0; i < count; i++, *rest = rest->From(LENGTH)) {
        if (rest->size < LENGTH) return false;
        // The byte before the six repeats the number that is among them.
        if (cdp->services.count < KOVA_CAPTIONS_MAX_SERVICES) {
            cdp->services.services[cdp->services.count++] = ReadService(rest->From(1));
        }
    }
    return true;
}

static bool SkipSection(Bytes *rest)
{
    const size_t length = 2 + size_t(rest->At(1));
    const bool isWhole = rest->size >= length;

    *rest = rest->From(length);
    return isWhole;
}

// Reads sections up to the footer and leaves it in front; false if the packet ends, or goes wrong, before it.
static bool ReadSections(Bytes *rest, KovaCaptionsTriplets *triplets, KovaCaptionsCdp *cdp)
{
    while (rest->size > 0) {
        const uint8_t section = rest->At(0);
        bool isWhole = false;

        if (section == FOOTER) return rest->size >= FOOTER_BYTES;
        if (section == TIME_CODE_SECTION) {
            isWhole = ReadTimeCode(rest, cdp);
        } else if (section == CC_DATA_SECTION) {
            isWhole = ReadTriplets(rest, triplets);
        } else if (section == SERVICE_SECTION) {
            isWhole = ReadServices(rest, cdp);
        } else if (section >= FIRST_FUTURE_SECTION && section <= LAST_FUTURE_SECTION) {
            isWhole = SkipSection(rest);
        }
        if (!isWhole) return false;
    }
    return false;
}

static bool IsSumZero(Bytes bytes)
{
    uint8_t sum = 0;

    for (size_t i = 0; i < bytes.size; i++) sum = uint8_t(sum + bytes.data[i]);
    return sum == 0;
}

bool ReadCdp(Bytes bytes, KovaCaptionsTriplets *triplets, KovaCaptionsCdp *cdp)
{
    const size_t length = bytes.At(2);

    memset(cdp, 0, sizeof *cdp);
    if (bytes.Word16(0) != 0x9669 || length < HEADER_BYTES || length > bytes.size) return false;
    const Bytes packet = bytes.First(length);
    const unsigned rate = packet.At(3) >> 4;
    cdp->rate = rate <= KOVA_CAPTIONS_RATE_60 ? KovaCaptionsFrameRate(rate) : KOVA_CAPTIONS_RATE_UNKNOWN;
    cdp->caption_service_active = packet.At(4) >> 1 & 1;
    cdp->sequence = uint16_t(packet.Word16(5));

    // The flags of the header only repeat which sections follow.
    Bytes rest = packet.From(HEADER_BYTES);
    const bool hasFooter = ReadSections(&rest, triplets, cdp);
    cdp->wrong_sequence = hasFooter && rest.Word16(1) != cdp->sequence;
    cdp->wrong_checksum = !hasFooter || !IsSumZero(packet);
    triplets->errors += uint32_t(cdp->wrong_sequence + cdp->wrong_checksum);
    return true;
}

// The first byte says which field in its bit 7 (1: field 1), and which line.
static void ReadLine21(Bytes words, KovaCaptionsTriplets *triplets)
{
    constexpr uint8_t VALID = 0xFC;

    if (words.size < 3) {
        triplets->errors++;
        return;
    }
    Append(uint8_t(VALID | (words.At(0) & 0x80 ? 0 : 1)), words.At(1), words.At(2), triplets);
}

} // namespace captions

using namespace captions;

int Kova_Captions_ReadCdp(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets,
                          KovaCaptionsCdp *cdp)
{
    KovaCaptionsCdp unasked;
    // cppcheck-suppress uninitvar ; the next line clears it
    KovaCaptionsCdp *const result = cdp ? cdp : &unasked;

    memset(result, 0, sizeof *result);
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const size_t before = triplets->count;
    if (!ReadCdp({data, size}, triplets, result)) return -1;
    return int(triplets->count - before);
}

int Kova_Captions_ReadAncillary(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets,
                                KovaCaptionsCdp *cdp)
{
    constexpr uint32_t CDP_PACKET = 0x6101, LINE_21_PACKET = 0x6102;
    KovaCaptionsCdp unasked;
    // cppcheck-suppress uninitvar ; the next line clears it
    KovaCaptionsCdp *const result = cdp ? cdp : &unasked;

    memset(result, 0, sizeof *result);
    if (!IsUsable(data, size) || !IsUsable(triplets)) return -1;
    const Bytes packet = {data, size};
    const size_t count = packet.At(2), before = triplets->count;
    if (size < 3 + count) return -1;
    const Bytes words = packet.From(3).First(count);
    if (packet.Word16(0) == CDP_PACKET && !ReadCdp(words, triplets, result)) return -1;
    if (packet.Word16(0) == LINE_21_PACKET) ReadLine21(words, triplets);
    return int(triplets->count - before);
}
