// SPDX-License-Identifier: MIT
#include "drawing/bitmaps.h"

#include <algorithm>
#include <cmath>

#include "drawing/quantize.h"

namespace caption
{

static int Part(int value, int plane, int canvas)
{
    return int(std::lround(double(value) * plane / canvas));
}

Rect PlaceOnPlane(const Bitmap &bitmap, Size canvas, Size plane)
{
    const int left = Part(bitmap.x, plane.width, canvas.width);
    const int top = Part(bitmap.y, plane.height, canvas.height);
    const int right = Part(bitmap.x + bitmap.size.width, plane.width, canvas.width);
    const int bottom = Part(bitmap.y + bitmap.size.height, plane.height, canvas.height);

    return {left, top, std::max(right - left, 1), std::max(bottom - top, 1)};
}

static Picture PictureOf(const Bitmap &bitmap)
{
    Picture picture(bitmap.size);
    std::size_t next = 0;

    for (int y = 0; y < bitmap.size.height; ++y) {
        for (int x = 0; x < bitmap.size.width; ++x) {
            picture.At(x, y) = bitmap.palette[bitmap.indexes[next++]];
        }
    }
    return picture;
}

Picture Compose(const std::vector<const Cue *> &cues, Size plane, std::size_t mostColors)
{
    Picture picture(plane);

    for (const Cue *const cue : cues) {
        for (const Bitmap &bitmap : cue->bitmaps) {
            const Rect place = PlaceOnPlane(bitmap, cue->canvas, plane);
            const Size size = {place.width, place.height};
            const Picture original = PictureOf(bitmap);
            PasteEnlarged(picture, size == bitmap.size ? original : Scaled(original, size), place.x, place.y,
                          1);
        }
    }
    Quantize(picture, mostColors);
    return picture;
}

} // namespace caption
