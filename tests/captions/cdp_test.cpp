// SPDX-License-Identifier: MIT
#include "requirement.h"
#include "triplet_list.h"

// 29.97 frames a second, sequence 1234, two triplets:
// 7 + 8 + 4 = 19 (13) bytes; all but the last sum to 6CA, so the checksum is 100 - CA = 36.
static const char *const SIMPLE = "96 69 13 4f 43 12 34  72 e2 fc 94 20 ff 02 21  74 12 34 36";

// The same triplets with time code 11:22:33;14 and two services:
// 7 + 5 + 8 + 16 + 4 = 40 (28) bytes.
static const char *const COMPLETE = "96 69 28 4f ff 12 34"
                                    "71 d1 a2 33 94"
                                    "72 e2 fc 94 20 ff 02 21"
                                    "73 f2 e1 65 6e 67 c1 7f ff  c0 73 70 61 7e 3f ff"
                                    "74 12 34";

static ByteString WithChecksum(ByteString packet)
{
    uint8_t sum = 0;

    for (const uint8_t byte : packet) sum = uint8_t(sum + byte);
    packet.push_back(uint8_t(0 - sum));
    return packet;
}

static int ReadCdp(const ByteString &packet, TripletList &triplets, KovaCaptionsCdp *cdp = nullptr)
{
    return Kova_Captions_ReadCdp(packet.data(), packet.size(), &triplets, cdp);
}

