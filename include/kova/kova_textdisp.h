// SPDX-License-Identifier: MIT
/** @file
    Captions and subtitles on a television's on-screen display: the table of operations that a display offers,
    and the functions that make, find and destroy the one display. C99 and C++.

    A caller creates the display, creates up to four contexts on it, activates one, calls Show, loads a
    palette, selects a font and an edge type, and draws through the table. What holds for every operation
    stands at KovaITextDisplay_tag. */
#ifndef KOVA_TEXTDISP_H
#define KOVA_TEXTDISP_H

#include "kova_textdisp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Marks what the library exports. */
#define KOVA_TEXTDISP_API __attribute__((visibility("default")))

/** A display, whose operations are called through it: `pDisplay->Show(pDisplay, 0)`. */
typedef struct KovaITextDisplay_tag KovaITextDisplay_t;

/** The handle of a display. It belongs to the library, from creation to destruction. */
typedef struct KovaITextDisplay_tag *pKovaITextDisplay_t;

/** The table of operations, the part of a display that a caller sees. What holds for every operation unless
    its own words say otherwise:

    - **pThiz:** the display that the operation is called on; null is refused with "NULL Pointer!".
    - **scContextID:** the caller's context, 0 to 3; another value is refused with "Invalid context ID!".
      While a context is active the others are refused with "Inactive context!"; before the first activation
      every identifier may act, and after a deactivation or Release32BitPlane none may.
    - **color:** by the display's colour mode packed 0xRRGGBBAA (32-bit mode), an index into the display's own
      palette (palette-copy mode), or an index into the surface's palette (index mode). In palette-copy mode
      an index above 255 stands for transparent black.
    - **Coordinates and sizes** are pixels of the plane, (0, 0) top left. DirectFB clips; nothing is checked
      against the plane.
    - **Pointers** belong to the caller, are used during the call only, and are not kept.
    - **Result:** 0, or -1 for a refused call, whose reason is logged as an error. A DirectFB call that fails
      is printed to standard error, the operation goes on and its result stays 0. A surface or layer that is
      not there counts as a call that failed.
    - **A hidden display:** nothing is done and 0 is returned. A display is hidden when it is created.
    - **Threads:** any may call. Operations serialise on the display's own recursive lock and hold it while
      DirectFB works; apart from that none waits, but for those that flip.
    - **An operation that flips** does what Flip does once it has drawn, and so may wait for the vertical
      sync. What the others draw is seen with the next flip.

    There is no font to begin with, and no edge type: SetFont and SetEdgeType come before DrawString. */
struct KovaITextDisplay_tag {
    /** What draws behind the display. Set by Kova_TextDisp_Create; read only. */
    KovaGraphicType_e eType;

