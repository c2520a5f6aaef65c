// SPDX-License-Identifier: MIT
#include "generating/caption_rows.h"

#include <algorithm>

#include "base/utf8.h"
#include "generating/characters.h"

namespace caption
{

using encoding::Color608;

static const std::size_t g_rows = 15;

static bool IsFull(std::uint8_t component)
{
    return component >= 128;
}

// The nearest of the colours of CEA-608. It has no black letters without a background code, so black is white.
static Color608 NearestColor(const std::optional<Color> &color)
{
    static const Color608 colors[] = {encoding::WHITE, encoding::BLUE,    encoding::GREEN,  encoding::CYAN,
                                      encoding::RED,   encoding::MAGENTA, encoding::YELLOW, encoding::WHITE};

    if (!color) return encoding::WHITE;
    return colors[4 * IsFull(color->red) + 2 * IsFull(color->green) + IsFull(color->blue)];
}

static std::vector<CaptionCell> CellsOf(const Line &line)
{
    std::vector<CaptionCell> cells;

    for (const Run &run : line) {
        const PenLook look = {NearestColor(run.style.color), run.style.italic, run.style.underline};
        for (const char32_t code : Composed(run.text)) cells.push_back({IsSpace(code) ? U' ' : code, look});
    }
    return cells;
}

static void AddCodes(std::vector<Item608> &items, const PenLook &from, const PenLook &to)
{
    const bool color = from.color != to.color || !to.italics;

    if (color) items.push_back({U"", true, to.color, to.underline});
    if (to.italics) items.push_back({U"", true, encoding::ITALICS, to.underline});
}

std::vector<Item608> ItemsOf(const std::vector<CaptionCell> &cells, std::set<char32_t> &missing)
{
    std::vector<Item608> items;
    PenLook look;

    for (std::size_t i = 0; i < cells.size(); ++i) {
        const CaptionCell &cell = cells[i];
        if (cell.code == U' ') {
            const bool codeFollows = i + 1 < cells.size() && !(cells[i + 1].look == look);
            if (!codeFollows) items.push_back({U" "});
            continue;
        }
        if (!(cell.look == look)) AddCodes(items, look, cell.look);
        look = cell.look;
        const auto text = In608(cell.code);
        if (!text) missing.insert(cell.code);
        items.push_back({text.value_or(U"?")});
    }
    return items;
}

std::size_t WidthOf(const std::vector<Item608> &items)
{
    std::size_t width = 0;

    for (const Item608 &item : items) width += item.isCode ? 1 : item.text.size();
    return width;
}

static bool Fits(const std::vector<CaptionCell> &cells)
{
    std::set<char32_t> ignored;
    return WidthOf(ItemsOf(cells, ignored)) <= g_columns;
}

// No space between two words is underlined unless both are.
static PenLook LookBetween(const PenLook &before, const PenLook &after)
{
    return before.underline ? after : before;
}

// Breaks at spaces, and within words that are longer than a row.
static void Wrap(const std::vector<CaptionCell> &cells, Horizontal horizontal, std::vector<CaptionRow> &rows)
{
    std::vector<CaptionCell> row;
    const auto end = [&] {
        if (!row.empty()) rows.push_back({row, horizontal});
        row.clear();
    };

    for (std::size_t i = 0; i < cells.size();) {
        if (cells[i].code == U' ') {
            ++i;
            continue;
        }
        std::vector<CaptionCell> longer = row;
        std::size_t wordEnd = i;
        if (!row.empty()) longer.push_back({U' ', LookBetween(row.back().look, cells[i].look)});
        while (wordEnd < cells.size() && cells[wordEnd].code != U' ') longer.push_back(cells[wordEnd++]);
        if (Fits(longer)) {
            row = std::move(longer);
            i = wordEnd;
            continue;
        }
        if (!row.empty()) {
            end();
            continue;
        }
        for (; i < wordEnd; ++i) {
            row.push_back(cells[i]);
            if (Fits(row)) continue;
            row.pop_back();
            break;
        }
        if (row.empty()) ++i; // a cell that no row has room for
        if (i < wordEnd) end();
    }
    end();
}

static bool BeginsSpeech(const std::vector<CaptionCell> &line)
{
    return !line.empty() && (line[0].code == U'-' || line[0].code == U'\u2013' || line[0].code == U'\u2014');
}

// The lines of the block if each is a row, else those that run on joined, so that no short rows are left over. A dash
// begins what another speaker says.
static std::vector<std::vector<CaptionCell>> Paragraphs(const Block &block)
{
    std::vector<std::vector<CaptionCell>> lines, joined;

    for (const Line &line : block.lines) lines.push_back(CellsOf(line));
    if (std::all_of(lines.begin(), lines.end(), Fits)) return lines;
    for (const std::vector<CaptionCell> &line : lines) {
        if (joined.empty() || joined.back().empty() || line.empty() || BeginsSpeech(line)) {
            joined.push_back(line);
            continue;
        }
        joined.back().push_back({U' ', LookBetween(joined.back().back().look, line.front().look)});
        joined.back().insert(joined.back().end(), line.begin(), line.end());
    }
    return joined;
}

// Anchors go to the third of the picture that they lie in.
static Vertical PlaceOf(const Block &block)
{
    if (!block.anchor) return block.vertical;
    if (block.anchor->y < 1 / 3.0) return Vertical::TOP;
    return block.anchor->y < 2 / 3.0 ? Vertical::MIDDLE : Vertical::BOTTOM;
}

CaptionPage PageOf(const std::vector<const Cue *> &cues)
{
    CaptionPage page;

    for (const Cue *cue : cues) {
        for (const Block &block : cue->blocks) {
            std::vector<CaptionRow> &group = page.groups[std::size_t(PlaceOf(block))];
            for (const auto &paragraph : Paragraphs(block)) Wrap(paragraph, block.horizontal, group);
        }
    }
    for (auto group = page.groups.rbegin(); group != page.groups.rend(); ++group) {
        while (page.RowCount() > g_rows && !group->empty()) {
            group->pop_back();
            ++page.lost;
        }
    }
    return page;
}

} // namespace caption
