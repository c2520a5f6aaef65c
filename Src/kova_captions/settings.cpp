// SPDX-License-Identifier: MIT
// The viewer's settings: their text form, and how they override what a stream asks for.
#include <kova/kova_captions_settings.h>

#include <string.h>

#include "lines.h"

namespace captions
{

static const unsigned kVersion = 1;

// The settings in the order of the record's fields, each with a first letter for the kind of its value: c a colour, O an
// opacity, E an edge, T a font style, 0 as provided or off, 1 off or on, % the size, a the safe area, s a source,
// l a language, f a file.
static const char kSettings[] = "cforeground\0"
                                "Oforeground_opacity\0"
                                "cbackground\0"
                                "Obackground_opacity\0"
                                "cwindow\0"
                                "Owindow_opacity\0"
                                "Eedge_type\0"
                                "cedge_color\0"
                                "Tfont\0"
                                "0italics\0"
                                "0underline\0"
                                "0flash\0"
                                "%size\0"
                                "asafe_area\0"
                                "ssource\0"
                                "1easy_reader\0"
                                "llanguage\0"
                                "ffont_file_default\0"
                                "ffont_file_mono_serif\0"
                                "ffont_file_serif\0"
                                "ffont_file_mono_sans\0"
                                "ffont_file_sans\0"
                                "ffont_file_casual\0"
                                "ffont_file_cursive\0"
                                "ffont_file_small_capitals\0";

static const char kFonts[] = "default\0mono-serif\0serif\0mono-sans\0sans\0casual\0cursive\0small-capitals\0";

// Each setting before the language is one byte, at its number.
static const unsigned kLanguage = 16;
static const unsigned kFirstFile = 17;
static_assert(offsetof(KovaCaptionsSettings, easy_reader) == kLanguage - 1, "the bytes come first");

static const uint8_t kSmallestSafeArea = 80;
static const uint8_t kLargestSafeArea = 100;

// ------------------------------------------------------------------------------------------------------------- Values

// The name of a value, or the empty name behind the last.
static const char *NameOf(char kind, unsigned number)
{
    switch (kind) {
    case '1':
        return Nth("off\0on\0", number);
    case 's':
        if (number > KOVA_CAPTIONS_T4) return "";
        return number == KOVA_CAPTIONS_NONE ? "automatic" : Kova_Captions_SourceName(uint8_t(number));
    case '%':
    case 'a':
    case 'l':
    case 'f':
        return "";
    default:
        if (number == 0) return "as-provided";
        if (kind == '0') return Nth("off\0", number - 1);
        return Nth(kind == 'T' ? kFonts : ValueNames(kind), number - 1);
    }
}

// The value of a name. The bits of a colour's number are its components, each of which is off or full.
static uint8_t ValueOf(char kind, unsigned number)
{
    if (kind == '1' || kind == 's') return uint8_t(number);
    if (number-- == 0) return KOVA_CAPTIONS_AS_PROVIDED;
    if (kind != 'c') return uint8_t(number);
    return uint8_t((number & 4 ? KOVA_CAPTIONS_RED : 0) | (number & 2 ? KOVA_CAPTIONS_GREEN : 0) |
                   (number & 1 ? KOVA_CAPTIONS_BLUE : 0));
}

static bool IsPercentage(char kind, unsigned value)
{
    if (kind == '%') return value >= KOVA_CAPTIONS_SMALLEST_SIZE && value <= KOVA_CAPTIONS_LARGEST_SIZE;
    return value >= kSmallestSafeArea && value <= kLargestSafeArea;
}

static uint8_t DefaultOf(char kind)
{
    if (kind == '%') return 100;
    return kind == 'a' ? kSmallestSafeArea : ValueOf(kind, 0);
}

// ------------------------------------------------------------------------------------------------------------ Reading

// A part of a text.
struct View {
    const char *text;
    size_t size;
};

static View Before(View view, const char *end)
{
    return {view.text, size_t(end - view.text)};
}

static View From(View view, const char *begin)
{
    return {begin, size_t(view.text + view.size - begin)};
}

static bool IsBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r';
}

