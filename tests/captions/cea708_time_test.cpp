// SPDX-License-Identifier: MIT
// CEA-708: the input buffer of a service, delay, reset, silence.
#include "driver.h"

static const ByteString WINDOW = Define(Window(0).Rows(15).Columns(42));

/* ------------------------------------------------------------------------------------------------------- The delay */

TEST(Delay708, HoldsAServiceForTenthsOfASecond)
{
    Requirement("C58", "A11");
    Driver decoder;
    decoder.SendService(1, WINDOW + Ascii("A"));

    const int64_t start = decoder.Now();
    decoder.SendService(1, Ascii("B") + Delay(15) + Ascii("CD"));
    EXPECT_EQ(decoder.WindowText(), "0 AB");
    EXPECT_EQ(decoder.Service().buffered, 2);
    EXPECT_EQ(decoder.Service().delay_until, start + 15 * TENTH);
    EXPECT_EQ(Kova_Captions_NextChange(*decoder, 1, KOVA_CAPTIONS_CHANGE_STATE), start + 15 * TENTH);

    decoder.SendService(1, Ascii("E"));
    EXPECT_EQ(decoder.WindowText(), "0 AB");
    decoder.Wait(start + 15 * TENTH - 1 - decoder.Now());
    EXPECT_EQ(decoder.WindowText(), "0 AB");
    decoder.Wait(1);

    EXPECT_EQ(decoder.WindowText(), "0 ABCDE");
    EXPECT_EQ(decoder.Service().buffered, 0);
    EXPECT_EQ(decoder.Service().delay_until, KOVA_CAPTIONS_NO_TIME);
}

TEST(Delay708, LeavesOtherServicesAlone)
{
    Requirement("C58");
    Driver decoder;

    decoder.SendBlocks(Block(1, WINDOW + Delay(50) + Ascii("A")) + Block(2, WINDOW + Ascii("B")));

    EXPECT_EQ(decoder.WindowText(0, 1), "");
    EXPECT_EQ(decoder.WindowText(0, 2), "0 B");
}

TEST(Delay708, OfZeroDoesNothing)
{
    Requirement("C58");
    Driver decoder;

    decoder.SendService(1, WINDOW + Ascii("A") + Delay(0) + Ascii("B"));

    EXPECT_EQ(decoder.WindowText(), "0 AB");
    EXPECT_EQ(decoder.Service().delay_until, KOVA_CAPTIONS_NO_TIME);
}

TEST(Delay708, LastsUpTo25Seconds)
{
    Requirement("C58");
    Driver decoder;
    const int64_t start = decoder.Now();

    decoder.SendService(1, WINDOW + Delay(255) + Ascii("A"));

    EXPECT_EQ(decoder.Service().delay_until, start + 255 * TENTH);
}

TEST(Delay708, CountsASecondOneFromTheEndOfTheFirst)
{
    Requirement("C58", "C59");
    const int64_t steps[] = {SECOND / 100, 5 * SECOND};

    // the time in small steps, and in one large one
    for (const int64_t step : steps) {
        Driver decoder;
        const int64_t start = decoder.Now();
        decoder.SendService(1, WINDOW + Delay(10) + Ascii("A") + Delay(10) + Ascii("B"));
        while (decoder.Now() < start + 11 * TENTH) decoder.Wait(step);
        if (step < SECOND) {
            EXPECT_EQ(decoder.WindowText(), "0 A");
            EXPECT_EQ(decoder.Service().delay_until, start + 20 * TENTH);
        }
        while (decoder.Now() < start + 21 * TENTH) decoder.Wait(step);
        EXPECT_EQ(decoder.WindowText(), "0 AB");
    }
}

