// SPDX-License-Identifier: MIT
#include "expect.h"

#include <numeric>

using namespace test;

// Rows of 16 bytes; each byte holds its own index.
static std::vector<kova_uint8> Bitmap(int iRows)
{
    std::vector<kova_uint8> bytes(size_t(iRows) * 16);
    std::iota(bytes.begin(), bytes.end(), kova_uint8(1));
    return bytes;
}

static void Clip(pKovaITextDisplay_t pDisplay, int x1, int y1, int x2, int y2)
{
    RecordOf(pDisplay)->clip = {x1, y1, x2, y2};
}

static kova_uint8 ByteAt(pKovaITextDisplay_t pDisplay, int x, int y)
{
    int iPitch = 0;
    const unsigned char *const pucPixels = Pixels(RecordOf(pDisplay)->pActiveSurface, &iPitch);
    return pucPixels[size_t(y) * size_t(iPitch) + size_t(x)];
}

// The number of bytes of the surface, including its padding, that are not 0.
static int BytesWritten(pKovaITextDisplay_t pDisplay)
{
    int iPitch = 0, iCount = 0;
    const unsigned char *const pucPixels = Pixels(RecordOf(pDisplay)->pActiveSurface, &iPitch);
    for (size_t i = 0; i < size_t(iPitch) * PLANE_HEIGHT; i++) iCount += pucPixels[i] != 0;
    return iCount;
}

static std::string Drawn(const std::string &surface, const std::string &layer)
{
    return "enter DrawPixel\n  " + surface + ".Lock WRITE\n  " + surface + ".Unlock\n  " + layer +
           ".GetConfiguration\n  " + surface + ".Flip all WAIT|BLIT|ONSYNC\nexit DrawPixel\n";
}

static const char *const NOTHING_DRAWN = "enter DrawPixel\n"; // no exit trace

TEST(DrawPixel, CopiesRowsIntoTheSurfaceAndFlips)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(3);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 100, 50, 10, 3, 16), 0);

    EXPECT_EQ(Trace(), Drawn("base", "layer"));
    for (int y = 0; y < 3; y++) {
        for (int x = 0; x < 10; x++) EXPECT_EQ(ByteAt(pDisplay, 100 + x, 50 + y), 1 + 16 * y + x);
    }
    EXPECT_EQ(BytesWritten(pDisplay), 30);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(DrawPixel, MarksTheFrameAndDefersAFlipThatComesTooSoon)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 0, 1, 1, 16), 0);
    EXPECT_EQ(Trace(), "enter DrawPixel\n"
                       "  base.Lock WRITE\n"
                       "  base.Unlock\n"
                       "  base.GetClip\n"
                       "exit DrawPixel\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);

    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 0), 0); // without a flip the flag stays visible
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 0, 1, 1, 16), 0);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

struct Cut_t {
    const char *pcName;
    int clip[4];
    kova_uint32 uiX, uiY, uiWidth, uiHeight;
    int left, top, width, height; // the part copied; with width 0 nothing is copied or locked
};

