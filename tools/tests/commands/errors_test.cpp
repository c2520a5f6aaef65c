// SPDX-License-Identifier: MIT
// Every failure prints one line that says what is wrong and what to do, and leaves nothing behind.
#include <algorithm>

#include <gtest/gtest.h>

#include "support/tool.h"

static const std::string g_sample = "'" KOVA_CAPTION_SAMPLES "/demo.srt'";

namespace
{

struct Refusal {
    const char *name;
    std::string arguments; // of snapshot; %s is the folder
    int exit;
    const char *words; // that the line holds
};

class RefusedSnapshot : public testing::TestWithParam<Refusal>
{
};

} // namespace

// A second of silence: a file that libavformat reads and that has no subtitles.
static std::string Sound()
{
    std::string samples(8000, '\x80');
    std::string head(
        "RIFF\x64\x1F\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1F\0\0\x40\x1F\0\0\x01\0\x08\0data\x40\x1F\0\0",
        44);
    return head + samples;
}

TEST_P(RefusedSnapshot, SaysWhyInOneLineAndMakesNothing)
{
    const Refusal &refusal = GetParam();
    const Folder folder;
    folder.Write("latin1.srt", "1\n00:00:01,000 --> 00:00:02,000\ncaf\xE9\n");
    folder.Write("empty.srt", "");
    folder.Write("text.txt", "No subtitles here.\n");
    folder.Write("sound.wav", Sound());
    folder.Write("wordless.vtt", "WEBVTT\n\n00:01.000 --> 00:02.000\n<i></i>\n");
    std::string arguments = refusal.arguments;
    for (std::size_t at; (at = arguments.find("%s")) != std::string::npos;) {
        arguments.replace(at, 2, folder / "");
    }

    const Outcome outcome = RunTool("snapshot -o '" + folder / "made" + "' " + arguments);

    EXPECT_EQ(outcome.exit, refusal.exit);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(refusal.words), std::string::npos) << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(folder.Names().size(), 5u) << "something was made";
}

INSTANTIATE_TEST_SUITE_P(
    Tool, RefusedSnapshot,
    testing::Values(
        Refusal{"MissingFile", "'%smissing.srt'", 1,
                "missing.srt: cannot be read (No such file or directory)"},
        Refusal{"Directory", "'%s'", 1, "is a directory"},
        Refusal{"EmptyFile", "'%sempty.srt'", 1, "empty.srt: is empty; give a subtitle file"},
        Refusal{"OtherText", "'%stext.txt'", 1, "text.txt: "},
        Refusal{"NoSubtitleStream", "'%ssound.wav'", 1,
                "sound.wav: no subtitle stream; give a subtitle file"},
        Refusal{"NoText", "'%swordless.vtt'", 1, "wordless.vtt: no cue with visible content"},
        Refusal{"UnknownCharset", "'%slatin1.srt' --charset KOI9", 2,
                "--charset KOI9: unknown character set; iconv -l lists the names"},
        Refusal{"NoSuchStream", "'%slatin1.srt' --stream 3", 1, "--stream 3: "},
        Refusal{"MissingFont", g_sample + " --font '%snone.ttf'", 1, "none.ttf: not a usable font; give"},
        Refusal{"NoFont", g_sample + " --font '%stext.txt'", 1, "text.txt: not a usable font; give"},
        Refusal{"PlaneTooWide", g_sample + " --plane 1921x1080", 2, "from 1x1 to 1920x1080"},
        Refusal{"PlaneTooHigh", g_sample + " --plane 1920x1081", 2, "from 1x1 to 1920x1080"},
        Refusal{"PlaneEmpty", g_sample + " --plane 0x720", 2, "from 1x1 to 1920x1080"},
        Refusal{"PlaneNegative", g_sample + " --plane 1280x-1", 2, "from 1x1 to 1920x1080"},
        Refusal{"PlaneHuge", g_sample + " --plane 4294968576x720", 2, "from 1x1 to 1920x1080"},
        Refusal{"PlaneNoSize", g_sample + " --plane wide", 2, "from 1x1 to 1920x1080"},
        Refusal{"TextHigherThanPlane", g_sample + " --plane 64x32 --height 33", 1, "choose a smaller value"},
        Refusal{"ArgbOnLayer1", g_sample + " --mode argb", 1, "use --mode palette, or --layer 2 or 3"},
        Refusal{"Layer2WithoutDisplay", g_sample + " --layer 2", 1, "--layer 2: no X server"},
        Refusal{"Layer3WithoutDisplay", g_sample + " --layer 3 --headless", 1,
                "--layer 3: --headless was given"},
        Refusal{"UnknownLayer", g_sample + " --layer 4", 2, "must be one of 1|2|3, not '4'"},
        Refusal{"UnknownMode", g_sample + " --mode rgb", 2, "must be one of index|palette|argb, not 'rgb'"},
        Refusal{"UnknownEdge", g_sample + " --edge round", 2, "not 'round'"},
        Refusal{"UnknownOption", g_sample + " --wide", 2, "--wide"},
        Refusal{"NoFile", "", 2, "FILE is required"}),
    [](const testing::TestParamInfo<Refusal> &row) { return row.param.name; });

