// SPDX-License-Identifier: MIT
#include "reading/cell_page.h"

#include <algorithm>
#include <cstdlib>

#include "base/utf8.h"

namespace caption
{

static Color ColorOf(const vbi_page &page, unsigned index, std::uint8_t alpha)
{
    const vbi_rgba packed = page.color_map[std::min(index, 39u)];
    return {std::uint8_t(packed), std::uint8_t(packed >> 8), std::uint8_t(packed >> 16), alpha};
}

// White is what a caption has where nothing is asked, so it is the viewer's to choose.
static Style StyleOf(const vbi_page &page, const vbi_char &cell)
{
    Style style;

    style.italic = cell.italic;
    style.bold = cell.bold;
    style.underline = cell.underline;
    const Color color = ColorOf(page, cell.foreground, 255);
    if (!(color == Color{255, 255, 255, 255})) style.color = color;
    if (cell.opacity == VBI_OPAQUE) style.background = ColorOf(page, cell.background, 255);
    if (cell.opacity == VBI_SEMI_TRANSPARENT) style.background = ColorOf(page, cell.background, 128);
    return style;
}

// Block graphics and characters of the page's own making have codes for private use.
static bool IsGraphic(unsigned code)
{
    return code >= 0xE000 && code <= 0xF8FF;
}

static bool IsEmpty(const vbi_char &cell)
{
    return cell.opacity == VBI_TRANSPARENT_SPACE || cell.unicode <= 0x20 || cell.unicode == 0xA0 ||
           cell.conceal || IsGraphic(cell.unicode);
}

static PageRow ReadRow(const vbi_page &page, int row, const CellGrid &grid, Notices &notices)
{
    const vbi_char *const cells = page.text + row * page.columns + grid.firstColumn;
    PageRow read;

    read.first = 0;
    read.last = std::min(grid.columns, page.columns - grid.firstColumn) - 1;
    while (read.first <= read.last && IsEmpty(cells[read.first])) ++read.first;
    while (read.last >= read.first && IsEmpty(cells[read.last])) --read.last;
    read.row = row - grid.firstRow;
    for (int column = read.first; column <= read.last; ++column) {
        const vbi_char &cell = cells[column];
        // The lower half of a letter of double height, and the right half of a wide one.
        if (cell.size == VBI_OVER_TOP || cell.size == VBI_OVER_BOTTOM || cell.size == VBI_DOUBLE_HEIGHT2 ||
            cell.size == VBI_DOUBLE_SIZE2) {
            continue;
        }
        if (cell.size == VBI_DOUBLE_HEIGHT || cell.size == VBI_DOUBLE_SIZE) read.height = 2;
        if (cell.flash) notices.Say("it asks for letters that flash, which the display does not have");
        if (IsGraphic(cell.unicode)) notices.Say("it has block graphics, which the display does not have");
        // A gap between two pieces of text has no background and no line under it.
        const bool gap = cell.opacity == VBI_TRANSPARENT_SPACE;
        Append(read.line, IsEmpty(cell) ? " " : Utf8(cell.unicode), gap ? Style() : StyleOf(page, cell));
    }
    return read;
}

std::vector<PageRow> ReadRows(const vbi_page &page, const CellGrid &grid, Notices &notices)
{
    std::vector<PageRow> rows;

    for (int row = grid.firstRow; row < std::min(page.rows, grid.firstRow + grid.rows); ++row) {
        PageRow read = ReadRow(page, row, grid, notices);
        if (!read.line.empty()) rows.push_back(std::move(read));
    }
    return rows;
}

static bool Near(int a, int b, int distance)
{
    return std::abs(a - b) <= distance;
}

// Twice the column in the middle, so that it stays whole.
static int Middle(const PageRow &row)
{
    return row.first + row.last + 1;
}

static Horizontal AlignmentOf(const std::vector<PageRow> &rows, const CellGrid &grid)
{
    const auto all = [&](auto matches) { return std::all_of(rows.begin(), rows.end(), matches); };

    // Text of an odd length cannot stand in the very middle, and captions are put at every fourth column at
    // times.
    if (all([&](const PageRow &row) { return Near(Middle(row), grid.columns, 3); }))
        return Horizontal::CENTER;
    if (all([&](const PageRow &row) { return row.first == rows[0].first; })) return Horizontal::LEFT;
    if (all([&](const PageRow &row) { return row.last == rows[0].last; })) return Horizontal::RIGHT;
    if (all([&](const PageRow &row) { return Near(Middle(row), Middle(rows[0]), 2); })) {
        return Horizontal::CENTER;
    }
    return Horizontal::LEFT;
}

// Rows that go in differently keep that by spaces.
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

    block.horizontal = alignment == RowAlignment::LEFT ? Horizontal::LEFT : AlignmentOf(rows, grid);
    for (const PageRow &row : rows) {
        left = std::min(left, row.first);
        right = std::max(right, row.last + 1);
        middles += Middle(row);
    }
    for (const PageRow &row : rows) {
        block.lines.push_back(Indented(row, block.horizontal == Horizontal::LEFT ? row.first - left : 0));
    }
    const double middle = double(middles) / double(2 * rows.size());
    const double column = block.horizontal == Horizontal::LEFT    ? left
                          : block.horizontal == Horizontal::RIGHT ? right
                                                                  : middle;
    anchor.x = grid.left + column * grid.columnWidth;
    block.vertical = first.row + end <= grid.rows ? Vertical::TOP : Vertical::BOTTOM;
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
    // Nearest to the edge first: those that come later make room.
    const auto bottom = std::stable_partition(
        blocks.begin(), blocks.end(), [](const Block &block) { return block.vertical == Vertical::TOP; });
    std::reverse(bottom, blocks.end());
    return blocks;
}

} // namespace caption
