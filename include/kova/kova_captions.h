// SPDX-License-Identifier: MIT
/** @file
    Closed captions decoded: CEA-608 (line 21) and CEA-708 (DTVCC) from the bytes of a transport to the state of every
    channel and service. C99 and C++.

    A caller creates a decoder, pushes caption bytes in presentation order, each with its time, and reads the state
    when Kova_Captions_Revision says that it changed:

        KovaCaptions *decoder = Kova_Captions_Create(NULL);
        Kova_Captions_PushTriplets(decoder, time, triplets, count);
        Kova_Captions_GetService(decoder, 1, &service, windows, 0xFF);

    All channels (CC1 to CC4, T1 to T4) and the services asked for are decoded all the time. Which one is shown is the
    reader's choice and costs nothing to change.

    **Time** comes from the caller, in microseconds from any origin. The library reads no clock: delays,
    effects, rolls and timeouts end when a push or Kova_Captions_Advance brings a time that is late enough, and they
    end at their own exact time, whenever the call comes. Times outside +-2^61 are read as the nearest limit. A time up
    to 1 s before the latest one counts as the latest one; a time that is further back is a discontinuity.

    **Memory** is taken once, by Kova_Captions_Create; no other function allocates. **Results:** functions that return
    int return 0, or -1 for an argument that cannot be used, and then nothing has happened. **Threads:** any thread may
    call any function at any time but Kova_Captions_Destroy. Every function that takes a decoder locks the decoder's own
    mutex while it works, unless its description says otherwise; no function waits for anything else, and there are no
    callbacks. **Pointers** belong to the caller and are used during the call only. Null pointers are refused with -1
    unless the description says otherwise.

    Rows and columns are indices and count from 0. Bytes, codes and names are those of CTA-608-E, CTA-708-E and 47 CFR
    79.101 and 79.102. */
#ifndef KOVA_CAPTIONS_H
#define KOVA_CAPTIONS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Marks what the library exports. */
#define KOVA_CAPTIONS_API __attribute__((visibility("default")))

/** A decoder. */
typedef struct KovaCaptions KovaCaptions;

/** Where a time is unknown or nothing is under way. */
#define KOVA_CAPTIONS_NO_TIME INT64_MIN

/** Where nothing will change without further bytes. */
#define KOVA_CAPTIONS_NEVER INT64_MAX

/** Half the period of everything that flashes, in microseconds. */
#define KOVA_CAPTIONS_FLASH_HALF 500000

/** How long a row rolls or scrolls, in microseconds. 47 CFR 79.101(f)(1)(iii): no more than 0.433 s. */
#define KOVA_CAPTIONS_ROLL 400000

/** The time between two steps of a movement that Kova_Captions_NextChange announces, in microseconds. */
#define KOVA_CAPTIONS_STEP 16667

/** Windows of a service. */
#define KOVA_CAPTIONS_WINDOWS 8
#define KOVA_CAPTIONS_WINDOW_ROWS 15    /**< rows at most */
#define KOVA_CAPTIONS_WINDOW_COLUMNS 42 /**< columns at most */

/** The rows of a 608 channel. */
#define KOVA_CAPTIONS_CHANNEL_ROWS 15
#define KOVA_CAPTIONS_CHANNEL_COLUMNS 32 /**< its columns */

/** Where captions come from: a service is its own number, 1 to 63; the 608 channels follow. A plain uint8_t carries
    it. */
enum KovaCaptionsSource {
    KOVA_CAPTIONS_NONE = 0,
    KOVA_CAPTIONS_S1 = 1,
    KOVA_CAPTIONS_S63 = 63,
    KOVA_CAPTIONS_CC1 = 64,
    KOVA_CAPTIONS_CC2 = 65,
    KOVA_CAPTIONS_CC3 = 66,
    KOVA_CAPTIONS_CC4 = 67,
    KOVA_CAPTIONS_T1 = 68,
    KOVA_CAPTIONS_T2 = 69,
    KOVA_CAPTIONS_T3 = 70,
    KOVA_CAPTIONS_T4 = 71,
    /** Extended data services, in events only. */
    KOVA_CAPTIONS_XDS = 72
};

/** The value of a colour: two bits each of red (bits 5-4), green (3-2) and blue (1-0), as 708 has them. The colours of
    608 have full components (3). */
enum KovaCaptionsColor {
    KOVA_CAPTIONS_BLACK = 0x00,
    KOVA_CAPTIONS_BLUE = 0x03,
    KOVA_CAPTIONS_GREEN = 0x0C,
    KOVA_CAPTIONS_CYAN = 0x0F,
    KOVA_CAPTIONS_RED = 0x30,
    KOVA_CAPTIONS_MAGENTA = 0x33,
    KOVA_CAPTIONS_YELLOW = 0x3C,
    KOVA_CAPTIONS_WHITE = 0x3F
};

/** Opacities, of 608 and 708 alike. [79.102(o)] */
enum KovaCaptionsOpacity {
    KOVA_CAPTIONS_SOLID = 0,
    KOVA_CAPTIONS_FLASH = 1,
    KOVA_CAPTIONS_TRANSLUCENT = 2,
    KOVA_CAPTIONS_TRANSPARENT = 3
};

