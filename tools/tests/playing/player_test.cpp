// SPDX-License-Identifier: MIT
// What is shown when, what keys do, and what is reported, in a time that the tests script.
#include "playing/player.h"

#include <cstdlib>
#include <deque>
#include <stdexcept>

#include <gtest/gtest.h>

#include "drawing/stage_of.h"

using caption::Key;
using caption::SteadyTime;
using std::chrono::milliseconds;

namespace
{

// Time passes only while the player waits, and drawing takes none.
class ScriptedInput : public caption::PlayerInput
{
public:
    // At that many milliseconds after the start.
    ScriptedInput &Press(int time, Key key)
    {
        keys_.push_back({start_ + milliseconds(time), key});
        return *this;
    }

    // By how many milliseconds the waits end late, one after the other; the others end in time.
    ScriptedInput &EndLate(std::deque<int> delays)
    {
        delays_ = std::move(delays);
        return *this;
    }

    SteadyTime Now() const override
    {
        return now_;
    }

    std::optional<Key> Wait(SteadyTime until) override
    {
        waits_.push_back(until == SteadyTime::max() ? -1 : int((until - start_) / milliseconds(1)));
        if (!keys_.empty() && keys_.front().first <= until) {
            const auto [time, key] = keys_.front();
            keys_.pop_front();
            now_ = std::max(now_, time);
            return key;
        }
        if (until == SteadyTime::max()) throw std::logic_error("waits for a key that never comes");
        now_ = std::max(now_, until);
        if (!delays_.empty()) {
            now_ += milliseconds(delays_.front());
            delays_.pop_front();
        }
        return {};
    }

    void SleepUntil(SteadyTime time) override
    {
        now_ = std::max(now_, time);
    }

    // Until when the player waited, in milliseconds after the start; -1: for a key alone.
    const std::vector<int> &waits() const
    {
        return waits_;
    }

private:
    const SteadyTime start_ = SteadyTime() + std::chrono::hours(1);
    SteadyTime now_ = start_;
    std::deque<std::pair<SteadyTime, Key>> keys_;
    std::deque<int> delays_;
    std::vector<int> waits_;
};

} // namespace

// Five cues, one a second from the first second on, half a second each.
static std::vector<caption::Cue> FiveCues()
{
    std::vector<caption::Cue> cues;

    for (int i = 1; i <= 5; ++i) {
        cues.push_back(CueOf({{{"Caption " + std::to_string(i), {}}}}));
        cues.back().start = i * 1000;
        cues.back().end = i * 1000 + 500;
    }
    return cues;
}

static std::string Play(const std::vector<caption::Cue> &cues, ScriptedInput &input,
                        const caption::Playback &playback = {})
{
    char *text = nullptr;
    std::size_t length = 0;
    std::FILE *const out = open_memstream(&text, &length);
    caption::Stage stage(PlainOptions(), cues);

    PlayCues(cues, playback, stage, input, out);
    std::fclose(out);
    std::string printed(text, length);
    std::free(text);
    return printed;
}

static const char g_inTime[] = "presentation latency p50 0.00 ms, p95 0.00 ms, p99 0.00 ms, max 0.00 ms\n";

TEST(Player, ShowsEveryCueAtItsTimeDividedBySpeed)
{
    ScriptedInput input;
    caption::Playback playback;
    playback.speed = 5;

    EXPECT_EQ(Play(FiveCues(), input, playback),
              std::string("00:00:01.000  Caption 1\n00:00:02.000  Caption 2\n00:00:03.000  Caption 3\n"
                          "00:00:04.000  Caption 4\n00:00:05.000  Caption 5\n5 cues shown, 0 dropped; ") +
                  g_inTime);
    EXPECT_EQ(input.waits(), (std::vector<int>{200, 300, 400, 500, 600, 700, 800, 900, 1000, 1100}));
}

// Ranks of five values: p50 is the third, p95 and p99 are the fifth. Delays of empty screens do not count.
TEST(Player, ReportsHowLateCuesAreOnTheScreen)
{
    ScriptedInput input;
    input.EndLate({30, 400, 10, 400, 20, 400, 50, 400, 40});

    const std::string printed = Play(FiveCues(), input);

    EXPECT_NE(printed.find("5 cues shown, 0 dropped; presentation latency p50 30.00 ms, p95 50.00 ms, "
                           "p99 50.00 ms, max 50.00 ms\n"),
              std::string::npos)
        << printed;
}

// The second cue is due at 2.0 s and the player wakes at 3.7 s, when the third is over too.
TEST(Player, DropsCuesThatAreOverBeforeTheyCouldBeDrawn)
{
    ScriptedInput input;
    input.EndLate({0, 0, 1700});

    EXPECT_EQ(Play(FiveCues(), input),
              std::string("00:00:01.000  Caption 1\n00:00:04.000  Caption 4\n00:00:05.000  Caption 5\n"
                          "3 cues shown, 2 dropped; ") +
                  g_inTime);
}

