// SPDX-License-Identifier: MIT
#include "requirement.h"
#include "triplet_list.h"

static int ReadC608(const ByteString &sample, TripletList &triplets)
{
    return Kova_Captions_ReadC608(sample.data(), sample.size(), &triplets);
}

static int ReadC708(const ByteString &sample, TripletList &triplets, KovaCaptionsCdp *cdp = nullptr)
{
    return Kova_Captions_ReadC708(sample.data(), sample.size(), &triplets, cdp);
}

// "cdat", "cdt2", "ccdp" and another type
static const ByteString CDAT = Hex("63 64 61 74"), CDT2 = Hex("63 64 74 32"), CCDP = Hex("63 63 64 70"),
                        FREE = Hex("66 72 65 65");

static const ByteString PACKET = Hex("96 69 13 4f 43 12 34  72 e2 fc 94 20 ff 02 21  74 12 34 36");

TEST(C608, HasThePairsOfBothFieldsFrameByFrame)
{
    Requirement("T28");
    TripletList triplets;

    EXPECT_EQ(ReadC608(Hex("00 00 00 0c") + CDAT + Hex("94 20 94 2c") + Hex("00 00 00 0c") + CDT2 +
                           Hex("15 2c 80 80"),
                       triplets),
              4);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 15 2c  fc 94 2c  fd 80 80");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(C608, HasAnInvalidTripletWhereAFieldHasNoPair)
{
    Requirement("T28");
    TripletList triplets;

    EXPECT_EQ(ReadC608(Hex("00 00 00 0c") + CDAT + Hex("94 20 94 2c"), triplets), 4);
    EXPECT_EQ(triplets.Text(), "fc 94 20  f9 80 80  fc 94 2c  f9 80 80");

    TripletList second;
    EXPECT_EQ(ReadC608(Hex("00 00 00 0a") + CDT2 + Hex("15 2c"), second), 2);
    EXPECT_EQ(second.Text(), "f8 80 80  fd 15 2c");
}

TEST(C608, GoesOnInAFurtherBoxOfAField)
{
    Requirement("T28");
    TripletList triplets;

    EXPECT_EQ(ReadC608(Hex("00 00 00 0a") + CDAT + Hex("94 20") + Hex("00 00 00 09") + FREE + Hex("aa") +
                           Hex("00 00 00 0a") + CDAT + Hex("94 2c"),
                       triplets),
              4);

    EXPECT_EQ(triplets.Text(), "fc 94 20  f9 80 80  fc 94 2c  f9 80 80");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(C608, MayHoldBarePairs)
{
    Requirement("T28");
    TripletList triplets;

    EXPECT_EQ(ReadC608(Hex("94 20 94 2c c8 e9 80 80"), triplets), 8);

    EXPECT_EQ(triplets.Text(),
              "fc 94 20  f9 80 80  fc 94 2c  f9 80 80  fc c8 e9  f9 80 80  fc 80 80  f9 80 80");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(C608, MayBeEmpty)
{
    TripletList triplets;

    EXPECT_EQ(ReadC608({}, triplets), 0);
    EXPECT_EQ(ReadC608(Hex("00 00 00 08") + CDAT, triplets), 0);
    // QuickTime's empty sample
    EXPECT_EQ(ReadC608(Hex("00 00 00 08") + FREE, triplets), 0);

    EXPECT_EQ(triplets->errors, 0u);
}

TEST(C608, CountsDamage)
{
    TripletList odd, tooLarge, bare, cut;

    EXPECT_EQ(ReadC608(Hex("00 00 00 0b") + CDAT + Hex("94 20 94"), odd), 2);
    EXPECT_EQ(odd->errors, 1u);
    EXPECT_EQ(ReadC608(Hex("00 00 00 0b") + CDT2 + Hex("94 20 94"), odd), 2);
    EXPECT_EQ(odd->errors, 2u);
    // an odd number of bytes in a box of another type is none of ours
    EXPECT_EQ(ReadC608(Hex("00 00 00 0b") + FREE + Hex("94 20 94"), odd), 0);
    EXPECT_EQ(odd->errors, 2u);
    EXPECT_EQ(ReadC608(Hex("00 00 00 0a") + CDAT + Hex("94 20") + Hex("00 00 00 0e") + CDT2 + Hex("15 2c"),
                       tooLarge),
              2);
    EXPECT_EQ(tooLarge.Text(), "fc 94 20  fd 15 2c");
    EXPECT_EQ(tooLarge->errors, 1u);
    EXPECT_EQ(ReadC608(Hex("94 20 94"), bare), 2);
    EXPECT_EQ(bare->errors, 1u);
    EXPECT_EQ(ReadC608(Hex("00 00 00 0a") + CDAT + Hex("94 20") + Hex("00 00"), cut), 2);
    EXPECT_EQ(cut->errors, 1u);
}

TEST(C708, HoldsCaptionDistributionPackets)
{
    Requirement("T28");
    TripletList triplets;
    KovaCaptionsCdp cdp;

    EXPECT_EQ(
        ReadC708(Hex("00 00 00 09") + FREE + Hex("aa") + Hex("00 00 00 1b") + CCDP + PACKET, triplets, &cdp),
        2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  ff 02 21");
    EXPECT_EQ(cdp.rate, KOVA_CAPTIONS_RATE_29_97);
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(C708, MayHoldSeveralPackets)
{
    TripletList triplets;
    const ByteString box = Hex("00 00 00 1b") + CCDP + PACKET;

    EXPECT_EQ(ReadC708(box + box, triplets), 4);
}

TEST(C708, MayHoldABarePacket)
{
    TripletList triplets;

    EXPECT_EQ(ReadC708(PACKET, triplets), 2);

    EXPECT_EQ(triplets->errors, 0u);
}

TEST(C708, CountsDamage)
{
    TripletList triplets;

    EXPECT_EQ(ReadC708(Hex("00 00 00 0c") + CCDP + Hex("96 69 13 4f"), triplets), 0);
    EXPECT_EQ(triplets->errors, 1u);
    EXPECT_EQ(ReadC708(Hex("aa bb"), triplets), 0);
    EXPECT_EQ(triplets->errors, 2u);
    EXPECT_EQ(ReadC708({}, triplets), 0);
    EXPECT_EQ(triplets->errors, 2u);
    // a box of another type that is too large, after one that is whole
    EXPECT_EQ(ReadC708(Hex("00 00 00 1b") + CCDP + PACKET + Hex("00 00 00 0a") + FREE, triplets), 2);
    EXPECT_EQ(triplets->errors, 3u);
}
