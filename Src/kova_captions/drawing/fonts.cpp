// SPDX-License-Identifier: MIT
#include "fonts.h"

#include <string.h>

namespace captions
{

// Room above and below the letters of a row, for edges.
constexpr int kRoom = 1;
constexpr kova_uint32 kHighest = 255;
// Letters fill nine tenths of their cells, so that backgrounds are larger [79.102(o)(1)], but grow by no more than a picture of 4:3 does on a screen of 16:9.
constexpr kova_uint32 kWidest = kNaturalWidth * 4 / 3;

// ------------------------------------------------------------------------------------------------------------- Files

uint8_t Fonts::Add(const char *name)
{
    if (!name || !name[0] || strlen(name) >= KOVA_CAPTIONS_FONT_FILE) return kNoFont;
    for (int i = 0; i < m_count; ++i) {
        if (strcmp(m_files[i].name, name) == 0) return uint8_t(i);
    }
    if (m_count == kFonts) return kNoFont;
    File &file = m_files[m_count];
    memset(&file, 0, sizeof file);
    memcpy(file.name, name, strlen(name));
    ReadCoverage(name, file.coverage);
    file.number = -1;
    return uint8_t(m_count++);
}

void Fonts::Start(const KovaCaptionsScreen &screen, const KovaCaptionsSettings &settings)
{
    m_screen = screen;
    m_count = m_fallback_count = 0;
    uint8_t first = kNoFont;
    for (int i = 0; i < kFonts; ++i) {
        m_given[i] = Add(screen.fonts[i]);
        if (first == kNoFont) first = m_given[i];
    }
    for (int i = 0; i < kFonts; ++i) m_italics[i] = Add(screen.italic_fonts[i]);
    for (const char *name : screen.fallbacks) {
        const uint8_t font = Add(name);
        if (font != kNoFont) m_fallbacks[m_fallback_count++] = font;
    }
    for (uint8_t &font : m_given) {
        if (font == kNoFont) font = first;
    }
    // The names belong to the caller.
    memset(m_screen.fonts, 0, sizeof m_screen.fonts);
    memset(m_screen.italic_fonts, 0, sizeof m_screen.italic_fonts);
    memset(m_screen.fallbacks, 0, sizeof m_screen.fallbacks);
    Use(settings);
    Forget();
}

void Fonts::Use(const KovaCaptionsSettings &settings)
{
    m_percent = settings.size;
    for (int i = 0; i < kFonts; ++i) {
        char name[KOVA_CAPTIONS_FONT_FILE];
        memcpy(name, settings.fonts[i], sizeof name);
        name[sizeof name - 1] = 0;
        const uint8_t chosen = Add(name);
        m_styles[i] = chosen == kNoFont ? m_given[i] : chosen;
    }
}

void Fonts::Forget()
{
    for (File &file : m_files) {
        file.number = -1;
        file.failed = false;
        file.row_height = 0;
    }
    Deselect();
}

// -------------------------------------------------------------------------------------------------------- Characters

// What a character is shown as where the font lacks it; 0 if it has no substitute. [79.102(d)(3), table 2]
static uint16_t SubstituteOf(uint16_t character)
{
    static const struct {
        uint16_t character, substitute;
    } substitutes[] = {
        {0x2026, '_'}, {0x2018, '\''}, {0x2019, '\''}, {0x201C, '"'}, {0x201D, '"'}, {0x2022, 0xB7},
        {0x215B, '%'}, {0x215C, '%'},  {0x215D, '%'},  {0x215E, '%'}, {0x2502, '|'}, {0x2510, '-'},
        {0x2514, '-'}, {0x2500, '-'},  {0x2518, '-'},  {0x250C, '-'}, {0x00A0, ' '},
    };
    for (const auto &row : substitutes) {
        if (row.character == character) return row.substitute;
    }
    return 0;
}

// The upper case of Latin-1 and Latin Extended-A letters; the same for what has none.
static uint16_t UpperCase(uint16_t character)
{
    if (character >= 'a' && character <= 'z') return uint16_t(character - 32);
    if (character >= 0xE0 && character <= 0xFE && character != 0xF7) return uint16_t(character - 32);
    if (character == 0xFF) return 0x178;
    if (character == 0x161 || character == 0x153) return uint16_t(character - 1);
    return character;
}

static bool IsWide(uint16_t character)
{
    return character >= 0x1100 && (character < 0x2000 || character >= 0x2E80) &&
           (character < 0xE000 || character >= 0xF900);
}

static int PercentOf(const Cell &cell)
{
    const int size = cell.font >> 6, offset = cell.edge >> 6;
    const int percent = size == KOVA_CAPTIONS_PEN_SMALL ? 80 : size == KOVA_CAPTIONS_PEN_LARGE ? 120 : 100;
    return offset == KOVA_CAPTIONS_NORMAL ? percent : percent * 60 / 100;
}

Glyph Fonts::Find(const Cell &cell, int row_height)
{
    const int style = cell.font >> 3 & 7;
    uint8_t font = m_styles[style];
    uint16_t character = cell.character;
    int percent = PercentOf(cell);
    bool slanted = cell.flags & kItalics;

    if (slanted && m_italics[style] != kNoFont && font == m_given[style]) {
        font = m_italics[style];
        slanted = false;
    }
    if (font == kNoFont) return {character, {kNoFont, 0, 0, 0}};
    if (style == KOVA_CAPTIONS_FONT_SMALL_CAPITALS) {
        // A file that serves another style has no small capitals of its own.
        bool shared = false;
        for (int i = 0; i < kFonts; ++i) shared |= i != style && m_styles[i] == font;
        if (shared && UpperCase(character) != character) {
            character = UpperCase(character);
            percent = percent * 80 / 100;
        }
    }
    if (character == kCaptionIcon) {
        character = 'C';
        percent = percent * 60 / 100;
    } else if (!m_files[font].coverage.Has(character)) {
        const uint16_t substitute = SubstituteOf(character);
        uint8_t fallback = kNoFont;
        for (int i = 0; i < m_fallback_count && fallback == kNoFont; ++i) {
            if (m_files[m_fallbacks[i]].coverage.Has(character)) fallback = m_fallbacks[i];
        }
        if (substitute && m_files[font].coverage.Has(substitute)) {
            character = substitute;
        } else if (fallback != kNoFont) {
            font = fallback;
        } else {
            character = kUnderscore;
        }
    }
    Fit(font, row_height);
    if (m_files[font].failed && font != m_styles[0]) Fit(font = m_styles[0], row_height);
    if (m_files[font].failed) return {character, {kNoFont, 0, 0, 0}};
    int height = m_files[font].standard * m_percent * percent / (100 * 100);
    if (height < 1) height = 1;
    if (height > int(kHighest)) height = int(kHighest);
    return {character, {font, uint8_t(height), uint8_t(slanted), uint8_t(IsWide(character))}};
}

// ------------------------------------------------------------------------------------------------------- The display

bool Fonts::Open(File &file, kova_uint32 height)
{
    pKovaITextDisplay_t const display = m_screen.display;

    if (file.number >= 0) return true;
    if (file.failed) return false;
    display->CreateFont(display, m_screen.context, file.name, height, KOVA_FONTATTR_NONE, &file.number);
    file.failed = file.number < 0;
    if (file.failed) return false;
    // A font that was open already may be slanted and narrow, whatever the display says. Another height opens it anew.
    file.height = height + 1;
    display->SetFont(display, m_screen.context, file.number, file.height, KOVA_FONTATTR_NONE);
    file.italics = 0;
    file.scale = kNaturalWidth;
    return true;
}

bool Fonts::Select(const FontKey &key, kova_uint32 scale)
{
    pKovaITextDisplay_t const display = m_screen.display;
    File &file = m_files[key.font];

    if (!Open(file, key.height)) return false;
    const bool other = file.height != key.height || file.italics != key.italics;
    if (other || m_selected != key.font) {
        const auto attributes = key.italics ? KOVA_FONTATTR_ITALIC : KOVA_FONTATTR_NONE;
        display->SetFont(display, m_screen.context, file.number, key.height, attributes);
        m_selected = key.font;
    }
    // Opened again, a font has its natural width.
    if (other) file.scale = kNaturalWidth;
    file.height = key.height;
    file.italics = key.italics;
    if (file.scale != scale) {
        display->ScaleFontWidth(display, m_screen.context, 1, scale);
        file.scale = scale;
    }
    return true;
}

int Fonts::LineHeight()
{
    kova_sint32 height = 0;
    m_screen.display->GetFontHeight(m_screen.display, m_screen.context, &height);
    return height;
}

int Fonts::Width(const char *text, size_t bytes)
{
    kova_uint32 width = 0;
    const void *const units = text;
    m_screen.display->GetStringWidth(m_screen.display, m_screen.context,
                                     static_cast<const unsigned short *>(units), kova_uint8(bytes),
                                     KOVA_TEXT_UTF8, &width);
    return int(width);
}

// Finds the largest height whose line fits into a row, the base line at four fifths of it, and measures the widest letter.
void Fonts::Fit(uint8_t font, int row_height)
{
    File &file = m_files[font];

    if (file.row_height == row_height || file.failed) return;
    const int base_line = row_height * 4 / 5, room = row_height > 16 ? kRoom : 0;
    const int above = base_line - room, below = row_height - base_line - room;
    int height = row_height < int(kHighest) ? row_height : int(kHighest);
    // Rounding of the font's metrics takes a step or two behind the first.
    for (int tries = 0; tries < 8 && height > 1; ++tries) {
        if (!Select({font, uint8_t(height), 0, 0}, kNaturalWidth)) return;
        const int line = LineHeight();
        if (line <= 0) {
            height = height * 6 / 7;
            break;
        }
        const int ascent = line * file.coverage.ascent / kCoverageUnit;
        if (ascent <= above && line - ascent <= below + 1) break;
        const int by_ascent = ascent > 0 ? height * above / ascent : height;
        const int by_descent = line > ascent ? height * (below + 1) / (line - ascent) : height;
        const int fitting = by_ascent < by_descent ? by_ascent : by_descent;
        height = fitting < height ? fitting : height - 1;
    }
    file.row_height = row_height;
    file.standard = height > 0 ? height : 1;
    file.widest = 0;
    if (!Select({font, uint8_t(file.standard), 0, 0}, kNaturalWidth)) return;
    static const char *const letters[] = {"W", "M", "@"};
    for (const char *letter : letters) {
        const int width = Width(letter, 1) * 1024 / file.standard;
        if (width > file.widest) file.widest = width;
    }
}

kova_uint32 Fonts::ScaleFor(const FontKey &key, int width)
{
    const int em = key.wide ? 1024 : m_files[key.font].widest;
    const int widest = (em * key.height + 1023) / 1024;
    if (widest <= 0) return kNaturalWidth;
    const kova_uint32 scale = kNaturalWidth * 9 / 10 * kova_uint32(width) / kova_uint32(widest);
    return scale < kWidest ? scale : kWidest;
}

int Fonts::Ascent(const FontKey &key)
{
    const int line = LineHeight();
    const int height = line > 0 ? line : key.height;
    return height * m_files[key.font].coverage.ascent / kCoverageUnit;
}

// Published DirectFB has no metrics of underlines; then those of the file count.
void Fonts::Underline(const FontKey &key, int *top, int *thickness)
{
    const Coverage &coverage = m_files[key.font].coverage;
    kova_sint32 position = 0, thick = 0;

    m_screen.display->GetUnderlineInfo(m_screen.display, m_screen.context, 0, 0, 0, &position, &thick);
    *top = thick > 0 ? position : coverage.underline_top * key.height / kCoverageUnit;
    *thickness = thick > 0 ? thick : coverage.underline_thickness * key.height / kCoverageUnit;
    if (*thickness < 1) *thickness = 1;
}

} // namespace captions
