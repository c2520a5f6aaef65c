// SPDX-License-Identifier: MIT
/** @file
    Scalars, parameter records and enumerations of TextDisplay. C99 and C++; needs <stdint.h> alone. */
#ifndef KOVA_TEXTDISP_TYPES_H
#define KOVA_TEXTDISP_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t kova_uint32;    /**< 32 bits, unsigned */
typedef uint8_t kova_uint8;      /**< 8 bits, unsigned */
typedef int32_t kova_sint32;     /**< 32 bits, signed */
typedef int8_t kova_sint8;       /**< every context identifier: 0 to 3, judged as an unsigned byte */
typedef uint8_t kova_bool;       /**< 0 is false, anything else is true */
typedef kova_sint32 RETURN_TYPE; /**< 0 is success */

/** What draws behind a display. Only KOVA_GRAPHIC_DIRECTFB has something behind it. */
typedef enum KovaGraphicType_tag {
    KOVA_GRAPHIC_VGX = 0,      /**< nothing: no display is made */
    KOVA_GRAPHIC_DIRECTFB = 1, /**< DirectFB */
    KOVA_GRAPHIC_MAXTYPE = 2   /**< no type: one past the last */
} KovaGraphicType_e;

/** The hardware layer to draw on. */
typedef enum KovaGraphicLayer_tag {
    KOVA_GRAPHIC_LAYER1 = 0,  /**< a window on the primary layer (0), scaled to fill it */
    KOVA_GRAPHIC_LAYER2 = 1,  /**< DirectFB's display layer 1, taken exclusively */
    KOVA_GRAPHIC_LAYER3 = 2,  /**< DirectFB's display layer 2, taken exclusively */
    KOVA_GRAPHIC_MAXLAYER = 3 /**< no layer: one past the last */
} KovaGraphicLayer_e;

/** Flags of SetBlittingFlags; they may be combined. */
typedef enum KovaTextBlitFlag_tag {
    KOVA_DSBLIT_NOFX = 0,         /**< copy every pixel */
    KOVA_DSBLIT_SRC_COLORKEY = 8, /**< leave out the pixels that have the surface's source colour key */
    KOVA_DSBLIT_DST_COLORKEY = 16 /**< copy only over pixels that have the colour of SetDstColorKey */
} KovaTextBlitFlag_e;

/** Flags of SetDrawingFlags. */
typedef enum KovaTextDrawFlag_tag {
    KOVA_DSDRAW_NOFX = 0,          /**< draw every pixel */
    KOVA_DSDRAW_DST_COLORKEY = 16, /**< draw only over pixels that have the colour of SetDstColorKey */
    KOVA_DSDRAW_STRING_SHARP = 32  /**< accepted, and has no effect */
} KovaTextDrawFlag_e;

/** Enlargement of one-bit bitmaps: the low two bits choose the vertical factor (0: 1, 1: 2, 2: 4), the bit
    of value 4 doubles horizontally. 3 and 7 are unassigned. */
typedef enum KovaTextExpand_tag {
    KOVA_EXPAND_1X1Y = 0, /**< as it is */
    KOVA_EXPAND_1X2Y = 1, /**< twice as high */
    KOVA_EXPAND_1X4Y = 2, /**< four times as high */
    KOVA_EXPAND_2X1Y = 4, /**< twice as wide */
    KOVA_EXPAND_2X2Y = 5, /**< twice as wide and twice as high */
    KOVA_EXPAND_2X4Y = 6  /**< twice as wide and four times as high */
} KovaTextExpand_e;

/** Font attributes; they may be combined. CreateFont passes them on as they are; SetFont and
    ScaleFontWidth honour KOVA_FONTATTR_ITALIC alone. */
typedef enum KovaTextFontAttr_tag {
    KOVA_FONTATTR_NONE = 0,       /**< none of them */
    KOVA_FONTATTR_NOKERNING = 1,  /**< DirectFB's DFFA_NOKERNING: no kerning */
    KOVA_FONTATTR_NOHINTING = 2,  /**< DirectFB's DFFA_NOHINTING: no hinting */
    KOVA_FONTATTR_MONOCHROME = 4, /**< DirectFB's DFFA_MONOCHROME: hard edges */
    KOVA_FONTATTR_NOCHARMAP = 8,  /**< DirectFB's DFFA_NOCHARMAP: characters are glyph numbers */
    KOVA_FONTATTR_FIXEDCLIP = 16, /**< DirectFB's DFFA_FIXEDCLIP: clip glyphs to a fixed advance */
    KOVA_FONTATTR_ITALIC = 32     /**< slanted, where DirectFB slants; for SetFont */
} KovaTextFontAttr_e;

/** How the units of a string are read. ASCII strings have no width and draw nothing: pass them as UTF-8. */
typedef enum KovaTextEncoding_tag {
    KOVA_TEXT_ASCII = 0,   /**< draws nothing */
    KOVA_TEXT_UNICODE = 1, /**< UCS-2 in host byte order, two bytes a character */
    KOVA_TEXT_UTF8 = 2     /**< the buffer holds UTF-8 bytes */
} KovaTextEncoding_e;

/** Horizontal choice in bits 0 and 1, vertical choice in bits 2 and 3. TOPLEFT and BOTTOMLEFT are other
    names of TOP and BOTTOM, so a switch must not list both. DrawString notes the value in its trace and
    draws top left. */
