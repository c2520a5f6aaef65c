/* TextDisplay: captions and subtitles on a television's on-screen display. The table of operations that a
   display offers, and the functions that make, find and destroy the one display. C99 and C++.

   The common rules, stated once:
   - A caller creates the display, creates up to four contexts on it, activates one, and draws through the
   table, passing the display itself as the first argument (pThiz) and its context identifier (0 to 3) as the
   second.
   - Operations return 0, or -1 for a refused call; the reason is logged. A DirectFB call that fails is
   reported on standard error and does not change the result.
   - While the display is hidden most operations do nothing and return 0. While a context is active, calls for
     another one are refused with "Inactive context!"; before the first activation every identifier may act.
   - A colour argument is, by the display's colour mode: packed 0xRRGGBBAA (32-bit mode), an index into the
   display's own palette (palette-copy mode), or an index into the surface's palette (index mode). A palette
   index past 255 stands for transparent black.
   - Coordinates and sizes are pixels of the plane, (0, 0) top left.
   - Operations may be called from any thread. They serialise on the display's own recursive lock and hold it
   while DirectFB works, waits for the vertical sync included. The lock is taken by the thread that calls. */
#ifndef KOVA_TEXTDISP_H
#define KOVA_TEXTDISP_H

#include "kova_textdisp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define KOVA_TEXTDISP_API __attribute__((visibility("default")))

typedef struct KovaITextDisplay_tag KovaITextDisplay_t, *pKovaITextDisplay_t;

struct KovaITextDisplay_tag {
    KovaGraphicType_e eType;

    void (*Show)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    void (*Hide)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    int (*SetTextWindowSize)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiWidth,
                             kova_uint32 uiHeight);

    int (*SetPlane)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
                    kova_uint32 uiWidth, kova_uint32 uiHeight);

    int (*SetDisplayWindow)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                            kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);

    int (*SetPalette)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextColor_t pColor,
                      kova_uint32 uiNumber, kova_uint8 ucOffset);

    int (*FillRect)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                    kova_uint32 color);

    int (*DrawPixel)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                     kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth, kova_uint32 uiHeight,
                     kova_uint32 uiRowByte);

    int (*Flip)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    int (*SetBlittingFlags)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextBlitFlag_e eFlag);

    int (*SetDrawingFlags)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextDrawFlag_e eFlag);

    int (*SetDstColorKey)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    int (*SetClip)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect);

    int (*DrawPixelExpand)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                           kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth,
                           kova_uint32 uiHeight, kova_uint32 uiRowByte, kova_sint32 siBgColor,
                           kova_sint32 siFgColor, kova_uint32 uiBitOffset, KovaTextExpand_e eExpand);

    int (*CreateFont)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const char *pcFontName,
                      kova_uint32 ucHeight, KovaTextFontAttr_e eAttr, kova_sint32 *psiFontNumb);

    int (*SetFont)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb,
                   kova_uint32 ucHeight, KovaTextFontAttr_e eFontAttr);

    int (*DrawString)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                      kova_uint8 ucBytes, kova_uint32 uiX, kova_uint32 uiY, KovaTextEncoding_e eEncoding,
                      KovaTextAlignFlag_e eFlag);

    int (*GetStringWidth)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                          kova_uint8 ucBytes, KovaTextEncoding_e eEncoding, kova_uint32 *puiWidth);

    int (*GetUnderlineInfo)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb,
                            kova_uint32 ucHeight, kova_uint32 uiAttr, kova_sint32 *psiPos,
                            kova_sint32 *psiThick);

    int (*SetEdgeType)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextEdgeType_e eEdge);

    int (*SetEdgeColor)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    int (*SetTextForeColor)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    int (*Blit)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect, kova_uint32 uiDstX,
                kova_uint32 uiDstY);

    int (*ScaleFontWidth)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool enable,
                          kova_uint32 scaleFactor);

    int (*GetFontHeight)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 *pHeight);

    int (*BatchDrawPixelExpand)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 **ucPixel,
                                kova_uint32 *uiStartX, kova_uint32 *uiStartY, kova_uint32 *uiWidth,
                                kova_uint32 *uiHeight, kova_uint32 *uiRowByte, kova_sint32 *siBgColor,
                                kova_sint32 *siFgColor, kova_uint32 *uiBitOffset, KovaTextExpand_e *eExpand,
                                kova_uint8 ucNumb);

    int (*UseBackupSurface)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool bBackup);

    int (*BlitBackupSurface)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                             kova_uint32 uiDstX, kova_uint32 uiDstY);

    int (*DrawLine)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 x1, kova_sint32 y1,
                    kova_sint32 x2, kova_sint32 y2, kova_uint32 color);

    int (*Create32BitPlane)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                            kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);

    int (*Release32BitPlane)(pKovaITextDisplay_t pThiz);

    int (*SetFlip)(pKovaITextDisplay_t pThiz, kova_bool bFlip);

    void (*SetSurface_OsdScaleInfo)(pKovaITextDisplay_t pThiz, Surface_OsdScaleInfo *pOsdScaleInfo);

    int (*AdjustDisplaySize)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                             kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);
};

