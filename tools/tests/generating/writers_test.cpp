// SPDX-License-Identifier: MIT
// Text formats, compared with bytes written by hand.
#include "generating/writers.h"

#include <gtest/gtest.h>

#include "kova/kova_captions_carriage.h"
#include "reading/captions/ccd.h"
#include "reading/captions/mcc.h"
#include "reading/captions/scc.h"

using namespace caption;
using namespace caption::encoding;

// Two frames of CC1 at the start, one in the third second, and a packet of service 1 with it.
static Recording Example()
{
    Recording recording;

    recording.title = "example";
    recording.frames.resize(62);
    recording.frames[0].fields[0] = Pair{0x94, 0x20};
    recording.frames[1].fields[0] = Pair{0x94, 0x20};
    recording.frames[60].fields[0] = Pair{0xC8, 0xE9};
    recording.frames[60].packets = {0xFF, 0x02, 0x21, 0xFE, 0x41, 0x00};
    return recording;
}

TEST(FrameLabel, LeavesOutTwoLabelsInEveryMinuteButTheTenth)
{
    EXPECT_EQ(FrameLabel(0), "00:00:00;00");
    EXPECT_EQ(FrameLabel(29), "00:00:00;29");
    EXPECT_EQ(FrameLabel(1799), "00:00:59;29");
    EXPECT_EQ(FrameLabel(1800), "00:01:00;02");
    EXPECT_EQ(FrameLabel(3597), "00:01:59;29");
    EXPECT_EQ(FrameLabel(3598), "00:02:00;02");
    EXPECT_EQ(FrameLabel(17981), "00:09:59;29");
    EXPECT_EQ(FrameLabel(17982), "00:10:00;00");
    EXPECT_EQ(FrameLabel(17983), "00:10:00;01");
    EXPECT_EQ(FrameLabel(107892), "01:00:00;00");
}

TEST(FrameLabel, IsReadAsTheSameFrame)
{
    for (std::size_t frame = 0; frame < 40000; ++frame) {
        const std::string label = FrameLabel(frame);
        KovaCaptionsTimeCode code = {};
        code.hours = std::uint8_t(std::stoi(label.substr(0, 2)));
        code.minutes = std::uint8_t(std::stoi(label.substr(3, 2)));
        code.seconds = std::uint8_t(std::stoi(label.substr(6, 2)));
        code.frames = std::uint8_t(std::stoi(label.substr(9, 2)));
        code.drop = 1;
        ASSERT_EQ(Kova_Captions_CountFrames(KOVA_CAPTIONS_RATE_29_97, &code), std::int64_t(frame)) << label;
    }
}

TEST(Scc, HasALineForEachRunOfPairs)
{
    Recording recording = Example();
    recording.frames[60].packets.clear();

    EXPECT_EQ(SccText(recording), "Scenarist_SCC V1.0\n"
                                  "\n"
                                  "00:00:00;00\t9420 9420\n"
                                  "\n"
                                  "00:00:02;00\tc8e9\n");
}

TEST(Scc, CannotHoldOtherThanFieldOne)
{
    Recording recording = Example();

    EXPECT_EQ(BeyondScc(recording), "CEA-708");
    recording.frames[60].packets.clear();
    EXPECT_EQ(BeyondScc(recording), "");
    recording.frames[61].fields[1] = Pair{0x15, 0x2C};
    EXPECT_EQ(BeyondScc(recording), "field 2 of CEA-608 (CC3, CC4, T3, T4)");
}

TEST(Ccd, HasWhatIsSentAndLetsTheTimeRunToTheEnd)
{
    // Frame 60 is at 2.002 s, frame 61 at 2.03537 s.
    EXPECT_EQ(CcdText(Example()), "# example\n"
                                  "00:00:00.000 FC9420\n"
                                  "00:00:00.033 FC9420\n"
                                  "00:00:02.002 FCC8E9FF0221FE4100\n"
                                  "00:00:02.035 \n");
}

// The first packet: T 49 S 49 4F 43 0000 72 F4, the pair, a null pair of field 2, 18 fillers, 74 0000 and both
// checksums. Its 73 bytes are 49 hexadecimal. Without checksum they sum, modulo 256, to: 96 + 69 + 49 + 4F + 43 = 1DA,
// + 72 + F4 = 340, + FC 94 20 = 4F0, + FD 80 80 = 6ED, + 18 * FA = 1881, + 74 = 18F5, so the checksum is 0B. The
// ancillary packet's own: 61 + 01 + 49 = AB, and the CDP sums to 0.
TEST(Mcc, HasPacketsOfTwentyTripletsInLetters)
{
    const std::string text = MccText(Example());
    const std::string first = "00:00:00;00\tT49S494F43ZZ72F4FC9420ROO74ZZ0BAB\n";

    EXPECT_EQ(text.substr(0, text.find("\n\n")), "File Format=MacCaption_MCC V1.0");
    EXPECT_NE(text.find("\nTime Code Rate=30DF\n"), std::string::npos);
    EXPECT_NE(text.find("\n" + first), std::string::npos) << text;
}

// What the tool's readers find is what was written, in its frames.
TEST(Texts, AreReadAsTheyWereWritten)
{
    Notices notices;
    Recording recording = Example();
    const Triplets ccd = ReadCcd(CcdText(recording));
    const Triplets mcc = ReadMcc(MccText(recording), notices);
    recording.frames[60].packets.clear();
    const Triplets scc = ReadScc(SccText(recording), notices);

    ASSERT_EQ(ccd.triplets.size(), 5u);
    EXPECT_EQ(ccd.triplets[2].time, 2002000);
    EXPECT_EQ(ccd.end, 2035000);
    ASSERT_EQ(scc.triplets.size(), 3u);
    EXPECT_EQ(scc.triplets[1].time, 33367);
    EXPECT_EQ(scc.triplets[2].time, 2002000);
    ASSERT_EQ(mcc.triplets.size(), 10u) << "four frames with both fields, and two triplets of a packet";
    EXPECT_EQ(mcc.triplets[4].time, 2002000);
    EXPECT_EQ(mcc.triplets[6].bytes, (std::array<std::uint8_t, 3>{0xFF, 0x02, 0x21}));
    EXPECT_EQ(mcc.end, 2035367);
    EXPECT_TRUE(notices.said().empty());
}
