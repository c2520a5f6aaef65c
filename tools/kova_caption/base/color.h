// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_BASE_COLOR_H
#define KOVA_CAPTION_BASE_COLOR_H

#include <cstdint>

namespace caption
{

// Straight: the colour is not multiplied by its alpha.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    bool operator==(const Color &other) const
    {
        return red == other.red && green == other.green && blue == other.blue && alpha == other.alpha;
    }
};

inline constexpr Color g_transparent = {0, 0, 0, 0};
inline constexpr Color g_sheetBackground = {112, 128, 144}; // unless --background gives another

} // namespace caption

#endif
