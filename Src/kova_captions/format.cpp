// SPDX-License-Identifier: MIT
// Names for people: sources, events, arguments.
#include <kova/kova_captions.h>

#include <string.h>

namespace captions
{

// ------------------------------------------------------------------------------------------------------------- Values

static const char *const kOpacities[] = {"solid", "flash", "translucent", "transparent"};
static const char *const kOpacities608[] = {"solid", "flash", "semi-transparent", "transparent"};
static const char *const kDirections[] = {"left-to-right", "right-to-left", "top-to-bottom", "bottom-to-top"};
static const char *const kJustifications[] = {"left", "right", "center", "full"};
static const char *const kEffects[] = {"snap", "fade", "wipe", "reserved"};
static const char *const kEdges[] = {"none", "raised", "depressed", "uniform", "shadow-left", "shadow-right"};
static const char *const kSizes[] = {"small", "standard", "large"};
static const char *const kOffsets[] = {"subscript", "normal", "superscript"};
static const char *const kSystems[] = {"none", "mpa", "us-tv", "canadian-english", "canadian-french"};

// The colours of 608, by red, green and blue: each is off or full.
static const char *const kColors608[] = {"black", "blue",    "green",  "cyan",
                                         "red",   "magenta", "yellow", "white"};

// How an argument is written: the first letter of its entry.
struct Names {
    char letter;
    uint8_t count;
    const char *const *names;
};

#define NAMES(letter, names)                                                                                 \
    {                                                                                                        \
        letter, sizeof(names) / sizeof *(names), names                                                       \
    }
static const Names kNames[] = {
    NAMES('O', kOpacities),      NAMES('o', kOpacities608), NAMES('D', kDirections),
    NAMES('J', kJustifications), NAMES('F', kEffects),      NAMES('E', kEdges),
    NAMES('S', kSizes),          NAMES('V', kOffsets),      NAMES('R', kSystems),
};
#undef NAMES

// ------------------------------------------------------------------------------------------------------------- Events

struct Entry {
    uint8_t code;
    const char *name;
    // One entry an argument, each behind its letter: # decimal, x two hexadecimal digits, X four, c a colour of 608, C
    // one of 708, or a letter of kNames.
    const char *arguments[14];
};

static const Entry kEntries[] = {
    {KOVA_CAPTIONS_EVENT_TEXT, "Text", {}},
    {KOVA_CAPTIONS_EVENT_TRANSPARENT_SPACE, "TransparentSpace", {}},
    {KOVA_CAPTIONS_EVENT_BACKSPACE, "Backspace", {}},
    {KOVA_CAPTIONS_EVENT_CARRIAGE_RETURN, "CarriageReturn", {}},
    {KOVA_CAPTIONS_EVENT_UNKNOWN_CODE, "UnknownCode", {"Xcode"}},
    {KOVA_CAPTIONS_EVENT_RESUME_CAPTION_LOADING, "ResumeCaptionLoading", {}},
    {KOVA_CAPTIONS_EVENT_ALARM_OFF, "AlarmOff", {}},
    {KOVA_CAPTIONS_EVENT_ALARM_ON, "AlarmOn", {}},
    {KOVA_CAPTIONS_EVENT_DELETE_TO_END_OF_ROW, "DeleteToEndOfRow", {}},
    {KOVA_CAPTIONS_EVENT_ROLL_UP, "RollUp", {"#rows"}},
    {KOVA_CAPTIONS_EVENT_FLASH_ON, "FlashOn", {}},
    {KOVA_CAPTIONS_EVENT_RESUME_DIRECT_CAPTIONING, "ResumeDirectCaptioning", {}},
    {KOVA_CAPTIONS_EVENT_TEXT_RESTART, "TextRestart", {}},
    {KOVA_CAPTIONS_EVENT_RESUME_TEXT_DISPLAY, "ResumeTextDisplay", {}},
    {KOVA_CAPTIONS_EVENT_ERASE_DISPLAYED_MEMORY, "EraseDisplayedMemory", {}},
    {KOVA_CAPTIONS_EVENT_ERASE_NON_DISPLAYED_MEMORY, "EraseNonDisplayedMemory", {}},
    {KOVA_CAPTIONS_EVENT_END_OF_CAPTION, "EndOfCaption", {}},
    {KOVA_CAPTIONS_EVENT_TAB_OFFSET, "TabOffset", {"#columns"}},
    {KOVA_CAPTIONS_EVENT_PREAMBLE, "Preamble", {"#row", "#indent", "ccolor", "#italics", "#underline"}},
    {KOVA_CAPTIONS_EVENT_MID_ROW, "MidRow", {"ccolor", "#italics", "#underline"}},
    {KOVA_CAPTIONS_EVENT_BACKGROUND_ATTRIBUTES, "BackgroundAttributes", {"ccolor", "oopacity"}},
    {KOVA_CAPTIONS_EVENT_BLACK_FOREGROUND, "BlackForeground", {"#underline"}},
    {KOVA_CAPTIONS_EVENT_CHARACTER_SET, "CharacterSet", {"xset"}},
    {KOVA_CAPTIONS_EVENT_END_OF_TEXT, "EndOfText", {}},
    {KOVA_CAPTIONS_EVENT_FORM_FEED, "FormFeed", {}},
    {KOVA_CAPTIONS_EVENT_HORIZONTAL_CARRIAGE_RETURN, "HorizontalCarriageReturn", {}},
    {KOVA_CAPTIONS_EVENT_SET_CURRENT_WINDOW, "SetCurrentWindow", {"#window"}},
    {KOVA_CAPTIONS_EVENT_CLEAR_WINDOWS, "ClearWindows", {"xwindows"}},
    {KOVA_CAPTIONS_EVENT_DISPLAY_WINDOWS, "DisplayWindows", {"xwindows"}},
    {KOVA_CAPTIONS_EVENT_HIDE_WINDOWS, "HideWindows", {"xwindows"}},
    {KOVA_CAPTIONS_EVENT_TOGGLE_WINDOWS, "ToggleWindows", {"xwindows"}},
    {KOVA_CAPTIONS_EVENT_DELETE_WINDOWS, "DeleteWindows", {"xwindows"}},
    {KOVA_CAPTIONS_EVENT_DELAY, "Delay", {"#tenths"}},
    {KOVA_CAPTIONS_EVENT_DELAY_CANCEL, "DelayCancel", {}},
    {KOVA_CAPTIONS_EVENT_RESET, "Reset", {}},
    {KOVA_CAPTIONS_EVENT_SET_PEN_ATTRIBUTES,
     "SetPenAttributes",
     {"#tag", "Voffset", "Ssize", "#italics", "#underline", "Eedge", "#font"}},
    {KOVA_CAPTIONS_EVENT_SET_PEN_COLOR,
     "SetPenColor",
     {"Cforeground", "Oforeground_opacity", "Cbackground", "Obackground_opacity", "Cedge"}},
    {KOVA_CAPTIONS_EVENT_SET_PEN_LOCATION, "SetPenLocation", {"#row", "#column"}},
    {KOVA_CAPTIONS_EVENT_SET_WINDOW_ATTRIBUTES,
     "SetWindowAttributes",
     {"Cfill", "Ofill_opacity", "Eborder", "Cborder_color", "#wordwrap", "Dprint", "Dscroll", "Jjustify",
      "Feffect", "Deffect_direction", "#effect_speed"}},
    {KOVA_CAPTIONS_EVENT_DEFINE_WINDOW,
     "DefineWindow",
     {"#window", "#visible", "#rowlock", "#collock", "#priority", "#relative", "#anchor_v", "#anchor_h",
      "#anchor", "#rows", "#columns", "#window_style", "#pen_style"}},
    {KOVA_CAPTIONS_EVENT_PROGRAM_START, "ProgramStart", {"#month", "#day", "#hour", "#minute"}},
    {KOVA_CAPTIONS_EVENT_PROGRAM_NAME, "ProgramName", {}},
    {KOVA_CAPTIONS_EVENT_CONTENT_ADVISORY,
     "ContentAdvisory",
     {"Rsystem", "#rating", "#violence", "#sex", "#language", "#dialog"}},
    {KOVA_CAPTIONS_EVENT_NETWORK_NAME, "NetworkName", {}},
    {KOVA_CAPTIONS_EVENT_CALL_LETTERS, "CallLetters", {}},
    {KOVA_CAPTIONS_EVENT_SEQUENCE_GAP, "SequenceGap", {"#expected", "#received"}},
    {KOVA_CAPTIONS_EVENT_SHORT_PACKET, "ShortPacket", {"#bytes", "#announced"}},
    {KOVA_CAPTIONS_EVENT_STRAY_DATA, "StrayData", {}},
    {KOVA_CAPTIONS_EVENT_BAD_SERVICE_BLOCK, "BadServiceBlock", {"xheader"}},
    {KOVA_CAPTIONS_EVENT_CUT_ELEMENT, "CutElement", {"#bytes"}},
    {KOVA_CAPTIONS_EVENT_BUFFER_FULL, "BufferFull", {}},
    {KOVA_CAPTIONS_EVENT_PARITY_ERROR, "ParityError", {"#field", "xfirst", "xsecond"}},
    {KOVA_CAPTIONS_EVENT_INVALID_DATA, "InvalidData", {"#field"}},
    {KOVA_CAPTIONS_EVENT_CUT_CC_DATA, "CutCcData", {"#count", "#present"}},
    {KOVA_CAPTIONS_EVENT_TIMEOUT, "Timeout", {}},
    {KOVA_CAPTIONS_EVENT_DISCONTINUITY, "Discontinuity", {}},
};

static const Entry *FindEntry(uint8_t code)
{
    for (const Entry &entry : kEntries) {
        if (entry.code == code) return &entry;
    }
    return nullptr;
}

// -------------------------------------------------------------------------------------------------------------- Lines

struct Line {
    char *text;
    size_t size;
    // Of the whole line; what is beyond size is only counted.
    size_t length;
    bool cut;
};

// Writes bytes that belong together, or none of them once something did not fit.
static void Write(Line &line, const char *bytes, size_t count)
{
    line.cut |= line.length + count >= line.size;
    if (!line.cut) memcpy(line.text + line.length, bytes, count);
    if (!line.cut) line.text[line.length + count] = '\0';
    line.length += count;
}

static void Write(Line &line, const char *text)
{
    for (; *text; ++text) Write(line, text, 1);
}

static void WriteDecimal(Line &line, unsigned value)
{
    if (value >= 10) WriteDecimal(line, value / 10);
    Write(line, &"0123456789"[value % 10], 1);
}

static void WriteHexadecimal(Line &line, unsigned value, int digits)
{
    Write(line, "0x");
    while (digits-- > 0) Write(line, &"0123456789abcdef"[value >> 4 * digits & 0x0F], 1);
}

static void WriteColor(Line &line, unsigned color)
{
    WriteDecimal(line, color >> 4 & 3);
    Write(line, ",");
    WriteDecimal(line, color >> 2 & 3);
    Write(line, ",");
    WriteDecimal(line, color & 3);
}

static const char *ColorName(unsigned color)
{
    return kColors608[(color >> 3 & 4) | (color >> 2 & 2) | (color & 1)];
}

static void WriteName(Line &line, char letter, unsigned value)
{
    for (const Names &names : kNames) {
        if (names.letter == letter && value < names.count) return Write(line, names.names[value]);
    }
    WriteDecimal(line, value);
}

static void WriteArgument(Line &line, const char *argument, uint16_t value)
{
    if (value == KOVA_CAPTIONS_ABSENT) return;
    Write(line, " ");
    Write(line, argument + 1);
    Write(line, "=");
    switch (argument[0]) {
    case 'x':
        return WriteHexadecimal(line, value, 2);
    case 'X':
        return WriteHexadecimal(line, value, 4);
    case 'c':
        return Write(line, ColorName(value));
    case 'C':
        return WriteColor(line, value);
    default:
        return WriteName(line, argument[0], value);
    }
}

static void WriteCharacter(Line &line, uint16_t character)
{
    const char utf8[3] = {char(0xE0 | character >> 12), char(0x80 | (character >> 6 & 0x3F)),
                          char(0x80 | (character & 0x3F))};
    const char two[2] = {char(0xC0 | character >> 6), utf8[2]};
    const char ascii = char(character);

    if (character == '"' || character == '\\') {
        const char escaped[2] = {'\\', ascii};
        return Write(line, escaped, sizeof escaped);
    }
    if (character < 0x80) return Write(line, &ascii, 1);
    if (character < 0x800) return Write(line, two, sizeof two);
    Write(line, utf8, sizeof utf8);
}

static void WriteText(Line &line, const KovaCaptionsEvent &event)
{
    if (event.character_count == 0) return;
    Write(line, " \"");
    for (int i = 0; i < event.character_count && i < KOVA_CAPTIONS_EVENT_CHARACTERS; ++i) {
        WriteCharacter(line, event.characters[i]);
    }
    Write(line, "\"");
}

// The short names of all sources, made when the library is compiled.
struct SourceNames {
    char names[KOVA_CAPTIONS_XDS + 1][4];
};

static constexpr SourceNames MakeSourceNames()
{
    SourceNames made = {};
    made.names[0][0] = '-';
    for (int service = 1; service <= KOVA_CAPTIONS_S63; ++service) {
        char *const name = made.names[service];
        name[0] = 's';
        name[1] = char('0' + (service < 10 ? service : service / 10));
        if (service >= 10) name[2] = char('0' + service % 10);
    }
    for (int channel = 0; channel < 4; ++channel) {
        char *const captions = made.names[KOVA_CAPTIONS_CC1 + channel],
                    *const text = made.names[KOVA_CAPTIONS_T1 + channel];
        captions[0] = captions[1] = 'c';
        captions[2] = text[1] = char('1' + channel);
        text[0] = 't';
    }
    made.names[KOVA_CAPTIONS_XDS][0] = 'x';
    made.names[KOVA_CAPTIONS_XDS][1] = 'd';
    made.names[KOVA_CAPTIONS_XDS][2] = 's';
    return made;
}

static constexpr SourceNames kSources = MakeSourceNames();

static char Small(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
}

static bool IsSameName(const char *a, const char *b)
{
    while (*a && Small(*a) == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

} // namespace captions

using namespace captions;

int Kova_Captions_FormatEvent(const KovaCaptionsEvent *event, char *text, size_t size)
{
    if (!event || (!text && size > 0)) return -1;
    Line line = {text, size, 0, false};
    const Entry *const entry = FindEntry(event->code);

    if (size > 0) text[0] = '\0';
    Write(line, Kova_Captions_EventName(event->code));
    for (int i = 0; entry && i < event->argument_count && i < KOVA_CAPTIONS_EVENT_ARGUMENTS; ++i) {
        if (!Kova_Captions_ArgumentName(event->code, unsigned(i))) break;
        WriteArgument(line, entry->arguments[i], event->arguments[i]);
    }
    WriteText(line, *event);
    return int(line.length);
}

const char *Kova_Captions_EventName(uint8_t code)
{
    const Entry *const entry = FindEntry(code);
    return entry ? entry->name : "Unknown";
}

const char *Kova_Captions_ArgumentName(uint8_t code, unsigned index)
{
    const Entry *const entry = FindEntry(code);
    constexpr unsigned kMost = sizeof entry->arguments / sizeof *entry->arguments;
    if (!entry || index >= kMost || !entry->arguments[index]) return nullptr;
    return entry->arguments[index] + 1;
}

const char *Kova_Captions_SourceName(uint8_t source)
{
    return kSources.names[source <= KOVA_CAPTIONS_XDS ? int(source) : int(KOVA_CAPTIONS_NONE)];
}

uint8_t Kova_Captions_SourceByName(const char *name)
{
    if (!name) return KOVA_CAPTIONS_NONE;
    for (uint8_t source = KOVA_CAPTIONS_S1; source <= KOVA_CAPTIONS_XDS; ++source) {
        if (IsSameName(name, kSources.names[source])) return source;
    }
    return KOVA_CAPTIONS_NONE;
}
