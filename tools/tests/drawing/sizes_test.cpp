// SPDX-License-Identifier: MIT
// Sizes, fonts, opacities and the viewer's settings on the plane, on real DirectFB without a screen.
#include <gtest/gtest.h>

#include "drawing/stage_of.h"

using namespace caption;

static const Color g_white = {255, 255, 255};
static const Color g_blue = {0, 0, 255};
static const Color g_yellow = {255, 255, 0};

static Options With(const std::string &settings, Options options = PlainOptions())
{
    EXPECT_EQ(Kova_Captions_ReadSettings(&options.viewer, settings.data(), settings.size(), nullptr), 0)
        << settings;
    return options;
}

static Frame RenderStyle(const Style &style, const Options &options = PlainOptions())
{
    return Render({CueOf({{{"HHH", style}}})}, options);
}

static int HeightOfLetters(const Frame &frame, Color color = g_white)
{
    return Around(Ink(frame.picture, color)).height;
}

TEST(TextSize, OfTheSourceIsAShareOfThePlanesHeight)
{
    Style small;
    Style large;
    small.line = 0.1f;
    large.line = 0.2f;

    // Of DejaVu Sans a line is 2384 units high and an H 1493: 36 and 72 pixels have one of 22.5 and 45.
    EXPECT_NEAR(HeightOfLetters(RenderStyle(small)), 22.5, 1);
    EXPECT_NEAR(HeightOfLetters(RenderStyle(large)), 45, 1);
    // A pixel is added below, and ascent and descent are rounded up.
    EXPECT_NEAR(RenderStyle(large).drawn.blocks[0].height, 72 + 1, 2);
}

TEST(TextSize, IsScaledFromTheUsualOne)
{
    Style twice;
    twice.scale = 2;

    // An H is 1493 of 2048 units of the em: 32 pixels have one of 23.3, twice as many one of 46.7.
    EXPECT_NEAR(HeightOfLetters(RenderStyle({})), 23.3, 1);
    EXPECT_NEAR(HeightOfLetters(RenderStyle(twice)), 46.7, 1);
}

TEST(TextSize, FollowsTheViewer)
{
    Style large;
    large.line = 0.2f;

    EXPECT_NEAR(HeightOfLetters(RenderStyle({}, With("size = 200"))), 46.7, 1);
    EXPECT_NEAR(HeightOfLetters(RenderStyle({}, With("size = 50"))), 11.7, 1);
    EXPECT_NEAR(HeightOfLetters(RenderStyle(large, With("size = 50"))), 22.5, 1);
}

TEST(TextSize, OfSeveralRunsShareTheBaseline)
{
    Style large;
    large.scale = 2;
    large.color = g_blue;
    const Frame frame = Render({CueOf({{{"H", {}}, {"H", large}}})});
    const Rect low = Around(Ink(frame.picture, g_white));
    const Rect high = Around(Ink(frame.picture, g_blue));

    EXPECT_EQ(low.y + low.height, high.y + high.height);
    EXPECT_GT(high.height, low.height * 3 / 2);
}

TEST(TextSize, LeavesTextInsideTheSafeArea)
{
    const std::string words = "one two three four five six seven eight nine ten eleven twelve";
    const Frame usual = Render({CueOf({{{words, {}}}})});
    const Frame large = Render({CueOf({{{words, {}}}})}, With("size = 200"));
    const Rect ink = Around(Ink(large.picture, g_white));

    EXPECT_GT(large.drawn.lines, usual.drawn.lines) << "rows are wrapped again";
    EXPECT_GE(ink.x, 32);
    EXPECT_GE(ink.y, 18);
    EXPECT_LE(ink.x + ink.width, 640 - 32);
    EXPECT_LE(ink.y + ink.height, 360 - 18);
}

TEST(SafeArea, GrowsAsTheViewerSays)
{
    const std::string letters(60, 'H');
    const Rect usual = Render({CueOf({{{letters, {}}}})}).drawn.blocks[0];
    const Rect small = Render({CueOf({{{letters, {}}}})}, With("safe_area = 85")).drawn.blocks[0];
    const Rect whole = Render({CueOf({{{letters, {}}}})}, With("safe_area = 100")).drawn.blocks[0];

    EXPECT_EQ(usual.y + usual.height, 360 - 18);
    EXPECT_EQ(small.y + small.height, 360 - 18) << "text uses nine tenths anyway";
    EXPECT_EQ(whole.y + whole.height, 360);
    EXPECT_GT(whole.width, usual.width);
}

TEST(Fonts, OfTheSourceAreDrawnWhereTheyAreInstalled)
{
    Style serif;
    Style sans;
    Style unknown;
    serif.font = Interned("DejaVu Serif");
    sans.font = Interned("dejavu sans");
    unknown.font = Interned("No Such Font");
    const Frame plain = RenderStyle({});

    EXPECT_FALSE(RenderStyle(serif).picture == plain.picture);
    EXPECT_TRUE(RenderStyle(sans).picture == plain.picture) << "it is the default font";
    EXPECT_TRUE(RenderStyle(unknown).picture == plain.picture);
    EXPECT_TRUE(RenderStyle(serif, With("font = sans")).picture == plain.picture)
        << "the viewer's is for all text";
    EXPECT_TRUE(RenderStyle({}, With("font = serif")).picture == RenderStyle(serif).picture);
}

