// SPDX-License-Identifier: MIT
/** @file
    Scalars, parameter structures and enumerations of TextDisplay. C99 and C++; needs only <stdint.h>. */
#ifndef KOVA_TEXTDISP_TYPES_H
#define KOVA_TEXTDISP_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t kova_uint32;    /**< 32 bits, unsigned */
typedef uint8_t kova_uint8;      /**< 8 bits, unsigned */
typedef int32_t kova_sint32;     /**< 32 bits, signed */
typedef int8_t kova_sint8;       /**< a context identifier: 0 to 3, checked as an unsigned byte */
typedef uint8_t kova_bool;       /**< 0 is false, anything else is true */
typedef kova_sint32 RETURN_TYPE; /**< 0 is success */

/** The backend of a display. Only KOVA_GRAPHIC_DIRECTFB is implemented. */
typedef enum KovaGraphicType_tag {
    KOVA_GRAPHIC_VGX = 0,      /**< not implemented: no display is created */
    KOVA_GRAPHIC_DIRECTFB = 1, /**< DirectFB */
    KOVA_GRAPHIC_MAXTYPE = 2   /**< not a type: one past the last */
} KovaGraphicType_e;

/** The hardware layer to draw on. */
typedef enum KovaGraphicLayer_tag {
    KOVA_GRAPHIC_LAYER1 = 0,  /**< a window on the primary layer (0), scaled to fill it */
    KOVA_GRAPHIC_LAYER2 = 1,  /**< DirectFB's display layer 1, in exclusive mode */
    KOVA_GRAPHIC_LAYER3 = 2,  /**< DirectFB's display layer 2, in exclusive mode */
    KOVA_GRAPHIC_MAXLAYER = 3 /**< not a layer: one past the last */
} KovaGraphicLayer_e;

/** Flags of SetBlittingFlags; they can be combined. */
typedef enum KovaTextBlitFlag_tag {
    KOVA_DSBLIT_NOFX = 0,         /**< copy every pixel */
    KOVA_DSBLIT_SRC_COLORKEY = 8, /**< skip pixels that match the surface's source colour key */
    KOVA_DSBLIT_DST_COLORKEY = 16 /**< copy only over pixels that match the colour of SetDstColorKey */
} KovaTextBlitFlag_e;

/** Flags of SetDrawingFlags. */
typedef enum KovaTextDrawFlag_tag {
    KOVA_DSDRAW_NOFX = 0,          /**< draw every pixel */
    KOVA_DSDRAW_DST_COLORKEY = 16, /**< draw only over pixels that match the colour of SetDstColorKey */
    KOVA_DSDRAW_STRING_SHARP = 32  /**< accepted without effect */
} KovaTextDrawFlag_e;

/** Expansion of one-bit bitmaps: the low two bits select the vertical factor (0: 1, 1: 2, 2: 4), bit value 4
    doubles the width. 3 and 7 are unassigned. */
typedef enum KovaTextExpand_tag {
    KOVA_EXPAND_1X1Y = 0, /**< original size */
    KOVA_EXPAND_1X2Y = 1, /**< double height */
    KOVA_EXPAND_1X4Y = 2, /**< quadruple height */
    KOVA_EXPAND_2X1Y = 4, /**< double width */
    KOVA_EXPAND_2X2Y = 5, /**< double width, double height */
    KOVA_EXPAND_2X4Y = 6  /**< double width, quadruple height */
} KovaTextExpand_e;

/** Font attributes; they can be combined. CreateFont passes them to DirectFB unchanged; SetFont and
    ScaleFontWidth use only KOVA_FONTATTR_ITALIC. */
typedef enum KovaTextFontAttr_tag {
    KOVA_FONTATTR_NONE = 0,       /**< no attributes */
    KOVA_FONTATTR_NOKERNING = 1,  /**< DirectFB's DFFA_NOKERNING: no kerning */
    KOVA_FONTATTR_NOHINTING = 2,  /**< DirectFB's DFFA_NOHINTING: no hinting */
    KOVA_FONTATTR_MONOCHROME = 4, /**< DirectFB's DFFA_MONOCHROME: no anti-aliasing */
    KOVA_FONTATTR_NOCHARMAP = 8,  /**< DirectFB's DFFA_NOCHARMAP: character codes are glyph indexes */
    KOVA_FONTATTR_FIXEDCLIP = 16, /**< DirectFB's DFFA_FIXEDCLIP: clip glyphs to a fixed advance */
    KOVA_FONTATTR_ITALIC = 32     /**< slanted, if DirectFB supports it; for SetFont */
} KovaTextFontAttr_e;

/** The encoding of a string. ASCII strings have no width and draw nothing: pass them as UTF-8. */
typedef enum KovaTextEncoding_tag {
    KOVA_TEXT_ASCII = 0,   /**< draws nothing */
    KOVA_TEXT_UNICODE = 1, /**< UCS-2 in host byte order, two bytes per character */
    KOVA_TEXT_UTF8 = 2     /**< UTF-8 */
} KovaTextEncoding_e;

