// SPDX-License-Identifier: MIT
#include "requirement.h"
#include "triplet_list.h"

// User data with one triplet, as it stands after a start code or the codes of a country and a provider.
static const ByteString ONE_TRIPLET = Hex("47 41 39 34 03  c1 ff  fc 94 20  ff");
static const ByteString ANOTHER_TRIPLET = Hex("47 41 39 34 03  c1 ff  fd 94 2f  ff");
static const ByteString ACTIVE_FORMAT = Hex("44 54 47 31 41 f8");

// A message of payload type 4 holds it after B5 00 31.
static ByteString Message(const ByteString &userData)
{
    return ByteString{0x04, uint8_t(3 + userData.size()), 0xB5, 0x00, 0x31} + userData;
}

// Any number as a coding.
static KovaCaptionsCoding Coding(int value)
{
    return KovaCaptionsCoding(value);
}

static int ReadH264(const ByteString &nal, TripletList &triplets)
{
    return Kova_Captions_ReadNalUnit(KOVA_CAPTIONS_H264, nal.data(), nal.size(), &triplets);
}

static int ReadH265(const ByteString &nal, TripletList &triplets)
{
    return Kova_Captions_ReadNalUnit(KOVA_CAPTIONS_H265, nal.data(), nal.size(), &triplets);
}

static int ReadMpeg2(const ByteString &video, TripletList &triplets)
{
    return Kova_Captions_ReadMpeg2(video.data(), video.size(), &triplets);
}

