#include "bitmaps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <memory>

#include <pixman.h>

#include "failure.h"

namespace caption
{

namespace
{

using Image = std::unique_ptr<pixman_image_t, int (*)(pixman_image_t *)>;

} // namespace

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

static Image MakeImage(Size size)
{
    Image image(pixman_image_create_bits(PIXMAN_a8r8g8b8, size.width, size.height, nullptr, 0),
                pixman_image_unref);

    if (!image) throw Failure("a picture of the subtitles is too large; is memory short?");
    return image;
}

static std::uint32_t *Row(const Image &image, int y)
{
    return pixman_image_get_data(image.get()) + std::ptrdiff_t(y) * pixman_image_get_stride(image.get()) / 4;
}

// Multiplied by its opacity, as everything is that is averaged.
static std::uint32_t Packed(Color color)
{
    const auto times = [&](unsigned value) { return (value * color.alpha + 127) / 255; };

    return std::uint32_t(color.alpha) << 24 | times(color.red) << 16 | times(color.green) << 8 |
           times(color.blue);
}

static Image ImageOf(const Bitmap &bitmap)
{
    Image image = MakeImage(bitmap.size);

    for (int y = 0; y < bitmap.size.height; ++y) {
        std::uint32_t *const row = Row(image, y);
        const std::uint8_t *const indexes = bitmap.indexes.data() + std::ptrdiff_t(y) * bitmap.size.width;
        for (int x = 0; x < bitmap.size.width; ++x) row[x] = Packed(bitmap.palette[indexes[x]]);
    }
    return image;
}

static void LayOver(const Image &target, const Bitmap &bitmap, Rect place)
{
    const Image image = ImageOf(bitmap);

    if (place.width != bitmap.size.width || place.height != bitmap.size.height) {
        const pixman_fixed_t across = pixman_double_to_fixed(double(bitmap.size.width) / place.width);
        const pixman_fixed_t down = pixman_double_to_fixed(double(bitmap.size.height) / place.height);
        pixman_transform_t scale;
        int count = 0;
        // Averages what shrinks and interpolates what grows.
        const std::unique_ptr<pixman_fixed_t, void (*)(void *)> kernel(
            pixman_filter_create_separable_convolution(&count, across, down, PIXMAN_KERNEL_CUBIC,
                                                       PIXMAN_KERNEL_CUBIC, PIXMAN_KERNEL_BOX,
                                                       PIXMAN_KERNEL_BOX, 4, 4),
            std::free);
        pixman_transform_init_scale(&scale, across, down);
        pixman_image_set_transform(image.get(), &scale);
        pixman_image_set_filter(image.get(), PIXMAN_FILTER_SEPARABLE_CONVOLUTION, kernel.get(), count);
    }
    pixman_image_composite32(PIXMAN_OP_OVER, image.get(), nullptr, target.get(), 0, 0, 0, 0, place.x, place.y,
                             place.width, place.height);
}

namespace
{

using Channels = std::array<int, 4>; // of a multiplied colour, from blue to alpha

// A colour of the picture, and how often it is there.
struct Shade {
    Channels channels;
    std::uint32_t packed;
    std::uint64_t count;
};

struct Box {
    std::vector<Shade>::iterator begin;
    std::vector<Shade>::iterator end;
    std::size_t widest = 0; // the channel in which it should be cut
    double gain = 0;        // and how much there is to win

    Box(std::vector<Shade>::iterator first, std::vector<Shade>::iterator last) : begin(first), end(last)
    {
        double count = 0;
        for (auto shade = begin; shade != end; ++shade) count += double(shade->count);
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const auto bounds = std::minmax_element(begin, end, [&](const Shade &one, const Shade &other) {
                return one.channels[channel] < other.channels[channel];
            });
            const double range = bounds.second->channels[channel] - bounds.first->channels[channel];
            // Few pixels far apart matter as much as many that are near.
            if (range * range * std::sqrt(count) > gain) {
                gain = range * range * std::sqrt(count);
                widest = channel;
            }
        }
    }
};

} // namespace