/* Creates the one display and keeps it in gpDisplay; a display already there is forgotten, not destroyed.
   eType: KOVA_GRAPHIC_DIRECTFB; any other type gives no display. pParam: not null, read during the call only.
   Returns -1 when a plane size is 0 or the layer is above 2 ("Plane Width is 0!", "Plane Height is 0!",
   "Invalid layer!"), and 0 otherwise, also when no display could be made: ask Kova_TextDisp_GetDisplayByID.
   Called from one thread, before all other use. Waits for as long as the layer is temporarily unavailable. */
KOVA_TEXTDISP_API kova_sint8 Kova_TextDisp_Create(KovaGraphicType_e eType, pKovaTextInitParam_t pParam);

/* The display, or null. scID is not looked at. The display belongs to the library. */
KOVA_TEXTDISP_API pKovaITextDisplay_t Kova_TextDisp_GetDisplayByID(kova_sint8 scID);

/* Creates a context with the geometry of pParam (not null, copied) and rebuilds the plane if its size differs
   from the display's. The first context starts the thread that flips the last frame of a burst. Returns the
   identifier, 0 to 3, or -1: all four are in use ("Can't support so much context!"; the display's lock then
   stays taken by the calling thread), or the thread did not start. pDisplay: not null. Create and destroy
   contexts from one thread. */
KOVA_TEXTDISP_API kova_sint8 Kova_TextDisp_CreateContext(pKovaITextDisplay_t pDisplay,
                                                         pKovaTextContextParam_t pParam);

/* bActive 1: rebuilds the layer or window for the context's plane, loads the palette, opens the fonts again
   and shows or hides as before; from then on only this context may draw. Any other bActive: gives the layer,
   its surface and the fonts back, and no context may draw until one is activated. Either leaves 32-bit mode.
   A context whose plane is not 1 to 1920 by 1 to 1080 is refused ("Invalid plane width!", "Invalid plane
   height!"). pDisplay: not null. */
KOVA_TEXTDISP_API void Kova_TextDisp_SetActive(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID,
                                               kova_bool bActive);

/* Forgets a context. The last one stops the flipping thread and waits for its end, a flip under way included.
   What is drawn, and which context is active, stays. A context that does not exist is refused ("Can't destroy
   this context!"; the display's lock then stays taken by the calling thread). Returns 0 always. pDisplay: not
   null. */
KOVA_TEXTDISP_API RETURN_TYPE Kova_TextDisp_DestroyContext(pKovaITextDisplay_t pDisplay,
                                                           kova_sint8 scContextID);

/* The IDirectFBDisplayLayer of the display last created, null for one on KOVA_GRAPHIC_LAYER1. Borrowed; not
   to be used once that display is destroyed, although the value stays. */
KOVA_TEXTDISP_API void *Kova_TextDisp_GetLayer(void);

/* The IDirectFB of the display last created; borrowed in the same way. */
KOVA_TEXTDISP_API void *Kova_TextDisp_GetDFB(void);

/* Destroys the display ("NULL Pointer!" if there is none). Destroy its contexts first, and let no other
   thread be inside a call on it. scID is not looked at. */
KOVA_TEXTDISP_API void Kova_TextDisp_Destroy(kova_sint8 scID);

/* The one display, null if there is none. Read it through Kova_TextDisp_GetDisplayByID. */
extern KOVA_TEXTDISP_API pKovaITextDisplay_t gpDisplay;

/* The library's debug category, made by the first Kova_TextDisp_Create that passes its checks. */
extern KOVA_TEXTDISP_API struct KovaDebugCategory *textdisplay_debug;

#ifdef __cplusplus
}
#endif

#endif
