// SPDX-License-Identifier: MIT
#include "reading/captions/cues.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/utf8.h"
#include "cues/timeline.h"

namespace caption
{

// A frame of 30 a second as files round it that count milliseconds: a state shorter than this is over within
// one. In microseconds.
static const std::int64_t g_frame = 33000;

// Frames of television, a little longer than that.
static const std::int64_t g_frameAtMost = 34000;

// Letters this close together, in milliseconds, count as simultaneous.
static const std::int64_t g_burst = 500000;

static std::int64_t Milliseconds(std::int64_t microseconds)
{
    return std::llround(double(microseconds) / 1000);
}

namespace
{

struct TextState {
    std::int64_t start = 0;
    std::vector<ListedLine> lines;
};

} // namespace

static std::vector<ListedLine> TextOf(const CaptionScreen &screen)
{
    std::vector<ListedLine> lines;

    for (const CaptionArea &area : screen) {
        const std::optional<int> window = area.window < 0 ? std::nullopt : std::optional<int>(area.window);
        const int firstRow = window ? 0 : 1;
        for (const PageRow &row : area.rows) {
            lines.push_back({window, row.row + firstRow, row.first, PlainText(row.line)});
        }
    }
    return lines;
}

// Whether a state that begins at one time and ends at the other is shorter than that. Times that go back are
// those of another recording.
static bool IsShorter(std::int64_t start, std::int64_t end, std::int64_t length)
{
    return start <= end && end - start < length;
}

// States of different text or places, each a frame long at least.
static std::vector<TextState> TextStates(const std::vector<CaptionState> &states)
{
    std::vector<TextState> kept;

    for (const CaptionState &state : states) {
        std::vector<ListedLine> lines = TextOf(state.screen);
        if (!kept.empty() && kept.back().lines == lines) continue;
        if (kept.empty() || !IsShorter(kept.back().start, state.start, g_frame)) {
            kept.push_back({state.start, std::move(lines)});
            continue;
        }
        kept.back().lines = std::move(lines);
        const std::size_t last = kept.size() - 1;
        if (last > 0 && kept[last - 1].lines == kept[last].lines) kept.pop_back();
    }
    return kept;
}

std::vector<ListedCue> ListedCues(const std::vector<CaptionState> &states)
{
    const std::vector<TextState> kept = TextStates(states);
    std::vector<ListedCue> cues;

    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (kept[i].lines.empty()) continue;
        ListedCue cue = {Milliseconds(kept[i].start), std::nullopt, kept[i].lines, 0};
        if (i + 1 < kept.size()) cue.end = Milliseconds(kept[i + 1].start);
        cues.push_back(std::move(cue));
    }
    return cues;
}

// Whether letters were only added to the existing ones.
static bool Extends(const CaptionScreen &screen, const CaptionScreen &shown)
{
    const auto holds = [&](int window, const PageRow &old) {
        const std::string text = PlainText(old.line);
        return std::any_of(screen.begin(), screen.end(), [&](const CaptionArea &area) {
            return area.growing && area.window == window &&
                   std::any_of(area.rows.begin(), area.rows.end(), [&](const PageRow &row) {
                       return row.row == old.row && row.first == old.first &&
                              PlainText(row.line).compare(0, text.size(), text) == 0;
                   });
        });
    };

    return std::all_of(shown.begin(), shown.end(), [&](const CaptionArea &area) {
        return std::all_of(area.rows.begin(), area.rows.end(),
                           [&](const PageRow &row) { return holds(area.window, row); });
    });
}

// The pieces of a row between which at least two cells show nothing, each with its columns.
static std::vector<PageRow> Pieces(const PageRow &row)
{
    const int widestGap = 1;
    std::vector<PageRow> pieces;
    int column = row.first;
    int gap = widestGap + 1;

    for (const Run &run : row.line) {
        for (const Character &character : Characters(run.text)) {
            const bool nothing = character.code == U' ' && !run.style.background;
            if (!nothing && gap > widestGap) pieces.push_back({row.row, column, column, row.height, {}});
            if (!nothing) {
                PageRow &piece = pieces.back();
                for (; piece.last + 1 < column; ++piece.last) Append(piece.line, " ", {});
                Append(piece.line, character.text, run.style);
                piece.last = column;
            }
            gap = nothing ? gap + 1 : 0;
            ++column;
        }
    }
    return pieces;
}

