// SPDX-License-Identifier: MIT
// Text as it is laid out: letters, which know their style, their direction and the font that draws them. They
// stand in the order in which they are read until a row of them is put into the order in which it is seen.
#ifndef KOVA_CAPTION_TEXT_LETTERS_H
#define KOVA_CAPTION_TEXT_LETTERS_H

#include <cstdint>
#include <string>
#include <vector>

#include "cues/cue.h"

namespace caption
{

struct Face;

struct Letter {
    char32_t code = 0;
    Style style;
    std::int8_t level = 0;  // odd: from right to left
    std::uint32_t kind = 0; // its bidirectional type, as fribidi numbers them
    bool mayBreak = false;  // whether a row may end before it
    bool unjoined = false;  // should join its neighbours, which no form of it does
    const Face *face = nullptr;
    bool slanted = false; // italic, but the face is upright: DirectFB is asked to slant it
};

using Letters = std::vector<Letter>;

// A line of a cue made ready for an operation that draws one character after the other, left to right: what
// can be composed is composed, letters of Arabic take the form that joins them to their neighbours, brackets
// of text from right to left are turned round, and what is invisible has gone.
Letters Prepare(const Line &line);

// Whether some letter should join others, or stand round them, in a way that no form of a character says.
// Such letters are drawn letter by letter.
bool NeedsShaping(const Letters &letters);

bool IsSpace(const Letter &letter);  // goes at the ends of a row
bool IsAccent(const Letter &letter); // stands over or under the letter before it

} // namespace caption

#endif
