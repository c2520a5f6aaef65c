// SPDX-License-Identifier: MIT
/** @file
    Captions and subtitles on a television's on-screen display: the table of operations of a display, and the
    functions that create, find and destroy the display. C99 and C++.

    A caller creates the display, creates up to four contexts on it, activates one, calls Show, loads a
    palette, selects a font and an edge type, and draws through the table. KovaITextDisplay_tag describes what
    all operations have in common. */
#ifndef KOVA_TEXTDISP_H
#define KOVA_TEXTDISP_H

#include "kova_textdisp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Marks the functions and data that the library exports. */
#define KOVA_TEXTDISP_API __attribute__((visibility("default")))

/** A display. Its operations are called through it: `pDisplay->Show(pDisplay, 0)`. */
typedef struct KovaITextDisplay_tag KovaITextDisplay_t;

/** The handle of a display. The library owns it, from creation to destruction. */
typedef struct KovaITextDisplay_tag *pKovaITextDisplay_t;

/** The table of operations, which is the public part of a display. The following applies to every operation
    unless its own description says otherwise:

    - **pThiz:** the display that the operation is called on; null is refused with "NULL Pointer!".
    - **scContextID:** the caller's context, 0 to 3; another value is refused with "Invalid context ID!".
      While a context is active the others are refused with "Inactive context!". Before the first activation
      every identifier is accepted; after a deactivation or Release32BitPlane none is.
    - **color:** depends on the display's colour mode: packed 0xRRGGBBAA (32-bit mode), an index into the
      display's own palette (palette-copy mode), or an index into the surface's palette (index mode). In
      palette-copy mode an index above 255 is transparent black.
    - **Coordinates and sizes** are pixels of the plane, with (0, 0) at the top left. DirectFB clips; nothing
      is checked against the plane.
    - **Pointers** belong to the caller. They are used during the call only and are not kept.
    - **Result:** 0, or -1 for a refused call; the reason is logged as an error. If a DirectFB call fails, the
      failure is printed to standard error, the operation continues and its result stays 0. A call on a
      missing surface or layer counts as a failed call.
    - **Hidden display:** the operation does nothing and returns 0. A new display is hidden.
    - **Threads:** operations can be called from any thread. They serialise on the display's own recursive
      lock and hold it while DirectFB works. Otherwise they do not block, except for operations that flip.
    - **Operations that flip** do what Flip does after they have drawn, and so may wait for the vertical sync.
      What other operations draw becomes visible with the next flip.

    A new display has no font and no edge type: call SetFont and SetEdgeType before DrawString. */
struct KovaITextDisplay_tag {
    /** The backend of the display. Set by Kova_TextDisp_Create; read only. */
    KovaGraphicType_e eType;

