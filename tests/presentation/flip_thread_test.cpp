// SPDX-License-Identifier: MIT
#include "displays.h"

#include <functional>
#include <unistd.h>

using namespace test;

static const KovaTextRect_t RECT = {10, 20, 100, 50};

static std::string RegionText(const DFBRegion &region)
{
    return std::to_string(region.x1) + "," + std::to_string(region.y1) + " " + std::to_string(region.x2) +
           "," + std::to_string(region.y2);
}

// Makes a direct flip and, 5 ms later, a deferred one; the thread then sleeps.
static void GivenDeferredFlip(pKovaITextDisplay_t pDisplay)
{
    KovaTextRect_t rect = RECT;

    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    TurnClock(5000);
    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &rect), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    EXPECT_TRUE(AwaitSleeper());
}

// Ends the thread's sleep and waits until the thread waits again. The next event records its failures.
static void EndSleep(pKovaITextDisplay_t pDisplay)
{
    LetSleeperGo();
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
}

static int OwnerOf(const pthread_mutex_t &mutex)
{
    return mutex.__data.__owner;
}

TEST(FlipThread, FlipsTheLastFrameUnderItsClipAndRestoresTheClipInForce)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pActiveSurface;
    GivenDeferredFlip(pDisplay);
    const std::string deferred = RegionText(ClipOf(pSurface));
    const DFBRegion other = {1, 2, 3, 4};
    pSurface->SetClip(pSurface, &other); // directly, because the library's SetClip would supersede the frame

    EndSleep(pDisplay);

    EXPECT_EQ(deferred.rfind("10,20 ", 0), 0u);
    EXPECT_EQ(ThreadTrace(), "usleep 16000\n"
                             "  layer.GetConfiguration\n"
                             "  base.GetClip\n"
                             "  base.SetClip " +
                                 deferred +
                                 "\n"
                                 "  base.Flip all WAIT|BLIT|ONSYNC\n"
                                 "  base.SetClip 1,2 3,4\n");
    EXPECT_EQ(RegionText(ClipOf(pSurface)), "1,2 3,4");
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

static bool IsAtWork(pKovaITextDisplay_t pDisplay)
{
    return __atomic_load_n(&RecordOf(pDisplay)->has_flipping_req, __ATOMIC_RELAXED) != 0;
}

TEST(FlipThread, ReportsThatItIsBusyFromItsWakingUntilItWaitsAgain)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    EXPECT_FALSE(IsAtWork(pDisplay));

    GivenDeferredFlip(pDisplay);
    EXPECT_TRUE(IsAtWork(pDisplay));

    EndSleep(pDisplay);
    EXPECT_FALSE(IsAtWork(pDisplay));
    Destroy(pDisplay);
}

TEST(FlipThread, LeavesTheMarkAndTheStampAsTheyWere)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    EndSleep(pDisplay); // 21 ms after the direct flip
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    ClearTrace();

    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);

    EXPECT_EQ(Trace(), "enter Flip\n"
                       "  layer.GetConfiguration\n"
                       "  base.Flip all WAIT|BLIT|ONSYNC\n"
                       "exit Flip\n"); // at once, although the thread has just flipped
    Destroy(pDisplay);
}

struct Meanwhile_t {
    const char *pcName;
    std::function<void(pKovaITextDisplay_t)> act;
    bool bFlips; // whether the thread flips afterwards
};

static void PrintTo(const Meanwhile_t &row, std::ostream *pStream)
{
    *pStream << row.pcName;
}

static kova_uint8 s_aucPixels[64];

static void ExpandOne(pKovaITextDisplay_t p)
{
    p->DrawPixelExpand(p, 0, s_aucPixels, 0, 0, 8, 1, 1, 0, 1, 0, KOVA_EXPAND_1X1Y);
}

