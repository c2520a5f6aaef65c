// SPDX-License-Identifier: MIT
// The edges to the pixel, on real DirectFB: with three colours alone every pixel is text, edge or neither.
#include <gtest/gtest.h>

#include "support/tool.h"

namespace
{

struct Edge {
    const char *option;
    std::vector<std::pair<int, int>> offsets; // of the edge's strings from the text's
};

class DrawnEdge : public testing::TestWithParam<Edge>
{
};

} // namespace

static bool IsText(const caption::Color &pixel)
{
    return pixel == caption::Color{255, 255, 0, 255};
}

static bool IsEdge(const caption::Color &pixel)
{
    return pixel == caption::Color{0, 0, 128, 255};
}

static bool IsSomething(const caption::Color &pixel)
{
    return pixel.alpha != 0;
}

TEST_P(DrawnEdge, LiesWhereItsStyleSays)
{
    const Folder folder;
    const std::string text = folder.Write("one.srt", "1\n00:00:01,000 --> 00:00:02,000\nÁgy\n");

    const Outcome outcome = RunTool("snapshot '" + text + "' -o '" + folder / "made" +
                                    "' --mode index --plane 320x200 --height 60 " +
                                    "--color FFFF00 --edge-color 000080 --edge " + GetParam().option);
    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    const caption::Picture picture = ReadPng(folder / "made/0001.png");
    const Points letters = Where(picture, IsText);
    Points edge;
    for (const auto &offset : GetParam().offsets) {
        edge = Both(edge, Moved(letters, offset.first, offset.second));
    }

    EXPECT_GT(letters.size(), 300u);
    EXPECT_EQ(Where(picture, IsEdge), Without(edge, letters));
    EXPECT_EQ(Where(picture, IsSomething), Both(letters, edge));
}

INSTANTIATE_TEST_SUITE_P(Tool, DrawnEdge,
                         testing::Values(Edge{"none", {}}, Edge{"raised", {{-2, -2}}},
                                         Edge{"depressed", {{0, 1}, {1, 1}}},
                                         Edge{"uniform", {{-1, 0}, {1, 0}, {0, -1}, {0, 1}}},
                                         Edge{"left-shadow", {{-2, 2}}}, Edge{"right-shadow", {{2, 2}}}),
                         [](const testing::TestParamInfo<Edge> &row) {
                             std::string name = row.param.option;
                             for (char &letter : name) letter = letter == '-' ? '_' : letter;
                             return name;
                         });

TEST(EdgeSheet, ShowsTextAndEdgeInEveryCell)
{
    const Folder folder;

    const Outcome outcome = RunTool("edges -o '" + folder / "sheet.png" +
                                    "' --color FFFF00 --edge-color 000080 --background 808080");
    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.out, folder / "sheet.png" + "\n");
    EXPECT_EQ(outcome.err.find("TextDisp:"), std::string::npos) << outcome.err;
    const caption::Picture sheet = ReadPng(folder / "sheet.png");

    // Names left and above, then six rows of three columns, of one size each.
    const int left = 190;
    const int top = 40;
    const int width = (sheet.size().width - left) / 3;
    const int height = (sheet.size().height - top) / 6;
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 3; ++column) {
            int letters = 0;
            int edge = 0;
            for (int y = top + row * height; y < top + (row + 1) * height; ++y) {
                for (int x = left + column * width; x < left + (column + 1) * width; ++x) {
                    letters += IsText(sheet.At(x, y));
                    edge += IsEdge(sheet.At(x, y));
                }
            }
            EXPECT_GT(letters, 1000) << "row " << row << ", column " << column;
            EXPECT_TRUE(row > 0 || edge == 0) << "column " << column;
            EXPECT_TRUE(row == 0 || edge > 300) << "row " << row << ", column " << column;
        }
    }
}
