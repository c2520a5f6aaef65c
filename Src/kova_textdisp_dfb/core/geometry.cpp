// SPDX-License-Identifier: MIT
#include "operations.h"
#include "platform/platform.h"

namespace textdisp
{

// The plane size that the context's next activation builds.
static void StoreContextPlane(KovaDFBDisplay_t *pDisplay, kova_sint8 scContextID, kova_uint32 uiWidth,
                              kova_uint32 uiHeight)
{
    Poke(pDisplay->context[scContextID].uiPlaneWidth, uiWidth);
    Poke(pDisplay->context[scContextID].uiPlaneHeight, uiHeight);
}

// The plane size of the context and of the display itself, whose layer is as large now.
static void StoreCurrentPlane(KovaDFBDisplay_t *pDisplay, kova_sint8 scContextID, kova_uint32 uiWidth,
                              kova_uint32 uiHeight) HOLDS_DISPLAY
{
    StoreContextPlane(pDisplay, scContextID, uiWidth, uiHeight);
    pDisplay->uiPlaneWidth = uiWidth;
    pDisplay->uiPlaneHeight = uiHeight;
}

int SetPlane(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32, kova_uint32, kova_uint32 uiWidth,
             kova_uint32 uiHeight)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    TEXTDISP_TRACE("\n\n########################### Enter SetPlane! width:%d,height:%d "
                   "##################################\n\n",
                   int(uiWidth), int(uiHeight));
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!Peek(pDisplay->pLayer)) return TEXTDISP_ERROR("pLayer is NULL!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    Lock(pDisplay);
    if (pDisplay->scActiveContextID == -2) {
        // Refused, but kept for the next activation.
        StoreContextPlane(pDisplay, scContextID, uiWidth, uiHeight);
        return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    }
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;

    const bool bBackupInUse =
        pDisplay->pBackupSurface && pDisplay->pActiveSurface == pDisplay->pBackupSurface;
    IDirectFBSurface *pKept;
    if (pDisplay->eLayer != KOVA_GRAPHIC_LAYER1) {
        if (pDisplay->pBaseSurface) DFB_CHECK(ReleaseAndClear(pDisplay->pBaseSurface));
        DFBDisplayLayerConfig config = {};
        DFB_CHECK(ReadConfiguration(pDisplay, &config));
        DescribePlane(pDisplay, uiWidth, uiHeight, &config);
        DFB_CHECK(Configure(pDisplay, config));
        StoreCurrentPlane(pDisplay, scContextID, uiWidth, uiHeight);
        pKept = pDisplay->pActiveSurface;
        DFB_CHECK(TakeLayerSurface(pDisplay));
        Poke(pDisplay->pActiveSurface, pDisplay->pBaseSurface);
        if (config.pixelformat == DSPF_LUT8) DFB_CHECK(DeclareIndexedPlane(pDisplay->pBaseSurface));
        SetPaletteInternal(pThiz, scContextID, pDisplay->palette, MAX_PALETTE_COLOR, 0);
        ResetClip(pDisplay);
        DFB_CHECK(Call(pDisplay->pBaseSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
        DFB_CHECK(Call(pDisplay->pBaseSurface, &IDirectFBSurface::SetBlittingFlags, DSBLIT_NOFX));
    } else {
        ReleaseOSD1Window(pThiz);
        StoreCurrentPlane(pDisplay, scContextID, uiWidth, uiHeight);
        // Null by now: a display that drew into its backup surface ends without an active one. This is intended.
        pKept = pDisplay->pActiveSurface;
        CreateOSD1Window(pThiz);
    }
    RecreateFonts(pThiz, scContextID);
    RestoreShownState(pThiz, scContextID);
    if (bBackupInUse) Poke(pDisplay->pActiveSurface, pKept);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int AdjustDisplaySize(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32, kova_uint32,
                      kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    TEXTDISP_TRACE("\n\n########################### Enter AdjustDisplaySize! width:%d,height:%d "
                   "##################################\n\n",
                   int(uiWidth), int(uiHeight));
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!Peek(pDisplay->pLayer)) return TEXTDISP_ERROR("pLayer is NULL!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    Lock(pDisplay);
    if (pDisplay->scActiveContextID == -2) {
        StoreContextPlane(pDisplay, scContextID, uiWidth, uiHeight);
        return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    }
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;

    if (pDisplay->pBaseSurface) DFB_CHECK(ReleaseAndClear(pDisplay->pBaseSurface));
    DFBDisplayLayerConfig config = {};
    DFB_CHECK(ReadConfiguration(pDisplay, &config));
    config.flags = DFBDisplayLayerConfigFlags(DLCONF_WIDTH | DLCONF_HEIGHT);
    config.width = int(uiWidth);
    config.height = int(uiHeight);
    DFB_CHECK(Configure(pDisplay, config));
    StoreCurrentPlane(pDisplay, scContextID, uiWidth, uiHeight);
    DFB_CHECK(TakeLayerSurface(pDisplay));
    ResetClip(pDisplay);
    // A backup surface that was in use is no longer the target.
    Poke(pDisplay->pActiveSurface, pDisplay->pBaseSurface);
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int SetDisplayWindow(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
                     kova_uint32 uiWidth, kova_uint32 uiHeight)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    KovaDFBContext_t &context = pDisplay->context[scContextID];
    // Nothing to do is no error, not even for an inactive context.
    if (Peek(context.uiDisplayWindowX) == uiX && Peek(context.uiDisplayWindowY) == uiY &&
        Peek(context.uiDisplayWindowWidth) == uiWidth && Peek(context.uiDisplayWindowHeight) == uiHeight) {
        return TEXTDISP_EXIT(), 0;
    }
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    Poke(context.uiDisplayWindowX, uiX);
    Poke(context.uiDisplayWindowY, uiY);
    Poke(context.uiDisplayWindowWidth, uiWidth);
    Poke(context.uiDisplayWindowHeight, uiHeight);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int SetTextWindowSize(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiWidth,
                      kova_uint32 uiHeight)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    pDisplay->context[scContextID].uiTextWindowWidth = uiWidth;
    pDisplay->context[scContextID].uiTextWindowHeight = uiHeight;
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

void SetSurface_OsdScaleInfo(pKovaITextDisplay_t pThiz, Surface_OsdScaleInfo *pOsdScaleInfo)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);
    const Surface_OsdScaleInfo info = pOsdScaleInfo ? *pOsdScaleInfo : Surface_OsdScaleInfo{};

    TEXTDISP_ENTER_WITH("Plane:(%dx%d)(%dx%d) Crop:(%dx%d)(%dx%d)", info.plane_x, info.plane_y, info.plane_w,
                        info.plane_h, info.crop_x, info.crop_y, info.crop_w, info.crop_h);
    if (!pThiz || !Peek(pDisplay->pActiveSurface) || !pOsdScaleInfo) return TEXTDISP_EXIT();
    DFB_CHECK(SetOsdScale(Peek(pDisplay->pActiveSurface), Peek(pDisplay->pLayer), info));
    TEXTDISP_EXIT();
}

} // namespace textdisp
