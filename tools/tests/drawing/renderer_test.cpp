// SPDX-License-Identifier: MIT
// What cues look like on the plane, on real DirectFB without a screen: which colour is where.
#include <algorithm>

#include <gtest/gtest.h>

#include "drawing/stage_of.h"

using namespace caption;

static const Color g_white = {255, 255, 255};
static const Color g_red = {255, 0, 0};
static const Color g_green = {0, 200, 0};
static const Color g_blue = {0, 0, 255};

static Frame RenderText(const std::string &text)
{
    return Render({CueOf({{{text, {}}}})});
}

static bool Overlap(const Rect &one, const Rect &other)
{
    return one.x < other.x + other.width && other.x < one.x + one.width && one.y < other.y + other.height &&
           other.y < one.y + one.height;
}

TEST(Drawing, OfHebrewIsThatOfItsLettersSetFromTheLeftOneByOne)
{
    // The second is written in the order in which it is seen, and told to stay in it.
    const Frame read = RenderText("שלום עולם");
    const Frame seen = RenderText("\u202Dםלוע םולש\u202C");

    EXPECT_GT(Ink(read.picture, g_white).size(), 300u);
    EXPECT_TRUE(read.picture == seen.picture);
    EXPECT_FALSE(read.picture == RenderText("\u202Dשלום עולם\u202C").picture);
}

TEST(Drawing, OfArabicIsThatOfItsJoinedFormsSetFromTheLeft)
{
    const Frame read = RenderText("\u0633\u0644\u0627\u0645"); // salam: seen, lam with alef, meem
    const Frame seen = RenderText("\u202D\uFEE1\uFEFC\uFEB3\u202C");

    EXPECT_GT(Ink(read.picture, g_white).size(), 100u);
    EXPECT_TRUE(read.picture == seen.picture);
}

TEST(Drawing, HasCharactersBeyondTheBasicPlane)
{
    Options options = PlainOptions();
    options.font = "/usr/share/fonts/truetype/noto/NotoSansGothic-Regular.ttf";
    const Frame ahsa = Render({CueOf({{{"\U00010330", {}}}})}, options);
    const Frame bairkan = Render({CueOf({{{"\U00010331", {}}}})}, options);
    const Frame both = Render({CueOf({{{"\U00010330\U00010331", {}}}})}, options);

    EXPECT_GT(Ink(ahsa.picture, g_white).size(), 20u);
    EXPECT_NE(Shape(Ink(ahsa.picture, g_white)), Shape(Ink(bairkan.picture, g_white)));
    EXPECT_EQ(Ink(both.picture, g_white).size(),
              Ink(ahsa.picture, g_white).size() + Ink(bairkan.picture, g_white).size());
}

TEST(Drawing, GivesEachRunItsColour)
{
    const Frame frame = Render({CueOf({{Colored("left", g_red), Colored(" right", g_green)}})});
    const Rect red = Around(Ink(frame.picture, g_red));
    const Rect green = Around(Ink(frame.picture, g_green));

    EXPECT_GT(Ink(frame.picture, g_red).size(), 100u);
    EXPECT_GT(Ink(frame.picture, g_green).size(), 100u);
    EXPECT_LT(red.x + red.width, green.x);
    EXPECT_TRUE(Ink(frame.picture, g_white).empty());
    EXPECT_EQ(Shape(Both(Ink(frame.picture, g_red), Ink(frame.picture, g_green))),
              Shape(Ink(RenderText("left right").picture, g_white)))
        << "colours change no letter's place";
}

TEST(Drawing, PutsColoursOfRightToLeftTextWhereTheirLettersAre)
{
    const Frame frame = Render({CueOf({{Colored("שלום", g_red), Colored(" עולם", g_green)}})});

    EXPECT_GT(Around(Ink(frame.picture, g_red)).x, Around(Ink(frame.picture, g_green)).x);
}

TEST(Drawing, GivesEachRunItsEdgeColour)
{
    Options options = PlainOptions();
    options.edge = KOVA_TEXT_ERIGTHDROPSHADOW;
    options.edgeColor = {1, 2, 3};
    caption::Run edged{"own", {}};
    edged.style.edgeColor = g_blue;
    const Frame frame = Render({CueOf({{edged, {" usual", {}}}})}, options);
    const Rect own = Around(Ink(frame.picture, g_blue));
    const Rect usual = Around(Ink(frame.picture, {1, 2, 3}));

    EXPECT_GT(Ink(frame.picture, g_blue).size(), 50u);
    EXPECT_GT(Ink(frame.picture, {1, 2, 3}).size(), 50u);
    EXPECT_LT(own.x + own.width, usual.x + 2);
}

