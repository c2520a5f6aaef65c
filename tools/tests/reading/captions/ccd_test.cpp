// SPDX-License-Identifier: MIT
#include "reading/captions/ccd.h"

#include <gtest/gtest.h>

#include "base/failure.h"
#include "reading/captions/lines.h"

static std::string Problem(const std::string &text)
{
    try {
        caption::ReadCcd(text);
    } catch (const caption::Failure &failure) {
        return failure.what();
    }
    return "";
}

TEST(CcdFile, HoldsTimesAndTriplets)
{
    EXPECT_EQ(Listed(caption::ReadCcd("# captions of CC1\n"
                                      "00:00:01.234 fc 94 20  fd 80 80  ff 02 21\n"
                                      "\n"
                                      "  2000\tFC9420fd8080 # two\n"
                                      "01:02:03.004 FE 1 2 3 4\n"
                                      "100:00:00.000 fc9 420\n")),
              "1234000 fc9420\n1234000 fd8080\n1234000 ff0221\n2000000 fc9420\n2000000 fd8080\n"
              "3723004000 fe1234\n360000000000 fc9420\n");
}

TEST(CcdFile, MayHaveAMarkWindowsLineEndsAndNoLastLineEnd)
{
    EXPECT_EQ(Listed(caption::ReadCcd("\xEF\xBB\xBF# x\r\n0 fc9420\r\n1 fc942f")), "0 fc9420\n1000 fc942f\n");
}

TEST(CcdFile, LetsTheClockRunToATimeWithoutTriplets)
{
    const caption::Triplets read = caption::ReadCcd("0 fc9420\n00:00:20.000\n");

    EXPECT_EQ(read.triplets.size(), 1u);
    EXPECT_EQ(read.end, 20000000);
}

TEST(CcdFile, NamesTheLineThatIsWrong)
{
    EXPECT_EQ(Problem("0 fc9420\n\nsoon fc9420\n"),
              "line 3: 'soon' is not a time (HH:MM:SS.mmm, or milliseconds)");
    EXPECT_EQ(Problem("# x\n0 fc94zz\n"), "line 2: 'z' is not a hexadecimal digit");
    EXPECT_EQ(Problem("0 fc 94 20 fd 80\n"),
              "line 1: its 10 hexadecimal digits are not whole triplets of six digits");
    for (const std::string time : {"00:60:00.000", "00:00:60.000", "0:00:00.000", "00:00:00.00",
                                   "00:00:00,000", "00:00:00", "-1", "1.5", "12345678901"}) {
        EXPECT_EQ(Problem(time + " fc9420").rfind("line 1: '" + time + "' is not a time", 0), 0u) << time;
    }
}

TEST(CcdFile, IsKnownByItsFirstLineThatIsNoComment)
{
    EXPECT_TRUE(caption::IsCcd("# 1\n\n1033 fc 94 20\n"));
    EXPECT_TRUE(caption::IsCcd("00:00:01.000 fc9420\nwhat follows may be damaged"));
    EXPECT_FALSE(caption::IsCcd(""));
    EXPECT_FALSE(caption::IsCcd("# only comments\n"));
    EXPECT_FALSE(caption::IsCcd("00:00:01.000\n")) << "a time alone is no triplet";
    EXPECT_FALSE(caption::IsCcd("1\n00:00:01,000 --> 00:00:02,000\n")) << "SubRip";
    EXPECT_FALSE(caption::IsCcd("00:00:01:deed\n")) << "VPlayer";
}