static void ExpandBatch(pKovaITextDisplay_t p)
{
    kova_uint8 *pucPixel = s_aucPixels;
    kova_uint32 uiX = 0, uiY = 0, uiWidth = 8, uiHeight = 1, uiRow = 1, uiBit = 0;
    kova_sint32 siBg = 0, siFg = 1;
    KovaTextExpand_e eExpand = KOVA_EXPAND_1X1Y;

    p->BatchDrawPixelExpand(p, 0, &pucPixel, &uiX, &uiY, &uiWidth, &uiHeight, &uiRow, &siBg, &siFg, &uiBit,
                            &eExpand, 1);
}

static void DrawText(pKovaITextDisplay_t p)
{
    const unsigned short text[] = {'a', 0};
    EXPECT_EQ(p->DrawString(p, 0, text, 1, 0, 0, KOVA_TEXT_UNICODE, KovaTextAlignFlag_e(0)), 0);
}

static const Meanwhile_t MEANWHILE[] = {
    {"Nothing", [](pKovaITextDisplay_t) {}, true},
    {"FillRect",
     [](pKovaITextDisplay_t p) {
         KovaTextRect_t rect = RECT;
         p->FillRect(p, 0, &rect, 1);
     },
     false},
    {"SetClip",
     [](pKovaITextDisplay_t p) {
         KovaTextRect_t rect = RECT;
         p->SetClip(p, 0, &rect);
     },
     false},
    {"Show", [](pKovaITextDisplay_t p) { p->Show(p, 0); }, false},
    {"Hide", [](pKovaITextDisplay_t p) { p->Hide(p, 0); }, false},
    {"DrawPixelExpand", ExpandOne, false},
    {"BatchDrawPixelExpand", ExpandBatch, false},
    // These flip by themselves. Within 16 ms this defers the newer frame, which the thread then flips.
    {"DrawLineWithinTheTime", [](pKovaITextDisplay_t p) { p->DrawLine(p, 0, 0, 0, 9, 9, 1); }, true},
    {"DrawPixelWithinTheTime", [](pKovaITextDisplay_t p) { p->DrawPixel(p, 0, s_aucPixels, 0, 0, 4, 4, 4); },
     true},
    {"FlipWithinTheTime", [](pKovaITextDisplay_t p) { p->Flip(p, 0); }, true},
    {"DrawStringWithinTheTime", DrawText, true},
    // Later they flip directly, and nothing is left for the thread.
    {"DrawLineLater",
     [](pKovaITextDisplay_t p) {
         TurnClock(11000);
         p->DrawLine(p, 0, 0, 0, 9, 9, 1);
     },
     false},
    {"FlipLater",
     [](pKovaITextDisplay_t p) {
         TurnClock(11000);
         p->Flip(p, 0);
     },
     false},
    {"DrawStringLater",
     [](pKovaITextDisplay_t p) {
         TurnClock(11000);
         DrawText(p);
     },
     false},
    // Switching flipping off does not stop a flip that is already deferred.
    {"SetFlipOff", [](pKovaITextDisplay_t p) { p->SetFlip(p, 0); }, true},
    {"SetFlipOn", [](pKovaITextDisplay_t p) { p->SetFlip(p, 1); }, true},
    {"DrawLineWithFlippingOff",
     [](pKovaITextDisplay_t p) {
         p->SetFlip(p, 0);
         p->DrawLine(p, 0, 0, 0, 9, 9, 1);
     },
     false},
    {"DrawStringWithFlippingOff",
     [](pKovaITextDisplay_t p) {
         p->SetFlip(p, 0);
         DrawText(p); // draws, but does not set the flag
     },
     true},
    {"SetPalette",
     [](pKovaITextDisplay_t p) {
         KovaTextColor_t color = {1, 2, 3, 4};
         p->SetPalette(p, 0, &color, 1, 5);
     },
     true},
    {"SetTextForeColor", [](pKovaITextDisplay_t p) { p->SetTextForeColor(p, 0, 3); }, true},
    {"SetBlittingFlags", [](pKovaITextDisplay_t p) { p->SetBlittingFlags(p, 0, KovaTextBlitFlag_e(0)); },
     true},
    {"FillRectRefused",
     [](pKovaITextDisplay_t p) {
         KovaTextRect_t rect = RECT;
         p->FillRect(p, 1, &rect, 1);
     },
     true},
};