// Pieces that stand below one another belong together.
static std::vector<std::vector<PageRow>> Columns(const std::vector<PageRow> &pieces)
{
    std::vector<std::vector<PageRow>> columns;

    for (const PageRow &piece : pieces) {
        const auto below =
            std::find_if(columns.begin(), columns.end(), [&](const std::vector<PageRow> &column) {
                const PageRow &last = column.back();
                return last.row < piece.row && last.first <= piece.last && piece.first <= last.last;
            });
        if (below == columns.end()) {
            columns.push_back({piece});
        } else {
            below->push_back(piece);
        }
    }
    return columns;
}

// Two speakers may share a row, so their texts keep their columns, whatever room they take.
static std::vector<Block> BlocksOf(const CaptionArea &area)
{
    std::vector<PageRow> pieces;
    std::vector<Block> blocks;

    for (const PageRow &row : area.rows) {
        for (PageRow &piece : Pieces(row)) pieces.push_back(std::move(piece));
    }
    if (pieces.size() == area.rows.size() || area.alignment != RowAlignment::AS_THEY_LIE) {
        return Blocks(area.rows, area.grid, area.alignment);
    }
    for (const std::vector<PageRow> &column : Columns(pieces)) {
        for (Block &block : Blocks(column, area.grid, RowAlignment::LEFT)) {
            block.pinned = true;
            blocks.push_back(std::move(block));
        }
    }
    return blocks;
}

static std::vector<Block> BlocksOf(const CaptionScreen &screen)
{
    std::vector<Block> blocks;

    for (const CaptionArea &area : screen) {
        for (Block &block : BlocksOf(area)) {
            block.rollUp = area.rollUp;
            blocks.push_back(std::move(block));
        }
    }
    return blocks;
}

// Whether a state is only a step from the one before to the next: it lasts a frame, and neither adds letters
// nor gets any.
static bool IsStep(const CaptionState *before, const CaptionState &state, const CaptionState *next)
{
    if (!before || !next || before->screen.empty() || state.screen.empty() || next->screen.empty())
        return false;
    return IsShorter(state.start, next->start, g_frameAtMost) && !Extends(state.screen, before->screen) &&
           !Extends(next->screen, state.screen);
}

std::vector<Cue> DrawnCues(const DecodedCaptions &decoded, std::uint8_t source)
{
    const std::vector<CaptionState> &states = decoded.states.at(source);
    Timeline timeline;
    const CaptionState *shown = nullptr;
    const CaptionState *step = nullptr;

    for (std::size_t i = 0; i < states.size(); ++i) {
        const CaptionState &state = states[i];
        if (!step && IsStep(shown, state, i + 1 < states.size() ? &states[i + 1] : nullptr)) {
            step = &state;
            continue;
        }
        Cue *const current = timeline.Current();
        Cue cue;
        cue.start = Milliseconds(std::exchange(step, nullptr) ? states[i - 1].start : state.start);
        cue.blocks = BlocksOf(state.screen);
        cue.captions = CaptionMoment{decoded.recording, source, state.portions, state.start};
        if (state.screen.empty()) {
            timeline.Clear(cue.start);
        } else if (current && IsShorter(shown->start, state.start, g_burst + 1) &&
                   Extends(state.screen, shown->screen)) {
            current->blocks = std::move(cue.blocks);
            current->captions = std::move(cue.captions);
        } else {
            timeline.Show(std::move(cue), std::nullopt);
        }
        shown = &state;
    }
    return timeline.Finish(Milliseconds(decoded.end));
}

} // namespace caption
