// SPDX-License-Identifier: MIT
// Copies: rows of bytes compared with a plain loop, and areas of the surface compared with DirectFB's own
// blit with the same flags and colour key.
#include "fixture.h"

#include <random>

using namespace live;

enum { ROUNDS = 3000 };

static kova_uint32 RedGreenBlue(kova_uint32 i)
{
    const KovaTextColor_t c = TestPalette()[i];
    return kova_uint32(c.r) << 16 | kova_uint32(c.g) << 8 | c.b;
}

static void SetDstColorKey(Reference &reference, kova_uint32 i)
{
    IDirectFBSurface *const pSurface = reference.Surface();
    const kova_uint32 uiColor = RedGreenBlue(i);
    const DFBResult eResult = Colors() == INDEX
                                  ? pSurface->SetDstColorKeyIndex(pSurface, i)
                                  : pSurface->SetDstColorKey(pSurface, kova_uint8(uiColor >> 16),
                                                             kova_uint8(uiColor >> 8), kova_uint8(uiColor));
    ASSERT_EQ(eResult, DFB_OK);
}

static void FillStripes(pKovaITextDisplay_t pDisplay, Reference &reference)
{
    for (kova_uint32 i = 0; i < 20; i++) {
        KovaTextRect_t rect = {i * 16, 0, 16, PLANE_HEIGHT};
        pDisplay->FillRect(pDisplay, 0, &rect, Color(i % 4 * 4 + 1));
        reference.Fill(int(i) * 16, 0, 16, PLANE_HEIGHT, i % 4 * 4 + 1);
    }
}

TEST(SetDstColorKey, LetsFillsThroughWhereTheKeyLies)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;
    KovaTextRect_t rect = {10, 20, 200, 100};
    FillStripes(pDisplay, reference);
    const Picture_t stripes = Drawn();

    EXPECT_EQ(pDisplay->SetDstColorKey(pDisplay, 0, Color(5)), 0);
    SetDstColorKey(reference, 5);
    EXPECT_EQ(pDisplay->SetDrawingFlags(
                  pDisplay, 0, KovaTextDrawFlag_e(KOVA_DSDRAW_DST_COLORKEY | KOVA_DSDRAW_STRING_SHARP)),
              0);
    reference->SetDrawingFlags(reference.Surface(), DSDRAW_DST_COLORKEY);
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, Color(30)), 0);
    reference.Fill(10, 20, 200, 100, 30);
    const Picture_t keyed = Drawn();
    EXPECT_TRUE(Same(reference.Pixels(), keyed));
    EXPECT_FALSE(Same(stripes, keyed));
    // A stripe in the key colour is overwritten, its neighbour is not.
    EXPECT_NE(keyed.Pixel(20, 50), stripes.Pixel(20, 50));
    EXPECT_EQ(keyed.Pixel(40, 50), stripes.Pixel(40, 50));

    EXPECT_EQ(pDisplay->SetDrawingFlags(pDisplay, 0, KOVA_DSDRAW_STRING_SHARP),
              0); // not a DirectFB flag
    reference->SetDrawingFlags(reference.Surface(), DSDRAW_NOFX);
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, Color(33)), 0);
    reference.Fill(10, 20, 200, 100, 33);
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
}

// A copy reads the front buffer, so both sides need the last frame there.
static void Present(pKovaITextDisplay_t pDisplay, Reference &reference)
{
    ASSERT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    ASSERT_TRUE(Eventually([] { return OnScreen().data == Drawn().data; }));
    reference.Flip();
}

static void Copy(pKovaITextDisplay_t pDisplay, Reference &reference, int iX, int iY)
{
    KovaTextRect_t rect = {8, 30, 90, 60};
    const DFBRectangle source = {8, 30, 90, 60};

    EXPECT_EQ(pDisplay->Blit(pDisplay, 0, &rect, kova_uint32(iX), kova_uint32(iY)), 0);
    EXPECT_EQ(reference->Blit(reference.Surface(), reference.Surface(), &source, iX, iY), DFB_OK);
}

