// SPDX-License-Identifier: MIT
// What the library reports, and when: errors through the logging library, depending on the threshold of
// KOVA_DEBUG, and failed DirectFB calls on standard error always.
#include "fixture.h"

#include <stdlib.h>

using namespace live;

static int Threshold()
{
    const char *const pcThreshold = getenv("KOVA_DEBUG");
    return pcThreshold ? atoi(pcThreshold) : 0;
}

TEST(Log, WritesErrorsFromThresholdOneOnAndTracesAtFive)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();

    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, nullptr, 0), -1);
    const std::string said = testing::internal::GetCapturedStderr();

    EXPECT_EQ(said.find("NULL Pointer!") != std::string::npos, Threshold() >= 1) << said;
    EXPECT_EQ(said.find("[File:Src/kova_textdisp_dfb Function:FillRect Line:") != std::string::npos,
              Threshold() >= 1)
        << said;
    EXPECT_EQ(said.find("TextDisp: FillRect():") != std::string::npos, Threshold() >= 5) << said;
    EXPECT_EQ(said.empty(), Threshold() == 0) << said;
}

TEST(Log, ReportsAFailedCallWhateverTheThreshold)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    KovaTextRect_t outside = {PLANE_WIDTH + 10, PLANE_HEIGHT + 10, 5, 5};

    testing::internal::CaptureStderr();
    EXPECT_EQ(pDisplay->SetClip(pDisplay, 0, &outside), 0); // DirectFB refuses this clip
    const std::string said = testing::internal::GetCapturedStderr();

    EXPECT_NE(said.find("TextDisp: [thread:"), std::string::npos) << said;
    EXPECT_NE(said.find("]:Src/kova_textdisp_dfb <"), std::string::npos) << said;
    EXPECT_NE(said.find("err 0x"), std::string::npos) << said;
}
