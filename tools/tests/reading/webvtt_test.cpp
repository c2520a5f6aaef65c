// SPDX-License-Identifier: MIT
#include "reading/webvtt.h"

#include <gtest/gtest.h>

using caption::Anchor;
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

static Block Read(const std::string &text, const std::string &settings = "", Notices *notices = nullptr)
{
    Notices own;
    Cue cue;
    caption::ReadWebVttCue(text, settings, cue, notices ? *notices : own);
    return cue.blocks.empty() ? Block() : cue.blocks[0];
}

static Style Colored(std::optional<Color> color, std::optional<Color> background = {})
{
    Style style;
    style.color = color;
    style.background = background;
    return style;
}

static void ExpectPlace(const Block &block, Horizontal horizontal, Vertical vertical, Anchor anchor,
                        double width)
{
    EXPECT_EQ(block.horizontal, horizontal);
    EXPECT_EQ(block.vertical, vertical);
    ASSERT_TRUE(block.anchor);
    EXPECT_NEAR(block.anchor->x, anchor.x, 1e-9);
    EXPECT_NEAR(block.anchor->y, anchor.y, 1e-9);
    ASSERT_TRUE(block.width);
    EXPECT_NEAR(*block.width, width, 1e-9);
    EXPECT_FALSE(block.pinned);
}

TEST(WebVttCue, ReadsLinesAndFaces)
{
    Style bold = {true};
    Style underline;
    bold.bold = underline.underline = true;

    EXPECT_EQ(Read("a<i>b<b>c</b></i>d\n<u>e</u>").lines,
              (Lines{{{"a", {}}, {"b", {true}}, {"c", bold}, {"d", {}}}, {{"e", underline}}}));
}

TEST(WebVttCue, ReadsTheEightColoursForTextAndBehindIt)
{
    EXPECT_EQ(Read("<c.yellow>a</c><c.bg_blue.lime>b</c><c.loud>c</c>").lines,
              (Lines{{{"a", Colored(Color{255, 255, 0, 255})},
                      {"b", Colored(Color{0, 255, 0, 255}, Color{0, 0, 255, 255})},
                      {"c", {}}}}));
    EXPECT_EQ(Read("<v.cyan Ana Maria>a").lines, (Lines{{{"a", Colored(Color{0, 255, 255, 255})}}}));
}

TEST(WebVttCue, ReadsEscapes)
{
    EXPECT_EQ(Read("&lt;i&gt; &amp;amp; &nbsp;&#9835;&#x1F600; &x; & &#xD800;").lines,
              (Lines{{{"<i> &amp; \u00A0\u266B\U0001F600 &x; & \uFFFD", {}}}}));
}

TEST(WebVttCue, ClosesNoTagThatIsNotOpen)
{
    EXPECT_EQ(Read("</i>a<i>b</b>c").lines, (Lines{{{"a", {}}, {"bc", {true}}}}));
    EXPECT_EQ(Read("a<i").lines, (Lines{{{"a", {}}}}));
}

TEST(WebVttCue, HasNoPlaceOfItsOwnWithoutSettings)
{
    const Block block = Read("a");

    EXPECT_EQ(block.horizontal, Horizontal::CENTER);
    EXPECT_EQ(block.vertical, Vertical::BOTTOM);
    EXPECT_FALSE(block.anchor);
    EXPECT_FALSE(block.width);
}

TEST(WebVttCue, AlignsTextInTheBoxThatPositionAndSizeMake)
{
    ExpectPlace(Read("a", "align:start"), Horizontal::LEFT, Vertical::BOTTOM, {0, 1}, 1);
    ExpectPlace(Read("a", "align:end"), Horizontal::RIGHT, Vertical::BOTTOM, {1, 1}, 1);
    ExpectPlace(Read("a", "align:left position:10%"), Horizontal::LEFT, Vertical::BOTTOM, {0.1, 1}, 0.9);
    ExpectPlace(Read("a", "position:30%"), Horizontal::CENTER, Vertical::BOTTOM, {0.3, 1}, 0.6);
    ExpectPlace(Read("a", "position:30%,line-left size:40%"), Horizontal::CENTER, Vertical::BOTTOM, {0.5, 1},
                0.4);
    ExpectPlace(Read("a", "align:right position:50%,center size:40%"), Horizontal::RIGHT, Vertical::BOTTOM,
                {0.7, 1}, 0.4);
    ExpectPlace(Read("a", "position:80%,line-right align:middle"), Horizontal::CENTER, Vertical::BOTTOM,
                {0.4, 1}, 0.8);
}

