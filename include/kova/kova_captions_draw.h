// SPDX-License-Identifier: MIT
/** @file
    Drawing closed captions: brings what a decoder holds to the screen through a display's table of operations, with the
    viewer's settings. C99 and C++. Needs the table alone: the display library is not linked, and no header of DirectFB is
    included.

        KovaCaptionsScreen screen;
        Kova_Captions_GetDefaultScreen(&screen);
        screen.display = display;
        screen.fonts[0] = "/usr/share/fonts/Caption.ttf";
        KovaCaptionsRenderer *renderer = Kova_Captions_CreateRenderer(&screen);

        Kova_Captions_PushTriplets(decoder, time, triplets, count);
        Kova_Captions_Draw(renderer, decoder, KOVA_CAPTIONS_S1, time);
        SleepUntil(Kova_Captions_NextDraw(renderer));

    The display is shown and its context active before the first drawing. A drawing compares what is to be seen with
    what is on the screen, draws the rectangles that differ, and flips once; nothing is drawn where nothing changed. What
    is seen depends on the state, the settings and the time alone, not on what was drawn before; only a row that
    scrolls out of sight is remembered from the drawing before. Pixels of a window that scrolls and stands alone are
    copied, if the last flip is half a frame old by the machine's clock; the result is the same as drawn again.

    **Index mode** on KOVA_GRAPHIC_LAYER2 or LAYER3 is what the renderer is made for: flashing and fading change palette
    entries only and flip nothing. On ARGB planes both draw the text again. On KOVA_GRAPHIC_LAYER1 the pictures are the
    same, but every string flips, so that a caption may be seen half drawn.

    **The palette** of the display is the renderer's, all 256 entries: 0 is transparent, 1 to 64 are the colours, 65 to
    128 the colours translucent, 129 to 192 flashing, and the rest is handed out for mixtures, text that flashes over a
    background, and windows that fade. When these run out, windows snap; then nothing flashes; then mixtures become the
    nearest colour.

    **Fonts** take slots of the display, which has eight and takes eight different files in its life. Files of styles
    come first, then their italics, fallbacks, and those that settings name; styles that share a file share a slot, and what is beyond
    eight is not used. Other users
    of the display do not use these files, or call Kova_Captions_Redraw afterwards.

    **Memory** is taken once, by Kova_Captions_CreateRenderer; no other function allocates. **Threads:** a renderer is used
    by one thread at a time and has no lock. **Results:** -1 for an argument that cannot be used; then nothing has
    happened. */
#ifndef KOVA_CAPTIONS_DRAW_H
#define KOVA_CAPTIONS_DRAW_H

#include "kova_captions_settings.h"
#include "kova_textdisp.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A renderer: what it has put on one screen. */
typedef struct KovaCaptionsRenderer KovaCaptionsRenderer;

/** The colour mode of the display. */
enum KovaCaptionsColorMode {
    /** A colour is an index into the surface's palette: neither bColor32Bit nor bTextDisp_Palette. */
    KOVA_CAPTIONS_INDEX_COLORS = 0,
    /** A colour is an index into the display's palette: bTextDisp_Palette. */
    KOVA_CAPTIONS_PALETTE_COLORS = 1,
    /** A colour is 0xRRGGBBAA: bColor32Bit, or after Create32BitPlane. */
    KOVA_CAPTIONS_TRUE_COLORS = 2
};

/** The grid that a service places its windows on, and its columns. */
enum KovaCaptionsAspect {
    /** 210 by 75, 42 columns: for services that are made for 16:9, and for those that are not announced. */
    KOVA_CAPTIONS_WIDE = 0,
    /** 160 by 75, 32 columns: for services whose descriptor has wide_aspect_ratio 0. */
    KOVA_CAPTIONS_NARROW = 1
};

/** The number of fallback fonts. */
#define KOVA_CAPTIONS_FALLBACKS 7

