// SPDX-License-Identifier: MIT
#include "reading/ass.h"

#include <algorithm>

#include <gtest/gtest.h>

using caption::AssHeader;
using caption::AssScript;
using caption::Block;
using caption::Color;
using caption::Cue;
using caption::Horizontal;
using caption::Line;
using caption::Notices;
using caption::Style;
using caption::Vertical;
using Lines = std::vector<Line>;
using Said = std::vector<std::string>;

static const char g_header[] =
    "[Script Info]\nScriptType: v4.00+\nPlayResX: 1000\nPlayResY: 500\n\n[V4+ Styles]\n"
    "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, Bold, "
    "Italic, "
    "Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, Shadow, Alignment, MarginL, "
    "MarginR, MarginV, Encoding\n"
    "Style: Default,Any,40,&H00FFFFFF,&H0,&H00000000,&H0,0,0,0,0,100,100,0,0,1,2,0,2,100,200,50,1\n"
    "Style: Sign,Any,40,&H80112233,&H0,&H00445566,&H0,-1,-1,-1,-1,100,100,0,0,1,0,0,7,10,20,30,1\n"
    "Style: Box,Any,40,&H0000FFFF,&H0,&H40FF0000,&H0,0,0,0,0,100,100,0,0,3,2,0,6,0,0,0,1\n"
    "Style: Big,Any,80,&H00FFFFFF,&H0,&H0,&H0,0,0,0,0,100,100,0,30,1,2,0,2,0,0,0,1\n"
    "Style: Wide,Any,40,&H00FFFFFF,&H0,&H0,&H0,0,0,0,0,150,100,3,0,1,2,0,2,0,0,0,1\n"
    "Style: Down,@Any,40,&H00FFFFFF,&H0,&H0,&H0,0,0,0,0,100,100,0,0,1,2,0,2,0,0,0,1\n";

// What libavcodec makes of text without styles of its own.
static Cue FromText(const std::string &text, Notices *notices = nullptr)
{
    Notices own;
    Cue cue;
    AssScript("", AssHeader::NOTHING, notices ? *notices : own).Read("0,0,Default,,0,0,0,," + text, cue);
    return cue;
}

static Lines LinesOf(const std::string &text)
{
    const Cue cue = FromText(text);
    return cue.blocks.empty() ? Lines() : cue.blocks[0].lines;
}

// The first fields of an event: layer, style, name, margins, effect.
static Cue FromScript(const std::string &event, Notices *notices = nullptr)
{
    Notices own;
    Cue cue;
    AssScript(g_header, AssHeader::STYLES_AND_MARGINS, notices ? *notices : own).Read("0," + event, cue);
    return cue;
}

static Style Colored(Color color)
{
    Style style;
    style.color = color;
    return style;
}

TEST(AssText, BreaksLinesAtCapitalN)
{
    EXPECT_EQ(LinesOf("one\\Ntwo"), (Lines{{{"one", {}}}, {{"two", {}}}}));
}

TEST(AssText, TakesASoftBreakForASpaceAndAHardSpaceForOne)
{
    EXPECT_EQ(LinesOf("one\\ntwo\\hthree"), (Lines{{{"one two\u00A0three", {}}}}));
}

TEST(AssText, KeepsEmptyLinesInsideAndNoneAround)
{
    EXPECT_EQ(LinesOf("\\N \\Na\\N\\Nb\\N"), (Lines{{{"a", {}}}, {}, {{"b", {}}}}));
    EXPECT_EQ(LinesOf(" \\N"), Lines{});
}