    /** Wipes the whole plane with colour 0 and lets drawing take effect from now on.
        Unless the display is in 32-bit mode, palette entry 0 becomes transparent black first. A display that
        is shown already is wiped all the same. Reports the common refusals.

        A hidden display is shown. Does not flip. */
    void (*Show)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    /** Wipes as Show does, and from now on drawing does nothing.
        Not flipped, and neither does Flip flip a hidden display: SetFlip with 1 brings the wiped plane to the
        screen. Reports the common refusals.

        A hidden display is not wiped again. */
    void (*Hide)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    /** Records the size of the context's text window; no drawing depends on it.
        @param uiWidth,uiHeight pixels, any value

        Works on a hidden display too. */
    int (*SetTextWindowSize)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiWidth,
                             kova_uint32 uiHeight);

    /** Rebuilds the plane at a new size, wiped, shown or hidden as before.
        The surface is new, the palette is loaded again, the clip is lifted to the whole plane, there are no
        blitting flags, and the fonts are opened again.
        @param uiX,uiY not read, a plane starts at (0, 0)
        @param uiWidth,uiHeight pixels, handed to DirectFB as they are

        Fonts are opened as CreateFont opens them, upright and not scaled. They take the lowest free slots in
        slot order, so their numbers close up where there were gaps; the number selected before is then
        selected again, whichever font now has it. A backup surface in use stays in use, but on
        KOVA_GRAPHIC_LAYER1 the display is left without a surface to draw on.

        A display without a layer (after a deactivation or Release32BitPlane) is refused with "pLayer is
        NULL!", before the identifier is looked at.

        Works on a hidden display too. Does not flip, except that on KOVA_GRAPHIC_LAYER1 the new window is
        flipped once while it is empty; there it also waits for as long as the layer is temporarily
        unavailable. */
    int (*SetPlane)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
                    kova_uint32 uiWidth, kova_uint32 uiHeight);

    /** Records the context's display window; no drawing depends on it.
        @param uiX,uiY,uiWidth,uiHeight pixels, any values; those that are stored already are 0 for an
               inactive context too

        Works on a hidden display too. */
    int (*SetDisplayWindow)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                            kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);

    /** Loads colours into the palette; they outlast a rebuilt plane.
        @param pColor uiNumber entries, not null ("NULL Pointer!")
        @param uiNumber 0 to 256, more is refused with "Palette length should be less than MAX_PALETTE_COLOR!"
        @param ucOffset the entry that the first colour goes to; ucOffset + uiNumber is at most 256

        - Index mode: into the surface's palette, so that what is drawn changes colour; past the end DirectFB
          decides, and the display's own copy stops at entry 255.
        - Palette-copy mode: into the display's own palette, for what is drawn from now on; past the end
          nothing is loaded, "invalide offset:..." is logged and the result is 0.
        - 32-bit mode: nothing is done.

        Without a surface refused with "Inactive context!". Works on a hidden display too. Does not flip. */
    int (*SetPalette)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextColor_t pColor,
                      kova_uint32 uiNumber, kova_uint8 ucOffset);

    /** Fills a rectangle with one colour, opacity included: what was there is replaced, not blended.
        @param pRect not null, "NULL Pointer!" (not looked at on a hidden display)
        @param color by the colour mode

        Does not flip. */
    int (*FillRect)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                    kova_uint32 color);

    /** Copies a bitmap into the surface and flips.
        @param ucPixel uiHeight rows of uiWidth bytes, top row first; not null. One byte is one pixel, an
               index: bytes are copied as they are, so this is for index mode.
        @param uiStartX,uiStartY where the top left pixel goes
        @param uiWidth,uiHeight pixels, any; 0 draws nothing
        @param uiRowByte bytes from row to row of the bitmap
        @return 0, also for a bitmap that is wholly outside, and that at once, whichever context is active; -1
                without a report where the surface cannot be locked or unlocked

        Drawing flags and colour key have no effect. Clipped to the last rectangle given to SetClip, which
        a null SetClip does not lift. What the clip cuts off at the left and top is not skipped in the
        bitmap: the part that is drawn is filled from the bitmap's own top left corner. */
    int (*DrawPixel)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                     kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth, kova_uint32 uiHeight,
                     kova_uint32 uiRowByte);

    /** Presents what was drawn, the whole surface.
        On KOVA_GRAPHIC_LAYER2 and LAYER3 at most once in 16 ms: a flip that comes sooner returns at once,
        and the library's own thread makes it 16 ms later, under the clip of this moment, unless something
        is drawn or a clip is set meanwhile; that is seen with the next flip. The thread lives while a
        context exists; without one such a flip is lost. On these layers nothing is flipped while SetFlip
        is off or the layer has no back buffer. On KOVA_GRAPHIC_LAYER1 flips are made at once, SetFlip or
        not. A flip that is made waits for the vertical sync. */
    int (*Flip)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    /** Sets how Blit and BlitBackupSurface copy.
        @param eFlag KOVA_DSBLIT_SRC_COLORKEY and KOVA_DSBLIT_DST_COLORKEY, combined at will; other bits are
               ignored

        The flags are the current surface's: a rebuilt plane or another surface in use starts with its own. */
    int (*SetBlittingFlags)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextBlitFlag_e eFlag);

    /** Sets how FillRect, DrawLine and DrawString draw.
        @param eFlag KOVA_DSDRAW_DST_COLORKEY, or 0 for none; other bits are ignored

        The flags are the current surface's. */
    int (*SetDrawingFlags)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextDrawFlag_e eFlag);

    /** Sets the colour that may be drawn over while a destination colour key is in force.
        @param color by the colour mode; its opacity is not looked at

        The key is the current surface's. */
    int (*SetDstColorKey)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    /** Confines drawing to a rectangle.
        @param pRect null lifts the clip, for all but DrawPixel, which keeps to the last rectangle given. Not
               checked against the plane; a width or height of 0 leaves nothing to draw on.

        A rebuilt plane starts with its whole size. Does not flip. */
    int (*SetClip)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect);

    /** Draws a one-bit bitmap, set bits in one colour and clear bits in another.
        @param ucPixel its first byte, not null ("NULL Pointer!")
        @param uiStartX,uiStartY where the top left pixel goes
        @param uiWidth,uiHeight pixels of the bitmap before it is enlarged, 0 to 48; more is refused with
               "Can't support DrawPixelExpand with this width!" or "... height!", on a hidden display too
        @param uiRowByte bytes from row to row
        @param uiBitOffset bits before the first pixel of each row; a byte's most significant bit is its
               leftmost pixel unless the platform's own glyph call says otherwise
        @param siBgColor,siFgColor the background comes first. Index mode and palette-copy mode: palette
               indexes. 32-bit mode: passed as they are to the platform's glyph call, where there is none as
               0xAARRGGBB, unlike every other color.
        @param eExpand the enlargement; 3 and 7 enlarge six times vertically

        Does not flip. */
    int (*DrawPixelExpand)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                           kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth,
                           kova_uint32 uiHeight, kova_uint32 uiRowByte, kova_sint32 siBgColor,
                           kova_sint32 siFgColor, kova_uint32 uiBitOffset, KovaTextExpand_e eExpand);

    /** Opens a font, or finds one that is open.
        @param pcFontName a file name as DirectFB takes it, at most 99 bytes, copied; null is reported with
               "NULL Pointer!"
        @param ucHeight pixels
        @param eAttr handed to DirectFB bit by bit, which does not know KOVA_FONTATTR_ITALIC: ask SetFont for
               it
        @param psiFontNumb receives the font's number, 0 to 7; not null. Set it to -1 before: only success
               writes it.
        @return past the common refusals 0, whether a font was opened or not

        The same name at the same height is the font that is open, its width no longer scaled and its
        attributes as they were. The same name at another height closes the open one and opens the new one in
        the lowest free slot, often under another number.

        "Can only support max 8 fonts!" is logged where all slots are taken and where DirectFB opens nothing.
        After "font name too long" the slot stays taken until the display is destroyed.

        Works on a hidden display too. Waits for the file. */
    int (*CreateFont)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const char *pcFontName,
                      kova_uint32 ucHeight, KovaTextFontAttr_e eAttr, kova_sint32 *psiFontNumb);

    /** Selects the font for drawing and measuring.
        @param siFontNumb from CreateFont; one outside 0 to 7 is refused with "Only can support max 8 fonts!",
               an empty slot with "Invalid Font id!"
        @param ucHeight pixels; 0 is refused with "Height should be bigger than 0!"
        @param eFontAttr KOVA_FONTATTR_ITALIC, or 0 for upright; the other bits have no effect

        Another height or other attributes than the slot's open the font again in its slot, and forget a
        scaled width. Where that fails the slot is empty, the selection stays and the result is 0.

        Works on a hidden display too. */
    int (*SetFont)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb,
                   kova_uint32 ucHeight, KovaTextFontAttr_e eFontAttr);

    /** Draws one line of text, with its edge, and flips.
        The text is in the selected font and the colour of SetTextForeColor, over the edge of SetEdgeType in
        the colour of SetEdgeColor.
        @param pusStr the text, in UTF-8 or in 16-bit units by eEncoding; it needs no end, and null draws
               nothing
        @param ucBytes its length in bytes; an odd last byte of 16-bit text is left out
        @param uiX,uiY the top left corner of the text. Raised text stands 2 pixels right of it and uniformly
               edged text one right and one down; edges reach out by up to 2 pixels.
        @param eEncoding how the text is read. Surrogates are not joined. An ASCII string draws nothing: pass
               it as UTF-8.
        @param eFlag noted in the trace alone, text starts top left always; GetStringWidth helps to centre it

        Refused without a surface ("NULL Pointer!"), without a selected font ("Only can support max 8
        fonts!") and with one that could not be opened again ("NULL POINTER!"). An edge type that is none
        is reported with "invalid etype:..."; nothing is drawn then, the flip is made and the result is 0. */
    int (*DrawString)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                      kova_uint8 ucBytes, kova_uint32 uiX, kova_uint32 uiY, KovaTextEncoding_e eEncoding,
                      KovaTextAlignFlag_e eFlag);

    /** Measures a text as DrawString draws it, without its edge.
        @param pusStr,ucBytes,eEncoding as for DrawString, but null is refused with "NULL Pointer!", and of
               16-bit text no more is measured than fits 256 bytes of UTF-8
        @param puiWidth receives pixels, 0 for an ASCII string; not null ("NULL Pointer!")

        Fonts are refused as DrawString refuses them. A hidden display leaves what puiWidth points to
        alone. */
    int (*GetStringWidth)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                          kova_uint8 ucBytes, KovaTextEncoding_e eEncoding, kova_uint32 *puiWidth);

    /** Where the selected font wants its underline.
        @param siFontNumb,ucHeight,uiAttr not looked at
        @param psiPos receives the distance from the base line, in pixels as DirectFB gives it; not null
        @param psiThick receives the thickness, in pixels as DirectFB gives it; not null

        Fonts are refused as DrawString refuses them. A hidden display leaves both alone. */
    int (*GetUnderlineInfo)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb,
                            kova_uint32 ucHeight, kova_uint32 uiAttr, kova_sint32 *psiPos,
                            kova_sint32 *psiThick);

    /** Chooses the edge of the strings to come.
        @param eEdge one of the enumeration; another value is stored, and reported when a string is drawn

        On a hidden display it is lost. */
    int (*SetEdgeType)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextEdgeType_e eEdge);

    /** Chooses the edge colour of the strings to come.
        @param color by the colour mode

        Needs a selected font, refused as DrawString refuses it. On a hidden display it is lost. */
    int (*SetEdgeColor)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    /** Chooses the text colour of the strings to come.
        @param color by the colour mode

        On a hidden display it is lost. */
    int (*SetTextForeColor)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    /** Copies a rectangle of the surface to another place on it, by the flags of SetBlittingFlags, and flips.
        @param pRect the source, not null ("NULL Pointer!")
        @param uiDstX,uiDstY the top left corner of the copy. Overlapping is DirectFB's matter.

        While a flip of the library's thread is pending it waits in steps of 16 ms, and lets other threads
        draw meanwhile. */
    int (*Blit)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect, kova_uint32 uiDstX,
                kova_uint32 uiDstY);

    /** Makes the glyphs of the selected font wider or narrower.
        @param enable not looked at: every call applies its factor
        @param scaleFactor glyph width by height in units of 1/65536, so 65536 is as wide as high

        SetFont with another height and CreateFont undo it. The font's height is taken modulo 256 here, and
        stays so. The font is opened again, of its attributes KOVA_FONTATTR_ITALIC alone in force; where that
        fails its slot is empty.

        Refused without a selected font ("Only can support max 8 fonts!") and with one that could not be
        opened again ("Invalid Font id!"). */
    int (*ScaleFontWidth)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool enable,
                          kova_uint32 scaleFactor);

    /** The line height of the selected font as DirectFB gives it, not the height it was opened with.
        @param pHeight receives pixels, and is set to 0 before anything is checked; null crashes

        Fonts are refused as DrawString refuses them. A hidden display leaves 0. */
    int (*GetFontHeight)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 *pHeight);

    /** Draws many one-bit bitmaps in one go, each as DrawPixelExpand draws one.
        Entry i of all the arrays is bitmap i.
        @param ucPixel,uiStartX,uiStartY,uiWidth,uiHeight,uiRowByte,siBgColor,siFgColor,uiBitOffset,eExpand
               arrays of ucNumb entries; ucPixel is not null ("NULL Pointer!"), and the others are not tested
        @param ucNumb 0 to 100, more is refused with "Can't draw so many characters at one time!"

        One bitmap that is too large refuses them all. Does not flip. */
    int (*BatchDrawPixelExpand)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 **ucPixel,
                                kova_uint32 *uiStartX, kova_uint32 *uiStartY, kova_uint32 *uiWidth,
                                kova_uint32 *uiHeight, kova_uint32 *uiRowByte, kova_sint32 *siBgColor,
                                kova_sint32 *siFgColor, kova_uint32 *uiBitOffset, KovaTextExpand_e *eExpand,
                                kova_uint8 ucNumb);

    /** Chooses where drawing goes.
        @param bBackup true to the backup surface, unseen, else to the layer's

        The selected font is carried over and, if there is one, the palette; clip, key and flags are not. As
        no operation makes a backup surface, true leaves nothing to draw on until false.

        Works on a hidden display too. */
    int (*UseBackupSurface)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool bBackup);

    /** Copies a rectangle of the backup surface to the layer's.
        @param pRect the source, not null ("NULL Pointer!")
        @param uiDstX,uiDstY the top left corner of the copy

        Needs a selected font, "Only can support max 8 fonts!", and both surfaces, "NULL Pointer!". Does
        not flip. */
    int (*BlitBackupSurface)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                             kova_uint32 uiDstX, kova_uint32 uiDstY);

    /** Draws a line, both ends included, and flips. Any context may, the active one or not.
        @param x1,y1,x2,y2 may lie outside the plane
        @param color by the colour mode */
    int (*DrawLine)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 x1, kova_sint32 y1,
                    kova_sint32 x2, kova_sint32 y2, kova_uint32 color);

    /** Makes the plane a true-colour one of a new size, wiped, shown or hidden as before.
        Colours are 0xRRGGBBAA from now on, until a context is activated or deactivated.
        @param scContextID any, and it becomes the active one
        @param uiX,uiY not read
        @param uiWidth,uiHeight pixels, handed to DirectFB as they are
        @return -1 for a null display, without a report, and where the layer is not to be had
                ("GetDisplayLayer result = ..." or "Display layer = NULL after GetDisplayLayer"); no context
                is active then, and 32-bit mode is on all the same

        A surface that the display has is kept as it is. All fonts are closed; create and select them anew.

        Works on a hidden display too. Does not flip. Waits for as long as the layer is temporarily
        unavailable. */
    int (*Create32BitPlane)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                            kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);

    /** Gives the surface, the layer and all fonts of a 32-bit plane back.
        No context is active then, until Create32BitPlane or an activation.
        @return -1 for a null display ("keldrun: error " on standard output) and outside 32-bit mode ("Not a
                32 bit plane, can't release!")

        Works on a hidden display too. Does not flip. */
    int (*Release32BitPlane)(pKovaITextDisplay_t pThiz);

    /** Switches flipping off (0) and on; on KOVA_GRAPHIC_LAYER1 it is always on.
        @param bFlip switched on, it flips at once what was drawn meanwhile; strings alone do not count
        @return -1 for a null display, without a report

        Any context, and a hidden display too. */
    int (*SetFlip)(pKovaITextDisplay_t pThiz, kova_bool bFlip);

    /** Says which part of the plane (crop) is shown where on the screen (plane).
        @param pOsdScaleInfo null does nothing

        Where the platform has no such call the layer's source and screen rectangles are set; a layer that has
        neither is printed to standard error. Nothing is done without a surface.

        Works on a hidden display too. Takes no lock: keep it apart from what rebuilds the plane. */
    void (*SetSurface_OsdScaleInfo)(pKovaITextDisplay_t pThiz, Surface_OsdScaleInfo *pOsdScaleInfo);

    /** Gives the layer a new size and takes its new surface, without wiping it.
        Palette, fonts and the shown state stay as they are, so select the font again. Meant for
        KOVA_GRAPHIC_LAYER2 and LAYER3.
        @param uiX,uiY not read
        @param uiWidth,uiHeight pixels, handed to DirectFB as they are

        The layer's surface becomes the one that is drawn on, its clip the whole plane. "pLayer is NULL!" as
        for SetPlane.

        Works on a hidden display too. Does not flip. */
    int (*AdjustDisplaySize)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                             kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);
};

