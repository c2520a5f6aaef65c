// SPDX-License-Identifier: MIT
// Chooses what DirectFB runs on, unless its user has chosen with DFBARGS.
#ifndef KOVA_CAPTION_DRAWING_DIRECTFB_SYSTEM_H
#define KOVA_CAPTION_DRAWING_DIRECTFB_SYSTEM_H

#include "base/options.h"

namespace caption
{

// A window where there is an X server that DirectFB can work with, no screen at all elsewhere. A Failure
// where the layer asked for needs the X server.
void ChooseDirectFBSystem(const Options &options);

// Keeps DirectFB, once a display has started it, until the process ends. Published DirectFB forgets to stop
// one of its threads when its last user goes, and that thread may crash on what was freed.
void KeepDirectFBStarted();

} // namespace caption

#endif
