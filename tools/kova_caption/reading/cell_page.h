// SPDX-License-Identifier: MIT
// Closed captions and teletext stand in the cells of a page. Their rows become blocks.
#ifndef KOVA_CAPTION_READING_CELL_PAGE_H
#define KOVA_CAPTION_READING_CELL_PAGE_H

#include <vector>

#include "cues/cue.h"

namespace caption
{

// The position of the cells on the canvas.
struct CellGrid {
    int firstRow = 0; // of the page, rows above it are not shown
    int firstColumn = 0;
    int columns = 0;
    int rows = 0;
    double left = 0; // of the first column, as a share of the canvas
    double top = 0;
    double columnWidth = 0;
    double rowHeight = 0;
    double middle = 0.5; // where the upper half of the page ends, as a share of the canvas

    bool operator==(const CellGrid &other) const
    {
        return firstRow == other.firstRow && firstColumn == other.firstColumn && columns == other.columns &&
               rows == other.rows && left == other.left && top == other.top &&
               columnWidth == other.columnWidth && rowHeight == other.rowHeight && middle == other.middle;
    }
};

// The text of a row, without empty cells at its ends.
struct PageRow {
    int row = 0;    // from the first row of the grid
    int first = 0;  // column
    int last = 0;   // column
    int height = 1; // rows
    Line line;

    bool operator==(const PageRow &other) const
    {
        return row == other.row && first == other.first && height == other.height && line == other.line;
    }
};

// How rows are aligned: as their ends show, from their first column where they are still being written, or in
// the grid as the source says.
enum class RowAlignment { AS_THEY_LIE, LEFT, CENTER, RIGHT };

// Adjacent rows make a block, which is anchored at its first row in the upper half of the page and at its
// last row in the lower half. Blocks nearest to the upper edge come first, then those nearest to the lower
// edge, so that rows keep their order when they move out of each other's way.
std::vector<Block> Blocks(const std::vector<PageRow> &rows, const CellGrid &grid, RowAlignment alignment);

} // namespace caption

#endif
