// SPDX-License-Identifier: MIT
#include "support.h"

#include <chrono>
#include <functional>
#include <thread>

using namespace test;

static KovaTextRect_t s_rect = {10, 20, 100, 50};

// ---- the colour, for both operations

struct ColorRow_t {
    ColorMode_e eMode;
    kova_uint32 color;
    const char *pcCall;
};

static const ColorRow_t s_colors[] = {
    {INDEX_COLORS, 0, "SetColorIndex 0"},
    {INDEX_COLORS, 255, "SetColorIndex 255"},
    {INDEX_COLORS, 0x11223344, "SetColorIndex 287454020"},
    {INDEX_COLORS, 0xFFFFFFFF, "SetColorIndex 4294967295"},
    {PALETTE_COLORS, 3, "SetColor 31,32,33,34"},
    {PALETTE_COLORS, 255, "SetColor 251,252,253,254"},
    {PALETTE_COLORS, 256, "SetColor 0,0,0,0"},
    {PALETTE_COLORS, 0x10003, "SetColor 0,0,0,0"},
    {PACKED_COLORS, 0x11223344, "SetColor 17,34,51,68"},
    {PACKED_COLORS, 0xFF000080, "SetColor 255,0,0,128"},
    {PACKED_COLORS, 0x00FF00FF, "SetColor 0,255,0,255"},
};

static void GivePalette(pKovaITextDisplay_t pDisplay)
{
    RecordOf(pDisplay)->palette[0] = {1, 2, 3, 4};
    RecordOf(pDisplay)->palette[3] = {31, 32, 33, 34};
    RecordOf(pDisplay)->palette[255] = {251, 252, 253, 254};
}

static void ForEveryColor(const std::function<int(pKovaITextDisplay_t, kova_uint32)> &draw)
{
    for (const ColorRow_t &row : s_colors) {
        SCOPED_TRACE(row.pcCall);
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, row.eMode);
        GivePalette(pDisplay);
        EXPECT_EQ(draw(pDisplay, row.color), 0);
        EXPECT_EQ(TraceOf(NameOf(RecordOf(pDisplay)->pActiveSurface) + ".SetColor"),
                  "  " + NameOf(RecordOf(pDisplay)->pActiveSurface) + "." + row.pcCall + "\n");
        Destroy(pDisplay);
    }
}

static int Fill(pKovaITextDisplay_t pDisplay, kova_uint32 color)
{
    return pDisplay->FillRect(pDisplay, 0, &s_rect, color);
}

static int Draw(pKovaITextDisplay_t pDisplay, kova_uint32 color)
{
    return pDisplay->DrawLine(pDisplay, 0, 1, 2, 3, 4, color);
}

TEST(FillRect, ConvertsItsColourByTheDisplaysMode)
{
    ForEveryColor(Fill);
}

TEST(DrawLine, ConvertsItsColourByTheDisplaysMode)
{
    ForEveryColor(Draw);
}

TEST(Shapes, UseAPackedColourWhenBothModesAreSet)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    RecordOf(pDisplay)->bColor32 = 1;

    Fill(pDisplay, 0x01020304);
    Draw(pDisplay, 0x05060708);

    EXPECT_EQ(TraceOf("base.SetColor"), "  base.SetColor 1,2,3,4\n"
                                        "  base.SetColor 5,6,7,8\n");
    Destroy(pDisplay);
}

// ---- rectangles

TEST(FillRect, FillsAndLeavesTheFlipToTheCaller)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(eLayer, INDEX_COLORS, ACTIVE_CONTEXT(1));
        const std::string surface = NameOf(RecordOf(pDisplay)->pActiveSurface);
        RecordOf(pDisplay)->blast_frame_changed = 0;

        EXPECT_EQ(pDisplay->FillRect(pDisplay, 1, &s_rect, 7), 0);

        EXPECT_EQ(Trace(), "enter FillRect (10x20)--(110x70)\n"
                           "  " +
                               surface +
                               ".SetColorIndex 7\n"
                               "  " +
                               surface +
                               ".FillRectangle 10,20 100x50\n"
                               "exit FillRect\n");
        EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
        EXPECT_FALSE(HoldsLock());
        Destroy(pDisplay);
    }
}

