// SPDX-License-Identifier: MIT
#include "look.h"

#include <string.h>

namespace captions
{

// ------------------------------------------------------------------------------------------------------------- Pens

Stylist::Stylist(const View &view) : m_view(view)
{
}

uint8_t Stylist::Color(uint8_t opacity, uint8_t color) const
{
    // The higher bit of each component is the one that eight colours have.
    constexpr uint8_t kHigherBits = 0x2A;
    return uint8_t(opacity << 6 | (color & (m_view.eight_colors ? kHigherBits : 0x3F)));
}

bool IsMonospaced(uint8_t font)
{
    return font == KOVA_CAPTIONS_FONT_DEFAULT || font == KOVA_CAPTIONS_FONT_MONO_SERIF ||
           font == KOVA_CAPTIONS_FONT_MONO_SANS;
}

Cell Stylist::Style(const KovaCaptionsPen &provided, uint16_t character, bool mono)
{
    if (!m_used || memcmp(&m_provided, &provided, sizeof provided) != 0) {
        KovaCaptionsPen pen;
        Kova_Captions_ApplyToPen(&m_view.settings, &provided, &pen);
        m_used = true;
        m_provided = provided;
        m_cell.foreground = Color(pen.foreground_opacity, pen.foreground);
        m_cell.background = Color(pen.background_opacity, pen.background);
        m_cell.edge = uint8_t(pen.offset << 6 | (Color(0, pen.edge_color) & 0x3F));
        m_cell.font = uint8_t(pen.size << 6 | (pen.font & 7) << 3 | (pen.edge_type & 7));
        m_cell.flags =
            uint8_t(kTaken | (pen.background_opacity != KOVA_CAPTIONS_TRANSPARENT ? kBackground : 0) |
                    (pen.underline ? kUnderline : 0) | (pen.italics ? kItalics : 0) |
                    (IsMonospaced(pen.font) ? kMono : 0));
    }
    Cell cell = m_cell;
    cell.character = character;
    if (mono || character == kSolidBlock || character == kCaptionIcon) cell.flags |= kMono;
    return cell;
}

// ---------------------------------------------------------------------------------------------------------- Colours

constexpr unsigned kHalf = 128;
static const uint8_t kLevels[4] = {0x00, 0x55, 0xC0, 0xFF};

static Rgba Pack(unsigned red, unsigned green, unsigned blue, unsigned alpha)
{
    return red << 24 | green << 16 | blue << 8 | alpha;
}

Rgba Solid(uint8_t color)
{
    return Pack(kLevels[color >> 4 & 3], kLevels[color >> 2 & 3], kLevels[color & 3], 255);
}

static unsigned Mean(unsigned first, unsigned second, bool exact)
{
    const unsigned mean = (first + second) / 2;
    if (exact) return mean;
    unsigned nearest = 0;
    for (const unsigned level : kLevels) {
        const auto distance = [mean](unsigned value) { return value < mean ? mean - value : value - mean; };
        if (distance(level) < distance(nearest)) nearest = level;
    }
    return nearest;
}

// A translucent colour over what is under it. Pixels have one opacity, so over the picture it stays translucent itself.
static Rgba Translucent(Rgba color, Rgba under, bool exact)
{
    if ((under & 255) != 255) return (color & ~255u) | kHalf;
    return Pack(Mean(color >> 24, under >> 24, exact), Mean(color >> 16 & 255, under >> 16 & 255, exact),
                Mean(color >> 8 & 255, under >> 8 & 255, exact), 255);
}

Ink Over(uint8_t color, const Ink &under, uint8_t economy)
{
    const Rgba solid = Solid(color);

    switch (color >> 6) {
    case KOVA_CAPTIONS_TRANSPARENT:
        return under;
    case KOVA_CAPTIONS_TRANSLUCENT:
        return {Translucent(solid, under.on, economy < kNoMixtures),
                Translucent(solid, under.off, economy < kNoMixtures)};
    case KOVA_CAPTIONS_FLASH:
        if (economy < kNoFlash) return {solid, under.off};
        break;
    default:
        break;
    }
    return {solid, solid};
}

Ink FillInk(const Frame &frame, uint8_t economy)
{
    return Over(frame.fill, kNoInk, economy);
}

CellInks InksOf(const Frame &frame, const Cell &cell, uint8_t economy)
{
    const Ink fill = FillInk(frame, economy);
    const Ink back = cell.flags & kBackground ? Over(cell.background, fill, economy) : fill;
    const auto edge = uint8_t((cell.foreground & 0xC0) | (cell.edge & 0x3F));
    return {back, Over(cell.foreground, back, economy), Over(edge, back, economy)};
}

uint8_t HalfColor(uint8_t color)
{
    uint8_t half = 0;
    for (unsigned shift = 0; shift < 6; shift += 2) {
        const unsigned component = color >> shift & 3;
        half = uint8_t(half | (component ? component - 1 : 0) << shift);
    }
    return half;
}

} // namespace captions
