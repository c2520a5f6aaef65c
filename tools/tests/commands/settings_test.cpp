// SPDX-License-Identifier: MIT
// The viewer's settings: their file, their menu, and the commands that use them.
#include <csignal>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/tool.h"

static const std::string g_sample = "'" KOVA_CAPTION_SAMPLES "/demo.srt'";

static std::string Contents(const std::string &file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

static bool HasLine(const std::string &text, const std::string &line)
{
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

static std::size_t Count(const caption::Picture &picture, caption::Color color)
{
    std::size_t count = 0;

    for (int y = 0; y < picture.size().height; ++y) {
        for (int x = 0; x < picture.size().width; ++x) count += picture.At(x, y) == color;
    }
    return count;
}

TEST(SettingsFile, IsWrittenBySetAndReadByTheCommandsThatDraw)
{
    const Folder folder;
    const std::string environment = "XDG_CONFIG_HOME='" + folder / "" + "'";
    const Outcome set =
        RunTool("settings --set foreground=yellow --set edge_type=none --set size=150", environment);
    const std::string file = folder / "kova-caption/settings";

    EXPECT_EQ(set.exit, 0) << set.err;
    EXPECT_TRUE(HasLine(Contents(file), "foreground = yellow")) << Contents(file);
    EXPECT_TRUE(HasLine(Contents(file), "size = 150"));
    EXPECT_EQ(RunTool("settings --print", environment).out, Contents(file));

    const std::string draw = "snapshot " + g_sample + " --headless --at 0:02.2 -o '" + folder / "";
    ASSERT_EQ(RunTool(draw + "user'", environment).exit, 0);
    ASSERT_EQ(RunTool(draw + "named' --settings '" + file + "'").exit, 0);
    ASSERT_EQ(RunTool(draw + "plain'").exit, 0);
    const std::string picture = "/at-00-00-02.200.png";
    const caption::Picture user = ReadPng(folder / ("user" + picture));
    EXPECT_TRUE(user == ReadPng(folder / ("named" + picture)));
    EXPECT_GT(Count(user, {255, 255, 0}), 1000u);
    EXPECT_EQ(Count(ReadPng(folder / ("plain" + picture)), {255, 255, 0}), 0u);
}

TEST(SettingsFile, ThatIsWrongIsOneLineWithItsNumber)
{
    const Folder folder;
    const std::string file = folder.Write("bad", "size = 100\n\nforeground = purple\n");

    for (const std::string &command :
         {"play " + g_sample, "snapshot " + g_sample + " -o x", "sheet " + g_sample + " -o x.png",
          "list " + g_sample, std::string("preview -o x.png"), std::string("settings --print")}) {
        const Outcome outcome = RunTool(command + " --settings '" + file + "'");
        EXPECT_EQ(outcome.exit, 2) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_EQ(outcome.err,
                  "kova-caption: " + file +
                      ":3: foreground must be as-provided, black, blue, green, cyan, red, magenta, "
                      "yellow or white, or R,G,B from 0 to 3.\n")
            << command;
    }
}

TEST(SettingsFile, IsRefusedForOtherReasonsToo)
{
    const Folder folder;
    const auto refused = [&](const std::string &file) {
        const Outcome outcome = RunTool("list " + g_sample + " --settings '" + file + "'");
        EXPECT_EQ(outcome.exit, 2);
        return outcome.err;
    };

    EXPECT_NE(refused(folder / "none").find("cannot be read (No such file or directory)"), std::string::npos);
    EXPECT_NE(refused(folder / "").find("not a file of settings"), std::string::npos);
    EXPECT_NE(refused("/dev/zero").find("not a file of settings"), std::string::npos);
    EXPECT_NE(
        refused(folder.Write("a", "colour = red\n")).find(":1: unknown setting; there are foreground, "),
        std::string::npos);
    EXPECT_NE(refused(folder.Write("b", "size: 100\n")).find(":1: not of the form NAME = VALUE"),
              std::string::npos);
    EXPECT_NE(refused(folder.Write("c", "size = 300\n")).find("size must be a number from 50 to 200"),
              std::string::npos);
    EXPECT_NE(refused(folder.Write("d", "version = x\n")).find("version must be a number from 1"),
              std::string::npos);
}

TEST(SettingsFile, ThatCannotBeWrittenIsAFailure)
{
    const Outcome outcome = RunTool("settings --settings /proc/none/settings --set size=120");

    EXPECT_EQ(outcome.exit, 1);
    EXPECT_NE(outcome.err.find("/proc/none/settings: cannot be written"), std::string::npos) << outcome.err;
}

TEST(SettingsCommand, RefusesWhatItDoesNotKnow)
{
    const Folder folder;
    const std::string file = " --settings '" + folder / "a" + "'";

    EXPECT_EQ(RunTool("settings --set size=1000" + file).exit, 2);
    EXPECT_EQ(RunTool("settings --set size" + file).exit, 2);
    EXPECT_EQ(RunTool("settings --set 'size=100\nsize=110'" + file).exit, 2);
    EXPECT_EQ(RunTool("settings --keys 'down sideways'" + file).exit, 2);
    EXPECT_EQ(RunTool("settings" + file).exit, 2) << "there are neither a window nor a terminal";
    EXPECT_EQ(RunTool("settings --print", "XDG_CONFIG_HOME= HOME=").exit, 2);
    EXPECT_TRUE(folder.Names().empty()) << "nothing is saved";
}

TEST(SettingsCommand, SavesWithEnterAndLeavesWithEscape)
{
    const Folder folder;
    const std::string settings = "settings --settings '" + folder / "a" + "' ";

    const Outcome left = RunTool(settings + "--keys 'right escape right enter'");
    EXPECT_EQ(left.exit, 0);
    EXPECT_TRUE(folder.Names().empty());
    const Outcome saved = RunTool(settings + "--keys 'down down right right enter' --print");
    EXPECT_EQ(saved.exit, 0);
    EXPECT_TRUE(HasLine(Contents(folder / "a"), "background = blue")) << Contents(folder / "a");
    EXPECT_EQ(saved.out, "saved " + (folder / "a") + "\n" + Contents(folder / "a"));
    EXPECT_EQ(RunTool(settings + "--keys 'r s'").exit, 0);
    EXPECT_TRUE(HasLine(Contents(folder / "a"), "background = as-provided")) << Contents(folder / "a");
}

// The part of the picture below the menu.
static caption::Picture Sample(const std::string &file)
{
    const caption::Picture whole = ReadPng(file);
    caption::Picture sample({1280, 720 - 430});

    for (int y = 0; y < sample.size().height; ++y) {
        for (int x = 0; x < sample.size().width; ++x) sample.At(x, y) = whole.At(x, y + 430);
    }
    return sample;
}

TEST(SettingsMenu, ShowsACaptionThatChangesWithTheSettings)
{
    const Folder folder;
    const auto draw = [&](const std::string &name, const std::string &keys) {
        const Outcome outcome = RunTool("settings --settings '" + folder / "none" + "' --headless --keys '" +
                                        keys + "' -o '" + folder / name + "'");
        EXPECT_EQ(outcome.exit, 0) << outcome.err;
        return Sample(folder / name);
    };
    const caption::Color background = {112, 128, 144};
    const caption::Picture provided = draw("provided.png", "");
    const caption::Picture chosen = draw("chosen.png", "down");
    const caption::Picture yellow = draw("yellow.png", "left left");
    const caption::Picture restored = draw("restored.png", "left left r");
    const caption::Picture large = draw("large.png", "up up up up up right right right");

    EXPECT_GT(Count(provided, {255, 255, 255}), 1000u);
    EXPECT_GT(Count(provided, {0, 0, 0}), 1000u) << "white on black";
    EXPECT_GT(Count(provided, background), 100000u);
    EXPECT_TRUE(chosen == provided) << "choosing a row changes nothing";
    EXPECT_GT(Count(yellow, {255, 255, 0}), 1000u);
    EXPECT_EQ(Count(yellow, {255, 255, 255}), 0u);
    EXPECT_TRUE(restored == provided);
    EXPECT_LT(Count(large, background), Count(provided, background)) << "130 %";
    EXPECT_FALSE(ReadPng(folder / "provided.png") == ReadPng(folder / "chosen.png")) << "the bar moves";
}

TEST(SettingsMenu, IsWhatPreviewDraws)
{
    const Folder folder;
    const std::string file = folder.Write("a", "window = blue\nwindow_opacity = solid\n");

    ASSERT_EQ(RunTool("settings --headless --settings '" + file + "' -o '" + folder / "menu.png" + "'").exit,
              0);
    ASSERT_EQ(
        RunTool("preview --headless --settings '" + file + "' -o '" + folder / "preview.png" + "'").exit, 0);

    EXPECT_TRUE(ReadPng(folder / "menu.png") == ReadPng(folder / "preview.png"));
    EXPECT_GT(Count(ReadPng(folder / "preview.png"), {0, 0, 255}), 1000u);
}

TEST(SettingsMenu, ObeysTheTerminal)
{
    const Folder folder;
    Terminal terminal("settings --headless --settings '" + folder / "a" + "'");

    EXPECT_TRUE(terminal.Shows("editing")) << terminal.shown();
    // Two rows down, a value to the left, back up and down; then Enter.
    terminal.Type("\x1B[B\x1B[B\x1B[D\x1B[A\x1B[B\n");
    EXPECT_TRUE(terminal.Shows("saved")) << terminal.shown();
    const int status = terminal.End();

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(HasLine(Contents(folder / "a"), "background = white")) << Contents(folder / "a");
    EXPECT_TRUE(terminal.IsEchoing());
}

TEST(SettingsMenu, ObeysTheKeysOfItsWindow)
{
    const Folder folder;
    const Outcome outcome =
        RunScriptUnderX("Start settings --settings '" + folder / "a" +
                        "'\nWaitFor editing\nPress Right\nPress Down\nPress Right\nPress Return\nEnd\n");

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_TRUE(HasLine(Contents(folder / "a"), "foreground = black")) << Contents(folder / "a");
    EXPECT_TRUE(HasLine(Contents(folder / "a"), "foreground_opacity = solid"));
}
