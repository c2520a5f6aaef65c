// SPDX-License-Identifier: MIT
// Subtitles that are pictures, drawn as indexes: alone, scaled, and beside text.
#include <set>

#include <gtest/gtest.h>

#include "drawing/bitmaps.h"
#include "drawing/stage_of.h"

using namespace caption;

static const Color g_red = {255, 0, 0};
static const Color g_white = {255, 255, 255};

// A frame of red around white, both one pixel thick and more.
static Bitmap Framed(int x, int y, Size size)
{
    Bitmap bitmap;
    bitmap.x = x;
    bitmap.y = y;
    bitmap.size = size;
    bitmap.palette = {g_transparent, g_red, g_white};
    for (int row = 0; row < size.height; ++row) {
        for (int column = 0; column < size.width; ++column) {
            const bool edge = row == 0 || column == 0 || row == size.height - 1 || column == size.width - 1;
            bitmap.indexes.push_back(edge ? 1 : 2);
        }
    }
    return bitmap;
}

static Cue CueOf(const Bitmap &bitmap, Size canvas)
{
    Cue cue;
    cue.canvas = canvas;
    cue.bitmaps = {bitmap};
    return cue;
}

static std::size_t ColorsIn(const Picture &picture)
{
    std::set<std::uint32_t> colors;
    for (int y = 0; y < picture.size().height; ++y) {
        for (int x = 0; x < picture.size().width; ++x) {
            const Color &pixel = picture.At(x, y);
            if (pixel.alpha > 0) {
                colors.insert(std::uint32_t(pixel.alpha) << 24 | std::uint32_t(pixel.red) << 16 |
                              std::uint32_t(pixel.green) << 8 | pixel.blue);
            }
        }
    }
    return colors.size();
}

TEST(Bitmaps, OfACanvasAsLargeAsThePlaneAreDrawnPixelForPixel)
{
    Bitmap bitmap = Framed(100, 50, {40, 30});
    bitmap.palette[2] = {10, 200, 30, 77};
    bitmap.indexes[40 * 15 + 20] = 0; // a hole in the middle
    const Frame frame = Render({CueOf(bitmap, {640, 360})});
    Points border, whole;
    for (int y = 50; y < 80; ++y) {
        for (int x = 100; x < 140; ++x) {
            whole.insert({x, y});
            if (x == 100 || y == 50 || x == 139 || y == 79) border.insert({x, y});
        }
    }
    const Points hole = {{120, 65}};

    EXPECT_EQ(Ink(frame.picture, g_red), border);
    EXPECT_EQ(Ink(frame.picture, bitmap.palette[2]), Without(Without(whole, border), hole));
    ASSERT_EQ(frame.drawn.bitmaps.size(), 1u);
    EXPECT_EQ(frame.drawn.bitmaps[0].x, 100);
    EXPECT_EQ(frame.drawn.bitmaps[0].y, 50);
    EXPECT_EQ(frame.drawn.bitmaps[0].width, 40);
    EXPECT_EQ(frame.drawn.bitmaps[0].height, 30);
}

TEST(Bitmaps, AreStretchedAsTheirCanvasIs)
{
    const Frame frame =
        Render({CueOf(Framed(80, 60, {160, 120}), {320, 240})}); // twice as wide, half again as high
    const Rect place = frame.drawn.bitmaps.at(0);

    EXPECT_EQ(place.x, 160);
    EXPECT_EQ(place.y, 90);
    EXPECT_EQ(place.width, 320);
    EXPECT_EQ(place.height, 180);
    // Inside all is white, outside nothing, and between them no other colour than red and white make.
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            const Color &pixel = frame.picture.At(x, y);
            const bool inside = x >= 164 && x < 476 && y >= 93 && y < 267;
            const bool outside = x < 160 || x >= 480 || y < 90 || y >= 270;
            if (inside) {
                ASSERT_EQ(pixel, (Color{255, 255, 255, 255})) << x << "," << y;
            }
            if (outside) {
                ASSERT_EQ(pixel.alpha, 0) << x << "," << y;
            }
            if (!inside && !outside && pixel.alpha > 0) {
                ASSERT_GE(pixel.red, 250) << x << "," << y;
            }
        }
    }
    EXPECT_GT(Ink(frame.picture, g_red).size() + ColorsIn(frame.picture), 3u);
}

