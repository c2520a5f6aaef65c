// SPDX-License-Identifier: MIT
// Draws what the video of a test stream shows.
#ifndef KOVA_CAPTION_GENERATING_SCENE_PAINTER_H
#define KOVA_CAPTION_GENERATING_SCENE_PAINTER_H

#include <string>

#include "drawing/display.h"
#include "drawing/label.h"
#include "drawing/picture.h"
#include "generating/recording.h"
#include "text/fonts.h"

namespace caption
{

inline constexpr Size g_videoSize = {1280, 720};

// Starts DirectFB, without a window.
class ScenePainter
{
public:
    ScenePainter();

    // The text above and below the safe title area, which is the middle 80 % of width and height and has vertical bars,
    // and the boxes in it.
    Picture Paint(const std::string &title, const Scene &scene);

private:
    void PaintText(Picture &picture, const std::string &text);

    Options options_;
    Fonts fonts_;
    Display display_;
    Labels labels_;
};

} // namespace caption

#endif
