// SPDX-License-Identifier: MIT
#include "displays.h"

#include <cstring>
#include <unistd.h>

using namespace test;

static const char *const FLIPPED = "enter Flip\n"
                                   "  layer.GetConfiguration\n"
                                   "  base.Flip all WAIT|BLIT|ONSYNC\n"
                                   "exit Flip\n";
static const char *const DEFERRED = "enter Flip\n"
                                    "  base.GetClip\n"
                                    "exit Flip\n";
static const char *const NOT_FLIPPED = "enter Flip\n"
                                       "  layer.GetConfiguration\n"
                                       "exit Flip\n";

// The trace of a successful Flip of context 0.
static std::string TraceOfFlip(pKovaITextDisplay_t pDisplay)
{
    ClearTrace();
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    return Trace();
}

TEST(Flip, FlipsTheWholeSurfaceOfABackBufferedLayerAtOnce)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER2, KOVA_GRAPHIC_LAYER3}) {
        for (const ColorMode_e eMode : {INDEX_COLORS, PALETTE_COLORS, PACKED_COLORS}) {
            SCOPED_TRACE(testing::Message() << "layer " << eLayer << " colours " << eMode);
            pKovaITextDisplay_t pDisplay = GivenShownDisplay(eLayer, eMode);
            const std::string surface = NameOf(RecordOf(pDisplay)->pActiveSurface);
            const std::string layer = "layer" + surface.substr(strlen("base"));

            EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);

            EXPECT_EQ(Trace(), "enter Flip\n"
                               "  " +
                                   layer +
                                   ".GetConfiguration\n"
                                   "  " +
                                   surface +
                                   ".Flip all WAIT|BLIT|ONSYNC\n"
                                   "exit Flip\n");
            EXPECT_TRUE(LockIsFree(pDisplay));
            Destroy(pDisplay);
        }
    }
}

TEST(Flip, MarksTheFrameAsChangedAfterADirectFlip)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;

    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

struct Gap_t {
    const char *pcName;
    long lFirstSeconds, lFirstMicroseconds, lSecondSeconds, lSecondMicroseconds;
    bool bDeferred;
};

static const Gap_t GAPS[] = {
    {"AtTheSameMoment", 2000000, 500000, 2000000, 500000, true},
    {"FiveMillisecondsLater", 2000000, 500000, 2000000, 505000, true},
    {"JustUnderSixteenMilliseconds", 2000000, 500000, 2000000, 515999, true},
    {"ExactlySixteenMilliseconds", 2000000, 500000, 2000000, 516000, false},
    {"AcrossASecondFifteenMilliseconds", 2000000, 990000, 2000001, 5000, true},
    {"AcrossASecondSixteenMilliseconds", 2000000, 990000, 2000001, 6000, false},
    // The difference of the microseconds, -984001, is divided separately and truncated towards zero.
    {"AcrossASecondCutTowardsZero", 2000000, 990000, 2000001, 5999, false},
    {"ASecondLater", 2000000, 500000, 2000001, 500000, false},
    {"ClockSetBackUnderAMillisecond", 2000000, 500000, 2000000, 499001, true},
    {"ClockSetBackAMillisecond", 2000000, 500000, 2000000, 499000, false},
    {"ClockSetBackFiveMilliseconds", 2000000, 500000, 2000000, 495000, false},
    {"ClockSetBackAnHour", 2000000, 500000, 1996400, 500000, false},
    {"ClockSetBackAcrossASecond", 2000001, 500, 2000000, 999400, false},
};

static void PrintTo(const Gap_t &gap, std::ostream *pStream)
{
    *pStream << gap.pcName;
}

class FlipAfterAFlip : public testing::TestWithParam<Gap_t>
{
};