TEST(Drawing, FillsTheBackgroundOfARunAndNoMore)
{
    caption::Run boxed{"boxed", {}};
    boxed.style.background = g_blue;
    const Frame frame = Render({CueOf({{{"plain ", {}}, boxed}, {{"below", {}}}}, Horizontal::RIGHT)});
    const Points box = Ink(frame.picture, g_blue);
    const Rect rect = Around(box);
    const Rect block = frame.drawn.blocks.at(0);
    std::size_t white = 0;
    for (const auto &point : Ink(frame.picture, g_white)) {
        white += point.first >= rect.x && point.second < rect.y + rect.height && point.second >= rect.y;
    }

    EXPECT_EQ(box.size() + white, std::size_t(rect.width * rect.height)) << "all of it is box or letter";
    EXPECT_EQ(rect.y, block.y);
    EXPECT_EQ(rect.height, block.height / 2) << "as high as its row of two";
    EXPECT_EQ(rect.x + rect.width, block.x + block.width);
    EXPECT_GT(rect.x, block.x + block.width / 3) << "the plain run has none";
}

TEST(Drawing, KeepsABackgroundTransparentByAsMuchAsItIs)
{
    for (const ColorMode mode : {ColorMode::INDEX, ColorMode::PALETTE}) {
        Options options = PlainOptions();
        options.mode = mode;
        caption::Run boxed{"i", {}};
        boxed.style.background = Color{200, 100, 50, 128};
        const Frame frame = Render({CueOf({{boxed}})}, options);
        const Rect block = frame.drawn.blocks.at(0);
        const Color corner = frame.picture.At(block.x, block.y);

        EXPECT_EQ(corner.alpha, 128);
        EXPECT_NEAR(corner.red, 200, 2);
        EXPECT_NEAR(corner.green, 100, 2);
        EXPECT_NEAR(corner.blue, 50, 2);
        EXPECT_GT(Ink(frame.picture, g_white).size(), 20u) << "the letter on it is opaque";
    }
}

TEST(Drawing, UnderlinesARunBelowItsBaselineInItsColour)
{
    caption::Run plain = Colored("nnn", g_red);
    caption::Run underlined = plain;
    underlined.style.underline = true;
    const Points letters = Ink(Render({CueOf({{plain}}, Horizontal::LEFT)}).picture, g_red);
    const Frame frame = Render({CueOf({{underlined}}, Horizontal::LEFT)});
    const Rect text = Around(letters);
    const Points line = Without(Ink(frame.picture, g_red), letters);
    const Rect rect = Around(line);

    EXPECT_EQ(line.size(), std::size_t(rect.width * rect.height)) << "it has no gaps";
    EXPECT_GE(rect.y, text.y + text.height) << "an n stands on the baseline";
    EXPECT_LE(rect.y, text.y + text.height + 32 / 8);
    EXPECT_GE(rect.height, 1);
    EXPECT_LE(rect.height, 32 / 10);
    EXPECT_EQ(rect.x, frame.drawn.blocks.at(0).x);
    EXPECT_EQ(rect.width, frame.drawn.blocks.at(0).width);
}

TEST(Drawing, StrikesARunThroughBetweenItsTopAndItsBaseline)
{
    caption::Run plain = Colored("nnn", g_red);
    caption::Run struck = plain;
    struck.style.strikeout = true;
    const Points letters = Ink(Render({CueOf({{plain}}, Horizontal::LEFT)}).picture, g_red);
    const Frame frame = Render({CueOf({{struck}}, Horizontal::LEFT)});
    const Rect text = Around(letters);
    const Rect rect = Around(Without(Ink(frame.picture, g_red), letters));

    EXPECT_GT(rect.y, text.y);
    EXPECT_LT(rect.y + rect.height, text.y + text.height);
    EXPECT_LE(rect.height, 4);
    EXPECT_EQ(rect.width, frame.drawn.blocks.at(0).width);
}

TEST(Drawing, GivesAnUnderlineTheEdgeOfItsText)
{
    Options options = PlainOptions();
    options.edge = KOVA_TEXT_ERIGTHDROPSHADOW;
    options.edgeColor = g_blue;
    caption::Run underlined = Colored("   \u00A0   ", g_red); // nothing but the line
    underlined.style.underline = true;
    const Frame frame =
        Render({CueOf({{Colored("|", g_green), underlined, Colored("|", g_green)}})}, options);
    const Points line = Ink(frame.picture, g_red);
    const Rect rect = Around(line);

    ASSERT_FALSE(line.empty());
    EXPECT_EQ(frame.picture.At(rect.x + rect.width / 2, rect.y + rect.height + 1), (Color{0, 0, 255, 255}));
    EXPECT_EQ(frame.picture.At(rect.x + rect.width / 2, rect.y + rect.height + 2).alpha, 0);
}

