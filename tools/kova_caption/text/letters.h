// SPDX-License-Identifier: MIT
// Text for layout: letters, which know their style, their direction and their font. They are in logical order
// until a row is put into visual order.
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
    bool unjoined = false;  // should join its neighbours, but has no such form
    const Face *face = nullptr;
    bool slanted = false; // italic in an upright face: DirectFB is asked to slant it
};

using Letters = std::vector<Letter>;

// Prepares a line for an operation that draws one character after the other from left to right: composes what
// can be composed, gives Arabic letters their joined forms, mirrors brackets in right-to-left text and
// removes invisible characters.
Letters Prepare(const Line &line);

// Whether the text needs shaping that no form of a character provides. Such text is drawn letter by letter.
bool NeedsShaping(const Letters &letters);

bool IsSpace(const Letter &letter);  // omitted at the ends of a row
bool IsAccent(const Letter &letter); // combines with the letter before it

} // namespace caption

#endif
