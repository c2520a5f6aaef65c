// SPDX-License-Identifier: MIT
// A display made, and taken down again. Where making fails half-way, what was acquired stays: this is how
// sets in the field behave, and their callers end the process.
#include "kova/kova_textdisp_dfb.h"
#include "operations.h"
#include "platform.h"

#include <stdlib.h>
#include <string.h>

using namespace textdisp;

static IDirectFBDisplayLayer *gpLayer;
static IDirectFB *gpDfb;

static void FillTable(KovaITextDisplay_t *pTable)
{
    pTable->Show = Show;
    pTable->Hide = Hide;
    pTable->SetTextWindowSize = SetTextWindowSize;
    pTable->SetPlane = SetPlane;
    pTable->SetDisplayWindow = SetDisplayWindow;
    pTable->SetPalette = SetPalette;
    pTable->FillRect = FillRect;
    pTable->DrawPixel = DrawPixel;
    pTable->Flip = Flip;
    pTable->SetBlittingFlags = SetBlittingFlags;
    pTable->SetDrawingFlags = SetDrawingFlags;
    pTable->SetDstColorKey = SetDstColorKey;
    pTable->SetClip = SetClip;
    pTable->DrawPixelExpand = DrawPixelExpand;
    pTable->CreateFont = CreateFont;
    pTable->SetFont = SetFont;
    pTable->DrawString = DrawString;
    pTable->GetStringWidth = GetStringWidth;
    pTable->GetUnderlineInfo = GetUnderlineInfo;
    pTable->SetEdgeType = SetEdgeType;
    pTable->SetEdgeColor = SetEdgeColor;
    pTable->SetTextForeColor = SetTextForeColor;
    pTable->Blit = Blit;
    pTable->ScaleFontWidth = ScaleFontWidth;
    pTable->GetFontHeight = GetFontHeight;
    pTable->BatchDrawPixelExpand = BatchDrawPixelExpand;
    pTable->UseBackupSurface = UseBackupSurface;
    pTable->BlitBackupSurface = BlitBackupSurface;
    pTable->DrawLine = DrawLine;
    pTable->Create32BitPlane = Create32BitPlane;
    pTable->Release32BitPlane = Release32BitPanle;
    pTable->SetFlip = SetFlip;
    pTable->SetSurface_OsdScaleInfo = SetSurface_OsdScaleInfo;
    pTable->AdjustDisplaySize = AdjustDisplaySize;
}