typedef enum KovaTextAlignFlag_tag {
    KOVA_TEXT_LEFT = 0,         /**< left */
    KOVA_TEXT_CENTER = 1,       /**< centred from left to right */
    KOVA_TEXT_RIGHT = 2,        /**< right */
    KOVA_TEXT_TOP = 4,          /**< top */
    KOVA_TEXT_BOTTOM = 8,       /**< bottom */
    KOVA_TEXT_TOPLEFT = 4,      /**< KOVA_TEXT_TOP */
    KOVA_TEXT_TOPCENTER = 5,    /**< top, centred */
    KOVA_TEXT_TOPRIGHT = 6,     /**< top, right */
    KOVA_TEXT_BOTTOMLEFT = 8,   /**< KOVA_TEXT_BOTTOM */
    KOVA_TEXT_BOTTOMCENTER = 9, /**< bottom, centred */
    KOVA_TEXT_BOTTOMRIGHT = 10  /**< bottom, right */
} KovaTextAlignFlag_e;

/** The edge drawn around glyphs. A display starts with 0, which is none of them: set one before drawing.
    Offsets are pixels from the letters, right and down positive. */
typedef enum KovaTextEdgeType_tag {
    KOVA_TEXT_ENONE = 1,      /**< the letters alone */
    KOVA_TEXT_ERAISED = 2,    /**< one copy at (-2, -2); the letters move 2 right */
    KOVA_TEXT_EDEPRESSED = 4, /**< copies at (0, 1) and (1, 1) */
    KOVA_TEXT_EUNIFORM = 8,   /**< four copies, 1 left, right, up, down; the letters move 1 right, 1 down */
    KOVA_TEXT_ELEFTDROPSHADOW = 16,  /**< one copy at (-2, 2) */
    KOVA_TEXT_ERIGTHDROPSHADOW = 32, /**< one copy at (2, 2); spelt so since the first release */
    KOVA_TEXT_EMAX = 64              /**< draws like KOVA_TEXT_ENONE */
} KovaTextEdgeType_e;

/** A palette colour. */
typedef struct _tagKovaTextColor {
    kova_uint8 r; /**< red, 0 to 255 */
    kova_uint8 g; /**< green, 0 to 255 */
    kova_uint8 b; /**< blue, 0 to 255 */
    kova_uint8 a; /**< opacity, 0 transparent to 255 opaque */
} KovaTextColor_t;
/** Points to one colour, or to the first of many. */
typedef struct _tagKovaTextColor *pKovaTextColor_t;

/** A rectangle in pixels of the plane. */
typedef struct KovaTextRect_tag {
    kova_uint32 uiX;      /**< left edge */
    kova_uint32 uiY;      /**< top edge */
    kova_uint32 uiWidth;  /**< pixels */
    kova_uint32 uiHeight; /**< pixels */
} KovaTextRect_t;
/** Points to a rectangle. */
typedef struct KovaTextRect_tag *pKovaTextRect_t;

/** What a display is created with. */
typedef struct KovaTextInitParam_tag {
    KovaGraphicLayer_e eLayer;   /**< the layer to draw on */
    kova_uint32 uiStartX;        /**< not read */
    kova_uint32 uiStartY;        /**< not read */
    kova_uint32 uiPlaneWidth;    /**< pixels, not 0 */
    kova_uint32 uiPlaneHeight;   /**< pixels, not 0 */
    kova_bool bDoubleBuffer;     /**< not read: no second buffer is made */
    kova_bool bColor32Bit;       /**< true: an ARGB plane, colours are packed 0xRRGGBBAA */
    kova_bool bFlip;             /**< not read: flipping starts enabled */
    kova_bool bTextDisp_Palette; /**< true: an ARGB plane, colours index the display's own palette */
} KovaTextInitParam_t;
/** Points to what a display is created with. */
typedef struct KovaTextInitParam_tag *pKovaTextInitParam_t;

/** The geometry of a drawing context, in pixels. */
typedef struct KovaTextContextParam_tag {
    kova_uint32 uiPlaneWidth;          /**< 1 to 1920, or the context cannot be activated */
    kova_uint32 uiPlaneHeight;         /**< 1 to 1080, likewise */
    kova_uint32 uiTextWindowWidth;     /**< kept for the caller, as SetTextWindowSize keeps it */
    kova_uint32 uiTextWindowHeight;    /**< likewise */
    kova_uint32 uiDisplayWindowX;      /**< kept for the caller, as SetDisplayWindow keeps it */
    kova_uint32 uiDisplayWindowY;      /**< likewise */
    kova_uint32 uiDisplayWindowWidth;  /**< likewise */
    kova_uint32 uiDisplayWindowHeight; /**< likewise */
} KovaTextContextParam_t;
/** Points to the geometry of a context. */
typedef struct KovaTextContextParam_tag *pKovaTextContextParam_t;

/** How the OSD buffer is scaled onto the screen, in pixels. */
typedef struct {
    int plane_x; /**< on the screen: left edge */
    int plane_y; /**< on the screen: top edge */
    int plane_w; /**< on the screen: width */
    int plane_h; /**< on the screen: height */
    int buf_w;   /**< not read */
    int buf_h;   /**< not read */
    int crop_x;  /**< of the plane: left edge */
    int crop_y;  /**< of the plane: top edge */
    int crop_w;  /**< of the plane: width */
    int crop_h;  /**< of the plane: height */
} Surface_OsdScaleInfo;

#ifdef __cplusplus
}
#endif

#endif
