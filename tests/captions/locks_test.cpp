// SPDX-License-Identifier: MIT
// Every function that takes a decoder locks it once, and unlocks it. The library calls the functions of this program,
// whose names come first.
#include "driver.h"

#include <dlfcn.h>
#include <pthread.h>

static int s_locks, s_depth, s_faults;

static int CallNext(const char *name, pthread_mutex_t *mutex)
{
    void *const next = dlsym(RTLD_NEXT, name);
    return reinterpret_cast<int (*)(pthread_mutex_t *)>(next)(mutex);
}

extern "C" int pthread_mutex_lock(pthread_mutex_t *mutex)
{
    s_locks++;
    s_depth++;
    return CallNext("pthread_mutex_lock", mutex);
}

extern "C" int pthread_mutex_unlock(pthread_mutex_t *mutex)
{
    if (--s_depth < 0) s_faults++;
    return CallNext("pthread_mutex_unlock", mutex);
}

TEST(Locks, AreTakenOnceByEveryFunction)
{
    Driver driver(WithEvents());
    KovaCaptions *const decoder = *driver;
    const ByteString data = Hex("41 ff  fc 94 20");
    KovaCaptionsStatus status;
    KovaCaptionsChannel channel;
    KovaCaptionsService service;
    KovaCaptionsWindow windows[KOVA_CAPTIONS_WINDOWS];
    KovaCaptionsProgram program;
    KovaCaptionsActivity activity;
    KovaCaptionsCounters counters;
    KovaCaptionsEvent event;
    const auto expectOne = [](const char *what, auto &&call) {
        s_locks = s_depth = s_faults = 0;
        call();
        EXPECT_TRUE(s_locks == 1 && s_depth == 0 && s_faults == 0) << what << ": " << s_locks << " locks";
    };

    expectOne("PushTriplets", [&] { Kova_Captions_PushTriplets(decoder, 0, data.data() + 2, 1); });
    expectOne("PushCcData", [&] { Kova_Captions_PushCcData(decoder, 0, data.data(), data.size()); });
    expectOne("PushPair", [&] { Kova_Captions_PushPair(decoder, 0, 1, 0x94, 0x20); });
    expectOne("Advance", [&] { Kova_Captions_Advance(decoder, 1); });
    expectOne("Discontinuity", [&] { Kova_Captions_Discontinuity(decoder); });
    expectOne("Select", [&] { Kova_Captions_Select(decoder, KOVA_CAPTIONS_CC1, 0); });
    expectOne("GetStatus", [&] { Kova_Captions_GetStatus(decoder, 1, &status); });
    expectOne("GetChannel", [&] { Kova_Captions_GetChannel(decoder, KOVA_CAPTIONS_CC1, &channel); });
    expectOne("GetService", [&] { Kova_Captions_GetService(decoder, 1, &service, windows, 0xFF); });
    expectOne("GetProgram", [&] { Kova_Captions_GetProgram(decoder, &program); });
    expectOne("GetActivity", [&] { Kova_Captions_GetActivity(decoder, &activity); });
    expectOne("GetCounters", [&] { Kova_Captions_GetCounters(decoder, &counters); });
    expectOne("NextChange", [&] { Kova_Captions_NextChange(decoder, KOVA_CAPTIONS_NONE, 7); });
    expectOne("NextEvent", [&] { Kova_Captions_NextEvent(decoder, &event); });
    expectOne("EndRuns", [&] { Kova_Captions_EndRuns(decoder); });
}
