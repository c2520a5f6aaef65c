// SPDX-License-Identifier: MIT
#include "requirement.h"

#include "kova/kova_captions_carriage.h"

static int64_t Count(KovaCaptionsFrameRate rate, int hours, int minutes, int seconds, int frames, bool drop)
{
    const KovaCaptionsTimeCode timeCode = {uint8_t(hours), uint8_t(minutes), uint8_t(seconds),
                                           uint8_t(frames), uint8_t(drop)};

    return Kova_Captions_CountFrames(rate, &timeCode);
}

static int64_t Drop(int hours, int minutes, int seconds, int frames)
{
    return Count(KOVA_CAPTIONS_RATE_29_97, hours, minutes, seconds, frames, true);
}

static int64_t NonDrop(int hours, int minutes, int seconds, int frames)
{
    return Count(KOVA_CAPTIONS_RATE_29_97, hours, minutes, seconds, frames, false);
}

TEST(TimeCode, LeavesOutTwoLabelsAMinuteInDropFrame)
{
    Requirement("T26");

    EXPECT_EQ(Drop(0, 0, 0, 0), 0);
    EXPECT_EQ(Drop(0, 0, 59, 29), 1799);
    EXPECT_EQ(Drop(0, 1, 0, 2), 1800);
    EXPECT_EQ(Drop(0, 1, 59, 29), 3597);
    EXPECT_EQ(Drop(0, 2, 0, 2), 3598);
    // the tenth minute has them all
    EXPECT_EQ(Drop(0, 9, 59, 29), 17981);
    EXPECT_EQ(Drop(0, 10, 0, 0), 17982);
    EXPECT_EQ(Drop(1, 0, 0, 0), 107892);
    EXPECT_EQ(Drop(23, 59, 59, 29), 2589407);
}

TEST(TimeCode, LeavesOutFourLabelsAMinuteInDropFrameAt59)
{
    Requirement("T26");

    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_59_94, 0, 0, 59, 59, true), 3599);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_59_94, 0, 1, 0, 4, true), 3600);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_59_94, 1, 0, 0, 0, true), 215784);
}

TEST(TimeCode, ReadsALabelThatIsLeftOutAsTheNext)
{
    Requirement("T26");

    EXPECT_EQ(Drop(0, 1, 0, 0), 1800);
    EXPECT_EQ(Drop(0, 1, 0, 1), 1800);
    EXPECT_EQ(Drop(0, 1, 0, 3), 1801);
    EXPECT_EQ(Drop(0, 20, 0, 1), Drop(0, 20, 0, 0) + 1);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_59_94, 0, 1, 0, 3, true), 3600);
}

TEST(TimeCode, CountsEveryLabelWithoutDropFrame)
{
    Requirement("T26");

    EXPECT_EQ(NonDrop(0, 1, 0, 0), 1800);
    EXPECT_EQ(NonDrop(1, 0, 0, 0), 108000);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_25, 1, 2, 3, 4, false), 3723 * 25 + 4);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_23_976, 0, 0, 1, 0, false), 24);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_50, 0, 0, 0, 49, false), 49);
}

TEST(TimeCode, BecomesATime)
{
    Requirement("T26");

    // 1800 * 1001 / 30000 s; 107892 * 1001 / 30000 s; 108000 * 1001 / 30000 s
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, 1800), 60060000);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, 107892), 3599996400);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, 108000), 3603600000);
}

TEST(TimeCode, IsRoundedToTheNearestMicrosecond)
{
    // 1001/30000 s = 33366.67 us, 2002/30000 s = 66733.33 us, 1001/60000 s = 16683.33 us, 1001/24000 s = 41708.33 us
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, 0), 0);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, 1), 33367);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, 2), 66733);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_59_94, 1), 16683);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_23_976, 1), 41708);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_24, 1), 41667);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_25, 1), 40000);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_30, 1), 33333);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_50, 1), 20000);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_60, 1), 16667);
}

TEST(TimeCode, StaysExactOverDays)
{
    const struct {
        KovaCaptionsFrameRate rate;
        int64_t microseconds;
    } cases[] = {// of 24 million frames at 24 Hz, and so on
                 {KOVA_CAPTIONS_RATE_23_976, 1001000}, {KOVA_CAPTIONS_RATE_24, 1000000},
                 {KOVA_CAPTIONS_RATE_25, 1000000},     {KOVA_CAPTIONS_RATE_29_97, 1001000},
                 {KOVA_CAPTIONS_RATE_30, 1000000},     {KOVA_CAPTIONS_RATE_50, 1000000},
                 {KOVA_CAPTIONS_RATE_59_94, 1001000},  {KOVA_CAPTIONS_RATE_60, 1000000}};
    const int64_t nominal[] = {24, 24, 25, 30, 30, 50, 60, 60};

    for (size_t i = 0; i < 8; i++) {
        EXPECT_EQ(Kova_Captions_FramesToTime(cases[i].rate, nominal[i] * 1000000),
                  cases[i].microseconds * 1000000);
    }
}

TEST(TimeCode, CountsUpTo99Hours)
{
    EXPECT_EQ(NonDrop(99, 59, 59, 29), 100 * 108000 - 1);
}

TEST(TimeCode, LeavesOutLabelsAtTheFourRatesThatHaveDropFrame)
{
    for (unsigned rate = 1; rate <= 8; rate++) {
        const int64_t count = Count(KovaCaptionsFrameRate(rate), 0, 2, 1, 0, true);
        switch (rate) {
        case KOVA_CAPTIONS_RATE_29_97:
        case KOVA_CAPTIONS_RATE_30:
            EXPECT_EQ(count, 121 * 30 - 2 * 2);
            break;
        case KOVA_CAPTIONS_RATE_59_94:
        case KOVA_CAPTIONS_RATE_60:
            EXPECT_EQ(count, 121 * 60 - 2 * 4);
            break;
        default:
            EXPECT_EQ(count, -1);
        }
    }
}

TEST(TimeCode, RefusesWhatNoTimeCodeSays)
{
    EXPECT_EQ(NonDrop(100, 0, 0, 0), -1);
    EXPECT_EQ(NonDrop(0, 60, 0, 0), -1);
    EXPECT_EQ(NonDrop(0, 0, 60, 0), -1);
    EXPECT_EQ(NonDrop(0, 0, 0, 30), -1);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_24, 0, 0, 0, 24, false), -1);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_25, 0, 0, 0, 0, true), -1);
    EXPECT_EQ(Count(KOVA_CAPTIONS_RATE_UNKNOWN, 0, 0, 0, 0, false), -1);
    EXPECT_EQ(Count(KovaCaptionsFrameRate(9), 0, 0, 0, 0, false), -1);
    EXPECT_EQ(Kova_Captions_CountFrames(KOVA_CAPTIONS_RATE_24, nullptr), -1);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_UNKNOWN, 0), -1);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_24, -1), -1);
    EXPECT_EQ(Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_24, (int64_t(1) << 40) + 1), -1);
}
