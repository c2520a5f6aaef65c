// SPDX-License-Identifier: MIT
// The public functions. They take no lock and trust their display argument; the display's type selects what draws.
#define TEXTDISP_SOURCE "Src/kova_textdisp_api"

#include "kova_textdisp_dfb/platform/directfb_c.h"

#include "common/log.h"
#include "kova/kova_textdisp_dfb.h"

pKovaITextDisplay_t gpDisplay;
struct KovaDebugCategory *textdisplay_debug;

// A console colour: magenta letters (5) on white (112), bold (256).
enum { CATEGORY_COLOUR = 5 + 112 + 256 };

kova_sint8 Kova_TextDisp_Create(KovaGraphicType_e eType, pKovaTextInitParam_t pParam)
{
    if (pParam->uiPlaneWidth == 0) return TEXTDISP_ERROR("Plane Width is 0!"), kova_sint8(-1);
    if (pParam->uiPlaneHeight == 0) return TEXTDISP_ERROR("Plane Height is 0!"), kova_sint8(-1);
    if (unsigned(pParam->eLayer) >= KOVA_GRAPHIC_MAXLAYER)
        return TEXTDISP_ERROR("Invalid layer!"), kova_sint8(-1);
    if (!textdisplay_debug) {
        textdisplay_debug = kova_debug_category_new("TextDisplay", CATEGORY_COLOUR, "textdisplay debug");
    }
    pKovaITextDisplay_t pDisplay = nullptr;
    if (eType == KOVA_GRAPHIC_DIRECTFB) {
        pDisplay = Kova_TextDFBDisp_Create(pParam);
        if (pDisplay) pDisplay->eType = eType;
    }
    gpDisplay = pDisplay; // null too: 0 means that the parameters were good, and no more
    return 0;
}

pKovaITextDisplay_t Kova_TextDisp_GetDisplayByID(kova_sint8)
{
    return gpDisplay;
}

kova_sint8 Kova_TextDisp_CreateContext(pKovaITextDisplay_t pDisplay, pKovaTextContextParam_t pParam)
{
    return pDisplay->eType == KOVA_GRAPHIC_DIRECTFB ? Kova_TextDFBDisp_CreateContext(pDisplay, pParam)
                                                    : kova_sint8(-1);
}

void Kova_TextDisp_SetActive(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID, kova_bool bActive)
{
    if (pDisplay->eType == KOVA_GRAPHIC_DIRECTFB) Kova_TextDFBDisp_SetActive(pDisplay, scContextID, bActive);
}

RETURN_TYPE Kova_TextDisp_DestroyContext(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID)
{
    if (pDisplay->eType == KOVA_GRAPHIC_DIRECTFB) Kova_TextDFBDisp_DestroyContext(pDisplay, scContextID);
    return 0;
}

void *Kova_TextDisp_GetLayer(void)
{
    return Kova_TextDFBDisp_GetLayer();
}

void *Kova_TextDisp_GetDFB(void)
{
    return Kova_TextDFBDisp_GetDFB();
}

void Kova_TextDisp_Destroy(kova_sint8)
{
    if (!gpDisplay) return TEXTDISP_ERROR("NULL Pointer!");
    if (gpDisplay->eType == KOVA_GRAPHIC_DIRECTFB) Kova_TextDFBDisp_Destroy(gpDisplay);
    gpDisplay = nullptr;
}
