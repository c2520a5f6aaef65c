// A colour argument becomes a DirectFB colour, by the display's colour mode.
#ifndef TEXTDISP_COLOR_H
#define TEXTDISP_COLOR_H

#include "call.h"

namespace textdisp
{

// An entry of the display's palette copy; transparent black past its end, where callers have no business.
KovaTextColor_t PaletteColor(const KovaDFBDisplay_t *pDisplay, kova_uint32 uiIndex);

// A packed colour, 0xRRGGBBAA, taken apart.
KovaTextColor_t UnpackColor(kova_uint32 color);

// Makes the colour the drawing colour of the active surface.
void SelectColor(KovaDFBDisplay_t *pDisplay, kova_uint32 color) HOLDS_DISPLAY;

} // namespace textdisp

#endif
