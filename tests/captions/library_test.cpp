// SPDX-License-Identifier: MIT
// The library as such: channels and services side by side, discontinuities, selection, time, any bytes at all.
#include "driver.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <random>
#include <thread>

#include <cstring>
#include <link.h>

/* -------------------------------------------------------------------------------------------- Everything together */

TEST(AllSources, HaveTheirStateAtOnce)
{
    Requirement("A6", "A5");
    Driver decoder;

    for (unsigned channel = 1; channel <= 4; channel++) {
        const unsigned field = channel > 2 ? 2 : 1;
        decoder.Send(field, Code(TR, channel) + Text("T" + std::to_string(channel)));
        decoder.Send(field, Code(RDC, channel) + Pac(channel, WHITE, false, channel) +
                                Text("CC" + std::to_string(channel)));
    }
    for (unsigned service = 1; service <= 63; service++) {
        decoder.SendService(service, Define(Window(service % 8)) + Ascii("S" + std::to_string(service)));
    }

    for (unsigned i = 0; i < 4; i++) {
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1 + i), "1 T" + std::to_string(i + 1));
        EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1 + i),
                  std::to_string(i + 1) + " CC" + std::to_string(i + 1));
    }
    for (unsigned service = 1; service <= 63; service++) {
        EXPECT_EQ(decoder.WindowText(service % 8, service), "0 S" + std::to_string(service));
    }
}

TEST(AllSources, KeepModeAndCursorWhileOthersReceive)
{
    Requirement("A5");
    Driver decoder;

    decoder.Send(1, Code(RU3, 1) + PacIndent(12, 8, false, 1) + Text("A"));
    decoder.Send(1, Code(RCL, 2) + PacIndent(3, 4, false, 2) + Text("B"));
    decoder.Send(2, Code(RDC, 3) + PacIndent(7, 12, false, 3) + Text("C"));
    decoder.Send(2, Code(TR, 4) + Text("D"));

    EXPECT_EQ(decoder.Mode(KOVA_CAPTIONS_CC1), unsigned(KOVA_CAPTIONS_ROLL_UP));
    EXPECT_EQ(decoder.Cursor(KOVA_CAPTIONS_CC1), "12,10");
    EXPECT_EQ(decoder.Mode(KOVA_CAPTIONS_CC2), unsigned(KOVA_CAPTIONS_POP_ON));
    EXPECT_EQ(decoder.Cursor(KOVA_CAPTIONS_CC2), "3,6");
    EXPECT_EQ(decoder.Mode(KOVA_CAPTIONS_CC3), unsigned(KOVA_CAPTIONS_PAINT_ON));
    EXPECT_EQ(decoder.Cursor(KOVA_CAPTIONS_CC3), "7,14");
    EXPECT_EQ(decoder.Cursor(KOVA_CAPTIONS_T4), "1,2");
}

static void FillEverything(Driver &decoder)
{
    for (unsigned channel = 1; channel <= 4; channel++) {
        const unsigned field = channel > 2 ? 2 : 1;
        decoder.Send(field, Code(TR, channel) + Text("TEXT"));
        decoder.Send(field, Code(RCL, channel) + Pac(15, WHITE, false, channel) + Text("SHOWN") +
                                Code(EOC, channel) + Code(RCL, channel) + Pac(14, WHITE, false, channel) +
                                Text("LOADED"));
    }
    decoder.SendService(1, Define(Window(0)) + Ascii("A") + Delay(100) + Ascii("B"));
    decoder.SendService(2, Define(Window(1)) + Ascii("C"));
    decoder.SendService(63, Define(Window(7).Hidden()) + Ascii("D"));
    decoder.Send(2, Xds(1, 3, "NAME"));
}

TEST(Discontinuity, EmptiesEveryChannelAndService)
{
    Requirement("A7", "A8");
    Driver decoder;
    FillEverything(decoder);
    ASSERT_NE(decoder.Snapshot(), Driver().Snapshot());

    decoder.Discontinuity();

    EXPECT_EQ(decoder.Snapshot(), Driver().Snapshot());
}

TEST(Discontinuity, LeavesNoModeBehind)
{
    Requirement("A7");
    Driver decoder;
    FillEverything(decoder);

    decoder.Discontinuity();
    decoder.Send(Text("AB") + Pac(15) + Text("CD"));

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "");
    EXPECT_EQ(decoder.NonDisplayed(KOVA_CAPTIONS_CC1), "");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T1), "");
}

