// SPDX-License-Identifier: MIT
// How cells look: pens with the viewer's settings applied, and the colours that come of them.
#ifndef KOVA_CAPTIONS_LOOK_H
#define KOVA_CAPTIONS_LOOK_H

#include "scene.h"

namespace captions
{

// Applies the settings to pens, one after the other; most cells have the pen of the cell before.
class Stylist
{
public:
    explicit Stylist(const View &view);

    // The cell of a character with this pen.
    Cell Style(const KovaCaptionsPen &provided, uint16_t character, bool mono);
    // Opacity and colour, as the cells have them.
    uint8_t Color(uint8_t opacity, uint8_t color) const;

private:
    const View &m_view;
    bool m_used = false;
    KovaCaptionsPen m_provided = {};
    Cell m_cell = {};
};

// Whether a style's characters keep to their cells.
bool IsMonospaced(uint8_t font);

// 0xRRGGBBAA, as the display has it.
using Rgba = uint32_t;

// A colour in both phases of flashing.
struct Ink {
    Rgba on, off;
};

inline bool IsFlashing(const Ink &ink)
{
    return ink.on != ink.off;
}

constexpr Ink kNoInk = {0, 0};

// The colour of 6 bits, solid.
Rgba Solid(uint8_t color);
// A colour with opacity, as pixels that replace what is under them.
Ink Over(uint8_t color, const Ink &under, uint8_t economy);

struct CellInks {
    // Of the cell's background, or what shows in its place.
    Ink back;
    Ink text;
    Ink edge;
};

Ink FillInk(const Frame &frame, uint8_t economy);
CellInks InksOf(const Frame &frame, const Cell &cell, uint8_t economy);
// Of the sides in shadow: each component one step lower.
uint8_t HalfColor(uint8_t color);

// Whether there is anything of the text to see.
inline bool HasText(const Cell &cell)
{
    const bool glyph = cell.character != 0 && cell.character != ' ' && cell.character != 0xA0;
    return (glyph || (cell.flags & kUnderline)) && cell.foreground >> 6 != KOVA_CAPTIONS_TRANSPARENT;
}

inline uint8_t EdgeOf(const Cell &cell)
{
    return cell.font & 7;
}

} // namespace captions

#endif
