// SPDX-License-Identifier: MIT
// Bytes as captions with times, decoded twice: as they come, and cut into single triplets with calls of the clock
// between them. Both have to end in the same state, with the same events. Then a discontinuity and a clean stream, which
// have to leave what the clean stream alone leaves.
//
// Creating decoders and reading all they hold would take most of the time. So the decoders are used again after a
// discontinuity, and their states are compared in place, where their revisions say that something changed. One
// execution in THOROUGH, the first of them included, starts with new decoders and also compares everything that a
// caller can read, changed or not.
//
// The bytes are steps; the lower two bits of a step's first byte say which:
//     0  a triplet: three bytes as they are
//     1  a pair of line 21: two bytes that get their parity; bit 2: the field
//     2  a packet with the next sequence number: 1 to 64 bytes of service blocks by bits 2 to 7
//     3  time: bits 2 to 7 to the power of four, in microseconds, forward; 63: back by two seconds
#include "kova_captions/decoder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

namespace
{

using namespace captions;

constexpr int64_t START = 10000000;
constexpr int SERVICES[] = {1, 2, 9};
constexpr unsigned THOROUGH = 256;

std::vector<uint8_t> s_before;

// An input that is wrong only after another one is reported with that one.
void Demand(bool condition, const char *what)
{
    if (condition) return;
    fprintf(stderr, "The decoder is wrong: %s\nThe input before, if this one alone is right:", what);
    for (const uint8_t byte : s_before) fprintf(stderr, " %02x", byte);
    fprintf(stderr, "\n");
    abort();
}

// ------------------------------------------------------------------------------------------------------------- Input

// Triplets of one time, from the stream's byte first on.
struct Portion {
    int64_t time;
    size_t first;
    size_t count;
};

struct Stream {
    std::vector<uint8_t> triplets;
    std::vector<Portion> portions;
};

uint8_t WithParity(uint8_t byte)
{
    return uint8_t((byte & 0x7F) | (__builtin_popcount(byte & 0x7F) % 2 ? 0 : 0x80));
}

class Input
{
public:
    Input(const uint8_t *data, size_t size) : m_data(data), m_size(size)
    {
    }

    bool IsEmpty() const
    {
        return m_size == 0;
    }

    uint8_t Next()
    {
        if (m_size == 0) return 0;
        m_size--;
        return *m_data++;
    }

private:
    const uint8_t *m_data;
    size_t m_size;
};

void AddTriplet(Stream &stream, uint8_t header, uint8_t first, uint8_t second)
{
    const uint8_t bytes[] = {header, first, second};

    stream.triplets.insert(stream.triplets.end(), bytes, bytes + sizeof bytes);
    stream.portions.back().count++;
}

void AddPacket(Stream &stream, Input &input, unsigned size, unsigned sequence)
{
    const unsigned pairs = size / 2 + 1;

    for (unsigned i = 0; i < pairs; i++) {
        const uint8_t first = i == 0 ? uint8_t(sequence % 4 << 6 | pairs) : input.Next();
        const uint8_t second = 2 * i + 1 <= size ? input.Next() : uint8_t(0);
        AddTriplet(stream, i == 0 ? 0xFF : 0xFE, first, second);
    }
}

void ReadStream(Input input, Stream &stream)
{
    unsigned sequence = 0;

    stream.triplets.clear();
    stream.portions.assign(1, {START, 0, 0});
    while (!input.IsEmpty()) {
        const uint8_t step = input.Next(), first = step % 4 < 2 ? input.Next() : uint8_t(0);
        if (step % 4 == 0) {
            const uint8_t second = input.Next();
            AddTriplet(stream, first, second, input.Next());
        } else if (step % 4 == 1) {
            AddTriplet(stream, uint8_t(0xFC | (step >> 2 & 1)), WithParity(first), WithParity(input.Next()));
        } else if (step % 4 == 2) {
            AddPacket(stream, input, 1 + (step >> 2), sequence++);
        } else {
            const int64_t size = step >> 2, time = stream.portions.back().time;
            stream.portions.push_back(
                {size == 63 ? time - 2000000 : time + size * size * size * size, stream.triplets.size(), 0});
        }
    }
}

// ---------------------------------------------------------------------------------------------------------- Decoders

struct Destroy {
    void operator()(KovaCaptions *decoder) const
    {
        Kova_Captions_Destroy(decoder);
    }
};
using Decoder = std::unique_ptr<KovaCaptions, Destroy>;

Decoder Create()
{
    KovaCaptionsOptions options;

    Kova_Captions_GetDefaults(&options);
    options.services = 0;
    for (const int service : SERVICES) options.services |= uint64_t(1) << service;
    options.korean_services = uint64_t(1) << 2;
    options.event_capacity = 32;
    Decoder decoder(Kova_Captions_Create(&options));
    Demand(decoder != nullptr, "no decoder");
    return decoder;
}

// Something of everything: line 21 in both fields, a window with text, a delay under way.
void PushCleanStream(KovaCaptions *decoder)
{
    static const uint8_t TRIPLETS[] = {0xFC, 0x94, 0x20, 0xFC, 0x94, 0xE0, 0xFC, 0xC8, 0x49, 0xFC, 0x94, 0x2F,
                                       0xFD, 0x15, 0x25, 0xFD, 0xC8, 0x49, 0xFD, 0x15, 0xAD, 0xFF, 0x08, 0x2D,
                                       0xFE, 0x98, 0x38, 0xFE, 0x00, 0x00, 0xFE, 0x00, 0x1F, 0xFE, 0x09, 0x48,
                                       0xFE, 0x49, 0x8D, 0xFE, 0x0A, 0x41, 0xFE, 0x42, 0x00};

    Kova_Captions_PushTriplets(decoder, START, TRIPLETS, sizeof TRIPLETS / 3);
}

void PushWhole(KovaCaptions *decoder, const Stream &stream)
{
    for (const Portion &portion : stream.portions)
        Kova_Captions_PushTriplets(decoder, portion.time, stream.triplets.data() + portion.first,
                                   portion.count);
}

void PushCut(KovaCaptions *decoder, const Stream &stream)
{
    for (const Portion &portion : stream.portions) {
        for (int64_t next = 0; next < portion.time;) {
            next = Kova_Captions_NextChange(decoder, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_CHANGE_STATE);
            if (next < portion.time) Kova_Captions_Advance(decoder, next);
        }
        const uint8_t *const triplets = stream.triplets.data() + portion.first;
        for (size_t i = 0; i < portion.count; i++)
            Kova_Captions_PushTriplets(decoder, portion.time, triplets + 3 * i, 1);
        Kova_Captions_Advance(decoder, portion.time);
    }
}

void DropEvents(KovaCaptions *decoder)
{
    Events &events = decoder->state.events;
    events.first = events.count = 0;
}

// ------------------------------------------------------------------------------------------- What a decoder holds

// A decoder with the revision that it had when the execution began.
struct Side {
    const State &state;
    uint32_t revision;