class FlipThreadAfter : public testing::TestWithParam<Meanwhile_t>
{
};

TEST_P(FlipThreadAfter, FlipsOnlyWhatNothingHasSuperseded)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenFont(pDisplay);
    GivenDeferredFlip(pDisplay);

    GetParam().act(pDisplay);
    EndSleep(pDisplay);

    const std::string trace = ThreadTrace();
    EXPECT_EQ(CountOf(trace, "usleep 16000\n"), 1) << trace;
    EXPECT_EQ(CountOf(trace, "base.Flip all WAIT|BLIT|ONSYNC\n"), GetParam().bFlips ? 1 : 0) << trace;
    if (!GetParam().bFlips) {
        EXPECT_EQ(trace, "usleep 16000\n");
    }
    Destroy(pDisplay);
}

INSTANTIATE_TEST_SUITE_P(Meanwhile, FlipThreadAfter, testing::ValuesIn(MEANWHILE),
                         [](const auto &row) { return std::string(row.param.pcName); });

TEST(FlipThread, ServesARequestMadeDuringItsSleepInTheSamePass)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    IDirectFBSurface *const pSurface = RecordOf(pDisplay)->pActiveSurface;
    KovaTextRect_t newer = {200, 100, 50, 60};
    GivenDeferredFlip(pDisplay);
    TurnClock(5000);
    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &newer), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0); // also deferred
    const std::string clip = RegionText(ClipOf(pSurface));

    EndSleep(pDisplay);

    // Once, with the newer clip, and without a further pass, which would sleep first.
    EXPECT_EQ(ThreadTrace(), "usleep 16000\n"
                             "  layer.GetConfiguration\n"
                             "  base.GetClip\n"
                             "  base.SetClip " +
                                 clip +
                                 "\n"
                                 "  base.Flip all WAIT|BLIT|ONSYNC\n"
                                 "  base.SetClip " +
                                 clip + "\n");
    EXPECT_EQ(clip.rfind("200,100 ", 0), 0u);
    EXPECT_EQ(__atomic_load_n(&RecordOf(pDisplay)->bFlipPosted, __ATOMIC_RELAXED), 0);
    EXPECT_FALSE(IsAtWork(pDisplay));
    Destroy(pDisplay);
}

TEST(FlipThread, ServesEachOfTwoRequestsThatComeOneAfterTheOther)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    for (int i = 1; i <= 3; i++) {
        GivenDeferredFlip(pDisplay);
        EndSleep(pDisplay);
        EXPECT_EQ(CountOf(ThreadTrace(), "base.Flip all"), i);
    }
    Destroy(pDisplay);
}

TEST(FlipThread, MakesOnePassForASpuriousWakeUp)
{
    for (const kova_bool bChanged : {kova_bool(1), kova_bool(0)}) {
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
        HoldSleeps(true);
        GivenDeferredFlip(pDisplay);
        EndSleep(pDisplay);
        ClearTrace();
        pRecord->blast_frame_changed = bChanged;
        // The thread holds its mutex except while it waits. Until the flag shows it, it may not wait yet.
        for (int i = 0; i < 1000 && !IsAtWork(pDisplay); i++) {
            pthread_mutex_lock(&pRecord->flip_thread_mutex);
            pthread_cond_signal(&pRecord->flip_thread_cond);
            pthread_mutex_unlock(&pRecord->flip_thread_mutex);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        ASSERT_TRUE(AwaitSleeper());

        EndSleep(pDisplay);

        EXPECT_EQ(CountOf(ThreadTrace(), "usleep 16000\n"), 1);
        EXPECT_EQ(CountOf(ThreadTrace(), ".Flip all"), bChanged ? 0 : 1);
        Destroy(pDisplay);
    }
}

TEST(FlipThread, FlipsNothingWhereNoBackBufferIsReported)
{
    const struct {
        DFBDisplayLayerBufferMode eMode;
        bool bReported, bFlips;
    } rows[] = {{DLBM_FRONTONLY, true, false},  {DLBM_BACKVIDEO, true, true},
                {DLBM_BACKSYSTEM, true, true},  {DLBM_TRIPLE, true, false},
                {DLBM_BACKVIDEO, false, false}, {DLBM_BACKSYSTEM, false, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "mode " << row.eMode << " reported " << row.bReported);
        pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
        HoldSleeps(true);
        ForceBufferMode(DLBM_BACKVIDEO, true);
        GivenDeferredFlip(pDisplay);
        ForceBufferMode(row.eMode, row.bReported);

        EndSleep(pDisplay);

        EXPECT_EQ(CountOf(ThreadTrace(), "\n"), row.bFlips ? 6 : 2) << ThreadTrace();
        EXPECT_EQ(CountOf(ThreadTrace(), ".GetConfiguration\n"), 1);
        EXPECT_EQ(CountOf(ThreadTrace(), ".Flip all"), row.bFlips ? 1 : 0);
        Destroy(pDisplay);
    }
}

TEST(FlipThread, FlipsNothingWhenTheConfigurationCannotBeRead)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    ClearTrace();
    FailNth("Layer.GetConfiguration", 1, DFB_IO);

    EndSleep(pDisplay);

    EXPECT_EQ(ThreadTrace(), "  layer.GetConfiguration\n  " + CheckLine(DFB_IO));
    EXPECT_EQ(Trace(), "");
    Destroy(pDisplay);
}

