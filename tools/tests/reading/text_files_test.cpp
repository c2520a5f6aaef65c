// SPDX-License-Identifier: MIT
// Text files of every format, as the model that they become.
#include <gtest/gtest.h>

#include "base/failure.h"
#include "reading/summary.h"
#include "support/tool.h"

using caption::Anchor;
using caption::Block;
using caption::Color;
using caption::Horizontal;
using caption::Line;
using caption::Style;
using caption::Subtitles;
using caption::Vertical;
using Lines = std::vector<Line>;
using Said = std::vector<std::string>;

static Subtitles Read(const std::string &name, const std::string &text, const std::string &charset = "")
{
    const Folder folder;
    return caption::ReadSubtitles({folder.Write(name, text), std::nullopt, charset});
}

static Style Colored(Color color)
{
    Style style;
    style.color = color;
    return style;
}

TEST(SubRip, IsReadWithFacesColoursAndAlignment)
{
    const Subtitles read =
        Read("a.srt", "1\n00:00:01,000 --> 00:00:02,500\n<i>One</i> <b>two</b>\n<u>three</u>\n\n"
                      "2\n00:00:03,000 --> 00:00:04,000\n<font color=\"#ff8000\">four</font> five\n\n"
                      "3\n01:02:03,004 --> 01:02:05,000\n{\\an8}top\n");
    Style bold;
    Style underline;
    bold.bold = underline.underline = true;

    ASSERT_EQ(Summaries(read),
              (Said{"1000-2500 One two / three", "3000-4000 four five", "3723004-3725000 top"}));
    EXPECT_EQ(read.cues[0].blocks[0].lines,
              (Lines{{{"One", {true}}, {" ", {}}, {"two", bold}}, {{"three", underline}}}));
    EXPECT_EQ(read.cues[1].blocks[0].lines, (Lines{{{"four", Colored({255, 128, 0, 255})}, {" five", {}}}}));
    EXPECT_EQ(read.cues[2].blocks[0].vertical, Vertical::TOP);
    EXPECT_EQ(read.cues[0].blocks[0].vertical, Vertical::BOTTOM);
    EXPECT_FALSE(read.cues[0].blocks[0].anchor);
    EXPECT_EQ(read.cues[0].canvas, caption::Size());
    EXPECT_EQ(read.notices, Said{});
}

// libavcodec passes sizes on beside its own of 16.
TEST(SubRip, KeepsSizesAndFontsOfRuns)
{
    const Subtitles read = Read("a.srt", "1\n00:00:01,000 --> 00:00:02,000\n<font size=\"40\">a</font> "
                                         "<font face=\"Some Font\">b</font>\n");

    EXPECT_EQ(read.notices, Said{});
    EXPECT_FLOAT_EQ(read.cues[0].blocks[0].lines[0][0].style.scale, 40.0f / 16);
    EXPECT_EQ(read.cues[0].blocks[0].lines[0].back().style.font.text(), "Some Font");
    EXPECT_EQ(read.cues[0].blocks[0].lines[0].back().style.scale, 1);
}

TEST(SubRip, KeepsCuesThatOverlap)
{
    const Subtitles read = Read("a.srt", "1\n00:00:01,000 --> 00:00:09,000\nlong\n\n"
                                         "2\n00:00:02,000 --> 00:00:03,000\nshort\n");

    EXPECT_EQ(Summaries(read), (Said{"1000-9000 long", "2000-3000 short"}));
    EXPECT_EQ(caption::Screens(read.cues).size(), 3u);
}

TEST(SubRip, KeepsCharactersOutsideTheBasicPlaneInEveryCharset)
{
    const std::string cue = "1\n00:00:01,000 --> 00:00:02,000\n";
    std::string utf16 = "\xFF\xFE";
    for (const char letter : cue) utf16 += {letter, '\0'};
    utf16 += {'\x3D', '\xD8', '\x00', '\xDE', '\n', '\0'};

    EXPECT_EQ(PlainText(Read("a.srt", utf16).cues.at(0)), "\U0001F600");
    EXPECT_EQ(PlainText(Read("a.srt", cue + "\U0001F600 \U00020BB7\n").cues.at(0)), "\U0001F600 \U00020BB7");
    EXPECT_EQ(PlainText(Read("a.srt", cue + "\x94\x39\xFC\x36\n", "GB18030").cues.at(0)), "\U0001F600");
}

TEST(SubRip, IsReadInALegacyCharset)
{
    const Subtitles read =
        Read("a.srt", "1\n00:00:01,000 --> 00:00:02,000\n\xCF\xF0\xE8\xE2\xE5\xF2\n", "CP1251");

    EXPECT_EQ(Summaries(read), Said{"1000-2000 Привет"});
    EXPECT_EQ(read.notices, Said{});
}

TEST(WebVtt, IsReadWithItsSettings)
{
    const Subtitles read =
        Read("a.vtt", "WEBVTT\n\nSTYLE\n::cue { color: red }\n\nNOTE nothing\n\n"
                      "one\n00:01.000 --> 00:02.500 line:10% align:left position:20%\n"
                      "<c.cyan>One</c>\n\n01:00:03.000 --> 01:00:04.000\ntwo &amp; three\n");

    ASSERT_EQ(Summaries(read), (Said{"1000-2500 One", "3603000-3604000 two & three"}));
    const Block &block = read.cues[0].blocks[0];
    EXPECT_EQ(block.lines, (Lines{{{"One", Colored({0, 255, 255, 255})}}}));
    EXPECT_EQ(block.anchor, (Anchor{0.2, 0.1}));
    EXPECT_EQ(block.horizontal, Horizontal::LEFT);
    EXPECT_EQ(block.vertical, Vertical::TOP);
    EXPECT_FALSE(read.cues[1].blocks[0].anchor);
    EXPECT_EQ(read.notices, Said{"style sheets are not supported"});
}

