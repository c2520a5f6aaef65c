// SPDX-License-Identifier: MIT
// Lays captions out on the plane: which text is drawn where. Draws nothing.
#ifndef KOVA_CAPTION_DRAWING_LAYOUT_H
#define KOVA_CAPTION_DRAWING_LAYOUT_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/options.h"
#include "base/rect.h"
#include "cues/cue.h"
#include "drawing/display.h"
#include "drawing/edges.h"
#include "drawing/picture.h"
#include "text/fonts.h"
#include "text/pieces.h"
#include "text/wrap.h"

namespace caption
{

struct Drawn {
    std::vector<Rect> blocks;         // in the order of the cues; edges included, not clipped to the plane
    std::vector<Rect> bitmaps;        // likewise
    std::size_t lines = 0;            // drawn
    std::size_t left = 0;             // lines omitted for lack of room
    bool unjoined = false;            // some letters should join or stack, and are drawn one by one
    bool opaque = false;              // translucent letters or edges are drawn opaque
    std::vector<std::string> notices; // what is drawn differently from what was asked, without a full stop
};

// The rectangle around all blocks and bitmaps; empty where there are none.
Rect Bounds(const Drawn &drawn);

// One row of text on the plane.
struct Row {
    std::vector<Piece> pieces; // from left to right
    std::vector<int> widths;   // of the pieces
    Reach reach;
    int width = 0;
    int height = 0;
};

struct BlockLayout {
    Horizontal alignment = Horizontal::CENTER;
    std::vector<Row> rows;
    Rect rect;
    int padding = 0;             // of backgrounds, at both ends of a row
    std::optional<Color> window; // what fills the rectangle
    int windowHeight = 0;        // of the roll-up window that these rows are the last of; else of the rows
};

// Cues, laid out and measured ahead of drawing.
struct Plan {
    std::vector<BlockLayout> blocks;
    std::optional<Picture> bitmaps; // as large as the plane
    Drawn drawn;                    // what will be drawn
};

// The share of the free space that lies before the content: none, half or all of it, for the first, second
// and third choice of an alignment.
inline int Before(int choice, int left)
{
    return choice * left / 2;
}

class LayoutEngine
{
public:
    LayoutEngine(const Options &options, Display &display, Fonts &fonts);

    // Lays out cues that are shown together, in the order of a Screen. Breaks lines that are too wide. Lines
    // that do not fit the height are omitted from the end, and counted.
    Plan LayOut(const std::vector<const Cue *> &cues);

private:
    void LayOutBitmaps(const std::vector<const Cue *> &cues, Plan &plan) const;
    std::vector<Letters> Prepared(const std::vector<Block> &blocks, Drawn &drawn);
    int WidthOf(const Letters &letters, Span span, int enough);
    Row MakeRow(const Letters &letters, Span span, int blank);
    BlockLayout LayOut(const Block &block, const std::vector<Letters> &lines, Drawn &drawn);
    void LimitRows(const Block &block, BlockLayout &layout, Drawn &drawn) const;
    Rect PlaceOf(const Block &block, const BlockLayout &layout) const;
    Rect MakeRoom(const Block &block, Rect wanted, const std::vector<Rect> &taken, Drawn &drawn) const;

    Options options_;
    Rect safe_;
    Margins margins_;
    Display &display_;
    Fonts &fonts_;
};

} // namespace caption

#endif
