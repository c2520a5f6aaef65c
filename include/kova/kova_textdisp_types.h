/* Scalars, parameter records and enumerations of TextDisplay. C99 and C++; needs <stdint.h> alone. */
#ifndef KOVA_TEXTDISP_TYPES_H
#define KOVA_TEXTDISP_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t kova_uint32;
typedef uint8_t kova_uint8;
typedef int32_t kova_sint32;
typedef int8_t kova_sint8; /* every context identifier: 0 to 3, judged as an unsigned byte */
typedef uint8_t kova_bool; /* 0 is false, anything else is true */
typedef kova_sint32 RETURN_TYPE;

/* What draws behind a display. Only KOVA_GRAPHIC_DIRECTFB has something behind it. */
typedef enum KovaGraphicType_tag {
    KOVA_GRAPHIC_VGX = 0,
    KOVA_GRAPHIC_DIRECTFB = 1,
    KOVA_GRAPHIC_MAXTYPE = 2
} KovaGraphicType_e;

/* The hardware layer to draw on. LAYER1 is a window on the primary layer, scaled to fill it; LAYER2 and
   LAYER3 are the DirectFB display layers 1 and 2, taken exclusively. */
typedef enum KovaGraphicLayer_tag {
    KOVA_GRAPHIC_LAYER1 = 0,
    KOVA_GRAPHIC_LAYER2 = 1,
    KOVA_GRAPHIC_LAYER3 = 2,
    KOVA_GRAPHIC_MAXLAYER = 3
} KovaGraphicLayer_e;

/* Flags of SetBlittingFlags; they may be combined. */
typedef enum KovaTextBlitFlag_tag {
    KOVA_DSBLIT_NOFX = 0,
    KOVA_DSBLIT_SRC_COLORKEY = 8,
    KOVA_DSBLIT_DST_COLORKEY = 16
} KovaTextBlitFlag_e;

/* Flags of SetDrawingFlags. KOVA_DSDRAW_STRING_SHARP is accepted and has no effect. */
typedef enum KovaTextDrawFlag_tag {
    KOVA_DSDRAW_NOFX = 0,
    KOVA_DSDRAW_DST_COLORKEY = 16,
    KOVA_DSDRAW_STRING_SHARP = 32
} KovaTextDrawFlag_e;

/* Enlargement of one-bit bitmaps: the low two bits choose the vertical factor (0: 1, 1: 2, 2: 4), the bit of
   value 4 doubles horizontally. 3 and 7 are unassigned. */
typedef enum KovaTextExpand_tag {
    KOVA_EXPAND_1X1Y = 0,
    KOVA_EXPAND_1X2Y = 1,
    KOVA_EXPAND_1X4Y = 2,
    KOVA_EXPAND_2X1Y = 4,
    KOVA_EXPAND_2X2Y = 5,
    KOVA_EXPAND_2X4Y = 6
} KovaTextExpand_e;

/* Font attributes; they may be combined. CreateFont passes them on as they are; SetFont and ScaleFontWidth
   honour KOVA_FONTATTR_ITALIC alone. */
typedef enum KovaTextFontAttr_tag {
    KOVA_FONTATTR_NONE = 0,
    KOVA_FONTATTR_NOKERNING = 1,
    KOVA_FONTATTR_NOHINTING = 2,
    KOVA_FONTATTR_MONOCHROME = 4,
    KOVA_FONTATTR_NOCHARMAP = 8,
    KOVA_FONTATTR_FIXEDCLIP = 16,
    KOVA_FONTATTR_ITALIC = 32
} KovaTextFontAttr_e;

/* How the units of a string are read. ASCII strings have no width and draw nothing: pass them as UTF-8. */
typedef enum KovaTextEncoding_tag {
    KOVA_TEXT_ASCII = 0,
    KOVA_TEXT_UNICODE = 1, /* UCS-2 in host byte order, two bytes a character */
    KOVA_TEXT_UTF8 = 2     /* the buffer holds UTF-8 bytes */
} KovaTextEncoding_e;