// Each call of the flip fails once; the others are made anyway.
TEST(FlipThread, ContinuesWhenTheClipCannotBeRead)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    const std::string clip = RegionText(RecordOf(pDisplay)->flip_clip);
    FailNth("Surface.GetClip", 1, DFB_FAILURE);

    EndSleep(pDisplay);

    EXPECT_EQ(ThreadTrace(), "usleep 16000\n"
                             "  layer.GetConfiguration\n"
                             "  base.GetClip\n"
                             "  " +
                                 CheckLine(DFB_FAILURE) + "  base.SetClip " + clip +
                                 "\n"
                                 "  base.Flip all WAIT|BLIT|ONSYNC\n"
                                 "  base.SetClip 0,0 0,0\n"); // the result of the failed call
    Destroy(pDisplay);
}

TEST(FlipThread, FlipsAlthoughTheDeferredClipCannotBeSet)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    const std::string clip = RegionText(RecordOf(pDisplay)->flip_clip);
    FailNth("Surface.SetClip", 1, DFB_INVARG);

    EndSleep(pDisplay);

    EXPECT_EQ(ThreadTrace(), "usleep 16000\n"
                             "  layer.GetConfiguration\n"
                             "  base.GetClip\n"
                             "  base.SetClip " +
                                 clip + "\n  " + CheckLine(DFB_INVARG) +
                                 "  base.Flip all WAIT|BLIT|ONSYNC\n"
                                 "  base.SetClip " +
                                 clip + "\n");
    Destroy(pDisplay);
}

TEST(FlipThread, RestoresTheClipAlthoughTheFlipFailed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    const std::string clip = RegionText(RecordOf(pDisplay)->flip_clip);
    FailNth("Surface.Flip", 1, DFB_UNSUPPORTED);

    EndSleep(pDisplay);

    EXPECT_EQ(ThreadTrace(), "usleep 16000\n"
                             "  layer.GetConfiguration\n"
                             "  base.GetClip\n"
                             "  base.SetClip " +
                                 clip +
                                 "\n"
                                 "  base.Flip all WAIT|BLIT|ONSYNC\n  " +
                                 CheckLine(DFB_UNSUPPORTED) + "  base.SetClip " + clip + "\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    Destroy(pDisplay);
}

TEST(FlipThread, ReportsThatTheClipCannotBeRestored)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    const std::string clip = RegionText(RecordOf(pDisplay)->flip_clip);
    ClearTrace();
    FailNth("Surface.SetClip", 2, DFB_INVARG);

    EndSleep(pDisplay);

    EXPECT_EQ(ThreadTrace(), "  layer.GetConfiguration\n"
                             "  base.GetClip\n"
                             "  base.SetClip " +
                                 clip +
                                 "\n"
                                 "  base.Flip all WAIT|BLIT|ONSYNC\n"
                                 "  base.SetClip " +
                                 clip + "\n  " + CheckLine(DFB_INVARG));
    EXPECT_EQ(Trace(), "");
    Destroy(pDisplay);
}