/** What a cell holds. */
enum KovaCaptionsCellKind {
    /** Nothing was written here: 608 shows the picture, 708 the window's fill. */
    KOVA_CAPTIONS_EMPTY = 0,
    /** A displayable character, the space included: it has a background. */
    KOVA_CAPTIONS_CHARACTER = 1,
    /** A transparent space: it takes the cell and shows neither character nor background. Its character is U+0020, or
        U+00A0 where a row must not be broken. */
    KOVA_CAPTIONS_TRANSPARENT_SPACE = 2,
    /** A 608 attribute code that takes a cell: shown as a space with background. */
    KOVA_CAPTIONS_ATTRIBUTE = 3
};

/** How a movement goes on. The part that is done at a time t is (t - start) / duration, from 0 to 1. */
enum KovaCaptionsMotionKind {
    KOVA_CAPTIONS_STILL = 0,
    KOVA_CAPTIONS_FADE = 1,
    KOVA_CAPTIONS_WIPE = 2,
    /** The rows move up by one (608), or by one in the window's scroll direction (708). */
    KOVA_CAPTIONS_SCROLL = 3
};

/** A movement under way, or all zero. It ends by itself, with a new revision, at start + duration. */
typedef struct KovaCaptionsMotion {
    /** In microseconds. The start may lie before the command that caused it: a window that is hidden
        while it appears goes back from where it is. */
    int64_t start;
    int64_t duration; /**< length in microseconds */
    /** KOVA_CAPTIONS_STILL and so on. */
    uint8_t kind;
    /** The direction of a wipe as it moves, already reversed where it hides, or of a scroll: KOVA_CAPTIONS_LEFT_TO_RIGHT
        and so on. */
    uint8_t direction;
    /** 1 if the window appears, 0 if it goes: such a window is drawn until the end although it is not visible. */
    uint8_t showing;
    uint8_t reserved[5]; /**< 0 */
} KovaCaptionsMotion;

/** What every source has. */
typedef struct KovaCaptionsStatus {
    /** Changes whenever anything of the source does; compare for inequality. It never goes back, also not by a
        discontinuity, but wraps at 2^32. */
    uint32_t revision;
    /** Changes whenever what is visible does: text on display, a visible window's attributes or place, visibility. */
    uint32_t visible_revision;
    /** The time of the change that visible_revision counted last, KOVA_CAPTIONS_NO_TIME before the first. */
    int64_t visible_since;
    /** Since when something visible flashes without a break, or KOVA_CAPTIONS_NO_TIME. It is on display during even
        multiples of KOVA_CAPTIONS_FLASH_HALF after this time, and off during the odd ones. */
    int64_t flash_since;
} KovaCaptionsStatus;

/* ------------------------------------------------------------------------------------------------------------- 608 */

/** The style of a 608 channel. */
enum KovaCaptionsMode {
    /** Nothing received yet that says: what comes is ignored. */
    KOVA_CAPTIONS_NO_MODE = 0,
    KOVA_CAPTIONS_POP_ON = 1,
    KOVA_CAPTIONS_ROLL_UP = 2,
    KOVA_CAPTIONS_PAINT_ON = 3,
    /** A text channel that has been selected once; its box covers the whole text area, empty or not. */
    KOVA_CAPTIONS_TEXT_MODE = 4
};

/** One cell of a 608 channel, with the attributes in force there. An empty cell and a transparent space have no
    attributes: all is zero, but the background opacity, which is transparent. */
typedef struct KovaCaptionsChannelCell {
    /** Unicode, U+0020 for an attribute; 0 if empty. */
    uint16_t character;
    /** KOVA_CAPTIONS_EMPTY and so on. */
    uint8_t kind;
    /** KOVA_CAPTIONS_WHITE and so on; 608 has eight. */
    uint8_t foreground;
    uint8_t background; /**< as foreground */
    /** Solid, translucent or transparent. */
    uint8_t background_opacity;
    /** 0 or 1. */
    uint8_t italics;
    uint8_t underline; /**< 0 or 1; spaces, attributes and box corners have none */
    /** 1 if the character flashes. */
    uint8_t flash;
    uint8_t reserved; /**< 0 */
} KovaCaptionsChannelCell;

/** The state of a 608 channel. 9720 bytes. */
typedef struct KovaCaptionsChannel {
    KovaCaptionsStatus status; /**< the revisions */
    /** The roll of the last carriage return, upward. In roll-up style the rows base_row - depth + 1 to base_row move,
        in Text all 15. */
    KovaCaptionsMotion roll;
    /** One for each displayed row: changes whenever the row does. */
    uint32_t row_revision[KOVA_CAPTIONS_CHANNEL_ROWS];
    /** KOVA_CAPTIONS_NO_MODE and so on. */
    uint8_t mode;
    /** Rows of the roll-up window, 2 to 4; 0 in other styles. */
    uint8_t depth;
    /** The lowest row of the roll-up window, 0 to 14. */
    uint8_t base_row;
    /** Where the next character goes: 0 to 14. */
    uint8_t cursor_row;
    uint8_t cursor_column; /**< 0 to 31 */
    uint8_t reserved[7];   /**< 0 */
    /** The memory that is shown. Rows outside a roll-up window are empty. */
    KovaCaptionsChannelCell displayed[KOVA_CAPTIONS_CHANNEL_ROWS][KOVA_CAPTIONS_CHANNEL_COLUMNS];
    /** The memory that a pop-on caption is loaded into; empty for Text. */
    KovaCaptionsChannelCell non_displayed[KOVA_CAPTIONS_CHANNEL_ROWS][KOVA_CAPTIONS_CHANNEL_COLUMNS];
} KovaCaptionsChannel;

/* ------------------------------------------------------------------------------------------------------------- 708 */