    /** Clears the whole plane with colour 0 and enables drawing.
        Unless the display is in 32-bit mode, palette entry 0 becomes transparent black first. A display that
        is already shown is cleared as well. Reports the common refusals.

        A hidden display is shown. Does not flip. */
    void (*Show)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    /** Clears the plane as Show does and disables drawing.
        Does not flip, and Flip does nothing on a hidden display: SetFlip with 1 brings the cleared plane to
        the screen. Reports the common refusals.

        A hidden display is not cleared again. */
    void (*Hide)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    /** Stores the size of the context's text window. It has no effect on drawing.
        @param uiWidth,uiHeight pixels, any value

        Also works on a hidden display. */
    int (*SetTextWindowSize)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiWidth,
                             kova_uint32 uiHeight);

    /** Rebuilds the plane at a new size, cleared; the display stays shown or hidden.
        The surface is new, the palette is loaded again, the clip becomes the whole plane, the blitting flags
        are cleared, and the fonts are opened again.
        @param uiX,uiY ignored; a plane starts at (0, 0)
        @param uiWidth,uiHeight pixels, passed to DirectFB unchanged

        Fonts are opened as CreateFont opens them, upright and not scaled. They take the lowest free slots in
        slot order, so gaps in the numbering close. The number that was selected is then selected again,
        whichever font has it now. A backup surface in use stays in use, but on KOVA_GRAPHIC_LAYER1 the
        display is left without a surface to draw on.

        Without a layer (after a deactivation or Release32BitPlane) the call is refused with "pLayer is
        NULL!", before the identifier is checked.

        Also works on a hidden display. Does not flip, except that on KOVA_GRAPHIC_LAYER1 the new window is
        flipped once while it is empty; there the call also blocks while the layer is temporarily
        unavailable. */
    int (*SetPlane)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX, kova_uint32 uiY,
                    kova_uint32 uiWidth, kova_uint32 uiHeight);

    /** Stores the context's display window. It has no effect on drawing.
        @param uiX,uiY,uiWidth,uiHeight pixels, any values; if they equal the stored values the result is 0
               for an inactive context too

        Also works on a hidden display. */
    int (*SetDisplayWindow)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                            kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);

    /** Loads colours into the palette. They are kept when the plane is rebuilt.
        @param pColor uiNumber entries, not null ("NULL Pointer!")
        @param uiNumber 0 to 256; more are refused with "Palette length should be less than
               MAX_PALETTE_COLOR!"
        @param ucOffset the palette entry of the first colour; ucOffset + uiNumber is at most 256

        - Index mode: loads the surface's palette, so pixels already drawn change colour. Past the end
          DirectFB decides, and the display's own copy stops at entry 255.
        - Palette-copy mode: loads the display's own palette, which applies to subsequent drawing. Past the
          end nothing is loaded, "invalide offset:..." is logged and the result is 0.
        - 32-bit mode: does nothing.

        Refused with "Inactive context!" without a surface. Also works on a hidden display. Does not flip. */
    int (*SetPalette)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextColor_t pColor,
                      kova_uint32 uiNumber, kova_uint8 ucOffset);

    /** Fills a rectangle with one colour, including its opacity: pixels are replaced, not blended.
        @param pRect not null, "NULL Pointer!" (not checked on a hidden display)
        @param color depends on the colour mode

        Does not flip. */
    int (*FillRect)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                    kova_uint32 color);

    /** Copies a bitmap into the surface and flips.
        @param ucPixel uiHeight rows of uiWidth bytes, top row first; not null. One byte is one pixel, a
               palette index. Bytes are copied unchanged, so this operation is for index mode.
        @param uiStartX,uiStartY the position of the top left pixel
        @param uiWidth,uiHeight pixels, any value; 0 draws nothing
        @param uiRowByte bytes from one row of the bitmap to the next
        @return 0; a bitmap entirely outside the clip returns 0 at once, whichever context is active. -1
                without a log record if the surface cannot be locked or unlocked

        Drawing flags and colour key have no effect. The bitmap is clipped to the last rectangle passed to
        SetClip; SetClip with null does not change that. Clipping at the left and top does not skip pixels of
        the bitmap: the visible part is filled starting at the bitmap's own top left corner. */
    int (*DrawPixel)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                     kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth, kova_uint32 uiHeight,
                     kova_uint32 uiRowByte);

    /** Presents the whole surface.
        A flip waits for the vertical sync. On KOVA_GRAPHIC_LAYER2 and LAYER3 the library therefore flips
        directly at most once in 16 ms. A flip that comes sooner is deferred: the call returns at once, and
        the flip thread of the library makes the flip 16 ms later, with the clip of the time of the call. If
        something is drawn without a flip or a clip is set in the meantime, the deferred flip is dropped, and
        the changes become visible with the next flip. The flip thread runs while a context exists; without a
        context a deferred flip is lost. On these layers nothing is flipped while SetFlip is off or if the
        layer has no back buffer. On KOVA_GRAPHIC_LAYER1 every flip is made at once, whatever SetFlip says. */
    int (*Flip)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID);

    /** Sets how Blit and BlitBackupSurface copy.
        @param eFlag any combination of KOVA_DSBLIT_SRC_COLORKEY and KOVA_DSBLIT_DST_COLORKEY; other bits are
               ignored

        The flags belong to the current surface: after a rebuild of the plane, or a switch to another surface,
        that surface's own flags apply. */
    int (*SetBlittingFlags)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextBlitFlag_e eFlag);

    /** Sets how FillRect, DrawLine and DrawString draw.
        @param eFlag KOVA_DSDRAW_DST_COLORKEY, or 0 for none; other bits are ignored

        The flags belong to the current surface. */
    int (*SetDrawingFlags)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextDrawFlag_e eFlag);

    /** Sets the colour that can be overwritten while a destination colour key is in effect.
        @param color depends on the colour mode; its opacity is ignored

        The key belongs to the current surface. */
    int (*SetDstColorKey)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    /** Restricts drawing to a rectangle.
        @param pRect null removes the clip, except for DrawPixel, which still uses the last rectangle. The
               rectangle is not checked against the plane; with a width or height of 0 nothing can be drawn.

        After a rebuild of the plane the clip is the whole plane. Does not flip. */
    int (*SetClip)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect);

    /** Draws a one-bit bitmap: set bits in the foreground colour, clear bits in the background colour.
        @param ucPixel the first byte, not null ("NULL Pointer!")
        @param uiStartX,uiStartY the position of the top left pixel
        @param uiWidth,uiHeight pixels of the bitmap before expansion, 0 to 48; more is refused with
               "Can't support DrawPixelExpand with this width!" or "... height!", on a hidden display too
        @param uiRowByte bytes from one row to the next
        @param uiBitOffset bits before the first pixel of each row. The most significant bit of a byte is its
               leftmost pixel unless the platform's own glyph call defines it otherwise.
        @param siBgColor,siFgColor the background comes first. Index mode and palette-copy mode: palette
               indexes. 32-bit mode: passed unchanged to the platform's glyph call, or 0xAARRGGBB if there is
               no such call; every other color is 0xRRGGBBAA.
        @param eExpand the expansion; 3 and 7 expand six times vertically

        Does not flip. */
    int (*DrawPixelExpand)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel,
                           kova_uint32 uiStartX, kova_uint32 uiStartY, kova_uint32 uiWidth,
                           kova_uint32 uiHeight, kova_uint32 uiRowByte, kova_sint32 siBgColor,
                           kova_sint32 siFgColor, kova_uint32 uiBitOffset, KovaTextExpand_e eExpand);

    /** Opens a font, or finds one that is open.
        @param pcFontName a file name for DirectFB, at most 99 bytes, copied; null is reported with
               "NULL Pointer!"
        @param ucHeight pixels
        @param eAttr passed to DirectFB bit by bit. DirectFB does not know KOVA_FONTATTR_ITALIC: pass that to
               SetFont.
        @param psiFontNumb receives the font's number, 0 to 7; not null. Set it to -1 before the call: it is
               written on success only.
        @return 0 whether a font was opened or not, apart from the common refusals

        The same name at the same height returns the font that is already open, with its attributes unchanged
        and its width no longer scaled. The same name at another height closes the open font and opens the new
        one in the lowest free slot, often with another number.

        "Can only support max 8 fonts!" is logged if all slots are in use, and if DirectFB opens no font.
        After "font name too long" the slot stays in use until the display is destroyed.

        A display accepts eight different font files in its lifetime, because the rows of names are never
        freed. A ninth is refused with "Can only support max 8 fonts!", and each such failure takes a slot.

        Also works on a hidden display. Blocks while the file is read. */
    int (*CreateFont)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const char *pcFontName,
                      kova_uint32 ucHeight, KovaTextFontAttr_e eAttr, kova_sint32 *psiFontNumb);

    /** Selects the font for drawing and measuring.
        @param siFontNumb from CreateFont; a number outside 0 to 7 is refused with "Only can support max 8
               fonts!", an empty slot with "Invalid Font id!"
        @param ucHeight pixels; 0 is refused with "Height should be bigger than 0!"
        @param eFontAttr KOVA_FONTATTR_ITALIC, or 0 for upright; the other bits have no effect

        If the height or the attributes differ from those of the slot, the font is opened again in its slot,
        and a scaled width is reset. If that fails the slot becomes empty, the selection stays and the result
        is 0.

        Also works on a hidden display. */
    int (*SetFont)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb,
                   kova_uint32 ucHeight, KovaTextFontAttr_e eFontAttr);

    /** Draws one line of text with its edge, and flips.
        The text is drawn in the selected font and the colour of SetTextForeColor, over the edge of
        SetEdgeType in the colour of SetEdgeColor.
        @param pusStr the text, in UTF-8 or in 16-bit units as eEncoding says. It needs no terminator; null
               draws nothing.
        @param ucBytes length in bytes; an odd last byte of 16-bit text is ignored
        @param uiX,uiY the top left corner of the text. Raised text is drawn 2 pixels to the right of it,
               text with a uniform edge 1 right and 1 down; edges extend up to 2 pixels beyond the letters.
        @param eEncoding the encoding of the text. Surrogate pairs are not combined. An ASCII string draws
               nothing: pass it as UTF-8.
        @param eFlag only traced; uiX and uiY are always the top left corner. Use GetStringWidth to centre
               text.

        Refused without a surface ("NULL Pointer!"), without a selected font ("Only can support max 8
        fonts!") and if the selected font could not be opened again ("NULL POINTER!"). An edge type that is
        not in the enumeration is reported with "invalid etype:..."; nothing is drawn then, but the operation
        flips and returns 0. */
    int (*DrawString)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                      kova_uint8 ucBytes, kova_uint32 uiX, kova_uint32 uiY, KovaTextEncoding_e eEncoding,
                      KovaTextAlignFlag_e eFlag);

    /** Measures a text as DrawString draws it, without its edge.
        @param pusStr,ucBytes,eEncoding as for DrawString, but null is refused with "NULL Pointer!". Of 16-bit
               text only the part that fits into 256 bytes of UTF-8 is measured.
        @param puiWidth receives the width in pixels, 0 for an ASCII string; not null ("NULL Pointer!")

        The selected font is checked as by DrawString. On a hidden display *puiWidth is not written. */
    int (*GetStringWidth)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, const unsigned short *pusStr,
                          kova_uint8 ucBytes, KovaTextEncoding_e eEncoding, kova_uint32 *puiWidth);

    /** Returns the position and thickness of the selected font's underline.
        @param siFontNumb,ucHeight,uiAttr ignored
        @param psiPos receives the distance from the baseline in pixels, as DirectFB returns it; not null
        @param psiThick receives the thickness in pixels, as DirectFB returns it; not null

        The selected font is checked as by DrawString. On a hidden display neither is written. */
    int (*GetUnderlineInfo)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 siFontNumb,
                            kova_uint32 ucHeight, kova_uint32 uiAttr, kova_sint32 *psiPos,
                            kova_sint32 *psiThick);

    /** Sets the edge type of subsequent strings.
        @param eEdge a value of the enumeration; any other value is stored and reported when a string is drawn

        Ignored on a hidden display. */
    int (*SetEdgeType)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, KovaTextEdgeType_e eEdge);

    /** Sets the edge colour of subsequent strings.
        @param color depends on the colour mode

        Needs a selected font, which is checked as by DrawString. Ignored on a hidden display. */
    int (*SetEdgeColor)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    /** Sets the text colour of subsequent strings.
        @param color depends on the colour mode

        Ignored on a hidden display. */
    int (*SetTextForeColor)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 color);

    /** Copies a rectangle of the surface to another position on it with the flags of SetBlittingFlags, and
        flips.
        @param pRect the source, not null ("NULL Pointer!")
        @param uiDstX,uiDstY the top left corner of the copy. If source and copy overlap, DirectFB decides.

        While a deferred flip is pending it waits in steps of 16 ms; other threads can draw meanwhile. */
    int (*Blit)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect, kova_uint32 uiDstX,
                kova_uint32 uiDstY);

    /** Makes the glyphs of the selected font wider or narrower.
        @param enable ignored: every call applies its factor
        @param scaleFactor the ratio of glyph width to height in units of 1/65536: with 65536 glyphs are as
               wide as they are high

        SetFont with another height and CreateFont undo it. The font's height is reduced modulo 256 and stays
        so. The font is opened again with KOVA_FONTATTR_ITALIC as its only attribute, if it was set; if that
        fails the slot becomes empty.

        Refused without a selected font ("Only can support max 8 fonts!") and if the selected font could not
        be opened again ("Invalid Font id!"). */
    int (*ScaleFontWidth)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool enable,
                          kova_uint32 scaleFactor);

    /** Returns the line height of the selected font, as DirectFB reports it.
        This is not the height that the font was opened with.
        @param pHeight receives pixels. It is set to 0 before any check; null crashes.

        The selected font is checked as by DrawString. On a hidden display *pHeight is 0. */
    int (*GetFontHeight)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 *pHeight);

    /** Draws several one-bit bitmaps in one call, each as DrawPixelExpand does.
        Entry i of each array describes bitmap i.
        @param ucPixel,uiStartX,uiStartY,uiWidth,uiHeight,uiRowByte,siBgColor,siFgColor,uiBitOffset,eExpand
               arrays of ucNumb entries; ucPixel is not null ("NULL Pointer!"), the others are not checked
        @param ucNumb 0 to 100; more are refused with "Can't draw so many characters at one time!"

        If one bitmap is too large, the whole call is refused. Does not flip. */
    int (*BatchDrawPixelExpand)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 **ucPixel,
                                kova_uint32 *uiStartX, kova_uint32 *uiStartY, kova_uint32 *uiWidth,
                                kova_uint32 *uiHeight, kova_uint32 *uiRowByte, kova_sint32 *siBgColor,
                                kova_sint32 *siFgColor, kova_uint32 *uiBitOffset, KovaTextExpand_e *eExpand,
                                kova_uint8 ucNumb);

    /** Selects the surface to draw on.
        @param bBackup true: the off-screen backup surface; false: the layer's surface

        The selected font is carried over and, if there is one, the palette; clip, colour key and flags are
        not. No operation creates a backup surface, so after true there is no surface to draw on until false.

        Also works on a hidden display. */
    int (*UseBackupSurface)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_bool bBackup);

    /** Copies a rectangle of the backup surface to the layer's surface.
        @param pRect the source, not null ("NULL Pointer!")
        @param uiDstX,uiDstY the top left corner of the copy

        Needs a selected font ("Only can support max 8 fonts!") and both surfaces ("NULL Pointer!"). Does
        not flip. */
    int (*BlitBackupSurface)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect,
                             kova_uint32 uiDstX, kova_uint32 uiDstY);

    /** Draws a line, including both end points, and flips. Any context can call it, active or not.
        @param x1,y1,x2,y2 the end points; they can be outside the plane. On published DirectFB, end points that
               are 2^31 or more pixels apart end the process with SIGFPE.
        @param color depends on the colour mode */
    int (*DrawLine)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_sint32 x1, kova_sint32 y1,
                    kova_sint32 x2, kova_sint32 y2, kova_uint32 color);

    /** Rebuilds the plane as a true-colour plane of a new size, cleared; the display stays shown or hidden.
        Colours are 0xRRGGBBAA until a context is activated or deactivated.
        @param scContextID any value; it becomes the active context
        @param uiX,uiY ignored
        @param uiWidth,uiHeight pixels, passed to DirectFB unchanged
        @return -1 for a null display, without a log record, and if the layer is not available
                ("GetDisplayLayer result = ..." or "Display layer = NULL after GetDisplayLayer"); then no
                context is active, but 32-bit mode is on

        An existing surface is kept. All fonts are closed: create and select them again.

        Also works on a hidden display. Does not flip. Blocks while the layer is temporarily unavailable. */
    int (*Create32BitPlane)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                            kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);

    /** Releases the surface, the layer and all fonts of a 32-bit plane.
        Afterwards no context is active until Create32BitPlane or an activation.
        @return -1 for a null display ("keldrun: error " on standard output) and outside 32-bit mode ("Not a
                32 bit plane, can't release!")

        Also works on a hidden display. Does not flip. */
    int (*Release32BitPlane)(pKovaITextDisplay_t pThiz);

    /** Switches flipping off (0) and on; on KOVA_GRAPHIC_LAYER1 it is always on.
        @param bFlip when flipping is switched on, anything drawn meanwhile is flipped at once; strings alone
               do not count as drawn
        @return -1 for a null display, without a log record

        A flip that was deferred before flipping was switched off is still made: draw after the call, or wait
        two frames.

        Works for any context, and on a hidden display too. */
    int (*SetFlip)(pKovaITextDisplay_t pThiz, kova_bool bFlip);

    /** Sets which part of the plane (crop) is shown at which position of the screen (plane).
        @param pOsdScaleInfo if null, the call does nothing

        If the platform has no such call, the layer's source and screen rectangles are set instead; if the
        layer supports neither, the failure is printed to standard error. Does nothing without a surface.

        Also works on a hidden display. Takes no lock: do not call it while the plane is being rebuilt. */
    void (*SetSurface_OsdScaleInfo)(pKovaITextDisplay_t pThiz, Surface_OsdScaleInfo *pOsdScaleInfo);

    /** Resizes the layer and draws on its new surface, without clearing it.
        Palette, fonts and the shown state are kept; select the font again, because the surface is new. Meant
        for KOVA_GRAPHIC_LAYER2 and LAYER3.
        @param uiX,uiY ignored
        @param uiWidth,uiHeight pixels, passed to DirectFB unchanged

        Subsequent drawing goes to the layer's surface, and the clip is the whole plane. "pLayer is NULL!" as
        for SetPlane.

        Also works on a hidden display. Does not flip. */
    int (*AdjustDisplaySize)(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint32 uiX,
                             kova_uint32 uiY, kova_uint32 uiWidth, kova_uint32 uiHeight);
};

