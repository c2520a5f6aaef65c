// SPDX-License-Identifier: MIT
// What holds for every input: random triplets, half of them made of codes that mean something.
#include "driver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <random>
#include <thread>

namespace
{

// Everything of a decoder that a reader sees, without the numbers that only count changes.
struct Seen {
    std::vector<KovaCaptionsChannel> channels = std::vector<KovaCaptionsChannel>(8);
    std::vector<KovaCaptionsService> services = std::vector<KovaCaptionsService>(64);
    std::vector<KovaCaptionsWindow> windows = std::vector<KovaCaptionsWindow>(64 * KOVA_CAPTIONS_WINDOWS);
    KovaCaptionsProgram program = {};
    KovaCaptionsActivity activity = {};
    int64_t next = 0;
};

void ForgetRevisions(KovaCaptionsStatus &status)
{
    status.revision = status.visible_revision = 0;
}

Seen Look(KovaCaptions *decoder)
{
    Seen seen;
    for (unsigned i = 0; i < 8; ++i) {
        KovaCaptionsChannel &channel = seen.channels[i];
        Kova_Captions_GetChannel(decoder, uint8_t(KOVA_CAPTIONS_CC1 + i), &channel);
        ForgetRevisions(channel.status);
        std::memset(channel.row_revision, 0, sizeof channel.row_revision);
    }
    for (unsigned service = 1; service < 64; ++service) {
        KovaCaptionsWindow *const windows = &seen.windows[service * KOVA_CAPTIONS_WINDOWS];
        Kova_Captions_GetService(decoder, uint8_t(service), &seen.services[service], windows, 0xFF);
        ForgetRevisions(seen.services[service].status);
        for (int i = 0; i < KOVA_CAPTIONS_WINDOWS; ++i) {
            windows[i].revision = 0;
            std::memset(windows[i].row_revision, 0, sizeof windows[i].row_revision);
        }
    }
    Kova_Captions_GetProgram(decoder, &seen.program);
    seen.program.revision = 0;
    Kova_Captions_GetActivity(decoder, &seen.activity);
    seen.next = Kova_Captions_NextChange(decoder, KOVA_CAPTIONS_NONE, 7);
    return seen;
}

template <typename Record> bool Same(const std::vector<Record> &a, const std::vector<Record> &b)
{
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(Record)) == 0;
}

bool operator==(const Seen &a, const Seen &b)
{
    return Same(a.channels, b.channels) && Same(a.services, b.services) && Same(a.windows, b.windows) &&
           std::memcmp(&a.program, &b.program, sizeof a.program) == 0 &&
           std::memcmp(&a.activity, &b.activity, sizeof a.activity) == 0 && a.next == b.next;
}

using Random = std::mt19937;

unsigned Below(Random &random, unsigned limit)
{
    return unsigned(random() % limit);
}

uint8_t WithParity(unsigned byte)
{
    unsigned ones = 0;
    for (unsigned rest = byte & 0x7F; rest; rest >>= 1) ones += rest & 1;
    return uint8_t((byte & 0x7F) | (ones % 2 ? 0 : 0x80));
}

void AddPair(Random &random, ByteString &triplets)
{
    const bool control = Below(random, 2), damaged = Below(random, 20) == 0;
    const unsigned first = control ? 0x10 + Below(random, 16) : Below(random, 128);
    const unsigned second = 0x20 + Below(random, 0x60);
    triplets.push_back(uint8_t(0xFC | Below(random, 2)));
    triplets.push_back(uint8_t(damaged ? Below(random, 256) : WithParity(first)));
    triplets.push_back(uint8_t(damaged ? Below(random, 256) : WithParity(second)));
}

// Elements of one service, of which commands are as frequent as text.
ByteString Elements(Random &random, unsigned count)
{
    ByteString bytes;
    while (bytes.size() < count) {
        const unsigned kind = Below(random, 4);
        if (kind == 0) bytes.push_back(uint8_t(0x80 + Below(random, 32)));
        if (kind == 1) bytes.push_back(uint8_t(0x20 + Below(random, 0x60)));
        if (kind == 2) bytes.push_back(uint8_t(Below(random, 0x20)));
        if (kind == 3) bytes.push_back(uint8_t(Below(random, 256)));
    }
    return bytes;
}

