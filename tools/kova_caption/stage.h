// What a command needs to draw captions, made from its options in one place.
#ifndef KOVA_CAPTION_STAGE_H
#define KOVA_CAPTION_STAGE_H

#include "display.h"
#include "fonts.h"
#include "options.h"
#include "renderer.h"

namespace caption
{

struct Stage {
    // What can be refused is refused before DirectFB starts.
    explicit Stage(const Options &options);

    Fonts fonts;
    Display display;
    Renderer renderer;
};

} // namespace caption

#endif
