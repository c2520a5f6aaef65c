// SPDX-License-Identifier: MIT
// Captions in real time: what is shown when, what keys do, and how the tool leaves.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <regex>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "base/timestamp.h"
#include "support/tool.h"

// A cue a second from the first second on, half a second each.
static std::string FiveCues()
{
    std::string text;

    for (int i = 1; i <= 5; ++i) {
        std::string start = caption::Timestamp(i * 1000);
        std::string end = caption::Timestamp(i * 1000 + 500);
        text += std::to_string(i) + "\n" + start.replace(8, 1, ",") + " --> " + end.replace(8, 1, ",") +
                "\nCaption " + std::to_string(i) + "\n\n";
    }
    return text;
}

namespace
{

struct Figures {
    int shown = -1;
    int missed = -1;
    double p50 = -1;
    double p95 = -1;
    double p99 = -1;
    double most = -1;
};

} // namespace

static Figures FiguresIn(const std::string &text)
{
    static const std::regex form(
        "([0-9]+) cues shown, ([0-9]+) missed; on the screen after p50 ([0-9.]+) ms, "
        "p95 ([0-9.]+) ms, p99 ([0-9.]+) ms, at most ([0-9.]+) ms\n$");
    std::smatch parts;

    if (!std::regex_search(text, parts, form)) return {};
    return {std::stoi(parts[1]), std::stoi(parts[2]), std::stod(parts[3]),
            std::stod(parts[4]), std::stod(parts[5]), std::stod(parts[6])};
}

TEST(Play, ShowsEveryCueAtItsTimeAndSaysHowLate)
{
    const Folder folder;
    const std::string text = folder.Write("five.srt", FiveCues());

    const auto before = std::chrono::steady_clock::now();
    const Outcome outcome = RunTool("play --headless --speed 5 '" + text + "'");
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - before;

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.out.rfind("00:00:01.000  Caption 1\n00:00:02.000  Caption 2\n00:00:03.000  Caption 3\n"
                                "00:00:04.000  Caption 4\n00:00:05.000  Caption 5\n5 cues shown, 0 missed;",
                                0),
              0u)
        << outcome.out;
    const Figures figures = FiguresIn(outcome.out);
    EXPECT_GT(figures.p50, 0);
    EXPECT_LT(figures.p50, 1000.0 / 60) << "a cue is to be on the screen within a frame";
    EXPECT_LE(figures.p50, figures.p95);
    EXPECT_LE(figures.p95, figures.p99);
    EXPECT_LE(figures.p99, figures.most);
    EXPECT_GE(took.count(), 5.5 / 5);
    EXPECT_LT(took.count(), 5.5);
}

TEST(Play, KeepsUpWithAThousandCuesAMinute)
{
    const Folder folder;
    std::string text = "WEBVTT\n\n";
    for (int i = 0; i < 50; ++i) {
        text += caption::Timestamp(i * 60) + " --> " + caption::Timestamp(i * 60 + 60) + "\nCaption " +
                std::to_string(i) + " of many\nthat follow each other\n\n";
    }

    const Outcome outcome = RunTool("play --headless '" + folder.Write("many.vtt", text) + "'");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    const Figures figures = FiguresIn(outcome.out);
    EXPECT_EQ(figures.shown + figures.missed, 50) << outcome.out;
    EXPECT_LT(figures.p50, 1000.0 / 60) << outcome.out;
}

TEST(Play, BeginsInTheMiddleOfACue)
{
    const Folder folder;
    const std::string text = folder.Write("five.srt", FiveCues());

    const Outcome outcome = RunTool("play --headless --speed 10 --start 0:04.2 '" + text + "'");

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(
        outcome.out.rfind("00:00:04.000  Caption 4\n00:00:05.000  Caption 5\n2 cues shown, 0 missed;", 0), 0u)
        << outcome.out;
}

TEST(Play, NamesACueThatOverlapsOthersOnce)
{
    const Folder folder;
    const std::string text = folder.Write(
        "over.vtt", "WEBVTT\n\n00:00.100 --> 00:00.900\nLong\n\n00:00.300 --> 00:00.500\nShort\n");

    const Outcome outcome = RunTool("play --headless '" + text + "'");

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.out.rfind("00:00:00.100  Long\n00:00:00.300  Short\n2 cues shown, 0 missed;", 0), 0u)
        << outcome.out;
}

