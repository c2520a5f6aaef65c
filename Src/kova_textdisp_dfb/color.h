// SPDX-License-Identifier: MIT
// A colour argument becomes a DirectFB colour, by the display's colour mode.
#ifndef TEXTDISP_COLOR_H
#define TEXTDISP_COLOR_H

#include "call.h"

namespace textdisp
{

// An entry of the display's palette copy; transparent black for an index past its end.
inline KovaTextColor_t PaletteColor(const KovaDFBDisplay_t *pDisplay, kova_uint32 uiIndex)
{
    return uiIndex < MAX_PALETTE_COLOR ? pDisplay->palette[uiIndex] : KovaTextColor_t{0, 0, 0, 0};
}

// The channels of a packed colour, 0xRRGGBBAA.
inline KovaTextColor_t UnpackColor(kova_uint32 color)
{
    return {kova_uint8(color >> 24), kova_uint8(color >> 16), kova_uint8(color >> 8), kova_uint8(color)};
}

// Makes the colour the drawing colour of the active surface.
inline void SelectColor(KovaDFBDisplay_t *pDisplay, kova_uint32 color) HOLDS_DISPLAY
{
    IDirectFBSurface *const pSurface = pDisplay->pActiveSurface;
    const bool bPacked = Peek(pDisplay->bColor32);

    if (!bPacked && !pDisplay->bTextDisp_Palette) {
        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetColorIndex, color));
    } else {
        const KovaTextColor_t c = bPacked ? UnpackColor(color) : PaletteColor(pDisplay, color);

        DFB_CHECK(Call(pSurface, &IDirectFBSurface::SetColor, c.r, c.g, c.b, c.a));
    }
}

} // namespace textdisp

#endif
