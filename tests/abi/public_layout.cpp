// SPDX-License-Identifier: MIT
// Layout and values of everything a caller sees, the same on every machine. Compiling this file is the test.
#include "kova/kova_textdisp_dfb.h"

#include <stddef.h>
#include <type_traits>

using std::is_same;
using Display = pKovaITextDisplay_t;

#define FIELD(record, field, type, offset)                                                                   \
    static_assert(is_same<decltype(record::field), type>::value && offsetof(record, field) == (offset))

static_assert(is_same<kova_uint32, uint32_t>::value && is_same<kova_sint32, int32_t>::value);
static_assert(is_same<kova_uint8, uint8_t>::value && is_same<kova_sint8, int8_t>::value);
static_assert(is_same<kova_bool, uint8_t>::value && is_same<RETURN_TYPE, kova_sint32>::value);

static_assert(sizeof(KovaGraphicType_e) == 4);
static_assert(KOVA_GRAPHIC_VGX == 0);
static_assert(KOVA_GRAPHIC_DIRECTFB == 1);
static_assert(KOVA_GRAPHIC_MAXTYPE == 2);

static_assert(sizeof(KovaGraphicLayer_e) == 4);
static_assert(KOVA_GRAPHIC_LAYER1 == 0);
static_assert(KOVA_GRAPHIC_LAYER2 == 1);
static_assert(KOVA_GRAPHIC_LAYER3 == 2);
static_assert(KOVA_GRAPHIC_MAXLAYER == 3);

static_assert(sizeof(KovaTextBlitFlag_e) == 4);
static_assert(KOVA_DSBLIT_NOFX == 0);
static_assert(KOVA_DSBLIT_SRC_COLORKEY == 8);
static_assert(KOVA_DSBLIT_DST_COLORKEY == 16);

static_assert(sizeof(KovaTextDrawFlag_e) == 4);
static_assert(KOVA_DSDRAW_NOFX == 0);
static_assert(KOVA_DSDRAW_DST_COLORKEY == 16);
static_assert(KOVA_DSDRAW_STRING_SHARP == 32);

static_assert(sizeof(KovaTextExpand_e) == 4);
static_assert(KOVA_EXPAND_1X1Y == 0);
static_assert(KOVA_EXPAND_1X2Y == 1);
static_assert(KOVA_EXPAND_1X4Y == 2);
static_assert(KOVA_EXPAND_2X1Y == 4);
static_assert(KOVA_EXPAND_2X2Y == 5);
static_assert(KOVA_EXPAND_2X4Y == 6);

static_assert(sizeof(KovaTextFontAttr_e) == 4);
static_assert(KOVA_FONTATTR_NONE == 0);
static_assert(KOVA_FONTATTR_NOKERNING == 1);
static_assert(KOVA_FONTATTR_NOHINTING == 2);
static_assert(KOVA_FONTATTR_MONOCHROME == 4);
static_assert(KOVA_FONTATTR_NOCHARMAP == 8);
static_assert(KOVA_FONTATTR_FIXEDCLIP == 16);
static_assert(KOVA_FONTATTR_ITALIC == 32);

static_assert(sizeof(KovaTextEncoding_e) == 4);
static_assert(KOVA_TEXT_ASCII == 0);
static_assert(KOVA_TEXT_UNICODE == 1);
static_assert(KOVA_TEXT_UTF8 == 2);

static_assert(sizeof(KovaTextAlignFlag_e) == 4);
static_assert(KOVA_TEXT_LEFT == 0);
static_assert(KOVA_TEXT_CENTER == 1);
static_assert(KOVA_TEXT_RIGHT == 2);
static_assert(KOVA_TEXT_TOP == 4);
static_assert(KOVA_TEXT_BOTTOM == 8);
static_assert(KOVA_TEXT_TOPLEFT == 4);
static_assert(KOVA_TEXT_TOPCENTER == 5);
static_assert(KOVA_TEXT_TOPRIGHT == 6);
static_assert(KOVA_TEXT_BOTTOMLEFT == 8);
static_assert(KOVA_TEXT_BOTTOMCENTER == 9);
static_assert(KOVA_TEXT_BOTTOMRIGHT == 10);