/** Where a renderer draws. Fill it by Kova_Captions_GetDefaultScreen, then change what should differ. */
typedef struct KovaCaptionsScreen {
    /** The display. It outlives the renderer. */
    pKovaITextDisplay_t display;
    uint32_t plane_width;  /**< of the context's plane, in pixels; default 1920 */
    uint32_t plane_height; /**< likewise; default 1080 */
    /** Where the video picture lies on the plane, in pixels: the safe area is its middle. Default the whole plane, by a
        width of 0. */
    KovaTextRect_t picture;
    /** The font file of each style, by KovaCaptionsFont: names for CreateFont, at most 99 bytes. Null: that of style 0;
        if that is null too, the first one there is. KOVA_CAPTIONS_FONT_SMALL_CAPITALS with a file of its own is taken for
        a font of small capitals; else lower case is drawn as small upper case. CEA-608 is drawn with style 0 unless the
        viewer chooses another. */
    const char *fonts[KOVA_CAPTIONS_FONTS];
    /** The file of each style's italics, as of fonts. Null: the display slants the style's font, where its platform can;
        published DirectFB cannot. */
    const char *italic_fonts[KOVA_CAPTIONS_FONTS];
    /** Files for characters that a style's font lacks, in order, for example one with Hangul. */
    const char *fallbacks[KOVA_CAPTIONS_FALLBACKS];
    int8_t context;     /**< the context, 0 to 3; default 0 */
    uint8_t color_mode; /**< KOVA_CAPTIONS_INDEX_COLORS and so on */
    uint8_t layer;      /**< KovaGraphicLayer_e of the display; default KOVA_GRAPHIC_LAYER2 */
    uint8_t aspect;     /**< KOVA_CAPTIONS_WIDE or KOVA_CAPTIONS_NARROW */
    /** 1 if Blit copies wrongly where source and copy overlap: scrolling windows are drawn again instead. */
    uint8_t no_blit;
    /** 1 if the layer takes a changed palette with the next flip only: then flashing and fading flip. */
    uint8_t palette_needs_flip;
    /** 1 if the hardware has eight colours only: components of 1 become 0, those of 3 become 2. [79.102(q)(2)] */
    uint8_t eight_colors;
    uint8_t reserved[9]; /**< 0 */
} KovaCaptionsScreen;

/** Writes the defaults: a plane of 1920 by 1080 on layer 2 in index mode, context 0, no display, no fonts.
    @param screen filled; null is ignored */
KOVA_CAPTIONS_API void Kova_Captions_GetDefaultScreen(KovaCaptionsScreen *screen);

/** Creates a renderer, and reads from the font files which characters they have. A file that it cannot read counts as
    having them all.
    @param screen copied, the names of the fonts included; the display is kept
    @return the renderer, which the caller ends by Kova_Captions_DestroyRenderer; null if memory is short, or for a null
            display, a plane of more than 16384 pixels in a direction, or an entry out of range

    Calls no operation of the display. */
KOVA_CAPTIONS_API KovaCaptionsRenderer *Kova_Captions_CreateRenderer(const KovaCaptionsScreen *screen);

/** Ends a renderer. What it has drawn stays on the screen; Kova_Captions_Clear removes it.
    @param renderer null is ignored */
KOVA_CAPTIONS_API void Kova_Captions_DestroyRenderer(KovaCaptionsRenderer *renderer);

/** Sets the viewer's settings. They act with the next drawing, on what is on the screen already too.
    @param renderer from Kova_Captions_CreateRenderer
    @param settings copied; null for the defaults. source, language and easy_reader are not looked at.
    @return 0, or -1 for a null renderer

    Reads font files that the settings name for the first time. */
KOVA_CAPTIONS_API int Kova_Captions_SetSettings(KovaCaptionsRenderer *renderer,
                                                const KovaCaptionsSettings *settings);

/** Sets the grid of the service, when another is chosen.
    @param renderer from Kova_Captions_CreateRenderer
    @param aspect KOVA_CAPTIONS_WIDE or KOVA_CAPTIONS_NARROW
    @return 0, or -1 for a null renderer or another aspect */
KOVA_CAPTIONS_API int Kova_Captions_SetAspect(KovaCaptionsRenderer *renderer, uint8_t aspect);

