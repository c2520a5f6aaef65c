// SPDX-License-Identifier: MIT
// First, because it includes directfb.h as C has it.
#include "operations.h"
#include "platform/platform.h"

#include "kova/kova_textdisp_dfb.h"

#include <stdio.h>

using namespace textdisp;

enum { MAX_PLANE_WIDTH = 1920, MAX_PLANE_HEIGHT = 1080 };

static void PrintBanner(kova_sint8 scContextID, kova_bool bActive)
{
    printf("\n\n\n\n######################## Set context %d to active %d ##########################\n\n\n\n",
           scContextID, bActive);
}

static int FirstFreeContext(kova_uint8 ucMask)
{
    int iContext = 0;
    while (iContext < MAX_CONTEXTS && (ucMask >> iContext & 1)) iContext++;
    return iContext;
}

static void StoreGeometry(KovaDFBContext_t *pContext, const KovaTextContextParam_t &param)
{
    pContext->uiTextWindowWidth = param.uiTextWindowWidth;
    pContext->uiTextWindowHeight = param.uiTextWindowHeight;
    Poke(pContext->uiDisplayWindowX, param.uiDisplayWindowX);
    Poke(pContext->uiDisplayWindowY, param.uiDisplayWindowY);
    Poke(pContext->uiDisplayWindowWidth, param.uiDisplayWindowWidth);
    Poke(pContext->uiDisplayWindowHeight, param.uiDisplayWindowHeight);
    Poke(pContext->uiPlaneWidth, param.uiPlaneWidth);
    Poke(pContext->uiPlaneHeight, param.uiPlaneHeight);
}

// KEEPS_DISPLAY: when all contexts are in use, the lock stays taken. Callers in the field rely on it that no other
// thread gets in after that refusal.
KEEPS_DISPLAY kova_sint8 Kova_TextDFBDisp_CreateContext(pKovaITextDisplay_t pThiz,
                                                        pKovaTextContextParam_t pParam)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), kova_sint8(-1);
    if (!pParam) return TEXTDISP_ERROR("NULL Pointer!"), kova_sint8(-1);
    Lock(pDisplay);
    AwaitEndOfFlipThread(pDisplay);
    const int iContext = FirstFreeContext(pDisplay->ucContextMask);
    if (iContext == MAX_CONTEXTS) return TEXTDISP_ERROR("Can't support so much context!"), kova_sint8(-1);
    const bool bPlaneChanges =
        pParam->uiPlaneWidth != pDisplay->uiPlaneWidth || pParam->uiPlaneHeight != pDisplay->uiPlaneHeight;

    StoreGeometry(&pDisplay->context[iContext], *pParam);
    pDisplay->uiPlaneWidth = pParam->uiPlaneWidth;
    pDisplay->uiPlaneHeight = pParam->uiPlaneHeight;
    pDisplay->ucContextMask = kova_uint8(pDisplay->ucContextMask | 1u << iContext);
    Poke(pDisplay->scActiveFontID, -1);
    if (bPlaneChanges)
        SetPlane(pThiz, kova_sint8(iContext), 0, 0, pParam->uiPlaneWidth, pParam->uiPlaneHeight);
    TEXTDISP_TRACE("Create context %d\n", iContext);
    const int iError = HoldFlipThread(pDisplay);
    if (iError != 0) {
        return TEXTDISP_ERROR_RECORD("pthread_create() failed. return:%d\n", iError), Unlock(pDisplay),
               TEXTDISP_EXIT(), kova_sint8(-1);
    }
    return Unlock(pDisplay), TEXTDISP_EXIT(), kova_sint8(iContext);
}

static void Deactivate(pKovaITextDisplay_t pThiz) HOLDS_DISPLAY
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (pDisplay->eLayer != KOVA_GRAPHIC_LAYER1) {
        if (pDisplay->pBaseSurface) DFB_CHECK_BRIEF(ReleaseAndClear(pDisplay->pBaseSurface));
        if (pDisplay->pLayer) DFB_CHECK_BRIEF(ReleaseAndClear(pDisplay->pLayer));
    } else {
        ReleaseOSD1Window(pThiz);
    }
    DropFonts(pDisplay);
    pDisplay->scActiveContextID = -2;
    Poke(pDisplay->pActiveSurface, nullptr);
}