/** Creates the display and stores it in gpDisplay. An existing display is not destroyed; its pointer is lost.
    @param eType KOVA_GRAPHIC_DIRECTFB; any other type creates no display
    @param pParam not null, read during the call only
    @return -1 if a plane size is 0 or the layer is above 2 ("Plane Width is 0!", "Plane Height is 0!",
            "Invalid layer!"), otherwise 0, even if no display could be created: check
            Kova_TextDisp_GetDisplayByID

    Call it from one thread, before any other function. Blocks while the layer is temporarily
    unavailable. */
KOVA_TEXTDISP_API kova_sint8 Kova_TextDisp_Create(KovaGraphicType_e eType, pKovaTextInitParam_t pParam);

/** Returns the display.
    @param scID ignored
    @return the display, owned by the library; null if there is none */
KOVA_TEXTDISP_API pKovaITextDisplay_t Kova_TextDisp_GetDisplayByID(kova_sint8 scID);

/** Creates a context. If its plane size differs from the display's, the plane is rebuilt, unless another
    context is active or the layer has been released.
    Afterwards no font is selected. The first context starts the flip thread, which flips the last frame of a
    burst.
    @param pDisplay not null
    @param pParam the geometry; not null, copied
    @return the identifier, 0 to 3, or -1: all four are in use ("Can't support so much context!"; the calling
            thread then keeps the display's lock), or the thread did not start

    Waits while another thread destroys the last context. */