// Latency is that of the cue that is shown: due at 3.0 s, on the screen at 3.2 s.
TEST(Player, ShowsACueThatIsStillDueAfterOthersWereDropped)
{
    ScriptedInput input;
    input.EndLate({0, 0, 1200});

    const std::string printed = Play(FiveCues(), input);

    EXPECT_EQ(printed.rfind("00:00:01.000  Caption 1\n00:00:03.000  Caption 3\n", 0), 0u) << printed;
    EXPECT_NE(printed.find("4 cues shown, 1 dropped;"), std::string::npos) << printed;
    EXPECT_NE(printed.find("max 200.00 ms"), std::string::npos) << printed;
}

TEST(Player, BeginsInTheMiddleOfACue)
{
    ScriptedInput input;
    caption::Playback playback;
    playback.start = 4200;

    EXPECT_EQ(Play(FiveCues(), input, playback),
              std::string("00:00:04.000  Caption 4\n00:00:05.000  Caption 5\n2 cues shown, 0 dropped; ") +
                  g_inTime);
    EXPECT_EQ(input.waits(), (std::vector<int>{0, 300, 800, 1300}));
}

TEST(Player, ListsACueThatOverlapsOthersOnce)
{
    std::vector<caption::Cue> cues = FiveCues();
    cues.resize(2);
    cues[0].end = 3000;
    ScriptedInput input;

    EXPECT_EQ(Play(cues, input),
              std::string("00:00:01.000  Caption 1\n00:00:02.000  Caption 2\n2 cues shown, 0 dropped; ") +
                  g_inTime);
}

TEST(Player, StandsStillWhilePaused)
{
    ScriptedInput input;
    input.Press(1200, Key::PAUSE).Press(10000, Key::PAUSE).Press(10500, Key::END);

    EXPECT_EQ(Play(FiveCues(), input),
              std::string("00:00:01.000  Caption 1\npaused at 00:00:01.200\nplaying at 00:00:01.200\n"
                          "1 cues shown, 0 dropped; ") +
                  g_inTime);
    EXPECT_EQ(input.waits(), (std::vector<int>{1000, 1500, -1, 10300, 10800}));
}

TEST(Player, StepsToTheCueBeforeAndAfter)
{
    ScriptedInput input;
    input.Press(1100, Key::PAUSE).Press(1200, Key::FORWARD).Press(1300, Key::FORWARD).Press(1400, Key::BACK);
    input.Press(1500, Key::BACK).Press(1600, Key::BACK).Press(1700, Key::END);

    EXPECT_EQ(Play(FiveCues(), input),
              std::string("00:00:01.000  Caption 1\npaused at 00:00:01.100\n00:00:02.000  Caption 2\n"
                          "00:00:03.000  Caption 3\n00:00:02.000  Caption 2\n00:00:01.000  Caption 1\n"
                          "5 cues shown, 0 dropped; ") +
                  g_inTime)
        << "the first cue has none before it";
}

TEST(Player, BeginsAgainAtTheEndWhereItLoops)
{
    ScriptedInput input;
    input.Press(7000, Key::END);
    caption::Playback playback;
    playback.loop = true;
    playback.start = 4000;

    EXPECT_EQ(
        Play(FiveCues(), input, playback).substr(0, 5 * 24),
        "00:00:04.000  Caption 4\n00:00:05.000  Caption 5\n00:00:04.000  Caption 4\n00:00:05.000  Caption 5\n"
        "00:00:04.000  Caption 4\n")
        << "each round takes a second and a half";
}

// Two letters half a second apart are one cue, but are drawn as they come: the player wakes for each.
TEST(Player, DrawsClosedCaptionsAsTheyWereSent)
{
    const auto recording = std::make_shared<caption::CaptionRecording>();
    // Paint-on in CC1, a preamble, "A"; later "B", and the display erased.
    recording->bytes = {0xFC, 0x94, 0x29, 0xFC, 0x94, 0x70, 0xFC, 0xC1,
                        0x80, 0xFC, 0xC2, 0x80, 0xFC, 0x94, 0x2C};
    recording->portions = {{1000000, 9}, {1300000, 12}, {2000000, 15}};
    caption::Cue cue = CueOf({{{"AB", {}}}});
    cue.start = 1000;
    cue.end = 2000;
    cue.captions = caption::CaptionMoment{recording, KOVA_CAPTIONS_CC1, 2, 1300000};
    ScriptedInput input;

    EXPECT_EQ(Play({cue}, input), std::string("00:00:01.000  AB\n1 cues shown, 0 dropped; ") + g_inTime);
    EXPECT_EQ(input.waits(), (std::vector<int>{1000, 1300, 2000}));
}