TEST(Drawing, TakesTheBoldFileForBoldText)
{
    Options bold = PlainOptions();
    bold.font = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
    caption::Run run{"heavy", {}};
    run.style.bold = true;

    EXPECT_TRUE(Render({CueOf({{run}})}).picture == Render({CueOf({{{"heavy", {}}}})}, bold).picture);
}

TEST(Drawing, StandsWhereAlignmentAndAnchorSay)
{
    for (const Horizontal horizontal : {Horizontal::LEFT, Horizontal::CENTER, Horizontal::RIGHT}) {
        for (const Vertical vertical : {Vertical::TOP, Vertical::MIDDLE, Vertical::BOTTOM}) {
            Cue cue = CueOf({{{"one", {}}}, {{"three", {}}}});
            Block &block = cue.blocks[0];
            block.horizontal = horizontal;
            block.vertical = vertical;
            const Frame unanchored = Render({cue});
            const Rect safe = unanchored.drawn.blocks.at(0);
            block.anchor = Anchor{0.5, 0.5};
            const Rect at = Render({cue}).drawn.blocks.at(0);

            // The safe area is the plane without a twentieth at each side.
            const int across = int(horizontal), down = int(vertical);
            EXPECT_EQ(safe.x, across == 0 ? 32 : across == 2 ? 608 - safe.width : (640 - safe.width) / 2);
            EXPECT_EQ(safe.y, down == 0 ? 18 : down == 2 ? 342 - safe.height : (360 - safe.height) / 2);
            EXPECT_EQ(at.x, across == 0 ? 320 : across == 2 ? 320 - at.width : 320 - at.width / 2);
            EXPECT_EQ(at.y, down == 0 ? 180 : down == 2 ? 180 - at.height : 180 - at.height / 2);

            const Rect ink = Around(Ink(unanchored.picture, g_white));
            EXPECT_GE(ink.x, safe.x);
            EXPECT_LE(ink.x + ink.width, safe.x + safe.width);
            EXPECT_GE(ink.y, safe.y);
            EXPECT_LE(ink.y + ink.height, safe.y + safe.height);
        }
    }
}

TEST(Drawing, AlignsTheLinesOfABlockWithEachOther)
{
    for (const Horizontal horizontal : {Horizontal::LEFT, Horizontal::CENTER, Horizontal::RIGHT}) {
        Cue cue = CueOf({{Colored("lll", g_red)}, {Colored("llllllllll", g_green)}});
        cue.blocks[0].horizontal = horizontal;
        const Frame frame = Render({cue});
        const Rect red = Around(Ink(frame.picture, g_red));
        const Rect green = Around(Ink(frame.picture, g_green));
        const int leftGap = red.x - green.x;
        const int rightGap = green.x + green.width - red.x - red.width;

        EXPECT_LT(red.y, green.y);
        if (horizontal == Horizontal::LEFT) {
            EXPECT_EQ(leftGap, 0);
        }
        if (horizontal == Horizontal::CENTER) {
            EXPECT_NEAR(leftGap, rightGap, 1);
        }
        if (horizontal == Horizontal::RIGHT) {
            EXPECT_EQ(rightGap, 0);
        }
    }
}

TEST(Drawing, KeepsAnAnchoredBlockInTheSafeAreaUnlessItIsPinned)
{
    Cue cue = CueOf({{{"edge", {}}}});
    cue.blocks[0].anchor = Anchor{1, 1};
    const Rect kept = Render({cue}).drawn.blocks.at(0);
    cue.blocks[0].pinned = true;
    const Frame pinned = Render({cue});
    const Rect rect = pinned.drawn.blocks.at(0);

    EXPECT_EQ(kept.x + kept.width, 608);
    EXPECT_EQ(kept.y + kept.height, 342);
    EXPECT_EQ(rect.x + rect.width / 2, 640);
    EXPECT_EQ(rect.y + rect.height, 360);
    ASSERT_EQ(pinned.drawn.notices.size(), 1u) << "half of it is beyond the plane";
    EXPECT_NE(pinned.drawn.notices[0].find("extends beyond the plane"), std::string::npos);
}

