// SPDX-License-Identifier: MIT
// No wake-up of the flip thread may be lost, neither one that comes after the thread has decided to wait and
// before it waits, nor one before that decision. First a gate stops the thread at each of the two points;
// then bursts and stops run in real time, with the thread slowed down at both.
#include "expect.h"
#include "watchdog.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <random>
#include <unistd.h>

using namespace test;
using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// A lost wake-up never arrives, so a long timeout costs time only if the library is wrong.
static const milliseconds PATIENCE(60000), STRESS(2500);

template <typename Condition> static bool InTime(Condition condition)
{
    for (const auto end = Clock::now() + PATIENCE; Clock::now() < end;) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return condition();
}

static void DestroyInTime(pKovaITextDisplay_t pDisplay)
{
    const Watchdog_t watchdog(PATIENCE, "waiting for the flip thread to end");
    Destroy(pDisplay);
}

// A point at which a thread is stopped.
class Gate_t
{
public:
    void PassThrough()
    {
        m_bReached = true;
        while (!m_bOpen) std::this_thread::sleep_for(milliseconds(1));
    }
    bool AwaitReached()
    {
        return InTime([this] { return m_bReached.load(); });
    }
    void Open()
    {
        m_bOpen = true;
    }

private:
    std::atomic<bool> m_bReached{false}, m_bOpen{false};
};

static const pthread_t s_main = pthread_self();

static bool IsFlipThread()
{
    return !pthread_equal(pthread_self(), s_main);
}

// At this point the thread has not locked the mutex of its wait yet.
static bool IsBeforeItsLock(const KovaDFBDisplay_t *pRecord, const void *pObject)
{
    return IsFlipThread() && pObject == &pRecord->flip_thread_mutex;
}

// At this point it has decided to wait and holds the mutex.
static bool IsBeforeItsWait(const KovaDFBDisplay_t *pRecord, const void *pObject)
{
    return IsFlipThread() && pObject == &pRecord->flip_thread_cond;
}

static void DeferAFlip(pKovaITextDisplay_t pDisplay)
{
    TurnClock(16000);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_EQ(RecordOf(pDisplay)->blast_frame_changed, 0);
}

// The number of flips of the thread.
static int ThreadFlips()
{
    return CountOf(ThreadTrace(), ".Flip all");
}

TEST(FlipThread, ServesARequestMadeBeforeItLocksForItsWait)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    Gate_t gate;
    HoldSleeps(false);
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    BeforeThreadCall([&](const char *, const void *pObject) {
        if (IsBeforeItsLock(RecordOf(pDisplay), pObject)) gate.PassThrough();
    });
    DeferAFlip(pDisplay);
    ASSERT_TRUE(gate.AwaitReached()); // the first request is served
    EXPECT_EQ(ThreadFlips(), 1);

    DeferAFlip(pDisplay);
    gate.Open();

    EXPECT_TRUE(InTime([] { return ThreadFlips() == 2; })) << ThreadTrace();
    DestroyInTime(pDisplay);
    BeforeThreadCall(nullptr);
}

TEST(FlipThread, ServesARequestMadeBetweenItsDecisionToWaitAndItsWait)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    std::atomic<bool> bDecided{false};
    HoldSleeps(false);
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    BeforeThreadCall([&](const char *, const void *pObject) {
        if (!IsBeforeItsWait(RecordOf(pDisplay), pObject)) return;
        bDecided = true;
        std::this_thread::sleep_for(milliseconds(100)); // meanwhile the requester waits for the mutex
    });
    DeferAFlip(pDisplay);
    ASSERT_TRUE(InTime([&] { return bDecided.load(); }));
    EXPECT_EQ(ThreadFlips(), 1);

    DeferAFlip(pDisplay);

    EXPECT_TRUE(InTime([] { return ThreadFlips() == 2; })) << ThreadTrace();
    DestroyInTime(pDisplay);
    BeforeThreadCall(nullptr);
}

