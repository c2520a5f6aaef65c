// SPDX-License-Identifier: MIT
#include "operations.h"
#include "platform/platform.h"

#include <unistd.h>

namespace textdisp
{

DFBResult ObtainLayer(IDirectFB *pDfb, DFBDisplayLayerID id, IDirectFBDisplayLayer **ppLayer, Place_t place)
{
    DFBResult eResult = Call(pDfb, &IDirectFB::GetDisplayLayer, id, ppLayer);

    for (int iRetry = 0; eResult == DFB_TEMPUNAVAIL; iRetry++) {
        TEXTDISP_RECORD_AT(place, LEVEL_ERROR,
                           "#################### DFB_TEMPUNAVAIL %d #######################\n", iRetry);
        usleep(50000);
        eResult = Call(pDfb, &IDirectFB::GetDisplayLayer, id, ppLayer);
    }
    return eResult;
}

bool RegainLayer(KovaDFBDisplay_t *pDisplay, Place_t place)
{
    if (pDisplay->pLayer) return true;

    IDirectFBDisplayLayer *pLayer = nullptr;
    const DFBResult eResult =
        ObtainLayer(pDisplay->pDfb, DFBDisplayLayerID(pDisplay->eLayer), &pLayer, place);
    Poke(pDisplay->pLayer, pLayer);
    if (eResult != DFB_OK) {
        TEXTDISP_RECORD_AT(place, LEVEL_ERROR, "GetDisplayLayer result = %d\n", int(eResult));
    } else if (!pLayer) {
        TEXTDISP_RECORD_AT(place, LEVEL_ERROR, "Display layer = NULL after GetDisplayLayer\n");
    } else {
        return true;
    }
    pDisplay->scActiveContextID = -2;
    return false;
}

DFBSurfacePixelFormat PlaneFormat(const KovaDFBDisplay_t *pDisplay)
{
    return IsIndexed(pDisplay) ? DSPF_LUT8 : DSPF_ARGB;
}

void DescribePlane(const KovaDFBDisplay_t *pDisplay, kova_uint32 uiWidth, kova_uint32 uiHeight,
                   DFBDisplayLayerConfig *pConfig)
{
    pConfig->flags = DFBDisplayLayerConfigFlags(DLCONF_WIDTH | DLCONF_HEIGHT | DLCONF_PIXELFORMAT |
                                                DLCONF_BUFFERMODE | DLCONF_SURFACE_CAPS);
    pConfig->width = int(uiWidth);
    pConfig->height = int(uiHeight);
    pConfig->pixelformat = PlaneFormat(pDisplay);
    pConfig->buffermode = DLBM_BACKVIDEO;
    pConfig->surface_caps = DSCAPS_DOUBLE;
}

static KovaDFBSize_t SizeOf(const DFBDisplayLayerConfig &config)
{
    return {kova_uint32(config.width), kova_uint32(config.height)};
}

DFBResult ReadConfiguration(KovaDFBDisplay_t *pDisplay, DFBDisplayLayerConfig *pConfig)
{
    const DFBResult eResult = Call(pDisplay->pLayer, &IDirectFBDisplayLayer::GetConfiguration, pConfig);

    pDisplay->sLayerSize = eResult == DFB_OK ? SizeOf(*pConfig) : KovaDFBSize_t{0, 0};
    return eResult;
}

DFBResult Configure(KovaDFBDisplay_t *pDisplay, const DFBDisplayLayerConfig &config)
{
    const DFBResult eResult = Call(pDisplay->pLayer, &IDirectFBDisplayLayer::SetConfiguration, &config);

    if (eResult == DFB_OK) pDisplay->sLayerSize = SizeOf(config);
    return eResult;
}

DFBResult TakeLayerSurface(KovaDFBDisplay_t *pDisplay)
{
    IDirectFBSurface *pSurface = nullptr;
    const DFBResult eResult = Call(pDisplay->pLayer, &IDirectFBDisplayLayer::GetSurface, &pSurface);

    Poke(pDisplay->pBaseSurface, pSurface);
    pDisplay->bWindowSurface = 0;
    return eResult;
}

void RenewLayerSurface(KovaDFBDisplay_t *pDisplay)
{
    if constexpr (SIZE_COMES_LATE) {
        IDirectFBSurface *pOld = pDisplay->pBaseSurface, *pNew = nullptr;

        if (!pOld || pDisplay->bWindowSurface) return;
        DFB_CHECK_BRIEF(Call(pDisplay->pLayer, &IDirectFBDisplayLayer::GetSurface, &pNew));
        if (!pNew) return;
        Poke(pDisplay->pBaseSurface, pNew);
        DFB_CHECK_BRIEF(ReleaseAndClear(pOld));
    }
}

void ResetClip(KovaDFBDisplay_t *pDisplay)
{
    Poke(pDisplay->clip.x1, 0);
    Poke(pDisplay->clip.y1, 0);
    Poke(pDisplay->clip.x2, pDisplay->uiPlaneWidth - 1);
    Poke(pDisplay->clip.y2, pDisplay->uiPlaneHeight - 1);
}

} // namespace textdisp
