// SPDX-License-Identifier: MIT
// The play command in real time: its keys and signals, its report, and how it leaves the terminal and the
// screen. How late a busy machine shows a caption proves nothing, so no test here depends on it.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <regex>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "base/timestamp.h"
#include "support/tool.h"

// Five cues that follow each other, as SubRip.
static std::string FiveCues(int seconds)
{
    std::string text;

    for (int i = 1; i <= 5; ++i) {
        std::string start = caption::Timestamp((i - 1) * seconds * 1000 + 1000);
        std::string end = caption::Timestamp(i * seconds * 1000 + 1000);
        text += std::to_string(i) + "\n" + start.replace(8, 1, ",") + " --> " + end.replace(8, 1, ",") +
                "\nCaption " + std::to_string(i) + "\n\n";
    }
    return text;
}

// Of a minute each, so that none ends by itself while a test looks at it.
static const std::string g_minutes = FiveCues(60);

namespace
{

struct Figures {
    int shown = -1;
    int dropped = -1;
    double p50 = -1;
    double p95 = -1;
    double p99 = -1;
    double max = -1;
};

} // namespace

static Figures FiguresIn(const std::string &text)
{
    static const std::regex form(
        "([0-9]+) cues shown, ([0-9]+) dropped; presentation latency p50 ([0-9.]+) ms, "
        "p95 ([0-9.]+) ms, p99 ([0-9.]+) ms, max ([0-9.]+) ms\n$");
    std::smatch parts;

    if (!std::regex_search(text, parts, form)) return {};
    return {std::stoi(parts[1]), std::stoi(parts[2]), std::stod(parts[3]),
            std::stod(parts[4]), std::stod(parts[5]), std::stod(parts[6])};
}

// The lines of captions among the output, each without its line feed.
static std::vector<std::string> CaptionsIn(const std::string &text)
{
    static const std::regex form("[0-9:.]{12}  (Caption [0-9])");
    std::vector<std::string> captions;

    for (std::sregex_iterator line(text.begin(), text.end(), form); line != std::sregex_iterator(); ++line) {
        captions.push_back((*line)[1]);
    }
    return captions;
}

// A machine that stalls for more than a fifth of a second drops a cue; then it is counted, and the others are
// in order.
TEST(Play, PrintsEachCueInOrderOrCountsItAsDropped)
{
    const Folder folder;

    const Outcome outcome =
        RunTool("play --headless --speed 5 '" + folder.Write("five.srt", FiveCues(1)) + "'");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    const std::vector<std::string> captions = CaptionsIn(outcome.out);
    const Figures figures = FiguresIn(outcome.out);
    EXPECT_EQ(figures.shown, int(captions.size())) << outcome.out;
    EXPECT_EQ(figures.shown + figures.dropped, 5) << outcome.out;
    EXPECT_TRUE(std::is_sorted(captions.begin(), captions.end())) << outcome.out;
    EXPECT_EQ(std::adjacent_find(captions.begin(), captions.end()), captions.end()) << outcome.out;
    EXPECT_LE(figures.p50, figures.p95);
    EXPECT_LE(figures.p95, figures.p99);
    EXPECT_LE(figures.p99, figures.max);
    EXPECT_EQ(figures.max > 0, figures.shown > 0) << "nothing is on the screen the moment it is due";
}

