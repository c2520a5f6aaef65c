// SPDX-License-Identifier: MIT
// The thread that flips the last frame of a burst. No wake-up may be lost: a lost flip leaves the last frame off the
// screen, and a lost stop hangs the join. So whoever wakes the thread first sets a note that says what for
// (bFlipPosted or flip_thread_stop), passes once through flip_thread_mutex, and only then signals: the thread either
// sees the note before it waits, or is waiting by then. The thread itself never holds both mutexes at once.
//
// Each context holds the thread: the first hold starts it and the last release stops it. flip_thread_ref counts the
// holds. It changes under the display's lock, with one exception: it falls from 1 to 0 after the join, which is made
// without the lock. Until then it keeps the thread's mutex and condition from being touched or made again.
#include "operations.h"

#include <unistd.h>

namespace textdisp
{

enum { FRAME_TIME_US = 16000 };

static kova_uint32 Holds(const KovaDFBDisplay_t *pDisplay)
{
    return __atomic_load_n(&pDisplay->flip_thread_ref, __ATOMIC_ACQUIRE);
}

static void SetHolds(KovaDFBDisplay_t *pDisplay, kova_uint32 uiHolds)
{
    __atomic_store_n(&pDisplay->flip_thread_ref, uiHolds, __ATOMIC_RELEASE);
}

// From the moment when the last release asked the thread to stop until it was joined.
static bool IsEnding(const KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY
{
    return Holds(pDisplay) != 0 && pDisplay->flip_thread_stop;
}

static void Wake(KovaDFBDisplay_t *pDisplay, kova_bool *pbNote) HOLDS_DISPLAY
{
    // Without a thread, or with one that is ending, there is no mutex and no condition to be touched.
    if (Holds(pDisplay) == 0 || pDisplay->flip_thread_stop) return;
    Poke(*pbNote, 1);
    pthread_mutex_lock(&pDisplay->flip_thread_mutex);
    pthread_mutex_unlock(&pDisplay->flip_thread_mutex);
    pthread_cond_signal(&pDisplay->flip_thread_cond);
}

static int StartFlipThread(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY
{
    pthread_cond_init(&pDisplay->flip_thread_cond, nullptr);
    pthread_mutex_init(&pDisplay->flip_thread_mutex, nullptr);
    Poke(pDisplay->flip_thread_stop, 0);
    Poke(pDisplay->has_flipping_req, 0);
    Poke(pDisplay->bFlipPosted, 0);
    return pthread_create(&pDisplay->flip_thread_id, nullptr, Flip_last_frame_Thread, pDisplay);
}

void PostFlip(KovaDFBDisplay_t *pDisplay)
{
    Wake(pDisplay, &pDisplay->bFlipPosted);
}

void AwaitEndOfFlipThread(KovaDFBDisplay_t *pDisplay)
{
    while (IsEnding(pDisplay)) {
        Unlock(pDisplay);
        usleep(1000);
        Lock(pDisplay);
    }
}

int HoldFlipThread(KovaDFBDisplay_t *pDisplay)
{
    const kova_uint32 uiHolds = Holds(pDisplay);
    const int iError = uiHolds == 0 ? StartFlipThread(pDisplay) : 0;

    if (iError == 0) SetHolds(pDisplay, uiHolds + 1);
    return iError;
}

bool ReleaseFlipThread(KovaDFBDisplay_t *pDisplay)
{
    const kova_uint32 uiHolds = Holds(pDisplay);

    // Only one caller joins it.
    if (IsEnding(pDisplay)) return false;
    if (uiHolds == 1) Wake(pDisplay, &pDisplay->flip_thread_stop);
    // A context whose thread did not start has no hold.
    if (uiHolds > 1) SetHolds(pDisplay, uiHolds - 1);
    return uiHolds == 1;
}

void JoinFlipThread(KovaDFBDisplay_t *pDisplay)
{
    pthread_join(pDisplay->flip_thread_id, nullptr);
    pthread_mutex_destroy(&pDisplay->flip_thread_mutex);
    pthread_cond_destroy(&pDisplay->flip_thread_cond);
    SetHolds(pDisplay, 0);
}

// One wait a pass, and no loop around it: a spurious wake-up costs one idle pass.
static void AwaitRequest(KovaDFBDisplay_t *pDisplay)
{
    pthread_mutex_lock(&pDisplay->flip_thread_mutex);
    Poke(pDisplay->has_flipping_req, 0);
    if (!Peek(pDisplay->bFlipPosted) && !Peek(pDisplay->flip_thread_stop)) {
        pthread_cond_wait(&pDisplay->flip_thread_cond, &pDisplay->flip_thread_mutex);
    }
    Poke(pDisplay->bFlipPosted, 0);
    Poke(pDisplay->has_flipping_req, 1);
    pthread_mutex_unlock(&pDisplay->flip_thread_mutex);
}

// Flips under the clip that was set when the flip was deferred. No time is stamped: the limit is on direct flips.
static void FlipLastFrame(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY
{
    if (pDisplay->eLayer == KOVA_GRAPHIC_LAYER1) {
        DFB_CHECK(FlipSurface(pDisplay));
    } else if (IsBackBuffered(pDisplay)) {
        IDirectFBSurface *const pSurface = pDisplay->pActiveSurface;
        DFBRegion saved = {};

        DFB_CHECK(Call(pSurface, &IDirectFBSurface::GetClip, &saved));
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetClip, &pDisplay->flip_clip));
        DFB_CHECK(FlipSurface(pDisplay));
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetClip, &saved));
    }
}

void *Flip_last_frame_Thread(void *args)
{
    auto *const pDisplay = static_cast<KovaDFBDisplay_t *>(args);

    TEXTDISP_ENTER();
    for (;;) {
        AwaitRequest(pDisplay);
        Lock(pDisplay);
        if (pDisplay->flip_thread_stop) break;
        Unlock(pDisplay);
        usleep(FRAME_TIME_US);
        Lock(pDisplay);
        if (pDisplay->flip_thread_stop) break;
        Poke(pDisplay->bFlipPosted, 0); // this pass serves what was asked for during the sleep
        if (pDisplay->blast_frame_changed == 0 && pDisplay->pLayer) FlipLastFrame(pDisplay);
        Unlock(pDisplay);
    }
    Unlock(pDisplay);
    Poke(pDisplay->has_flipping_req, 0);
    TEXTDISP_EXIT();
    return nullptr;
}

} // namespace textdisp
