// SPDX-License-Identifier: MIT
#include "requirement.h"

#include "kova/kova_captions_carriage.h"

#include <initializer_list>
#include <memory>
#include <string>

// A queue, and the pictures that came out of it: the first data byte of each as a letter.
class Reorder : public ::testing::Test
{
protected:
    void GivenCapacity(size_t capacity)
    {
        m_pictures.reset(new KovaCaptionsPicture[capacity]);
        ASSERT_EQ(Kova_Captions_ReorderStart(&m_queue, m_pictures.get(), capacity), 0);
    }

    int Push(int64_t time, char letter)
    {
        const uint8_t triplet[] = {0xFC, uint8_t(letter), 0x80};

        return Kova_Captions_ReorderPush(&m_queue, time, triplet, 1);
    }

    void PopWhatIsDue(bool flush = false)
    {
        KovaCaptionsPicture picture;

        while (Kova_Captions_ReorderPop(&m_queue, flush, &picture) == 1) {
            m_out += picture.count ? char(picture.bytes[1]) : '-';
            m_lastTime = picture.time;
        }
    }

    KovaCaptionsReorder m_queue = {};
    std::unique_ptr<KovaCaptionsPicture[]> m_pictures;
    std::string m_out;
    int64_t m_lastTime = 0;
};

// Coding order I0 P3 B1 B2 P6 B4 B5.
TEST_F(Reorder, SortsTimesBeforeZero)
{
    GivenCapacity(4);

    EXPECT_EQ(Push(-9900000, 'B'), 0);
    EXPECT_EQ(Push(-10000000, 'A'), 0);
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "AB");
}

TEST_F(Reorder, PutsPicturesIntoPresentationOrder)
{
    Requirement("T8");
    GivenCapacity(3);

    for (const int frame : {0, 3, 1, 2, 6, 4, 5}) {
        ASSERT_EQ(Push(frame * 33367, char('a' + frame)), 0);
        PopWhatIsDue();
    }
    EXPECT_EQ(m_out, "abcde");
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "abcdefg");
    EXPECT_EQ(m_lastTime, 6 * 33367);
}

// Coding order of a pyramid: 0 8 4 2 1 3 6 5 7.
TEST_F(Reorder, FollowsAPyramid)
{
    Requirement("T8");
    GivenCapacity(5);

    for (const int frame : {0, 8, 4, 2, 1, 3, 6, 5, 7}) {
        ASSERT_EQ(Push(frame * 33367, char('a' + frame)), 0);
        PopWhatIsDue();
    }
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "abcdefghi");
}

TEST_F(Reorder, HoldsBackNoMoreThanItsDepth)
{
    GivenCapacity(3);

    Push(0, 'a');
    PopWhatIsDue();
    Push(1000, 'b');
    PopWhatIsDue();
    EXPECT_EQ(m_out, "");
    Push(2000, 'c');
    PopWhatIsDue();

    EXPECT_EQ(m_out, "a");
}

TEST_F(Reorder, OfCapacityOneGivesBackEveryPictureAtOnce)
{
    GivenCapacity(1);

    for (const char letter : {'a', 'b', 'c'}) {
        ASSERT_EQ(Push(0, letter), 0);
        PopWhatIsDue();
    }

    EXPECT_EQ(m_out, "abc");
}

TEST_F(Reorder, KeepsTheOrderOfEqualTimes)
{
    Requirement("T8");
    GivenCapacity(8);

    Push(1000, 'c');
    for (const char letter : {'a', 'b'}) Push(500, letter);
    for (const char letter : {'d', 'e', 'f'}) Push(1000, letter);
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "abcdef");
}

TEST_F(Reorder, CountsPicturesWithoutCaptions)
{
    GivenCapacity(2);

    Push(0, 'a');
    ASSERT_EQ(Kova_Captions_ReorderPush(&m_queue, 33367, nullptr, 0), 0);
    PopWhatIsDue();
    EXPECT_EQ(m_out, "a");
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "a-");
}

TEST_F(Reorder, GivesWhatIsBeforeAStepBackInTimeFirst)
{
    GivenCapacity(4);

    Push(90000000, 'a');
    Push(90066733, 'c');
    Push(90033367, 'b');
    PopWhatIsDue();
    EXPECT_EQ(m_out, "");
    Push(5000000, 'd');
    PopWhatIsDue();
    EXPECT_EQ(m_out, "abc");
    Push(5066733, 'f');
    Push(5033367, 'e');
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "abcdef");
}

TEST_F(Reorder, TakesNoMoreThanASecondBackForReordering)
{
    GivenCapacity(4);

    Push(2000000, 'b');
    Push(1000000, 'a');
    PopWhatIsDue(true);
    EXPECT_EQ(m_out, "ab");

    Push(999999, 'c');
    Push(1000000, 'd');
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "abcd");
}

TEST_F(Reorder, TakesTimesAsFarApartAsTheyGet)
{
    GivenCapacity(4);

    Push(INT64_MAX, 'a');
    Push(INT64_MIN, 'b');
    Push(INT64_MAX, 'c');
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "abc");
}

TEST_F(Reorder, RefusesAPictureWhenItIsFull)
{
    GivenCapacity(2);

    EXPECT_EQ(Push(0, 'a'), 0);
    EXPECT_EQ(Push(1000, 'b'), 0);
    EXPECT_EQ(Push(2000, 'c'), -1);
    PopWhatIsDue(true);

    EXPECT_EQ(m_out, "ab");
}

TEST_F(Reorder, TakesTwoFullStructuresAPicture)
{
    uint8_t bytes[3 * KOVA_CAPTIONS_PICTURE_TRIPLETS + 3] = {0xFC};
    KovaCaptionsPicture picture;
    GivenCapacity(1);
    bytes[3 * 61 + 2] = 0x42;

    EXPECT_EQ(Kova_Captions_ReorderPush(&m_queue, 0, bytes, 63), -1);
    EXPECT_EQ(Kova_Captions_ReorderPush(&m_queue, 0, bytes, 62), 0);

    ASSERT_EQ(Kova_Captions_ReorderPop(&m_queue, 0, &picture), 1);
    EXPECT_EQ(picture.count, 62u);
    EXPECT_EQ(picture.bytes[3 * 61 + 2], 0x42);
}

TEST_F(Reorder, RefusesWrongArguments)
{
    KovaCaptionsPicture picture;
    GivenCapacity(1);

    EXPECT_EQ(Kova_Captions_ReorderStart(nullptr, &picture, 1), -1);
    EXPECT_EQ(Kova_Captions_ReorderStart(&m_queue, nullptr, 1), -1);
    EXPECT_EQ(Kova_Captions_ReorderStart(&m_queue, &picture, 0), -1);
    EXPECT_EQ(Kova_Captions_ReorderPush(nullptr, 0, nullptr, 0), -1);
    EXPECT_EQ(Kova_Captions_ReorderPush(&m_queue, 0, nullptr, 1), -1);
    EXPECT_EQ(Kova_Captions_ReorderPop(nullptr, 0, &picture), -1);
    EXPECT_EQ(Kova_Captions_ReorderPop(&m_queue, 0, nullptr), -1);
}
