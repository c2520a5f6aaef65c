// SPDX-License-Identifier: MIT
// Selects the DirectFB system, unless the user has selected one with DFBARGS.
#ifndef KOVA_CAPTION_DRAWING_DIRECTFB_SYSTEM_H
#define KOVA_CAPTION_DRAWING_DIRECTFB_SYSTEM_H

#include "base/options.h"

namespace caption
{

// Selects a window where there is an X server that DirectFB can use, memory elsewhere. Throws Failure if the
// layer needs an X server that is not there.
void ChooseDirectFBSystem(const Options &options);

// Keeps DirectFB started until the process ends. Published DirectFB does not stop one of its threads when its
// last user releases it, and that thread may then use freed memory.
void KeepDirectFBStarted();

} // namespace caption

#endif
