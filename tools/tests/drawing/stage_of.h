// SPDX-License-Identifier: MIT
// Draws cues on a plane of its own, in this process, and tells where each colour is.
#ifndef KOVA_CAPTION_TESTS_STAGE_OF_H
#define KOVA_CAPTION_TESTS_STAGE_OF_H

#include <vector>

#include "drawing/stage.h"
#include "support/tool.h"

// Text without an edge, in index mode: a pixel is in one of the colours asked for or it is transparent.
inline caption::Options PlainOptions()
{
    caption::Options options;

    options.headless = true;
    options.plane = {640, 360};
    options.height = 32;
    options.edge = KOVA_TEXT_ENONE;
    options.mode = caption::ColorMode::INDEX;
    return options;
}

struct Frame {
    caption::Picture picture{{1, 1}};
    caption::Drawn drawn;
};

inline Frame Render(const std::vector<caption::Cue> &cues, const caption::Options &options = PlainOptions())
{
    std::vector<const caption::Cue *> shown;
    Frame frame;

    for (const caption::Cue &cue : cues) shown.push_back(&cue);
    caption::Stage stage(options);
    frame.picture = caption::RenderFrame(stage, shown, frame.drawn);
    return frame;
}

// A run in a colour.
inline caption::Run Colored(const std::string &text, caption::Color color)
{
    caption::Run run{text, {}};
    run.style.color = color;
    return run;
}

inline caption::Cue CueOf(const std::vector<caption::Line> &lines,
                          caption::Horizontal horizontal = caption::Horizontal::CENTER)
{
    caption::Cue cue;
    cue.blocks.emplace_back();
    cue.blocks.back().horizontal = horizontal;
    cue.blocks.back().lines = lines;
    return cue;
}

// Where this very colour is.
inline Points Ink(const caption::Picture &picture, caption::Color color)
{
    const caption::Color wanted = {color.red, color.green, color.blue, color.alpha};
    Points points;
    for (int y = 0; y < picture.size().height; ++y) {
        for (int x = 0; x < picture.size().width; ++x) {
            if (picture.At(x, y) == wanted) points.insert({x, y});
        }
    }
    return points;
}

// The smallest rectangle around them.
inline caption::Rect Around(const Points &points)
{
    int left = 1 << 20, top = 1 << 20, right = 0, bottom = 0;
    for (const auto &[x, y] : points) {
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x + 1);
        bottom = std::max(bottom, y + 1);
    }
    return {left, top, right - left, bottom - top};
}

// Moved to the top left corner, so that shapes can be compared wherever they stand.
inline Points Shape(const Points &points)
{
    const caption::Rect rect = Around(points);
    return Moved(points, -rect.x, -rect.y);
}

#endif
