// SPDX-License-Identifier: MIT
// Encodes CEA-608: the pairs of bytes of line 21. Used by `generate` and by the tests of the decoder, of which it
// knows nothing; tests/captions/encoder_test.cpp compares it with bytes written by hand. An argument that no code
// exists for throws std::invalid_argument.
#ifndef KOVA_CAPTION_GENERATING_ENCODER608_H
#define KOVA_CAPTION_GENERATING_ENCODER608_H

#include <string>
#include <vector>

#include "generating/bytes.h"

namespace caption::encoding
{

std::uint8_t WithParity(unsigned byte);

// Two bytes of line 21, parity included.
struct Pair {
    std::uint8_t first;
    std::uint8_t second;
};
using Pairs = std::vector<Pair>;

inline bool operator==(Pair left, Pair right)
{
    return left.first == right.first && left.second == right.second;
}

Pairs operator+(Pairs left, const Pairs &right);
Pairs Times(unsigned count, const Pairs &pairs);

// Two bytes that get their parity.
Pairs Raw(unsigned first, unsigned second);

const Pairs NULL_PAIR = {{0x80, 0x80}};

// Whether it is a control code, which is usually sent twice. Special and extended characters are too.
bool IsControl(Pair pair);

// A control code of a channel, once or, as most encoders send it, twice. Channels 1 and 3 are data channel 1.
Pairs Once(unsigned first, unsigned second, unsigned channel = 1);
Pairs Twice(unsigned first, unsigned second, unsigned channel = 1);

// Miscellaneous codes, twice.
enum Misc : std::uint8_t {
    RCL = 0x20,
    BS = 0x21,
    AOF = 0x22,
    AON = 0x23,
    DER = 0x24,
    RU2 = 0x25,
    RU3 = 0x26,
    RU4 = 0x27,
    FON = 0x28,
    RDC = 0x29,
    TR = 0x2A,
    RTD = 0x2B,
    EDM = 0x2C,
    CR = 0x2D,
    ENM = 0x2E,
    EOC = 0x2F
};
Pairs Code(Misc code, unsigned channel = 1);

// The order of the colours in preambles and mid-row codes. Black exists as a background only.
enum Color608 : std::uint8_t { WHITE, GREEN, BLUE, CYAN, RED, YELLOW, MAGENTA, ITALICS, BLACK = ITALICS };

// A preamble address code, twice: a row from 1 on, and a colour or an indent of 0, 4, ... 28.
Pairs Pac(unsigned row, Color608 color = WHITE, bool underline = false, unsigned channel = 1);
Pairs PacIndent(unsigned row, unsigned indent, bool underline = false, unsigned channel = 1);

Pairs MidRow(Color608 color, bool underline = false, unsigned channel = 1);
Pairs Tab(unsigned columns, unsigned channel = 1);

// A space, and the code that takes its place and sets the background from there on.
Pairs Background(Color608 color, bool translucent = false, unsigned channel = 1);
Pairs TransparentBackground(unsigned channel = 1);
Pairs BlackForeground(bool underline = false, unsigned channel = 1);

// Moves the cursor to a row from 1 on and a column from 0 on, white.
Pairs MoveTo(unsigned row, unsigned column, unsigned channel = 1);

// The characters of a string that is ASCII, two a pair; a null byte fills the last.
Pairs Text(const std::string &text);

// As triplets of a field, 1 or 2.
ByteString ToTriplets(unsigned field, const Pairs &pairs);

} // namespace caption::encoding

#endif
