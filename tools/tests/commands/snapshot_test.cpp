// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <csignal>
#include <fstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include "support/tool.h"

static const std::string g_samples = KOVA_CAPTION_SAMPLES;

static bool IsWhite(const caption::Color &pixel)
{
    return pixel == caption::Color{255, 255, 255, 255};
}

static bool IsSomething(const caption::Color &pixel)
{
    return pixel.alpha != 0;
}

static std::size_t CountOf(const std::string &part, const std::string &text)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

static std::size_t CuesIn(const std::string &file)
{
    std::ifstream in(file);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return CountOf("-->", text);
}

static void ExpectACaption(const caption::Picture &picture, caption::Size plane, const std::string &name)
{
    ASSERT_EQ(picture.size().width, plane.width) << name;
    ASSERT_EQ(picture.size().height, plane.height) << name;
    const Points drawn = Where(picture, IsSomething);
    EXPECT_GT(Where(picture, IsWhite).size(), 200u) << name << " shows no text";
    int left = plane.width;
    int right = 0;
    int top = plane.height;
    int bottom = 0;
    for (const auto &point : drawn) {
        left = std::min(left, point.first);
        right = std::max(right, point.first + 1);
        top = std::min(top, point.second);
        bottom = std::max(bottom, point.second + 1);
    }
    EXPECT_GE(left, plane.width / 20) << name << " leaves the safe area";
    EXPECT_LE(right, plane.width - plane.width / 20) << name << " leaves the safe area";
    EXPECT_GE(top, plane.height / 20) << name << " leaves the safe area";
    EXPECT_LE(bottom, plane.height - plane.height / 20) << name << " leaves the safe area";
    EXPECT_GE(bottom, plane.height * 85 / 100) << name << " does not stand at the bottom";
    EXPECT_LE(std::abs(left + right - plane.width), plane.width / 16) << name << " is not centred";
}

TEST(Snapshot, DrawsEveryCueOfTheDemoWithinTheSafeArea)
{
    const Folder folder;
    const std::size_t cues = CuesIn(g_samples + "/demo.srt");

    const Outcome outcome = RunTool("snapshot '" + g_samples + "/demo.srt' -o '" + folder / "made" + "'");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_GE(cues, 30u);
    EXPECT_EQ(CountOf("\n", outcome.out), cues);
    const std::vector<std::string> names = folder.Names("made");
    ASSERT_EQ(names.size(), cues);
    for (std::size_t i = 0; i < cues; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "%04zu.png", i + 1);
        EXPECT_EQ(names[i], name);
        ExpectACaption(ReadPng(folder / "made/" + name), {1280, 720}, name);
    }
}

TEST(Snapshot, ListsNumberTimesSizeAndText)
{
    const Folder folder;
    const std::string text = folder.Write("two.srt", "1\n00:00:01,000 --> 00:00:02,500\nOne\n<i>two</i>\n\n"
                                                     "2\n01:02:03,004 --> 01:02:04,000\nThree\n");

    const Outcome outcome = RunTool("snapshot '" + text + "' -o '" + folder / "made" + "'");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.out.rfind("0001.png  00:00:01.000 --> 00:00:02.500  ", 0), 0u) << outcome.out;
    EXPECT_NE(outcome.out.find("  One / two\n0002.png  01:02:03.004 --> 01:02:04.000  "), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("  Three\n"), std::string::npos) << outcome.out;
}

TEST(Snapshot, ReadsWebVttAndAss)
{
    const Folder folder;

    const Outcome vtt = RunTool("snapshot '" + g_samples + "/demo.vtt' -o '" + folder / "vtt" + "'");
    const Outcome ass = RunTool("snapshot '" + g_samples + "/demo.ass' -o '" + folder / "ass" + "'");

    EXPECT_EQ(vtt.exit, 0) << vtt.err;
    EXPECT_EQ(folder.Names("vtt").size(), 3u);
    EXPECT_NE(vtt.out.find("01:00:07.000 --> 01:00:09.000"), std::string::npos) << vtt.out;
    EXPECT_NE(vtt.out.find("3 < 4, and bold is drawn as plain text."), std::string::npos) << vtt.out;
    EXPECT_EQ(ass.exit, 0) << ass.err;
    EXPECT_EQ(folder.Names("ass").size(), 3u) << "the drawing is no caption";
    EXPECT_NE(ass.out.find("  Commas, in the text, stay.\n"), std::string::npos) << ass.out;
}

