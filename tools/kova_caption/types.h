// SPDX-License-Identifier: MIT
// Values that every part speaks of.
#ifndef KOVA_CAPTION_TYPES_H
#define KOVA_CAPTION_TYPES_H

#include <cstdint>

namespace caption
{

struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255; // straight: the colour is not multiplied by it

    bool operator==(const Color &other) const
    {
        return red == other.red && green == other.green && blue == other.blue && alpha == other.alpha;
    }
};

struct Size {
    int width = 0;
    int height = 0;

    bool operator==(const Size &other) const
    {
        return width == other.width && height == other.height;
    }
};

} // namespace caption

#endif
