// SPDX-License-Identifier: MIT
// Times of captions. A caption of n groups has n single items "a", shown by "SS", erased by "EE".
#include "generating/lane.h"

#include <gtest/gtest.h>

#include <string>

using namespace caption;

static Lane<char>::Caption Given(std::size_t start, std::size_t end, std::size_t full, std::size_t brief)
{
    Lane<char>::Caption caption;

    caption.start = start;
    caption.end = end;
    caption.load.assign(full, {'a'});
    caption.briefly.assign(brief, {'b'});
    caption.show = {'S', 'S'};
    caption.erase = {'E', 'E'};
    return caption;
}

static std::string Sent(const Lane<char> &lane)
{
    std::string sent;

    for (const auto &item : lane.items()) {
        sent.resize(std::max(sent.size(), item.first + 1), '.');
        sent[item.first] = item.second;
    }
    return sent;
}

TEST(Lane, LoadsBeforeTheStartAndErasesAtTheEnd)
{
    Lane<char> lane;

    lane.Add(Given(6, 10, 3, 2));
    EXPECT_EQ(lane.Finish(), 12u);

    EXPECT_EQ(Sent(lane), "...aaaSS..EE");
    EXPECT_EQ(lane.late(), 0u);
}

TEST(Lane, LoadsWhileTheCaptionBeforeIsShown)
{
    Lane<char> lane;

    lane.Add(Given(2, 8, 2, 1));
    lane.Add(Given(12, 20, 5, 4));

    EXPECT_EQ(Sent(lane), "aaSS.aaaEEaaSS");
}

TEST(Lane, KeepsGroupsTogether)
{
    Lane<char> lane;
    Lane<char>::Caption pairs = Given(11, 20, 0, 0);
    pairs.load = {{'x', 'x'}, {'y', 'y'}};

    lane.Add(Given(2, 8, 2, 1));
    lane.Add(pairs); // one frame is left between the erasure and the start

    EXPECT_EQ(Sent(lane), "aaSSxxyyEE.SS");
}

TEST(Lane, DoesNotEraseWhereTheNextFollowsAtOnce)
{
    Lane<char> lane;

    lane.Add(Given(2, 8, 2, 1));
    lane.Add(Given(8, 12, 2, 1));
    lane.Add(Given(13, 20, 1, 1)); // room for one item of the erasure
    lane.Finish();

    EXPECT_EQ(Sent(lane), "aaSS..aaSS.aESS.....EE");
}

TEST(Lane, SendsBrieflyWhereTimeIsShort)
{
    Lane<char> lane;

    lane.Add(Given(3, 9, 4, 3));

    EXPECT_EQ(Sent(lane), "bbbSS");
    EXPECT_EQ(lane.late(), 0u);
}

TEST(Lane, IsLateWhereThatDoesNotSuffice)
{
    Lane<char> lane;

    lane.Add(Given(1, 3, 4, 3));
    lane.Finish();

    EXPECT_EQ(Sent(lane), "bbbSS" + std::string(13, '.') + "EE") << "half a second is the least for it";
    EXPECT_EQ(lane.late(), 1u);
    EXPECT_EQ(lane.latest(), 2u);
    EXPECT_EQ(lane.shown(), std::vector<std::size_t>{3});
}