TEST_P(FlipAfterAFlip, IsDeferredWhenItComesInUnderSixteenMilliseconds)
{
    const Gap_t &gap = GetParam();
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    SetClock(gap.lFirstSeconds, gap.lFirstMicroseconds);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);

    SetClock(gap.lSecondSeconds, gap.lSecondMicroseconds);

    EXPECT_EQ(TraceOfFlip(pDisplay), gap.bDeferred ? DEFERRED : FLIPPED);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, gap.bDeferred ? 0 : 1);
    // The flip thread takes the lock for a moment before it sleeps.
    if (gap.bDeferred) {
        EXPECT_TRUE(AwaitSleeper());
    }
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

INSTANTIATE_TEST_SUITE_P(Gaps, FlipAfterAFlip, testing::ValuesIn(GAPS),
                         [](const auto &row) { return std::string(row.param.pcName); });

TEST(Flip, IsNeverDeferredTheFirstTimeAfterLoading)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    EXPECT_EQ(TraceOfFlip(pDisplay),
              DEFERRED); // and stored the time, which proves that it was the first
    Destroy(pDisplay);
}

// With a clock close to zero the initial value 0 matters: the first flip is measured from it.
TEST(Flip, MeasuresTheFirstFlipFromTheBeginningOfTheClock)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    SetClock(0, 15999);
    EXPECT_EQ(TraceOfFlip(pDisplay), DEFERRED);
    SetClock(0, 16000);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    Destroy(pDisplay);
}

TEST(Flip, DoesNotStampTheTimeWhenItDefers)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    SetClock(2000000, 0);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    SetClock(2000000, 10000);
    EXPECT_EQ(TraceOfFlip(pDisplay), DEFERRED);

    SetClock(2000000, 16000);

    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    Destroy(pDisplay);
}

TEST(Flip, KeepsTheClipInForceWhenItDefers)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {10, 20, 100, 50};
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);

    EXPECT_EQ(TraceOfFlip(pDisplay), DEFERRED);

    const DFBRegion &clip = RecordOf(pDisplay)->flip_clip,
                    &inForce = ClipOf(RecordOf(pDisplay)->pActiveSurface);
    EXPECT_EQ(clip.x1, 10);
    EXPECT_EQ(clip.y1, 20);
    EXPECT_EQ(clip.x2, inForce.x2);
    EXPECT_EQ(clip.y2, inForce.y2);
    Destroy(pDisplay);
}

TEST(Flip, DefersAlthoughTheClipCannotBeRead)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    RecordOf(pDisplay)->flip_clip = {1, 2, 3, 4};
    FailNth("Surface.GetClip", 1, DFB_FAILURE);

    TraceOfFlip(pDisplay);

    // The thread that this wakes may be the first to print the report.
    EXPECT_EQ(CallsOnly(Trace()).rfind("base.GetClip\n", 0), 0u);
    EXPECT_EQ(CountOf(Trace() + ThreadTrace(), CheckLine(DFB_FAILURE)), 1);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    EXPECT_EQ(RecordOf(pDisplay)->flip_clip.x2, 3);
    EXPECT_TRUE(AwaitSleeper()); // the thread was woken anyway
    Destroy(pDisplay);
}

TEST(Flip, SignalsTheThreadUnderTheDisplaysLockOnly)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    const pthread_t self = pthread_self();
    BeforeThreadCall([&](const char *pcCall, const void *pObject) {
        if (!pthread_equal(pthread_self(), self) || pObject != &pRecord->flip_thread_cond) return;
        const bool bOurs = pRecord->flip_thread_mutex.__data.__owner == gettid();
        Note(std::string(pcCall) + (bOurs ? " with the thread's mutex" : " without the thread's mutex"));
    });

    EXPECT_EQ(TraceOfFlip(pDisplay), "enter Flip\n"
                                     "  base.GetClip\n"
                                     "  pthread_cond_signal without the thread's mutex\n"
                                     "exit Flip\n");
    EXPECT_TRUE(AwaitSleeper());
    BeforeThreadCall(nullptr);
    Destroy(pDisplay);
}

