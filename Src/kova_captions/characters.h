// SPDX-License-Identifier: MIT
// The character sets, as tables. All characters are Unicode of the Basic Multilingual Plane.
#ifndef KOVA_CAPTIONS_CHARACTERS_H
#define KOVA_CAPTIONS_CHARACTERS_H

#include <stdint.h>

namespace captions
{

constexpr uint16_t kSolidBlock = 0x2588;
constexpr uint16_t kSpace = 0x0020;
constexpr uint16_t kNonBreakingSpace = 0x00A0;
constexpr uint16_t kUnderscore = 0x005F;

// 608, basic set: 20 to 7F. [79.101(g)]
uint16_t BasicCharacter(uint8_t code);

// 608, special characters: 11 30 to 11 3F, by the second byte. 39, the transparent space, is U+0020. [79.101(g)]
uint16_t SpecialCharacter(uint8_t code);

// 608, extended sets: 12 20 to 12 3F and 13 20 to 13 3F. [608 6.4.2]
uint16_t ExtendedCharacter(uint8_t first, uint8_t second);

// 708, what a code of G0 to G3 shows; an underscore for codes that no table lists. [79.102(d)]
uint16_t G0Character(uint8_t code);
uint16_t G2Character(uint8_t code);
uint16_t G3Character(uint8_t code);

// 708, P16: a value of the Basic Multilingual Plane; an underscore for a surrogate or a control code.
uint16_t P16Character(uint8_t high, uint8_t low);

// EUC-KR: two bytes from A1 to FE; an underscore for pairs that KS X 1001 leaves free.
bool IsKoreanByte(uint8_t byte);
uint16_t KoreanCharacter(uint8_t first, uint8_t second);

// Writes a character as UTF-8: returns 1 to 3, the bytes.
int ToUtf8(uint16_t character, char *text);

} // namespace captions

#endif // KOVA_CAPTIONS_CHARACTERS_H
