// SPDX-License-Identifier: MIT
#include "operations.h"

namespace textdisp
{

// The time of the last direct flip on a rate-limited layer; zero at load, so the first flip is never deferred. All
// displays of the process share it, each under a lock of its own. Its words may be of two flips, if another display
// flips at this moment at the turn of a second: then the time is a second off, and the flip is not deferred. One word
// of 64 bits would cost every flip more, and many 32-bit processors have none that is read whole.
static struct {
    long lSeconds, lMicroseconds;
} g_last_flip_req_time;

static struct timeval LastFlipTime()
{
    return {Peek(g_last_flip_req_time.lSeconds), Peek(g_last_flip_req_time.lMicroseconds)};
}

static void StoreLastFlipTime(const struct timeval &time)
{
    Poke(g_last_flip_req_time.lSeconds, time.tv_sec);
    Poke(g_last_flip_req_time.lMicroseconds, time.tv_usec);
}

enum { FRAME_TIME = 16 }; // milliseconds

// Milliseconds from ptime2 to ptime1. A clock set back gives a huge value, which counts as long ago.
unsigned long compare_time(const struct timeval *ptime1, const struct timeval *ptime2)
{
    const auto ulSeconds = (unsigned long)(ptime1->tv_sec - ptime2->tv_sec);
    const auto ulMilliseconds = (unsigned long)((ptime1->tv_usec - ptime2->tv_usec) / 1000);

    return ulSeconds * 1000 + ulMilliseconds;
}

bool IsBackBuffered(KovaDFBDisplay_t *pDisplay)
{
    DFBDisplayLayerConfig config;

    // What is not filled in, not even by a call that fails, has no flag.
    config.flags = DLCONF_NONE;
    DFB_CHECK(Call(pDisplay->pLayer, &IDirectFBDisplayLayer::GetConfiguration, &config));
    return (config.flags & DLCONF_BUFFERMODE) && (config.buffermode & (DLBM_BACKVIDEO | DLBM_BACKSYSTEM));
}

DFBResult FlipSurface(KovaDFBDisplay_t *pDisplay)
{
    return Call(pDisplay->pActiveSurface, &IDirectFBSurface::Flip, nullptr,
                DSFLIP_WAIT | DSFLIP_BLIT | DSFLIP_ONSYNC);
}

int FilpInternal(pKovaITextDisplay_t pThiz)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    struct timeval now;

    gettimeofday(&now, nullptr);
    const struct timeval last = LastFlipTime();
    if (pDisplay->bFlip && compare_time(&now, &last) < FRAME_TIME) {
        pDisplay->blast_frame_changed = 0;
        DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::GetClip, &pDisplay->flip_clip));
        PostFlip(pDisplay);
    } else if (pDisplay->eLayer != KOVA_GRAPHIC_LAYER1) {
        if (IsBackBuffered(pDisplay) && pDisplay->bFlip) {
            DFB_CHECK(FlipSurface(pDisplay));
            pDisplay->blast_frame_changed = 1;
            StoreLastFlipTime(now);
        }
    } else {
        // The window flips whatever bFlip says, and its flips do not count in the 16 ms rule.
        DFB_CHECK(FlipSurface(pDisplay));
    }
    return 0;
}

int Flip(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    FilpInternal(pThiz);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int SetFlip(pKovaITextDisplay_t pThiz, kova_bool bFlip)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER_WITH("Flip:%s", bFlip ? "true" : "false");
    if (!pThiz) return TEXTDISP_EXIT(), -1;
    Lock(pDisplay);
    pDisplay->bFlip = bFlip;
    // Brings to the screen what was drawn while flipping was off.
    if (bFlip && pDisplay->blast_frame_changed == 1) FilpInternal(pThiz);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