void AddPacket(Random &random, unsigned &sequence, ByteString &triplets)
{
    ByteString packet(1, 0);
    for (unsigned block = 0; block < 3; ++block) {
        const unsigned size = 1 + Below(random, 31), service = Below(random, 7);
        packet.push_back(uint8_t(service << 5 | size));
        const ByteString elements = Elements(random, size);
        packet.insert(packet.end(), elements.begin(), elements.end());
    }
    if (packet.size() % 2) packet.push_back(0);
    if (Below(random, 30) == 0) ++sequence;
    packet[0] = uint8_t((sequence++ & 3) << 6 | (packet.size() / 2 & 63));
    const size_t sent = Below(random, 10) ? packet.size() : packet.size() / 4 * 2;
    for (size_t i = 0; i < sent; i += 2) {
        triplets.push_back(uint8_t(i == 0 ? 0xFF : 0xFE));
        triplets.push_back(packet[i]);
        triplets.push_back(packet[i + 1]);
    }
}

ByteString RandomTriplets(unsigned seed, unsigned parts)
{
    Random random(seed);
    ByteString triplets;
    unsigned sequence = 0;
    for (unsigned i = 0; i < parts; ++i) {
        if (Below(random, 3))
            AddPair(random, triplets);
        else
            AddPacket(random, sequence, triplets);
        if (Below(random, 10) == 0) {
            for (int byte = 0; byte < 3; ++byte) triplets.push_back(uint8_t(Below(random, 256)));
        }
    }
    return triplets;
}

const uint8_t *Bytes(const ByteString &triplets, size_t first)
{
    return triplets.data() + 3 * first;
}

// Twenty triplets have one time, a frame apart, with a long pause now and then.
int64_t TimeOf(size_t triplet)
{
    const auto frame = int64_t(triplet / 20);
    return frame * FRAME + frame / 50 * 20 * SECOND;
}

// Pushes in pieces of at most so many triplets, which never are of two times.
void Push(KovaCaptions *decoder, const ByteString &triplets, size_t piece)
{
    const size_t count = triplets.size() / 3;
    for (size_t at = 0; at < count;) {
        const size_t left = std::min(count, (at / 20 + 1) * 20) - at, size = std::min(piece, left);
        Kova_Captions_PushTriplets(decoder, TimeOf(at), Bytes(triplets, at), size);
        at += size;
    }
}

KovaCaptionsOptions ManyEvents()
{
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    options.event_capacity = 100000;
    return options;
}

std::vector<std::string> Events(KovaCaptions *decoder)
{
    std::vector<std::string> lines;
    KovaCaptionsEvent event;
    char line[KOVA_CAPTIONS_LINE];
    Kova_Captions_EndRuns(decoder);
    while (Kova_Captions_NextEvent(decoder, &event) == 1) {
        EXPECT_LT(Kova_Captions_FormatEvent(&event, line, sizeof line), KOVA_CAPTIONS_LINE);
        lines.push_back(std::to_string(event.time) + " " + Kova_Captions_SourceName(event.source) + " " +
                        line);
    }
    return lines;
}

} // namespace

TEST(AnyBytes, LeaveNoTraceBehindADiscontinuity)
{
    Requirement("A3", "A7", "A8");
    for (unsigned seed = 0; seed < 15; ++seed) {
        Driver dirty, clean;
        const ByteString stream = RandomTriplets(1000 + seed, 300);

        Push(*dirty, RandomTriplets(seed, 300), 20);
        Kova_Captions_Discontinuity(*dirty);
        EXPECT_TRUE(Look(*dirty) == Look(*clean)) << seed;
        Push(*dirty, stream, 20);
        Push(*clean, stream, 20);

        EXPECT_TRUE(Look(*dirty) == Look(*clean)) << seed;
    }
}

