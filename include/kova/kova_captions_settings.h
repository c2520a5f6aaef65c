// SPDX-License-Identifier: MIT
/** @file
    The viewer's settings for closed captions, as 47 CFR 79.102 and 79.103 ask for them: one plain record, the rules by
    which it overrides what a stream asks for, and its text form. C99 and C++.

        KovaCaptionsSettings settings;
        Kova_Captions_GetDefaultSettings(&settings);
        if (Kova_Captions_ReadSettings(&settings, text, size, &line)) Complain("settings", line);
        Kova_Captions_ApplyToPen(&settings, &cell->pen, &pen);

    Every attribute is left to the stream (KOVA_CAPTIONS_AS_PROVIDED, the default) or set by the viewer, each on its own.
    The settings apply to CEA-608 and CEA-708 alike, and never change the state of a decoder: a change acts on captions
    that are on the screen already, and "as provided" brings back the provider's look at once.

    No function allocates memory or locks, and no state is kept between calls, so any thread may call any function. Null
    pointers are refused with -1, or ignored by functions that return nothing, unless the description says otherwise.
    Where the settings are stored, when, and by which keys and menus the viewer changes them is the caller's. */
#ifndef KOVA_CAPTIONS_SETTINGS_H
#define KOVA_CAPTIONS_SETTINGS_H

#include "kova_captions.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The value of an attribute that is left to the stream. */
#define KOVA_CAPTIONS_AS_PROVIDED 0xFF

/** The number of font styles, KOVA_CAPTIONS_FONT_DEFAULT to KOVA_CAPTIONS_FONT_SMALL_CAPITALS. */
#define KOVA_CAPTIONS_FONTS 8

/** Room for a font file's name and its zero byte. */
#define KOVA_CAPTIONS_FONT_FILE 100

/** The smallest size that a viewer can choose, in percent. [79.103(c)(4)] */
#define KOVA_CAPTIONS_SMALLEST_SIZE 50

/** The largest size that a viewer can choose, in percent. [79.103(c)(4)] */
#define KOVA_CAPTIONS_LARGEST_SIZE 200

/** Room for the text form of any settings, zero byte included. */
#define KOVA_CAPTIONS_SETTINGS_TEXT 2048

/** The settings. 832 bytes. A value outside its range counts as the default. */
typedef struct KovaCaptionsSettings {
    /** Colour of characters, 6 bits (KovaCaptionsColor), or as provided. [79.103(c)(2)] */
    uint8_t foreground;
    /** KOVA_CAPTIONS_SOLID and so on, or as provided; of the edge too. [79.103(c)(3)] */
    uint8_t foreground_opacity;
    uint8_t background;         /**< colour behind characters, or as provided [79.103(c)(6)] */
    uint8_t background_opacity; /**< likewise */
    /** Fill colour of windows, or as provided. CEA-608 has no windows: there it is the box of each row.
        [79.103(c)(8)] */
    uint8_t window;
    uint8_t window_opacity; /**< likewise */
    /** Edge of characters, KOVA_CAPTIONS_EDGE_NONE and so on, or as provided. [79.103(c)(7)] */
    uint8_t edge_type;
    uint8_t edge_color; /**< its colour, or as provided: that of the stream's edge */
    /** KOVA_CAPTIONS_FONT_DEFAULT and so on: the style of all text; or as provided. [79.103(c)(5)] */
    uint8_t font;
    uint8_t italics;   /**< 0: never; or as provided */
    uint8_t underline; /**< 0: never; or as provided */
    /** 0: what would flash is solid, also where foreground_opacity and the like ask for flashing; or as provided. */
    uint8_t flash;
    uint8_t size; /**< of text, in percent: 50 to 200, 100 by default [79.103(c)(4)] */
    /** Part of the picture's width and height that captions may use, in percent: 80, the default, to 100. */
    uint8_t safe_area;
    /** The source to show, KOVA_CAPTIONS_S1 to KOVA_CAPTIONS_T4; KOVA_CAPTIONS_NONE, the default: the caller's choice, by
        easy_reader and language. Drawing ignores these three. */
    uint8_t source;
    uint8_t easy_reader; /**< 1: simplified captions are preferred; 0 by default [79.103(c)(9)] */
    /** The preferred language, three letters of ISO 639-2 and a zero byte, such as "eng"; "" by default: any.
        [79.103(c)(9)] */
    char language[4];
    uint8_t reserved[12]; /**< 0 */
    /** The font file of each style, by KovaCaptionsFont; "", the default: the file that the caller has for it.
        [79.102(k), 79.103(c)(5)] */
    char fonts[KOVA_CAPTIONS_FONTS][KOVA_CAPTIONS_FONT_FILE];
} KovaCaptionsSettings;

/** Writes the defaults: everything as provided, size 100, safe area 80, any source.
    @param settings filled */
KOVA_CAPTIONS_API void Kova_Captions_GetDefaultSettings(KovaCaptionsSettings *settings);

/* ------------------------------------------------------------------------------------------------ Their text form */

