// SPDX-License-Identifier: MIT
// Font files and the display's font slots: which file draws a character, how high and how wide.
#ifndef KOVA_CAPTIONS_FONTS_H
#define KOVA_CAPTIONS_FONTS_H

#include "coverage.h"
#include "scene.h"

namespace captions
{

constexpr int kFonts = KOVA_CAPTIONS_FONTS;
constexpr uint8_t kNoFont = 0xFF;

// Glyphs as wide as the font has them, for ScaleFontWidth.
constexpr kova_uint32 kNaturalWidth = 65536;

// What SetFont selects, and the class of characters that sets how narrow they are in cells.
struct FontKey {
    uint8_t font;
    uint8_t height;
    uint8_t italics;
    // Of characters as wide as high: Hangul and its like.
    uint8_t wide;
};

inline bool IsSame(const FontKey &first, const FontKey &second)
{
    return first.font == second.font && first.height == second.height && first.italics == second.italics &&
           first.wide == second.wide;
}

// What draws a cell.
struct Glyph {
    uint16_t character;
    FontKey key;
};

class Fonts
{
public:
    void Start(const KovaCaptionsScreen &screen, const KovaCaptionsSettings &settings);
    void Use(const KovaCaptionsSettings &settings);
    // Slots and selection are not what they were.
    void Forget();
    // Others may have selected a font since.
    void Deselect()
    {
        m_selected = kNoFont;
    }

    // What draws a character: in the cell's font, or as a substitute, or in a fallback font. Rows are so many pixels high at
    // 100 %.
    Glyph Find(const Cell &cell, int row_height);
    // Selects it in the display; false if the font cannot be opened.
    bool Select(const FontKey &key, kova_uint32 scale);
    // The scale at which the key's Latin letters (or those as wide as high) fill so many pixels.
    kova_uint32 ScaleFor(const FontKey &key, int width);
    // Of the selected font: pixels from a line's top to its base line.
    int Ascent(const FontKey &key);
    void Underline(const FontKey &key, int *top, int *thickness);
    // Of a text in the selected font.
    int Width(const char *text, size_t bytes);

private:
    struct File {
        char name[KOVA_CAPTIONS_FONT_FILE];
        Coverage coverage;
        // In the display: the number, -1 before it is opened.
        kova_sint32 number;
        kova_uint32 height, scale;
        uint8_t italics;
        bool failed;
        // Of the standard size: for rows so high; 0 before it was measured.
        int row_height, standard;
        // The widest Latin letter, in 1024ths of the font's height.
        int widest;
    };

    uint8_t Add(const char *name);
    bool Open(File &file, kova_uint32 height);
    void Fit(uint8_t font, int row_height);
    int LineHeight();

    KovaCaptionsScreen m_screen;
    File m_files[kFonts];
    int m_count;
    uint8_t m_given[kFonts];
    uint8_t m_styles[kFonts];
    uint8_t m_italics[kFonts];
    uint8_t m_fallbacks[KOVA_CAPTIONS_FALLBACKS];
    int m_fallback_count;
    uint8_t m_selected;
    // The viewer's size.
    int m_percent;
};

} // namespace captions

#endif