static View Trimmed(View view)
{
    while (view.size > 0 && IsBlank(view.text[0])) view = From(view, view.text + 1);
    while (view.size > 0 && IsBlank(view.text[view.size - 1])) --view.size;
    return view;
}

static const char *Find(View view, char byte)
{
    return view.size > 0 ? static_cast<const char *>(memchr(view.text, byte, view.size)) : nullptr;
}

static bool Is(View view, const char *name)
{
    return strlen(name) == view.size && memcmp(view.text, name, view.size) == 0;
}

static bool ReadNumber(View view, unsigned &number)
{
    number = 0;
    if (view.size == 0 || view.size > 9) return false;
    for (size_t i = 0; i < view.size; ++i) {
        if (view.text[i] < '0' || view.text[i] > '9') return false;
        number = number * 10 + unsigned(view.text[i] - '0');
    }
    return true;
}

// Red, green and blue.
static bool ReadComponents(View view, uint8_t &color)
{
    if (view.size != 5 || view.text[1] != ',' || view.text[3] != ',') return false;
    color = 0;
    for (size_t i = 0; i < view.size; i += 2) {
        if (view.text[i] < '0' || view.text[i] > '3') return false;
        color = uint8_t(color << 2 | (view.text[i] - '0'));
    }
    return true;
}

static bool ReadByte(View view, char kind, uint8_t &value)
{
    unsigned number = 0;

    if (kind == '%' || kind == 'a') {
        if (!ReadNumber(view, number) || !IsPercentage(kind, number)) return false;
        value = uint8_t(number);
        return true;
    }
    for (; *NameOf(kind, number); ++number) {
        if (!Is(view, NameOf(kind, number))) continue;
        value = ValueOf(kind, number);
        return true;
    }
    return kind == 'c' && ReadComponents(view, value);
}

static bool IsLanguage(const char *text)
{
    for (int i = 0; i < 3; ++i) {
        if (text[i] < 'a' || text[i] > 'z') return false;
    }
    return true;
}

static bool ReadLanguage(View view, char (&language)[4])
{
    if (view.size != 0 && (view.size != 3 || !IsLanguage(view.text))) return false;
    memset(language, 0, sizeof language);
    memcpy(language, view.text, view.size);
    return true;
}

static bool IsFileName(View view)
{
    if (view.size >= KOVA_CAPTIONS_FONT_FILE || Trimmed(view).size != view.size) return false;
    for (size_t i = 0; i < view.size; ++i) {
        const auto byte = static_cast<unsigned char>(view.text[i]);
        if (byte < 0x20 || byte == 0x7F) return false;
    }
    return true;
}

static bool ReadFile(View view, char (&file)[KOVA_CAPTIONS_FONT_FILE])
{
    if (!IsFileName(view)) return false;
    memset(file, 0, sizeof file);
    memcpy(file, view.text, view.size);
    return true;
}

static uint8_t *BytesOf(KovaCaptionsSettings &settings)
{
    return reinterpret_cast<uint8_t *>(&settings);
}

// The setting of a name, or the end of the list.
static unsigned IndexOf(View name)
{
    unsigned index = 0;
    while (*Nth(kSettings, index) && !Is(name, Nth(kSettings, index) + 1)) ++index;
    return index;
}

static bool ReadValue(KovaCaptionsSettings &settings, unsigned index, View value)
{
    if (index == kLanguage) return ReadLanguage(value, settings.language);
    if (index >= kFirstFile) return ReadFile(value, settings.fonts[index - kFirstFile]);
    return ReadByte(value, Nth(kSettings, index)[0], BytesOf(settings)[index]);
}