TEST(Snapshot, LaysPicturesOverABackground)
{
    const Folder folder;
    const std::string text = folder.Write("one.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");

    const Outcome outcome =
        RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --background '#204060'");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    const caption::Picture picture = ReadPng(folder / "made/0001.png");
    const caption::Color background = {0x20, 0x40, 0x60, 255};
    EXPECT_EQ(picture.At(0, 0), background);
    EXPECT_TRUE(Where(picture, [](const caption::Color &pixel) { return pixel.alpha != 255; }).empty());
    EXPECT_GT(Where(picture, IsWhite).size(), 200u);
}

TEST(Snapshot, ClearsThePlaneBetweenCues)
{
    const Folder folder;
    const std::string one = folder.Write("one.srt", "1\n00:00:03,000 --> 00:00:04,000\nHi\n");
    const std::string two =
        folder.Write("two.srt", "1\n00:00:01,000 --> 00:00:02,000\nA much longer caption\nof two lines\n\n"
                                "2\n00:00:03,000 --> 00:00:04,000\nHi\n");

    ASSERT_EQ(RunTool("snapshot '" + one + "' -o '" + folder / "one" + "'").exit, 0);
    ASSERT_EQ(RunTool("snapshot '" + two + "' -o '" + folder / "two" + "'").exit, 0);

    EXPECT_TRUE(ReadPng(folder / "one/0001.png") == ReadPng(folder / "two/0002.png"));
}

TEST(Snapshot, LeavesOutLinesThatFindNoRoomAndSaysSo)
{
    const Folder folder;
    const std::string text = folder.Write(
        "many.srt", "1\n00:00:01,000 --> 00:00:02,000\nLine1\nLine2\nLine3\nLine4\nLine5\nLine6\n");

    const Outcome outcome =
        RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --plane 320x200 --height 40");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.err,
              "kova-caption: cue 1: 3 of 6 lines do not fit and are omitted; use a smaller --height.\n");
    ExpectACaption(ReadPng(folder / "made/0001.png"), {320, 200}, "0001.png");
}

TEST(Snapshot, RefusesAHeightOfWhichNoLineFits)
{
    const Folder folder;
    const std::string text = folder.Write("one.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");

    const Outcome outcome =
        RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --plane 320x40 --height 40");

    EXPECT_EQ(outcome.exit, 1);
    EXPECT_NE(outcome.err.find("--height 40: a line of text does not fit"), std::string::npos) << outcome.err;
    EXPECT_TRUE(folder.Names("made").empty());
}

TEST(Snapshot, WorksOnTheSmallestAndTheLargestPlane)
{
    const Folder folder;
    const std::string text = folder.Write("one.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");

    const Outcome large = RunTool("snapshot '" + text + "' -o '" + folder / "large" + "' --plane 1920x1080");
    const Outcome small = RunTool("snapshot '" + text + "' -o '" + folder / "small" + "' --plane 1x1");

    EXPECT_EQ(large.exit, 0) << large.err;
    ExpectACaption(ReadPng(folder / "large/0001.png"), {1920, 1080}, "large");
    EXPECT_EQ(small.exit, 1) << "no letter fits one pixel";
    EXPECT_NE(small.err.find("does not fit"), std::string::npos) << small.err;
}

TEST(Snapshot, NamesCharactersThatNoFontHasAndScriptsThatItDoesNotShape)
{
    const Folder folder;
    const std::string text =
        folder.Write("odd.srt", "1\n00:00:01,000 --> 00:00:02,000\nPrivate \U0010ABCD use\n\n"
                                "2\n00:00:03,000 --> 00:00:04,000\nनमस्ते\n\n"
                                "3\n00:00:05,000 --> 00:00:06,000\nשלום, سلام\n");

    const Outcome outcome = RunTool("snapshot '" + text + "' -o '" + folder / "made" + "'");

    EXPECT_EQ(outcome.exit, 0);
    EXPECT_NE(outcome.err.find("cue 1: missing glyph U+10ABCD; add a font with --fallback"),
              std::string::npos)
        << outcome.err;
    EXPECT_NE(outcome.err.find("cue 2: this script needs complex shaping"), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.find("cue 3"), std::string::npos) << outcome.err;
}

TEST(Snapshot, SaysOfAScriptThatItDoesNotShapeOnce)
{
    const Folder folder;
    const std::string text = folder.Write("two.srt", "1\n00:00:01,000 --> 00:00:02,000\nनमस्ते\n\n"
                                                     "2\n00:00:03,000 --> 00:00:04,000\nनमस्ते\n");

    const Outcome outcome = RunTool("snapshot '" + text + "' -o '" + folder / "made" + "'");

    EXPECT_EQ(CountOf("this script needs complex shaping", outcome.err), 1u) << outcome.err;
}

