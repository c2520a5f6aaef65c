// SPDX-License-Identifier: MIT
// Draws a part of a scene by the display's operations.
#ifndef KOVA_CAPTIONS_PAINT_H
#define KOVA_CAPTIONS_PAINT_H

#include "damage.h"
#include "fonts.h"
#include "palette.h"

namespace captions
{

class Painter
{
public:
    void Start(const KovaCaptionsScreen &screen, Palette *palette, Fonts *fonts);

    // One redraw: everything in the damage, and one flip.
    void Draw(const View &view, const Scene &scene, const Damage &damage);

private:
    // Cells of a row that one font draws, next to each other.
    struct Run {
        int16_t row, first, count;
        // A run of its natural width begins a piece of text that is placed as a whole; then its last cell.
        int16_t piece_end;
        bool mono;
        // Pixels: the place of its background, and of text that is not centred in a cell.
        int left, right;
        int text_left, text_right;
        kova_uint32 scale;
        FontKey key;
    };

    void SetClip(const Rect *rect);
    void Fill(const Rect &rect, const Ink &ink);
    void DrawPanel(const Panel &panel, const Rect &rect);
    void DrawBorder(const Frame &frame);
    void DrawFill(const Panel &panel);
    void AddRuns(const Panel &panel, int row);
    void AddPiece(const Panel &panel, int row, int first, int last);
    void PlaceRuns(const Panel &panel);
    void PlacePiece(const Panel &panel, Run *runs, int count);
    void DrawBackgrounds(const Panel &panel, int row);
    void DrawRun(const Panel &panel, const Run &run, const Rect &rect);
    void DrawGlyph(const Panel &panel, const Run &run, const Cell &cell, int base_line, int ascent);
    void DrawUnderline(const Panel &panel, const Run &run, int base_line);
    void DrawText(const Cell &cell, const CellInks &inks, const char *text, size_t bytes, int x, int y);
    template <typename Action> void ForEachKey(Action action);
    size_t TextOf(const Panel &panel, const Run &run, char *text) const;
    CellInks Inks(const Cell &cell) const;

    const KovaCaptionsScreen *m_screen;
    Palette *m_palette;
    Fonts *m_fonts;
    const Frame *m_frame;
    uint8_t m_panel;
    uint8_t m_economy;
    // At 100 %.
    int m_row_height;
    Rect m_plane;
    static constexpr int kMostRuns = (kPanelRows + 2) * (kPanelColumns + 4);
    Run m_runs[kMostRuns];
    int m_run_count;
};

} // namespace captions

#endif