/** Print, scroll and effect directions. */
enum KovaCaptionsDirection {
    KOVA_CAPTIONS_LEFT_TO_RIGHT = 0,
    KOVA_CAPTIONS_RIGHT_TO_LEFT = 1,
    KOVA_CAPTIONS_TOP_TO_BOTTOM = 2,
    KOVA_CAPTIONS_BOTTOM_TO_TOP = 3
};

/** Justification. */
enum KovaCaptionsJustify {
    KOVA_CAPTIONS_JUSTIFY_LEFT = 0,
    KOVA_CAPTIONS_JUSTIFY_RIGHT = 1,
    KOVA_CAPTIONS_JUSTIFY_CENTER = 2,
    KOVA_CAPTIONS_JUSTIFY_FULL = 3
};

/** Edges of characters and borders of windows. Reserved values of the stream are read as none. */
enum KovaCaptionsEdge {
    KOVA_CAPTIONS_EDGE_NONE = 0,
    KOVA_CAPTIONS_EDGE_RAISED = 1,
    KOVA_CAPTIONS_EDGE_DEPRESSED = 2,
    KOVA_CAPTIONS_EDGE_UNIFORM = 3,
    KOVA_CAPTIONS_EDGE_SHADOW_LEFT = 4,
    KOVA_CAPTIONS_EDGE_SHADOW_RIGHT = 5
};

/** Pen sizes. Reserved values are read as standard. */
enum KovaCaptionsPenSize {
    KOVA_CAPTIONS_PEN_SMALL = 0,
    KOVA_CAPTIONS_PEN_STANDARD = 1,
    KOVA_CAPTIONS_PEN_LARGE = 2
};

/** Pen offsets. Reserved values are read as normal. */
enum KovaCaptionsPenOffset {
    KOVA_CAPTIONS_SUBSCRIPT = 0,
    KOVA_CAPTIONS_NORMAL = 1,
    KOVA_CAPTIONS_SUPERSCRIPT = 2
};

/** Font styles. */
enum KovaCaptionsFont {
    KOVA_CAPTIONS_FONT_DEFAULT = 0,
    KOVA_CAPTIONS_FONT_MONO_SERIF = 1,
    KOVA_CAPTIONS_FONT_SERIF = 2,
    KOVA_CAPTIONS_FONT_MONO_SANS = 3,
    KOVA_CAPTIONS_FONT_SANS = 4,
    KOVA_CAPTIONS_FONT_CASUAL = 5,
    KOVA_CAPTIONS_FONT_CURSIVE = 6,
    KOVA_CAPTIONS_FONT_SMALL_CAPITALS = 7
};

/** The text tag of what is not to be displayed: such characters are transparent spaces. */
#define KOVA_CAPTIONS_TAG_HIDDEN 15

/** A pen: SetPenAttributes and SetPenColor, or a predefined style. [79.102(i) table 5] */
typedef struct KovaCaptionsPen {
    /** The colour of the glyph, 6 bits (KovaCaptionsColor). */
    uint8_t foreground;
    uint8_t foreground_opacity; /**< KOVA_CAPTIONS_SOLID and so on */
    uint8_t background;         /**< 6 bits */
    uint8_t background_opacity; /**< likewise */
    uint8_t edge_color;         /**< 6 bits; its opacity is the foreground's */
    /** KOVA_CAPTIONS_EDGE_NONE and so on. */
    uint8_t edge_type;
    uint8_t size;      /**< KOVA_CAPTIONS_PEN_SMALL and so on */
    uint8_t offset;    /**< KOVA_CAPTIONS_SUBSCRIPT and so on */
    uint8_t font;      /**< KOVA_CAPTIONS_FONT_DEFAULT and so on */
    uint8_t italics;   /**< 0 or 1 */
    uint8_t underline; /**< 0 or 1 */
    /** 0 dialog to 14, or KOVA_CAPTIONS_TAG_HIDDEN. */
    uint8_t text_tag;
} KovaCaptionsPen;

/** One cell of a window. An empty cell is all zero. */
typedef struct KovaCaptionsWindowCell {
    /** Unicode of the Basic Multilingual Plane. The CC icon is U+E9A0, of the private use area. */
    uint16_t character;
    /** Empty, character or transparent space. */
    uint8_t kind;
    uint8_t reserved;    /**< 0 */
    KovaCaptionsPen pen; /**< the pen that printed it */
} KovaCaptionsWindowCell;

/** DefineWindow. [79.102(e), (f)] */
typedef struct KovaCaptionsDefinition {
    /** 0, the highest, to 7. Windows are drawn from priority 7 to 0, equal ones by rising number. */
    uint8_t priority;
    /** 1 if the anchor is in hundredths of the safe title area; 0: in cells of the grid. */
    uint8_t relative;
    /** 0 to 74, or 0 to 99 if relative. */
    uint8_t anchor_vertical;
    /** 0 to 209 (of 160 on a 4:3 grid), or 0 to 99 if relative. */
    uint8_t anchor_horizontal;
    /** The point of the window that lies there: 0 top left, 1 top centre, 2 top right, 3 middle left and so on to 8,
        bottom right. */
    uint8_t anchor_point;
    /** 1 to 15. */
    uint8_t rows;
    uint8_t columns; /**< 1 to 42 */
    /** Decoded and not acted upon. */
    uint8_t row_lock;
    uint8_t column_lock; /**< likewise */
    /** 0 to 7 as received. */
    uint8_t window_style;
    uint8_t pen_style;   /**< 0 to 7 as received */
    uint8_t reserved[5]; /**< 0 */
} KovaCaptionsDefinition;

