// SPDX-License-Identifier: MIT
// UTF-8 and the few properties of characters that several parts need.
#ifndef KOVA_CAPTION_BASE_UTF8_H
#define KOVA_CAPTION_BASE_UTF8_H

#include <cstddef>
#include <string>
#include <vector>

namespace caption
{

struct Character {
    char32_t code = 0;
    std::string text; // its UTF-8
};

// Every byte that belongs to no character becomes U+FFFD.
std::vector<Character> Characters(const std::string &text);

// The UTF-8 of a character; that of U+FFFD for a code that is no character.
std::string Utf8(char32_t code);

// "U+0041".
std::string CodeName(char32_t code);

// Text for a terminal: what would command it, or turn the order of what follows, becomes U+FFFD.
std::string Printable(const std::string &text);

// Takes no room and draws nothing: joiners, direction marks, variation selectors, byte order marks.
bool IsInvisible(char32_t code);

// A space at which a line may break.
bool IsSpace(char32_t code);

} // namespace caption

#endif
