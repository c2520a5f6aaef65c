// SPDX-License-Identifier: MIT
#include "reading/captions/mcc.h"

#include <gtest/gtest.h>

#include "captions/requirement.h"
#include "reading/captions/lines.h"

using caption::Notices;
using caption::Triplets;
using Said = std::vector<std::string>;

static Triplets Read(const std::string &rate, const std::string &lines)
{
    Notices notices;
    Triplets read = caption::ReadMcc("File Format=MacCaption_MCC V1.0\n\n"
                                     "///////////////////////////////////\n"
                                     "// a comment, with a Time Code Rate=24\n"
                                     "UUID=01234567-89AB-CDEF-0123-456789ABCDEF\nCreation Program=tests\n"
                                     "Creation Date=Saturday, November 21, 2026\nCreation Time=12:00:00\n"
                                     "Time Code Rate=" +
                                         rate + "\n\n" + lines,
                                     notices);
    EXPECT_EQ(notices.said(), Said());
    return read;
}

// A packet of one frame with these triplets, in hexadecimal or abbreviated; rate is the frame rate's number.
// The counters and the checksum are left 0, which the reader does not mind.
static std::string Packet(const std::string &triplets, int count, char rate = '4')
{
    const int length = 7 + 2 + 3 * count + 4;
    char head[64];

    std::snprintf(head, sizeof head, "T%02X9669%02X%cF43000072%02X", unsigned(length), unsigned(length), rate,
                  0xE0u + unsigned(count));
    return head + triplets + "740000ZZ";
}

static std::int64_t TimeOf(const std::string &rate, const std::string &label, char cdpRate = '4')
{
    return Read(rate, label + "\t" + Packet("FC9420", 1, cdpRate) + "\n").triplets.at(0).time;
}

TEST(MccFile, IsKnownByItsFirstLine)
{
    Requirement("T25");
    EXPECT_TRUE(caption::IsMcc("File Format=MacCaption_MCC V1.0\n"));
    EXPECT_TRUE(caption::IsMcc("\xEF\xBB\xBF"
                               "File Format=MacCaption_MCC V2.0\r\n"));
    EXPECT_FALSE(caption::IsMcc("Scenarist_SCC V1.0\n"));
}

TEST(MccFile, GivesTheValidTripletsOfItsPackets)
{
    const Triplets read = Read("30", "00:00:01:00\t" + Packet("FC9420FD8080FF0221FE8000FA0000", 5) + "\n");

    const std::string time = std::to_string(FrameTime(30));
    EXPECT_EQ(Listed(read),
              time + " fc9420\n" + time + " fd8080\n" + time + " ff0221\n" + time + " fe8000\n");
    EXPECT_EQ(read.end, FrameTime(30));
}

TEST(MccFile, ExpandsEveryLetter)
{
    Requirement("T24");
    // What a letter stands for is behind the triplet FC 94 20, in the same packet, so the two count together.
    struct Case {
        char letter;
        int fillers;
        const char *triplet;
    };
    const Case cases[] = {{'G', 1, ""}, {'H', 2, ""}, {'I', 3, ""},           {'J', 4, ""},
                          {'K', 5, ""}, {'L', 6, ""}, {'M', 7, ""},           {'N', 8, ""},
                          {'O', 9, ""}, {'P', 1, ""}, {'Q', 1, "0 fc8080\n"}, {'R', 1, "0 fd8080\n"}};
    for (const Case &row : cases) {
        for (const char letter : {row.letter, char(row.letter - 'A' + 'a')}) {
            SCOPED_TRACE(letter);
            // A triplet behind the letter is found only if the letter has the right number of bytes.
            const Triplets read =
                Read("30", "00:00:00:00\t" +
                               Packet("FC9420" + std::string(1, letter) + "FC942F", row.fillers + 2) + "\n");
            EXPECT_EQ(Listed(read), "0 fc9420\n" + std::string(row.triplet) + "0 fc942f\n");
        }
    }
}

TEST(MccFile, ExpandsTheLettersOfHeaders)
{
    Requirement("T24");
    // T is the packet's kind, S the identifier, Z a zero byte, U the beginning of a section with one triplet
    // whose type says that it is filler.
    const Triplets read = Read("30", "00:00:00:00\tT14S144F43ZZ72E2Q"
                                     "FC9420740000Z00\n"
                                     "00:00:00:01\tt0Ds0D4F43zzU740000zz\n");

    EXPECT_EQ(Listed(read), "0 fc8080\n0 fc9420\n");
    EXPECT_EQ(read.end, FrameTime(1));
}