TEST(Delay708, EndsWithItsTimeBeforeTheBytesOfThatTimeAreTaken)
{
    Requirement("C59");
    Driver decoder;

    // the effect of what was held starts when the delay ended, not when the next bytes came
    WindowAttributes fade;
    fade.effect = 1;
    fade.effectSpeed = 10;
    const int64_t start = decoder.Now();
    decoder.SendService(1, Define(Window(0).Hidden()) + SetWindowAttributes(fade) + Delay(10) +
                               DisplayWindows(0x01));
    decoder.Wait(SECOND / 2);
    EXPECT_EQ(decoder.Window(0)->visible, 0);
    decoder.Wait(SECOND);

    EXPECT_EQ(decoder.Window(0)->visible, 1);
    EXPECT_EQ(decoder.Window(0)->effect.start, start + SECOND);
}

TEST(Delay708, IsEndedByDelayCancel)
{
    Requirement("C59", "C60");
    Driver decoder;
    decoder.SendService(1, WINDOW + Ascii("A") + Delay(200) + Ascii("BC"));

    decoder.SendService(1, Ascii("D") + Bytes({DLC}) + Ascii("E"));

    EXPECT_EQ(decoder.WindowText(), "0 ABCDE");
    EXPECT_EQ(decoder.Service().delay_until, KOVA_CAPTIONS_NO_TIME);
    EXPECT_EQ(decoder.Service().buffered, 0);
}

TEST(Delay708, IsEndedByDelayCancelInItsOwnPacket)
{
    Requirement("C59", "C60");
    Driver decoder;

    decoder.SendService(1, WINDOW + Delay(200) + Ascii("AB") + Bytes({DLC}));

    EXPECT_EQ(decoder.WindowText(), "0 AB");
}

TEST(Delay708, IsNotEndedByABufferedDelayThatFollowsACancel)
{
    Requirement("C59");
    Driver decoder;
    decoder.SendService(1, WINDOW + Delay(100) + Ascii("A"));

    const int64_t time = decoder.Now();
    decoder.SendService(1, Bytes({DLC}) + Delay(30) + Ascii("B"));

    EXPECT_EQ(decoder.WindowText(), "0 A");
    EXPECT_EQ(decoder.Service().delay_until, time + 30 * TENTH);
    EXPECT_EQ(decoder.Service().buffered, 1);
}

TEST(Delay708, OfTheBufferActsWhenACancelEmptiesIt)
{
    Requirement("C59");
    Driver decoder;
    decoder.SendService(1, WINDOW + Delay(100) + Ascii("A") + Delay(30) + Ascii("B"));

    const int64_t time = decoder.Now();
    decoder.SendService(1, Bytes({DLC}));

    EXPECT_EQ(decoder.WindowText(), "0 A");
    EXPECT_EQ(decoder.Service().delay_until, time + 30 * TENTH);
}

TEST(Delay708, IsEndedByAFullBuffer)
{
    Requirement("C57", "C59");
    Driver decoder;
    decoder.SendService(1, WINDOW + Delay(200));

    for (int i = 0; i < 3; i++) decoder.SendService(1, ByteString(40, 'A'));
    decoder.SendService(1, ByteString(8, 'A'));
    EXPECT_EQ(decoder.Service().buffered, 128);
    EXPECT_EQ(decoder.WindowText(), "");

    decoder.SendService(1, Ascii("Z"));
    EXPECT_EQ(decoder.Service().buffered, 0);
    EXPECT_EQ(decoder.WindowText(), "0 " + std::string(41, 'A') + "Z");
    EXPECT_EQ(decoder.Service().delay_until, KOVA_CAPTIONS_NO_TIME);
    EXPECT_EQ(decoder.Counters().full_buffers, 1u);
}

TEST(Delay708, KeepsCommandsWhole)
{
    Requirement("C57", "C58");
    Driver decoder;
    decoder.SendService(1, WINDOW + Delay(10) + SetPenLocation(3, 5) + Ascii("AB") + Wide(0x266A));
    decoder.SendService(1, Define(Window(1)) + Ascii("C"));

    decoder.Wait(SECOND);

    EXPECT_EQ(decoder.WindowText(0), "3 .....AB♪");
    EXPECT_EQ(decoder.WindowText(1), "0 C");
}

