// SPDX-License-Identifier: MIT
// Lays captions out on the plane and has the display draw them.
#ifndef KOVA_CAPTION_RENDERER_H
#define KOVA_CAPTION_RENDERER_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cue.h"
#include "display.h"
#include "fonts.h"
#include "options.h"
#include "picture.h"
#include "wrap.h"

namespace caption
{

struct Drawn {
    std::vector<Rect> blocks;  // in the order of the cues; edges included, and cut off at the plane nowhere
    std::vector<Rect> bitmaps; // likewise
    std::size_t lines = 0;     // drawn
    std::size_t left = 0;      // lines that found no room
    bool unjoined = false;     // some letters should join or stack, and stand one by one
    std::vector<std::string> notices; // what is not as it was asked for, without a full stop
};

Rect Bounds(const Drawn &drawn);

class Renderer
{
    struct Row {
        std::vector<Piece> pieces; // from left to right
        std::vector<int> widths;   // theirs
        Reach reach;
        int width = 0;
        int height = 0;
    };

    struct Layout {
        std::vector<Row> rows;
        Rect rect;
        int padding = 0;      // of backgrounds, at both ends of a row
        int windowHeight = 0; // of a roll-up's window, whose last rows these are; of the rows elsewhere
    };

public:
    // Cues laid out and measured, so that drawing them takes no longer than it must. Good as long as the cues
    // stay where they are.
    struct Plan {
        std::vector<std::pair<const Block *, Layout>> blocks;
        std::optional<Picture> bitmaps; // as large as the plane
        Drawn drawn;                    // what will be
    };

    Renderer(const Options &options, Display &display, Fonts &fonts);

    // Of cues that are shown together, in this order; those of cue.h's Screen are. Lines that are too wide
    // are broken. Lines that do not fit the height are left out from the end, and counted. Draws nothing.
    Plan LayOut(const std::vector<const Cue *> &cues);

    // Clears nothing.
    Drawn Draw(const Plan &plan);
    Drawn Draw(const std::vector<const Cue *> &cues)
    {
        return Draw(LayOut(cues));
    }

private:
    void LayOutBitmaps(const std::vector<const Cue *> &cues, Plan &plan) const;
    std::vector<Letters> Prepared(const Cue &cue, Drawn &drawn);
    int WidthOf(const Letters &letters, Span span, int enough);
    Row MakeRow(const Letters &letters, Span span);
    Layout LayOut(const Block &block, const std::vector<Letters> &lines, Drawn &drawn);
    void LimitRows(const Block &block, Layout &layout, Drawn &drawn) const;
    Rect PlaceOf(const Block &block, const Layout &layout) const;
    Rect MakeRoom(const Block &block, Rect wanted, const std::vector<Rect> &taken, Drawn &drawn) const;
    void DrawRows(const Block &block, const Layout &layout);
    void DrawRow(const Row &row, int x, int y);

    Options options_;
    Rect safe_;
    Margins margins_;
    Display &display_;
    Fonts &fonts_;
};

} // namespace caption

#endif
