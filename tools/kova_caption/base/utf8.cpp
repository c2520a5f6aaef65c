// SPDX-License-Identifier: MIT
#include "base/utf8.h"

#include <cstdint>
#include <cstdio>

#include <unistr.h>

namespace caption
{

static const char g_replacement[] = "\xEF\xBF\xBD"; // U+FFFD

std::vector<Character> Characters(const std::string &text)
{
    const auto *const bytes = reinterpret_cast<const std::uint8_t *>(text.data());
    std::vector<Character> characters;

    for (std::size_t at = 0; at < text.size();) {
        ucs4_t code = 0;
        const int length = u8_mbtoucr(&code, bytes + at, text.size() - at);
        if (length > 0) {
            characters.push_back({char32_t(code), text.substr(at, std::size_t(length))});
            at += std::size_t(length);
        } else {
            characters.push_back({0xFFFD, g_replacement});
            ++at;
        }
    }
    return characters;
}

std::string Utf8(char32_t code)
{
    std::uint8_t bytes[6];
    const int length = u8_uctomb(bytes, code, sizeof bytes);

    return length > 0 ? std::string(bytes, bytes + length) : g_replacement;
}

std::string CodeName(char32_t code)
{
    char name[16];

    std::snprintf(name, sizeof name, "U+%04X", unsigned(code));
    return name;
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

std::string Printable(const std::string &text)
{
    std::string printable;

    for (const Character &character : Characters(text)) {
        const char32_t code = character.code;
        const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F);
        const bool direction = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
        printable += control || direction ? Utf8(0xFFFD) : character.text;
    }
    return printable;
}

} // namespace caption
