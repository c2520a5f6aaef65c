// SPDX-License-Identifier: MIT
// Unicode becomes the characters of CEA-608 and CEA-708.
#ifndef KOVA_CAPTION_GENERATING_CHARACTERS_H
#define KOVA_CAPTION_GENERATING_CHARACTERS_H

#include <optional>
#include <string>

#include "generating/encoder608.h"
#include "generating/encoder708.h"

namespace caption
{

// Composed characters, without those that show nothing.
std::u32string Composed(const std::string &text);

// What CEA-608 shows in place of a character: itself, or what resembles it: three points for an ellipsis, the letter
// without its accent. None if there is nothing.
std::optional<std::u32string> In608(char32_t character);

// Pairs of a row, two characters each where two of the basic set follow one another.
class PairWriter
{
public:
    // A character that In608 returned.
    void Put(char32_t character);

    // Control codes, after a null byte where a character is alone.
    void Put(const encoding::Pairs &codes);

    encoding::Pairs Finish();

private:
    void PutBasic(unsigned code);

    encoding::Pairs pairs_;
    std::optional<unsigned> waiting_;
};

// One of G0, G1 or G2, or P16. None for characters beyond the Basic Multilingual Plane.
std::optional<encoding::ByteString> In708(char32_t character);

} // namespace caption

#endif
