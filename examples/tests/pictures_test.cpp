// SPDX-License-Identifier: MIT
// Checks the output of the examples: pixels are drawn where expected, in the right colour, and nowhere else.
// The examples run unchanged, except that the harness captures a picture instead of sleeping.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "support/tool.h"

using caption::Color;
using caption::Picture;

namespace
{

struct Box {
    int left = 0, top = 0, right = 0, bottom = 0; // right and bottom are exclusive
};

constexpr Color NOTHING = caption::g_transparent;
constexpr Color BLACK = {0, 0, 0, 255};
constexpr Color WHITE = {255, 255, 255, 255};
constexpr Color YELLOW = {255, 230, 80, 255};

} // namespace

// The picture captured at the given call of sleep, counted from 1.
static Picture PictureOf(const std::string &example, int pause = 1)
{
    const Folder folder;
    const bool layer2 =
        example == "plane32" || example == "closed_captions"; // which the dummy system does not have
    const std::string command = std::string("env -u DISPLAY ASAN_OPTIONS=detect_leaks=0 KOVA_PICTURE='") +
                                folder / "shot" + "' DFBARGS=system=" + (layer2 ? "x11" : "dummy") +
                                ",mode=1280x720,no-sighandler,no-banner,quiet " +
                                (layer2 ? "'" WITH_XVFB "' " : "") + "'" KOVA_EXAMPLES_FOLDER "/" + example +
                                "_captured' >'" + folder / "said" + "' 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    std::ostringstream said;
    said << std::ifstream(folder / "said").rdbuf();
    EXPECT_EQ(said.str().find("TextDisp: [thread"), std::string::npos)
        << said.str(); // a DirectFB call that failed
    return ReadPng(folder / (pause == 1 ? "shot.png" : "shot_" + std::to_string(pause) + ".png"));
}

static int Count(const Picture &picture, const Color &color, const Box &box)
{
    int count = 0;
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) count += picture.At(x, y) == color;
    }
    return count;
}

static int Ink(const Picture &picture, const Box &box)
{
    return (box.right - box.left) * (box.bottom - box.top) - Count(picture, NOTHING, box);
}

static Box Whole(const Picture &picture)
{
    return {0, 0, picture.size().width, picture.size().height};
}

// The bounding box of all pixels of the colour.
static Box Around(const Picture &picture, const Color &color, const Box &within)
{
    Box box = {within.right, within.bottom, 0, 0};
    for (int y = within.top; y < within.bottom; ++y) {
        for (int x = within.left; x < within.right; ++x) {
            if (!(picture.At(x, y) == color)) continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                   std::max(box.bottom, y + 1)};
        }
    }
    return box;
}

TEST(HelloCaption, ShowsTwoCentredLinesInTheirColours)
{
    const Picture picture = PictureOf("hello_caption");

    ASSERT_EQ(picture.size().width, 1280);
    EXPECT_EQ(Ink(picture, {0, 0, 1280, 575}), 0);
    EXPECT_GT(Count(picture, WHITE, {400, 580, 880, 640}), 1000);
    EXPECT_EQ(Count(picture, WHITE, {0, 640, 1280, 720}), 0);
    EXPECT_GT(Count(picture, YELLOW, {400, 640, 880, 710}), 1000);
    EXPECT_EQ(Count(picture, YELLOW, {0, 0, 1280, 640}), 0);
    EXPECT_GT(Count(picture, BLACK, {400, 580, 880, 710}), 500);
    for (const Color &color : {WHITE, YELLOW}) {
        const Box line = Around(picture, color, Whole(picture));
        EXPECT_NEAR(line.left + line.right, 1280, 12);
    }
}

TEST(RollUp, KeepsThreeRowsOfTheSameLines)
{
    const Picture picture = PictureOf("roll_up");
    const Box window = {240, 500, 1040, 644};

    EXPECT_EQ(Ink(picture, window), 800 * 144);
    EXPECT_EQ(Ink(picture, Whole(picture)), 800 * 144);
    // Three lines of text separated by rows of the box only; the first two lines have rolled out.
    const Color box = {0, 0, 0, 200};
    int lines = 0;
    bool inLine = false;
    for (int y = window.top; y < window.bottom; ++y) {
        const bool text = Count(picture, box, {240, y, 1040, y + 1}) != 800;
        lines += text && !inLine;
        inLine = text;
    }
    EXPECT_EQ(lines, 3);
    // "There, behind the lighthouse." is much wider than ">> Look again." above it.
    EXPECT_GT(Around(picture, WHITE, {240, 596, 1040, 644}).right, 700);
    EXPECT_LT(Around(picture, WHITE, {240, 548, 1040, 596}).right, 600);
}

TEST(BitmapSubtitle, ShowsTheBitmapInItsOwnColours)
{
    const Picture picture = PictureOf("bitmap_subtitle");
    const Color box = {0, 0, 0, 140};
    const Color letters = {255, 235, 130, 255};
    const Box place = {20, 37, 75, 50};

    ASSERT_EQ(picture.size().width, 96);
    EXPECT_EQ(Ink(picture, place), 55 * 13);
    EXPECT_EQ(Ink(picture, Whole(picture)), 55 * 13);
    EXPECT_EQ(Count(picture, box, {20, 37, 75, 39}), 2 * 55);
    // The stem of the L, its foot, and the outline to its left.
    EXPECT_EQ(Count(picture, letters, {23, 40, 24, 47}), 7);
    EXPECT_EQ(Count(picture, letters, {23, 46, 28, 47}), 5);
    EXPECT_EQ(Count(picture, BLACK, {22, 39, 23, 48}), 9);
    EXPECT_EQ(Count(picture, box, place) + Count(picture, letters, place) + Count(picture, BLACK, place),
              55 * 13);
}

