// SPDX-License-Identifier: MIT
// A picture in memory: straight (not premultiplied) RGBA, and how to write it as a PNG file.
#ifndef KOVA_CAPTION_DRAWING_PICTURE_H
#define KOVA_CAPTION_DRAWING_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "base/color.h"
#include "base/rect.h"

namespace caption
{

class Picture
{
public:
    explicit Picture(Size size, Color fill = g_transparent)
        : size_(size), pixels_(std::size_t(size.width) * std::size_t(size.height), fill)
    {
    }

    Size size() const
    {
        return size_;
    }
    Color &At(int x, int y)
    {
        return pixels_[std::size_t(y) * std::size_t(size_.width) + std::size_t(x)];
    }
    const Color &At(int x, int y) const
    {
        return pixels_[std::size_t(y) * std::size_t(size_.width) + std::size_t(x)];
    }
    bool operator==(const Picture &other) const
    {
        return size_.width == other.size_.width && pixels_ == other.pixels_;
    }

private:
    Size size_;
    std::vector<Color> pixels_;
};

// Converts a premultiplied colour, as DirectFB leaves text in a surface, to a straight one.
Color Unpremultiply(Color pixel);

// The picture over a background colour; the result is opaque.
Picture Over(const Picture &picture, Color background);

// The part of that size from the top left corner.
Picture Crop(const Picture &picture, Size size);

// Averages pixels when it reduces, interpolates when it enlarges.
Picture Scaled(const Picture &picture, Size size);

// Draws the source over the target at (x, y), each pixel as a square of `scale` pixels.
void PasteEnlarged(Picture &target, const Picture &source, int x, int y, int scale);

// Writes a temporary file and renames it, so that a file of this name is always complete.
void WritePng(const Picture &picture, const std::filesystem::path &file);

} // namespace caption

#endif