/** Creates the one display and keeps it in gpDisplay; a display already there is forgotten, not destroyed.
    @param eType KOVA_GRAPHIC_DIRECTFB; any other type gives no display
    @param pParam not null, read during the call only
    @return -1 when a plane size is 0 or the layer is above 2 ("Plane Width is 0!", "Plane Height is 0!",
            "Invalid layer!"), and 0 otherwise, also when no display could be made: ask
            Kova_TextDisp_GetDisplayByID

    Called from one thread, before all other use. Waits for as long as the layer is temporarily
    unavailable. */
KOVA_TEXTDISP_API kova_sint8 Kova_TextDisp_Create(KovaGraphicType_e eType, pKovaTextInitParam_t pParam);

/** The display.
    @param scID not looked at
    @return the display, which belongs to the library; null if there is none */
KOVA_TEXTDISP_API pKovaITextDisplay_t Kova_TextDisp_GetDisplayByID(kova_sint8 scID);

/** Creates a context, and rebuilds the plane if the context's plane size differs from the display's and the
    display's other contexts let it.
    No font is selected then. The first context starts the thread that flips the last frame of a burst.
    @param pDisplay not null
    @param pParam the geometry; not null, copied
    @return the identifier, 0 to 3, or -1: all four are in use ("Can't support so much context!"; the
            display's lock then stays taken by the calling thread), or the thread did not start

    Create and destroy contexts from one thread. */