TEST(AssText, KnowsItalicsBoldUnderlineAndStrikeout)
{
    Style bold;
    Style underline;
    Style strikeout;
    bold.bold = underline.underline = strikeout.strikeout = true;

    EXPECT_EQ(LinesOf("a{\\i1}b{\\i0}c"), (Lines{{{"a", {}}, {"b", {true}}, {"c", {}}}}));
    EXPECT_EQ(LinesOf("a{\\b1}b{\\b0}c"), (Lines{{{"a", {}}, {"b", bold}, {"c", {}}}}));
    EXPECT_EQ(LinesOf("a{\\b700}b{\\b400}c"), (Lines{{{"a", {}}, {"b", bold}, {"c", {}}}}));
    EXPECT_EQ(LinesOf("a{\\u1}b{\\u}c"), (Lines{{{"a", {}}, {"b", underline}, {"c", {}}}}));
    EXPECT_EQ(LinesOf("a{\\s1}b{\\s0}c"), (Lines{{{"a", {}}, {"b", strikeout}, {"c", {}}}}));
}

TEST(AssText, CarriesAStyleOverALineBreakAndEndsItWhereItIsReset)
{
    EXPECT_EQ(LinesOf("{\\i1}a\\Nb{\\r}c{\\i}d"), (Lines{{{"a", {true}}}, {{"b", {true}}, {"cd", {}}}}));
}

TEST(AssText, ReadsColoursAsBlueGreenRed)
{
    EXPECT_EQ(LinesOf("{\\c&H112233&}a{\\c}b"),
              (Lines{{{"a", Colored({0x33, 0x22, 0x11, 255})}, {"b", {}}}}));
    EXPECT_EQ(LinesOf("{\\1c&HFF&\\1a&H40&}a"), (Lines{{{"a", Colored({255, 0, 0, 0xBF})}}}));
    EXPECT_EQ(LinesOf("{\\c255}a"), (Lines{{{"a", Colored({255, 0, 0, 255})}}}));

    Style edged;
    edged.edgeColor = Color{0, 0, 255, 255};
    EXPECT_EQ(LinesOf("{\\3c&HFF0000&}a"), (Lines{{{"a", edged}}}));
}

TEST(AssText, PassesOverOtherTagsThatBeginAlike)
{
    EXPECT_EQ(LinesOf("{\\iclip(1,1,2,2)\\bord0\\shad0\\blur0\\fs0\\unknown1\\clip(1)}text"),
              (Lines{{{"text", {}}}}));
}

TEST(AssText, LooksForNoTagsInsideAnAnimation)
{
    EXPECT_EQ(LinesOf("{\\t(0,9,\\c&HFF&)\\i1}a"), (Lines{{{"a", {true}}}}));
}

TEST(AssText, LeavesDrawingsOut)
{
    EXPECT_EQ(LinesOf("{\\p1}m 0 0 l 9 9{\\p0}after"), (Lines{{{"after", {}}}}));
}

TEST(AssText, KeepsEscapedAndUnclosedBraces)
{
    EXPECT_EQ(LinesOf("\\{a\\} {b"), (Lines{{{"{a} {b", {}}}}));
}

TEST(AssText, KeepsABackslashThatIsMeantAsOne)
{
    EXPECT_EQ(LinesOf("C:\\\u2060N \\x \\"), (Lines{{{"C:\\N \\x \\", {}}}}));
}

TEST(AssText, PutsABlockWhereItsPositionSaysAndPinsIt)
{
    const Cue cue = FromScript("3,Default,,0,0,0,,{\\an7\\pos(250,400)}a");

    ASSERT_EQ(cue.blocks.size(), 1u);
    EXPECT_EQ(cue.blocks[0].anchor, (caption::Anchor{0.25, 0.8}));
    EXPECT_TRUE(cue.blocks[0].pinned);
    EXPECT_EQ(cue.blocks[0].horizontal, Horizontal::LEFT);
    EXPECT_EQ(cue.blocks[0].vertical, Vertical::TOP);
    EXPECT_EQ(cue.layer, 3);
    EXPECT_EQ(cue.canvas, (caption::Size{1000, 500}));
}

