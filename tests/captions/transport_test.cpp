// SPDX-License-Identifier: MIT
// From triplets to the bytes of a service: DTVCC packets, sequence numbers, service blocks.
#include "driver.h"

// A window of one row, and text in it.
static ByteString Show(const std::string &text)
{
    return Define(Window(0)) + Ascii(text);
}

static void PushCcData(const Driver &decoder, const ByteString &data)
{
    EXPECT_EQ(Kova_Captions_PushCcData(*decoder, decoder.Now(), data.data(), data.size()), 0);
}

/* ------------------------------------------------------------------------------------------- cc_data() and triplets */

TEST(Transport, DecodesBytesWrittenByHand)
{
    Requirement("T1", "T9", "T10", "T15");
    Driver decoder;

    // DefineWindow 0: visible, row and column lock; anchor point 0 at 0, 0; 1 row, 32 columns; styles 1 and 1.
    // 12 bytes: header 06, block header 29, DF0 (7 bytes), "HI", and a null block.
    PushCcData(decoder, Hex("c6 ff  ff 06 29  fe 98 38  fe 00 00  fe 00 1f  fe 09 48  fe 49 00  ff"));

    EXPECT_EQ(decoder.WindowText(), "0 HI");
    EXPECT_EQ(decoder.Service().visible_windows, 0x01);
}

TEST(Transport, DecodesPairsWrittenByHand)
{
    Requirement("T1");
    Driver decoder;

    // RCL, PAC row 15, "HI", EOC
    PushCcData(decoder, Hex("c4 ff  fc 94 20  fc 94 e0  fc c8 49  fc 94 2f  ff"));

    EXPECT_EQ(decoder.Displayed(), "15 HI");
}

TEST(Transport, TakesNothingUnlessProcessCcDataFlagIsSet)
{
    Requirement("T4");
    Driver decoder;

    PushCcData(decoder, Hex("84 ff  fc 94 20  fc 94 e0  fc c8 49  fc 94 2f  ff"));

    EXPECT_EQ(decoder.Displayed(), "");
    EXPECT_EQ(decoder.Counters().triplets, 0u);
}

TEST(Transport, IgnoresTripletsThatAreNotValid)
{
    Requirement("T5");
    Driver decoder;

    // between the triplets of a packet and the pairs of a caption: every type, any data, any marker bits
    decoder.SendTriplets(
        Hex("fc 94 20  f8 94 2c  00 94 2c  fc 94 e0  f9 15 2c  fc c8 49  f8 80 80  fc 94 2f"));
    decoder.SendTriplets(
        Hex("ff 06 29  fa 00 00  fe 98 38  fb 42 21  fe 00 00  03 ff ff  fe 00 1f  f8 80 80  fe 09 48  "
            "02 12 34  fe 49 00"));

    EXPECT_EQ(decoder.Displayed(), "15 HI");
    EXPECT_EQ(decoder.WindowText(), "0 HI");
}

TEST(Transport, DoesNotCheckMarkerBits)
{
    Requirement("T6");
    Driver decoder;

    decoder.SendTriplets(Hex("04 94 20  84 94 e0  7c c8 49  0c 94 2f"));
    decoder.SendTriplets(Hex("07 06 29  86 98 38  06 00 00  76 00 1f  fe 09 48  0e 49 00"));

    EXPECT_EQ(decoder.Displayed(), "15 HI");
    EXPECT_EQ(decoder.WindowText(), "0 HI");
}

TEST(Transport, Takes31TripletsOfOneStructure)
{
    Requirement("T6");
    Driver decoder;
    const ByteString filler = Hex("fa 00 00");
    ByteString triplets;
    for (int i = 0; i < 25; i++) triplets = triplets + filler;

    PushCcData(decoder,
               Hex("df ff") + triplets + Hex("ff 06 29  fe 98 38  fe 00 00  fe 00 1f  fe 09 48  fe 49 00"));

    EXPECT_EQ(decoder.WindowText(), "0 HI");
}

TEST(Transport, TakesTheWholeTripletsThatAreThere)
{
    Requirement("T7");
    Driver decoder;

    // ten announced; four and a part of one are there
    PushCcData(decoder, Hex("ca ff  fc 94 20  fc 94 e0  fc c8 49  fc 94 2f  fc 94"));

    EXPECT_EQ(decoder.Displayed(), "15 HI");
    EXPECT_EQ(decoder.Counters().cut_cc_data, 1u);
}

