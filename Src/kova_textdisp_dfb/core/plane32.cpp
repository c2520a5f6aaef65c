// SPDX-License-Identifier: MIT
#include "operations.h"
#include "platform/platform.h"

#include <stdio.h>

namespace textdisp
{

// Makes the given context the active one. Neither the identifier nor the context that was active is checked.
int Create32BitPlane(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32, kova_uint32,
                     kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_EXIT(), -1;
    Poke(pDisplay->bColor32, 1); // stays even when a later step fails
    Lock(pDisplay);
    if (!RegainLayer(pDisplay, TEXTDISP_HERE)) return Unlock(pDisplay), TEXTDISP_EXIT(), -1;
    IDirectFBDisplayLayer *const pLayer = pDisplay->pLayer;
    DFB_CHECK_BRIEF(Call(pLayer, &IDirectFBDisplayLayer::SetCooperativeLevel, DLSCL_EXCLUSIVE));
    DFBDisplayLayerConfig config = {};
    DFB_CHECK_BRIEF(ReadConfiguration(pDisplay, &config));
    config.flags = DFBDisplayLayerConfigFlags(DLCONF_WIDTH | DLCONF_HEIGHT | DLCONF_PIXELFORMAT);
    config.width = int(uiWidth);
    config.height = int(uiHeight);
    config.pixelformat = DSPF_ARGB;
    DFB_CHECK_BRIEF(Configure(pDisplay, config));
    if constexpr (SIZE_COMES_LATE) RenewLayerSurface(pDisplay);
    pDisplay->scActiveContextID = scContextID;
    if (!pDisplay->pBaseSurface) DFB_CHECK_BRIEF(TakeLayerSurface(pDisplay));
    pDisplay->uiPlaneWidth = uiWidth;
    pDisplay->uiPlaneHeight = uiHeight;
    Poke(pDisplay->pActiveSurface, pDisplay->pBaseSurface);
    ResetClip(pDisplay);
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
    DFB_CHECK(Call(pDisplay->pBaseSurface, &IDirectFBSurface::SetBlittingFlags, DSBLIT_NOFX));
    DropFonts(pDisplay); // and not created again: the caller does that
    RestoreShownState(pThiz, scContextID);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int Release32BitPanle(pKovaITextDisplay_t pThiz)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    // Unlike every other report, and intended.
    if (!pThiz) return puts("keldrun: error "), TEXTDISP_EXIT(), -1;
    if (!Peek(pDisplay->bColor32)) {
        return TEXTDISP_ERROR_RECORD("Not a 32 bit plane, can't release!\n"), TEXTDISP_EXIT(), -1;
    }
    Lock(pDisplay);
    if (pDisplay->pBaseSurface) DFB_CHECK_BRIEF(ReleaseAndClear(pDisplay->pBaseSurface));
    if (pDisplay->pLayer) DFB_CHECK_BRIEF(ReleaseAndClear(pDisplay->pLayer));
    DropFonts(pDisplay);
    pDisplay->scActiveContextID = -2;
    Poke(pDisplay->pActiveSurface, nullptr);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0; // bColor32 stays set
}

} // namespace textdisp
