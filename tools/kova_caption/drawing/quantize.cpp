// SPDX-License-Identifier: MIT
#include "drawing/quantize.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace caption
{

namespace
{

using Channels = std::array<int, 4>;

// A colour of the picture, and how often it occurs.
struct Shade {
    Color pixel;
    Channels channels; // opacity, and the colour multiplied by it: how different two shades look
    double count;
};

using Shades = std::vector<Shade>;

// Shades that may be merged.
struct Box {
    Shades::iterator begin;
    Shades::iterator end;
    std::size_t widest = 0; // the channel with the largest range
    int middle = 0;         // of that channel
    double gain = 0;        // of a split there

    Box(Shades::iterator first, Shades::iterator last) : begin(first), end(last)
    {
        double count = 0;
        for (auto shade = begin; shade != end; ++shade) count += shade->count;
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const auto less = [channel](const Shade &one, const Shade &other) {
                return one.channels[channel] < other.channels[channel];
            };
            const auto [low, high] = std::minmax_element(begin, end, less);
            const double range = high->channels[channel] - low->channels[channel];
            // A few pixels of very different colours count as much as many of similar ones.
            if (range * range * std::sqrt(count) <= gain) continue;
            gain = range * range * std::sqrt(count);
            widest = channel;
            middle = (low->channels[channel] + high->channels[channel]) / 2;
        }
    }
};

struct Hash {
    std::size_t operator()(const Color &pixel) const
    {
        return std::size_t(pixel.alpha) << 24 | std::size_t(pixel.red) << 16 | std::size_t(pixel.green) << 8 |
               pixel.blue;
    }
};

} // namespace

static Shades ShadesOf(const Picture &picture)
{
    std::unordered_map<Color, double, Hash> counts;
    Shades shades;

    for (int y = 0; y < picture.size().height; ++y) {
        for (int x = 0; x < picture.size().width; ++x) {
            if (picture.At(x, y).alpha > 0) ++counts[picture.At(x, y)];
        }
    }
    for (const auto &[pixel, count] : counts) {
        const auto times = [alpha = pixel.alpha](int value) { return value * alpha / 255; };
        shades.push_back(
            {pixel, {pixel.alpha, times(pixel.red), times(pixel.green), times(pixel.blue)}, count});
    }
    // Sorted, so that equal pictures give equal results.
    const auto key = [](const Shade &shade) { return Hash()(shade.pixel); };
    std::sort(shades.begin(), shades.end(),
              [&](const Shade &one, const Shade &other) { return key(one) < key(other); });
    return shades;
}

static Color Average(const Box &box)
{
    std::array<double, 4> sums = {};
    double count = 0;

    if (box.end - box.begin == 1) return box.begin->pixel;
    for (auto shade = box.begin; shade != box.end; ++shade) {
        for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += shade->channels[i] * shade->count;
        count += shade->count;
    }
    const auto mean = [&](double sum) { return std::uint8_t(std::lround(sum / count)); };
    return Unpremultiply({mean(sums[1]), mean(sums[2]), mean(sums[3]), mean(sums[0])});
}

// Splits the box with the largest gain in the middle of its widest channel until there are enough boxes.
void Quantize(Picture &picture, std::size_t mostColors)
{
    Shades shades = ShadesOf(picture);
    std::unordered_map<Color, Color, Hash> replacements;
    if (shades.size() <= mostColors) return;

    std::vector<Box> boxes{Box(shades.begin(), shades.end())};
    while (boxes.size() < mostColors) {
        const auto best = std::max_element(boxes.begin(), boxes.end(), [](const Box &one, const Box &other) {
            return one.gain < other.gain;
        });
        if (best->gain <= 0) break;
        const Box box = *best;
        const auto cut = std::partition(
            box.begin, box.end, [&](const Shade &shade) { return shade.channels[box.widest] <= box.middle; });
        *best = Box(box.begin, cut);
        boxes.emplace_back(cut, box.end);
    }
    for (const Box &box : boxes) {
        for (auto shade = box.begin; shade != box.end; ++shade) replacements[shade->pixel] = Average(box);
    }
    for (int y = 0; y < picture.size().height; ++y) {
        for (int x = 0; x < picture.size().width; ++x) {
            Color &pixel = picture.At(x, y);
            if (pixel.alpha > 0) pixel = replacements.at(pixel);
        }
    }
}

} // namespace caption