TEST(Discontinuity, ForgetsAnOpenPacketAndADueRepetition)
{
    Requirement("A7", "A8");
    Driver decoder;
    decoder.SendTriplets(Hex("ff 06 29  fe 98 38"));
    decoder.Send(Raw(0x14, RDC));

    decoder.Discontinuity();
    decoder.SendTriplets(Hex("fe 00 00  fe 00 1f  fe 09 48  fe 49 00"));
    // no repetition of the code before
    decoder.Send(Raw(0x14, RDC) + Pac(15) + Text("AB"));

    EXPECT_EQ(decoder.Service().existing_windows, 0);
    EXPECT_EQ(decoder.Displayed(), "15 AB");
}

TEST(Discontinuity, IsSeenInATimeThatGoesBackByMoreThanASecond)
{
    Requirement("A7", "A8");

    for (const int64_t back : {SECOND, SECOND + 1}) {
        Driver decoder;
        decoder.Send(Code(RDC) + Pac(15) + Text("AB"));
        decoder.SendService(1, Define(Window(0)) + Ascii("CD"));
        const int64_t latest = decoder.Now() - FRAME;
        EXPECT_EQ(Kova_Captions_Advance(*decoder, latest - back), 0);
        EXPECT_EQ(decoder.Displayed(), back > SECOND ? "" : "15 AB") << back;
        EXPECT_EQ(decoder.WindowText(), back > SECOND ? "-" : "0 CD") << back;
    }
}

TEST(Discontinuity, IsNotSeenInAJumpForward)
{
    Requirement("A11");
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    options.channel_timeout = options.service_timeout = 0;
    Driver decoder(options);

    decoder.Send(Code(RDC) + Pac(15) + Text("AB"));
    decoder.SendService(1, Define(Window(0)) + Ascii("CD"));
    decoder.Wait(1000000 * SECOND);

    EXPECT_EQ(decoder.Displayed(), "15 AB");
    EXPECT_EQ(decoder.WindowText(), "0 CD");
}

TEST(Selection, OfAnotherChannelErasesItsMemories)
{
    Requirement("A9");
    Driver decoder;
    FillEverything(decoder);

    EXPECT_EQ(Kova_Captions_Select(*decoder, KOVA_CAPTIONS_CC2, 0), 0);
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "");
    EXPECT_EQ(decoder.NonDisplayed(KOVA_CAPTIONS_CC2), "");
    // and no other's
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC1), "15 SHOWN");
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_T2), "1 TEXT");

    // it fills with what comes
    decoder.Send(Pac(10, WHITE, false, 2) + Text("NEW") + Code(EOC, 2));
    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "10 NEW");
}

TEST(Selection, OfAnotherChannelMayKeepItsMemories)
{
    Requirement("A9");
    Driver decoder;
    FillEverything(decoder);

    EXPECT_EQ(Kova_Captions_Select(*decoder, KOVA_CAPTIONS_CC2, 1), 0);

    EXPECT_EQ(decoder.Displayed(KOVA_CAPTIONS_CC2), "15 SHOWN");
    EXPECT_EQ(decoder.NonDisplayed(KOVA_CAPTIONS_CC2), "14 LOADED");
}

TEST(Selection, OfAServiceShowsItsWindows)
{
    Requirement("A10");
    Driver decoder;
    FillEverything(decoder);
    const std::string before = decoder.Snapshot();

    EXPECT_EQ(Kova_Captions_Select(*decoder, 2, 0), 0);

    EXPECT_EQ(decoder.Snapshot(), before);
    EXPECT_EQ(decoder.WindowText(1, 2), "0 C");
}

TEST(Selection, OfWhatIsNotDecodedIsRefused)
{
    Requirement("A9");
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    options.services = 1u << 1;
    Driver decoder(options);

    EXPECT_EQ(Kova_Captions_Select(*decoder, 1, 0), 0);
    EXPECT_EQ(Kova_Captions_Select(*decoder, 2, 0), -1);
    EXPECT_EQ(Kova_Captions_Select(*decoder, 0, 0), -1);
    EXPECT_EQ(Kova_Captions_Select(*decoder, KOVA_CAPTIONS_XDS, 0), -1);
}

/* ------------------------------------------------------------------------------------------------------------ Time */

