// SPDX-License-Identifier: MIT
// Order and types of the fields of the display's record, from its start up to flip_clip, for programs that
// read it. Offsets depend on the sizes of pointers and of the POSIX thread types, so each field is checked to
// start where the previous one ends. Compiling this file is the test.
#include "kova_textdisp_dfb/record.h"

#include <stddef.h>
#include <type_traits>

using std::is_same;

constexpr size_t Aligned(size_t uiOffset, size_t uiAlignment)
{
    return (uiOffset + uiAlignment - 1) / uiAlignment * uiAlignment;
}

#define FIRST(record, field, ...)                                                                            \
    static_assert(is_same<decltype(record::field), __VA_ARGS__>::value && offsetof(record, field) == 0)
#define FOLLOWS(record, previous, field, ...)                                                                \
    static_assert(is_same<decltype(record::field), __VA_ARGS__>::value &&                                    \
                  offsetof(record, field) ==                                                                 \
                      Aligned(offsetof(record, previous) + sizeof(record::previous), alignof(__VA_ARGS__)))

static_assert(is_same<KovaDFBContext_t, struct KovaDFBContext_tag>::value);
static_assert(is_same<pKovaDFBContext_t, KovaDFBContext_t *>::value && sizeof(KovaDFBContext_t) == 32);
FIRST(KovaDFBContext_t, uiTextWindowWidth, kova_uint32);
FOLLOWS(KovaDFBContext_t, uiTextWindowWidth, uiTextWindowHeight, kova_uint32);
FOLLOWS(KovaDFBContext_t, uiTextWindowHeight, uiDisplayWindowX, kova_uint32);
FOLLOWS(KovaDFBContext_t, uiDisplayWindowX, uiDisplayWindowY, kova_uint32);
FOLLOWS(KovaDFBContext_t, uiDisplayWindowY, uiDisplayWindowWidth, kova_uint32);
FOLLOWS(KovaDFBContext_t, uiDisplayWindowWidth, uiDisplayWindowHeight, kova_uint32);
FOLLOWS(KovaDFBContext_t, uiDisplayWindowHeight, uiPlaneWidth, kova_uint32);
FOLLOWS(KovaDFBContext_t, uiPlaneWidth, uiPlaneHeight, kova_uint32);

FIRST(KovaDFBEncoding_t, id, DFBTextEncodingID);
FOLLOWS(KovaDFBEncoding_t, id, cEncoding, const char *);

FIRST(KovaDFBFont_t, pcFontName, char *);
FOLLOWS(KovaDFBFont_t, pcFontName, eAttr, KovaTextFontAttr_e);
FOLLOWS(KovaDFBFont_t, eAttr, pFont, IDirectFBFont *);
FOLLOWS(KovaDFBFont_t, pFont, ucHeight, kova_uint32);
FOLLOWS(KovaDFBFont_t, ucHeight, ucWidth, kova_uint32);
FOLLOWS(KovaDFBFont_t, ucWidth, ucUTF8Index, kova_uint8);
FOLLOWS(KovaDFBFont_t, ucUTF8Index, encoding, KovaDFBEncoding_t[8]);

using Init_t = DFBResult(int *, char ***);
using Create_t = DFBResult(IDirectFB **);
using ErrorFatal_t = DFBResult(const char *, DFBResult);