TEST(Bitmaps, DoNotBringTheColourOfTransparentPixelsToLight)
{
    Bitmap bitmap = Framed(80, 60, {160, 120});
    bitmap.palette[1] = {0, 255, 0, 0}; // green that nobody should see
    const Frame frame = Render({CueOf(bitmap, {320, 240})});

    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            const Color &pixel = frame.picture.At(x, y);
            if (pixel.alpha > 16) {
                ASSERT_GE(pixel.red, 240) << x << "," << y;
            }
        }
    }
}

TEST(Bitmaps, BecomeAtMostAsManyColoursAsAPaletteHoldsAndStayLikeThemselves)
{
    Bitmap bitmap;
    bitmap.size = {256, 200};
    bitmap.x = bitmap.y = 10;
    for (int i = 0; i < 256; ++i) bitmap.palette.push_back({std::uint8_t(i), std::uint8_t(255 - i), 128});
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 256; ++x) bitmap.indexes.push_back(std::uint8_t(x ^ y));
    }
    const Cue cue = CueOf(bitmap, {320, 240});
    const Frame frame = Render({cue});
    const Picture all = Compose({&cue}, {640, 360}, 1 << 20);
    double difference = 0;
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            const Color &one = frame.picture.At(x, y), &other = all.At(x, y);
            difference += std::abs(one.red - other.red) + std::abs(one.green - other.green) +
                          std::abs(one.alpha - other.alpha);
        }
    }

    EXPECT_GT(ColorsIn(all), 255u) << "or there would be nothing to choose";
    EXPECT_LE(ColorsIn(frame.picture), 255u);
    EXPECT_TRUE(frame.drawn.notices.empty());
    EXPECT_LT(difference / (640 * 360 * 3), 4);
}

TEST(Bitmaps, PartlyBeyondTheirCanvasAreCutOff)
{
    const Frame frame = Render(
        {CueOf(Framed(-20, -10, {40, 30}), {640, 360}), CueOf(Framed(620, 350, {40, 30}), {640, 360})});

    EXPECT_EQ(Around(Ink(frame.picture, g_white)).x, 0);
    EXPECT_EQ(frame.picture.At(18, 18), (Color{255, 255, 255, 255}));
    EXPECT_EQ(frame.picture.At(19, 10), (Color{255, 0, 0, 255}));
    EXPECT_EQ(frame.picture.At(620, 355), (Color{255, 0, 0, 255}));
    EXPECT_EQ(frame.picture.At(639, 359), (Color{255, 255, 255, 255}));
}

TEST(Bitmaps, GoTogetherWithText)
{
    Cue cue = CueOf(Framed(0, 0, {20, 20}), {640, 360});
    cue.blocks.emplace_back();
    cue.blocks[0].lines = {{Colored("text", {0, 0, 255})}};
    const Frame frame = Render({cue});

    EXPECT_EQ(Ink(frame.picture, g_red).size(), 76u);
    EXPECT_GT(Ink(frame.picture, {0, 0, 255}).size(), 100u);
}

TEST(ResolveMode, ChoosesIndexColoursForPicturesAndRefusesOthers)
{
    const std::vector<Cue> pictures = {CueOf(Framed(0, 0, {2, 2}), {64, 64})};
    Options options;

    EXPECT_EQ(ResolveMode(pictures, options).Mode(), ColorMode::INDEX);
    EXPECT_EQ(ResolveMode({::CueOf({{{"text", {}}}})}, options).Mode(), ColorMode::PALETTE);
    options.mode = ColorMode::PALETTE;
    EXPECT_THROW(ResolveMode(pictures, options), std::exception);
}
