// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_TEXT_PIECES_H
#define KOVA_CAPTION_TEXT_PIECES_H

#include <string>
#include <vector>

#include "base/options.h"
#include "cues/cue.h"
#include "text/letters.h"

namespace caption
{

// Text of one font and style, in visual order.
struct Piece {
    std::string text; // UTF-8
    const Face *face = nullptr;
    bool slanted = false;
    Style style;
    int height = 0; // text size in pixels
};

// Groups adjacent letters of one font and style, from left to right. The options have the text sizes.
std::vector<Piece> Pieces(const Letters &visual, const Options &options);

} // namespace caption

#endif
