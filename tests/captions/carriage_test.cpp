// SPDX-License-Identifier: MIT
// What holds for every function that finds triplets.
#include "requirement.h"
#include "triplet_list.h"

#include <cstring>

struct Carrier {
    const char *name;
    int (*read)(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets);
    // Holds the triplet fc 94 20 once.
    ByteString bytes;
};

static const Carrier CARRIERS[] = {
    {"triplets", Kova_Captions_ReadTriplets, Hex("fc 94 20")},
    {"cc_data", Kova_Captions_ReadCcData, Hex("c1 ff  fc 94 20")},
    {"user data", Kova_Captions_ReadUserData, Hex("47 41 39 34 03  c1 ff  fc 94 20")},
    {"MPEG-2", Kova_Captions_ReadMpeg2, Hex("00 00 01 b2  47 41 39 34 03  c1 ff  fc 94 20")},
    {"SEI payload", Kova_Captions_ReadSeiPayload, Hex("b5 00 31  47 41 39 34 03  c1 ff  fc 94 20")},
    {"NAL unit",
     [](const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets) {
         return Kova_Captions_ReadNalUnit(KOVA_CAPTIONS_H264, data, size, triplets);
     },
     Hex("06  04 0d  b5 00 31  47 41 39 34 03  c1 ff  fc 94 20  80")},
    {"Annex B",
     [](const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets) {
         return Kova_Captions_ReadAnnexB(KOVA_CAPTIONS_H264, data, size, triplets);
     },
     Hex("00 00 01  06  04 0d  b5 00 31  47 41 39 34 03  c1 ff  fc 94 20  80")},
    {"lengths",
     [](const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets) {
         return Kova_Captions_ReadLengthPrefixed(KOVA_CAPTIONS_H264, 1, data, size, triplets);
     },
     Hex("11  06  04 0d  b5 00 31  47 41 39 34 03  c1 ff  fc 94 20  80")},
    {"packet",
     [](const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets) {
         return Kova_Captions_ReadCdp(data, size, triplets, nullptr);
     },
     Hex("96 69 10 4f 43 12 34 72 e1 fc 94 20 74 12 34 5c")},
    {"ancillary",
     [](const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets) {
         return Kova_Captions_ReadAncillary(data, size, triplets, nullptr);
     },
     Hex("61 02 03 80 94 20")},
    {"c708",
     [](const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets) {
         return Kova_Captions_ReadC708(data, size, triplets, nullptr);
     },
     Hex("00 00 00 18 63 63 64 70  96 69 10 4f 43 12 34 72 e1 fc 94 20 74 12 34 5c")},
    {"bare c708",
     [](const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets) {
         return Kova_Captions_ReadC708(data, size, triplets, nullptr);
     },
     Hex("96 69 10 4f 43 12 34 72 e1 fc 94 20 74 12 34 5c")},
};

TEST(EveryCarrier, AppendsAndCountsWhatItAppended)
{
    for (const Carrier &each : CARRIERS) {
        TripletList triplets;
        EXPECT_EQ(each.read(each.bytes.data(), each.bytes.size(), &triplets), 1) << each.name;
        EXPECT_EQ(each.read(each.bytes.data(), each.bytes.size(), &triplets), 1) << each.name;
        EXPECT_EQ(triplets.Text(), "fc 94 20  fc 94 20") << each.name;
        EXPECT_EQ(triplets->errors, 0u) << each.name;
    }
}

TEST(EveryCarrier, CountsWhatDoesNotFit)
{
    for (const Carrier &each : CARRIERS) {
        TripletList triplets(0);
        EXPECT_EQ(each.read(each.bytes.data(), each.bytes.size(), &triplets), 0) << each.name;
        EXPECT_EQ(triplets->dropped, 1u) << each.name;
    }
}

TEST(EveryCarrier, RefusesNullAndBrokenLists)
{
    for (const Carrier &each : CARRIERS) {
        TripletList triplets;
        uint8_t room[3];
        KovaCaptionsTriplets tooFull = {room, 1, 2, 0, 0}, noRoom = {nullptr, 1, 0, 0, 0};
        EXPECT_EQ(each.read(nullptr, 1, &triplets), -1) << each.name;
        EXPECT_EQ(each.read(each.bytes.data(), each.bytes.size(), nullptr), -1) << each.name;
        EXPECT_EQ(each.read(each.bytes.data(), each.bytes.size(), &tooFull), -1) << each.name;
        EXPECT_EQ(each.read(each.bytes.data(), each.bytes.size(), &noRoom), -1) << each.name;
        EXPECT_EQ(triplets->count + triplets->errors, 0u) << each.name;
    }
    EXPECT_EQ(Kova_Captions_ReadC608(nullptr, 1, nullptr), -1);
    TripletList triplets;
    EXPECT_EQ(Kova_Captions_ReadC608(nullptr, 1, &triplets), -1);
}

// A block of exactly its size: a sanitizer sees what is read beyond it.
TEST(EveryCarrier, MayBeCutAnywhere)
{
    Requirement("A3");

    for (const Carrier &each : CARRIERS) {
        for (size_t size = 0; size < each.bytes.size(); size++) {
            TripletList triplets;
            const ByteString cut(each.bytes.begin(), each.bytes.begin() + long(size));
            EXPECT_LE(each.read(cut.data(), size, &triplets), 1) << each.name;
        }
    }
}

TEST(EveryPacket, IsAllZeroIfItIsRefused)
{
    KovaCaptionsCdp zero, cdp;
    TripletList triplets;
    const ByteString good = Hex("96 69 10 4f 43 12 34 72 e1 fc 94 20 74 12 34 5c");
    memset(&zero, 0, sizeof zero);

    // NOLINTBEGIN(bugprone-suspicious-memory-comparison): a failure clears every byte
    ASSERT_EQ(Kova_Captions_ReadCdp(good.data(), good.size(), &triplets, &cdp), 1);
    EXPECT_EQ(Kova_Captions_ReadCdp(good.data(), good.size() - 1, &triplets, &cdp), -1);
    EXPECT_EQ(memcmp(&cdp, &zero, sizeof cdp), 0);
    ASSERT_EQ(Kova_Captions_ReadCdp(good.data(), good.size(), &triplets, &cdp), 1);
    EXPECT_EQ(Kova_Captions_ReadCdp(nullptr, 1, &triplets, &cdp), -1);
    EXPECT_EQ(memcmp(&cdp, &zero, sizeof cdp), 0);
    ASSERT_EQ(Kova_Captions_ReadCdp(good.data(), good.size(), &triplets, &cdp), 1);
    EXPECT_EQ(Kova_Captions_ReadC708(nullptr, 1, &triplets, &cdp), -1);
    EXPECT_EQ(memcmp(&cdp, &zero, sizeof cdp), 0);
    ASSERT_EQ(Kova_Captions_ReadCdp(good.data(), good.size(), &triplets, &cdp), 1);
    EXPECT_EQ(Kova_Captions_ReadAncillary(nullptr, 1, &triplets, &cdp), -1);
    EXPECT_EQ(memcmp(&cdp, &zero, sizeof cdp), 0);
    // NOLINTEND(bugprone-suspicious-memory-comparison)
}
