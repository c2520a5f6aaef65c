// SPDX-License-Identifier: MIT
// The content of a subtitle source, whatever its format: cues of blocks of styled text, and bitmaps.
#ifndef KOVA_CAPTION_CUES_CUE_H
#define KOVA_CAPTION_CUES_CUE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/color.h"
#include "base/interned.h"
#include "base/rect.h"
#include "cues/caption_recording.h"

namespace caption
{

// The viewer's settings decide what the source leaves open: colours that are not set, and the kind of edge.
struct Style {
    bool italic = false;
    bool bold = false;
    bool underline = false;
    bool strikeout = false;
    std::optional<Color> color = {};
    std::optional<Color> edgeColor = {};
    std::optional<Color> background = {}; // behind the letters, as high as the line
    Interned font = {};                   // family; none: the default font
    float line = 0;  // height of a line of this text, as a share of the canvas height; 0: the default size
    float scale = 1; // of that height

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

// A point of the canvas, and so of the plane: (0, 0) is the top left corner, (1, 1) the bottom right one.
// Points may lie outside.
struct Anchor {
    double x = 0;
    double y = 0;

    bool operator==(const Anchor &other) const;
};

// Lines that are placed together. The alignment applies to the lines and also names a point of the block,
// such as its bottom centre; that point is placed at the anchor.
struct Block {
    std::vector<Line> lines; // empty ones keep their height
    Horizontal horizontal = Horizontal::CENTER;
    Vertical vertical = Vertical::BOTTOM;

    std::optional<Anchor> anchor; // none: that point of the safe area

    // The share of the canvas width at which lines break; none: the width of the safe area.
    std::optional<double> width;

    // Stays at its anchor even if it overlaps others. A block that is not pinned stays within the safe area,
    // and moves away from its edge where an earlier block of the same layer is in the way.
    bool pinned = false;

    int rollUp = 0; // rows of the roll-up window whose last lines these are; 0: no such window
};

// A bitmap with a palette. Position and size are pixels of the cue's canvas.
struct Bitmap {
    int x = 0;
    int y = 0;
    Size size;
    std::vector<std::uint8_t> indexes; // row by row, size.width each, all of them within the palette
    std::vector<Color> palette;        // at most 256
};

// Content that appears and disappears together. It is shown from `start` until just before `end`.
struct Cue {
    std::int64_t start = 0; // milliseconds from the beginning of the source; may be negative
    std::int64_t end = 0;   // not before start
    int layer = 0;          // higher layers are drawn over lower ones; blocks of different layers may overlap
    std::vector<Block> blocks;
    Size canvas; // of the source; 0x0 if it has none, which bitmaps do not allow
    std::vector<Bitmap> bitmaps;
    // Closed captions are drawn from their bytes; the blocks say what they read.
    std::optional<CaptionMoment> captions;
    bool openEnd = false; // nothing in the source ends it; its end is a choice
};

struct Subtitles {
    std::vector<Cue> cues;            // by start, then as in the source; each has a block or a bitmap
    std::vector<std::string> notices; // messages about the source, without a full stop
};

// An interval in which the same cues are shown.
struct Screen {
    std::int64_t start = 0;
    std::int64_t end = 0;
    std::vector<std::size_t> cues; // indexes in drawing order: by layer, then as in the source
};

// Cues may overlap, so the screen changes whenever one begins or ends. Returns all intervals in which
// something is shown, in order of time, without overlap. Cues of no duration are in none.
std::vector<Screen> Screens(const std::vector<Cue> &cues);

// Extends the last run if the style is the same, else adds a run.
void Append(Line &line, const std::string &text, const Style &style);

std::string PlainText(const Line &line);

// The lines of all blocks in reading order, the highest block first.
std::vector<Line> Lines(const Cue &cue);

// The text of these lines with " / " between them.
std::string PlainText(const Cue &cue);

} // namespace caption

#endif
