// SPDX-License-Identifier: MIT
/** @file
    The DirectFB side of TextDisplay, for callers that speak DirectFB themselves. Needs directfb.h, and the
    public header of the same version that the library was built against. Most callers want kova_textdisp.h
    alone. */
#ifndef KOVA_TEXTDISP_DFB_H
#define KOVA_TEXTDISP_DFB_H

#include <directfb.h>

#include "kova_textdisp.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Makes a display as Kova_TextDisp_Create does, without its checks and without keeping it.
    The caller holds the result and gives it to Kova_TextDFBDisp_Destroy.
    @param pParam not null, read during the call only
    @return the display, its eType 0; null when memory, the DirectFB library, the layer or its surface is not
            to be had; the reason is logged, and what was acquired before such a failure stays acquired

    Waits for as long as the layer is temporarily unavailable. */
KOVA_TEXTDISP_API pKovaITextDisplay_t Kova_TextDFBDisp_Create(pKovaTextInitParam_t pParam);

/** Releases fonts, surfaces, the layer or window and DirectFB, and frees the display.
    Destroy its contexts first, and let no other thread be inside a call on it.
    @param pDisplay the display; null is allowed */
KOVA_TEXTDISP_API void Kova_TextDFBDisp_Destroy(pKovaITextDisplay_t pDisplay);

/** The layer of the display last created.
    @return null for a display on KOVA_GRAPHIC_LAYER1 and before the first; borrowed: not to be released,
            and dead once that display is destroyed although the value stays */
KOVA_TEXTDISP_API IDirectFBDisplayLayer *Kova_TextDFBDisp_GetLayer(void);

/** The main interface of the display last created.
    @return the IDirectFB, borrowed as that of Kova_TextDFBDisp_GetLayer is */
KOVA_TEXTDISP_API IDirectFB *Kova_TextDFBDisp_GetDFB(void);

/** As Kova_TextDisp_CreateContext, but null arguments are refused with "NULL Pointer!".
    @param pDisplay the display
    @param pParam the geometry, copied
    @return the identifier, 0 to 3, or -1 */
KOVA_TEXTDISP_API kova_sint8 Kova_TextDFBDisp_CreateContext(pKovaITextDisplay_t pDisplay,
                                                            pKovaTextContextParam_t pParam);

/** As Kova_TextDisp_SetActive, but a null display is refused with "NULL Pointer!".
    @param pDisplay the display
    @param scContextID the context
    @param bActive 1 to activate it, any other value to give the layer back */
KOVA_TEXTDISP_API void Kova_TextDFBDisp_SetActive(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID,
                                                  kova_bool bActive);

/** As Kova_TextDisp_DestroyContext, but a null display is refused with "NULL Pointer!".
    @param pDisplay the display
    @param scContextID the context */
KOVA_TEXTDISP_API void Kova_TextDFBDisp_DestroyContext(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID);

#ifdef __cplusplus
}
#endif

#endif
