// SPDX-License-Identifier: MIT
// Two displays on two threads, in real time: each is created, draws, flips and is destroyed while the other one does the
// same. The displays share the time of the last flip and what the last creation left, and nothing else. The thread
// sanitizer is the judge; without it, the test shows that both come to an end and leave no object.
// usage: displays_stress [ROUNDS]    20 by default
#include "double.h"
#include "kova/kova_textdisp_dfb.h"
#include "watchdog.h"

#include <cstdlib>
#include <thread>

namespace
{

enum { FLIPS = 40 };

void Run(int iRounds, KovaGraphicLayer_e eLayer)
{
    KovaTextInitParam_t param = {};
    KovaTextContextParam_t context = {720, 480, 720, 480, 0, 0, 720, 480};
    KovaTextRect_t rect = {0, 0, 8, 8};

    param.eLayer = eLayer;
    param.uiPlaneWidth = 720;
    param.uiPlaneHeight = 480;
    for (int iRound = 0; iRound < iRounds; iRound++) {
        pKovaITextDisplay_t pDisplay = Kova_TextDFBDisp_Create(&param);
        if (!pDisplay || Kova_TextDFBDisp_CreateContext(pDisplay, &context) != 0) abort();
        pDisplay->Show(pDisplay, 0);
        for (int i = 0; i < FLIPS; i++) {
            pDisplay->FillRect(pDisplay, 0, &rect, unsigned(i));
            pDisplay->Flip(pDisplay, 0);
            // Half of them come too soon and are left to the flip thread.
            if (i % 2) std::this_thread::sleep_for(std::chrono::microseconds(300 * i));
        }
        if (!Kova_TextDFBDisp_GetDFB()) abort();
        Kova_TextDFBDisp_GetLayer();
        Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
        Kova_TextDFBDisp_Destroy(pDisplay);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const int iRounds = argc > 1 ? atoi(argv[1]) : 20;
    const test::Watchdog_t watchdog(std::chrono::minutes(2), "two displays");

    if (argc > 2 || iRounds < 1) return printf("usage: displays_stress [ROUNDS]\n"), 2;
    fake::KeepTrace(false);
    fake::SetThreshold(0);
    fake::UseRealClock(true);
    std::thread other(Run, iRounds, KOVA_GRAPHIC_LAYER3);
    Run(iRounds, KOVA_GRAPHIC_LAYER2);
    other.join();
    printf("2 displays x %d rounds, left: \"%s\"\n", iRounds, fake::LiveObjectNames().c_str());
    return fake::LiveObjectNames().empty() ? 0 : 1;
}
