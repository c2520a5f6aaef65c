// SPDX-License-Identifier: MIT
#include "expect.h"

using namespace test;

static kova_uint8 s_aucBits[64];

// The default bitmap of a test: 8 by 10 pixels at 100,50, background 3, foreground 7.
struct Glyph_t {
    kova_uint8 *pucPixel = s_aucBits;
    kova_uint32 uiX = 100, uiY = 50, uiWidth = 8, uiHeight = 10, uiRowByte = 2;
    kova_sint32 siBg = 3, siFg = 7;
    kova_uint32 uiBitOffset = 5;
    KovaTextExpand_e eExpand = KOVA_EXPAND_1X1Y;
};

static int Draw(pKovaITextDisplay_t pTable, pKovaITextDisplay_t pDisplay, int iContext, const Glyph_t &g = {})
{
    return pTable->DrawPixelExpand(pDisplay, kova_sint8(iContext), g.pucPixel, g.uiX, g.uiY, g.uiWidth,
                                   g.uiHeight, g.uiRowByte, g.siBg, g.siFg, g.uiBitOffset, g.eExpand);
}

// A batch with space for one bitmap more than allowed.
struct Batch_t {
    kova_uint8 *apucPixel[101];
    kova_uint32 auiX[101], auiY[101], auiWidth[101], auiHeight[101], auiRowByte[101], auiBitOffset[101];
    kova_sint32 asiBg[101], asiFg[101];
    KovaTextExpand_e aeExpand[101];

    Batch_t()
    {
        for (size_t i = 0; i < 101; i++) Put(i, Glyph_t());
    }
    void Put(size_t i, const Glyph_t &g)
    {
        apucPixel[i] = g.pucPixel;
        auiX[i] = g.uiX;
        auiY[i] = g.uiY;
        auiWidth[i] = g.uiWidth;
        auiHeight[i] = g.uiHeight;
        auiRowByte[i] = g.uiRowByte;
        auiBitOffset[i] = g.uiBitOffset;
        asiBg[i] = g.siBg;
        asiFg[i] = g.siFg;
        aeExpand[i] = g.eExpand;
    }
};

static int Draw(pKovaITextDisplay_t pTable, pKovaITextDisplay_t pDisplay, int iContext, Batch_t &b,
                int iCount, bool bPixels = true)
{
    return pTable->BatchDrawPixelExpand(pDisplay, kova_sint8(iContext), bPixels ? b.apucPixel : nullptr,
                                        b.auiX, b.auiY, b.auiWidth, b.auiHeight, b.auiRowByte, b.asiBg,
                                        b.asiFg, b.auiBitOffset, b.aeExpand, kova_uint8(iCount));
}

static std::string Single(const std::string &call)
{
    return "enter DrawPixelExpand\n" + call + "exit DrawPixelExpand\n";
}

static std::string Batch(const std::string &call)
{
    return "enter BatchDrawPixelExpand\n" + call + "exit BatchDrawPixelExpand\n";
}

TEST(DrawPixelExpand, PassesTheBitmapOnAndLeavesTheFlipToTheCaller)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(Draw(pDisplay, pDisplay, 0), 0);

    EXPECT_EQ(Trace(), Single("  base.DrawMonoGlyph 8x10 row 2 bit 5 at 100,50 fg 0x7 bg 0x3 hz 1 vz 1\n"));
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(DrawPixelExpand, ReadsTheFactorsFromTheCode)
{
    const struct {
        int iCode, iHz, iVz;
    } rows[] = {{KOVA_EXPAND_1X1Y, 1, 1},
                {KOVA_EXPAND_1X2Y, 1, 2},
                {KOVA_EXPAND_1X4Y, 1, 4},
                {KOVA_EXPAND_2X1Y, 2, 1},
                {KOVA_EXPAND_2X2Y, 2, 2},
                {KOVA_EXPAND_2X4Y, 2, 4},
                {3, 1, 6},
                {7, 2, 6},
                {8, 1, 1},
                {0x70, 1, 1},
                {0xFE, 2, 4},
                {0x7FFFFFFB, 1, 6}};
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.iCode);
        Glyph_t glyph;
        Batch_t batch;
        glyph.eExpand = KovaTextExpand_e(row.iCode);
        batch.Put(0, glyph);
        const std::string factors = "hz " + std::to_string(row.iHz) + " vz " + std::to_string(row.iVz) + "\n";
        ClearTrace();
        EXPECT_EQ(Draw(pDisplay, pDisplay, 0, glyph), 0);
        EXPECT_TRUE(Contains(Trace(), factors)) << Trace();
        ClearTrace();
        EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 1), 0);
        EXPECT_TRUE(Contains(Trace(), factors)) << Trace();
    }
    Destroy(pDisplay);
}