TEST(Transport, TakesPairsThatStandAfterDtvccTriplets)
{
    Driver decoder;

    decoder.SendTriplets(Hex("ff 06 29  fe 98 38  fc 94 20  fe 00 00  fc 94 e0  fc c8 49  fe 00 1f  fe 09 48 "
                             " fc 94 2f  fe 49 00"));

    EXPECT_EQ(decoder.Displayed(), "15 HI");
    EXPECT_EQ(decoder.WindowText(), "0 HI");
}

TEST(Transport, GivesReadingOrderToPicturesThatCameInCodingOrder)
{
    Requirement("T8", "T1");
    Driver decoder;
    KovaCaptionsPicture pictures[3], picture;
    KovaCaptionsReorder queue;
    ASSERT_EQ(Kova_Captions_ReorderStart(&queue, pictures, 3), 0);
    // by presentation: RDC, PAC, and then five pairs
    const Pairs pairs = Raw(0x14, RDC) + Raw(0x14, 0x60) + Text("PRESENTING");

    // coding order I0 P3 B1 B2 P6 B4 B5
    const auto take = [&](int flush) {
        while (Kova_Captions_ReorderPop(&queue, flush, &picture) == 1) {
            EXPECT_EQ(Kova_Captions_PushTriplets(*decoder, picture.time, picture.bytes, picture.count), 0);
        }
    };
    for (const size_t frame : {0u, 3u, 1u, 2u, 6u, 4u, 5u}) {
        TripletList found;
        const ByteString video = Mpeg2Picture(ToTriplets(1, {pairs[frame]}));
        EXPECT_EQ(Kova_Captions_ReadMpeg2(video.data(), video.size(), &found), 1);
        EXPECT_EQ(Kova_Captions_ReorderPush(&queue, int64_t(frame) * FRAME, found->bytes, found->count), 0);
        take(0);
    }
    take(1);

    EXPECT_EQ(decoder.Displayed(), "15 PRESENTING");
}

TEST(Transport, GivesTheSameFromEveryCarrier)
{
    Requirement("T1", "T2", "T22");
    const ByteString triplets = PacketTriplets(Packet(0, Block(1, Show("HELLO"))));
    const ByteString carriers[] = {Mpeg2Picture(triplets), H264Sei(triplets), Cdp(7, triplets)};

    for (int i = 0; i < 3; i++) {
        Driver decoder;
        TripletList found;
        const uint8_t *const data = carriers[i].data();
        const size_t size = carriers[i].size();
        const int count = i == 0   ? Kova_Captions_ReadMpeg2(data, size, &found)
                          : i == 1 ? Kova_Captions_ReadNalUnit(KOVA_CAPTIONS_H264, data, size, &found)
                                   : Kova_Captions_ReadCdp(data, size, &found, nullptr);
        EXPECT_GT(count, 0) << i;
        EXPECT_EQ(Kova_Captions_PushTriplets(*decoder, 0, found->bytes, found->count), 0);
        EXPECT_EQ(decoder.WindowText(), "0 HELLO") << i;
    }
}

/* --------------------------------------------------------------------------------------------------------- Packets */

// Blocks of service 1 that fill exactly `size` bytes: a window, padding, and a last byte 'Z'.
static ByteString Filled(size_t size)
{
    ByteString blocks;
    ByteString bytes = Define(Window(0));

    while (blocks.size() < size) {
        const size_t left = size - blocks.size();
        size_t take = left - 1 < 31 ? left - 1 : 31;
        // one byte would be left, too few for a block
        if (left - 1 - take == 1) take--;
        while (bytes.size() < take) bytes.push_back(0);
        if (take + 1 == left) bytes[take - 1] = 'Z';
        blocks = blocks + Block(1, ByteString(bytes.begin(), bytes.begin() + long(take)));
        bytes.erase(bytes.begin(), bytes.begin() + long(take));
    }
    return blocks;
}

