// SPDX-License-Identifier: MIT
#include "scene.h"

namespace captions
{

static int ColumnEdge(const Frame &frame, int cell)
{
    return HalfEdge(frame.area.x, frame.area.width, frame.columns, 2 * (cell - frame.margin));
}

static int RowEdge(const Frame &frame, int row)
{
    return HalfEdge(frame.area.y, frame.area.height, frame.rows, 2 * row);
}

Rect CellRect(const Frame &frame, int row, int first, int last)
{
    return Moved(FromEdges(ColumnEdge(frame, first), RowEdge(frame, row), ColumnEdge(frame, last),
                           RowEdge(frame, row + 1)),
                 frame.dx, frame.dy);
}

const Cell *RowOf(const Panel &panel, int row)
{
    static const Cell none[kPanelColumns] = {};
    const Frame &frame = panel.frame;
    const bool rows = frame.leaving == kAboveFirstRow || frame.leaving == kBelowLastRow;
    if (rows && row == frame.leaver_row) return frame.leaver;
    return row < 0 || row >= frame.rows ? none : panel.cells[row];
}

static bool IsTall(const Cell &cell)
{
    return cell.flags &&
           (cell.font >> 6 == KOVA_CAPTIONS_PEN_LARGE || cell.edge >> 6 != KOVA_CAPTIONS_NORMAL);
}

Rect RowReach(const Panel &panel, int row)
{
    const Frame &frame = panel.frame;
    const Cell *const cells = RowOf(panel, row);
    const int count = CellsOf(frame);
    const Rect rect = CellRect(frame, row, -1, count + 1);
    bool tall = false;
    for (int i = 0; i < count; ++i) tall |= IsTall(cells[i]);
    return Intersection(tall ? WithOverhang(rect, rect.height) : rect, frame.band);
}

Rect WithOverhang(const Rect &rect, int row_height)
{
    const int more = row_height / 4;
    return {rect.x, rect.y - more, rect.width, rect.height + 2 * more};
}

bool HasTallRow(const Panel &panel)
{
    for (int row = 0; row < panel.frame.rows; ++row) {
        for (int cell = 0; cell < CellsOf(panel.frame); ++cell) {
            if (IsTall(panel.cells[row][cell])) return true;
        }
    }
    return false;
}

Rect OuterRect(const Frame &frame)
{
    return Union(Grown(frame.rect, frame.border_width), frame.band);
}

int BorderWidth(const Rect &rect, int rows)
{
    const int width = rect.height / rows / 16;
    return width > 2 ? width : 2;
}

} // namespace captions