// The source has 16 rows of 16 bytes.
static const Cut_t CUTS[] = {
    {"Inside", {0, 0, 719, 479}, 5, 6, 7, 8, 5, 6, 7, 8},
    {"CutLeft", {10, 20, 109, 69}, 6, 20, 10, 2, 10, 20, 6, 2},
    {"CutTop", {10, 20, 109, 69}, 10, 17, 4, 5, 10, 20, 4, 2},
    {"CutRight", {10, 20, 109, 69}, 105, 20, 10, 2, 105, 20, 5, 2},
    {"CutBottom", {10, 20, 109, 69}, 10, 68, 4, 5, 10, 68, 4, 2},
    {"CutEverywhere", {10, 20, 12, 22}, 8, 18, 16, 16, 10, 20, 3, 3},
    {"LastPixelOfTheClip", {10, 20, 109, 69}, 109, 69, 5, 5, 109, 69, 1, 1},
    {"RightOfTheClip", {10, 20, 109, 69}, 110, 20, 5, 5, 0, 0, 0, 0},
    {"BelowTheClip", {10, 20, 109, 69}, 10, 70, 5, 5, 0, 0, 0, 0},
    {"LeftOfTheClip", {10, 20, 109, 69}, 5, 20, 5, 5, 0, 0, 0, 0},
    {"AboveTheClip", {10, 20, 109, 69}, 10, 15, 5, 5, 0, 0, 0, 0},
    {"NoWidth", {0, 0, 719, 479}, 5, 6, 0, 8, 0, 0, 0, 0},
    {"NoHeight", {0, 0, 719, 479}, 5, 6, 7, 0, 0, 0, 0, 0},
    {"NoWidthAtTheEdge", {0, 0, 719, 479}, 0, 6, 0, 8, 0, 0, 0, 0},
    {"NoHeightAtTheEdge", {0, 0, 719, 479}, 5, 0, 7, 0, 0, 0, 0, 0},
    {"FarRight", {0, 0, 719, 479}, 0x80000000, 0, 5, 5, 0, 0, 0, 0},
    {"NegativeStart", {0, 0, 719, 479}, 0xFFFFFFFE, 0, 5, 5, 0, 0, 0, 0},
    {"ClipBeyondTheSurface", {0, 0, 9999, 9999}, 715, 478, 16, 16, 715, 478, 5, 2},
    {"OutsideOfTheSurface", {0, 0, 9999, 9999}, 720, 480, 5, 5, 0, 0, -2, 0},
    {"ClipUpsideDown", {109, 69, 10, 20}, 20, 30, 5, 5, 0, 0, 0, 0},
};

static void PrintTo(const Cut_t &cut, std::ostream *pStream)
{
    *pStream << cut.pcName;
}

class DrawPixelClipped : public testing::TestWithParam<Cut_t>
{
};

TEST_P(DrawPixelClipped, CopiesTheCommonPartFromTheBitmapsOwnCorner)
{
    const Cut_t &cut = GetParam();
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap(256, 0);
    for (size_t i = 0; i < bitmap.size(); i++) bitmap[i] = kova_uint8(i % 255 + 1);
    Clip(pDisplay, cut.clip[0], cut.clip[1], cut.clip[2], cut.clip[3]);

    EXPECT_EQ(
        pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), cut.uiX, cut.uiY, cut.uiWidth, cut.uiHeight, 16), 0);

    // If the clip extends past the surface, the surface is locked, but no byte is written.
    EXPECT_EQ(Trace(), cut.width == 0 ? NOTHING_DRAWN : Drawn("base", "layer"));
    int iExpected = 0;
    for (int y = 0; y < cut.height; y++) {
        for (int x = 0; x < cut.width; x++, iExpected++) {
            EXPECT_EQ(ByteAt(pDisplay, cut.left + x, cut.top + y), bitmap[size_t(16 * y + x)])
                << x << "," << y;
        }
    }
    EXPECT_EQ(BytesWritten(pDisplay), iExpected);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

INSTANTIATE_TEST_SUITE_P(Cuts, DrawPixelClipped, testing::ValuesIn(CUTS),
                         [](const auto &row) { return std::string(row.param.pcName); });

TEST(DrawPixel, CopiesOnlyTheSurfaceWidthOfAHugeBitmap)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    Clip(pDisplay, 0, 0, -1, -1); // the largest unsigned numbers

    // The right edge is the largest number minus one.
    std::vector<kova_uint8> wide(PLANE_WIDTH, 9);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, wide.data(), 0, 0, 0xFFFFFFFF, 1, 0), 0);
    EXPECT_EQ(Trace(), Drawn("base", "layer"));
    EXPECT_EQ(BytesWritten(pDisplay), int(PLANE_WIDTH)); // the width of the surface
    TurnClock(16000);
    ClearTrace();
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 0, 0, 1, 16), 0);
    EXPECT_EQ(Trace(), NOTHING_DRAWN);
    Destroy(pDisplay);
}