/** Alignment: horizontal in bits 0 and 1, vertical in bits 2 and 3. TOPLEFT and BOTTOMLEFT are aliases of TOP
    and BOTTOM, so a switch must not list both. DrawString only traces the value and always draws from the top
    left. */
typedef enum KovaTextAlignFlag_tag {
    KOVA_TEXT_LEFT = 0,         /**< left */
    KOVA_TEXT_CENTER = 1,       /**< centred horizontally */
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

/** The edge drawn around glyphs. A new display has edge type 0, which is not in this list: set one before
    drawing. Offsets are pixels from the letters, right and down positive. */
typedef enum KovaTextEdgeType_tag {
    KOVA_TEXT_ENONE = 1,      /**< letters without an edge */
    KOVA_TEXT_ERAISED = 2,    /**< one copy at (-2, -2); the letters move 2 right */
    KOVA_TEXT_EDEPRESSED = 4, /**< copies at (0, 1) and (1, 1) */
    KOVA_TEXT_EUNIFORM = 8,   /**< four copies, 1 left, right, up, down; the letters move 1 right, 1 down */
    KOVA_TEXT_ELEFTDROPSHADOW = 16,  /**< one copy at (-2, 2) */
    KOVA_TEXT_ERIGTHDROPSHADOW = 32, /**< one copy at (2, 2); misspelt since the first release */
    KOVA_TEXT_EMAX = 64              /**< the same as KOVA_TEXT_ENONE */
} KovaTextEdgeType_e;

/** A palette colour. */
typedef struct _tagKovaTextColor {
    kova_uint8 r; /**< red, 0 to 255 */
    kova_uint8 g; /**< green, 0 to 255 */
    kova_uint8 b; /**< blue, 0 to 255 */
    kova_uint8 a; /**< opacity, 0 transparent to 255 opaque */
} KovaTextColor_t;
/** Pointer to a colour or to an array of colours. */
typedef struct _tagKovaTextColor *pKovaTextColor_t;

/** A rectangle in pixels of the plane. */
typedef struct KovaTextRect_tag {
    kova_uint32 uiX;      /**< left edge */
    kova_uint32 uiY;      /**< top edge */
    kova_uint32 uiWidth;  /**< pixels */
    kova_uint32 uiHeight; /**< pixels */
} KovaTextRect_t;
/** Pointer to a rectangle. */
typedef struct KovaTextRect_tag *pKovaTextRect_t;

/** The parameters of a new display. */
typedef struct KovaTextInitParam_tag {
    KovaGraphicLayer_e eLayer;   /**< the layer to draw on */
    kova_uint32 uiStartX;        /**< ignored */
    kova_uint32 uiStartY;        /**< ignored */
    kova_uint32 uiPlaneWidth;    /**< pixels, not 0 */
    kova_uint32 uiPlaneHeight;   /**< pixels, not 0 */
    kova_bool bDoubleBuffer;     /**< ignored: no second buffer is created */
    kova_bool bColor32Bit;       /**< true: an ARGB plane, colours are packed 0xRRGGBBAA */
    kova_bool bFlip;             /**< ignored: flipping is enabled at first */
    kova_bool bTextDisp_Palette; /**< true: an ARGB plane, colours index the display's own palette */
} KovaTextInitParam_t;
/** Pointer to the parameters of a new display. */
typedef struct KovaTextInitParam_tag *pKovaTextInitParam_t;

/** The geometry of a drawing context, in pixels. */
typedef struct KovaTextContextParam_tag {
    kova_uint32 uiPlaneWidth;          /**< 1 to 1920, otherwise the context cannot be activated */
    kova_uint32 uiPlaneHeight;         /**< 1 to 1080, as above */
    kova_uint32 uiTextWindowWidth;     /**< stored only, like SetTextWindowSize */
    kova_uint32 uiTextWindowHeight;    /**< as above */
    kova_uint32 uiDisplayWindowX;      /**< stored only, like SetDisplayWindow */
    kova_uint32 uiDisplayWindowY;      /**< as above */
    kova_uint32 uiDisplayWindowWidth;  /**< as above */
    kova_uint32 uiDisplayWindowHeight; /**< as above */
} KovaTextContextParam_t;
/** Pointer to the geometry of a context. */
typedef struct KovaTextContextParam_tag *pKovaTextContextParam_t;

/** How the OSD plane is scaled onto the screen, in pixels. */
typedef struct {
    int plane_x; /**< on the screen: left edge */
    int plane_y; /**< on the screen: top edge */
    int plane_w; /**< on the screen: width */
    int plane_h; /**< on the screen: height */
    int buf_w;   /**< ignored */
    int buf_h;   /**< ignored */
    int crop_x;  /**< of the plane: left edge */
    int crop_y;  /**< of the plane: top edge */
    int crop_w;  /**< of the plane: width */
    int crop_h;  /**< of the plane: height */
} Surface_OsdScaleInfo;

#ifdef __cplusplus
}
#endif

#endif