static bool ReadLine(KovaCaptionsSettings &settings, View line, unsigned &version)
{
    const char *const sign = Find(line, '=');

    if (line.size == 0 || line.text[0] == '#') return true;
    if (!sign) return false;
    const View name = Trimmed(Before(line, sign)), value = Trimmed(From(line, sign + 1));
    if (Is(name, "version")) return ReadNumber(value, version) && version > 0;
    const unsigned index = IndexOf(name);
    return (*Nth(kSettings, index) && ReadValue(settings, index, value)) || version > kVersion;
}

// ------------------------------------------------------------------------------------------------------------ Writing

static void WriteByte(Line &line, char kind, uint8_t value)
{
    if (kind == '%' || kind == 'a') {
        return WriteDecimal(line, IsPercentage(kind, value) ? value : DefaultOf(kind));
    }
    for (unsigned number = 0; *NameOf(kind, number); ++number) {
        if (ValueOf(kind, number) == value) return Write(line, NameOf(kind, number));
    }
    if (kind == 'c' && value <= KOVA_CAPTIONS_WHITE) return WriteColor(line, value);
    Write(line, NameOf(kind, 0));
}

static bool WriteValue(Line &line, const KovaCaptionsSettings &settings, unsigned index)
{
    if (index == kLanguage) {
        if (IsLanguage(settings.language)) Write(line, settings.language, 3);
        return true;
    }
    if (index >= kFirstFile) {
        const char *const name = settings.fonts[index - kFirstFile];
        const View view = {name, strnlen(name, KOVA_CAPTIONS_FONT_FILE)};
        if (IsFileName(view)) Write(line, view.text, view.size);
        return IsFileName(view);
    }
    WriteByte(line, Nth(kSettings, index)[0], reinterpret_cast<const uint8_t *>(&settings)[index]);
    return true;
}

// ----------------------------------------------------------------------------------------------------------- Applying

static bool Has(uint8_t value, uint8_t largest)
{
    return value <= largest;
}

static uint8_t Chosen(uint8_t value, uint8_t largest, uint8_t provided)
{
    return Has(value, largest) ? value : provided;
}

static uint8_t Opacity(const KovaCaptionsSettings &settings, uint8_t value, uint8_t provided)
{
    const uint8_t opacity = Chosen(value, KOVA_CAPTIONS_TRANSPARENT, provided);
    return settings.flash == 0 && opacity == KOVA_CAPTIONS_FLASH ? uint8_t(KOVA_CAPTIONS_SOLID) : opacity;
}

static bool IsUnreadable(const KovaCaptionsPen &pen)
{
    return pen.foreground == pen.background && pen.foreground_opacity == KOVA_CAPTIONS_SOLID &&
           pen.background_opacity == KOVA_CAPTIONS_SOLID && pen.edge_type == KOVA_CAPTIONS_EDGE_NONE;
}

// Black or white, whichever differs more in brightness, to which green adds most and blue least.
static uint8_t Contrast(uint8_t color)
{
    const int brightness = 2 * (color >> 4 & 3) + 5 * (color >> 2 & 3) + (color & 3);
    return uint8_t(brightness * 2 < 8 * 3 ? KOVA_CAPTIONS_WHITE : KOVA_CAPTIONS_BLACK);
}

static void KeepReadable(const KovaCaptionsSettings &settings, bool wasUnreadable, KovaCaptionsPen &pen)
{
    const bool text = Has(settings.foreground, KOVA_CAPTIONS_WHITE),
               background = Has(settings.background, KOVA_CAPTIONS_WHITE);

    if (!IsUnreadable(pen) || (text && background)) return;
    if (!text && !background && wasUnreadable) return;
    (text ? pen.background : pen.foreground) = Contrast(pen.foreground);
}

} // namespace captions

using namespace captions;

void Kova_Captions_GetDefaultSettings(KovaCaptionsSettings *settings)
{
    if (!settings) return;
    memset(settings, 0, sizeof *settings);
    for (unsigned i = 0; i < kLanguage; ++i) BytesOf(*settings)[i] = DefaultOf(Nth(kSettings, i)[0]);
}