TEST(Flip, TouchesNoThreadWhereThereIsNone)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    BeforeThreadCall([&](const char *pcCall, const void *pObject) {
        if (pObject != &RecordOf(pDisplay)->display_mutex) Note(pcCall);
    });

    EXPECT_EQ(TraceOfFlip(pDisplay), DEFERRED);

    BeforeThreadCall(nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    EXPECT_EQ(ThreadTrace(), "");
    Destroy(pDisplay);
}

TEST(Flip, TouchesNoThreadThatHasEnded)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Kova_TextDisp_DestroyContext(pDisplay, 0);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED); // the context's layer remains and draws
    BeforeThreadCall([&](const char *pcCall, const void *pObject) {
        if (pObject != &RecordOf(pDisplay)->display_mutex) Note(pcCall);
    });

    EXPECT_EQ(TraceOfFlip(pDisplay), DEFERRED);

    BeforeThreadCall(nullptr);
    Destroy(pDisplay);
}

struct BufferMode_t {
    const char *pcName;
    DFBDisplayLayerBufferMode eMode;
    bool bReported, bFlips;
};

static const BufferMode_t BUFFER_MODES[] = {
    {"FrontOnly", DLBM_FRONTONLY, true, false},
    {"BackVideo", DLBM_BACKVIDEO, true, true},
    {"BackSystem", DLBM_BACKSYSTEM, true, true},
    {"Triple", DLBM_TRIPLE, true, false},
    {"Windows", DLBM_WINDOWS, true, false},
    {"BackVideoUnreported", DLBM_BACKVIDEO, false, false},
    {"BackSystemUnreported", DLBM_BACKSYSTEM, false, false},
};

static void PrintTo(const BufferMode_t &mode, std::ostream *pStream)
{
    *pStream << mode.pcName;
}

class FlipOfALayer : public testing::TestWithParam<BufferMode_t>
{
};

TEST_P(FlipOfALayer, IsMadeOnlyWhereABackBufferIsReported)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    ForceBufferMode(GetParam().eMode, GetParam().bReported);

    EXPECT_EQ(TraceOfFlip(pDisplay), GetParam().bFlips ? FLIPPED : NOT_FLIPPED);

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, GetParam().bFlips ? 1 : 0);
    ForceBufferMode(DLBM_BACKVIDEO, true); // without a flip no time was stored
    EXPECT_EQ(TraceOfFlip(pDisplay), GetParam().bFlips ? DEFERRED : FLIPPED);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

INSTANTIATE_TEST_SUITE_P(BufferModes, FlipOfALayer, testing::ValuesIn(BUFFER_MODES),
                         [](const auto &row) { return std::string(row.param.pcName); });

TEST(Flip, FlipsNothingWhenTheConfigurationCannotBeRead)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    FailNth("Layer.GetConfiguration", 1, DFB_IO);

    EXPECT_EQ(TraceOfFlip(pDisplay), "enter Flip\n"
                                     "  layer.GetConfiguration\n" +
                                         CheckLine(DFB_IO) + "exit Flip\n");
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED); // no time was stored
    Destroy(pDisplay);
}

TEST(Flip, StampsAndMarksAFlipThatFailed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->blast_frame_changed = 0;
    FailNth("Surface.Flip", 1, DFB_UNSUPPORTED);

    EXPECT_EQ(TraceOfFlip(pDisplay), "enter Flip\n"
                                     "  layer.GetConfiguration\n"
                                     "  base.Flip all WAIT|BLIT|ONSYNC\n" +
                                         CheckLine(DFB_UNSUPPORTED) + "exit Flip\n");

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    EXPECT_EQ(TraceOfFlip(pDisplay), DEFERRED);
    Destroy(pDisplay);
}

