// SPDX-License-Identifier: MIT
/** @file
    The DirectFB functions of TextDisplay, for callers that use DirectFB themselves. Needs directfb.h, in the
    version that the library was built against. Most callers need only kova_textdisp.h. */
#ifndef KOVA_TEXTDISP_DFB_H
#define KOVA_TEXTDISP_DFB_H

#include <directfb.h>

#include "kova_textdisp.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Creates a display as Kova_TextDisp_Create does, without its checks and without storing it.
    The caller owns the result and passes it to Kova_TextDFBDisp_Destroy.
    @param pParam not null, read during the call only
    @return the display, with eType 0; null if memory, the DirectFB library, the layer or its surface is not
            available. The reason is logged; what was acquired before the failure is not released.

    Blocks while the layer is temporarily unavailable. */
KOVA_TEXTDISP_API pKovaITextDisplay_t Kova_TextDFBDisp_Create(pKovaTextInitParam_t pParam);

/** Releases fonts, surfaces, the layer or window and DirectFB, and frees the display.
    Destroy its contexts first, and make sure that no other thread is in a call on it.
    @param pDisplay the display; null is allowed */
KOVA_TEXTDISP_API void Kova_TextDFBDisp_Destroy(pKovaITextDisplay_t pDisplay);

/** Returns the layer of the display created last.
    @return null for a display on KOVA_GRAPHIC_LAYER1 and before the first display is created. The library
            owns the layer: do not release it. It is invalid once that display is destroyed, although the
            pointer is still returned. */
KOVA_TEXTDISP_API IDirectFBDisplayLayer *Kova_TextDFBDisp_GetLayer(void);

/** Returns the main interface of the display created last.
    @return the IDirectFB; ownership and lifetime as for Kova_TextDFBDisp_GetLayer */
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
    @param bActive 1 to activate it, any other value to release the layer */
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