TEST(FillRect, PassesEveryRectangleToDirectFBAsSignedNumbers)
{
    static const struct {
        KovaTextRect_t rect;
        const char *pcEntry, *pcCall;
    } rows[] = {
        {{0, 0, 720, 480}, "(0x0)--(720x480)", "0,0 720x480"},
        {{5, 6, 0, 3}, "(5x6)--(5x9)", "5,6 0x3"},
        {{5, 6, 3, 0}, "(5x6)--(8x6)", "5,6 3x0"},
        {{5000, 6000, 7000, 8000}, "(5000x6000)--(12000x14000)", "5000,6000 7000x8000"},
        {{0x7FFFFFFF, 0x7FFFFFFE, 1, 2},
         "(2147483647x2147483646)--(-2147483648x-2147483648)",
         "2147483647,2147483646 1x2"},
        {{0xFFFFFFFF, 0x80000000, 2, 0x80000000}, "(-1x-2147483648)--(1x0)", "-1,-2147483648 2x-2147483648"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    for (const auto &row : rows) {
        KovaTextRect_t rect = row.rect;
        ClearTrace();
        EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, 1), 0);
        EXPECT_EQ(Trace(), std::string("enter FillRect ") + row.pcEntry +
                               "\n  base.SetColorIndex 1\n  base.FillRectangle " + row.pcCall +
                               "\nexit FillRect\n");
    }
    Destroy(pDisplay);
}

TEST(FillRect, EndsItsEntryTraceWithItsLine)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    pDisplay->FillRect(pDisplay, 0, &s_rect, 7);
    EXPECT_EQ(RecordText(0), "(10x20)--(110x70)\n");
    ClearTrace();
    pDisplay->FillRect(pDisplay, 0, nullptr, 7);
    EXPECT_EQ(RecordText(0), "pRect:NULL\n");
    Destroy(pDisplay);
}

TEST(FillRect, RefusesInOrder)
{
    enum { NULL_DISPLAY = 1, BAD_CONTEXT = 2, HIDDEN = 4, NULL_RECT = 8, INACTIVE = 16 };
    static const struct {
        int iWrong, iResult;
        const char *pcTrace;
    } rows[] = {
        {NULL_DISPLAY | BAD_CONTEXT | NULL_RECT, -1,
         "enter FillRect pRect:NULL\nERROR FillRect: NULL Pointer!\n"},
        {NULL_DISPLAY | BAD_CONTEXT, -1, "enter FillRect (10x20)--(110x70)\nERROR FillRect: NULL Pointer!\n"},
        {BAD_CONTEXT | HIDDEN | NULL_RECT, -1,
         "enter FillRect pRect:NULL\nERROR FillRect: Invalid context ID!\n"},
        {BAD_CONTEXT, -1, "enter FillRect (10x20)--(110x70)\nERROR FillRect: Invalid context ID!\n"},
        {HIDDEN | NULL_RECT | INACTIVE, 0, "enter FillRect pRect:NULL\nexit FillRect\n"},
        {HIDDEN | INACTIVE, 0, "enter FillRect (10x20)--(110x70)\nexit FillRect\n"},
        {HIDDEN, 0, "enter FillRect (10x20)--(110x70)\nexit FillRect\n"},
        {NULL_RECT | INACTIVE, -1, "enter FillRect pRect:NULL\nERROR FillRect: NULL Pointer!\n"},
        {INACTIVE, -1, "enter FillRect (10x20)--(110x70)\n  ERROR FillRect: Inactive context!\n"},
    };
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    RecordOf(pDisplay)->blast_frame_changed = 0;

    for (const auto &row : rows) {
        SCOPED_TRACE(row.iWrong);
        ClearTrace();
        RecordOf(pDisplay)->bShow = !(row.iWrong & HIDDEN);
        EXPECT_EQ(pDisplay->FillRect(row.iWrong & NULL_DISPLAY ? nullptr : pDisplay,
                                     kova_sint8(row.iWrong & BAD_CONTEXT ? -56
                                                : row.iWrong & INACTIVE  ? 0
                                                                         : 1),
                                     row.iWrong & NULL_RECT ? nullptr : &s_rect, 7),
                  row.iResult);
        EXPECT_EQ(Trace(), row.pcTrace);
        EXPECT_FALSE(HoldsLock());
    }

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}