TEST(AssText, TakesTheFirstPositionAndTheFirstAlignmentOfAnEvent)
{
    const Block block = FromScript("0,Default,,0,0,0,,{\\an9\\an1\\pos(100,100)\\pos(9,9)}a").blocks.at(0);

    EXPECT_EQ(block.anchor, (caption::Anchor{0.1, 0.2}));
    EXPECT_EQ(block.horizontal, Horizontal::RIGHT);
    EXPECT_EQ(block.vertical, Vertical::TOP);
}

TEST(AssText, KnowsTheNineAlignments)
{
    for (int alignment = 1; alignment <= 9; ++alignment) {
        const Block block = FromText("{\\an" + std::to_string(alignment) + "}a").blocks.at(0);
        EXPECT_EQ(block.horizontal, Horizontal((alignment - 1) % 3)) << alignment;
        EXPECT_EQ(block.vertical, alignment > 6   ? Vertical::TOP
                                  : alignment > 3 ? Vertical::MIDDLE
                                                  : Vertical::BOTTOM)
            << alignment;
        EXPECT_FALSE(block.anchor);
    }
}

TEST(AssText, KnowsTheOldAlignments)
{
    const Block top = FromText("{\\a6}a").blocks.at(0);
    const Block middle = FromText("{\\a11}a").blocks.at(0);

    EXPECT_EQ(top.horizontal, Horizontal::CENTER);
    EXPECT_EQ(top.vertical, Vertical::TOP);
    EXPECT_EQ(middle.horizontal, Horizontal::RIGHT);
    EXPECT_EQ(middle.vertical, Vertical::MIDDLE);
}

TEST(AssText, KeepsTheMarginsOfTheStyleAndOfTheEvent)
{
    const Block styled = FromScript("0,Default,,0,0,0,,a").blocks.at(0);
    const Block own = FromScript("0,Default,,300,0,100,,{\\an7}a").blocks.at(0);

    EXPECT_EQ(styled.anchor, (caption::Anchor{0.45, 0.9})); // between 0.1 and 0.8, a tenth above the bottom
    EXPECT_NEAR(styled.width.value_or(0), 0.7, 1e-9);
    EXPECT_FALSE(styled.pinned);
    EXPECT_EQ(own.anchor, (caption::Anchor{0.3, 0.2}));
    EXPECT_NEAR(own.width.value_or(0), 0.5, 1e-9);
}

TEST(AssText, TakesColoursAndFacesFromTheStyle)
{
    const Style sign = FromScript("0,Sign,,0,0,0,,a").blocks.at(0).lines.at(0).at(0).style;
    const Style box = FromScript("0,Box,,0,0,0,,a").blocks.at(0).lines.at(0).at(0).style;
    const Style preset = FromScript("0,*Default,,0,0,0,,a").blocks.at(0).lines.at(0).at(0).style;

    EXPECT_TRUE(sign.bold && sign.italic && sign.underline && sign.strikeout);
    EXPECT_EQ(sign.color, (Color{0x33, 0x22, 0x11, 0x7F}));
    EXPECT_EQ(sign.edgeColor, std::nullopt) << "its outline is 0 wide";
    EXPECT_EQ(box.color, (Color{255, 255, 0, 255}));
    EXPECT_EQ(box.background, (Color{0, 0, 255, 0xBF}));
    EXPECT_EQ(preset.color, (Color{255, 255, 255, 255}));
    EXPECT_EQ(preset.edgeColor, (Color{0, 0, 0, 255}));
}

TEST(AssText, ReturnsToTheStyleOrGoesToAnother)
{
    const Line line = FromScript("0,Default,,0,0,0,,{\\rSign}a{\\r}b").blocks.at(0).lines.at(0);

    ASSERT_EQ(line.size(), 2u);
    EXPECT_TRUE(line[0].style.bold);
    EXPECT_EQ(line[1].style.color, (Color{255, 255, 255, 255}));
    EXPECT_FALSE(line[1].style.bold);
}