int Kova_Captions_ReadSettings(KovaCaptionsSettings *settings, const char *text, size_t size, unsigned *line)
{
    if (line) *line = 0;
    if (!settings || !text) return -1;
    static const char mark[] = "\xEF\xBB\xBF";
    KovaCaptionsSettings read = *settings;
    unsigned version = kVersion, number = 0;
    View rest = {text, size};

    if (size >= 3 && memcmp(text, mark, 3) == 0) rest = From(rest, text + 3);
    while (rest.size > 0) {
        const char *const end = Find(rest, '\n');
        ++number;
        if (!ReadLine(read, Trimmed(end ? Before(rest, end) : rest), version)) {
            if (line) *line = number;
            return -1;
        }
        rest = end ? From(rest, end + 1) : View{nullptr, 0};
    }
    *settings = read;
    return 0;
}

int Kova_Captions_WriteSettings(const KovaCaptionsSettings *settings, char *text, size_t size)
{
    if (!settings || (!text && size > 0)) return -1;
    Line line = Start(text, size);

    Write(line, "# Caption settings\nversion = ");
    WriteDecimal(line, kVersion);
    for (unsigned i = 0; *Nth(kSettings, i); ++i) {
        Write(line, "\n");
        Write(line, Nth(kSettings, i) + 1);
        Write(line, " = ");
        if (!WriteValue(line, *settings, i)) return -1;
    }
    Write(line, "\n");
    return int(line.length);
}

int Kova_Captions_WriteSetting(const KovaCaptionsSettings *settings, unsigned index, char *text, size_t size)
{
    if (!settings || (!text && size > 0) || !*Nth(kSettings, index)) return -1;
    Line line = Start(text, size);

    return WriteValue(line, *settings, index) ? int(line.length) : -1;
}

const char *Kova_Captions_SettingName(unsigned index)
{
    const char *const setting = Nth(kSettings, index);
    return *setting ? setting + 1 : nullptr;
}

const char *Kova_Captions_SettingValue(unsigned index, unsigned number)
{
    const char *const setting = Nth(kSettings, index), *const name = *setting ? NameOf(*setting, number) : "";
    return *name ? name : nullptr;
}

void Kova_Captions_ApplyToPen(const KovaCaptionsSettings *settings, const KovaCaptionsPen *provided,
                              KovaCaptionsPen *pen)
{
    if (!settings || !provided || !pen) return;
    const bool wasUnreadable = IsUnreadable(*provided);

    *pen = *provided;
    pen->foreground = Chosen(settings->foreground, KOVA_CAPTIONS_WHITE, pen->foreground);
    pen->foreground_opacity = Opacity(*settings, settings->foreground_opacity, pen->foreground_opacity);
    pen->background = Chosen(settings->background, KOVA_CAPTIONS_WHITE, pen->background);
    pen->background_opacity = Opacity(*settings, settings->background_opacity, pen->background_opacity);
    pen->edge_type = Chosen(settings->edge_type, KOVA_CAPTIONS_EDGE_SHADOW_RIGHT, pen->edge_type);
    pen->edge_color = Chosen(settings->edge_color, KOVA_CAPTIONS_WHITE, pen->edge_color);
    pen->font = Chosen(settings->font, KOVA_CAPTIONS_FONT_SMALL_CAPITALS, pen->font);
    pen->italics = Chosen(settings->italics, 0, pen->italics);
    pen->underline = Chosen(settings->underline, 0, pen->underline);
    KeepReadable(*settings, wasUnreadable, *pen);
}

void Kova_Captions_ApplyToWindow(const KovaCaptionsSettings *settings,
                                 const KovaCaptionsWindowAttributes *provided,
                                 KovaCaptionsWindowAttributes *attributes)
{
    if (!settings || !provided || !attributes) return;
    *attributes = *provided;
    attributes->fill_color = Chosen(settings->window, KOVA_CAPTIONS_WHITE, attributes->fill_color);
    attributes->fill_opacity = Opacity(*settings, settings->window_opacity, attributes->fill_opacity);
}
