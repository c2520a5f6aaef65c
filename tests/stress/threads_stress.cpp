// SPDX-License-Identifier: MIT
// Eight threads draw, show, hide, activate, resize and flip on one display, in real time, while its flip
// thread runs. Besides what the thread sanitizer finds, the test checks that the lock is free at the end,
// that the last frame is on the screen, that no direct flip came too soon after another, and that no object
// is left.
// usage: threads_stress [OPERATIONS [THREADS]]    operations per thread; the defaults are 20000 and 8
#include "double.h"
#include "kova/kova_textdisp_dfb.h"
#include "kova_textdisp_dfb/record.h"
#include "watchdog.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <thread>
#include <vector>

namespace
{

const kova_uint32 WIDTH = 720, HEIGHT = 480;

std::atomic<long> s_lDrawn{0}, s_lShown{0}, s_lDirect{0}, s_lByThread{0}, s_lTooSoon{0}, s_lRefused{0};
struct timeval s_last; // time of the last direct flip; written under the display's lock

void CountFrame()
{
    s_lDrawn++;
}

// As documented: whole milliseconds, each part truncated separately.
long Milliseconds(const struct timeval &to, const struct timeval &from)
{
    return (to.tv_sec - from.tv_sec) * 1000 + (to.tv_usec - from.tv_usec) / 1000;
}

// The flip thread never reads the time.
void CountFlip(struct timeval asked)
{
    s_lShown = s_lDrawn.load();
    if (asked.tv_sec == 0) {
        s_lByThread++;
        return;
    }
    if (s_lDirect++ > 0 && Milliseconds(asked, s_last) < 16) s_lTooSoon++;
    s_last = asked;
}

// One operation of a caption renderer, chosen by frequency of use. Blit is excluded: it waits until no flip
// is pending, and here one always is.
int Operate(pKovaITextDisplay_t p, unsigned uiChoice, kova_sint8 scContext)
{
    static const unsigned short s_text[] = {'S', 't', 'r', 'e', 's', 's'};
    static kova_uint8 s_pixels[64];
    KovaTextRect_t rect = {uiChoice % 100, uiChoice % 50, 30, 20};
    KovaTextColor_t colors[] = {{1, 2, 3, 4}, {5, 6, 7, 8}};
    kova_uint32 uiWidth = 0;
    kova_sint32 siFont = -1;

    if (uiChoice < 240) return p->FillRect(p, scContext, &rect, uiChoice);
    if (uiChoice < 360) return p->DrawLine(p, scContext, 1, 2, 30, 40, 5);
    if (uiChoice < 440) return p->DrawPixel(p, scContext, s_pixels, uiChoice, 4, 8, 8, 8);
    if (uiChoice < 540) {
        return p->DrawString(p, scContext, s_text, sizeof s_text, 10, 20, KOVA_TEXT_UNICODE, KOVA_TEXT_LEFT);
    }
    if (uiChoice < 800) return p->Flip(p, scContext);
    if (uiChoice < 830) return p->SetClip(p, scContext, &rect);
    if (uiChoice < 850) return p->SetPalette(p, scContext, colors, 2, kova_uint8(uiChoice % 200));
    if (uiChoice < 870) return p->SetTextForeColor(p, scContext, uiChoice % 256);
    if (uiChoice < 890) return p->SetEdgeType(p, scContext, KovaTextEdgeType_e(1 << uiChoice % 6));
    if (uiChoice < 910) return p->SetEdgeColor(p, scContext, uiChoice % 256);
    if (uiChoice < 925) {
        return p->GetStringWidth(p, scContext, s_text, sizeof s_text, KOVA_TEXT_UNICODE, &uiWidth);
    }
    if (uiChoice < 930) return p->CreateFont(p, scContext, "sans.ttf", 24, KOVA_FONTATTR_NONE, &siFont);
    if (uiChoice < 940) return p->SetFont(p, scContext, 0, 20 + uiChoice % 3, KOVA_FONTATTR_NONE);
    if (uiChoice < 943) return p->ScaleFontWidth(p, scContext, 1, 30000 + uiChoice);
    if (uiChoice < 963) return p->Show(p, scContext), 0;
    if (uiChoice < 968) return p->Hide(p, scContext), 0;
    if (uiChoice < 973) return p->SetFlip(p, uiChoice % 4 != 0);
    if (uiChoice < 978) return p->SetPlane(p, scContext, 0, 0, WIDTH - uiChoice % 8, HEIGHT);
    if (uiChoice < 983) return p->AdjustDisplaySize(p, scContext, 0, 0, WIDTH, HEIGHT - uiChoice % 8);
    if (uiChoice < 985) return p->SetTextWindowSize(p, scContext, uiChoice, 50);
    if (uiChoice < 987) return p->SetDisplayWindow(p, scContext, 1, 2, uiChoice, 4);
    if (uiChoice < 999) return Kova_TextDisp_SetActive(p, scContext, 1), 0;
    return Kova_TextDisp_SetActive(p, scContext, 0), 0;
}

void Work(pKovaITextDisplay_t pDisplay, int iThread, int iOperations, test::Watchdog_t *pWatchdog)
{
    std::minstd_rand random{unsigned(iThread) + 1};

    for (int i = 0; i < iOperations; i++) {
        const auto scContext = kova_sint8(random() % 2);
        if (Operate(pDisplay, unsigned(random() % 1000), scContext) != 0) s_lRefused++;
        // Sometimes yield to the others, and let some time pass for flips.
        if (i % 16 == 0) std::this_thread::sleep_for(std::chrono::microseconds(random() % 1000));
        if (i % 256 == 0) pWatchdog->Progress("thread " + std::to_string(iThread));
    }
}

bool Holds(bool bHolds, const char *pcWhat)
{
    if (!bHolds) fprintf(stdout, "not so: %s\n", pcWhat);
    return bHolds;
}

bool LockIsFree(KovaDFBDisplay_t *pRecord)
{
    bool bFree = false;
    std::thread([&] {
        bFree = pthread_mutex_trylock(&pRecord->display_mutex) == 0;
        if (bFree) pthread_mutex_unlock(&pRecord->display_mutex);
    }).join();
    return bFree;
}

bool AwaitLastFrame()
{
    for (int i = 0; i < 2000 && s_lShown != s_lDrawn; i++)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return s_lShown == s_lDrawn;
}

// Everything that the threads do, and the last frame; the banners of activations are ignored.
bool Storm(pKovaITextDisplay_t pDisplay, int iOperations, int iThreads, test::Watchdog_t *pWatchdog)
{
    std::vector<std::thread> threads;
    KovaTextRect_t rect = {0, 0, 8, 8};
    const int iOutput = dup(STDOUT_FILENO), iNull = open("/dev/null", O_WRONLY | O_CLOEXEC);

    fflush(stdout);
    dup2(iNull, STDOUT_FILENO);
    for (int i = 0; i < iThreads; i++) threads.emplace_back(Work, pDisplay, i, iOperations, pWatchdog);
    for (std::thread &thread : threads) thread.join();
    Kova_TextDisp_SetActive(pDisplay, 0, 1);
    fflush(stdout);
    dup2(iOutput, STDOUT_FILENO);
    close(iOutput);
    close(iNull);

    pDisplay->Show(pDisplay, 0);
    pDisplay->SetFlip(pDisplay, 1);
    for (int i = 0; i < 2; i++) { // at least the second is deferred
        pDisplay->FillRect(pDisplay, 0, &rect, 1);
        pDisplay->Flip(pDisplay, 0);
    }
    return AwaitLastFrame();
}

int Run(int iOperations, int iThreads)
{
    test::Watchdog_t watchdog(std::chrono::minutes(2), "the first operation");
    const auto begin = std::chrono::steady_clock::now();
    KovaTextInitParam_t param = {};
    KovaTextContextParam_t context = {WIDTH, HEIGHT, 300, 200, 10, 20, 320, 240};
    bool bGood = true;

    fake::KeepTrace(false);
    fake::SetThreshold(0);
    fake::UseRealClock(true);
    fake::WatchSurfaces(CountFrame, CountFlip);
    param.eLayer = KOVA_GRAPHIC_LAYER2;
    param.uiPlaneWidth = WIDTH;
    param.uiPlaneHeight = HEIGHT;
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    pKovaITextDisplay_t pDisplay = Kova_TextDisp_GetDisplayByID(0);
    if (!Holds(pDisplay != nullptr, "there is a display")) return 1;
    for (int i = 0; i < 2; i++)
        bGood &= Holds(Kova_TextDisp_CreateContext(pDisplay, &context) == i, "a context");

    bGood &= Holds(Storm(pDisplay, iOperations, iThreads, &watchdog), "the last frame is on the screen");
    bGood &= Holds(LockIsFree(reinterpret_cast<KovaDFBDisplay_t *>(pDisplay)), "the lock is free");
    bGood &= Holds(s_lTooSoon == 0, "16 ms lie between two direct flips");
    bGood &= Holds(s_lDirect > 0 && s_lByThread > 0, "frames came to the screen both ways");
    watchdog.Progress("destroying");
    for (kova_sint8 i = 0; i < 2; i++) Kova_TextDisp_DestroyContext(pDisplay, i);
    Kova_TextDisp_Destroy(0);
    bGood &= Holds(fake::LiveObjectNames().empty(), "no object is left");

    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    printf("%d threads x %d operations in %.1f s: %ld refused, %ld rectangles, %ld direct flips, %ld by the "
           "thread, "
           "%ld too soon\n",
           iThreads, iOperations, took.count(), s_lRefused.load(), s_lDrawn.load(), s_lDirect.load(),
           s_lByThread.load(), s_lTooSoon.load());
    return bGood ? 0 : 1;
}

// A number above 0, or the default if there is none; 0 if it is invalid.
int Number(int argc, char **argv, int iAt, int iDefault)
{
    char *pcEnd = nullptr;
    const long lNumber = iAt < argc ? strtol(argv[iAt], &pcEnd, 10) : iDefault;

    return (pcEnd && *pcEnd) || lNumber < 1 || lNumber > 1000000000 ? 0 : int(lNumber);
}

} // namespace

int main(int argc, char **argv)
{
    const int iOperations = Number(argc, argv, 1, 20000), iThreads = Number(argc, argv, 2, 8);

    if (argc > 3 || iOperations == 0 || iThreads == 0 || iThreads > 256) {
        dprintf(STDOUT_FILENO,
                "usage: threads_stress [OPERATIONS [THREADS]]: two numbers above 0, at most 256 threads\n");
        return 2;
    }
    return Run(iOperations, iThreads);
}