TEST(FillRect, PrintsFailuresAndContinues)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Fail("Surface.SetColorIndex", DFB_INVARG);
    Fail("Surface.FillRectangle", DFB_INVAREA);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(Fill(pDisplay, 7), 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.SetColorIndex 7\n" + CheckLine(DFB_INVARG) +
                                      "base.FillRectangle 10,20 100x50\n" + CheckLine(DFB_INVAREA));
    EXPECT_EQ(TraceOf("exit"), "exit FillRect\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

TEST(FillRect, PrintsFailuresInTrueColourToo)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, PALETTE_COLORS);
    GivePalette(pDisplay);
    Fail("Surface.SetColor", DFB_INVARG);

    EXPECT_EQ(Fill(pDisplay, 3), 0);

    EXPECT_EQ(CallsOnly(Trace()),
              "base.SetColor 31,32,33,34\n" + CheckLine(DFB_INVARG) + "base.FillRectangle 10,20 100x50\n");
    Destroy(pDisplay);
}

TEST(FillRect, PrintsFailuresWithoutASurface)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->pActiveSurface = nullptr;

    EXPECT_EQ(Fill(pDisplay, 7), 0);

    EXPECT_EQ(CallsOnly(Trace()), CheckLine(DFB_DESTROYED) + CheckLine(DFB_DESTROYED));
    Destroy(pDisplay);
}

TEST(FillRect, AcceptsEveryContextWhileNoneIsActive)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);

    for (const int iContext : {0, 1, 2, 3}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->FillRect(pDisplay, kova_sint8(iContext), &s_rect, 7), 0);
        EXPECT_EQ(TraceOf("base.Fill"), "  base.FillRectangle 10,20 100x50\n");
    }
    Destroy(pDisplay);
}

// ---- lines

TEST(DrawLine, DrawsForAnyContextAndFlipsAtOnce)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 10, 20, 30, 20, 7), 0);

    EXPECT_EQ(Trace(), "enter DrawLine\n"
                       "  base.SetColorIndex 7\n"
                       "  base.DrawLine 10,20 30,20\n"
                       "  layer.GetConfiguration\n"
                       "  base.Flip all WAIT|BLIT|ONSYNC\n"
                       "exit DrawLine\n");
    Destroy(pDisplay);
}

TEST(DrawLine, DrawsThoughTheContextsLayerWasTakenAway)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->scActiveContextID = -2;

    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 3, -1, -2, 5000, 6000, 7), 0);

    EXPECT_EQ(TraceOf("base.DrawLine"), "  base.DrawLine -1,-2 5000,6000\n");
    RecordOf(pDisplay)->scActiveContextID = 0;
    Destroy(pDisplay);
}

TEST(DrawLine, FlipsTheWindowWithoutAskingItsLayer)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);
    const std::string surface = NameOf(RecordOf(pDisplay)->pActiveSurface);

    EXPECT_EQ(Draw(pDisplay, 7), 0);

    EXPECT_EQ(Trace(), "enter DrawLine\n"
                       "  " +
                           surface +
                           ".SetColorIndex 7\n"
                           "  " +
                           surface +
                           ".DrawLine 1,2 3,4\n"
                           "  " +
                           surface +
                           ".Flip all WAIT|BLIT|ONSYNC\n"
                           "exit DrawLine\n");
    Destroy(pDisplay);
}

TEST(DrawLine, DefersTheFlipToTheThreadWhenTheLastIsTooRecent)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Draw(pDisplay, 7);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay, 8), 0);

    EXPECT_EQ(Trace(), "enter DrawLine\n"
                       "  base.SetColorIndex 8\n"
                       "  base.DrawLine 1,2 3,4\n"
                       "  base.GetClip\n"
                       "exit DrawLine\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    EXPECT_TRUE(AwaitSleeper());
    Destroy(pDisplay);
}