TEST(FlipThread, GetsItsReasonBeforeItIsWoken)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    const KovaDFBDisplay_t *const pRecord = RecordOf(pDisplay);
    std::string told;
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    BeforeThreadCall([&](const char *pcCall, const void *pObject) {
        if (IsFlipThread()) return;
        if (pObject != &pRecord->flip_thread_mutex && pObject != &pRecord->flip_thread_cond) return;
        const bool bStop = __atomic_load_n(&pRecord->flip_thread_stop, __ATOMIC_RELAXED) != 0;
        const bool bFlip = __atomic_load_n(&pRecord->bFlipPosted, __ATOMIC_RELAXED) != 0;
        told += std::string(pcCall) + (bStop ? " stop" : bFlip ? " flip" : "") + "\n";
    });

    DeferAFlip(pDisplay);
    EXPECT_EQ(told, "pthread_mutex_lock flip\npthread_cond_signal flip\n");
    HoldSleeps(false);
    EXPECT_TRUE(InTime([] { return ThreadFlips() == 1; }));
    EXPECT_TRUE(AwaitIdleThread(pDisplay));

    told.clear();
    DestroyInTime(pDisplay);
    EXPECT_EQ(told, "pthread_mutex_lock stop\npthread_cond_signal stop\n");
    BeforeThreadCall(nullptr);
}

TEST(FlipThread, MakesNoPassOfItsOwnForARequestThatItHasJustServed)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    DeferAFlip(pDisplay);
    EXPECT_TRUE(AwaitSleeper());
    DeferAFlip(pDisplay); // while it sleeps
    Gate_t gate;
    BeforeThreadCall([&](const char *, const void *pObject) {
        if (IsBeforeItsWait(RecordOf(pDisplay), pObject)) gate.PassThrough();
    });

    LetSleeperGo();

    EXPECT_TRUE(gate.AwaitReached()); // it waits instead of sleeping again
    EXPECT_EQ(CountOf(ThreadTrace(), "usleep"), 1);
    EXPECT_EQ(ThreadFlips(), 1);
    gate.Open();
    DestroyInTime(pDisplay);
    BeforeThreadCall(nullptr);
}

TEST(FlipThread, EndsWhenRequestedBeforeItHasEvenBegunToWait)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    Gate_t gate;
    BeforeThreadCall([&](const char *, const void *pObject) {
        if (IsBeforeItsLock(RecordOf(pDisplay), pObject)) gate.PassThrough();
    });
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);
    ASSERT_TRUE(gate.AwaitReached());
    {
        const Watchdog_t watchdog(PATIENCE, "waiting for the flip thread to end");
        std::thread opener([&] {
            InTime([] { return Contains(Trace(), "pthread_join\n"); });
            gate.Open();
        });
        Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
        opener.join();
    }
    EXPECT_EQ(ThreadTrace(), "enter Flip_last_frame_Thread\nexit Flip_last_frame_Thread\n");
    BeforeThreadCall(nullptr);
    DestroyInTime(pDisplay);
}

TEST(FlipThread, EndsWhenRequestedBetweenItsDecisionToWaitAndItsWait)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    std::atomic<bool> bDecided{false};
    BeforeThreadCall([&](const char *, const void *pObject) {
        if (!IsBeforeItsWait(RecordOf(pDisplay), pObject)) return;
        bDecided = true;
        std::this_thread::sleep_for(milliseconds(100));
    });
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);
    ASSERT_TRUE(InTime([&] { return bDecided.load(); }));
    {
        const Watchdog_t watchdog(PATIENCE, "waiting for the flip thread to end");
        Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
    }
    EXPECT_EQ(ThreadTrace(), "enter Flip_last_frame_Thread\nexit Flip_last_frame_Thread\n");
    BeforeThreadCall(nullptr);
    DestroyInTime(pDisplay);
}

// ---- in real time

static std::atomic<int> s_iDrawn, s_iShown, s_iFlips, s_iThreadFlips;