/** SetWindowAttributes, or a predefined style. [79.102(i) table 4] */
typedef struct KovaCaptionsWindowAttributes {
    uint8_t fill_color;   /**< 6 bits (KovaCaptionsColor) */
    uint8_t fill_opacity; /**< KOVA_CAPTIONS_SOLID and so on */
    uint8_t border_color; /**< 6 bits */
    /** KOVA_CAPTIONS_EDGE_NONE and so on. */
    uint8_t border_type;
    /** The bit as received. The decoder never wraps. */
    uint8_t word_wrap;
    uint8_t print_direction; /**< KOVA_CAPTIONS_LEFT_TO_RIGHT and so on */
    /** As received, so it may be parallel to the print direction. Then rows follow bottom to top, and vertical rows
        right to left. */
    uint8_t scroll_direction;
    uint8_t justify; /**< KOVA_CAPTIONS_JUSTIFY_LEFT and so on */
    /** Bits as received: 0 snap, 1 fade, 2 wipe, 3 reserved (snap). */
    uint8_t display_effect;
    uint8_t effect_direction; /**< KOVA_CAPTIONS_LEFT_TO_RIGHT and so on */
    /** In half seconds, 0 to 15. */
    uint8_t effect_speed;
    uint8_t reserved[5]; /**< 0 */
} KovaCaptionsWindowAttributes;

/** The state of a window. 10248 bytes. */
typedef struct KovaCaptionsWindow {
    /** The effect that shows or hides the window. */
    KovaCaptionsMotion effect;
    KovaCaptionsMotion scroll; /**< the scroll of its rows */
    /** Changes whenever anything of the window does. */
    uint32_t revision;
    /** One for each row: changes whenever a cell of the row does. */
    uint32_t row_revision[KOVA_CAPTIONS_WINDOW_ROWS];
    /** 0 if the window is not defined; then all else is zero, but the revisions. */
    uint8_t exists;
    uint8_t visible; /**< 0 or 1; see effect and KovaCaptionsService::blanked */
    /** Where the next character goes: 0 to definition.rows - 1. */
    uint8_t pen_row;
    uint8_t pen_column;                      /**< 0 to definition.columns - 1 */
    uint8_t reserved[4];                     /**< 0 */
    KovaCaptionsDefinition definition;       /**< what DefineWindow said */
    KovaCaptionsWindowAttributes attributes; /**< what SetWindowAttributes or the style said */
    KovaCaptionsPen pen;                     /**< what prints next */
    uint8_t reserved_after_pen[4];           /**< 0 */
    /** The first definition.columns cells of the first definition.rows rows; the rest is empty. Text is stored from a
        row's start for every justification; the renderer justifies it. */
    KovaCaptionsWindowCell cells[KOVA_CAPTIONS_WINDOW_ROWS][KOVA_CAPTIONS_WINDOW_COLUMNS];
} KovaCaptionsWindow;

/** Where a service has no current window. */
#define KOVA_CAPTIONS_NO_WINDOW 0xFF

/** The state of a service apart from its windows. */
typedef struct KovaCaptionsService {
    KovaCaptionsStatus status; /**< the revisions */
    /** When the pending delay ends, or KOVA_CAPTIONS_NO_TIME. */
    int64_t delay_until;
    /** 0 to 7, or KOVA_CAPTIONS_NO_WINDOW. */
    uint8_t current_window;
    /** Bit n is window n. */
    uint8_t existing_windows;
    uint8_t visible_windows; /**< likewise; windows that are on their way out are not among them */
    /** 1 if no DTVCC data came for the timeout: no window is drawn, until the next packet. */
    uint8_t blanked;
    /** Bytes that wait in the input buffer, 0 to 128. */
    uint8_t buffered;
    uint8_t reserved[3]; /**< 0 */
} KovaCaptionsService;

/* ------------------------------------------------------------------------------------------------- Extended data */

/** Whose rating a content advisory gives. [CTA-608-E 9.5.1.5] */
enum KovaCaptionsRatingSystem {
    KOVA_CAPTIONS_RATING_NONE = 0,
    KOVA_CAPTIONS_RATING_MPA = 1,
    KOVA_CAPTIONS_RATING_US_TV = 2,
    KOVA_CAPTIONS_RATING_CANADIAN_ENGLISH = 3,
    KOVA_CAPTIONS_RATING_CANADIAN_FRENCH = 4
};

/** What extended data services (XDS) report about the current programme and the channel. What was not received, or not with
    a right checksum, is empty or zero. Texts are UTF-8 and end with a zero byte. */
typedef struct KovaCaptionsProgram {
    /** Changes whenever anything here does. */
    uint32_t revision;
    /** When the programme started, UTC: 1 to 12; 0: unknown. */
    uint8_t start_month;
    uint8_t start_day;    /**< 1 to 31 */
    uint8_t start_hour;   /**< 0 to 23 */
    uint8_t start_minute; /**< 0 to 59 */
    /** KOVA_CAPTIONS_RATING_NONE and so on. */
    uint8_t rating_system;
    uint8_t rating; /**< the level in its system, 0 to 7 */
    /** The flags of US TV: 0 or 1. With TV-Y7 violence is fantasy violence. */
    uint8_t violence;
    uint8_t sexual_situations; /**< 0 or 1 */
    uint8_t language;          /**< 0 or 1 */
    uint8_t dialog;            /**< 0 or 1 */
    uint8_t reserved[2];       /**< 0 */
    char name[100];            /**< of the programme, up to 32 characters */
    char network[100];         /**< name of the network */
    char call_letters[100];    /**< of the station */
} KovaCaptionsProgram;

