// SPDX-License-Identifier: MIT
// What a command needs to draw captions, made from its options in one place.
#ifndef KOVA_CAPTION_DRAWING_STAGE_H
#define KOVA_CAPTION_DRAWING_STAGE_H

#include "base/options.h"
#include "drawing/display.h"
#include "drawing/renderer.h"
#include "text/fonts.h"

namespace caption
{

// The options with the colour mode that the cues need, where none is asked for: pictures are indexes into a
// palette. A Failure where another is.
Options ResolveMode(const std::vector<Cue> &cues, Options options);

struct Stage {
    // What can be refused is refused before DirectFB starts.
    explicit Stage(const Options &wanted);

    const Options options;
    Fonts fonts;
    Display display;
    Renderer renderer;
};

// Draws cues that are shown together, and nothing else, and reads the plane back. A Failure where nothing of
// them finds room.
Picture RenderFrame(Stage &stage, const std::vector<const Cue *> &cues, Drawn &drawn);

} // namespace caption

#endif
