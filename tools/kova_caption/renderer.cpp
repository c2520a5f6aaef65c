#include "renderer.h"

#include <algorithm>

#include "wrap.h"

namespace caption
{

// What television sets are sure to show: 5 % off at each side.
static int Safe(int length)
{
    return length / 20;
}

Renderer::Renderer(const Options &options, Display &display, Fonts &fonts)
    : options_(options), display_(display), fonts_(fonts)
{
}

Renderer::Row Renderer::Prepare(const Line &line)
{
    Row row;

    row.pieces = fonts_.Split(line);
    for (const Piece &piece : row.pieces) {
        const Reach reach = fonts_.ReachOf(piece.font, options_.TextHeight());
        row.width += display_.Width(piece, options_.TextHeight());
        row.reach.ascent = std::max(row.reach.ascent, reach.ascent);
        row.reach.descent = std::max(row.reach.descent, reach.descent);
    }
    return row;
}

int Renderer::Width(const Line &line)
{
    return Prepare(line).width;
}

// Fonts of different reach share the baseline: a string is drawn from the top of its font.
void Renderer::DrawRow(const Row &row, int x, int y)
{
    for (const Piece &piece : row.pieces) {
        const Reach reach = fonts_.ReachOf(piece.font, options_.TextHeight());
        display_.Draw(piece, options_.TextHeight(), x, y + row.reach.ascent - reach.ascent);
        x += display_.Width(piece, options_.TextHeight());
    }
}

Drawn Renderer::Draw(const std::vector<Line> &lines)
{
    const Margins margins = MarginsOf(options_.edge);
    const Size safe = {options_.plane.width - 2 * Safe(options_.plane.width),
                       options_.plane.height - 2 * Safe(options_.plane.height)};
    const auto measure = [this](const Line &line) { return Width(line); };
    const auto heightOf = [&](const Row &row) {
        return row.reach.ascent + row.reach.descent + 1 + margins.top + margins.bottom;
    };
    std::vector<Row> rows;
    Drawn drawn;

    fonts_.Prefer(lines);
    for (const Line &line : lines) {
        for (const Line &part : Wrap(line, safe.width - margins.left - margins.right, measure)) {
            Row row = Prepare(part);
            if (drawn.left > 0 || drawn.size.height + heightOf(row) > safe.height) {
                ++drawn.left;
                continue;
            }
            drawn.size.height += heightOf(row);
            drawn.size.width = std::max(drawn.size.width, row.width + margins.left + margins.right);
            rows.push_back(std::move(row));
        }
    }
    drawn.lines = rows.size();
    int y = options_.plane.height - Safe(options_.plane.height) - drawn.size.height;
    for (const Row &row : rows) {
        const int width = row.width + margins.left + margins.right;
        DrawRow(row, std::max(0, (options_.plane.width - width) / 2) + margins.left, y + margins.top);
        y += heightOf(row);
    }
    return drawn;
}

} // namespace caption
