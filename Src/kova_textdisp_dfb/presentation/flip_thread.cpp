// SPDX-License-Identifier: MIT
// The thread that flips the last frame of a burst. A wake-up must not be lost: a lost flip leaves the last
// frame off the screen, a lost stop hangs the join. So whoever wakes the thread notes what for (bFlipPosted,
// or the stop flag), passes once through flip_thread_mutex, and only then signals: the thread either sees the
// note before it waits, or is waiting by then. The thread itself never holds both mutexes at once.
#include "operations.h"

#include <unistd.h>

namespace textdisp
{

enum { FRAME_TIME_US = 16000 };

static void Wake(KovaDFBDisplay_t *pDisplay, kova_bool *pbNote) HOLDS_DISPLAY
{
    // Without a thread, or with one that is ending, the mutex and the condition are not there to be touched.
    if (Peek(pDisplay->flip_thread_ref) == 0 || pDisplay->flip_thread_stop) return;
    Poke(*pbNote, 1);
    pthread_mutex_lock(&pDisplay->flip_thread_mutex);
    pthread_mutex_unlock(&pDisplay->flip_thread_mutex);
    pthread_cond_signal(&pDisplay->flip_thread_cond);
}

int StartFlipThread(KovaDFBDisplay_t *pDisplay)
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

void AskFlipThreadToStop(KovaDFBDisplay_t *pDisplay)
{
    Wake(pDisplay, &pDisplay->flip_thread_stop);
}

void JoinFlipThread(KovaDFBDisplay_t *pDisplay)
{
    pthread_join(pDisplay->flip_thread_id, nullptr);
    pthread_mutex_destroy(&pDisplay->flip_thread_mutex);
    pthread_cond_destroy(&pDisplay->flip_thread_cond);
    // Only now: while this is above 0 and the stop flag is set, nobody wakes the thread, and nobody starts
    // another.
    __atomic_store_n(&pDisplay->flip_thread_ref, 0, __ATOMIC_RELEASE);
}

// One wait a pass, and no loop around it: a wake-up without a reason costs one idle pass.
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

// The frame as it was clipped when its flip was deferred. No time is stamped: the limit is on direct flips.
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
        Poke(pDisplay->bFlipPosted, 0); // what was asked for during the sleep is served by this very pass
        if (pDisplay->blast_frame_changed == 0 && pDisplay->pLayer) FlipLastFrame(pDisplay);
        Unlock(pDisplay);
    }
    Unlock(pDisplay);
    Poke(pDisplay->has_flipping_req, 0);
    TEXTDISP_EXIT();
    return nullptr;
}

} // namespace textdisp