TEST(Packets, AreTwiceTheirSizeCodeLong)
{
    Requirement("T9", "T10");

    for (unsigned code = 5; code <= 64; code++) {
        Driver decoder;
        const ByteString packet = ByteString{uint8_t(code % 64)} + Filled(2 * code - 1);
        ByteString triplets = PacketTriplets(packet);
        const ByteString last(triplets.end() - 3, triplets.end());
        triplets.resize(triplets.size() - 3);
        ASSERT_EQ(packet.size(), 2 * code);

        decoder.SendTriplets(triplets);
        EXPECT_EQ(decoder.WindowText(), "-") << "size code " << code;
        decoder.SendTriplets(last);
        EXPECT_EQ(decoder.WindowText(), "0 Z") << "size code " << code;
    }
}

TEST(Packets, OfSizeCode0Are128BytesLong)
{
    Requirement("T9");
    Driver decoder;
    const ByteString packet = Byte(0x40) + Filled(127);

    EXPECT_EQ(packet.size(), 128u);
    decoder.SendTriplets(PacketTriplets(packet));

    EXPECT_EQ(decoder.WindowText(), "0 Z");
    EXPECT_EQ(decoder.Counters().packets, 1u);
}

TEST(Packets, ThatAreShortAreUsedWhenTheNextStarts)
{
    Requirement("T11");
    Driver decoder;
    // 12 bytes, announced as 40: header 14
    ByteString packet = Packet(0, Block(1, Define(Window(0)) + Ascii("HI")));
    packet[0] = 0x14;

    decoder.SendTriplets(PacketTriplets(packet));
    EXPECT_EQ(decoder.WindowText(), "-");
    decoder.SetSequence(1);
    decoder.SendService(1, Ascii("YO"));

    EXPECT_EQ(decoder.WindowText(), "0 HIYO");
    EXPECT_EQ(decoder.Counters().short_packets, 1u);
    EXPECT_EQ(decoder.Counters().sequence_gaps, 0u);
}

TEST(Packets, ThatAreShortLoseTheElementThatIsCut)
{
    Requirement("T11", "T20");
    Driver decoder;
    decoder.SendService(1, Show("HI"));

    // a block of 8 announced: "AB", then DF1 without its last two bytes; header 5f announces 62 bytes
    decoder.SendTriplets(Hex("ff 5f 28  fe 41 42  fe 99 38  fe 00 00"));
    decoder.SetSequence(2);
    decoder.SendService(1, Ascii("C"));

    EXPECT_EQ(decoder.WindowText(0), "0 HIABC");
    EXPECT_EQ(decoder.WindowText(1), "-");
    EXPECT_EQ(decoder.Counters().sequence_gaps, 0u);
}

TEST(Packets, NeedAStart)
{
    Requirement("T12");
    Driver decoder;

    // what would be a block of service 1, or a whole packet
    decoder.SendTriplets(Hex("fe 2a 98  fe 38 00  fe 00 00  fe 1f 09  fe 48 49"));
    decoder.SendTriplets(Hex("fe 06 29  fe 98 38  fe 00 00  fe 00 1f  fe 09 48  fe 49 00"));
    EXPECT_EQ(decoder.Service().existing_windows, 0);
    EXPECT_EQ(decoder.Counters().packets, 0u);
    EXPECT_EQ(decoder.Counters().stray_data, 11u);

    decoder.SendService(1, Show("HI"));
    EXPECT_EQ(decoder.WindowText(), "0 HI");
}

TEST(Packets, DropTheBytesBeyondTheirLength)
{
    Requirement("T9", "T12");
    Driver decoder;
    decoder.SendService(1, Show("HI"));

    decoder.SendTriplets(Hex("fe 22 41  fe 42 00  fe 22 43"));
    decoder.SendService(1, Ascii("!"));

    EXPECT_EQ(decoder.WindowText(), "0 HI!");
}

TEST(Packets, MayStartInAnyPicture)
{
    Requirement("T10", "A4");
    Driver decoder;
    const ByteString triplets = PacketTriplets(Packet(0, Block(1, Show("HELLO"))));

    for (size_t i = 0; i < triplets.size(); i += 3) {
        decoder.SendTriplets({triplets[i], triplets[i + 1], triplets[i + 2]});
        decoder.Wait(FRAME);
    }

    EXPECT_EQ(decoder.WindowText(), "0 HELLO");
}

/* ------------------------------------------------------------------------------------------------ Sequence numbers */

static void SendInSequence(Driver &decoder, unsigned sequence, const ByteString &bytes)
{
    decoder.SendTriplets(PacketTriplets(Packet(sequence, Blocks(1, bytes))));
}