TEST(Snapshot, TakesAFontWhoseNameIsLongerThanTheLibraryKeeps)
{
    const Folder folder;
    const std::string text = folder.Write("one.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
    const std::string serif = "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf";
    const std::string longName = folder / (std::string(150, 'x') + ".ttf");
    std::filesystem::create_symlink(serif, longName);

    const std::string call = "snapshot '" + text + "' -o '" + folder / "made";
    ASSERT_EQ(RunTool(call + "/short' --font " + serif).exit, 0);
    ASSERT_EQ(RunTool(call + "/long' --font '" + longName + "'").exit, 0);

    EXPECT_TRUE(ReadPng(folder / "made/short/0001.png") == ReadPng(folder / "made/long/0001.png"));
}

TEST(Snapshot, DrawsSubtitlesThatArePicturesInIndexModeAlone)
{
    const Folder folder;
    const std::string call = "snapshot '" + g_samples + "/pictures.sup' -o '" + folder / "made" + "' --json";

    const Outcome outcome = RunTool(call);
    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    const nlohmann::json list = nlohmann::json::parse(outcome.out);
    ASSERT_EQ(list["pictures"].size(), 1u);
    EXPECT_EQ(list["pictures"][0]["start_ms"], 1000);
    EXPECT_EQ(list["pictures"][0]["end_ms"], 4000);
    ASSERT_EQ(list["pictures"][0]["bitmaps"].size(), 1u);
    const auto &rect = list["pictures"][0]["bitmaps"][0];
    const Points ink = Where(ReadPng(folder / "made/0001.png"), IsSomething);
    EXPECT_GT(ink.size(), 5000u);
    for (const auto &[x, y] : ink) {
        ASSERT_TRUE(x >= rect["x"] && x < rect["x"].get<int>() + rect["width"].get<int>()) << x;
        ASSERT_TRUE(y >= rect["y"] && y < rect["y"].get<int>() + rect["height"].get<int>()) << y;
    }

    const Outcome palette = RunTool(call + " --mode palette");
    EXPECT_EQ(palette.exit, 1);
    EXPECT_NE(palette.err.find("use --mode index, or omit the option"), std::string::npos) << palette.err;
}

TEST(Snapshot, DrawsTheSamplesOfPlacesAndScriptsWithoutARemark)
{
    const Folder folder;

    for (const std::string name :
         {"places.ass", "scripts.srt", "roll_up.scc", "accents.scc", "boarding.mcc", "services.ccd"}) {
        // These two have CEA-608 and CEA-708, and it is said what is left out.
        const bool several = name == "boarding.mcc" || name == "services.ccd";
        const Outcome outcome = RunTool("snapshot '" + g_samples + "/" + name + "' -o '" + folder / name +
                                        "' --plane 640x360" + (several ? " --service s1" : ""));
        EXPECT_EQ(outcome.exit, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "") << name;
    }
}

TEST(Snapshot, SlantsItalics)
{
    const Folder folder;
    const std::string plain = folder.Write("plain.srt", "1\n00:00:01,000 --> 00:00:02,000\nlllll\n");
    const std::string italic = folder.Write("italic.srt", "1\n00:00:01,000 --> 00:00:02,000\n<i>lllll</i>\n");
    const std::string look = " --mode index --edge none --plane 640x200 --height 100";

    ASSERT_EQ(RunTool("snapshot '" + plain + "' -o '" + folder / "plain" + "'" + look).exit, 0);
    ASSERT_EQ(RunTool("snapshot '" + italic + "' -o '" + folder / "italic" + "'" + look).exit, 0);

    // An upright stem is one and the same column from top to bottom; a slanted one moves to the right
    // upwards.
    const auto leftmost = [](const Points &points, bool top) {
        const auto less = [](const auto &one, const auto &other) { return one.second < other.second; };
        const int row = (top ? std::min_element(points.begin(), points.end(), less)
                             : std::max_element(points.begin(), points.end(), less))
                            ->second;
        int left = 1 << 20;
        for (const auto &point : points) {
            if (point.second == row) left = std::min(left, point.first);
        }
        return left;
    };
    const Points upright = Where(ReadPng(folder / "plain/0001.png"), IsWhite);
    const Points slanted = Where(ReadPng(folder / "italic/0001.png"), IsWhite);
    ASSERT_FALSE(upright.empty());
    ASSERT_FALSE(slanted.empty());
    EXPECT_EQ(leftmost(upright, true), leftmost(upright, false));
    EXPECT_GT(leftmost(slanted, true), leftmost(slanted, false) + 5);
}

// Two cues of which one is shown with the other, and one that stands alone.
static const char g_overlapping[] = "1\n00:00:01,000 --> 00:00:04,000\nLong \"quoted\"\n\n"
                                    "2\n00:00:02,000 --> 00:00:03,000\nShort\nof two lines\n\n"
                                    "3\n00:00:10,000 --> 00:00:11,500\nLater\n";

TEST(Snapshot, ListsAsJsonWhatIsWhere)
{
    const Folder folder;
    const std::string text = folder.Write("three.srt", g_overlapping);

    const Outcome outcome =
        RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --json --mode index --edge none");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    const nlohmann::json list = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(list.at("source"), text);
    EXPECT_EQ(list.at("plane").at("width"), 1280);
    EXPECT_EQ(list.at("plane").at("height"), 720);
    ASSERT_EQ(list.at("pictures").size(), 3u);
    const auto &second = list["pictures"][1];
    EXPECT_EQ(second.at("file"), "0002.png");
    EXPECT_EQ(second.at("start_ms"), 2000);
    EXPECT_EQ(second.at("end_ms"), 3000);
    EXPECT_EQ(second.at("text"), "Short\nof two lines");
    EXPECT_EQ(list["pictures"][0].at("text"), "Long \"quoted\"");
    EXPECT_TRUE(second.at("bitmaps").empty());
    EXPECT_TRUE(second.at("notices").empty());
    ASSERT_EQ(second.at("blocks").size(), 1u);
    // All that is drawn lies in the rectangle, and fills most of its width.
    const auto &rect = second["blocks"][0];
    const Points ink = Where(ReadPng(folder / "made/0002.png"), IsSomething);
    int left = 1280, right = 0;
    ASSERT_FALSE(ink.empty());
    for (const auto &[x, y] : ink) {
        left = std::min(left, x);
        right = std::max(right, x + 1);
        EXPECT_GE(y, rect.at("y").get<int>());
        EXPECT_LT(y, rect.at("y").get<int>() + rect.at("height").get<int>());
    }
    EXPECT_GE(left, rect.at("x").get<int>());
    EXPECT_LE(right, rect.at("x").get<int>() + rect.at("width").get<int>());
    EXPECT_GE(right - left, rect.at("width").get<int>() - 10);
}

TEST(Snapshot, PutsWhatIsAmissIntoTheJson)
{
    const Folder folder;
    const std::string text = folder.Write("odd.srt", "1\n00:00:01,000 --> 00:00:02,000\n\U0010ABCD\n");

    const Outcome outcome = RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --json");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    const nlohmann::json list = nlohmann::json::parse(outcome.out);
    ASSERT_EQ(list["pictures"][0].at("notices").size(), 1u);
    EXPECT_NE(list["pictures"][0]["notices"][0].get<std::string>().find("U+10ABCD"), std::string::npos);
}

TEST(Snapshot, ShowsAMomentWithAllThatIsThere)
{
    const Folder folder;
    const std::string text = folder.Write("three.srt", g_overlapping);

    const Outcome outcome =
        RunTool("snapshot '" + text + "' -o '" + folder / "made" + "' --at 0:02.5 --json");

    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(folder.Names("made"), std::vector<std::string>{"at-00-00-02.500.png"});
    const nlohmann::json list = nlohmann::json::parse(outcome.out);
    ASSERT_EQ(list["pictures"].size(), 1u);
    const auto &picture = list["pictures"][0];
    EXPECT_EQ(picture.at("start_ms"), 2000) << "when the second came";
    EXPECT_EQ(picture.at("end_ms"), 3000) << "when it went";
    EXPECT_EQ(picture.at("text"), "Long \"quoted\"\nShort\nof two lines");
    ASSERT_EQ(picture.at("blocks").size(), 2u);
    const auto &first = picture["blocks"][0], &second = picture["blocks"][1];
    EXPECT_EQ(second["y"].get<int>() + second["height"].get<int>(), first["y"].get<int>());
}

TEST(Snapshot, TakesASecondAsItsFirstMillisecondAndNotItsEnd)
{
    const Folder folder;
    const std::string text = folder.Write("three.srt", g_overlapping);
    const std::string call = "snapshot '" + text + "' -o '" + folder / "made" + "' --at ";

    EXPECT_EQ(RunTool(call + "10").exit, 0);
    EXPECT_EQ(RunTool(call + "11.499").exit, 0);
    const Outcome between = RunTool(call + "5");
    EXPECT_EQ(between.exit, 1);
    EXPECT_EQ(between.err,
              "kova-caption: --at 00:00:05.000: no caption is shown at that time; the next one begins at "
              "00:00:10.000.\n");
    const Outcome after = RunTool(call + "11.5");
    EXPECT_EQ(after.exit, 1);
    EXPECT_EQ(after.err,
              "kova-caption: --at 00:00:11.500: no caption is shown at that time; the last one has ended.\n");
    EXPECT_EQ(RunTool(call + "soon").exit, 2);
}

// Many cues, so that the tool is at work for a while.
static std::string Busy()
{
    std::string text;
    for (int i = 1; i <= 2000; ++i) {
        text += std::to_string(i) + "\n00:00:01,000 --> 00:00:02,000\nCue " + std::to_string(i) + "\n\n";
    }
    return text;
}

TEST(Snapshot, ShowsItsProgressOnATerminalAlone)
{
    const Folder folder;
    const std::string text = folder.Write("one.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
    const std::string arguments = "snapshot '" + text + "' --headless -o '" + folder / "made" + "'";

    Terminal terminal(arguments);
    EXPECT_TRUE(terminal.Shows("] 0 of 1"));
    EXPECT_TRUE(terminal.Shows("0001.png  00:00:01.000")) << terminal.shown();
    EXPECT_EQ(terminal.End(), 0);
    EXPECT_EQ(RunTool(arguments).err, "");
}

TEST(Snapshot, LeavesWholePicturesAloneWhenItIsInterrupted)
{
    const Folder folder;
    const std::string text = folder.Write("busy.srt", Busy());

    Terminal terminal("snapshot '" + text + "' --headless --plane 320x180 -o '" + folder / "made" + "'");
    ASSERT_TRUE(terminal.Shows("0003.png")) << terminal.shown();
    terminal.Type("\x03"); // Ctrl-C
    const int status = terminal.End();

    EXPECT_TRUE(WIFSIGNALED(status)) << "so that a shell's loop ends too";
    EXPECT_EQ(WTERMSIG(status), SIGINT);
    const std::vector<std::string> names = folder.Names("made");
    EXPECT_GE(names.size(), 3u);
    EXPECT_LT(names.size(), 2000u);
    for (const std::string &name : names) {
        EXPECT_EQ(name.size(), 8u) << name;
        EXPECT_EQ(ReadPng(folder / "made/" + name).size().width, 320) << name;
    }
}

namespace
{

struct Place {
    const char *layer;
    const char *mode;
};

class SnapshotUnderX : public testing::TestWithParam<Place>
{
};

} // namespace

// The modes differ in how smooth they draw: index mode has three colours.
TEST_P(SnapshotUnderX, DrawsWhatLayer1DrawsWithoutAScreen)
{
    const Folder folder;
    const std::string text = folder.Write("two.srt", "1\n00:00:01,000 --> 00:00:02,000\nÉté, <i>été</i>\n\n"
                                                     "2\n00:00:03,000 --> 00:00:04,000\n日本\n");
    const bool index = GetParam().mode == std::string("index");

    const Outcome here = RunTool("snapshot '" + text + "' -o '" + folder / "here" +
                                 "' --plane 400x200 --mode " + (index ? "index" : "palette"));
    const Outcome there =
        RunToolUnderX("snapshot '" + text + "' -o '" + folder / "there" + "' --plane 400x200 --layer " +
                      GetParam().layer + " --mode " + GetParam().mode);

    ASSERT_EQ(here.exit, 0) << here.err;
    ASSERT_EQ(there.exit, 0) << there.err;
    EXPECT_EQ(there.out, here.out);
    for (const std::string name : {"0001.png", "0002.png"}) {
        EXPECT_TRUE(ReadPng(folder / "here/" + name) == ReadPng(folder / "there/" + name)) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Tool, SnapshotUnderX,
                         testing::Values(Place{"1", "index"}, Place{"1", "palette"}, Place{"2", "index"},
                                         Place{"2", "palette"}, Place{"2", "argb"}, Place{"3", "index"},
                                         Place{"3", "palette"}, Place{"3", "argb"}),
                         [](const testing::TestParamInfo<Place> &row) {
                             return std::string("Layer") + row.param.layer + "_" + row.param.mode;
                         });