static_assert(sizeof(KovaTextEdgeType_e) == 4);
static_assert(KOVA_TEXT_ENONE == 1);
static_assert(KOVA_TEXT_ERAISED == 2);
static_assert(KOVA_TEXT_EDEPRESSED == 4);
static_assert(KOVA_TEXT_EUNIFORM == 8);
static_assert(KOVA_TEXT_ELEFTDROPSHADOW == 16);
static_assert(KOVA_TEXT_ERIGTHDROPSHADOW == 32);
static_assert(KOVA_TEXT_EMAX == 64);

static_assert(sizeof(KovaTextColor_t) == 4);
static_assert(is_same<KovaTextColor_t, struct _tagKovaTextColor>::value &&
              is_same<pKovaTextColor_t, KovaTextColor_t *>::value);
FIELD(KovaTextColor_t, r, kova_uint8, 0);
FIELD(KovaTextColor_t, g, kova_uint8, 1);
FIELD(KovaTextColor_t, b, kova_uint8, 2);
FIELD(KovaTextColor_t, a, kova_uint8, 3);

static_assert(sizeof(KovaTextRect_t) == 16);
static_assert(is_same<KovaTextRect_t, struct KovaTextRect_tag>::value &&
              is_same<pKovaTextRect_t, KovaTextRect_t *>::value);
FIELD(KovaTextRect_t, uiX, kova_uint32, 0);
FIELD(KovaTextRect_t, uiY, kova_uint32, 4);
FIELD(KovaTextRect_t, uiWidth, kova_uint32, 8);
FIELD(KovaTextRect_t, uiHeight, kova_uint32, 12);

static_assert(sizeof(KovaTextInitParam_t) == 24);
static_assert(is_same<KovaTextInitParam_t, struct KovaTextInitParam_tag>::value &&
              is_same<pKovaTextInitParam_t, KovaTextInitParam_t *>::value);
FIELD(KovaTextInitParam_t, eLayer, KovaGraphicLayer_e, 0);
FIELD(KovaTextInitParam_t, uiStartX, kova_uint32, 4);
FIELD(KovaTextInitParam_t, uiStartY, kova_uint32, 8);
FIELD(KovaTextInitParam_t, uiPlaneWidth, kova_uint32, 12);
FIELD(KovaTextInitParam_t, uiPlaneHeight, kova_uint32, 16);
FIELD(KovaTextInitParam_t, bDoubleBuffer, kova_bool, 20);
FIELD(KovaTextInitParam_t, bColor32Bit, kova_bool, 21);
FIELD(KovaTextInitParam_t, bFlip, kova_bool, 22);
FIELD(KovaTextInitParam_t, bTextDisp_Palette, kova_bool, 23);

static_assert(sizeof(KovaTextContextParam_t) == 32);
static_assert(is_same<KovaTextContextParam_t, struct KovaTextContextParam_tag>::value &&
              is_same<pKovaTextContextParam_t, KovaTextContextParam_t *>::value);
FIELD(KovaTextContextParam_t, uiPlaneWidth, kova_uint32, 0);
FIELD(KovaTextContextParam_t, uiPlaneHeight, kova_uint32, 4);
FIELD(KovaTextContextParam_t, uiTextWindowWidth, kova_uint32, 8);
FIELD(KovaTextContextParam_t, uiTextWindowHeight, kova_uint32, 12);
FIELD(KovaTextContextParam_t, uiDisplayWindowX, kova_uint32, 16);
FIELD(KovaTextContextParam_t, uiDisplayWindowY, kova_uint32, 20);
FIELD(KovaTextContextParam_t, uiDisplayWindowWidth, kova_uint32, 24);
FIELD(KovaTextContextParam_t, uiDisplayWindowHeight, kova_uint32, 28);