static std::uint32_t Average(const Box &box)
{
    std::array<std::uint64_t, 4> sums = {};
    std::uint64_t count = 0;
    std::uint32_t packed = 0;

    for (auto shade = box.begin; shade != box.end; ++shade) {
        for (std::size_t i = 0; i < 4; ++i) sums[i] += std::uint64_t(shade->channels[i]) * shade->count;
        count += shade->count;
    }
    for (std::size_t i = 0; i < 4; ++i) packed |= std::uint32_t((sums[i] + count / 2) / count) << 8 * i;
    return packed;
}

// The box with the most to win is cut where it is widest, in the middle of its range, until there are enough.
static std::map<std::uint32_t, std::uint32_t> Reduce(std::vector<Shade> &shades, std::size_t most)
{
    std::vector<Box> boxes{Box(shades.begin(), shades.end())};
    std::map<std::uint32_t, std::uint32_t> replacements;

    while (boxes.size() < most) {
        const auto largest =
            std::max_element(boxes.begin(), boxes.end(),
                             [](const Box &one, const Box &other) { return one.gain < other.gain; });
        if (largest->gain == 0) break;
        const Box box = *largest;
        const std::size_t channel = box.widest;
        const auto bounds =
            std::minmax_element(box.begin, box.end, [channel](const Shade &one, const Shade &other) {
                return one.channels[channel] < other.channels[channel];
            });
        const int middle = (bounds.first->channels[channel] + bounds.second->channels[channel]) / 2;
        const auto cut = std::partition(
            box.begin, box.end, [&](const Shade &shade) { return shade.channels[channel] <= middle; });
        *largest = Box(box.begin, cut);
        boxes.push_back(Box(cut, box.end));
    }
    for (const Box &box : boxes) {
        const std::uint32_t average = Average(box);
        for (auto shade = box.begin; shade != box.end; ++shade) replacements[shade->packed] = average;
    }
    return replacements;
}

static Pixel Straight(std::uint32_t packed)
{
    return Unpremultiply({std::uint8_t(packed >> 16), std::uint8_t(packed >> 8), std::uint8_t(packed),
                          std::uint8_t(packed >> 24)});
}

static Pixel PixelOf(Color color)
{
    return {color.red, color.green, color.blue, color.alpha};
}

Picture Compose(const std::vector<const Cue *> &cues, Size plane, std::size_t mostColors)
{
    const Image image = MakeImage(plane);
    std::map<std::uint32_t, std::uint64_t> counts;
    std::map<std::uint32_t, Color> originals; // which multiplying would round
    std::vector<Shade> shades;
    Picture picture(plane);

    for (const Cue *const cue : cues) {
        for (const Bitmap &bitmap : cue->bitmaps) {
            LayOver(image, bitmap, PlaceOnPlane(bitmap, cue->canvas, plane));
            for (const Color &color : bitmap.palette) originals[Packed(color)] = color;
        }
    }
    for (int y = 0; y < plane.height; ++y) {
        for (int x = 0; x < plane.width; ++x) {
            if (Row(image, y)[x] >> 24) ++counts[Row(image, y)[x]];
        }
    }
    for (const auto &[packed, count] : counts) {
        shades.push_back(
            {{int(packed & 255), int(packed >> 8 & 255), int(packed >> 16 & 255), int(packed >> 24)},
             packed,
             count});
    }
    if (shades.empty()) return picture;
    const std::map<std::uint32_t, std::uint32_t> replacements = Reduce(shades, mostColors);
    for (int y = 0; y < plane.height; ++y) {
        for (int x = 0; x < plane.width; ++x) {
            const auto found = replacements.find(Row(image, y)[x]);
            if (found == replacements.end()) continue;
            const auto original = originals.find(found->second);
            picture.At(x, y) =
                original == originals.end() ? Straight(found->second) : PixelOf(original->second);
        }
    }
    return picture;
}

} // namespace caption
