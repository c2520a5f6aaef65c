// SPDX-License-Identifier: MIT
#include "generating/recording.h"

#include <gtest/gtest.h>

using namespace caption;
using namespace caption::encoding;

static void ExpectBox(const Box &box, double left, double top, double right, double bottom)
{
    EXPECT_NEAR(box.left, left, 1e-9);
    EXPECT_NEAR(box.top, top, 1e-9);
    EXPECT_NEAR(box.right, right, 1e-9);
    EXPECT_NEAR(box.bottom, bottom, 1e-9);
}

TEST(Frames, AreThirtyThousandIn1001Seconds)
{
    EXPECT_EQ(FrameTime(0), 0);
    EXPECT_EQ(FrameTime(1), 33367);
    EXPECT_EQ(FrameTime(30000), 1001000000);
    EXPECT_EQ(NearestFrame(0), 0u);
    EXPECT_EQ(NearestFrame(-5), 0u);
    EXPECT_EQ(NearestFrame(16683), 0u);
    EXPECT_EQ(NearestFrame(16684), 1u);
    EXPECT_EQ(NearestFrame(1001000000), 30000u);
}

TEST(Frames, AreFilledUpToTheBandwidth)
{
    Frame frame;
    ByteString expected = {0xFC, 0x80, 0x80, 0xFD, 0x15, 0x2C, 0xFF, 0x02, 0x21, 0xFE, 0x41, 0x00};

    EXPECT_TRUE(SentTriplets(frame).empty());
    frame.fields[1] = Pair{0x15, 0x2C};
    frame.packets = {0xFF, 0x02, 0x21, 0xFE, 0x41, 0x00};
    EXPECT_EQ(SentTriplets(frame), ByteString(expected.begin() + 3, expected.end()));
    for (int i = 0; i < 16; ++i) expected.insert(expected.end(), {0xFA, 0x00, 0x00});
    EXPECT_EQ(AllTriplets(frame), expected);
}

// The grid is 210 by 75, a cell of text 5 by 5 of it.
TEST(Boxes, HangFromTheirAnchors)
{
    ExpectBox(BoxOf(Window(0).Anchor(0, 15, 21).Rows(3).Columns(21)), 0.1, 0.2, 0.6, 0.4);
    ExpectBox(BoxOf(Window(0).Anchor(4, 15, 105).Rows(3).Columns(21)), 0.25, 0.1, 0.75, 0.3);
    ExpectBox(BoxOf(Window(0).Anchor(8, 75, 210).Rows(3).Columns(21)), 0.5, 0.8, 1, 1);
    ExpectBox(BoxOf(Window(0).Relative().Anchor(3, 50, 10).Rows(3).Columns(21)), 0.1, 0.4, 0.6, 0.6);
}

TEST(Boxes, AreMovedInsideTheSafeTitleArea)
{
    ExpectBox(BoxOf(Window(0).Anchor(0, 74, 209).Rows(3).Columns(21)), 0.5, 0.8, 1, 1);
    ExpectBox(BoxOf(Window(0).Anchor(8, 0, 0).Rows(3).Columns(21)), 0, 0, 0.5, 0.2);
}

TEST(Boxes, AreCellsOfThirtyTwoByFifteen)
{
    ExpectBox(BoxOfCells(15, 0, 32), 0, 14 / 15.0, 1, 1);
    ExpectBox(BoxOfCells(1, 8, 4), 0.25, 0, 0.375, 1 / 15.0);
}

TEST(Script, SendsAPairAFrame)
{
    Script script("a");

    script.Hold(1); // 30 frames are nearest
    script.Send(Code(RCL));
    script.Send(Code(EDM), 2);
    const Recording recording = script.Finish();

    ASSERT_EQ(recording.frames.size(), 35u);
    EXPECT_EQ(SentTriplets(recording.frames[29]), ByteString());
    EXPECT_EQ(SentTriplets(recording.frames[30]), (ByteString{0xFC, 0x94, 0x20}));
    EXPECT_EQ(SentTriplets(recording.frames[31]), (ByteString{0xFC, 0x94, 0x20}));
    EXPECT_EQ(SentTriplets(recording.frames[32]), (ByteString{0xFD, 0x94, 0x2C}));
}

// 31 bytes a block: 29 letters and a command of two bytes, which is not cut, then the rest.
TEST(Script, SendsWholeCommandsInPacketsOfOneBlock)
{
    Script script("a");

    script.SendService(Ascii(std::string(30, 'A')) + ClearWindows(1) + Ascii("B"), 2);
    script.SendService(Ascii("C"), 2);
    const Recording recording = script.Finish();

    // Headers: sequence and half the length; service 2 and its size.
    EXPECT_EQ(recording.frames[0].packets, PacketTriplets(ByteString{0x10, 0x5E} + ByteString(30, 'A')));
    EXPECT_EQ(recording.frames[1].packets, PacketTriplets({0x43, 0x43, 0x88, 0x01, 'B', 0x00}));
    EXPECT_EQ(recording.frames[2].packets, PacketTriplets({0x82, 0x41, 'C', 0x00}));
    EXPECT_EQ(recording.services, (std::set<unsigned>{2}));
}

TEST(Script, SpreadsLongPacketsOverFrames)
{
    Script script("a");

    script.SendBlocks(ByteString(127));
    const Recording recording = script.Finish();

    // 128 bytes are 64 triplets, 18 of them a frame.
    ASSERT_EQ(recording.frames.size(), 5u);
    for (const int i : {0, 1, 2}) EXPECT_EQ(recording.frames[std::size_t(i)].packets.size(), 54u);
    EXPECT_EQ(recording.frames[3].packets.size(), 30u);
    EXPECT_EQ(recording.frames[0].packets[0], 0xFF);
    EXPECT_EQ(recording.frames[1].packets[0], 0xFE);
}