TEST(Play, RefusesWhatItCannotPlay)
{
    const Folder folder;
    const std::string text = "'" + folder.Write("five.srt", g_minutes) + "' --headless ";

    const Outcome late = RunTool("play " + text + "--start 6:00");
    EXPECT_EQ(late.exit, 1);
    EXPECT_NE(late.err.find("the last caption ends at 00:05:01.000"), std::string::npos) << late.err;
    for (const std::string wrong : {"--start soon", "--start 1:99:00", "--start -5", "--speed 0",
                                    "--speed fast", "--speed nan", "--loop 3"}) {
        const Outcome outcome = RunTool("play " + text + wrong);
        EXPECT_EQ(outcome.exit, 2) << wrong;
        EXPECT_EQ(outcome.out, "") << wrong;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
}

TEST(Play, SaysWhenNothingWillBeVisible)
{
    const Folder folder;
    const std::string play = "play --speed 1000 '" + folder.Write("five.srt", FiveCues(1)) + "'";

    EXPECT_EQ(RunTool(play + " --headless").err, "");
    EXPECT_NE(RunTool(play).err.find("no X server (DISPLAY is not set); playing without a window"),
              std::string::npos);
    EXPECT_NE(RunToolUnderX(play + " --layer 2 --mode index").err.find("shows no index mode in a window"),
              std::string::npos);
    EXPECT_EQ(RunToolUnderX(play + " --mode index").err.find("kova-caption:"), std::string::npos);
}

TEST(Play, HandlesTheKeysOfTheTerminalAndRestoresIt)
{
    const Folder folder;
    Terminal terminal("play --headless '" + folder.Write("five.srt", g_minutes) + "'");

    ASSERT_TRUE(terminal.Shows("Caption 1")) << terminal.shown();
    EXPECT_FALSE(terminal.IsEchoing());
    terminal.Type(" ");
    ASSERT_TRUE(terminal.Shows("paused at 00:00:")) << terminal.shown();
    terminal.Type("\x1B[C");
    EXPECT_TRUE(terminal.Shows("Caption 2")) << terminal.shown();
    terminal.Type("\x1BOC\x1B[C");
    EXPECT_TRUE(terminal.Shows("Caption 4")) << terminal.shown();
    terminal.Type("\x1B[D");
    EXPECT_TRUE(terminal.Shows("Caption 3")) << terminal.shown();
    terminal.Type("x\x1B[15~"); // keys without a meaning
    terminal.Type(" ");
    EXPECT_TRUE(terminal.Shows("playing at 00:02:01.000")) << terminal.shown();
    terminal.Type("q");
    const int status = terminal.End();

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(terminal.IsEchoing());
    EXPECT_EQ(CaptionsIn(terminal.shown()),
              (std::vector<std::string>{"Caption 1", "Caption 2", "Caption 3", "Caption 4", "Caption 3"}))
        << terminal.shown();
}

TEST(Play, QuitsWithEscape)
{
    const Folder folder;
    Terminal terminal("play --headless '" + folder.Write("five.srt", g_minutes) + "'");

    ASSERT_TRUE(terminal.Shows("Caption 1"));
    terminal.Type("\x1B");
    const int status = terminal.End();

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(terminal.IsEchoing());
}

TEST(Play, LoopsUntilCtrlCAndRestoresTheTerminal)
{
    const Folder folder;
    Terminal terminal("play --headless --loop --speed 10 '" + folder.Write("five.srt", FiveCues(1)) + "'");

    ASSERT_TRUE(terminal.Shows("Caption 5")) << terminal.shown();
    ASSERT_TRUE(terminal.Shows("Caption 1")) << terminal.shown();
    terminal.Type("\x03");
    const int status = terminal.End();

    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_TRUE(terminal.IsEchoing());
    EXPECT_TRUE(terminal.Shows(" cues shown, ")) << terminal.shown();
}

TEST(Play, RestoresTheTerminalWhenNobodyReadsItsOutput)
{
    const Folder folder;
    Terminal terminal("play --headless '" + folder.Write("five.srt", FiveCues(1)) + "' | head -n 1");

    ASSERT_TRUE(terminal.Shows("Caption 1")) << terminal.shown();
    const int status = terminal.End();

    EXPECT_TRUE(WIFEXITED(status)) << status;
    EXPECT_TRUE(terminal.IsEchoing());
}

namespace
{

class PlayUnderX : public testing::TestWithParam<const char *>
{
};

} // namespace

TEST_P(PlayUnderX, ShowsCaptionsInTheWindowAndHandlesItsKeys)
{
    const Folder folder;
    const std::string text = folder.Write("five.srt", g_minutes);
    const caption::Size plane = {640, 360};
    ASSERT_EQ(
        RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --plane 640x360 --color FFFF00").exit,
        0);

    const std::string first = "'" + folder / "first" + "' '" + folder / "made/0001.png" + "'";
    const std::string third = "'" + folder / "third" + "' '" + folder / "made/0003.png" + "'";
    const Outcome outcome = RunScriptUnderX(
        "Start play '" + text + "' --plane 640x360 --color FFFF00 --layer " + GetParam() +
        "\nWaitFor 'Caption 1'\nPress space\nWaitFor paused\nKeepScreen " + first +
        "\nPress Right\nPress Right\nWaitFor 'Caption 3'\nKeepScreen " + third +
        "\nPress Left\nPress Left\nPress Right\nPress space\nWaitFor playing\nPress q\nEnd\n");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    static const std::regex form("00:00:01.000  Caption 1\npaused at 00:00:[0-9]{2}.[0-9]{3}\n"
                                 "00:01:01.000  Caption 2\n00:02:01.000  Caption 3\n"
                                 "00:01:01.000  Caption 2\n00:00:01.000  Caption 1\n00:01:01.000  Caption 2\n"
                                 "playing at 00:01:01.000\n6 cues shown, 0 dropped;.*\n");
    EXPECT_TRUE(std::regex_match(outcome.out, form)) << outcome.out;
    EXPECT_EQ(Differences(ReadScreen(folder / "first", plane), ReadPng(folder / "made/0001.png")), 0);
    EXPECT_EQ(Differences(ReadScreen(folder / "third", plane), ReadPng(folder / "made/0003.png")), 0);
}

INSTANTIATE_TEST_SUITE_P(Layer, PlayUnderX, testing::Values("1", "2", "3"));