TEST(Time, ComesFromTheCallerAlone)
{
    Requirement("A11");
    Driver decoder;
    WindowAttributes fade;
    fade.effect = 1;
    fade.effectSpeed = 1;
    decoder.Send(Code(RDC) + Pac(15) + Text("AB"));
    decoder.SendService(1, Define(Window(0).Hidden()) + SetWindowAttributes(fade) + Delay(10) +
                               DisplayWindows(1) + Ascii("A"));
    const std::string before = decoder.Snapshot();

    // nothing happens as long as the caller says no time
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(decoder.Snapshot(), before);

    // and everything by a clock alone: the delay, the effect, both time-outs
    decoder.Wait(SECOND);
    EXPECT_EQ(decoder.WindowText(), "0 A");
    EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_FADE);
    decoder.Wait(SECOND / 2);
    EXPECT_EQ(decoder.Window(0)->effect.kind, KOVA_CAPTIONS_STILL);
    decoder.Wait(16 * SECOND);
    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.WindowText(), "");
}

TEST(Time, MayBeAnyNumber)
{
    Requirement("A3", "A11");
    Driver decoder;

    for (const int64_t time : {INT64_MIN, INT64_MIN + 1, int64_t(-1), int64_t(0), INT64_MAX - 1, INT64_MAX,
                               INT64_MIN, INT64_MAX}) {
        const ByteString triplets =
            ToTriplets(1, Code(RU2) + Text("A") + Code(CR)) +
            PacketTriplets(Packet(0, Block(1, Define(Window(0)) + Delay(255) + Ascii("A\r\r"))));
        EXPECT_EQ(Kova_Captions_PushTriplets(*decoder, time, triplets.data(), triplets.size() / 3), 0);
        EXPECT_EQ(Kova_Captions_Advance(*decoder, time), 0);
        Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_NONE, 7);
    }
}

TEST(Time, OfTheNextChangeIsTheOneThatComesFirst)
{
    Requirement("A11");
    Driver decoder;
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_NONE, 7), KOVA_CAPTIONS_NEVER);

    const int64_t start = decoder.Now();
    decoder.SendService(1, Define(Window(0)) + Delay(30) + Ascii("A"));
    decoder.SendService(2, Define(Window(0)) + Delay(10) + Ascii("A"));

    EXPECT_EQ(Kova_Captions_NextChange(*decoder, 1, KOVA_CAPTIONS_CHANGE_STATE), start + 30 * TENTH);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, 2, KOVA_CAPTIONS_CHANGE_STATE), start + FRAME + 10 * TENTH);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, KOVA_CAPTIONS_NONE, KOVA_CAPTIONS_CHANGE_STATE),
              start + FRAME + 10 * TENTH);
}

/* --------------------------------------------------------------------------------------------------- Any bytes */

// The same numbers in every run.
class Random
{
public:
    explicit Random(unsigned seed) : m_engine(seed)
    {
    }

    unsigned operator()()
    {
        return unsigned(m_engine());
    }

private:
    std::mt19937 m_engine;
};

// Bytes of which many mean something: pairs with parity, packets with blocks, and noise.
static ByteString AnyTriplets(Random &random, size_t count)
{
    ByteString bytes;

    while (bytes.size() < 3 * count) {
        switch (random() % 4) {
        case 0:
            bytes = bytes + ToTriplets(1 + random() % 2, Raw(random() % 0x20, 0x20 + random() % 0x60));
            break;
        case 1:
            bytes = bytes + ToTriplets(1 + random() % 2, Raw(random() % 0x80, random() % 0x80));
            break;
        case 2:
            bytes = bytes + Bytes({random() % 256, random() % 256, random() % 256});
            break;
        default: {
            ByteString service =
                Define(Window(random() % 8).Rows(1 + random() % 16).Columns(1 + random() % 64));
            while (service.size() < 60)
                service.push_back(uint8_t(random() % 4 ? 0x80 + random() % 0x20 : random()));
            bytes = bytes + PacketTriplets(
                                Packet(random() % 8 ? random() % 4 : 0, Blocks(1 + random() % 63, service)));
        }
        }
    }
    bytes.resize(3 * count);
    return bytes;
}

TEST(AnyBytes, EndWithoutHarm)
{
    Requirement("A3");
    Random random(608708);

    for (int round = 0; round < 20; round++) {
        Driver decoder(WithEvents());
        for (int picture = 0; picture < 100; picture++) {
            decoder.SendTriplets(AnyTriplets(random, 20));
            decoder.Wait(int64_t(random() % 200000));
        }
        // whatever is there can be read
        decoder.Snapshot();
        decoder.Events();
        const auto channel = decoder.Channel(KOVA_CAPTIONS_CC1);
        EXPECT_LT(channel->cursor_row, 15);
        EXPECT_LT(channel->cursor_column, 32);
    }
}

