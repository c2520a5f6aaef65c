// SPDX-License-Identifier: MIT
#include "utf8.h"

#include <unistr.h>

namespace caption
{

static std::size_t LengthAfter(unsigned char first)
{
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first < 0xE0) return 2;
    if (first >= 0xE0 && first < 0xF0) return 3;
    if (first >= 0xF0 && first < 0xF5) return 4;
    return 0;
}

static Character Decode(const std::string &text, std::size_t at)
{
    static const Character replacement = {0xFFFD, "\xEF\xBF\xBD"};
    const auto first = static_cast<unsigned char>(text[at]);
    const std::size_t length = LengthAfter(first);

    if (length == 0 || at + length > text.size()) return replacement;
    char32_t code = length == 1 ? first : first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[at + i]);
        if ((byte & 0xC0) != 0x80) return replacement;
        code = code << 6 | (byte & 0x3F);
    }
    return {code, text.substr(at, length)};
}

std::vector<Character> Characters(const std::string &text)
{
    std::vector<Character> characters;

    for (std::size_t at = 0; at < text.size();) {
        characters.push_back(Decode(text, at));
        at += characters.back().code == 0xFFFD && text.compare(at, 3, "\xEF\xBF\xBD") != 0
                  ? 1
                  : characters.back().text.size();
    }
    return characters;
}

std::string Utf8(char32_t code)
{
    std::uint8_t bytes[6];
    const int length = u8_uctomb(bytes, code, sizeof bytes);

    return length > 0 ? std::string(bytes, bytes + length) : "\xEF\xBF\xBD";
}

bool IsInvisible(char32_t code)
{
    return code < 0x20 || (code >= 0x200B && code <= 0x200F) || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2060 && code <= 0x2069) || (code >= 0xFE00 && code <= 0xFE0F) || code == 0xFEFF ||
           code == 0xAD;
}

bool IsSpace(char32_t code)
{
    return code == ' ' || code == '\t' || code == 0x3000 ||
           (code >= 0x2000 && code <= 0x200A && code != 0x2007);
}

} // namespace caption