TEST(AssText, ReadsTheStylesOfTheOldScript)
{
    Notices notices;
    Cue cue;
    AssScript script(
        "[Script Info]\nScriptType: v4.00\nPlayResX: 640\nPlayResY: 480\n[V4 Styles]\n"
        "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, TertiaryColour, BackColour, "
        "Bold, Italic, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, AlphaLevel, "
        "Encoding\nStyle: Default,Any,20,65535,0,0,0,-1,0,1,2,0,6,0,0,48,0,0\n",
        AssHeader::STYLES_AND_MARGINS, notices);
    script.Read("0,0,Default,,0,0,0,,a", cue);

    const Block &block = cue.blocks.at(0);
    EXPECT_EQ(block.lines[0][0].style.color, (Color{255, 255, 0, 255}));
    EXPECT_TRUE(block.lines[0][0].style.bold);
    EXPECT_EQ(block.vertical, Vertical::TOP);
    EXPECT_EQ(block.horizontal, Horizontal::CENTER);
    EXPECT_EQ(block.anchor, (caption::Anchor{0.5, 0.1}));
}

// Lines of a script's event.
static Line LineOf(const std::string &event)
{
    return FromScript("0," + event).blocks.at(0).lines.at(0);
}

TEST(AssSizes, AreSharesOfTheHeightOfTheCanvas)
{
    // Sizes of 40 and 80 on a canvas 500 high.
    EXPECT_FLOAT_EQ(LineOf("Default,,0,0,0,,a")[0].style.line, 40.0f / 500);
    EXPECT_FLOAT_EQ(LineOf("Big,,0,0,0,,a")[0].style.line, 80.0f / 500);

    const Line line =
        LineOf("Default,,0,0,0,,a{\\fs100}b{\\fs}c{\\fs+5}d{\\fs-5}e{\\rBig}f{\\fs0}g{\\fs50\\r}h");
    const float sizes[] = {40, 100, 40, 60, 30, 80, 80, 40};
    ASSERT_EQ(line.size(), 7u) << "f and g are alike";
    for (std::size_t i = 0; i < line.size(); ++i) {
        EXPECT_FLOAT_EQ(line[i].style.line, sizes[i < 6 ? i : 7] / 500) << i;
        EXPECT_EQ(line[i].style.scale, 1) << i;
    }
}

TEST(AssSizes, OfOtherFormatsAreSharesOfTheirUsualOne)
{
    Notices notices;
    Cue cue;
    AssScript script(g_header, AssHeader::NOTHING, notices);

    script.Read("0,0,Default,,0,0,0,,a{\\fs60}b{\\fs}c", cue);

    const Line line = cue.blocks.at(0).lines.at(0);
    ASSERT_EQ(line.size(), 3u);
    EXPECT_EQ(line[0].style, Style());
    EXPECT_FLOAT_EQ(line[1].style.scale, 1.5f);
    EXPECT_EQ(line[1].style.line, 0);
    EXPECT_EQ(line[2].style, Style());
}

TEST(AssFonts, AreThoseOfTheStyleAndOfTheTags)
{
    const Line line = LineOf("Default,,0,0,0,,a{\\fnSome Font}b{\\fn}c{\\fnOther\\fn0}d");

    ASSERT_EQ(line.size(), 3u) << "c and d are alike";
    EXPECT_EQ(line[0].style.font.text(), "Any");
    EXPECT_EQ(line[1].style.font.text(), "Some Font");
    EXPECT_EQ(line[2].style.font.text(), "Any");
    EXPECT_EQ(LineOf("Down,,0,0,0,,a")[0].style.font.text(), "Any") << "without the sign of vertical text";
    EXPECT_EQ(LinesOf("{\\fnSome Font}a").at(0).at(0).style.font.text(), "Some Font");
}

