// SPDX-License-Identifier: MIT
#include "expect.h"
#include "support.h"

#include <cstring>
#include <thread>

using namespace test;

// ---- clearing the plane

static const char s_acIndexed[] = "  base.GetPalette\n"
                                  "  log SetPaletteInternal: colors[0].a:0\n"
                                  "  palette.SetEntries 1 at 0: 0,0,0,0\n"
                                  "  palette.Release\n"
                                  "  base.SetColorIndex 0\n"
                                  "  base.FillRectangle 0,0 720x480\n";
static const char s_acTrueColour[] = "  base.SetColor 0,0,0,0\n"
                                     "  base.FillRectangle 0,0 720x480\n";

struct WipeRow_t {
    KovaGraphicLayer_e eLayer;
    ColorMode_e eMode;
    const char *pcTrace;
};

void PrintTo(const WipeRow_t &row, std::ostream *pStream)
{
    *pStream << "layer " << row.eLayer + 1;
}

class Wipe : public testing::TestWithParam<WipeRow_t>
{
};

TEST_P(Wipe, IsWhatShowDoesAndNothingElse)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(GetParam().eLayer, GetParam().eMode);
    RecordOf(pDisplay)->blast_frame_changed = 0; // as if a flip were deferred: clearing supersedes it

    pDisplay->Show(pDisplay, 0);

    EXPECT_EQ(Trace(), "enter Show\n" + std::string(GetParam().pcTrace) + "exit Show\n");
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 1);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST_P(Wipe, IsWhatHideDoesToAShownDisplay)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(GetParam().eLayer, GetParam().eMode);
    RecordOf(pDisplay)->bShow = 1;
    RecordOf(pDisplay)->blast_frame_changed = 0;

    pDisplay->Hide(pDisplay, 0);

    EXPECT_EQ(Trace(), "enter Hide\n" + std::string(GetParam().pcTrace) + "exit Hide\n");
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 0);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST_P(Wipe, IsDoneAgainWhenAShownDisplayIsShown)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(GetParam().eLayer, GetParam().eMode);
    RecordOf(pDisplay)->bShow = 1;

    pDisplay->Show(pDisplay, 3);

    EXPECT_EQ(Trace(), "enter Show\n" + std::string(GetParam().pcTrace) + "exit Show\n");
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 1);
    Destroy(pDisplay);
}

static const char *const s_apcModes[] = {"Index", "Palette", "Packed"};

INSTANTIATE_TEST_SUITE_P(Of, Wipe,
                         testing::Values(WipeRow_t{KOVA_GRAPHIC_LAYER1, INDEX_COLORS, s_acIndexed},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER1, PALETTE_COLORS, s_acTrueColour},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER1, PACKED_COLORS, s_acTrueColour},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER2, INDEX_COLORS, s_acIndexed},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER2, PALETTE_COLORS, s_acTrueColour},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER2, PACKED_COLORS, s_acTrueColour},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER3, INDEX_COLORS, s_acIndexed},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER3, PALETTE_COLORS, s_acTrueColour},
                                         WipeRow_t{KOVA_GRAPHIC_LAYER3, PACKED_COLORS, s_acTrueColour}),
                         [](const auto &row) {
                             return "Layer" + std::to_string(row.param.eLayer + 1) +
                                    s_apcModes[row.param.eMode];
                         });

// ---- hiding a hidden display

TEST(Hide, LeavesAHiddenDisplayAlone)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    pDisplay->Hide(pDisplay, 0);

    EXPECT_EQ(Trace(), "enter Hide\nexit Hide\n");
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 0);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}

TEST(Hide, DoesNotWaitForTheLockOfAHiddenDisplay)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    pthread_mutex_lock(&RecordOf(pDisplay)->display_mutex);

    std::thread([&] { pDisplay->Hide(pDisplay, 0); }).join(); // would block for ever if it locked

    pthread_mutex_unlock(&RecordOf(pDisplay)->display_mutex);
    EXPECT_EQ(ThreadTrace(), "enter Hide\nexit Hide\n");
    Destroy(pDisplay);
}

