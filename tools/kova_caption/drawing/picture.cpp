// SPDX-License-Identifier: MIT
#include "drawing/picture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <pixman.h>
#include <png.h>

#include "base/failure.h"
#include "base/whole_file.h"

namespace caption
{

static std::uint8_t Mix(int over, int under, int alpha)
{
    return std::uint8_t((over * alpha + under * (255 - alpha) + 127) / 255);
}

static Color LayOver(const Color &over, const Color &under)
{
    const int alpha = over.alpha + under.alpha * (255 - over.alpha) / 255;

    if (alpha == 0) return g_transparent;
    const int share = (over.alpha * 255 + alpha / 2) / alpha;
    return {Mix(over.red, under.red, share), Mix(over.green, under.green, share),
            Mix(over.blue, under.blue, share), std::uint8_t(alpha)};
}

Color Unpremultiply(Color pixel)
{
    const int alpha = pixel.alpha;
    const auto straight = [alpha](std::uint8_t value) {
        return std::uint8_t(std::min(255, (value * 255 + alpha / 2) / alpha));
    };

    if (alpha == 0) return g_transparent;
    return {straight(pixel.red), straight(pixel.green), straight(pixel.blue), pixel.alpha};
}

Picture Over(const Picture &picture, Color background)
{
    Picture result(picture.size(), {background.red, background.green, background.blue, 255});

    PasteEnlarged(result, picture, 0, 0, 1);
    return result;
}

void PasteEnlarged(Picture &target, const Picture &source, int x, int y, int scale)
{
    const int right = std::min(target.size().width, x + source.size().width * scale);
    const int bottom = std::min(target.size().height, y + source.size().height * scale);

    for (int row = std::max(y, 0); row < bottom; ++row) {
        for (int column = std::max(x, 0); column < right; ++column) {
            Color &pixel = target.At(column, row);
            pixel = LayOver(source.At((column - x) / scale, (row - y) / scale), pixel);
        }
    }
}

Picture Crop(const Picture &picture, Size size)
{
    Picture corner(
        {std::min(size.width, picture.size().width), std::min(size.height, picture.size().height)});

    for (int y = 0; y < corner.size().height; ++y) {
        for (int x = 0; x < corner.size().width; ++x) corner.At(x, y) = picture.At(x, y);
    }
    return corner;
}

using Image = std::unique_ptr<pixman_image_t, int (*)(pixman_image_t *)>;

static Image MakeImage(Size size)
{
    Image image(pixman_image_create_bits(PIXMAN_a8r8g8b8, size.width, size.height, nullptr, 0),
                pixman_image_unref);

    if (!image)
        throw Failure("not enough memory for a bitmap of this size; give a source with smaller bitmaps");
    return image;
}

static std::uint32_t *Row(const Image &image, int y)
{
    return pixman_image_get_data(image.get()) + std::ptrdiff_t(y) * pixman_image_get_stride(image.get()) / 4;
}

// Colours are averaged premultiplied, because otherwise the colours of transparent pixels would show.
static std::uint32_t Packed(const Color &pixel)
{
    const auto times = [&](unsigned value) { return (value * pixel.alpha + 127) / 255; };

    return std::uint32_t(pixel.alpha) << 24 | times(pixel.red) << 16 | times(pixel.green) << 8 |
           times(pixel.blue);
}

Picture Scaled(const Picture &picture, Size size)
{
    const Size before = picture.size();
    const pixman_fixed_t across = pixman_double_to_fixed(double(before.width) / size.width);
    const pixman_fixed_t down = pixman_double_to_fixed(double(before.height) / size.height);
    const Image source = MakeImage(before);
    const Image target = MakeImage(size);
    Picture scaled(size);
    pixman_transform_t scale;
    int count = 0;

    for (int y = 0; y < before.height; ++y) {
        for (int x = 0; x < before.width; ++x) Row(source, y)[x] = Packed(picture.At(x, y));
    }
    const std::unique_ptr<pixman_fixed_t, void (*)(void *)> kernel(
        pixman_filter_create_separable_convolution(&count, across, down, PIXMAN_KERNEL_LINEAR,
                                                   PIXMAN_KERNEL_LINEAR, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX,
                                                   4, 4),
        std::free);
    pixman_transform_init_scale(&scale, across, down);
    pixman_image_set_transform(source.get(), &scale);
    pixman_image_set_filter(source.get(), PIXMAN_FILTER_SEPARABLE_CONVOLUTION, kernel.get(), count);
    pixman_image_composite32(PIXMAN_OP_SRC, source.get(), nullptr, target.get(), 0, 0, 0, 0, 0, 0, size.width,
                             size.height);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const std::uint32_t packed = Row(target, y)[x];
            scaled.At(x, y) = Unpremultiply({std::uint8_t(packed >> 16), std::uint8_t(packed >> 8),
                                             std::uint8_t(packed), std::uint8_t(packed >> 24)});
        }
    }
    return scaled;
}

static std::vector<std::uint8_t> EncodePng(const Picture &picture)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(picture.size().width);
    image.height = png_uint_32(picture.size().height);
    image.format = PNG_FORMAT_RGBA;

    std::vector<std::uint8_t> bytes(PNG_IMAGE_PNG_SIZE_MAX(image));
    png_alloc_size_t length = bytes.size();
    if (!png_image_write_to_memory(&image, bytes.data(), &length, 0, &picture.At(0, 0), 0, nullptr)) {
        throw Failure(std::string("PNG encoding failed: ") + image.message);
    }
    bytes.resize(length);
    return bytes;
}

void WritePng(const Picture &picture, const std::filesystem::path &file)
{
    const std::vector<std::uint8_t> bytes = EncodePng(picture);
    WholeFile out(file);

    out.Write(bytes.data(), bytes.size());
    out.Finish();
}

} // namespace caption
