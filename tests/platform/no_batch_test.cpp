// SPDX-License-Identifier: MIT
// The library built against a header with DrawMonoGlyph and without BatchDrawMonoGlyph. The platform draws the glyphs of
// a batch one by one, because the bit order of its call need not be that of the library's own drawing.
#include "expect.h"

using namespace test;

// Three glyphs that differ in every argument.
static int DrawBatch(pKovaITextDisplay_t pDisplay, kova_uint8 ucCount)
{
    static kova_uint8 s_aucData[3][8];
    kova_uint8 *apucData[] = {s_aucData[0], s_aucData[1], s_aucData[2]};
    kova_uint32 auiX[] = {1, 2, 3}, auiY[] = {4, 5, 6}, auiWidth[] = {8, 16, 24}, auiHeight[] = {1, 2, 3};
    kova_uint32 auiRowByte[] = {3, 4, 5}, auiBitOffset[] = {0, 1, 2};
    kova_sint32 asiBg[] = {10, 11, 12}, asiFg[] = {13, 14, 15};
    KovaTextExpand_e aeExpand[] = {KOVA_EXPAND_1X1Y, KOVA_EXPAND_1X2Y, KOVA_EXPAND_2X4Y};

    ClearTrace();
    return pDisplay->BatchDrawPixelExpand(pDisplay, 0, apucData, auiX, auiY, auiWidth, auiHeight, auiRowByte,
                                          asiBg, asiFg, auiBitOffset, aeExpand, ucCount);
}

static const char *const FIRST = "DrawMonoGlyph 8x1 row 3 bit 0 at 1,4 fg 0xd bg 0xa hz 1 vz 1\n";
static const char *const SECOND = "DrawMonoGlyph 16x2 row 4 bit 1 at 2,5 fg 0xe bg 0xb hz 1 vz 2\n";
static const char *const THIRD = "DrawMonoGlyph 24x3 row 5 bit 2 at 3,6 fg 0xf bg 0xc hz 2 vz 4\n";

TEST(PlatformWithoutABatchCall, DrawsABatchGlyphByGlyph)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string base = NameOf(RecordOf(pDisplay)->pBaseSurface) + ".";

    EXPECT_EQ(DrawBatch(pDisplay, 3), 0);
    EXPECT_EQ(CallsOnly(Trace()), base + FIRST + base + SECOND + base + THIRD);

    EXPECT_EQ(DrawBatch(pDisplay, 0), 0);
    EXPECT_EQ(CallsOnly(Trace()), "");
    Destroy(pDisplay);
}

TEST(PlatformWithoutABatchCall, DrawsTheOtherGlyphsAndReportsTheFirstFailure)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    const std::string base = NameOf(RecordOf(pDisplay)->pBaseSurface) + ".";
    FailNth("Surface.DrawMonoGlyph", 2, DFB_INVAREA);
    FailNth("Surface.DrawMonoGlyph", 3, DFB_BUSY);

    EXPECT_EQ(DrawBatch(pDisplay, 3), 0);

    EXPECT_EQ(CallsOnly(Trace()), base + FIRST + base + SECOND + base + THIRD + CheckLine(DFB_INVAREA));
    Destroy(pDisplay);
}

TEST(PlatformWithoutABatchCall, ReportsAMissingSurfaceOnce)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->pActiveSurface = nullptr;

    EXPECT_EQ(DrawBatch(pDisplay, 3), 0);

    EXPECT_EQ(CallsOnly(Trace()), CheckLine(DFB_DESTROYED));
    Destroy(pDisplay);
}

// Its other calls are a platform's: nothing is taken anew after a configuration.
TEST(PlatformWithoutABatchCall, KeepsTheSurfaceOverAConfiguration)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pBaseSurface;

    EXPECT_EQ(pDisplay->Create32BitPlane(pDisplay, 0, 0, 0, 1280, 720), 0);

    EXPECT_EQ(RecordOf(pDisplay)->pBaseSurface, pSurface);
    EXPECT_EQ(CountOf(Trace(), ".GetSurface\n"), 0);
    Destroy(pDisplay);
}