    bool HasChanged(uint32_t now) const
    {
        return now > revision;
    }
};

// Not memcmp: libFuzzer watches it for constants to put into inputs, and here are none.
bool AreSameBytes(const void *left, const void *right, size_t size)
{
    const auto *a = static_cast<const unsigned char *>(left), *b = static_cast<const unsigned char *>(right);

    for (; size >= sizeof(uint64_t); size -= sizeof(uint64_t), a += sizeof(uint64_t), b += sizeof(uint64_t)) {
        uint64_t one, other;
        memcpy(&one, a, sizeof one);
        memcpy(&other, b, sizeof other);
        if (one != other) return false;
    }
    for (; size > 0; size--) {
        if (*a++ != *b++) return false;
    }
    return true;
}

template <typename Record> bool IsSame(const Record &left, const Record &right)
{
    static_assert(std::has_unique_object_representations_v<Record>, "bytes that say nothing");
    return AreSameBytes(&left, &right, sizeof left);
}

// Revisions differ by what was there before, and are left out.
bool IsSameStatus(const KovaCaptionsStatus &left, const KovaCaptionsStatus &right)
{
    return left.visible_since == right.visible_since && left.flash_since == right.flash_since;
}

bool IsSameRun(const Run &left, const Run &right)
{
    return left.count == right.count &&
           (left.count == 0 || (left.time == right.time && left.source == right.source)) &&
           AreSameBytes(left.characters, right.characters, left.count * sizeof *left.characters);
}

bool IsSameMemory(const Memory &left, const Memory &right)
{
    for (int row = 0; row < kChannelRows; row++) {
        if (!((left.written | right.written) >> row & 1)) continue;
        for (int column = 0; column < kChannelColumns; column++) {
            const Code &a = left.cells[row][column], &b = right.cells[row][column];
            if (a.character != b.character || a.kind != b.kind || a.bits != b.bits || a.mark != b.mark)
                return false;
        }
    }
    return true;
}

bool IsSameChannel(const Channel &left, const Channel &right)
{
    return IsSameStatus(left.status, right.status) && IsSame(left.roll, right.roll) &&
           left.last_data == right.last_data && left.mode == right.mode && left.depth == right.depth &&
           left.base_row == right.base_row && left.row == right.row && left.column == right.column &&
           left.filled == right.filled && left.preamble == right.preamble &&
           left.displayed == right.displayed && left.non_displayed == right.non_displayed;
}

bool IsSameField(const Field &left, const Field &right)
{
    return IsSame(left.control, right.control) && left.repetition_due == right.repetition_due &&
           left.control_time == right.control_time && left.flow == right.flow &&
           left.data_channel == right.data_channel && IsSame(left.selected, right.selected) &&
           left.bad_pairs == right.bad_pairs && IsSameRun(left.run, right.run);
}

bool IsSameWindow(const Window &left, const Window &right)
{
    return IsSame(left.effect, right.effect) && IsSame(left.scroll, right.scroll) &&
           left.completed == right.completed && left.exists == right.exists &&
           left.visible == right.visible && left.pen_row == right.pen_row &&
           left.pen_column == right.pen_column && IsSame(left.defined_as, right.defined_as) &&
           IsSame(left.definition, right.definition) && IsSame(left.attributes, right.attributes) &&
           IsSame(left.pen, right.pen) && IsSame(left.brush, right.brush) && IsSame(left.cells, right.cells);
}

bool IsSameService(const Service &left, const Service &right)
{
    return IsSameStatus(left.status, right.status) && left.delay_until == right.delay_until &&
           left.number == right.number && left.korean == right.korean && left.used == right.used &&
           left.blanked == right.blanked && left.current == right.current && left.size == right.size &&
           left.scanned == right.scanned && AreSameBytes(left.buffer, right.buffer, left.size) &&
           IsSameRun(left.run, right.run);
}

bool IsSamePacket(const Packet &left, const Packet &right)
{
    return left.size == right.size && left.announced == right.announced && left.sequence == right.sequence &&
           AreSameBytes(left.bytes, right.bytes, left.announced ? left.size : 0);
}

bool IsSameProgram(KovaCaptionsProgram left, KovaCaptionsProgram right)
{
    left.revision = right.revision = 0;
    return IsSame(left, right);
}

// Everything but revisions, counters, events, and what only saves work: due, written, may_flash.
bool IsSameState(const Side &left, const Side &right)
{
    const State &a = left.state, &b = right.state;
    bool same = a.now == b.now && IsSame(a.activity, b.activity) && IsSame(a.extended, b.extended) &&
                IsSameProgram(a.program, b.program) && IsSamePacket(a.packet, b.packet) &&
                a.last_dtvcc == b.last_dtvcc && a.blanked == b.blanked;

    for (int i = 0; i < 2; i++) same = same && IsSameField(a.fields[i], b.fields[i]);
    for (int i = 0; i < kChannels; i++) same = same && IsSameChannel(a.channels[i], b.channels[i]);
    for (int i = 0; i < 12; i++) same = same && IsSameMemory(a.memories[i], b.memories[i]);
    for (uint32_t i = 0; i < a.service_count; i++) {
        same = same && IsSameService(a.services[i], b.services[i]);
        for (int id = 0; id < kWindows; id++) {
            const Window &one = a.services[i].windows[id], &other = b.services[i].windows[id];
            if (left.HasChanged(one.revision) || right.HasChanged(other.revision))
                same = same && IsSameWindow(one, other);
        }
    }
    return same;
}

bool HasSameEvents(const State &left, const State &right)
{
    const Events &a = left.events, &b = right.events;
    bool same = a.count == b.count;

    for (uint32_t i = 0; same && i < a.count; i++)
        same = IsSame(a.ring[(a.first + i) % a.capacity], b.ring[(b.first + i) % b.capacity]);
    return same;
}

void DemandSoundness(const State &state)
{
    for (const Channel &channel : state.channels)
        Demand(channel.row < kChannelRows && channel.column < kChannelColumns,
               "a cursor outside of the screen");
    for (uint32_t i = 0; i < state.service_count; i++) {
        const Service &service = state.services[i];
        Demand(service.size <= kBuffer && service.scanned <= service.size,
               "more bytes than the buffer holds");
        Demand(service.current == kNoWindow || service.windows[service.current].exists,
               "a current window that is none");
        for (const Window &window : service.windows) {
            const KovaCaptionsDefinition &definition = window.definition;
            Demand(!window.exists ||
                       (window.pen_row < definition.rows && window.pen_column < definition.columns),
                   "a pen outside of its window");
        }
    }
}

// A row that is not marked as written to is taken for blank by everything that looks at rows.
void DemandWrittenRows(const State &state)
{
    for (const Memory &memory : state.memories) {
        for (int row = 0; row < kChannelRows; row++) {
            for (const Code &cell : memory.cells[row]) {
                Demand((memory.written >> row & 1) || (cell.kind == kEmpty && cell.mark == 0),
                       "something in a row that was not written to");
            }
        }
    }
}

// --------------------------------------------------------------------------------------- What a caller can read

// What can be read, but the numbers of changes.
struct Seen {
    KovaCaptionsChannel channels[8];
    KovaCaptionsService services[3];
    KovaCaptionsWindow windows[3][KOVA_CAPTIONS_WINDOWS];
    KovaCaptionsProgram program;
    KovaCaptionsActivity activity;
    int64_t next;
};

void ForgetRevisions(KovaCaptionsStatus &status)
{
    status.revision = status.visible_revision = 0;
}

void Look(KovaCaptions *decoder, Seen &seen)
{
    memset(&seen, 0, sizeof seen);
    for (unsigned i = 0; i < 8; i++) {
        KovaCaptionsChannel &channel = seen.channels[i];
        Kova_Captions_GetChannel(decoder, uint8_t(KOVA_CAPTIONS_CC1 + i), &channel);
        ForgetRevisions(channel.status);
        memset(channel.row_revision, 0, sizeof channel.row_revision);
    }
    for (unsigned i = 0; i < 3; i++) {
        KovaCaptionsService &service = seen.services[i];
        Kova_Captions_GetService(decoder, uint8_t(SERVICES[i]), &service, seen.windows[i], 0xFF);
        ForgetRevisions(service.status);
        for (unsigned id = 0; id < KOVA_CAPTIONS_WINDOWS; id++) {
            KovaCaptionsWindow &window = seen.windows[i][id];
            Demand(window.exists == (service.existing_windows >> id & 1),
                   "a window that is not the service's");
            window.revision = 0;
            memset(window.row_revision, 0, sizeof window.row_revision);
        }
    }
    Kova_Captions_GetProgram(decoder, &seen.program);
    seen.program.revision = 0;
    Kova_Captions_GetActivity(decoder, &seen.activity);
    seen.next = Kova_Captions_NextChange(decoder, KOVA_CAPTIONS_NONE, 7);
}

bool IsEqual(const Seen &left, const Seen &right)
{
    // Both were cleared before they were filled, so that bytes between members are equal.
    return AreSameBytes(&left, &right, sizeof left);
}

void Format(const KovaCaptionsEvent &event)
{
    char line[KOVA_CAPTIONS_LINE];

    Demand(Kova_Captions_FormatEvent(&event, line, sizeof line) < KOVA_CAPTIONS_LINE,
           "a line that is too long");
}

// Formatting takes longer than all the rest: one event of an execution, or all.
void FormatEvents(KovaCaptions *decoder, bool all, size_t chosen)
{
    const Events &events = decoder->state.events;

    if (!all && events.count > 0)
        Format(events.ring[(events.first + chosen % events.count) % events.capacity]);
    if (!all) return;
    KovaCaptionsEvent event;
    while (Kova_Captions_NextEvent(decoder, &event) == 1) Format(event);
}

// What the clean stream alone leaves.
struct Clean {
    Decoder decoder = Create();
    Seen seen = {};