TEST(Drawing, BreaksLinesAtTheWidthOfTheirBlock)
{
    Cue cue = CueOf({{{"several words that go side by side", {}}}});
    const Frame wide = Render({cue});
    cue.blocks[0].width = 0.25;
    const Frame narrow = Render({cue});

    EXPECT_EQ(wide.drawn.lines, 1u);
    EXPECT_GT(narrow.drawn.lines, 2u);
    EXPECT_LE(narrow.drawn.blocks.at(0).width, 160);
}

TEST(Drawing, KeepsTheHeightOfEmptyLines)
{
    const Rect two = Render({CueOf({{{"a", {}}}, {{"b", {}}}})}).drawn.blocks.at(0);
    const Rect three = Render({CueOf({{{"a", {}}}, {}, {{"b", {}}}})}).drawn.blocks.at(0);

    const Rect spaces = Render({CueOf({{{"a", {}}}, {{"  ", {}}}, {{"b", {}}}})}).drawn.blocks.at(0);

    EXPECT_EQ(three.height, two.height / 2 * 3);
    EXPECT_EQ(spaces.height, three.height);
}

TEST(Drawing, MovesALaterBlockAwayFromOneInItsWay)
{
    const Cue first = CueOf({{Colored("first", g_red)}});
    const Cue second = CueOf({{Colored("second", g_green)}});
    Cue top = CueOf({{Colored("top", g_blue)}});
    top.blocks[0].vertical = Vertical::TOP;
    const Frame frame = Render({first, second, top, top});
    const std::vector<Rect> &at = frame.drawn.blocks;

    ASSERT_EQ(at.size(), 4u);
    EXPECT_EQ(at[0].y + at[0].height, 342);
    EXPECT_EQ(at[1].y + at[1].height, at[0].y) << "up from the bottom";
    EXPECT_EQ(at[2].y, 18);
    EXPECT_EQ(at[3].y, at[2].y + at[2].height) << "down from the top";
    EXPECT_TRUE(frame.drawn.notices.empty());
    EXPECT_LT(Around(Ink(frame.picture, g_green)).y, Around(Ink(frame.picture, g_red)).y);
}

TEST(Drawing, LaysAHigherLayerOverALowerOne)
{
    Cue second = CueOf({{{"over it", {}}}});
    second.layer = 1;
    const Frame frame = Render({CueOf({{{"under", {}}}}), second});

    EXPECT_TRUE(Overlap(frame.drawn.blocks.at(0), frame.drawn.blocks.at(1)));
    EXPECT_TRUE(frame.drawn.notices.empty());
}

TEST(Drawing, LeavesAPinnedBlockWhereItIsAndSaysWhatFindsNoRoom)
{
    Cue pinned = CueOf({{{"pinned", {}}}});
    pinned.blocks[0].anchor = Anchor{0.5, 0.95};
    pinned.blocks[0].pinned = true;
    const Frame both = Render({CueOf({{{"first", {}}}}), pinned});
    EXPECT_TRUE(Overlap(both.drawn.blocks.at(0), both.drawn.blocks.at(1)));

    std::vector<Cue> many(12, CueOf({{{"crowd", {}}}}));
    const Frame crowd = Render(many);
    EXPECT_EQ(crowd.drawn.blocks.size(), 12u);
    ASSERT_FALSE(crowd.drawn.notices.empty());
    EXPECT_NE(crowd.drawn.notices[0].find("no free space"), std::string::npos);
}

TEST(Drawing, RollsUpByWholeRowsAndShowsTheLastOfThem)
{
    const Line red = {Colored("gypsy", g_red)}, green = {Colored("日本", g_green)},
               blue = {Colored("up", g_blue)};
    Cue before = CueOf({red, green});
    before.blocks[0].rollUp = 2;
    Cue after = CueOf({red, green, blue});
    after.blocks[0].rollUp = 2;
    const Frame first = Render({before});
    const Frame second = Render({after});
    const Rect rect = first.drawn.blocks.at(0);

    EXPECT_EQ(second.drawn.lines, 2u);
    EXPECT_EQ(second.drawn.left, 0u) << "what has rolled away is not left out";
    EXPECT_TRUE(Ink(second.picture, g_red).empty());
    EXPECT_EQ(Ink(second.picture, g_green), Moved(Ink(first.picture, g_green), 0, -rect.height / 2));
    EXPECT_GT(Around(Ink(second.picture, g_blue)).y, Around(Ink(second.picture, g_green)).y);
}