TEST(Blit, CopiesAsDirectFBCopiesUnderEveryFlag)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    std::vector<Picture_t> pictures;

    for (int eFlags : {0, 8, 16, 24, 7, 255}) {
        Reference reference;
        pDisplay->Show(pDisplay, 0);
        FillStripes(pDisplay, reference);
        EXPECT_EQ(pDisplay->SetDstColorKey(pDisplay, 0, Color(9)), 0);
        SetDstColorKey(reference, 9);
        Present(pDisplay, reference);
        // The source key is DirectFB's default: no operation sets it.
        EXPECT_EQ(pDisplay->SetBlittingFlags(pDisplay, 0, KovaTextBlitFlag_e(eFlags)), 0);
        reference->SetBlittingFlags(reference.Surface(), DFBSurfaceBlittingFlags(eFlags & 24));
        Copy(pDisplay, reference, 154, 100);
        Present(pDisplay, reference);
        Copy(pDisplay, reference, 30, 50); // overlapping
        Present(pDisplay, reference);
        Copy(pDisplay, reference, 290, 190); // partly outside
        pictures.push_back(Drawn());
        EXPECT_TRUE(Same(reference.Pixels(), pictures.back())) << eFlags;
    }
    EXPECT_FALSE(Same(pictures[0], pictures[2])); // the destination key makes a difference
    EXPECT_TRUE(Same(pictures[0], pictures[4]));  // 7 contains no valid flag
    EXPECT_TRUE(Same(pictures[3], pictures[5]));  // 255 contains both
}

// A property of DirectFB that callers must know: a copy does not include what was drawn since the last flip.
TEST(Blit, CopiesWhatWasLastFlipped)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;
    Present(pDisplay, reference);
    FillStripes(pDisplay, reference);

    Copy(pDisplay, reference, 154, 100);

    const Picture_t seen = Drawn();
    EXPECT_TRUE(Same(reference.Pixels(), seen));
    EXPECT_EQ(seen.Pixel(160, 120), 0u);
}

// The clip of the display, as set by the last rectangle.
struct Clip_t {
    kova_uint32 uiX = 0, uiY = 0, uiWidth = PLANE_WIDTH, uiHeight = PLANE_HEIGHT;

    bool HasColumn(kova_uint32 uiColumn) const
    {
        return uiColumn >= uiX && uiColumn < uiX + uiWidth && uiColumn < PLANE_WIDTH;
    }
    bool HasRow(kova_uint32 uiRow) const
    {
        return uiRow >= uiY && uiRow < uiY + uiHeight && uiRow < PLANE_HEIGHT;
    }
};

// One byte per pixel in every format. The source starts at its first byte even if the clip removes its first
// columns and rows. A start left of or above the plane wraps to a huge number, so nothing is copied.
static void CopyRows(Picture_t &picture, const Clip_t &clip, const kova_uint8 *pucSource, kova_uint32 uiX,
                     kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight, kova_uint32 uiRowByte)
{
    if (uiX >= 0x80000000u || uiY >= 0x80000000u) return;
    kova_uint32 uiSourceRow = 0;
    for (kova_uint32 uiRow = uiY; uiRow < uiY + uiHeight; uiRow++) {
        if (!clip.HasRow(uiRow)) continue;
        kova_uint8 *const pucTarget = picture.At(0, int(uiRow));
        kova_uint32 uiSourceColumn = 0;
        for (kova_uint32 uiColumn = uiX; uiColumn < uiX + uiWidth; uiColumn++) {
            if (!clip.HasColumn(uiColumn)) continue;
            pucTarget[uiColumn] = pucSource[uiSourceRow * uiRowByte + uiSourceColumn];
            uiSourceColumn++;
        }
        uiSourceRow++;
    }
}