    Clean()
    {
        PushCleanStream(decoder.get());
        Look(decoder.get(), seen);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    static const Clean s_clean;
    static Decoder s_whole, s_cut;
    static Stream s_stream;
    static Seen s_seen, s_other;
    static unsigned s_uiExecution;
    const bool bThorough = s_uiExecution++ % THOROUGH == 0;

    if (bThorough) {
        s_whole = Create();
        s_cut = Create();
        s_before.clear();
    }
    KovaCaptions *const whole = s_whole.get(), *const cut = s_cut.get();
    const Side wholeSide = {whole->state, bThorough ? 0 : whole->state.revision},
               cutSide = {cut->state, bThorough ? 0 : cut->state.revision};

    ReadStream({pData, uiSize}, s_stream);
    PushWhole(whole, s_stream);
    PushCut(cut, s_stream);
    DemandSoundness(whole->state);
    Demand(IsSameState(wholeSide, cutSide), "another state by other portions");
    if (bThorough) {
        DemandWrittenRows(whole->state);
        Look(whole, s_seen);
        Look(cut, s_other);
        Demand(IsEqual(s_seen, s_other), "something else to read by other portions");
    }
    Kova_Captions_EndRuns(whole);
    Kova_Captions_EndRuns(cut);
    Demand(HasSameEvents(whole->state, cut->state), "other events by other portions");
    FormatEvents(whole, bThorough, uiSize);

    Kova_Captions_Discontinuity(whole);
    PushCleanStream(whole);
    Demand(IsSameState(wholeSide, {s_clean.decoder->state, 0}), "something was left by a discontinuity");
    if (bThorough) {
        Look(whole, s_seen);
        Demand(IsEqual(s_seen, s_clean.seen), "something to read was left by a discontinuity");
    }

    Kova_Captions_Discontinuity(whole);
    Kova_Captions_Discontinuity(cut);
    DropEvents(whole);
    DropEvents(cut);
    s_before.assign(pData, pData + uiSize);
    return 0;
}