TEST(Sequence, MayBeginWithAnyNumber)
{
    Requirement("T13");

    for (unsigned first = 0; first < 4; first++) {
        Driver decoder;
        SendInSequence(decoder, first, Show("A"));
        SendInSequence(decoder, (first + 1) % 4, Ascii("B"));
        EXPECT_EQ(decoder.WindowText(), "0 AB") << first;
        EXPECT_EQ(decoder.Counters().sequence_gaps, 0u) << first;
    }
}

TEST(Sequence, GoesFromThreeToZero)
{
    Requirement("T13");
    Driver decoder;

    SendInSequence(decoder, 0, Show("A"));
    for (unsigned i = 1; i < 9; i++) SendInSequence(decoder, i % 4, Ascii({char('A' + i)}));

    EXPECT_EQ(decoder.WindowText(), "0 ABCDEFGHI");
    EXPECT_EQ(decoder.Counters().sequence_gaps, 0u);
}

TEST(Sequence, ResetsEveryServiceAtAGapAndReportsIt)
{
    Requirement("T13");
    Driver decoder(WithEvents());
    SendInSequence(decoder, 0, Show("A"));
    decoder.SendTriplets(PacketTriplets(Packet(1, Block(2, Show("B")) + Block(63, Show("C")))));
    decoder.Events();

    // no blocks at all
    decoder.SendTriplets(PacketTriplets(Packet(3, Byte(0))));

    EXPECT_EQ(decoder.Service(1).existing_windows, 0);
    EXPECT_EQ(decoder.Service(2).existing_windows, 0);
    EXPECT_EQ(decoder.Service(63).existing_windows, 0);
    EXPECT_EQ(decoder.Service(1).current_window, KOVA_CAPTIONS_NO_WINDOW);
    EXPECT_EQ(decoder.Counters().sequence_gaps, 1u);
    EXPECT_EQ(decoder.Events(), "- SequenceGap expected=2 received=3\n");
}

TEST(Sequence, EndsADelayAndEmptiesTheBufferAtAGap)
{
    Requirement("T13");
    Driver decoder;
    SendInSequence(decoder, 0, Show("A") + Delay(100) + Ascii("B"));
    ASSERT_EQ(decoder.Service().buffered, 1);

    SendInSequence(decoder, 2, Define(Window(1)) + Ascii("C"));

    EXPECT_EQ(decoder.Service().buffered, 0);
    EXPECT_EQ(decoder.Service().delay_until, KOVA_CAPTIONS_NO_TIME);
    EXPECT_EQ(decoder.WindowText(0), "-");
    EXPECT_EQ(decoder.WindowText(1), "0 C");
}

TEST(Sequence, DecodesThePacketThatShowsTheGap)
{
    Requirement("T14");

    for (const unsigned number : {2u, 3u}) {
        Driver decoder;
        SendInSequence(decoder, 0, Show("A"));
        SendInSequence(decoder, number, Define(Window(1)) + Ascii("B"));
        EXPECT_EQ(decoder.WindowText(0), "-") << number;
        EXPECT_EQ(decoder.WindowText(1), "0 B") << number;
    }
}

TEST(Sequence, GoesOnFromTheNumberThatShowedTheGap)
{
    Requirement("T14");
    Driver decoder;

    SendInSequence(decoder, 0, Show("A"));
    SendInSequence(decoder, 2, Show("B"));
    SendInSequence(decoder, 3, Ascii("C"));

    EXPECT_EQ(decoder.WindowText(), "0 BC");
    EXPECT_EQ(decoder.Counters().sequence_gaps, 1u);
}

TEST(Sequence, MayRepeatANumber)
{
    Requirement("T13");
    Driver decoder;

    SendInSequence(decoder, 2, Show("A"));
    SendInSequence(decoder, 2, Ascii("B"));
    SendInSequence(decoder, 2, Ascii("C"));
    SendInSequence(decoder, 3, Ascii("D"));

    EXPECT_EQ(decoder.WindowText(), "0 ABCD");
    EXPECT_EQ(decoder.Counters().sequence_gaps, 0u);
}

