// SPDX-License-Identifier: MIT
// Every operation and worker of the DirectFB half, folder by folder. Workers expect the display's lock and repeat no
// check of their callers. kova/kova_textdisp.h documents the operations of the table.
#ifndef TEXTDISP_OPERATIONS_H
#define TEXTDISP_OPERATIONS_H

#include "call.h"

#include <sys/time.h>

namespace textdisp
{

// core/loader.cpp
int TextDisplayLoadLibrary(pKovaDFBDisplay_t pDisplay);
int TextDisplayUnLoadLibrary(pKovaDFBDisplay_t pDisplay);

// core/layer.cpp
// Asks for a layer every 50 ms while it is temporarily unavailable, without limit.
DFBResult ObtainLayer(IDirectFB *pDfb, DFBDisplayLayerID id, IDirectFBDisplayLayer **ppLayer, Place_t place);
// The same for a display that has given its layer back. On failure it reports why, leaves the display without an
// active context and returns false.
bool RegainLayer(KovaDFBDisplay_t *pDisplay, Place_t place) HOLDS_DISPLAY;
DFBSurfacePixelFormat PlaneFormat(const KovaDFBDisplay_t *pDisplay);
// Sets a back-video plane of this size and of the display's format in the configuration read from the layer.
void DescribePlane(const KovaDFBDisplay_t *pDisplay, kova_uint32 uiWidth, kova_uint32 uiHeight,
                   DFBDisplayLayerConfig *pConfig);
// Both remember how large the layer is: as configured, or else as it reported, or else of no known size.
DFBResult ReadConfiguration(KovaDFBDisplay_t *pDisplay, DFBDisplayLayerConfig *pConfig) HOLDS_DISPLAY;
DFBResult Configure(KovaDFBDisplay_t *pDisplay, const DFBDisplayLayerConfig &config) HOLDS_DISPLAY;
// Takes the layer's surface as the base surface, in place of none.
DFBResult TakeLayerSurface(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
// On published DirectFB, takes a new interface for a base surface of the layer's own that was kept over a
// configuration; the old one would have the old size for a moment. Does nothing with a platform's header.
void RenewLayerSurface(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
// The whole plane becomes the clip.
void ResetClip(KovaDFBDisplay_t *pDisplay);

// core/osd1_window.cpp
int CreateOSD1Window(pKovaITextDisplay_t pThiz);
int ReleaseOSD1Window(pKovaITextDisplay_t pThiz);

// core/geometry.cpp
int SetPlane(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
             kova_uint32 uiWidth, kova_uint32 uiHeight);
int AdjustDisplaySize(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
                      kova_uint32 uiWidth, kova_uint32 uiHeight);
int SetDisplayWindow(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
                     kova_uint32 uiWidth, kova_uint32 uiHeight);
int SetTextWindowSize(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiWidth,
                      kova_uint32 uiHeight);
void SetSurface_OsdScaleInfo(pKovaITextDisplay_t pThiz, Surface_OsdScaleInfo *pOsdScaleInfo);

// core/plane32.cpp
int Create32BitPlane(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
                     kova_uint32 uiWidth, kova_uint32 uiHeight);
int Release32BitPanle(pKovaITextDisplay_t pThiz); // the spelling that all logs have

// core/visibility.cpp
void Show(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);
void Hide(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);
void ShowInternal(pKovaITextDisplay_t pThiz, kova_sint8 scContextID) HOLDS_DISPLAY;
void HideInternal(pKovaITextDisplay_t pThiz, kova_sint8 scContextID) HOLDS_DISPLAY;
void RestoreShownState(pKovaITextDisplay_t pThiz, kova_sint8 scContextID) HOLDS_DISPLAY;

// presentation/flip.cpp
int Flip(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);
int SetFlip(pKovaITextDisplay_t pThiz, kova_bool bFlip);
int FilpInternal(pKovaITextDisplay_t pThiz) HOLDS_DISPLAY; // the spelling that all logs have
unsigned long compare_time(const struct timeval *ptime1, const struct timeval *ptime2);
bool IsBackBuffered(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
DFBResult FlipSurface(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;

// presentation/flip_thread.cpp
void *Flip_last_frame_Thread(void *args);
void PostFlip(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
// A thread that is ending serves nobody, and no other can be started beside it. Gives the lock up while it waits.
void AwaitEndOfFlipThread(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
// For a new context. Returns 0, or the error of pthread_create: the context then has no hold.
int HoldFlipThread(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
// For a context that ends. True when the thread was asked to stop: the caller gives the lock up, which the thread takes
// on its way out, and joins it.
bool ReleaseFlipThread(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
void JoinFlipThread(KovaDFBDisplay_t *pDisplay);

// presentation/backup.cpp
// Returns the size of the backup surface: the plane's at the moment when the surface was made, whatever becomes of the
// plane. A surface that was put into the record from outside counts as made at the first call.
KovaDFBSize_t MeasureBackupSurface(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
int UseBackupSurface(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool bBackup);
int BlitBackupSurface(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                      kova_uint32 uiDstX, kova_uint32 uiDstY);

// drawing/state.cpp
int SetClip(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect);
int SetDstColorKey(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);
int SetDrawingFlags(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextDrawFlag_e eFlag);
int SetBlittingFlags(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextBlitFlag_e eFlag);

// drawing/palette.cpp
int SetPalette(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextColor_t pColor,
               kova_uint32 uiNumber, kova_uint8 ucOffset);
int SetPaletteInternal(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const KovaTextColor_t *pColor,
                       kova_uint32 uiNumber, kova_uint8 ucOffset) HOLDS_DISPLAY;

// drawing/shapes.cpp
int FillRect(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect, kova_uint32 color);
int FillRectInternal(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const KovaTextRect_t *pRect,
                     kova_uint32 color) HOLDS_DISPLAY;
int DrawLine(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 x1, kova_sint32 y1,
             kova_sint32 x2, kova_sint32 y2, kova_uint32 color);

// drawing/pixels.cpp
int DrawPixel(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel, kova_uint32 uiStartX,
              kova_uint32 uiStartY, kova_uint32 uiWidth, kova_uint32 uiHeight, kova_uint32 uiRowByte);
int Blit(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect, kova_uint32 uiDstX,
         kova_uint32 uiDstY);

// drawing/glyphs.cpp
int DrawPixelExpand(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                    kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth, kova_uint32 uiHeight,
                    kova_uint32 uiRowByte, kova_sint32 siBgColor, kova_sint32 siFgColor,
                    kova_uint32 uiBitOffset, KovaTextExpand_e eExpand);
int BatchDrawPixelExpand(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 **ucPixel,
                         kova_uint32 *uiStartX, kova_uint32 *uiStartY, kova_uint32 *uiWidth,
                         kova_uint32 *uiHeight, kova_uint32 *uiRowByte, kova_sint32 *siBgColor,
                         kova_sint32 *siFgColor, kova_uint32 *uiBitOffset, KovaTextExpand_e *eExpand,
                         kova_uint8 ucNumb);

// text/fonts.cpp
int CreateFont(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const char *pcFontName,
               kova_uint32 ucHeight, KovaTextFontAttr_e eAttr, kova_sint32 *psiFontNumb);
int CreateFontInternal(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const char *pcFontName,
                       kova_uint32 ucHeight, KovaTextFontAttr_e eAttr,
                       kova_sint32 *psiFontNumb) HOLDS_DISPLAY;
DFBResult EnumerateEncodings(KovaDFBDisplay_t *pDisplay, kova_sint32 siFontNumb) HOLDS_DISPLAY;
// Releases every font that has a name and empties the table; the rows of names stay.
void DropFonts(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY;
// Opens the fonts again for a new surface, and selects the one that was selected.
void RecreateFonts(pKovaITextDisplay_t pThiz, kova_sint8 scContextID) HOLDS_DISPLAY;

// text/metrics.cpp
int SetFont(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb, kova_uint32 ucHeight,
            KovaTextFontAttr_e eFontAttr);
int SetFontInternal(pKovaITextDisplay_t pThiz, kova_sint32 siFontNumb, kova_uint32 ucHeight,
                    KovaTextFontAttr_e eFontAttr) HOLDS_DISPLAY;
int GetFontHeight(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 *pHeight);
int ScaleFontWidth(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool enable,
                   kova_uint32 scaleFactor);
int GetUnderlineInfo(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb,
                     kova_uint32 ucHeight, kova_uint32 uiAttr, kova_sint32 *psiPos, kova_sint32 *psiThick);

// text/style.cpp
int SetTextForeColor(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);
int SetEdgeColor(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);
int SetEdgeType(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextEdgeType_e eEdge);

// text/utf8.cpp
// ucBytes counts 16-bit units here, despite its name. The text ends before the first character that does not fit whole
// into uiRoom bytes.
void ConvertUnicode2UTF8(const unsigned short *pusStrUni, kova_uint8 ucBytes, char *pcStrUTF8,
                         kova_uint32 uiRoom, kova_uint32 *puiBytes);
// Converts a caller's string by its encoding and returns the number of bytes; 0 for ASCII.
kova_uint32 ToUTF8(const unsigned short *pusStr, kova_uint8 ucBytes, KovaTextEncoding_e eEncoding,
                   char *pcStrUTF8, kova_uint32 uiRoom);
int GetStringWidth(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                   kova_uint8 ucBytes, KovaTextEncoding_e eEncoding, kova_uint32 *puiWidth);

// text/strings.cpp
int DrawString(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
               kova_uint8 ucBytes, kova_uint32 uiX, kova_uint32 uiY, KovaTextEncoding_e eEncoding,
               KovaTextAlignFlag_e eFlag);

} // namespace textdisp

#endif
