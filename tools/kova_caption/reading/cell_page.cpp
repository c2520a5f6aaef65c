// SPDX-License-Identifier: MIT
#include "reading/cell_page.h"

#include <algorithm>
#include <cstdlib>

namespace caption
{

static bool Near(int a, int b, int distance)
{
    return std::abs(a - b) <= distance;
}

// Twice the column of the centre, which keeps it an integer.
static int Middle(const PageRow &row)
{
    return row.first + row.last + 1;
}

static Horizontal AlignmentOf(const std::vector<PageRow> &rows, const CellGrid &grid, RowAlignment alignment)
{
    const auto all = [&](auto matches) { return std::all_of(rows.begin(), rows.end(), matches); };

    if (alignment == RowAlignment::LEFT) return Horizontal::LEFT;
    if (alignment == RowAlignment::CENTER) return Horizontal::CENTER;
    if (alignment == RowAlignment::RIGHT) return Horizontal::RIGHT;
    // Text of odd length cannot be centred exactly, and captions may only begin at every fourth column.
    if (all([&](const PageRow &row) { return Near(Middle(row), grid.columns, 3); }))
        return Horizontal::CENTER;
    if (all([&](const PageRow &row) { return row.first == rows[0].first; })) return Horizontal::LEFT;
    if (all([&](const PageRow &row) { return row.last == rows[0].last; })) return Horizontal::RIGHT;
    if (all([&](const PageRow &row) { return Near(Middle(row), Middle(rows[0]), 2); })) {
        return Horizontal::CENTER;
    }
    return Horizontal::LEFT;
}

// Rows with different indents keep them as spaces.
static Line Indented(const PageRow &row, int columns)
{
    Line line;
    for (int i = 0; i < columns; ++i) Append(line, "\xC2\xA0", {});
    for (const Run &run : row.line) Append(line, run.text, run.style);
    return line;
}

static Block BlockOf(const std::vector<PageRow> &rows, const CellGrid &grid, RowAlignment alignment)
{
    const PageRow &first = rows.front();
    const int end = rows.back().row + rows.back().height;
    int left = grid.columns;
    int right = 0;
    int middles = 0;
    Block block;
    Anchor anchor;

    block.horizontal = AlignmentOf(rows, grid, alignment);
    for (const PageRow &row : rows) {
        left = std::min(left, row.first);
        right = std::max(right, row.last + 1);
        middles += Middle(row);
    }
    for (const PageRow &row : rows) {
        block.lines.push_back(Indented(row, block.horizontal == Horizontal::LEFT ? row.first - left : 0));
    }
    if (alignment == RowAlignment::RIGHT) right = grid.columns;
    const double middle =
        alignment == RowAlignment::CENTER ? grid.columns / 2.0 : double(middles) / double(2 * rows.size());
    const double column = block.horizontal == Horizontal::LEFT    ? left
                          : block.horizontal == Horizontal::RIGHT ? right
                                                                  : middle;
    anchor.x = grid.left + column * grid.columnWidth;
    const double rounding = 1e-9;
    const bool upper = grid.top + (first.row + end) * grid.rowHeight / 2 <= grid.middle + rounding;
    block.vertical = upper ? Vertical::TOP : Vertical::BOTTOM;
    anchor.y = grid.top + (block.vertical == Vertical::TOP ? first.row : end) * grid.rowHeight;
    block.anchor = anchor;
    return block;
}

std::vector<Block> Blocks(const std::vector<PageRow> &rows, const CellGrid &grid, RowAlignment alignment)
{
    std::vector<Block> blocks;

    for (std::size_t begin = 0, end = 0; begin < rows.size(); begin = end) {
        for (end = begin + 1;
             end < rows.size() && rows[end].row == rows[end - 1].row + rows[end - 1].height;) {
            ++end;
        }
        blocks.push_back(BlockOf({rows.begin() + std::ptrdiff_t(begin), rows.begin() + std::ptrdiff_t(end)},
                                 grid, alignment));
    }
    // Nearest to the edge first, because later blocks move out of the way.
    const auto bottom = std::stable_partition(
        blocks.begin(), blocks.end(), [](const Block &block) { return block.vertical == Vertical::TOP; });
    std::reverse(bottom, blocks.end());
    return blocks;
}

} // namespace caption
