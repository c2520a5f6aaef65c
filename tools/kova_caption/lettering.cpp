// SPDX-License-Identifier: MIT
#include "lettering.h"

namespace caption
{

int Write(Display &display, Fonts &fonts, const Line &line, int height, int x, int y)
{
    std::vector<Letters> lines = {Prepare(line)};
    int width = 0;

    fonts.Choose(lines);
    for (const Piece &piece : Pieces(lines.front())) {
        display.Draw(piece, height, x + width, y);
        width += display.Width(piece, height);
    }
    return width;
}

} // namespace caption
