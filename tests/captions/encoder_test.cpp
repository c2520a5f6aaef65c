// SPDX-License-Identifier: MIT
// The encoder of the tests against bytes that were written by hand.
#include "encoder.h"

#include <gtest/gtest.h>

static std::string Hexadecimal(const Pairs &pairs)
{
    std::string text;

    for (const Pair pair : pairs) {
        const uint8_t bytes[] = {pair.first, pair.second};
        text += (text.empty() ? "" : "  ") + ToHex(bytes, 2);
    }
    return text;
}

static std::string Hexadecimal(const ByteString &bytes)
{
    return ToHex(bytes.data(), bytes.size());
}

TEST(Encoder, GivesEveryByteOddParity)
{
    EXPECT_EQ(WithParity(0x00), 0x80);
    EXPECT_EQ(WithParity(0x01), 0x01);
    EXPECT_EQ(WithParity(0x14), 0x94);
    EXPECT_EQ(WithParity(0x20), 0x20);
    EXPECT_EQ(WithParity(0x2C), 0x2C);
    EXPECT_EQ(WithParity(0x2F), 0x2F);
    EXPECT_EQ(WithParity(0x41), 0xC1);
    EXPECT_EQ(WithParity(0x7F), 0x7F);
}

TEST(Encoder, SendsControlCodesTwice)
{
    EXPECT_EQ(Hexadecimal(Code(RCL)), "94 20  94 20");
    EXPECT_EQ(Hexadecimal(Code(EDM)), "94 2c  94 2c");
    EXPECT_EQ(Hexadecimal(Code(EOC)), "94 2f  94 2f");
    EXPECT_EQ(Hexadecimal(Code(RU2, 2)), "1c 25  1c 25");
    EXPECT_EQ(Hexadecimal(Code(CR, 3)), "15 ad  15 ad");
    EXPECT_EQ(Hexadecimal(Code(CR, 4)), "9d ad  9d ad");
    EXPECT_EQ(Hexadecimal(Tab(2)), "97 a2  97 a2");
}

TEST(Encoder, AddressesRowsAsTabled)
{
    EXPECT_EQ(Hexadecimal(Pac(1)), "91 40  91 40");
    EXPECT_EQ(Hexadecimal(Pac(2)), "91 e0  91 e0");
    EXPECT_EQ(Hexadecimal(Pac(11)), "10 40  10 40");
    EXPECT_EQ(Hexadecimal(Pac(12)), "13 40  13 40");
    EXPECT_EQ(Hexadecimal(Pac(13)), "13 e0  13 e0");
    EXPECT_EQ(Hexadecimal(Pac(15)), "94 e0  94 e0");
    EXPECT_EQ(Hexadecimal(Pac(15, GREEN, true)), "94 e3  94 e3");
    EXPECT_EQ(Hexadecimal(Pac(14, ITALICS)), "94 ce  94 ce");
    EXPECT_EQ(Hexadecimal(PacIndent(15, 0)), "94 70  94 70");
    EXPECT_EQ(Hexadecimal(PacIndent(15, 4)), "94 f2  94 f2");
    EXPECT_EQ(Hexadecimal(PacIndent(15, 28, true)), "94 7f  94 7f");
    EXPECT_EQ(Hexadecimal(PacIndent(14, 8, false, 2)), "1c 54  1c 54");
}

TEST(Encoder, SendsMidRowCodesAndCharacters)
{
    EXPECT_EQ(Hexadecimal(MidRow(ITALICS)), "91 ae  91 ae");
    EXPECT_EQ(Hexadecimal(MidRow(CYAN, true)), "91 a7  91 a7");
    EXPECT_EQ(Hexadecimal(Text("HI")), "c8 49");
    EXPECT_EQ(Hexadecimal(Text("HEY")), "c8 45  d9 80");
}

TEST(Encoder, EndsExtendedDataWithItsChecksum)
{
    // 1 + 3 + 83 + 116 + 97 + 114 + 32 + 84 + 114 + 101 + 107 + 15 = 867 = 7 * 128 - 29
    EXPECT_EQ(XdsChecksum(0x01, 0x03, "Star Trek"), 29);
    // 01 + 03 + 41 + 42 + 0f = 96 = 2 * 80 - 6a (hexadecimal)
    EXPECT_EQ(Hexadecimal(Xds(0x01, 0x03, "AB")), "01 83  c1 c2  8f ea");
}

TEST(Encoder, PutsPairsIntoTriplets)
{
    EXPECT_EQ(Hexadecimal(ToTriplets(1, Code(RCL))), "fc 94 20  fc 94 20");
    EXPECT_EQ(Hexadecimal(ToTriplets(2, Raw(0x15, 0x2C))), "fd 15 2c");
}