KOVA_TEXTDISP_API kova_sint8 Kova_TextDisp_CreateContext(pKovaITextDisplay_t pDisplay,
                                                         pKovaTextContextParam_t pParam);

/** Makes a context the one that may draw, or gives the layer back.
    @param pDisplay not null
    @param scContextID 0 to 3, else refused with "Invalid context ID!"; one whose plane is not 1 to 1920 by 1
           to 1080 is refused too ("Invalid plane width!", "Invalid plane height!")
    @param bActive 1: rebuilds the layer or window for the context's plane, loads the palette, opens the fonts
           again as SetPlane does, and shows or hides as before; from then on only this context may draw. The
           context that is active already is only shown or hidden again, wiped either way. Any other value:
           gives the layer, its surface and the fonts back, and no context may draw until one is activated.

    Either leaves 32-bit mode. Any thread; waits for as long as the layer is temporarily unavailable. */
KOVA_TEXTDISP_API void Kova_TextDisp_SetActive(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID,
                                               kova_bool bActive);

/** Forgets a context.
    The last one stops the flipping thread and waits for its end, a flip under way included. What is drawn,
    and which context is active, stays.
    @param pDisplay not null
    @param scContextID one that exists; another is refused ("Can't destroy this context!"; the display's lock
           then stays taken by the calling thread)
    @return 0 always */
