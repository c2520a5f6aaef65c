// SPDX-License-Identifier: MIT
// All cues in one picture.
#include <gtest/gtest.h>

#include "base/timestamp.h"
#include "support/tool.h"

static const std::string g_samples = KOVA_CAPTION_SAMPLES;

static std::string Cues(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        std::string start = caption::Timestamp(i * 2000), end = caption::Timestamp(i * 2000 + 1000);
        text += std::to_string(i + 1) + "\n" + start.replace(8, 1, ",") + " --> " + end.replace(8, 1, ",") +
                "\nCue\n\n";
    }
    return text;
}

static int InkIn(const caption::Picture &sheet, int left, int top, int width, int height,
                 caption::Color pixel)
{
    int ink = 0;
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x) ink += sheet.At(x, y) == pixel;
    }
    return ink;
}

TEST(Sheet, ShowsEveryCueWithItsTimeBeneath)
{
    const Folder folder;
    const std::string text = folder.Write("five.srt", Cues(5));

    const Outcome outcome = RunTool("sheet '" + text + "' -o '" + folder / "sheet.png" +
                                    "' --columns 3 --background 204060 --height 120 --edge none");
    ASSERT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(outcome.out, folder / "sheet.png" + "\n");
    EXPECT_EQ(outcome.err, "");
    const caption::Picture sheet = ReadPng(folder / "sheet.png");

    // Three columns and two rows, the last cell of which is empty; a thumbnail is as wide as 16 to 9.
    const caption::Color background = {0x20, 0x40, 0x60, 255}, white = {255, 255, 255, 255};
    const int width = sheet.size().width / 3, height = sheet.size().height / 2;
    const int thumbnail = (width - 8) * 9 / 16;
    for (int i = 0; i < 6; ++i) {
        const int x = i % 3 * width, y = i / 3 * height;
        const int paper = InkIn(sheet, x, y, width, height, background);
        const int letters = InkIn(sheet, x, y, width, thumbnail, white);
        const int label = InkIn(sheet, x, y + thumbnail + 8, width, height - thumbnail - 8, white);
        EXPECT_EQ(paper > width * thumbnail / 2, i < 5) << "cell " << i;
        EXPECT_EQ(letters > 20, i < 5) << "cell " << i;
        EXPECT_EQ(label > 20, i < 5) << "cell " << i;
    }
}

TEST(Sheet, HasSmallerThumbnailsForMoreCuesAndStaysWithinBounds)
{
    const Folder folder;
    const std::string few = folder.Write("few.srt", Cues(2));
    const std::string many = folder.Write("many.srt", Cues(40));
    const std::string look = " --plane 320x180 --background 204060";

    ASSERT_EQ(RunTool("sheet '" + few + "' --columns 1 -o '" + folder / "few.png" + "'" + look).exit, 0);
    ASSERT_EQ(RunTool("sheet '" + many + "' --columns 1 -o '" + folder / "many.png" + "'" + look).exit, 0);
    ASSERT_EQ(RunTool("sheet '" + many + "' -o '" + folder / "square.png" + "'" + look).exit, 0);
    const caption::Size small = ReadPng(folder / "few.png").size();
    const caption::Size tall = ReadPng(folder / "many.png").size();
    const caption::Size square = ReadPng(folder / "square.png").size();

    EXPECT_GE(small.width, 320);
    EXPECT_LE(tall.height, 8192);
    EXPECT_GT(tall.height, 8192 / 2);
    EXPECT_LT(tall.width, small.width) << "the thumbnails shrink";
    EXPECT_GT(square.width, 6 * 320);
    EXPECT_LE(square.width, 8192);
}

TEST(Sheet, RefusesColumnsInWhichNothingCouldBeSeen)
{
    const Folder folder;
    const std::string text = folder.Write("many.srt", Cues(300));

    for (const std::string columns : {"1", "300"}) {
        const Outcome outcome =
            RunTool("sheet '" + text + "' --columns " + columns + " -o '" + folder / "sheet.png" + "'");
        EXPECT_EQ(outcome.exit, 1);
        EXPECT_NE(outcome.err.find("300 cues in " + columns + " columns do not fit one sheet"),
                  std::string::npos)
            << outcome.err;
    }
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"many.srt"});
}