/* ---------------------------------------------------------------------------------------------------------- Events */

/** What was decoded: codes of 608 and of 708, runs of text, extended data, and what went wrong. Behind each stand its
    arguments in the order of KovaCaptionsEvent::arguments, by the names that Kova_Captions_FormatEvent prints. */
enum KovaCaptionsCode {
    /* Of 608 and 708. */
    KOVA_CAPTIONS_EVENT_TEXT = 1, /**< the characters */
    KOVA_CAPTIONS_EVENT_TRANSPARENT_SPACE,
    KOVA_CAPTIONS_EVENT_BACKSPACE,
    KOVA_CAPTIONS_EVENT_CARRIAGE_RETURN,
    KOVA_CAPTIONS_EVENT_UNKNOWN_CODE, /**< code: the first two bytes of 608, EXT1 codes as 0x10nn */

    /* 608. */
    KOVA_CAPTIONS_EVENT_RESUME_CAPTION_LOADING,
    KOVA_CAPTIONS_EVENT_ALARM_OFF,
    KOVA_CAPTIONS_EVENT_ALARM_ON,
    KOVA_CAPTIONS_EVENT_DELETE_TO_END_OF_ROW,
    KOVA_CAPTIONS_EVENT_ROLL_UP, /**< rows */
    KOVA_CAPTIONS_EVENT_FLASH_ON,
    KOVA_CAPTIONS_EVENT_RESUME_DIRECT_CAPTIONING,
    KOVA_CAPTIONS_EVENT_TEXT_RESTART,
    KOVA_CAPTIONS_EVENT_RESUME_TEXT_DISPLAY,
    KOVA_CAPTIONS_EVENT_ERASE_DISPLAYED_MEMORY,
    KOVA_CAPTIONS_EVENT_ERASE_NON_DISPLAYED_MEMORY,
    KOVA_CAPTIONS_EVENT_END_OF_CAPTION,
    KOVA_CAPTIONS_EVENT_TAB_OFFSET, /**< columns */
    KOVA_CAPTIONS_EVENT_PREAMBLE,   /**< row (1 to 15), indent, color, italics (absent if off), underline */
    KOVA_CAPTIONS_EVENT_MID_ROW,    /**< color (absent for italics), italics, underline */
    KOVA_CAPTIONS_EVENT_BACKGROUND_ATTRIBUTES, /**< color (absent for BT), opacity */
    KOVA_CAPTIONS_EVENT_BLACK_FOREGROUND,      /**< underline */
    KOVA_CAPTIONS_EVENT_CHARACTER_SET,         /**< set: 0x24 to 0x2A */

    /* 708. */
    KOVA_CAPTIONS_EVENT_END_OF_TEXT,
    KOVA_CAPTIONS_EVENT_FORM_FEED,
    KOVA_CAPTIONS_EVENT_HORIZONTAL_CARRIAGE_RETURN,
    KOVA_CAPTIONS_EVENT_SET_CURRENT_WINDOW, /**< window */
    KOVA_CAPTIONS_EVENT_CLEAR_WINDOWS,      /**< windows: a map */
    KOVA_CAPTIONS_EVENT_DISPLAY_WINDOWS,    /**< windows */
    KOVA_CAPTIONS_EVENT_HIDE_WINDOWS,       /**< windows */
    KOVA_CAPTIONS_EVENT_TOGGLE_WINDOWS,     /**< windows */
    KOVA_CAPTIONS_EVENT_DELETE_WINDOWS,     /**< windows */
    KOVA_CAPTIONS_EVENT_DELAY,              /**< tenths */
    KOVA_CAPTIONS_EVENT_DELAY_CANCEL,
    KOVA_CAPTIONS_EVENT_RESET,
    KOVA_CAPTIONS_EVENT_SET_PEN_ATTRIBUTES, /**< tag, offset, size, italics, underline, edge, font */
    KOVA_CAPTIONS_EVENT_SET_PEN_COLOR, /**< foreground, foreground_opacity, background, background_opacity, edge */
    KOVA_CAPTIONS_EVENT_SET_PEN_LOCATION, /**< row, column */
    /** fill, fill_opacity, border, border_color, wordwrap, print, scroll, justify, effect, effect_direction,
        effect_speed */
    KOVA_CAPTIONS_EVENT_SET_WINDOW_ATTRIBUTES,
    /** window, visible, rowlock, collock, priority, relative, anchor_v, anchor_h, anchor, rows, columns, window_style,
        pen_style; rows and columns are counts, 1 to 15 and 1 to 42 */
    KOVA_CAPTIONS_EVENT_DEFINE_WINDOW,

    /* Extended data. Reported when the checksum is right and the content differs from the last. */
    KOVA_CAPTIONS_EVENT_PROGRAM_START,    /**< month, day, hour, minute */
    KOVA_CAPTIONS_EVENT_PROGRAM_NAME,     /**< the characters */
    KOVA_CAPTIONS_EVENT_CONTENT_ADVISORY, /**< system, rating, violence, sex, language, dialog */
    KOVA_CAPTIONS_EVENT_NETWORK_NAME,     /**< the characters */
    KOVA_CAPTIONS_EVENT_CALL_LETTERS,     /**< the characters */

