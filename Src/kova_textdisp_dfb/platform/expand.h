// SPDX-License-Identifier: MIT
// Draws one-bit bitmaps without the platform's help, into the memory of the locked surface.
#ifndef TEXTDISP_EXPAND_H
#define TEXTDISP_EXPAND_H

#include "call.h"
#include "glyph.h"

namespace textdisp
{

// Draws inside the surface's clip, under one lock of the surface. In LUT8 colours are indexes, in ARGB they are
// 0xAARRGGBB. For any other format it draws nothing and returns DFB_UNSUPPORTED.
DFBResult ExpandGlyphs(IDirectFBSurface *pSurface, const kova_uint8 *const *ppucData,
                       const GlyphAttributes_t *pGlyphs, const DFBPoint *pPoints, int iCount);

} // namespace textdisp

#endif
