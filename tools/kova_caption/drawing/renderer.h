// SPDX-License-Identifier: MIT
// Draws captions that are laid out.
#ifndef KOVA_CAPTION_DRAWING_RENDERER_H
#define KOVA_CAPTION_DRAWING_RENDERER_H

#include <vector>

#include "base/options.h"
#include "cues/cue.h"
#include "drawing/display.h"
#include "drawing/edges.h"
#include "drawing/layout.h"
#include "text/fonts.h"

namespace caption
{

class Renderer
{
public:
    Renderer(const Options &options, Display &display, Fonts &fonts);

    // As LayoutEngine::LayOut.
    Plan LayOut(const std::vector<const Cue *> &cues)
    {
        return engine_.LayOut(cues);
    }

    // Draws over what is on the plane; clears nothing.
    Drawn Draw(const Plan &plan);
    Drawn Draw(const std::vector<const Cue *> &cues)
    {
        return Draw(LayOut(cues));
    }

private:
    void DrawRows(const BlockLayout &layout);
    void DrawRow(const Row &row, int x, int y);

    Options options_;
    Margins margins_;
    Display &display_;
    LayoutEngine engine_;
};

} // namespace caption

#endif
