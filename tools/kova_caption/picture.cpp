#include "picture.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include <png.h>
#include <unistd.h>

#include "failure.h"

namespace caption
{

static std::uint8_t Mix(int over, int under, int alpha)
{
    return std::uint8_t((over * alpha + under * (255 - alpha) + 127) / 255);
}

static Pixel LayOver(const Pixel &over, const Pixel &under)
{
    const int alpha = over.alpha + under.alpha * (255 - over.alpha) / 255;

    if (alpha == 0) return {};
    const int share = (over.alpha * 255 + alpha / 2) / alpha;
    return {Mix(over.red, under.red, share), Mix(over.green, under.green, share),
            Mix(over.blue, under.blue, share), std::uint8_t(alpha)};
}

Pixel Unpremultiply(Pixel pixel)
{
    const int alpha = pixel.alpha;
    const auto straight = [alpha](std::uint8_t value) {
        return std::uint8_t(std::min(255, (value * 255 + alpha / 2) / alpha));
    };

    if (alpha == 0) return {};
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

    for (int row = y; row < bottom; ++row) {
        for (int column = x; column < right; ++column) {
            Pixel &pixel = target.At(column, row);
            pixel = LayOver(source.At((column - x) / scale, (row - y) / scale), pixel);
        }
    }
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
        throw Failure(std::string("a picture could not be encoded: ") + image.message);
    }
    bytes.resize(length);
    return bytes;
}

void WritePng(const Picture &picture, const std::filesystem::path &file)
{
    const std::vector<std::uint8_t> bytes = EncodePng(picture);
    const std::string unfinished = file.string() + "." + std::to_string(getpid()) + ".part";

    std::FILE *const out = std::fopen(unfinished.c_str(), "wb");
    if (!out) {
        throw Failure(file.string() + ": cannot be written (" + std::strerror(errno) +
                      "); give -o a place you may write to");
    }
    bool done = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    int error = errno;
    if (std::fclose(out) != 0 && done) {
        done = false;
        error = errno;
    }
    if (done && std::rename(unfinished.c_str(), file.c_str()) != 0) {
        done = false;
        error = errno;
    }
    if (!done) {
        std::remove(unfinished.c_str());
        throw Failure(file.string() + ": cannot be written (" + std::strerror(error) +
                      "); make room or choose another place with -o");
    }
}

} // namespace caption
