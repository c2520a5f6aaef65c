// SPDX-License-Identifier: MIT
// Activations of larger and smaller planes in turn, with drawing directly after each. A surface that still
// has the size of the previous plane gives a wrong picture, or a memory error under the address sanitizer.
#include "fixture.h"

#include <stdio.h>
#include <string.h>

using namespace live;

enum { TURNS = 200, GROUND = 33, INK = 44, PAPER = 55, ROWS = 66, GLYPH_WIDTH = 24, GLYPH_HEIGHT = 16 };

static const struct {
    kova_uint32 uiWidth, uiHeight;
} s_planes[] = {{320, 200}, {720, 480}, {64, 48}, {1280, 720}};

static void Activate(pKovaITextDisplay_t pDisplay, int iPlane)
{
    const auto scContextID = kova_sint8(iPlane);

    Kova_TextDisp_SetActive(pDisplay, scContextID, 1);
    if (Colors() == PACKED) {
        ASSERT_EQ(pDisplay->Create32BitPlane(pDisplay, scContextID, 0, 0, s_planes[iPlane].uiWidth,
                                             s_planes[iPlane].uiHeight),
                  0);
    }
}

// A glyph in the lower right corner, one in the lower left that starts outside, and rows of pixels between
// them.
static void DrawAll(pKovaITextDisplay_t pDisplay, int iPlane)
{
    static kova_uint8 s_aucGlyph[GLYPH_WIDTH / 8 * GLYPH_HEIGHT], s_aucRows[8 * 8];
    const auto scContextID = kova_sint8(iPlane);
    const kova_uint32 uiWidth = s_planes[iPlane].uiWidth, uiHeight = s_planes[iPlane].uiHeight;
    KovaTextRect_t whole = {0, 0, uiWidth, uiHeight}, part = {0, 0, uiWidth / 2, uiHeight / 2};

    memset(s_aucGlyph, 0xAA, sizeof s_aucGlyph);
    memset(s_aucRows, ROWS, sizeof s_aucRows);
    EXPECT_EQ(pDisplay->SetClip(pDisplay, scContextID, nullptr), 0);
    // First of all, with nothing in between. Neither is compared: the fill covers the glyph, and a copy reads what was
    // last flipped.
    EXPECT_EQ(pDisplay->DrawPixelExpand(pDisplay, scContextID, s_aucGlyph, uiWidth - 8, uiHeight - 8,
                                        GLYPH_WIDTH, GLYPH_HEIGHT, GLYPH_WIDTH / 8, GlyphColor(PAPER),
                                        GlyphColor(INK), 0, KOVA_EXPAND_2X4Y),
              0);
    EXPECT_EQ(pDisplay->Blit(pDisplay, scContextID, &part, uiWidth / 2, uiHeight / 2), 0);
    EXPECT_EQ(pDisplay->FillRect(pDisplay, scContextID, &whole, Color(GROUND)), 0);
    for (const kova_uint32 uiX : {uiWidth - GLYPH_WIDTH, kova_uint32(-GLYPH_WIDTH / 2)}) {
        EXPECT_EQ(pDisplay->DrawPixelExpand(pDisplay, scContextID, s_aucGlyph, uiX, uiHeight - GLYPH_HEIGHT,
                                            GLYPH_WIDTH, GLYPH_HEIGHT, GLYPH_WIDTH / 8, GlyphColor(PAPER),
                                            GlyphColor(INK), 0, KOVA_EXPAND_1X1Y),
                  0);
    }
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, scContextID, s_aucRows, uiWidth / 2, uiHeight - 5, 8, 8, 8), 0);
}

static void Plot(Picture_t &picture, int iX, int iY, kova_uint32 uiPixel)
{
    if (iX >= 0) memcpy(picture.At(iX, iY), &uiPixel, size_t(picture.iBytes));
}

static Picture_t Expected(int iPlane)
{
    const int iWidth = int(s_planes[iPlane].uiWidth), iHeight = int(s_planes[iPlane].uiHeight);
    Reference reference(s_planes[iPlane].uiWidth, s_planes[iPlane].uiHeight);
    reference.Fill(0, 0, iWidth, iHeight, GROUND);
    Picture_t picture = reference.Pixels();

    for (int y = iHeight - GLYPH_HEIGHT; y < iHeight; y++) {
        for (int x = 0; x < GLYPH_WIDTH; x++) {
            const kova_uint32 uiPixel = StoredColor(x % 2 == 0 ? INK : PAPER);
            Plot(picture, iWidth - GLYPH_WIDTH + x, y, uiPixel);
            Plot(picture, -GLYPH_WIDTH / 2 + x, y, uiPixel);
        }
    }
    // One byte per pixel in every format.
    for (int y = iHeight - 5; y < iHeight; y++) memset(picture.At(0, y) + iWidth / 2, ROWS, 8);
    return picture;
}

TEST(Switches, DrawAtOnceOnPlanesThatGrowAndShrink)
{
    if (Layer() == KOVA_GRAPHIC_LAYER1) GTEST_SKIP() << "a window is made anew by every activation";
    pKovaITextDisplay_t pDisplay = GivenDisplay();
    for (const auto &plane : s_planes) GivenContext(pDisplay, plane.uiWidth, plane.uiHeight);
    LoadPalette(pDisplay, 0);
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    pDisplay->Show(pDisplay, 0);
    std::vector<Picture_t> expected;
    for (int iPlane = 0; iPlane < 4; iPlane++) expected.push_back(Expected(iPlane));

    // Growing and shrinking in turn, and each plane after each other one.
    static const int aiOrder[] = {1, 0, 3, 2, 0, 2, 1, 3, 0, 1, 2, 3};
    int iWrong = 0;
    for (int iTurn = 0; iTurn < TURNS; iTurn++) {
        const int iPlane = aiOrder[iTurn % 12];
        Activate(pDisplay, iPlane);
        DrawAll(pDisplay, iPlane);
        const testing::AssertionResult same = Same(expected[size_t(iPlane)], Drawn());
        iWrong += !same;
        EXPECT_TRUE(same) << "turn " << iTurn << ", plane " << iPlane;
    }
    printf("turns: %d, wrong: %d\n", TURNS, iWrong);
}