TEST(Sequence, BeginsAnewAfterADiscontinuity)
{
    Requirement("T13", "A8");
    Driver decoder;

    SendInSequence(decoder, 0, Show("A"));
    decoder.Discontinuity();
    SendInSequence(decoder, 3, Show("B"));

    EXPECT_EQ(decoder.WindowText(), "0 B");
    EXPECT_EQ(decoder.Counters().sequence_gaps, 0u);
}

TEST(Sequence, DropsThePacketThatIsOpenAtAGap)
{
    Requirement("T13");
    Driver decoder(WithEvents());
    SendInSequence(decoder, 0, Show("A"));
    decoder.Events();

    // number 1 is short, and number 3 shows that 2 is lost
    decoder.SendTriplets(Hex("ff 5f 22  fe 58 59"));
    SendInSequence(decoder, 3, Show("B"));

    EXPECT_EQ(decoder.WindowText(), "0 B");
    EXPECT_EQ(decoder.Events().find("XY"), std::string::npos);
}

/* -------------------------------------------------------------------------------------------------- Service blocks */

TEST(ServiceBlocks, OfServices1To6HaveAStandardHeader)
{
    Requirement("T15", "T16");
    Driver decoder;

    for (unsigned service = 1; service <= 6; service++) {
        decoder.SendBlocks(Byte(service << 5 | 9) + Define(Window(0)) + Ascii("S" + std::to_string(service)));
    }

    for (unsigned service = 1; service <= 6; service++) {
        EXPECT_EQ(decoder.WindowText(0, service), "0 S" + std::to_string(service));
    }
}

TEST(ServiceBlocks, OfServices7To63HaveAnExtendedHeader)
{
    Requirement("T15", "T17");
    Driver decoder;

    for (unsigned service = 7; service <= 63; service++) {
        decoder.SendBlocks(Bytes({0xE0 | (7 + unsigned(std::to_string(service).size())), service}) +
                           Define(Window(0)) + Ascii(std::to_string(service)));
    }

    for (unsigned service = 7; service <= 63; service++) {
        EXPECT_EQ(decoder.WindowText(0, service), "0 " + std::to_string(service));
    }
}

TEST(ServiceBlocks, OfSeveralServicesShareAPacket)
{
    Requirement("T21", "T15");
    Driver decoder;

    decoder.SendBlocks(Block(1, Show("ONE")) + Block(2, Show("TWO")) + Block(20, Show("TWENTY")) +
                       Block(1, Ascii("!")) + Block(2, Ascii("?")));

    EXPECT_EQ(decoder.WindowText(0, 1), "0 ONE!");
    EXPECT_EQ(decoder.WindowText(0, 2), "0 TWO?");
    EXPECT_EQ(decoder.WindowText(0, 20), "0 TWENTY");
}

TEST(ServiceBlocks, EndWithANullBlock)
{
    Requirement("T15", "T18");
    Driver decoder;

    decoder.SendBlocks(Block(1, Show("A")) + Byte(0x00) + Block(1, Ascii("B")));
    // a null block with a size is one too
    decoder.SendBlocks(Block(1, Ascii("C")) + Bytes({0x01, 'x'}) + Block(1, Ascii("D")));

    EXPECT_EQ(decoder.WindowText(), "0 AC");
}

TEST(ServiceBlocks, MayBeEmpty)
{
    Requirement("T18");
    Driver decoder;

    // services 1, 6 and 7 without a byte; that of service 7 has no extended number either
    decoder.SendBlocks(Block(1, Show("A")) + Byte(0x20) + Block(1, Ascii("B")) + Byte(0xC0) +
                       Block(1, Ascii("C")) + Byte(0xE0) + Block(1, Ascii("D")));

    EXPECT_EQ(decoder.WindowText(), "0 ABCD");
    EXPECT_EQ(decoder.Counters().bad_service_blocks, 0u);
}

TEST(ServiceBlocks, OfAnExtendedNumberBelow7AreSkipped)
{
    Requirement("T19");
    Driver decoder;

    decoder.SendBlocks(Block(1, Show("A")) + Bytes({0xE2, 0x01, 'x', 'y'}) + Block(1, Ascii("B")) +
                       Bytes({0xE2, 0x06, 'x', 'y'}) + Block(1, Ascii("C")) + Bytes({0xE1, 0x00, 'x'}) +
                       Block(1, Ascii("D")));

    EXPECT_EQ(decoder.WindowText(0, 1), "0 ABCD");
    EXPECT_EQ(decoder.Service(6).existing_windows, 0);
    EXPECT_EQ(decoder.Counters().bad_service_blocks, 3u);
}