TEST(AssOpacity, IsThatOfTheLettersOfTheEdgeOrOfTheBox)
{
    const Style all = LineOf("Default,,0,0,0,,{\\alpha&H40&}a")[0].style;
    const Style letters = LineOf("Default,,0,0,0,,{\\1a&H40&}a")[0].style;
    const Style edge = LineOf("Default,,0,0,0,,{\\3a&H40&}a")[0].style;
    const Style box = LineOf("Box,,0,0,0,,{\\3a&H20&}a")[0].style;
    const Line reset = LineOf("Sign,,0,0,0,,{\\1a&H10&}a{\\1a}b");

    EXPECT_EQ(all.color->alpha, 0xBF);
    EXPECT_EQ(all.edgeColor->alpha, 0xBF);
    EXPECT_EQ(letters.color, (Color{255, 255, 255, 0xBF}));
    EXPECT_EQ(letters.edgeColor->alpha, 255);
    EXPECT_EQ(edge.color->alpha, 255);
    EXPECT_EQ(edge.edgeColor, (Color{0, 0, 0, 0xBF}));
    EXPECT_EQ(box.background, (Color{0, 0, 255, 0xDF}));
    EXPECT_EQ(box.color->alpha, 255);
    EXPECT_EQ(reset[0].style.color->alpha, 0xEF);
    EXPECT_EQ(reset[1].style.color->alpha, 0x7F) << "that of the style";
}

TEST(AssOpacity, WithoutAColourIsThatOfWhiteLettersAndBlackEdges)
{
    const Style style = LinesOf("{\\alpha&H80&}a").at(0).at(0).style;

    EXPECT_EQ(style.color, (Color{255, 255, 255, 0x7F}));
    EXPECT_EQ(style.edgeColor, (Color{0, 0, 0, 0x7F}));
}

TEST(AssText, SaysOnceWhatIsAskedAndNotDrawn)
{
    const auto said = [](const std::string &text) {
        Notices notices;
        FromText(text, &notices);
        return notices.said();
    };
    const auto asks = [](const std::string &what) { return Said{what + " is not supported"}; };

    EXPECT_EQ(said("{\\frz30}a"), asks("rotation"));
    EXPECT_EQ(said("{\\k20}a{\\kf20}b"), asks("karaoke"));
    EXPECT_EQ(said("{\\be1}a{\\blur2}b"), asks("blur"));
    EXPECT_EQ(said("{\\t(\\fs9)}a"), asks("animation"));
    EXPECT_EQ(said("{\\move(1,2,3,4)}a"), asks("movement"));
    EXPECT_EQ(said("{\\fad(1,2)}a"), asks("fading"));
    EXPECT_EQ(said("{\\clip(1,2,3,4)}a"), asks("clipping"));
    EXPECT_EQ(said("{\\fscx120}a"), asks("letter scaling"));
    EXPECT_EQ(said("{\\fsp3}a"), asks("letter spacing"));
    EXPECT_EQ(said("{\\p1}m 0 0{\\p0}a"), asks("drawing"));
    EXPECT_EQ(said("{\\i1\\pos(1,2)\\an5\\c&H0&\\q2\\org(1,2)}a"), Said{});
}

TEST(AssText, SaysWhatStylesAskThatIsNotDrawn)
{
    Notices notices;
    Cue cue;
    AssScript script(g_header, AssHeader::STYLES_AND_MARGINS, notices);
    const auto has = [&](const std::string &what) {
        return std::count(notices.said().begin(), notices.said().end(), what + " is not supported") == 1;
    };

    EXPECT_TRUE(has("rotation"));
    EXPECT_TRUE(has("letter scaling"));
    EXPECT_TRUE(has("letter spacing"));
    script.Read("0,0,Default,,0,0,0,,a", cue);
    script.Read("2,0,Down,,0,0,0,,a", cue);
    EXPECT_TRUE(has("vertical text"));
    script.Read("3,0,Default,,0,0,0,Banner;5,a", cue);
    EXPECT_TRUE(has("an effect such as scrolling"));
}

TEST(AssText, MakesNothingOfAnEventWithTooFewFields)
{
    Notices notices;
    Cue cue;
    AssScript("", AssHeader::NOTHING, notices).Read("0,0,Default", cue);
    EXPECT_TRUE(cue.blocks.empty());
}