    /* Transport and time. */
    KOVA_CAPTIONS_EVENT_SEQUENCE_GAP,      /**< expected, received; every service was reset */
    KOVA_CAPTIONS_EVENT_SHORT_PACKET,      /**< bytes, announced */
    KOVA_CAPTIONS_EVENT_STRAY_DATA,        /**< DTVCC data with no packet open */
    KOVA_CAPTIONS_EVENT_BAD_SERVICE_BLOCK, /**< header: the byte that is wrong */
    KOVA_CAPTIONS_EVENT_CUT_ELEMENT,       /**< bytes; dropped at a packet's end */
    KOVA_CAPTIONS_EVENT_BUFFER_FULL,       /**< ended a delay */
    KOVA_CAPTIONS_EVENT_PARITY_ERROR,      /**< field, first, second: the bytes */
    KOVA_CAPTIONS_EVENT_INVALID_DATA,      /**< field; 45 bad pairs in a row reset its captions */
    KOVA_CAPTIONS_EVENT_CUT_CC_DATA,       /**< count, present: triplets */
    KOVA_CAPTIONS_EVENT_TIMEOUT,           /**< the source was blanked */
    KOVA_CAPTIONS_EVENT_DISCONTINUITY
};

/** An argument that an event does not have. */
#define KOVA_CAPTIONS_ABSENT 0xFFFF

/** The most arguments of an event. */
#define KOVA_CAPTIONS_EVENT_ARGUMENTS 16
#define KOVA_CAPTIONS_EVENT_CHARACTERS 64 /**< the most characters of an event */

/** Something decoded. Events of one source are in their order in the stream. A run of text is reported with the time
    of its first character once a code, a discontinuity, KOVA_CAPTIONS_EVENT_CHARACTERS characters or
    Kova_Captions_EndRuns end it, so it may follow later events of other sources. Codes without effect are reported
    too, but the repetition of a 608 control code and fillers (null pairs, NUL) are not. */
typedef struct KovaCaptionsEvent {
    /** When it took effect; KOVA_CAPTIONS_NO_TIME before the first time. */
    int64_t time;
    /** CC1, service 1 and so on; KOVA_CAPTIONS_NONE where it belongs to none. */
    uint8_t source;
    /** KOVA_CAPTIONS_EVENT_TEXT and so on. */
    uint8_t code;
    /** Entries of arguments that hold something. */
    uint8_t argument_count;
    uint8_t character_count; /**< entries of characters that hold something */
    uint8_t reserved[4];     /**< 0 */
    uint16_t arguments
        [KOVA_CAPTIONS_EVENT_ARGUMENTS]; /**< by code, see KovaCaptionsCode; KOVA_CAPTIONS_ABSENT where there is none */
    /** Unicode of the Basic Multilingual Plane. */
    uint16_t characters[KOVA_CAPTIONS_EVENT_CHARACTERS];
} KovaCaptionsEvent;

/** Enough for any line of Kova_Captions_FormatEvent, the zero byte included. */
#define KOVA_CAPTIONS_LINE 512

/** How often what happened since creation. */
typedef struct KovaCaptionsCounters {
    /** Valid triplets and pairs that were pushed; fillers included. */
    uint32_t triplets;
    /** DTVCC packets that were processed. */
    uint32_t packets;
    /** 608 pairs with a parity error. 00 00 is none. */
    uint32_t parity_errors;
    uint32_t sequence_gaps; /**< numbers of DTVCC packets that did not follow; each reset every service */
    /** Packets that ended before their length. */
    uint32_t short_packets;
    /** DTVCC triplets with no packet open. */
    uint32_t stray_data;
    uint32_t bad_service_blocks; /**< extended headers that are none */
    uint32_t cut_elements;       /**< characters and commands dropped at a packet's end */
    /** Structures with fewer triplets than announced. */
    uint32_t cut_cc_data;
    /** Codes that no table lists. */
    uint32_t unknown_codes;
    uint32_t full_buffers; /**< delays that a full input buffer ended */
    /** XDS packets with a wrong checksum, a parity error or too many bytes. */
    uint32_t xds_errors;
    uint32_t timeouts;        /**< channels and services blanked */
    uint32_t discontinuities; /**< those that the caller or the time made */
    /** Events that found no room. */
    uint32_t lost_events;
    uint32_t reserved; /**< 0 */
} KovaCaptionsCounters;

/** Which sources carry something, since creation or the last discontinuity. */
typedef struct KovaCaptionsActivity {
    /** Bit n is service n: a block that is not empty was received, also for a service that is not decoded. */
    uint64_t services_with_data;
    /** Characters were received. Decoded services only. */
    uint64_t services_with_text;
    /** Bit n is channel KOVA_CAPTIONS_CC1 + n. */
    uint8_t channels_with_data;
    uint8_t channels_with_text; /**< likewise; characters were received */
    uint8_t reserved[6];        /**< 0 */
} KovaCaptionsActivity;

/* ----------------------------------------------------------------------------------------------- Creating, feeding */

/** What a decoder is to do. Fill it by Kova_Captions_GetDefaults, then change what should differ. */
typedef struct KovaCaptionsOptions {
    /** Services to decode: bit n is service n, 1 to 63; bit 0 is not looked at. Default all. Every service takes memory
        (Kova_Captions_GetMemorySize). The eight 608 channels are always decoded. */
    uint64_t services;
    /** Services whose P16 codes and pairs of G1 bytes are EUC-KR (KS X 1001) where both bytes are A1 or more. Default
        none: P16 is Unicode. */
    uint64_t korean_services;
    /** After how many microseconds without data a 608 caption channel's displayed memory is erased; 0: never.
        Default 16 s. CTA-608-E C.9 asks for no less. */
    int64_t channel_timeout;
    /** After how many microseconds without any DTVCC data the visible windows of every service are blanked; 0: never.
        Default 16 s. */
    int64_t service_timeout;
    /** How many events are kept for Kova_Captions_NextEvent; 0, the default: none are made. */
    uint32_t event_capacity;
    uint32_t reserved; /**< 0 */
} KovaCaptionsOptions;