KOVA_TEXTDISP_API RETURN_TYPE Kova_TextDisp_DestroyContext(pKovaITextDisplay_t pDisplay,
                                                           kova_sint8 scContextID);

/** The layer of the display last created.
    @return an IDirectFBDisplayLayer, null for a display on KOVA_GRAPHIC_LAYER1; borrowed, and not to be
            used once that display is destroyed, although the value stays */
KOVA_TEXTDISP_API void *Kova_TextDisp_GetLayer(void);

/** The main interface of the display last created.
    @return an IDirectFB, borrowed as that of Kova_TextDisp_GetLayer is */
KOVA_TEXTDISP_API void *Kova_TextDisp_GetDFB(void);

/** Destroys the display ("NULL Pointer!" if there is none).
    Destroy its contexts first, and let no other thread be inside a call on it.
    @param scID not looked at */
KOVA_TEXTDISP_API void Kova_TextDisp_Destroy(kova_sint8 scID);

/** The one display, null if there is none. Read it through Kova_TextDisp_GetDisplayByID. */
extern KOVA_TEXTDISP_API pKovaITextDisplay_t gpDisplay;

/** The library's debug category, made by the first Kova_TextDisp_Create that passes its checks. */
extern KOVA_TEXTDISP_API struct KovaDebugCategory *textdisplay_debug;

#ifdef __cplusplus
}
#endif

#endif
