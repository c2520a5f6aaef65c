// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_BASE_RECT_H
#define KOVA_CAPTION_BASE_RECT_H

namespace caption
{

// Pixels.
struct Size {
    int width = 0;
    int height = 0;

    bool operator==(const Size &other) const
    {
        return width == other.width && height == other.height;
    }
};

// Pixels, from the top left corner of the plane.
struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

} // namespace caption

#endif