TEST(FlipThread, FlipsTheWindowOfTheFirstLayerWithoutTouchingItsClip)
{
    pKovaITextDisplay_t pOther = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    pKovaITextDisplay_t pDisplay = GivenSecondDisplay(KOVA_GRAPHIC_LAYER1);
    const std::string surface = NameOf(RecordOf(pDisplay)->pActiveSurface);
    EXPECT_EQ(pOther->Flip(pOther, 0), 0); // stores the time, without which this layer never defers
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_TRUE(AwaitSleeper());

    EndSleep(pDisplay);

    EXPECT_EQ(ThreadTrace(), "usleep 16000\n"
                             "  " +
                                 surface + ".Flip all WAIT|BLIT|ONSYNC\n");
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
    DestroySecond(pDisplay);
    Destroy(pOther);
}

TEST(FlipThread, ReportsAFailedFlipOfTheFirstLayer)
{
    pKovaITextDisplay_t pOther = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    pKovaITextDisplay_t pDisplay = GivenSecondDisplay(KOVA_GRAPHIC_LAYER1);
    EXPECT_EQ(pOther->Flip(pOther, 0), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_TRUE(AwaitSleeper());
    ClearTrace();
    FailNth("Surface.Flip", 1, DFB_FAILURE);

    EndSleep(pDisplay);

    EXPECT_EQ(CountOf(ThreadTrace(), CheckLine(DFB_FAILURE)), 1);
    EXPECT_EQ(Trace(), "");
    DestroySecond(pDisplay);
    Destroy(pOther);
}

TEST(FlipThread, DoesNothingWithoutALayer)
{
    for (const KovaGraphicLayer_e eLayer : {KOVA_GRAPHIC_LAYER1, KOVA_GRAPHIC_LAYER2}) {
        SCOPED_TRACE(eLayer);
        pKovaITextDisplay_t pOther = GivenShownDisplay(KOVA_GRAPHIC_LAYER3);
        HoldSleeps(true);
        pKovaITextDisplay_t pDisplay = GivenSecondDisplay(eLayer);
        EXPECT_EQ(pOther->Flip(pOther, 0), 0);
        EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
        EXPECT_TRUE(AwaitSleeper());
        testing::internal::CaptureStdout();
        Kova_TextDFBDisp_SetActive(pDisplay, 0, 0);
        testing::internal::GetCapturedStdout();
        ASSERT_EQ(RecordOf(pDisplay)->pLayer, nullptr);
        ASSERT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);

        EndSleep(pDisplay);

        EXPECT_EQ(ThreadTrace(), "usleep 16000\n");
        EXPECT_EQ(StandardError(), "");
        DestroySecond(pDisplay);
        Destroy(pOther);
    }
}

TEST(FlipThread, ReportsASurfaceThatIsNotThereAsDestroyed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    EXPECT_EQ(pDisplay->UseBackupSurface(pDisplay, 0, 1), 0); // it does not exist
    ASSERT_EQ(RecordOf(pDisplay)->pActiveSurface, nullptr);
    ClearTrace();

    EndSleep(pDisplay);

    const std::string line = "  " + CheckLine(DFB_DESTROYED);
    EXPECT_EQ(ThreadTrace(),
              "  layer.GetConfiguration\n" + line + line + line + line); // read, set, flip, restore
    EXPECT_EQ(Trace(), "");
    Destroy(pDisplay);
}

