// SPDX-License-Identifier: MIT
// Windows: text, pen, rows, directions, effects. A line is what text is printed along: a row, or a column where the
// print direction is vertical. [79.102(e) to (g), 708 8]
#include "cea708.h"

#include <string.h>

namespace captions
{

constexpr int64_t kEffectUnit = 500000;

static bool IsVertical(const Window &window)
{
    return window.attributes.print_direction >= KOVA_CAPTIONS_TOP_TO_BOTTOM;
}

static bool PrintsBackwards(const Window &window)
{
    return window.attributes.print_direction & 1;
}

// A scroll direction parallel to the print direction is forbidden: rows then follow bottom to top, columns right to
// left. [708 table 24]
static uint8_t ScrollDirection(const KovaCaptionsWindowAttributes &attributes)
{
    const bool vertical_print = attributes.print_direction >= KOVA_CAPTIONS_TOP_TO_BOTTOM;
    const bool vertical_scroll = attributes.scroll_direction >= KOVA_CAPTIONS_TOP_TO_BOTTOM;

    if (vertical_print != vertical_scroll) return attributes.scroll_direction;
    return vertical_print ? KOVA_CAPTIONS_RIGHT_TO_LEFT : KOVA_CAPTIONS_BOTTOM_TO_TOP;
}

static int LineCount(const Window &window)
{
    return IsVertical(window) ? window.definition.columns : window.definition.rows;
}

static int LineLength(const Window &window)
{
    return IsVertical(window) ? window.definition.rows : window.definition.columns;
}

static uint64_t AllLines(const Window &window)
{
    return (uint64_t(1) << LineCount(window)) - 1;
}

static int PenLine(const Window &window)
{
    return IsVertical(window) ? window.pen_column : window.pen_row;
}

static int PenPlace(const Window &window)
{
    return IsVertical(window) ? window.pen_row : window.pen_column;
}

static void SetPenPlace(Window &window, int line, int place)
{
    window.pen_row = uint8_t(IsVertical(window) ? place : line);
    window.pen_column = uint8_t(IsVertical(window) ? line : place);
}

static int FirstPlace(const Window &window)
{
    return PrintsBackwards(window) ? LineLength(window) - 1 : 0;
}

static int LastPlace(const Window &window)
{
    return PrintsBackwards(window) ? 0 : LineLength(window) - 1;
}

static int Onward(const Window &window)
{
    return PrintsBackwards(window) ? -1 : 1;
}

static Cell &CellAt(Window &window, int line, int place)
{
    return IsVertical(window) ? window.cells[place][line] : window.cells[line][place];
}

// ----------------------------------------------------------------------------------------------------------- Changes

bool IsDrawn(const Service &service, const Window &window)
{
    const bool leaving = window.effect.kind != KOVA_CAPTIONS_STILL && !window.effect.showing;
    return window.exists && (window.visible || leaving) && !service.blanked;
}

static void TouchAs(const Target &target, bool shows)
{
    target.service.used = true;
    Touch(target.state, target.service.status, shows);
    target.window.revision = target.state.revision;
}

void TouchWindow(const Target &target)
{
    TouchAs(target, IsDrawn(target.service, target.window));
}

void TouchUnseen(const Target &target)
{
    TouchAs(target, false);
}

static void TouchRow(const Target &target, int row)
{
    TouchWindow(target);
    target.window.row_revision[row] = target.state.revision;
}

static void TouchRows(const Target &target, int first, int count)
{
    for (int row = first; row < first + count; ++row) target.window.row_revision[row] = target.state.revision;
}

static void TouchAllRows(const Target &target)
{
    TouchWindow(target);
    TouchRows(target, 0, target.window.definition.rows);
}

// A line was changed: a row, or one cell of every row.
static void TouchLine(const Target &target, int line)
{
    if (IsVertical(target.window)) return TouchAllRows(target);
    TouchRow(target, line);
}

// --------------------------------------------------------------------------------------------------------------- Text

static bool HasText(const Window &window)
{
    for (int row = 0; row < window.definition.rows; ++row) {
        for (int column = 0; column < window.definition.columns; ++column) {
            if (window.cells[row][column].kind != KOVA_CAPTIONS_EMPTY) return true;
        }
    }
    return false;
}

void EraseText(const Target &target)
{
    Window &window = target.window;
    const bool text = HasText(window);

    window.completed = 0;
    window.scroll = {};
    if (!text) return;
    for (int row = 0; row < window.definition.rows; ++row) {
        memset(window.cells[row], 0, window.definition.columns * sizeof(Cell));
    }
    TouchAllRows(target);
}

static bool HasTextInLine(Window &window, int line)
{
    for (int place = 0; place < LineLength(window); ++place) {
        if (CellAt(window, line, place).kind != KOVA_CAPTIONS_EMPTY) return true;
    }
    return false;
}

static void EraseLine(Window &window, int line)
{
    for (int place = 0; place < LineLength(window); ++place) CellAt(window, line, place) = {};
    window.completed &= ~(uint64_t(1) << line);
}

void EraseRow(const Target &target)
{
    Window &window = target.window;
    const int line = PenLine(window);

    EraseLine(window, line);
    SetPenPlace(window, line, FirstPlace(window));
    TouchLine(target, line);
}

void CompleteRow(Window &window)
{
    window.completed |= uint64_t(1) << PenLine(window);
}

// Text that is not left-justified cannot grow once its row is complete: a new character clears the row first.
// [79.102(g)(1)(ii)]
static void ClearCompletedRow(const Target &target)
{
    Window &window = target.window;
    const int line = PenLine(window);
    const bool completed = window.completed >> line & 1;

    if (window.attributes.justify == KOVA_CAPTIONS_JUSTIFY_LEFT || !window.visible || !completed) return;
    if (HasTextInLine(window, line)) EraseRow(target);
}

void Print(const Target &target, uint16_t character, uint8_t kind)
{
    Window &window = target.window;

    ClearCompletedRow(target);
    const int line = PenLine(window), place = PenPlace(window);
    Cell &cell = CellAt(window, line, place);
    cell = window.brush;
    cell.character = character;
    cell.kind = kind;
    window.may_flash |= window.pen.foreground_opacity == KOVA_CAPTIONS_FLASH ||
                        window.pen.background_opacity == KOVA_CAPTIONS_FLASH;
    TouchRow(target, window.pen_row);
    // At the end of the line each character takes the place of the last.
    if (place != LastPlace(window)) SetPenPlace(window, line, place + Onward(window));
}

// ---------------------------------------------------------------------------------------------------------------- Pen

void SetPen(Window &window, const KovaCaptionsPen &pen)
{
    window.pen = pen;
    window.brush.foreground = uint8_t(pen.foreground_opacity << 6 | pen.foreground);
    window.brush.background = uint8_t(pen.background_opacity << 6 | pen.background);
    window.brush.edge_color = uint8_t(pen.offset << 6 | pen.edge_color);
    window.brush.font = uint8_t(pen.size << 6 | pen.font << 3 | pen.edge_type);
    window.brush.style = uint8_t(pen.italics << 7 | pen.underline << 6 | pen.text_tag);
}

void MovePen(Window &window, uint8_t row, uint8_t column)
{
    const auto last_row = uint8_t(window.definition.rows - 1),
               last_column = uint8_t(window.definition.columns - 1);
    window.pen_row = row < last_row ? row : last_row;
    window.pen_column = column < last_column ? column : last_column;
}

// Justified text starts where its row starts: the place along the row is not looked at. [708 8.7]
void LocatePen(const Target &target, uint8_t row, uint8_t column)
{
    Window &window = target.window;
    const int wanted = IsVertical(window) ? column : row, last = LineCount(window) - 1;
    const int line = wanted < last ? wanted : last;
    const bool same_line = line == PenLine(window);

    if (!same_line) CompleteRow(window);
    if (window.attributes.justify == KOVA_CAPTIONS_JUSTIFY_LEFT) {
        MovePen(window, row, column);
    } else if (!same_line) {
        SetPenPlace(window, line, FirstPlace(window));
    }
    TouchUnseen(target);
}

void MovePenBack(const Target &target)
{
    Window &window = target.window;
    const int line = PenLine(window), place = PenPlace(window);

    if (place == FirstPlace(window)) return;
    SetPenPlace(window, line, place - Onward(window));
    CellAt(window, line, PenPlace(window)) = {};
    TouchRow(target, window.pen_row);
}

// Moves all text by one line in the scroll direction; the line that comes in is empty.
static void Scroll(const Target &target)
{
    Window &window = target.window;
    const int rows = window.definition.rows, columns = window.definition.columns;
    const uint8_t direction = ScrollDirection(window.attributes);

    const bool text = HasText(window);
    switch (direction) {
    case KOVA_CAPTIONS_BOTTOM_TO_TOP:
        memmove(window.cells[0], window.cells[1], unsigned(rows - 1) * sizeof *window.cells);
        memset(window.cells[rows - 1], 0, sizeof *window.cells);
        break;
    case KOVA_CAPTIONS_TOP_TO_BOTTOM:
        memmove(window.cells[1], window.cells[0], unsigned(rows - 1) * sizeof *window.cells);
        memset(window.cells[0], 0, sizeof *window.cells);
        break;
    case KOVA_CAPTIONS_RIGHT_TO_LEFT:
        for (int row = 0; row < rows; ++row) {
            memmove(window.cells[row], window.cells[row] + 1, unsigned(columns - 1) * sizeof(Cell));
            window.cells[row][columns - 1] = {};
        }
        break;
    default:
        for (int row = 0; row < rows; ++row) {
            memmove(window.cells[row] + 1, window.cells[row], unsigned(columns - 1) * sizeof(Cell));
            window.cells[row][0] = {};
        }
        break;
    }
    const bool forward = direction == KOVA_CAPTIONS_BOTTOM_TO_TOP || direction == KOVA_CAPTIONS_RIGHT_TO_LEFT;
    window.completed = forward ? window.completed >> 1 : window.completed << 1 & AllLines(window);
    if (!text) return;
    if (window.visible && !target.service.blanked) {
        window.scroll = {target.state.now, KOVA_CAPTIONS_ROLL, KOVA_CAPTIONS_SCROLL, direction, 1, {}};
        ExpectChange(target.state, target.state.now + KOVA_CAPTIONS_ROLL);
    }
    TouchAllRows(target);
}

void StartNextRow(const Target &target)
{
    Window &window = target.window;
    const uint8_t direction = ScrollDirection(window.attributes);
    const bool forward = direction == KOVA_CAPTIONS_BOTTOM_TO_TOP || direction == KOVA_CAPTIONS_RIGHT_TO_LEFT;
    const int line = PenLine(window), last = forward ? LineCount(window) - 1 : 0;

    if (line == last) Scroll(target);
    SetPenPlace(window, line == last ? line : line + (forward ? 1 : -1), FirstPlace(window));
    TouchUnseen(target);
}

// --------------------------------------------------------------------------------------------------------- Attributes

static uint8_t Opposite(uint8_t direction)
{
    return direction ^ 1;
}

// The effect that shows or hides the window from now on; one that is under way goes back from where it is.
static KovaCaptionsMotion NewEffect(const Target &target, bool visible)
{
    const KovaCaptionsWindowAttributes &attributes = target.window.attributes;
    const KovaCaptionsMotion &old = target.window.effect;
    const uint8_t kind = attributes.display_effect;
    const int64_t duration = attributes.effect_speed * kEffectUnit;

    if ((kind != KOVA_CAPTIONS_FADE && kind != KOVA_CAPTIONS_WIPE) || duration == 0) return {};
    int64_t start = target.state.now;
    if (old.kind != KOVA_CAPTIONS_STILL) {
        // What the old one had still to do is what the new one has done.
        const int64_t to_do = old.start + old.duration - target.state.now;
        start -= duration * to_do / old.duration;
        // Nothing was seen of the old one, so there is nothing to go back from.
        if (to_do == old.duration) return {};
    }
    const uint8_t direction = visible ? attributes.effect_direction : Opposite(attributes.effect_direction);
    return {start, duration, kind, direction, visible, {}};
}

void SetVisible(const Target &target, bool visible)
{
    Window &window = target.window;
    if (window.visible == visible) return;

    const bool was_drawn = IsDrawn(target.service, window);
    window.effect = NewEffect(target, visible);
    window.visible = visible;
    if (window.effect.kind != KOVA_CAPTIONS_STILL) {
        ExpectChange(target.state, window.effect.start + window.effect.duration);
    } else if (!visible) {
        window.scroll = {};
    }
    TouchAs(target, was_drawn || IsDrawn(target.service, window));
}

static void Clear(const Target &target, bool pen_to_start)
{
    EraseText(target);
    if (pen_to_start) SetPenPlace(target.window, PenLine(target.window), FirstPlace(target.window));
}

// A change of justification clears the window, and so does a change of directions. [79.102(g)(1)(ii), 708 8.4]
void SetAttributes(const Target &target, const KovaCaptionsWindowAttributes &attributes)
{
    Window &window = target.window;
    const bool turned = attributes.print_direction != window.attributes.print_direction ||
                        ScrollDirection(attributes) != ScrollDirection(window.attributes);
    const bool justified = attributes.justify != window.attributes.justify;

    // Encoders repeat the attributes with every row.
    if (memcmp(&attributes, &window.attributes, sizeof attributes) == 0) return TouchUnseen(target);
    window.attributes = attributes;
    window.may_flash |= attributes.fill_opacity == KOVA_CAPTIONS_FLASH;
    if (turned || justified) Clear(target, turned);
    TouchWindow(target);
}

// Takes rows away: the oldest, which are at the top where rows come in at the bottom.
static void DropRows(Window &window, int dropped)
{
    const int rows = window.definition.rows, left = rows - dropped;

    if (ScrollDirection(window.attributes) == KOVA_CAPTIONS_BOTTOM_TO_TOP) {
        memmove(window.cells[0], window.cells[dropped], unsigned(left) * sizeof *window.cells);
        window.completed >>= dropped;
    }
    memset(window.cells[left], 0, unsigned(dropped) * sizeof *window.cells);
}

static void DropColumns(Window &window, int columns)
{
    for (auto &row : window.cells)
        memset(row + columns, 0, unsigned(kWindowColumns - columns) * sizeof(Cell));
}

void Resize(const Target &target, uint8_t rows, uint8_t columns)
{
    Window &window = target.window;
    if (rows == window.definition.rows && columns == window.definition.columns) return;

    TouchRows(target, 0, kWindowRows);
    if (rows < window.definition.rows) DropRows(window, window.definition.rows - rows);
    if (columns < window.definition.columns) DropColumns(window, columns);
    window.definition.rows = rows;
    window.definition.columns = columns;
    window.completed &= AllLines(window);
    window.scroll = {};
    MovePen(window, window.pen_row, window.pen_column);
    TouchWindow(target);
    TouchRows(target, 0, kWindowRows);
}

// ----------------------------------------------------------------------------------------------------------- Services

void CreateWindow(const Target &target)
{
    target.window.exists = true;
    TouchUnseen(target);
    TouchRows(target, 0, kWindowRows);
}

void DeleteWindow(const Target &target)
{
    Window &window = target.window;
    if (!window.exists) return;

    const bool was_drawn = IsDrawn(target.service, window);
    if (&window - target.service.windows == target.service.current) target.service.current = kNoWindow;
    window = {};
    TouchAs(target, was_drawn);
    TouchRows(target, 0, kWindowRows);
}

void ResetService(State &state, Service &service)
{
    if (!service.used) return;
    for (Window &window : service.windows) DeleteWindow({state, service, window});
    service.delay_until = KOVA_CAPTIONS_NO_TIME;
    service.size = service.scanned = 0;
    service.current = kNoWindow;
    service.used = service.blanked = false;
    SettleFlash(state, service);
    Touch(state, service.status, false);
}

} // namespace captions