TEST(Cdp, YieldsItsTriplets)
{
    Requirement("T22");
    TripletList triplets;
    KovaCaptionsCdp cdp;

    EXPECT_EQ(ReadCdp(Hex(SIMPLE), triplets, &cdp), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  ff 02 21");
    EXPECT_EQ(triplets->errors, 0u);
    EXPECT_EQ(cdp.rate, KOVA_CAPTIONS_RATE_29_97);
    EXPECT_EQ(cdp.sequence, 0x1234);
    EXPECT_EQ(cdp.caption_service_active, 1);
    EXPECT_EQ(cdp.has_time_code, 0);
    EXPECT_EQ(cdp.has_services, 0);
    EXPECT_EQ(cdp.wrong_checksum, 0);
    EXPECT_EQ(cdp.wrong_sequence, 0);
}

TEST(Cdp, YieldsTheSameTripletsWithTimeCodeAndServices)
{
    Requirement("T22");
    TripletList triplets;
    KovaCaptionsCdp cdp;

    EXPECT_EQ(ReadCdp(WithChecksum(Hex(COMPLETE)), triplets, &cdp), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  ff 02 21");
    EXPECT_EQ(triplets->errors, 0u);
    ASSERT_EQ(cdp.has_time_code, 1);
    // d1 is 11 01 0001; a2 is 1 010 0010; 33 is 0 011 0011; 94 is 1 0 01 0100
    EXPECT_EQ(cdp.time_code.hours, 11);
    EXPECT_EQ(cdp.time_code.minutes, 22);
    EXPECT_EQ(cdp.time_code.seconds, 33);
    EXPECT_EQ(cdp.time_code.frames, 14);
    EXPECT_EQ(cdp.time_code.drop, 1);
    EXPECT_EQ(cdp.second_field, 0);

    // bit 7 of the seconds
    ByteString packet = Hex(COMPLETE);
    packet[10] = 0xB3;
    ReadCdp(WithChecksum(packet), triplets, &cdp);
    EXPECT_EQ(cdp.second_field, 1);
    EXPECT_EQ(cdp.time_code.seconds, 33);
}

TEST(Cdp, MayEndWithItsHeader)
{
    TripletList triplets;
    KovaCaptionsCdp cdp;

    EXPECT_EQ(ReadCdp(Hex("96 69 07 4f 43 00 01"), triplets, &cdp), 0);
    EXPECT_EQ(triplets->errors, 1u);
    EXPECT_EQ(ReadCdp(Hex("96 69 0b 4f 43 00 01 71 d1 a2 33"), triplets, &cdp), 0);
    EXPECT_EQ(cdp.has_time_code, 0);
}

TEST(Cdp, YieldsTheServicesItAnnounces)
{
    Requirement("T22", "T29");
    TripletList triplets;
    KovaCaptionsCdp cdp;

    ReadCdp(WithChecksum(Hex(COMPLETE)), triplets, &cdp);

    ASSERT_EQ(cdp.has_services, 1);
    EXPECT_EQ(cdp.services_start, 1);
    EXPECT_EQ(cdp.services_change, 1);
    EXPECT_EQ(cdp.services_complete, 1);
    ASSERT_EQ(cdp.services.count, 2u);
    EXPECT_STREQ(cdp.services.services[0].language, "eng");
    EXPECT_EQ(cdp.services.services[0].digital, 1);
    EXPECT_EQ(cdp.services.services[0].number, 1);
    EXPECT_EQ(cdp.services.services[0].easy_reader, 0);
    EXPECT_EQ(cdp.services.services[0].wide_aspect_ratio, 1);
    EXPECT_STREQ(cdp.services.services[1].language, "spa");
    EXPECT_EQ(cdp.services.services[1].digital, 0);
    EXPECT_EQ(cdp.services.services[1].field, 1);
}

TEST(Cdp, HasThreeMarksOfTheListOfServices)
{
    for (unsigned mark = 0; mark < 3; mark++) {
        TripletList triplets;
        KovaCaptionsCdp cdp;
        ByteString packet = Hex("96 69 14 4f 43 00 01  73 81 c1 65 6e 67 c1 7f ff  74 00 01");
        packet[8] = uint8_t(0x81 | 0x40 >> mark);
        EXPECT_EQ(ReadCdp(WithChecksum(packet), triplets, &cdp), 0);
        EXPECT_EQ(cdp.services_start, mark == 0);
        EXPECT_EQ(cdp.services_change, mark == 1);
        EXPECT_EQ(cdp.services_complete, mark == 2);
        EXPECT_EQ(cdp.services.count, 1u);
        EXPECT_EQ(triplets->errors, 0u);
    }
}

TEST(Cdp, KeepsTheServicesThatAreWhole)
{
    TripletList triplets;
    KovaCaptionsCdp cdp;

    // two announced and one there, without a footer; then a section without its second byte
    EXPECT_EQ(ReadCdp(Hex("96 69 10 4f 43 00 01  73 f2 c1 65 6e 67 c1 7f ff"), triplets, &cdp), 0);
    EXPECT_EQ(cdp.services.count, 1u);
    EXPECT_EQ(ReadCdp(Hex("96 69 08 4f 43 00 01  73"), triplets, &cdp), 0);
    EXPECT_EQ(cdp.has_services, 0);
}

TEST(Cdp, HasTheFrameRatesOfTheTable)
{
    TripletList triplets;

    for (uint8_t rate = 0; rate < 16; rate++) {
        KovaCaptionsCdp cdp;
        ByteString packet = Hex("96 69 0b 00 43 00 00 74 00 00");
        packet[3] = uint8_t(rate << 4 | 0x0F);
        EXPECT_EQ(ReadCdp(WithChecksum(packet), triplets, &cdp), 0);
        EXPECT_EQ(int(cdp.rate), rate <= 8 ? rate : 0);
    }
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Cdp, IsUsedWithAWrongChecksumWhichCountsAsAnError)
{
    Requirement("T23");
    TripletList triplets;
    KovaCaptionsCdp cdp;
    ByteString packet = Hex(SIMPLE);
    packet.back()++;

    EXPECT_EQ(ReadCdp(packet, triplets, &cdp), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  ff 02 21");
    EXPECT_EQ(triplets->errors, 1u);
    EXPECT_EQ(cdp.wrong_checksum, 1);
    EXPECT_EQ(cdp.wrong_sequence, 0);
}

TEST(Cdp, IsUsedWithUnequalCountersWhichCountAsAnError)
{
    Requirement("T23");
    TripletList triplets;
    KovaCaptionsCdp cdp;

    EXPECT_EQ(
        ReadCdp(WithChecksum(Hex("96 69 13 4f 43 12 34  72 e2 fc 94 20 ff 02 21  74 12 35")), triplets, &cdp),
        2);

    EXPECT_EQ(triplets->errors, 1u);
    EXPECT_EQ(cdp.wrong_checksum, 0);
    EXPECT_EQ(cdp.wrong_sequence, 1);
}

TEST(Cdp, IsNotUsedWithAWrongIdentifier)
{
    Requirement("T23");
    TripletList triplets;
    KovaCaptionsCdp cdp;

    EXPECT_EQ(ReadCdp(Hex("96 68 13 4f 43 12 34  72 e2 fc 94 20 ff 02 21  74 12 34 37"), triplets, &cdp), -1);
    EXPECT_EQ(ReadCdp(Hex("97 69 13 4f 43 12 34  72 e2 fc 94 20 ff 02 21  74 12 34 35"), triplets, &cdp), -1);
    EXPECT_EQ(ReadCdp({}, triplets, &cdp), -1);

    EXPECT_EQ(triplets->count, 0u);
    EXPECT_EQ(cdp.rate, KOVA_CAPTIONS_RATE_UNKNOWN);
}

TEST(Cdp, IsNotUsedWithALengthBeyondTheData)
{
    Requirement("T23");
    TripletList triplets;
    ByteString packet = Hex(SIMPLE);
    packet.pop_back();

    EXPECT_EQ(ReadCdp(packet, triplets), -1);
    // nor with one that does not hold its own header
    EXPECT_EQ(ReadCdp(Hex("96 69 06 4f 43 12 34 74 12 34 00"), triplets), -1);

    EXPECT_EQ(triplets->count, 0u);
}

TEST(Cdp, EndsWithItsOwnLength)
{
    TripletList triplets;

    EXPECT_EQ(ReadCdp(Hex(SIMPLE) + Hex("72 e1 fc 94 2f"), triplets), 2);

    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Cdp, MayHaveSectionsOfTheFuture)
{
    TripletList triplets;

    // numbers 75 and EF, 3 and 0 bytes: 7 + 5 + 5 + 2 + 4 = 23 (17)
    EXPECT_EQ(
        ReadCdp(WithChecksum(Hex("96 69 17 4f 43 00 01  75 03 74 74 74  72 e1 fc 94 20  ef 00  74 00 01")),
                triplets),
        1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Cdp, GivesTheWholeTripletsThatAreThere)
{
    Requirement("T7");
    TripletList triplets;

    // three announced, two and a byte there, no footer: 7 + 2 + 7 = 16 (10)
    EXPECT_EQ(ReadCdp(Hex("96 69 10 4f 43 00 01  72 e3 fc 94 20 fd 80 80 ff"), triplets), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 80 80");
    EXPECT_EQ(triplets->errors, 1u);
}

TEST(Cdp, IsUsedUpToASectionThatIsCutOrUnknown)
{
    TripletList triplets;

    for (const char *const end : {"71 d1 a2 33", "72", "73", "73 f1 e1 65 6e 67 c1 7f", "75", "75 05 00",
                                  "70 00", "f0 00", "74 00 01"}) {
        ByteString packet = Hex("96 69 00 4f 43 00 01  72 e1 fc 94 20") + Hex(end);
        packet[2] = uint8_t(packet.size());
        TripletList one;
        EXPECT_EQ(ReadCdp(packet, one), 1) << end;
        EXPECT_EQ(one->errors, 1u) << end;
    }
}

TEST(Ancillary, HoldsACaptionDistributionPacket)
{
    TripletList triplets;
    KovaCaptionsCdp cdp;
    const ByteString packet = Hex("61 01 13") + Hex(SIMPLE) + Hex("00");

    EXPECT_EQ(Kova_Captions_ReadAncillary(packet.data(), packet.size(), &triplets, &cdp), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  ff 02 21");
    EXPECT_EQ(cdp.rate, KOVA_CAPTIONS_RATE_29_97);
}

TEST(Ancillary, HoldsAPairOfOneField)
{
    TripletList triplets;

    // bit 7 set: field 1
    EXPECT_EQ(Kova_Captions_ReadAncillary(Hex("61 02 03 8a 94 20 55").data(), 7, &triplets, nullptr), 1);
    EXPECT_EQ(Kova_Captions_ReadAncillary(Hex("61 02 03 1f 15 2c 55").data(), 7, &triplets, nullptr), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 15 2c");
}

TEST(Ancillary, CountsAPairThatIsCut)
{
    TripletList triplets;

    EXPECT_EQ(Kova_Captions_ReadAncillary(Hex("61 02 02 8a 94").data(), 5, &triplets, nullptr), 0);

    EXPECT_EQ(triplets->errors, 1u);
}

TEST(Ancillary, OfOtherKindsYieldsNothing)
{
    TripletList triplets;

    EXPECT_EQ(Kova_Captions_ReadAncillary(Hex("41 05 02 00 00 00").data(), 6, &triplets, nullptr), 0);

    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Ancillary, IsRefusedWhenItIsCut)
{
    TripletList triplets;
    const ByteString packet = Hex("61 01 13") + Hex(SIMPLE);

    EXPECT_EQ(Kova_Captions_ReadAncillary(packet.data(), packet.size() - 1, &triplets, nullptr), -1);
    EXPECT_EQ(Kova_Captions_ReadAncillary(packet.data(), 2, &triplets, nullptr), -1);
    EXPECT_EQ(triplets->count, 0u);
}
