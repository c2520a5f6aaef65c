// SPDX-License-Identifier: MIT
// From states of a channel to cues, without a decoder.
#include "reading/captions/cues.h"

#include <gtest/gtest.h>

using caption::CaptionArea;
using caption::CaptionScreen;
using caption::CaptionState;
using caption::ListedCue;
using Said = std::vector<std::string>;

// A row of a channel; `growing` where its letters appear as they are received.
static CaptionScreen Row(int row, int column, const std::string &text, bool growing = false)
{
    CaptionArea area;

    area.grid = {0, 0, 32, 15, 0.1, 0.1, 0.025, 0.8 / 15};
    area.growing = growing;
    area.rows.push_back({row, column, column + int(text.size()) - 1, 1, {{text, {}}}});
    return {area};
}

static CaptionScreen Painted(const std::string &text)
{
    return Row(14, 0, text, true);
}

static CaptionScreen Window(int number, int row, const std::string &text)
{
    CaptionScreen screen = Row(row, 0, text);

    screen[0].window = number;
    return screen;
}

static CaptionScreen Both(CaptionScreen first, const CaptionScreen &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// "1000-2000 text"; times in milliseconds, "-" where nothing ends a cue.
static std::string Summary(const ListedCue &cue)
{
    std::string text = std::to_string(cue.start) + "-" + (cue.end ? std::to_string(*cue.end) : "");

    for (const auto &line : cue.lines) text += " " + line.text;
    return text;
}

static Said Listed(const std::vector<CaptionState> &states)
{
    Said summaries;
    for (const ListedCue &cue : caption::ListedCues(states)) summaries.push_back(Summary(cue));
    return summaries;
}

static std::vector<caption::Cue> DrawnCues(const std::vector<CaptionState> &states,
                                           std::int64_t end = 10000000)
{
    caption::DecodedCaptions decoded;

    decoded.states[KOVA_CAPTIONS_CC1] = states;
    decoded.end = end;
    return caption::DrawnCues(decoded, KOVA_CAPTIONS_CC1);
}

static Said Drawn(const std::vector<CaptionState> &states)
{
    Said summaries;

    for (const caption::Cue &cue : DrawnCues(states)) {
        summaries.push_back(std::to_string(cue.start) + "-" + std::to_string(cue.end) + " " + PlainText(cue));
    }
    return summaries;
}

TEST(ListedCues, AreTheStatesOfTheScreen)
{
    EXPECT_EQ(Listed({{1000000, Row(14, 0, "one")}, {2000000, Row(14, 0, "two")}, {3000000, {}}}),
              (Said{"1000-2000 one", "2000-3000 two"}));
    EXPECT_EQ(Listed({{1000000, Row(14, 0, "last")}}), Said{"1000- last"}) << "nothing ends it";
    EXPECT_EQ(Listed({}), Said());
}

TEST(ListedCues, RoundTimesToTheNearestMillisecond)
{
    EXPECT_EQ(Listed({{1000499, Row(0, 0, "a")}, {2000500, {}}}), Said{"1000-2001 a"});
    EXPECT_EQ(Listed({{-1500600, Row(0, 0, "a")}, {-400, {}}}), Said{"-1501-0 a"});
}

TEST(ListedCues, CountRowsOfCea608FromOneAndThoseOfWindowsFromNought)
{
    const ListedCue line21 = caption::ListedCues({{0, Row(14, 4, "a")}}).at(0);
    const ListedCue window = caption::ListedCues({{0, Window(3, 1, "a")}}).at(0);

    EXPECT_EQ(line21.lines.at(0).row, 15);
    EXPECT_EQ(line21.lines.at(0).column, 4);
    EXPECT_EQ(line21.lines.at(0).window, std::nullopt);
    EXPECT_EQ(window.lines.at(0).row, 1);
    EXPECT_EQ(window.lines.at(0).window, 3);
}

TEST(ListedCues, BeginAnewWhereTextMovesAndNotWhereItsLookChanges)
{
    CaptionScreen yellow = Row(14, 0, "text");
    yellow[0].rows[0].line[0].style.color = caption::Color{255, 255, 0};

    EXPECT_EQ(
        Listed({{0, Row(14, 0, "text")}, {1000000, yellow}, {2000000, Row(13, 0, "text")}, {3000000, {}}}),
        (Said{"0-2000 text", "2000-3000 text"}));
    EXPECT_EQ(Listed({{0, Row(14, 0, "text")}, {1000000, Row(14, 1, "text")}}),
              (Said{"0-1000 text", "1000- text"}));
}

TEST(ListedCues, LeaveOutWhatIsShorterThanAFrameAndBeginTheNextInItsPlace)
{
    EXPECT_EQ(Listed({{1000000, Row(14, 0, "a")}, {1016000, Row(14, 0, "ab")}, {2000000, {}}}),
              Said{"1000-2000 ab"});
    EXPECT_EQ(Listed({{1000000, Row(14, 0, "a")}, {2000000, {}}, {2016000, Row(14, 0, "b")}, {3000000, {}}}),
              (Said{"1000-2000 a", "2000-3000 b"}))
        << "a gap as well";
    EXPECT_EQ(Listed({{1000000, Row(14, 0, "a")}, {2000000, {}}, {2016000, Row(14, 0, "a")}, {3000000, {}}}),
              Said{"1000-3000 a"})
        << "equal states with nothing between them are one";
    EXPECT_EQ(Listed({{1000000, Row(14, 0, "a")}, {1016000, {}}}), Said()) << "nothing is left of it";
}

TEST(ListedCues, KeepWhatLastsAFrame)
{
    // 1001/30000 s, and what files make of it that count milliseconds.
    for (const std::int64_t frame : {33367, 33000, 34000}) {
        EXPECT_EQ(
            Listed({{1000000, Row(14, 0, "a")}, {1000000 + frame, Row(14, 0, "ab")}, {2000000, {}}}).size(),
            2u)
            << frame;
    }
}

TEST(ListedCues, OfFramesOfHalfTheLengthAreTwoFramesLong)
{
    // 60 pictures a second, each with other text: every second state is over within a frame.
    EXPECT_EQ(Listed({{0, Row(14, 0, "a")},
                      {16683, Row(14, 0, "ab")},
                      {33367, Row(14, 0, "abc")},
                      {50050, Row(14, 0, "abcd")},
                      {1000000, {}}}),
              (Said{"0-33 ab", "33-1000 abcd"}));
}

TEST(ListedCues, OfARecordingThatStartsAnewKeepTheirTimes)
{
    // The clock goes back to 0 after the first cue was ended at 61 s.
    EXPECT_EQ(
        Listed({{60000000, Row(14, 0, "old")}, {61000000, {}}, {500000, Row(14, 0, "new")}, {900000, {}}}),
        (Said{"60000-61000 old", "500-900 new"}));
}

TEST(DrawnCues, ShowABurstOfLettersWholeFromItsFirstOn)
{
    EXPECT_EQ(Drawn({{1000000, Painted("ab")},
                     {1033367, Painted("abcd")},
                     {1066733, Painted("abcdef")},
                     {3000000, Painted("abcdefgh")},
                     {5000000, {}}}),
              (Said{"1000-3000 abcdef", "3000-5000 abcdefgh"}));
}

TEST(DrawnCues, OfPopOnCaptionsAreNeverJoined)
{
    EXPECT_EQ(Drawn({{1000000, Row(14, 0, "ab")}, {1400000, Row(14, 0, "abcd")}, {5000000, {}}}),
              (Said{"1000-1400 ab", "1400-5000 abcd"}));
}

TEST(DrawnCues, LeaveOutAStateOfOneFrameBetweenTwoOthers)
{
    // A roll-up window moves before the new line comes.
    EXPECT_EQ(Drawn({{1000000, Row(14, 0, "old")},
                     {2000000, Row(12, 0, "old")},
                     {2033367, Row(13, 0, "old")},
                     {4000000, {}}}),
              (Said{"1000-2000 old", "2000-4000 old"}));
}

TEST(DrawnCues, KeepTheLastLettersBeforeARollThatComesAFrameLater)
{
    EXPECT_EQ(Drawn({{1000000, Painted("ab")},
                     {1033367, Painted("abcd")},
                     {1066733, Row(13, 0, "abcd", true)},
                     {4000000, {}}}),
              (Said{"1000-1067 abcd", "1067-4000 abcd"}));
}

TEST(DrawnCues, EndWithTheSourceOrFourSecondsAfterTheirStart)
{
    EXPECT_EQ(Drawn({{1000000, Row(14, 0, "a")}}), Said{"1000-10000 a"});
    EXPECT_EQ(Drawn({{9000000, Row(14, 0, "a")}}), Said{"9000-13000 a"});
}

// What is drawn is the state of the last letters.
TEST(DrawnCues, AreDrawnFromTheBytesUpToTheirLastLetter)
{
    const std::vector<caption::Cue> cues =
        DrawnCues({{1000000, Painted("a"), 3}, {1200000, Painted("ab"), 5}, {3000000, Row(0, 0, "c"), 9}});

    ASSERT_EQ(cues.size(), 2u);
    EXPECT_EQ(cues[0].captions->source, KOVA_CAPTIONS_CC1);
    EXPECT_EQ(cues[0].captions->portions, 5u);
    EXPECT_EQ(cues[0].captions->time, 1200000);
    EXPECT_EQ(cues[1].captions->portions, 9u);
}

TEST(DrawnCues, HoldWindowsAsBlocks)
{
    const std::vector<caption::Cue> cues =
        DrawnCues({{0, Both(Window(0, 0, "above"), Window(1, 14, "below"))}, {1000000, {}}}, 1000000);

    ASSERT_EQ(cues.size(), 1u);
    EXPECT_EQ(cues[0].blocks.size(), 2u);
    EXPECT_EQ(PlainText(cues[0]), "above / below");
}