TEST(Mpeg2, HasItsTripletsInThePicturesUserData)
{
    Requirement("T1");
    TripletList triplets;
    const ByteString picture = Hex("00 00 01 00 00 0f ff f8  00 00 01 b5 8f ff f3 41 80  00 00 01 b2") +
                               ONE_TRIPLET + Hex("00 00 01 01 13 fa 94 20");

    EXPECT_EQ(ReadMpeg2(picture, triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Mpeg2, MayHaveOtherUserDataBesideIt)
{
    Requirement("T3");
    TripletList triplets;
    const ByteString picture = Hex("00 00 01 b2") + ACTIVE_FORMAT + Hex("00 00 01 b2") + ONE_TRIPLET;

    EXPECT_EQ(ReadMpeg2(picture, triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(Mpeg2, MayHaveASecondStructure)
{
    TripletList triplets;

    EXPECT_EQ(ReadMpeg2(Hex("00 00 01 b2") + ONE_TRIPLET + Hex("00 00 00 01 b2") + ANOTHER_TRIPLET, triplets),
              2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 94 2f");
}

TEST(Mpeg2, EndsUserDataAtTheNextStartCode)
{
    Requirement("T7");
    TripletList triplets;

    // three triplets are announced, and the start code comes within the second
    EXPECT_EQ(
        ReadMpeg2(Hex("00 00 01 b2 47 41 39 34 03 c3 ff fc 94 20 fd 94 00 00 01 01 ff ff ff ff"), triplets),
        1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
    EXPECT_EQ(triplets->errors, 1u);
}

TEST(Mpeg2, HasStartCodesOfTwoZerosAndAOne)
{
    TripletList triplets;

    EXPECT_EQ(ReadMpeg2(Hex("00 05 01 b2") + ONE_TRIPLET, triplets), 0);
    EXPECT_EQ(ReadMpeg2(Hex("05 00 01 b2") + ONE_TRIPLET, triplets), 0);
    EXPECT_EQ(ReadMpeg2(Hex("00 00 02 b2") + ONE_TRIPLET, triplets), 0);
    for (const char *const before : {"", "00", "01", "00 01", "02 00", "01 00 00", "ff ff ff ff"}) {
        TripletList one;
        EXPECT_EQ(ReadMpeg2(Hex(before) + Hex("00 00 01 b2") + ONE_TRIPLET, one), 1) << before;
    }
}

TEST(Mpeg2, WithoutUserDataYieldsNothing)
{
    TripletList triplets;

    EXPECT_EQ(ReadMpeg2(ONE_TRIPLET, triplets), 0);
    EXPECT_EQ(ReadMpeg2(Hex("00 00 01"), triplets), 0);
    EXPECT_EQ(ReadMpeg2(Hex("00 00 01 b2"), triplets), 0);
    EXPECT_EQ(ReadMpeg2({}, triplets), 0);

    EXPECT_EQ(triplets->errors, 0u);
}

TEST(H264, HasItsTripletsInSupplementalEnhancementInformation)
{
    Requirement("T2");
    TripletList triplets;

    // header 06, payload type 4, payload size 14 (0E): every byte by hand
    EXPECT_EQ(ReadH264(Hex("06  04 0e  b5 00 31  47 41 39 34 03  c1 ff  fc 94 20  ff  80"), triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(H264, MayHaveTheHeaderBitsOfAReference)
{
    TripletList triplets;

    EXPECT_EQ(ReadH264(Hex("66") + Message(ONE_TRIPLET) + Hex("80"), triplets), 1);
}

TEST(H264, HasNoTripletsInOtherNalUnits)
{
    TripletList triplets;

    for (const int type : {1, 5, 7, 8, 9, 39, 40}) {
        EXPECT_EQ(ReadH264(ByteString{uint8_t(type)} + Message(ONE_TRIPLET) + Hex("80"), triplets), 0)
            << type;
    }
    EXPECT_EQ(ReadH264({}, triplets), 0);
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(H264, MayHaveOtherMessagesBeforeAndAfter)
{
    Requirement("T2", "T3");
    TripletList triplets;
    // type 1 (picture timing); type 5 with 300 bytes, so a size of two bytes (FF 2D); type 256 (FF 01) of 4 bytes
    const ByteString others =
        Hex("01 02 aa bb  05 ff 2d") + ByteString(300, 0x04) + Hex("ff 01 04 b5 00 31 47");

    EXPECT_EQ(
        ReadH264(Hex("06") + others + Message(ONE_TRIPLET) + others + Message(ANOTHER_TRIPLET) + Hex("80"),
                 triplets),
        2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 94 2f");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(H264, SkipsOtherCountriesProvidersAndIdentifiers)
{
    Requirement("T3");
    TripletList triplets;

    EXPECT_EQ(ReadH264(Hex("06 04 0e  b4 00 31  47 41 39 34 03  c1 ff  fc 94 20  ff  80"), triplets), 0);
    EXPECT_EQ(ReadH264(Hex("06 04 0e  b5 00 2f  47 41 39 34 03  c1 ff  fc 94 20  ff  80"), triplets), 0);
    EXPECT_EQ(ReadH264(Hex("06") + Message(ACTIVE_FORMAT) + Hex("80"), triplets), 0);
    EXPECT_EQ(ReadH264(Hex("06 04 02  b5 00  80"), triplets), 0);

    EXPECT_EQ(triplets->errors, 0u);
}

TEST(H264, HasEmulationPreventionBytesRemoved)
{
    Requirement("T2");
    TripletList triplets;

    // No 03 is one: it never comes after two zeros. 3 + 5 + 2 + 15 + 1 = 26 (1A) bytes.
    EXPECT_EQ(ReadH264(Hex("06  04 1a  b5 00 31  47 41 39 34 03  c5 ff"
                           "fa 00 00  fa 00 00  fc 00 01  ff 00 00  fe 00 03  ff 80"),
                       triplets),
              5);
    EXPECT_EQ(triplets.Text(), "fa 00 00  fa 00 00  fc 00 01  ff 00 00  fe 00 03");

    // 00 00 03 00 means 00 00 00, and 00 00 03 03 means 00 00 03.
    TripletList escaped;
    EXPECT_EQ(
        ReadH264(Hex("06  04 14  b5 00 31  47 41 39 34 03  c3 ff  fc 00 00  03 00 01 02  fd 00 00 ff 80"),
                 escaped),
        3);
    EXPECT_EQ(escaped.Text(), "fc 00 00  00 01 02  fd 00 00");
    EXPECT_EQ(escaped->errors, 0u);
    TripletList three;
    EXPECT_EQ(ReadH264(Hex("06  04 11  b5 00 31  47 41 39 34 03  c2 ff  fc 00 00 03  03 01 02 ff 80"), three),
              2);
    EXPECT_EQ(three.Text(), "fc 00 00  03 01 02");
    EXPECT_EQ(three->errors, 0u);
}

TEST(H264, MayHaveAnEmulationPreventionByteBetweenMessages)
{
    Requirement("T2");
    TripletList triplets;

    // type 0 with a size of 0, a 03 that belongs to neither, type 1
    EXPECT_EQ(ReadH264(Hex("06  00 00 03  01 02 aa bb") + Message(ONE_TRIPLET) + Hex("80"), triplets), 1);
}

TEST(H264, GivesWhatIsThereOfAMessageThatIsCut)
{
    Requirement("T7");
    TripletList triplets;

    EXPECT_EQ(ReadH264(Hex("06  04 20  b5 00 31  47 41 39 34 03  c5 ff  fc 94 20  fd 80"), triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
    EXPECT_EQ(triplets->errors, 1u);
}

TEST(H264, HoldsAFull31Triplets)
{
    TripletList triplets;
    ByteString userData = Hex("47 41 39 34 03 df ff");
    for (uint8_t i = 1; i <= 31; i++) userData = userData + ByteString{0xFE, i, uint8_t(0x80 + i)};

    EXPECT_EQ(ReadH264(Hex("06") + Message(userData + Hex("ff")) + Hex("80"), triplets), 31);

    EXPECT_EQ(triplets->bytes[3 * 30 + 2], 0x80 + 31);
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(H265, HasItsTripletsInPrefixAndSuffixInformation)
{
    Requirement("T2");
    TripletList triplets;

    // types 39 and 40: header 4e 01 and 50 01
    EXPECT_EQ(ReadH265(Hex("4e 01  04 0e  b5 00 31  47 41 39 34 03  c1 ff  fc 94 20  ff  80"), triplets), 1);
    EXPECT_EQ(ReadH265(Hex("50 01") + Message(ANOTHER_TRIPLET) + Hex("80"), triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 94 2f");
}

TEST(H265, HasNoTripletsInOtherNalUnits)
{
    TripletList triplets;

    // types 3 (which is 06 in H.264), 32, 38, 41
    for (const int header : {0x06, 0x40, 0x4C, 0x52}) {
        EXPECT_EQ(ReadH265(ByteString{uint8_t(header), 0x01} + Message(ONE_TRIPLET) + Hex("80"), triplets),
                  0);
    }
    EXPECT_EQ(ReadH265(Hex("4e"), triplets), 0);
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(AnnexB, IsReadNalUnitByNalUnit)
{
    Requirement("T2");
    TripletList triplets;
    const ByteString stream = Hex("00 00 00 01 09 f0  00 00 01 06") + Message(ONE_TRIPLET) +
                              Hex("80  00 00 01 06") + Message(ANOTHER_TRIPLET) +
                              Hex("80 00 00 00  00 00 01 65 88 84 00 33");

    EXPECT_EQ(Kova_Captions_ReadAnnexB(KOVA_CAPTIONS_H264, stream.data(), stream.size(), &triplets), 2);

    EXPECT_EQ(triplets.Text(), "fc 94 20  fd 94 2f");
    EXPECT_EQ(triplets->errors, 0u);
}

TEST(AnnexB, HoldsH265Too)
{
    Requirement("T2");
    TripletList triplets;
    const ByteString stream = Hex("00 00 00 01 46 01 50  00 00 01 4e 01") + Message(ONE_TRIPLET) + Hex("80");

    EXPECT_EQ(Kova_Captions_ReadAnnexB(KOVA_CAPTIONS_H265, stream.data(), stream.size(), &triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
}

TEST(LengthPrefixed, IsReadWithLengthsOfEverySize)
{
    Requirement("T2");
    const ByteString nal = Hex("06") + Message(ONE_TRIPLET) + Hex("80");
    const auto length = uint8_t(nal.size());

    for (unsigned size = 1; size <= 4; size++) {
        TripletList triplets;
        const ByteString before(size - 1, 0);
        // an access unit delimiter of two bytes, then the captions, then a slice
        const ByteString sample =
            before + Hex("02 09 f0") + before + ByteString{length} + nal + before + Hex("03 65 88 84");

        EXPECT_EQ(Kova_Captions_ReadLengthPrefixed(KOVA_CAPTIONS_H264, size, sample.data(), sample.size(),
                                                   &triplets),
                  1);

        EXPECT_EQ(triplets.Text(), "fc 94 20") << size;
        EXPECT_EQ(triplets->errors, 0u) << size;
    }
}

TEST(LengthPrefixed, ReadsWhatIsThereOfANalUnitThatIsCut)
{
    TripletList triplets;
    const ByteString sample = Hex("00 00 00 40 06") + Message(ONE_TRIPLET);

    EXPECT_EQ(
        Kova_Captions_ReadLengthPrefixed(KOVA_CAPTIONS_H264, 4, sample.data(), sample.size(), &triplets), 1);

    EXPECT_EQ(triplets->errors, 1u);
}

TEST(LengthPrefixed, EndsAtALengthThatIsCut)
{
    TripletList triplets;
    const ByteString sample = Hex("00 00 00");

    EXPECT_EQ(
        Kova_Captions_ReadLengthPrefixed(KOVA_CAPTIONS_H264, 4, sample.data(), sample.size(), &triplets), 0);

    EXPECT_EQ(triplets->errors, 1u);
}

TEST(LengthPrefixed, RefusesOtherCodingsAndSizes)
{
    TripletList triplets;
    const uint8_t sample[] = {0x02, 0x09, 0xF0};

    EXPECT_EQ(Kova_Captions_ReadLengthPrefixed(KOVA_CAPTIONS_H264, 0, sample, sizeof sample, &triplets), -1);
    EXPECT_EQ(Kova_Captions_ReadLengthPrefixed(KOVA_CAPTIONS_H264, 5, sample, sizeof sample, &triplets), -1);
    EXPECT_EQ(Kova_Captions_ReadLengthPrefixed(Coding(2), 1, sample, sizeof sample, &triplets), -1);
    EXPECT_EQ(Kova_Captions_ReadNalUnit(Coding(2), sample, sizeof sample, &triplets), -1);
    EXPECT_EQ(Kova_Captions_ReadAnnexB(Coding(2), sample, sizeof sample, &triplets), -1);
}

TEST(SeiPayload, IsReadWithoutTheMessageAroundIt)
{
    Requirement("T2");
    TripletList triplets;
    const ByteString payload = Hex("b5 00 31") + ONE_TRIPLET;

    EXPECT_EQ(Kova_Captions_ReadSeiPayload(payload.data(), payload.size(), &triplets), 1);

    EXPECT_EQ(triplets.Text(), "fc 94 20");
}
