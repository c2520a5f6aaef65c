// SPDX-License-Identifier: MIT
#include "generating/encoder608.h"

#include <stdexcept>

namespace caption::encoding
{

static void Demand(bool condition)
{
    if (!condition) throw std::invalid_argument("CEA-608 has no code for this");
}

std::uint8_t WithParity(unsigned byte)
{
    unsigned ones = 0;

    for (unsigned bit = 0; bit < 7; bit++) ones += byte >> bit & 1;
    return std::uint8_t((byte & 0x7F) | (ones % 2 ? 0 : 0x80));
}

Pairs operator+(Pairs left, const Pairs &right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Pairs Times(unsigned count, const Pairs &pairs)
{
    Pairs all;

    for (unsigned i = 0; i < count; i++) all = all + pairs;
    return all;
}

Pairs Raw(unsigned first, unsigned second)
{
    return {{WithParity(first), WithParity(second)}};
}

bool IsControl(Pair pair)
{
    return (pair.first & 0x70) == 0x10;
}

Pairs Once(unsigned first, unsigned second, unsigned channel)
{
    return Raw(first + (channel % 2 ? 0 : 8), second);
}

Pairs Twice(unsigned first, unsigned second, unsigned channel)
{
    return Times(2, Once(first, second, channel));
}

Pairs Code(Misc code, unsigned channel)
{
    return Twice(channel > 2 ? 0x15 : 0x14, code, channel);
}

static Pairs Preamble(unsigned row, unsigned low, unsigned channel)
{
    static const std::uint8_t first[] = {0x11, 0x11, 0x12, 0x12, 0x15, 0x15, 0x16, 0x16,
                                         0x17, 0x17, 0x10, 0x13, 0x13, 0x14, 0x14};
    static const bool lowerHalf[] = {false, true, false, true,  false, true,  false, true,
                                     false, true, false, false, true,  false, true};

    Demand(row >= 1 && row <= 15);
    return Twice(first[row - 1], (lowerHalf[row - 1] ? 0x60 : 0x40) + low, channel);
}

Pairs Pac(unsigned row, Color608 color, bool underline, unsigned channel)
{
    return Preamble(row, 2 * color + underline, channel);
}

Pairs PacIndent(unsigned row, unsigned indent, bool underline, unsigned channel)
{
    Demand(indent % 4 == 0 && indent <= 28);
    return Preamble(row, 0x10 + indent / 2 + underline, channel);
}

Pairs MidRow(Color608 color, bool underline, unsigned channel)
{
    return Twice(0x11, 0x20 + 2 * color + underline, channel);
}

Pairs Tab(unsigned columns, unsigned channel)
{
    Demand(columns >= 1 && columns <= 3);
    return Twice(0x17, 0x20 + columns, channel);
}

Pairs Background(Color608 color, bool translucent, unsigned channel)
{
    return Text(" ") + Twice(0x10, 0x20 + 2 * color + translucent, channel);
}

Pairs TransparentBackground(unsigned channel)
{
    return Text(" ") + Twice(0x17, 0x2D, channel);
}

Pairs BlackForeground(bool underline, unsigned channel)
{
    return Text(" ") + Twice(0x17, 0x2E + underline, channel);
}

Pairs MoveTo(unsigned row, unsigned column, unsigned channel)
{
    const Pairs indent = PacIndent(row, column / 4 * 4, false, channel);
    return column % 4 ? indent + Tab(column % 4, channel) : indent;
}

Pairs Text(const std::string &text)
{
    Pairs pairs;

    for (std::size_t i = 0; i < text.size(); i += 2) {
        pairs = pairs + Raw(std::uint8_t(text[i]), i + 1 < text.size() ? std::uint8_t(text[i + 1]) : 0);
    }
    return pairs;
}

ByteString ToTriplets(unsigned field, const Pairs &pairs)
{
    ByteString triplets;

    for (const Pair pair : pairs)
        triplets = triplets + ByteString{std::uint8_t(0xFB + field), pair.first, pair.second};
    return triplets;
}

} // namespace caption::encoding