TEST(Delay708, IsNotEndedByParametersThatLookLikeDelayCancelOrReset)
{
    Requirement("C60");
    const ByteString lookalikes[] = {
        Hex("91 8e 8f 8e"),                               // SPC
        Hex("90 8f 8e"),                                  // SPA
        Hex("92 8e 8f"),                                  // SPL
        Hex("97 8e 8f 8e 8f"),                            // SWA
        Hex("99 8e 8f 8e 8e 8f 8e"),                      // DF1
        Hex("88 8e 89 8f 8a 8e 8b 8f"),                   // CLW, DSW, HDW, TGW
        Hex("8c 8e"),                                     // DLW, not of window 0
        Hex("8d 8f"),                                     // DLY
        Hex("18 8e 8f"),                                  // P16
        Hex("11 8e 19 8f 8e"),                            // unassigned C0
        Hex("10 8e 01 02 03 04 8f"),                      // C3 of 7 bytes
        Hex("10 00 10 08 8e 10 10 8f 8e 10 18 8e 8f 8e"), // C2
        Hex("10 90 02 8e 8f"),                            // variable
    };

    for (const ByteString &each : lookalikes) {
        Driver decoder;
        decoder.SendService(1, WINDOW + Ascii("A") + Delay(200));
        decoder.SendService(1, each);
        decoder.SendService(1, Ascii("B"));
        EXPECT_EQ(decoder.Service().buffered, each.size() + 1) << ToHex(each.data(), each.size());
        EXPECT_EQ(decoder.WindowText(), "0 A") << ToHex(each.data(), each.size());
    }
}

TEST(Delay708, IsNotEndedByParametersInAnotherBlock)
{
    Requirement("C60", "T20");
    Driver decoder;
    decoder.SendService(1, WINDOW + Ascii("A") + Delay(200));

    decoder.SendBlocks(Block(1, Hex("91 00")) + Block(1, Hex("8e")) + Block(1, Hex("8f") + Ascii("B")));

    EXPECT_EQ(decoder.Service().buffered, 5);
    EXPECT_EQ(decoder.WindowText(), "0 A");
}

/* ----------------------------------------------------------------------------------------------------------- Reset */

TEST(Reset708, DeletesAllWindows)
{
    Requirement("C61");
    Driver decoder;
    decoder.SendService(1, Define(Window(0)) + Ascii("A") + Define(Window(7)) + Ascii("B"));
    decoder.SendService(2, Define(Window(0)) + Ascii("C"));

    decoder.SendService(1, Bytes({RST}) + Ascii("x"));

    EXPECT_EQ(decoder.Service().existing_windows, 0);
    EXPECT_EQ(decoder.Service().visible_windows, 0);
    EXPECT_EQ(decoder.Service().current_window, KOVA_CAPTIONS_NO_WINDOW);
    EXPECT_EQ(decoder.WindowText(0, 2), "0 C");
}

TEST(Reset708, EmptiesTheBufferAndEndsTheDelay)
{
    Requirement("C59", "C60", "C61");
    Driver decoder;
    decoder.SendService(1, WINDOW + Ascii("A") + Delay(200) + Ascii("BC"));

    decoder.SendService(1, Define(Window(5)) + Bytes({RST}) + Define(Window(3)) + Ascii("D"));

    EXPECT_EQ(decoder.Service().existing_windows, 0x08);
    EXPECT_EQ(decoder.WindowText(3), "0 D");
    EXPECT_EQ(decoder.Service().buffered, 0);
    EXPECT_EQ(decoder.Service().delay_until, KOVA_CAPTIONS_NO_TIME);
}

TEST(Reset708, GoesOnWithTheRestOfItsBlock)
{
    Requirement("C61");
    Driver decoder;

    decoder.SendService(1, Define(Window(0)) + Ascii("A") + Bytes({RST}) + Define(Window(1)) + Ascii("B"));

    EXPECT_EQ(decoder.WindowText(0), "-");
    EXPECT_EQ(decoder.WindowText(1), "0 B");
}