TEST(Flip, ReportsASurfaceThatIsNotThereAsDestroyed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0);
    ASSERT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);

    EXPECT_EQ(TraceOfFlip(pDisplay), "enter Flip\n"
                                     "  layer.GetConfiguration\n" +
                                         CheckLine(DFB_DESTROYED) + "exit Flip\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    TraceOfFlip(pDisplay); // deferred; the thread that this wakes may be the first to print the report
    EXPECT_EQ(CountOf(Trace() + ThreadTrace(), CheckLine(DFB_DESTROYED)), 1);
    EXPECT_FALSE(Contains(Trace(), "layer.GetConfiguration"));
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}

TEST(Flip, FindsNoBackBufferWithoutALayer)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);
    IDirectFBDisplayLayer *const pLayer = RecordOf(pDisplay)->pLayer;
    RecordOf(pDisplay)->pLayer = nullptr;

    EXPECT_EQ(TraceOfFlip(pDisplay), "enter Flip\n" + CheckLine(DFB_DESTROYED) + "exit Flip\n");

    RecordOf(pDisplay)->pLayer = pLayer;
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    Destroy(pDisplay);
}

TEST(Flip, FlipsTheWindowOfTheFirstLayerEveryTime)
{
    for (const kova_bool bFlip : {kova_bool(1), kova_bool(0)}) {
        for (const kova_bool bChanged : {kova_bool(0), kova_bool(1)}) {
            pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);
            const std::string flipped = "enter Flip\n"
                                        "  " +
                                        NameOf(RecordOf(pDisplay)->pActiveSurface) +
                                        ".Flip all WAIT|BLIT|ONSYNC\n"
                                        "exit Flip\n";
            RecordOf(pDisplay)->bFlip = bFlip;
            RecordOf(pDisplay)->blast_frame_changed = bChanged;

            EXPECT_EQ(TraceOfFlip(pDisplay), flipped);
            EXPECT_EQ(TraceOfFlip(pDisplay), flipped); // at the same time: no time was stored
            EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, bChanged);
            Destroy(pDisplay);
        }
    }
}

TEST(Flip, ReportsAFailedFlipOfTheFirstLayer)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);
    FailNth("Surface.Flip", 1, DFB_FAILURE);

    EXPECT_EQ(TraceOfFlip(pDisplay), "enter Flip\n"
                                     "  " +
                                         NameOf(RecordOf(pDisplay)->pActiveSurface) +
                                         ".Flip all WAIT|BLIT|ONSYNC\n" + CheckLine(DFB_FAILURE) +
                                         "exit Flip\n");
    Destroy(pDisplay);
}

TEST(Flip, SharesTheTimeOfTheLastFlipWithAllDisplaysOfTheProcess)
{
    pKovaITextDisplay_t pFirst = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    pKovaITextDisplay_t pThird = GivenSecondDisplay(KOVA_GRAPHIC_LAYER3);
    EXPECT_EQ(pFirst->Flip(pFirst, 0), 0);

    EXPECT_EQ(TraceOfFlip(pThird), "enter Flip\n"
                                   "  base2.GetClip\n"
                                   "exit Flip\n");
    EXPECT_EQ(RecordOf(pThird)->blast_frame_changed, 0);
    EXPECT_EQ(RecordOf(pFirst)->blast_frame_changed, 1);
    DestroySecond(pThird);
    Destroy(pFirst);
}

TEST(Flip, DefersTheFirstLayerOnlyAfterAFlipOfAnotherDisplay)
{
    pKovaITextDisplay_t pSecond = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    pKovaITextDisplay_t pFirst = GivenSecondDisplay(KOVA_GRAPHIC_LAYER1);
    const std::string window = NameOf(RecordOf(pFirst)->pActiveSurface);
    const std::string flipped = "enter Flip\n  " + window + ".Flip all WAIT|BLIT|ONSYNC\nexit Flip\n";
    EXPECT_EQ(TraceOfFlip(pFirst), flipped);
    EXPECT_EQ(pSecond->Flip(pSecond, 0), 0);

    EXPECT_EQ(TraceOfFlip(pFirst), "enter Flip\n  " + window + ".GetClip\nexit Flip\n");
    RecordOf(pFirst)->bFlip = 0; // with flipping off nothing is deferred, but the window flips
    EXPECT_EQ(TraceOfFlip(pFirst), flipped);
    TurnClock(16000);
    RecordOf(pFirst)->bFlip = 1;
    EXPECT_EQ(TraceOfFlip(pFirst), flipped);
    DestroySecond(pFirst);
    Destroy(pSecond);
}