TEST(DrawLine, MarksTheFrameChangedWhenFlippingIsOff)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    pDisplay->SetFlip(pDisplay, 0);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    ClearTrace();

    EXPECT_EQ(Draw(pDisplay, 7), 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.SetColorIndex 7\n"
                                  "base.DrawLine 1,2 3,4\n"
                                  "layer.GetConfiguration\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

TEST(DrawLine, RefusesANullDisplayAndThenABadContext)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->DrawLine(nullptr, 4, 1, 2, 3, 4, 7), -1);
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 4, 1, 2, 3, 4, 7), -1);
    RecordOf(pDisplay)->bShow = 0;
    EXPECT_EQ(pDisplay->DrawLine(pDisplay, -1, 1, 2, 3, 4, 7), -1);

    EXPECT_EQ(Trace(), "enter DrawLine\n"
                       "ERROR DrawLine: NULL Pointer!\n"
                       "enter DrawLine\n"
                       "ERROR DrawLine: Invalid context ID!\n"
                       "enter DrawLine\n"
                       "ERROR DrawLine: Invalid context ID!\n");
    EXPECT_FALSE(HoldsLock());
    Destroy(pDisplay);
}

TEST(DrawLine, PrintsFailuresAndContinues)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Fail("Surface.SetColorIndex", DFB_INVARG);
    Fail("Surface.DrawLine", DFB_INVAREA);
    Fail("Surface.Flip", DFB_LOCKED);

    EXPECT_EQ(Draw(pDisplay, 7), 0);

    EXPECT_EQ(CallsOnly(Trace()), "base.SetColorIndex 7\n" + CheckLine(DFB_INVARG) +
                                      "base.DrawLine 1,2 3,4\n" + CheckLine(DFB_INVAREA) +
                                      "layer.GetConfiguration\n"
                                      "base.Flip all WAIT|BLIT|ONSYNC\n" +
                                      CheckLine(DFB_LOCKED));
    EXPECT_EQ(TraceOf("exit"), "exit DrawLine\n");
    EXPECT_FALSE(HoldsLock());
    Destroy(pDisplay);
}

TEST(DrawLine, PrintsFailuresWithoutASurface)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->pActiveSurface = nullptr;

    EXPECT_EQ(Draw(pDisplay, 7), 0);

    EXPECT_EQ(CallsOnly(Trace()), CheckLine(DFB_DESTROYED) + CheckLine(DFB_DESTROYED) +
                                      "layer.GetConfiguration\n" + CheckLine(DFB_DESTROYED));
    Destroy(pDisplay);
}

// Whether a call returns while another thread holds the display's lock.
static bool ComesBackWhileLocked(pKovaITextDisplay_t pDisplay, const std::function<void()> &call)
{
    bool bBack = false;

    pthread_mutex_lock(&RecordOf(pDisplay)->display_mutex);
    std::thread caller([&] {
        call();
        __atomic_store_n(&bBack, true, __ATOMIC_SEQ_CST);
    });
    for (int i = 0; i < 100 && !__atomic_load_n(&bBack, __ATOMIC_SEQ_CST); i++)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const bool bWasBack = __atomic_load_n(&bBack, __ATOMIC_SEQ_CST);
    pthread_mutex_unlock(&RecordOf(pDisplay)->display_mutex);
    caller.join();
    return bWasBack;
}

TEST(DrawLine, TakesTheLockThoughHiddenUnlikeFillRect)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(Draw(pDisplay, 7), 0);
    EXPECT_EQ(Trace(), "enter DrawLine\n"
                       "exit DrawLine\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    EXPECT_FALSE(HoldsLock());

    EXPECT_FALSE(ComesBackWhileLocked(pDisplay, [&] { Draw(pDisplay, 7); }));
    EXPECT_TRUE(ComesBackWhileLocked(pDisplay, [&] { Fill(pDisplay, 7); }));
    Destroy(pDisplay);
}
