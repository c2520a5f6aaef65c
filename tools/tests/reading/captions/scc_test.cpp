// SPDX-License-Identifier: MIT
#include "reading/captions/scc.h"

#include <gtest/gtest.h>

#include "captions/requirement.h"
#include "reading/captions/lines.h"

using caption::Notices;
using caption::Triplets;
using Said = std::vector<std::string>;

static const std::string g_header = "Scenarist_SCC V1.0\n\n";

static Triplets Read(const std::string &lines)
{
    Notices notices;
    Triplets read = caption::ReadScc(g_header + lines, notices);

    EXPECT_EQ(notices.said(), Said());
    return read;
}

static std::int64_t TimeOf(const std::string &timeCode)
{
    return Read(timeCode + "\t9420\n").triplets.at(0).time;
}

TEST(SccFile, IsKnownByItsFirstLineThatIsNotBlank)
{
    EXPECT_TRUE(caption::IsScc("Scenarist_SCC V1.0"));
    EXPECT_TRUE(caption::IsScc("\xEF\xBB\xBF\r\n  Scenarist_SCC V1.0\r\n"));
    EXPECT_FALSE(caption::IsScc(""));
    EXPECT_FALSE(caption::IsScc("1\n00:00:01,000 --> 00:00:02,000\nScenarist_SCC V1.0\n"));
}

TEST(SccFile, SendsTheNthWordNMinusOneFramesAfterTheLinesTime)
{
    Requirement("T27");
    EXPECT_EQ(Listed(Read("00:00:01:00\t9420 94ae 9420\n")), std::to_string(FrameTime(30)) + " fc9420\n" +
                                                                 std::to_string(FrameTime(31)) + " fc94ae\n" +
                                                                 std::to_string(FrameTime(32)) + " fc9420\n");
}

TEST(SccFile, CountsEveryFrameInNonDropTimeCodes)
{
    // 108000 frames of 1001/30000 s are 3603.6 s.
    EXPECT_EQ(TimeOf("01:00:00:00"), 3603600000);
    EXPECT_EQ(TimeOf("02:00:00:00"), 7207200000);
    EXPECT_EQ(TimeOf("00:00:00:29"), FrameTime(29));
}

TEST(SccFile, LeavesTwoLabelsAMinuteOutInDropFrameTimeCodes)
{
    EXPECT_EQ(TimeOf("00:01:00;02"), 60060000) << "frame 1800";
    EXPECT_EQ(TimeOf("01:00:00;00"), 3599996400) << "frame 107892";
    EXPECT_EQ(TimeOf("00:10:00;00"), FrameTime(17982)) << "the tenth minute leaves none out";
    EXPECT_EQ(TimeOf("00:01:00;00"), TimeOf("00:01:00;02")) << "such a label is read as the next that exists";
}

TEST(SccFile, PushesALineBackWhileWordsOfTheOneBeforeAreSent)
{
    Requirement("T27");
    const Triplets read = Read("00:00:01:00\t9420 9420 c8e9 942f\n00:00:01:02\t942c\n00:00:02:00\t942c\n");

    ASSERT_EQ(read.triplets.size(), 6u);
    EXPECT_EQ(read.triplets[3].time, FrameTime(33));
    EXPECT_EQ(read.triplets[4].time, FrameTime(34)) << "not at frame 32, its own";
    EXPECT_EQ(read.triplets[5].time, FrameTime(60));
    EXPECT_EQ(read.end, FrameTime(61)) << "when the last word has been sent";
}

TEST(SccFile, MayHaveWindowsLineEndsAMarkCapitalsAndAnyBlanks)
{
    Notices notices;
    const Triplets read = caption::ReadScc(
        "\xEF\xBB\xBFScenarist_SCC V1.0\r\n\r\n  00:00:00:00 94AE   94ae\t942F  \r\n", notices);

    EXPECT_EQ(Listed(read), "0 fc94ae\n" + std::to_string(FrameTime(1)) + " fc94ae\n" +
                                std::to_string(FrameTime(2)) + " fc942f\n");
    EXPECT_EQ(notices.said(), Said());
}

TEST(SccFile, ReportsADamagedLineOnceAndReadsTheRest)
{
    Requirement("T27");
    Notices notices;
    const Triplets read = caption::ReadScc(g_header + "00:00:0x:00\t9420\n"
                                                      "00:00:01:00\t94zz 942 9420\n"
                                                      "00:00:01:30\t9420\n"
                                                      "00:61:00:00\t9420\n"
                                                      "00:00:02:00\t942c\n",
                                           notices);

    EXPECT_EQ(Listed(read),
              std::to_string(FrameTime(32)) + " fc9420\n" + std::to_string(FrameTime(60)) + " fc942c\n")
        << "a damaged word keeps its frame";
    ASSERT_EQ(notices.said().size(), 4u);
    EXPECT_EQ(notices.said()[0].rfind("line 3: '00:00:0x:00' is not a time code", 0), 0u);
    EXPECT_EQ(notices.said()[1].rfind("line 4: '94zz' is not a word of four hexadecimal digits", 0), 0u);
    EXPECT_EQ(notices.said()[2].rfind("line 5: ", 0), 0u) << "there are frames 0 to 29";
    EXPECT_EQ(notices.said()[3].rfind("line 6: ", 0), 0u);
}

TEST(SccFile, CountsDamagedLinesBeyondTen)
{
    Notices notices;
    std::string lines;
    for (int i = 0; i < 25; ++i) lines += "bad\n";
    caption::ReadScc(g_header + lines, notices);

    ASSERT_EQ(notices.said().size(), 11u);
    EXPECT_EQ(notices.said().back(), "15 further lines are damaged");
}
