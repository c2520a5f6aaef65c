// SPDX-License-Identifier: MIT
#include "generating/scene_painter.h"

#include <algorithm>
#include <cmath>

#include "drawing/directfb_system.h"

namespace caption
{

static const Rect g_safe = {g_videoSize.width / 10, g_videoSize.height / 10, g_videoSize.width * 8 / 10,
                            g_videoSize.height * 8 / 10};
static const int g_bar = 64; // pixels
static const Color g_around = {16, 16, 48};
static const Color g_bars[] = {{80, 80, 80}, {112, 112, 112}};
static const Color g_outline = {255, 192, 0};
static const int g_outlineWidth = 2;
static const int g_textHeight = 22;
static const int g_lineHeight = 28;
static const int g_textLeft = 64;
static const int g_lineTops[] = {10, 10 + g_lineHeight, g_videoSize.height - 66,
                                 g_videoSize.height - 66 + g_lineHeight};

static Options LabelOptions()
{
    Options options;

    options.mode = ColorMode::PALETTE;
    options.plane = {g_videoSize.width, 2 * g_lineHeight};
    options.headless = true;
    ChooseDirectFBSystem(options);
    return options;
}

ScenePainter::ScenePainter()
    : options_(LabelOptions()), fonts_(options_), display_(options_), labels_(display_, fonts_)
{
}

// Clipped to the picture.
static void Fill(Picture &picture, Rect rect, Color color)
{
    const int right = std::min(rect.x + rect.width, picture.size().width);
    const int bottom = std::min(rect.y + rect.height, picture.size().height);

    for (int y = std::max(rect.y, 0); y < bottom; ++y) {
        for (int x = std::max(rect.x, 0); x < right; ++x) picture.At(x, y) = color;
    }
}

static void PaintBox(Picture &picture, const Box &box)
{
    const auto x = [](double share) { return g_safe.x + int(std::lround(share * g_safe.width)); };
    const auto y = [](double share) { return g_safe.y + int(std::lround(share * g_safe.height)); };
    const Rect inside = {x(box.left), y(box.top), x(box.right) - x(box.left), y(box.bottom) - y(box.top)};
    const int w = g_outlineWidth;

    if (box.fill) {
        Fill(picture, inside, *box.fill);
        return;
    }
    // Around the rectangle, so that a caption in it leaves the outline visible.
    Fill(picture, {inside.x - w, inside.y - w, inside.width + 2 * w, w}, g_outline);
    Fill(picture, {inside.x - w, inside.y + inside.height, inside.width + 2 * w, w}, g_outline);
    Fill(picture, {inside.x - w, inside.y, w, inside.height}, g_outline);
    Fill(picture, {inside.x + inside.width, inside.y, w, inside.height}, g_outline);
}

// Words fill two lines above and two below; what is left over is not drawn.
void ScenePainter::PaintText(Picture &picture, const std::string &text)
{
    const int space = labels_.Get(" ", g_textHeight).size().width;
    std::size_t line = 0;
    int x = g_textLeft;

    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        at = end + 1;
        if (word.empty()) continue;
        const int width = labels_.Get(word, g_textHeight).size().width;
        if (x > g_textLeft && x + width > g_videoSize.width - g_textLeft) {
            x = g_textLeft;
            if (++line == std::size(g_lineTops)) return;
        }
        labels_.Put(picture, word, g_textHeight, x, g_lineTops[line]);
        x += width + space;
    }
}

Picture ScenePainter::Paint(const std::string &title, const Scene &scene)
{
    Picture picture(g_videoSize, g_around);

    for (int x = 0; x < g_safe.width; x += g_bar) {
        Fill(picture, {g_safe.x + x, g_safe.y, g_bar, g_safe.height}, g_bars[x / g_bar % 2]);
    }
    for (const Box &box : scene.boxes) PaintBox(picture, box);
    PaintText(picture, title + ": " + scene.text);
    return picture;
}

} // namespace caption
