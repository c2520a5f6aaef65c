// SPDX-License-Identifier: MIT
// Everything that a command needs to draw captions, constructed from its options.
#ifndef KOVA_CAPTION_DRAWING_STAGE_H
#define KOVA_CAPTION_DRAWING_STAGE_H

#include <memory>

#include "base/options.h"
#include "drawing/caption_renderer.h"
#include "drawing/display.h"
#include "drawing/renderer.h"
#include "text/fonts.h"

namespace caption
{

// The options with the colour mode that the cues need: bitmaps need index mode, and so does translucent text
// where it can be shown. Throws Failure if the options
// ask for another.
Options ResolveMode(const std::vector<Cue> &cues, Options options);

struct Stage {
    // Checks the options before DirectFB starts. The cues are those that are going to be drawn.
    explicit Stage(const Options &wanted, const std::vector<Cue> &cues = {});

    const Options options;
    Fonts fonts;
    Display display;
    Renderer renderer;
    const std::unique_ptr<CaptionRenderer> captions; // null if the cues are no closed captions
};

// Clears the plane, draws cues that are shown together and reads the plane back. Throws Failure if not a
// single line fits.
Picture RenderFrame(Stage &stage, const std::vector<const Cue *> &cues, Drawn &drawn);

} // namespace caption

#endif