static const char g_ass[] =
    "[Script Info]\nScriptType: v4.00+\nPlayResX: 640\nPlayResY: 480\n\n[V4+ Styles]\n"
    "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, Bold, "
    "Italic, "
    "Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, Shadow, Alignment, MarginL, "
    "MarginR, MarginV, Encoding\n"
    "Style: Default,Any,30,&H0000FFFF,&H0,&H00800000,&H0,0,0,0,0,100,100,0,0,1,2,0,2,64,64,48,1\n\n[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:03.00,Default,,0,0,0,,{\\i1}One{\\i0}, two\n"
    "Dialogue: 5,0:00:02.00,0:00:04.00,Default,,0,0,0,,{\\an7\\pos(160,120)}three\n";

TEST(Ass, IsReadWithStylesPositionsAndLayers)
{
    const Subtitles read = Read("a.ass", g_ass);

    ASSERT_EQ(Summaries(read), (Said{"1000-3000 One, two", "2000-4000 three"}));
    const Block &styled = read.cues[0].blocks[0];
    EXPECT_EQ(styled.lines[0][0].style.color, (Color{255, 255, 0, 255}));
    EXPECT_EQ(styled.lines[0][0].style.edgeColor, (Color{0, 0, 128, 255}));
    EXPECT_TRUE(styled.lines[0][0].style.italic);
    EXPECT_EQ(styled.anchor, (Anchor{0.5, 0.9}));
    EXPECT_EQ(styled.width, 0.8);
    EXPECT_EQ(read.cues[0].canvas, (caption::Size{640, 480}));
    EXPECT_EQ(read.cues[1].layer, 5);
    EXPECT_EQ(read.cues[1].blocks[0].anchor, (Anchor{0.25, 0.25}));
    EXPECT_TRUE(read.cues[1].blocks[0].pinned);
    EXPECT_EQ(read.notices, Said{});
}

TEST(Ssa, IsReadWithItsOldAlignment)
{
    const Subtitles read = Read(
        "a.ssa",
        "[Script Info]\nScriptType: v4.00\nPlayResX: 640\nPlayResY: 480\n\n[V4 Styles]\nFormat: Name, "
        "Fontname, Fontsize, PrimaryColour, SecondaryColour, TertiaryColour, BackColour, Bold, Italic, "
        "BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, AlphaLevel, Encoding\n"
        "Style: Default,Any,20,255,0,0,0,0,-1,1,2,0,6,0,0,48,0,0\n\n[Events]\nFormat: Marked, Start, End, "
        "Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
        "Dialogue: Marked=0,0:00:01.00,0:00:03.00,Default,,0000,0000,0000,,One\n");

    ASSERT_EQ(Summaries(read), Said{"1000-3000 One"});
    EXPECT_EQ(read.cues[0].blocks[0].vertical, Vertical::TOP);
    EXPECT_EQ(read.cues[0].blocks[0].anchor, (Anchor{0.5, 0.1}));
    EXPECT_EQ(read.cues[0].blocks[0].lines[0][0].style.color, (Color{255, 0, 0, 255}));
    EXPECT_TRUE(read.cues[0].blocks[0].lines[0][0].style.italic);
}

TEST(MicroDvd, CountsFramesAndKnowsFacesAndColours)
{
    const Subtitles read = Read("a.sub", "{1}{1}25.000\n{25}{50}{y:i}One|two\n{75}{100}{c:$0000FF}three\n");

    ASSERT_EQ(Summaries(read), (Said{"1000-2000 One / two", "3000-4000 three"}));
    EXPECT_EQ(read.cues[0].blocks[0].lines, (Lines{{{"One", {true}}}, {{"two", {}}}}));
    EXPECT_EQ(read.cues[1].blocks[0].lines, (Lines{{{"three", Colored({255, 0, 0, 255})}}}));
}

TEST(Sami, EndsACueWhereTheNextBegins)
{
    const Subtitles read =
        Read("a.smi", "<SAMI><HEAD><TITLE>a</TITLE></HEAD><BODY>\n"
                      "<SYNC Start=1000><P Class=ENCC>One<br><i>two</i>\n"
                      "<SYNC Start=3000><P Class=ENCC>&nbsp;\n"
                      "<SYNC Start=4000><P Class=ENCC><font color=\"#00ff00\">three</font>\n"
                      "<SYNC Start=6000><P Class=ENCC>&nbsp;\n</BODY></SAMI>\n");

    ASSERT_EQ(Summaries(read), (Said{"1000-3000 One / two", "4000-6000 three"}));
    EXPECT_EQ(read.cues[0].blocks[0].lines, (Lines{{{"One", {}}}, {{"two", {true}}}}));
    EXPECT_EQ(read.cues[1].blocks[0].lines, (Lines{{{"three", Colored({0, 255, 0, 255})}}}));
}

TEST(OtherText, IsReadToo)
{
    EXPECT_EQ(Summaries(Read("a.txt", "[10][20]/One|two\n[30][40]three\n[50][60]four\n")),
              (Said{"1000-2000 One / two", "3000-4000 three", "5000-6000 four"}))
        << "MPL2 counts tenths of a second";
    EXPECT_EQ(Summaries(Read("a.sub", "[INFORMATION]\n[TITLE]a\n[END INFORMATION]\n[SUBTITLE]\n"
                                      "00:00:01.00,00:00:02.00\nOne[br]two\n")),
              Said{"1000-2000 One / two"})
        << "SubViewer";
    EXPECT_EQ(Summaries(Read("a.txt", "00:00:01:One|two\n00:00:03:three\n")),
              (Said{"1000-3000 One / two", "3000-7000 three"}))
        << "VPlayer has no ends";
}