/* Horizontal choice in bits 0 and 1, vertical choice in bits 2 and 3. TOPLEFT and BOTTOMLEFT are other names
   of TOP and BOTTOM, so a switch must not list both. DrawString notes the value in its trace and draws top
   left. */
typedef enum KovaTextAlignFlag_tag {
    KOVA_TEXT_LEFT = 0,
    KOVA_TEXT_CENTER = 1,
    KOVA_TEXT_RIGHT = 2,
    KOVA_TEXT_TOP = 4,
    KOVA_TEXT_BOTTOM = 8,
    KOVA_TEXT_TOPLEFT = 4,
    KOVA_TEXT_TOPCENTER = 5,
    KOVA_TEXT_TOPRIGHT = 6,
    KOVA_TEXT_BOTTOMLEFT = 8,
    KOVA_TEXT_BOTTOMCENTER = 9,
    KOVA_TEXT_BOTTOMRIGHT = 10
} KovaTextAlignFlag_e;

/* The edge drawn around glyphs. A display starts with 0, which is none of them: set one before drawing. */
typedef enum KovaTextEdgeType_tag {
    KOVA_TEXT_ENONE = 1,
    KOVA_TEXT_ERAISED = 2,
    KOVA_TEXT_EDEPRESSED = 4,
    KOVA_TEXT_EUNIFORM = 8,
    KOVA_TEXT_ELEFTDROPSHADOW = 16,
    KOVA_TEXT_ERIGTHDROPSHADOW = 32, /* spelt so since the first release */
    KOVA_TEXT_EMAX = 64              /* draws like ENONE */
} KovaTextEdgeType_e;

/* A palette colour; a is opacity, 255 opaque. */
typedef struct _tagKovaTextColor {
    kova_uint8 r;
    kova_uint8 g;
    kova_uint8 b;
    kova_uint8 a;
} KovaTextColor_t, *pKovaTextColor_t;

/* A rectangle in pixels of the plane. */
typedef struct KovaTextRect_tag {
    kova_uint32 uiX;
    kova_uint32 uiY;
    kova_uint32 uiWidth;
    kova_uint32 uiHeight;
} KovaTextRect_t, *pKovaTextRect_t;

/* What a display is created with. */
typedef struct KovaTextInitParam_tag {
    KovaGraphicLayer_e eLayer;
    kova_uint32 uiStartX;        /* not read */
    kova_uint32 uiStartY;        /* not read */
    kova_uint32 uiPlaneWidth;    /* pixels, not 0 */
    kova_uint32 uiPlaneHeight;   /* pixels, not 0 */
    kova_bool bDoubleBuffer;     /* not read: no second buffer is made */
    kova_bool bColor32Bit;       /* true: an ARGB plane, colours are packed 0xRRGGBBAA */
    kova_bool bFlip;             /* not read: flipping starts enabled */
    kova_bool bTextDisp_Palette; /* true: an ARGB plane, colours are indexes into the display's own palette */
} KovaTextInitParam_t, *pKovaTextInitParam_t;

/* The geometry of a drawing context, in pixels. */
typedef struct KovaTextContextParam_tag {
    kova_uint32 uiPlaneWidth;  /* 1 to 1920, or the context cannot be activated */
    kova_uint32 uiPlaneHeight; /* 1 to 1080, likewise */
    kova_uint32 uiTextWindowWidth;
    kova_uint32 uiTextWindowHeight;
    kova_uint32 uiDisplayWindowX;
    kova_uint32 uiDisplayWindowY;
    kova_uint32 uiDisplayWindowWidth;
    kova_uint32 uiDisplayWindowHeight;
} KovaTextContextParam_t, *pKovaTextContextParam_t;

/* How the OSD buffer is scaled onto the plane, in pixels. buf_w and buf_h are not read. */
typedef struct {
    int plane_x;
    int plane_y;
    int plane_w;
    int plane_h;
    int buf_w;
    int buf_h;
    int crop_x;
    int crop_y;
    int crop_w;
    int crop_h;
} Surface_OsdScaleInfo;

#ifdef __cplusplus
}
#endif

#endif