TEST(Reset708, LeavesWhatFollowsItToADiscontinuityOrAGap)
{
    Requirement("C61", "A8", "T13");
    Driver discontinuity, gap, delayed;
    const ByteString bytes = Define(Window(0)) + Bytes({RST}) + Define(Window(1)) + Ascii("B");

    discontinuity.SendService(1, bytes);
    discontinuity.Discontinuity();
    EXPECT_EQ(discontinuity.Service().existing_windows, 0);

    gap.SendService(1, bytes);
    gap.SetSequence(3);
    gap.SendBlocks(Byte(0));
    EXPECT_EQ(gap.Service().existing_windows, 0);

    // and to the clock
    const int64_t start = delayed.Now();
    delayed.SendService(1, Bytes({RST}) + WINDOW + Delay(10) + Ascii("A"));
    EXPECT_EQ(Kova_Captions_NextChange(*delayed, 1, KOVA_CAPTIONS_CHANGE_STATE), start + 10 * TENTH);
    delayed.Wait(SECOND);
    EXPECT_EQ(delayed.WindowText(), "0 A");
}

/* --------------------------------------------------------------------------------------------------------- Silence */

TEST(Silence708, Of16SecondsBlanksWhatIsVisible)
{
    Requirement("C62");
    Driver decoder;
    decoder.SendService(1, Define(Window(0)) + Ascii("SHOWN") + Define(Window(1).Hidden()) + Ascii("HIDDEN"));
    const int64_t last = decoder.Now() - FRAME;

    decoder.Wait(last + 16 * SECOND - 1 - decoder.Now());
    EXPECT_EQ(decoder.WindowText(0), "0 SHOWN");
    EXPECT_EQ(decoder.Service().blanked, 0);
    decoder.Wait(2);

    EXPECT_EQ(decoder.WindowText(0), "");
    EXPECT_EQ(decoder.WindowText(1), "0 HIDDEN");
    EXPECT_EQ(decoder.Service().blanked, 1);
    EXPECT_EQ(decoder.Service().existing_windows, 0x03);
    EXPECT_EQ(decoder.Service().visible_windows, 0x01);

    // captions that were sent ahead still work
    decoder.SendService(1, ToggleWindows(0x03));
    EXPECT_EQ(decoder.Service().blanked, 0);
    EXPECT_EQ(decoder.Service().visible_windows, 0x02);
    EXPECT_EQ(decoder.WindowText(1), "0 HIDDEN");
}

TEST(Silence708, IsBrokenByAnyPacket)
{
    Requirement("C62");
    Driver decoder;
    decoder.SendService(1, Define(Window(0)) + Ascii("SHOWN"));

    // of another service, or of none
    decoder.Wait(10 * SECOND);
    decoder.SendService(2, Ascii("x"));
    decoder.Wait(10 * SECOND);
    decoder.SendBlocks(Byte(0));
    decoder.Wait(10 * SECOND);
    EXPECT_EQ(decoder.WindowText(0), "0 SHOWN");
    EXPECT_EQ(decoder.Service().blanked, 0);
}

TEST(Silence708, IsNotBrokenByPairsAndFillers)
{
    Requirement("C62", "T5");
    Driver decoder;
    decoder.SendService(1, Define(Window(0)) + Ascii("SHOWN"));

    for (int second = 0; second < 17; second++) {
        decoder.SendTriplets(Hex("fa 00 00  fc 94 20"));
        decoder.Wait(SECOND);
    }

    EXPECT_EQ(decoder.WindowText(0), "");
    EXPECT_EQ(decoder.Service().blanked, 1);
}

TEST(Silence708, MayLastAsTheCallerSays)
{
    Requirement("C62");
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    EXPECT_EQ(options.service_timeout, 16 * SECOND);
    options.service_timeout = 0;
    Driver never(options);
    options.service_timeout = SECOND;
    Driver soon(options);

    never.SendService(1, Define(Window(0)) + Ascii("SHOWN"));
    soon.SendService(1, Define(Window(0)) + Ascii("SHOWN"));
    never.Wait(100000 * SECOND);
    soon.Wait(SECOND);

    EXPECT_EQ(never.WindowText(0), "0 SHOWN");
    EXPECT_EQ(soon.WindowText(0), "");
}