/** Writes the defaults. Takes no lock.
    @param options filled; null is ignored */
KOVA_CAPTIONS_API void Kova_Captions_GetDefaults(KovaCaptionsOptions *options);

/** Says how many bytes a decoder of these options takes, all of it at creation.
    @param options null for the defaults
    @return bytes; 0 if the options cannot be used

    Takes no lock. */
KOVA_CAPTIONS_API size_t Kova_Captions_GetMemorySize(const KovaCaptionsOptions *options);

/** Creates a decoder in its initial state.
    @param options copied; null for the defaults
    @return the decoder, which the caller ends by Kova_Captions_Destroy; null if memory is short or a timeout is
            negative */
KOVA_CAPTIONS_API KovaCaptions *Kova_Captions_Create(const KovaCaptionsOptions *options);

/** Ends a decoder. No other call may be under way.
    @param decoder null is ignored */
KOVA_CAPTIONS_API void Kova_Captions_Destroy(KovaCaptions *decoder);

/** Decodes triplets: a byte with cc_valid and cc_type, and two bytes of data each.
    @param decoder from Kova_Captions_Create
    @param time when they are presented
    @param triplets count times three bytes, in presentation order; may be null if count is 0
    @param count any; a packet may be spread over many calls, and the result is the same however it is
    @return 0, or -1 for a null pointer

    Triplets with cc_valid 0 are skipped; marker bits are not looked at. Equal times are in order. A call without a
    triplet is Kova_Captions_Advance. */
KOVA_CAPTIONS_API int Kova_Captions_PushTriplets(KovaCaptions *decoder, int64_t time, const uint8_t *triplets,
                                                 size_t count);

/** Decodes a cc_data() structure: two bytes of header, then the triplets.
    @param decoder from Kova_Captions_Create
    @param time when they are presented
    @param data size bytes, from the byte with process_cc_data_flag and cc_count; what follows the triplets is not
           looked at
    @param size bytes, any
    @return 0, or -1 for a null pointer

    With process_cc_data_flag 0 only the time is taken. A count beyond the data: the whole triplets present are decoded,
    and the error is counted. [A/53 part 4] */
KOVA_CAPTIONS_API int Kova_Captions_PushCcData(KovaCaptions *decoder, int64_t time, const uint8_t *data,
                                               size_t size);

/** Decodes one pair of line 21, parity included.
    @param decoder from Kova_Captions_Create
    @param time when it is presented
    @param field 1 or 2
    @param first the first byte
    @param second the second byte
    @return 0, or -1 for a null decoder or another field */
KOVA_CAPTIONS_API int Kova_Captions_PushPair(KovaCaptions *decoder, int64_t time, int field, uint8_t first,
                                             uint8_t second);

/** Moves the time on: ends delays, effects, rolls and timeouts that are due.
    @param decoder from Kova_Captions_Create
    @param time now
    @return 0, or -1 for a null decoder */
KOVA_CAPTIONS_API int Kova_Captions_Advance(KovaCaptions *decoder, int64_t time);

/** Returns all state of all channels and services, the extended data and the time to its initial value: the receiver's
    channel changed, or the stream was left for another place. Counters and revisions go on, and events that were not
    read stay. [79.101(f), CTA-708-E 8.9.5]
    @param decoder from Kova_Captions_Create
    @return 0, or -1 for a null decoder */
KOVA_CAPTIONS_API int Kova_Captions_Discontinuity(KovaCaptions *decoder);

/** Says that the viewer chose another channel or service.
    @param decoder from Kova_Captions_Create
    @param source a 608 channel: both its memories are erased, so that it starts empty [79.101(f)]; style and cursor
           stay. A decoded service: nothing changes, its current windows may be shown at once.
    @param keep not 0: the memories are not erased, and the channel's display appears at once
    @return 0, or -1 for a null decoder or a source that is not decoded */
KOVA_CAPTIONS_API int Kova_Captions_Select(KovaCaptions *decoder, uint8_t source, int keep);

/* --------------------------------------------------------------------------------------------------------- Reading */

/** Gives a number that changes whenever the state of any source does. Cheap enough for polling: takes no lock.
    @param decoder from Kova_Captions_Create, or null
    @return the number; 0 for a null decoder */
KOVA_CAPTIONS_API uint32_t Kova_Captions_Revision(const KovaCaptions *decoder);

/** Copies what every source has.
    @param decoder from Kova_Captions_Create
    @param source KOVA_CAPTIONS_CC1 to KOVA_CAPTIONS_T4, or a service
    @param status filled
    @return 0, or -1 for a null pointer or a source that is not decoded */
KOVA_CAPTIONS_API int Kova_Captions_GetStatus(KovaCaptions *decoder, uint8_t source,
                                              KovaCaptionsStatus *status);

/** Copies a 608 channel.
    @param decoder from Kova_Captions_Create
    @param source KOVA_CAPTIONS_CC1 to KOVA_CAPTIONS_T4
    @param channel filled
    @return 0, or -1 for a null pointer or another source */
