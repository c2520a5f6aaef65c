// SPDX-License-Identifier: MIT
// A picture in memory: straight (not premultiplied) RGBA, and its way into a PNG file.
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

// A colour that was multiplied by its alpha, as DirectFB leaves text in a surface, becomes a straight one.
Color Unpremultiply(Color pixel);

// The picture laid over one colour, opaque afterwards.
Picture Over(const Picture &picture, Color background);

// The part that begins at the top left corner.
Picture Crop(const Picture &picture, Size size);

// Pixels are averaged where it becomes smaller, and interpolated where it becomes larger.
Picture Scaled(const Picture &picture, Size size);

// The source, each pixel a square of `scale` pixels, laid over what is at (x, y).
void PasteEnlarged(Picture &target, const Picture &source, int x, int y, int scale);

// Written under another name and renamed, so that a file of this name is whole.
void WritePng(const Picture &picture, const std::filesystem::path &file);

} // namespace caption

#endif
