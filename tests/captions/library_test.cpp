// SPDX-License-Identifier: MIT
// The library as such: channels and services side by side, discontinuities, selection, time, what it needs.
#include "driver.h"

#include <chrono>
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

/* ----------------------------------------------------------------------------------------------------- Needs */

// The names in the dynamic section of the shared object.
static std::vector<std::string> NeedsOf(const char *library)
{
    std::vector<std::string> needs;

    for (const link_map *map = _r_debug.r_map; map; map = map->l_next) {
        if (!strstr(map->l_name, library)) continue;
        const char *strings = nullptr;
        for (const ElfW(Dyn) *entry = map->l_ld; entry->d_tag != DT_NULL; entry++) {
            // NOLINTNEXTLINE(performance-no-int-to-ptr): the dynamic section holds addresses as numbers
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

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer's run-time needs more";
#endif
    const auto needs = NeedsOf("libkova_captions.so");
    ASSERT_FALSE(needs.empty());
    for (const std::string &name : needs) {
        // the dynamic linker is named on some machines
        EXPECT_TRUE(name.rfind("libc.so", 0) == 0 || name.rfind("ld-linux", 0) == 0) << name;
    }
}