TEST(Fonts, ThatAreNotInstalledAreNamed)
{
    Style unknown;
    unknown.font = Interned("No Such Font");
    std::vector<Letters> lines = {Prepare({{"a", unknown}}), Prepare({{"b", {}}})};
    const Options options = PlainOptions();
    Fonts fonts(options);

    fonts.Choose(lines);

    EXPECT_EQ(fonts.NotInstalled(), (std::set<std::string>{"No Such Font"}));
}

TEST(Opacity, OfLettersIsKeptInIndexMode)
{
    Style half;
    half.color = Color{255, 255, 255, 128};
    const Frame frame = RenderStyle(half);

    EXPECT_GT(Ink(frame.picture, {255, 255, 255, 128}).size(), 100u);
    EXPECT_FALSE(frame.drawn.opaque);
    EXPECT_EQ(Shape(Ink(frame.picture, *half.color)), Shape(Ink(RenderStyle({}).picture, g_white)));
}

TEST(Opacity, SelectsIndexModeUnlessAModeIsAskedFor)
{
    Style half;
    half.color = Color{255, 255, 255, 128};
    const std::vector<Cue> cues = {CueOf({{{"a", half}}})};
    const std::vector<Cue> opaque = {CueOf({{{"a", {}}}})};
    Options options = PlainOptions();
    options.mode.reset();

    EXPECT_EQ(ResolveMode(cues, options).mode, ColorMode::INDEX);
    EXPECT_EQ(ResolveMode(opaque, options).mode, std::nullopt);
    EXPECT_EQ(ResolveMode(opaque, With("foreground_opacity = translucent", options)).mode, ColorMode::INDEX);
    EXPECT_EQ(ResolveMode(cues, With("foreground_opacity = solid", options)).mode, std::nullopt);
    options.mode = ColorMode::PALETTE;
    EXPECT_EQ(ResolveMode(cues, options).mode, ColorMode::PALETTE);
    EXPECT_TRUE(RenderStyle(half, options).drawn.opaque) << "said by a remark";
}

TEST(ViewersSettings, ColourTextThatIsNotAskedForOtherwise)
{
    Style red;
    red.color = Color{255, 0, 0};

    EXPECT_GT(Ink(RenderStyle(red, With("foreground = yellow")).picture, g_yellow).size(), 100u);
    EXPECT_EQ(Ink(RenderStyle(red, With("foreground = yellow")).picture, *red.color).size(), 0u);
    EXPECT_GT(Ink(RenderStyle(red, With("")).picture, *red.color).size(), 100u);
}

TEST(ViewersSettings, PutABoxBehindTheLettersOfAnyText)
{
    const Frame frame = RenderStyle({}, With("background = blue\nbackground_opacity = solid"));
    const Rect block = frame.drawn.blocks[0];
    const Points box = Ink(frame.picture, g_blue);

    EXPECT_EQ(box.size() + Ink(frame.picture, g_white).size(), std::size_t(block.width * block.height));
    EXPECT_GT(block.width, RenderStyle({}).drawn.blocks[0].width) << "it is wider than the letters";
}

TEST(ViewersSettings, FillAWindowBehindTheWholeBlock)
{
    const Cue cue = CueOf({{{"wide wide", {}}}, {{"i", {}}}});
    const Frame frame = Render({cue}, With("window = blue\nwindow_opacity = solid"));
    const Rect block = frame.drawn.blocks[0];

    EXPECT_EQ(Ink(frame.picture, g_blue).size() + Ink(frame.picture, g_white).size(),
              std::size_t(block.width * block.height))
        << "beside the short row too";
}

TEST(ViewersSettings, MixATranslucentBoxWithTheWindow)
{
    const Frame frame = RenderStyle({}, With("window = blue\nwindow_opacity = solid\n"
                                             "background = black\nbackground_opacity = translucent"));

    // 127 of 255 of the blue is left.
    EXPECT_GT(Ink(frame.picture, {0, 0, 127}).size(), 100u);
    EXPECT_EQ(Ink(frame.picture, {0, 0, 0, 128}).size(), 0u);
}

TEST(ViewersSettings, LeaveThePictureAloneIfTheyAreTheDefaults)
{
    Style style;
    style.color = Color{12, 34, 56};
    style.background = Color{200, 100, 50, 128};
    style.italic = style.underline = true;

    EXPECT_TRUE(RenderStyle(style, With("")).picture == RenderStyle(style).picture);
    EXPECT_FALSE(RenderStyle(style, With("underline = off")).picture == RenderStyle(style).picture);
}
