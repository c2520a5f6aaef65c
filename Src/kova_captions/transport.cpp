// SPDX-License-Identifier: MIT
// From triplets to line 21 pairs and DTVCC packets, and from packets to the blocks of each service.
#include "events.h"

namespace captions
{

// The second byte of an extended block header is a service number alone, 7 to 63.
static bool IsExtendedNumber(uint8_t header)
{
    return header >= 7 && header < kServices;
}

static void DecodeServiceBlock(State &state, unsigned number, const uint8_t *bytes, int count)
{
    state.activity.services_with_data |= uint64_t(1) << number;
    if (state.slot[number] == kNoSlot) return;
    DecodeBlock(state, state.services[state.slot[number]], bytes, count);
}

static void CountBadBlock(State &state, uint8_t header)
{
    ++state.counters.bad_service_blocks;
    Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_BAD_SERVICE_BLOCK, {header});
}

// CTA-708-E 6.2. A block that runs past the packet's end ends with it.
static void DecodeServiceBlocks(State &state, const uint8_t *bytes, int count)
{
    uint64_t met = 0;
    for (int at = 0; at < count;) {
        const uint8_t header = bytes[at++];
        unsigned number = header >> 5;
        int size = header & 0x1F;

        if (number == 0) break;
        if (size == 0) continue;
        if (number == 7) {
            if (at == count) {
                CountBadBlock(state, header);
                break;
            }
            const uint8_t extended = bytes[at++];
            if (!IsExtendedNumber(extended)) {
                CountBadBlock(state, extended);
                at += size;
                continue;
            }
            number = extended;
        }
        if (size > count - at) size = count - at;
        DecodeServiceBlock(state, number, bytes + at, size);
        met |= uint64_t(1) << number;
        at += size;
    }
    // An element does not cross the packet's end. [708 5.2]
    for (unsigned number = 0; met; ++number, met >>= 1) {
        if ((met & 1) && state.slot[number] != kNoSlot) EndBlocks(state, state.services[state.slot[number]]);
    }
}

// Uses what there is of the open packet.
static void DecodePacket(State &state)
{
    Packet &packet = state.packet;
    const int size = packet.size;

    ++state.counters.packets;
    packet.announced = 0;
    EndBlanking(state);
    DecodeServiceBlocks(state, packet.bytes + 1, size - 1);
}

static void TakeShortPacket(State &state)
{
    ++state.counters.short_packets;
    Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_SHORT_PACKET,
           {state.packet.size, state.packet.announced});
    DecodePacket(state);
}

void DropPacket(State &state)
{
    state.packet.size = state.packet.announced = 0;
}

// CTA-708-E 5.1, 8.9.5: what was lost may have been any service's.
static void TakeGap(State &state, uint8_t expected, uint8_t received)
{
    ++state.counters.sequence_gaps;
    DropPacket(state);
    EndAllRuns(state);
    Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_SEQUENCE_GAP, {expected, received});
    for (uint32_t i = 0; i < state.service_count; ++i) ResetService(state, state.services[i]);
}

static void StartPacket(State &state, uint8_t header)
{
    Packet &packet = state.packet;
    const uint8_t sequence = header >> 6, size_code = header & 0x3F;
    const uint8_t expected = (packet.sequence + 1) & 3;

    // Some encoders never count, and some send a packet twice: the same number again is no loss.
    if (packet.sequence != kNoSequence && sequence != expected && sequence != packet.sequence) {
        TakeGap(state, expected, sequence);
    } else if (packet.announced != 0) {
        TakeShortPacket(state);
    }
    packet.sequence = sequence;
    packet.size = 0;
    packet.announced = uint8_t(size_code == 0 ? kPacket : 2 * size_code);
}

static void AddToPacket(State &state, uint8_t first, uint8_t second)
{
    Packet &packet = state.packet;
    if (packet.announced == 0) {
        ++state.counters.stray_data;
        Report(state, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_EVENT_STRAY_DATA);
        return;
    }
    packet.bytes[packet.size++] = first;
    packet.bytes[packet.size++] = second;
    // Lengths are even, so that no packet ends with the first of two bytes.
    if (packet.size == packet.announced) DecodePacket(state);
}

void DecodeTriplet(State &state, const uint8_t *triplet)
{
    const bool valid = triplet[0] & 4;
    const int type = triplet[0] & 3;

    if (!valid) return;
    ++state.counters.triplets;
    if (type < 2) return DecodePair(state, type, triplet[1], triplet[2]);
    state.last_dtvcc = state.now;
    if (state.options.service_timeout > 0) ExpectChange(state, state.now + state.options.service_timeout);
    if (type == 3) StartPacket(state, triplet[1]);
    AddToPacket(state, triplet[1], triplet[2]);
}

} // namespace captions