TEST(Hide, AndShowFollowEachOther)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    for (int i = 0; i < 3; i++) {
        pDisplay->Hide(pDisplay, 1);
        EXPECT_EQ(RecordOf(pDisplay)->bShow, 0);
        pDisplay->Show(pDisplay, 1);
        EXPECT_EQ(RecordOf(pDisplay)->bShow, 1);
    }

    EXPECT_EQ(CountOf(Trace(), "base.FillRectangle 0,0 720x480\n"), 6);
    EXPECT_FALSE(Contains(Trace(), "Flip"));
    Destroy(pDisplay);
}

// ---- the palette

static const DFBColor s_red = {255, 200, 0, 0}; // a, r, g, b

static bool AreEqual(const DFBColor &one, const DFBColor &other)
{
    return one.a == other.a && one.r == other.r && one.g == other.g && one.b == other.b;
}

TEST(Show, MakesTheFirstEntryOfTheSurfacesPaletteTransparent)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextColor_t aColors[] = {{200, 0, 0, 255}, {200, 0, 0, 255}};
    pDisplay->SetPalette(pDisplay, 0, aColors, 2, 0);
    IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pActiveSurface;
    ASSERT_TRUE(AreEqual(PaletteOf(pSurface)[0], s_red));

    pDisplay->Show(pDisplay, 0);

    EXPECT_TRUE(AreEqual(PaletteOf(pSurface)[0], {0, 0, 0, 0}));
    EXPECT_TRUE(AreEqual(PaletteOf(pSurface)[1], s_red));
    EXPECT_EQ(RecordOf(pDisplay)->palette[0].a, 0);
    EXPECT_EQ(RecordOf(pDisplay)->palette[0].r, 0);
    EXPECT_EQ(RecordOf(pDisplay)->palette[1].r, 200);
    Destroy(pDisplay);
}

TEST(Show, MakesTheFirstEntryOfThePaletteCopyTransparentBeforeItWipes)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    RecordOf(pDisplay)->palette[0] = RecordOf(pDisplay)->palette[1] = {1, 2, 3, 4};

    pDisplay->Show(pDisplay, 0);

    EXPECT_EQ(TraceOf("base.SetColor"), "  base.SetColor 0,0,0,0\n");
    EXPECT_EQ(RecordOf(pDisplay)->palette[0].r, 0);
    EXPECT_EQ(RecordOf(pDisplay)->palette[0].a, 0);
    EXPECT_EQ(RecordOf(pDisplay)->palette[1].a, 4);
    Destroy(pDisplay);
}

TEST(Show, LeavesThePaletteAloneInThirtyTwoBitMode)
{
    for (const kova_bool bPalette : {kova_bool(0), kova_bool(1)}) {
        pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2, PACKED_COLORS);
        RecordOf(pDisplay)->bTextDisp_Palette = bPalette;
        RecordOf(pDisplay)->palette[0] = {1, 2, 3, 4};

        pDisplay->Show(pDisplay, 0);

        EXPECT_EQ(RecordOf(pDisplay)->palette[0].r, 1);
        EXPECT_EQ(RecordOf(pDisplay)->palette[0].a, 4);
        EXPECT_TRUE(Contains(Trace(), ".SetColor 0,0,0,0\n"));
        Destroy(pDisplay);
    }
}

// ---- the surface that is cleared

TEST(Show, WipesTheActiveSurfaceAndSetsItsPaletteOnTheBase)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->pActiveSurface = GivenBackupSurface(pDisplay);

    pDisplay->Show(pDisplay, 0);

    EXPECT_EQ(CallsOnly(Trace()), "backup.GetPalette\n"
                                  "palette.SetEntries 1 at 0: 0,0,0,0\n"
                                  "base.SetPalette palette\n"
                                  "palette.Release\n"
                                  "backup.SetColorIndex 0\n"
                                  "backup.FillRectangle 0,0 720x480\n");
    Destroy(pDisplay);
}