TEST(ServiceBlocks, WithBitsAboveTheExtendedNumberAreSkipped)
{
    Requirement("T19");
    Driver decoder;

    decoder.SendBlocks(Block(1, Show("A")) + Bytes({0xE8, 0x48}) + Define(Window(0)) + Ascii("x") +
                       Bytes({0xE8, 0x88}) + Define(Window(0)) + Ascii("y") + Block(1, Ascii("B")));

    EXPECT_EQ(decoder.WindowText(0, 1), "0 AB");
    EXPECT_EQ(decoder.Service(8).existing_windows, 0);
    EXPECT_EQ(decoder.Counters().bad_service_blocks, 2u);
}

TEST(ServiceBlocks, LongerThanThePacketEndWithIt)
{
    Requirement("T19");
    Driver decoder;

    // the block announces 31 bytes and there are 11
    decoder.SendTriplets(PacketTriplets(Bytes({0x07, 0x3F}) + Show("TAKE") + Bytes({'!'})));
    decoder.SetSequence(1);
    decoder.SendService(1, Ascii("?"));

    EXPECT_EQ(decoder.WindowText(), "0 TAKE!?");
}

TEST(ServiceBlocks, MayCutAnElement)
{
    Requirement("T20");
    const ByteString whole = Define(Window(0).Rows(3)) + SetPenLocation(2, 5) + Wide(0x266A) + Hex("10 2a") +
                             SetPenColor({}) + Ascii("END");

    for (size_t cut = 1; cut < whole.size(); cut++) {
        Driver decoder;
        const ByteString first(whole.begin(), whole.begin() + long(cut)),
            rest(whole.begin() + long(cut), whole.end());
        decoder.SendBlocks(Block(1, first) + Block(1, rest));
        EXPECT_EQ(decoder.WindowText(), "2 .....♪ŠEND") << "cut at " << cut;
        EXPECT_EQ(decoder.Counters().cut_elements, 0u);
    }
}

TEST(ServiceBlocks, MayCutAnElementWithAnotherServiceBetween)
{
    Requirement("T20", "T21");
    Driver decoder;

    decoder.SendBlocks(Block(1, Define(Window(0).Rows(3)) + Hex("92 02")) + Block(2, Show("OTHER")) +
                       Block(1, Hex("05") + Ascii("A")));

    EXPECT_EQ(decoder.WindowText(0, 1), "2 .....A");
    EXPECT_EQ(decoder.WindowText(0, 2), "0 OTHER");
}

TEST(ServiceBlocks, DropAnElementThatThePacketsEndCuts)
{
    Requirement("T20");
    const struct {
        const char *cut;
        const char *what;
    } cases[] = {{"92 02", "SPL"},        {"92", "SPL code"},          {"18 26", "P16"},
                 {"10", "EXT1"},          {"98 38 00 00 00 1f", "DF"}, {"8c", "DLW"},
                 {"10 90 05", "variable"}};

    for (const auto &each : cases) {
        Driver decoder;
        decoder.SendService(1, Define(Window(0).Rows(3)) + Ascii("A") + Hex(each.cut));
        decoder.SendService(1, Ascii("BC"));
        EXPECT_EQ(decoder.WindowText(), "0 ABC") << each.what;
        EXPECT_EQ(decoder.Counters().cut_elements, 1u) << each.what;
    }
}

TEST(ServiceBlocks, OfServicesNotAskedForAreLeftOut)
{
    KovaCaptionsOptions options;
    Kova_Captions_GetDefaults(&options);
    options.services = 1u << 2;
    Driver decoder(options);
    KovaCaptionsService state;
    KovaCaptionsActivity activity;

    decoder.SendBlocks(Block(1, Show("A")) + Block(2, Show("B")));

    EXPECT_EQ(Kova_Captions_GetService(*decoder, 1, &state, nullptr, 0), -1);
    EXPECT_EQ(decoder.WindowText(0, 2), "0 B");
    ASSERT_EQ(Kova_Captions_GetActivity(*decoder, &activity), 0);
    EXPECT_EQ(activity.services_with_data, uint64_t(6));
    EXPECT_EQ(activity.services_with_text, uint64_t(4));
}