TEST(Tool, RefusesAWrongColour)
{
    for (const std::string color : {"12345", "GGGGGG", "#12345", "0x1234"}) {
        const Outcome outcome = RunTool("snapshot " + g_sample + " -o /nowhere --color '" + color + "'");
        EXPECT_EQ(outcome.exit, 2) << color;
        EXPECT_NE(outcome.err.find("six hexadecimal digits"), std::string::npos) << outcome.err;
    }
}

TEST(Tool, NeedsACommand)
{
    EXPECT_EQ(RunTool("").exit, 2);
    const Outcome paint = RunTool("paint");
    EXPECT_EQ(paint.exit, 2);
    EXPECT_EQ(paint.err, "kova-caption: unknown command or option 'paint'; see kova-caption --help.\n");
    EXPECT_EQ(RunTool("edges").exit, 2);
}

TEST(Tool, ExplainsItselfWhenAsked)
{
    const Outcome outcome = RunTool("snapshot --help");

    EXPECT_EQ(outcome.exit, 0);
    EXPECT_NE(outcome.out.find("--background"), std::string::npos);
    EXPECT_EQ(outcome.err, "");
}

TEST(Tool, SaysWhereItCannotWriteAndLeavesNoPartOfAPicture)
{
    const Folder folder;
    folder.Write("file", "");

    const Outcome snapshot = RunTool("snapshot " + g_sample + " -o '" + folder / "file" + "'");
    const Outcome edges = RunTool("edges -o '" + folder / "none/sheet.png" + "'");

    EXPECT_EQ(snapshot.exit, 1);
    EXPECT_NE(snapshot.err.find("cannot be created as a directory"), std::string::npos) << snapshot.err;
    EXPECT_EQ(edges.exit, 1);
    EXPECT_NE(edges.err.find("sheet.png: cannot be written"), std::string::npos) << edges.err;
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"file"});
}

TEST(Tool, LeavesNoPartOfAPictureWhereItsNameIsTaken)
{
    const Folder folder;
    std::filesystem::create_directories(folder / "made/0001.png/inside");

    const Outcome outcome = RunTool("snapshot " + g_sample + " -o '" + folder / "made" + "'");

    EXPECT_EQ(outcome.exit, 1);
    EXPECT_NE(outcome.err.find("0001.png: cannot be written"), std::string::npos) << outcome.err;
    EXPECT_EQ(folder.Names("made"), std::vector<std::string>{"0001.png"});
}

TEST(Tool, DrawsWithoutAWindowWhereTheXServerDoesNotAnswer)
{
    const Folder folder;
    const std::string text = folder.Write("one.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");

    const Outcome outcome = RunTool("snapshot '" + text + "' -o '" + folder / "made" + "'", "DISPLAY=:4321");

    EXPECT_EQ(outcome.exit, 0);
    EXPECT_NE(outcome.err.find(":4321 (DISPLAY) does not respond; drawing without a window"),
              std::string::npos)
        << outcome.err;
    EXPECT_EQ(folder.Names("made"), std::vector<std::string>{"0001.png"});
}