TEST(DrawPixel, CopiesRowsAsAPlainLoopDoes)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    std::mt19937 random(20261);
    const auto among = [&](int iFrom, int iTo) { return int(random() % unsigned(iTo - iFrom + 1)) + iFrom; };
    Picture_t expected = Drawn();
    Clip_t clip;
    int iChanged = 0;

    pDisplay->SetFlip(pDisplay, Layer() == KOVA_GRAPHIC_LAYER1); // a flip per call would only take time
    for (int i = 0; i < ROUNDS; i++) {
        if (i % 7 == 3) {
            clip.uiX = kova_uint32(among(0, PLANE_WIDTH - 1));
            clip.uiY = kova_uint32(among(0, PLANE_HEIGHT - 1));
            clip.uiWidth = kova_uint32(among(1, PLANE_WIDTH)); // can extend past the plane
            clip.uiHeight = kova_uint32(among(1, PLANE_HEIGHT));
            KovaTextRect_t rect = {clip.uiX, clip.uiY, clip.uiWidth, clip.uiHeight};
            ASSERT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);
        } else if (i % 7 == 6) {
            ASSERT_EQ(pDisplay->SetClip(pDisplay, 0, nullptr),
                      0); // removes DirectFB's clip, but not this one
        }
        const auto uiWidth = kova_uint32(among(0, 80)), uiHeight = kova_uint32(among(0, 60));
        const kova_uint32 uiRowByte = uiWidth + kova_uint32(among(0, 9));
        const auto uiX = kova_uint32(among(-30, PLANE_WIDTH + 20));
        const auto uiY = kova_uint32(among(-20, PLANE_HEIGHT + 20));
        // Exactly the bytes of the rows, so that a sanitizer detects reads beyond them.
        std::vector<kova_uint8> source(uiHeight ? (uiHeight - 1) * uiRowByte + uiWidth : 0);
        for (kova_uint8 &uc : source) uc = kova_uint8(random());
        source.reserve(1);

        ASSERT_EQ(pDisplay->DrawPixel(pDisplay, 0, source.data(), uiX, uiY, uiWidth, uiHeight, uiRowByte), 0);
        const Picture_t before = expected;
        CopyRows(expected, clip, source.data(), uiX, uiY, uiWidth, uiHeight, uiRowByte);
        iChanged += before.data != expected.data;
        ASSERT_TRUE(Same(expected, Drawn()))
            << "round " << i << ": " << int(uiX) << "," << int(uiY) << " " << uiWidth << "x" << uiHeight
            << " in " << clip.uiX << "," << clip.uiY << " " << clip.uiWidth << "x" << clip.uiHeight;
    }
    EXPECT_GT(iChanged, ROUNDS / 10); // enough of them are inside the clip
}

// 6 of 10 columns are visible, and they show the first 6 of the bitmap, not the last.
TEST(DrawPixel, ShowsTheFirstColumnsOfABitmapClippedAtItsLeft)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    KovaTextRect_t rect = {50, 20, 100, 100};
    std::vector<kova_uint8> source = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    ASSERT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, source.data(), 46, 20, 10, 1, 10), 0);

    Picture_t seen = Drawn();
    const kova_uint8 *const pucRow = seen.At(0, 20);
    for (int i = 0; i < 6; i++) EXPECT_EQ(pucRow[50 + i], i + 1);
    EXPECT_EQ(pucRow[49], 0);
    EXPECT_EQ(pucRow[56], 0);
}

TEST(DrawPixel, DrawsNothingUnderAClipThatStartsOutsideThePlane)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    KovaTextRect_t rect = {kova_uint32(-10), 0, 100, 100};
    std::vector<kova_uint8> source(100, 9);
    ASSERT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, source.data(), 5, 5, 10, 10, 10), 0);

    for (kova_uint8 uc : Drawn().data) ASSERT_EQ(uc, 0); // the comparison with the clip is unsigned
}
