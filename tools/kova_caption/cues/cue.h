// SPDX-License-Identifier: MIT
// What a source of subtitles asks to be shown, whatever its format: cues of blocks of styled text, and
// pictures.
#ifndef KOVA_CAPTION_CUES_CUE_H
#define KOVA_CAPTION_CUES_CUE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/color.h"
#include "base/rect.h"

namespace caption
{

// What the source leaves open the viewer's settings decide: colours that are not there, and the kind of edge.
struct Style {
    bool italic = false;
    bool bold = false;
    bool underline = false;
    bool strikeout = false;
    std::optional<Color> color = {};
    std::optional<Color> edgeColor = {};
    std::optional<Color> background = {}; // behind the letters, as high as the line

    bool operator==(const Style &other) const;
};

// Text of one style.
struct Run {
    std::string text; // UTF-8
    Style style;

    bool operator==(const Run &other) const;
};

using Line = std::vector<Run>;

enum class Horizontal { LEFT, CENTER, RIGHT };
enum class Vertical { TOP, MIDDLE, BOTTOM };

// A point of the canvas, and so of the plane: (0, 0) is its top left corner, (1, 1) its bottom right one.
// Points outside are possible.
struct Anchor {
    double x = 0;
    double y = 0;

    bool operator==(const Anchor &other) const;
};

// Lines that stand together. The alignment says which way the lines run together, and names a point of the
// block: its bottom centre, say. That point stands at the anchor.
struct Block {
    std::vector<Line> lines; // empty ones keep their height
    Horizontal horizontal = Horizontal::CENTER;
    Vertical vertical = Vertical::BOTTOM;

    std::optional<Anchor> anchor; // none: that point of the safe area
    std::optional<double>
        width; // share of the canvas's width after which lines are broken; none: the safe area's

    // Stays at its anchor, whatever stands there. Others make room: where an earlier block of the same layer
    // is in the way they move off, away from their edge, and they keep inside the safe area.
    bool pinned = false;

    int rollUp = 0; // rows of the roll-up window whose last lines these are; 0: no such window
};

// A picture with a palette. Its place and size are pixels of the cue's canvas.
struct Bitmap {
    int x = 0;
    int y = 0;
    Size size;
    std::vector<std::uint8_t> indexes; // row by row, size.width each, all of them within the palette
    std::vector<Color> palette;        // at most 256
};

// What appears and goes at once. Its first moment is start, its last one the millisecond before end.
struct Cue {
    std::int64_t start = 0; // milliseconds from the beginning of the source; may be negative
    std::int64_t end = 0;   // not before start
    int layer = 0;          // higher ones lie over lower ones; blocks of different layers make no room
    std::vector<Block> blocks;
    Size canvas; // what the source was made for; 0x0 where it does not say, which goes with no bitmaps
    std::vector<Bitmap> bitmaps;
    bool openEnd = false; // nothing in the source ends it; its end is a choice
};

struct Subtitles {
    std::vector<Cue> cues; // by start, then as in the source; each has a block or a bitmap
    std::vector<std::string>
        notices; // what the source asks and is not drawn, each said once, without a full stop
};

// A stretch of time in which the same cues are shown.
struct Screen {
    std::int64_t start = 0;
    std::int64_t end = 0;
    std::vector<std::size_t> cues; // indexes, in the order they are to be drawn: by layer, then as they come
};

// Cues may overlap, so what is seen changes whenever one begins or ends. All stretches in which something is
// shown, in order of time; they do not overlap. Cues that last no time are in none.
std::vector<Screen> Screens(const std::vector<Cue> &cues);

// Adds to the last run where the style is the same.
void Append(Line &line, const std::string &text, const Style &style);

std::string PlainText(const Line &line);

// The lines of all blocks as they are read, the highest block first.
std::vector<Line> Lines(const Cue &cue);

// The text of these lines with " / " between them.
std::string PlainText(const Cue &cue);

} // namespace caption

#endif