// The surface counts instead of recording; all calls on it are made under the display's lock.
static void CountFramesOf(IDirectFBSurface *pSurface)
{
    s_iDrawn = s_iShown = s_iFlips = s_iThreadFlips = 0;
    pSurface->FillRectangle = [](IDirectFBSurface *, int, int, int, int) {
        s_iDrawn++;
        return DFB_OK;
    };
    pSurface->Flip = [](IDirectFBSurface *, const DFBRegion *, DFBSurfaceFlipFlags) {
        s_iShown = s_iDrawn.load();
        s_iFlips++;
        if (IsFlipThread()) s_iThreadFlips++;
        return DFB_OK;
    };
}

static void SleepUpTo(int iMicroseconds)
{
    static std::atomic<unsigned> s_uiSeed{1};
    static thread_local std::minstd_rand s_random(s_uiSeed++);
    std::this_thread::sleep_for(
        std::chrono::microseconds(std::uniform_int_distribution<int>(0, iMicroseconds)(s_random)));
}

// Delays the thread before it locks and before it waits, to enlarge the windows that can lose a wake-up.
static void SlowTheThreadDown(const KovaDFBDisplay_t *pRecord, int iMicroseconds)
{
    BeforeThreadCall([=](const char *, const void *pObject) {
        if (IsBeforeItsLock(pRecord, pObject) || IsBeforeItsWait(pRecord, pObject)) SleepUpTo(iMicroseconds);
    });
}

static void DrawAFrame(pKovaITextDisplay_t pDisplay)
{
    KovaTextRect_t rect = {0, 0, 8, 8};

    pDisplay->FillRect(pDisplay, 0, &rect, 1);
    pDisplay->Flip(pDisplay, 0);
}

TEST(FlipThread, BringsTheLastFrameOfEveryBurstToTheScreen)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    int iBursts = 0;
    SetThreshold(0);
    UseRealClock(true);
    CountFramesOf(RecordOf(pDisplay)->pActiveSurface);
    SlowTheThreadDown(RecordOf(pDisplay), 500);

    // At least this many, however busy the machine is, and until both kinds of flip have occurred: otherwise this proves
    // nothing.
    const auto tookBothWays = [] { return s_iThreadFlips > 0 && s_iFlips > s_iThreadFlips; };
    for (const auto end = Clock::now() + STRESS; Clock::now() < end || iBursts <= 10 || !tookBothWays();
         iBursts++) {
        DrawAFrame(pDisplay);
        DrawAFrame(pDisplay);
        // About now the thread has finished the second of the two.
        std::this_thread::sleep_for(std::chrono::microseconds(16000));
        SleepUpTo(1000);
        DrawAFrame(pDisplay);
        DrawAFrame(pDisplay);
        ASSERT_TRUE(InTime([] { return s_iShown == s_iDrawn; })) << "the last frame of burst " << iBursts;
        ClearTrace();
    }

    RecordProperty("bursts", iBursts);
    DestroyInTime(pDisplay);
    BeforeThreadCall(nullptr);
}

TEST(FlipThread, EndsWheneverItIsRequested)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    int iCycles = 0;
    SetThreshold(0);
    UseRealClock(true);
    SlowTheThreadDown(RecordOf(pDisplay), 100);
    {
        Watchdog_t watchdog(PATIENCE, "the first cycle");
        for (const auto end = Clock::now() + STRESS; Clock::now() < end || iCycles <= 1000; iCycles++) {
            ASSERT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);
            if (iCycles % 2) SleepUpTo(400);
            Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
            watchdog.Progress("cycle " + std::to_string(iCycles));
            if (iCycles % 64 == 0) ClearTrace();
        }
    }
    RecordProperty("cycles", iCycles);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 0u);
    BeforeThreadCall(nullptr);
    DestroyInTime(pDisplay);
}