TEST(DrawPixel, CountsBytesOnATrueColourSurfaceToo)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    std::vector<kova_uint8> bitmap = Bitmap(2);

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 3, 4, 5, 2, 16), 0);

    EXPECT_EQ(Trace(), Drawn("base", "layer"));
    for (int y = 0; y < 2; y++) {
        for (int x = 0; x < 5; x++) EXPECT_EQ(ByteAt(pDisplay, 3 + x, 4 + y), 1 + 16 * y + x);
    }
    EXPECT_EQ(BytesWritten(pDisplay), 10);
    Destroy(pDisplay);
}

TEST(DrawPixel, StaysWithinTheSurfaceThatWasMadeWhenThePlaneSizeRunsAhead)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam(1280, 720);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 1); // refused, but its size is stored
    Clip(pDisplay, 0, 0, 1279, 719);
    ClearTrace();

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 716, 479, 10, 1, 16), 0);

    EXPECT_EQ(BytesWritten(pDisplay), 4);
    Destroy(pDisplay);
}

TEST(DrawPixel, WritesNothingRightOfOrBelowTheSurfaceThatWasMade)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(20);
    RecordOf(pDisplay)->sLayerSize.uiWidth = 300; // the memory is larger, so that excess bytes are visible
    RecordOf(pDisplay)->sLayerSize.uiHeight = 100;

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 90, 10, 20, 16), 0);
    EXPECT_EQ(BytesWritten(pDisplay), 10 * 10);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 100, 10, 20, 16), 0);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 200, 10, 20, 16), 0);
    EXPECT_EQ(BytesWritten(pDisplay), 10 * 10);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 295, 0, 10, 20, 16), 0);
    EXPECT_EQ(BytesWritten(pDisplay), 10 * 10 + 5 * 20);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 300, 0, 10, 20, 16), 0);
    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 400, 0, 10, 20, 16), 0);
    EXPECT_EQ(BytesWritten(pDisplay), 10 * 10 + 5 * 20);
    Destroy(pDisplay);
}

TEST(DrawPixel, FillsTheBackupSurfaceWhateverSizeTheBaseSurfaceHas)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    GivenBackupSurface(pDisplay);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);

    for (const bool bSmaller : {true, false}) {
        RecordOf(pDisplay)->sLayerSize.uiWidth = bSmaller ? 300 : 1280;
        RecordOf(pDisplay)->sLayerSize.uiHeight = bSmaller ? 100 : 720;
        Clip(pDisplay, 0, 0, 1279, 719);
        const int iBefore = BytesWritten(pDisplay);
        EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 716, bSmaller ? 470 : 471, 10, 1, 16), 0);
        EXPECT_EQ(BytesWritten(pDisplay), iBefore + 4);
    }
    Destroy(pDisplay);
}

TEST(DrawPixel, DrawsOnTheBackupSurfaceInUse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    GivenBackupSurface(pDisplay);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 719, 479, 10, 1, 16), 0);

    EXPECT_EQ(Trace(), Drawn("backup", "layer"));
    EXPECT_EQ(ByteAt(pDisplay, 719, 479), 1);
    EXPECT_EQ(BytesWritten(pDisplay), 1);
    Destroy(pDisplay);
}

