// SPDX-License-Identifier: MIT
// Lines of text put where a sheet wants them.
#ifndef KOVA_CAPTION_LETTERING_H
#define KOVA_CAPTION_LETTERING_H

#include "cue.h"
#include "display.h"
#include "fonts.h"

namespace caption
{

// The width of the line, which begins there and has its top there.
int Write(Display &display, Fonts &fonts, const Line &line, int height, int x, int y);

} // namespace caption

#endif
