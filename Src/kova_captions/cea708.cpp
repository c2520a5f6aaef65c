// SPDX-License-Identifier: MIT
// The input of a caption service: elements and their lengths, the buffer, delays. [708 7.1, 8.9, 79.102(s)]
#include "cea708.h"

#include "characters.h"
#include "events.h"

#include <string.h>

namespace captions
{

struct Length {
    uint8_t first, last;
    uint8_t bytes;
};

// By the first byte. [708 7.1.1 to 7.1.5]
static const Length kLengths[] = {
    {0x00, 0x0F, 1}, // C0
    {0x11, 0x17, 2}, // C0
    {0x18, 0x1F, 3}, // C0, 18 is P16
    {0x20, 0x7F, 1}, // G0
    {0x80, 0x87, 1}, // CW0-CW7
    {0x88, 0x8D, 2}, // CLW, DSW, HDW, TGW, DLW, DLY
    {0x8E, 0x8F, 1}, // DLC, RST
    {0x90, 0x90, 3}, // SPA
    {0x91, 0x91, 4}, // SPC
    {0x92, 0x92, 3}, // SPL
    {0x93, 0x96, 1}, // unassigned
    {0x97, 0x97, 5}, // SWA
    {0x98, 0x9F, 7}, // DF0-DF7
    {0xA0, 0xFF, 1}, // G1
};

// By the byte after EXT1; C3 90 to 9F say their length themselves. [708 7.1.6 to 7.1.11]
static const Length kExtendedLengths[] = {
    {0x00, 0x07, 2}, // C2
    {0x08, 0x0F, 3}, // C2
    {0x10, 0x17, 4}, // C2
    {0x18, 0x1F, 5}, // C2
    {0x20, 0x7F, 2}, // G2
    {0x80, 0x87, 6}, // C3
    {0x88, 0x8F, 7}, // C3
    {0xA0, 0xFF, 2}, // G3
};

constexpr uint8_t kExtended = 0x10, kDelayCancel = 0x8E, kReset = 0x8F;

template <int count> static int Find(const Length (&lengths)[count], uint8_t code)
{
    for (const Length &length : lengths) {
        if (code >= length.first && code <= length.last) return length.bytes;
    }
    return 0;
}

static bool IsVariable(const uint8_t *bytes, int count)
{
    return count >= 2 && bytes[0] == kExtended && bytes[1] >= 0x90 && bytes[1] <= 0x9F;
}

// The length that the bytes announce, or 0 if there are too few to know.
static int AnnouncedLength(const uint8_t *bytes, int count, bool korean)
{
    if (bytes[0] == kExtended) {
        if (count < 2) return 0;
        if (!IsVariable(bytes, count)) return Find(kExtendedLengths, bytes[1]);
        return count < 3 ? 0 : 3 + (bytes[2] & 0x1F);
    }
    if (korean && IsKoreanByte(bytes[0])) {
        if (count < 2) return 0;
        return IsKoreanByte(bytes[1]) ? 2 : 1;
    }
    return Find(kLengths, bytes[0]);
}

int ElementLength(const uint8_t *bytes, int count, bool korean)
{
    const int length = count > 0 ? AnnouncedLength(bytes, count, korean) : 0;
    return length <= count ? length : 0;
}

// ------------------------------------------------------------------------------------------------------------ Buffer

static bool IsDelayed(const Service &service)
{
    return service.delay_until != KOVA_CAPTIONS_NO_TIME;
}

static void Remove(Service &service, int length)
{
    service.size = uint8_t(service.size - length);
    service.scanned = uint8_t(service.scanned > length ? service.scanned - length : 0);
    memmove(service.buffer, service.buffer + length, service.size);
}

// Takes elements out until a delay holds the rest.
static void Drain(State &state, Service &service)
{
    while (!IsDelayed(service)) {
        const int length = ElementLength(service.buffer, service.size, service.korean);
        if (length == 0) break;
        uint8_t element[kLongestElement];
        memcpy(element, service.buffer, unsigned(length));
        Remove(service, length);
        Execute(state, service, element, length);
    }
}

void EndDelay(State &state, Service &service)
{
    service.delay_until = KOVA_CAPTIONS_NO_TIME;
    Touch(state, service.status, false);
    Drain(state, service);
}

// While a delay holds the buffer, cancel and reset act when they arrive: what is not yet scanned is looked through
// element by element. [708 8.9]
static void Scan(State &state, Service &service)
{
    while (IsDelayed(service)) {
        const uint8_t *const element = service.buffer + service.scanned;
        const int length = ElementLength(element, service.size - service.scanned, service.korean);
        if (length == 0) return;
        const uint8_t code = element[0];
        if (code == kDelayCancel || code == kReset) {
            // It came last, so that it leaves the end of the buffer.
            service.size = service.scanned;
            Execute(state, service, &code, 1);
            if (code == kDelayCancel) EndDelay(state, service);
            return;
        }
        service.scanned = uint8_t(service.scanned + length);
    }
}

static void TakeByte(State &state, Service &service, uint8_t byte)
{
    // Most bytes are characters that nothing holds back.
    const bool ascii = byte >= 0x20 && byte < 0x80;
    if (ascii && service.size == 0 && !IsDelayed(service)) return Execute(state, service, &byte, 1);
    if (service.size == kBuffer) {
        ++state.counters.full_buffers;
        EndRun(state, service.run);
        Report(state, service.number, KOVA_CAPTIONS_EVENT_BUFFER_FULL);
        EndDelay(state, service);
    }
    service.buffer[service.size++] = byte;
    if (!IsDelayed(service)) Drain(state, service);
    Scan(state, service);
}

// Drops an element that is not whole. [708 5.2]
static void DropRest(State &state, Service &service)
{
    const int rest = service.size - service.scanned;
    if (rest == 0) return;
    service.size = service.scanned;
    ++state.counters.cut_elements;
    Report(state, service.number, KOVA_CAPTIONS_EVENT_CUT_ELEMENT, {unsigned(rest)});
}

void DecodeBlock(State &state, Service &service, const uint8_t *bytes, int count)
{
    service.used = true;
    for (int i = 0; i < count; ++i) TakeByte(state, service, bytes[i]);
    // A variable command stays within a block. [708 7.1.11]
    const uint8_t *const rest = service.buffer + service.scanned;
    if (IsVariable(rest, service.size - service.scanned)) DropRest(state, service);
}

void EndBlocks(State &state, Service &service)
{
    DropRest(state, service);
    SettleFlash(state, service);
}

} // namespace captions
