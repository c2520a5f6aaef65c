// SPDX-License-Identifier: MIT
// Names for people: sources, events, arguments.
#include <kova/kova_captions.h>

#include "lines.h"

namespace captions
{

// ------------------------------------------------------------------------------------------------------------- Events

// One line per event, in the order of KovaCaptionsCode: its name, then its arguments, each with a first letter that says
// how it is printed: # decimal, h two hexadecimal digits, H four, C a colour of 708, or a letter of ValueNames.
static const char kEvents[] =
    "Text\0\0"
    "TransparentSpace\0\0"
    "Backspace\0\0"
    "CarriageReturn\0\0"
    "UnknownCode\0Hcode\0\0"
    "ResumeCaptionLoading\0\0"
    "AlarmOff\0\0"
    "AlarmOn\0\0"
    "DeleteToEndOfRow\0\0"
    "RollUp\0#rows\0\0"
    "FlashOn\0\0"
    "ResumeDirectCaptioning\0\0"
    "TextRestart\0\0"
    "ResumeTextDisplay\0\0"
    "EraseDisplayedMemory\0\0"
    "EraseNonDisplayedMemory\0\0"
    "EndOfCaption\0\0"
    "TabOffset\0#columns\0\0"
    "Preamble\0#row\0#indent\0ccolor\0#italics\0#underline\0\0"
    "MidRow\0ccolor\0#italics\0#underline\0\0"
    "BackgroundAttributes\0ccolor\0oopacity\0\0"
    "BlackForeground\0#underline\0\0"
    "CharacterSet\0hset\0\0"
    "EndOfText\0\0"
    "FormFeed\0\0"
    "HorizontalCarriageReturn\0\0"
    "SetCurrentWindow\0#window\0\0"
    "ClearWindows\0hwindows\0\0"
    "DisplayWindows\0hwindows\0\0"
    "HideWindows\0hwindows\0\0"
    "ToggleWindows\0hwindows\0\0"
    "DeleteWindows\0hwindows\0\0"
    "Delay\0#tenths\0\0"
    "DelayCancel\0\0"
    "Reset\0\0"
    "SetPenAttributes\0#tag\0Voffset\0Ssize\0#italics\0#underline\0Eedge\0#font\0\0"
    "SetPenColor\0Cforeground\0Oforeground_opacity\0Cbackground\0Obackground_opacity\0Cedge\0\0"
    "SetPenLocation\0#row\0#column\0\0"
    "SetWindowAttributes\0Cfill\0Ofill_opacity\0Eborder\0Cborder_color\0#wordwrap\0"
    "Dprint\0Dscroll\0Jjustify\0Feffect\0Deffect_direction\0#effect_speed\0\0"
    "DefineWindow\0#window\0#visible\0#rowlock\0#collock\0#priority\0#relative\0"
    "#anchor_v\0#anchor_h\0#anchor\0#rows\0#columns\0#window_style\0#pen_style\0\0"
    "ProgramStart\0#month\0#day\0#hour\0#minute\0\0"
    "ProgramName\0\0"
    "ContentAdvisory\0Rsystem\0#rating\0#violence\0#sex\0#language\0#dialog\0\0"
    "NetworkName\0\0"
    "CallLetters\0\0"
    "SequenceGap\0#expected\0#received\0\0"
    "ShortPacket\0#bytes\0#announced\0\0"
    "StrayData\0\0"
    "BadServiceBlock\0hheader\0\0"
    "CutElement\0#bytes\0\0"
    "BufferFull\0\0"
    "ParityError\0#field\0hfirst\0hsecond\0\0"
    "InvalidData\0#field\0\0"
    "CutCcData\0#count\0#present\0\0"
    "Timeout\0\0"
    "Discontinuity\0\0";

// The list of an event, or null. It starts with the event's name.
static const char *FindEvent(uint8_t code)
{
    const char *event = kEvents;
    if (code == 0) return nullptr;
    for (unsigned left = code - 1U; left > 0; --left) {
        while (*event) event = After(event);
        ++event;
        if (event == kEvents + sizeof kEvents - 1) return nullptr;
    }
    return event;
}

static const char *FindArgument(const char *event, unsigned index)
{
    const char *const argument = Nth(event, index + 1);
    return *argument ? argument : nullptr;
}

// ---------------------------------------------------------------------------------------------------------- Arguments

static void WriteHexadecimal(Line &line, unsigned value, int digits)
{
    Write(line, "0x");
    while (digits-- > 0) Write(line, &"0123456789abcdef"[value >> 4 * digits & 0x0F], 1);
}

// Red, green and blue of a colour of 608, one bit each.
static unsigned Components(unsigned color)
{
    return (color >> 3 & 4) | (color >> 2 & 2) | (color & 1);
}

static void WriteName(Line &line, char letter, unsigned value)
{
    const char *const name = Nth(ValueNames(letter), value);
    return *name ? Write(line, name) : WriteDecimal(line, value);
}

static void WriteArgument(Line &line, const char *argument, uint16_t value)
{
    if (value == KOVA_CAPTIONS_ABSENT) return;
    Write(line, " ");
    Write(line, argument + 1);
    Write(line, "=");
    switch (argument[0]) {
    case 'h':
        return WriteHexadecimal(line, value, 2);
    case 'H':
        return WriteHexadecimal(line, value, 4);
    case 'c':
        return WriteName(line, 'c', Components(value));
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
    Line line = Start(text, size);
    const char *const names = FindEvent(event->code);

    Write(line, Kova_Captions_EventName(event->code));
    for (unsigned i = 0; names && i < event->argument_count && i < KOVA_CAPTIONS_EVENT_ARGUMENTS; ++i) {
        const char *const argument = FindArgument(names, i);
        if (argument) WriteArgument(line, argument, event->arguments[i]);
    }
    WriteText(line, *event);
    return int(line.length);
}

const char *Kova_Captions_EventName(uint8_t code)
{
    const char *const event = FindEvent(code);
    return event ? event : "Unknown";
}

const char *Kova_Captions_ArgumentName(uint8_t code, unsigned index)
{
    const char *const event = FindEvent(code), *const argument = event ? FindArgument(event, index) : nullptr;
    return argument ? argument + 1 : nullptr;
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