/** Brings a source of a decoder to the screen.
    @param renderer from Kova_Captions_CreateRenderer
    @param decoder moved to the time first, as by Kova_Captions_Advance
    @param source what to show: a decoded service, KOVA_CAPTIONS_CC1 to KOVA_CAPTIONS_T4, or KOVA_CAPTIONS_NONE for an
           empty screen
    @param time now, in the decoder's time
    @return 1 if something was drawn, 0 if the pixels were right already (palette entries may have changed), -1 for a null
            pointer or a source that is not decoded

    Blocks while the display draws and flips. The same holds for the functions below that draw. */
KOVA_CAPTIONS_API int Kova_Captions_Draw(KovaCaptionsRenderer *renderer, KovaCaptions *decoder,
                                         uint8_t source, int64_t time);

/** Brings the state of a 608 channel to the screen.
    @param renderer from Kova_Captions_CreateRenderer
    @param channel from Kova_Captions_GetChannel; used during the call only
    @param time now, in the time of the state: rolls and flashing go by it
    @return 1, 0 or -1, as Kova_Captions_Draw */
KOVA_CAPTIONS_API int Kova_Captions_DrawChannel(KovaCaptionsRenderer *renderer,
                                                const KovaCaptionsChannel *channel, int64_t time);

/** Brings the state of a service to the screen.
    @param renderer from Kova_Captions_CreateRenderer
    @param service from Kova_Captions_GetService; used during the call only
    @param windows the KOVA_CAPTIONS_WINDOWS entries that came with it
    @param time now, in the time of the state: effects, scrolls and flashing go by it
    @return 1, 0 or -1, as Kova_Captions_Draw */
KOVA_CAPTIONS_API int Kova_Captions_DrawService(KovaCaptionsRenderer *renderer,
                                                const KovaCaptionsService *service,
                                                const KovaCaptionsWindow *windows, int64_t time);

/** Draws a sample text as a caption, so that the viewer sees what the settings do. [79.103(c)(10), (e)] No decoder is
    needed, and none is touched; the next Kova_Captions_Draw shows captions again.
    @param renderer from Kova_Captions_CreateRenderer
    @param text UTF-8, lines ended by U+000A, at most 15 lines of 42 characters (what is more is left out). It is shown at
           the bottom of the safe area, centred, white on black as of style 1.
    @param time now, from any origin
    @return 1, 0 or -1, as Kova_Captions_Draw */
KOVA_CAPTIONS_API int Kova_Captions_Preview(KovaCaptionsRenderer *renderer, const char *text, int64_t time);

/** Removes all captions from the screen.
    @param renderer from Kova_Captions_CreateRenderer
    @return 1, 0 or -1, as Kova_Captions_Draw */
KOVA_CAPTIONS_API int Kova_Captions_Clear(KovaCaptionsRenderer *renderer);

/** Draws everything again that is on the screen, at once, and loads palette and fonts again: after an activation, Show,
    SetPlane, or after others drew over captions, changed the palette or opened fonts. Nothing else on the plane is
    erased.
    @param renderer from Kova_Captions_CreateRenderer
    @return 1, 0 or -1, as Kova_Captions_Draw */
KOVA_CAPTIONS_API int Kova_Captions_Redraw(KovaCaptionsRenderer *renderer);

/** Says when to draw again if no bytes arrive before: the next step of what moves, the next change of what flashes, and,
    after Kova_Captions_Draw, the end of the decoder's delays and timeouts.
    @param renderer from Kova_Captions_CreateRenderer, or null
    @return a time after that of the last drawing; KOVA_CAPTIONS_NEVER if nothing will change */
KOVA_CAPTIONS_API int64_t Kova_Captions_NextDraw(const KovaCaptionsRenderer *renderer);

/** Says how much memory a renderer takes, all of it at creation.
    @return bytes */
KOVA_CAPTIONS_API size_t Kova_Captions_GetRendererSize(void);

#ifdef __cplusplus
}
#endif

#endif /* KOVA_CAPTIONS_DRAW_H */