TEST(FlipThread, HoldsItsOwnMutexAroundTheWaitOnlyAndNeverWithTheDisplays)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    const pthread_t self = pthread_self();
    BeforeThreadCall([&](const char *pcCall, const void *pObject) {
        if (pthread_equal(pthread_self(), self)) return;
        const bool bDisplay = OwnerOf(pRecord->display_mutex) == gettid();
        const bool bOwn = OwnerOf(pRecord->flip_thread_mutex) == gettid();
        const char *const pcObject = pObject == &pRecord->display_mutex       ? "display"
                                     : pObject == &pRecord->flip_thread_mutex ? "own mutex"
                                                                              : "condition";
        Note(std::string(pcCall) + " " + pcObject + (bDisplay ? ", display held" : "") +
             (bOwn ? ", own mutex held" : ""));
    });
    GivenDeferredFlip(pDisplay);
    ClearTrace();
    HoldSleeps(false);
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    EXPECT_TRUE(AwaitThreadTrace("pthread_cond_wait"));
    Kova_TextDisp_DestroyContext(pDisplay, 0);
    BeforeThreadCall(nullptr);

    EXPECT_EQ(CountOf(ThreadTrace(), "pthread_cond_wait condition, own mutex held\n"), 1);
    EXPECT_EQ(CountOf(ThreadTrace(), "pthread_mutex_lock own mutex\n"), 1);
    EXPECT_EQ(CountOf(ThreadTrace(), "pthread_mutex_lock display\n"), 2); // after the sleep, and for the stop
    EXPECT_EQ(CountOf(ThreadTrace(), "pthread_"), 4) << ThreadTrace();
    Destroy(pDisplay);
}

TEST(FlipThread, SleepsWithoutAnyLock)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);

    EXPECT_EQ(OwnerOf(RecordOf(pDisplay)->display_mutex), 0);
    EXPECT_EQ(OwnerOf(RecordOf(pDisplay)->flip_thread_mutex), 0);
    EXPECT_EQ(ThreadTrace(), "usleep 16000\n");
    Destroy(pDisplay);
}

static std::string Stopped()
{
    return "enter Kova_TextDFBDisp_DestroyContext\n"
           "pthread_join\n"
           "exit Kova_TextDFBDisp_DestroyContext\n";
}

TEST(FlipThread, EndsWhileItWaits)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);

    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);

    EXPECT_EQ(Trace(), Stopped());
    EXPECT_EQ(ThreadTrace(), "exit Flip_last_frame_Thread\n"); // without sleeping
    EXPECT_FALSE(IsAtWork(pDisplay));
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_stop, 1);
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(FlipThread, EndsAfterItsSleepWithoutFlipping)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    GivenDeferredFlip(pDisplay);
    ClearTrace();
    // The stopping thread waits for it meanwhile, so a third thread ends its sleep.
    std::thread waker([&] {
        while (!__atomic_load_n(&RecordOf(pDisplay)->flip_thread_stop, __ATOMIC_RELAXED)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        LetSleeperGo();
    });

    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
    waker.join();

    EXPECT_EQ(Trace(), Stopped());
    EXPECT_EQ(ThreadTrace(), "exit Flip_last_frame_Thread\n");
    EXPECT_FALSE(IsAtWork(pDisplay));
    EXPECT_TRUE(LockIsFree(pDisplay));
    Destroy(pDisplay);
}

TEST(FlipThread, IsStartedAgainByTheNextContext)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
    KovaTextContextParam_t param = ContextParam();
    ClearTrace();

    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);
    EXPECT_TRUE(AwaitThreadTrace("enter Flip_last_frame_Thread\n"));
    GivenDeferredFlip(pDisplay);
    EndSleep(pDisplay);

    EXPECT_EQ(CountOf(ThreadTrace(), "base.Flip all WAIT|BLIT|ONSYNC\n"), 1);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_stop, 0);
    Destroy(pDisplay);
}

// The thread before it was stopped in its sleep, with a request noted that it had not seen.
TEST(FlipThread, StartsWithoutTheRequestsOfTheThreadBefore)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    GivenDeferredFlip(pDisplay);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_EQ(RecordOf(pDisplay)->bFlipPosted, 1);
    BeforeThreadCall([](const char *pcCall, const void *) {
        if (strcmp(pcCall, "pthread_join") == 0) LetSleeperGo();
    });
    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
    BeforeThreadCall(nullptr);
    ClearTrace();

    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);

    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    EXPECT_FALSE(Contains(ThreadTrace(), "usleep")) << ThreadTrace();
    Destroy(pDisplay);
}