TEST(DrawPixelExpand, LooksColoursUpOnlyInThePaletteCopyMode)
{
    const struct {
        bool bColor32, bPalette;
        int iFg;
        const char *pcColors;
    } rows[] = {
        {false, false, 7, "fg 0x7 bg 0x3 "},
        {false, false, -2, "fg 0xfffffffe bg 0x3 "},
        {true, false, 7, "fg 0x7 bg 0x3 "},
        {true, true, 7, "fg 0x7 bg 0x3 "}, // 32-bit mode wins
        {false, true, 7, "fg 0x44112233 bg 0xfffefdfc "},
        {false, true, 256, "fg 0 bg 0xfffefdfc "}, // past the end of the palette
        {false, true, -1, "fg 0 bg 0xfffefdfc "},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    KovaTextColor_t colors[] = {{0xFE, 0xFD, 0xFC, 0xFF}, {}, {}, {}, {0x11, 0x22, 0x33, 0x44}};
    EXPECT_EQ(pDisplay->SetPalette(pDisplay, 0, colors, 5, 3), 0);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.pcColors);
        Glyph_t glyph;
        Batch_t batch;
        glyph.siFg = row.iFg;
        batch.Put(0, glyph);
        RecordOf(pDisplay)->bColor32 = row.bColor32;
        RecordOf(pDisplay)->bTextDisp_Palette = row.bPalette;
        ClearTrace();
        EXPECT_EQ(Draw(pDisplay, pDisplay, 0, glyph), 0);
        EXPECT_TRUE(Contains(Trace(), row.pcColors)) << Trace();
        ClearTrace();
        EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 1), 0);
        EXPECT_TRUE(Contains(Trace(), row.pcColors)) << Trace();
    }
    Destroy(pDisplay);
}

TEST(DrawPixelExpand, ReportsAFailureAndMarksTheFrame)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    Fail("Surface.DrawMonoGlyph", DFB_UNSUPPORTED);

    EXPECT_EQ(Draw(pDisplay, pDisplay, 0), 0);

    EXPECT_TRUE(Contains(Trace(), " vz 1\n" + CheckLine(DFB_UNSUPPORTED) + "exit DrawPixelExpand\n"));
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

TEST(DrawPixelExpand, ReportsASurfaceThatIsNotThereAsDestroyed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Batch_t batch;
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay, pDisplay, 0), 0);
    EXPECT_EQ(Trace(), Single(CheckLine(DFB_DESTROYED)));
    ClearTrace();
    EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 2), 0);
    EXPECT_EQ(Trace(), Batch(CheckLine(DFB_DESTROYED)));
    Destroy(pDisplay);
}

