// SPDX-License-Identifier: MIT
#include "drawing/renderer.h"

#include "cues/look.h"

namespace caption
{

Renderer::Renderer(const Options &options, Display &display, Fonts &fonts)
    : options_(options), margins_(MarginsOf(options.edge)), display_(display),
      engine_(options, display, fonts)
{
}

// Fonts with different ascents share the baseline, and a string is drawn from the top of its font.
void Renderer::DrawRow(const Row &row, int x, int y)
{
    x += margins_.left;
    for (std::size_t i = 0; i < row.pieces.size(); x += row.widths[i++]) {
        const Piece &piece = row.pieces[i];
        const Reach reach = ReachOf(*piece.face, piece.height);
        display_.Draw(piece, piece.height, x, y + margins_.top + row.reach.ascent - reach.ascent);
    }
}

// Backgrounds are drawn first, so that none covers the edge of a letter in the row above.
void Renderer::DrawRows(const BlockLayout &layout)
{
    const auto xOf = [&](const Row &row) {
        const int left = layout.rect.width - row.width - 2 * layout.padding;
        return layout.rect.x + Before(int(layout.alignment), left);
    };
    int y = layout.rect.y;

    if (layout.window) display_.Fill(layout.rect, *layout.window);
    for (const Row &row : layout.rows) {
        int x = xOf(row);
        for (std::size_t i = 0; i < row.pieces.size(); ++i) {
            const int width = row.widths[i] + (i == 0 ? layout.padding + margins_.left : 0) +
                              (i + 1 == row.pieces.size() ? margins_.right + layout.padding : 0);
            const auto &background = row.pieces[i].style.background;
            if (background && background->alpha > 0) {
                display_.Fill({x, y, width, row.height},
                              Over(*background, layout.window.value_or(g_transparent)));
            }
            x += width;
        }
        y += row.height;
    }
    y = layout.rect.y;
    for (const Row &row : layout.rows) {
        DrawRow(row, xOf(row) + layout.padding, y);
        y += row.height;
    }
}

Drawn Renderer::Draw(const Plan &plan)
{
    Drawn drawn = plan.drawn;

    for (const Rect &rect : drawn.bitmaps) display_.Copy(*plan.bitmaps, rect);
    for (const BlockLayout &block : plan.blocks) DrawRows(block);
    if (display_.RanOutOfColors()) {
        drawn.notices.push_back("more colours than the palette holds; some are replaced by the nearest");
    }
    return drawn;
}

} // namespace caption
