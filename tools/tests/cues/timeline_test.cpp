// SPDX-License-Identifier: MIT
#include "cues/timeline.h"

#include <gtest/gtest.h>

using caption::Cue;
using caption::Timeline;
using Times = std::vector<std::pair<std::int64_t, std::int64_t>>;

static Cue From(std::int64_t start, std::int64_t end = 0)
{
    Cue cue;
    cue.start = start;
    cue.end = end;
    return cue;
}

static Times TimesOf(const std::vector<Cue> &cues)
{
    Times times;
    for (const Cue &cue : cues) times.push_back({cue.start, cue.end});
    return times;
}

TEST(Timeline, EndsACueWhereTheNextOneIsShownOrNothing)
{
    Timeline timeline;
    timeline.Show(From(100), std::nullopt);
    timeline.Show(From(300), std::nullopt);
    timeline.Clear(450);
    timeline.Clear(500);
    timeline.Show(From(900), std::nullopt);

    EXPECT_EQ(TimesOf(timeline.Finish(9000)), (Times{{100, 300}, {300, 450}, {900, 9000}}));
}

TEST(Timeline, KeepsToTheLatestEndOfACue)
{
    Timeline timeline;
    timeline.Show(From(100), 200);
    timeline.Show(From(300), 700);
    timeline.Show(From(400), 700);

    EXPECT_EQ(TimesOf(timeline.Finish(0)), (Times{{100, 200}, {300, 400}, {400, 700}}));
}

TEST(Timeline, ShowsTheLastCueForFourSecondsAtLeast)
{
    Timeline timeline;
    timeline.Show(From(100), std::nullopt);
    EXPECT_EQ(TimesOf(timeline.Finish(2000)), (Times{{100, 4100}}));
}

TEST(Timeline, LeavesCuesWithAnEndOfTheirOwnAloneAndSortsByStart)
{
    Timeline timeline;
    timeline.Show(From(500), std::nullopt);
    timeline.Add(From(100, 900));
    timeline.Add(From(700, 600));
    timeline.Clear(800);

    EXPECT_EQ(TimesOf(timeline.Finish(0)), (Times{{100, 900}, {500, 800}, {700, 700}}));
}