TEST(Play, RefusesWhatItCannotPlay)
{
    const Folder folder;
    const std::string text = "'" + folder.Write("five.srt", FiveCues()) + "' --headless ";

    const Outcome late = RunTool("play " + text + "--start 1:00");
    EXPECT_EQ(late.exit, 1);
    EXPECT_NE(late.err.find("the last caption ends at 00:00:05.500"), std::string::npos) << late.err;
    for (const std::string wrong :
         {"--start soon", "--start 1:99:00", "--start -5", "--speed 0", "--speed fast", "--loop 3"}) {
        const Outcome outcome = RunTool("play " + text + wrong);
        EXPECT_EQ(outcome.exit, 2) << wrong;
        EXPECT_EQ(outcome.out, "") << wrong;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
}

TEST(Play, SaysWhereNothingWillBeSeen)
{
    const Folder folder;
    const std::string play = "play --speed 100 '" + folder.Write("five.srt", FiveCues()) + "'";

    EXPECT_EQ(RunTool(play + " --headless").err, "");
    EXPECT_NE(RunTool(play).err.find("there is no X server (DISPLAY is not set); playing without a window"),
              std::string::npos);
    EXPECT_NE(RunToolUnderX(play + " --layer 2 --mode index").err.find("shows no index mode in a window"),
              std::string::npos);
    EXPECT_EQ(RunToolUnderX(play + " --mode index").err.find("kova-caption:"), std::string::npos);
}

TEST(Play, ObeysTheKeysOfTheTerminalAndGivesItBack)
{
    const Folder folder;
    Terminal terminal("play --headless '" + folder.Write("five.srt", FiveCues()) + "'");

    ASSERT_TRUE(terminal.Shows("Caption 1")) << terminal.shown();
    EXPECT_FALSE(terminal.IsEchoing());
    terminal.Type(" ");
    ASSERT_TRUE(terminal.Shows("paused at 00:00:01.")) << terminal.shown();
    terminal.Type("\x1B[C");
    EXPECT_TRUE(terminal.Shows("Caption 2")) << terminal.shown();
    terminal.Type("\x1BOC\x1B[C");
    EXPECT_TRUE(terminal.Shows("Caption 4")) << terminal.shown();
    terminal.Type("\x1B[D");
    EXPECT_TRUE(terminal.Shows("Caption 3")) << terminal.shown();
    terminal.Type("x\x1B[15~"); // keys without a meaning
    terminal.Type(" ");
    EXPECT_TRUE(terminal.Shows("playing at 00:00:03.000")) << terminal.shown();
    EXPECT_TRUE(terminal.Shows("Caption 4")) << terminal.shown();
    terminal.Type("q");
    const int status = terminal.End();

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(terminal.IsEchoing());
    EXPECT_EQ(terminal.shown().find("Caption 5"), std::string::npos) << terminal.shown();
}

TEST(Play, EndsWithEscape)
{
    const Folder folder;
    Terminal terminal("play --headless '" + folder.Write("five.srt", FiveCues()) + "'");

    ASSERT_TRUE(terminal.Shows("Caption 1"));
    terminal.Type("\x1B");
    const int status = terminal.End();

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(terminal.IsEchoing());
}

TEST(Play, GoesRoundUntilCtrlCAndGivesTheTerminalBack)
{
    const Folder folder;
    Terminal terminal("play --headless --loop --speed 10 '" + folder.Write("five.srt", FiveCues()) + "'");

    ASSERT_TRUE(terminal.Shows("Caption 5")) << terminal.shown();
    ASSERT_TRUE(terminal.Shows("Caption 1")) << terminal.shown();
    terminal.Type("\x03");
    const int status = terminal.End();

    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_TRUE(terminal.IsEchoing());
    EXPECT_TRUE(terminal.Shows(" cues shown, ")) << terminal.shown();
}

TEST(Play, GivesTheTerminalBackWhenNobodyReadsWhatItPrints)
{
    const Folder folder;
    Terminal terminal("play --headless '" + folder.Write("five.srt", FiveCues()) + "' | head -n 1");

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

// The caption on black. How DirectFB's desktop blends what is half transparent is its own matter.
static void ExpectOnScreen(const caption::Picture &screen, const caption::Picture &caption)
{
    const caption::Color black = {0, 0, 0, 255};
    int others = 0;

    for (int y = 0; y < caption.size().height; ++y) {
        for (int x = 0; x < caption.size().width; ++x) {
            const caption::Color &drawn = caption.At(x, y);
            if (drawn.alpha == 0) others += !(screen.At(x, y) == black);
            if (drawn.alpha == 255) others += !(screen.At(x, y) == drawn);
        }
    }
    EXPECT_EQ(others, 0);
}

TEST_P(PlayUnderX, ShowsCaptionsInTheWindowAndObeysItsKeys)
{
    const Folder folder;
    const std::string text = folder.Write("five.srt", FiveCues());
    const caption::Size plane = {640, 360};
    ASSERT_EQ(
        RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --plane 640x360 --color FFFF00").exit,
        0);

    const Outcome outcome =
        RunScriptUnderX("Start play '" + text + "' --plane 640x360 --color FFFF00 --layer " + GetParam() +
                        "\nWaitFor 'Caption 1'\nPress space\nWaitFor paused\n" + "sleep 0.6\nKeepScreen '" +
                        folder / "first" + "'\nPress Right\nPress Right\nWaitFor 'Caption 3'\nKeepScreen '" +
                        folder / "third" + "'\nPress Left\nPress Left\nPress Right\n" +
                        "Press space\nWaitFor playing\nPress q\nEnd\n");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    static const std::regex form("00:00:01.000  Caption 1\npaused at 00:00:01.[0-4][0-9]{2}\n"
                                 "00:00:02.000  Caption 2\n00:00:03.000  Caption 3\n"
                                 "00:00:02.000  Caption 2\n00:00:01.000  Caption 1\n00:00:02.000  Caption 2\n"
                                 "playing at 00:00:02.000\n6 cues shown, 0 missed;.*\n");
    EXPECT_TRUE(std::regex_match(outcome.out, form)) << outcome.out;
    ExpectOnScreen(ReadScreen(folder / "first", plane), ReadPng(folder / "made/0001.png"));
    ExpectOnScreen(ReadScreen(folder / "third", plane), ReadPng(folder / "made/0003.png"));
}

INSTANTIATE_TEST_SUITE_P(Layer, PlayUnderX, testing::Values("1", "2", "3"));
