// SPDX-License-Identifier: MIT
#include "cues/cue.h"

#include <gtest/gtest.h>

using caption::Cue;
using caption::Screen;
using caption::Screens;

static Cue Shown(std::int64_t start, std::int64_t end, int layer = 0)
{
    Cue cue;
    cue.start = start;
    cue.end = end;
    cue.layer = layer;
    return cue;
}

static void Expect(const std::vector<Screen> &screens, const std::vector<Screen> &expected)
{
    ASSERT_EQ(screens.size(), expected.size());
    for (std::size_t i = 0; i < screens.size(); ++i) {
        EXPECT_EQ(screens[i].start, expected[i].start) << i;
        EXPECT_EQ(screens[i].end, expected[i].end) << i;
        EXPECT_EQ(screens[i].cues, expected[i].cues) << i;
    }
}

TEST(Screens, LeavesAPauseOutAndNoneWhereCuesMeet)
{
    Expect(Screens({Shown(10, 20), Shown(20, 30), Shown(40, 50)}),
           {{10, 20, {0}}, {20, 30, {1}}, {40, 50, {2}}});
}

TEST(Screens, CutsWhereverACueBeginsOrEnds)
{
    Expect(Screens({Shown(10, 40), Shown(20, 30), Shown(20, 50)}),
           {{10, 20, {0}}, {20, 30, {0, 1, 2}}, {30, 40, {0, 2}}, {40, 50, {2}}});
}

TEST(Screens, DrawsHigherLayersLater)
{
    Expect(Screens({Shown(0, 9, 1), Shown(0, 9), Shown(3, 9, 1), Shown(3, 9, -1)}),
           {{0, 3, {1, 0}}, {3, 9, {3, 1, 0, 2}}});
}

TEST(Screens, TakesCuesInAnyOrderAndTimesBelowZero)
{
    Expect(Screens({Shown(5, 8), Shown(-5, 6)}), {{-5, 5, {1}}, {5, 6, {0, 1}}, {6, 8, {0}}});
}

TEST(Screens, ShowsNothingOfACueThatLastsNoTime)
{
    Expect(Screens({Shown(5, 5), Shown(7, 9)}), {{7, 9, {1}}});
    Expect(Screens({}), {});
}

TEST(PlainText, PutsASlashBetweenLines)
{
    Cue cue;
    cue.blocks.resize(2);
    cue.blocks[0].lines = {{{"one", {}}, {" two", {true}}}, {{"three", {}}}};
    cue.blocks[1].lines = {{{"four", {}}}};

    EXPECT_EQ(PlainText(cue), "one two / three / four");
}

TEST(PlainText, ReadsTheHighestBlockFirst)
{
    Cue cue;
    cue.blocks.resize(3);
    cue.blocks[0].lines = {{{"bottom", {}}}};
    cue.blocks[1].lines = {{{"middle", {}}}};
    cue.blocks[1].anchor = caption::Anchor{0, 0.4};
    cue.blocks[2].lines = {{{"top", {}}}};
    cue.blocks[2].vertical = caption::Vertical::TOP;

    EXPECT_EQ(PlainText(cue), "top / middle / bottom");
}

TEST(Append, JoinsTextOfOneStyle)
{
    caption::Line line;
    Append(line, "a", {true});
    Append(line, "b", {true});
    Append(line, "", {});
    Append(line, "c", {});

    EXPECT_EQ(line, (caption::Line{{"ab", {true}}, {"c", {}}}));
}