TEST(TeletextPage, EnlargesEachLineByItsOwnFactors)
{
    const Picture picture = PictureOf("teletext_page");
    const Color yellow = {255, 255, 0, 255};
    const Color cyan = {0, 255, 255, 255};
    const Color blue = {0, 0, 160, 255};

    EXPECT_EQ(Ink(picture, Whole(picture)), 480 * 272);
    const Box title = Around(picture, blue, Whole(picture));
    EXPECT_EQ(title.left, 16);
    EXPECT_EQ(title.right, 16 + 12 * 16);
    EXPECT_EQ(title.top, 16);
    EXPECT_EQ(title.bottom, 16 + 32);
    // The first T: seven rows, expanded four times vertically; its stem is two pixels wide.
    const Box t = Around(picture, yellow, {32, 16, 48, 48});
    EXPECT_EQ(t.bottom - t.top, 28);
    EXPECT_EQ(Count(picture, yellow, {32, 36, 48, 37}), 2);
    EXPECT_EQ(Around(picture, WHITE, {0, 80, 480, 96}).bottom, 94);   // double height
    EXPECT_EQ(Around(picture, cyan, {0, 160, 480, 176}).bottom, 174); // double height, single width
    EXPECT_EQ(Around(picture, cyan, {0, 192, 480, 208}).bottom, 199); // original size
    EXPECT_EQ(Around(picture, cyan, {0, 160, 24, 176}).right,
              22); // a T of five pixels, starting at the second
    EXPECT_EQ(Around(picture, WHITE, {0, 80, 32, 96}).right, 28); // an H of ten pixels, starting at the third
}

TEST(TwoContexts, ShowsOnlyTheActiveOne)
{
    const Picture subtitle = PictureOf("two_contexts", 1);
    const Picture menu = PictureOf("two_contexts", 2);

    ASSERT_EQ(subtitle.size().width, 1280);
    EXPECT_EQ(Ink(subtitle, {0, 0, 1280, 615}), 0);
    EXPECT_GT(Count(subtitle, WHITE, {290, 620, 700, 690}), 1000);
    EXPECT_GT(Count(subtitle, BLACK, {290, 620, 700, 690}), 100);
    ASSERT_EQ(menu.size().width, 640);
    EXPECT_EQ(Ink(menu, {40, 40, 430, 170}), 390 * 130);
    EXPECT_EQ(Ink(menu, Whole(menu)), 390 * 130); // the text stays inside its box
    EXPECT_GT(Count(menu, WHITE, {50, 45, 420, 105}), 500);
    EXPECT_GT(Count(menu, WHITE, {50, 105, 420, 165}), 500);
}

TEST(Plane32, MixesColourAndOpacityInEveryColumn)
{
    const Picture picture = PictureOf("plane32");

    ASSERT_EQ(picture.size().width, 1280);
    EXPECT_EQ(Ink(picture, {0, 0, 1280, 540}), 0);
    EXPECT_EQ(Ink(picture, {0, 660, 1280, 720}), 0);
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(
            Count(picture, {std::uint8_t(255 - i), 60, std::uint8_t(i), 255}, {5 * i, 540, 5 * i + 5, 560}),
            100);
        EXPECT_EQ(picture.At(5 * i, 659).alpha, i);
    }
    EXPECT_GT(Count(picture, WHITE, {200, 560, 980, 650}), 1000);
    EXPECT_GT(Count(picture, BLACK, {200, 560, 980, 650}), 500);
}

TEST(ClosedCaptions, ShowsThreeRowsOfARollUpCaption)
{
    const Picture picture = PictureOf("closed_captions");
    const Color black = {0, 0, 0, 255};

    // Edges of rows are rounded to whole pixels.
    const auto edge = [](int row) { return 72 + (576 * row + 7) / 15; };

    // Rows 13 to 15 of 15 in the middle 80 % of 720 lines, and the columns of the longest row with a column on each side.
    const Box box = Around(picture, black, Whole(picture));
    EXPECT_EQ(box.top, edge(12));
    EXPECT_EQ(box.bottom, edge(15));
    EXPECT_EQ(box.left, 128 - 32);
    EXPECT_EQ(box.right, 128 + 20 * 32 + 32);
    for (int row = 12; row < 15; ++row) {
        EXPECT_GT(Count(picture, WHITE, {box.left, edge(row), box.right, edge(row + 1)}), 300);
    }
    EXPECT_EQ(Ink(picture, Whole(picture)), Ink(picture, box));
}

TEST(Readme, ShowsItsLineWhereItSays)
{
    const Picture picture = PictureOf("readme");
    const Box line = Around(picture, WHITE, Whole(picture));

    ASSERT_EQ(picture.size().width, 1280);
    EXPECT_EQ(Ink(picture, {0, 0, 1280, 600}) + Ink(picture, {0, 600, 400, 720}), 0);
    EXPECT_NEAR(line.left, 401, 8);
    EXPECT_GT(line.right, 700);
    EXPECT_GT(Count(picture, WHITE, line), 1000);
    EXPECT_GT(Count(picture, BLACK, {400, 600, line.right + 1, 660}), 100);
}