pKovaITextDisplay_t Kova_TextDFBDisp_Create(pKovaTextInitParam_t pParam)
{
    auto *const pDisplay = static_cast<KovaDFBDisplay_t *>(calloc(1, sizeof(KovaDFBDisplay_t)));
    if (!pDisplay) return TEXTDISP_ERROR("Malloc Fail!"), nullptr;

    TEXTDISP_ENTER();
    pDisplay->eLayer = pParam->eLayer;
    pDisplay->bColor32 = pParam->bColor32Bit;
    pDisplay->uiPlaneWidth = pParam->uiPlaneWidth;
    pDisplay->uiPlaneHeight = pParam->uiPlaneHeight;
    pDisplay->bTextDisp_Palette = pParam->bTextDisp_Palette;
    pDisplay->bDoubleBuffer = 0; // whatever the parameter says, as for bFlip
    pDisplay->bFlip = 1;
    pDisplay->scActiveFontID = -1;
    FillTable(&pDisplay->sInterface);

    pthread_mutexattr_t attribute;
    pthread_mutexattr_init(&attribute);
    pthread_mutexattr_settype(&attribute, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&pDisplay->display_mutex, &attribute);

    if (TextDisplayLoadLibrary(pDisplay) != 0) {
        return TextDisplayUnLoadLibrary(pDisplay), TEXTDISP_EXIT(), nullptr;
    }
    TEXTDISP_TRACE("Before DFB Init!\n");
    DFB_CHECK(pDisplay->pFnDirectFBInit(nullptr, nullptr));
    TEXTDISP_TRACE("Before DFB Create!\n");
    IDirectFB *pDfb = nullptr;
    DFB_CHECK(pDisplay->pFnDirectFBCreate(&pDfb));
    TEXTDISP_TRACE("Before DFB Get Description!\n");
    DFBGraphicsDeviceDescription device; // asked for, and not looked at
    DFB_CHECK(Call(pDfb, &IDirectFB::GetDeviceDescription, &device));
    pDisplay->pDfb = pDfb;

    IDirectFBDisplayLayer *pLayer = nullptr;
    DFBDisplayLayerConfig config = {};
    config.pixelformat = PlaneFormat(pDisplay);
    if (pDisplay->eLayer == KOVA_GRAPHIC_LAYER1) {
        CreateOSD1Window(&pDisplay->sInterface); // a display without its window is a display all the same
    } else {
        TEXTDISP_TRACE("Before DFB Get Layer!\n");
        const DFBResult eResult =
            ObtainLayer(pDfb, DFBDisplayLayerID(pDisplay->eLayer), &pLayer, TEXTDISP_HERE);
        if (eResult != DFB_OK || !pLayer) {
            return TEXTDISP_ERROR_RECORD("GetDisplayLayer(layer:%d) failed.\n", int(pDisplay->eLayer)),
                   TEXTDISP_EXIT(), nullptr;
        }
        TEXTDISP_TRACE("Before DFB Set cooperative level!\n");
        DFB_CHECK(Call(pLayer, &IDirectFBDisplayLayer::SetCooperativeLevel, DLSCL_EXCLUSIVE));
        TEXTDISP_TRACE("Before DFB Get configure!\n");
        DFBDisplayLayerConfig current = {};
        DFB_CHECK(Call(pLayer, &IDirectFBDisplayLayer::GetConfiguration, &current));
        config = current;
        DescribePlane(pDisplay, pDisplay->uiPlaneWidth, pDisplay->uiPlaneHeight, &config);
        TEXTDISP_TRACE("Set plane to width %d, height %d\n", config.width, config.height);
        DFB_CHECK(Configure(pDisplay, pLayer, current, config));
        pDisplay->pLayer = pLayer;
        DFB_CHECK(Call(pLayer, &IDirectFBDisplayLayer::GetSurface, &pDisplay->pBaseSurface));
        if (!pDisplay->pBaseSurface) return TEXTDISP_ERROR("Fail to get surface from layer!"), nullptr;
        IDirectFBSurface *const pSurface = pDisplay->pBaseSurface;
        pDisplay->pActiveSurface = pSurface;
        if (config.pixelformat == DSPF_LUT8) DFB_CHECK(DeclareIndexedPlane(pSurface));
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::Clear, 0, 0, 0, 0));
        ResetClip(pDisplay);
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetBlittingFlags, DSBLIT_NOFX));
    }

    if (pDisplay->bDoubleBuffer) { // switched off above, and kept for the set that switches it on
        DFBSurfaceDescription desc = {};
        desc.flags =
            DFBSurfaceDescriptionFlags(DSDESC_CAPS | DSDESC_WIDTH | DSDESC_HEIGHT | DSDESC_PIXELFORMAT);
        desc.caps = DSCAPS_NONE;
        desc.width = int(pDisplay->uiPlaneWidth);
        desc.height = int(pDisplay->uiPlaneHeight);
        desc.pixelformat = config.pixelformat;
        DFB_CHECK(Call(pDfb, &IDirectFB::CreateSurface, &desc, &pDisplay->pBackupSurface));
        if (!pDisplay->pBackupSurface) return TEXTDISP_ERROR("Fail to create char surface!"), nullptr;
        DFB_CHECK(Call(pDisplay->pBackupSurface, &IDirectFBSurface::Clear, 0, 0, 0, 0));
    }
    pDisplay->scActiveContextID = -1;
    pDisplay->flip_thread_ref = 0;
    gpLayer = pLayer;
    gpDfb = pDfb;
    return TEXTDISP_EXIT(), &pDisplay->sInterface;
}

void Kova_TextDFBDisp_Destroy(pKovaITextDisplay_t pThiz)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_EXIT();
    for (int iSlot = 0; iSlot < MAX_FONTS; iSlot++) {
        if (!pDisplay->font[iSlot].pFont) continue;
        TEXTDISP_TRACE("Free font 0x%x!\n", unsigned(iSlot));
        DFB_CHECK(ReleaseAndClear(pDisplay->font[iSlot].pFont));
        memset(pDisplay->FontName[iSlot], 0, sizeof pDisplay->FontName[iSlot]);
    }
    if (pDisplay->eLayer != KOVA_GRAPHIC_LAYER1) {
        TEXTDISP_TRACE("Free surface!\n");
        if (pDisplay->pBaseSurface) DFB_CHECK(ReleaseAndClear(pDisplay->pBaseSurface));
        if (pDisplay->pBackupSurface) DFB_CHECK(ReleaseAndClear(pDisplay->pBackupSurface));
        if (pDisplay->pLayer) {
            TEXTDISP_TRACE("Free layer!\n");
            DFB_CHECK(ReleaseAndClear(pDisplay->pLayer));
        }
    } else {
        ReleaseOSD1Window(pThiz);
    }
    if (pDisplay->pDfb) {
        TEXTDISP_TRACE("Free dfb!\n");
        DFB_CHECK(ReleaseAndClear(pDisplay->pDfb));
    }
    TEXTDISP_TRACE("Free mutex!\n");
    pthread_mutex_destroy(&pDisplay->display_mutex);
    TextDisplayUnLoadLibrary(pDisplay);
    TEXTDISP_TRACE("Free pDFBDisplay!\n");
    free(pDisplay);
    TEXTDISP_EXIT();
}

IDirectFBDisplayLayer *Kova_TextDFBDisp_GetLayer(void)
{
    return gpLayer;
}

IDirectFB *Kova_TextDFBDisp_GetDFB(void)
{
    return gpDfb;
}