KOVA_TEXTDISP_API kova_sint8 Kova_TextDisp_CreateContext(pKovaITextDisplay_t pDisplay,
                                                         pKovaTextContextParam_t pParam);

/** Activates a context, which is then the only one that can draw, or releases the layer.
    @param pDisplay not null
    @param scContextID 0 to 3, otherwise refused with "Invalid context ID!"; a context whose plane is not 1 to
           1920 by 1 to 1080 is refused too ("Invalid plane width!", "Invalid plane height!")
    @param bActive 1: rebuilds the layer or window for the context's plane, loads the palette, opens the fonts
           again as SetPlane does, and shows or hides the display as before. If the context is already active,
           the display is only shown or hidden again, which clears the plane. Any other value: releases the
           layer, its surface and the fonts; no context can draw until one is activated.

    Both end 32-bit mode. Can be called from any thread; blocks while the layer is temporarily unavailable. */
KOVA_TEXTDISP_API void Kova_TextDisp_SetActive(pKovaITextDisplay_t pDisplay, kova_sint8 scContextID,
                                               kova_bool bActive);

/** Destroys a context.
    Destroying the last context stops the flip thread and waits until it has ended, including a flip in
    progress. The plane's contents and the active context do not change.
    @param pDisplay not null
    @param scContextID an existing context; any other is refused ("Can't destroy this context!"; the calling
           thread then keeps the display's lock)
    @return always 0

    On the thread that was refused a fifth context, destroying the last context never returns: the flip
    thread needs the lock that this thread keeps. */
