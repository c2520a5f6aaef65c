// SPDX-License-Identifier: MIT
#include "drawing/layout.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "cues/look.h"
#include "drawing/bitmaps.h"
#include "text/letters.h"
#include "text/visual_order.h"

namespace caption
{

// The area that every TV shows: without 5 % at each side, unless the viewer's set shows more.
static Rect SafeArea(Size plane, const ViewerSettings &settings)
{
    const int percent = settings.safe_area > 90 ? 100 - settings.safe_area : 10;
    const int x = plane.width * percent / 200;
    const int y = plane.height * percent / 200;

    return {x, y, plane.width - 2 * x, plane.height - 2 * y};
}

static int Right(Rect rect)
{
    return rect.x + rect.width;
}

static int Bottom(Rect rect)
{
    return rect.y + rect.height;
}

static Rect Around(Rect one, Rect other)
{
    const int x = std::min(one.x, other.x);
    const int y = std::min(one.y, other.y);

    return {x, y, std::max(Right(one), Right(other)) - x, std::max(Bottom(one), Bottom(other)) - y};
}

static bool Overlap(Rect one, Rect other)
{
    return one.x < Right(other) && other.x < Right(one) && one.y < Bottom(other) && other.y < Bottom(one);
}

static bool Within(Rect rect, Size plane)
{
    return rect.x >= 0 && rect.y >= 0 && Right(rect) <= plane.width && Bottom(rect) <= plane.height;
}

Rect Bounds(const Drawn &drawn)
{
    std::vector<Rect> rects = drawn.blocks;

    rects.insert(rects.end(), drawn.bitmaps.begin(), drawn.bitmaps.end());
    if (rects.empty()) return {};
    Rect bounds = rects.front();
    for (const Rect &rect : rects) bounds = Around(bounds, rect);
    return bounds;
}

LayoutEngine::LayoutEngine(const Options &options, Display &display, Fonts &fonts)
    : options_(options), safe_(SafeArea(options.plane, options.viewer)), margins_(MarginsOf(options.edge)),
      display_(display), fonts_(fonts)
{
}

int LayoutEngine::WidthOf(const Letters &letters, Span span, int enough)
{
    const std::size_t step =
        128; // letters measured at a time, so that an endless line is not measured as a whole
    int width = 0;

    for (std::size_t at = span.begin; at < span.end && width <= enough; at += step) {
        const auto begin = letters.begin() + std::ptrdiff_t(at);
        const auto end = letters.begin() + std::ptrdiff_t(std::min(at + step, span.end));
        for (const Piece &piece : Pieces({begin, end}, options_))
            width += display_.Width(piece, piece.height);
    }
    return width;
}

// An empty row is as high as one of blanks of that size.
Row LayoutEngine::MakeRow(const Letters &letters, Span span, int blank)
{
    const Letters visual = InVisualOrder(letters, span.begin, span.end);
    Row row;

    if (visual.empty()) row.reach = ReachOf(fonts_.First(), blank);
    row.pieces = Pieces(visual, options_);
    for (const Piece &piece : row.pieces) {
        const Reach reach = ReachOf(*piece.face, piece.height);
        row.widths.push_back(display_.Width(piece, piece.height));
        row.width += row.widths.back();
        row.reach.ascent = std::max(row.reach.ascent, reach.ascent);
        row.reach.descent = std::max(row.reach.descent, reach.descent);
    }
    row.width += margins_.left + margins_.right;
    row.height = row.reach.ascent + row.reach.descent + 1 + margins_.top + margins_.bottom;
    return row;
}

// A roll-up shows its last rows, all of one height, so that they move up by whole rows. Other blocks keep
// their first rows when the safe area is full.
void LayoutEngine::LimitRows(const Block &block, BlockLayout &layout, Drawn &drawn) const
{
    std::vector<Row> &rows = layout.rows;
    const auto lower = [](const Row &one, const Row &other) { return one.height < other.height; };
    std::size_t fitting = 0;

    if (block.rollUp > 0) {
        const int height = std::max(1, std::max_element(rows.begin(), rows.end(), lower)->height);
        const auto window = std::min(std::size_t(block.rollUp), std::size_t(safe_.height / height));
        const auto shown = std::min(rows.size(), window);
        drawn.left += std::min(rows.size(), std::size_t(block.rollUp)) - shown;
        rows.erase(rows.begin(), rows.end() - std::ptrdiff_t(shown));
        for (Row &row : rows) row.height = height;
        layout.rect.height = height * int(shown);
        layout.windowHeight = height * int(window);
        return;
    }
    while (fitting < rows.size() && layout.rect.height + rows[fitting].height <= safe_.height) {
        layout.rect.height += rows[fitting++].height;
    }
    drawn.left += rows.size() - fitting;
    rows.erase(rows.begin() + std::ptrdiff_t(fitting), rows.end());
    layout.windowHeight = layout.rect.height;
}

static bool HasBackground(const Block &block)
{
    const auto has = [](const Run &run) { return run.style.background.has_value(); };

    return std::any_of(block.lines.begin(), block.lines.end(),
                       [&](const Line &line) { return std::any_of(line.begin(), line.end(), has); });
}

// The text size of a block: that of its first letter.
static int FirstHeight(const std::vector<Letters> &lines, const Options &options)
{
    for (const Letters &line : lines) {
        if (!line.empty()) return HeightOf(line.front(), options);
    }
    return options.TextHeight();
}

BlockLayout LayoutEngine::LayOut(const Block &block, const std::vector<Letters> &lines, Drawn &drawn)
{
    const int height = FirstHeight(lines, options_);
    BlockLayout layout;
    layout.alignment = block.horizontal;
    layout.window = WindowOf(options_.viewer);
    layout.padding = HasBackground(block) || layout.window ? height / 6 : 0;
    const int widest = (block.width ? int(std::lround(*block.width * options_.plane.width)) : safe_.width) -
                       margins_.left - margins_.right - 2 * layout.padding;
    const Measure measure = [this](const Letters &letters, Span span, int enough) {
        return WidthOf(letters, span, enough);
    };

    for (const Letters &line : lines) {
        std::vector<Span> spans = Wrap(line, widest, measure);
        if (spans.empty()) spans.emplace_back(); // an empty line, or one of spaces
        for (const Span span : spans) layout.rows.push_back(MakeRow(line, span, height));
    }
    if (!layout.rows.empty()) LimitRows(block, layout, drawn);
    for (const Row &row : layout.rows)
        layout.rect.width = std::max(layout.rect.width, row.width + 2 * layout.padding);
    // An even width keeps a centred row at the same position whichever rows are around it.
    if (block.horizontal == Horizontal::CENTER) layout.rect.width += layout.rect.width % 2;
    return layout;
}

// Content that is too long begins at the start of the room.
static int Clamped(int at, int length, int begin, int room)
{
    return std::max(std::min(at, begin + room - length), begin);
}

Rect LayoutEngine::PlaceOf(const Block &block, const BlockLayout &layout) const
{
    const int across = int(block.horizontal);
    const int down = int(block.vertical);
    const int height = layout.windowHeight;
    Rect rect = {safe_.x + Before(across, safe_.width - layout.rect.width),
                 safe_.y + Before(down, safe_.height - height), layout.rect.width, height};

    if (block.anchor) {
        rect.x = int(std::lround(block.anchor->x * options_.plane.width)) - Before(across, rect.width);
        rect.y = int(std::lround(block.anchor->y * options_.plane.height)) - Before(down, rect.height);
    }
    if (!block.pinned) {
        rect.x = Clamped(rect.x, rect.width, safe_.x, safe_.width);
        rect.y = Clamped(rect.y, rect.height, safe_.y, safe_.height);
    }
    return rect;
}

// Blocks at the bottom move up, others down, past everything in their way. If that leads out of the safe
// area, the block stays where the source places it.
Rect LayoutEngine::MakeRoom(const Block &block, Rect wanted, const std::vector<Rect> &taken,
                            Drawn &drawn) const
{
    Rect rect = wanted;

    if (block.pinned) return wanted;
    for (std::size_t moves = 0; moves <= taken.size(); ++moves) {
        const auto inTheWay =
            std::find_if(taken.begin(), taken.end(), [&](const Rect &other) { return Overlap(rect, other); });
        if (inTheWay == taken.end()) break;
        rect.y = block.vertical == Vertical::BOTTOM ? inTheWay->y - rect.height : Bottom(*inTheWay);
    }
    if (rect.y >= safe_.y && Bottom(rect) <= Bottom(safe_)) return rect;
    drawn.notices.push_back("no free space on the plane; a block overlaps another");
    return wanted;
}

void LayoutEngine::LayOutBitmaps(const std::vector<const Cue *> &cues, Plan &plan) const
{
    const auto hasBlocks = [](const Cue *cue) { return !cue->blocks.empty(); };
    const bool text = std::any_of(cues.begin(), cues.end(), hasBlocks);
    const std::size_t colors = text ? 223 : 255; // entry 0 is transparent, and text needs entries too

    for (const Cue *const cue : cues) {
        for (const Bitmap &bitmap : cue->bitmaps) {
            plan.drawn.bitmaps.push_back(PlaceOnPlane(bitmap, cue->canvas, options_.plane));
        }
    }
    if (!plan.drawn.bitmaps.empty()) plan.bitmaps = Compose(cues, options_.plane, colors);
}

static bool IsTranslucent(const std::optional<Color> &color)
{
    return color && color->alpha > 0 && color->alpha < 255;
}

// Whether letters or their edges are.
static bool IsTranslucent(const Block &block)
{
    const auto is = [](const Run &run) {
        return IsTranslucent(run.style.color) || IsTranslucent(run.style.edgeColor);
    };

    return std::any_of(block.lines.begin(), block.lines.end(),
                       [&](const Line &line) { return std::any_of(line.begin(), line.end(), is); });
}

std::vector<Letters> LayoutEngine::Prepared(const std::vector<Block> &blocks, Drawn &drawn)
{
    std::vector<Letters> lines;

    for (const Block &block : blocks) {
        for (const Line &line : block.lines) lines.push_back(Prepare(line));
    }
    drawn.opaque |=
        options_.Mode() != ColorMode::INDEX &&
        std::any_of(blocks.begin(), blocks.end(), [](const Block &block) { return IsTranslucent(block); });
    drawn.unjoined |=
        std::any_of(lines.begin(), lines.end(), [](const Letters &line) { return NeedsShaping(line); });
    fonts_.Choose(lines);
    return lines;
}

Plan LayoutEngine::LayOut(const std::vector<const Cue *> &cues)
{
    std::map<int, std::vector<Rect>> taken; // by layer
    Plan plan;

    LayOutBitmaps(cues, plan);
    for (const Cue *const cue : cues) {
        std::vector<Block> blocks;
        for (const Block &block : cue->blocks) blocks.push_back(WithSettings(block, options_));
        const std::vector<Letters> lines = Prepared(blocks, plan.drawn);
        auto next = lines.begin();
        for (const Block &block : blocks) {
            const auto first = next;
            next += std::ptrdiff_t(block.lines.size());
            BlockLayout layout = LayOut(block, {first, next}, plan.drawn);
            if (layout.rows.empty()) continue;
            const Rect window = MakeRoom(block, PlaceOf(block, layout), taken[cue->layer], plan.drawn);
            layout.rect.x = window.x;
            layout.rect.y =
                Bottom(window) - layout.rect.height; // a roll-up's rows are at the bottom of its window
            taken[cue->layer].push_back(window);
            if (!Within(layout.rect, options_.plane)) {
                plan.drawn.notices.push_back("a block extends beyond the plane and is clipped");
            }
            plan.drawn.blocks.push_back(layout.rect);
            plan.drawn.lines += layout.rows.size();
            plan.blocks.push_back(std::move(layout));
        }
    }
    return plan;
}

} // namespace caption
