// SPDX-License-Identifier: MIT
// Bytes as captions with times, decoded twice: as they come, and cut into single triplets with calls of the clock
// between them. Both have to end in the same state. Then a discontinuity and a clean stream, which have to leave what
// the clean stream alone leaves.
//
// The bytes are steps; the lower two bits of a step's first byte say which:
//     0  a triplet: three bytes as they are
//     1  a pair of line 21: two bytes that get their parity; bit 2: the field
//     2  a packet with the next sequence number: 1 to 64 bytes of service blocks by bits 2 to 7
//     3  time: bits 2 to 7 to the power of four, in microseconds, forward; 63: back by two seconds
#include "kova/kova_captions.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

namespace
{

constexpr int64_t START = 10000000;
constexpr int SERVICES[] = {1, 2, 9};

void Demand(bool condition, const char *what)
{
    if (condition) return;
    fprintf(stderr, "The decoder is wrong: %s\n", what);
    abort();
}

// Triplets of one time.
struct Portion {
    int64_t time;
    std::vector<uint8_t> triplets;
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

std::vector<uint8_t> ReadPacket(Input &input, unsigned size, unsigned sequence)
{
    std::vector<uint8_t> packet = {0};

    for (unsigned i = 0; i < size; i++) packet.push_back(input.Next());
    if (packet.size() % 2) packet.push_back(0);
    packet[0] = uint8_t(sequence % 4 << 6 | packet.size() / 2);
    std::vector<uint8_t> triplets;
    for (size_t i = 0; i < packet.size(); i += 2) {
        triplets.insert(triplets.end(), {uint8_t(i == 0 ? 0xFF : 0xFE), packet[i], packet[i + 1]});
    }
    return triplets;
}

std::vector<Portion> ReadPortions(Input input)
{
    std::vector<Portion> portions = {{START, {}}};
    unsigned sequence = 0;

    while (!input.IsEmpty()) {
        const uint8_t step = input.Next();
        std::vector<uint8_t> &triplets = portions.back().triplets;
        if (step % 4 == 0) {
            for (int i = 0; i < 3; i++) triplets.push_back(input.Next());
        } else if (step % 4 == 1) {
            triplets.push_back(uint8_t(0xFC | (step >> 2 & 1)));
            for (int i = 0; i < 2; i++) triplets.push_back(WithParity(input.Next()));
        } else if (step % 4 == 2) {
            const std::vector<uint8_t> packet = ReadPacket(input, 1 + (step >> 2), sequence++);
            triplets.insert(triplets.end(), packet.begin(), packet.end());
        } else {
            const int64_t size = step >> 2, time = portions.back().time;
            portions.push_back({size == 63 ? time - 2000000 : time + size * size * size * size, {}});
        }
    }
    return portions;
}

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
    return Decoder(Kova_Captions_Create(&options));
}

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

void LookAtChannel(KovaCaptions *decoder, uint8_t source, KovaCaptionsChannel &channel)
{
    Kova_Captions_GetChannel(decoder, source, &channel);
    Demand(channel.cursor_row < KOVA_CAPTIONS_CHANNEL_ROWS &&
               channel.cursor_column < KOVA_CAPTIONS_CHANNEL_COLUMNS,
           "a cursor outside of the screen");
    ForgetRevisions(channel.status);
    memset(channel.row_revision, 0, sizeof channel.row_revision);
}

// Reading is most of the work, so channels that nothing has changed are not read.
struct Fresh {
    KovaCaptionsChannel channels[8];
    uint32_t revisions[8];
};

uint32_t RevisionOf(KovaCaptions *decoder, unsigned channel)
{
    KovaCaptionsStatus status = {};

    Kova_Captions_GetStatus(decoder, uint8_t(KOVA_CAPTIONS_CC1 + channel), &status);
    return status.revision;
}

const Fresh &GetFresh()
{
    static Fresh s_fresh;
    static const bool s_bRead = [] {
        const Decoder decoder = Create();
        for (unsigned i = 0; i < 8; i++) {
            s_fresh.revisions[i] = RevisionOf(decoder.get(), i);
            LookAtChannel(decoder.get(), uint8_t(KOVA_CAPTIONS_CC1 + i), s_fresh.channels[i]);
        }
        return true;
    }();

    Demand(s_bRead, "a decoder that cannot be read");
    return s_fresh;
}

// Bit n is set if channel n is no longer as it was at creation.
unsigned ChangedChannels(KovaCaptions *decoder)
{
    unsigned changed = 0;

    for (unsigned i = 0; i < 8; i++)
        changed |= unsigned(RevisionOf(decoder, i) != GetFresh().revisions[i]) << i;
    return changed;
}

void Look(KovaCaptions *decoder, unsigned channels, Seen &seen)
{
    memset(&seen, 0, sizeof seen);
    for (unsigned i = 0; i < 8; i++) {
        seen.channels[i] = GetFresh().channels[i];
        if (channels >> i & 1) LookAtChannel(decoder, uint8_t(KOVA_CAPTIONS_CC1 + i), seen.channels[i]);
    }
    for (unsigned i = 0; i < 3; i++) {
        KovaCaptionsService &service = seen.services[i];
        const auto number = uint8_t(SERVICES[i]);
        Kova_Captions_GetService(decoder, number, &service, nullptr, 0);
        Kova_Captions_GetService(decoder, number, nullptr, seen.windows[i], service.existing_windows);
        ForgetRevisions(service.status);
        Demand(service.buffered <= 128, "more bytes than the buffer holds");
        for (unsigned id = 0; id < KOVA_CAPTIONS_WINDOWS; id++) {
            KovaCaptionsWindow &window = seen.windows[i][id];
            Demand(window.exists == (service.existing_windows >> id & 1),
                   "a window that is not the service's");
            if (!window.exists) continue;
            Demand(window.pen_row < window.definition.rows && window.pen_column < window.definition.columns,
                   "a pen outside of its window");
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
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): both were cleared before they were filled
    return memcmp(&left, &right, sizeof left) == 0;
}

void FormatEvents(KovaCaptions *decoder)
{
    KovaCaptionsEvent event;
    char line[KOVA_CAPTIONS_LINE];

    Kova_Captions_EndRuns(decoder);
    while (Kova_Captions_NextEvent(decoder, &event) == 1) {
        Demand(Kova_Captions_FormatEvent(&event, line, sizeof line) < KOVA_CAPTIONS_LINE,
               "a line that is too long");
    }
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    static Seen s_clean, s_whole, s_cut;
    static unsigned s_uiCleanChannels;
    static const bool s_bHasClean = [] {
        const Decoder decoder = Create();
        PushCleanStream(decoder.get());
        s_uiCleanChannels = ChangedChannels(decoder.get());
        Look(decoder.get(), 0xFF, s_clean);
        return true;
    }();
    const std::vector<Portion> portions = ReadPortions({pData, uiSize});
    const Decoder whole = Create(), cut = Create();
    if (!s_bHasClean || !whole || !cut) return 0;

    for (const Portion &portion : portions) {
        const size_t count = portion.triplets.size() / 3;
        Kova_Captions_PushTriplets(whole.get(), portion.time, portion.triplets.data(), count);

        for (int64_t next = 0; next < portion.time;) {
            next = Kova_Captions_NextChange(cut.get(), KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_CHANGE_STATE);
            if (next < portion.time) Kova_Captions_Advance(cut.get(), next);
        }
        for (size_t i = 0; i < count; i++) {
            Kova_Captions_PushTriplets(cut.get(), portion.time, portion.triplets.data() + 3 * i, 1);
        }
        Kova_Captions_Advance(cut.get(), portion.time);
    }
    const unsigned uiChanged = ChangedChannels(whole.get()) | ChangedChannels(cut.get());
    Look(whole.get(), uiChanged, s_whole);
    Look(cut.get(), uiChanged, s_cut);
    Demand(IsEqual(s_whole, s_cut), "another state by other portions");
    FormatEvents(whole.get());

    Kova_Captions_Discontinuity(whole.get());
    PushCleanStream(whole.get());
    Look(whole.get(), uiChanged | s_uiCleanChannels, s_whole);
    Demand(IsEqual(s_whole, s_clean), "something was left by a discontinuity");
    return 0;
}