TEST(DrawPixelExpand, AcceptsBitmapsOfUpToFortyEightPixels)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    const struct {
        kova_uint32 uiWidth, uiHeight;
        const char *pcError; // null if accepted
    } rows[] = {{48, 48, nullptr}, {0, 0, nullptr},          {49, 48, "width"},        {48, 49, "height"},
                {49, 49, "width"}, {0x80000000, 1, "width"}, {1, 0xFFFFFFFF, "height"}};
    for (const bool bShown : {true, false}) { // also refused while hidden
        if (!bShown) pDisplay->Hide(pDisplay, 0);
        for (const auto &row : rows) {
            SCOPED_TRACE(testing::Message() << row.uiWidth << "x" << row.uiHeight);
            Glyph_t glyph;
            Batch_t batch;
            glyph.uiWidth = row.uiWidth;
            glyph.uiHeight = row.uiHeight;
            batch.Put(2, glyph);
            for (const std::string function : {"DrawPixelExpand", "BatchDrawPixelExpand"}) {
                ClearTrace();
                const int iResult = function[0] == 'B' ? Draw(pDisplay, pDisplay, 0, batch, 3)
                                                       : Draw(pDisplay, pDisplay, 0, glyph);
                if (row.pcError) {
                    EXPECT_EQ(iResult, -1);
                    EXPECT_EQ(Trace(), "enter " + function + "\nERROR " + function +
                                           ": Can't support DrawPixelExpand with this " + row.pcError +
                                           "!\n");
                } else {
                    EXPECT_EQ(iResult, 0);
                    EXPECT_EQ(CountOf(Trace(), "MonoGlyph"), bShown ? 1 : 0);
                }
            }
        }
    }
    Destroy(pDisplay);
}

TEST(DrawPixelExpand, IsRefusedInThisOrder)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    Glyph_t nothing, wide, good;
    nothing.pucPixel = nullptr;
    nothing.uiWidth = wide.uiWidth = 49;
    const auto draw = [&](pKovaITextDisplay_t pThiz, int iContext, const Glyph_t &glyph) {
        ClearTrace();
        const int iResult = Draw(pDisplay, pThiz, iContext, glyph);
        return std::to_string(iResult) + " " + Trace();
    };
    const std::string error = "-1 enter DrawPixelExpand\nERROR DrawPixelExpand: ";

    EXPECT_EQ(draw(nullptr, 4, nothing), error + "NULL Pointer!\n");
    for (const int iContext : {4, -1, -128}) {
        EXPECT_EQ(draw(pDisplay, iContext, nothing), error + "Invalid context ID!\n");
    }
    EXPECT_EQ(draw(pDisplay, 0, nothing), error + "NULL Pointer!\n");
    EXPECT_EQ(draw(pDisplay, 0, wide), error + "Can't support DrawPixelExpand with this width!\n");
    EXPECT_EQ(draw(pDisplay, 0, good),
              "-1 enter DrawPixelExpand\n  ERROR DrawPixelExpand: Inactive context!\n");
    EXPECT_TRUE(LockIsFree(pDisplay));
    pDisplay->Hide(pDisplay, 1);
    EXPECT_EQ(draw(pDisplay, 0, good), "0 " + Single(""));
    EXPECT_EQ(draw(pDisplay, 1, good), "0 " + Single(""));
    Destroy(pDisplay);
}

TEST(BatchDrawPixelExpand, PassesAllBitmapsInOneCall)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Batch_t batch;
    Glyph_t other;
    other.pucPixel = nullptr; // elements are not checked
    other.uiX = 0xFFFFFFF0;
    other.uiY = 2;
    other.uiWidth = 3;
    other.uiHeight = 4;
    other.uiRowByte = 5;
    other.siBg = 6;
    other.siFg = 0x12345678;
    other.uiBitOffset = 9;
    other.eExpand = KOVA_EXPAND_2X4Y;
    batch.Put(1, other);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 2), 0);

    EXPECT_EQ(
        Trace(),
        Batch("  base.BatchDrawMonoGlyph 2: 8x10 row 2 bit 5 at 100,50 fg 0x7 bg 0x3 hz 1 vz 1; null 3x4 "
              "row 5 bit 9 at -16,2 fg 0x12345678 bg 0x6 hz 2 vz 4\n"));
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(BatchDrawPixelExpand, AcceptsFromNoneToAHundred)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Batch_t batch;

    RecordOf(pDisplay)->blast_frame_changed = 0;
    EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 0), 0);
    EXPECT_EQ(Trace(), Batch("  base.BatchDrawMonoGlyph 0\n")); // called anyway
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    ClearTrace();
    EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 100), 0);
    EXPECT_TRUE(Contains(Trace(), "  base.BatchDrawMonoGlyph 100: 8x10 "));
    EXPECT_EQ(CountOf(Trace(), "8x10 row 2 bit 5 at 100,50 fg 0x7 bg 0x3 hz 1 vz 1"), 100);
    for (const int iCount : {101, 255}) {
        ClearTrace();
        EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, iCount), -1);
        EXPECT_EQ(Trace(), "enter BatchDrawPixelExpand\n"
                           "ERROR BatchDrawPixelExpand: Can't draw so many characters at one time!\n");
    }
    Destroy(pDisplay);
}