TEST(FlipThread, EndsInTheMiddleOfBurstsToo)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    int iCycles = 0;
    SetThreshold(0);
    UseRealClock(true);
    CountFramesOf(RecordOf(pDisplay)->pActiveSurface);
    SlowTheThreadDown(RecordOf(pDisplay), 300);
    {
        Watchdog_t watchdog(PATIENCE, "the first cycle");
        for (const auto end = Clock::now() + STRESS / 2; Clock::now() < end || iCycles <= 20; iCycles++) {
            DrawAFrame(pDisplay);
            DrawAFrame(pDisplay);
            if (iCycles % 2) SleepUpTo(17000);
            Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
            watchdog.Progress("cycle " + std::to_string(iCycles));
            DrawAFrame(pDisplay); // without a thread, which must not be used
            ASSERT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);
            ClearTrace();
        }
    }
    DestroyInTime(pDisplay);
    BeforeThreadCall(nullptr);
}

// ---- a thread that is ending

// Holds the caller that destroys the last context up in its join, until the test's own thread has slept so
// often.
static void HoldTheJoinFor(int iSleeps, std::atomic<int> *piJoins)
{
    BeforeThreadCall([=](const char *pcCall, const void *) {
        if (strcmp(pcCall, "pthread_join") != 0) return;
        ++*piJoins;
        InTime([=] { return CountOf(TraceOf("usleep 1000\n"), "usleep 1000\n") >= iSleeps; });
    });
}

TEST(CreateContext, WaitsForAThreadThatIsEndingAndStartsItsOwn)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    std::atomic<int> iJoins{0};
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    HoldTheJoinFor(3, &iJoins);
    std::thread destroyer([=] { Kova_TextDFBDisp_DestroyContext(pDisplay, 0); });
    ASSERT_TRUE(InTime([&] { return iJoins == 1; }));
    ClearTrace();

    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);

    destroyer.join();
    BeforeThreadCall(nullptr);
    // In steps of a millisecond, with the lock given up, and before anything else is done.
    const std::string trace = Trace();
    EXPECT_EQ(trace.rfind("enter Kova_TextDFBDisp_CreateContext\nusleep 1000\nusleep 1000\nusleep 1000\n", 0),
              0u)
        << trace;
    const size_t end = trace.rfind("usleep 1000\n") + strlen("usleep 1000\n");
    EXPECT_EQ(trace.substr(end), "  log Kova_TextDFBDisp_CreateContext: Create context 0\n"
                                 "  pthread_create\n"
                                 "exit Kova_TextDFBDisp_CreateContext\n");
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 1u);

    // The thread serves it.
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    HoldSleeps(false);
    const int iFlips = ThreadFlips();
    DeferAFlip(pDisplay);
    EXPECT_TRUE(InTime([=] { return ThreadFlips() == iFlips + 1; })) << ThreadTrace();
    DestroyInTime(pDisplay);
}

TEST(CreateContext, DoesNotWaitForAThreadThatHasEndedOrIsInUse)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 1);
    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
    Kova_TextDFBDisp_DestroyContext(pDisplay, 1);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_stop, 1);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 0);

    EXPECT_FALSE(Contains(Trace(), "usleep"));
    DestroyInTime(pDisplay);
}

// Another context, whose own thread could not be started, holds nothing that a second caller could join.
TEST(DestroyContext, IsNotTheLastWhileAnotherCallerEndsTheThread)
{
    pKovaITextDisplay_t pDisplay = GivenDisplay(KOVA_GRAPHIC_LAYER2);
    KovaTextContextParam_t param = ContextParam();
    std::atomic<int> iJoins{0};
    FailThreadStart(EAGAIN);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), -1);
    FailThreadStart(0);
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &param), 1);
    EXPECT_TRUE(AwaitIdleThread(pDisplay));
    Gate_t gate;
    BeforeThreadCall([&](const char *pcCall, const void *) {
        if (strcmp(pcCall, "pthread_join") == 0 && ++iJoins == 1) gate.PassThrough();
    });
    std::thread destroyer([=] { Kova_TextDFBDisp_DestroyContext(pDisplay, 1); });
    ASSERT_TRUE(gate.AwaitReached());

    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);

    EXPECT_EQ(iJoins, 1);
    gate.Open();
    destroyer.join();
    BeforeThreadCall(nullptr);
    EXPECT_EQ(RecordOf(pDisplay)->flip_thread_ref, 0u);
    DestroyInTime(pDisplay);
}
