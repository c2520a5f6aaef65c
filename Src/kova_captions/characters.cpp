// SPDX-License-Identifier: MIT
#include "characters.h"

namespace captions
{

struct Entry {
    uint8_t code;
    uint16_t character;
};

// The basic set is ASCII but for these. [79.101(g), 608 6.4.2]
static const Entry kBasic[] = {
    {0x27, 0x2019}, // right single quotation mark
    {0x2A, 0x00E1}, // a acute
    {0x5C, 0x00E9}, // e acute
    {0x5E, 0x00ED}, // i acute
    {0x5F, 0x00F3}, // o acute
    {0x60, 0x00FA}, // u acute
    {0x7B, 0x00E7}, // c cedilla
    {0x7C, 0x00F7}, // division sign
    {0x7D, 0x00D1}, // N tilde
    {0x7E, 0x00F1}, // n tilde
    {0x7F, 0x2588}, // solid block
};

// 11 30 to 11 3F. [79.101(g)]
static const uint16_t kSpecial[16] = {
    0x00AE, 0x00B0, 0x00BD, 0x00BF, // 30: registered, degree, one half, inverted question mark
    0x2122, 0x00A2, 0x00A3, 0x266A, // 34: trademark, cent, pound, eighth note
    0x00E0, 0x0020, 0x00E8, 0x00E2, // 38: a grave, transparent space, e grave, a circumflex
    0x00EA, 0x00EE, 0x00F4, 0x00FB, // 3C: e circumflex, i circumflex, o circumflex, u circumflex
};

// 12 20 to 12 3F: Spanish, miscellaneous, French. [608 6.4.2]
static const uint16_t kExtendedSpanishFrench[32] = {
    0x00C1, 0x00C9, 0x00D3, 0x00DA, // 20: A acute, E acute, O acute, U acute
    0x00DC, 0x00FC, 0x2018, 0x00A1, // 24: U diaeresis, u diaeresis, opening quote, inverted exclamation mark
    0x002A, 0x0027, 0x2014, 0x00A9, // 28: asterisk, plain quote, em dash, copyright
    0x2120, 0x2022, 0x201C, 0x201D, // 2C: service mark, bullet, opening and closing double quote
    0x00C0, 0x00C2, 0x00C7, 0x00C8, // 30: A grave, A circumflex, C cedilla, E grave
    0x00CA, 0x00CB, 0x00EB, 0x00CE, // 34: E circumflex, E diaeresis, e diaeresis, I circumflex
    0x00CF, 0x00EF, 0x00D4, 0x00D9, // 38: I diaeresis, i diaeresis, O circumflex, U grave
    0x00F9, 0x00DB, 0x00AB, 0x00BB, // 3C: u grave, U circumflex, opening and closing guillemet
};

// 13 20 to 13 3F: Portuguese, German, Danish. [608 6.4.2]
static const uint16_t kExtendedPortugueseGerman[32] = {
    0x00C3, 0x00E3, 0x00CD, 0x00CC, // 20: A tilde, a tilde, I acute, I grave
    0x00EC, 0x00D2, 0x00F2, 0x00D5, // 24: i grave, O grave, o grave, O tilde
    0x00F5, 0x007B, 0x007D, 0x005C, // 28: o tilde, opening and closing brace, backslash
    0x005E, 0x005F, 0x007C, 0x007E, // 2C: caret, underscore, bar, tilde
    0x00C4, 0x00E4, 0x00D6, 0x00F6, // 30: A diaeresis, a diaeresis, O diaeresis, o diaeresis
    0x00DF, 0x00A5, 0x00A4, 0x2502, // 34: sharp s, yen, currency, vertical line
    0x00C5, 0x00E5, 0x00D8, 0x00F8, // 38: A ring, a ring, O stroke, o stroke
    0x250C, 0x2510, 0x2514, 0x2518, // 3C: box corners: upper left, upper right, lower left, lower right
};

// 708, G2. 20 and 21 are the transparent spaces. [79.102(d)(2), (3)]
static const Entry kG2[] = {
    {0x20, 0x0020}, // transparent space
    {0x21, 0x00A0}, // non-breaking transparent space
    {0x25, 0x2026}, // ellipsis
    {0x2A, 0x0160}, // S caron
    {0x2C, 0x0152}, // OE
    {0x30, 0x2588}, // solid block
    {0x31, 0x2018}, // opening quote
    {0x32, 0x2019}, // closing quote
    {0x33, 0x201C}, // opening double quote
    {0x34, 0x201D}, // closing double quote
    {0x35, 0x2022}, // bullet
    {0x39, 0x2122}, // trademark
    {0x3A, 0x0161}, // s caron
    {0x3C, 0x0153}, // oe
    {0x3D, 0x2120}, // service mark
    {0x3F, 0x0178}, // Y diaeresis
    {0x76, 0x215B}, // one eighth
    {0x77, 0x215C}, // three eighths
    {0x78, 0x215D}, // five eighths
    {0x79, 0x215E}, // seven eighths
    {0x7A, 0x2502}, // vertical line
    {0x7B, 0x2510}, // upper right corner
    {0x7C, 0x2514}, // lower left corner
    {0x7D, 0x2500}, // horizontal line
    {0x7E, 0x2518}, // lower right corner
    {0x7F, 0x250C}, // upper left corner
};

template <int count> static uint16_t Find(const Entry (&entries)[count], uint8_t code, uint16_t otherwise)
{
    for (const Entry &entry : entries) {
        if (entry.code == code) return entry.character;
    }
    return otherwise;
}

uint16_t BasicCharacter(uint8_t code)
{
    return Find(kBasic, code, code);
}

uint16_t SpecialCharacter(uint8_t code)
{
    return kSpecial[code & 0x0F];
}

uint16_t ExtendedCharacter(uint8_t first, uint8_t second)
{
    return (first & 1 ? kExtendedPortugueseGerman : kExtendedSpanishFrench)[second & 0x1F];
}

uint16_t G0Character(uint8_t code)
{
    constexpr uint16_t kEighthNote = 0x266A;
    return code == 0x7F ? kEighthNote : code;
}

uint16_t G2Character(uint8_t code)
{
    return Find(kG2, code, kUnderscore);
}

uint16_t G3Character(uint8_t code)
{
    // Unicode has no CC icon: this is a code point for private use.
    constexpr uint16_t kIcon = 0xE9A0;
    return code == 0xA0 ? kIcon : kUnderscore;
}

uint16_t P16Character(uint8_t high, uint8_t low)
{
    const auto character = uint16_t(high << 8 | low);
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return surrogate || character < kSpace ? kUnderscore : character;
}

int ToUtf8(uint16_t character, char *text)
{
    if (character < 0x80) {
        text[0] = char(character);
        return 1;
    }
    if (character < 0x800) {
        text[0] = char(0xC0 | character >> 6);
        text[1] = char(0x80 | (character & 0x3F));
        return 2;
    }
    text[0] = char(0xE0 | character >> 12);
    text[1] = char(0x80 | (character >> 6 & 0x3F));
    text[2] = char(0x80 | (character & 0x3F));
    return 3;
}

} // namespace captions
