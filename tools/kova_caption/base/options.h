// SPDX-License-Identifier: MIT
// What captions are drawn with: set by the command line, used by every part.
#ifndef KOVA_CAPTION_BASE_OPTIONS_H
#define KOVA_CAPTION_BASE_OPTIONS_H

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "base/color.h"
#include "base/rect.h"
#include "base/viewer.h"
#include "kova/kova_textdisp_types.h"

namespace caption
{

enum class ColorMode { INDEX, PALETTE, ARGB };

// A value of an option and its name on the command line.
template <class Value> struct Choice {
    const char *name;
    Value value;
};

inline constexpr Choice<KovaGraphicLayer_e> g_layers[] = {
    {"1", KOVA_GRAPHIC_LAYER1}, {"2", KOVA_GRAPHIC_LAYER2}, {"3", KOVA_GRAPHIC_LAYER3}};

inline constexpr Choice<ColorMode> g_modes[] = {
    {"index", ColorMode::INDEX}, {"palette", ColorMode::PALETTE}, {"argb", ColorMode::ARGB}};

inline constexpr Choice<KovaTextEdgeType_e> g_edges[] = {{"none", KOVA_TEXT_ENONE},
                                                         {"raised", KOVA_TEXT_ERAISED},
                                                         {"depressed", KOVA_TEXT_EDEPRESSED},
                                                         {"uniform", KOVA_TEXT_EUNIFORM},
                                                         {"left-shadow", KOVA_TEXT_ELEFTDROPSHADOW},
                                                         {"right-shadow", KOVA_TEXT_ERIGTHDROPSHADOW}};

struct Options {
    KovaGraphicLayer_e layer = KOVA_GRAPHIC_LAYER1;
    std::optional<ColorMode> mode; // none: what the source needs
    Size plane = {1280, 720};
    std::string font;                   // empty: the first default font that is installed
    std::vector<std::string> fallbacks; // fonts to try next
    int height = 0; // of text that has no size of its own, in pixels; 0: a sixteenth of the plane height
    KovaTextEdgeType_e edge = KOVA_TEXT_EUNIFORM;
    Color color = {255, 255, 255};
    Color edgeColor = {0, 0, 0};
    std::optional<Color> background; // none: pictures stay transparent
    bool headless = false;           // draw without a window even with an X server
    ViewerSettings viewer = DefaultSettings();

    ColorMode Mode() const
    {
        return mode.value_or(ColorMode::PALETTE);
    }
    int TextHeight(double scale = 1) const
    {
        return Enlarged(scale * (height ? height : (plane.height + 15) / 16));
    }

    // A text size as the viewer wants it. None is larger than the plane but that of --height, which is refused.
    int Enlarged(double pixels) const
    {
        const double most = std::max(height, plane.height);
        return int(std::lround(std::clamp(pixels * viewer.size / 100, 1.0, most)));
    }
};

} // namespace caption

#endif
