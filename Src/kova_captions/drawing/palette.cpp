// SPDX-License-Identifier: MIT
#include "palette.h"

#include <string.h>

namespace captions
{

// The 6 bits of a colour whose components are all levels; -1 for another.
static int CodeOf(Rgba color)
{
    int code = 0;
    for (unsigned shift = 32; shift > 8;) {
        shift -= 8;
        const unsigned component = color >> shift & 255;
        code <<= 2;
        if (component == 0x55) {
            code |= 1;
        } else if (component == 0xC0) {
            code |= 2;
        } else if (component == 0xFF) {
            code |= 3;
        } else if (component != 0) {
            return -1;
        }
    }
    return code;
}

// The fixed entry of an ink, or -1.
static int FixedEntry(const Ink &ink)
{
    const unsigned alpha = ink.on & 255;
    const int code = CodeOf(ink.on);

    if (alpha == 0 && !IsFlashing(ink)) return 0;
    if (code < 0) return -1;
    if (IsFlashing(ink)) return alpha == 255 && ink.off == 0 ? kFlashEntries + code : -1;
    return alpha == 255 ? kSolidEntries + code : alpha == 128 ? kTranslucentEntries + code : -1;
}

static bool IsSame(const Ink &first, const Ink &second)
{
    return first.on == second.on && first.off == second.off;
}

// ------------------------------------------------------------------------------------------------------- Handing out

// What is on the screen and stays keeps its entry.
void Palette::Keep(const Ink &ink, uint8_t panel)
{
    for (int i = 0; i < kPool; ++i) {
        const Entry &entry = m_entries[i];
        if (entry.used && entry.panel == panel && IsSame(entry.ink, ink)) m_next[i] = entry;
    }
}

// Takes an entry that nothing on the screen has, as long as there is one: a palette changes before its pixels do.
bool Palette::Need(const Ink &ink, uint8_t panel)
{
    int free = -1;

    for (int i = 0; i < kPool; ++i) {
        const Entry &next = m_next[i];
        if (next.used && next.panel == panel && IsSame(next.ink, ink)) return true;
        if (!next.used && (free < 0 || (m_entries[free].used && !m_entries[i].used))) free = i;
    }
    if (free < 0) return false;
    m_next[free] = {ink, panel, true};
    return true;
}

// Calls the action for all inks that need an entry of the pool, and the panel if they are its own.
template <typename Action> void Palette::ForEachInk(const Scene &scene, Action action)
{
    for (uint8_t number = 0; number < kPanels; ++number) {
        const Panel &panel = scene.panels[number];
        const Frame &frame = panel.frame;
        const uint8_t own = frame.fades ? number : kNoPanel;
        const auto visit = [&](const Ink &ink) {
            if (own != kNoPanel || FixedEntry(ink) < 0) action(ink, own);
        };
        const auto visitCell = [&](const Cell &cell) {
            if (!cell.flags) return;
            const CellInks inks = InksOf(frame, cell, scene.economy);
            if (cell.flags & kBackground) visit(inks.back);
            if (!HasText(cell)) return;
            visit(inks.text);
            if (EdgeOf(cell) != KOVA_CAPTIONS_EDGE_NONE) visit(inks.edge);
        };

        if (!frame.exists) continue;
        visit(FillInk(frame, scene.economy));
        if (frame.border_type != KOVA_CAPTIONS_EDGE_NONE) {
            visit(Over(frame.border_color, kNoInk, scene.economy));
            visit(Over(HalfColor(frame.border_color), kNoInk, scene.economy));
        }
        for (int row = 0; row < frame.rows; ++row) {
            for (int cell = 0; cell < CellsOf(frame); ++cell) visitCell(panel.cells[row][cell]);
        }
        if (!frame.leaving) continue;
        for (const Cell &cell : frame.leaver) visitCell(cell);
    }
}

bool Palette::Allot(const Scene &scene)
{
    bool enough = true;

    memset(m_next, 0, sizeof m_next);
    ForEachInk(scene, [this](const Ink &ink, uint8_t panel) { Keep(ink, panel); });
    ForEachInk(scene, [&](const Ink &ink, uint8_t panel) { enough = enough && Need(ink, panel); });
    return enough;
}

void Palette::Take(const Scene &scene, bool off)
{
    memcpy(m_entries, m_next, sizeof m_entries);
    memcpy(m_alpha, scene.alpha, sizeof m_alpha);
    if (scene.flashes) m_off = off;
}

// ----------------------------------------------------------------------------------------------------------- Colours

Rgba Palette::Current(const Ink &ink, uint8_t panel) const
{
    const Rgba color = m_off ? ink.off : ink.on;
    if (panel == kNoPanel) return color;
    // Rounded up: DirectFB draws text without any opacity opaque.
    return (color & ~255u) | ((color & 255) * m_alpha[panel] + 254) / 255;
}

static KovaTextColor_t Unpacked(Rgba color)
{
    return {kova_uint8(color >> 24), kova_uint8(color >> 16), kova_uint8(color >> 8), kova_uint8(color)};
}

bool Palette::Load(const KovaCaptionsScreen &screen)
{
    KovaTextColor_t colors[256] = {};
    bool changed = false;

    if (screen.color_mode == KOVA_CAPTIONS_TRUE_COLORS) return false;
    for (uint8_t code = 0; code < 64; ++code) {
        const Rgba solid = Solid(code);
        colors[kSolidEntries + code] = Unpacked(solid);
        colors[kTranslucentEntries + code] = Unpacked((solid & ~255u) | 128);
        colors[kFlashEntries + code] = Unpacked(m_off ? 0 : solid);
    }
    for (int i = 0; i < kPool; ++i) {
        const Entry &entry = m_entries[i];
        // An entry that nothing needs stays as it is: that is no call.
        colors[kPoolEntries + i] =
            entry.used ? Unpacked(Current(entry.ink, entry.panel)) : m_loaded[kPoolEntries + i];
    }
    const auto differs = [&](int i) {
        return !m_known || memcmp(&colors[i], &m_loaded[i], sizeof colors[i]) != 0;
    };
    for (int i = 0; i < 256;) {
        int end = i;
        while (end < 256 && differs(end)) ++end;
        if (end > i) {
            screen.display->SetPalette(screen.display, screen.context, colors + i, kova_uint32(end - i),
                                       kova_uint8(i));
            changed = true;
        }
        i = end + 1;
    }
    memcpy(m_loaded, colors, sizeof m_loaded);
    m_known = true;
    return changed;
}

kova_uint32 Palette::Value(const KovaCaptionsScreen &screen, const Ink &ink, uint8_t panel) const
{
    if (screen.color_mode == KOVA_CAPTIONS_TRUE_COLORS) return Current(ink, panel);
    if (panel == kNoPanel) {
        const int entry = FixedEntry(ink);
        if (entry >= 0) return kova_uint32(entry);
    }
    for (int i = 0; i < kPool; ++i) {
        const Entry &entry = m_entries[i];
        if (entry.used && entry.panel == panel && IsSame(entry.ink, ink))
            return kova_uint32(kPoolEntries + i);
    }
    return 0;
}

} // namespace captions