TEST(AnyBytes, LeaveNothingBehindADiscontinuity)
{
    Requirement("A3", "A7", "A8");
    Random random(79101);

    for (int round = 0; round < 20; round++) {
        Driver used, fresh;
        for (int picture = 0; picture < 100; picture++) used.SendTriplets(AnyTriplets(random, 20));
        used.Discontinuity();
        used.SetSequence(0);
        for (Driver *const decoder : {&used, &fresh}) {
            FillEverything(*decoder);
            decoder->Wait(3 * SECOND);
        }
        ASSERT_EQ(used.Snapshot(), fresh.Snapshot()) << round;
    }
}

TEST(AnyBytes, InPiecesOfAnySizeGiveTheSame)
{
    Requirement("A4");
    Random random(79102);

    for (int round = 0; round < 20; round++) {
        Driver whole(WithEvents()), single(WithEvents()), pieces(WithEvents());
        for (int picture = 0; picture < 30; picture++) {
            const ByteString triplets = AnyTriplets(random, 31);
            whole.SendTriplets(triplets);
            for (size_t i = 0; i < triplets.size(); i += 3)
                single.SendTriplets({triplets[i], triplets[i + 1], triplets[i + 2]});
            for (size_t i = 0; i < triplets.size();) {
                const size_t end = std::min(triplets.size(), i + 3 * (random() % 5));
                pieces.SendTriplets(ByteString(triplets.begin() + long(i), triplets.begin() + long(end)));
                i = end;
            }
            for (Driver *const decoder : {&whole, &single, &pieces}) decoder->Wait(FRAME);
        }
        ASSERT_EQ(single.Snapshot(), whole.Snapshot()) << round;
        ASSERT_EQ(pieces.Snapshot(), whole.Snapshot()) << round;
        const std::string events = whole.Events();
        ASSERT_EQ(single.Events(), events) << round;
        ASSERT_EQ(pieces.Events(), events) << round;
    }
}

/* --------------------------------------------------------------------------------------------------------- Threads */

TEST(Threads, MayPushAndReadAtOnce)
{
    Driver decoder(WithEvents());
    std::atomic<bool> done{false};
    std::thread reader([&] {
        KovaCaptionsEvent event;
        while (!done) {
            decoder.Channel(KOVA_CAPTIONS_CC1);
            const auto window = decoder.Window(0);
            // a window is read as a whole: its one row holds equal letters
            if (window->exists && window->cells[0][0].kind == KOVA_CAPTIONS_CHARACTER) {
                EXPECT_EQ(window->cells[0][7].character, window->cells[0][0].character);
            }
            Kova_Captions_Revision(*decoder);
            Kova_Captions_NextEvent(*decoder, &event);
        }
    });

    for (int i = 0; i < 300; i++) {
        decoder.SendService(1,
                            Define(Window(0)) + SetPenLocation(0, 0) + ByteString(8, uint8_t('A' + i % 26)));
        decoder.Send(Code(RU2) + Text("AB") + Code(CR));
    }
    done = true;
    reader.join();
    EXPECT_EQ(decoder.WindowText(), "0 " + std::string(8, char('A' + 299 % 26)));
}

/* ----------------------------------------------------------------------------------------------------- Needs */

// The names in the dynamic section of the shared object.
static std::vector<std::string> NeedsOf(const char *library)
{
    std::vector<std::string> needs;

    for (const link_map *map = _r_debug.r_map; map; map = map->l_next) {
        if (!strstr(map->l_name, library)) continue;
        const char *strings = nullptr;
        for (const ElfW(Dyn) *entry = map->l_ld; entry->d_tag != DT_NULL; entry++) {
            if (entry->d_tag == DT_STRTAB) strings = reinterpret_cast<const char *>(entry->d_un.d_ptr);
        }
        for (const ElfW(Dyn) *entry = map->l_ld; entry->d_tag != DT_NULL; entry++) {
            if (entry->d_tag == DT_NEEDED) needs.push_back(strings + entry->d_un.d_val);
        }
    }
    return needs;
}

TEST(SharedObject, NeedsTheCLibraryAlone)
{
    Requirement("A2");

    const auto needs = NeedsOf("libkova_captions.so");
    ASSERT_FALSE(needs.empty());
    for (const std::string &name : needs) {
        // with a sanitizer its run-time, and on some machines the dynamic linker itself
        const bool isSanitizer = name.find("san.so") != std::string::npos;
        EXPECT_TRUE(name.rfind("libc.so", 0) == 0 || name.rfind("ld-linux", 0) == 0 || isSanitizer) << name;
    }
}
