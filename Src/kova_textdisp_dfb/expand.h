// SPDX-License-Identifier: MIT
// One-bit bitmaps drawn without the platform's help, into the memory of the locked surface.
#ifndef TEXTDISP_EXPAND_H
#define TEXTDISP_EXPAND_H

#include "platform.h"

namespace textdisp
{

// Draws under one lock of the surface, LUT8 (colours are indexes) or ARGB (colours are 0xAARRGGBB), inside
// its clip. Another format is DFB_UNSUPPORTED and nothing is drawn.
DFBResult ExpandGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                       const MonoGlyph_t *pGlyphs, int iCount);

} // namespace textdisp

#endif
