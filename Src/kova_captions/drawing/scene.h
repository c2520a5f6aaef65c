// SPDX-License-Identifier: MIT
// What is to be seen, as plain data: a function of the state, the settings, the time and the screen. Two scenes are
// compared to find what has to be drawn, and a scene is all that drawing looks at. CEA-608, CEA-708 and the preview all
// become panels.
#ifndef KOVA_CAPTIONS_SCENE_H
#define KOVA_CAPTIONS_SCENE_H

#include "../characters.h"
#include "grid.h"

#include <kova/kova_captions_draw.h>

namespace captions
{

constexpr int kPanels = KOVA_CAPTIONS_WINDOWS;
constexpr int kPanelRows = KOVA_CAPTIONS_WINDOW_ROWS;
constexpr int kPanelColumns = KOVA_CAPTIONS_WINDOW_COLUMNS;

enum CellFlag : uint8_t {
    // Something was printed here, a transparent space included.
    kTaken = 1,
    kBackground = 2,
    kUnderline = 4,
    kItalics = 8,
    // The glyph is centred in its cell; else runs of text have their natural width.
    kMono = 16
};

// What is drawn by other means than a glyph of the font.
constexpr uint16_t kCaptionIcon = 0xE9A0;

// A cell with the settings applied. An empty one is all zero.
struct Cell {
    // 0: no glyph. A space of proportional text is U+0020.
    uint16_t character;
    // Opacity in bits 7-6, colour in bits 5-0.
    uint8_t foreground;
    uint8_t background;
    // Offset in bits 7-6, colour of the edge in bits 5-0.
    uint8_t edge;
    // Size in bits 7-6, font in bits 5-3, edge type in bits 2-0.
    uint8_t font;
    uint8_t flags;
    uint8_t reserved;
};

// Where the row or column that scrolls out of sight lies.
enum Leaving : uint8_t {
    kNothingLeaves,
    kAboveFirstRow,
    kBelowLastRow,
    kLeftOfFirstColumn,
    kRightOfLastColumn
};

// A panel but for its cells. Frames are compared byte for byte, so every byte of theirs is set.
struct Frame {
    // The grid of the cells, without margins.
    Rect area;
    // What the fill covers.
    Rect rect;
    // Where text is seen: in the panel, a little around it for large letters, or in the rows that roll.
    Rect band;
    // What is seen of panel and border: less than all during a wipe.
    Rect shown;
    // Of the scroll under way, or 0.
    int64_t scroll_start;
    // How far the cells are from their place.
    int dx, dy;
    uint8_t exists;
    uint8_t priority;
    uint8_t rows, columns;
    // Columns on both sides of the area, for the boxes of CEA-608: the first cell of a row is that many to the left.
    uint8_t margin;
    // Opacity in bits 7-6, colour in bits 5-0.
    uint8_t fill;
    // The fill is that of each row with text, not of the whole panel.
    uint8_t fills_rows;
    uint8_t border_type, border_color, border_width;
    uint8_t justify;
    // Its colours are in palette entries of its own, with an opacity of their own.
    uint8_t fades;
    uint8_t leaving;
    // The row that leaves stands in this one's place: that before the first, or behind the last.
    int8_t leaver_row;
    // Where colours are drawn, not looked up: what flashes and fades has to be drawn again.
    uint8_t off, alpha;
    Cell leaver[kPanelColumns];
};

struct Panel {
    Frame frame;
    Cell cells[kPanelRows][kPanelColumns];
};

// What is done without while palette entries are short, one after the other.
enum Economy : uint8_t { kEverything, kNoFades, kNoFlash, kNoMixtures };

struct Scene {
    Panel panels[kPanels];
    // Opacities of panels that fade, 0 to 255.
    uint8_t alpha[kPanels];
    uint8_t economy;
    bool flashes;
    int64_t flash_since;
};

// What scenes are made with.
struct View {
    KovaCaptionsSettings settings;
    Rect plane;
    Rect safe;
    // Of the grid, 210 or 160; columns 42 or 32.
    int units;
    int columns;
    bool eight_colors;
    int64_t time;
    // Of the drawing before.
    int64_t previous;
    // When something moves on.
    int64_t next;
    // Fades are not possible, because palette entries are short.
    bool snaps;
};

// windows.cpp
void ShowService(View &view, const KovaCaptionsService &service, const KovaCaptionsWindow *windows,
                 const Scene &before, Scene &scene);
// rows.cpp
void ShowChannel(View &view, const KovaCaptionsChannel &channel, const Scene &before, Scene &scene);
// preview.cpp
void ShowText(const View &view, const char *text, Scene &scene);

// wrap.cpp: cells that do not fit into so many columns and rows. Changes the frame's rows and columns.
void Wrap(Panel &panel, int most_columns, int most_rows);

// Where rows and cells are. Cells count from the left margin; -1 and the number of cells are beside the panel.
inline int CellsOf(const Frame &frame)
{
    return frame.columns + 2 * frame.margin;
}
Rect CellRect(const Frame &frame, int row, int first, int last);
// Where a row's text can reach: more than the row for large and raised text.
Rect RowReach(const Panel &panel, int row);
const Cell *RowOf(const Panel &panel, int row);
// Large and raised letters need more than their row: a quarter of it.
Rect WithOverhang(const Rect &rect, int row_height);
bool HasTallRow(const Panel &panel);
// With the border, and with what reaches over the panel.
Rect OuterRect(const Frame &frame);
int BorderWidth(const Rect &rect, int rows);

} // namespace captions

#endif
