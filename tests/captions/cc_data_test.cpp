// SPDX-License-Identifier: MIT
#include "requirement.h"
#include "triplet_list.h"

static int ReadCcData(const ByteString &data, TripletList &triplets)
{
    return Kova_Captions_ReadCcData(data.data(), data.size(), &triplets);
}

static int ReadUserData(const ByteString &data, TripletList &triplets)
{
    return Kova_Captions_ReadUserData(data.data(), data.size(), &triplets);
}

TEST(CcData, YieldsItsTripletsInOrder)
{
    Requirement("T1");
    TripletList triplets;

    EXPECT_EQ(ReadCcData(Hex("c3 ff  fc 94 20  fd 80 80  ff 02 21  ff"), triplets), 3);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 80 80  ff 02 21");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(CcData, YieldsNothingUnlessProcessCcDataFlagIsSet)
{
    Requirement("T4");
    TripletList triplets;

    EXPECT_EQ(ReadCcData(Hex("83 ff  fc 94 20  fd 80 80  ff 02 21  ff"), triplets), 0);

    EXPECT_EQ(triplets->errors, 0u);
    EXPECT_EQ(triplets->count, 0u);
}

TEST(CcData, DoesNotLookAtReservedBits)
{
    Requirement("T6");
    TripletList triplets;

    // reserved bit 0, additional data bit 1, second byte not FF
    EXPECT_EQ(ReadCcData(Hex("61 00  fc 94 20"), triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
}

TEST(CcData, DoesNotCheckMarkerBits)
{
    Requirement("T6");
    TripletList triplets;

    EXPECT_EQ(ReadCcData(Hex("c2 ff  04 94 20  07 02 21  ff"), triplets), 2);

    EXPECT_EQ(triplets.Text(), "04 94 20  07 02 21");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(CcData, KeepsInvalidTripletsForTheDecoderToIgnore)
{
    Requirement("T5");
    TripletList triplets;

    EXPECT_EQ(ReadCcData(Hex("c2 ff  fa 00 00  f8 80 80  ff"), triplets), 2);

    EXPECT_EQ(triplets.Text(), "fa 00 00  f8 80 80");
}

TEST(CcData, GivesAllWholeTripletsThatAreThere)
{
    Requirement("T6");
    const ByteString whole = Hex("c4 ff  fc 94 20  fc 94 2f  fc 94 2c  fc 94 25");

    for (size_t size = 0; size < 12; size++) {
        TripletList triplets;
        EXPECT_EQ(Kova_Captions_ReadCcData(whole.data(), 2 + size, &triplets), int(size / 3)) << size;
        EXPECT_EQ(triplets->errors, 1u) << size;
    }
}

TEST(CcData, HoldsUpTo31Triplets)
{
    Requirement("T6");
    TripletList triplets;
    ByteString data = Hex("df ff");
    for (uint8_t i = 0; i < 31; i++) data = data + ByteString{0xFE, i, uint8_t(0x80 + i)};

    EXPECT_EQ(ReadCcData(data, triplets), 31);

    EXPECT_EQ(triplets->count, 31u);
    EXPECT_EQ(triplets->bytes[3 * 30 + 1], 30);
    EXPECT_EQ(triplets->bytes[3 * 30 + 2], 0x80 + 30);
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(CcData, GivesTheWholeTripletsThatAreThereWhenTheCountSaysMore)
{
    Requirement("T7");
    TripletList triplets;

    EXPECT_EQ(ReadCcData(Hex("c4 ff  fc 94 20  fd 80 80  ff 02"), triplets), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 80 80");
    EXPECT_EQ(triplets->errors, 1u);
}

TEST(CcData, CountsAnErrorIfNotEvenItsHeaderIsThere)
{
    Requirement("T7");
    TripletList triplets;

    EXPECT_EQ(ReadCcData(Hex("c1"), triplets), 0);
    EXPECT_EQ(ReadCcData({}, triplets), 0);

    EXPECT_EQ(triplets->errors, 2u);
}

TEST(CcData, MayBeWithoutATriplet)
{
    TripletList triplets;

    EXPECT_EQ(ReadCcData(Hex("c0 ff"), triplets), 0);

    EXPECT_EQ(triplets->errors, 0u);
}

TEST(CcData, AppendsAndCountsWhatDoesNotFit)
{
    TripletList triplets(2);

    EXPECT_EQ(ReadCcData(Hex("c1 ff  fc 94 20"), triplets), 1);
    EXPECT_EQ(ReadCcData(Hex("c3 ff  fc 94 2f  fd 80 80  ff 02 21"), triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fc 94 2f");
    EXPECT_EQ(triplets->dropped, 2u);
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(CcData, RefusesArgumentsThatAreNull)
{
    const uint8_t data[] = {0xC1, 0xFF, 0xFC, 0x94, 0x20};
    TripletList triplets;
    KovaCaptionsTriplets noRoom = {};
    noRoom.capacity = 1;

    EXPECT_EQ(Kova_Captions_ReadCcData(nullptr, 5, &triplets), -1);
    EXPECT_EQ(Kova_Captions_ReadCcData(data, sizeof data, nullptr), -1);
    EXPECT_EQ(Kova_Captions_ReadCcData(data, sizeof data, &noRoom), -1);

    EXPECT_EQ(triplets->count, 0u);
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Triplets, AreTakenAsTheyStand)
{
    TripletList triplets;
    const ByteString data = Hex("fc 94 20  ff 02 21  fe 22 08");

    EXPECT_EQ(Kova_Captions_ReadTriplets(data.data(), data.size(), &triplets), 3);

    EXPECT_EQ(triplets.Text(), "fc 94 20  ff 02 21  fe 22 08");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Triplets, CountAnErrorForAnIncompleteOne)
{
    TripletList triplets;
    const ByteString data = Hex("fc 94 20  ff 02");

    EXPECT_EQ(Kova_Captions_ReadTriplets(data.data(), data.size(), &triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
    EXPECT_EQ(triplets->errors, 1u);
}

TEST(UserData, YieldsTheTripletsOfGA94Type03)
{
    Requirement("T1");
    TripletList triplets;

    EXPECT_EQ(ReadUserData(Hex("47 41 39 34 03  c2 ff  fc 94 20  fd 80 80  ff"), triplets), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 80 80");
}

TEST(UserData, OfOtherKindsYieldsNothingAndNoError)
{
    Requirement("T3");
    TripletList triplets;

    // active format description
    EXPECT_EQ(ReadUserData(Hex("44 54 47 31 41 f8"), triplets), 0);
    // bar data
    EXPECT_EQ(ReadUserData(Hex("47 41 39 34 06  c1 ff  fc 94 20"), triplets), 0);
    // not the identifier to its end
    EXPECT_EQ(ReadUserData(Hex("47 41 39 35 03  c1 ff  fc 94 20"), triplets), 0);
    EXPECT_EQ(ReadUserData(Hex("47 41 39"), triplets), 0);
    EXPECT_EQ(ReadUserData(Hex("47 41 39 34"), triplets), 0);
    EXPECT_EQ(ReadUserData({}, triplets), 0);

    EXPECT_EQ(triplets->count, 0u);
    EXPECT_EQ(triplets->errors, 0u);
}
