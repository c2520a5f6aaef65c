// SPDX-License-Identifier: MIT
#include "drawing/label.h"

#include "text/letters.h"
#include "text/pieces.h"

namespace caption
{

int DrawLine(Display &display, Fonts &fonts, const Line &line, int height, int x, int y)
{
    std::vector<Letters> lines = {Prepare(line)};
    int width = 0;

    fonts.Choose(lines);
    for (const Piece &piece : Pieces(lines.front(), {})) {
        display.Draw(piece, height, x + width, y);
        width += display.Width(piece, height);
    }
    return width;
}

const Picture &Labels::Get(const std::string &text, int height)
{
    const auto known = labels_.find({text, height});
    if (known != labels_.end()) return known->second;

    const Reach reach = ReachOf(fonts_.First(), height);
    display_.Clear();
    display_.SetEdge(KOVA_TEXT_ENONE);
    const int width = DrawLine(display_, fonts_, {{text, {}}}, height, 0, 0);
    const Picture label = Crop(display_.Present(), {width, reach.ascent + reach.descent});
    return labels_.emplace(std::make_pair(text, height), label).first->second;
}

} // namespace caption
