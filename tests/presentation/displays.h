// SPDX-License-Identifier: MIT
// Two displays, for state that all displays of a process share.
#ifndef TESTS_DISPLAYS_H
#define TESTS_DISPLAYS_H

#include "expect.h"

namespace test
{

// A second display next to the facade's, shown, with context 0 active; its own lock is watched.
inline pKovaITextDisplay_t GivenSecondDisplay(KovaGraphicLayer_e eLayer)
{
    KovaTextInitParam_t param = InitParam(eLayer);
    KovaTextContextParam_t context = ContextParam();
    pKovaITextDisplay_t pDisplay = Kova_TextDFBDisp_Create(&param);

    EXPECT_NE(pDisplay, nullptr);
    testing::internal::CaptureStdout();
    EXPECT_EQ(Kova_TextDFBDisp_CreateContext(pDisplay, &context), 0);
    EXPECT_TRUE(AwaitThreadTrace("enter Flip_last_frame_Thread"));
    Kova_TextDFBDisp_SetActive(pDisplay, 0, 1);
    testing::internal::GetCapturedStdout();
    pDisplay->Show(pDisplay, 0);
    WatchLock(&RecordOf(pDisplay)->display_mutex);
    ClearTrace();
    return pDisplay;
}

inline void DestroySecond(pKovaITextDisplay_t pDisplay)
{
    HoldSleeps(false);
    Kova_TextDFBDisp_DestroyContext(pDisplay, 0);
    WatchLock(nullptr);
    Kova_TextDFBDisp_Destroy(pDisplay);
}

} // namespace test

#endif