TEST(DrawPixel, FailsSilentlyWhenTheSurfaceCannotBeLocked)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    FailNth("Surface.Lock", 1, DFB_LOCKED);

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 0, 1, 1, 16), -1);

    EXPECT_EQ(Trace(), "enter DrawPixel\n  base.Lock WRITE\nexit DrawPixel\n");
    EXPECT_EQ(StandardError(), "");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(DrawPixel, FailsSilentlyWhenTheSurfaceCannotBeUnlocked)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    FailNth("Surface.Unlock", 1, DFB_FAILURE);

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 0, 1, 1, 16), -1);

    EXPECT_EQ(Trace(), "enter DrawPixel\n  base.Lock WRITE\n  base.Unlock\nexit DrawPixel\n"); // no flip
    EXPECT_EQ(StandardError(), "");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    EXPECT_EQ(ByteAt(pDisplay, 0, 0), 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(DrawPixel, FailsSilentlyWithoutASurface)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist
    ClearTrace();

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 0, 1, 1, 16), -1);

    EXPECT_EQ(Trace(), "enter DrawPixel\nexit DrawPixel\n");
    EXPECT_EQ(StandardError(), "");
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(DrawPixel, DoesNotWaitForAPendingFlip)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::vector<kova_uint8> bitmap = Bitmap(1);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    ASSERT_TRUE(AwaitSleeper());
    ClearTrace();

    EXPECT_EQ(pDisplay->DrawPixel(pDisplay, 0, bitmap.data(), 0, 0, 1, 1, 16), 0);

    EXPECT_FALSE(Contains(Trace(), "usleep"));
    Destroy(pDisplay);
}

TEST(DrawPixel, IsRefusedInThisOrder)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    std::vector<kova_uint8> bitmap = Bitmap(1);
    const auto draw = [&](pKovaITextDisplay_t pThiz, int iContext, kova_uint8 *pucPixel,
                          kova_uint32 uiWidth) {
        ClearTrace();
        const int iResult = pDisplay->DrawPixel(pThiz, kova_sint8(iContext), pucPixel, 0, 0, uiWidth, 1, 16);
        return std::to_string(iResult) + " " + Trace();
    };
    kova_uint8 *const pucPixel = bitmap.data();

    EXPECT_EQ(draw(nullptr, 4, nullptr, 0), "-1 enter DrawPixel\nERROR DrawPixel: NULL Pointer!\n");
    EXPECT_EQ(draw(pDisplay, 4, nullptr, 0), "-1 enter DrawPixel\nERROR DrawPixel: NULL Pointer!\n");
    for (const int iContext : {4, -1, -128}) {
        EXPECT_EQ(draw(pDisplay, iContext, pucPixel, 0),
                  "-1 enter DrawPixel\nERROR DrawPixel: Invalid context ID!\n");
    }
    EXPECT_EQ(draw(pDisplay, 0, pucPixel, 0), "0 enter DrawPixel\n"); // checked before the context
    EXPECT_EQ(draw(pDisplay, 0, pucPixel, 1), "-1 enter DrawPixel\n  ERROR DrawPixel: Inactive context!\n");
    EXPECT_TRUE(LockIsFree(pDisplay));
    pDisplay->Hide(pDisplay, 1);
    EXPECT_EQ(draw(pDisplay, 0, pucPixel, 1), "0 enter DrawPixel\nexit DrawPixel\n");
    EXPECT_EQ(draw(pDisplay, 1, pucPixel, 0),
              "0 enter DrawPixel\nexit DrawPixel\n"); // checked before it is found empty
    EXPECT_EQ(draw(pDisplay, 1, nullptr, 1), "-1 enter DrawPixel\nERROR DrawPixel: NULL Pointer!\n");
    Destroy(pDisplay);
}

// ---- blit

TEST(Blit, CopiesWithinTheSurfaceAndFlips)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 100, 50};

    EXPECT_EQ(pDisplay->Blit(pDisplay, 0, &rect, 15, 25), 0); // overlapping, passed on unchanged

    EXPECT_EQ(Trace(), "enter Blit\n"
                       "  base.Blit base 10,20 100x50 to 15,25\n"
                       "  layer.GetConfiguration\n"
                       "  base.Flip all WAIT|BLIT|ONSYNC\n"
                       "exit Blit\n");
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(Blit, CopiesWithinTheBackupSurfaceInUse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 100, 50};
    GivenBackupSurface(pDisplay);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->Blit(pDisplay, 0, &rect, 15, 25), 0);

    EXPECT_EQ(TraceOf("backup.Blit"), "  backup.Blit backup 10,20 100x50 to 15,25\n");
    Destroy(pDisplay);
}