TEST(AnyBytes, LeaveNoTraceOnceTheTimeGoesBack)
{
    Requirement("A7", "A8");
    Driver dirty, clean;
    const ByteString stream = RandomTriplets(7, 300);

    Push(*dirty, RandomTriplets(8, 300), 20);
    Push(*dirty, stream, 20);
    Push(*clean, stream, 20);

    EXPECT_TRUE(Look(*dirty) == Look(*clean));
}

TEST(AnyBytes, GiveTheSameStatesAndEventsInPiecesOfAnySize)
{
    Requirement("A4");
    for (unsigned seed = 0; seed < 10; ++seed) {
        const ByteString stream = RandomTriplets(seed, 1000);
        Driver whole(ManyEvents());
        Push(*whole, stream, 20);
        const Seen wanted = Look(*whole);
        const std::vector<std::string> events = Events(*whole);

        for (size_t piece : {1u, 3u, 7u}) {
            Driver cut(ManyEvents());
            Push(*cut, stream, piece);
            EXPECT_TRUE(Look(*cut) == wanted) << seed << " in pieces of " << piece;
            EXPECT_EQ(Events(*cut), events) << seed << " in pieces of " << piece;
        }
    }
}

TEST(AnyBytes, GiveTheSameStatesWhoeverMovesTheClockBetweenThem)
{
    Requirement("A11");
    for (unsigned seed = 0; seed < 10; ++seed) {
        const ByteString stream = RandomTriplets(seed, 300);
        Driver idle(ManyEvents()), busy(ManyEvents());
        const int64_t end = TimeOf(stream.size() / 3) + 40 * SECOND;

        Push(*idle, stream, 20);
        Kova_Captions_Advance(*idle, end);
        for (size_t at = 0; at < stream.size() / 3; ++at) {
            for (int64_t next;
                 (next = Kova_Captions_NextChange(*busy, KOVA_CAPTIONS_NONE, 7)) < TimeOf(at);) {
                Kova_Captions_Advance(*busy, next);
            }
            Kova_Captions_PushTriplets(*busy, TimeOf(at), Bytes(stream, at), 1);
        }
        Kova_Captions_Advance(*busy, end);

        EXPECT_TRUE(Look(*busy) == Look(*idle)) << seed;
        EXPECT_EQ(Events(*busy), Events(*idle)) << seed;
    }
}

TEST(AnyTime, IsTaken)
{
    Requirement("A3");
    Driver decoder;
    const ByteString stream = RandomTriplets(1, 100);

    for (int64_t time :
         {INT64_MAX, INT64_MIN, int64_t(0), INT64_MAX, INT64_MAX - 1, INT64_MIN + 1, int64_t(-1)}) {
        Kova_Captions_PushTriplets(*decoder, time, Bytes(stream, 0), stream.size() / 3);
        Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_NONE, 7);
        Kova_Captions_Advance(*decoder, time);
    }
    Kova_Captions_Discontinuity(*decoder);
    EXPECT_TRUE(Look(*decoder) == Look(*Driver()));
}

TEST(Threads, OnePushesWhileAnotherReads)
{
    Driver decoder(ManyEvents());
    std::atomic<bool> done{false};

    std::thread reader([&] {
        uint32_t seen = 0;
        while (!done) {
            const uint32_t revision = Kova_Captions_Revision(*decoder);
            if (revision == seen) continue;
            seen = revision;
            // A copy is of one moment: the windows that exist are those that the service says exist.
            KovaCaptionsService service;
            std::vector<KovaCaptionsWindow> windows(KOVA_CAPTIONS_WINDOWS);
            ASSERT_EQ(Kova_Captions_GetService(*decoder, 1, &service, windows.data(), 0xFF), 0);
            for (int i = 0; i < KOVA_CAPTIONS_WINDOWS; ++i) {
                ASSERT_EQ(service.existing_windows >> i & 1, windows[size_t(i)].exists);
            }
            KovaCaptionsEvent event;
            Kova_Captions_NextEvent(*decoder, &event);
            Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_NONE, 7);
            Look(*decoder);
        }
    });
    for (unsigned seed = 0; seed < 5; ++seed) {
        Push(*decoder, RandomTriplets(seed, 200), 5);
        Kova_Captions_Discontinuity(*decoder);
    }
    done = true;
    reader.join();
}