/** Reads the text form, one setting per line:

        # A comment. Empty lines are skipped.
        version = 1
        foreground = yellow
        background = 0,1,2
        background_opacity = as-provided
        font = mono-sans
        font_file_mono_sans = /usr/share/fonts/Caption Mono.ttf

    Blanks around names and values do not matter; a line may end with a carriage return. Names and values are those that
    Kova_Captions_SettingName and Kova_Captions_SettingValue list, in small letters. A colour is one of the eight that
    have names, or red, green and blue from 0 to 3 with commas between them. Settings that the text does not name keep
    their value, so that texts can be read one over the other; the last line of a name counts.

    A text of a newer version (a number above 1) may name settings that this library does not know, or give them values
    that it does not know: those are skipped, and the rest is used. Without this line the version is 1, where they are
    errors.

    @param settings changed; on failure as it was. Kova_Captions_GetDefaultSettings comes before the first text.
    @param text size bytes; no zero byte needs to end them
    @param size any
    @param line on failure the number of the wrong line, from 1; 0 on success and for null settings or text; may be null
    @return 0, or -1 for a wrong line or a null pointer */
KOVA_CAPTIONS_API int Kova_Captions_ReadSettings(KovaCaptionsSettings *settings, const char *text,
                                                 size_t size, unsigned *line);

/** Writes all settings in their text form, with the version. Kova_Captions_ReadSettings makes the same record of it.
    @param settings what to write; values out of range are written as the default
    @param text room for size bytes; what does not fit is cut off and a zero byte ends it; may be null if size is 0
    @param size bytes of text; KOVA_CAPTIONS_SETTINGS_TEXT is always enough
    @return the length of the whole text without the zero byte, as snprintf returns it; -1 for a null pointer, or if a
            font file's name cannot be written: one that is not ended by a zero byte, has a control character, or begins
            or ends with a blank */
KOVA_CAPTIONS_API int Kova_Captions_WriteSettings(const KovaCaptionsSettings *settings, char *text,
                                                  size_t size);

/** Names a setting, for menus and messages.
    @param index from 0, in the order of the text form
    @return such as "foreground_opacity"; null after the last. Static. */
KOVA_CAPTIONS_API const char *Kova_Captions_SettingName(unsigned index);

/** Lists the values of a setting that have names, in the order of a menu. The first is the default.
    @param index of the setting
    @param number from 0
    @return such as "as-provided" or "yellow"; null after the last. The size, the safe area, the language and the font
            files have none. Static. */
KOVA_CAPTIONS_API const char *Kova_Captions_SettingValue(unsigned index, unsigned number);

/** Writes the value of one setting as the text form has it, such as "yellow", "1,0,2" or "100".
    @param settings the settings
    @param index of the setting
    @param text room for size bytes, as for Kova_Captions_WriteSettings
    @param size bytes of text; KOVA_CAPTIONS_FONT_FILE is always enough
    @return the length of the whole value; -1 for a null pointer, an index after the last, or a font file's name that
            cannot be written */
KOVA_CAPTIONS_API int Kova_Captions_WriteSetting(const KovaCaptionsSettings *settings, unsigned index,
                                                 char *text, size_t size);

/* ------------------------------------------------------------------------------------------------------ Applying */

/** Applies the settings to the pen of a cell that has text. Cells without text and transparent spaces have no
    background, whatever the viewer chose.

    - An attribute that the viewer set replaces the stream's; others stay. A colour alone keeps the stream's opacity,
      flashing included. An opacity replaces it, flashing included.
    - The edge's colour alone applies where the stream has an edge.
    - Text that would get the colour of its background, both solid and without an edge, is kept readable: of the two the
      colour that the viewer did not choose becomes black or white, whichever differs more. If the viewer chose neither
      colour, the text changes. If both were chosen, or the stream has it so and the viewer changed neither, they stand.
    - Pen size, offset and tag stay. The size in percent and the font files are for whoever draws.

    @param settings the settings
    @param provided the pen of the stream. For CEA-608: the cell's colours, italics and underline; foreground_opacity
           KOVA_CAPTIONS_FLASH if the cell flashes, else KOVA_CAPTIONS_SOLID; no edge.
    @param pen filled; may be the same as provided */
KOVA_CAPTIONS_API void Kova_Captions_ApplyToPen(const KovaCaptionsSettings *settings,
                                                const KovaCaptionsPen *provided, KovaCaptionsPen *pen);

/** Applies the settings to a window: its fill, by the same rules. The whole window gets it, cells without text
    included. Its border and everything else stays.
    @param settings the settings
    @param provided the attributes of the stream. For the box of a row of CEA-608: all zero but fill_opacity,
           KOVA_CAPTIONS_TRANSPARENT.
    @param attributes filled; may be the same as provided */
KOVA_CAPTIONS_API void Kova_Captions_ApplyToWindow(const KovaCaptionsSettings *settings,
                                                   const KovaCaptionsWindowAttributes *provided,
                                                   KovaCaptionsWindowAttributes *attributes);

#ifdef __cplusplus
}
#endif

#endif /* KOVA_CAPTIONS_SETTINGS_H */