TEST(Blit, MarksTheFrame)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 100, 50};
    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 0), 0);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(pDisplay->Blit(pDisplay, 0, &rect, 15, 25), 0);

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

TEST(Blit, ReportsAFailureAndFlips)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 100, 50};
    Fail("Surface.Blit", DFB_INVAREA);

    EXPECT_EQ(pDisplay->Blit(pDisplay, 0, &rect, 0xFFFFFFFF, 25), 0);

    EXPECT_EQ(Trace(), "enter Blit\n"
                       "  base.Blit base 10,20 100x50 to -1,25\n"
                       "  " +
                           CheckLine(DFB_INVAREA) +
                           "  layer.GetConfiguration\n"
                           "  base.Flip all WAIT|BLIT|ONSYNC\n"
                           "exit Blit\n");
    Destroy(pDisplay);
}

TEST(Blit, ReportsASurfaceThatIsNotThereAsDestroyed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 100, 50};
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->Blit(pDisplay, 0, &rect, 1, 2), 0);

    EXPECT_EQ(Trace(), "enter Blit\n  " + CheckLine(DFB_DESTROYED) + "  layer.GetConfiguration\n" +
                           CheckLine(DFB_DESTROYED) + "exit Blit\n");
    Destroy(pDisplay);
}

TEST(Blit, WaitsInStepsForAPendingFlip)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 100, 50};
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    ASSERT_TRUE(AwaitSleeper());
    ClearTrace();
    // The thread's sleep ends once the blit has slept three times.
    std::thread waker([] {
        while (CountOf(Trace(), "usleep 16000\n") < 3)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        LetSleeperGo();
    });

    EXPECT_EQ(pDisplay->Blit(pDisplay, 0, &rect, 15, 25), 0);
    waker.join();

    const std::string trace = Trace();
    const size_t blit = trace.find("  base.Blit ");
    ASSERT_NE(blit, std::string::npos);
    EXPECT_GE(CountOf(trace.substr(0, blit), "usleep 16000\n"), 3);
    EXPECT_EQ(CountOf(trace, "  usleep"), 0); // without the lock, which the thread needs
    EXPECT_EQ(CountOf(ThreadTrace(), "base.Flip all"), 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(Blit, IsRefusedInThisOrder)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    KovaTextRect_t rect = {10, 20, 100, 50};
    const auto blit = [&](pKovaITextDisplay_t pThiz, int iContext, KovaTextRect_t *pRect) {
        ClearTrace();
        const int iResult = pDisplay->Blit(pThiz, kova_sint8(iContext), pRect, 0, 0);
        return std::to_string(iResult) + " " + Trace();
    };

    EXPECT_EQ(blit(nullptr, 4, nullptr), "-1 enter Blit\nERROR Blit: NULL Pointer!\n");
    for (const int iContext : {4, -1, -128}) {
        EXPECT_EQ(blit(pDisplay, iContext, nullptr), "-1 enter Blit\nERROR Blit: Invalid context ID!\n");
    }
    EXPECT_EQ(blit(pDisplay, 0, nullptr), "-1 enter Blit\nERROR Blit: NULL Pointer!\n");
    EXPECT_EQ(blit(pDisplay, 0, &rect), "-1 enter Blit\n  ERROR Blit: Inactive context!\n");
    EXPECT_TRUE(LockIsFree(pDisplay));
    pDisplay->Hide(pDisplay, 1);
    EXPECT_EQ(blit(pDisplay, 0, &rect), "0 enter Blit\nexit Blit\n");
    EXPECT_EQ(blit(pDisplay, 1, nullptr), "-1 enter Blit\nERROR Blit: NULL Pointer!\n");
    Destroy(pDisplay);
}