TEST(Encoder, WritesCommandsBitByBit)
{
    // visible 1, row lock 0, column lock 1, priority 5; relative, 18; 99; point 7, 3 rows; 32 columns; styles 2 and 4
    EXPECT_EQ(Hexadecimal(Define(
                  Window(3).Locks(0, 1).Priority(5).Relative().Anchor(7, 18, 99).Rows(3).Styles(2, 4))),
              "9b 2d 92  63 72 1f  14");
    // tag 9, offset 2, size 0; italics, no underline, edge 5, font 6
    PenAttributes pen;
    pen.tag = 9;
    pen.offset = 2;
    pen.size = 0;
    pen.italics = 1;
    pen.edge = 5;
    pen.font = 6;
    EXPECT_EQ(Hexadecimal(SetPenAttributes(pen)), "90 98 ae");
    // foreground (3,2,1) flashing, background (0,1,2) transparent, edge (1,0,3)
    PenColor color;
    color.foreground = 0x39;
    color.foregroundOpacity = 1;
    color.background = 0x06;
    color.backgroundOpacity = 3;
    color.edge = 0x13;
    EXPECT_EQ(Hexadecimal(SetPenColor(color)), "91 79 c6  13");
    EXPECT_EQ(Hexadecimal(SetPenLocation(14, 41)), "92 0e 29");
    // fill (1,1,1) translucent; border 5 (1|01) in (3,0,0); wrap, print 2, scroll 1, center; speed 10, direction 3, wipe
    WindowAttributes window;
    window.fill = 0x15;
    window.fillOpacity = 2;
    window.border = 5;
    window.borderColor = 0x30;
    window.wordWrap = 1;
    window.print = 2;
    window.scroll = 1;
    window.justify = 2;
    window.effectSpeed = 10;
    window.effectDirection = 3;
    window.effect = 2;
    EXPECT_EQ(Hexadecimal(SetWindowAttributes(window)), "97 95 70  e6 ae");
    EXPECT_EQ(Hexadecimal(Wide(0xD55C)), "18 d5 5c");
    EXPECT_EQ(Hexadecimal(ToggleWindows(0x81) + Delay(20)), "8b 81 8d  14");
}

TEST(Encoder, MakesServiceBlocksAndPackets)
{
    EXPECT_EQ(Hexadecimal(Block(1, Ascii("A"))), "21 41");
    EXPECT_EQ(Hexadecimal(Block(6, Ascii("AB"))), "c2 41 42");
    EXPECT_EQ(Hexadecimal(Block(7, Ascii("A"))), "e1 07 41");
    EXPECT_EQ(Hexadecimal(Block(63, {})), "e0 3f");
    // header, block header, A, null block: 4 bytes, size code 2
    EXPECT_EQ(Hexadecimal(Packet(2, Block(1, Ascii("A")))), "82 21 41  00");
    // header, block header, A, B: 4 bytes
    EXPECT_EQ(Hexadecimal(Packet(1, Block(1, Ascii("AB")))), "42 22 41  42");
    EXPECT_EQ(Packet(3, ByteString(127, 0))[0], 0xC0);
    EXPECT_EQ(Packet(3, ByteString(126, 0)).size(), 128u);
    EXPECT_EQ(Hexadecimal(PacketTriplets(Hex("02 21 41 00"))), "ff 02 21  fe 41 00");
    EXPECT_EQ(Blocks(2, ByteString(40, 'x')).size(), 42u);
    EXPECT_EQ(Blocks(2, ByteString(40, 'x'))[32], 0x49);
}

TEST(Encoder, WrapsTripletsForEachCarrier)
{
    const ByteString triplet = Hex("fc 94 20");

    EXPECT_EQ(Hexadecimal(CcData(triplet)), "c1 ff fc  94 20 ff");
    EXPECT_EQ(Hexadecimal(UserData(triplet)), "47 41 39  34 03 c1  ff fc 94  20 ff");
    EXPECT_EQ(Hexadecimal(H264Sei(triplet)), "06 04 0e  b5 00 31  47 41 39  34 03 c1  ff fc 94  20 ff 80");
    EXPECT_EQ(Hexadecimal(H264Sei(Hex("ff 00 00 fe 00 00 00 01 02"))).substr(40),
              "ff ff 00  00 fe 00  00 03 00  01 02 ff  80");
    // the checksum of 96 69 10 4f 43 12 34 72 e1 fc 94 20 74 12 34, which sum to 5a4
    EXPECT_EQ(Hexadecimal(Cdp(0x1234, triplet)), "96 69 10  4f 43 12  34 72 e1  fc 94 20  74 12 34  5c");
}
