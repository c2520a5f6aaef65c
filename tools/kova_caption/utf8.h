// SPDX-License-Identifier: MIT
// UTF-8 taken apart into characters.
#ifndef KOVA_CAPTION_UTF8_H
#define KOVA_CAPTION_UTF8_H

#include <cstddef>
#include <string>
#include <vector>

namespace caption
{

struct Character {
    char32_t code = 0;
    std::string text; // its UTF-8
};

// Malformed bytes become U+FFFD each.
std::vector<Character> Characters(const std::string &text);

// The UTF-8 of a character; of U+FFFD for what is none.
std::string Utf8(char32_t code);

// Takes no room and shows nothing: joiners, direction marks, variation selectors, byte order marks.
bool IsInvisible(char32_t code);

bool IsSpace(char32_t code); // one at which a line may break

} // namespace caption

#endif