TEST(MccFile, RefusesLinesWithLettersThatHaveNoMeaning)
{
    Requirement("T24");
    for (const char letter : std::string("VWXYvwxy!")) {
        SCOPED_TRACE(letter);
        Notices notices;
        const Triplets read = caption::ReadMcc("File Format=MacCaption_MCC V1.0\nTime Code Rate=30\n"
                                               "00:00:00:00\t" +
                                                   Packet("FC9420", 1) + std::string(1, letter) +
                                                   "\n00:00:00:01\t" + Packet("FC942F", 1) + "\n",
                                               notices);
        EXPECT_EQ(Listed(read), std::to_string(FrameTime(1)) + " fc942f\n");
        ASSERT_EQ(notices.said().size(), 1u);
        EXPECT_EQ(notices.said()[0].rfind("line 3: ", 0), 0u);
    }
}

TEST(MccFile, CountsFramesAtTheRateOfItsHeader)
{
    EXPECT_EQ(TimeOf("24", "00:00:01:12", '2'), 1500000);
    EXPECT_EQ(TimeOf("24", "00:00:01:00", '1'), 1001000) << "its packets say 23.976";
    EXPECT_EQ(TimeOf("25", "00:00:01:05"), 1200000);
    EXPECT_EQ(TimeOf("30", "01:00:00:00"), 3603600000);
    EXPECT_EQ(TimeOf("30DF", "00:01:00:02"), 60060000) << "written with ':' all the same";
    EXPECT_EQ(TimeOf("30", "01:00:00;00"), 3599996400) << "';' means drop-frame too";
    EXPECT_EQ(TimeOf("50", "00:00:01:25"), 1500000);
    EXPECT_EQ(TimeOf("60", "01:00:00:00"), 3603600000);
    EXPECT_EQ(TimeOf("60DF", "00:01:00:04"), 60060000);
}

TEST(MccFile, TakesTheRateOfItsPacketsWhereTheHeaderHasNone)
{
    Notices notices;
    const Triplets read = caption::ReadMcc(
        "File Format=MacCaption_MCC V1.0\n00:00:02:00\t" + Packet("FC9420", 1, '3') + "\n", notices);

    EXPECT_EQ(read.triplets.at(0).time, 2000000);
}

TEST(MccFile, OfVersion2MayNameFieldAndLine)
{
    Requirement("T25");
    const std::string packet = "\t" + Packet("FC9420", 1) + "\n";
    const Triplets read =
        Read("30", "00:00:01:00.0" + packet + "00:00:01:00.1,9" + packet + "00:00:02:00" + packet);

    ASSERT_EQ(read.triplets.size(), 3u);
    EXPECT_EQ(read.triplets[0].time, FrameTime(30));
    EXPECT_EQ(read.triplets[1].time, FrameTime(30));
    EXPECT_EQ(read.triplets[2].time, FrameTime(60));
}

TEST(MccFile, KeepsTheOrderOfLinesWithOneTime)
{
    Requirement("T25");
    const Triplets read =
        Read("30", "00:00:00:00\t" + Packet("FC9420", 1) + "\n00:00:00:00\t" + Packet("FC942F", 1) + "\n");

    EXPECT_EQ(Listed(read), "0 fc9420\n0 fc942f\n");
}

TEST(MccFile, HoldsBarePairsToo)
{
    // DID 61, SDID 02: a byte with the field in bit 7 (1: field 1), then the pair.
    EXPECT_EQ(Listed(Read("30", "00:00:00:00\t610203"
                                "809420"
                                "00\n")),
              "0 fc9420\n");
}

TEST(MccFile, MayHaveWindowsLineEnds)
{
    Notices notices;
    const Triplets read = caption::ReadMcc("File Format=MacCaption_MCC V1.0\r\n\r\nTime Code Rate=25\r\n"
                                           "00:00:01:00\t" +
                                               Packet("FC9420", 1) + "\r\n",
                                           notices);

    EXPECT_EQ(Listed(read), "1000000 fc9420\n");
    EXPECT_EQ(notices.said(), Said());
}

TEST(MccFile, ReportsDamagedLines)
{
    Notices notices;
    const Triplets read = caption::ReadMcc("File Format=MacCaption_MCC V1.0\nTime Code Rate=31\n"
                                           "00:00:01\t" +
                                               Packet("FC9420", 1) +
                                               "\n"
                                               "00:00:01:30\t" +
                                               Packet("FC9420", 1) +
                                               "\n"
                                               "00:00:01:00\t61010196\n"
                                               "00:00:01:00.x\t" +
                                               Packet("FC9420", 1) + "\n",
                                           notices);

    EXPECT_TRUE(read.triplets.empty());
    ASSERT_EQ(notices.said().size(), 5u);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(notices.said()[i].rfind("line " + std::to_string(i + 2) + ": ", 0), 0u)
            << notices.said()[i];
    }
}