TEST(Flip, LeavesAHiddenDisplayAlone)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2}) {
        pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(eLayer, INDEX_COLORS, ACTIVE_CONTEXT(1));

        EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0); // checked before the active context
        EXPECT_EQ(pDisplay->Flip(pDisplay, 1), 0);

        EXPECT_EQ(Trace(), "enter Flip\nexit Flip\nenter Flip\nexit Flip\n");
        Destroy(pDisplay);
    }
}

TEST(Flip, RefusesInvalidArguments)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));
    const struct {
        pKovaITextDisplay_t pDisplay;
        int iContext;
        const char *pcTrace;
    } rows[] = {
        {nullptr, 1, "enter Flip\nERROR Flip: NULL Pointer!\n"},
        {nullptr, 4, "enter Flip\nERROR Flip: NULL Pointer!\n"},
        {pDisplay, 4, "enter Flip\nERROR Flip: Invalid context ID!\n"},
        {pDisplay, 127, "enter Flip\nERROR Flip: Invalid context ID!\n"},
        {pDisplay, -128, "enter Flip\nERROR Flip: Invalid context ID!\n"},
        {pDisplay, -1, "enter Flip\nERROR Flip: Invalid context ID!\n"},
        {pDisplay, 0, "enter Flip\n  ERROR Flip: Inactive context!\n"},
        {pDisplay, 3, "enter Flip\n  ERROR Flip: Inactive context!\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "context " << row.iContext);
        ClearTrace();
        EXPECT_EQ(pDisplay->Flip(row.pDisplay, kova_sint8(row.iContext)), -1);
        EXPECT_EQ(Trace(), row.pcTrace);
        EXPECT_TRUE(LockIsFree(pDisplay));
    }
    pDisplay->Hide(pDisplay, 1); // the identifier is checked before the shown state
    ClearTrace();
    EXPECT_EQ(pDisplay->Flip(pDisplay, 4), -1);
    EXPECT_EQ(Trace(), "enter Flip\nERROR Flip: Invalid context ID!\n");
    Destroy(pDisplay);
}

TEST(Flip, AcceptsEveryContextWhileNoneIsActiveAndNoneOnceTheLayerIsGone)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, NO_CONTEXT);
    for (const kova_sint8 scContext : {kova_sint8(0), kova_sint8(1), kova_sint8(2), kova_sint8(3)}) {
        TurnClock(16000);
        ClearTrace();
        EXPECT_EQ(pDisplay->Flip(pDisplay, scContext), 0);
        EXPECT_EQ(Trace(), FLIPPED);
    }
    RecordOf(pDisplay)->scActiveContextID = -2;
    for (const kova_sint8 scContext : {kova_sint8(0), kova_sint8(3)}) {
        ClearTrace();
        EXPECT_EQ(pDisplay->Flip(pDisplay, scContext), -1);
        EXPECT_EQ(Trace(), "enter Flip\n  ERROR Flip: Inactive context!\n");
    }
    Destroy(pDisplay);
}

TEST(SetFlip, KeepsEverythingOffTheScreenUntilItIsSwitchedOnAgain)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextRect_t rect = {0, 0, 8, 8};

    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 0), 0);
    EXPECT_EQ(Trace(), "enter SetFlip Flip:false\nexit SetFlip\n");
    EXPECT_EQ(RecordOf(pDisplay)->bFlip, 0);
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, 1), 0);
    EXPECT_EQ(TraceOfFlip(pDisplay), NOT_FLIPPED);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);

    ClearTrace();
    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 1), 0);
    EXPECT_EQ(Trace(), "enter SetFlip Flip:true\n"
                       "  layer.GetConfiguration\n"
                       "  base.Flip all WAIT|BLIT|ONSYNC\n"
                       "exit SetFlip\n");
    EXPECT_EQ(RecordOf(pDisplay)->bFlip, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(SetFlip, NeverDefersWhileFlippingIsOff)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 0), 0);

    EXPECT_EQ(TraceOfFlip(pDisplay), NOT_FLIPPED);

    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 1);
    Destroy(pDisplay);
}