static_assert(is_same<KovaDFBDisplay_t, struct KovaDFBDisplay_tag>::value);
static_assert(is_same<pKovaDFBDisplay_t, KovaDFBDisplay_t *>::value);
FIRST(KovaDFBDisplay_t, sInterface, KovaITextDisplay_t);
FOLLOWS(KovaDFBDisplay_t, sInterface, iPid, kova_sint32);
FOLLOWS(KovaDFBDisplay_t, iPid, bUseTextWindow, kova_bool);
FOLLOWS(KovaDFBDisplay_t, bUseTextWindow, bShow, kova_bool);
FOLLOWS(KovaDFBDisplay_t, bShow, siFontHeight, kova_sint32);
FOLLOWS(KovaDFBDisplay_t, siFontHeight, eBlitFlag, KovaTextBlitFlag_e);
FOLLOWS(KovaDFBDisplay_t, eBlitFlag, bDoubleBuffer, kova_bool);
FOLLOWS(KovaDFBDisplay_t, bDoubleBuffer, pDlHandle, void *);
FOLLOWS(KovaDFBDisplay_t, pDlHandle, display_mutex, pthread_mutex_t);
FOLLOWS(KovaDFBDisplay_t, display_mutex, pcParamStr, char *);
FOLLOWS(KovaDFBDisplay_t, pcParamStr, iParamCount, int);
FOLLOWS(KovaDFBDisplay_t, iParamCount, eLayer, KovaGraphicLayer_e);
FOLLOWS(KovaDFBDisplay_t, eLayer, context, KovaDFBContext_t[4]);
FOLLOWS(KovaDFBDisplay_t, context, ucContextMask, kova_uint8);
FOLLOWS(KovaDFBDisplay_t, ucContextMask, scActiveContextID, kova_sint8);
FOLLOWS(KovaDFBDisplay_t, scActiveContextID, uiPlaneWidth, kova_uint32);
FOLLOWS(KovaDFBDisplay_t, uiPlaneWidth, uiPlaneHeight, kova_uint32);
FOLLOWS(KovaDFBDisplay_t, uiPlaneHeight, pDfb, IDirectFB *);
FOLLOWS(KovaDFBDisplay_t, pDfb, pLayer, IDirectFBDisplayLayer *);
FOLLOWS(KovaDFBDisplay_t, pLayer, pWindow, IDirectFBWindow *);
FOLLOWS(KovaDFBDisplay_t, pWindow, pBaseSurface, IDirectFBSurface *);
FOLLOWS(KovaDFBDisplay_t, pBaseSurface, pCharSurface, IDirectFBSurface *);
FOLLOWS(KovaDFBDisplay_t, pCharSurface, pBackupSurface, IDirectFBSurface *);
FOLLOWS(KovaDFBDisplay_t, pBackupSurface, pActiveSurface, IDirectFBSurface *);
FOLLOWS(KovaDFBDisplay_t, pActiveSurface, font, KovaDFBFont_t[8]);
FOLLOWS(KovaDFBDisplay_t, font, scActiveFontID, kova_sint8);
FOLLOWS(KovaDFBDisplay_t, scActiveFontID, clip, DFBRegion);
FOLLOWS(KovaDFBDisplay_t, clip, eEdge, KovaTextEdgeType_e);
FOLLOWS(KovaDFBDisplay_t, eEdge, ucEdgeColorIndex, kova_uint32);
FOLLOWS(KovaDFBDisplay_t, ucEdgeColorIndex, ucFgColorIndex, kova_uint32);
FOLLOWS(KovaDFBDisplay_t, ucFgColorIndex, FontName, char[8][100]);
FOLLOWS(KovaDFBDisplay_t, FontName, palette, KovaTextColor_t[256]);
FOLLOWS(KovaDFBDisplay_t, palette, pFnDirectFBInit, Init_t *);
FOLLOWS(KovaDFBDisplay_t, pFnDirectFBInit, pFnDirectFBCreate, Create_t *);
FOLLOWS(KovaDFBDisplay_t, pFnDirectFBCreate, pFnDirectFBErrorFatal, ErrorFatal_t *);
FOLLOWS(KovaDFBDisplay_t, pFnDirectFBErrorFatal, bColor32, kova_bool);
FOLLOWS(KovaDFBDisplay_t, bColor32, bFlip, kova_bool);
FOLLOWS(KovaDFBDisplay_t, bFlip, bTextDisp_Palette, kova_bool);
FOLLOWS(KovaDFBDisplay_t, bTextDisp_Palette, flip_thread_ref, kova_uint32);
FOLLOWS(KovaDFBDisplay_t, flip_thread_ref, flip_thread_id, pthread_t);
FOLLOWS(KovaDFBDisplay_t, flip_thread_id, flip_thread_mutex, pthread_mutex_t);
FOLLOWS(KovaDFBDisplay_t, flip_thread_mutex, flip_thread_cond, pthread_cond_t);
FOLLOWS(KovaDFBDisplay_t, flip_thread_cond, flip_thread_stop, kova_bool);
FOLLOWS(KovaDFBDisplay_t, flip_thread_stop, blast_frame_changed, kova_bool);
FOLLOWS(KovaDFBDisplay_t, blast_frame_changed, has_flipping_req, kova_bool);
FOLLOWS(KovaDFBDisplay_t, has_flipping_req, flip_clip, DFBRegion);
