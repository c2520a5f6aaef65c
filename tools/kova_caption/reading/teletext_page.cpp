// SPDX-License-Identifier: MIT
#include "reading/teletext_page.h"

#include <algorithm>
#include <cstddef>

#include "base/utf8.h"

namespace caption
{

static Color ColorOf(const vbi_page &page, unsigned index, std::uint8_t alpha)
{
    const vbi_rgba packed = page.color_map[std::min(index, 39u)];
    return {std::uint8_t(packed), std::uint8_t(packed >> 8), std::uint8_t(packed >> 16), alpha};
}

// White is the default colour of captions, so the viewer may replace it.
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

// Block graphics and downloaded characters have private-use codes.
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
    const vbi_char *const cells = page.text + std::ptrdiff_t(row) * page.columns + grid.firstColumn;
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
        if (cell.flash) notices.Say("flashing text is not supported");
        if (IsGraphic(cell.unicode)) notices.Say("block graphics are not supported");
        // A gap between two pieces of text has no background and no underline.
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

} // namespace caption
