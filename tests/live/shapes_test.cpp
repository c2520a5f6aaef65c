// SPDX-License-Identifier: MIT
// Rectangles, lines and clip, compared with the same calls made on DirectFB directly.
#include "fixture.h"

using namespace live;

static void FillRect(pKovaITextDisplay_t pDisplay, kova_uint32 uiX, kova_uint32 uiY, kova_uint32 uiWidth,
                     kova_uint32 uiHeight, kova_uint32 i)
{
    KovaTextRect_t rect = {uiX, uiY, uiWidth, uiHeight};
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, Color(i)), 0);
}

TEST(Comparison, DetectsOnePixelOfAnotherColor)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;

    FillRect(pDisplay, 20, 20, 50, 30, 5);
    reference.Fill(20, 20, 50, 30, 5);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));

    reference.Fill(69, 49, 1, 1, 6);
    EXPECT_FALSE(Same(reference.Pixels(), Drawn()));
}

TEST(Comparison, DetectsAPictureMovedByOnePixel)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;

    FillRect(pDisplay, 20, 20, 50, 30, 5);
    reference.Fill(21, 20, 50, 30, 5);
    EXPECT_FALSE(Same(reference.Pixels(), Drawn()));
}

TEST(Show, ClearsThePlaneAndItsFirstPaletteEntryToTransparent)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    KovaTextColor_t white = {255, 255, 255, 255};
    FillRect(pDisplay, 0, 0, PLANE_WIDTH, PLANE_HEIGHT, 9);
    pDisplay->SetPalette(pDisplay, 0, &white, 1, 0);

    pDisplay->Show(pDisplay, 0);

    const Picture_t seen = Drawn();
    EXPECT_EQ(seen.iWidth, int(PLANE_WIDTH));
    EXPECT_EQ(seen.iHeight, int(PLANE_HEIGHT));
    for (kova_uint8 uc : seen.data) ASSERT_EQ(uc, 0);
    if (Colors() == INDEX) {
        IDirectFBSurface *const pSurface = DisplaySurface();
        IDirectFBPalette *pPalette = nullptr;
        DFBColor color = {1, 1, 1, 1};
        ASSERT_EQ(pSurface->GetPalette(pSurface, &pPalette), DFB_OK);
        ASSERT_EQ(pPalette->GetEntries(pPalette, &color, 1, 0), DFB_OK);
        EXPECT_EQ(color.a + color.r + color.g + color.b, 0);
        pPalette->Release(pPalette);
        pSurface->Release(pSurface);
    }
}

TEST(Show, LoadsThePaletteIntoTheSurface)
{
    if (Colors() != INDEX) GTEST_SKIP() << "only an indexed surface has a palette";
    GivenShownDisplay();
    IDirectFBSurface *const pSurface = DisplaySurface();
    IDirectFBPalette *pPalette = nullptr;
    DFBColor colors[256];

    ASSERT_EQ(pSurface->GetPalette(pSurface, &pPalette), DFB_OK);
    ASSERT_EQ(pPalette->GetEntries(pPalette, colors, 256, 0), DFB_OK);
    for (size_t i = 0; i < 256; i++) {
        const KovaTextColor_t c = TestPalette()[i];
        ASSERT_EQ(colors[i].a, c.a) << i;
        ASSERT_EQ(colors[i].r, c.r) << i;
        ASSERT_EQ(colors[i].g, c.g) << i;
        ASSERT_EQ(colors[i].b, c.b) << i;
    }
    pPalette->Release(pPalette);
    pSurface->Release(pSurface);
}

TEST(Hide, ClearsThePlaneAndPreventsDrawing)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    GivenFont(pDisplay, FONT, 20);
    FillRect(pDisplay, 10, 10, 50, 50, 3);
    pDisplay->Flip(pDisplay, 0);

    pDisplay->Hide(pDisplay, 0);
    FillRect(pDisplay, 10, 10, 50, 50, 3);
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 0, 0, 50, 50, Color(4)), 0);
    EXPECT_EQ(DrawText(pDisplay, 0, "hidden", 10, 10), 0);

    for (kova_uint8 uc : Drawn().data) ASSERT_EQ(uc, 0);
}

TEST(FillRect, DrawsWhatDirectFBDraws)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;

    for (kova_uint32 i = 0; i < 256; i++) {
        const kova_uint32 uiX = i % 20 * 16, uiY = i / 20 * 14;
        FillRect(pDisplay, uiX, uiY, i % 17 + 1, i % 13 + 1, i);
        reference.Fill(int(uiX), int(uiY), int(i % 17 + 1), int(i % 13 + 1), i);
    }
    FillRect(pDisplay, PLANE_WIDTH - 7, PLANE_HEIGHT - 5, 100, 100, 77);
    reference.Fill(PLANE_WIDTH - 7, PLANE_HEIGHT - 5, 100, 100, 77);
    FillRect(pDisplay, kova_uint32(-4), kova_uint32(-3), 10, 10, 78); // starts outside the plane
    reference.Fill(-4, -3, 10, 10, 78);

    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(DrawLine, DrawsWhatDirectFBDraws)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;

    for (int i = 0; i < 40; i++) {
        const int x1 = i * 53 % 400 - 40, y1 = i * 31 % 260 - 30, x2 = i * 97 % 400 - 40,
                  y2 = i * 71 % 260 - 30;
        EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, x1, y1, x2, y2, Color(kova_uint32(i * 5 + 1))), 0);
        reference.SetColor(kova_uint32(i * 5 + 1));
        reference->DrawLine(reference.Surface(), x1, y1, x2, y2);
    }

    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

TEST(SetClip, ClipsAsDirectFBClips)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;
    KovaTextRect_t rect = {30, 40, 100, 50};
    const DFBRegion region = {30, 40, 129, 89};

    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);
    reference->SetClip(reference.Surface(), &region);
    FillRect(pDisplay, 0, 0, 60, 60, 21);
    reference.Fill(0, 0, 60, 60, 21);
    FillRect(pDisplay, 120, 80, 60, 60, 22);
    reference.Fill(120, 80, 60, 60, 22);
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 0, 0, 319, 199, Color(23)), 0);
    reference.SetColor(23);
    reference->DrawLine(reference.Surface(), 0, 0, 319, 199);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));

    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, nullptr), 0);
    reference->SetClip(reference.Surface(), nullptr);
    FillRect(pDisplay, 200, 10, 60, 60, 24);
    reference.Fill(200, 10, 60, 60, 24);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}