TEST(BatchDrawPixelExpand, ChecksTheBitmapsOneAfterTheOther)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Batch_t batch;
    batch.auiHeight[1] = 49;
    batch.auiWidth[2] = 49;
    const std::string error = "enter BatchDrawPixelExpand\nERROR BatchDrawPixelExpand: ";

    EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 3), -1);
    EXPECT_EQ(Trace(), error + "Can't support DrawPixelExpand with this height!\n");
    ClearTrace();
    EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 1), 0); // the invalid ones are outside the batch
    EXPECT_TRUE(Contains(Trace(), "BatchDrawMonoGlyph 1: "));
    Destroy(pDisplay);
}

TEST(BatchDrawPixelExpand, ReportsAFailureAndMarksTheFrame)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Batch_t batch;
    RecordOf(pDisplay)->blast_frame_changed = 0;
    Fail("Surface.BatchDrawMonoGlyph", DFB_UNSUPPORTED);

    EXPECT_EQ(Draw(pDisplay, pDisplay, 0, batch, 1), 0);

    EXPECT_TRUE(Contains(Trace(), " vz 1\n" + CheckLine(DFB_UNSUPPORTED) + "exit BatchDrawPixelExpand\n"));
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

TEST(BatchDrawPixelExpand, IsRefusedInThisOrder)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    Batch_t wide, good;
    wide.auiWidth[0] = 49;
    const auto draw = [&](pKovaITextDisplay_t pThiz, int iContext, Batch_t &batch, int iCount, bool bPixels) {
        ClearTrace();
        const int iResult = Draw(pDisplay, pThiz, iContext, batch, iCount, bPixels);
        return std::to_string(iResult) + " " + Trace();
    };
    const std::string error = "-1 enter BatchDrawPixelExpand\nERROR BatchDrawPixelExpand: ";

    EXPECT_EQ(draw(nullptr, 4, wide, 101, false), error + "NULL Pointer!\n");
    for (const int iContext : {4, -1, -128}) {
        EXPECT_EQ(draw(pDisplay, iContext, wide, 101, false), error + "Invalid context ID!\n");
    }
    EXPECT_EQ(draw(pDisplay, 0, wide, 101, false), error + "NULL Pointer!\n");
    EXPECT_EQ(draw(pDisplay, 0, wide, 101, true), error + "Can't draw so many characters at one time!\n");
    EXPECT_EQ(draw(pDisplay, 0, wide, 100, true), error + "Can't support DrawPixelExpand with this width!\n");
    EXPECT_EQ(draw(pDisplay, 0, good, 1, true),
              "-1 enter BatchDrawPixelExpand\n  ERROR BatchDrawPixelExpand: Inactive context!\n");
    EXPECT_TRUE(LockIsFree(pDisplay));
    pDisplay->Hide(pDisplay, 1);
    EXPECT_EQ(draw(pDisplay, 0, good, 1, true), "0 " + Batch(""));
    EXPECT_EQ(draw(pDisplay, 1, good, 0, true), "0 " + Batch(""));
    Destroy(pDisplay);
}