TEST(WebVttCue, TakesTheRightForTheStartOfTextFromRightToLeft)
{
    ExpectPlace(Read("\u05E9\u05DC\u05D5\u05DD", "align:start"), Horizontal::RIGHT, Vertical::BOTTOM, {1, 1},
                1);
    ExpectPlace(Read("\u05E9\u05DC\u05D5\u05DD", "align:left"), Horizontal::LEFT, Vertical::BOTTOM, {0, 1},
                1);
}

TEST(WebVttCue, StandsAtALineOfAPercentage)
{
    ExpectPlace(Read("a", "line:25%"), Horizontal::CENTER, Vertical::TOP, {0.5, 0.25}, 1);
    ExpectPlace(Read("a", "line:25%,center"), Horizontal::CENTER, Vertical::MIDDLE, {0.5, 0.25}, 1);
    ExpectPlace(Read("a", "line:25%,end"), Horizontal::CENTER, Vertical::BOTTOM, {0.5, 0.25}, 1);
}

TEST(WebVttCue, CountsLinesFromTheTopAndFromTheBottom)
{
    const double row = 0.0533;

    ExpectPlace(Read("a", "line:0"), Horizontal::CENTER, Vertical::TOP, {0.5, 0}, 1);
    ExpectPlace(Read("a", "line:3"), Horizontal::CENTER, Vertical::TOP, {0.5, 3 * row}, 1);
    ExpectPlace(Read("a", "line:-1"), Horizontal::CENTER, Vertical::BOTTOM, {0.5, 1}, 1);
    ExpectPlace(Read("a", "line:-3"), Horizontal::CENTER, Vertical::BOTTOM, {0.5, 1 - 2 * row}, 1);
    ExpectPlace(Read("a\nb", "line:-3"), Horizontal::CENTER, Vertical::BOTTOM, {0.5, 1 - row}, 1);
    ExpectPlace(Read("a\nb", "line:-1"), Horizontal::CENTER, Vertical::BOTTOM, {0.5, 1}, 1);
}

TEST(WebVttCue, PassesOverSettingsThatMeanNothing)
{
    ExpectPlace(Read("a", "line:x position:130% size:-2% align:odd : nothing"), Horizontal::CENTER,
                Vertical::BOTTOM, {0.5, 1}, 1);
}

TEST(WebVttCue, SaysWhatIsAskedAndNotDrawn)
{
    Notices notices;
    Read("a<00:00:02.000>b", "vertical:rl region:r1", &notices);
    Read("<ruby>a<rt>b</rt></ruby>", "vertical:lr", &notices);

    EXPECT_EQ(notices.said(),
              (Said{"timestamps inside a cue are not supported; its whole text is shown at once",
                    "vertical text is drawn horizontally", "regions are not supported",
                    "ruby text is drawn within the line"}));
}

TEST(WebVttFile, LosesItsStylesAndRegionsAlone)
{
    Notices notices;
    const std::string cue = "one\n00:01.000 --> 00:02.000\nSTYLE\nREGION\n";

    EXPECT_EQ(caption::WithoutWebVttStyles("WEBVTT\n\nSTYLE\n::cue { color: red }\n\nREGION\nid:a\n\n" + cue,
                                           notices),
              "WEBVTT\n\n" + cue);
    EXPECT_EQ(notices.said(), Said{"style sheets are not supported"});
    EXPECT_EQ(caption::WithoutWebVttStyles("1\n\nSTYLE\n", notices), "1\n\nSTYLE\n");
}