KOVA_TEXTDISP_API RETURN_TYPE Kova_TextDisp_DestroyContext(pKovaITextDisplay_t pDisplay,
                                                           kova_sint8 scContextID);

/** Returns the layer of the display created last.
    @return an IDirectFBDisplayLayer, null for a display on KOVA_GRAPHIC_LAYER1. The library owns it. Do not
            use it after that display is destroyed; the pointer is still returned then. */
KOVA_TEXTDISP_API void *Kova_TextDisp_GetLayer(void);

/** Returns the main interface of the display created last.
    @return an IDirectFB; ownership and lifetime as for Kova_TextDisp_GetLayer */
KOVA_TEXTDISP_API void *Kova_TextDisp_GetDFB(void);

/** Destroys the display ("NULL Pointer!" if there is none).
    Destroy its contexts first, and make sure that no other thread is in a call on it.
    @param scID ignored */
KOVA_TEXTDISP_API void Kova_TextDisp_Destroy(kova_sint8 scID);

/** The display, null if there is none. Read it with Kova_TextDisp_GetDisplayByID. */
extern KOVA_TEXTDISP_API pKovaITextDisplay_t gpDisplay;

/** The library's debug category, created by the first Kova_TextDisp_Create that passes its checks. */
extern KOVA_TEXTDISP_API struct KovaDebugCategory *textdisplay_debug;

#ifdef __cplusplus
}
#endif

#endif
