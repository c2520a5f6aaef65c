// SPDX-License-Identifier: MIT
#include "reading/captions/cells.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/utf8.h"
#include "base/viewer.h"

namespace caption
{

// Both standards put their grid into the safe title area, the inner four fifths of the picture.
static const double g_safe = 0.8;
static const double g_edge = (1 - g_safe) / 2;

static const CellGrid g_channelGrid = {
    0,      0,      KOVA_CAPTIONS_CHANNEL_COLUMNS,          KOVA_CAPTIONS_CHANNEL_ROWS,
    g_edge, g_edge, g_safe / KOVA_CAPTIONS_CHANNEL_COLUMNS, g_safe / KOVA_CAPTIONS_CHANNEL_ROWS};

namespace
{

// What a cell shows: a character with its look, or nothing.
struct Cell {
    char32_t character = 0; // 0: neither character nor background
    Style style;
};

} // namespace

// White is what captions have where nothing is asked for, so it is the viewer's to choose. CEA-708 has two.
static std::optional<Color> Foreground(std::uint8_t color)
{
    const std::uint8_t paleWhite = 0x2A;

    if (color == KOVA_CAPTIONS_WHITE || color == paleWhite) return std::nullopt;
    return CaptionColor(color);
}

static std::optional<Color> Background(std::uint8_t color, std::uint8_t opacity)
{
    if (opacity == KOVA_CAPTIONS_TRANSPARENT) return std::nullopt;
    return CaptionColor(color, AlphaOf(opacity));
}

static Cell Read(const KovaCaptionsChannelCell &cell)
{
    Cell read;

    if (cell.kind != KOVA_CAPTIONS_CHARACTER && cell.kind != KOVA_CAPTIONS_ATTRIBUTE) return read;
    read.character = cell.character;
    read.style.italic = cell.italics;
    read.style.underline = cell.underline;
    read.style.color = Foreground(cell.foreground);
    read.style.background = Background(cell.background, cell.background_opacity);
    return read;
}

static Cell Read(const KovaCaptionsWindowCell &cell, const KovaCaptionsWindowAttributes &window)
{
    const KovaCaptionsPen &pen = cell.pen;
    Cell read;

    if (cell.kind != KOVA_CAPTIONS_CHARACTER) return read;
    read.character = pen.foreground_opacity == KOVA_CAPTIONS_TRANSPARENT ? U' ' : char32_t(cell.character);
    read.style.italic = pen.italics;
    read.style.underline = pen.underline;
    read.style.color = Foreground(pen.foreground);
    if (pen.edge_type != KOVA_CAPTIONS_EDGE_NONE) read.style.edgeColor = CaptionColor(pen.edge_color);
    read.style.background = Background(pen.background, pen.background_opacity);
    if (!read.style.background) read.style.background = Background(window.fill_color, window.fill_opacity);
    return read;
}

static bool IsBlank(const Cell &cell)
{
    const char32_t noBreakSpace = 0xA0;

    return cell.character == 0 || cell.character == U' ' || cell.character == noBreakSpace;
}

// The text of cells from the first to the last one that is not blank; `first` and `last` are their places.
static PageRow ReadRow(const std::vector<Cell> &cells)
{
    PageRow row;

    row.last = int(cells.size()) - 1;
    while (row.first <= row.last && IsBlank(cells[std::size_t(row.first)])) ++row.first;
    while (row.last >= row.first && IsBlank(cells[std::size_t(row.last)])) --row.last;
    for (int i = row.first; i <= row.last; ++i) {
        const Cell &cell = cells[std::size_t(i)];
        Append(row.line, cell.character ? Utf8(cell.character) : " ", cell.style);
    }
    return row;
}

CaptionScreen ReadScreen(const KovaCaptionsChannel &channel)
{
    CaptionArea area;

    area.grid = g_channelGrid;
    area.alignment = channel.mode == KOVA_CAPTIONS_POP_ON ? RowAlignment::AS_THEY_LIE : RowAlignment::LEFT;
    area.rollUp = channel.mode == KOVA_CAPTIONS_ROLL_UP ? channel.depth : 0;
    area.growing = channel.mode != KOVA_CAPTIONS_POP_ON;
    for (int row = 0; row < KOVA_CAPTIONS_CHANNEL_ROWS; ++row) {
        std::vector<Cell> cells;
        for (const KovaCaptionsChannelCell &cell : channel.displayed[row]) cells.push_back(Read(cell));
        PageRow read = ReadRow(cells);
        read.row = row;
        if (!read.line.empty()) area.rows.push_back(std::move(read));
    }
    if (area.rows.empty()) return {};
    return {area};
}

// Where a window lies. It is moved inside where it hangs over the safe title area.
static CellGrid GridOf(const KovaCaptionsDefinition &window)
{
    const double columns = 210;
    const double rows = 75;
    const double hundred = 100;
    const double columnWidth = g_safe / KOVA_CAPTIONS_WINDOW_COLUMNS;
    const double rowHeight = g_safe / KOVA_CAPTIONS_WINDOW_ROWS;
    const double x = window.anchor_horizontal / (window.relative ? hundred : columns);
    const double y = window.anchor_vertical / (window.relative ? hundred : rows);
    const double width = window.columns * columnWidth / g_safe;
    const double height = window.rows * rowHeight / g_safe;
    // The nine anchor points are three rows of three.
    const int anchorColumn = window.anchor_point % 3;
    const int anchorRow = window.anchor_point / 3;
    const double left = std::clamp(x - width * anchorColumn / 2, 0.0, std::max(0.0, 1 - width));
    const double top = std::clamp(y - height * anchorRow / 2, 0.0, std::max(0.0, 1 - height));

    return {0,           0,        window.columns, window.rows, g_edge + g_safe * left, g_edge + g_safe * top,
            columnWidth, rowHeight};
}

static RowAlignment AlignmentOf(const KovaCaptionsWindowAttributes &window)
{
    switch (window.justify) {
    case KOVA_CAPTIONS_JUSTIFY_RIGHT:
        return RowAlignment::RIGHT;
    case KOVA_CAPTIONS_JUSTIFY_CENTER:
        return RowAlignment::CENTER;
    default:
        return window.print_direction == KOVA_CAPTIONS_RIGHT_TO_LEFT ? RowAlignment::RIGHT
                                                                     : RowAlignment::LEFT;
    }
}

// A line of text runs along the print direction, so it is a row of the window, or a column.
static CaptionArea ReadWindow(const KovaCaptionsWindow &window)
{
    const KovaCaptionsWindowAttributes &attributes = window.attributes;
    const std::uint8_t print = attributes.print_direction;
    const bool vertical = print == KOVA_CAPTIONS_TOP_TO_BOTTOM || print == KOVA_CAPTIONS_BOTTOM_TO_TOP;
    const bool backward = print == KOVA_CAPTIONS_RIGHT_TO_LEFT || print == KOVA_CAPTIONS_BOTTOM_TO_TOP;
    const bool fromTheRight = vertical && attributes.scroll_direction == KOVA_CAPTIONS_LEFT_TO_RIGHT;
    const int lines = vertical ? window.definition.columns : window.definition.rows;
    const int length = vertical ? window.definition.rows : window.definition.columns;
    CaptionArea area;

    area.grid = GridOf(window.definition);
    area.alignment = AlignmentOf(attributes);
    area.growing = true;
    for (int i = 0; i < lines; ++i) {
        const int across = fromTheRight ? lines - 1 - i : i;
        const auto place = [&](int along) { return backward ? length - 1 - along : along; };
        std::vector<Cell> cells;
        for (int along = 0; along < length; ++along) {
            const int row = vertical ? place(along) : across;
            const int column = vertical ? across : place(along);
            cells.push_back(Read(window.cells[row][column], attributes));
        }
        PageRow read = ReadRow(cells);
        if (read.line.empty()) continue;
        read.row = vertical ? place(read.first) : across;
        read.last = vertical ? across : place(read.last);
        read.first = vertical ? across : place(read.first);
        area.rows.push_back(std::move(read));
    }
    return area;
}

CaptionScreen ReadScreen(const KovaCaptionsService &service, const KovaCaptionsWindow *windows)
{
    CaptionScreen screen;
    std::vector<int> shown;

    for (int i = 0; i < KOVA_CAPTIONS_WINDOWS && !service.blanked; ++i) {
        if (windows[i].exists && windows[i].visible) shown.push_back(i);
    }
    std::stable_sort(shown.begin(), shown.end(), [&](int a, int b) {
        return windows[a].definition.priority < windows[b].definition.priority;
    });
    for (const int i : shown) {
        CaptionArea area = ReadWindow(windows[i]);
        area.window = i;
        if (!area.rows.empty()) screen.push_back(std::move(area));
    }
    // Anchors at different points of windows may give one place with different errors of rounding.
    const auto fine = [](double place) { return std::lround(place * 1e6); };
    std::stable_sort(screen.begin(), screen.end(), [&](const CaptionArea &a, const CaptionArea &b) {
        return fine(a.grid.top) != fine(b.grid.top) ? a.grid.top < b.grid.top
                                                    : fine(a.grid.left) < fine(b.grid.left);
    });
    return screen;
}

} // namespace caption