KOVA_CAPTIONS_API int Kova_Captions_GetChannel(KovaCaptions *decoder, uint8_t source,
                                               KovaCaptionsChannel *channel);

/** Copies a service and some of its windows, all of one moment.
    @param decoder from Kova_Captions_Create
    @param service 1 to 63
    @param state null: not wanted
    @param windows KOVA_CAPTIONS_WINDOWS entries, of which those of window_map are written, also if the window does not
           exist; may be null if the map is 0
    @param window_map bit n is window n
    @return 0, or -1 for a null decoder, null windows with a map, or a service that is not decoded */
KOVA_CAPTIONS_API int Kova_Captions_GetService(KovaCaptions *decoder, uint8_t service,
                                               KovaCaptionsService *state, KovaCaptionsWindow *windows,
                                               uint8_t window_map);

/** Copies the extended data.
    @param decoder from Kova_Captions_Create
    @param program filled
    @return 0, or -1 for a null pointer */
KOVA_CAPTIONS_API int Kova_Captions_GetProgram(KovaCaptions *decoder, KovaCaptionsProgram *program);

/** Copies which sources carry something.
    @param decoder from Kova_Captions_Create
    @param activity filled
    @return 0, or -1 for a null pointer */
KOVA_CAPTIONS_API int Kova_Captions_GetActivity(KovaCaptions *decoder, KovaCaptionsActivity *activity);

/** Copies the counters.
    @param decoder from Kova_Captions_Create
    @param counters filled
    @return 0, or -1 for a null pointer */
KOVA_CAPTIONS_API int Kova_Captions_GetCounters(KovaCaptions *decoder, KovaCaptionsCounters *counters);

/** What Kova_Captions_NextChange looks for. */
enum KovaCaptionsChange {
    /** Delays and timeouts: the state will change. */
    KOVA_CAPTIONS_CHANGE_STATE = 1,
    /** Effects, rolls and scrolls under way: the next step, at most KOVA_CAPTIONS_STEP ahead, or the end. */
    KOVA_CAPTIONS_CHANGE_MOTION = 2,
    /** The next change between on and off of what flashes on display. */
    KOVA_CAPTIONS_CHANGE_FLASH = 4
};

/** Says when something changes next without further bytes: when to call Kova_Captions_Advance and to draw again.
    @param decoder from Kova_Captions_Create, or null
    @param source KOVA_CAPTIONS_NONE for all sources together
    @param kinds KOVA_CAPTIONS_CHANGE_STATE and so on, added up
    @return a time after the latest one; KOVA_CAPTIONS_NEVER if nothing will change, for a null decoder and for a source
            that is not decoded */
KOVA_CAPTIONS_API int64_t Kova_Captions_NextChange(KovaCaptions *decoder, uint8_t source, unsigned kinds);

/* ---------------------------------------------------------------------------------------------------------- Events */

/** Takes the oldest event out.
    @param decoder from Kova_Captions_Create
    @param event filled if there is one
    @return 1 and the event, 0 if there is none, -1 for a null pointer

    When event_capacity events wait, new ones are lost and counted. */
KOVA_CAPTIONS_API int Kova_Captions_NextEvent(KovaCaptions *decoder, KovaCaptionsEvent *event);

/** Ends the runs of text that are open, so that Kova_Captions_NextEvent returns them: at the end of a file. Changes
    nothing else.
    @param decoder from Kova_Captions_Create
    @return 0, or -1 for a null decoder */
KOVA_CAPTIONS_API int Kova_Captions_EndRuns(KovaCaptions *decoder);

/** Writes an event for people, name and arguments, such as `SetPenLocation row=0 column=3` or `Text "HELLO"`, in UTF-8
    without a line feed. In a text `"` and `\` are escaped with a backslash.
    @param event from Kova_Captions_NextEvent
    @param line room for size bytes; what does not fit is cut off, at a whole character, and a zero byte ends it; may be
           null if size is 0
    @param size bytes of line; KOVA_CAPTIONS_LINE is always enough
    @return the length of the whole line without the zero byte; -1 for a null pointer

    Takes no lock. */
KOVA_CAPTIONS_API int Kova_Captions_FormatEvent(const KovaCaptionsEvent *event, char *line, size_t size);

/** Names an event's code. Takes no lock.
    @param code KOVA_CAPTIONS_EVENT_TEXT and so on
    @return such as "DefineWindow"; "Unknown" for another number. Static. */
KOVA_CAPTIONS_API const char *Kova_Captions_EventName(uint8_t code);

/** Names an event's argument. Takes no lock.
    @param code KOVA_CAPTIONS_EVENT_TEXT and so on
    @param index from 0
    @return such as "row"; null if the code has no such argument. Static. */
KOVA_CAPTIONS_API const char *Kova_Captions_ArgumentName(uint8_t code, unsigned index);

/** Names a source. Takes no lock.
    @param source KOVA_CAPTIONS_CC1 and so on
    @return "cc1", "t4", "s1", "s63" or "xds"; "-" for KOVA_CAPTIONS_NONE and other numbers. Static. */
KOVA_CAPTIONS_API const char *Kova_Captions_SourceName(uint8_t source);

/** Finds a source by its name. Takes no lock.
    @param name as Kova_Captions_SourceName gives it, in small or capital letters, or null
    @return the source; KOVA_CAPTIONS_NONE if there is none of that name */
KOVA_CAPTIONS_API uint8_t Kova_Captions_SourceByName(const char *name);

#ifdef __cplusplus
}
#endif

#endif /* KOVA_CAPTIONS_H */
