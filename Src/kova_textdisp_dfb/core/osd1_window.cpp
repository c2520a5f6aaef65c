// SPDX-License-Identifier: MIT
// The window that is used in place of layer 1: as large as the plane, and scaled by DirectFB to the whole primary
// layer. Neither function locks. Their callers hold the lock, or nobody else knows the display.
#include "operations.h"

namespace textdisp
{

int CreateOSD1Window(pKovaITextDisplay_t pThiz)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!pDisplay->pDfb) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (pDisplay->pLayer) ReleaseOSD1Window(pThiz);

    IDirectFBDisplayLayer *pLayer = nullptr;
    // The layer decides, not the result.
    ObtainLayer(pDisplay->pDfb, DLID_PRIMARY, &pLayer, TEXTDISP_HERE);
    Poke(pDisplay->pLayer, pLayer);
    if (!pLayer) return TEXTDISP_ERROR("pLayer is NULL!"), -1;
    DFB_CHECK_BRIEF(Call(pLayer, &IDirectFBDisplayLayer::SetCooperativeLevel, DLSCL_SHARED));
    DFBDisplayLayerConfig config = {};
    DFB_CHECK(Call(pLayer, &IDirectFBDisplayLayer::GetConfiguration, &config));

    DFBWindowDescription desc = {};
    desc.flags = DFBWindowDescriptionFlags(DWDESC_CAPS | DWDESC_WIDTH | DWDESC_HEIGHT | DWDESC_PIXELFORMAT |
                                           DWDESC_POSX | DWDESC_POSY | DWDESC_OPTIONS | DWDESC_STACKING);
    desc.caps = DFBWindowCapabilities(DWCAPS_ALPHACHANNEL | DWCAPS_DOUBLEBUFFER | DWCAPS_NOFOCUS);
    desc.width = int(pDisplay->uiPlaneWidth);
    desc.height = int(pDisplay->uiPlaneHeight);
    // The 32-bit mode plays no part here: a display in that mode gets an indexed window too.
    desc.pixelformat = pDisplay->bTextDisp_Palette ? DSPF_ARGB : DSPF_LUT8;
    desc.posx = 0;
    desc.posy = 0;
    desc.options = DFBWindowOptions(DWOP_ALPHACHANNEL | DWOP_SCALE);
    desc.stacking = DWSC_LOWER;
    const IDirectFBWindow *const pFormerWindow = pDisplay->pWindow;
    DFB_CHECK(Call(pLayer, &IDirectFBDisplayLayer::CreateWindow, &desc, &pDisplay->pWindow));
    // A call that failed may leave a former window, which keeps its size.
    if (pDisplay->pWindow != pFormerWindow) {
        pDisplay->sWindowSize = {pDisplay->uiPlaneWidth, pDisplay->uiPlaneHeight};
    }
    // Both failures below return 0, as success does: activation then takes the context for active, without a surface.
    if (!pDisplay->pWindow) return TEXTDISP_ERROR("Fail to create window from layer!"), 0;
    IDirectFBWindow *const pWindow = pDisplay->pWindow;
    DFB_CHECK(Call(pWindow, &IDirectFBWindow::SetBounds, 0, 0, config.width, config.height));

    IDirectFBSurface *pSurface = pDisplay->pBaseSurface;
    const DFBResult eResult = Call(pWindow, &IDirectFBWindow::GetSurface, &pSurface);
    DFB_CHECK(eResult);
    if (eResult == DFB_OK || pSurface != pDisplay->pBaseSurface) {
        pDisplay->bWindowSurface = 1;
        pDisplay->sWindowSurfaceSize = pDisplay->sWindowSize;
    }
    Poke(pDisplay->pBaseSurface, pSurface);
    if (!pSurface) return TEXTDISP_ERROR("Fail to get surface from window!"), 0;
    // Cleared, flipped and cleared again, so that both buffers start transparent.
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::Clear, 0, 0, 0, 0));
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::Flip, nullptr, DSFLIP_WAIT | DSFLIP_BLIT | DSFLIP_ONSYNC));
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::Clear, 0, 0, 0, 0));
    DFB_CHECK(Call(pWindow, &IDirectFBWindow::SetOpacity, 255));
    Poke(pDisplay->pActiveSurface, pSurface);
    DFB_CHECK(Call(pWindow, &IDirectFBWindow::RaiseToTop));
    ResetClip(pDisplay);
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetBlittingFlags, DSBLIT_NOFX));
    return 0;
}

int ReleaseOSD1Window(pKovaITextDisplay_t pThiz)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (pDisplay->pBaseSurface) {
        DFB_CHECK(ReleaseAndClear(pDisplay->pBaseSurface));
        Poke(pDisplay->pActiveSurface, nullptr);
    }
    if (pDisplay->pWindow) DFB_CHECK(ReleaseAndClear(pDisplay->pWindow));
    if (pDisplay->pLayer) DFB_CHECK(ReleaseAndClear(pDisplay->pLayer));
    return 0;
}

} // namespace textdisp