TEST(Drawing, BeginsARollUpAtTheBottomOfItsWindow)
{
    Cue cue = CueOf({{{"first", {}}}});
    cue.blocks[0].rollUp = 3;
    cue.blocks[0].vertical = Vertical::TOP;
    cue.blocks[0].anchor = Anchor{0.5, 0.25};
    const Rect rect = Render({cue}).drawn.blocks.at(0);

    EXPECT_EQ(rect.y, 90 + 2 * rect.height) << "two rows are free above it";
}

TEST(Drawing, CountsTheLinesThatFindNoRoom)
{
    std::vector<Line> lines(20, Line{{"line", {}}});
    const Frame frame = Render({CueOf(lines)});

    EXPECT_EQ(frame.drawn.lines + frame.drawn.left, 20u);
    EXPECT_GT(frame.drawn.lines, 5u);
    EXPECT_GE(frame.drawn.blocks.at(0).y, 18);
}

TEST(Drawing, TakesALineOfTenThousandCharacters)
{
    std::string words;
    while (words.size() < 10000) words += "wandering ";
    for (const std::string &text : {words, std::string(10000, 'w')}) {
        const Frame frame = RenderText(text);
        const Rect ink = Around(Ink(frame.picture, g_white));

        EXPECT_GT(frame.drawn.left, 100u);
        EXPECT_GE(ink.x, 32);
        EXPECT_LE(ink.x + ink.width, 608);
        EXPECT_GE(ink.y, 18);
        EXPECT_LE(ink.y + ink.height, 342);
    }
}

// Ten fonts in one line, two more than a display holds, each of which has what no other of them has.
TEST(Drawing, TakesTurnsWhereALineNeedsMoreFontsThanThereAreSlots)
{
    static const struct {
        const char *script;
        const char *letters;
    } scripts[] = {{"Armenian", "Բ"},
                   {"Georgian", "გ"},
                   {"Gothic", "\U00010331"},
                   {"Deseret", "\U00010414"},
                   {"Osmanya", "\U00010481"},
                   {"Glagolitic", "Ⰳ"},
                   {"Runic", "ᚠ"},
                   {"Ogham", "ᚑ"},
                   {"Thai", "ส"},
                   {"Cuneiform", "\U0001202D"}};
    Options options = PlainOptions();
    Line line;
    for (const auto &script : scripts) {
        options.fallbacks.push_back(std::string("/usr/share/fonts/truetype/noto/NotoSans") + script.script +
                                    "-Regular.ttf");
        line.push_back(Colored(script.letters, {std::uint8_t(10 * line.size() + 5), 0, 255}));
    }
    options.font = "/usr/share/fonts/truetype/noto/NotoSans-Regular.ttf";
    const Frame all = Render({CueOf({line, line})}, options);

    for (const caption::Run &run : line) {
        const Frame one = Render({CueOf({{run}})}, options);
        const Points alone = Ink(one.picture, *run.style.color);
        const Points together = Ink(all.picture, *run.style.color);
        ASSERT_GT(alone.size(), 20u) << run.text;
        EXPECT_EQ(together.size(), 2 * alone.size()) << run.text;
        Points first;
        for (const auto &point : together) {
            if (point.second < all.drawn.blocks.at(0).y + all.drawn.blocks.at(0).height / 2)
                first.insert(point);
        }
        EXPECT_EQ(Shape(first), Shape(alone)) << run.text;
    }
}

TEST(Drawing, LooksIntoTheFallbackFontsBeforeThoseOfTheMachine)
{
    Options options = PlainOptions();
    options.font = "/usr/share/fonts/truetype/noto/NotoSansGothic-Regular.ttf"; // which has no Latin letters
    options.fallbacks = {"/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf"};
    Options serif = PlainOptions();
    serif.font = options.fallbacks[0];
    const Cue cue = CueOf({{{"serif", {}}}});

    EXPECT_TRUE(Render({cue}, options).picture == Render({cue}, serif).picture);
    EXPECT_FALSE(Render({cue}, serif).picture == Render({cue}).picture);
}

TEST(Drawing, SaysWhenThePaletteIsFull)
{
    Line line;
    for (int i = 0; i < 300; ++i)
        line.push_back(Colored("i", {std::uint8_t(i % 256), std::uint8_t(i / 256), 90}));
    const Frame frame = Render({CueOf({line})});

    ASSERT_EQ(frame.drawn.notices.size(), 1u);
    EXPECT_NE(frame.drawn.notices[0].find("more colours than the palette holds"), std::string::npos);
    EXPECT_FALSE(Ink(frame.picture, {100, 0, 90}).empty());
}