// Configures the layer as creation does, for the context's plane. The palette is loaded and the plane is not wiped.
static void RebuildLayer(pKovaITextDisplay_t pThiz, kova_sint8 scContextID) HOLDS_DISPLAY
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    const KovaDFBContext_t &context = pDisplay->context[scContextID];
    IDirectFBDisplayLayer *const pLayer = pDisplay->pLayer;

    DFB_CHECK_BRIEF(Call(pLayer, &IDirectFBDisplayLayer::SetCooperativeLevel, DLSCL_EXCLUSIVE));
    DFBDisplayLayerConfig config = {};
    DFB_CHECK_BRIEF(ReadConfiguration(pDisplay, &config));
    DescribePlane(pDisplay, context.uiPlaneWidth, context.uiPlaneHeight, &config);
    DFB_CHECK_BRIEF(Configure(pDisplay, config));
    if constexpr (SIZE_COMES_LATE) RenewLayerSurface(pDisplay);
    pDisplay->scActiveContextID = scContextID;
    if (!pDisplay->pBaseSurface) DFB_CHECK_BRIEF(TakeLayerSurface(pDisplay));
    Poke(pDisplay->pActiveSurface, pDisplay->pBaseSurface);
    if (config.pixelformat == DSPF_LUT8) DFB_CHECK(DeclareIndexedPlane(pDisplay->pBaseSurface));
    SetPaletteInternal(pThiz, scContextID, pDisplay->palette, MAX_PALETTE_COLOR, 0);
    pDisplay->uiPlaneWidth = context.uiPlaneWidth;
    pDisplay->uiPlaneHeight = context.uiPlaneHeight;
    ResetClip(pDisplay);
    DFB_CHECK(Call(pDisplay->pBaseSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
    DFB_CHECK(Call(pDisplay->pBaseSurface, &IDirectFBSurface::SetBlittingFlags, DSBLIT_NOFX));
}

void Kova_TextDFBDisp_SetActive(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool bActive)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!");
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!");
    TEXTDISP_ENTER();
    Poke(pDisplay->bColor32, 0); // even when what follows is refused
    const KovaDFBContext_t &context = pDisplay->context[scContextID];
    if (Peek(context.uiPlaneWidth) - 1 >= MAX_PLANE_WIDTH) return TEXTDISP_ERROR("Invalid plane width!");
    if (Peek(context.uiPlaneHeight) - 1 >= MAX_PLANE_HEIGHT) return TEXTDISP_ERROR("Invalid plane height!");
    Lock(pDisplay);
    if (bActive != 1) {
        PrintBanner(scContextID, bActive);
        Deactivate(pThiz);
        return Unlock(pDisplay), TEXTDISP_EXIT();
    }
    if (pDisplay->scActiveContextID != scContextID) {
        if (pDisplay->eLayer == KOVA_GRAPHIC_LAYER1) {
            pDisplay->uiPlaneWidth = context.uiPlaneWidth;
            pDisplay->uiPlaneHeight = context.uiPlaneHeight;
            if (CreateOSD1Window(pThiz) != 0) {
                return TEXTDISP_ERROR_RECORD("Fail to create OSD1 Window!\n"), Unlock(pDisplay),
                       TEXTDISP_EXIT();
            }
            pDisplay->scActiveContextID = scContextID;
        } else {
            PrintBanner(scContextID, bActive);
            if (!RegainLayer(pDisplay, TEXTDISP_HERE)) return Unlock(pDisplay), TEXTDISP_EXIT();
            RebuildLayer(pThiz, scContextID);
        }
        RecreateFonts(pThiz, scContextID);
    }
    RestoreShownState(pThiz, scContextID);
    return Unlock(pDisplay), TEXTDISP_EXIT();
}

// KEEPS_DISPLAY: the lock stays taken when the context does not exist, as above.
KEEPS_DISPLAY void Kova_TextDFBDisp_DestroyContext(pKovaITextDisplay_t pThiz, kova_sint8 scContextID)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!");
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!");
    Lock(pDisplay);
    if (!(pDisplay->ucContextMask >> scContextID & 1)) return TEXTDISP_ERROR("Can't destroy this context!");
    StoreGeometry(&pDisplay->context[scContextID], KovaTextContextParam_t{});
    const bool bLast = ReleaseFlipThread(pDisplay);
    pDisplay->ucContextMask = kova_uint8(pDisplay->ucContextMask & ~(1u << scContextID));
    Unlock(pDisplay);
    if (bLast) JoinFlipThread(pDisplay);
    TEXTDISP_EXIT();
}
