// SPDX-License-Identifier: MIT
// Extended data services in field 2. [608 9]
#include "characters.h"
#include "events.h"

#include <string.h>

namespace captions
{

void DropExtendedPacket(State &state)
{
    ExtendedData &extended = state.extended;
    if (extended.active == kNoClass) return;
    ++state.counters.xds_errors;
    extended.packets[extended.active].open = false;
    extended.active = kNoClass;
}

// --------------------------------------------------------------------------------------------------------- Content

static void TakeText(State &state, const ExtendedPacket &packet, uint8_t event, char (&text)[100])
{
    char found[sizeof text] = {};
    uint16_t characters[sizeof packet.data] = {};
    int size = 0;

    for (int i = 0; i < packet.count; ++i) {
        characters[i] = BasicCharacter(packet.data[i]);
        size += ToUtf8(characters[i], found + size);
    }
    if (memcmp(text, found, sizeof text) == 0) return;
    memcpy(text, found, sizeof text);
    ReportText(state, KOVA_CAPTIONS_XDS, event, characters, packet.count);
    state.program.revision = ++state.revision;
}

static void TakeName(State &state, const ExtendedPacket &packet)
{
    TakeText(state, packet, KOVA_CAPTIONS_EVENT_PROGRAM_NAME, state.program.name);
}

static void TakeNetwork(State &state, const ExtendedPacket &packet)
{
    TakeText(state, packet, KOVA_CAPTIONS_EVENT_NETWORK_NAME, state.program.network);
}

static void TakeCallLetters(State &state, const ExtendedPacket &packet)
{
    TakeText(state, packet, KOVA_CAPTIONS_EVENT_CALL_LETTERS, state.program.call_letters);
}

// Minute, hour, day, month, each with bit 6 set.
static void TakeStart(State &state, const ExtendedPacket &packet)
{
    KovaCaptionsProgram &program = state.program;
    if (packet.count < 4) return;

    const uint8_t minute = packet.data[0] & 0x3F, hour = packet.data[1] & 0x1F;
    const uint8_t day = packet.data[2] & 0x1F, month = packet.data[3] & 0x0F;
    const bool possible = minute < 60 && hour < 24 && day >= 1 && month >= 1 && month <= 12;
    const bool same = minute == program.start_minute && hour == program.start_hour &&
                      day == program.start_day && month == program.start_month;
    if (!possible || same) return;
    program.start_minute = minute;
    program.start_hour = hour;
    program.start_day = day;
    program.start_month = month;
    Report(state, KOVA_CAPTIONS_XDS, KOVA_CAPTIONS_EVENT_PROGRAM_START, {month, day, hour, minute});
    program.revision = ++state.revision;
}

// Bits 6 down: 1 D/a2 a1 a0 r2 r1 r0, 1 V S L/a3 g2 g1 g0. [608 9.5.1.5]
static void TakeAdvisory(State &state, const ExtendedPacket &packet)
{
    KovaCaptionsProgram &program = state.program;
    if (packet.count < 2) return;

    const uint8_t first = packet.data[0], second = packet.data[1];
    const bool a0 = first & 0x08, a1 = first & 0x10, a2 = first & 0x20, a3 = second & 0x08;
    const bool us_tv = a0 && !a1;
    uint8_t system = KOVA_CAPTIONS_RATING_NONE, rating = second & 7;

    if (!a0) {
        system = KOVA_CAPTIONS_RATING_MPA;
        rating = first & 7;
    } else if (us_tv) {
        system = KOVA_CAPTIONS_RATING_US_TV;
    } else if (!a3) {
        system = a2 ? KOVA_CAPTIONS_RATING_CANADIAN_FRENCH : KOVA_CAPTIONS_RATING_CANADIAN_ENGLISH;
    } else {
        rating = 0;
    }
    const uint8_t violence = us_tv && (second & 0x20), sexual_situations = us_tv && (second & 0x10);
    const uint8_t language = us_tv && a3, dialog = us_tv && a2;
    const bool same = system == program.rating_system && rating == program.rating &&
                      violence == program.violence && sexual_situations == program.sexual_situations &&
                      language == program.language && dialog == program.dialog;
    if (same) return;
    program.rating_system = system;
    program.rating = rating;
    program.violence = violence;
    program.sexual_situations = sexual_situations;
    program.language = language;
    program.dialog = dialog;
    Report(state, KOVA_CAPTIONS_XDS, KOVA_CAPTIONS_EVENT_CONTENT_ADVISORY,
           {system, rating, violence, sexual_situations, language, dialog});
    program.revision = ++state.revision;
}

struct Content {
    uint8_t packet_class;
    uint8_t type;
    void (*handler)(State &, const ExtendedPacket &);
};

// By class (start code / 2) and type.
static const Content kContents[] = {
    {0, 0x01, TakeStart},       // current programme: start [608 9.5.1.1]
    {0, 0x03, TakeName},        // current programme: name [608 9.5.1.3]
    {0, 0x05, TakeAdvisory},    // current programme: content advisory [608 9.5.1.5]
    {2, 0x01, TakeNetwork},     // channel: network name [608 9.5.3.1]
    {2, 0x02, TakeCallLetters}, // channel: call letters [608 9.5.3.2]
};

// --------------------------------------------------------------------------------------------------------- Packets

static void AddByte(State &state, uint8_t byte)
{
    if (state.extended.active == kNoClass) return;
    ExtendedPacket &packet = state.extended.packets[state.extended.active];

    packet.sum = uint8_t(packet.sum + byte);
    if (byte < 0x20) return;
    if (packet.count == sizeof packet.data) return DropExtendedPacket(state);
    packet.data[packet.count++] = byte;
}

static void EndPacket(State &state, uint8_t checksum)
{
    ExtendedData &extended = state.extended;
    if (extended.active == kNoClass) return;
    ExtendedPacket &packet = extended.packets[extended.active];

    if ((packet.sum + 0x0F + checksum) & 0x7F) return DropExtendedPacket(state);
    for (const Content &content : kContents) {
        if (content.packet_class == extended.active && content.type == packet.type)
            content.handler(state, packet);
    }
    packet.open = false;
    extended.active = kNoClass;
}

static void StartOrContinue(State &state, uint8_t first, uint8_t type)
{
    const auto packet_class = uint8_t((first - 1) / 2);
    ExtendedPacket &packet = state.extended.packets[packet_class];
    const bool start = first & 1;

    if (start) {
        packet = {};
        packet.open = true;
        packet.type = type;
        packet.sum = uint8_t(first + type);
    }
    state.extended.active = packet.open && packet.type == type ? packet_class : kNoClass;
}

void DecodeExtendedPair(State &state, uint8_t first, uint8_t second)
{
    if (first == 0x0F) return EndPacket(state, second);
    if (first > 0 && first < 0x0F) return StartOrContinue(state, first, second);
    AddByte(state, first);
    AddByte(state, second);
}

} // namespace captions
