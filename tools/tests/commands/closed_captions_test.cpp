// SPDX-License-Identifier: MIT
// Closed captions in pictures: places, colours and the viewer's settings. The expected places follow from the grids:
// 15 rows of 32 columns (CEA-608), 75 by 210 units (CEA-708), both in the safe area of 80 % of the plane.
#include <algorithm>

#include <gtest/gtest.h>

#include "support/tool.h"

using caption::Color;
using caption::Picture;
using caption::Rect;

// Pop-on in CC1, "Hi" at row 15, column 0, from 1 s to 2 s.
static const char g_popOn[] = "1000 fc 94 20  fc 94 20  fc 94 70  fc 94 70  fc c8 e9  fc 94 2f  fc 94 2f\n"
                              "2000 fc 94 2c  fc 94 2c\n";

static Picture Drawn(const Folder &folder, const std::string &captions, const std::string &options = "",
                     const std::string &file = "0001.png")
{
    const std::string source = folder.Write("captions.ccd", captions);
    const Outcome outcome = RunTool("snapshot '" + source + "' --headless --plane 1280x720 -o '" +
                                    folder / "made" + "' " + options);

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    return ReadPng(folder / ("made/" + file));
}

// What encloses the pixels of a colour.
static Rect Enclosing(const Picture &picture, Color color)
{
    int left = picture.size().width, top = picture.size().height, right = 0, bottom = 0;

    for (int y = 0; y < picture.size().height; ++y) {
        for (int x = 0; x < picture.size().width; ++x) {
            if (!(picture.At(x, y) == color)) continue;
            left = std::min(left, x);
            right = std::max(right, x + 1);
            top = std::min(top, y);
            bottom = std::max(bottom, y + 1);
        }
    }
    return {left, top, right - left, bottom - top};
}

static void ExpectRect(Rect rect, int left, int top, int right, int bottom)
{
    EXPECT_EQ(rect.x, left);
    EXPECT_EQ(rect.y, top);
    EXPECT_EQ(rect.x + rect.width, right);
    EXPECT_EQ(rect.y + rect.height, bottom);
}

static const Color g_black = {0, 0, 0, 255};
static const Color g_white = {255, 255, 255, 255};
static const Color g_yellow = {255, 255, 0, 255};

// Cells are 1024 / 32 wide and 576 / 15 high; the box is a column wider at both ends. Its own letters hide some of its
// corner at most, so black reaches all its sides.
TEST(ClosedCaptions, OfLine21StandInTheirCellsInABlackBox)
{
    const Folder folder;
    const Picture picture = Drawn(folder, g_popOn);

    ExpectRect(Enclosing(picture, g_black), 96, 610, 224, 648);
    const Rect text = Enclosing(picture, g_white);
    EXPECT_GE(text.x, 128);
    EXPECT_LE(text.x + text.width, 192);
    EXPECT_GT(text.height, 10);
}

// Window 0 of service 1: visible, anchored by its top left corner at 0, 0, one row of four columns, window style 1 and
// pen style 1: "AB" on black.
TEST(ClosedCaptions, OfAServiceFillTheirWindow)
{
    const Folder folder;
    const Picture picture = Drawn(folder, "1000 ff 06 2a  fe 98 20  fe 00 00  fe 00 03  fe 09 41  fe 42 03\n"
                                          "3000 ff 42 22  fe 8c 01\n");

    // Columns are 1024 / 42 wide: four of them end at 98 of 1024, rounded.
    ExpectRect(Enclosing(picture, g_black), 128, 72, 226, 110);
}

TEST(ClosedCaptions, AreDrawnByTheViewersSettings)
{
    const Folder folder;
    const std::string settings =
        folder.Write("settings", "foreground = yellow\nbackground_opacity = transparent\nsize = 150\n");
    const Picture picture = Drawn(folder, g_popOn, "--settings '" + settings + "'");
    const Rect plain = Enclosing(Drawn(folder, g_popOn), g_white);
    const Rect text = Enclosing(picture, g_yellow);

    EXPECT_EQ(Enclosing(picture, g_white).width, -1280) << "white letters";
    EXPECT_GT(text.height, plain.height * 5 / 4);
}

// "A" on row 14 and a carriage return: while the rows roll, and half a second later, the picture is the one at rest.
TEST(ClosedCaptions, ThatRollAreDrawnWhereTheyComeToRest)
{
    const Folder folder;
    const Picture picture =
        Drawn(folder,
              "1000 fc 94 25  fc 94 25  fc 94 ad  fc 94 ad  fc 94 70  fc 94 70  fc c1 80\n"
              "2000 fc 94 ad  fc 94 ad\n"
              "4000 fc 94 2c  fc 94 2c\n",
              "", "0002.png");

    // One row up: row 14, one cell between the box's ends.
    ExpectRect(Enclosing(picture, g_black), 96, 571, 192, 610);
}

TEST(ClosedCaptions, InASheetAreTheOnesOfTheSnapshots)
{
    const Folder folder;
    const std::string source = folder.Write("captions.ccd", g_popOn);
    const Outcome outcome =
        RunTool("sheet '" + source + "' --headless --plane 1280x720 --background 204060 -o '" +
                folder / "sheet.png" + "'");

    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    const Picture sheet = ReadPng(folder / "sheet.png");
    // A quarter of 1280x720, in a frame of four pixels; the box begins at 96 / 4 and 610 / 4.
    const auto isDark = [&](int x, int y) {
        const Color pixel = sheet.At(x, y);
        return pixel.red + pixel.green + pixel.blue < 60;
    };
    EXPECT_TRUE(isDark(4 + 28, 4 + 157));
    EXPECT_FALSE(isDark(4 + 20, 4 + 157));
    EXPECT_FALSE(isDark(4 + 28, 4 + 149));
}
