// SPDX-License-Identifier: MIT
#include "text/pieces.h"

#include "base/utf8.h"
#include "text/fonts.h"

namespace caption
{

static bool LookAlike(const Letter &one, const Letter &other)
{
    return one.face == other.face && one.slanted == other.slanted && one.style == other.style;
}

std::vector<Piece> Pieces(const Letters &visual, const Options &options)
{
    std::vector<Piece> pieces;

    for (std::size_t i = 0; i < visual.size(); ++i) {
        const Letter &letter = visual[i];
        if (i == 0 || !LookAlike(visual[i - 1], letter)) {
            pieces.push_back({"", letter.face, letter.slanted, letter.style, HeightOf(letter, options)});
        }
        pieces.back().text += Utf8(letter.code);
    }
    return pieces;
}

} // namespace caption
