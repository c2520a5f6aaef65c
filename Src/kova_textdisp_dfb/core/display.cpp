// SPDX-License-Identifier: MIT
// Creates and destroys a display. When creation fails half-way, what was acquired stays acquired: sets in the field
// behave so, and their callers end the process.
// First, because it includes directfb.h as C has it.
#include "operations.h"
#include "platform/platform.h"

#include "kova/kova_textdisp_dfb.h"

#include <stdlib.h>
#include <string.h>

using namespace textdisp;

// Displays may be created on several threads.
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

static void InitRecord(KovaDFBDisplay_t *pDisplay, const KovaTextInitParam_t &param)
{
    pDisplay->eLayer = param.eLayer;
    pDisplay->bColor32 = param.bColor32Bit;
    pDisplay->uiPlaneWidth = param.uiPlaneWidth;
    pDisplay->uiPlaneHeight = param.uiPlaneHeight;
    pDisplay->bTextDisp_Palette = param.bTextDisp_Palette;
    // Whatever the parameter says, here and in the next line.
    pDisplay->bDoubleBuffer = 0;
    pDisplay->bFlip = 1;
    pDisplay->scActiveFontID = -1;
    FillTable(&pDisplay->sInterface);
}

static void InitLock(KovaDFBDisplay_t *pDisplay)
{
    pthread_mutexattr_t attribute;

    pthread_mutexattr_init(&attribute);
    pthread_mutexattr_settype(&attribute, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&pDisplay->display_mutex, &attribute);
}

static void OpenDirectFB(KovaDFBDisplay_t *pDisplay, Place_t place)
{
    IDirectFB *pDfb = nullptr;
    DFBGraphicsDeviceDescription device; // not used

    TEXTDISP_TRACE_AT(place, "Before DFB Init!\n");
    DFB_CHECK(pDisplay->pFnDirectFBInit(nullptr, nullptr));
    TEXTDISP_TRACE_AT(place, "Before DFB Create!\n");
    DFB_CHECK(pDisplay->pFnDirectFBCreate(&pDfb));
    TEXTDISP_TRACE_AT(place, "Before DFB Get Description!\n");
    DFB_CHECK(Call(pDfb, &IDirectFB::GetDeviceDescription, &device));
    pDisplay->pDfb = pDfb;
}

// False when there is no such layer.
static bool ObtainFirstLayer(KovaDFBDisplay_t *pDisplay, Place_t place) HOLDS_DISPLAY
{
    IDirectFBDisplayLayer *pLayer = nullptr;

    TEXTDISP_TRACE_AT(place, "Before DFB Get Layer!\n");
    const DFBResult eResult =
        ObtainLayer(pDisplay->pDfb, DFBDisplayLayerID(pDisplay->eLayer), &pLayer, place);
    if (eResult == DFB_OK) pDisplay->pLayer = pLayer;
    return pDisplay->pLayer;
}

static void ConfigureFirstPlane(KovaDFBDisplay_t *pDisplay, Place_t place) HOLDS_DISPLAY
{
    DFBDisplayLayerConfig config = {};

    TEXTDISP_TRACE_AT(place, "Before DFB Set cooperative level!\n");
    DFB_CHECK(Call(pDisplay->pLayer, &IDirectFBDisplayLayer::SetCooperativeLevel, DLSCL_EXCLUSIVE));
    TEXTDISP_TRACE_AT(place, "Before DFB Get configure!\n");
    DFB_CHECK(ReadConfiguration(pDisplay, &config));
    DescribePlane(pDisplay, pDisplay->uiPlaneWidth, pDisplay->uiPlaneHeight, &config);
    TEXTDISP_TRACE_AT(place, "Set plane to width %d, height %d\n", config.width, config.height);
    DFB_CHECK(Configure(pDisplay, config));
}

static void PrepareFirstSurface(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY
{
    IDirectFBSurface *const pSurface = pDisplay->pBaseSurface;

    pDisplay->pActiveSurface = pSurface;
    if (PlaneFormat(pDisplay) == DSPF_LUT8) DFB_CHECK(DeclareIndexedPlane(pSurface));
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::Clear, 0, 0, 0, 0));
    ResetClip(pDisplay);
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetClip, &pDisplay->clip));
    DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetBlittingFlags, DSBLIT_NOFX));
}

// False when there is no such surface.
static bool MakeBackupSurface(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY
{
    DFBSurfaceDescription desc = {};

    desc.flags = DFBSurfaceDescriptionFlags(DSDESC_CAPS | DSDESC_WIDTH | DSDESC_HEIGHT | DSDESC_PIXELFORMAT);
    desc.caps = DSCAPS_NONE;
    desc.width = int(pDisplay->uiPlaneWidth);
    desc.height = int(pDisplay->uiPlaneHeight);
    desc.pixelformat = PlaneFormat(pDisplay);
    DFB_CHECK(Call(pDisplay->pDfb, &IDirectFB::CreateSurface, &desc, &pDisplay->pBackupSurface));
    if (!pDisplay->pBackupSurface) return false;
    MeasureBackupSurface(pDisplay);
    DFB_CHECK(Call(pDisplay->pBackupSurface, &IDirectFBSurface::Clear, 0, 0, 0, 0));
    return true;
}

// KEEPS_DISPLAY: nobody else knows the display yet, so no lock is taken.
KEEPS_DISPLAY pKovaITextDisplay_t Kova_TextDFBDisp_Create(pKovaTextInitParam_t pParam)
{
    auto *const pDisplay = static_cast<KovaDFBDisplay_t *>(calloc(1, sizeof(KovaDFBDisplay_t)));
    if (!pDisplay) return TEXTDISP_ERROR("Malloc Fail!"), nullptr;

    TEXTDISP_ENTER();
    InitRecord(pDisplay, *pParam);
    InitLock(pDisplay);
    if (TextDisplayLoadLibrary(pDisplay) != 0) {
        return TextDisplayUnLoadLibrary(pDisplay), TEXTDISP_EXIT(), nullptr;
    }
    OpenDirectFB(pDisplay, TEXTDISP_HERE);
    if (pDisplay->eLayer == KOVA_GRAPHIC_LAYER1) {
        // A display without its window is still a display.
        CreateOSD1Window(&pDisplay->sInterface);
    } else {
        if (!ObtainFirstLayer(pDisplay, TEXTDISP_HERE)) {
            return TEXTDISP_ERROR_RECORD("GetDisplayLayer(layer:%d) failed.\n", int(pDisplay->eLayer)),
                   TEXTDISP_EXIT(), nullptr;
        }
        ConfigureFirstPlane(pDisplay, TEXTDISP_HERE);
        DFB_CHECK(TakeLayerSurface(pDisplay));
        if (!pDisplay->pBaseSurface) return TEXTDISP_ERROR("Fail to get surface from layer!"), nullptr;
        PrepareFirstSurface(pDisplay);
    }
    // Switched off in InitRecord, and kept for the set that switches it on.
    if (pDisplay->bDoubleBuffer && !MakeBackupSurface(pDisplay)) {
        return TEXTDISP_ERROR("Fail to create char surface!"), nullptr;
    }
    pDisplay->scActiveContextID = -1;
    pDisplay->flip_thread_ref = 0;
    Poke(gpLayer, pDisplay->eLayer == KOVA_GRAPHIC_LAYER1 ? nullptr : pDisplay->pLayer);
    Poke(gpDfb, pDisplay->pDfb);
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
    return Peek(gpLayer);
}

IDirectFB *Kova_TextDFBDisp_GetDFB(void)
{
    return Peek(gpDfb);
}