TEST(SetFlip, ObeysTheSixteenMillisecondsWhenItFlips)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_EQ(TraceOfFlip(pDisplay), FLIPPED);
    TurnClock(15999);
    ClearTrace();

    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 1), 0);

    EXPECT_EQ(Trace(), "enter SetFlip Flip:true\n"
                       "  base.GetClip\n"
                       "exit SetFlip\n");
    EXPECT_TRUE(AwaitSleeper());
    Destroy(pDisplay);
}

TEST(SetFlip, FlipsOnlyWhenSwitchedOnWithAChangedFrame)
{
    const struct {
        kova_bool bFlip, bChanged;
        bool bFlips;
    } rows[] = {{1, 1, true},  {2, 1, true},  {255, 1, true}, {1, 0, false},
                {1, 2, false}, {0, 1, false}, {0, 0, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << int(row.bFlip) << " with " << int(row.bChanged));
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER1);
        RecordOf(pDisplay)->blast_frame_changed = row.bChanged;

        EXPECT_EQ(pDisplay->SetFlip(pDisplay, row.bFlip), 0);

        EXPECT_EQ(Trace(), std::string("enter SetFlip Flip:") + (row.bFlip ? "true" : "false") + "\n" +
                               (row.bFlips ? "  " + NameOf(RecordOf(pDisplay)->pActiveSurface) +
                                                 ".Flip all WAIT|BLIT|ONSYNC\n"
                                           : "") +
                               "exit SetFlip\n");
        EXPECT_EQ(RecordOf(pDisplay)->bFlip, row.bFlip); // the byte as passed
        EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, row.bChanged);
        Destroy(pDisplay);
    }
}

TEST(SetFlip, ChecksNeitherTheContextNorWhetherTheDisplayIsShown)
{
    pKovaITextDisplay_t pDisplay = GivenHiddenDisplay(KOVA_GRAPHIC_LAYER2);
    RecordOf(pDisplay)->scActiveContextID = -2;
    RecordOf(pDisplay)->blast_frame_changed = 1;

    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 1), 0);

    EXPECT_EQ(Trace(), "enter SetFlip Flip:true\n"
                       "  layer.GetConfiguration\n"
                       "  base.Flip all WAIT|BLIT|ONSYNC\n"
                       "exit SetFlip\n");
    Destroy(pDisplay);
}

TEST(SetFlip, RefusesANullDisplayWithoutAnErrorMessage)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    EXPECT_EQ(pDisplay->SetFlip(nullptr, 0), -1);
    EXPECT_EQ(pDisplay->SetFlip(nullptr, 1), -1);

    EXPECT_EQ(Trace(), "enter SetFlip Flip:false\nexit SetFlip\nenter SetFlip Flip:true\nexit SetFlip\n");
    EXPECT_EQ(RecordOf(pDisplay)->bFlip, 1);
    Destroy(pDisplay);
}

TEST(FlippingIsEnabled, FromCreationOnWhateverTheCallerAskedFor)
{
    KovaTextInitParam_t param = InitParam(KOVA_GRAPHIC_LAYER2);
    param.bFlip = 0;
    pKovaITextDisplay_t pDisplay = Kova_TextDFBDisp_Create(&param);

    EXPECT_EQ(RecordOf(pDisplay)->bFlip, 1);
    Kova_TextDFBDisp_Destroy(pDisplay);
    EXPECT_EQ(LiveObjects(), 0);
}