static_assert(sizeof(Surface_OsdScaleInfo) == 40);
FIELD(Surface_OsdScaleInfo, plane_x, int, 0);
FIELD(Surface_OsdScaleInfo, plane_y, int, 4);
FIELD(Surface_OsdScaleInfo, plane_w, int, 8);
FIELD(Surface_OsdScaleInfo, plane_h, int, 12);
FIELD(Surface_OsdScaleInfo, buf_w, int, 16);
FIELD(Surface_OsdScaleInfo, buf_h, int, 20);
FIELD(Surface_OsdScaleInfo, crop_x, int, 24);
FIELD(Surface_OsdScaleInfo, crop_y, int, 28);
FIELD(Surface_OsdScaleInfo, crop_w, int, 32);
FIELD(Surface_OsdScaleInfo, crop_h, int, 36);

// The type of the display and 34 operations, nothing else: 140 bytes on 32-bit machines, 280 on 64-bit ones.
#define SLOT(number, operation, ...)                                                                         \
    static_assert(                                                                                           \
        offsetof(KovaITextDisplay_t, operation) == (number) * sizeof(void *) &&                              \
        is_same<decltype(KovaITextDisplay_t::operation), std::add_pointer<__VA_ARGS__>::type>::value)

static_assert(is_same<KovaITextDisplay_t, struct KovaITextDisplay_tag>::value);
static_assert(is_same<Display, KovaITextDisplay_t *>::value);
static_assert(sizeof(KovaITextDisplay_t) == (sizeof(void *) == 4 ? 140 : 280));
FIELD(KovaITextDisplay_t, eType, KovaGraphicType_e, 0);
SLOT(1, Show, void(Display, kova_sint8));
SLOT(2, Hide, void(Display, kova_sint8));
SLOT(3, SetTextWindowSize, int(Display, kova_sint8, kova_uint32, kova_uint32));
SLOT(4, SetPlane, int(Display, kova_sint8, kova_uint32, kova_uint32, kova_uint32, kova_uint32));
SLOT(5, SetDisplayWindow, int(Display, kova_sint8, kova_uint32, kova_uint32, kova_uint32, kova_uint32));
SLOT(6, SetPalette, int(Display, kova_sint8, pKovaTextColor_t, kova_uint32, kova_uint8));
SLOT(7, FillRect, int(Display, kova_sint8, pKovaTextRect_t, kova_uint32));
SLOT(8, DrawPixel,
     int(Display, kova_sint8, kova_uint8 *, kova_uint32, kova_uint32, kova_uint32, kova_uint32, kova_uint32));
SLOT(9, Flip, int(Display, kova_sint8));
SLOT(10, SetBlittingFlags, int(Display, kova_sint8, KovaTextBlitFlag_e));
SLOT(11, SetDrawingFlags, int(Display, kova_sint8, KovaTextDrawFlag_e));
SLOT(12, SetDstColorKey, int(Display, kova_sint8, kova_uint32));
SLOT(13, SetClip, int(Display, kova_sint8, pKovaTextRect_t));
SLOT(14, DrawPixelExpand,
     int(Display, kova_sint8, kova_uint8 *, kova_uint32, kova_uint32, kova_uint32, kova_uint32, kova_uint32,
         kova_sint32, kova_sint32, kova_uint32, KovaTextExpand_e));
SLOT(15, CreateFont, int(Display, kova_sint8, const char *, kova_uint32, KovaTextFontAttr_e, kova_sint32 *));
SLOT(16, SetFont, int(Display, kova_sint8, kova_sint32, kova_uint32, KovaTextFontAttr_e));
SLOT(17, DrawString,
     int(Display, kova_sint8, const unsigned short *, kova_uint8, kova_uint32, kova_uint32,
         KovaTextEncoding_e, KovaTextAlignFlag_e));
SLOT(18, GetStringWidth,
     int(Display, kova_sint8, const unsigned short *, kova_uint8, KovaTextEncoding_e, kova_uint32 *));