TEST(Show, WipesThePlaneAsLargeAsItIsNow)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(pDisplay->SetPlane(pDisplay, 0, 5, 6, 100, 50), 0);
    RecordOf(pDisplay)->clip = {10, 10, 20, 20}; // has no effect
    ClearTrace();

    pDisplay->Show(pDisplay, 0);

    EXPECT_EQ(TraceOf("base2.FillRectangle"), "  base2.FillRectangle 0,0 100x50\n");
    EXPECT_FALSE(Contains(Trace(), "SetClip"));
    Destroy(pDisplay);
}

// ---- failures

TEST(Show, PrintsFailuresAndCountsAsShownAnyway)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    Fail("Palette.SetEntries", DFB_BUSY);
    Fail("Surface.SetColorIndex", DFB_INVARG);
    Fail("Surface.FillRectangle", DFB_INVAREA);

    pDisplay->Show(pDisplay, 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.GetPalette\n"
                                  "palette.SetEntries 1 at 0: 0,0,0,0\n" +
                                      CheckLine(DFB_BUSY) + "palette.Release\n" + "base.SetColorIndex 0\n" +
                                      CheckLine(DFB_INVARG) + "base.FillRectangle 0,0 720x480\n" +
                                      CheckLine(DFB_INVAREA));
    EXPECT_EQ(TraceOf("exit"), "exit Show\n");
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 1);
    Destroy(pDisplay);
}

TEST(Show, SkipsThePaletteStepsWhenThereIsNoPalette)
{
    for (const bool bFails : {true, false}) {
        Reset();
        pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
        const std::string name = NameOf(RecordOf(pDisplay)->pActiveSurface);
        bFails ? Fail("Surface.GetPalette", DFB_UNSUPPORTED) : GiveNothing("Surface.GetPalette");
        RecordOf(pDisplay)->palette[0] = {1, 2, 3, 4};

        pDisplay->Show(pDisplay, 0);

        EXPECT_EQ(Trace(), "enter Show\n  " + name + ".GetPalette\n" +
                               (bFails ? "  " + CheckLine(DFB_UNSUPPORTED) : std::string()) +
                               "  log SetPaletteInternal: colors[0].a:0\n  " + name + ".SetColorIndex 0\n  " +
                               name + ".FillRectangle 0,0 720x480\nexit Show\n");
        EXPECT_EQ(RecordOf(pDisplay)->palette[0].a, 0);
        Destroy(pDisplay);
    }
}

TEST(Hide, OfADisplayWithoutASurfaceIsPrintedAndDone)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->bShow = 1;
    RecordOf(pDisplay)->pActiveSurface = nullptr;

    pDisplay->Hide(pDisplay, 0);

    EXPECT_EQ(CallsOnly(Trace()),
              CheckLine(DFB_DESTROYED) + CheckLine(DFB_DESTROYED) + CheckLine(DFB_DESTROYED));
    EXPECT_EQ(TraceOf("exit"), "exit Hide\n");
    EXPECT_EQ(RecordOf(pDisplay)->bShow, 0);
    Destroy(pDisplay);
}

// ---- refusals

TEST(ShowAndHide, ChangeNothingWhenTheyRefuse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    static const struct {
        int iContext;
        const char *pcError;
    } rows[] = {{4, "Invalid context ID!"},
                {-1, "Invalid context ID!"},
                {0, "Inactive context!"},
                {2, "Inactive context!"}};

    for (const auto &row : rows) {
        for (const kova_bool bShow : {kova_bool(0), kova_bool(1)}) {
            pRecord->bShow = bShow;
            pRecord->blast_frame_changed = 0;
            ClearTrace();
            pDisplay->Show(pDisplay, kova_sint8(row.iContext));
            pRecord->bShow = 1; // otherwise Hide would return early
            pDisplay->Hide(pDisplay, kova_sint8(row.iContext));
            EXPECT_EQ(pRecord->bShow, 1);
            EXPECT_EQ(pRecord->blast_frame_changed, 0);
            EXPECT_EQ(CallsOnly(Trace()),
                      std::string("ERROR Show: ") + row.pcError + "\nERROR Hide: " + row.pcError + "\n");
            EXPECT_EQ(TraceOf("exit"), "");
        }
    }
    pDisplay->Show(nullptr, 1);
    pDisplay->Hide(nullptr, 1);
    Destroy(pDisplay);
}
