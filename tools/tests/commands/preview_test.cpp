// SPDX-License-Identifier: MIT
// The sheet of what captions may look like: every sample is there, in its colour, on its background.
#include <algorithm>

#include <gtest/gtest.h>

#include "support/tool.h"

namespace
{

// Of a part of the sheet.
struct Region {
    int left;
    int top;
    int width;
    int height;
};

} // namespace

static int CountIn(const caption::Picture &picture, Region region, caption::Color pixel)
{
    int count = 0;

    for (int y = region.top; y < region.top + region.height; ++y) {
        for (int x = region.left; x < region.left + region.width; ++x) count += picture.At(x, y) == pixel;
    }
    return count;
}

static bool HasColumnOf(const caption::Picture &picture, int x, int top, int height, caption::Color pixel)
{
    return CountIn(picture, {x, top, 1, height}, pixel) == height;
}

// Where the dark, plain backgrounds of the first column begin and end, looked for from the top of the sheet.
static std::vector<Region> DarkBlocks(const caption::Picture &sheet, caption::Color dark)
{
    std::vector<Region> blocks;
    int left = 0;
    int top = 0;

    while (left < sheet.size().width && CountIn(sheet, {left, 0, 1, sheet.size().height}, dark) == 0) ++left;
    int right = left;
    while (right < sheet.size().width && CountIn(sheet, {right, 0, 1, sheet.size().height}, dark) > 0)
        ++right;
    for (int y = 0; y <= sheet.size().height; ++y) {
        const bool inside = y < sheet.size().height && sheet.At(left, y) == dark;
        if (inside && !HasColumnOf(sheet, left, std::max(top, 0), y - top, dark)) top = y;
        if (!inside && y > top && top > 0 && sheet.At(left, top) == dark) {
            blocks.push_back({left, top, right - left, y - top});
        }
        if (!inside) top = y + 1;
    }
    return blocks;
}

TEST(Preview, ShowsEveryEdgeAndColourForEachFont)
{
    const Folder folder;
    const std::string fonts = "/usr/share/fonts/truetype/dejavu/DejaVuS";

    const Outcome outcome =
        RunTool("preview --headless --height 24 --edge-color 123456 -o '" + folder / "sheet.png" +
                "' --font " + fonts + "ans.ttf --font " + fonts + "erif.ttf");
    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.out, folder / "sheet.png" + "\n");
    const caption::Picture sheet = ReadPng(folder / "sheet.png");
    const std::vector<Region> blocks = DarkBlocks(sheet, {24, 28, 36, 255});

    ASSERT_EQ(blocks.size(), 12u) << "six edges of two fonts";
    const caption::Color colors[] = {{255, 255, 255, 255}, {0, 0, 0, 255},    {255, 0, 0, 255},
                                     {0, 255, 0, 255},     {0, 0, 255, 255},  {255, 255, 0, 255},
                                     {255, 0, 255, 255},   {0, 255, 255, 255}};
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        EXPECT_EQ(blocks[i].width % 8, 0);
        const int cell = blocks[i].width / 8;
        for (int column = 0; column < 8; ++column) {
            const Region region = {blocks[i].left + column * cell, blocks[i].top, cell, blocks[i].height};
            int others = 0;
            for (const caption::Color &color : colors) {
                if (!(color == colors[column])) others += CountIn(sheet, region, color);
            }
            EXPECT_GT(CountIn(sheet, region, colors[column]), 200) << "block " << i << ", column " << column;
            EXPECT_EQ(others, 0) << "block " << i << ", column " << column;
            const int edge = CountIn(sheet, region, {0x12, 0x34, 0x56, 255});
            EXPECT_TRUE(i % 6 == 0 ? edge == 0 : edge > 20)
                << edge << " pixels of edge in block " << i << ", column " << column;
        }
    }
}

TEST(Preview, RefusesWhatIsNoFontAndMakesNothing)
{
    const Folder folder;
    folder.Write("text.txt", "No font here.\n");

    const Outcome outcome = RunTool("preview --headless -o '" + folder / "sheet.png" +
                                    "' --font /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf --font '" +
                                    folder / "text.txt" + "'");

    EXPECT_EQ(outcome.exit, 1);
    EXPECT_NE(outcome.err.find("text.txt: not a usable font; give"), std::string::npos) << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"text.txt"});
}