SLOT(19, GetUnderlineInfo,
     int(Display, kova_sint8, kova_sint32, kova_uint32, kova_uint32, kova_sint32 *, kova_sint32 *));
SLOT(20, SetEdgeType, int(Display, kova_sint8, KovaTextEdgeType_e));
SLOT(21, SetEdgeColor, int(Display, kova_sint8, kova_uint32));
SLOT(22, SetTextForeColor, int(Display, kova_sint8, kova_uint32));
SLOT(23, Blit, int(Display, kova_sint8, pKovaTextRect_t, kova_uint32, kova_uint32));
SLOT(24, ScaleFontWidth, int(Display, kova_sint8, kova_bool, kova_uint32));
SLOT(25, GetFontHeight, int(Display, kova_sint8, kova_sint32 *));
SLOT(26, BatchDrawPixelExpand,
     int(Display, kova_sint8, kova_uint8 **, kova_uint32 *, kova_uint32 *, kova_uint32 *, kova_uint32 *,
         kova_uint32 *, kova_sint32 *, kova_sint32 *, kova_uint32 *, KovaTextExpand_e *, kova_uint8));
SLOT(27, UseBackupSurface, int(Display, kova_sint8, kova_bool));
SLOT(28, BlitBackupSurface, int(Display, kova_sint8, pKovaTextRect_t, kova_uint32, kova_uint32));
SLOT(29, DrawLine, int(Display, kova_sint8, kova_sint32, kova_sint32, kova_sint32, kova_sint32, kova_uint32));
SLOT(30, Create32BitPlane, int(Display, kova_sint8, kova_uint32, kova_uint32, kova_uint32, kova_uint32));
SLOT(31, Release32BitPlane, int(Display));
SLOT(32, SetFlip, int(Display, kova_bool));
SLOT(33, SetSurface_OsdScaleInfo, void(Display, Surface_OsdScaleInfo *));
SLOT(34, AdjustDisplaySize, int(Display, kova_sint8, kova_uint32, kova_uint32, kova_uint32, kova_uint32));

static_assert(
    is_same<decltype(Kova_TextDisp_Create), kova_sint8(KovaGraphicType_e, pKovaTextInitParam_t)>::value);
static_assert(is_same<decltype(Kova_TextDisp_GetDisplayByID), Display(kova_sint8)>::value);
static_assert(
    is_same<decltype(Kova_TextDisp_CreateContext), kova_sint8(Display, pKovaTextContextParam_t)>::value);
static_assert(is_same<decltype(Kova_TextDisp_SetActive), void(Display, kova_sint8, kova_bool)>::value);
static_assert(is_same<decltype(Kova_TextDisp_DestroyContext), RETURN_TYPE(Display, kova_sint8)>::value);
static_assert(is_same<decltype(Kova_TextDisp_GetLayer), void *()>::value);
static_assert(is_same<decltype(Kova_TextDisp_GetDFB), void *()>::value);
static_assert(is_same<decltype(Kova_TextDisp_Destroy), void(kova_sint8)>::value);
static_assert(is_same<decltype(Kova_TextDFBDisp_Create), Display(pKovaTextInitParam_t)>::value);
static_assert(is_same<decltype(Kova_TextDFBDisp_Destroy), void(Display)>::value);
static_assert(is_same<decltype(Kova_TextDFBDisp_GetLayer), IDirectFBDisplayLayer *()>::value);
static_assert(is_same<decltype(Kova_TextDFBDisp_GetDFB), IDirectFB *()>::value);
static_assert(
    is_same<decltype(Kova_TextDFBDisp_CreateContext), kova_sint8(Display, pKovaTextContextParam_t)>::value);
static_assert(is_same<decltype(Kova_TextDFBDisp_SetActive), void(Display, kova_sint8, kova_bool)>::value);
static_assert(is_same<decltype(Kova_TextDFBDisp_DestroyContext), void(Display, kova_sint8)>::value);
static_assert(is_same<decltype(gpDisplay), Display>::value);
static_assert(is_same<decltype(textdisplay_debug), struct KovaDebugCategory *>::value);
