// SPDX-License-Identifier: MIT
#include "cues/cue.h"

#include <algorithm>
#include <set>

namespace caption
{

bool Style::operator==(const Style &other) const
{
    return italic == other.italic && bold == other.bold && underline == other.underline &&
           strikeout == other.strikeout && color == other.color && edgeColor == other.edgeColor &&
           background == other.background && font == other.font && line == other.line && scale == other.scale;
}

bool Run::operator==(const Run &other) const
{
    return text == other.text && style == other.style;
}

bool Anchor::operator==(const Anchor &other) const
{
    return x == other.x && y == other.y;
}

std::vector<Screen> Screens(const std::vector<Cue> &cues)
{
    std::vector<std::size_t> byStart(cues.size());
    std::set<std::int64_t> changes;
    std::vector<std::size_t> shown;
    std::vector<Screen> screens;
    std::size_t next = 0;

    for (std::size_t i = 0; i < cues.size(); ++i) {
        byStart[i] = i;
        changes.insert({cues[i].start, cues[i].end});
    }
    std::stable_sort(byStart.begin(), byStart.end(),
                     [&](std::size_t a, std::size_t b) { return cues[a].start < cues[b].start; });
    const auto drawnBefore = [&](std::size_t a, std::size_t b) {
        return cues[a].layer != cues[b].layer ? cues[a].layer < cues[b].layer : a < b;
    };
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        const auto gone = [&](std::size_t i) { return cues[i].end <= *change; };
        for (; next < byStart.size() && cues[byStart[next]].start == *change; ++next) {
            const std::size_t cue = byStart[next];
            shown.insert(std::upper_bound(shown.begin(), shown.end(), cue, drawnBefore), cue);
        }
        shown.erase(std::remove_if(shown.begin(), shown.end(), gone), shown.end());
        if (!shown.empty()) screens.push_back({*change, *std::next(change), shown});
    }
    return screens;
}

void Append(Line &line, const std::string &text, const Style &style)
{
    if (text.empty()) return;
    if (!line.empty() && line.back().style == style) {
        line.back().text += text;
    } else {
        line.push_back({text, style});
    }
}

std::string PlainText(const Line &line)
{
    std::string text;
    for (const Run &run : line) text += run.text;
    return text;
}

// The vertical position of a block; without an anchor, that of its alignment.
static double Height(const Block &block)
{
    return block.anchor ? block.anchor->y : double(block.vertical) / 2;
}

std::vector<Line> Lines(const Cue &cue)
{
    std::vector<const Block *> blocks;
    std::vector<Line> lines;

    for (const Block &block : cue.blocks) blocks.push_back(&block);
    std::stable_sort(blocks.begin(), blocks.end(),
                     [](const Block *a, const Block *b) { return Height(*a) < Height(*b); });
    for (const Block *const block : blocks)
        lines.insert(lines.end(), block->lines.begin(), block->lines.end());
    return lines;
}

std::string PlainText(const Cue &cue)
{
    std::string text;
    for (const Line &line : Lines(cue)) text += (text.empty() ? "" : " / ") + PlainText(line);
    return text;
}

} // namespace caption
