// SPDX-License-Identifier: MIT
// A channel of CEA-608 as one panel: 15 rows of 32 columns, and a column on both sides for the boxes.
#include "look.h"
#include "motion.h"

#include <string.h>

namespace captions
{

static KovaCaptionsPen PenOf(const KovaCaptionsChannelCell &cell)
{
    KovaCaptionsPen pen = {};
    pen.foreground = cell.foreground;
    pen.foreground_opacity = cell.flash ? KOVA_CAPTIONS_FLASH : KOVA_CAPTIONS_SOLID;
    pen.background = cell.background;
    pen.background_opacity = cell.background_opacity;
    pen.size = KOVA_CAPTIONS_PEN_STANDARD;
    pen.offset = KOVA_CAPTIONS_NORMAL;
    pen.italics = cell.italics;
    pen.underline = cell.underline;
    return pen;
}

static void FillRow(const View &view, const KovaCaptionsChannelCell *from, Cell *cells)
{
    Stylist stylist(view);

    for (int column = 0; column < KOVA_CAPTIONS_CHANNEL_COLUMNS; ++column) {
        const uint8_t kind = from[column].kind;
        if (kind == KOVA_CAPTIONS_CHARACTER || kind == KOVA_CAPTIONS_ATTRIBUTE) {
            cells[column] = stylist.Style(PenOf(from[column]), from[column].character, true);
        }
    }
}

static bool IsBlank(const Cell *cells)
{
    for (int column = 0; column < KOVA_CAPTIONS_CHANNEL_COLUMNS; ++column) {
        if (cells[column].flags) return false;
    }
    return true;
}

// The solid space before and after each element: in the background of its neighbour, with nothing else of it. It covers
// a transparent space. [79.101(d)(1)]
static void AddBoxes(Cell *cells, int columns)
{
    Cell boxed[kPanelColumns] = {};
    const auto at = [cells, columns](int column) {
        return column >= 0 && column < columns ? cells[column] : Cell{};
    };

    for (int i = 0; i < columns + 2; ++i) {
        const int column = i - 1;
        boxed[i] = at(column);
        if (boxed[i].flags) continue;
        const Cell before = at(column - 1), after = at(column + 1);
        const Cell &neighbor = before.flags ? before : after;
        if (!neighbor.flags) continue;
        boxed[i].background = neighbor.background;
        boxed[i].foreground = uint8_t(KOVA_CAPTIONS_TRANSPARENT << 6);
        boxed[i].font = neighbor.font;
        boxed[i].edge = neighbor.edge;
        boxed[i].flags = uint8_t(neighbor.flags & (kTaken | kBackground | kMono));
    }
    memcpy(cells, boxed, sizeof boxed);
}

// The rows that are shown: those of a roll-up window, all of Text, else those with text.
struct Span {
    int first, count;
};

static Span RowsOf(const KovaCaptionsChannel &channel, const Panel &panel)
{
    if (channel.mode == KOVA_CAPTIONS_TEXT_MODE) return {0, KOVA_CAPTIONS_CHANNEL_ROWS};
    const int first = channel.base_row - channel.depth + 1;
    const bool inside = first >= 0 && channel.base_row < KOVA_CAPTIONS_CHANNEL_ROWS;
    if (channel.mode == KOVA_CAPTIONS_ROLL_UP && channel.depth > 0 && inside) return {first, channel.depth};
    Span rows = {0, 0};
    for (int row = 0; row < KOVA_CAPTIONS_CHANNEL_ROWS; ++row) {
        if (IsBlank(panel.cells[row])) continue;
        if (rows.count == 0) rows.first = row;
        rows.count = row - rows.first + 1;
    }
    return rows;
}

// At another size the shown rows are a window: of the columns' width in the middle of the safe area, growing away from the
// edge of the screen that is nearer.
static void Resize(const View &view, const Span &rows, Panel &panel)
{
    Frame &frame = panel.frame;
    const int percent = view.settings.size;
    const bool low = 2 * rows.first + rows.count > KOVA_CAPTIONS_CHANNEL_ROWS;
    const int most_columns = KOVA_CAPTIONS_CHANNEL_COLUMNS * 100 / percent;
    constexpr int kMiddle = 80, kUnits = 160;

    memmove(panel.cells, panel.cells[rows.first], sizeof panel.cells[0] * size_t(rows.count));
    memset(panel.cells[rows.count], 0, sizeof panel.cells[0] * size_t(kPanelRows - rows.count));
    frame.rows = uint8_t(rows.count);
    Wrap(panel, most_columns, kPanelRows * 100 / percent);
    KovaCaptionsDefinition place = {};
    place.anchor_horizontal = kMiddle;
    place.anchor_vertical = uint8_t(kCellUnits * rows.first);
    place.anchor_point = 1;
    if (low) {
        // The grid has no line below its last row: the window is moved inside.
        place.anchor_vertical = uint8_t(kCellUnits * (rows.first + rows.count));
        place.anchor_point = 7;
        if (place.anchor_vertical == kGridRows) place.anchor_vertical = kGridRows - 1;
    }
    frame.area = PlaceWindow(view.safe, kUnits, place, frame.rows, frame.columns, percent);
    if (low && rows.first + rows.count == KOVA_CAPTIONS_CHANNEL_ROWS) {
        frame.area.y = view.safe.Bottom() - frame.area.height;
    }
}

void ShowChannel(View &view, const KovaCaptionsChannel &channel, const Scene &before, Scene &scene)
{
    Panel &panel = scene.panels[0];
    Frame &frame = panel.frame;
    const bool text = channel.mode == KOVA_CAPTIONS_TEXT_MODE;

    frame.rows = KOVA_CAPTIONS_CHANNEL_ROWS;
    frame.columns = KOVA_CAPTIONS_CHANNEL_COLUMNS;
    frame.area = view.safe;
    for (int row = 0; row < frame.rows; ++row) FillRow(view, channel.displayed[row], panel.cells[row]);
    Span rows = RowsOf(channel, panel);
    if (rows.count == 0) {
        frame = {};
        return;
    }
    if (view.settings.size != 100) {
        Resize(view, rows, panel);
        rows = {0, frame.rows};
    }
    for (int row = 0; row < frame.rows; ++row) AddBoxes(panel.cells[row], frame.columns);
    frame.margin = 1;
    frame.exists = 1;
    frame.rect = CellRect(frame, 0, 0, CellsOf(frame));
    frame.rect.height = frame.area.height;
    frame.band = FromEdges(frame.rect.x, CellRect(frame, rows.first, 0, 0).y, frame.rect.Right(),
                           CellRect(frame, rows.first + rows.count - 1, 0, 0).Bottom());
    frame.shown = frame.rect;
    KovaCaptionsWindowAttributes box = {};
    box.fill_opacity = text ? KOVA_CAPTIONS_SOLID : KOVA_CAPTIONS_TRANSPARENT;
    Kova_Captions_ApplyToWindow(&view.settings, &box, &box);
    frame.fill = Stylist(view).Color(box.fill_opacity, box.fill_color);
    frame.fills_rows = !text;
    scene.flash_since = channel.status.flash_since;
    ApplyScroll(view, channel.roll, rows.first, before.panels[0], panel);
}

} // namespace captions
